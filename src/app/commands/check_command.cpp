// Check command: from the findings to text and status.
#include "app/commands/check_command.h"

#include "check/check.h"
#include "check/report.h"

namespace tellaxis {

CommandResult showCheck(platform::Host& host, platform::Inspection& inspection, const platform::BridgeOptions& options,
                        const std::string& mainFolder, std::optional<std::uint32_t> serving, CheckOptions request) {
  const auto findings = checkInstallation(
      host, inspection, options, {.mainFolder = mainFolder, .servingProcess = serving, .network = request.network});
  return {.status = hasError(findings) ? 1 : 0,
          .text = request.json ? checkJson(findings) : checkText(findings),
          .isReport = true};
}

}  // namespace tellaxis
