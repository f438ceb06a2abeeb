// Curl session: FTP by libcurl.
#pragma once

#include <memory>

#include "platform/linux/ftp/ftp_session.h"

namespace tellaxis::platform {

/// Null without memory for one.
std::unique_ptr<FtpSession> openCurlSession();

}  // namespace tellaxis::platform
