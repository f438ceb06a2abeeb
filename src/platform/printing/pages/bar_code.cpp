// Bar code: the tables of an EAN-13.
#include "platform/printing/pages/bar_code.h"

#include <algorithm>

namespace tellaxis::platform {

namespace {

constexpr std::size_t digitCount = 13;
constexpr std::size_t halfDigits = 6;

constexpr std::string_view guard = "101";
constexpr std::string_view middle = "01010";

/// A digit of the left half, in odd parity. The other two forms follow from it: the right half has bars where this has
/// none, and even parity is the right half's form read backwards.
constexpr std::string_view oddForms[] = {"0001101", "0011001", "0010011", "0111101", "0100011",
                                         "0110001", "0101111", "0111011", "0110111", "0001011"};

/// The first digit has no bars of its own: it is told by the parities of the six that follow.
constexpr std::string_view parities[] = {"oooooo", "ooeoee", "ooeeoe", "ooeeeo", "oeooee",
                                         "oeeooe", "oeeeoo", "oeoeoe", "oeoeeo", "oeeoeo"};

constexpr bool isDigit(char letter) { return letter >= '0' && letter <= '9'; }

void append(std::vector<bool>& modules, std::string_view pattern, char bar = '1') {
  for (const char module : pattern) modules.push_back(module == bar);
}

void appendEven(std::vector<bool>& modules, std::string_view oddForm) {
  for (std::size_t i = oddForm.size(); i-- > 0;) modules.push_back(oddForm[i] == '0');
}

}  // namespace

std::vector<bool> ean13Modules(std::string_view digits) {
  if (digits.size() != digitCount || !std::ranges::all_of(digits, isDigit)) return {};
  const auto formOf = [&](std::size_t index) { return oddForms[digits[index] - '0']; };
  const std::string_view parity = parities[digits.front() - '0'];
  std::vector<bool> modules;
  append(modules, guard);
  for (std::size_t i = 0; i < halfDigits; ++i) {
    if (parity[i] == 'o')
      append(modules, formOf(1 + i));
    else
      appendEven(modules, formOf(1 + i));
  }
  append(modules, middle);
  for (std::size_t i = 0; i < halfDigits; ++i) append(modules, formOf(1 + halfDigits + i), '0');
  append(modules, guard);
  return modules;
}

}  // namespace tellaxis::platform
