// Preview pages of Linux: its folder printers draw pages in any case, by a library that is loaded when it is needed.
#include "platform/preview_pages.h"

namespace tellaxis::platform {

PageMakerOpener previewPages() { return nullptr; }

}  // namespace tellaxis::platform
