// Left out: what is told of files that are not taken, once for each reason.
#pragma once

#include <map>
#include <string>
#include <string_view>

#include "platform/trace.h"

namespace tellaxis::platform {

/// A file that cannot be taken is met on every tick.
class LeftOut {
 public:
  explicit LeftOut(Trace& trace) : trace_(trace) {}

  /// Tells the trace why a file of `folder`, as people know it, is left out, unless that was the last reason told.
  void note(std::string_view folder, std::string_view name, std::string reason) {
    if (noted_.size() >= mostRemembered) noted_.clear();
    const std::string path = std::string(folder) + (folder.ends_with('\\') ? "" : "\\") + std::string(name);
    std::string& noted = noted_[path];
    if (noted == reason) return;
    noted = std::move(reason);
    trace_.failed("list", path, noted);
  }

 private:
  static constexpr std::size_t mostRemembered = 1000;

  Trace& trace_;
  std::map<std::string, std::string> noted_;
};

}  // namespace tellaxis::platform
