// Preview: what the job of a printer would put on paper.
#pragma once

#include <string>

#include "core/activity.h"
#include "platform/bridge_options.h"
#include "platform/host.h"

namespace tellaxis {

/// What is to be looked at; paths as the rules form them, in code page 1252.
struct PreviewRequest {
  std::string mainFolder;
  Device device = Device::courtesyPrinter;
  std::string job;        ///< a file; it stays as it is
  std::string workingAt;  ///< path of a copy of it, which is made and deleted here
};

/// Prints the job with the settings of the settings file, by the rules of its device. The printers of `host` must be
/// such that nothing comes out of them. False where the job would go to no printer.
bool printPreview(platform::Host& host, const PreviewRequest& request);

}  // namespace tellaxis
