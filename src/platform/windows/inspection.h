// Inspection of a Windows computer: permissions, disks, programs and whether a line can be opened.
#pragma once

#include "platform/inspection.h"

namespace tellaxis::platform {

class WindowsInspection : public Inspection {
 public:
  PathLook look(std::string_view path) override;
  std::optional<std::uint64_t> freeBytes(std::string_view folder) override;
  ProgramLook program(std::string_view commandLine) override;
  PortLook port(int number, bool mayOpen) override;
};

}  // namespace tellaxis::platform
