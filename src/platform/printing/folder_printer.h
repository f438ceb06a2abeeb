// Folder printer: writes each document into a folder as JSON lines, as text, and where it can as a page.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "platform/printing/document.h"
#include "platform/printing/page_maker.h"
#include "platform/trace.h"

namespace tellaxis::platform {

/// Documents are numbered from 000001 up; a new one gets the number above the highest present in the folder. The JSON
/// file comes last: when it is there, the document's other files are there too. A page that cannot be drawn is missing,
/// and the rest is written all the same.
class FolderPrinter final : public PrinterBackEnd {
 public:
  /// `folder` is native, in UTF-8, and is created where it is missing. Without `pages` there are none.
  FolderPrinter(std::string folder, std::optional<PageMaker> pages, Trace& trace);

  std::unique_ptr<DocumentSink> open() override;
  PrinterState state() override { return PrinterState::ready; }

 private:
  std::string folder_;
  std::optional<PageMaker> pages_;
  Trace& trace_;
};

}  // namespace tellaxis::platform
