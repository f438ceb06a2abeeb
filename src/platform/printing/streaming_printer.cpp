// Streaming printer: the printer object over any set of back ends.
#include "platform/printing/streaming_printer.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace tellaxis::platform {

StreamingPrinter::StreamingPrinter(std::vector<ListedPrinter> listed, std::unique_ptr<SystemPrinters> system,
                                   PictureReader readPicture, Trace& trace)
    : listed_(std::move(listed)), system_(std::move(system)), readPicture_(std::move(readPicture)), trace_(trace) {
  for (const ListedPrinter& entry : listed_) enumeration_.push_back({entry.printer, entry.backEnd.get()});
}

std::optional<std::vector<InstalledPrinter>> StreamingPrinter::Printers() {
  if (!listSystem() && listed_.empty()) return std::nullopt;
  std::vector<InstalledPrinter> printers;
  printers.reserve(enumeration_.size());
  for (const Enumerated& entry : enumeration_) printers.push_back(entry.printer);
  return printers;
}

PrinterSearch StreamingPrinter::find(const std::function<bool(const InstalledPrinter&)>& matches) {
  const auto searchFrom = [&](std::size_t first) {
    for (std::size_t i = first; i < enumeration_.size(); ++i)
      if (matches(enumeration_[i].printer)) return PrinterSearch{true, i, enumeration_[i].printer};
    return PrinterSearch{true};
  };
  enumeration_.resize(listed_.size());
  if (PrinterSearch among = searchFrom(0); among.index) return among;
  return listSystem() ? searchFrom(listed_.size()) : PrinterSearch{};
}

bool StreamingPrinter::select(std::size_t index) {
  if (index >= enumeration_.size()) listSystem();
  if (index >= enumeration_.size()) return fail("Printer", std::to_string(index), "stampante inesistente");
  current_ = enumeration_[index];
  isChosen_ = true;
  style_ = {};
  x_ = y_ = 0;
  return true;
}

std::string StreamingPrinter::DeviceName() {
  const Enumerated* printer = current("DeviceName");
  return printer == nullptr ? std::string() : printer->printer.DeviceName;
}

/// What the back end of the first printer of this name answers; `unknown` where there is none.
template <typename Answer>
Answer StreamingPrinter::asked(std::string_view deviceName, Answer unknown,
                               const std::function<Answer(PrinterBackEnd&)>& ask) {
  const PrinterSearch named = findPrinterNamed(*this, deviceName);
  if (!named.index) return unknown;
  const Enumerated& printer = enumeration_[*named.index];
  if (printer.listed != nullptr) return ask(*printer.listed);
  const auto backEnd = system_->backEnd(printer.printer);
  return backEnd ? ask(*backEnd) : unknown;
}

PrinterState StreamingPrinter::state(std::string_view deviceName) {
  return asked<PrinterState>(deviceName, PrinterState::unknown,
                             [](PrinterBackEnd& printer) { return printer.state(); });
}

bool StreamingPrinter::hasFont(std::string_view deviceName, std::string_view font) {
  return asked<bool>(deviceName, true, [font](PrinterBackEnd& printer) { return printer.hasFont(font); });
}

bool StreamingPrinter::FontName(std::string_view name) {
  if (name.empty()) return fail("FontName", name, "nome del carattere vuoto");
  style_.font = name;
  return true;
}

bool StreamingPrinter::FontSize(double points) {
  if (!(points > 0) || !std::isfinite(points)) return fail("FontSize", std::to_string(points), "misura non valida");
  style_.size = points;
  return true;
}

bool StreamingPrinter::FontBold(bool bold) {
  style_.bold = bold;
  return true;
}

bool StreamingPrinter::ForeColor(Color color) {
  style_.color = color;
  return true;
}

bool StreamingPrinter::CurrentX(double x) {
  if (!move("CurrentX", Move{.x = x})) return false;
  x_ = x;
  return true;
}

bool StreamingPrinter::CurrentY(double y) {
  if (!move("CurrentY", Move{.y = y})) return false;
  y_ = y;
  return true;
}

bool StreamingPrinter::Print(std::string_view text) {
  return state("Print", PrintStatement{std::string(text), style_.font, style_.size, style_.bold, style_.color});
}

bool StreamingPrinter::PaintPicture(const Picture& picture, double x, double y) {
  if (picture.file.empty() || picture.width <= 0 || picture.height <= 0)
    return fail("PaintPicture", picture.file, "nessuna immagine");
  return state("PaintPicture", PaintedPicture{picture, x, y});
}

bool StreamingPrinter::EndDoc() {
  const auto document = takeDocument();
  return !document || !document->sink || document->sink->finish();
}

void StreamingPrinter::abandon() { takeDocument(); }

void StreamingPrinter::endOpenDocuments() {
  for (OpenDocument& document : std::exchange(documents_, {}))
    if (document.sink) document.sink->finish();
}

/// Asks the system for its printers; false where it could not tell them, and then it has none.
bool StreamingPrinter::listSystem() {
  enumeration_.resize(listed_.size());
  if (!system_) return true;
  auto list = system_->list();
  if (!list) return false;
  systemDefault_ = listed_.size() + list->defaultIndex;
  for (InstalledPrinter& printer : list->printers) enumeration_.push_back({std::move(printer)});
  return true;
}

/// The current printer: the chosen one, else the default one. A document that is open on that goes on there.
const StreamingPrinter::Enumerated* StreamingPrinter::current(std::string_view operation) {
  if (!isChosen_ && (!current_ || openDocumentOn(*current_) == nullptr)) current_ = defaultPrinter();
  if (current_) return &*current_;
  fail(operation, "", "nessuna stampante installata");
  return nullptr;
}

std::optional<StreamingPrinter::Enumerated> StreamingPrinter::defaultPrinter() {
  if (!listed_.empty()) return enumeration_.front();
  if (!listSystem() || enumeration_.empty()) return std::nullopt;
  return enumeration_[std::min(systemDefault_, enumeration_.size() - 1)];
}

StreamingPrinter::OpenDocument* StreamingPrinter::openDocumentOn(const Enumerated& printer) {
  const auto found = std::find_if(documents_.begin(), documents_.end(),
                                  [&](const OpenDocument& document) { return document.on == printer; });
  return found == documents_.end() ? nullptr : &*found;
}

StreamingPrinter::OpenDocument& StreamingPrinter::documentOn(const Enumerated& printer) {
  if (OpenDocument* open = openDocumentOn(printer)) return *open;
  return documents_.emplace_back(OpenDocument{.on = printer});
}

/// Takes the current printer's document out of the open ones; the next one begins at position 0,0.
std::optional<StreamingPrinter::OpenDocument> StreamingPrinter::takeDocument() {
  x_ = y_ = 0;
  OpenDocument* open = current_ ? openDocumentOn(*current_) : nullptr;
  if (open == nullptr) return std::nullopt;
  OpenDocument document = std::move(*open);
  documents_.erase(documents_.begin() + (open - documents_.data()));
  return document;
}

/// Opens the document at the device and tells it the moves that waited.
bool StreamingPrinter::begin(OpenDocument& document) {
  PrinterBackEnd* backEnd = document.on.listed;
  if (backEnd == nullptr) {
    document.ownBackEnd = system_->backEnd(document.on.printer);
    backEnd = document.ownBackEnd.get();
  }
  if (backEnd != nullptr) document.sink = backEnd->open();
  if (!document.sink) return false;
  for (const Move& move : std::exchange(document.waitingMoves, {})) document.sink->add(move);
  return true;
}

bool StreamingPrinter::state(std::string_view operation, const Operation& statement) {
  const Enumerated* printer = current(operation);
  if (printer == nullptr) return false;
  OpenDocument& document = documentOn(*printer);
  return (document.sink || begin(document)) && document.sink->add(statement);
}

bool StreamingPrinter::move(std::string_view operation, const Move& move) {
  if (!std::isfinite(move.x.value_or(0)) || !std::isfinite(move.y.value_or(0)))
    return fail(operation, "", "posizione non valida");
  const Enumerated* printer = current(operation);
  if (printer == nullptr) return false;
  OpenDocument& document = documentOn(*printer);
  if (document.sink) return document.sink->add(move);
  document.waitingMoves.push_back(move);
  return true;
}

bool StreamingPrinter::fail(std::string_view operation, std::string_view subject, std::string_view reason) {
  trace_.failed(operation, subject, reason);
  return false;
}

}  // namespace tellaxis::platform
