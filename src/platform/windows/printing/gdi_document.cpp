// GDI document: statements drawn on a printer's device context as they come, with the driver's device fonts.
#include "platform/windows/printing/gdi_document.h"

#include <windows.h>

#include <cmath>
#include <map>
#include <set>
#include <tuple>

#include "platform/windows/kernel/native.h"
#include "platform/windows/printing/device_face.h"
#include "platform/windows/printing/gdi_objects.h"
#include "platform/windows/printing/installed_printers.h"
#include "platform/windows/printing/pictures.h"
#include "platform/windows/printing/printer_ports.h"

namespace tellaxis::platform {

namespace {

constexpr double unitsPerInch = 1440;
constexpr double pointsPerInch = 72;

Face lookUp(HDC context, const std::wstring& name) {
  Face face;
  LOGFONTW wanted = {};
  wanted.lfCharSet = DEFAULT_CHARSET;
  name.copy(wanted.lfFaceName, LF_FACESIZE - 1);
  EnumFontFamiliesExW(context, &wanted, takeFace, reinterpret_cast<LPARAM>(&face), 0);
  return face;
}

/// Face, size in points, boldness.
using FontKey = std::tuple<std::string, double, bool>;

class GdiDocument : public DocumentSink {
 public:
  GdiDocument(std::string name, Trace& trace) : name_(std::move(name)), trace_(trace) {}
  GdiDocument(const GdiDocument&) = delete;
  GdiDocument& operator=(const GdiDocument&) = delete;
  ~GdiDocument() override {
    if (started_) AbortDoc(context_.get());
  }

  bool start() {
    context_.reset(CreateDCW(L"WINSPOOL", wide(name_).c_str(), nullptr, nullptr));
    if (!context_) return fail("CreateDC");
    DOCINFOW information = {};
    information.cbSize = sizeof information;
    information.lpszDocName = L"Tellaxis";
    if (StartDocW(context_.get(), &information) <= 0) return fail("StartDoc");
    started_ = true;
    return startPage();
  }

  bool add(const Operation& operation) override {
    return std::visit([this](const auto& statement) { return draw(statement); }, operation);
  }

  bool finish() override {
    if (!endPage()) return false;
    if (EndDoc(context_.get()) <= 0) return fail("EndDoc");
    started_ = false;
    return true;
  }

 private:
  bool fail(std::string_view operation) { return failed(trace_, operation, name_); }

  int capability(int index) const { return GetDeviceCaps(context_.get(), index); }

  /// Where a page could not be begun, the next statement tries again.
  bool startPage() {
    if (onPage_) return true;
    y_ = 0;
    selected_.reset();
    onPage_ = StartPage(context_.get()) > 0;
    return onPage_ || fail("StartPage");
  }

  bool endPage() {
    if (!onPage_) return true;
    onPage_ = EndPage(context_.get()) <= 0;
    return !onPage_ || fail("EndPage");
  }

  int deviceUnits(double units, int resolution) const {
    return static_cast<int>(std::lround(units * capability(resolution) / unitsPerInch));
  }

  bool draw(const Move& move) {
    if (move.x) x_ = deviceUnits(*move.x, LOGPIXELSX);
    if (move.y) y_ = deviceUnits(*move.y, LOGPIXELSY);
    return true;
  }

  bool draw(const PaintedPicture& painted) {
    return (startPage() && paintPicture(context_.get(), painted.picture, deviceUnits(painted.x, LOGPIXELSX),
                                        deviceUnits(painted.y, LOGPIXELSY))) ||
           failed(trace_, "PaintPicture", painted.picture.file);
  }

  bool draw(const PrintStatement& statement) {
    const std::wstring text = wide(statement.text);
    std::wstring_view rest = text;
    for (;;) {
      const std::size_t end = rest.find_first_of(L"\r\n");
      if (!drawLine(statement, rest.substr(0, end))) return false;
      if (end == std::wstring_view::npos) return true;
      rest.remove_prefix(end + (rest.substr(end, 2) == L"\r\n" ? 2 : 1));
    }
  }

  /// One line at the print position, which then moves to the beginning of the next.
  bool drawLine(const PrintStatement& statement, std::wstring_view line) {
    if (!startPage() || !selectFont(statement)) return false;
    TEXTMETRICW metrics;
    if (!GetTextMetricsW(context_.get(), &metrics)) return fail("GetTextMetrics");
    const int height = static_cast<int>(metrics.tmHeight + metrics.tmExternalLeading);
    if (y_ > 0 && y_ + height > capability(VERTRES) && (!endPage() || !startPage() || !selectFont(statement)))
      return false;
    if (!line.empty() && !TextOutW(context_.get(), x_, y_, line.data(), static_cast<int>(line.size())))
      return fail("TextOut");
    x_ = 0;
    y_ += height;
    return true;
  }

  bool selectFont(const PrintStatement& statement) {
    SetBkMode(context_.get(), TRANSPARENT);
    SetTextColor(context_.get(), RGB(statement.color.red, statement.color.green, statement.color.blue));
    const FontKey key{statement.font, statement.size, statement.bold};
    if (selected_ == key) return true;
    FontHandle& font = fonts_[key];
    if (!font) {
      const LOGFONTW description = describe(statement);
      font.reset(CreateFontIndirectW(&description));
    }
    if (!font || SelectObject(context_.get(), font.get()) == nullptr) return fail("SelectObject");
    selected_ = key;
    return true;
  }

  /// The driver's own description of the face in the wanted size, so that the device font itself is selected.
  LOGFONTW describe(const PrintStatement& statement) {
    const std::wstring name = wide(statement.font);
    const Face face = lookUp(context_.get(), name);
    if (!face.found && missing_.insert(statement.font).second)
      failed(trace_, "FontName", statement.font, "il driver di " + name_ + " non ha questo carattere");
    LOGFONTW description = {};
    description.lfCharSet = face.found ? face.description.lfCharSet : static_cast<BYTE>(DEFAULT_CHARSET);
    description.lfPitchAndFamily = face.description.lfPitchAndFamily;
    description.lfOutPrecision = face.ofDevice ? OUT_DEVICE_PRECIS : OUT_DEFAULT_PRECIS;
    description.lfHeight = -static_cast<LONG>(std::lround(statement.size * capability(LOGPIXELSY) / pointsPerInch));
    description.lfWeight = statement.bold ? FW_BOLD : FW_NORMAL;
    name.copy(description.lfFaceName, LF_FACESIZE - 1);
    return description;
  }

  std::string name_;
  Trace& trace_;
  std::map<FontKey, FontHandle> fonts_;  ///< of this document; they outlive the context that they are selected into
  DeviceContext context_;
  bool started_ = false;
  bool onPage_ = false;
  int x_ = 0;
  int y_ = 0;
  std::optional<FontKey> selected_;
  std::set<std::string> missing_;  ///< faces already reported
};

class GdiBackEnd : public PrinterBackEnd {
 public:
  GdiBackEnd(InstalledPrinter printer, Trace& trace) : printer_(std::move(printer)), trace_(trace) {}

  std::unique_ptr<DocumentSink> open() override {
    if (asksForAnswer(printer_.Port)) {
      failed(trace_, "StartDoc", printer_.DeviceName,
             "la porta " + printer_.Port + " chiede il nome di un file per ogni documento");
      return nullptr;
    }
    auto document = std::make_unique<GdiDocument>(printer_.DeviceName, trace_);
    return document->start() ? std::move(document) : nullptr;
  }

  PrinterState state() override { return stateOfLocalPrinter(printer_.DeviceName); }

  /// A face of the system's own serves as well: only one that nobody has is missing.
  bool hasFont(std::string_view font) override {
    const DeviceContext context(CreateICW(L"WINSPOOL", wide(printer_.DeviceName).c_str(), nullptr, nullptr));
    return !context || lookUp(context.get(), wide(font)).found;
  }

 private:
  InstalledPrinter printer_;
  Trace& trace_;
};

}  // namespace

std::unique_ptr<PrinterBackEnd> gdiBackEnd(const InstalledPrinter& printer, Trace& trace) {
  return std::make_unique<GdiBackEnd>(printer, trace);
}

}  // namespace tellaxis::platform
