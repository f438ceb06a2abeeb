// Option path: absolute ones as they stand, others joined to the main folder.
#include "core/option_path.h"

#include "text/code_page.h"

namespace tellaxis {

namespace {

bool isAbsolute(std::string_view path) {
  return path.starts_with('/') || path.starts_with('\\') || (path.size() > 1 && path[1] == ':');
}

}  // namespace

std::string optionPath(std::string_view option, std::string_view mainFolder) {
  if (option.empty()) return {};
  const std::string path = nearestCodePage(option);
  return isAbsolute(path) ? path : std::string(mainFolder) + "\\" + path;
}

}  // namespace tellaxis
