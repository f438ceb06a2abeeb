// Standard error: UTF-8, whatever the terminal.
#include "platform/standard_error.h"

#include <unistd.h>

#include <cstddef>
#include <string>

#include "platform/linux/kernel/uninterrupted.h"
#include "text/code_page.h"

namespace tellaxis::platform {

void writeStandardError(std::string_view line) {
  const std::string text = utf8FromCodePage(line) + '\n';
  std::string_view rest = text;
  while (!rest.empty()) {
    const auto written = untilUninterrupted([&] { return ::write(STDERR_FILENO, rest.data(), rest.size()); });
    if (written < 0) return;
    rest.remove_prefix(static_cast<std::size_t>(written));
  }
}

}  // namespace tellaxis::platform
