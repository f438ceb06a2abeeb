// Scripted FTP server: sockets and answers.
#include "platform/linux/ftp/scripted_ftp_server.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <stdexcept>

namespace tellaxis {

namespace {

sockaddr_in loopback(int port) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<std::uint16_t>(port));
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  return address;
}

int listenOnLoopback() {
  const int listener = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address = loopback(0);
  if (listener < 0 || ::bind(listener, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0 ||
      ::listen(listener, 8) != 0)
    throw std::runtime_error("no socket to listen on");
  return listener;
}

int portOf(int listener) {
  sockaddr_in address{};
  socklen_t size = sizeof address;
  ::getsockname(listener, reinterpret_cast<sockaddr*>(&address), &size);
  return ntohs(address.sin_port);
}

/// The last number of "EPRT |1|127.0.0.1|4711|".
int portIn(const std::string& line) {
  const std::size_t end = line.rfind('|');
  return std::stoi(line.substr(line.rfind('|', end - 1) + 1));
}

}  // namespace

ScriptedFtpServer::ScriptedFtpServer(FtpScript script)
    : script_(std::move(script)), listener_(listenOnLoopback()), port_(portOf(listener_)) {
  thread_ = std::thread([this] { serve(); });
}

ScriptedFtpServer::~ScriptedFtpServer() {
  ending_ = true;
  thread_.join();
  ::close(listener_);
}

std::vector<std::string> ScriptedFtpServer::commands() const {
  const std::lock_guard lock(mutex_);
  return commands_;
}

std::string ScriptedFtpServer::stored() const {
  const std::lock_guard lock(mutex_);
  return stored_;
}

/// Waits until there is something to read; false at the end of the test.
bool ScriptedFtpServer::readable(int descriptor) const {
  while (!ending_) {
    pollfd waiting{.fd = descriptor, .events = POLLIN, .revents = 0};
    if (::poll(&waiting, 1, 20) > 0) return true;
  }
  return false;
}

void ScriptedFtpServer::serve() {
  while (readable(listener_)) {
    const int client = ::accept(listener_, nullptr, nullptr);
    const int atOnce = 1;
    ::setsockopt(client, IPPROTO_TCP, TCP_NODELAY, &atOnce, sizeof atOnce);
    talk(client);
    ::close(client);
    if (dataListener_ >= 0) ::close(dataListener_);
    dataListener_ = -1;
  }
}

void ScriptedFtpServer::talk(int client) {
  if (script_.greets) say(client, "220 Pronto.");
  std::string received;
  while (readable(client)) {
    char buffer[4096];
    const ssize_t got = ::read(client, buffer, sizeof buffer);
    if (got <= 0) return;
    received.append(buffer, static_cast<std::size_t>(got));
    for (std::size_t end = received.find("\r\n"); end != std::string::npos; end = received.find("\r\n")) {
      const std::string line = received.substr(0, end);
      received.erase(0, end + 2);
      {
        const std::lock_guard lock(mutex_);
        commands_.push_back(line);
      }
      if (!answer(client, line)) return;
    }
  }
}

bool ScriptedFtpServer::answer(int client, const std::string& line) {
  const std::string verb = line.substr(0, line.find(' '));
  if (const auto scripted = script_.answers.find(verb); scripted != script_.answers.end()) {
    say(client, scripted->second);
  } else if (verb == "USER") {
    say(client, "331 E la password?");
  } else if (verb == "PASS") {
    say(client, "230 Benvenuto.");
  } else if (verb == "PWD") {
    say(client, "257 \"/\"");
  } else if (verb == "SIZE") {
    say(client, "213 " + std::to_string(script_.content.size()));
  } else if (script_.takesActiveOnly && (verb == "EPSV" || verb == "PASV")) {
    say(client, "502 No.");
  } else if (verb == "EPSV") {
    dataListener_ = listenOnLoopback();
    say(client, "229 Ecco (|||" + std::to_string(portOf(dataListener_)) + "|)");
  } else if (verb == "EPRT") {
    activePort_ = portIn(line);
    say(client, "200 Bene.");
  } else if (verb == "RETR") {
    sendFile(client);
    return !script_.hangsUpAfter;
  } else if (verb == "STOR") {
    takeFile(client);
  } else if (verb == "QUIT") {
    say(client, "221 Addio.");
    return false;
  } else {
    say(client, verb == "TYPE" || verb == "CWD" || verb == "DELE" ? "250 Fatto." : "502 Sconosciuto.");
  }
  return true;
}

int ScriptedFtpServer::dataConnection() {
  if (dataListener_ >= 0) return readable(dataListener_) ? ::accept(dataListener_, nullptr, nullptr) : -1;
  const int data = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  const sockaddr_in address = loopback(activePort_);
  if (::connect(data, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0) return data;
  ::close(data);
  return -1;
}

void ScriptedFtpServer::sendFile(int client) {
  say(client, "150 Arriva.");
  const int data = dataConnection();
  const std::size_t size =
      std::min(script_.content.size(), script_.stallsAfter.value_or(script_.hangsUpAfter.value_or(std::string::npos)));
  while (script_.drips && !ending_ && ::send(data, "x", 1, MSG_NOSIGNAL) == 1)
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
  ::send(data, script_.content.data(), size, MSG_NOSIGNAL);
  if (script_.stallsAfter) readable(client);
  ::close(data);
  if (!script_.stallsAfter && !script_.hangsUpAfter) say(client, "226 Fatto.");
}

void ScriptedFtpServer::takeFile(int client) {
  say(client, "150 Avanti.");
  const int data = dataConnection();
  std::string taken;
  char buffer[4096];
  while (script_.stallsAfter.value_or(std::string::npos) > taken.size() && readable(data)) {
    const ssize_t got = ::read(data, buffer, sizeof buffer);
    if (got <= 0) break;
    taken.append(buffer, static_cast<std::size_t>(got));
  }
  if (script_.stallsAfter) readable(client);
  ::close(data);
  {
    const std::lock_guard lock(mutex_);
    stored_ = taken;
  }
  say(client, "226 Fatto.");
}

void ScriptedFtpServer::say(int client, const std::string& line) const {
  const std::string bytes = line + "\r\n";
  ::send(client, bytes.data(), bytes.size(), MSG_NOSIGNAL);
}

}  // namespace tellaxis
