// Take-over: the accounts of the point-of-sale application in our own settings.
#include "connect/take_over.h"

#include "fake/take_over_desk.h"

namespace tellaxis {
namespace {

using fake::Calls;
using fake::own;
using fake::pointOfSale;
using fake::sweepFailingSteps;
using testing::ElementsAre;
using testing::IsEmpty;

struct Desk : fake::TakeOverDesk {
  void giveFtpAccount() {
    posSetting("Si_FTP_ptp", "ftp.example.it:2121");
    posSetting("Si_NomeUT_ptp", "banco");
    posSetting("Si_Psw_ptp", "segreta");
  }

  void giveDialUpAccount() {
    posSetting("GG_CONNESSIONE", "Provider");
    posSetting("GG_ACCOUNT", "utente");
    posSetting("GG_PSW", "0123");
  }
};

std::string reading(std::string_view key, std::string_view file) {
  return "read [Varie] " + std::string(key) + " of " + std::string(file);
}

std::string writing(std::string_view assignment) {
  return "write [Varie] " + std::string(assignment) + " to " + std::string(own);
}

TEST(FTPStartUPOrbis, ReadsTheWholeAccountThenWritesItInOrder) {
  Desk desk;
  desk.giveFtpAccount();
  FTP_StartUP_Orbis(desk.bridge);
  EXPECT_THAT(
      desk.computer.journal.calls(),
      ElementsAre(reading("Orbis_Setting", own), reading("Si_FTP_ptp", pointOfSale),
                  reading("Si_NomeUT_ptp", pointOfSale), reading("Si_Psw_ptp", pointOfSale),
                  writing("FTP_Indirizzo=ftp.example.it:2121"), writing("FTP_User=banco"), writing("FTP_Pw=segreta")));
}

TEST(FTPStartUPOrbis, EmptiesTheAccountThatTheOtherSideDoesNotHave) {
  Desk desk;
  desk.setting("FTP_Indirizzo", "vecchio");
  desk.setting("FTP_User", "vecchio");
  desk.setting("FTP_Pw", "vecchia");
  FTP_StartUP_Orbis(desk.bridge);
  EXPECT_EQ(desk.setting("FTP_Indirizzo"), "");
  EXPECT_EQ(desk.setting("FTP_User"), "");
  EXPECT_EQ(desk.setting("FTP_Pw"), "");
}

TEST(WEBStartUPOrbis, CopiesACompleteAccountAndMarksItToBeDialled) {
  Desk desk;
  desk.giveDialUpAccount();
  WEB_StartUP_Orbis(desk.bridge);
  EXPECT_THAT(desk.computer.journal.callsThatBegin("write "),
              ElementsAre(writing("WEB_Connection=Provider"), writing("WEB_User=utente"), writing("WEB_Pw=0123"),
                          writing("WEB_chkDial=-1")));
}

TEST(WEBStartUPOrbis, DoesNotDialWhenAnyOfTheThreeIsEmpty) {
  for (const std::string_view key : {"GG_CONNESSIONE", "GG_ACCOUNT", "GG_PSW"}) {
    Desk desk;
    desk.giveDialUpAccount();
    desk.posSetting(key, "");
    WEB_StartUP_Orbis(desk.bridge);
    EXPECT_EQ(desk.setting("WEB_chkDial"), "0") << key;
  }
}

TEST(WEBStartUPOrbis, StoresEmptyValuesAsEmpty) {
  Desk desk;
  desk.setting("WEB_Pw", "vecchia");
  desk.giveDialUpAccount();
  desk.posSetting("GG_PSW", "");
  WEB_StartUP_Orbis(desk.bridge);
  EXPECT_EQ(desk.setting("WEB_Pw"), "");
  EXPECT_EQ(desk.setting("WEB_User"), "utente");
}

struct Procedure {
  std::string_view name;
  void (*run)(Bridge&);
};

class BothProcedures : public testing::TestWithParam<Procedure> {};

TEST_P(BothProcedures, ReadTheFlagAnewAndTouchNothingWhenItIsFalse) {
  for (const std::string_view flag : {"0", "Falso", "False", "falso"}) {
    Desk desk;
    desk.bridge.settings.Orbis_Setting = true;
    desk.setting("Orbis_Setting", flag);
    GetParam().run(desk.bridge);
    EXPECT_FALSE(desk.bridge.settings.Orbis_Setting) << flag;
    EXPECT_THAT(desk.computer.journal.calls(), ElementsAre(reading("Orbis_Setting", own))) << flag;
  }
}

TEST_P(BothProcedures, AreOnWhereTheFlagIsNotGiven) {
  Desk desk;
  GetParam().run(desk.bridge);
  EXPECT_TRUE(desk.bridge.settings.Orbis_Setting);
  EXPECT_FALSE(desk.computer.journal.callsThatBegin("write ").empty());
}

TEST_P(BothProcedures, KeepTheFlagThatCannotBeConverted) {
  for (const bool before : {false, true}) {
    Desk desk;
    desk.bridge.settings.Orbis_Setting = before;
    desk.setting("Orbis_Setting", "forse");
    GetParam().run(desk.bridge);
    EXPECT_EQ(desk.bridge.settings.Orbis_Setting, before);
    EXPECT_EQ(desk.computer.journal.callsThatBegin("write ").empty(), !before);
    EXPECT_EQ(desk.computer.trace.failures.size(), 1U);
  }
}

INSTANTIATE_TEST_SUITE_P(TakeOver, BothProcedures,
                         testing::Values(Procedure{"FTP", FTP_StartUP_Orbis}, Procedure{"WEB", WEB_StartUP_Orbis}),
                         [](const auto& test) { return std::string(test.param.name); });

TEST(FTPStartUPOrbis, GoesOnAfterEachFailingStep) {
  const auto run = [](std::size_t failingCall) {
    Desk desk;
    desk.giveFtpAccount();
    desk.computer.journal.failCall(failingCall);
    FTP_StartUP_Orbis(desk.bridge);
    return desk.computer.journal.calls();
  };
  const Calls next = {reading("Si_NomeUT_ptp", pointOfSale), reading("Si_Psw_ptp", pointOfSale)};
  const std::string server = writing("FTP_Indirizzo=ftp.example.it:2121");
  sweepFailingSteps(
      run, {{.call = reading("Si_FTP_ptp", pointOfSale),
             .dropped = 3,
             .instead = {next[0], next[1], writing("FTP_Indirizzo=")}},
            {.call = next[0], .dropped = 3, .instead = {next[1], server, writing("FTP_User=")}},
            {.call = next[1], .dropped = 3, .instead = {server, writing("FTP_User=banco"), writing("FTP_Pw=")}}});
}

TEST(WEBStartUPOrbis, GoesOnAfterEachFailingStep) {
  const auto run = [](std::size_t failingCall) {
    Desk desk;
    desk.giveDialUpAccount();
    desk.computer.journal.failCall(failingCall);
    WEB_StartUP_Orbis(desk.bridge);
    return desk.computer.journal.calls();
  };
  const Calls reads = {reading("GG_CONNESSIONE", pointOfSale), reading("GG_ACCOUNT", pointOfSale),
                       reading("GG_PSW", pointOfSale)};
  const auto after = [&](std::size_t first, std::array<std::string, 3> values) {
    Calls calls(reads.begin() + static_cast<std::ptrdiff_t>(first), reads.end());
    for (const std::string& assignment :
         {"WEB_Connection=" + values[0], "WEB_User=" + values[1], "WEB_Pw=" + values[2], std::string("WEB_chkDial=0")})
      calls.push_back(writing(assignment));
    return calls;
  };
  sweepFailingSteps(run, {{.call = reads[0], .dropped = 6, .instead = after(1, {"", "utente", "0123"})},
                          {.call = reads[1], .dropped = 5, .instead = after(2, {"Provider", "", "0123"})},
                          {.call = reads[2], .dropped = 4, .instead = after(3, {"Provider", "utente", ""})}});
}

}  // namespace
}  // namespace tellaxis
