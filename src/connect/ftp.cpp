// FTP: request keys, transfer and answer keys.
#include "connect/ftp.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "connect/dial_up.h"
#include "core/ini/ini.h"
#include "platform/files.h"
#include "platform/ftp_client.h"
#include "platform/locale.h"

namespace tellaxis {

namespace {

constexpr std::int16_t upload = 1;
constexpr std::int16_t download = 2;

/// The request as the settings file holds it.
struct Request {
  std::string server;
  std::string user;
  std::string password;
  std::int16_t action = 0;
  std::string folder;
  std::string fileName;
  bool dialUp = false;
};

std::string readKey(Bridge& bridge, std::string_view key) {
  return LeggiIni(bridge.host, rawSection, key, Null{}, bridge.settings.settingsFile);
}

void writeKey(Bridge& bridge, std::string_view key, std::string_view value) {
  ScriviIni(bridge.host, rawSection, key, value, bridge.settings.settingsFile);
}

Request readRequest(Bridge& bridge) {
  const auto& regional = bridge.host.locale.regional();
  Request request;
  request.server = readKey(bridge, "FTP_Indirizzo");
  request.user = readKey(bridge, "FTP_User");
  request.password = readKey(bridge, "FTP_Pw");
  request.action = integerFrom(readKey(bridge, "FTP_Azione"), regional).value_or(0);
  request.folder = readKey(bridge, "FTP_Directory");
  request.fileName = readKey(bridge, "FTP_NomeFile");
  request.dialUp = truthFrom(readKey(bridge, "WEB_chkDial"), regional).value_or(false);
  return request;
}

/// A hang-up that fails spoils a good transfer.
bool dialledUp(Bridge& bridge, const std::function<bool()>& transfer) {
  const bool connected = Connessione(bridge, connectLine) != no;
  const bool transferred = connected && transfer();
  const bool disconnected = Connessione(bridge, disconnectLine) != no;
  return transferred && disconnected;
}

bool carryOut(Bridge& bridge, const Request& request) {
  std::function<bool()> transfer;
  if (request.action == upload)
    transfer = [&] {
      return FTP_Carica(bridge, request.folder + request.fileName, request.user, request.password, request.server);
    };
  else if (request.action == download)
    transfer = [&] {
      return FTP_Scarica(bridge, request.folder, request.fileName, request.user, request.password, request.server);
    };
  else
    return false;
  return request.dialUp ? dialledUp(bridge, transfer) : transfer();
}

}  // namespace

bool EseguiFTP(Bridge& bridge) {
  const Request request = readRequest(bridge);
  writeKey(bridge, "FTP_Finish", "In Corso");
  const bool ok = carryOut(bridge, request);
  writeKey(bridge, "FTP_Esito", ok ? "-1" : "0");
  writeKey(bridge, "FTP_Finish", "Finito");
  writeKey(bridge, "FTP_Azione", "");
  writeKey(bridge, "FTP_NomeFile", "");
  return ok;
}

bool FTP_Scarica(Bridge& bridge, std::string_view localFolder, std::string_view fileName, std::string_view user,
                 std::string_view password, std::string_view server) {
  const std::string localFile = std::string(localFolder) + std::string(fileName);
  const std::unique_ptr<platform::FtpClient> client = bridge.host.ftpClients.create();
  return client && client->bQGetFile(server, user, password, fileName, localFile, platform::TransferType::binary, true);
}

bool FTP_Carica(Bridge& bridge, std::string_view localPath, std::string_view user, std::string_view password,
                std::string_view server) {
  const std::unique_ptr<platform::FtpClient> client = bridge.host.ftpClients.create();
  if (!client || !client->bQDeleteFile(server, user, password, localPath)) return false;
  const std::string bareName = bridge.host.files.lookUp(localPath).value_or("");
  return client->bQPutFile(server, user, password, localPath, bareName, platform::TransferType::binary);
}

}  // namespace tellaxis
