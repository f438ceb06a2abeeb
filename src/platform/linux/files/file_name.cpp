// File name: the last part of a path, and its encoding.
#include "platform/linux/files/file_name.h"

#include "text/code_page.h"

namespace tellaxis::platform {

std::size_t folderLength(std::string_view native) {
  const std::size_t slash = native.rfind('/');
  return slash == std::string_view::npos ? 0 : slash + 1;
}

std::optional<std::string> textOfName(std::string_view name) {
  if (auto text = codePageFromUtf8(name)) return text;
  if (!isUtf8(name)) return std::string(name);
  return std::nullopt;
}

std::string_view lastName(std::string_view native) { return native.substr(folderLength(native)); }

}  // namespace tellaxis::platform
