// Absent FTP clients: a computer without an FTP client.
#pragma once

#include "platform/ftp_client.h"
#include "platform/trace.h"

namespace tellaxis::platform {

class AbsentFtpClients : public FtpClients {
 public:
  explicit AbsentFtpClients(Trace& trace) : trace_(trace) {}

  /// Always null.
  std::unique_ptr<FtpClient> create() override;

 private:
  Trace& trace_;
};

}  // namespace tellaxis::platform
