// CUPS queues: listing them and sending jobs to them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace tellaxis::platform {

/// A queue as the server knows it; texts in UTF-8.
struct CupsQueue {
  std::string name;
  std::string deviceUri;
};

enum class JobFormat : std::uint8_t {
  pdf,
  raw,  ///< bytes that the printer gets as they are
};

/// Fills its argument with the bytes that come next and returns how many it got: 0 at the end, nothing on a failure.
using ByteReader = std::function<std::optional<std::size_t>(std::span<char> buffer)>;

/// The queues of the server, its default queue first; empty without a server, nothing when it does not answer.
/// `reason` says why, in UTF-8.
std::optional<std::vector<CupsQueue>> listCupsQueues(std::string& reason);

/// Sends one job and returns when the server has all of it. A job that could not be sent whole is cancelled.
bool sendCupsJob(const std::string& queue, JobFormat format, const ByteReader& read, std::string& reason);

}  // namespace tellaxis::platform
