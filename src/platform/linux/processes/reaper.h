// Reaper: waits for started programs as they end, so that none stays behind as a zombie.
#pragma once

#include <sys/types.h>

#include <map>
#include <mutex>
#include <thread>
#include <vector>

#include "platform/linux/kernel/descriptor.h"
#include "platform/linux/kernel/wake_up.h"

namespace tellaxis::platform {

/// One thread of its own, begun with the first program, that sleeps until a program ends.
class Reaper {
 public:
  Reaper() = default;
  ~Reaper();
  Reaper(const Reaper&) = delete;
  Reaper& operator=(const Reaper&) = delete;

  /// Takes charge of a child that nobody has waited for yet.
  void add(pid_t process);

  /// A descriptor that becomes readable when the program ends; none when it has ended, or was never added.
  Descriptor watch(pid_t process);

 private:
  struct Child {
    pid_t process;
    int watch;
  };

  bool begin();
  void run();
  std::vector<Child> children();
  void release(const Child& child);

  std::mutex mutex_;
  std::map<pid_t, Descriptor> children_;
  WakeUp wake_;
  bool stopping_ = false;
  std::thread thread_;
};

}  // namespace tellaxis::platform
