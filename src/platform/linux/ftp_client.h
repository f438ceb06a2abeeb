// FTP clients of Linux: transfers between a server and local files.
#pragma once

#include <functional>
#include <utility>

#include "platform/ftp_client.h"
#include "platform/linux/files/paths.h"
#include "platform/linux/ftp/ftp_session.h"
#include "platform/program.h"
#include "platform/trace.h"

namespace tellaxis::platform {

/// Passive transfers, active ones with a server that refuses these. Texts go over the line byte by byte as the settings
/// hold them, in code page 1252. An empty user is an anonymous one. With TLS the server's certificate must be vouched
/// for by the system's authorities, or by those in the file that SSL_CERT_FILE names. Proxies and ~/.netrc don't count.
/// `stopped` tells when the program is to end: a transfer under way is given up then.
class LinuxFtpClients : public FtpClients {
 public:
  LinuxFtpClients(const Paths& paths, Trace& trace, FtpLimits limits = {}, std::function<bool()> stopped = stopWasAsked)
      : paths_(paths), trace_(trace), limits_(limits), stopped_(std::move(stopped)) {}

  std::unique_ptr<FtpClient> create() override;

 private:
  const Paths& paths_;
  Trace& trace_;
  FtpLimits limits_;
  std::function<bool()> stopped_;
};

}  // namespace tellaxis::platform
