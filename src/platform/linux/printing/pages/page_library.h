// Page library: what is loaded when the first page is to be drawn or the first bitmap to be read.
#pragma once

#include <memory>
#include <string>
#include <variant>

#include "platform/linux/printing/pages/bitmap_file.h"
#include "platform/linux/printing/pages/page_document.h"

namespace tellaxis::platform {

/// The operations of the library.
struct PageLibrary {
  decltype(&openPages) open;
  decltype(&readBitmapFile) readBitmap;
};

/// Name of the library's file and of the one function that it shows.
inline constexpr const char* pageLibraryFile = "libtellaxis_pages.so";
inline constexpr const char* pageLibraryEntry = "tellaxisPageLibrary";

}  // namespace tellaxis::platform

extern "C" const tellaxis::platform::PageLibrary* tellaxisPageLibrary();
