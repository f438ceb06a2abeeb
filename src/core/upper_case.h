// Upper case: letters of code page 1252, accented ones too.
#pragma once

#include <string>
#include <string_view>

namespace tellaxis {

/// `text` with every small letter made a capital one; letters that have no capital in the code page stay.
std::string upperCase(std::string_view text);

}  // namespace tellaxis
