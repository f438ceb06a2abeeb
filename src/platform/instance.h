// Instance: one copy of the program a main folder.
#pragma once

#include <memory>
#include <string_view>

namespace tellaxis::platform {

/// Held as long as this copy of the program serves a main folder.
class InstanceLock {
 public:
  virtual ~InstanceLock() = default;
};

/// The lock of `mainFolder`, or null when another copy holds it. A copy that died without a word holds nothing.
std::unique_ptr<InstanceLock> lockMainFolder(std::string_view mainFolder);

}  // namespace tellaxis::platform
