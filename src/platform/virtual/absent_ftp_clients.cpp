// Absent FTP clients: there is none to be made.
#include "platform/virtual/absent_ftp_clients.h"

namespace tellaxis::platform {

std::unique_ptr<FtpClient> AbsentFtpClients::create() {
  trace_.failed("create", "FTP", "nessun programma di trasferimento");
  return nullptr;
}

}  // namespace tellaxis::platform
