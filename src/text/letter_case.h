// Letter case: capitals of code page 1252, and comparing without regard to case.
#pragma once

#include <string>
#include <string_view>

namespace tellaxis {

/// The upper-case letter of a letter, accented ones too; any other character itself.
char upperCase(char letter);

/// `text` with every small letter made a capital one; letters that have no capital in the code page stay.
std::string upperCase(std::string_view text);

bool equalIgnoringCase(std::string_view left, std::string_view right);

/// Order of names: by upper-case bytes, names that differ in case alone by their own bytes.
bool lessIgnoringCase(std::string_view left, std::string_view right);

/// Equal but for the case of A to Z, as the names of settings and fonts are compared.
bool equalIgnoringAsciiCase(std::string_view left, std::string_view right);

}  // namespace tellaxis
