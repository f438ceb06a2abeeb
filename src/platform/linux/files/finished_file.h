// Finished file: opening a file for its content, when its writer has finished.
#pragma once

#include <sys/stat.h>

#include <chrono>
#include <string>

#include "platform/linux/files/settling.h"
#include "platform/linux/files/writer_hold.h"
#include "platform/linux/kernel/descriptor.h"

namespace tellaxis::platform {

enum class LastLink { refused, followed };

/// Opens `name`, seen from the open folder `folder` (or AT_FDCWD), which must be a regular file, without ever waiting
/// for anybody. No descriptor, with `errno`, on a failure.
Descriptor openRegularFile(int folder, const char* name, LastLink link = LastLink::refused);

/// The same, with the file's `status`.
Descriptor openRegularFile(int folder, const char* name, struct stat& status, LastLink link = LastLink::refused);

/// 0 when the writer of an open file has finished: nobody has it open for writing; or, where the system does not tell,
/// the file has settled. ETXTBSY while somebody has, EINPROGRESS while that is not certain. `path` is what the file is
/// known by.
int whyUnfinished(Settling& settling, Hold hold, const std::string& path, const struct stat& status);

/// Opens a regular file whose writer has finished. Where the system does not tell, waits up to `timeout` for it to
/// settle. Where somebody has the file open for writing: no descriptor, and ETXTBSY, at once.
Descriptor openFinished(Settling& settling, const std::string& path, std::chrono::milliseconds timeout);

}  // namespace tellaxis::platform
