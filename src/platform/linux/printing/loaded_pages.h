// Loaded pages: the library that draws pages, loaded when it is first needed.
#pragma once

#include "platform/linux/printing/pages/page_library.h"
#include "platform/trace.h"

namespace tellaxis::platform {

/// Null when it cannot be loaded, which is reported to the trace; the next call tries again.
const PageLibrary* pageLibrary(Trace& trace);

}  // namespace tellaxis::platform
