// Printing: how long a 40-line receipt takes to a folder printer, as JSON lines alone and with its pages.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "platform/linux/printers.h"
#include "platform/printing/folder_printer.h"
#include "platform/printing/streaming_printer.h"
#include "platform/trace.h"

namespace {

namespace fs = std::filesystem;
using namespace tellaxis::platform;

constexpr int linesOfReceipt = 40;

class NoTrace final : public Trace {
 public:
  void failed(std::string_view /*operation*/, std::string_view /*subject*/, std::string_view /*reason*/) override {}
};

/// A folder of its own on tmpfs, so that no disk is measured.
class Folder {
 public:
  Folder() {
    std::string name = "/dev/shm/tellaxis-bench-XXXXXX";
    if (mkdtemp(name.data()) == nullptr) std::abort();
    path_ = name;
  }
  ~Folder() { fs::remove_all(path_); }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;

  std::string path() const { return path_.string(); }
  void empty() const {
    for (const auto& entry : fs::directory_iterator(path_ / "spool")) fs::remove(entry.path());
  }

 private:
  fs::path path_;
};

void printReceipt(PrinterObject& printer) {
  printer.FontName("FontControl");
  printer.Print("w");
  for (int line = 1; line <= linesOfReceipt; ++line) {
    printer.FontName("FontA15cpi");
    printer.FontSize(9);
    printer.FontBold(line == linesOfReceipt);
    printer.ForeColor(line == linesOfReceipt ? Color{255, 0, 0} : Color{});
    printer.Print("Articolo di prova             \x80  12,50");
  }
  printer.FontName("FontControl");
  printer.Print("P");
  printer.EndDoc();
}

/// Prints receipt after receipt; the folder is emptied now and then, as somebody who takes the files would.
void run(benchmark::State& state, PrinterObject& printer, const Folder& folder) {
  int printed = 0;
  for (auto _ : state) {
    printReceipt(printer);
    if (++printed % 50 != 0) continue;
    state.PauseTiming();
    folder.empty();
    state.ResumeTiming();
  }
}

void receiptAsJsonLines(benchmark::State& state) {
  const Folder folder;
  NoTrace trace;
  std::vector<ListedPrinter> listed;
  listed.push_back(
      {{"SAMSUNG SRP-500", "COM3:"}, std::make_unique<FolderPrinter>(folder.path() + "/spool", std::nullopt, trace)});
  StreamingPrinter printer(
      std::move(listed), nullptr, [](std::string_view) { return std::nullopt; }, trace);
  run(state, printer, folder);
}
BENCHMARK(receiptAsJsonLines)->Unit(benchmark::kMicrosecond);

void receiptWithPages(benchmark::State& state) {
  const Folder folder;
  NoTrace trace;
  DevicesFile devices;
  devices.printers.push_back({{"SAMSUNG SRP-500", "COM3:"}, FolderTarget{"spool"}, {}});
  const auto printer = openPrinters(
      devices, folder.path(), [](std::string_view path) { return std::string(path); }, trace);
  printReceipt(*printer);
  if (!fs::exists(folder.path() + "/spool/000001.png")) return state.SkipWithError("no page was drawn");
  run(state, *printer, folder);
}
BENCHMARK(receiptWithPages)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
