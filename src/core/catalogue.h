// Catalogue: one row for each setting, walked by the load and by the save.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <variant>

#include "core/form/main_form.h"
#include "core/settings.h"

namespace tellaxis {

enum class Group : std::uint8_t { generale, display, misuratoreFiscale, ricevutaFiscale, preconto };

/// Raw: the text as it stands. Typed: truth values and numbers are recognised, blank text gives the default.
enum class ReadKind : std::uint8_t { raw, typed };

/// Raw: written even when empty. Typed: a blank value leaves the key as it was. Never: changed in the file alone.
enum class WriteKind : std::uint8_t { never, raw, typed };

using DefaultValue = std::variant<Null, std::string_view, std::int16_t>;

/// Where a setting is kept once loaded; its type decides the conversion.
using SettingMember =
    std::variant<bool Settings::*, std::string Settings::*, std::int16_t Settings::*, Value Settings::*>;

/// The control that shows a setting; none for one that only the file holds.
using ControlMember = std::variant<std::monostate, CheckBox MainForm::*, TextBox MainForm::*, ComboBox MainForm::*>;

/// When a check box may be saved as true: the control's text is not this one (empty: it is not blank).
struct OnlyIfConfigured {
  ControlMember control = std::monostate{};
  std::string_view notPresent;
};

struct Setting {
  Group group;
  std::string_view loadedAs;
  ReadKind read;
  DefaultValue defaultValue = Null{};
  SettingMember setting;
  ControlMember control = std::monostate{};
  std::string_view notShown = {};  ///< a text that the load does not put into the control

  WriteKind write = WriteKind::never;
  std::string_view savedAs = {};
  int savePosition = 0;  ///< 1 is written first
  OnlyIfConfigured active = {};
};

/// All settings, in load order.
std::span<const Setting> catalogue();

/// The rows that are saved, in save order.
std::span<const Setting* const> savedSettings();

}  // namespace tellaxis
