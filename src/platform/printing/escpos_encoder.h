// ESC/POS encoder: operations as receipt-printer commands.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/printing/bitmap.h"
#include "platform/printing/device_fonts.h"
#include "platform/printing/document.h"
#include "platform/printing/papers.h"

namespace tellaxis::platform {

/// Turns operations into commands. Alignment by the control font holds for bar codes; a text line always starts at the
/// left edge, as a driver positions it. Paper cannot go back: a position above what is printed stays where the paper
/// is.
class EscPosEncoder {
 public:
  EscPosEncoder(const Paper& paper, BitmapReader readBitmap);

  /// The commands of the next operation; the first ones set the printer up. False where a picture cannot be read.
  bool encode(const Operation& operation, std::string& bytes);

  /// The commands that end the document.
  void finish(std::string& bytes);

 private:
  /// What the printer is set to.
  struct State {
    int face = 0;
    int width = 1;
    int height = 1;
    bool bold = false;
    bool red = false;
    bool operator==(const State&) const = default;
  };

  void begin(std::string& bytes);
  void print(const PrintStatement& statement, std::string& bytes);
  void control(std::string_view letters, std::string& bytes);
  void barCode(const std::string& digits, std::string& bytes);
  void textLine(const std::string& line, const State& wanted, std::string& bytes);
  void setState(const State& wanted, std::string& bytes);
  void move(const Move& move);
  bool picture(const PaintedPicture& painted, std::string& bytes);
  void raster(const Dots& dots, std::string& bytes);
  void columns(const Dots& dots, std::string& bytes);
  void feed(std::string& bytes);
  void cut(std::string& bytes);

  const Paper& paper_;
  BitmapReader readBitmap_;
  bool begun_ = false;
  bool isCut_ = false;
  State state_;
  ControlAction alignment_ = ControlAction::left;
  bool digitsBelow_ = false;
  int waitingLines_ = 0;       ///< empty lines that are not fed yet, so that a move may take them back
  int waitingDots_ = 0;        ///< feed beyond them
  int leftDots_ = 0;           ///< of the next line
  std::int64_t position_ = 0;  ///< of the paper, in dots
};

}  // namespace tellaxis::platform
