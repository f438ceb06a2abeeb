// Paper: whether the printer of a device can print, asked before a job and after it.
#pragma once

#include <array>
#include <memory>
#include <optional>

#include "core/activity.h"
#include "core/bridge.h"
#include "platform/printers.h"

namespace tellaxis {

/// Which printer a device's jobs come out of.
class JobPrinters {
 public:
  virtual ~JobPrinters() = default;

  /// The printer that the next job of `device` would be printed on; nothing where it would be on none.
  virtual std::optional<platform::InstalledPrinter> printerOf(Device device) = 0;
};

/// Asks the printers. There is one only where a diary or metrics are kept, or the jobs of some printer wait for paper:
/// otherwise no printer is ever asked anything. Nobody calls it without a job.
class Paper {
 public:
  /// Null where the options of `bridge` ask for none.
  static std::unique_ptr<Paper> open(Bridge& bridge, JobPrinters& printers);

  /// Whether the job that waits for `device` may begin. False while its printer says no and its jobs are to wait for
  /// paper; it is then asked again after a second at the earliest.
  bool mayBegin(Device device);

  /// Whether the jobs of `device` wait for paper; known once `mayBegin` was asked for one.
  bool waits(Device device) const;

  /// A tick begins; nothing is known yet to wait in it.
  void beginTick() { heldBack_ = {}; }

  /// What the printer of `device` said that kept a job waiting in the present tick, or in the last one; nothing where
  /// none was kept.
  std::optional<platform::PrinterState> heldBack(Device device) const {
    return heldBack_.at(static_cast<std::size_t>(device));
  }

  /// What the printer says after the job that `mayBegin` was asked for. One that did not answer before the job is not
  /// waited for again: `unknown`.
  platform::PrinterState after(Device device);

  /// What the printer of `device` said when it was last asked; nothing before it was.
  std::optional<platform::PrinterState> lastSaid(Device device) const {
    return said_.at(static_cast<std::size_t>(device));
  }

 private:
  Paper(Bridge& bridge, JobPrinters& printers) : bridge_(bridge), printers_(printers) {}

  struct Asked {
    std::optional<platform::InstalledPrinter> printer;
    platform::PrinterState before = platform::PrinterState::unknown;
    std::optional<double> refusedAt;  ///< seconds since midnight
  };

  platform::PrinterState ask(Device device, const platform::InstalledPrinter& printer);
  bool asksAndMayBegin(Device device, Asked& asked);
  bool hasJustRefused(const Asked& asked) const;

  Bridge& bridge_;
  JobPrinters& printers_;
  std::array<Asked, deviceCount> asked_;
  std::array<std::optional<platform::PrinterState>, deviceCount> heldBack_;
  std::array<std::optional<platform::PrinterState>, deviceCount> said_;
};

/// Whether the job that waits for `device` may begin.
bool mayBegin(const Bridge& bridge, Device device);

}  // namespace tellaxis
