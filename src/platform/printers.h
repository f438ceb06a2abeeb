// Printers: the installed printers and the printer object through which every document is printed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/printer_state.h"

namespace tellaxis::platform {

/// A printer as the system lists it, for example "EPSON TM-L90 Receipt" on "LPT1:".
struct InstalledPrinter {
  std::string DeviceName;
  std::string Port;
  bool waitForPaper = false;  ///< its jobs wait while it says no; as the devices file wants it
};

/// A colour of red, green and blue, each 0 to 255.
struct Color {
  std::uint8_t red = 0;
  std::uint8_t green = 0;
  std::uint8_t blue = 0;

  bool operator==(const Color&) const = default;
};

/// A bitmap that was loaded; sizes in pixels.
struct Picture {
  std::string file;
  int width = 0;
  int height = 0;
};

/// What a search among the installed printers came to.
struct PrinterSearch {
  bool complete = false;             ///< false: it ended at printers that could not be listed
  std::optional<std::size_t> index;  ///< in `Printers()`, of the printer that was found
  InstalledPrinter printer;          ///< the one that was found
};

/// The printer object: one current printer, one font in force, and an open document that statements are added to until
/// it is ended. Until a printer is chosen the default one is current. Choosing a printer, also the one that is current
/// already, begins with font "Courier New", size 10, not bold, black, at position 0,0. Font, size, boldness and colour
/// then survive the end of a document; the next document begins at position 0,0. A failing call costs itself alone: it
/// changes nothing, and what was said before and is said after it is printed. Where a document cannot be opened, the
/// next statement tries again.
class PrinterObject {
 public:
  virtual ~PrinterObject() = default;

  /// The installed printers, those of the devices file first, then the system's own in the system's order; nothing when
  /// they cannot be listed.
  virtual std::optional<std::vector<InstalledPrinter>> Printers() = 0;

  /// The first of `Printers()` that `matches`. The system is asked only where none of the devices file does.
  virtual PrinterSearch find(const std::function<bool(const InstalledPrinter&)>& matches) = 0;

  /// Makes the printer at `index` of `Printers()` the current one.
  virtual bool select(std::size_t index) = 0;

  /// The current printer's `DeviceName`; empty when there is no printer. The default one is the first of the devices
  /// file, without such the one that the system calls so, asked for each document.
  virtual std::string DeviceName() = 0;

  /// What the first installed printer of this name says of itself, asked anew each time; `unknown` where there is none
  /// or it does not answer. Takes up to 0.3 seconds, of a system's queue two.
  virtual PrinterState state(std::string_view deviceName) = 0;

  /// Whether the first installed printer of this name prints in this font; true also where that cannot be known.
  virtual bool hasFont(std::string_view deviceName, std::string_view font) = 0;

  /// Font of the statements to come. An empty name is a failure.
  virtual bool FontName(std::string_view name) = 0;

  /// Size in points. 0 or less is a failure.
  virtual bool FontSize(double points) = 0;

  virtual bool FontBold(bool bold) = 0;
  virtual bool ForeColor(Color color) = 0;

  /// The next print position, in the printer's units from the left or upper edge.
  virtual bool CurrentX(double x) = 0;
  virtual bool CurrentY(double y) = 0;
  virtual double CurrentX() = 0;
  virtual double CurrentY() = 0;

  /// One print statement: `text` (CR and LF inside stay) and the line's end. Opens a document where none is open.
  virtual bool Print(std::string_view text) = 0;

  /// Reads a bitmap file; nothing when it is missing or damaged.
  virtual std::optional<Picture> LoadPicture(std::string_view file) = 0;

  /// Draws a picture in its natural size with its upper left corner at (x, y).
  virtual bool PaintPicture(const Picture& picture, double x, double y) = 0;

  /// Ends the open document and hands it to the device. Without a statement since the last end nothing is printed.
  /// On return the document is safe with the device or the spooler; on a failure it is gone and is not sent again.
  virtual bool EndDoc() = 0;

  /// Throws the open document of the current printer away, so that nothing of it is printed.
  virtual void abandon() = 0;

  /// Ends every document still open, on whatever printer; called once when the program ends.
  virtual void endOpenDocuments() = 0;
};

/// The first installed printer of exactly this name.
inline PrinterSearch findPrinterNamed(PrinterObject& printers, std::string_view deviceName) {
  return printers.find([&](const InstalledPrinter& printer) { return printer.DeviceName == deviceName; });
}

}  // namespace tellaxis::platform
