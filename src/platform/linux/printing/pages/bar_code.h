// Bar code: the bars of an EAN-13.
#pragma once

#include <string>
#include <vector>

namespace tellaxis::platform {

/// The modules of an EAN-13 from the left, true being a bar; empty when `digits` are no such code.
std::vector<bool> ean13Modules(const std::string& digits);

}  // namespace tellaxis::platform
