// Dial-up: the batch file and its run.
#include "connect/dial_up.h"

#include <optional>
#include <string>

#include "connect/batch_file.h"
#include "core/ini/ini.h"
#include "platform/files.h"

namespace tellaxis {

namespace {

/// What `OpenProcess` was once believed to give when it fails; a null handle is waited on.
constexpr platform::ProcessHandle notToWaitFor = 1;

std::string setting(Bridge& bridge, std::string_view key) {
  return LeggiIni(bridge.host, rawSection, key, Null{}, bridge.settings.settingsFile);
}

/// Beside the program's folder, with the folder's name before its own; in the root where the program lies in a root.
std::string batchFilePath(const std::string& programFolder) {
  return programFolder + (programFolder.ends_with(':') ? "\\Dial.bat" : "Dial.bat");
}

/// Writes the line, which holds a password, into a file that is its owner's alone, and returns where it is: in the
/// user's folder for passing things where it cannot be at `batchFile` (a drive's root is closed to ordinary users).
/// Nothing where it could not be written anew: a file that is there already is somebody else's.
std::optional<std::string> writeBatchFile(Bridge& bridge, const std::string& batchFile, const std::string& line) {
  platform::Files& files = bridge.host.files;
  if (files.create(batchFile, line + "\r\n", platform::Readers::ownerAlone)) return batchFile;
  const std::string folder = files.temporaryFolder();
  if (folder.empty()) return std::nullopt;
  const std::string elsewhere = folder + batchFile.substr(batchFile.find_last_of('\\'));
  if (!files.create(elsewhere, line + "\r\n", platform::Readers::ownerAlone)) return std::nullopt;
  return elsewhere;
}

void run(Bridge& bridge, const std::string& batchFile, const std::string& line, platform::WindowStyle windowStyle) {
  if (const auto written = writeBatchFile(bridge, batchFile, line))
    EseguiEAttendi(bridge, commandFor(*written), windowStyle);
}

}  // namespace

std::int16_t Connessione(Bridge& bridge, const std::int16_t& Azione) {
  const std::string entry = setting(bridge, "Int_Indirizzo");
  const std::string user = setting(bridge, "Ind_User");
  const std::string password = setting(bridge, "Ind_Pw");
  if (entry.empty() || user.empty() || password.empty()) return no;

  const std::string batchFile = batchFilePath(bridge.settings.mainFolder);
  if (bridge.host.files.exists(batchFile)) bridge.host.files.remove(batchFile);
  if (Azione == connectLine) {
    run(bridge, batchFile, "rasdial " + entry + " " + user + " " + password,
        platform::WindowStyle::minimisedWithoutFocus);
    return yes;
  }
  if (Azione == disconnectLine) {
    run(bridge, batchFile, "rasdial /disconnect", platform::WindowStyle::hidden);
    return yes;
  }
  return no;
}

void EseguiEAttendi(Bridge& bridge, std::string_view commandLine, platform::WindowStyle windowStyle) {
  platform::Processes& processes = bridge.host.processes;
  const platform::ProcessId process = processes.start(commandLine, windowStyle);
  if (process == 0) return;
  const platform::ProcessHandle handle = processes.open(process);
  if (handle == notToWaitFor) return;
  processes.wait(handle);
  processes.close(handle);
}

}  // namespace tellaxis
