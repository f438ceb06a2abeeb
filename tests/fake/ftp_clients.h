// FTP clients: transfers that succeed as the tests say.
#pragma once

#include <string>

#include "fake/journal.h"
#include "platform/ftp_client.h"

namespace tellaxis::fake {

class FtpClients : public platform::FtpClients {
 public:
  explicit FtpClients(Journal& journal) : journal_(journal) {}

  bool getSucceeds = true;
  bool deleteSucceeds = true;
  bool putSucceeds = true;

  std::unique_ptr<platform::FtpClient> create() override;

 private:
  friend class FtpClient;
  Journal& journal_;
};

class FtpClient : public platform::FtpClient {
 public:
  explicit FtpClient(FtpClients& clients) : clients_(clients) {}
  ~FtpClient() override { clients_.journal_.record("ftp release"); }

  bool bQGetFile(std::string_view server, std::string_view user, std::string_view password, std::string_view remoteFile,
                 std::string_view localFile, platform::TransferType type, bool overwrite) override {
    return note("bQGetFile",
                {server, user, password, remoteFile, localFile, number(type), overwrite ? "true" : "false"}) &&
           clients_.getSucceeds;
  }
  bool bQDeleteFile(std::string_view server, std::string_view user, std::string_view password,
                    std::string_view remoteFile) override {
    return note("bQDeleteFile", {server, user, password, remoteFile}) && clients_.deleteSucceeds;
  }
  bool bQPutFile(std::string_view server, std::string_view user, std::string_view password, std::string_view localFile,
                 std::string_view remoteFile, platform::TransferType type) override {
    return note("bQPutFile", {server, user, password, localFile, remoteFile, number(type)}) && clients_.putSucceeds;
  }

 private:
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
