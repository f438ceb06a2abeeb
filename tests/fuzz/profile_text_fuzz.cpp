// Profile text fuzzing: any bytes as an INI file, any names and values read from it and written into it.
#include <array>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "platform/linux/profiles/profile_text.h"

namespace {

using namespace tellaxis::platform;

void require(bool condition) {
  if (!condition) std::abort();
}

/// Section, key, value and file: the first three each end at a NUL of the input.
std::array<std::string_view, 4> partsOf(std::string_view input) {
  std::array<std::string_view, 4> parts;
  for (std::size_t i = 0; i < 3; ++i) {
    const std::size_t end = input.find('\0');
    parts[i] = input.substr(0, end);
    input = end == std::string_view::npos ? std::string_view() : input.substr(end + 1);
  }
  parts[3] = input;
  return parts;
}

std::string edited(std::string_view text, const TextEdit& edit) {
  require(edit.begin <= edit.end && edit.end <= text.size());
  return std::string(text.substr(0, edit.begin)).append(edit.replacement).append(text.substr(edit.end));
}

/// True for names that are read back as they are written.
bool isOrdinary(std::string_view section, std::string_view key, std::string_view value) {
  constexpr std::string_view special = "[]=;\r\n";
  return section.find_first_of(special) == std::string_view::npos &&
         key.find_first_of(special) == std::string_view::npos && value.find_first_of("\r\n") == std::string_view::npos;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto [section, key, value, text] = partsOf({reinterpret_cast<const char*>(data), size});
  listSections(text);
  listKeys(text, section);

  const auto removal = editFor(text, section, key, std::nullopt);
  require(removal.has_value() == findValue(text, section, key).has_value());
  if (removal) require(removal->replacement.empty() && edited(text, *removal).size() < text.size());

  if (const auto removed = editFor(text, section, std::nullopt, std::nullopt)) edited(text, *removed);

  const auto change = editFor(text, section, key, value);
  if (!isOrdinary(section, key, value)) return 0;
  const std::string after = change ? edited(text, *change) : std::string(text);
  require(findValue(after, section, key).has_value());
  require(findValue(after, section, key) == findValue("[s]\nk=" + std::string(value), "s", "k"));
  require(!editFor(after, section, key, value));
  return 0;
}
