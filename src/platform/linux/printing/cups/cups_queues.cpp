// CUPS queues: listing them and sending jobs to them through libcups.
#include "platform/linux/printing/cups/cups_queues.h"

#include <cups/cups.h>

#include <chrono>
#include <iterator>
#include <memory>

namespace tellaxis::platform {

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr milliseconds firstAnswer{2000};
constexpr milliseconds nextAnswer{10'000};
constexpr double lookSeconds = 0.1;
constexpr const char* jobTitle = "Tellaxis";
constexpr const char* noAnswer = "il servizio di stampa non risponde";

/// A connection to the server that is given up at its deadline, however many requests libcups makes of it.
class Connection {
 public:
  Connection() {
    extend(firstAnswer);
    http_.reset(httpConnect2(cupsServer(), ippPort(), nullptr, AF_UNSPEC, cupsEncryption(), 1,
                             static_cast<int>(firstAnswer.count()), nullptr));
    if (http_) httpSetTimeout(http_.get(), lookSeconds, &goesOn, this);
  }
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  explicit operator bool() const { return http_ != nullptr; }
  http_t* http() const { return http_.get(); }
  void extend(milliseconds limit) { deadline_ = steady_clock::now() + limit; }

  CupsFailure failure() const {
    if (steady_clock::now() >= deadline_) return {.silent = true, .reason = noAnswer};
    const char* reason = http_ ? cupsLastErrorString() : nullptr;
    return {.reason = reason != nullptr ? reason : noAnswer};
  }

 private:
  struct Close {
    void operator()(http_t* http) const { httpClose(http); }
  };

  static int goesOn(http_t* /*http*/, void* connection) {
    return steady_clock::now() < static_cast<Connection*>(connection)->deadline_ ? 1 : 0;
  }

  std::unique_ptr<http_t, Close> http_;
  steady_clock::time_point deadline_;
};

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

bool sendDocument(Connection& connection, const std::string& queue, int job, JobFormat format, const ByteReader& read) {
  const char* type = format == JobFormat::pdf ? CUPS_FORMAT_PDF : CUPS_FORMAT_RAW;
  connection.extend(nextAnswer);
  if (cupsStartDocument(connection.http(), queue.c_str(), job, jobTitle, type, 1) != HTTP_STATUS_CONTINUE) return false;
  std::vector<char> block(std::size_t{64} * 1024);
  bool complete = false;
  while (const auto got = read(block)) {
    complete = *got == 0;
    connection.extend(nextAnswer);
    if (complete || cupsWriteRequestData(connection.http(), block.data(), *got) != HTTP_STATUS_CONTINUE) break;
  }
  return complete && cupsFinishDocument(connection.http(), queue.c_str()) <= IPP_STATUS_OK_CONFLICTING;
}

QueueStatus statusIn(ipp_t* answer) {
  QueueStatus status;
  if (ipp_attribute_t* state = ippFindAttribute(answer, "printer-state", IPP_TAG_ENUM))
    status.stopped = ippGetInteger(state, 0) == IPP_PSTATE_STOPPED;
  if (ipp_attribute_t* accepting = ippFindAttribute(answer, "printer-is-accepting-jobs", IPP_TAG_BOOLEAN))
    status.acceptingJobs = ippGetBoolean(accepting, 0) != 0;
  ipp_attribute_t* reasons = ippFindAttribute(answer, "printer-state-reasons", IPP_TAG_KEYWORD);
  for (int i = 0; reasons != nullptr && i < ippGetCount(reasons); ++i)
    status.reasons.emplace_back(ippGetString(reasons, i, nullptr));
  return status;
}

}  // namespace

std::variant<std::vector<CupsQueue>, CupsFailure> listCupsQueues() {
  const Connection connection;
  if (!connection) return connection.failure();
  const Destinations destinations(connection.http());
  if (destinations.all().empty() && cupsLastError() > IPP_STATUS_OK_CONFLICTING &&
      cupsLastError() != IPP_STATUS_ERROR_NOT_FOUND)
    return connection.failure();
  std::vector<CupsQueue> queues;
  for (const cups_dest_t& destination : destinations.all()) {
    if (destination.instance != nullptr) continue;
    const char* uri = cupsGetOption("device-uri", destination.num_options, destination.options);
    queues.push_back({destination.name, uri != nullptr ? uri : "", destination.is_default != 0});
  }
  return queues;
}

std::optional<CupsFailure> sendCupsJob(const std::string& queue, JobFormat format, const ByteReader& read) {
  Connection connection;
  if (!connection) return connection.failure();
  const int job = cupsCreateJob(connection.http(), queue.c_str(), jobTitle, 0, nullptr);
  if (job > 0 && sendDocument(connection, queue, job, format, read)) return std::nullopt;
  CupsFailure failure = connection.failure();
  if (job > 0 && !failure.silent) {
    const Connection again;
    if (again) cupsCancelJob2(again.http(), queue.c_str(), job, 0);
  }
  return failure;
}

std::variant<QueueStatus, CupsFailure> statusOfCupsQueue(const std::string& queue) {
  static constexpr const char* wanted[] = {"printer-state", "printer-state-reasons", "printer-is-accepting-jobs"};
  const Connection connection;
  if (!connection) return connection.failure();
  char address[HTTP_MAX_URI];
  httpAssembleURIf(HTTP_URI_CODING_ALL, address, sizeof address, "ipp", nullptr, "localhost", 0, "/printers/%s",
                   queue.c_str());
  ipp_t* request = ippNewRequest(IPP_OP_GET_PRINTER_ATTRIBUTES);
  ippAddString(request, IPP_TAG_OPERATION, IPP_TAG_URI, "printer-uri", nullptr, address);
  ippAddStrings(request, IPP_TAG_OPERATION, IPP_TAG_KEYWORD, "requested-attributes", std::size(wanted), nullptr,
                wanted);
  const std::unique_ptr<ipp_t, decltype(&ippDelete)> answer(cupsDoRequest(connection.http(), request, "/"), &ippDelete);
  if (!answer || ippGetStatusCode(answer.get()) > IPP_STATUS_OK_CONFLICTING) return connection.failure();
  return statusIn(answer.get());
}

}  // namespace tellaxis::platform
