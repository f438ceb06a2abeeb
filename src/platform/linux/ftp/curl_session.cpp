// Curl session: one libcurl handle, whose connection serves one operation after the other.
#include "platform/linux/ftp/curl_session.h"

#include <curl/curl.h>

#include <algorithm>
#include <cstdlib>
#include <iterator>

#include "platform/ftp/ftp_address.h"

namespace tellaxis::platform {

namespace {

constexpr long bufferSize = 256 * 1024;

/// The longest sleep between two looks at a transfer, in milliseconds. libcurl 7.88 may overlook that a data connection
/// stands, and would sleep for a second.
constexpr int longestSleep = 20;

struct Reason {
  CURLcode code;
  std::string_view text;
};

constexpr Reason reasons[] = {
    {CURLE_URL_MALFORMAT, "il nome del file non si pu\xF2 trasmettere"},
    {CURLE_COULDNT_RESOLVE_HOST, "il nome del server \xE8 sconosciuto"},
    {CURLE_COULDNT_CONNECT, "il server non accetta il collegamento"},
    {CURLE_OPERATION_TIMEDOUT, "il server non risponde"},
    {CURLE_FTP_ACCEPT_TIMEOUT, "il server non risponde"},
    {CURLE_ABORTED_BY_CALLBACK, "il trasferimento \xE8 fermo, troppo lento o interrotto"},
    {CURLE_LOGIN_DENIED, "utente o password rifiutati"},
    {CURLE_REMOTE_ACCESS_DENIED, "accesso rifiutato"},
    {CURLE_REMOTE_FILE_NOT_FOUND, "il server non ha o non d\xE0 il file"},
    {CURLE_QUOTE_ERROR, "il server rifiuta il comando"},
    {CURLE_UPLOAD_FAILED, "il server rifiuta il file"},
    {CURLE_REMOTE_DISK_FULL, "il disco del server \xE8 pieno"},
    {CURLE_PARTIAL_FILE, "trasferimento interrotto"},
    {CURLE_GOT_NOTHING, "collegamento interrotto"},
    {CURLE_RECV_ERROR, "collegamento interrotto"},
    {CURLE_SEND_ERROR, "collegamento interrotto"},
    {CURLE_USE_SSL_FAILED, "il server non offre un collegamento cifrato"},
    {CURLE_SSL_CONNECT_ERROR, "collegamento cifrato non riuscito"},
    {CURLE_PEER_FAILED_VERIFICATION, "il certificato del server non \xE8 attendibile"},
    {CURLE_SSL_CACERT_BADFILE, "il file di SSL_CERT_FILE non contiene certificati"},
};

/// Answers of a server that knows no passive transfers; nothing has been transferred yet.
constexpr CURLcode passiveRefused[] = {CURLE_FTP_WEIRD_PASV_REPLY, CURLE_FTP_WEIRD_227_FORMAT, CURLE_FTP_CANT_GET_HOST};

/// The server's answer is told where it was one that refused something.
std::string transferReason(CURL* curl, CURLcode code) {
  std::string text = "errore di trasferimento " + std::to_string(static_cast<int>(code));
  for (const Reason& reason : reasons)
    if (reason.code == code) text = reason.text;
  long answer = 0;
  curl_easy_getinfo(curl, CURLINFO_RESPONSE_CODE, &answer);
  return answer >= 400 ? text + " (" + std::to_string(answer) + ")" : text;
}

/// Asked for a name that ends so, libcurl would list a folder.
bool isFileName(std::string_view name) { return !name.empty() && !name.ends_with('/'); }

std::size_t takeBytes(const char* bytes, std::size_t size, std::size_t count, void* taker) {
  return (*static_cast<const BytesTaker*>(taker))({bytes, size * count}) ? size * count : 0;
}

std::size_t giveBytes(char* buffer, std::size_t size, std::size_t count, void* giver) {
  return (*static_cast<const BytesGiver*>(giver))({buffer, size * count}).value_or(CURL_READFUNC_ABORT);
}

/// libcurl writes a listing or nothing where no file is asked for; it goes nowhere.
std::size_t dropBytes(const char* /*bytes*/, std::size_t size, std::size_t count, void* /*file*/) {
  return size * count;
}

/// Ends a transfer that is against the limits, or that nobody wants any more.
struct Supervision {
  TransferWatch watch;
  const std::function<bool()>* stopped = nullptr;
};

int watchProgress(void* data, curl_off_t /*toGet*/, curl_off_t got, curl_off_t /*toPut*/, curl_off_t put) {
  auto& [watch, stopped] = *static_cast<Supervision*>(data);
  const bool wanted = !*stopped || !(*stopped)();
  return wanted && !watch.givesUp(got + put) ? 0 : 1;
}

struct HandleCloser {
  void operator()(CURL* curl) const { curl_easy_cleanup(curl); }
};
struct TransfersCloser {
  void operator()(CURLM* transfers) const { curl_multi_cleanup(transfers); }
};
struct ListCloser {
  void operator()(curl_slist* list) const { curl_slist_free_all(list); }
};

class CurlSession : public FtpSession {
 public:
  /// False when the library had no memory for a session.
  bool works() const { return curl_ && transfers_; }

  std::optional<LoginFailure> logIn(const FtpRequest& request) override {
    if (auto complaint = prepare(request)) return LoginFailure{.reason = *complaint};
    set(CURLOPT_URL, urlOf(address_, "").c_str());
    set(CURLOPT_NOBODY, 1L);
    auto failure = perform();
    if (!failure) return std::nullopt;
    return LoginFailure{.reason = *failure, .refused = lastCode_ == CURLE_LOGIN_DENIED};
  }

  std::optional<std::string> get(const FtpRequest& request, const BytesTaker& take) override {
    if (!isFileName(request.remoteFile)) return "non \xE8 il nome di un file";
    if (auto complaint = prepare(request)) return complaint;
    set(CURLOPT_URL, urlOf(address_, request.remoteFile).c_str());
    set(CURLOPT_WRITEFUNCTION, takeBytes);
    set(CURLOPT_WRITEDATA, &take);
    return perform();
  }

  std::optional<std::string> erase(const FtpRequest& request) override {
    if (request.remoteFile.empty()) return "manca il nome del file remoto";
    if (auto complaint = prepare(request)) return complaint;
    const std::unique_ptr<curl_slist, ListCloser> commands(
        curl_slist_append(nullptr, ("DELE " + std::string(request.remoteFile)).c_str()));
    set(CURLOPT_URL, urlOf(address_, "").c_str());
    set(CURLOPT_NOBODY, 1L);
    set(CURLOPT_QUOTE, commands.get());
    return perform();
  }

  std::optional<std::string> put(const FtpRequest& request, std::uint64_t size, const BytesGiver& give) override {
    if (!isFileName(request.remoteFile)) return "non \xE8 il nome di un file";
    if (auto complaint = prepare(request)) return complaint;
    set(CURLOPT_URL, urlOf(address_, request.remoteFile).c_str());
    set(CURLOPT_UPLOAD, 1L);
    set(CURLOPT_INFILESIZE_LARGE, static_cast<curl_off_t>(size));
    set(CURLOPT_READFUNCTION, giveBytes);
    set(CURLOPT_READDATA, &give);
    return perform();
  }

 private:
  template <class Value>
  void set(CURLoption option, Value value) {
    curl_easy_setopt(curl_.get(), option, value);
  }

  /// Checks the texts and sets everything that all operations have in common.
  std::optional<std::string> prepare(const FtpRequest& request) {
    if (wouldEndCommand({request.server, request.user, request.password, request.remoteFile}))
      return "un testo contiene un fine riga o un carattere nullo";
    const auto address = ftpAddressFrom(request.server);
    if (!address) return "l'indirizzo del server non \xE8 valido";
    address_ = *address;
    curl_easy_reset(curl_.get());
    set(CURLOPT_PATH_AS_IS, 1L);
    set(CURLOPT_PROTOCOLS_STR, "ftp,ftps");
    set(CURLOPT_PROXY, "");
    set(CURLOPT_FTP_FILEMETHOD, static_cast<long>(CURLFTPMETHOD_NOCWD));
    set(CURLOPT_WRITEFUNCTION, dropBytes);
    set(CURLOPT_BUFFERSIZE, bufferSize);
    set(CURLOPT_UPLOAD_BUFFERSIZE, bufferSize);
    set(CURLOPT_TCP_KEEPALIVE, 1L);
    logInAs(request.user, request.password);
    if (address_.security != FtpSecurity::none) demandTls();
    limitWaits(request);
    return std::nullopt;
  }

  void logInAs(std::string_view user, std::string_view password) {
    if (user.empty()) return;
    set(CURLOPT_USERNAME, std::string(user).c_str());
    set(CURLOPT_PASSWORD, std::string(password).c_str());
  }

  void demandTls() {
    set(CURLOPT_USE_SSL, static_cast<long>(CURLUSESSL_ALL));
    if (const char* authorities = std::getenv("SSL_CERT_FILE")) set(CURLOPT_CAINFO, authorities);
  }

  void limitWaits(const FtpRequest& request) {
    const auto connection = static_cast<long>(request.limits.connection.count());
    set(CURLOPT_CONNECTTIMEOUT, connection);
    set(CURLOPT_ACCEPTTIMEOUT_MS, connection * 1000);
    set(CURLOPT_SERVER_RESPONSE_TIMEOUT, static_cast<long>(request.limits.stall.count()));
    supervision_ = {TransferWatch(request.limits), &request.stopped};
    set(CURLOPT_NOPROGRESS, 0L);
    set(CURLOPT_XFERINFOFUNCTION, watchProgress);
    set(CURLOPT_XFERINFODATA, &supervision_);
  }

  std::optional<std::string> perform() {
    CURLcode code = performOnce();
    if (std::ranges::find(passiveRefused, code) != std::end(passiveRefused)) {
      set(CURLOPT_FTPPORT, "-");
      code = performOnce();
    }
    lastCode_ = code;
    if (code == CURLE_OK) return std::nullopt;
    return transferReason(curl_.get(), code);
  }

  /// Runs the handle until its transfer has ended; the connection is kept for the next one.
  CURLcode performOnce() {
    curl_multi_add_handle(transfers_.get(), curl_.get());
    int running = 1;
    while (running > 0 && curl_multi_perform(transfers_.get(), &running) == CURLM_OK && running > 0)
      curl_multi_poll(transfers_.get(), nullptr, 0, longestSleep, nullptr);
    int waiting = 0;
    const CURLMsg* message = curl_multi_info_read(transfers_.get(), &waiting);
    const CURLcode code = message == nullptr ? CURLE_OUT_OF_MEMORY : message->data.result;
    curl_multi_remove_handle(transfers_.get(), curl_.get());
    return code;
  }

  std::unique_ptr<CURL, HandleCloser> curl_{curl_easy_init()};
  std::unique_ptr<CURLM, TransfersCloser> transfers_{curl_multi_init()};  // gone first: the handle outlives it
  FtpAddress address_;
  CURLcode lastCode_ = CURLE_OK;
  Supervision supervision_;
};

}  // namespace

std::unique_ptr<FtpSession> openCurlSession() {
  auto session = std::make_unique<CurlSession>();
  if (!session->works()) return nullptr;
  return session;
}

}  // namespace tellaxis::platform
