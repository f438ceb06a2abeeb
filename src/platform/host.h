// Host: all services of the computer in one place, the only door to the outside world.
#pragma once

namespace tellaxis::platform {

class Profiles;
class Files;
class Clock;
class Processes;
class SerialPorts;
class PrinterObject;
class Dialogs;
class Tray;
class FtpClients;
class Locale;
class Trace;

/// References to the services; whoever made them keeps them alive as long as the host is used.
struct Host {
  Profiles& profiles;
  Files& files;
  Clock& clock;
  Processes& processes;
  SerialPorts& serialPorts;
  PrinterObject& Printer;
  Dialogs& dialogs;
  Tray& tray;
  FtpClients& ftpClients;
  const Locale& locale;
  Trace& trace;

  /// The same services with others in these three places.
  Host with(Clock& aClock, Dialogs& someDialogs, Tray& aTray) const {
    return {.profiles = profiles,
            .files = files,
            .clock = aClock,
            .processes = processes,
            .serialPorts = serialPorts,
            .Printer = Printer,
            .dialogs = someDialogs,
            .tray = aTray,
            .ftpClients = ftpClients,
            .locale = locale,
            .trace = trace};
  }
};

}  // namespace tellaxis::platform
