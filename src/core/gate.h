// Gate: the keys by which the point-of-sale application closes a device for a while.
#pragma once

#include <string_view>

#include "core/bridge.h"

namespace tellaxis {

inline constexpr std::string_view fiscalGate = "MF_Vuoto";
inline constexpr std::string_view courtesyGate = "Cort_Vuoto";

/// Whether the gate of this key is open, as the settings file says now.
bool gateIsOpen(const Bridge& bridge, std::string_view gateKey);

}  // namespace tellaxis
