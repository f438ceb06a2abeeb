// Profile text: the bytes of an INI file, searched and edited with the meaning of Windows' private-profile operations.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace tellaxis::platform {

/// The value of a key as a reader gets it, without blanks around it and without one pair of quotes; nothing when
/// section or key is absent. Names match without regard to ASCII case; the first section and the first key of a name
/// win.
std::optional<std::string_view> findValue(std::string_view text, std::string_view section, std::string_view key);

/// The section names in file order, each ended by a NUL.
std::string listSections(std::string_view text);

/// The key names of a section in file order, each ended by a NUL; empty when there is none.
std::string listKeys(std::string_view text, std::string_view section);

/// Bytes `begin` to `end` of a text, to be replaced; every byte outside them stays.
struct TextEdit {
  std::size_t begin = 0;
  std::size_t end = 0;
  std::string replacement;
};

/// What has to change so that `key` of `section` holds `value`, is absent (no `value`), or the section is absent (no
/// `key`). Nothing when the text already says so. A new key goes behind the last key of its section, a new section to
/// the end; a changed key keeps its spelling; lines written end in CR LF.
std::optional<TextEdit> editFor(std::string_view text, std::string_view section, std::optional<std::string_view> key,
                                std::optional<std::string_view> value);

}  // namespace tellaxis::platform
