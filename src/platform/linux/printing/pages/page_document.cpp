// Page document: draws each page as soon as it is full.
#include "platform/linux/printing/pages/page_document.h"

#include <cstdio>
#include <utility>

#include "platform/linux/printing/pages/page_drawing.h"
#include "platform/printing/pages/page_layout.h"

namespace tellaxis::platform {

namespace {

/// Typefaces are costly to find and are kept as long as the thread runs that draws with them: the toolkit's font
/// objects belong to one thread.
Typefaces& keptTypefaces() {
  thread_local Typefaces typefaces;
  return typefaces;
}

class PageDocument final : public DocumentSink {
 public:
  PageDocument(PageFiles files, const std::string& deviceName, BitmapReader readBitmap, Trace& trace)
      : files_(std::move(files)),
        deviceName_(deviceName),
        trace_(trace),
        pdf_(files_.pdf, files_.takePdf),
        layout_(paperOf(deviceName), keptTypefaces(), std::move(readBitmap), [this](const Page& page) { draw(page); }) {
  }

  ~PageDocument() override {
    if (finished_) return;
    if (!works_) keptTypefaces().forget();
    pdf_.close();
    for (const std::string* file : {&files_.pdf, &files_.png})
      if (!file->empty()) std::remove(file->c_str());
  }
  PageDocument(const PageDocument&) = delete;
  PageDocument& operator=(const PageDocument&) = delete;

  bool add(const Operation& operation) override {
    if (isComplete()) return true;
    layout_.add(operation);
    return works_;
  }

  bool finish() override {
    if (!isComplete()) layout_.finish();
    if (!pdf_.close()) fail("il PDF non si pu\xF2 scrivere");
    finished_ = works_;
    return works_;
  }

 private:
  bool isComplete() const { return files_.mostPages > 0 && pages_ >= files_.mostPages; }

  void draw(const Page& page) {
    if (isComplete()) return;
    if (!pdf_.add(page, keptTypefaces())) fail("il PDF non si pu\xF2 scrivere");
    if (pages_++ == 0 && !files_.png.empty() && !writePng(files_.png, page, keptTypefaces()))
      fail("il PNG non si pu\xF2 scrivere");
  }

  void fail(std::string_view reason) {
    if (std::exchange(works_, false)) trace_.failed("EndDoc", deviceName_, reason);
  }

  PageFiles files_;
  std::string deviceName_;
  Trace& trace_;
  PdfFile pdf_;
  PageLayout layout_;
  int pages_ = 0;
  bool works_ = true;
  bool finished_ = false;
};

}  // namespace

std::unique_ptr<DocumentSink> openPages(const PageFiles& files, const std::string& deviceName, BitmapReader readBitmap,
                                        Trace& trace) {
  return std::make_unique<PageDocument>(files, deviceName, std::move(readBitmap), trace);
}

}  // namespace tellaxis::platform
