// Polling: one pass over all devices every 500 ms, and the router from drop folders to devices.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/bridge.h"
#include "core/devices.h"

namespace tellaxis {

/// Moves every waiting file of `dropFolder` into `workFolder`, then runs and deletes them in listing order. `kind` is
/// "MF", "CR" or "RF"; of another kind files are moved and deleted, but nothing is run. The folder arguments come back
/// with a trailing backslash. At most 101 jobs run in one pass; files beyond them are moved and stay in the work folder
/// until the next start, or with `keep_waiting` wait in the drop folder for the next pass. A request to stop ends the
/// pass between two jobs: what was not begun goes back into the drop folder. A job that fails with an exception is
/// traced and deleted like the others. Jobs that wait for paper are moved, run and deleted one by one, until the
/// printer says no; the others stay in the drop folder.
void SmistaFile(Bridge& bridge, Devices& devices, std::string& dropFolder, std::string_view settingsFile,
                std::string& workFolder, std::string_view kind);

/// The polling timer's handler.
class Polling {
 public:
  Polling(Bridge& bridge, Devices& devices) : bridge_(bridge), devices_(devices) {}

  /// One pass: display, fiscal printer, slip printer, courtesy printer, until the program is to end. A tick that comes
  /// while one is under way, as a message box may let it, does nothing.
  void Timer1_Timer();

 private:
  void pollDisplay();
  void pollFiscalPrinter();
  void pollSlipPrinter();
  bool slipRests() const;
  void pollCourtesyPrinter();

  Bridge& bridge_;
  Devices& devices_;
  std::vector<std::string> watched_;
  bool ticking_ = false;
  double slipFailedAt_ = 0;  ///< seconds since midnight
  double slipRest_ = 0;      ///< seconds from then on in which no slip is begun
};

}  // namespace tellaxis
