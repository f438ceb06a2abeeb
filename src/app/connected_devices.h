// Connected devices: start-up and polling brought together with the folders that drive the devices.
#pragma once

#include "core/bridge.h"
#include "core/devices.h"
#include "core/paper.h"
#include "slip/printed_forms.h"

namespace tellaxis {

class ConnectedDevices : public Devices, public DeviceSetup, public JobPrinters {
 public:
  explicit ConnectedDevices(Bridge& bridge) : bridge_(bridge) {}

  void LanciaFileDisplay() override;
  void MF_Invia(std::string_view jobFile) override;
  void LanciaFileRF() override;
  void Cort_StampaFile(std::string_view jobFile) override;

  std::optional<platform::InstalledPrinter> printerOf(Device device) override;

  void Display_StartUP_Valori() override;
  void Display_StartUP_Orbis() override;
  void MF_StartUP_Valori() override;
  void MF_StartUP_Orbis() override;
  void FTP_StartUP_Orbis() override;
  void WEB_StartUP_Orbis() override;
  void RF_StartUP_Valori() override;
  void Cort_StartUP_Valori() override;
  void Cort_StartUP_Orbis() override;
  void IconaAggiungi() override;

 private:
  Bridge& bridge_;
  PrintedForms printedForms_;
};

}  // namespace tellaxis
