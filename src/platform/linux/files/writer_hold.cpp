// Writer hold: leases, which the system grants only while nobody has the file open for writing.
#include "platform/linux/files/writer_hold.h"

#include <fcntl.h>
#include <sys/vfs.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdint>

namespace tellaxis::platform {

namespace {

/// NFS, SMB (three generations), FUSE, 9P, Ceph, AFS (two), Coda, VirtualBox' shared folders.
constexpr std::array<std::uint32_t, 11> networkFileSystems = {0x6969,     0x517B,     0xFF534D42, 0xFE534D42,
                                                              0x65735546, 0x01021997, 0x00C36400, 0x5346414F,
                                                              0x6B414653, 0x73757245, 0x786F4256};

}  // namespace

bool isOnNetwork(const Descriptor& opened) {
  struct statfs status {};
  return ::fstatfs(opened.number(), &status) == 0 && isNetworkFileSystem(status.f_type);
}

bool isNetworkFileSystem(long type) {
  return std::find(networkFileSystems.begin(), networkFileSystems.end(), static_cast<std::uint32_t>(type)) !=
         networkFileSystems.end();
}

Hold holdOf(const Descriptor& file) {
  // Over a network a lease says nothing of the others' writers, and some servers refuse every one as if there were any.
  return isOnNetwork(file) ? Hold::unknown : holdOnThisComputer(file);
}

bool isHeld(const Descriptor& file) { return holdOnThisComputer(file) == Hold::held && !isOnNetwork(file); }

Hold holdOnThisComputer(const Descriptor& file) {
  // Should somebody open the file for writing while the lease lasts, the notice must not end this program.
  ::fcntl(file.number(), F_SETSIG, SIGURG);
  if (::fcntl(file.number(), F_SETLEASE, F_RDLCK) == 0) return Hold::free;
  return errno == EAGAIN ? Hold::held : Hold::unknown;
}

}  // namespace tellaxis::platform
