// Preview pages: what draws the pages of a preview.
#pragma once

#include "platform/printing/page_maker.h"

namespace tellaxis::platform {

/// For `SystemOptions::pagesInto`. In a library of its own: only who shows previews pays for what draws them.
PageMakerOpener previewPages();

}  // namespace tellaxis::platform
