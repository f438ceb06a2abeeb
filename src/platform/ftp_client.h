// FTP client: one transfer at a time, each by a client made for it.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace tellaxis::platform {

/// Type of a transfer; the number is the one that the system passes.
enum class TransferType { binary = 1 };

/// What a log-in came to.
enum class FtpLogin : std::uint8_t {
  done,
  unreachable,  ///< no server answers there, or none that can be talked to
  refused,      ///< the server does not take the user or the password
};

/// Servers are given as "host", "host:port", "ftps://host" or "ftpes://host". User names, passwords and file names
/// reach the server unchanged; one with a CR, LF or NUL in it is refused as a failure.
class FtpClient {
 public:
  virtual ~FtpClient() = default;

  /// Connects, logs in and leaves; nothing is transferred. `reason` says why it failed, in code page 1252.
  virtual FtpLogin logIn(std::string_view server, std::string_view user, std::string_view password,
                         std::string& reason) = 0;

  /// Fetches a file. `localFile` is replaced only when the whole file has come; without `overwrite` an existing one is
  /// a failure.
  virtual bool bQGetFile(std::string_view server, std::string_view user, std::string_view password,
                         std::string_view remoteFile, std::string_view localFile, TransferType type,
                         bool overwrite) = 0;

  virtual bool bQDeleteFile(std::string_view server, std::string_view user, std::string_view password,
                            std::string_view remoteFile) = 0;

  virtual bool bQPutFile(std::string_view server, std::string_view user, std::string_view password,
                         std::string_view localFile, std::string_view remoteFile, TransferType type) = 0;
};

/// Where clients come from.
class FtpClients {
 public:
  virtual ~FtpClients() = default;

  /// A new client; null when the computer has none.
  virtual std::unique_ptr<FtpClient> create() = 0;
};

}  // namespace tellaxis::platform
