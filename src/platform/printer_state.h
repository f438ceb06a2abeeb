// Printer state: what a printer says of itself, and the words for it.
#pragma once

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <string_view>

namespace tellaxis::platform {

enum class PrinterState : std::uint8_t {
  ready,
  noPaper,
  paperLow,  ///< it still prints
  coverOpen,
  offLine,  ///< switched off, unplugged, out of reach, or stopped by somebody
  error,    ///< a paper jam, the cutter, the temperature
  unknown,  ///< it does not say
};

struct PrinterStateWords {
  PrinterState state;
  std::string_view italian;  ///< code page 1252
  bool saysNo;               ///< what is printed now does not come out now
};

inline constexpr PrinterStateWords printerStates[] = {
    {PrinterState::ready, "pronta", false},
    {PrinterState::noPaper, "manca la carta", true},
    {PrinterState::paperLow, "la carta sta per finire", false},
    {PrinterState::coverOpen, "il coperchio \xE8 aperto", true},
    {PrinterState::offLine, "la stampante non \xE8 in linea", true},
    {PrinterState::error, "la stampante segnala un errore", true},
    {PrinterState::unknown, "stato sconosciuto", false},
};

constexpr const PrinterStateWords& wordsOf(PrinterState state) {
  return *std::find_if(std::begin(printerStates), std::end(printerStates) - 1,
                       [state](const PrinterStateWords& row) { return row.state == state; });
}

}  // namespace tellaxis::platform
