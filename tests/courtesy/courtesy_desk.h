// Courtesy desk: a cash desk with one courtesy job in its work folder.
#pragma once

#include <string>
#include <string_view>

#include "core/bridge.h"
#include "fake/computer.h"
#include "fake/sweep.h"

namespace tellaxis {

inline constexpr std::string_view courtesyJob = "C:\\Tellaxis\\CortIN\\preconto.txt";
inline const std::string openJob = "openInput " + std::string(courtesyJob);
inline const std::string readJob = "read " + std::string(courtesyJob);
inline const std::string removeJob = "remove " + std::string(courtesyJob);

/// Two printers, the second of them on the configured port COM3.
struct CourtesyDesk {
  explicit CourtesyDesk(std::string_view deviceName, std::string_view job = {}) {
    computer.Printer.installed = {{"PDF", "FILE:"}, {std::string(deviceName), "COM3:"}};
    computer.files.put(courtesyJob, job);
    bridge.settings.Cort_Com = std::string(" 3 ");
    bridge.settings.Cort_Sett = "9600,N,8,1";
    bridge.settings.Cort_File = "c:\\Meridia\\LogoCassa.bmp";
  }

  fake::Computer computer;
  Bridge bridge{computer.host};

  bool hasJob() const { return computer.files.has(courtesyJob); }
  bool jobIsOpen() const { return computer.files.isOpen(courtesyJob); }

  /// The calls of one job.
  fake::Calls print(void (*renderer)(Bridge&, std::string_view), std::size_t failingCall = 0) {
    computer.journal.failCall(failingCall);
    renderer(bridge, courtesyJob);
    EXPECT_FALSE(jobIsOpen());
    return computer.journal.calls();
  }

  /// The statements that the lines of one job make.
  fake::Calls statements(void (*renderer)(Bridge&, std::string_view)) {
    fake::Calls statements;
    bool reading = false;
    for (const std::string& call : print(renderer)) {
      if (call == readJob) reading = true;
      if (reading && call != readJob && call != removeJob && call != "DeviceName") statements.push_back(call);
    }
    return statements;
  }
};

}  // namespace tellaxis
