// FTP address: "host", "host:port", "ftps://host" and "ftpes://host" taken apart.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tellaxis::platform {

struct FtpAddress {
  std::string root;         ///< URL of the log-in folder, for example "ftp://host:2121/"
  bool demandsTls = false;  ///< the server must offer TLS after the connection
};

/// Nothing for a text that is no such address; whatever else a URL can hold (a user, a path) is none.
std::optional<FtpAddress> ftpAddressFrom(std::string_view server);

/// URL of the file that the server knows as `name`, byte by byte.
std::string urlOf(const FtpAddress& address, std::string_view name);

}  // namespace tellaxis::platform
