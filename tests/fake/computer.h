// Computer: the fake platform, all services around one journal.
#pragma once

#include "fake/clock.h"
#include "fake/desktop.h"
#include "fake/files.h"
#include "fake/ftp_clients.h"
#include "fake/journal.h"
#include "fake/locale.h"
#include "fake/printer.h"
#include "fake/processes.h"
#include "fake/profiles.h"
#include "fake/serial_ports.h"
#include "platform/host.h"
#include "platform/trace.h"

namespace tellaxis::fake {

/// Failing steps that the program reported; not part of the journal.
class Trace : public platform::Trace {
 public:
  std::vector<std::string> failures;

  void failed(std::string_view operation, std::string_view subject, std::string_view reason) override {
    failures.push_back(std::string(operation) + " " + std::string(subject) + ": " + std::string(reason));
  }
};

/// An Italian cash desk on 7 March 2003, 9:30. Every call to a service is journaled and the k-th can be made to fail;
/// looking at the clock or the regional settings is no call.
struct Computer {
  Journal journal;
  Files files{journal};
  Profiles profiles{journal};
  Clock clock{journal};
  Processes processes{journal, trace};
  SerialPorts serialPorts{journal, trace};
  PrinterObject Printer{journal};
  Dialogs dialogs{journal};
  Tray tray{journal};
  FtpClients ftpClients{journal, trace};
  Locale locale;
  Trace trace;
  platform::Host host{profiles, files, clock,      processes, serialPorts, Printer,
                      dialogs,  tray,  ftpClients, locale,    trace};
};

}  // namespace tellaxis::fake
