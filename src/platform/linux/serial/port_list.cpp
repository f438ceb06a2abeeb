// Port list: what libserialport finds, and the open files of all programs.
#include "platform/linux/serial/port_list.h"

#include <libserialport.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <memory>

#include "text/code_page.h"

namespace tellaxis::platform {

namespace {

namespace fs = std::filesystem;

std::string textOf(const char* text) { return text != nullptr ? nearestCodePage(text) : std::string(); }

bool hasOpen(const fs::path& process, const fs::path& device) {
  std::error_code ignored;
  for (fs::directory_iterator file(process / "fd", ignored), end; file != end; file.increment(ignored))
    if (fs::read_symlink(file->path(), ignored) == device) return true;
  return false;
}

}  // namespace

std::vector<SerialPortInfo> systemPorts(Trace& trace) {
  sp_port** found = nullptr;
  if (sp_list_ports(&found) != SP_OK) {
    trace.failed("list", "libserialport", "l'elenco delle porte non si pu\xF2 leggere");
    return {};
  }
  const std::unique_ptr<sp_port*, decltype(&sp_free_port_list)> owner(found, &sp_free_port_list);
  std::vector<SerialPortInfo> ports;
  for (sp_port** port = found; *port != nullptr; ++port) {
    const std::string device = textOf(sp_get_port_name(*port));
    ports.push_back(
        {.device = device, .description = textOf(sp_get_port_description(*port)), .heldBy = holderOf(device)});
  }
  std::sort(ports.begin(), ports.end(), [](const auto& left, const auto& right) { return left.device < right.device; });
  return ports;
}

bool isSameDevice(const std::string& left, const std::string& right) {
  std::error_code ignored;
  return left == right || fs::equivalent(left, right, ignored);
}

std::string holderOf(const std::string& device) {
  std::error_code ignored;
  const fs::path path = fs::canonical(device, ignored);
  if (path.empty()) return {};
  for (fs::directory_iterator process("/proc", ignored), end; process != end; process.increment(ignored)) {
    const std::string number = process->path().filename().string();
    if (number.find_first_not_of("0123456789") != std::string::npos || !hasOpen(process->path(), path)) continue;
    std::string name;
    std::getline(std::ifstream(process->path() / "comm"), name);
    return nearestCodePage(name) + " (" + number + ")";
  }
  return {};
}

}  // namespace tellaxis::platform
