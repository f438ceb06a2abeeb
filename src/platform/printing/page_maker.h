// Page maker: what draws a folder printer's documents as the paper that they would be.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/printing/bitmap.h"
#include "platform/printing/document.h"
#include "platform/trace.h"

namespace tellaxis::platform {

/// Draws documents into files.
struct PageMaker {
  std::vector<std::string_view> endings;  ///< of the files that a document's pages are: ".png"

  /// Begins the drawing of one document into files whose names are `base` (a native path, UTF-8) and each of the
  /// endings. They are complete once the document is finished. Null on a failure, which is reported to the trace.
  std::function<std::unique_ptr<DocumentSink>(const std::string& base)> open;
};

/// Makes the page maker of the printer `deviceName`. Both stay in use as long as its documents do.
using PageMakerOpener = PageMaker (*)(const std::string& deviceName, BitmapReader readBitmap, Trace& trace);

}  // namespace tellaxis::platform
