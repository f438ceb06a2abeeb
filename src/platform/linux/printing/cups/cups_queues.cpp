// CUPS queues: listing them and sending jobs to them through libcups.
#include "platform/linux/printing/cups/cups_queues.h"

#include <cups/cups.h>

#include <algorithm>
#include <array>
#include <memory>

namespace tellaxis::platform {

namespace {

constexpr int connectMilliseconds = 5000;
constexpr double answerSeconds = 10;
constexpr const char* jobTitle = "Tellaxis";

struct CloseConnection {
  void operator()(http_t* connection) const { httpClose(connection); }
};
using Connection = std::unique_ptr<http_t, CloseConnection>;

/// A server that does not answer in time is given up.
int giveUp(http_t* /*connection*/, void* /*data*/) { return 0; }

Connection connect() {
  Connection connection(
      httpConnect2(cupsServer(), ippPort(), nullptr, AF_UNSPEC, cupsEncryption(), 1, connectMilliseconds, nullptr));
  if (connection) httpSetTimeout(connection.get(), answerSeconds, giveUp, nullptr);
  return connection;
}

std::string lastReason() {
  const char* reason = cupsLastErrorString();
  return reason != nullptr ? reason : "";
}

/// The queues of the server, each given back to libcups at the end.
class Destinations {
 public:
  explicit Destinations(http_t* connection) : count_(cupsGetDests2(connection, &destinations_)) {}
  ~Destinations() { cupsFreeDests(count_, destinations_); }
  Destinations(const Destinations&) = delete;
  Destinations& operator=(const Destinations&) = delete;

  std::span<const cups_dest_t> all() const { return {destinations_, static_cast<std::size_t>(count_)}; }

 private:
  cups_dest_t* destinations_ = nullptr;
  int count_ = 0;
};

bool sendDocument(http_t* connection, const std::string& queue, int job, JobFormat format, const ByteReader& read) {
  const char* type = format == JobFormat::pdf ? CUPS_FORMAT_PDF : CUPS_FORMAT_RAW;
  if (cupsStartDocument(connection, queue.c_str(), job, jobTitle, type, 1) != HTTP_STATUS_CONTINUE) return false;
  std::vector<char> block(std::size_t{64} * 1024);
  bool complete = false;
  while (const auto got = read(block)) {
    complete = *got == 0;
    if (complete || cupsWriteRequestData(connection, block.data(), *got) != HTTP_STATUS_CONTINUE) break;
  }
  return complete && cupsFinishDocument(connection, queue.c_str()) <= IPP_STATUS_OK_CONFLICTING;
}

}  // namespace

std::optional<std::vector<CupsQueue>> listCupsQueues(std::string& reason) {
  const Connection connection = connect();
  if (!connection) return std::vector<CupsQueue>();
  const Destinations destinations(connection.get());
  if (destinations.all().empty() && cupsLastError() > IPP_STATUS_OK_CONFLICTING &&
      cupsLastError() != IPP_STATUS_ERROR_NOT_FOUND) {
    reason = lastReason();
    return std::nullopt;
  }
  std::vector<CupsQueue> queues;
  for (const cups_dest_t& destination : destinations.all()) {
    if (destination.instance != nullptr) continue;
    const char* uri = cupsGetOption("device-uri", destination.num_options, destination.options);
    const auto place = destination.is_default != 0 ? queues.begin() : queues.end();
    queues.insert(place, {destination.name, uri != nullptr ? uri : ""});
  }
  return queues;
}

bool sendCupsJob(const std::string& queue, JobFormat format, const ByteReader& read, std::string& reason) {
  const Connection connection = connect();
  if (!connection) {
    reason = "il servizio di stampa non risponde";
    return false;
  }
  const int job = cupsCreateJob(connection.get(), queue.c_str(), jobTitle, 0, nullptr);
  if (job > 0 && sendDocument(connection.get(), queue, job, format, read)) return true;
  reason = lastReason();
  if (job > 0) cupsCancelJob2(connect().get(), queue.c_str(), job, 0);
  return false;
}

}  // namespace tellaxis::platform
