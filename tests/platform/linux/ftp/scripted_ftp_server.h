// Scripted FTP server: a server on loopback that answers, stalls and hangs up as a test says.
#pragma once

#include <atomic>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace tellaxis {

/// What the server does; the rest is a server that holds one file and lets everybody in.
struct FtpScript {
  bool greets = true;
  std::map<std::string, std::string> answers;  ///< by verb, in place of the usual one: "550 No."
  std::string content = "contenuto";           ///< of every file
  std::optional<std::size_t> hangsUpAfter;     ///< bytes of a download after which all connections break
  std::optional<std::size_t> stallsAfter;      ///< bytes of a transfer after which nothing moves any more
  bool drips = false;                          ///< a download goes on for ever, ten bytes a second
  bool takesActiveOnly = false;                ///< refuses EPSV and PASV
};

/// Serves one client after the other until destroyed.
class ScriptedFtpServer {
 public:
  explicit ScriptedFtpServer(FtpScript script = {});
  ~ScriptedFtpServer();
  ScriptedFtpServer(const ScriptedFtpServer&) = delete;
  ScriptedFtpServer& operator=(const ScriptedFtpServer&) = delete;

  std::string address() const { return "127.0.0.1:" + std::to_string(port_); }
  /// Command lines as they came, without their ends.
  std::vector<std::string> commands() const;
  /// The bytes of the last upload.
  std::string stored() const;

 private:
  void serve();
  void talk(int client);
  bool answer(int client, const std::string& line);
  void sendFile(int client);
  void takeFile(int client);
  int dataConnection();
  void say(int client, const std::string& line) const;
  bool readable(int descriptor) const;

  FtpScript script_;
  int listener_ = -1;
  int port_ = 0;
  int dataListener_ = -1;
  int activePort_ = 0;
  std::atomic<bool> ending_ = false;
  mutable std::mutex mutex_;
  std::vector<std::string> commands_;
  std::string stored_;
  std::thread thread_;
};

}  // namespace tellaxis
