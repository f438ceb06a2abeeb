// Form: header blocks, body sections and their padding.
#include "slip/form.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "core/step_failed.h"
#include "text_file.h"

namespace tellaxis {
namespace {

SlipForm formOf(std::string job) {
  Records records(std::make_unique<TextFile>(std::move(job)));
  return readSlipForm(records);
}

std::string lines(int from, int to) {
  std::string text;
  for (int i = from; i <= to; ++i) text += std::to_string(i) + "\r\n";
  return text;
}

/// As many body lines, each of which says its number.
SlipForm bodyOf(int count) {
  std::string job;
  for (int i = 0; i < count; ++i) job += "RR " + std::to_string(i) + "\r\n";
  return formOf(job);
}

std::string blankLines(int count) {
  std::string text;
  for (int i = 0; i < count; ++i) text += " \r\n";
  return text;
}

std::string withoutEnd(std::string text) { return text.substr(0, text.size() - 2); }

TEST(SlipForm, CollectsHeadersByTheirMarkers) {
  const SlipForm form = formOf("I1 a\r\nI2 d\r\nI1 b\r\nI1 c\r\nI1 e\r\nI2 f\r\nI2 g\r\n");
  EXPECT_EQ(form.firstHeader.text, "a\r\nb\r\nc\r\ne\r\n");
  EXPECT_EQ(form.secondHeader.text, "d\r\nf\r\ng\r\n");
}

TEST(SlipForm, PadsHeadersToFourAndThreeLines) {
  const SlipForm empty = formOf("");
  EXPECT_EQ(empty.firstHeader.text, "\r\n \r\n \r\n \r\n ");
  EXPECT_EQ(empty.secondHeader.text, "\r\n \r\n \r\n ");
  const SlipForm form = formOf("I1 a\r\nI1 b\r\nI2 c\r\n");
  EXPECT_EQ(form.firstHeader.text, "a\r\nb\r\n\r\n \r\n ");
  EXPECT_EQ(form.secondHeader.text, "c\r\n\r\n \r\n ");
}

TEST(SlipForm, DoesNotPadOrCutLongerHeaders) {
  EXPECT_EQ(formOf("I1 1,I1 2,I1 3,I1 4,I1 5").firstHeader.text, "1\r\n2\r\n3\r\n4\r\n5\r\n");
}

TEST(SlipForm, DropsTheSeparatorWhateverItIs) {
  EXPECT_EQ(formOf("I1 a\r\nI1:b\r\nI1xc\r\nI1\td\r\n").firstHeader.text, "a\r\nb\r\nc\r\nd\r\n");
  EXPECT_EQ(formOf("RR \r\nRR  x\r\n").sections[0], "\r\n x\r\n");
}

TEST(SlipForm, IgnoresOtherMarkers) {
  const SlipForm form = formOf("rr a\r\ni1 b\r\nI3 c\r\nR\r\n\r\nxx\r\n RR si\r\n");
  EXPECT_EQ(form.sections[0], "si\r\n");
  EXPECT_EQ(form.firstHeader.count + form.secondHeader.count, 0);
}

TEST(SlipForm, IgnoresWhatFollowsACommaInABodyLine) {
  EXPECT_EQ(formOf("RR Coperto 10,50\r\nRR x\r\n").sections[0], "Coperto 10\r\nx\r\n");
  EXPECT_EQ(formOf("\"RR Coperto 10,50\"\r\n").sections[0], "Coperto 10,50\r\n");
}

TEST(SlipForm, OfHeadersAloneHasOneEmptySectionAndNoPad) {
  const SlipForm form = formOf("I1 a\r\nI2 b\r\n");
  EXPECT_EQ(form.lastSection, 0U);
  EXPECT_EQ(form.sections[0], "");
  EXPECT_EQ(form.bodyPad, "");
}

TEST(SlipForm, FillsUpTheFirstSection) {
  const SlipForm form = bodyOf(20);
  EXPECT_EQ(form.sections[0], lines(0, 19));
  EXPECT_EQ(form.lastSection, 0U);
  EXPECT_EQ(form.bodyPad, blankLines(2));
  EXPECT_EQ(bodyOf(1).bodyPad, blankLines(21));
}

TEST(SlipForm, IsNotPaddedWhereOneLineIsMissing) {
  for (const int count : {21, 43, 65}) EXPECT_EQ(bodyOf(count).bodyPad, "") << count;
}

TEST(SlipForm, Of22LinesEndsEachWithALineEndAndHasNoPad) {
  const SlipForm form = bodyOf(22);
  EXPECT_EQ(form.sections[0], lines(0, 21));
  EXPECT_EQ(form.lastSection, 0U);
  EXPECT_EQ(form.bodyPad, "");
}

TEST(SlipForm, Of23LinesHasAFullSectionWhoseLastLineHasNoEnd) {
  const SlipForm form = bodyOf(23);
  EXPECT_EQ(form.sections[0], withoutEnd(lines(0, 22)));
  EXPECT_EQ(form.lastSection, 0U);
  EXPECT_EQ(form.bodyPad, "");
}

TEST(SlipForm, Of24LinesHasASecondSection) {
  const SlipForm form = bodyOf(24);
  EXPECT_EQ(form.sections[0], withoutEnd(lines(0, 22)));
  EXPECT_EQ(form.sections[1], lines(23, 23));
  EXPECT_EQ(form.lastSection, 1U);
  EXPECT_EQ(form.bodyPad, blankLines(20));
}

TEST(SlipForm, Of45And46LinesFillsTheSecondSectionAndStartsTheThird) {
  EXPECT_EQ(bodyOf(45).sections[1], withoutEnd(lines(23, 44)));
  EXPECT_EQ(bodyOf(45).lastSection, 1U);
  EXPECT_EQ(bodyOf(46).sections[2], lines(45, 45));
  EXPECT_EQ(bodyOf(46).lastSection, 2U);
  EXPECT_EQ(bodyOf(46).bodyPad, blankLines(20));
}

TEST(SlipForm, Of65LinesHasAThirdSectionWithoutPad) {
  const SlipForm form = bodyOf(65);
  EXPECT_EQ(form.sections[2], lines(45, 64));
  EXPECT_EQ(form.lastSection, 2U);
  EXPECT_EQ(form.bodyPad, "");
  EXPECT_EQ(bodyOf(64).bodyPad, blankLines(2));
}

TEST(SlipForm, GoesOnInTheThirdSectionWithLineEndsAfterNumber66) {
  EXPECT_EQ(bodyOf(67).sections[2], withoutEnd(lines(45, 66)));
  EXPECT_EQ(bodyOf(70).sections[2], withoutEnd(lines(45, 66)) + lines(67, 69));
}

TEST(SlipForm, FailsAtARecordThatIsAMarkerAlone) {
  for (const std::string_view job : {"I1", "I2\r\n", "RR\r\nRR x\r\n", "RR x,RR\r\n"})
    EXPECT_THROW(formOf(std::string(job)), StepFailed) << job;
}

TEST(SlipForm, HoldsAsManyBodyLinesAsA16BitCounterCounts) {
  EXPECT_EQ(bodyOf(32'767).bodyLines, 32'767);
  EXPECT_THROW(bodyOf(32'768), StepFailed);
}

}  // namespace
}  // namespace tellaxis
