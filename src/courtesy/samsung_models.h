// Samsung models: how the three model classes read a line and print it.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "platform/host.h"
#include "platform/printers.h"

namespace tellaxis {

/// What the lines of one job have said so far: a field that a line does not carry keeps its value.
struct Markup {
  std::string Testo;
  double Comando = 0;  ///< a whole number
  double Dimensione = 0;
  std::string_view Carattere;  ///< a device font
  std::int16_t Grassetto = 0;
  std::string Colore;
  std::int16_t PassoPiccolo = 0;
};

struct SamsungModel;

/// One field of a line.
struct FieldRule {
  std::string_view emptyGives;  ///< what an empty field stands for
  /// Stores the field; false, and nothing is changed, when it should hold a number and does not.
  bool (*store)(platform::Host& host, const SamsungModel& model, std::string_view field, Markup& markup);
};

/// What a style code stands for. A row without a code stands for every code that has none of its own.
struct Style {
  std::optional<int> code;
  std::string_view font;
  std::string_view fontOn350 = {};  ///< while the current printer is a 350 device; none: the same
  double size = 0;
};

/// Sizes that the pitch field chooses between, in points.
struct Pitch {
  std::int16_t small = 0;           ///< what a pitch of 8 is stored as
  std::int16_t usual = 0;           ///< what any other is stored as
  double takenForSmall = 0;         ///< the stored value that prints small
  std::optional<double> usualSize;  ///< size of a line that does not print small; none: the stored value
};

struct SamsungModel {
  std::string_view
      Modello;  ///< the part of the device name that tells the class; of the last class it need not be there
  std::span<const FieldRule> fields;
  std::span<const Style> styles;
  Pitch pitch;
  std::string_view openingControl;  ///< control letter before the first line; none: no such statement
  void (*printLine)(platform::PrinterObject& printer, const SamsungModel& model, Markup& markup);
  bool deletesJobFile = true;
};

/// The class of a printer by its device name: "500", else "350", else "103".
const SamsungModel& samsungModelOf(std::string_view deviceName);

/// Whether the current printer is a 350 device.
bool is350Device(platform::PrinterObject& printer);

inline constexpr std::string_view controlFont = "FontControl";
inline constexpr std::string_view barCodeFont = "JAN13(EAN)";

}  // namespace tellaxis
