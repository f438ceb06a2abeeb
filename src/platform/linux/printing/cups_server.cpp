// CUPS server: requests, and the time of rest after one that was not answered.
#include "platform/linux/printing/cups_server.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <iterator>

#include "platform/linux/kernel/loaded_library.h"
#include "text/code_page.h"

namespace tellaxis::platform {

namespace {

using std::chrono::steady_clock;

constexpr const char* serverPlaces[] = {"/run/cups/cups.sock", "/var/run/cups/cups.sock", "/etc/cups/client.conf"};

/// False where nothing on this computer speaks of a CUPS server, so that libcups need not be loaded to find none.
bool mayHaveServer() {
  if (std::getenv("CUPS_SERVER") != nullptr) return true;
  const char* home = std::getenv("HOME");
  std::error_code ignored;
  return std::any_of(std::begin(serverPlaces), std::end(serverPlaces),
                     [&](const char* place) { return std::filesystem::exists(place, ignored); }) ||
         (home != nullptr && std::filesystem::exists(std::string(home) + "/.cups/client.conf", ignored));
}

}  // namespace

std::optional<std::vector<CupsQueue>> CupsServer::list() {
  // A server that was there and is away comes back; its queues have not ceased to exist.
  if (!wasThere_ && !mayHaveServer()) return std::vector<CupsQueue>();
  const CupsLibrary* cups = library();
  if (cups == nullptr || isResting("Printers", "CUPS")) return std::nullopt;
  auto answer = cups->list();
  if (const auto* failure = std::get_if<CupsFailure>(&answer)) {
    failed("Printers", "CUPS", *failure);
    return std::nullopt;
  }
  wasThere_ = true;
  return std::get<std::vector<CupsQueue>>(std::move(answer));
}

bool CupsServer::send(const std::string& queue, JobFormat format, const ByteReader& read) {
  const CupsLibrary* cups = library();
  if (cups == nullptr || isResting("EndDoc", queue)) return false;
  const auto failure = cups->send(queue, format, read);
  if (failure) failed("EndDoc", queue, *failure);
  return !failure;
}

PrinterState CupsServer::state(const std::string& queue) {
  const CupsLibrary* cups = library();
  if (cups == nullptr || isResting("state", queue)) return PrinterState::unknown;
  const auto answer = cups->status(queue);
  if (const auto* status = std::get_if<QueueStatus>(&answer)) return stateFrom(*status);
  failed("state", queue, std::get<CupsFailure>(answer));
  return PrinterState::unknown;
}

const CupsLibrary* CupsServer::library() {
  static const auto* loaded = static_cast<const CupsLibrary*>(loadLibrary(cupsLibraryFile, cupsLibraryEntry, trace_));
  return loaded;
}

bool CupsServer::isResting(std::string_view operation, std::string_view subject) {
  if (steady_clock::now() >= restsUntil_) return false;
  trace_.failed(operation, nearestCodePage(subject), "il servizio di stampa non ha risposto da poco");
  return true;
}

void CupsServer::failed(std::string_view operation, std::string_view subject, const CupsFailure& failure) {
  if (failure.silent) restsUntil_ = steady_clock::now() + rest_;
  trace_.failed(operation, nearestCodePage(subject), nearestCodePage(failure.reason));
}

}  // namespace tellaxis::platform
