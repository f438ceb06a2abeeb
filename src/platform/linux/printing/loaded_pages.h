// Loaded pages: the library that draws pages, loaded when it is first needed.
#pragma once

#include "platform/linux/printing/pages/page_library.h"
#include "platform/trace.h"

namespace tellaxis::platform {

/// Loaded at the first call; null when it cannot be loaded, which is reported to the trace once.
const PageLibrary* pageLibrary(Trace& trace);

}  // namespace tellaxis::platform
