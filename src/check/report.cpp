// Report: names of devices and levels, and the two forms.
#include "check/report.h"

#include <algorithm>

#include "check/words.h"
#include "text/code_page.h"
#include "text/json.h"

namespace tellaxis {

namespace {

struct DeviceNames {
  std::string_view json;
  std::string_view title;
};

// In the order of `Checked`.
constexpr DeviceNames deviceNames[] = {
    {"general", "Generale"},       {"fiscal", "Misuratore fiscale"},
    {"display", "Display"},        {"slip", "Ricevuta fiscale"},
    {"courtesy", "Preconto"},      {"ftp", "Trasferimento FTP"},
    {"dialup", "Linea commutata"}, {"schedule", "Operazioni pianificate"},
};
static_assert(std::size(deviceNames) == checkedCount);

struct LevelNames {
  std::string_view json;
  std::string_view state;    ///< of a device whose worst finding is this
  std::string_view problem;  ///< before the finding itself; empty: it is none
};

// In the order of `Level`.
constexpr LevelNames levelNames[] = {
    {"ok", "in ordine", ""}, {"off", "non in uso", ""}, {"warning", "AVVISO", "avviso"}, {"error", "ERRORE", "ERRORE"}};

const DeviceNames& namesOf(Checked device) { return deviceNames[static_cast<std::size_t>(device)]; }
const LevelNames& namesOf(Level level) { return levelNames[static_cast<std::size_t>(level)]; }

void addBlock(std::string& report, const std::vector<Finding>& findings, Checked device) {
  Level worst = Level::ok;
  std::string lines;
  for (const Finding& finding : findings) {
    if (finding.device != device) continue;
    worst = std::max(worst, finding.level);
    const std::string_view problem = namesOf(finding.level).problem;
    lines.append("  ").append(problem).append(problem.empty() ? "" : ": ").append(finding.text);
    if (problem.empty()) {
      lines += '\n';
      continue;
    }
    lines.append(" [").append(finding.code).append("]\n    Rimedio: ").append(finding.remedy).append("\n");
  }
  report.append(namesOf(device).title)
      .append(": ")
      .append(namesOf(worst).state)
      .append("\n")
      .append(lines)
      .append("\n");
}

}  // namespace

std::string_view titleOf(Checked device) { return namesOf(device).title; }
std::string_view wordOf(Level level) { return namesOf(level).state; }

std::string summaryOf(const std::vector<Finding>& findings) {
  const auto count = [&](Level level) {
    return static_cast<std::size_t>(std::ranges::count(findings, level, &Finding::level));
  };
  return counted(count(Level::error), "errore", "errori") + ", " + counted(count(Level::warning), "avviso", "avvisi") +
         ".";
}

std::string checkText(const std::vector<Finding>& findings) {
  std::string report;
  for (std::size_t device = 0; device < checkedCount; ++device)
    addBlock(report, findings, static_cast<Checked>(device));
  return utf8FromCodePage(report + summaryOf(findings) + "\n");
}

std::string checkJson(const std::vector<Finding>& findings) {
  std::string json = "[";
  for (const Finding& finding : findings) {
    json += json.size() == 1 ? "\n" : ",\n";
    json += JsonObject()
                .add("device", namesOf(finding.device).json)
                .add("level", namesOf(finding.level).json)
                .add("code", finding.code)
                .add("text", finding.text)
                .add("remedy", finding.remedy)
                .text();
  }
  return json + "\n]\n";
}

}  // namespace tellaxis
