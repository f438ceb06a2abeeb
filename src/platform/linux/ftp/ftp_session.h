// FTP session: transfers between a server and whatever takes or gives the bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "platform/ftp/ftp_limits.h"

namespace tellaxis::platform {

/// The account and the remote file, byte by byte as the server gets them.
struct FtpRequest {
  std::string_view server;  ///< "host", "host:port", "ftps://host" or "ftpes://host"
  std::string_view user;
  std::string_view password;
  std::string_view remoteFile;
  FtpLimits limits;
  std::function<bool()> stopped;  ///< true once the transfer is to be given up
};

/// Takes the bytes that have come; false when it cannot.
using BytesTaker = std::function<bool(std::string_view bytes)>;

/// Fills its argument with the bytes that go next and returns how many it got: 0 at the end, nothing on a failure.
using BytesGiver = std::function<std::optional<std::size_t>(std::span<char> buffer)>;

/// Why something failed, in code page 1252.
struct LoginFailure {
  std::string reason;
  bool refused = false;  ///< the server answered, and did not take the user or the password
};

/// Each operation returns nothing when it succeeded, or else why it failed, in code page 1252.
class FtpSession {
 public:
  virtual ~FtpSession() = default;

  /// Of `request` the account alone.
  virtual std::optional<LoginFailure> logIn(const FtpRequest& request) = 0;
  virtual std::optional<std::string> get(const FtpRequest& request, const BytesTaker& take) = 0;
  virtual std::optional<std::string> erase(const FtpRequest& request) = 0;
  virtual std::optional<std::string> put(const FtpRequest& request, std::uint64_t size, const BytesGiver& give) = 0;
};

}  // namespace tellaxis::platform
