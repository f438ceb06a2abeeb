// Device status: what the strip says of one device, in words.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "core/activity.h"
#include "core/bridge.h"

namespace tellaxis::ui {

/// Texts in code page 1252.
struct DeviceStatus {
  bool active = false;
  bool heldBack = false;  ///< its jobs wait because its printer says no
  bool failed = false;    ///< its last job did
  std::string state;      ///< "attivo"
  std::string line;       ///< what keeps its jobs waiting, else how its last job went
  std::string help;       ///< the same at length
};

DeviceStatus statusOf(const Bridge& bridge, const Activity& activity, Device device);

/// "Misuratore fiscale".
std::string_view titleOf(Device device);

}  // namespace tellaxis::ui
