// Buffer: receipts that wait in numbered slots until the FPMate driver can take them.
#pragma once

#include <string_view>

#include "core/bridge.h"

namespace tellaxis {

/// Moves the lowest numbered slot file (#0001 to #0020 of the point-of-sale folder's "\_Buffer") to `targetFolder` &
/// "\" & `targetName`, as long as the target is free: as a rule one a call, more only if the driver is that quick. True
/// when one was moved.
bool MF_SvuotaBuffer(Bridge& bridge, std::string_view targetFolder, std::string_view targetName);

}  // namespace tellaxis
