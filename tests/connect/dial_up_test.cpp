// Dial-up: the batch file, its run, and the wait for its end.
#include "connect/dial_up.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "fake/computer.h"
#include "fake/sweep.h"

namespace tellaxis {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::string_view settingsFile = "C:\\Tellaxis\\_Tellaxis.ini";
constexpr std::string_view batchFile = "C:\\TellaxisDial.bat";
constexpr std::string_view accountKeys[] = {"Int_Indirizzo", "Ind_User", "Ind_Pw"};

/// A desk with a complete dial-up account and a batch file left from an earlier call.
struct Desk {
  Desk() {
    setMainFolder(bridge.settings, "C:\\Tellaxis");
    account("Provider", "mario", "segreto");
    computer.files.put(batchFile, "old");
  }

  void account(std::string_view entry, std::string_view user, std::string_view password) {
    computer.profiles.put(settingsFile, "Varie", "Int_Indirizzo", entry);
    computer.profiles.put(settingsFile, "Varie", "Ind_User", user);
    computer.profiles.put(settingsFile, "Varie", "Ind_Pw", password);
  }
  /// What was done beyond reading the settings.
  fake::Calls deeds() {
    fake::Calls calls;
    for (const std::string& call : computer.journal.calls())
      if (!call.starts_with("read ")) calls.push_back(call);
    return calls;
  }

  fake::Computer computer;
  Bridge bridge{computer.host};
};

TEST(Connessione, ConnectRunsTheBatchFileMinimisedWithoutFocusAndWaits) {
  Desk desk;
  EXPECT_EQ(Connessione(desk.bridge, 1), -1);
  EXPECT_THAT(desk.computer.journal.calls(),
              ElementsAre("read [Varie] Int_Indirizzo of C:\\Tellaxis\\_Tellaxis.ini",
                          "read [Varie] Ind_User of C:\\Tellaxis\\_Tellaxis.ini",
                          "read [Varie] Ind_Pw of C:\\Tellaxis\\_Tellaxis.ini", "exists C:\\TellaxisDial.bat",
                          "remove C:\\TellaxisDial.bat",
                          "create owner-only C:\\TellaxisDial.bat rasdial Provider mario segreto\r\n",
                          "start C:\\TellaxisDial.bat style 6", "open 42", "wait 100", "close 100"));
}

TEST(Connessione, DisconnectRunsTheBatchFileHiddenAndWaits) {
  Desk desk;
  EXPECT_EQ(Connessione(desk.bridge, 2), -1);
  EXPECT_THAT(desk.deeds(), ElementsAre("exists C:\\TellaxisDial.bat", "remove C:\\TellaxisDial.bat",
                                        "create owner-only C:\\TellaxisDial.bat rasdial /disconnect\r\n",
                                        "start C:\\TellaxisDial.bat style 0", "open 42", "wait 100", "close 100"));
}

TEST(Connessione, WithAnySettingEmptyItIsFalseAndNoBatchFileIsWrittenOrDeleted) {
  for (const std::string_view key : accountKeys) {
    for (std::int16_t action = 1; action <= 3; ++action) {
      Desk desk;
      desk.computer.profiles.put(settingsFile, "Varie", key, "");
      EXPECT_EQ(Connessione(desk.bridge, action), 0) << key;
      EXPECT_THAT(desk.deeds(), IsEmpty()) << key;
      EXPECT_EQ(desk.computer.files.text(batchFile), "old");
    }
  }
}

TEST(Connessione, AnotherActionOnlyDeletesTheOldBatchFile) {
  Desk desk;
  EXPECT_EQ(Connessione(desk.bridge, 3), 0);
  EXPECT_THAT(desk.deeds(), ElementsAre("exists C:\\TellaxisDial.bat", "remove C:\\TellaxisDial.bat"));
  EXPECT_FALSE(desk.computer.files.has(batchFile));
}

TEST(Connessione, AConnectWhoseClientFailsIsTrueAllTheSame) {
  Desk desk;
  desk.computer.journal.failCall(7);  // the start
  EXPECT_EQ(Connessione(desk.bridge, 1), -1);
  EXPECT_EQ(desk.deeds().back(), "start C:\\TellaxisDial.bat style 6");
}

TEST(Connessione, ABatchFileThatCouldNotBeWrittenAnewIsNotRun) {
  Desk desk;
  desk.computer.journal.failCall(6);  // the creation
  EXPECT_EQ(Connessione(desk.bridge, 1), -1);
  EXPECT_THAT(desk.computer.journal.callsThatBegin("start"), IsEmpty());
}

TEST(Connessione, WithoutAnOldBatchFileNothingIsDeleted) {
  Desk desk;
  desk.computer.files.erase(batchFile);
  Connessione(desk.bridge, 1);
  EXPECT_THAT(desk.computer.journal.callsThatBegin("remove"), IsEmpty());
}

TEST(Connessione, AProgramInTheRootOfADriveHasItsBatchFileInThatRoot) {
  Desk desk;
  setMainFolder(desk.bridge.settings, "D:");
  for (const std::string_view key : accountKeys) desk.computer.profiles.put("D:\\_Tellaxis.ini", "Varie", key, "x");
  Connessione(desk.bridge, 2);
  EXPECT_THAT(desk.deeds(), testing::Contains("start D:\\Dial.bat style 0"));
}

TEST(Connessione, WhereTheRootIsClosedTheBatchFileGoesIntoTheUsersTemporaryFolder) {
  Desk desk;
  desk.computer.files.userTemporaryFolder = "C:\\Utenti\\mario\\Temp";
  desk.computer.journal.failCall(6);  // the batch file
  EXPECT_EQ(Connessione(desk.bridge, 2), -1);
  EXPECT_THAT(desk.deeds(), testing::IsSupersetOf(
                                {"create owner-only C:\\Utenti\\mario\\Temp\\TellaxisDial.bat rasdial /disconnect\r\n",
                                 "start C:\\Utenti\\mario\\Temp\\TellaxisDial.bat style 0"}));
}

TEST(Connessione, AFolderNameWithBlanksIsOneWordOfTheCommandLine) {
  Desk desk;
  setMainFolder(desk.bridge.settings, "C:\\La Cassa");
  for (const std::string_view key : accountKeys)
    desk.computer.profiles.put("C:\\La Cassa\\_Tellaxis.ini", "Varie", key, "x");
  Connessione(desk.bridge, 2);
  EXPECT_THAT(desk.deeds(), testing::Contains("start \"C:\\La CassaDial.bat\" style 0"));
}

TEST(Connessione, GoesOnPastEveryFailingStep) {
  const std::string start = "start C:\\TellaxisDial.bat style 6";
  fake::sweepFailingSteps(
      [](std::size_t failingCall) {
        Desk desk;
        desk.computer.journal.failCall(failingCall);
        const std::int16_t result = Connessione(desk.bridge, 1);
        EXPECT_EQ(result, failingCall >= 1 && failingCall <= 3 ? 0 : -1);
        return desk.computer.journal.calls();
      },
      {{.call = "read [Varie] Int_Indirizzo of C:\\Tellaxis\\_Tellaxis.ini",
        .dropped = 9,
        .instead = {"read [Varie] Ind_User of C:\\Tellaxis\\_Tellaxis.ini",
                    "read [Varie] Ind_Pw of C:\\Tellaxis\\_Tellaxis.ini"}},
       {.call = "read [Varie] Ind_User of C:\\Tellaxis\\_Tellaxis.ini",
        .dropped = 8,
        .instead = {"read [Varie] Ind_Pw of C:\\Tellaxis\\_Tellaxis.ini"}},
       {.call = "read [Varie] Ind_Pw of C:\\Tellaxis\\_Tellaxis.ini", .dropped = 7},
       {.call = "exists C:\\TellaxisDial.bat", .dropped = 1},
       {.call = "create owner-only C:\\TellaxisDial.bat rasdial Provider mario segreto\r\n", .dropped = 4},
       {.call = start, .dropped = 3},
       {.call = "open 42", .dropped = 2, .instead = {"wait 0", "close 0"}}});
}

TEST(EseguiEAttendi, AProgramThatDidNotStartIsNotWaitedFor) {
  Desk desk;
  desk.computer.journal.failCall(1);
  EseguiEAttendi(desk.bridge, "x.exe", platform::WindowStyle::hidden);
  EXPECT_THAT(desk.computer.journal.calls(), ElementsAre("start x.exe style 0"));
}

TEST(EseguiEAttendi, AHandleOfOneIsNeitherWaitedForNorClosed) {
  Desk desk;
  desk.computer.processes.nextHandle = 1;
  EseguiEAttendi(desk.bridge, "x.exe", platform::WindowStyle::hidden);
  EXPECT_THAT(desk.computer.journal.calls(), ElementsAre("start x.exe style 0", "open 42"));
}

TEST(EseguiEAttendi, ANullHandleIsWaitedForAndClosedLikeAnyOther) {
  Desk desk;
  desk.computer.processes.nextHandle = 0;
  EseguiEAttendi(desk.bridge, "x.exe", platform::WindowStyle::hidden);
  EXPECT_THAT(desk.computer.journal.calls(), ElementsAre("start x.exe style 0", "open 42", "wait 0", "close 0"));
}

}  // namespace
}  // namespace tellaxis
