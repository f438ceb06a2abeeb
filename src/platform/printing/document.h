// Document: what was said to a printer, one operation after the other, and the back ends that make something of it.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <variant>

#include "platform/printers.h"

namespace tellaxis::platform {

/// What every choice of a printer begins with.
inline constexpr const char* initialFontName = "Courier New";
inline constexpr double initialFontSize = 10;

/// One print statement, with the font and colour in force; CR and LF inside the text stay.
struct PrintStatement {
  std::string text;
  std::string font = initialFontName;
  double size = initialFontSize;  ///< points
  bool bold = false;
  Color color;
};

/// One assignment of the print position; a coordinate that was not assigned is absent.
struct Move {
  std::optional<double> x;
  std::optional<double> y;
};

/// A picture drawn with its upper left corner at (x, y).
struct PaintedPicture {
  Picture picture;
  double x = 0;
  double y = 0;
};

using Operation = std::variant<PrintStatement, Move, PaintedPicture>;

/// An open document on its way to a device. Operations are passed on or stored as they come, so that a document of any
/// length never lies in memory as a whole. Destroyed before it is finished, a document leaves nothing behind.
class DocumentSink {
 public:
  virtual ~DocumentSink() = default;

  /// Takes the next operation. A failure, which it reports to the trace, costs this operation alone where the device
  /// can go on.
  virtual bool add(const Operation& operation) = 0;

  /// Hands the document over; on success it is safe with the device. Called once, as the last call.
  virtual bool finish() = 0;
};

/// What stands behind one installed printer.
class PrinterBackEnd {
 public:
  virtual ~PrinterBackEnd() = default;

  /// Begins a document; null on a failure, which it reports to the trace.
  virtual std::unique_ptr<DocumentSink> open() = 0;

  /// What the device says of itself now.
  virtual PrinterState state() = 0;

  /// Whether the device prints in this font; true also where that cannot be known.
  virtual bool hasFont(std::string_view /*font*/) { return true; }
};

}  // namespace tellaxis::platform
