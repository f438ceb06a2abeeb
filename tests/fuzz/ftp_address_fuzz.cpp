// FTP address fuzzing: any bytes as a server's address and as a file's name on it, and the URL made of both.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "platform/ftp/ftp_address.h"

namespace {

using namespace tellaxis::platform;

void demand(bool condition) {
  if (!condition) std::abort();
}

int digit(char c) { return c <= '9' ? c - '0' : c - 'A' + 10; }

/// The bytes that a part of a URL stands for.
std::string decoded(std::string_view part) {
  std::string bytes;
  for (std::size_t i = 0; i < part.size(); ++i) {
    if (part[i] == '%') {
      demand(i + 2 < part.size());
      bytes += static_cast<char>(digit(part[i + 1]) * 16 + digit(part[i + 2]));
      i += 2;
    } else {
      bytes += part[i];
    }
  }
  return bytes;
}

void check(const FtpAddress& address, std::string_view server, std::string_view name) {
  // Whatever would make another part of a URL, or end a command, is in no host.
  demand(!address.host.empty() && address.host.size() <= server.size());
  demand(address.host.find_first_of(std::string_view("/@?#%\\ \r\n\t\0", 11)) == std::string::npos);
  const std::string url = urlOf(address, name);
  const std::string scheme = address.security == FtpSecurity::implicitTls ? "ftps://" : "ftp://";
  const std::string port = address.port == 0 ? "" : ":" + std::to_string(address.port);
  const std::string beginning = scheme + address.host + port + "/";
  demand(url.starts_with(beginning));
  const std::string_view path = std::string_view(url).substr(beginning.size());
  demand(std::ranges::all_of(path, [](char c) { return c > ' ' && c < 0x7F && c != '/' && c != '?' && c != '#'; }));
  demand(decoded(path) == name);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  const std::size_t end = std::min(input.find('\n'), input.size());
  const std::string_view server = input.substr(0, end);
  const std::string_view name = input.substr(std::min(end + 1, input.size()));
  const auto address = ftpAddressFrom(server);
  if (address) {
    check(*address, server, name);
    // What was taken apart and put together again means the same.
    const std::string prefix = address->security == FtpSecurity::explicitTls   ? "ftpes://"
                               : address->security == FtpSecurity::implicitTls ? "ftps://"
                                                                               : "ftp://";
    const std::string port = address->port == 0 ? "" : ":" + std::to_string(address->port);
    const auto again = ftpAddressFrom(prefix + address->host + port);
    demand(again && again->host == address->host && again->port == address->port &&
           again->security == address->security);
  }
  const bool ends = name.find_first_of(std::string_view("\r\n\0", 3)) != std::string_view::npos;
  demand(wouldEndCommand({"a", name}) == ends);
  return 0;
}
