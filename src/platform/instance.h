// Instance: one copy of the program a main folder.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace tellaxis::platform {

/// Held as long as this copy of the program serves a main folder.
class InstanceLock {
 public:
  virtual ~InstanceLock() = default;
};

/// The lock of `mainFolder`, or null when another copy holds it or it cannot be known that none does, as in a folder
/// that this user may not write. A copy that died without a word holds nothing.
std::unique_ptr<InstanceLock> lockMainFolder(std::string_view mainFolder);

/// Which file keeps the lock of `mainFolder` from being had, and why, in UTF-8; empty where it is another copy that
/// does.
std::string whyUnlockable(std::string_view mainFolder);

/// The number of the process that holds the lock of `mainFolder`, 0 where it cannot be known; nothing when there is no
/// such process. Only looks: a copy that starts meanwhile is not refused for it.
std::optional<std::uint32_t> servingProcess(std::string_view mainFolder);

/// The number of this process.
std::uint32_t thisProcess();

/// Asks the copy that holds the lock of `mainFolder` to end, as Ctrl-C would. To be asked once: a second request may
/// end the copy in the middle of a job. False when there is no such copy, or none that this user may ask.
bool requestEnd(std::string_view mainFolder);

}  // namespace tellaxis::platform
