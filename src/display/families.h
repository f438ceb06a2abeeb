// Families: the customer displays that can be driven, with their names, codes, byte sequences and use of the port.
#pragma once

#include <cstddef>
#include <string_view>

namespace tellaxis {

/// What is sent for one line of text, in one write. Shorter text is sent as it is, without padding.
struct DisplayLine {
  std::string_view before;
  std::size_t length = 0;  ///< characters of the text that are kept, from the left
  std::string_view after = {};
};

enum class LinesShown : unsigned char {
  all,        ///< the first on the upper line, each later one on the lower line
  firstOnly,  ///< both display lines come as one line of text
};

enum class PortUse : unsigned char {
  openedForEachJob,  ///< closed first where it is open, and closed again after the lines
  leftOpen,          ///< opened where it is closed
};

struct DisplayFamily {
  std::string_view name;       ///< value of "Display_Type", compared exactly
  std::string_view code = {};  ///< the point-of-sale application's code; empty when it has none
  int listPosition = 0;        ///< place in the list `DLY_Type`, from 1; 0 when it is not offered
  LinesShown shown = LinesShown::all;
  DisplayLine upper;
  DisplayLine lower = {};
  PortUse port = PortUse::leftOpen;
};

/// In the order in which the codes are tested.
inline constexpr DisplayFamily displayFamilies[] = {
    {.name = "WINCOR-NIXDORF",
     .code = "1",
     .listPosition = 2,
     .upper = {.before = "\033[1;1H", .length = 20},
     .lower = {.before = "\033[2;1H", .length = 20},
     .port = PortUse::openedForEachJob},
    {.name = "ASEM",
     .code = "2",
     .listPosition = 1,
     .upper = {.before = "\033QA", .length = 20, .after = "\r"},
     .lower = {.before = "\033QB", .length = 20, .after = "\r"}},
    {.name = "KUBE-D",
     .code = "4",
     .listPosition = 3,
     .shown = LinesShown::firstOnly,
     .upper = {.before = "", .length = 40}},
    {.name = "CD1-01",
     .upper = {.before = "\033F A", .length = 20, .after = "\r"},
     .lower = {.before = "\033F B", .length = 20, .after = "\r"}},
    {.name = "POSLINE",
     .code = "999",
     .listPosition = 4,
     .upper = {.before = "\033A", .length = 19, .after = "\r"},
     .lower = {.before = "\033B", .length = 20, .after = "\r"}},
};

/// "Display_Type" where there is no display; the last entry of `DLY_Type`.
inline constexpr std::string_view noDisplay = "NON PRESENTE";

/// The family of this name, or null.
constexpr const DisplayFamily* displayFamilyNamed(std::string_view name) {
  for (const DisplayFamily& family : displayFamilies)
    if (family.name == name) return &family;
  return nullptr;
}

/// The family that the point-of-sale application means by `code`, or null.
constexpr const DisplayFamily* displayFamilyOfCode(std::string_view code) {
  for (const DisplayFamily& family : displayFamilies)
    if (!family.code.empty() && family.code == code) return &family;
  return nullptr;
}

}  // namespace tellaxis
