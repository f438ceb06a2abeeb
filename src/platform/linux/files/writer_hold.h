// Writer hold: whether somebody still has a file open for writing.
#pragma once

#include "platform/linux/kernel/descriptor.h"

namespace tellaxis::platform {

enum class Hold {
  free,    ///< nobody has the file open for writing; who tries to waits until this descriptor is closed
  held,    ///< somebody has
  unknown  ///< the system does not tell: another owner's file, or a file system of another computer
};

/// Asks about a file that is open for reading.
Hold holdOf(const Descriptor& file);

/// Whether somebody is known to have it open for writing.
bool isHeld(const Descriptor& file);

/// `holdOf` for a file that is on no network file system.
Hold holdOnThisComputer(const Descriptor& file);

/// Whether an open file or folder is on a file system whose files other computers write unseen.
bool isOnNetwork(const Descriptor& opened);

/// True for the type number, as the system states it, of such a file system.
bool isNetworkFileSystem(long type);

}  // namespace tellaxis::platform
