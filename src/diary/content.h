// Content: how large a job's file is, and whether it is the same as before.
#pragma once

#include <cstdint>
#include <string_view>

#include "platform/files.h"

namespace tellaxis {

struct Content {
  std::int64_t bytes = 0;
  std::uint64_t mark = 0;  ///< differs where contents differ
};

/// Of a file that cannot be read: no bytes.
Content contentOf(platform::Files& files, std::string_view path);

}  // namespace tellaxis
