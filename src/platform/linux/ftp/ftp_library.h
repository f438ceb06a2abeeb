// FTP library: what is loaded when the first transfer is asked for.
#pragma once

#include <memory>

#include "platform/linux/ftp/ftp_session.h"

namespace tellaxis::platform {

/// The operations of the library.
struct FtpLibrary {
  std::unique_ptr<FtpSession> (*open)();  ///< null without memory for one
};

/// Name of the library's file and of the one function that it shows.
inline constexpr const char* ftpLibraryFile = "libtellaxis_ftp.so";
inline constexpr const char* ftpLibraryEntry = "tellaxisFtpLibrary";

}  // namespace tellaxis::platform

extern "C" const tellaxis::platform::FtpLibrary* tellaxisFtpLibrary();
