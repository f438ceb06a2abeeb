// Day: calendar days, moments and names of files.
#include "diary/day.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "fake/computer.h"

namespace tellaxis {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

constexpr Day november21{std::chrono::year(2026) / 11 / 21};

TEST(Day, IsReadInBothWaysOfWritingAndOnlyWhereTheCalendarHasIt) {
  EXPECT_EQ(dayFrom("2026-11-21"), november21);
  EXPECT_EQ(dayFrom("21/11/2026"), november21);
  for (const char* text : {"", "2026-11-31", "2026-1-1", "21/11/26", "2026/11/21", "x026-11-21", "2026-11-211"})
    EXPECT_FALSE(dayFrom(text)) << text;
}

TEST(Day, OfAnIdIsItsFirstSixDigits) {
  EXPECT_EQ(dayOfId(idPrefix(november21) + "17"), november21);
  for (const char* id : {"", "261121", "2611211-7", "261321-1", "x61121-1"}) EXPECT_FALSE(dayOfId(id)) << id;
}

TEST(Moment, IsWrittenForTheDiaryAndForAFileName) {
  const Moment moment{november21, 36'342'007ms};
  EXPECT_EQ(textOf(moment), "2026-11-21T10:05:42.007");
  EXPECT_EQ(fileTime(moment), "100542-007");
}

TEST(Moment, IsThatOfTheClock) {
  fake::Computer computer;
  computer.clock.seconds = 9 * 3600 + 0.25;
  EXPECT_EQ(textOf(momentOf(computer.clock)), "2003-03-07T09:00:00.250");
}

TEST(Between, GoesAcrossMidnightAndIsNothingWhereTheClockWasSetBack) {
  EXPECT_EQ(between({november21, 23h + 59min}, {november21 + std::chrono::days(1), 1min}), 2min);
  EXPECT_EQ(between({november21, 3h}, {november21, 2h}), 0ms);
}

TEST(DaysIn, AreTheDaysWithLinesFromTheOldestOn) {
  fake::Computer computer;
  computer.files.addFolder("C:\\d");
  for (const char* name : {"2026-11-21.jsonl", "2026-02-30.jsonl", "2025-12-31.jsonl", "21-11-2026.jsonl", "x.jsonl",
                           "2026-11-22.txt", "ultimo.json"})
    computer.files.put(std::string("C:\\d\\") + name, "");
  EXPECT_THAT(daysIn(computer.files, "C:\\d"), ElementsAre(*dayFrom("2025-12-31"), november21));
  EXPECT_THAT(daysIn(computer.files, "C:\\none"), ElementsAre());
}

}  // namespace
}  // namespace tellaxis
