// Diary list: the order of the rows, what is left out, and what is asked before a reprint.
#include "ui/model/diary_list.h"

#include <gtest/gtest.h>

#include <chrono>

namespace tellaxis::ui {
namespace {

DiaryEntry entry(int number, Device device, Outcome outcome) {
  return {.id = "030307-" + std::to_string(number),
          .time = "2003-03-07T09:30:0" + std::to_string(number) + ".125",
          .device = device,
          .job = "job" + std::to_string(number) + ".txt",
          .bytes = 120,
          .outcome = outcome,
          .ms = 34,
          .copy = "2003-03-07\\093000-000-job.txt"};
}

class DiaryListTest : public testing::Test {
 protected:
  DiaryListTest() {
    std::vector<DiaryEntry> day{
        entry(1, Device::fiscalPrinter, Outcome::confirmed), entry(2, Device::courtesyPrinter, Outcome::failed),
        entry(3, Device::courtesyPrinter, Outcome::done), entry(4, Device::display, Outcome::discarded)};
    day[1].reason = "manca la carta";
    list.load(std::move(day));
  }

  std::string ids() const {
    std::string text;
    for (std::size_t row = 0; row < list.size(); ++row) text += list.at(row).id.substr(7);
    return text;
  }

  DiaryList list;
};

TEST_F(DiaryListTest, TheLatestJobComesFirst) { EXPECT_EQ(ids(), "4321"); }

TEST_F(DiaryListTest, ARowHasTimeDeviceOutcomeJobReasonAndId) {
  EXPECT_EQ(list.cell(2, DiaryList::time), "09:30:02");
  EXPECT_EQ(list.cell(2, DiaryList::device), "preconto");
  EXPECT_EQ(list.cell(2, DiaryList::outcome), "non riuscito");
  EXPECT_EQ(list.cell(2, DiaryList::job), "job2.txt");
  EXPECT_EQ(list.cell(2, DiaryList::reason), "manca la carta");
  EXPECT_EQ(list.cell(2, DiaryList::id), "030307-2");
}

TEST_F(DiaryListTest, ProblemsAreThoseOfTheDiary) {
  EXPECT_TRUE(list.isProblem(0));
  EXPECT_FALSE(list.isProblem(1));
  EXPECT_TRUE(list.isProblem(2));
  EXPECT_FALSE(list.isProblem(3));
  EXPECT_EQ(list.summary(), "4 lavori, 2 problemi");
}

TEST_F(DiaryListTest, OneDeviceOrTheProblemsAloneCanBeChosen) {
  list.filter({.device = Device::courtesyPrinter});
  EXPECT_EQ(ids(), "32");
  list.filter({.device = Device::courtesyPrinter, .problemsOnly = true});
  EXPECT_EQ(ids(), "2");
  EXPECT_EQ(list.summary(), "1 lavoro, 1 problema");
  list.filter({.problemsOnly = true});
  EXPECT_EQ(ids(), "42");
  list.filter({.device = Device::slipPrinter});
  EXPECT_EQ(list.summary(), "0 lavori, 0 problemi");
}

TEST_F(DiaryListTest, WhatIsChosenStaysChosenWhenTheDayIsReadAgain) {
  list.filter({.problemsOnly = true});
  list.load({entry(1, Device::fiscalPrinter, Outcome::confirmed), entry(5, Device::display, Outcome::failed)});
  EXPECT_EQ(ids(), "5");
  EXPECT_EQ(list.rowOf("030307-5"), 0U);
  EXPECT_EQ(list.rowOf("030307-1"), std::nullopt);
}

TEST(DiaryListQuestion, AFiscalJobIsAskedAboutMoreStrongly) {
  const ReprintQuestion courtesy = questionFor(entry(1, Device::courtesyPrinter, Outcome::done));
  EXPECT_FALSE(courtesy.warning);
  EXPECT_FALSE(courtesy.consent.fiscal);
  EXPECT_EQ(courtesy.text, "Rimettere in coda job1.txt (preconto, 09:30:01)?");

  const ReprintQuestion notIssued = questionFor(entry(2, Device::fiscalPrinter, Outcome::givenUp));
  EXPECT_TRUE(notIssued.warning);
  EXPECT_TRUE(notIssued.consent.fiscal);
  EXPECT_FALSE(notIssued.consent.evenIfIssued);

  for (const Outcome outcome : {Outcome::delivered, Outcome::confirmed, Outcome::unconfirmed}) {
    const ReprintQuestion issued = questionFor(entry(3, Device::fiscalPrinter, outcome));
    EXPECT_TRUE(issued.warning);
    EXPECT_TRUE(issued.consent.evenIfIssued);
    EXPECT_NE(issued.text.find("un secondo scontrino"), std::string::npos);
  }
}

TEST(DiaryListQuestion, WithoutItsFileAJobCannotBePrintedAgain) {
  DiaryEntry job = entry(1, Device::courtesyPrinter, Outcome::done);
  EXPECT_TRUE(canReprint(job));
  job.copy.clear();
  EXPECT_FALSE(canReprint(job));
}

TEST(DiaryListDetails, TellHowItEndedAndWhy) {
  DiaryEntry job = entry(2, Device::slipPrinter, Outcome::failed);
  job.reason = "manca la carta";
  job.count = 3;
  EXPECT_EQ(detailsOf(job),
            "job2.txt - ricevuta, non riuscito\nAlle 09:30:02, 120 byte, 34 ms, 3 tentativi (030307-2)\n"
            "Motivo: manca la carta");
}

TEST(DiaryListDay, IsWrittenAsItIsReadHere) {
  EXPECT_EQ(dayForReader(Day(std::chrono::year(2026) / 11 / 21)), "21/11/2026");
}

/// A day of the busiest kind is there before somebody looks for it; the reading itself is measured elsewhere.
TEST(DiaryListSize, AHundredThousandJobsAreRows) {
  std::vector<DiaryEntry> day(100'000, entry(1, Device::courtesyPrinter, Outcome::done));
  day.front().outcome = Outcome::failed;
  DiaryList list;
  list.load(std::move(day));
  EXPECT_EQ(list.size(), 100'000U);
  EXPECT_TRUE(list.isProblem(99'999));
  EXPECT_EQ(list.summary(), "100000 lavori, 1 problema");
}

}  // namespace
}  // namespace tellaxis::ui
