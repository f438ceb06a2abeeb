// Inspection: looks at the computer without touching anything, for a check beside a running bridge.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tellaxis::platform {

/// What stands behind a path; neither a file nor a folder where there is nothing, or nothing that can be seen.
struct PathLook {
  bool isFile = false;
  bool isFolder = false;
  bool mayRead = false;
  bool mayWrite = false;        ///< a file may be written into; files may be made in a folder
  std::chrono::seconds age{0};  ///< since its content changed last; 0 for a change in the future
};

/// The program that a command line would start.
struct ProgramLook {
  std::string file;         ///< its path as the system names it; empty where there is none
  bool executable = false;  ///< it is a program, or a batch file, that this user may start
};

enum class PortAccess : std::uint8_t {
  missing,
  free,
  held,     ///< another program has it open
  refused,  ///< this user may not open it
};

/// A serial line; texts in code page 1252.
struct PortLook {
  PortAccess access = PortAccess::missing;
  std::string device;  ///< how the system calls it
  std::string heldBy;  ///< the program that has it open, with its number in brackets, where the system says so
};

class Inspection {
 public:
  virtual ~Inspection() = default;

  virtual PathLook look(std::string_view path) = 0;

  /// What this user may still write on the disk of `folder`, in bytes; nothing where it cannot be known.
  virtual std::optional<std::uint64_t> freeBytes(std::string_view folder) = 0;

  /// The program that `Processes::start` would start for this command line.
  virtual ProgramLook program(std::string_view commandLine) = 0;

  /// COM `number`. A system that does not tell who holds a line is asked by opening it for a moment, but only where
  /// `mayOpen`; else such a line counts as free.
  virtual PortLook port(int number, bool mayOpen) = 0;
};

}  // namespace tellaxis::platform
