// FTP clients of Linux: what goes over the line, and what is left on the disk when a transfer breaks.
#include "platform/linux/ftp_client.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "platform/linux/ftp/scripted_ftp_server.h"

namespace tellaxis::platform {
namespace {

using namespace std::chrono_literals;
using std::chrono::steady_clock;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr auto binary = TransferType::binary;

struct RecordedTrace : Trace {
  std::vector<std::string> failures;
  void failed(std::string_view operation, std::string_view subject, std::string_view reason) override {
    failures.push_back(std::string(operation) + " " + std::string(subject) + ": " + std::string(reason));
  }
};

/// A folder for local files, and a client whose timeout is two seconds.
struct FtpClientTest : testing::Test {
  FtpClientTest() {
    std::string name = testing::TempDir() + "ftpXXXXXX";
    folder = ::mkdtemp(name.data());
    client = clients.create();
  }
  ~FtpClientTest() override { std::filesystem::remove_all(folder); }

  std::string path(const std::string& name) const { return folder + "/" + name; }
  void write(const std::string& name, std::string_view text) const { std::ofstream(path(name)) << text; }
  std::string text(const std::string& name) const {
    std::ifstream file(path(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  std::size_t filesLeft() const {
    return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(folder), {}));
  }
  bool get(const ScriptedFtpServer& server, std::string_view remote = "x.txt", bool overwrite = true) {
    return client->bQGetFile(server.address(), "cassa", "segreta", remote, path("x.txt"), binary, overwrite);
  }
  bool put(const ScriptedFtpServer& server, std::string_view remote = "x.txt") {
    return client->bQPutFile(server.address(), "cassa", "segreta", path("x.txt"), remote, binary);
  }
  bool erase(const ScriptedFtpServer& server, std::string_view remote) {
    return client->bQDeleteFile(server.address(), "cassa", "segreta", remote);
  }
  std::string lastFailure() const { return trace.failures.empty() ? "" : trace.failures.back(); }

  std::string folder;
  RecordedTrace trace;
  Paths paths{"/nowhere", {}};
  LinuxFtpClients clients{paths, trace, {.connection = 2s, .stall = 2s}};
  std::unique_ptr<FtpClient> client;
};

TEST_F(FtpClientTest, GetsAFileInBinaryAndPassively) {
  const ScriptedFtpServer server({.content = std::string("a\r\n\0\xFF", 5)});
  EXPECT_TRUE(get(server)) << lastFailure();
  EXPECT_EQ(text("x.txt"), std::string("a\r\n\0\xFF", 5));
  EXPECT_THAT(server.commands(),
              ElementsAre("USER cassa", "PASS segreta", "PWD", "EPSV", "TYPE I", "SIZE x.txt", "RETR x.txt"));
  EXPECT_EQ(filesLeft(), 1U);
}

TEST_F(FtpClientTest, PutsAFileInBinaryAndPassively) {
  const ScriptedFtpServer server;
  write("x.txt", "a\r\n\xFF");
  EXPECT_TRUE(put(server)) << lastFailure();
  EXPECT_EQ(server.stored(), "a\r\n\xFF");
  EXPECT_THAT(server.commands(), ElementsAre("USER cassa", "PASS segreta", "PWD", "EPSV", "TYPE I", "STOR x.txt"));
}

TEST_F(FtpClientTest, PutsAnEmptyFile) {
  const ScriptedFtpServer server;
  write("x.txt", "");
  EXPECT_TRUE(put(server)) << lastFailure();
  EXPECT_THAT(server.commands(), Contains("STOR x.txt"));
}

TEST_F(FtpClientTest, DeletesTheFileNamedByAWholeLocalPath) {
  const ScriptedFtpServer server;
  EXPECT_TRUE(erase(server, "C:\\dati\\x y.txt")) << lastFailure();
  EXPECT_THAT(server.commands(), ElementsAre("USER cassa", "PASS segreta", "PWD", "DELE C:\\dati\\x y.txt"));
}

TEST_F(FtpClientTest, NamesAndAccountsReachTheServerByteByByte) {
  const std::string odd = " a:b;type=i?#%41&\\..\\\xE0\x80\xFE 'q'\" ";
  for (const std::string& name : {odd, std::string("cartella/x"), std::string("/x"), std::string("../x")}) {
    const ScriptedFtpServer server;
    write("x.txt", "1");
    EXPECT_TRUE(client->bQGetFile(server.address(), odd, odd + "@", name, path("x.txt"), binary, true));
    EXPECT_TRUE(client->bQPutFile(server.address(), odd, odd + "@", path("x.txt"), name, binary));
    EXPECT_TRUE(client->bQDeleteFile(server.address(), odd, odd + "@", name)) << name << lastFailure();
    EXPECT_THAT(server.commands(), testing::IsSupersetOf({"USER " + odd, "PASS " + odd + "@", "RETR " + name,
                                                          "STOR " + name, "DELE " + name}));
  }
}

TEST_F(FtpClientTest, NoTextCanBringInACommandOfItsOwn) {
  const ScriptedFtpServer server;
  const std::string host = server.address();
  write("x.txt", "before");
  for (const std::string& text :
       {std::string("x\r\nDELE y"), std::string("x\ny"), std::string("x\ry"), std::string("x\0y", 3)}) {
    const std::string local = path("x.txt");
    EXPECT_FALSE(client->bQGetFile(host, text, "p", "r", local, binary, true));
    EXPECT_FALSE(client->bQGetFile(host, "u", text, "r", local, binary, true));
    EXPECT_FALSE(client->bQGetFile(host, "u", "p", text, local, binary, true));
    EXPECT_FALSE(client->bQGetFile(host + text, "u", "p", "r", local, binary, true));
    EXPECT_FALSE(client->bQDeleteFile(host, text, "p", "r"));
    EXPECT_FALSE(client->bQDeleteFile(host, "u", text, "r"));
    EXPECT_FALSE(client->bQDeleteFile(host, "u", "p", text));
    EXPECT_FALSE(client->bQPutFile(host, text, "p", local, "r", binary));
    EXPECT_FALSE(client->bQPutFile(host, "u", text, local, "r", binary));
    EXPECT_FALSE(client->bQPutFile(host, "u", "p", local, text, binary));
  }
  EXPECT_THAT(server.commands(), IsEmpty());
  EXPECT_EQ(text("x.txt"), "before");
}

TEST_F(FtpClientTest, AnEmptyRemoteNameFailsWithoutAConnection) {
  const ScriptedFtpServer server;
  write("x.txt", "before");
  EXPECT_FALSE(put(server, ""));
  EXPECT_EQ(lastFailure(), "bQPutFile : manca il nome del file remoto");
  EXPECT_FALSE(erase(server, ""));
  EXPECT_FALSE(get(server, ""));
  EXPECT_FALSE(get(server, "cartella/"));
  EXPECT_FALSE(put(server, "cartella/"));
  EXPECT_THAT(server.commands(), IsEmpty());
  EXPECT_EQ(text("x.txt"), "before");
}

TEST_F(FtpClientTest, AnUnusableAddressFails) {
  EXPECT_FALSE(client->bQDeleteFile("cassa:segreta@host", "u", "p", "x"));
  EXPECT_EQ(lastFailure(), "bQDeleteFile x: l'indirizzo del server non \xE8 valido");
}

TEST_F(FtpClientTest, AMissingLocalFileOrAFolderIsNotPut) {
  const ScriptedFtpServer server;
  EXPECT_FALSE(put(server));
  EXPECT_FALSE(client->bQPutFile(server.address(), "u", "p", folder, "x", binary));
  EXPECT_FALSE(client->bQPutFile(server.address(), "u", "p", "", "x", binary));
  EXPECT_THAT(server.commands(), IsEmpty());
}

TEST_F(FtpClientTest, WithoutOverwriteAnExistingFileIsKept) {
  const ScriptedFtpServer server;
  write("x.txt", "before");
  EXPECT_FALSE(get(server, "x.txt", false));
  EXPECT_EQ(text("x.txt"), "before");
  std::filesystem::remove(path("x.txt"));
  EXPECT_TRUE(get(server, "x.txt", false));
}

TEST_F(FtpClientTest, AReplacedFileKeepsItsPermissions) {
  const ScriptedFtpServer server;
  write("x.txt", "before");
  ::chmod(path("x.txt").c_str(), 0640);
  EXPECT_TRUE(get(server));
  struct stat status {};
  ::stat(path("x.txt").c_str(), &status);
  EXPECT_EQ(status.st_mode & 07777U, 0640U);
}

TEST_F(FtpClientTest, AServerThatHangsUpInMidTransferLeavesTheFileThatWasThere) {
  const ScriptedFtpServer server({.content = std::string(100'000, 'x'), .hangsUpAfter = 40'000});
  write("x.txt", "before");
  EXPECT_FALSE(get(server));
  EXPECT_EQ(text("x.txt"), "before");
  EXPECT_EQ(filesLeft(), 1U);
}

TEST_F(FtpClientTest, AMissingRemoteFileLeavesTheFileThatWasThere) {
  const ScriptedFtpServer server({.answers = {{"RETR", "550 Non c'e'."}, {"SIZE", "550 Non c'e'."}}});
  write("x.txt", "before");
  EXPECT_FALSE(get(server));
  EXPECT_EQ(text("x.txt"), "before");
  EXPECT_EQ(filesLeft(), 1U);
  EXPECT_EQ(lastFailure(), "bQGetFile x.txt: il server non ha o non d\xE0 il file (550)");
}

TEST_F(FtpClientTest, RefusalsAreTraced) {
  write("x.txt", "1");
  const ScriptedFtpServer wrongPassword({.answers = {{"PASS", "530 No."}}});
  EXPECT_FALSE(get(wrongPassword));
  EXPECT_EQ(lastFailure(), "bQGetFile x.txt: utente o password rifiutati (530)");
  const ScriptedFtpServer noDelete({.answers = {{"DELE", "550 No."}}});
  EXPECT_FALSE(erase(noDelete, "x.txt"));
  EXPECT_EQ(lastFailure(), "bQDeleteFile x.txt: il server rifiuta il comando (550)");
  const ScriptedFtpServer noStore({.answers = {{"STOR", "553 No."}}});
  EXPECT_FALSE(put(noStore));
  EXPECT_EQ(lastFailure(), "bQPutFile x.txt: il server rifiuta il file (553)");
  for (const std::string& failure : trace.failures) EXPECT_THAT(failure, testing::Not(HasSubstr("segreta")));
}

TEST_F(FtpClientTest, AServerWithoutPassiveTransfersIsServedActively) {
  const ScriptedFtpServer server({.takesActiveOnly = true});
  EXPECT_TRUE(get(server)) << lastFailure();
  EXPECT_EQ(text("x.txt"), "contenuto");
  write("x.txt", "in su");
  EXPECT_TRUE(put(server)) << lastFailure();
  EXPECT_EQ(server.stored(), "in su");
}

TEST_F(FtpClientTest, AServerThatDoesNotGreetIsGivenUp) {
  const ScriptedFtpServer server({.greets = false});
  const auto start = steady_clock::now();
  EXPECT_FALSE(get(server));
  EXPECT_LT(steady_clock::now() - start, 3s);
  EXPECT_GE(steady_clock::now() - start, 1900ms);
  EXPECT_EQ(lastFailure(), "bQGetFile x.txt: il server non risponde");
}

TEST_F(FtpClientTest, ADownloadThatStallsIsGivenUp) {
  const ScriptedFtpServer server({.content = std::string(10'000, 'x'), .stallsAfter = 1000});
  write("x.txt", "before");
  const auto start = steady_clock::now();
  EXPECT_FALSE(get(server));
  EXPECT_LT(steady_clock::now() - start, 4s);
  EXPECT_EQ(text("x.txt"), "before");
}

TEST_F(FtpClientTest, AnUploadThatStallsIsGivenUp) {
  const ScriptedFtpServer server({.stallsAfter = 1000});
  std::string much;
  much.resize(30'000'000, 'x');
  write("x.txt", much);
  const auto start = steady_clock::now();
  EXPECT_FALSE(put(server));
  EXPECT_LT(steady_clock::now() - start, 4s);
}

TEST_F(FtpClientTest, ADownloadThatGoesOnTooSlowlyIsGivenUp) {
  const ScriptedFtpServer server({.content = std::string(10'000, 'x'), .drips = true});
  write("x.txt", "before");
  const auto start = steady_clock::now();
  EXPECT_FALSE(get(server));
  EXPECT_LT(steady_clock::now() - start, 20s);
  EXPECT_EQ(text("x.txt"), "before");
  EXPECT_EQ(filesLeft(), 1U);
  EXPECT_THAT(lastFailure(), HasSubstr("troppo lento"));
}

TEST_F(FtpClientTest, ADownloadMayNotFillTheDisk) {
  LinuxFtpClients careful{paths, trace, {.connection = 2s, .stall = 2s, .largestShare = 0}};
  client = careful.create();
  const ScriptedFtpServer server;
  write("x.txt", "before");
  EXPECT_FALSE(get(server));
  EXPECT_EQ(text("x.txt"), "before");
  EXPECT_EQ(filesLeft(), 1U);
  EXPECT_EQ(lastFailure(), "bQGetFile x.txt: il file \xE8 troppo grande");
}

TEST_F(FtpClientTest, AStopGivesTheTransferUpAndLeavesNothingBehind) {
  const ScriptedFtpServer server({.content = std::string(10'000, 'x'), .stallsAfter = 1000});
  const auto stopped = [&server] { return std::ranges::count(server.commands(), "RETR x.txt") > 0; };
  LinuxFtpClients stoppable{paths, trace, {.connection = 60s, .stall = 60s}, stopped};
  client = stoppable.create();
  write("x.txt", "before");
  const auto start = steady_clock::now();
  EXPECT_FALSE(get(server));
  EXPECT_LT(steady_clock::now() - start, 20s);
  EXPECT_EQ(text("x.txt"), "before");
  EXPECT_EQ(filesLeft(), 1U);
}

TEST_F(FtpClientTest, WhatAnEndedProgramLeftOfADownloadIsRemovedByTheNext) {
  write(".tellaxis-4194305", "met\xE0");  // above the highest number of a process
  std::filesystem::last_write_time(path(".tellaxis-4194305"), std::filesystem::file_time_type::clock::now() - 1h);
  const ScriptedFtpServer server;
  EXPECT_TRUE(get(server)) << lastFailure();
  EXPECT_EQ(filesLeft(), 1U);
}

TEST_F(FtpClientTest, TlsThatTheServerLacksIsAFailureBeforeThePassword) {
  const ScriptedFtpServer server;
  EXPECT_FALSE(client->bQDeleteFile("ftpes://" + server.address(), "cassa", "segreta", "x"));
  EXPECT_EQ(lastFailure(), "bQDeleteFile x: il server non offre un collegamento cifrato (502)");
  EXPECT_THAT(server.commands(), testing::Not(Contains("PASS segreta")));
}

TEST_F(FtpClientTest, NobodyListeningIsAFailure) {
  EXPECT_FALSE(client->bQDeleteFile("127.0.0.1:1", "u", "p", "x"));
  EXPECT_EQ(lastFailure(), "bQDeleteFile x: il server non accetta il collegamento");
}

TEST_F(FtpClientTest, AnAccountWithoutAUserIsAnonymous) {
  const ScriptedFtpServer server;
  EXPECT_TRUE(client->bQDeleteFile(server.address(), "", "", "x"));
  EXPECT_EQ(server.commands().front(), "USER anonymous");
}

TEST_F(FtpClientTest, ProxiesOfTheEnvironmentDoNotCount) {
  ::setenv("ftp_proxy", "http://127.0.0.1:1", 1);
  ::setenv("all_proxy", "http://127.0.0.1:1", 1);
  const ScriptedFtpServer server;
  EXPECT_TRUE(erase(server, "x"));
  ::unsetenv("ftp_proxy");
  ::unsetenv("all_proxy");
}

}  // namespace
}  // namespace tellaxis::platform
