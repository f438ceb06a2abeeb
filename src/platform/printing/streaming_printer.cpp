// Streaming printer: the printer object over any set of back ends.
#include "platform/printing/streaming_printer.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace tellaxis::platform {

StreamingPrinter::StreamingPrinter(std::vector<ListedPrinter> listed, std::unique_ptr<SystemPrinters> system,
                                   PictureReader readPicture, Trace& trace)
    : listed_(std::move(listed)), system_(std::move(system)), readPicture_(std::move(readPicture)), trace_(trace) {}

std::optional<std::vector<InstalledPrinter>> StreamingPrinter::Printers() {
  std::vector<Enumerated> enumeration;
  for (const ListedPrinter& entry : listed_) enumeration.push_back({entry.printer, entry.backEnd.get()});
  if (system_) {
    auto installed = system_->list();
    if (!installed && enumeration.empty()) return std::nullopt;
    if (installed)
      for (InstalledPrinter& printer : *installed) enumeration.push_back({std::move(printer)});
  }
  enumeration_ = std::move(enumeration);
  std::vector<InstalledPrinter> printers;
  printers.reserve(enumeration_.size());
  for (const Enumerated& entry : enumeration_) printers.push_back(entry.printer);
  return printers;
}

bool StreamingPrinter::select(std::size_t index) {
  if (index >= enumeration_.size()) Printers();
  if (index >= enumeration_.size()) return fail("Printer", std::to_string(index), "stampante inesistente");
  current_ = enumeration_[index];
  return true;
}

std::string StreamingPrinter::DeviceName() {
  const Enumerated* printer = current("DeviceName");
  return printer == nullptr ? std::string() : printer->printer.DeviceName;
}

bool StreamingPrinter::FontName(std::string_view name) {
  if (name.empty()) return fail("FontName", name, "nome del carattere vuoto");
  fontName_ = name;
  return true;
}

bool StreamingPrinter::FontSize(double points) {
  if (!(points > 0) || !std::isfinite(points)) return fail("FontSize", std::to_string(points), "misura non valida");
  fontSize_ = points;
  return true;
}

bool StreamingPrinter::FontBold(bool bold) {
  fontBold_ = bold;
  return true;
}

bool StreamingPrinter::ForeColor(Color color) {
  foreColor_ = color;
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
  return state("Print", PrintStatement{std::string(text), fontName_, fontSize_, fontBold_, foreColor_});
}

bool StreamingPrinter::PaintPicture(const Picture& picture, double x, double y) {
  if (picture.file.empty() || picture.width <= 0 || picture.height <= 0)
    return fail("PaintPicture", picture.file, "nessuna immagine");
  return state("PaintPicture", PaintedPicture{picture, x, y});
}

bool StreamingPrinter::EndDoc() {
  x_ = y_ = 0;
  if (!current_) return true;
  const auto found = std::find_if(documents_.begin(), documents_.end(),
                                  [&](const OpenDocument& document) { return document.on == *current_; });
  if (found == documents_.end()) return true;
  OpenDocument document = std::move(*found);
  documents_.erase(found);
  if (document.lost) return false;
  return !document.sink || document.sink->finish();
}

void StreamingPrinter::endOpenDocuments() {
  for (OpenDocument& document : std::exchange(documents_, {}))
    if (document.sink && !document.lost) document.sink->finish();
}

/// The current printer: the chosen one or else the first installed.
const StreamingPrinter::Enumerated* StreamingPrinter::current(std::string_view operation) {
  if (!current_) {
    if (enumeration_.empty()) Printers();
    if (enumeration_.empty()) {
      fail(operation, "", "nessuna stampante installata");
      return nullptr;
    }
    current_ = enumeration_.front();
  }
  return &*current_;
}

StreamingPrinter::OpenDocument& StreamingPrinter::documentOf(const Enumerated& printer) {
  const auto found = std::find_if(documents_.begin(), documents_.end(),
                                  [&](const OpenDocument& document) { return document.on == printer; });
  if (found != documents_.end()) return *found;
  documents_.push_back({.on = printer});
  return documents_.back();
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
  const auto moves = std::exchange(document.waitingMoves, {});
  return std::all_of(moves.begin(), moves.end(), [&](const Move& move) { return document.sink->add(move); });
}

bool StreamingPrinter::state(std::string_view operation, const Operation& statement) {
  const Enumerated* printer = current(operation);
  if (printer == nullptr) return false;
  OpenDocument& document = documentOf(*printer);
  if (document.lost) return fail(operation, printer->printer.DeviceName, "documento perduto");
  document.lost = (!document.sink && !begin(document)) || !document.sink->add(statement);
  return !document.lost;
}

bool StreamingPrinter::move(std::string_view operation, const Move& move) {
  if (!std::isfinite(move.x.value_or(0)) || !std::isfinite(move.y.value_or(0)))
    return fail(operation, "", "posizione non valida");
  const Enumerated* printer = current(operation);
  if (printer == nullptr) return false;
  OpenDocument& document = documentOf(*printer);
  if (document.lost) return fail(operation, printer->printer.DeviceName, "documento perduto");
  if (document.sink) {
    document.lost = !document.sink->add(move);
    return !document.lost;
  }
  document.waitingMoves.push_back(move);
  return true;
}

bool StreamingPrinter::fail(std::string_view operation, std::string_view subject, std::string_view reason) {
  trace_.failed(operation, subject, reason);
  return false;
}

}  // namespace tellaxis::platform
