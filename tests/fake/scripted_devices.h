// Scripted devices: job operations that do what a test says.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <utility>

#include "core/devices.h"

namespace tellaxis::fake {

class ScriptedDevices : public tellaxis::Devices {
 public:
  std::function<void()> job = [] {};
  std::string lastCall;

  void LanciaFileDisplay() override { run("LanciaFileDisplay"); }
  void MF_Invia(std::string_view jobFile) override { run("MF_Invia " + std::string(jobFile)); }
  void LanciaFileRF() override { run("LanciaFileRF"); }
  void Cort_StampaFile(std::string_view jobFile) override { run("Cort_StampaFile " + std::string(jobFile)); }

 private:
  void run(std::string call) {
    lastCall = std::move(call);
    job();
  }
};

}  // namespace tellaxis::fake
