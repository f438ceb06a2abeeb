// Reprint: putting an archived job into its place again.
#pragma once

#include <cstdint>
#include <string_view>

#include "core/bridge.h"
#include "diary/entry.h"

namespace tellaxis {

/// What the user has said yes to.
struct ReprintConsent {
  bool fiscal = false;        ///< a fiscal job too
  bool evenIfIssued = false;  ///< even one whose receipt came out, or may have
};

/// What the user has to say yes to before this job may be printed again.
ReprintConsent neededConsent(const DiaryEntry& entry);

enum class Reprint : std::uint8_t {
  done,
  unknownId,
  noCopy,       ///< the diary kept no file of it
  copyGone,     ///< the file that it kept is not there any more
  isFiscal,     ///< that takes `fiscal`
  maybeIssued,  ///< that takes `evenIfIssued`
  noPlace,      ///< the device is off, or its file is not set
  notTaken,     ///< no bridge runs, and its next start would empty the drop folder
  placeTaken,   ///< a job of this name waits there already
  notWritten,   ///< the place cannot be written
};

/// In Italian, for the user, in code page 1252.
std::string_view textOf(Reprint result);

/// Copies the job with this id, whole, to where the point-of-sale application put it: the drop folder, or the file of
/// the settings, which must be loaded. A doubled receipt is the shop's worst case, so fiscal jobs take consent.
/// `dropFoldersServed`: jobs in the drop folders are taken by a running bridge, or kept until one runs.
Reprint reprint(const Bridge& bridge, std::string_view diaryFolder, std::string_view id, ReprintConsent consent,
                bool dropFoldersServed = true);

}  // namespace tellaxis
