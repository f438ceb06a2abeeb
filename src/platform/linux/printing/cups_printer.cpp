// CUPS printer: the computer's queues as installed printers, and jobs to them.
#include "platform/linux/printing/cups_printer.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <utility>

#include "platform/linux/kernel/loaded_library.h"
#include "platform/linux/printing/loaded_pages.h"
#include "text/code_page.h"

namespace tellaxis::platform {

namespace {

constexpr const char* serverPlaces[] = {"/run/cups/cups.sock", "/var/run/cups/cups.sock", "/etc/cups/client.conf"};

/// False where nothing on this computer speaks of a CUPS server, so that libcups need not be loaded to find none.
bool mayHaveServer() {
  if (std::getenv("CUPS_SERVER") != nullptr) return true;
  const char* home = std::getenv("HOME");
  std::error_code ignored;
  return std::any_of(std::begin(serverPlaces), std::end(serverPlaces),
                     [&](const char* place) { return std::filesystem::exists(place, ignored); }) ||
         (home != nullptr && std::filesystem::exists(std::string(home) + "/.cups/client.conf", ignored));
}

/// Null when it cannot be loaded, which is reported to the trace; the next call tries again.
const CupsLibrary* cupsLibrary(Trace& trace) {
  return loadedLibrary<CupsLibrary>(cupsLibraryFile, cupsLibraryEntry, trace);
}

bool send(const std::string& queue, JobFormat format, const ByteReader& read, Trace& trace) {
  const CupsLibrary* library = cupsLibrary(trace);
  if (library == nullptr) return false;
  std::string reason;
  if (library->send(queue, format, read, reason)) return true;
  trace.failed("EndDoc", nearestCodePage(queue), nearestCodePage(reason));
  return false;
}

/// A file of its own name that is deleted with its owner.
class TemporaryFile {
 public:
  TemporaryFile() {
    std::error_code ignored;
    std::string name = (std::filesystem::temp_directory_path(ignored) / "tellaxis-XXXXXX").string();
    const int descriptor = mkstemp(name.data());
    if (descriptor < 0) return;
    close(descriptor);
    path_ = name;
  }
  ~TemporaryFile() {
    if (!path_.empty()) unlink(path_.c_str());
  }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  /// Empty where none could be made.
  const std::string& path() const { return path_; }

 private:
  std::string path_;
};

/// Drawn into a temporary file, then sent.
class QueueDocument final : public DocumentSink {
 public:
  QueueDocument(std::string queue, Trace& trace) : queue_(std::move(queue)), trace_(trace) {}

  bool open(const std::string& deviceName, const BitmapReader& readBitmap) {
    const PageLibrary* library = pageLibrary(trace_);
    if (library == nullptr) return false;
    if (file_.path().empty()) {
      trace_.failed("Print", nearestCodePage(queue_), "nessun file temporaneo");
      return false;
    }
    pages_ = library->open({.pdf = file_.path(), .png = {}}, deviceName, readBitmap, trace_);
    return pages_ != nullptr;
  }

  bool add(const Operation& operation) override { return pages_->add(operation); }

  bool finish() override {
    if (!pages_->finish()) return false;
    struct Close {
      void operator()(std::FILE* file) const { std::fclose(file); }
    };
    const std::unique_ptr<std::FILE, Close> file(std::fopen(file_.path().c_str(), "rb"));
    const ByteReader read = [&](std::span<char> buffer) -> std::optional<std::size_t> {
      const std::size_t got = file ? std::fread(buffer.data(), 1, buffer.size(), file.get()) : 0;
      if (!file || std::ferror(file.get()) != 0) return std::nullopt;
      return got;
    };
    return send(queue_, JobFormat::pdf, read, trace_);
  }

 private:
  std::string queue_;
  Trace& trace_;
  TemporaryFile file_;
  std::unique_ptr<DocumentSink> pages_;
};

class QueuePrinter final : public PrinterBackEnd {
 public:
  QueuePrinter(std::string queue, std::string deviceName, BitmapReader readBitmap, Trace& trace)
      : queue_(std::move(queue)),
        deviceName_(std::move(deviceName)),
        readBitmap_(std::move(readBitmap)),
        trace_(trace) {}

  std::unique_ptr<DocumentSink> open() override {
    auto document = std::make_unique<QueueDocument>(queue_, trace_);
    if (!document->open(deviceName_, readBitmap_)) return nullptr;
    return document;
  }

 private:
  std::string queue_;
  std::string deviceName_;
  BitmapReader readBitmap_;
  Trace& trace_;
};

class QueueChannel final : public ByteChannel {
 public:
  QueueChannel(std::string queue, Trace& trace) : queue_(std::move(queue)), trace_(trace) {}

  bool send(Spool& document) override {
    const ByteReader read = [&](std::span<char> buffer) -> std::optional<std::size_t> {
      const std::size_t got = document.read(buffer);
      if (document.failed()) return std::nullopt;
      return got;
    };
    return platform::send(queue_, JobFormat::raw, read, trace_);
  }

 private:
  std::string queue_;
  Trace& trace_;
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

CupsPrinters::CupsPrinters(std::vector<SerialDefinition> serialLines, BitmapReader readBitmap, Trace& trace)
    : serialLines_(std::move(serialLines)), readBitmap_(std::move(readBitmap)), trace_(trace) {}

std::optional<std::vector<InstalledPrinter>> CupsPrinters::list() {
  std::vector<InstalledPrinter> printers;
  if (!mayHaveServer()) return printers;
  const CupsLibrary* library = cupsLibrary(trace_);
  if (library == nullptr) return std::nullopt;
  std::string reason;
  const auto queues = library->list(reason);
  if (!queues) {
    trace_.failed("Printers", "CUPS", nearestCodePage(reason));
    return std::nullopt;
  }
  for (const CupsQueue& queue : *queues)
    printers.push_back({nearestCodePage(queue.name), portOfQueue(queue.deviceUri, serialLines_)});
  return printers;
}

std::unique_ptr<PrinterBackEnd> CupsPrinters::backEnd(const InstalledPrinter& printer) {
  return openCupsPrinter(utf8FromCodePage(printer.DeviceName), printer.DeviceName, readBitmap_, trace_);
}

std::unique_ptr<PrinterBackEnd> openCupsPrinter(std::string queue, std::string deviceName, BitmapReader readBitmap,
                                                Trace& trace) {
  return std::make_unique<QueuePrinter>(std::move(queue), std::move(deviceName), std::move(readBitmap), trace);
}

std::unique_ptr<ByteChannel> openCupsChannel(std::string queue, Trace& trace) {
  return std::make_unique<QueueChannel>(std::move(queue), trace);
}

}  // namespace tellaxis::platform
