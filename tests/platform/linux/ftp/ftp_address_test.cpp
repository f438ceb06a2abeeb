// FTP address: what is one, and names in URLs.
#include "platform/linux/ftp/ftp_address.h"

#include <gtest/gtest.h>

namespace tellaxis::platform {
namespace {

TEST(FtpAddress, TakesHostsPortsAndSchemes) {
  const struct {
    std::string_view server;
    std::string_view root;
    bool demandsTls;
  } cases[] = {
      {"ftp.example.it", "ftp://ftp.example.it/", false},
      {"10.0.0.1:2121", "ftp://10.0.0.1:2121/", false},
      {"[::1]:2121", "ftp://[::1]:2121/", false},
      {"[::1]", "ftp://[::1]/", false},
      {"SERVER_1", "ftp://SERVER_1/", false},
      {"ftp://host", "ftp://host/", false},
      {"ftps://host:990", "ftps://host:990/", true},
      {"FTPES://host", "ftp://host/", true},
  };
  for (const auto& [server, root, demandsTls] : cases) {
    const auto address = ftpAddressFrom(server);
    ASSERT_TRUE(address) << server;
    EXPECT_EQ(address->root, root);
    EXPECT_EQ(address->demandsTls, demandsTls) << server;
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
  const FtpAddress address{.root = "ftp://host/"};
  EXPECT_EQ(urlOf(address, "a-b_c.txt"), "ftp://host/a-b_c.txt");
  EXPECT_EQ(urlOf(address, "C:\\x y/\xE0;type=a?#%"), "ftp://host/C%3A%5Cx%20y%2F%E0%3Btype%3Da%3F%23%25");
}

}  // namespace
}  // namespace tellaxis::platform
