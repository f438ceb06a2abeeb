// Serial ports of Linux under test: COM 3 is a link in a folder of the test's own.
#pragma once

#include <asm/termbits.h>
#include <gmock/gmock.h>
#include <sys/ioctl.h>

#include <filesystem>
#include <memory>
#include <string>
#include <system_error>

#include "platform/linux/serial_port.h"
#include "platform/pseudo_terminal.h"
#include "platform/temporary_folder.h"
#include "platform/trace_log.h"

namespace tellaxis::test {

struct LinuxSerialPortTest : ::testing::Test {
  TemporaryFolder folder;
  std::string link = folder / "ttyTest";
  TraceLog trace;
  platform::LinuxSerialPorts ports{{{3, link}}, trace};
  std::unique_ptr<platform::SerialPort> port = ports.create();

  bool open(const platform::LineSettings& settings = {}) { return port->open(3, settings, {}); }

  static termios2 settingsOf(const PseudoTerminal& terminal) {
    termios2 line = {};
    EXPECT_EQ(::ioctl(terminal.descriptor(), TCGETS2, &line), 0);
    return line;
  }

  /// Descriptors of this process that stand for a terminal.
  static int openTerminals() {
    int count = 0;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
      std::error_code gone;
      if (std::filesystem::read_symlink(entry.path(), gone).string().starts_with("/dev/pts/")) ++count;
    }
    return count;
  }
};

}  // namespace tellaxis::test
