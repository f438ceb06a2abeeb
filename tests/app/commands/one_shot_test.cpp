// One-shot: operations called for from outside touch nothing but what is theirs.
#include "app/commands/one_shot.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "fake/computer.h"

namespace tellaxis {
namespace {

using testing::AnyOf;
using testing::Each;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

constexpr std::string_view settingsFile = "C:\\Tellaxis\\_Tellaxis.ini";

void request(fake::Computer& computer, std::string_view key, std::string_view value) {
  computer.profiles.put(settingsFile, "Varie", key, value);
}

TEST(TransferOnce, TellsWhetherTheTransferSucceeded) {
  for (const bool succeeds : {true, false}) {
    fake::Computer computer;
    request(computer, "FTP_Azione", "2");
    request(computer, "FTP_Indirizzo", "ftp.example");
    request(computer, "FTP_NomeFile", "chiusura.txt");
    computer.ftpClients.getSucceeds = succeeds;
    EXPECT_EQ(transferOnce(computer.host, "C:\\Tellaxis"), succeeds);
    EXPECT_EQ(computer.profiles.value(settingsFile, "Varie", "FTP_Esito"), succeeds ? "-1" : "0");
  }
}

TEST(TransferOnce, RunsNoStartUp) {
  fake::Computer computer;
  request(computer, "FTP_Azione", "1");
  transferOnce(computer.host, "C:\\Tellaxis");
  EXPECT_THAT(computer.journal.calls(),
              Each(AnyOf(StartsWith("read [Varie] FTP_"), StartsWith("read [Varie] WEB_"),
                         StartsWith("write [Varie] FTP_"), StartsWith("ftp "), StartsWith("lookUp "))));
}

TEST(RunScheduledOnce, TakesThePointOfSaleFolderFromTheSettings) {
  fake::Computer computer;
  request(computer, "Orbis_Directory", "D:\\POS");
  runScheduledOnce(computer.host, "C:\\Tellaxis", "CLIENT", std::nullopt);
  EXPECT_THAT(computer.journal.calls(),
              testing::ElementsAre("read [Varie] Orbis_Directory of C:\\Tellaxis\\_Tellaxis.ini",
                                   "read [VARIE] VEN#0930 of D:\\POS\\_Schedulatore.ini",
                                   "read [VARIE] PRC_ACTIVE of D:\\POS\\_Schedulatore.ini"));
}

TEST(RunScheduledOnce, WithoutSettingsThePointOfSaleFolderIsTheUsualOne) {
  fake::Computer computer;
  runScheduledOnce(computer.host, "C:\\Tellaxis", "CLIENT", std::nullopt);
  EXPECT_THAT(computer.journal.calls(), testing::Contains("read [VARIE] VEN#0930 of C:\\MERIDIA\\_Schedulatore.ini"));
  EXPECT_THAT(computer.journal.callsThatBegin("write"), IsEmpty());
}

TEST(RunScheduledOnce, PretendsAnotherMinute) {
  fake::Computer computer;
  runScheduledOnce(computer.host, "C:\\Tellaxis", "CLIENT",
                   platform::DateTime{.year = 2026, .month = 11, .day = 22, .weekday = 0, .hour = 23, .minute = 5});
  EXPECT_THAT(computer.journal.calls(), testing::Contains(HasSubstr(" DOM#2305 ")));
}

TEST(RunScheduledOnce, TheRoleDecidesWhatTheRestoreIsTold) {
  for (const auto& [role, active] : {std::pair("SERVER", "1"), std::pair("CLIENT", "2")}) {
    fake::Computer computer;
    computer.profiles.put("C:\\MERIDIA\\_Schedulatore.ini", "VARIE", "VEN#0930", "2#x#");
    runScheduledOnce(computer.host, "C:\\Tellaxis", role, std::nullopt);
    EXPECT_EQ(computer.profiles.value("C:\\MERIDIA\\_Local.ini", "VARIE", "TLX_R51_ACTIVE"), active);
  }
}

TEST(StationRole, IsTheOneAskedForElseThatOfTheDevicesFileElseClient) {
  EXPECT_EQ(stationRoleFrom("CLIENT", {.role = "SERVER"}), "CLIENT");
  EXPECT_EQ(stationRoleFrom("", {.role = "SERVER"}), "SERVER");
  EXPECT_EQ(stationRoleFrom("", {}), "CLIENT");
}

}  // namespace
}  // namespace tellaxis
