// Sample documents: what the procedures say to each kind of printer.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/printing/document.h"

namespace tellaxis::test {

struct SampleDocument {
  std::string_view name;
  std::string deviceName;
  std::vector<platform::Operation> operations;
};

/// All samples; the first has the picture `logo` in it.
std::vector<SampleDocument> sampleDocuments(const std::string& logo);

/// A BMP of 24 bits: black letters "BAR" in a frame on white.
std::string logoBitmap();

}  // namespace tellaxis::test
