// Schedule: timetable, hand-over and start of the scheduled operations.
#include "connect/schedule.h"

#include <string>
#include <string_view>

#include "connect/batch_file.h"
#include "core/ini/ini.h"
#include "platform/clock.h"
#include "platform/files.h"
#include "platform/locale.h"
#include "platform/processes.h"

#include "text/letter_case.h"

namespace tellaxis {

namespace {

using platform::WindowStyle;

/// A program that carries operations out: its batch file in the program folder, or else its database run by the
/// database runtime.
struct OperationProgram {
  std::string_view batchFile;
  WindowStyle batchStyle;
  std::string_view database;
};

constexpr OperationProgram restore{
    .batchFile = "Restore51.bat", .batchStyle = WindowStyle::hidden, .database = "\\Restore_51.mde"};
constexpr OperationProgram orbis52{
    .batchFile = "Orbis52.bat", .batchStyle = WindowStyle::minimised, .database = "\\Orbis52.mde"};

/// The two fields of a timetable entry; each must be ended by its "#".
struct Operation {
  std::string code;
  std::string tag;
};

/// Decimal digits of `number`, with zeros before them up to `width`.
std::string digits(int number, std::size_t width) {
  std::string text = std::to_string(number);
  return text.size() < width ? std::string(width - text.size(), '0') + text : text;
}

/// For example "LUN#0930".
std::string timetableKey(const platform::DateTime& now, const RegionalSettings& regional) {
  const std::string& weekday = regional.weekdays.at(static_cast<std::size_t>(now.weekday));
  return upperCase(weekday.substr(0, 3)) + "#" + digits(now.hour, 2) + digits(now.minute, 2);
}

/// For example "07032003".
std::string dateText(const platform::DateTime& now) {
  return digits(now.day, 2) + digits(now.month, 2) + digits(now.year, 4);
}

Operation operationFrom(std::string_view entry) {
  Operation operation;
  std::string* const fields[] = {&operation.code, &operation.tag};
  for (std::string* const field : fields) {
    const std::size_t end = entry.find('#');
    if (end == std::string_view::npos) break;
    *field = entry.substr(0, end);
    entry.remove_prefix(end + 1);
  }
  return operation;
}

std::string readText(Bridge& bridge, std::string_view key, std::string_view file) {
  return textOf(LeggiValore(bridge.host, key, file), bridge.host.locale.regional());
}

void handOver(Bridge& bridge, const Operation& operation) {
  const std::string& file = bridge.settings.pointOfSaleSettingsFile;
  ScriviImpostazione(bridge.host, "TLX_SO_ACTIVE", yes, file);
  ScriviImpostazione(bridge.host, "TLX_SO_OPE", operation.code, file);
  ScriviImpostazione(bridge.host, "TLX_SO_TAG", operation.tag, file);
}

bool isRequestedByHand(Bridge& bridge, std::string_view timetable) {
  const Value active = LeggiImpostazione(bridge.host, "PRC_ACTIVE", no, timetable);
  return truthFrom(active, bridge.host.locale.regional()).value_or(false);
}

/// The operation code of the by-hand request, which is taken by this.
std::string takeRequest(Bridge& bridge) {
  std::string code = readText(bridge, "Tlx_SO_OPE", bridge.settings.pointOfSaleSettingsFile);
  ScriviImpostazione(bridge.host, "PRC_ACTIVE", no, bridge.settings.pointOfSaleFolder + "\\_schedulatore.ini");
  return code;
}

void announceRestore(Bridge& bridge) {
  const std::string file = bridge.settings.pointOfSaleFolder + "\\_local.ini";
  const bool isServer = bridge.form.Postazione.Text == "SERVER";
  ScriviImpostazione(bridge.host, "RESTORE_ACTIVE", std::string("-1"), file);
  ScriviImpostazione(bridge.host, "TLX_R51_ACTIVE", std::string(isServer ? "1" : "2"), file);
}

std::string runtimeCommandLine(Bridge& bridge, std::string_view database) {
  const auto quoted = [](const std::string& text) { return "\"" + text + "\""; };
  const std::string& folder = bridge.settings.pointOfSaleFolder;
  const std::string runtime = readText(bridge, "RunTimeOrbis51", bridge.settings.settingsFile);
  return quoted(runtime) + " /runtime /wrkgrp " + quoted(folder + "\\System.mdw") + " " +
         quoted(folder + std::string(database));
}

void start(Bridge& bridge, const OperationProgram& program) {
  const std::string batchFile = bridge.settings.mainFolder + "\\" + std::string(program.batchFile);
  if (bridge.host.files.lookUp(batchFile) == program.batchFile)
    bridge.host.processes.start(commandFor(batchFile), program.batchStyle);
  else
    bridge.host.processes.start(runtimeCommandLine(bridge, program.database), WindowStyle::minimisedWithoutFocus);
}

}  // namespace

void OperazioniPianificate(Bridge& bridge) {
  const platform::DateTime now = bridge.host.clock.now();
  const std::string timetable = bridge.settings.pointOfSaleFolder + "\\_Schedulatore.ini";
  const std::string key = timetableKey(now, bridge.host.locale.regional());
  const std::string entry = upperCase(LeggiIni(bridge.host, typedSection, key, Null{}, timetable));

  std::string code;
  if (!entry.empty()) {
    const std::string thisEntry = dateText(now) + "#" + key;
    if (readText(bridge, "OP_LAST", bridge.settings.settingsFile) == thisEntry) return;
    const Operation operation = operationFrom(entry);
    code = operation.code;
    ScriviImpostazione(bridge.host, "OP_LAST", thisEntry, bridge.settings.settingsFile);
    handOver(bridge, operation);
  }
  if (isRequestedByHand(bridge, timetable)) code = takeRequest(bridge);

  if (code.starts_with('2')) {
    announceRestore(bridge);
    start(bridge, restore);
  } else if (!code.empty()) {
    start(bridge, orbis52);
  }
}

}  // namespace tellaxis
