// Loaded pages: loading once.
#include "platform/linux/printing/loaded_pages.h"

#include "platform/linux/kernel/loaded_library.h"

namespace tellaxis::platform {

const PageLibrary* pageLibrary(Trace& trace) {
  static const auto* library = static_cast<const PageLibrary*>(loadLibrary(pageLibraryFile, pageLibraryEntry, trace));
  return library;
}

}  // namespace tellaxis::platform
