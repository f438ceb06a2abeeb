// Profiles of Windows: keys read and written by GetPrivateProfileStringA and WritePrivateProfileStringA.
#include "platform/windows/profiles.h"

#include "platform/windows/kernel/native.h"

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
  return WritePrivateProfileStringA(OptionalText(section).get(), OptionalText(key).get(), OptionalText(value).get(),
                                    std::string(file).c_str()) != 0 ||
         failed(trace_, "WritePrivateProfileString", file);
}

}  // namespace tellaxis::platform
