// Movable names: the files of a folder that are whole and can be moved to another one.
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/linux/files/failed_moves.h"
#include "platform/linux/files/settling.h"
#include "platform/linux/kernel/descriptor.h"
#include "platform/trace.h"

namespace tellaxis::platform {

/// What it leaves out is told to the trace, with its reason, and again only when the reason is another one.
class MovableNames {
 public:
  MovableNames(Settling& settling, FailedMoves& failedMoves, Trace& trace)
      : settling_(settling), failedMoves_(failedMoves), trace_(trace) {}

  /// The names in the open folder `folder`, which is `native` on the disk and `shown` to people, sorted. Nothing, with
  /// `errno`, when they could not be found out.
  std::optional<std::vector<std::string>> in(std::string_view shown, const Descriptor& folder, std::string native,
                                             const Descriptor& target);

 private:
  void noteOnce(std::string_view folder, std::string_view name, std::string reason);

  Settling& settling_;
  FailedMoves& failedMoves_;
  Trace& trace_;
  std::map<std::string, std::string, std::less<>> noted_;
};

}  // namespace tellaxis::platform
