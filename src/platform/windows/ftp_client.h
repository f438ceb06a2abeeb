// FTP clients of Windows: the system's internet library.
#pragma once

#include "platform/ftp_client.h"
#include "platform/trace.h"

namespace tellaxis::platform {

class WindowsFtpClients : public FtpClients {
 public:
  explicit WindowsFtpClients(Trace& trace) : trace_(trace) {}

  std::unique_ptr<FtpClient> create() override;

 private:
  Trace& trace_;
};

}  // namespace tellaxis::platform
