// FTP library: its one visible function.
#include "platform/linux/ftp/ftp_library.h"

#include "platform/linux/ftp/curl_session.h"

const tellaxis::platform::FtpLibrary* tellaxisFtpLibrary() {
  static constexpr tellaxis::platform::FtpLibrary library{&tellaxis::platform::openCurlSession};
  return &library;
}
