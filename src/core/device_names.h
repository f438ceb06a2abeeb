// Device names: what a device is called in files, and for the reader.
#pragma once

#include <optional>
#include <string_view>

#include "core/activity.h"

namespace tellaxis {

/// Names of a device: in files, and for the reader.
struct DeviceNames {
  Device device;
  std::string_view name;
  std::string_view italian;
};
const DeviceNames& namesOf(Device device);

/// The device of this name, in either language.
std::optional<Device> deviceNamed(std::string_view name);

}  // namespace tellaxis
