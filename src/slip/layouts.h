// Layouts: the slip printers and what is printed on each.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "slip/printed_forms.h"

namespace tellaxis {

/// One statement of a layout.
enum class SlipStatement : std::uint8_t {
  print,  ///< the step's text
  printFirstHeader,
  printSecondHeader,
  printSection,
  printPadOfLastSection,  ///< in the last section's document only
  fontName,
  fontSize,
  fontBold,
  moveToTop,
};

struct SlipStep {
  SlipStatement statement;
  std::string_view text = {};
  double size = 0;  ///< in points
};

struct SlipLayout {
  std::string_view printer;  ///< name of the printer that it is for
  void (*print)(Bridge& bridge, const SlipLayout& layout, PrintedForms& printed);
  std::span<const SlipStep> steps = {};  ///< of each section's document
};

/// The one printer on which rows and columns can be tested.
inline constexpr std::string_view rowPrinter = "EPSON TM-U295 Slip";

/// The layout of a printer, compared exactly; null where there is none.
const SlipLayout* slipLayoutOf(std::string_view printer);

}  // namespace tellaxis
