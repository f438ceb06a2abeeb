// Inspection of Linux: the system is asked, nothing is opened.
#include "platform/linux/inspection.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <algorithm>
#include <ctime>

#include "platform/linux/processes/program_file.h"
#include "platform/linux/serial/port_list.h"
#include "platform/processes/command_line.h"
#include "text/code_page.h"

namespace tellaxis::platform {

namespace {

bool may(const std::string& native, int mode) { return ::faccessat(AT_FDCWD, native.c_str(), mode, AT_EACCESS) == 0; }

}  // namespace

PathLook LinuxInspection::look(std::string_view path) {
  const auto native = paths_.resolve(path);
  struct stat status {};
  if (!native || ::stat(native->c_str(), &status) != 0) return {};
  const bool isFolder = S_ISDIR(status.st_mode);
  // In a folder nothing can be made or found without the right to pass through it.
  const int passing = isFolder ? X_OK : 0;
  return {.isFile = S_ISREG(status.st_mode),
          .isFolder = isFolder,
          .mayRead = may(*native, R_OK | passing),
          .mayWrite = may(*native, W_OK | passing),
          .age = std::chrono::seconds(std::max<std::int64_t>(0, std::time(nullptr) - status.st_mtim.tv_sec))};
}

std::optional<std::uint64_t> LinuxInspection::freeBytes(std::string_view folder) {
  const auto native = paths_.resolve(folder);
  struct statvfs disk {};
  if (!native || ::statvfs(native->c_str(), &disk) != 0) return std::nullopt;
  return std::uint64_t{disk.f_bavail} * disk.f_frsize;
}

ProgramLook LinuxInspection::program(std::string_view commandLine) {
  const auto found = findCommand(commandLine, [this](std::string_view name) { return programFile(name, paths_); });
  if (!found) return {};
  return {.file = nearestCodePage(found->program),
          .executable = may(found->program, isBatchFile(found->program) ? R_OK : X_OK)};
}

PortLook LinuxInspection::port(int number, bool /*mayOpen: the system tells*/) {
  const std::string device = serialPorts_.deviceOf(number);
  PortLook found{.device = nearestCodePage(device)};
  struct stat status {};
  if (::stat(device.c_str(), &status) != 0 || !S_ISCHR(status.st_mode)) return found;
  found.heldBy = holderOf(device);
  found.access = !found.heldBy.empty()      ? PortAccess::held
                 : may(device, R_OK | W_OK) ? PortAccess::free
                                            : PortAccess::refused;
  return found;
}

}  // namespace tellaxis::platform
