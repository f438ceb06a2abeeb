// Same time: whether a file's times are the same to the nanosecond.
#pragma once

#include <ctime>

namespace tellaxis::platform {

inline bool sameTime(const timespec& one, const timespec& other) {
  return one.tv_sec == other.tv_sec && one.tv_nsec == other.tv_nsec;
}

}  // namespace tellaxis::platform
