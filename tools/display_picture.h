// Display picture: what a customer display of any of the five families shows after the bytes that it got.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tellaxis::tools {

/// Two lines of 20 characters, or one of 40 for text that came without any command. Text in code page 1252.
class DisplayPicture {
 public:
  void receive(std::string_view bytes);

  /// Nothing came for a while: text without a command that comes next is a new picture.
  void pause();

  /// The lines as the customer sees them, each in its full width.
  std::vector<std::string> lines() const;

  /// Commands that no family knows; they were dropped.
  int unknownCommands() const { return unknownCommands_; }

 private:
  enum class Writing {
    atPosition,   ///< over what is there, up to the line's end
    oneLine,      ///< a line that was cleared first, up to CR
    wholeDisplay  ///< both lines as one, round and round
  };

  void receive(char byte);
  void receiveCommand(char byte);
  bool moveCursor();
  bool startLine();
  void endCommand();
  void put(char character);

  static constexpr std::size_t width = 20;
  static constexpr std::size_t places = 2 * width;

  std::string shown_ = std::string(places, ' ');
  Writing writing_ = Writing::wholeDisplay;
  bool wide_ = false;
  std::size_t cursor_ = 0;
  std::size_t lineEnd_ = 0;
  std::string command_;  ///< a command under way, from its ESC on
  int unknownCommands_ = 0;
};

/// The lines in a frame, as UTF-8.
std::string framed(const std::vector<std::string>& lines);

}  // namespace tellaxis::tools
