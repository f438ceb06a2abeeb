// Schedule: what the timetable and by-hand requests start, and what they hand over.
#include "connect/schedule.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "fake/computer.h"
#include "fake/sweep.h"

namespace tellaxis {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::string_view settingsFile = "C:\\Tellaxis\\_Tellaxis.ini";
constexpr std::string_view timetable = "C:\\MERIDIA\\_Schedulatore.ini";
constexpr std::string_view local = "C:\\MERIDIA\\_Local.ini";
constexpr std::string_view dueKey = "VEN#0930";  // the fake clock starts on Friday 7 March 2003, 9:30

const std::string runtimeStart = "start \"C:\\RT\\msaccess.exe\" /runtime /wrkgrp \"C:\\MERIDIA\\System.mdw\" ";
const std::string restoreStart = runtimeStart + "\"C:\\MERIDIA\\Restore_51.mde\" style 6";
const std::string orbisStart = runtimeStart + "\"C:\\MERIDIA\\Orbis52.mde\" style 6";

/// A desk whose runtime is known; `entry` is due now where it is not empty.
struct Desk {
  explicit Desk(std::string_view entry = {}) {
    setMainFolder(bridge.settings, "C:\\Tellaxis");
    setPointOfSaleFolder(bridge.settings, "C:\\MERIDIA");
    bridge.form.Postazione.Text = "CLIENT";
    computer.profiles.put(settingsFile, "VARIE", "RunTimeOrbis51", "C:\\RT\\msaccess.exe");
    if (!entry.empty()) computer.profiles.put(timetable, "VARIE", dueKey, entry);
  }

  void requestByHand(std::string_view code) {
    computer.profiles.put(timetable, "VARIE", "PRC_ACTIVE", "-1");
    computer.profiles.put(local, "VARIE", "TLX_SO_OPE", code);
  }
  void run() { OperazioniPianificate(bridge); }
  fake::Calls starts() { return computer.journal.callsThatBegin("start "); }
  fake::Calls writes() { return computer.journal.callsThatBegin("write "); }
  std::string value(std::string_view file, std::string_view key) {
    return computer.profiles.value(file, "VARIE", key).value_or("(none)");
  }

  fake::Computer computer;
  Bridge bridge{computer.host};
};

TEST(OperazioniPianificate, WithNothingDueNothingIsWrittenOrStarted) {
  Desk desk;
  desk.run();
  EXPECT_THAT(desk.computer.journal.calls(), ElementsAre("read [VARIE] VEN#0930 of C:\\MERIDIA\\_Schedulatore.ini",
                                                         "read [VARIE] PRC_ACTIVE of C:\\MERIDIA\\_Schedulatore.ini"));
}

TEST(OperazioniPianificate, HandsOverTheEntryOfThisMinuteAndStartsOrbis52) {
  Desk desk("ab1#notte#");
  desk.run();
  EXPECT_THAT(
      desk.computer.journal.calls(),
      ElementsAre("read [VARIE] VEN#0930 of C:\\MERIDIA\\_Schedulatore.ini",
                  "read [VARIE] OP_LAST of C:\\Tellaxis\\_Tellaxis.ini",
                  "write [VARIE] OP_LAST=07032003#VEN#0930 to C:\\Tellaxis\\_Tellaxis.ini",
                  "write [VARIE] TLX_SO_ACTIVE=-1 to C:\\MERIDIA\\_Local.ini",
                  "write [VARIE] TLX_SO_OPE=AB1 to C:\\MERIDIA\\_Local.ini",
                  "write [VARIE] TLX_SO_TAG=NOTTE to C:\\MERIDIA\\_Local.ini",
                  "read [VARIE] PRC_ACTIVE of C:\\MERIDIA\\_Schedulatore.ini", "lookUp C:\\Tellaxis\\Orbis52.bat",
                  "read [VARIE] RunTimeOrbis51 of C:\\Tellaxis\\_Tellaxis.ini", orbisStart));
}

TEST(OperazioniPianificate, AnEntryMetTwiceInOneMinuteDoesNothingMoreNotEvenAByHandRequest) {
  Desk desk("1#x#");
  desk.run();
  desk.requestByHand("2");
  desk.computer.journal.clear();
  desk.run();
  EXPECT_THAT(desk.computer.journal.calls(), ElementsAre("read [VARIE] VEN#0930 of C:\\MERIDIA\\_Schedulatore.ini",
                                                         "read [VARIE] OP_LAST of C:\\Tellaxis\\_Tellaxis.ini"));
  EXPECT_EQ(desk.value(timetable, "PRC_ACTIVE"), "-1");
}

TEST(OperazioniPianificate, TheSameEntryIsDueAgainAWeekLater) {
  Desk desk("1#x#");
  desk.run();
  desk.computer.clock.date.day = 14;
  desk.run();
  EXPECT_EQ(desk.starts().size(), 2U);
  EXPECT_EQ(desk.value(settingsFile, "OP_LAST"), "14032003#VEN#0930");
}

TEST(OperazioniPianificate, ACodeThatBeginsWithTwoStartsTheRestore) {
  Desk desk("25#x#");
  desk.run();
  EXPECT_THAT(desk.starts(), ElementsAre(restoreStart));
  EXPECT_EQ(desk.value(local, "RESTORE_ACTIVE"), "-1");
}

TEST(OperazioniPianificate, AnyOtherFirstCharacterStartsOrbis52) {
  for (const std::string_view entry : {"1#x#", "12#x#", "A2#x#", "-#x#"}) {
    Desk desk(entry);
    desk.run();
    EXPECT_THAT(desk.starts(), ElementsAre(orbisStart)) << entry;
    EXPECT_EQ(desk.value(local, "RESTORE_ACTIVE"), "(none)");
  }
}

TEST(OperazioniPianificate, TheServerAndTheOthersAreToldApartForTheRestore) {
  const struct {
    std::string_view role;
    std::string_view active;
  } cases[] = {{"SERVER", "1"}, {"CLIENT", "2"}, {"", "2"}, {"server", "2"}};
  for (const auto& [role, active] : cases) {
    Desk desk("2#x#");
    desk.bridge.form.Postazione.Text = role;
    desk.run();
    EXPECT_EQ(desk.value(local, "RESTORE_ACTIVE"), "-1");
    EXPECT_EQ(desk.value(local, "TLX_R51_ACTIVE"), active) << role;
  }
}

TEST(OperazioniPianificate, ABatchFileOfTheProgramFolderIsStartedInsteadOfTheRuntime) {
  Desk restore("2#x#");
  restore.computer.files.put("C:\\Tellaxis\\Restore51.bat", "");
  restore.run();
  EXPECT_THAT(restore.starts(), ElementsAre("start C:\\Tellaxis\\Restore51.bat style 0"));

  Desk orbis("1#x#");
  orbis.computer.files.put("C:\\Tellaxis\\Orbis52.bat", "");
  orbis.run();
  EXPECT_THAT(orbis.starts(), ElementsAre("start C:\\Tellaxis\\Orbis52.bat style 2"));
}

TEST(OperazioniPianificate, ABatchFileOfAnotherSpellingIsNotTheOneLookedFor) {
  Desk desk("1#x#");
  desk.computer.files.put("C:\\Tellaxis\\ORBIS52.BAT", "");
  desk.run();
  EXPECT_THAT(desk.starts(), ElementsAre(orbisStart));
}

TEST(OperazioniPianificate, ABatchFileInAFolderWithBlanksIsOneWord) {
  Desk desk("1#x#");
  setMainFolder(desk.bridge.settings, "C:\\La Cassa");
  desk.computer.files.put("C:\\La Cassa\\Orbis52.bat", "");
  desk.run();
  EXPECT_THAT(desk.starts(), ElementsAre("start \"C:\\La Cassa\\Orbis52.bat\" style 2"));
}

TEST(OperazioniPianificate, AByHandRequestIsTakenOnce) {
  Desk desk;
  desk.requestByHand("2x");
  desk.run();
  EXPECT_THAT(desk.writes(), ElementsAre("write [VARIE] PRC_ACTIVE=0 to C:\\MERIDIA\\_schedulatore.ini",
                                         "write [VARIE] RESTORE_ACTIVE=-1 to C:\\MERIDIA\\_local.ini",
                                         "write [VARIE] TLX_R51_ACTIVE=2 to C:\\MERIDIA\\_local.ini"));
  EXPECT_THAT(desk.starts(), ElementsAre(restoreStart));
  desk.run();
  EXPECT_EQ(desk.starts().size(), 1U);
}

TEST(OperazioniPianificate, AByHandRequestMayBeANumber) {
  Desk desk;
  desk.requestByHand("200");
  desk.run();
  EXPECT_THAT(desk.starts(), ElementsAre(restoreStart));
}

TEST(OperazioniPianificate, AByHandRequestReplacesTheCodeOfTheTimetable) {
  Desk desk("#x#");  // the blank code leaves the code of the request in place
  desk.requestByHand("2");
  desk.run();
  EXPECT_THAT(desk.starts(), ElementsAre(restoreStart));
}

TEST(OperazioniPianificate, AByHandRequestWithoutACodeIsClearedAndStartsNothing) {
  Desk desk;
  desk.requestByHand("");
  desk.run();
  EXPECT_THAT(desk.writes(), ElementsAre("write [VARIE] PRC_ACTIVE=0 to C:\\MERIDIA\\_schedulatore.ini"));
  EXPECT_THAT(desk.starts(), IsEmpty());
}

TEST(OperazioniPianificate, AFlagThatIsNoTruthValueIsNoRequest) {
  Desk desk;
  desk.requestByHand("2");
  desk.computer.profiles.put(timetable, "VARIE", "PRC_ACTIVE", "forse");
  desk.run();
  EXPECT_THAT(desk.writes(), IsEmpty());
}

TEST(OperazioniPianificate, AnEntryWithoutSeparatorsIsHandedOverWithoutCodeAndTag) {
  Desk desk("2");
  desk.computer.profiles.put(local, "VARIE", "TLX_SO_OPE", "old");
  desk.run();
  EXPECT_THAT(desk.writes(), ElementsAre("write [VARIE] OP_LAST=07032003#VEN#0930 to C:\\Tellaxis\\_Tellaxis.ini",
                                         "write [VARIE] TLX_SO_ACTIVE=-1 to C:\\MERIDIA\\_Local.ini"));
  EXPECT_EQ(desk.value(local, "TLX_SO_OPE"), "old");
  EXPECT_THAT(desk.starts(), IsEmpty());
}

TEST(OperazioniPianificate, ATagCountsOnlyWhenItsSeparatorEndsIt) {
  Desk open("1#tag");
  open.run();
  EXPECT_EQ(open.value(local, "TLX_SO_TAG"), "(none)");

  Desk more("1#tag#altro#ancora#");
  more.run();
  EXPECT_EQ(more.value(local, "TLX_SO_TAG"), "TAG");
}

TEST(OperazioniPianificate, TheKeyIsMadeOfTheRegionsWeekdayAndTheMinute) {
  const struct {
    int weekday;
    double seconds;
    std::string_view key;
  } cases[] = {{0, 0, "DOM#0000"},      {1, 9 * 3600 + 5 * 60, "LUN#0905"},
               {2, 86'399, "MAR#2359"}, {3, 43'200, "MER#1200"},
               {4, 60, "GIO#0001"},     {6, 36'000, "SAB#1000"}};
  for (const auto& [weekday, seconds, key] : cases) {
    Desk desk;
    desk.computer.clock.date.weekday = weekday;
    desk.computer.clock.seconds = seconds;
    desk.run();
    EXPECT_EQ(desk.computer.journal.calls().front(),
              "read [VARIE] " + std::string(key) + " of C:\\MERIDIA\\_Schedulatore.ini");
  }
}

TEST(OperazioniPianificate, WeekdaysOfAnotherLanguageKeepTheirAccents) {
  Desk desk;
  desk.computer.locale.settings.weekdays[5] = "p\xE1tek";
  desk.run();
  EXPECT_EQ(desk.computer.journal.calls().front(), "read [VARIE] P\xC1T#0930 of C:\\MERIDIA\\_Schedulatore.ini");
}

fake::Calls runWithFailure(const std::function<void(Desk&)>& prepare, std::size_t failingCall) {
  Desk desk("25#x#");
  prepare(desk);
  desk.computer.journal.failCall(failingCall);
  desk.run();
  return desk.computer.journal.calls();
}

TEST(OperazioniPianificate, ARestoreGoesOnPastEveryFailingStep) {
  const auto byBatchFile = [](Desk& desk) { desk.computer.files.put("C:\\Tellaxis\\Restore51.bat", ""); };
  fake::sweepFailingSteps([&](std::size_t failingCall) { return runWithFailure(byBatchFile, failingCall); },
                          {{.call = "read [VARIE] VEN#0930 of C:\\MERIDIA\\_Schedulatore.ini",
                            .dropped = 10,
                            .instead = {"read [VARIE] PRC_ACTIVE of C:\\MERIDIA\\_Schedulatore.ini"}},
                           {.call = "lookUp C:\\Tellaxis\\Restore51.bat",
                            .dropped = 1,
                            .instead = {"read [VARIE] RunTimeOrbis51 of C:\\Tellaxis\\_Tellaxis.ini", restoreStart}}});
}

TEST(OperazioniPianificate, AByHandRequestGoesOnPastEveryFailingStep) {
  const std::string withoutRuntime =
      "start \"\" /runtime /wrkgrp \"C:\\MERIDIA\\System.mdw\" \"C:\\MERIDIA\\Orbis52.mde\" style 6";
  fake::sweepFailingSteps(
      [](std::size_t failingCall) {
        Desk desk;
        desk.requestByHand("1");
        desk.computer.journal.failCall(failingCall);
        desk.run();
        return desk.computer.journal.calls();
      },
      {{.call = "read [VARIE] PRC_ACTIVE of C:\\MERIDIA\\_Schedulatore.ini", .dropped = 5},
       {.call = "read [VARIE] Tlx_SO_OPE of C:\\MERIDIA\\_Local.ini",
        .dropped = 4,
        .instead = {"write [VARIE] PRC_ACTIVE=0 to C:\\MERIDIA\\_schedulatore.ini"}},
       {.call = "read [VARIE] RunTimeOrbis51 of C:\\Tellaxis\\_Tellaxis.ini",
        .dropped = 1,
        .instead = {withoutRuntime}}});
}

}  // namespace
}  // namespace tellaxis
