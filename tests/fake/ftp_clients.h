// FTP clients: transfers that succeed as the tests say.
#pragma once

#include <string>

#include "fake/journal.h"
#include "platform/ftp/ftp_address.h"
#include "platform/ftp_client.h"
#include "platform/trace.h"

namespace tellaxis::fake {

class FtpClients : public platform::FtpClients {
 public:
  FtpClients(Journal& journal, platform::Trace& trace) : journal_(journal), trace_(trace) {}

  bool getSucceeds = true;
  bool deleteSucceeds = true;
  bool putSucceeds = true;
  platform::FtpLogin login = platform::FtpLogin::done;

  std::unique_ptr<platform::FtpClient> create() override;

 private:
  friend class FtpClient;
  Journal& journal_;
  platform::Trace& trace_;
};

class FtpClient : public platform::FtpClient {
 public:
  explicit FtpClient(FtpClients& clients) : clients_(clients) {}
  ~FtpClient() override { clients_.journal_.record("ftp release"); }

  platform::FtpLogin logIn(std::string_view server, std::string_view user, std::string_view password,
                           std::string& reason) override {
    const bool succeeds = note("logIn", {server, user, password});
    const bool possible = platform::ftpAddressFrom(server) && !platform::wouldEndCommand({server, user, password});
    const auto login = succeeds && possible ? clients_.login : platform::FtpLogin::unreachable;
    if (!done(login == platform::FtpLogin::done, "logIn")) reason = "finto";
    return login;
  }
  bool bQGetFile(std::string_view server, std::string_view user, std::string_view password, std::string_view remoteFile,
                 std::string_view localFile, platform::TransferType type, bool overwrite) override {
    const bool succeeds =
        note("bQGetFile", {server, user, password, remoteFile, localFile, number(type), overwrite ? "true" : "false"});
    return done(succeeds && clients_.getSucceeds && isPossible({server, user, password, remoteFile}), "bQGetFile");
  }
  bool bQDeleteFile(std::string_view server, std::string_view user, std::string_view password,
                    std::string_view remoteFile) override {
    const bool succeeds = note("bQDeleteFile", {server, user, password, remoteFile});
    return done(succeeds && clients_.deleteSucceeds && isPossible({server, user, password, remoteFile}),
                "bQDeleteFile");
  }
  bool bQPutFile(std::string_view server, std::string_view user, std::string_view password, std::string_view localFile,
                 std::string_view remoteFile, platform::TransferType type) override {
    const bool succeeds = note("bQPutFile", {server, user, password, localFile, remoteFile, number(type)});
    return done(succeeds && clients_.putSucceeds && isPossible({server, user, password, remoteFile}), "bQPutFile");
  }

 private:
  struct Request {
    std::string_view server;
    std::string_view user;
    std::string_view password;
    std::string_view remoteFile;
  };

  static bool isPossible(const Request& request) {
    return !request.remoteFile.empty() && platform::ftpAddressFrom(request.server) &&
           !platform::wouldEndCommand({request.server, request.user, request.password, request.remoteFile});
  }
  bool done(bool succeeded, std::string_view operation) {
    if (!succeeded) clients_.trace_.failed(operation, "", "finto");
    return succeeded;
  }
  static std::string number(platform::TransferType type) { return std::to_string(static_cast<int>(type)); }
  bool note(const std::string& operation, std::initializer_list<std::string_view> arguments) {
    std::string call = "ftp " + operation;
    for (const std::string_view argument : arguments) call.append(" '").append(argument).append("'");
    return clients_.journal_.record(call);
  }

  FtpClients& clients_;
};

inline std::unique_ptr<platform::FtpClient> FtpClients::create() {
  if (!journal_.record("ftp create")) return nullptr;
  return std::make_unique<FtpClient>(*this);
}

}  // namespace tellaxis::fake
