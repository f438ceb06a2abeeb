// Profiles of Windows: keys read and written by GetPrivateProfileStringA and WritePrivateProfileStringA.
#include "platform/windows/profiles.h"

#include <algorithm>

#include "platform/windows/kernel/native.h"
#include "text/letter_case.h"

namespace tellaxis::platform {

namespace {

/// A text as the system takes it: with its ending NUL, or absent.
class OptionalText {
 public:
  explicit OptionalText(std::optional<std::string_view> text) : present_(text.has_value()), text_(text.value_or("")) {}
  const char* get() const { return present_ ? text_.c_str() : nullptr; }

 private:
  bool present_;
  std::string text_;
};

/// The most that the system gives of a section.
constexpr DWORD longestSection = 32'767;

/// Whether the first line of this key says the value, byte for byte. Of a section that is too long nothing is known.
bool alreadySays(const std::string& section, std::string_view key, std::string_view value, const std::string& file) {
  std::string lines(longestSection, '\0');
  const DWORD length = GetPrivateProfileSectionA(section.c_str(), lines.data(), longestSection, file.c_str());
  if (length >= longestSection - 2) return false;
  std::string_view rest(lines.data(), length);
  while (!rest.empty()) {
    const std::string_view line = rest.substr(0, rest.find('\0'));
    if (line.size() > key.size() && line[key.size()] == '=' && equalIgnoringCase(line.substr(0, key.size()), key))
      return line.substr(key.size() + 1) == value;
    rest.remove_prefix(std::min(line.size() + 1, rest.size()));
  }
  return false;
}

}  // namespace

std::string WindowsProfiles::read(std::optional<std::string_view> section, std::optional<std::string_view> key,
                                  std::string_view fallback, std::size_t size, std::string_view file) {
  // Without a name the system would read a file of its own.
  if (file.empty() || size == 0) return std::string(fallback.substr(0, size == 0 ? 0 : size - 1));
  std::string buffer(size, '\0');
  const DWORD length =
      GetPrivateProfileStringA(OptionalText(section).get(), OptionalText(key).get(), std::string(fallback).c_str(),
                               buffer.data(), static_cast<DWORD>(buffer.size()), std::string(file).c_str());
  buffer.resize(length);
  return buffer;
}

bool WindowsProfiles::write(std::optional<std::string_view> section, std::optional<std::string_view> key,
                            std::optional<std::string_view> value, std::string_view file) {
  if (file.empty()) return failed(trace_, "WritePrivateProfileString", file, "manca il nome del file");
  // The system takes an absent section for a request to empty its cache.
  if (!section) return failed(trace_, "WritePrivateProfileString", file, "manca la sezione");
  // A desk at rest stores its gates at every tick. Nowhere is it said that the system leaves a file alone that says so
  // already, and it writes in place: sooner or later a power cut would meet it.
  if (key && value && alreadySays(std::string(*section), *key, *value, std::string(file))) return true;
  return WritePrivateProfileStringA(OptionalText(section).get(), OptionalText(key).get(), OptionalText(value).get(),
                                    std::string(file).c_str()) != 0 ||
         failed(trace_, "WritePrivateProfileString", file);
}

}  // namespace tellaxis::platform
