// Line settings: any speed, and all parities, which the portable calls do not offer.
#include "platform/linux/serial/line_settings.h"

// The kernel's own definitions; those of <termios.h> have another structure of the same name.
#include <asm/ioctls.h>
#include <asm/termbits.h>
#include <sys/ioctl.h>

#include <cerrno>
#include <cstdlib>

namespace tellaxis::platform {

namespace {

constexpr unsigned parityFlags[] = {0, PARENB | PARODD, PARENB, PARENB | PARODD | CMSPAR, PARENB | CMSPAR};

bool isNear(unsigned actual, unsigned wanted) {
  const long long difference = std::llabs(static_cast<long long>(actual) - static_cast<long long>(wanted));
  return difference * 50 <= wanted;
}

}  // namespace

unsigned controlFlags(const LineSettings& settings) {
  unsigned flags = CREAD | CLOCAL | HUPCL;
  flags |= settings.dataBits == 7 ? CS7 : CS8;
  flags |= parityFlags[static_cast<unsigned>(settings.parity)];
  if (settings.stopBits != StopBits::one) flags |= CSTOPB;
  if (settings.flowControl == FlowControl::cts) flags |= CRTSCTS;
  return flags;
}

bool applyLineSettings(int descriptor, const LineSettings& settings) {
  termios2 line = {};
  line.c_cflag = controlFlags(settings) | BOTHER;
  line.c_ospeed = static_cast<speed_t>(settings.baud);
  line.c_ispeed = line.c_ospeed;
  line.c_cc[VMIN] = 1;
  if (::ioctl(descriptor, TCSETS2, &line) != 0 || ::ioctl(descriptor, TCGETS2, &line) != 0) return false;
  if (isNear(line.c_ospeed, static_cast<unsigned>(settings.baud))) return true;
  errno = EINVAL;
  return false;
}

}  // namespace tellaxis::platform
