// Printer types: the courtesy printers that can be chosen, and what prints on each.
#pragma once

#include <string_view>

#include "courtesy/line_printers.h"
#include "courtesy/samsung.h"
#include "courtesy/serial_printer.h"
#include "platform/printers.h"

namespace tellaxis {

namespace courtesy_type {
inline constexpr std::string_view olivetti = "OLIVETTI PRT100 NonFiscale";
inline constexpr std::string_view samsung = "SAMSUNG";
inline constexpr std::string_view dpt282 = "DPT-282";
inline constexpr std::string_view notPresent = "NON PRESENTE";
inline constexpr std::string_view unipos = "UNIPOS MERIDIA";
}  // namespace courtesy_type

struct CourtesyPrinterType {
  std::string_view name;                                              ///< entry of `Cort_Printer`
  void (*print)(Bridge& bridge, std::string_view jobFile) = nullptr;  ///< none: nothing is printed
  platform::PrinterSearch (*find)(Bridge& bridge) = nullptr;  ///< what is printed on; none: no installed printer
};

/// In the order of the list.
inline constexpr CourtesyPrinterType courtesyPrinterTypes[] = {
    {.name = courtesy_type::olivetti, .print = Cort_StampaOlivetti, .find = findLinePrinter},
    {.name = courtesy_type::samsung, .print = Cort_StampaSamsung, .find = findSamsung},
    {.name = courtesy_type::dpt282, .print = Cort_StampaDPT282},
    {.name = courtesy_type::notPresent},
    {.name = courtesy_type::unipos, .print = Cort_StampaUnipos, .find = findLinePrinter},
};

}  // namespace tellaxis
