// Display job: the walk through the table of families.
#include "display/job.h"

#include <string>

#include "core/attesa.h"
#include "core/input/text_lines.h"
#include "display/families.h"
#include "platform/files.h"
#include "platform/trace.h"

namespace tellaxis {

namespace {

void send(SerialControl& port, const DisplayLine& line, std::string_view text) {
  std::string bytes(line.before);
  bytes += text.substr(0, line.length);
  bytes += line.after;
  port.Output(bytes);
}

void openIfClosed(SerialControl& port) {
  if (!port.PortOpen()) port.PortOpen(true);
}

void sendAllLines(Bridge& bridge, const DisplayFamily& family) {
  SerialControl& port = bridge.form.MSComm1;
  const bool openedForEachJob = family.port == PortUse::openedForEachJob;
  if (!openedForEachJob)
    openIfClosed(port);
  else if (port.PortOpen())
    port.PortOpen(false);

  TextLines lines(bridge.host, bridge.settings.Display_File);
  if (openedForEachJob) port.PortOpen(true);
  const DisplayLine* line = &family.upper;
  while (const auto text = lines.next()) {
    send(port, *line, *text);
    line = &family.lower;
  }
  if (openedForEachJob) port.PortOpen(false);
}

void sendFirstLine(Bridge& bridge, const DisplayFamily& family) {
  TextLines lines(bridge.host, bridge.settings.Display_File);
  const std::string text(lines.next().value_or(""));
  lines.close();
  openIfClosed(bridge.form.MSComm1);
  if (!text.empty()) send(bridge.form.MSComm1, family.upper, text);
}

}  // namespace

void LanciaFileDisplay(Bridge& bridge) {
  const Settings& settings = bridge.settings;
  if (const DisplayFamily* family = displayFamilyNamed(settings.Display_Type)) {
    if (family->shown == LinesShown::all)
      sendAllLines(bridge, *family);
    else
      sendFirstLine(bridge, *family);
    bridge.host.files.remove(settings.Display_File);
  } else {
    bridge.host.trace.failed("display", settings.Display_File, "famiglia sconosciuta: " + settings.Display_Type);
  }
  Attesa(bridge, settings.Display_Delay, true);
}

}  // namespace tellaxis
