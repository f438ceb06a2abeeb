// Program: what a program knows of itself: its arguments, its folder, and whether it is asked to end.
#pragma once

#include <chrono>
#include <string>
#include <string_view>
#include <vector>

namespace tellaxis::platform {

/// The words after the program's name on its command line, in UTF-8 whatever the system passes on. To be
/// called first: from here on a console shows what the program prints as UTF-8, and the system shows no error boxes;
/// new files are for this user and the group alone, where the system asks the program for that.
std::vector<std::string> programArguments(int count, char** words);

/// Native path of the folder that holds this program, without a trailing separator.
std::string programFolder();

/// True once somebody asked to stop; false as long as no StopRequest was made.
bool stopWasAsked();

/// Requests to end: SIGINT and SIGTERM, Ctrl-C, the console's close, the end of the user's session (which waits a few
/// seconds for this object's end). From construction on they only set a mark;
/// a second one ends the program at once.
class StopRequest {
 public:
  StopRequest();
  ~StopRequest();
  StopRequest(const StopRequest&) = delete;
  StopRequest& operator=(const StopRequest&) = delete;

  /// From now on `requestEnd(mainFolder)` of another process counts as well, where that is not a signal anyway.
  void heed(std::string_view mainFolder);

  /// Waits up to `duration` and returns true as soon as somebody asked to stop.
  bool waitFor(std::chrono::milliseconds duration);

  /// True once somebody asked to stop.
  bool asked() const;

  /// Ends the wait that is under way, or the next one, before its time. May be called from any thread.
  void wake();
};

}  // namespace tellaxis::platform
