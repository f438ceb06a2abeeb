// Serial printer: line settings and what is sent.
#include "courtesy/serial_printer.h"

#include <string>

#include "core/ini/values.h"
#include "core/input/text_lines.h"
#include "platform/files.h"
#include "platform/locale.h"
#include "platform/trace.h"

namespace tellaxis {

namespace {

constexpr int inputBuffer = 1024;
constexpr int outputBuffer = 2048;

constexpr std::string_view sentLine = "N2";
/// Where the search for the ":" begins in a line, counted from 0.
constexpr std::size_t searchFrom = 3;

constexpr std::string_view lineEnd = "\r\n";
constexpr std::string_view blankLine = " \r\n";
constexpr int blankLines = 5;
constexpr std::string_view paperCut = "\x1Bm";

constexpr std::string_view testText = "ambaraBA CICI COCO TRE CIVETTE SUL COMO9CHE FA";
constexpr std::size_t testLength = 30;

void openPort(Bridge& bridge) {
  const auto& regional = bridge.host.locale.regional();
  const Settings& settings = bridge.settings;
  SerialControl& port = bridge.form.COMPreconto;
  if (const auto number = integerFrom(settings.Cort_Com, regional))
    port.CommPort(*number);
  else
    bridge.host.trace.failed("CommPort", textOf(settings.Cort_Com, regional), "non \xE8 un numero di porta");
  port.Settings(settings.Cort_Sett);
  port.InBufferSize(inputBuffer);
  port.OutBufferSize(outputBuffer);
  port.RThreshold(0);
  port.SThreshold(0);
  if (!port.PortOpen()) port.PortOpen(true);
}

void feedAndCut(SerialControl& port) {
  for (int i = 0; i < blankLines; ++i) port.Output(blankLine);
  port.Output(paperCut);
}

}  // namespace

void Cort_StampaDPT282(Bridge& bridge, std::string_view jobFile) {
  platform::Host& host = bridge.host;
  SerialControl& port = bridge.form.COMPreconto;
  openPort(bridge);
  TextLines lines(host, jobFile);
  while (const auto line = lines.next()) {
    if (!line->starts_with(sentLine)) continue;
    const std::size_t colon = line->find(':', searchFrom);
    const std::string_view text = colon == std::string_view::npos ? *line : line->substr(colon + 1);
    port.Output(std::string(text).append(lineEnd));
  }
  feedAndCut(port);
  port.PortOpen(false);
  lines.close();
  host.files.remove(jobFile);
}

void Command1_Click(Bridge& bridge) {
  SerialControl& port = bridge.form.COMPreconto;
  openPort(bridge);
  port.Output(testText.substr(0, testLength));
  feedAndCut(port);
  port.PortOpen(false);
}

}  // namespace tellaxis
