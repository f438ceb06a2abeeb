// Check: the settings as the bridge reads them, then device after device.
#include "check/check.h"

#include <algorithm>

#include "check/devices/devices.h"
#include "check/scene.h"
#include "core/settings.h"

namespace tellaxis {

namespace {

struct DeviceCheck {
  Checked device;
  void (*check)(const CheckScene& scene, Findings& findings);
};

constexpr DeviceCheck deviceChecks[] = {
    {Checked::general, checkGeneral}, {Checked::fiscal, checkFiscal},     {Checked::display, checkDisplay},
    {Checked::slip, checkSlip},       {Checked::courtesy, checkCourtesy}, {Checked::ftp, checkFtp},
    {Checked::dialup, checkDialUp},   {Checked::schedule, checkSchedule},
};

}  // namespace

std::vector<Finding> checkInstallation(platform::Host& host, platform::Inspection& inspection,
                                       const platform::BridgeOptions& options, const CheckRequest& request) {
  Bridge bridge(host, options);
  setMainFolder(bridge.settings, request.mainFolder);
  CaricaImpostazioni(bridge);
  const CheckScene scene{
      .bridge = bridge, .inspection = inspection, .servingProcess = request.servingProcess, .network = request.network};
  std::vector<Finding> list;
  for (const DeviceCheck& row : deviceChecks) {
    Findings findings(row.device, list);
    row.check(scene, findings);
  }
  return list;
}

bool hasError(const std::vector<Finding>& findings) {
  return std::ranges::any_of(findings, [](const Finding& finding) { return finding.level == Level::error; });
}

}  // namespace tellaxis
