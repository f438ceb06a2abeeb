// Diary arguments: checking.
#include "app/commands/diary_arguments.h"

#include <string_view>

namespace tellaxis {

namespace {

std::optional<std::string> readDay(const Arguments& arguments, std::string_view option, std::optional<Day>& day) {
  const std::string* const text = arguments.value(option);
  if (text == nullptr) return std::nullopt;
  day = dayFrom(*text);
  if (day) return std::nullopt;
  return "--" + std::string(option) + " " + *text + ": si scrive AAAA-MM-GG o GG/MM/AAAA";
}

}  // namespace

std::optional<std::string> readDiaryArguments(const Arguments& arguments, DiaryRequest& request) {
  if (auto complaint = readDay(arguments, "dal", request.query.from)) return complaint;
  if (auto complaint = readDay(arguments, "al", request.query.to)) return complaint;
  if (const std::string* const device = arguments.value("dispositivo")) {
    request.query.device = deviceNamed(*device);
    if (!request.query.device) return "--dispositivo " + *device + ": si scrive fiscale, display, ricevuta o preconto";
  }
  if (arguments.command == Command::ristampa && arguments.word.empty())
    return "ristampa: serve l'ID del lavoro, come lo mostra diario";
  request.query.problemsOnly = arguments.has("problemi");
  request.json = arguments.has("json");
  request.id = arguments.word;
  request.consent = {.fiscal = arguments.has("fiscale"), .evenIfIssued = arguments.has("anche-se-emesso")};
  return std::nullopt;
}

}  // namespace tellaxis
