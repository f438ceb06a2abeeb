// FTP client contract: what every implementation of ftp_client.h owes its callers, held by the fake and by the system
// that the tests run on.
#include "platform/ftp_client.h"

#include <gmock/gmock.h>

#include "fake/computer.h"
#include "platform/contracts/real_computer.h"

namespace tellaxis::test {
namespace {

/// Nobody listens at its server.
struct RealDesk : RealComputer {
  platform::FtpClients& ftpClients() const { return host().ftpClients; }
  std::string file(const std::string& text) const { return folder.write("x.txt", text); }
  std::string text() const { return folder.read("x.txt"); }
};

struct FakeDesk {
  fake::Computer computer;

  FakeDesk() {
    auto& clients = computer.ftpClients;
    clients.login = platform::FtpLogin::unreachable;
    clients.getSucceeds = clients.deleteSucceeds = clients.putSucceeds = false;
  }
  platform::FtpClients& ftpClients() { return computer.ftpClients; }
  int failures() const { return static_cast<int>(computer.trace.failures.size()); }
  std::string file(const std::string& text) {
    computer.files.put("C:\\x.txt", text);
    return "C:\\x.txt";
  }
  std::string text() const { return computer.files.text("C:\\x.txt"); }
};

template <class Desk>
struct FtpClientContract : testing::Test {
  Desk desk;
  std::unique_ptr<platform::FtpClient> client = desk.ftpClients().create();
  std::string local = desk.file("prima");

  /// How many of the three operations succeed.
  int successes(std::string_view server, std::string_view user, std::string_view password, std::string_view remote) {
    constexpr auto binary = platform::TransferType::binary;
    return int{client->bQGetFile(server, user, password, remote, local, binary, true)} +
           int{client->bQDeleteFile(server, user, password, remote)} +
           int{client->bQPutFile(server, user, password, local, remote, binary)};
  }
};

using Desks = testing::Types<FakeDesk, RealDesk>;
TYPED_TEST_SUITE(FtpClientContract, Desks);

TYPED_TEST(FtpClientContract, TextsThatWouldEndTheirCommandAreRefused) {
  for (const std::string& text : {std::string("x\r\nDELE y"), std::string("x\n"), std::string("x\0y", 3)}) {
    EXPECT_EQ(this->successes("127.0.0.1:1" + text, "u", "p", "r"), 0);
    EXPECT_EQ(this->successes("127.0.0.1:1", text, "p", "r"), 0);
    EXPECT_EQ(this->successes("127.0.0.1:1", "u", text, "r"), 0);
    EXPECT_EQ(this->successes("127.0.0.1:1", "u", "p", text), 0);
  }
  EXPECT_EQ(this->desk.failures(), 36);
  EXPECT_EQ(this->desk.text(), "prima");
}

TYPED_TEST(FtpClientContract, AddressesAndNamesThatAreNoneAreRefused) {
  EXPECT_EQ(this->successes("", "u", "p", "r"), 0);
  EXPECT_EQ(this->successes("host:0", "u", "p", "r"), 0);
  EXPECT_EQ(this->successes("127.0.0.1:1", "u", "p", ""), 0);
  EXPECT_EQ(this->desk.failures(), 9);
}

TYPED_TEST(FtpClientContract, AServerThatIsAwayIsAFailureAndLeavesTheLocalFile) {
  EXPECT_EQ(this->successes("127.0.0.1:1", "u", "segreta", "r"), 0);
  EXPECT_EQ(this->desk.failures(), 3);
  EXPECT_EQ(this->desk.text(), "prima");
}

TYPED_TEST(FtpClientContract, ALogInToAServerThatIsAwayOrNoneIsUnreachableAndSaysWhy) {
  for (const std::string& server : {std::string("127.0.0.1:1"), std::string(), std::string("127.0.0.1:1\r\nDELE y")}) {
    std::string reason;
    EXPECT_EQ(this->client->logIn(server, "u", "segreta", reason), platform::FtpLogin::unreachable) << server;
    EXPECT_NE(reason, "");
  }
  EXPECT_EQ(this->desk.failures(), 3);
}

}  // namespace
}  // namespace tellaxis::test
