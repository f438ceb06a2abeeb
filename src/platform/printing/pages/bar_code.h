// Bar code: the bars of an EAN-13.
#pragma once

#include <string_view>
#include <vector>

namespace tellaxis::platform {

/// The modules of an EAN-13 from the left, true being a bar; empty when `digits` are not 13 digits.
std::vector<bool> ean13Modules(std::string_view digits);

}  // namespace tellaxis::platform
