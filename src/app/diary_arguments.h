// Diary arguments: the options of `diario` and `ristampa`.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "app/diary_command.h"

namespace CLI {
class App;
}

namespace tellaxis {

/// As the command line gives them, not checked yet.
struct RawDiaryArguments {
  std::optional<std::string> from;
  std::optional<std::string> to;
  std::optional<std::string> device;
  std::optional<std::string> id;
  bool problems = false;
  bool json = false;
  bool fiscal = false;
  bool evenIfIssued = false;
};

void declareDiaryArguments(CLI::App& application, RawDiaryArguments& raw);

/// The commands that these arguments belong to.
enum class DiaryCommand : std::uint8_t { none, show, reprint };

/// Fills `request` in; a complaint in UTF-8 where something is wrong or belongs to another command.
std::optional<std::string> readDiaryArguments(const RawDiaryArguments& raw, DiaryCommand command,
                                              DiaryRequest& request);

}  // namespace tellaxis
