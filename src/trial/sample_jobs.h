// Sample jobs: a job that shows everything a device can do, in the form that the device is given.
#pragma once

#include <string>

#include "core/activity.h"
#include "core/bridge.h"

namespace tellaxis {

/// In code page 1252, for the display family, the courtesy printer's type and class, or the slip layout of the
/// settings; empty for one that is unknown, and for the fiscal printer, which is never tried.
std::string sampleJob(const Bridge& bridge, Device device);

}  // namespace tellaxis
