// Command line: what is taken, and the one line about what is not.
#include "app/command_line.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

namespace tellaxis {
namespace {

using testing::HasSubstr;

std::variant<CommandLine, EndAtOnce> read(const std::vector<std::string>& arguments) {
  return readCommandLine("tellaxisd", arguments);
}

CommandLine taken(const std::vector<std::string>& arguments) {
  auto result = read(arguments);
  if (const auto* end = std::get_if<EndAtOnce>(&result)) ADD_FAILURE() << end->text;
  return std::get<CommandLine>(result);
}

std::string refused(const std::vector<std::string>& arguments) {
  const auto result = read(arguments);
  const auto* end = std::get_if<EndAtOnce>(&result);
  if (end == nullptr) return "taken";
  EXPECT_EQ(end->status, 2);
  EXPECT_EQ(end->text.find('\n'), end->text.size() - 1) << "more than one line: " << end->text;
  return end->text;
}

TEST(CommandLine, WithoutACommandTheProgramStays) {
  EXPECT_EQ(taken({}).command, Command::stay);
  EXPECT_EQ(taken({"--interval", "50"}).pollingInterval, 50);
}

TEST(CommandLine, OptionsStandBeforeOrAfterTheCommand) {
  for (const auto& arguments : {std::vector<std::string>{"--main-folder", ".", "--drive", "C=/b", "ftp"},
                                {"ftp", "--main-folder", ".", "--drive", "C=/b"},
                                {"--main-folder", ".", "ftp", "--drive", "C=/b"},
                                {"--drive", "C=/b", "ftp", "--main-folder=."}}) {
    const CommandLine line = taken(arguments);
    EXPECT_EQ(line.command, Command::ftp);
    EXPECT_EQ(line.system.mainFolder, ".");
    EXPECT_EQ(line.system.drives.at('C'), "/b");
  }
}

TEST(CommandLine, TheRoleIsClientUnlessGiven) {
  EXPECT_EQ(taken({"pianificate"}).stationRole, "");
  EXPECT_EQ(taken({"pianificate", "--postazione", "SERVER"}).stationRole, "SERVER");
  EXPECT_EQ(taken({"--postazione", "CLIENT", "pianificate"}).stationRole, "CLIENT");
}

TEST(CommandLine, ThePretendedMinuteHasItsWeekday) {
  const auto now = taken({"pianificate", "--now", "2003-03-07 09:30"}).now;
  ASSERT_TRUE(now);
  EXPECT_EQ(now->year, 2003);
  EXPECT_EQ(now->month, 3);
  EXPECT_EQ(now->day, 7);
  EXPECT_EQ(now->weekday, 5);
  EXPECT_EQ(now->hour, 9);
  EXPECT_EQ(now->minute, 30);
  EXPECT_EQ(taken({"pianificate", "--now", "2024-02-29 23:59"}).now->weekday, 4);
  EXPECT_EQ(taken({"pianificate", "--now", "2026-11-22 00:00"}).now->weekday, 0);
  EXPECT_FALSE(taken({"pianificate"}).now);
}

TEST(CommandLine, AMinuteThatIsNoneIsRefused) {
  for (const std::string text : {"", "oggi", "2003-03-07", "2003-03-07 9:30", "2003-02-29 09:30", "2003-13-01 09:30",
                                 "2003-00-01 09:30", "2003-03-07 24:00", "2003-03-07 09:60", "2003-03-07T09:30",
                                 "2003-03-07 09:30 ", "2003-03-07 +9:30", "-003-03-07 09:30"})
    EXPECT_THAT(refused({"pianificate", "--now=" + text}), HasSubstr("--now")) << text;
}

TEST(CommandLine, ARoleThatIsNoneIsRefused) {
  for (const std::string text : {"", "server", "ALTRO"})
    EXPECT_THAT(refused({"pianificate", "--postazione=" + text}), HasSubstr("--postazione")) << text;
}

TEST(CommandLine, WhatBelongsToTheScheduledOperationsIsRefusedElsewhere) {
  EXPECT_EQ(refused({"ftp", "--now", "2003-03-07 09:30"}), "tellaxisd: --now: vale solo per pianificate\n");
  EXPECT_EQ(refused({"--now", "2003-03-07 09:30"}), "tellaxisd: --now: vale solo per pianificate\n");
  EXPECT_EQ(refused({"ftp", "--postazione", "SERVER"}), "tellaxisd: --postazione: vale solo per pianificate\n");
  EXPECT_EQ(refused({"--postazione", "SERVER"}), "tellaxisd: --postazione: vale solo per pianificate\n");
}

TEST(CommandLine, AnUnknownOrSecondCommandIsNamed) {
  EXPECT_EQ(refused({"stampa"}), "tellaxisd: argomento sconosciuto: stampa\n");
  EXPECT_EQ(refused({"ftp", "pianificate"}), "tellaxisd: argomento sconosciuto: pianificate\n");
  EXPECT_EQ(refused({"--stampa"}), "tellaxisd: argomento sconosciuto: --stampa\n");
  EXPECT_THAT(refused({"pianificate", "--now"}), HasSubstr("--now"));
}

TEST(CommandLine, AnOptionWithoutItsValueIsNamed) {
  EXPECT_EQ(refused({"--interval"}), "tellaxisd: argomento senza valore: --interval\n");
  EXPECT_EQ(refused({"pianificate", "--now"}), "tellaxisd: argomento senza valore: --now\n");
  EXPECT_EQ(refused({"--trace=si"}), "tellaxisd: argomento sconosciuto: --trace=si\n");
}

TEST(CommandLine, AnOptionIsGivenOnceOnlyADriveMayBeGivenAgain) {
  EXPECT_EQ(refused({"--interval", "50", "--interval", "60"}), "tellaxisd: --interval: basta una volta\n");
  EXPECT_EQ(taken({"--drive", "C=/b", "--drive", "d=/e/"}).system.drives.at('D'), "/e");
}

TEST(CommandLine, OnlyACommandThatTakesAWordGetsOne) {
  EXPECT_EQ(taken({"ristampa", "a1"}).diary.id, "a1");
  EXPECT_EQ(refused({"ristampa", "a1", "b2"}), "tellaxisd: argomento sconosciuto: b2\n");
  EXPECT_EQ(refused({"ristampa"}), "tellaxisd: ristampa: serve l'ID del lavoro, come lo mostra diario\n");
  EXPECT_EQ(refused({"diario", "a1"}), "tellaxisd: argomento sconosciuto: a1\n");
}

TEST(CommandLine, TheHelpNamesCommandsAndOptions) {
  const auto help = std::get<EndAtOnce>(read({"--help"}));
  EXPECT_EQ(help.status, 0);
  for (const std::string_view name : {"ftp", "pianificate", "--postazione", "--now", "--main-folder", "--drive",
                                      "--devices", "--interval", "--locale", "--trace", "--help", "--version"})
    EXPECT_THAT(help.text, HasSubstr(std::string(name)));
  EXPECT_EQ(std::get<EndAtOnce>(read({"-h"})).text, help.text);
}

TEST(CommandLine, TheHelpFitsAScreen) {
  const auto help = std::get<EndAtOnce>(read({"--help"})).text;
  for (std::size_t begin = 0, end = 0; begin < help.size(); begin = end + 1) {
    end = help.find('\n', begin);
    EXPECT_LE(end - begin, 95U) << help.substr(begin, end - begin);
    EXPECT_NE(help[end - 1], ' ') << help.substr(begin, end - begin);
  }
}

}  // namespace
}  // namespace tellaxis
