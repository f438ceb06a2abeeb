// Inspection of a Linux computer: permissions, disks, programs and who has a line open.
#pragma once

#include "platform/inspection.h"
#include "platform/linux/files/paths.h"
#include "platform/linux/serial_port.h"

namespace tellaxis::platform {

class LinuxInspection : public Inspection {
 public:
  LinuxInspection(const Paths& paths, const LinuxSerialPorts& serialPorts) : paths_(paths), serialPorts_(serialPorts) {}

  PathLook look(std::string_view path) override;
  std::optional<std::uint64_t> freeBytes(std::string_view folder) override;
  ProgramLook program(std::string_view commandLine) override;
  PortLook port(int number, bool mayOpen) override;

 private:
  const Paths& paths_;
  const LinuxSerialPorts& serialPorts_;
};

}  // namespace tellaxis::platform
