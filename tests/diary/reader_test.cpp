// Reader: which entries a question finds.
#include "diary/reader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "fake/computer.h"

namespace tellaxis {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ReaderTest : public testing::Test {
 protected:
  ReaderTest() {
    computer.files.addFolder("C:\\d");
    add("2026-11-20", {.id = "261120-1", .time = "t", .device = Device::fiscalPrinter, .outcome = Outcome::confirmed});
    add("2026-11-21", {.id = "261121-1", .time = "t", .device = Device::slipPrinter, .outcome = Outcome::failed});
    add("2026-11-21", {.id = "261121-2", .time = "t", .device = Device::fiscalPrinter, .outcome = Outcome::unanswered});
    add("2026-11-22", {.id = "261122-1", .time = "t", .device = Device::slipPrinter, .outcome = Outcome::done});
  }

  void add(const std::string& day, const DiaryEntry& entry) {
    const std::string path = "C:\\d\\" + day + ".jsonl";
    computer.files.put(path, computer.files.text(path) + lineOf(entry) + "\n");
  }
  std::vector<std::string> ids(const DiaryQuery& query) {
    std::vector<std::string> found;
    for (const DiaryEntry& entry : readDiary(computer.host, "C:\\d", query)) found.push_back(entry.id);
    return found;
  }

  fake::Computer computer;
};

TEST_F(ReaderTest, FindsByDaysDeviceAndProblems) {
  EXPECT_THAT(ids({}), ElementsAre("261120-1", "261121-1", "261121-2", "261122-1"));
  EXPECT_THAT(ids({.from = dayFrom("2026-11-21"), .to = dayFrom("2026-11-21")}), ElementsAre("261121-1", "261121-2"));
  EXPECT_THAT(ids({.from = dayFrom("2026-11-22")}), ElementsAre("261122-1"));
  EXPECT_THAT(ids({.device = Device::slipPrinter}), ElementsAre("261121-1", "261122-1"));
  EXPECT_THAT(ids({.problemsOnly = true}), ElementsAre("261121-1", "261121-2"));
  EXPECT_THAT(ids({.from = dayFrom("2027-01-01")}), IsEmpty());
}

TEST_F(ReaderTest, TheLastLineOfAnIdCounts) {
  add("2026-11-21",
      {.id = "261121-1", .time = "t", .device = Device::slipPrinter, .outcome = Outcome::done, .count = 9});
  EXPECT_THAT(ids({.problemsOnly = true}), ElementsAre("261121-2"));
  EXPECT_EQ(findEntry(computer.host, "C:\\d", "261121-1")->count, 9);
}

TEST_F(ReaderTest, LinesThatNobodyKnowsArePassedOver) {
  computer.files.put("C:\\d\\2026-11-23.jsonl", "\n{}\nrubbish\n{\"id\":\"261123-1\",\"time\":\"t\"}\n{\"id\":\"26");
  EXPECT_THAT(ids({.from = dayFrom("2026-11-23")}), ElementsAre("261123-1"));
}

TEST_F(ReaderTest, AnIdThatIsNotThereIsNotFound) {
  for (const char* id : {"", "261121-3", "261121", "270101-1", "..\\x"})
    EXPECT_FALSE(findEntry(computer.host, "C:\\d", id)) << id;
}

}  // namespace
}  // namespace tellaxis
