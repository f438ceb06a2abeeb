// Check: everything that can be seen to be wrong with an installation. Nothing is written, created or opened for
// writing.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "check/finding.h"
#include "platform/bridge_options.h"
#include "platform/host.h"
#include "platform/inspection.h"

namespace tellaxis {

struct CheckRequest {
  std::string mainFolder;                       ///< in code page 1252
  std::optional<std::uint32_t> servingProcess;  ///< of the bridge that serves it; 0: one whose number is unknown
  bool network = false;                         ///< servers are asked too
};

/// The findings, device after device.
std::vector<Finding> checkInstallation(platform::Host& host, platform::Inspection& inspection,
                                       const platform::BridgeOptions& options, const CheckRequest& request);

/// Whether there is an error among them.
bool hasError(const std::vector<Finding>& findings);

}  // namespace tellaxis
