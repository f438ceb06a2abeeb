// CUPS printer: the computer's queues as installed printers, and jobs to them.
#include "platform/linux/printing/cups_printer.h"

#include <charconv>
#include <span>
#include <utility>

#include "platform/linux/printing/loaded_pages.h"
#include "text/code_page.h"

namespace tellaxis::platform {

namespace {

ByteReader readerOf(Spool& document) {
  return [&document](std::span<char> buffer) -> std::optional<std::size_t> {
    const std::size_t got = document.read(buffer);
    if (document.failed()) return std::nullopt;
    return got;
  };
}

/// Drawn into a spool, then sent.
class QueueDocument final : public DocumentSink {
 public:
  QueueDocument(CupsServer& server, std::string queue) : server_(server), queue_(std::move(queue)) {}

  bool open(const PageLibrary& library, const std::string& deviceName, const BitmapReader& readBitmap, Trace& trace) {
    const PageFiles files{.takePdf = [this](std::string_view bytes) { return pdf_.append(bytes); }};
    pages_ = library.open(files, deviceName, readBitmap, trace);
    return pages_ != nullptr;
  }

  bool add(const Operation& operation) override { return pages_->add(operation); }

  bool finish() override {
    return pages_->finish() && pdf_.rewind() && server_.send(queue_, JobFormat::pdf, readerOf(pdf_));
  }

 private:
  CupsServer& server_;
  std::string queue_;
  Spool pdf_;
  std::unique_ptr<DocumentSink> pages_;
};

class QueuePrinter final : public PrinterBackEnd {
 public:
  QueuePrinter(std::shared_ptr<CupsServer> server, std::string queue, std::string deviceName, BitmapReader readBitmap,
               Trace& trace)
      : server_(std::move(server)),
        queue_(std::move(queue)),
        deviceName_(std::move(deviceName)),
        readBitmap_(std::move(readBitmap)),
        trace_(trace) {}

  std::unique_ptr<DocumentSink> open() override {
    const PageLibrary* library = pageLibrary(trace_);
    auto document = std::make_unique<QueueDocument>(*server_, queue_);
    if (library == nullptr || !document->open(*library, deviceName_, readBitmap_, trace_)) return nullptr;
    return document;
  }

  PrinterState state() override { return server_->state(queue_); }

 private:
  std::shared_ptr<CupsServer> server_;
  std::string queue_;
  std::string deviceName_;
  BitmapReader readBitmap_;
  Trace& trace_;
};

class QueueChannel final : public ByteChannel {
 public:
  QueueChannel(std::shared_ptr<CupsServer> server, std::string queue)
      : server_(std::move(server)), queue_(std::move(queue)) {}

  bool send(Spool& document) override { return server_->send(queue_, JobFormat::raw, readerOf(document)); }
  PrinterState state() override { return server_->state(queue_); }

 private:
  std::shared_ptr<CupsServer> server_;
  std::string queue_;
};

/// The number at the end of `device` where it begins with `prefix`.
std::optional<int> numberAfter(std::string_view device, std::string_view prefix) {
  if (!device.starts_with(prefix)) return std::nullopt;
  int number = 0;
  const char* end = device.data() + device.size();
  const auto result = std::from_chars(device.data() + prefix.size(), end, number);
  if (result.ec != std::errc{} || result.ptr != end || number < 0) return std::nullopt;
  return number;
}

}  // namespace

std::string portOfQueue(const std::string& uri, const std::vector<SerialDefinition>& serialLines) {
  const std::string address = uri.substr(0, uri.find('?'));
  constexpr std::string_view serial = "serial:";
  if (address.starts_with(serial)) {
    const std::string device = address.substr(serial.size());
    for (const SerialDefinition& line : serialLines)
      if (line.device == device) return "COM" + std::to_string(line.port) + ":";
    if (const auto number = numberAfter(device, "/dev/ttyS")) return "COM" + std::to_string(*number + 1) + ":";
  }
  if (const auto number = numberAfter(address, "parallel:/dev/lp")) return "LPT" + std::to_string(*number + 1) + ":";
  return nearestCodePage(uri);
}

CupsPrinters::CupsPrinters(std::shared_ptr<CupsServer> server, std::vector<SerialDefinition> serialLines,
                           BitmapReader readBitmap, Trace& trace)
    : server_(std::move(server)),
      serialLines_(std::move(serialLines)),
      readBitmap_(std::move(readBitmap)),
      trace_(trace) {}

std::optional<SystemPrinterList> CupsPrinters::list() {
  const auto queues = server_->list();
  if (!queues) return std::nullopt;
  SystemPrinterList list;
  for (const CupsQueue& queue : *queues) {
    if (queue.isDefault) list.defaultIndex = list.printers.size();
    list.printers.push_back({nearestCodePage(queue.name), portOfQueue(queue.deviceUri, serialLines_)});
  }
  return list;
}

std::unique_ptr<PrinterBackEnd> CupsPrinters::backEnd(const InstalledPrinter& printer) {
  return openCupsPrinter(server_, utf8FromCodePage(printer.DeviceName), printer.DeviceName, readBitmap_, trace_);
}

std::unique_ptr<PrinterBackEnd> openCupsPrinter(std::shared_ptr<CupsServer> server, std::string queue,
                                                std::string deviceName, BitmapReader readBitmap, Trace& trace) {
  return std::make_unique<QueuePrinter>(std::move(server), std::move(queue), std::move(deviceName),
                                        std::move(readBitmap), trace);
}

std::unique_ptr<ByteChannel> openCupsChannel(std::shared_ptr<CupsServer> server, std::string queue) {
  return std::make_unique<QueueChannel>(std::move(server), std::move(queue));
}

}  // namespace tellaxis::platform
