// FTP: whether the server answers and takes the account; only where the network may be used.
#include "check/devices/devices.h"
#include "check/words.h"
#include "platform/ftp_client.h"

namespace tellaxis {

void checkFtp(const CheckScene& scene, Findings& findings) {
  const std::string server = readKey(scene, "FTP_Indirizzo");
  if (server.empty()) return findings.add(Code::off, "Nessun server (FTP_Indirizzo).");
  const std::string user = readKey(scene, "FTP_User");
  const std::string account = "Server " + server + ", utente " + (user.empty() ? "anonimo" : user);
  if (!scene.network) return findings.add(Code::lookedAt, account + "; il collegamento si prova con --rete.");
  findings.add(Code::lookedAt, account + ", collegamento provato.");
  std::string reason = "il client FTP non si pu\xF2 caricare";
  const auto client = scene.bridge.host.ftpClients.create();
  const auto login =
      client ? client->logIn(server, user, readKey(scene, "FTP_Pw"), reason) : platform::FtpLogin::unreachable;
  if (login == platform::FtpLogin::unreachable)
    findings.add(Code::ftpUnreachable, "Il server " + server + " non si raggiunge: " + reason + ".");
  else if (login == platform::FtpLogin::refused)
    findings.add(Code::ftpRefused, "Il server " + server + " rifiuta l'utente \"" + user + "\": " + reason + ".");
}

}  // namespace tellaxis
