// Courtesy markup fuzzing: any bytes as a courtesy job of every printer type.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "core/bridge.h"
#include "courtesy/job.h"
#include "fake/computer.h"

namespace {

using namespace tellaxis;

constexpr std::string_view job = "C:\\Tellaxis\\CortIN\\preconto.txt";

void demand(bool condition) {
  if (!condition) std::abort();
}

/// Prints the job and returns how many print statements it made. The file must be closed, and deleted or not as asked.
std::size_t printsOf(std::string_view type, std::string_view device, std::string_view text, bool deletes) {
  fake::Computer computer;
  Bridge bridge(computer.host);
  computer.Printer.installed = {{std::string(device), "COM3:"}};
  computer.files.put(job, text);
  bridge.settings.Cort_Printer = type;
  bridge.settings.Cort_Com = std::string("3");
  Cort_StampaFile(bridge, job);
  demand(!computer.files.isOpen(job));
  demand(computer.files.has(job) != deletes);
  return computer.journal.callsThatBegin("Print ").size();
}

/// Line ends of the text, and one more for a last line without an end.
std::size_t countLines(std::string_view text) {
  std::size_t lines = 0;
  bool open = false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\n' && i > 0 && text[i - 1] == '\r') continue;
    open = text[i] != '\r' && text[i] != '\n';
    if (!open) ++lines;
  }
  return lines + (open ? 1 : 0);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const std::size_t lines = countLines(text);
  demand(printsOf("SAMSUNG", "SRP-500", text, false) == lines + 1);
  for (const std::string_view device : {"SRP-350", "SRP-103"}) {
    const std::size_t prints = printsOf("SAMSUNG", device, text, true);
    demand(prints >= lines && prints <= 4 * lines);
  }
  const bool hasLongLine = size >= 32'767;
  const std::size_t prints = printsOf("OLIVETTI PRT100 NonFiscale", "PRT100", text, true);
  demand(prints == lines || (hasLongLine && prints < lines));
  demand(printsOf("UNIPOS MERIDIA", "UNIPOS", text, true) <= lines + 5);
  demand(printsOf("DPT-282", "", text, true) == 0);
  return 0;
}
