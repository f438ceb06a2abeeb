// FTP clients of Windows: passive binary transfers by WinINet.
#include "platform/windows/ftp_client.h"

#include <windows.h>
// After windows.h, which it needs.
#include <wininet.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <iterator>
#include <limits>
#include <mutex>
#include <optional>
#include <span>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

#include "platform/ftp/ftp_address.h"
#include "platform/ftp/ftp_limits.h"
#include "platform/program.h"
#include "platform/windows/files/file_operations.h"
#include "platform/windows/files/stale_files.h"
#include "platform/windows/kernel/native.h"

namespace tellaxis::platform {

namespace {

constexpr FtpLimits limits;

/// Between two looks at a transfer, and how long one that was given up is waited for.
constexpr std::chrono::milliseconds lookPause{100};
constexpr std::chrono::seconds abandonedWait{1};

constexpr std::string_view givenUp = "il trasferimento \xE8 fermo, troppo lento o interrotto";

struct InternetCloser {
  void operator()(HINTERNET handle) const { InternetCloseHandle(handle); }
};
using InternetHandle = std::unique_ptr<void, InternetCloser>;

/// The system's reason, or what the server answered.
std::string internetReason() {
  const DWORD error = GetLastError();
  if (error == ERROR_INTERNET_EXTENDED_ERROR) {
    char text[512];
    DWORD size = sizeof text;
    DWORD code = 0;
    if (InternetGetLastResponseInfoA(&code, text, &size) && size > 0) {
      std::string answer(text, size);
      answer.erase(answer.find_last_not_of("\r\n ") + 1);
      return answer.substr(answer.find_last_of("\r\n") + 1);
    }
  }
  return systemReason(error);
}

void setOptions(HINTERNET handle, std::span<const std::pair<DWORD, DWORD>> options) {
  for (auto [option, value] : options) InternetSetOptionA(handle, option, &value, sizeof value);
}

void limitLogin(HINTERNET library) {
  constexpr DWORD longest = std::chrono::milliseconds(limits.connection).count();
  constexpr std::pair<DWORD, DWORD> options[] = {{INTERNET_OPTION_CONNECT_TIMEOUT, longest},
                                                 {INTERNET_OPTION_CONNECT_RETRIES, 1},
                                                 {INTERNET_OPTION_SEND_TIMEOUT, longest},
                                                 {INTERNET_OPTION_RECEIVE_TIMEOUT, longest}};
  setOptions(library, options);
}

void limitTransfer(HINTERNET session) {
  // The last two are WinINet's waits on the data connection, which some headers do not name.
  constexpr DWORD dataSendTimeout = 7;
  constexpr DWORD dataReceiveTimeout = 8;
  constexpr DWORD longest = std::chrono::milliseconds(limits.stall).count();
  constexpr std::pair<DWORD, DWORD> options[] = {{INTERNET_OPTION_SEND_TIMEOUT, longest},
                                                 {INTERNET_OPTION_RECEIVE_TIMEOUT, longest},
                                                 {dataSendTimeout, longest},
                                                 {dataReceiveTimeout, longest}};
  setOptions(session, options);
}

/// One operation of a server, carried out by a thread of its own: WinINet may wait longer than it was told to, and is
/// then left alone. The thread shares this with whoever waits for it.
class Operation {
 public:
  FtpAddress address;
  std::string user;
  std::string password;
  std::function<bool(HINTERNET session)> work;

  void carryOut() {
    const HINTERNET library = InternetOpenA("Tellaxis", INTERNET_OPEN_TYPE_DIRECT, nullptr, nullptr, 0);
    if (library != nullptr) limitLogin(library);
    if (!keep(library)) return;
    const INTERNET_PORT port = address.port != 0 ? address.port : INTERNET_DEFAULT_FTP_PORT;
    const HINTERNET session = InternetConnectA(library, address.host.c_str(), port, user.c_str(), password.c_str(),
                                               INTERNET_SERVICE_FTP, INTERNET_FLAG_PASSIVE, 0);
    if (session == nullptr) refused_ = serverAnswered(GetLastError());
    if (!keep(session)) return;
    loggedIn_ = true;
    limitTransfer(session);
    finish(work(session) ? std::nullopt : std::optional(internetReason()));
  }

  /// Why it failed, or nothing. Given up as soon as `unwanted` says so or the login takes too long, and ended or not.
  std::optional<std::string> result(const std::function<bool()>& unwanted) {
    const auto loginEnd = std::chrono::steady_clock::now() + limits.connection;
    std::unique_lock lock(mutex_);
    const auto over = [this] { return ended_; };
    while (!changed_.wait_for(lock, lookPause, over)) {
      if (!unwanted() && (loggedIn_ || std::chrono::steady_clock::now() < loginEnd)) continue;
      closeHandles();
      changed_.wait_for(lock, abandonedWait, over);
      return std::string(givenUp);
    }
    closeHandles();
    return failure_;
  }

  /// Whether the server was there and did not take the account.
  bool refused() const { return refused_; }

 private:
  static bool serverAnswered(DWORD error) {
    constexpr DWORD answers[] = {ERROR_INTERNET_LOGIN_FAILURE, ERROR_INTERNET_INCORRECT_PASSWORD,
                                 ERROR_INTERNET_INCORRECT_USER_NAME, ERROR_INTERNET_EXTENDED_ERROR};
    return std::ranges::find(answers, error) != std::end(answers);
  }

  /// False, and the operation is over, when the handle is none or nobody waits any more.
  bool keep(HINTERNET handle) {
    if (handle == nullptr) {
      finish(internetReason());
      return false;
    }
    const std::lock_guard lock(mutex_);
    handles_.emplace_back(handle);
    if (closed_) handles_.clear();
    return !closed_;
  }

  void finish(std::optional<std::string> failure) {
    const std::lock_guard lock(mutex_);
    failure_ = std::move(failure);
    ended_ = true;
    changed_.notify_all();
  }

  /// The session before the library.
  void closeHandles() {
    closed_ = true;
    while (!handles_.empty()) handles_.pop_back();
  }

  std::atomic<bool> loggedIn_ = false;
  std::atomic<bool> refused_ = false;
  std::mutex mutex_;
  std::condition_variable changed_;
  std::vector<InternetHandle> handles_;
  bool closed_ = false;
  bool ended_ = false;
  std::optional<std::string> failure_;
};

/// Bytes of the file at `path`; 0 when there is none.
std::int64_t sizeOf(const std::wstring& path) {
  WIN32_FILE_ATTRIBUTE_DATA data = {};
  if (!GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &data)) return 0;
  return (static_cast<std::int64_t>(data.nFileSizeHigh) << 32) | data.nFileSizeLow;
}

/// How many bytes a download to `path` may bring.
std::int64_t roomFor(const std::wstring& path) {
  ULARGE_INTEGER room = {};
  const std::wstring folder = path.substr(0, path.find_last_of(L"\\/") + 1);
  if (!GetDiskFreeSpaceExW(folder.empty() ? nullptr : folder.c_str(), &room, nullptr, nullptr))
    return std::numeric_limits<std::int64_t>::max();
  return static_cast<std::int64_t>(static_cast<double>(room.QuadPart) * limits.largestShare);
}

class WinInetClient : public FtpClient {
 public:
  explicit WinInetClient(Trace& trace) : trace_(trace) {}

  FtpLogin logIn(std::string_view server, std::string_view user, std::string_view password,
                 std::string& reason) override {
    const auto nothing = [](HINTERNET) { return true; };
    const auto failure = attempt({server, user, password, ""}, nothing, unwantedAfter(limits.stall));
    if (!failure) return FtpLogin::done;
    reason = failure->reason;
    failed(trace_, "logIn", server, reason);
    return failure->refused ? FtpLogin::refused : FtpLogin::unreachable;
  }

  bool bQGetFile(std::string_view server, std::string_view user, std::string_view password, std::string_view remoteFile,
                 std::string_view localFile, TransferType /*type*/, bool overwrite) override {
    const std::wstring local = wide(localFile);
    if (!overwrite && GetFileAttributesW(local.c_str()) != INVALID_FILE_ATTRIBUTES)
      return failed(trace_, "bQGetFile", localFile, "il file esiste gi\xE0");
    // The system holds an unfinished file for as long as this program runs.
    removeStaleFiles(local.substr(0, local.find_last_of(L"\\/:") + 1));
    const std::wstring temporary = temporaryBeside(local);
    const auto fetch = [remote = std::string(remoteFile), target = narrowForReading(temporary)](HINTERNET session) {
      // A failed transfer leaves what has come so far, and deletes what was there before.
      return FtpGetFileA(session, remote.c_str(), target.c_str(), FALSE, FILE_ATTRIBUTE_NORMAL,
                         FTP_TRANSFER_TYPE_BINARY | INTERNET_FLAG_RELOAD, 0) != 0;
    };
    const auto unwanted = [watch = TransferWatch(limits), room = roomFor(temporary), &temporary]() mutable {
      const std::int64_t size = sizeOf(temporary);
      return watch.givesUp(size) || size > room;
    };
    if (!inSession("bQGetFile", {server, user, password, remoteFile}, fetch, unwanted)) {
      DeleteFileW(temporary.c_str());
      return false;
    }
    return replaceFile(temporary, local) || failed(trace_, "bQGetFile", localFile);
  }

  bool bQDeleteFile(std::string_view server, std::string_view user, std::string_view password,
                    std::string_view remoteFile) override {
    const auto erase = [remote = std::string(remoteFile)](HINTERNET session) {
      return FtpDeleteFileA(session, remote.c_str()) != 0;
    };
    return inSession("bQDeleteFile", {server, user, password, remoteFile}, erase, unwantedAfter(limits.stall));
  }

  bool bQPutFile(std::string_view server, std::string_view user, std::string_view password, std::string_view localFile,
                 std::string_view remoteFile, TransferType /*type*/) override {
    if (!findFile(wide(localFile))) return failed(trace_, "bQPutFile", localFile, "il file non esiste");
    const auto store = [local = std::string(localFile), remote = std::string(remoteFile)](HINTERNET session) {
      return FtpPutFileA(session, local.c_str(), remote.c_str(), FTP_TRANSFER_TYPE_BINARY, 0) != 0;
    };
    const std::chrono::seconds slowest{sizeOf(wide(localFile)) / limits.lowestRate};
    return inSession("bQPutFile", {server, user, password, remoteFile}, store, unwantedAfter(limits.stall + slowest));
  }

 private:
  struct Request {
    std::string_view server;
    std::string_view user;
    std::string_view password;
    std::string_view remoteFile;
  };

  static std::function<bool()> unwantedAfter(std::chrono::seconds time) {
    return [end = std::chrono::steady_clock::now() + time] { return std::chrono::steady_clock::now() >= end; };
  }

  struct Failure {
    std::string reason;
    bool refused = false;
  };

  bool inSession(std::string_view name, const Request& request, std::function<bool(HINTERNET)> work,
                 const std::function<bool()>& unwanted) {
    if (request.remoteFile.empty()) return failed(trace_, name, request.server, "manca il nome del file remoto");
    const auto failure = attempt(request, std::move(work), unwanted);
    return !failure || failed(trace_, name, request.remoteFile, failure->reason);
  }

  static std::optional<Failure> attempt(const Request& request, std::function<bool(HINTERNET)> work,
                                        const std::function<bool()>& unwanted) {
    const auto& [server, user, password, remoteFile] = request;
    if (wouldEndCommand({server, user, password, remoteFile}))
      return Failure{.reason = "un testo contiene un fine riga o un carattere nullo"};
    const auto address = ftpAddressFrom(server);
    if (!address) return Failure{.reason = "l'indirizzo del server non \xE8 valido"};
    if (address->security != FtpSecurity::none) return Failure{.reason = "Windows non offre trasferimenti FTP cifrati"};
    const auto operation = std::make_shared<Operation>();
    operation->address = *address;
    operation->user = user;
    operation->password = password;
    operation->work = std::move(work);
    try {
      std::thread([operation] { operation->carryOut(); }).detach();
    } catch (const std::system_error&) {
      return Failure{.reason = systemReason(ERROR_NOT_ENOUGH_MEMORY)};
    }
    const auto failure = operation->result([&] { return stopWasAsked() || unwanted(); });
    if (!failure) return std::nullopt;
    return Failure{.reason = *failure, .refused = operation->refused()};
  }

  Trace& trace_;
};

}  // namespace

std::unique_ptr<FtpClient> WindowsFtpClients::create() { return std::make_unique<WinInetClient>(trace_); }

}  // namespace tellaxis::platform
