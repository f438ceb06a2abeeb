// Fake devices: device operations that note their calls in the computer's journal.
#pragma once

#include <functional>
#include <string>

#include "core/devices.h"
#include "fake/journal.h"

namespace tellaxis::fake {

class Devices : public tellaxis::Devices, public DeviceSetup {
 public:
  explicit Devices(Journal& journal) : journal_(journal) {}

  /// What a job operation does besides being noted; called with its name.
  std::function<void(std::string_view)> onJob;

  void LanciaFileDisplay() override { note("LanciaFileDisplay"); }
  void MF_Invia(std::string_view jobFile) override { note("MF_Invia " + std::string(jobFile)); }
  void LanciaFileRF() override { note("LanciaFileRF"); }
  void Cort_StampaFile(std::string_view jobFile) override { note("Cort_StampaFile " + std::string(jobFile)); }

  void Display_StartUP_Valori() override { note("Display_StartUP_Valori"); }
  void Display_StartUP_Orbis() override { note("Display_StartUP_Orbis"); }
  void MF_StartUP_Valori() override { note("MF_StartUP_Valori"); }
  void MF_StartUP_Orbis() override { note("MF_StartUP_Orbis"); }
  void FTP_StartUP_Orbis() override { note("FTP_StartUP_Orbis"); }
  void WEB_StartUP_Orbis() override { note("WEB_StartUP_Orbis"); }
  void RF_StartUP_Valori() override { note("RF_StartUP_Valori"); }
  void Cort_StartUP_Valori() override { note("Cort_StartUP_Valori"); }
  void Cort_StartUP_Orbis() override { note("Cort_StartUP_Orbis"); }
  void IconaAggiungi() override { note("IconaAggiungi"); }

 private:
  void note(const std::string& operation) {
    journal_.record(operation);
    if (onJob) onJob(operation);
  }

  Journal& journal_;
};

}  // namespace tellaxis::fake
