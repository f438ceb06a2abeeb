// Ini: the settings store, raw keys of any section and typed keys of section "VARIE".
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "core/ini/values.h"
#include "platform/host.h"

namespace tellaxis {

/// The one section of all typed settings.
inline constexpr std::string_view typedSection = "VARIE";
/// The same section as the raw operations spell it.
inline constexpr std::string_view rawSection = "Varie";

/// The text of a key, at most 254 characters; `defaultValue`'s text form when file, section or key is absent.
std::string LeggiIni(platform::Host& host, std::string_view section, std::string_view key, const Value& defaultValue,
                     std::string_view file);

/// `text` up to its first NUL.
std::string_view TagliaNul(std::string_view text);

/// Stores a text as it stands; an empty key deletes the whole section. False when nothing could be stored.
bool ScriviIni(platform::Host& host, std::string_view section, std::string_view key, std::string_view value,
               std::string_view file);

/// The value of a key of section "VARIE": -1 or 0 for the words of truth and for "-1" and "0"; a number where the text
/// has only digits and separators and does not begin with "0"; otherwise the text, empty when the key is absent.
Value LeggiValore(platform::Host& host, std::string_view key, std::string_view file);

/// `LeggiValore`, or `defaultValue` where that is blank.
Value LeggiImpostazione(platform::Host& host, std::string_view key, const Value& defaultValue, std::string_view file);

/// Stores the value's text form under a key of section "VARIE". A blank value is not written, so the key keeps what it
/// held.
void ScriviImpostazione(platform::Host& host, std::string_view key, const Value& value, std::string_view file);

/// True when the value is absent or its text is blank.
bool IsVuoto(const Value& value);

/// The store's narrow test: digits, "." and "," only, not beginning with "0". Empty text passes, absent text does not.
bool IsNumero(std::optional<std::string_view> text);

}  // namespace tellaxis
