// Reason: the system's error numbers in words.
#pragma once

#include <string>

namespace tellaxis::platform {

/// Why an operation failed, from the error number it left; Italian, in code page 1252.
std::string reasonOf(int error);

}  // namespace tellaxis::platform
