// Tests of the layout of pages: what stands where, and where a page ends.
#include "platform/printing/pages/page_layout.h"

#include <gmock/gmock.h>

namespace tellaxis::platform {
namespace {

using testing::ElementsAre;
using testing::SizeIs;

/// Every letter of every typeface has the same measures.
class EvenTypefaces final : public TypefaceMeasures {
 public:
  EvenTypefaces() { measures_.advances.fill(0.6); }
  const LetterMeasures& measures(const Typeface& /*typeface*/) override { return measures_; }

 private:
  LetterMeasures measures_{.ascent = 0.85, .descent = 0.25};
};

/// Knows one typeface at a time, as a system may that keeps few: a bold one is twice as wide.
class ForgetfulTypefaces final : public TypefaceMeasures {
 public:
  const LetterMeasures& measures(const Typeface& typeface) override {
    measures_.advances.fill(typeface.bold ? 1.2 : 0.6);
    return measures_;
  }

 private:
  LetterMeasures measures_{.ascent = 0.85, .descent = 0.25};
};

PrintStatement text(std::string line, std::string font = "FontA11", double size = 9) {
  return {std::move(line), std::move(font), size, false, {}};
}

std::vector<Page> pagesOf(const std::string& deviceName, const std::vector<Operation>& operations) {
  EvenTypefaces typefaces;
  std::vector<Page> pages;
  PageLayout layout(paperOf(deviceName), typefaces, nullptr, [&](Page page) { pages.push_back(std::move(page)); });
  for (const Operation& operation : operations) layout.add(operation);
  layout.finish();
  return pages;
}

std::vector<PlacedText> textsOf(const Page& page) {
  std::vector<PlacedText> texts;
  for (const Placed& item : page.items)
    if (const auto* placed = std::get_if<PlacedText>(&item)) texts.push_back(*placed);
  return texts;
}

std::vector<std::string> linesOf(const Page& page) {
  std::vector<std::string> lines;
  for (const PlacedText& placed : textsOf(page)) lines.push_back(placed.text);
  return lines;
}

TEST(PageLayout, ARollIsAsLongAsItsText) {
  const auto one = pagesOf("X", {text("a")});
  const auto twenty = pagesOf("X", std::vector<Operation>(20, text("a")));
  ASSERT_THAT(one, SizeIs(1));
  ASSERT_THAT(twenty, SizeIs(1));
  EXPECT_EQ(one[0].width, 80 * dotsPerMillimetre);
  EXPECT_GE(one[0].height, 20 * dotsPerMillimetre);
  EXPECT_GT(twenty[0].height, one[0].height + 400);
}

TEST(PageLayout, ASlipIsAFormAndLongerTextTakesAnother) {
  const auto pages = pagesOf("EPSON TM-U295 Slip", std::vector<Operation>(60, text("a", "FontB11")));
  ASSERT_THAT(pages, SizeIs(2));
  EXPECT_EQ(pages[0].height, pages[1].height);
  EXPECT_GE(pages[0].items.size(), 41U);
}

TEST(PageLayout, DeviceFontsKeepTheirColumns) {
  const auto pages = pagesOf("X", {text(std::string(42, 'a')), text(std::string(56, 'b'), "FontB11"),
                                   text(std::string(42, 'c'), "FontA15cpi"), text(std::string(48, 'd'), "FontB17cpi")});
  ASSERT_THAT(pages, SizeIs(1));
  EXPECT_THAT(linesOf(pages[0]),
              ElementsAre(std::string(42, 'a'), std::string(56, 'b'), std::string(42, 'c'), std::string(48, 'd')));
}

TEST(PageLayout, TextWiderThanARollGoesOnInTheNextLineAndOnAFormEnds) {
  EXPECT_THAT(linesOf(pagesOf("X", {text(std::string(43, 'a'))})[0]), ElementsAre(std::string(42, 'a'), "a"));
  EXPECT_THAT(linesOf(pagesOf("EPSON TM-U295 Slip", {text(std::string(70, 'a'), "FontB11")})[0]),
              ElementsAre(std::string(42, 'a')));
}

TEST(PageLayout, BlanksAtTheEndTakeNoLine) {
  const auto lines = textsOf(pagesOf("X", {text("a" + std::string(80, ' ')), text("b")})[0]);
  ASSERT_THAT(lines, SizeIs(2));
  EXPECT_LT(lines[1].y - lines[0].y, 40);
}

TEST(PageLayout, ScaleAndSizeMakeLettersHigher) {
  const auto lines = textsOf(pagesOf("X", {text("a", "FontA15cpi", 9), text("b", "FontA15cpi", 18),
                                           text("c", "FontB1x2"), text("d", "FontB1x1"), text("e", "FontA21")})[0]);
  ASSERT_THAT(lines, SizeIs(5));
  EXPECT_DOUBLE_EQ(lines[1].height, 2 * lines[0].height);
  EXPECT_DOUBLE_EQ(lines[1].cellWidth, lines[0].cellWidth);
  EXPECT_DOUBLE_EQ(lines[2].height, 2 * lines[3].height);
  EXPECT_DOUBLE_EQ(lines[4].cellWidth, 2 * 576.0 / 42);
}

TEST(PageLayout, EveryPieceOfAStatementEndsItsLine) {
  const auto lines = textsOf(pagesOf("X", {text("a\r\nb\r\n"), text("c")})[0]);
  ASSERT_THAT(lines, SizeIs(3));
  EXPECT_DOUBLE_EQ(lines[2].y - lines[1].y, 2 * (lines[1].y - lines[0].y));
}

TEST(PageLayout, APositionIsWhereTheNextLineStands) {
  const auto lines = textsOf(
      pagesOf("X", {text(""), Move{.y = 0}, text("a"), Move{.x = 1440}, Move{.y = 1440}, text("b"), text("c")})[0]);
  const double inch = 25.4 * dotsPerMillimetre;
  ASSERT_THAT(lines, SizeIs(3));
  EXPECT_NEAR(lines[1].y - lines[0].y, inch, 0.01);
  EXPECT_NEAR(lines[1].x - lines[0].x, inch, 0.01);
  EXPECT_DOUBLE_EQ(lines[2].x, lines[0].x);
}

TEST(PageLayout, ControlLettersAreNotPrintedAndACutEndsThePaper) {
  const auto pages = pagesOf("X", {text("w", "FontControl"), text("a"), text("P", "FontControl")});
  ASSERT_THAT(pages, SizeIs(1));
  EXPECT_THAT(linesOf(pages[0]), ElementsAre("a"));
  ASSERT_TRUE(std::holds_alternative<PlacedCut>(pages[0].items.back()));
  EXPECT_LT(pages[0].height - std::get<PlacedCut>(pages[0].items.back()).y, 5 * dotsPerMillimetre);
}

TEST(PageLayout, WhatIsNoEanIsText) {
  EXPECT_THAT(linesOf(pagesOf("X", {text("8001234567890", "JAN13(EAN)", 18)})[0]), ElementsAre("8001234567890"));
}

TEST(PageLayout, ALongRollIsPartedIntoPages) {
  const auto pages = pagesOf("X", std::vector<Operation>(3000, text("a")));
  EXPECT_GT(pages.size(), 2U);
  std::size_t lines = 0;
  for (const Page& page : pages) {
    EXPECT_LE(page.height, 4020 * dotsPerMillimetre);
    lines += page.items.size();
  }
  EXPECT_EQ(lines, 3000U);
}

TEST(PageLayout, OneHugeStatementIsPartedToo) {
  std::string huge;
  for (int i = 0; i < 3000; ++i) huge += "riga\r\n";
  EXPECT_GT(pagesOf("X", {text(huge)}).size(), 2U);
}

TEST(PageLayout, ManyLinesInOnePlaceFillAPageToo) {
  std::vector<Operation> operations;
  for (int i = 0; i < 10'000; ++i) {
    operations.push_back(Move{.y = 0});
    operations.push_back(text("a"));
  }
  for (const Page& page : pagesOf("X", operations)) EXPECT_LE(page.items.size(), 5000U);
}

TEST(PageLayout, AFontOfTheComputerIsAsWideAndAsHighAsItsMeasures) {
  const double point = 25.4 * dotsPerMillimetre / 72;
  const auto pages = pagesOf("X", {text(std::string(40, 'a'), "Arial", 10), text("b", "Arial", 10)});
  const auto lines = textsOf(pages[0]);
  ASSERT_THAT(lines, SizeIs(3));
  EXPECT_THAT(lines[0].text, SizeIs(34)) << "letters of 16.9 dots on 576";
  EXPECT_DOUBLE_EQ(lines[0].height, 10 * point * 1.1);
  EXPECT_EQ(lines[0].cellWidth, 0);
}

TEST(PageLayout, TheTypefacesOfAPageThatIsDrawnMeanwhileChangeNothing) {
  ForgetfulTypefaces typefaces;
  std::vector<Page> pages;
  PageLayout layout(paperOf("X"), typefaces, nullptr, [&](Page page) {
    pages.push_back(std::move(page));
    typefaces.measures({"Arial", true});
  });
  layout.add(text(std::string(34 * 1500, 'a'), "Arial", 10));
  layout.finish();
  ASSERT_THAT(pages, SizeIs(testing::Gt(1U)));
  for (const Page& page : pages)
    for (const PlacedText& line : textsOf(page)) ASSERT_THAT(line.text, SizeIs(34));
}

TEST(PageLayout, TheBarsOfACodeStandSideBySideInTheMiddleOfThePaper) {
  const auto pages = pagesOf("X", {text("x", "FontControl"), text("8001234567897", "JAN13(EAN)", 18)});
  ASSERT_THAT(pages, SizeIs(1));
  ASSERT_THAT(pages[0].items, SizeIs(30));
  const auto& first = std::get<PlacedBar>(pages[0].items.front());
  const auto& last = std::get<PlacedBar>(pages[0].items.back());
  EXPECT_NEAR(first.x, pages[0].width - last.x - last.width, 2);
  EXPECT_EQ(last.x + last.width - first.x, 95 * 3);
}

}  // namespace
}  // namespace tellaxis::platform
