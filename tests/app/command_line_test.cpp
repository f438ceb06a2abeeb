// Command line: what is taken, and the one line about what is not.
#include "app/command_line.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

namespace tellaxis {
namespace {

using testing::HasSubstr;
using testing::Not;

std::variant<CommandLine, EndAtOnce> read(const std::vector<std::string>& arguments,
                                          OneShots oneShots = OneShots::offered) {
  return readCommandLine("tellaxisd", arguments, oneShots);
}

CommandLine taken(const std::vector<std::string>& arguments) {
  auto result = read(arguments);
  if (const auto* end = std::get_if<EndAtOnce>(&result)) ADD_FAILURE() << end->text;
  return std::get<CommandLine>(result);
}

std::string refused(const std::vector<std::string>& arguments, OneShots oneShots = OneShots::offered) {
  const auto result = read(arguments, oneShots);
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
  EXPECT_EQ(taken({"pianificate"}).stationRole, "CLIENT");
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

TEST(CommandLine, AProgramWithoutOneShotsKnowsNothingOfThem) {
  EXPECT_EQ(refused({"ftp"}, OneShots::refused), "tellaxisd: argomento sconosciuto: ftp\n");
  EXPECT_EQ(refused({"--now", "2003-03-07 09:30"}, OneShots::refused), "tellaxisd: argomento sconosciuto: --now\n");
  const auto help = std::get<EndAtOnce>(read({"--help"}, OneShots::refused));
  EXPECT_THAT(help.text, Not(HasSubstr("pianificate")));
}

TEST(CommandLine, TheHelpNamesCommandsAndOptions) {
  const auto help = std::get<EndAtOnce>(read({"--help"}));
  EXPECT_EQ(help.status, 0);
  for (const std::string_view name : {"ftp", "pianificate", "--postazione", "--now", "--main-folder", "--drive",
                                      "--devices", "--interval", "--locale", "--trace", "--help", "--version"})
    EXPECT_THAT(help.text, HasSubstr(std::string(name)));
  EXPECT_THAT(help.text, Not(HasSubstr("@")));
}

}  // namespace
}  // namespace tellaxis
