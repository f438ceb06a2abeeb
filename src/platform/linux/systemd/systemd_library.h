// systemd library: what is loaded where systemd runs the program and asks to hear of it.
#pragma once

#include <chrono>
#include <span>
#include <string_view>

namespace tellaxis::platform {

struct SystemdLibrary {
  /// Tells the service manager "NAME=VALUE", one a line.
  void (*notify)(const char* state);
  /// The longest silence that the service manager takes; 0: it asks for no sign of life.
  std::chrono::microseconds (*watchdog)();
  /// Writes one entry, whose fields are "NAME=VALUE" in UTF-8, into the journal; false when it could not.
  bool (*journal)(std::span<const std::string_view> fields);
};

/// Name of the library's file and of the one function that it shows.
inline constexpr const char* systemdLibraryFile = "libtellaxis_systemd.so";
inline constexpr const char* systemdLibraryEntry = "tellaxisSystemdLibrary";

}  // namespace tellaxis::platform

extern "C" const tellaxis::platform::SystemdLibrary* tellaxisSystemdLibrary();
