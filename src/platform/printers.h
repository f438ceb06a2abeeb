// Printers: the installed printers and the printer object through which every document is printed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tellaxis::platform {

/// A printer as the system lists it, for example "EPSON TM-L90 Receipt" on "LPT1:".
struct InstalledPrinter {
  std::string DeviceName;
  std::string Port;
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

/// The printer object: one current printer, one font in force, and an open document that statements are added to until
/// it is ended. It starts on the first installed printer with font "Courier New", size 10, not bold, black. Font, size,
/// boldness and colour survive the end of a document and the choice of another printer. A failing call changes nothing.
class PrinterObject {
 public:
  virtual ~PrinterObject() = default;

  /// The installed printers in the system's order; nothing when they cannot be listed.
  virtual std::optional<std::vector<InstalledPrinter>> Printers() = 0;

  /// Makes the printer at `index` of `Printers()` the current one.
  virtual bool select(std::size_t index) = 0;

  /// The current printer's `DeviceName`; empty when there is no printer.
  virtual std::string DeviceName() = 0;

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

  /// Ends every document still open, on whatever printer; called once when the program ends.
  virtual void endOpenDocuments() = 0;
};

}  // namespace tellaxis::platform
