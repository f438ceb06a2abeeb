// Codes: everything that the check can find, each with its level and its remedy.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "check/finding.h"

namespace tellaxis {

enum class Code : std::uint8_t {
  lookedAt,
  off,

  secondCopy,
  notRunning,
  settingsUnreadable,
  settingsNotWritable,
  mainFolderNotWritable,
  diskNearlyFull,
  posFolderMissing,
  metricsFolderMissing,
  metricsFolderNotWritable,

  gateClosed,
  jobsWaiting,
  midnightHang,

  mfFileMissing,
  mfFileFolderMissing,
  mfFileFolderNotWritable,
  driverMissing,
  driverNotExecutable,
  driverKindUnknown,
  driverKindMismatch,
  answerFileMissing,
  fpMateFolderMissing,
  logFolderMissing,

  portMissing,
  portBusy,
  portRefused,
  portSettings,
  familyUnknown,
  layoutUnknown,
  printerTypeUnknown,
  displayFileFolderMissing,
  slipFileFolderMissing,
  logoMissing,
  logoUnreadable,
  printerMissing,
  printerNotReady,
  controlFontMissing,

  ftpUnreachable,
  ftpRefused,
  dialUpIncomplete,
  scheduleUnreadable,
  scheduleEntry,
};

/// One row of the table. Texts in code page 1252.
struct CodeRow {
  Code code;
  std::string_view name;  ///< as JSON has it
  Level level;
  std::string_view remedy = {};
};

/// All codes, in the order of `Code`.
std::span<const CodeRow> checkCodes();

const CodeRow& rowOf(Code code);

}  // namespace tellaxis
