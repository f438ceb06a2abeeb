// Models: the fiscal printers that can be chosen, and the driver kinds that receipts are handed to.
#pragma once

#include <string_view>

namespace tellaxis {

/// How a receipt reaches the maker's driver software.
enum class HandOver : unsigned char {
  none,
  inputFile,     ///< copied onto the driver's input file once the driver has taken the one before
  fpMateFolder,  ///< moved as XML into the folder that the driver watches
  program,       ///< copied onto the driver's input file, the driver program started, its output file awaited
};

/// One fiscal printer. `code` is the point-of-sale application's number for it.
struct FiscalModel {
  std::string_view code;
  std::string_view type;           ///< entry of `MF_Type`; empty when it is not offered
  std::string_view protocol;       ///< entry of `MF_Protocol`, and the value of "MF_Prot" that a job is dispatched on
  std::string_view defaultDriver;  ///< driver program proposed by the take-over
  HandOver handOver = HandOver::none;
};

/// In the order of the lists. "FPMate - 29" is offered by no list and can only be entered in the settings file.
inline constexpr FiscalModel fiscalModels[] = {
    {.code = "24", .type = "24 - DITRON ZIP", .protocol = "CASIO/DITRON - 24", .handOver = HandOver::inputFile},
    {.code = "91",
     .type = "91 - RCH ONDA",
     .protocol = "ONDA DRIVER - 91",
     .defaultDriver = "C:\\Programmi\\OndaDriver\\OndaDriver.exe",
     .handOver = HandOver::program},
    {.code = "93",
     .type = "93 - RCH NUCLEO",
     .protocol = "NUCLEO DRIVER - 93",
     .defaultDriver = "C:\\Programmi\\NucleoDriver\\NucleoDriver.exe",
     .handOver = HandOver::program},
    {.code = "106",
     .type = "106 - RCH GLOBE",
     .protocol = "GLOBE DRIVER - 106",
     .defaultDriver = "C:\\Programmi\\GlobeDriver\\GlobeDriver.exe",
     .handOver = HandOver::program},
    {.code = "29", .protocol = "FPMate - 29", .handOver = HandOver::fpMateFolder},
    {.code = "0", .type = "0 - NON PRESENTE", .protocol = "Nessuno"},
};

/// The way of hand-over of a "MF_Prot" value, compared exactly; none for a value that is no driver kind.
constexpr HandOver handOverOf(std::string_view protocol) {
  for (const FiscalModel& model : fiscalModels)
    if (model.protocol == protocol) return model.handOver;
  return HandOver::none;
}

}  // namespace tellaxis
