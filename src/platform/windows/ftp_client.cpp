// FTP clients of Windows: passive binary transfers by WinINet.
#include "platform/windows/ftp_client.h"

#include <windows.h>
// After windows.h, which it needs.
#include <wininet.h>

#include <charconv>
#include <initializer_list>

#include "platform/windows/files/file_operations.h"
#include "platform/windows/kernel/native.h"

namespace tellaxis::platform {

namespace {

constexpr DWORD timeout = 20'000;  // milliseconds, of a connection and of each answer

struct InternetCloser {
  void operator()(HINTERNET handle) const { InternetCloseHandle(handle); }
};
using InternetHandle = std::unique_ptr<void, InternetCloser>;

struct Address {
  std::string host;
  INTERNET_PORT port = INTERNET_DEFAULT_FTP_PORT;
};

std::optional<Address> addressFrom(std::string_view server) {
  Address address{.host = std::string(server.substr(0, server.find(':')))};
  if (address.host.empty()) return std::nullopt;
  if (address.host.size() == server.size()) return address;
  const std::string_view number = server.substr(address.host.size() + 1);
  const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), address.port);
  if (error != std::errc{} || end != number.data() + number.size() || address.port == 0) return std::nullopt;
  return address;
}

/// Such a character would end the command that the text is sent in, and begin another one.
bool wouldEndCommand(std::initializer_list<std::string_view> texts) {
  for (const std::string_view text : texts)
    if (text.find_first_of(std::string_view("\r\n\0", 3)) != std::string_view::npos) return true;
  return false;
}

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

/// A session with a server, closed when destroyed.
class Session {
 public:
  /// Nothing came of it when `connected()` is false; the last error says why.
  Session(const Address& address, std::string_view user, std::string_view password)
      : library_(InternetOpenA("Tellaxis", INTERNET_OPEN_TYPE_DIRECT, nullptr, nullptr, 0)) {
    if (!library_) return;
    for (const DWORD option :
         {INTERNET_OPTION_CONNECT_TIMEOUT, INTERNET_OPTION_SEND_TIMEOUT, INTERNET_OPTION_RECEIVE_TIMEOUT}) {
      DWORD value = timeout;
      InternetSetOptionA(library_.get(), option, &value, sizeof value);
    }
    session_.reset(InternetConnectA(library_.get(), address.host.c_str(), address.port, std::string(user).c_str(),
                                    std::string(password).c_str(), INTERNET_SERVICE_FTP, INTERNET_FLAG_PASSIVE, 0));
  }

  bool connected() const { return session_ != nullptr; }
  HINTERNET get() const { return session_.get(); }

 private:
  InternetHandle library_;
  InternetHandle session_;
};

class WinInetClient : public FtpClient {
 public:
  explicit WinInetClient(Trace& trace) : trace_(trace) {}

  bool bQGetFile(std::string_view server, std::string_view user, std::string_view password, std::string_view remoteFile,
                 std::string_view localFile, TransferType /*type*/, bool overwrite) override {
    const std::wstring local = wide(localFile);
    if (!overwrite && GetFileAttributesW(local.c_str()) != INVALID_FILE_ATTRIBUTES)
      return failed(trace_, "bQGetFile", localFile, "il file esiste gi\xE0");
    const std::wstring temporary = temporaryBeside(local);
    const auto fetch = [&](const Session& session) {
      // A failed transfer leaves what has come so far, and deletes what was there before.
      return FtpGetFileA(session.get(), std::string(remoteFile).c_str(), narrowForReading(temporary).c_str(), FALSE,
                         FILE_ATTRIBUTE_NORMAL, FTP_TRANSFER_TYPE_BINARY | INTERNET_FLAG_RELOAD, 0) != 0;
    };
    if (!inSession("bQGetFile", server, user, password, remoteFile, fetch)) {
      DeleteFileW(temporary.c_str());
      return false;
    }
    return replaceFile(temporary, local) || failed(trace_, "bQGetFile", localFile);
  }

  bool bQDeleteFile(std::string_view server, std::string_view user, std::string_view password,
                    std::string_view remoteFile) override {
    return inSession("bQDeleteFile", server, user, password, remoteFile, [&](const Session& session) {
      return FtpDeleteFileA(session.get(), std::string(remoteFile).c_str()) != 0;
    });
  }

  bool bQPutFile(std::string_view server, std::string_view user, std::string_view password, std::string_view localFile,
                 std::string_view remoteFile, TransferType /*type*/) override {
    if (!findFile(wide(localFile))) return failed(trace_, "bQPutFile", localFile, "il file non esiste");
    return inSession("bQPutFile", server, user, password, remoteFile, [&](const Session& session) {
      return FtpPutFileA(session.get(), std::string(localFile).c_str(), std::string(remoteFile).c_str(),
                         FTP_TRANSFER_TYPE_BINARY, 0) != 0;
    });
  }

 private:
  template <class Transfer>
  bool inSession(std::string_view operation, std::string_view server, std::string_view user, std::string_view password,
                 std::string_view remoteFile, Transfer transfer) {
    if (wouldEndCommand({server, user, password, remoteFile}))
      return failed(trace_, operation, server, "un testo contiene un fine riga o un carattere nullo");
    if (remoteFile.empty()) return failed(trace_, operation, server, "manca il nome del file remoto");
    if (server.starts_with("ftps://") || server.starts_with("ftpes://"))
      return failed(trace_, operation, server, "Windows non offre trasferimenti FTP cifrati");
    const auto address = addressFrom(server);
    if (!address) return failed(trace_, operation, server, "indirizzo non valido");
    const Session session(*address, user, password);
    if (!session.connected()) return failed(trace_, operation, server, internetReason());
    return transfer(session) || failed(trace_, operation, remoteFile, internetReason());
  }

  Trace& trace_;
};

}  // namespace

std::unique_ptr<FtpClient> WindowsFtpClients::create() { return std::make_unique<WinInetClient>(trace_); }

}  // namespace tellaxis::platform
