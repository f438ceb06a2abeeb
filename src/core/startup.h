// Start-up: what happens once when the main form loads.
#pragma once

#include <string>

#include "core/bridge.h"
#include "core/devices.h"

namespace tellaxis {

/// The start-up: opens the gates, creates the job folders or empties them of jobs left from an earlier run (with
/// `keep_waiting` only of those that were under way), settles the point-of-sale folder, runs the setup procedures,
/// loads the settings. `mainFolder` carries no trailing separator.
void Form_Load(Bridge& bridge, DeviceSetup& setup, std::string mainFolder);

/// Settles the point-of-sale folder and notes the path of the database runtime that starts the point-of-sale
/// application.
void PosizioneOrbis51(Bridge& bridge);

}  // namespace tellaxis
