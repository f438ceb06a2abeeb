// Device names: the table.
#include "core/device_names.h"

#include <algorithm>

namespace tellaxis {

namespace {

constexpr DeviceNames devices[] = {
    {.device = Device::fiscalPrinter, .name = "fiscal", .italian = "fiscale"},
    {.device = Device::display, .name = "display", .italian = "display"},
    {.device = Device::slipPrinter, .name = "slip", .italian = "ricevuta"},
    {.device = Device::courtesyPrinter, .name = "courtesy", .italian = "preconto"},
};

}  // namespace

const DeviceNames& namesOf(Device device) { return *std::ranges::find(devices, device, &DeviceNames::device); }

std::optional<Device> deviceNamed(std::string_view name) {
  for (const DeviceNames& row : devices)
    if (row.name == name || row.italian == name) return row.device;
  return std::nullopt;
}

}  // namespace tellaxis
