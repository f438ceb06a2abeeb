// Loaded pages: loading once.
#include "platform/linux/printing/loaded_pages.h"

#include "platform/linux/kernel/loaded_library.h"

namespace tellaxis::platform {

const PageLibrary* pageLibrary(Trace& trace) {
  return loadedLibrary<PageLibrary>(pageLibraryFile, pageLibraryEntry, trace);
}

}  // namespace tellaxis::platform
