// Loaded libraries: what only some computers, or only now and then, need.
#pragma once

#include "platform/linux/cups/cups_library.h"
#include "platform/linux/ftp/ftp_library.h"
#include "platform/linux/pages/page_library.h"
#include "platform/trace.h"

namespace tellaxis::platform {

/// Loaded at the first call; null when it cannot be loaded, which is reported to the trace once.
const PageLibrary* pageLibrary(Trace& trace);
const CupsLibrary* cupsLibrary(Trace& trace);
const FtpLibrary* ftpLibrary(Trace& trace);

}  // namespace tellaxis::platform
