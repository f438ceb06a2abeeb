// Page document: a document that becomes the page which paper would show.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "platform/printing/bitmap.h"
#include "platform/printing/document.h"
#include "platform/trace.h"

namespace tellaxis::platform {

/// Takes the bytes that come next; false when it could not.
using ByteTaker = std::function<bool(std::string_view bytes)>;

/// Where a document's pages go (native paths, UTF-8); an empty path is not written.
struct PageFiles {
  std::string pdf;
  std::string png;    ///< shows the first page, which on a roll is four metres long
  int mostPages = 0;  ///< more are not drawn; 0: no bound
  ByteTaker takePdf;  ///< gets the PDF that has no path
};

/// Begins the pages of a document of the printer `deviceName`; the files are complete once it is finished.
std::unique_ptr<DocumentSink> openPages(const PageFiles& files, const std::string& deviceName, BitmapReader readBitmap,
                                        Trace& trace);

}  // namespace tellaxis::platform
