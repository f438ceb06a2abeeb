// Folder printer: writes each document into a folder as JSON lines, as text, and where it can as a page.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/printing/document.h"
#include "platform/trace.h"

namespace tellaxis::platform {

/// Begins the drawing of one document into two files (native paths, UTF-8), which are complete once it is finished;
/// null on a failure, which is reported to the trace.
using PageMaker = std::function<std::unique_ptr<DocumentSink>(const std::string& pdf, const std::string& png)>;

/// Documents are numbered from 000001 up; a new one gets the number above the highest present in the folder. The JSON
/// file comes last: when it is there, the document's other files are there too. A page that cannot be drawn is missing,
/// and the rest is written all the same.
class FolderPrinter final : public PrinterBackEnd {
 public:
  /// `folder` is native, in UTF-8, and is created where it is missing. Without `makePage` there are no pages.
  FolderPrinter(std::string folder, PageMaker makePage, Trace& trace);

  std::unique_ptr<DocumentSink> open() override;
  PrinterState state() override { return PrinterState::ready; }

 private:
  std::string folder_;
  PageMaker makePage_;
  Trace& trace_;
};

}  // namespace tellaxis::platform
