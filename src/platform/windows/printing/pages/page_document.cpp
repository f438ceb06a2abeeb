// Page document: lays out operations until the first page is full, and draws it.
#include "platform/windows/printing/pages/page_document.h"

#include <utility>

#include "platform/preview_pages.h"
#include "platform/windows/printing/pages/page_drawing.h"

namespace tellaxis::platform {

namespace {

class PageDocument final : public DocumentSink {
 public:
  PageDocument(std::string file, std::string deviceName, BitmapReader readBitmap, Trace& trace)
      : file_(std::move(file)),
        deviceName_(std::move(deviceName)),
        trace_(trace),
        layout_(paperOf(deviceName_), typefaces_, std::move(readBitmap), [this](const Page& page) { draw(page); }) {}

  bool add(const Operation& operation) override {
    if (!isDrawn_) layout_.add(operation);
    return works_;
  }

  bool finish() override {
    if (!isDrawn_) layout_.finish();
    return works_;
  }

 private:
  void draw(const Page& page) {
    if (std::exchange(isDrawn_, true)) return;
    works_ = writePage(file_, page, typefaces_);
    if (!works_) trace_.failed("EndDoc", deviceName_, "l'immagine della pagina non si pu\xF2 scrivere");
  }

  std::string file_;
  std::string deviceName_;
  Trace& trace_;
  GdiTypefaces typefaces_;
  PageLayout layout_;
  bool isDrawn_ = false;
  bool works_ = true;
};

constexpr std::string_view ending = ".bmp";

}  // namespace

PageMaker openPictures(const std::string& deviceName, BitmapReader readBitmap, Trace& trace) {
  return {{ending}, [deviceName, readBitmap = std::move(readBitmap), &trace](const std::string& base) {
            return std::make_unique<PageDocument>(base + std::string(ending), deviceName, readBitmap, trace);
          }};
}

PageMakerOpener previewPages() { return &openPictures; }

}  // namespace tellaxis::platform
