// Upper case: capitals of code page 1252.
#include "text/letter_case.h"

#include <gtest/gtest.h>

namespace tellaxis {
namespace {

TEST(UpperCase, TurnsPlainAndAccentedLetters) {
  EXPECT_EQ(upperCase("luned\xEC"), "LUNED\xCC");
  EXPECT_EQ(upperCase("\xE0\xF6\xF8\xFE"), "\xC0\xD6\xD8\xDE");
}

TEST(UpperCase, TurnsTheLettersOutsideTheLatinRows) { EXPECT_EQ(upperCase("\x9A\x9C\x9E\xFF"), "\x8A\x8C\x8E\x9F"); }

TEST(UpperCase, LeavesEverythingElseAlone) {
  EXPECT_EQ(upperCase("@[`{0#\x80\x83\x99\x9B\xDF\xF7"), "@[`{0#\x80\x83\x99\x9B\xDF\xF7");
}

}  // namespace
}  // namespace tellaxis
