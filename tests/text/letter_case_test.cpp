// Tests of comparing texts of code page 1252 without regard to case.
#include "text/letter_case.h"

#include <gtest/gtest.h>

#include <string>

namespace tellaxis::platform {
namespace {

TEST(LetterCase, AccentedLettersHaveAnUpperCaseToo) {
  EXPECT_TRUE(equalIgnoringCase("citt\xE0 \x9A\xFF", "CITT\xC0 \x8A\x9F"));
  EXPECT_FALSE(equalIgnoringCase("\xF7", "\xD7")) << "division and multiplication signs are no letters";
  EXPECT_FALSE(equalIgnoringCase("a", "ab"));
}

TEST(LetterCase, OrderIsByUpperCaseAndThenByBytes) {
  EXPECT_TRUE(lessIgnoringCase("a", "B"));
  EXPECT_TRUE(lessIgnoringCase("A", "b"));
  EXPECT_TRUE(lessIgnoringCase("z", "_")) << "names sort as upper case, where letters stand before the underscore";
  EXPECT_TRUE(lessIgnoringCase("A", "a"));
  EXPECT_FALSE(lessIgnoringCase("a", "A"));
  EXPECT_FALSE(lessIgnoringCase("a", "a"));
  EXPECT_TRUE(lessIgnoringCase("ab", "ABC"));
}

}  // namespace
}  // namespace tellaxis::platform
