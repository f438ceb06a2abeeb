// Records: commas, line ends, quotes and blanks.
#include "slip/records.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/step_failed.h"
#include "fake/computer.h"
#include "text_file.h"

namespace tellaxis {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> recordsOf(std::string text) {
  Records records(std::make_unique<TextFile>(std::move(text)));
  std::vector<std::string> all;
  while (const auto record = records.next()) all.emplace_back(*record);
  return all;
}

TEST(Records, EndAtACommaAndAtALineEnd) {
  EXPECT_THAT(recordsOf("uno,due\r\ntre\nquattro\rcinque"), ElementsAre("uno", "due", "tre", "quattro", "cinque"));
}

TEST(Records, SkipLeadingBlanksAndKeepTheOthers) {
  EXPECT_THAT(recordsOf("  uno due , tre  \r\n    quattro"), ElementsAre("uno due ", "tre  ", "quattro"));
}

TEST(Records, AreTakenWithoutTheQuotesThatEncloseThem) {
  EXPECT_THAT(recordsOf("\"uno\",  \"due\"  ,\"\"\r\n\" tre \""), ElementsAre("uno", "due", "", " tre "));
}

TEST(Records, KeepACommaInsideQuotes) {
  EXPECT_THAT(recordsOf("\"RR 10,50\",\"a,b\" , c\r\n"), ElementsAre("RR 10,50", "a,b", "c"));
}

TEST(Records, KeepQuotesThatDoNotEncloseThem) {
  EXPECT_THAT(recordsOf("a\"b,c\"\r\n\"uno\" due,tre\r\n\"solo\r\nx"),
              ElementsAre("a\"b", "c\"", "\"uno\" due", "tre", "\"solo", "x"));
}

TEST(Records, KeepQuotesInsideTheEnclosingOnes) {
  EXPECT_THAT(recordsOf("\"il \"Bar\" qui\",x"), ElementsAre("il \"Bar\" qui", "x"));
}

TEST(Records, DoNotReachBeyondTheirLine) { EXPECT_THAT(recordsOf("\"uno\r\ndue\""), ElementsAre("\"uno", "due\"")); }

TEST(Records, OfAnEmptyLineIsOneEmptyOne) {
  EXPECT_THAT(recordsOf("\r\nuno\r\n\r\n   \r\n"), ElementsAre("", "uno", "", ""));
}

TEST(Records, StandBetweenCommasEvenWhenEmpty) {
  EXPECT_THAT(recordsOf(",,uno,\r\n,\n"), ElementsAre("", "", "uno", "", "", ""));
}

TEST(Records, EndWithTheFileBehindItsLastComma) {
  EXPECT_THAT(recordsOf("uno,\r\ndue,"), ElementsAre("uno", "", "due"));
}

TEST(Records, OfAnEmptyFileAreNone) { EXPECT_THAT(recordsOf(""), IsEmpty()); }

TEST(Records, OfALongLineOfOpenQuotesAreFoundInOnePass) {
  std::string text;
  for (int i = 0; i < 200'000; ++i) text += "\"a,";
  EXPECT_EQ(recordsOf(text).size(), 200'000U);
}

TEST(Records, ThrowWhereTheFileCannotBeOpenedOrRead) {
  Records missing(nullptr);
  EXPECT_THROW(missing.next(), StepFailed);

  fake::Computer computer;
  computer.files.put("C:\\job.txt", "uno\r\ndue");
  computer.journal.failCall(3);
  Records broken(computer.files.openInput("C:\\job.txt"));
  EXPECT_EQ(broken.next(), "uno");
  EXPECT_THROW(broken.next(), StepFailed);
}

}  // namespace
}  // namespace tellaxis
