// Main layout: what the main window shows, group by group and row by row, with the words for the shop's technician.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>

#include "core/activity.h"
#include "core/catalogue.h"
#include "core/form/main_form.h"

namespace tellaxis::ui {

/// What the button beside a field looks for.
enum class Browse : std::uint8_t { none, file, folder };

/// One control with its words, in UTF-8. A field without a control shows a key of the settings file, to be read only.
struct Field {
  ControlMember control = std::monostate{};
  const char* key = nullptr;
  const char* label = nullptr;
  const char* help = nullptr;
  Browse browse = Browse::none;
  int columns = 0;               ///< width in characters; 0 takes the room that is left
  const char* spoken = nullptr;  ///< name for a screen reader, where the label alone would not say enough
  const char* button = nullptr;  ///< caption of the button that stands after the field
  const char* buttonHelp = nullptr;
};

inline constexpr std::size_t mostFieldsInARow = 3;
using Row = std::array<Field, mostFieldsInARow>;

struct GroupLayout {
  const char* title;
  int column;                            ///< 0 is the left one
  CheckBox MainForm::*active = nullptr;  ///< the mark that switches the group's device on
  std::optional<Device> device = std::nullopt;
  std::span<const Row> rows;
};

/// All groups: the left column from above to below, then the right one.
std::span<const GroupLayout> mainLayout();

}  // namespace tellaxis::ui
