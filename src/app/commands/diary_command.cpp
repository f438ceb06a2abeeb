// Diary command: entries as lines of text, and a reprint with what it says.
#include "app/commands/diary_command.h"

#include <string_view>

#include "core/bridge.h"
#include "core/settings.h"
#include "diary/diary.h"
#include "text/code_page.h"

namespace tellaxis {

namespace {

constexpr std::string_view noDiary =
    "il diario non \xC3\xA8 attivo: manca diary nella tabella [bridge] di devices.toml\n";

void pad(std::string& line, std::string_view text, std::size_t width) {
  line.append(text).append(text.size() < width ? width - text.size() : 0, ' ').append("  ");
}

/// "21/11/2026 10:05:42" of "2026-11-21T10:05:42.123".
std::string timeForReader(std::string_view time) {
  constexpr std::size_t length = 19;
  if (time.size() < length) return std::string(time);
  std::string text(time.substr(8, 2));
  text.append("/").append(time.substr(5, 2)).append("/").append(time.substr(0, 4));
  return text.append(" ").append(time.substr(11, 8));
}

std::string lineForReader(const DiaryEntry& entry) {
  constexpr std::size_t deviceWidth = 8;
  constexpr std::size_t outcomeWidth = 14;
  constexpr std::size_t idWidth = 10;
  std::string line;
  pad(line, entry.id, idWidth);
  pad(line, timeForReader(entry.time), 0);
  pad(line, namesOf(entry.device).italian, deviceWidth);
  pad(line, namesOf(entry.outcome).italian, outcomeWidth);
  line += entry.job;
  if (entry.count > 1) line += " (" + std::to_string(entry.count) + " tentativi)";
  if (!entry.reason.empty()) line += " - " + entry.reason;
  return line;
}

}  // namespace

CommandResult showDiary(platform::Host& host, const platform::BridgeOptions& options, const std::string& mainFolder,
                        const DiaryRequest& request) {
  if (options.diary.empty()) return {.status = 1, .text = std::string(noDiary)};
  DiaryQuery query = request.query;
  if (!query.from && !query.to) query.from = query.to = momentOf(host.clock).day;
  CommandResult result;
  for (const DiaryEntry& entry : readDiary(host, diaryFolder(options, mainFolder), query)) {
    result.text += request.json ? lineOf(entry) : utf8FromCodePage(lineForReader(entry));
    result.text += '\n';
  }
  if (result.text.empty() && !request.json) result.text = "nessun lavoro\n";
  return result;
}

CommandResult reprintFromDiary(platform::Host& host, const platform::BridgeOptions& options,
                               const std::string& mainFolder, const DiaryRequest& request, bool running) {
  if (options.diary.empty()) return {.status = 1, .text = std::string(noDiary)};
  Bridge bridge(host, options);
  setMainFolder(bridge.settings, mainFolder);
  CaricaImpostazioni(bridge);
  const bool taken = running || options.keepWaiting;
  const Reprint reprinted = reprint(bridge, diaryFolder(options, mainFolder), request.id, request.consent, taken);
  return {.status = reprinted == Reprint::done ? 0 : 1,
          .text = request.id + ": " + utf8FromCodePage(textOf(reprinted)) + "\n"};
}

}  // namespace tellaxis
