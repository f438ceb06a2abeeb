// CUPS queues: listing them and sending jobs to them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <variant>
#include <vector>

#include "platform/linux/printing/queue_state.h"

namespace tellaxis::platform {

/// A queue as the server knows it; texts in UTF-8.
struct CupsQueue {
  std::string name;
  std::string deviceUri;
  bool isDefault = false;
};

/// Why a request came to nothing.
struct CupsFailure {
  bool silent = false;  ///< the server took the request and did not answer in time
  std::string reason;   ///< UTF-8
};

enum class JobFormat : std::uint8_t {
  pdf,
  raw,  ///< bytes that the printer gets as they are
};

/// Fills its argument with the bytes that come next and returns how many it got: 0 at the end, nothing on a failure.
using ByteReader = std::function<std::optional<std::size_t>(std::span<char> buffer)>;

/// The queues of the server in its own order. Takes two seconds at most.
std::variant<std::vector<CupsQueue>, CupsFailure> listCupsQueues();

/// Sends one job and returns when the server has all of it; a failure otherwise, and then the job is cancelled. A
/// server that does not accept the job within two seconds, or takes nothing for ten, is silent.
std::optional<CupsFailure> sendCupsJob(const std::string& queue, JobFormat format, const ByteReader& read);

/// What the server knows of the printer behind `queue`. Takes two seconds at most.
std::variant<QueueStatus, CupsFailure> statusOfCupsQueue(const std::string& queue);

}  // namespace tellaxis::platform
