// FTP address: what is one, and names in URLs.
#include "platform/ftp/ftp_address.h"

#include <gtest/gtest.h>

namespace tellaxis::platform {
namespace {

TEST(FtpAddress, TakesHostsPortsAndSchemes) {
  const struct {
    std::string_view server;
    std::string_view root;
    FtpSecurity security;
  } cases[] = {
      {"ftp.example.it", "ftp://ftp.example.it/", FtpSecurity::none},
      {"10.0.0.1:2121", "ftp://10.0.0.1:2121/", FtpSecurity::none},
      {"[::1]:2121", "ftp://[::1]:2121/", FtpSecurity::none},
      {"[::1]", "ftp://[::1]/", FtpSecurity::none},
      {"SERVER_1", "ftp://SERVER_1/", FtpSecurity::none},
      {"ftp://host", "ftp://host/", FtpSecurity::none},
      {"ftps://host:990", "ftps://host:990/", FtpSecurity::implicitTls},
      {"FTPES://host", "ftp://host/", FtpSecurity::explicitTls},
  };
  for (const auto& [server, root, security] : cases) {
    const auto address = ftpAddressFrom(server);
    ASSERT_TRUE(address) << server;
    EXPECT_EQ(urlOf(*address, ""), root);
    EXPECT_EQ(address->security, security) << server;
  }
}

TEST(FtpAddress, RefusesEverythingElse) {
  for (const std::string_view server :
       {"",          ":21",         "host:",  "host:0", "host:65536", "host:21x",       "host:-1",     "user:pw@host",
        "user@host", "host/folder", "host?x", "host#x", "ho st",      "host\r\nDELE x", "http://host", "ftps://",
        "ho%41st",   "::1",         "[::1",   "[]",     "host:21:22", "[::1]x",         "\xE0.it"})
    EXPECT_FALSE(ftpAddressFrom(server)) << server;
}

TEST(FtpAddress, NamesInUrlsAreOneComponentByteByByte) {
  const FtpAddress address{.host = "host"};
  EXPECT_EQ(urlOf(address, "a-b_c.txt"), "ftp://host/a-b_c.txt");
  EXPECT_EQ(urlOf(address, "C:\\x y/\xE0;type=a?#%"), "ftp://host/C%3A%5Cx%20y%2F%E0%3Btype%3Da%3F%23%25");
}

TEST(FtpAddress, ATextWithALineEndWouldEndItsCommand) {
  EXPECT_FALSE(wouldEndCommand({"a b", "", "\t\xE0"}));
  for (const std::string_view text : {std::string_view("x\ry"), std::string_view("\n"), std::string_view("x\0", 2)})
    EXPECT_TRUE(wouldEndCommand({"a", text, "b"}));
}

}  // namespace
}  // namespace tellaxis::platform
