// Diary command: showing the diary and putting a job of it into its place again, from the command line.
#pragma once

#include <string>

#include "diary/reader.h"
#include "diary/reprint.h"
#include "platform/bridge_options.h"
#include "platform/host.h"

namespace tellaxis {

/// What `diario` and `ristampa` are asked.
struct DiaryRequest {
  DiaryQuery query;  ///< without days: today
  bool json = false;
  std::string id;
  ReprintConsent consent;
};

/// What a command says, in UTF-8, and its exit status.
struct CommandResult {
  int status = 0;
  std::string text;
  bool isReport = false;  ///< what was asked for, whatever the status: nothing to complain about
};

/// The entries as text for the reader, or as one JSON object a line. `mainFolder` is in code page 1252, here and below.
CommandResult showDiary(platform::Host& host, const platform::BridgeOptions& options, const std::string& mainFolder,
                        const DiaryRequest& request);

/// Puts the job into its place. `running` says whether a bridge serves the folder: without one a job in a drop folder
/// would be emptied at the next start.
CommandResult reprintFromDiary(platform::Host& host, const platform::BridgeOptions& options,
                               const std::string& mainFolder, const DiaryRequest& request, bool running);

}  // namespace tellaxis
