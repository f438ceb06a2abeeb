// Diary arguments: declaring and checking.
#include "app/diary_arguments.h"

#include <CLI/CLI.hpp>
#include <string_view>

namespace tellaxis {

namespace {

std::optional<std::string> readDay(std::string_view option, const std::optional<std::string>& text,
                                   std::optional<Day>& day) {
  if (!text) return std::nullopt;
  day = dayFrom(*text);
  if (day) return std::nullopt;
  return std::string(option) + " " + *text + ": si scrive AAAA-MM-GG o GG/MM/AAAA";
}

/// An argument that was given to a command that does not take it.
std::optional<std::string> misplaced(const RawDiaryArguments& raw, DiaryCommand command) {
  struct Place {
    bool given;
    std::string_view name;
    DiaryCommand command;
    std::string_view commandName;
  };
  const Place places[] = {
      {raw.from.has_value(), "--dal", DiaryCommand::show, "diario"},
      {raw.to.has_value(), "--al", DiaryCommand::show, "diario"},
      {raw.device.has_value(), "--dispositivo", DiaryCommand::show, "diario"},
      {raw.problems, "--problemi", DiaryCommand::show, "diario"},
      {raw.json, "--json", DiaryCommand::show, "diario"},
      {raw.fiscal, "--fiscale", DiaryCommand::reprint, "ristampa"},
      {raw.evenIfIssued, "--anche-se-emesso", DiaryCommand::reprint, "ristampa"},
  };
  for (const Place& place : places)
    if (place.given && place.command != command)
      return std::string(place.name) + ": vale solo per " + std::string(place.commandName);
  if (raw.id && command != DiaryCommand::reprint) return "argomento sconosciuto: " + *raw.id;
  return std::nullopt;
}

}  // namespace

void declareDiaryArguments(CLI::App& application, RawDiaryArguments& raw) {
  application.add_option("id", raw.id);
  application.add_option("--dal", raw.from);
  application.add_option("--al", raw.to);
  application.add_option("--dispositivo", raw.device);
  application.add_flag("--problemi", raw.problems);
  application.add_flag("--json", raw.json);
  application.add_flag("--fiscale", raw.fiscal);
  application.add_flag("--anche-se-emesso", raw.evenIfIssued);
}

std::optional<std::string> readDiaryArguments(const RawDiaryArguments& raw, DiaryCommand command,
                                              DiaryRequest& request) {
  if (auto complaint = misplaced(raw, command)) return complaint;
  if (auto complaint = readDay("--dal", raw.from, request.query.from)) return complaint;
  if (auto complaint = readDay("--al", raw.to, request.query.to)) return complaint;
  if (raw.device) {
    request.query.device = deviceNamed(*raw.device);
    if (!request.query.device)
      return "--dispositivo " + *raw.device + ": si scrive fiscale, display, ricevuta o preconto";
  }
  if (command == DiaryCommand::reprint && !raw.id) return "ristampa: serve l'ID del lavoro, come lo mostra diario";
  request.query.problemsOnly = raw.problems;
  request.json = raw.json;
  request.id = raw.id.value_or("");
  request.consent = {.fiscal = raw.fiscal, .evenIfIssued = raw.evenIfIssued};
  return std::nullopt;
}

}  // namespace tellaxis
