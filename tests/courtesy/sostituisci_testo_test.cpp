// SostituisciTesto: replacements and the bounds of its positions.
#include "courtesy/sostituisci_testo.h"

#include <gtest/gtest.h>

namespace tellaxis {
namespace {

TEST(SostituisciTesto, ReplacesEveryOccurrence) {
  EXPECT_EQ(SostituisciTesto("a-b-c", "-", "+"), "a+b+c");
  EXPECT_EQ(SostituisciTesto("xxabxxab", "ab", ""), "xxxx");
  EXPECT_EQ(SostituisciTesto("ab", "ab", "lungo"), "lungo");
}

TEST(SostituisciTesto, GoesOnBehindAnOccurrence) {
  EXPECT_EQ(SostituisciTesto("aaa", "aa", "b"), "ba");
  EXPECT_EQ(SostituisciTesto("aabb", "ab", ""), "ab") << "what a replacement brings together is not replaced again";
}

TEST(SostituisciTesto, ComparesExactly) { EXPECT_EQ(SostituisciTesto("aA", "A", "x"), "ax"); }

TEST(SostituisciTesto, GivesNothingForNothing) { EXPECT_EQ(SostituisciTesto("", "a", "b"), ""); }

TEST(SostituisciTesto, FindsAnEmptyTextNowhere) { EXPECT_EQ(SostituisciTesto("abc", "", "x"), "abc"); }

TEST(SostituisciTesto, FailsWherePositionsWouldOverflow) {
  const std::string longest(32'766, 'x');
  EXPECT_EQ(SostituisciTesto(longest, "y", ""), longest);
  EXPECT_EQ(SostituisciTesto(longest + "x", "y", ""), std::nullopt);
  EXPECT_EQ(SostituisciTesto("x", std::string(40'000, 'y'), ""), std::nullopt);
}

TEST(SostituisciTesto, MayGrowBeyondThem) {
  EXPECT_EQ(SostituisciTesto(std::string(30'000, 'x'), "x", "yy"), std::string(60'000, 'y'));
}

}  // namespace
}  // namespace tellaxis
