// Page document: a document that becomes the page which paper would show.
#pragma once

#include <memory>
#include <string>

#include "platform/printing/bitmap.h"
#include "platform/printing/document.h"
#include "platform/trace.h"

namespace tellaxis::platform {

/// Where a document's pages go (native paths, UTF-8); an empty path is not written.
struct PageFiles {
  std::string pdf;
  std::string png;    ///< shows the first page, which on a roll is four metres long
  int mostPages = 0;  ///< more are not drawn; 0: no bound
};

/// Begins the pages of a document of the printer `deviceName`; the files are complete once it is finished.
std::unique_ptr<DocumentSink> openPages(const PageFiles& files, const std::string& deviceName, BitmapReader readBitmap,
                                        Trace& trace);

}  // namespace tellaxis::platform
