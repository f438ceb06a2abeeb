// Slip records fuzzing: any bytes as a slip job of every layout, read in pieces of any size.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "core/bridge.h"
#include "core/step_failed.h"
#include "fake/computer.h"
#include "slip/job.h"
#include "slip/records.h"

namespace {

using namespace tellaxis;

constexpr std::string_view job = "C:\\MERIDIA\\rf.txt";

void demand(bool condition) {
  if (!condition) std::abort();
}

/// A text handed out in pieces.
class PiecedText : public platform::InputFile {
 public:
  PiecedText(std::string_view text, std::size_t piece) : text_(text), piece_(piece) {}

  std::optional<std::size_t> read(std::span<char> buffer) override {
    const std::size_t size = std::min({buffer.size(), piece_, text_.size()});
    if (size > 0) std::memcpy(buffer.data(), text_.data(), size);
    text_.remove_prefix(size);
    return size;
  }

 private:
  std::string_view text_;
  std::size_t piece_;
};

std::vector<std::string> recordsOf(std::string_view text, std::size_t piece) {
  Records records(std::make_unique<PiecedText>(text, piece));
  std::vector<std::string> all;
  while (const auto record = records.next()) all.emplace_back(*record);
  return all;
}

/// A job is printed and gone, or it fails and stays; it is closed in either case.
void print(std::string_view layout, std::string_view text) {
  fake::Computer computer;
  Bridge bridge(computer.host);
  computer.files.put(job, text);
  bridge.settings.RF_Stampante = layout;
  bridge.settings.RF_File = job;
  PrintedForms printedForms;
  computer.Printer.installed = {{std::string(layout), "LPT1:"}};
  bool failed = false;
  try {
    LanciaFileRF(bridge, printedForms);
  } catch (const StepFailed&) {
    failed = true;
  }
  demand(!computer.files.isOpen(job));
  demand(computer.files.has(job) == failed);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const std::vector<std::string> records = recordsOf(text, size + 1);
  demand(records == recordsOf(text, 1));
  demand(records == recordsOf(text, 3));
  const auto ends = static_cast<std::size_t>(
      std::count_if(text.begin(), text.end(), [](char c) { return c == ',' || c == '\r' || c == '\n'; }));
  demand(records.size() <= ends + 1);
  for (const std::string& record : records) demand(record.find_first_of("\r\n") == std::string::npos);
  for (const std::string_view layout : {"EPSON TM-L90 Receipt", "Custom KUBE Ric. Fisc. [A]", "EPSON TM-U295 Slip"})
    print(layout, text);
  return 0;
}
