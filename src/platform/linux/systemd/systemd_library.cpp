// systemd library: its one visible function, by libsystemd.
#include "platform/linux/systemd/systemd_library.h"

#define SD_JOURNAL_SUPPRESS_LOCATION
#include <sys/uio.h>
#include <systemd/sd-daemon.h>
#include <systemd/sd-journal.h>

#include <cstdint>
#include <vector>

namespace {

void notify(const char* state) { ::sd_notify(0, state); }

std::chrono::microseconds watchdog() {
  std::uint64_t microseconds = 0;
  return std::chrono::microseconds(::sd_watchdog_enabled(0, &microseconds) > 0 ? microseconds : 0);
}

bool journal(std::span<const std::string_view> fields) {
  std::vector<iovec> parts;
  parts.reserve(fields.size());
  for (const std::string_view field : fields)
    parts.push_back({.iov_base = const_cast<char*>(field.data()), .iov_len = field.size()});
  return ::sd_journal_sendv(parts.data(), static_cast<int>(parts.size())) >= 0;
}

}  // namespace

const tellaxis::platform::SystemdLibrary* tellaxisSystemdLibrary() {
  static constexpr tellaxis::platform::SystemdLibrary library{&notify, &watchdog, &journal};
  return &library;
}
