// Trial: a sample job sent the way that every job goes, and whether the bridge took it.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "core/activity.h"
#include "core/bridge.h"

namespace tellaxis {

enum class TrialEnd : std::uint8_t {
  taken,        ///< the bridge took the job and is done with it
  notTried,     ///< this device is never tried
  deviceOff,    ///< it is switched off, or its file is not set
  noSample,     ///< its type, family or layout is unknown
  notRunning,   ///< nobody would take the job
  placeTaken,   ///< a job waits there already
  notWritten,   ///< its place cannot be written
  notTaken,     ///< it was still there after the time that was given, and was removed
  notFinished,  ///< it was taken, and is still under way
};

/// In Italian, for the user, in code page 1252.
std::string_view textOf(TrialEnd end);

/// The bare name that the trial's job has; the device's own file name where that is given.
std::string trialJobName(const Bridge& bridge, Device device);

/// Puts the sample job of a device into its drop folder or file and waits until the bridge is done with it. The
/// settings must be loaded; `running` says whether a bridge serves the folder.
TrialEnd tryDevice(const Bridge& bridge, Device device, bool running);

}  // namespace tellaxis
