// Waiting jobs: those that nobody has taken yet, and the gates that hold them back.
#pragma once

#include <string>
#include <string_view>

#include "check/scene.h"

namespace tellaxis {

/// The drop folder of a device and the key that may close it. Says `gate-closed`, or `jobs-waiting` where the gate is
/// open.
void checkDropFolder(const CheckScene& scene, Findings& findings, const std::string& folder, std::string_view gateKey);

/// A device whose job is always the one file.
void checkJobFile(const CheckScene& scene, Findings& findings, const std::string& file);

}  // namespace tellaxis
