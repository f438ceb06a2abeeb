// Diary arguments: the options of `diario` and `ristampa`.
#pragma once

#include <optional>
#include <string>

#include "app/commands/diary_command.h"
#include "app/options.h"

namespace tellaxis {

/// Fills `request` in; a complaint in UTF-8 where a value cannot be used or is missing.
std::optional<std::string> readDiaryArguments(const Arguments& arguments, DiaryRequest& request);

}  // namespace tellaxis
