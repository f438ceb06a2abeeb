// FTP: requests, transfers and answers through the settings file.
#include "connect/ftp.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "fake/computer.h"
#include "fake/sweep.h"

namespace tellaxis {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::string_view settingsFile = "C:\\Tellaxis\\_Tellaxis.ini";
const std::string deleteCall = "ftp bQDeleteFile 'ftp.example' 'cassa' 'segreta' 'C:\\dati\\chiusura.txt'";
const std::string putCall = "ftp bQPutFile 'ftp.example' 'cassa' 'segreta' 'C:\\dati\\chiusura.txt' 'Chiusura.TXT' '1'";
const std::string getCall =
    "ftp bQGetFile 'ftp.example' 'cassa' 'segreta' 'chiusura.txt' 'C:\\dati\\chiusura.txt' '1' 'true'";

/// A desk with a request and the file that an upload would send.
struct Desk {
  explicit Desk(std::string_view action) {
    setMainFolder(bridge.settings, "C:\\Tellaxis");
    request("FTP_Indirizzo", "ftp.example");
    request("FTP_User", "cassa");
    request("FTP_Pw", "segreta");
    request("FTP_Azione", action);
    request("FTP_Directory", "C:\\dati\\");
    request("FTP_NomeFile", "chiusura.txt");
    computer.files.put("C:\\dati\\Chiusura.TXT", "totale 10,00");
  }

  void request(std::string_view key, std::string_view value) {
    computer.profiles.put(settingsFile, "Varie", key, value);
  }
  void dialUp() {
    request("WEB_chkDial", "-1");
    request("Int_Indirizzo", "Provider");
    request("Ind_User", "mario");
    request("Ind_Pw", "segreto");
  }
  std::string answer(std::string_view key) {
    return computer.profiles.value(settingsFile, "Varie", key).value_or("(none)");
  }
  /// Key writes, transfers and starts, in order.
  fake::Calls deeds() {
    fake::Calls calls;
    for (const std::string& call : computer.journal.calls()) {
      if (call.starts_with("ftp b") || call.starts_with("start ")) calls.push_back(call);
      if (call.starts_with("write [Varie] ")) calls.push_back(call.substr(14, call.find(" to ") - 14));
    }
    return calls;
  }

  fake::Computer computer;
  Bridge bridge{computer.host};
};

TEST(EseguiFTP, DownloadsTheFileUnderItsBareNameIntoTheFolder) {
  Desk desk("2");
  EXPECT_TRUE(EseguiFTP(desk.bridge));
  EXPECT_THAT(desk.deeds(), ElementsAre("FTP_Finish=In Corso", getCall, "FTP_Esito=-1", "FTP_Finish=Finito",
                                        "FTP_Azione=", "FTP_NomeFile="));
}

TEST(EseguiFTP, UploadsAfterDeletingTheRemoteFileOfTheFullLocalName) {
  Desk desk("1");
  EXPECT_TRUE(EseguiFTP(desk.bridge));
  EXPECT_THAT(desk.deeds(), ElementsAre("FTP_Finish=In Corso", deleteCall, putCall, "FTP_Esito=-1", "FTP_Finish=Finito",
                                        "FTP_Azione=", "FTP_NomeFile="));
}

TEST(EseguiFTP, AnEmptyOrUnknownActionIsAnsweredWithoutDialling) {
  for (const std::string_view action : {"", "3", "0", "-1", "carica", "70000"}) {
    Desk desk(action);
    desk.dialUp();
    EXPECT_FALSE(EseguiFTP(desk.bridge));
    EXPECT_THAT(desk.deeds(),
                ElementsAre("FTP_Finish=In Corso", "FTP_Esito=0", "FTP_Finish=Finito", "FTP_Azione=", "FTP_NomeFile="))
        << action;
  }
}

TEST(EseguiFTP, AnUploadWhoseRemoteNamesakeCannotBeDeletedIsNotTried) {
  Desk desk("1");
  desk.computer.ftpClients.deleteSucceeds = false;
  EXPECT_FALSE(EseguiFTP(desk.bridge));
  EXPECT_THAT(desk.deeds(), ElementsAre("FTP_Finish=In Corso", deleteCall, "FTP_Esito=0", "FTP_Finish=Finito",
                                        "FTP_Azione=", "FTP_NomeFile="));
}

TEST(EseguiFTP, AnUploadOfAMissingFileDeletesAndPutsUnderAnEmptyName) {
  Desk desk("1");
  desk.computer.files.erase("C:\\dati\\chiusura.txt");
  EseguiFTP(desk.bridge);
  EXPECT_THAT(desk.deeds(),
              testing::IsSupersetOf(
                  {deleteCall, std::string("ftp bQPutFile 'ftp.example' 'cassa' 'segreta' 'C:\\dati\\chiusura.txt' '' "
                                           "'1'")}));
}

TEST(EseguiFTP, ADialUpTransferIsWrappedInConnectAndDisconnect) {
  Desk desk("2");
  desk.dialUp();
  EXPECT_TRUE(EseguiFTP(desk.bridge));
  EXPECT_THAT(desk.deeds(), ElementsAre("FTP_Finish=In Corso", "start C:\\TellaxisDial.bat style 6", getCall,
                                        "start C:\\TellaxisDial.bat style 0", "FTP_Esito=-1", "FTP_Finish=Finito",
                                        "FTP_Azione=", "FTP_NomeFile="));
}

TEST(EseguiFTP, ADialUpTransferThatFailedIsFollowedByTheDisconnect) {
  Desk desk("1");
  desk.dialUp();
  desk.computer.ftpClients.putSucceeds = false;
  EXPECT_FALSE(EseguiFTP(desk.bridge));
  EXPECT_THAT(desk.deeds(), testing::IsSupersetOf({putCall, std::string("start C:\\TellaxisDial.bat style 0"),
                                                   std::string("FTP_Esito=0")}));
}

TEST(EseguiFTP, ADisconnectThatFailsSpoilsAGoodTransfer) {
  Desk desk("2");
  desk.dialUp();
  desk.computer.processes.onStart = [&](std::string_view) { desk.request("Ind_Pw", ""); };  // gone by the hang-up
  EXPECT_FALSE(EseguiFTP(desk.bridge));
  EXPECT_THAT(desk.deeds(), testing::Contains(getCall));
  EXPECT_EQ(desk.answer("FTP_Esito"), "0");
}

TEST(EseguiFTP, WithoutADialUpAccountNothingIsTransferred) {
  Desk desk("2");
  desk.request("WEB_chkDial", "-1");
  EXPECT_FALSE(EseguiFTP(desk.bridge));
  EXPECT_THAT(desk.computer.journal.callsThatBegin("ftp"), IsEmpty());
  EXPECT_EQ(desk.answer("FTP_Finish"), "Finito");
}

TEST(EseguiFTP, WithoutAClientTheAnswerIsStillWritten) {
  for (const std::string_view action : {"1", "2"}) {
    Desk desk(action);
    desk.computer.journal.failCall(9);  // the client's creation
    EXPECT_FALSE(EseguiFTP(desk.bridge));
    EXPECT_EQ(desk.computer.journal.callsThatBegin("ftp "), fake::Calls{"ftp create"});
    EXPECT_EQ(desk.answer("FTP_Esito"), "0");
    EXPECT_EQ(desk.answer("FTP_Finish"), "Finito");
  }
}

TEST(EseguiFTP, CredentialsAreTakenAsText) {
  Desk desk("2");
  desk.request("FTP_User", "0012");
  desk.request("FTP_Pw", "1.234");
  EseguiFTP(desk.bridge);
  EXPECT_THAT(desk.deeds(), testing::Contains(testing::StartsWith("ftp bQGetFile 'ftp.example' '0012' '1.234' ")));
}

TEST(EseguiFTP, TheClientIsReleasedBeforeTheAnswer) {
  Desk desk("2");
  EseguiFTP(desk.bridge);
  const auto& calls = desk.computer.journal.calls();
  const auto released = std::find(calls.begin(), calls.end(), "ftp release");
  ASSERT_NE(released, calls.end());
  EXPECT_TRUE((released + 1)->starts_with("write [Varie] FTP_Esito=")) << *(released + 1);
}

TEST(EseguiFTP, FolderAndCredentialsStay) {
  Desk desk("2");
  EseguiFTP(desk.bridge);
  EXPECT_EQ(desk.answer("FTP_Directory"), "C:\\dati\\");
  EXPECT_EQ(desk.answer("FTP_User"), "cassa");
  EXPECT_EQ(desk.answer("FTP_Pw"), "segreta");
}

const std::string ini = " to C:\\Tellaxis\\_Tellaxis.ini";
const std::string failedAnswer = "write [Varie] FTP_Esito=0" + ini;
const std::string goodAnswer = "write [Varie] FTP_Esito=-1" + ini;
const fake::Calls afterAnswer = {"write [Varie] FTP_Finish=Finito" + ini, "write [Varie] FTP_Azione=" + ini,
                                 "write [Varie] FTP_NomeFile=" + ini};

/// `calls`, then the answer of a failed transfer.
fake::Calls thenFailed(fake::Calls calls) {
  calls.push_back(failedAnswer);
  calls.insert(calls.end(), afterAnswer.begin(), afterAnswer.end());
  return calls;
}

fake::Calls runWithFailure(std::string_view action, std::size_t failingCall) {
  Desk desk(action);
  desk.computer.journal.failCall(failingCall);
  EseguiFTP(desk.bridge);
  return desk.computer.journal.calls();
}

std::string readOf(std::string_view key) {
  return "read [Varie] " + std::string(key) + " of C:\\Tellaxis\\_Tellaxis.ini";
}

TEST(EseguiFTP, ADownloadGoesOnPastEveryFailingStep) {
  const fake::Calls reads = {readOf("FTP_Indirizzo"), readOf("FTP_User"),      readOf("FTP_Pw"),
                             readOf("FTP_Azione"),    readOf("FTP_Directory"), readOf("FTP_NomeFile"),
                             readOf("WEB_chkDial")};
  const fake::Calls undisturbed = runWithFailure("2", 0);
  ASSERT_EQ(undisturbed.size(), 15U);
  // Calls 1 to 8 read the request and mark it as running; a key that cannot be read is empty.
  const auto getWith = [](std::string_view server, std::string_view user, std::string_view password,
                          std::string_view folder, std::string_view name) {
    return "ftp bQGetFile '" + std::string(server) + "' '" + std::string(user) + "' '" + std::string(password) + "' '" +
           std::string(name) + "' '" + std::string(folder) + std::string(name) + "' '1' 'true'";
  };
  const std::string gets[] = {getWith("", "cassa", "segreta", "C:\\dati\\", "chiusura.txt"),
                              getWith("ftp.example", "", "segreta", "C:\\dati\\", "chiusura.txt"),
                              getWith("ftp.example", "cassa", "", "C:\\dati\\", "chiusura.txt"),
                              "",
                              getWith("ftp.example", "cassa", "segreta", "", "chiusura.txt"),
                              getWith("ftp.example", "cassa", "segreta", "C:\\dati\\", "")};
  std::vector<fake::WhenFailed> rows;
  for (std::size_t i = 0; i < std::size(gets); ++i) {
    fake::Calls expected = undisturbed;
    expected.at(9) = gets[i];
    // Without a server or a name nothing can be fetched.
    if (reads[i] == readOf("FTP_Indirizzo") || reads[i] == readOf("FTP_NomeFile")) expected.at(11) = failedAnswer;
    if (reads[i] == readOf("FTP_Azione")) expected = thenFailed({expected.begin(), expected.begin() + 8});
    rows.push_back({.call = reads[i],
                    .dropped = undisturbed.size() - i - 1,
                    .instead = {expected.begin() + static_cast<std::ptrdiff_t>(i) + 1, expected.end()}});
  }
  rows.push_back({.call = "ftp create", .dropped = 6, .instead = thenFailed({})});
  rows.push_back({.call = getCall, .dropped = 5, .instead = thenFailed({"ftp release"})});
  fake::sweepFailingSteps([](std::size_t failingCall) { return runWithFailure("2", failingCall); }, rows);
}

TEST(EseguiFTP, AnUploadGoesOnPastEveryFailingStepOfTheTransfer) {
  const std::string lookUp = "lookUp C:\\dati\\chiusura.txt";
  const std::string emptyPut = "ftp bQPutFile 'ftp.example' 'cassa' 'segreta' 'C:\\dati\\chiusura.txt' '' '1'";
  const auto transferOf = [](std::size_t failingCall) {
    const fake::Calls calls = runWithFailure("1", failingCall == 0 ? 0 : failingCall + 8);
    return fake::Calls{calls.begin() + 8, calls.end()};
  };
  fake::sweepFailingSteps(transferOf, {{.call = "ftp create", .dropped = 8, .instead = thenFailed({})},
                                       {.call = deleteCall, .dropped = 7, .instead = thenFailed({"ftp release"})},
                                       {.call = lookUp, .dropped = 6, .instead = thenFailed({emptyPut, "ftp release"})},
                                       {.call = putCall, .dropped = 5, .instead = thenFailed({"ftp release"})}});
}

}  // namespace
}  // namespace tellaxis
