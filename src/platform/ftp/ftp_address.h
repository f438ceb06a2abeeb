// FTP address: "host", "host:port", "ftps://host" and "ftpes://host" taken apart.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>

namespace tellaxis::platform {

enum class FtpSecurity {
  none,
  explicitTls,  ///< the server must offer TLS after the connection
  implicitTls,  ///< the connection begins with TLS
};

struct FtpAddress {
  std::string host;        ///< a name or an IPv4 number, or an IPv6 number in brackets
  std::uint16_t port = 0;  ///< 0: the usual one
  FtpSecurity security = FtpSecurity::none;
};

/// Nothing for a text that is no such address; whatever else a URL can hold (a user, a path) is none.
std::optional<FtpAddress> ftpAddressFrom(std::string_view server);

/// URL of the file that the server knows as `name`, byte by byte; of the log-in folder for an empty name.
std::string urlOf(const FtpAddress& address, std::string_view name);

/// True when one of the texts has a CR, LF or NUL in it, which would end the command that the text is sent in, and
/// begin another one.
bool wouldEndCommand(std::initializer_list<std::string_view> texts);

}  // namespace tellaxis::platform
