// Service manager: what the part of the system that runs this program as a service wants to hear of it.
#pragma once

#include <chrono>
#include <memory>
#include <string_view>

namespace tellaxis::platform {

/// Nothing here fails or waits: a manager that does not listen is none of the program's business.
class ServiceManager {
 public:
  virtual ~ServiceManager() = default;

  /// The start-up is done.
  virtual void ready() = 0;

  /// One line on how the program is, in code page 1252.
  virtual void status(std::string_view line) = 0;

  /// The program goes on. To be called often: it is passed on every `signInterval()` at most. A manager that hears
  /// nothing for as long as it was told to wait ends the program and starts it anew.
  virtual void alive() = 0;

  /// How long a wait may go on without a call of `alive`.
  virtual std::chrono::milliseconds signInterval() const = 0;

  /// The program was asked to end and does so now.
  virtual void stopping() = 0;
};

/// Null where no manager asks to hear anything, as always on Windows.
std::unique_ptr<ServiceManager> openServiceManager();

}  // namespace tellaxis::platform
