// Diary command: what `diario` shows, and what `ristampa` loads and says.
#include "app/commands/diary_command.h"

#include <gtest/gtest.h>

#include "fake/computer.h"

namespace tellaxis {
namespace {

const platform::BridgeOptions withDiary{.diary = "diario"};

class DiaryCommandTest : public testing::Test {
 protected:
  DiaryCommandTest() {
    computer.files.addFolder("C:\\cassa\\diario");
    add("2003-03-06", {.id = "030306-1", .time = "2003-03-06T08:00:00.000", .job = "ieri.txt"});
    add("2003-03-07", {.id = "030307-1",
                       .time = "2003-03-07T09:01:02.345",
                       .device = Device::slipPrinter,
                       .job = "perch\xE9.txt",
                       .outcome = Outcome::failed,
                       .reason = "EndDoc LPT1:: carta finita",
                       .copy = "2003-03-07\\090102-345-ricevuta.txt",
                       .count = 3});
  }

  void add(const std::string& day, const DiaryEntry& entry) {
    computer.files.put("C:\\cassa\\diario\\" + day + ".jsonl", lineOf(entry) + "\n");
  }
  CommandResult show(const DiaryRequest& request = {}) {
    return showDiary(computer.host, withDiary, "C:\\cassa", request);
  }

  fake::Computer computer;
};

TEST_F(DiaryCommandTest, ShowsTodaysJobsInItalian) {
  const CommandResult shown = show();
  EXPECT_EQ(shown.status, 0);
  EXPECT_EQ(shown.text,
            "030307-1    07/03/2003 09:01:02  ricevuta  non riuscito    perch\xC3\xA9.txt (3 tentativi) - "
            "EndDoc LPT1:: carta finita\n");
}

TEST_F(DiaryCommandTest, ShowsOtherDaysAndSaysWhereThereIsNothing) {
  EXPECT_NE(show({.query = {.to = dayFrom("2003-03-06")}}).text.find("ieri.txt"), std::string::npos);
  EXPECT_EQ(show({.query = {.from = dayFrom("2003-03-08")}}).text, "nessun lavoro\n");
  EXPECT_EQ(show({.query = {.from = dayFrom("2003-03-08")}, .json = true}).text, "");
}

TEST_F(DiaryCommandTest, InJsonALineIsThatOfTheDiary) {
  EXPECT_EQ(show({.json = true}).text, computer.files.text("C:\\cassa\\diario\\2003-03-07.jsonl"));
}

TEST_F(DiaryCommandTest, WithoutADiaryBothCommandsSaySo) {
  EXPECT_EQ(showDiary(computer.host, {}, "C:\\cassa", {}).status, 1);
  EXPECT_EQ(reprintFromDiary(computer.host, {}, "C:\\cassa", {.id = "030307-1"}, true).status, 1);
}

TEST_F(DiaryCommandTest, AReprintGoesWhereTheSettingsSay) {
  constexpr std::string_view settings = "C:\\cassa\\_Tellaxis.ini";
  computer.profiles.put(settings, "VARIE", "RF_Active", "-1");
  computer.profiles.put(settings, "VARIE", "RF_File", "C:\\RF\\ricevuta.txt");
  computer.files.put("C:\\cassa\\diario\\2003-03-07\\090102-345-ricevuta.txt", "ricevuta");
  const CommandResult reprinted = reprintFromDiary(computer.host, withDiary, "C:\\cassa", {.id = "030307-1"}, false);
  EXPECT_EQ(reprinted.text, "030307-1: rimesso in coda\n");
  EXPECT_EQ(reprinted.status, 0);
  EXPECT_EQ(computer.files.text("C:\\RF\\ricevuta.txt"), "ricevuta");
  EXPECT_TRUE(computer.journal.callsThatBegin("write ").empty()) << "the settings are only read";
}

}  // namespace
}  // namespace tellaxis
