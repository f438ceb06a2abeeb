// Window call on Linux: datagrams on an abstract socket named after the main folder and the user.
#include "platform/window_call.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <array>
#include <cstddef>
#include <cstring>
#include <optional>
#include <string>

namespace tellaxis::platform {

namespace {

class Socket {
 public:
  Socket() : descriptor_(socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0)) {}
  ~Socket() {
    if (descriptor_ >= 0) close(descriptor_);
  }
  Socket(const Socket&) = delete;
  Socket& operator=(const Socket&) = delete;

  int descriptor() const { return descriptor_; }

 private:
  int descriptor_;
};

struct Address {
  sockaddr_un name = {};
  socklen_t size = 0;
};

/// The same for every spelling of a folder, and for this user alone; it leaves no file behind.
std::optional<Address> addressOf(std::string_view mainFolder) {
  struct stat folder = {};
  if (stat(std::string(mainFolder).c_str(), &folder) != 0) return std::nullopt;
  const std::string text = "tellaxis-window-" + std::to_string(getuid()) + "-" + std::to_string(folder.st_dev) + "-" +
                           std::to_string(folder.st_ino);
  Address address;
  address.name.sun_family = AF_UNIX;
  std::memcpy(address.name.sun_path + 1, text.data(), text.size());
  address.size = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + text.size());
  return address;
}

const sockaddr* generic(const Address& address) { return reinterpret_cast<const sockaddr*>(&address.name); }

class SocketCall : public WindowCall {
 public:
  bool listen(const Address& address) { return bind(socket_.descriptor(), generic(address), address.size) == 0; }

  bool called() override {
    std::array<char, 16> message;
    bool any = false;
    while (recv(socket_.descriptor(), message.data(), message.size(), 0) > 0) any = true;
    return any;
  }

 private:
  Socket socket_;
};

}  // namespace

std::unique_ptr<WindowCall> listenForWindowCalls(std::string_view mainFolder) {
  const auto address = addressOf(mainFolder);
  auto call = std::make_unique<SocketCall>();
  if (!address || !call->listen(*address)) return nullptr;
  return call;
}

bool callWindow(std::string_view mainFolder) {
  const auto address = addressOf(mainFolder);
  if (!address) return false;
  const Socket socket;
  constexpr char show = 's';
  return sendto(socket.descriptor(), &show, 1, 0, generic(*address), address->size) == 1;
}

}  // namespace tellaxis::platform
