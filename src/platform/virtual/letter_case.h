// Letter case: comparing texts of code page 1252 without regard to case.
#pragma once

#include <string_view>

namespace tellaxis::platform {

/// The upper-case letter of a letter, accented ones too; any other character itself.
char upperCase(char letter);

bool equalIgnoringCase(std::string_view left, std::string_view right);

/// Order of names: by upper-case bytes, names that differ in case alone by their own bytes.
bool lessIgnoringCase(std::string_view left, std::string_view right);

}  // namespace tellaxis::platform
