// Uninterrupted: system calls that a signal cut short are made again.
#pragma once

#include <cerrno>

namespace tellaxis::platform {

template <typename Call>
auto untilUninterrupted(Call call) {
  auto result = call();
  while (result < 0 && errno == EINTR) result = call();
  return result;
}

}  // namespace tellaxis::platform
