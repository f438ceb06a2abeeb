// Page library: its one visible function.
#include "platform/linux/printing/pages/page_library.h"

const tellaxis::platform::PageLibrary* tellaxisPageLibrary() {
  static constexpr tellaxis::platform::PageLibrary library{&tellaxis::platform::openPages,
                                                           &tellaxis::platform::readBitmapFile};
  return &library;
}
