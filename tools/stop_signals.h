// Stop signals: SIGINT and SIGTERM as something to read.
#pragma once

#include <sys/signalfd.h>

#include <csignal>

namespace tellaxis::tools {

/// A descriptor that can be read once the program is asked to end; the signals themselves end it no more.
inline int stopSignals() {
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGINT);
  sigaddset(&signals, SIGTERM);
  ::sigprocmask(SIG_BLOCK, &signals, nullptr);
  return ::signalfd(-1, &signals, SFD_CLOEXEC);
}

}  // namespace tellaxis::tools
