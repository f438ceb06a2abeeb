// Devices: what start-up and polling ask of the devices, whoever drives them.
#pragma once

#include <string_view>

namespace tellaxis {

/// The job operations that polling calls. None of them reports anything back; a job that fails is the device's own
/// business.
class Devices {
 public:
  virtual ~Devices() = default;

  /// Sends the display job file to the customer display.
  virtual void LanciaFileDisplay() = 0;
  /// Hands one fiscal job (full path in the work folder) to the fiscal printer's driver.
  virtual void MF_Invia(std::string_view jobFile) = 0;
  /// Prints the slip job file.
  virtual void LanciaFileRF() = 0;
  /// Prints one courtesy job (full path in the work folder).
  virtual void Cort_StampaFile(std::string_view jobFile) = 0;
};

/// The setup procedures that start-up calls, in this order: lists to choose from, then settings taken over from the
/// point-of-sale application.
class DeviceSetup {
 public:
  virtual ~DeviceSetup() = default;

  virtual void Display_StartUP_Valori() = 0;
  virtual void Display_StartUP_Orbis() = 0;
  virtual void MF_StartUP_Valori() = 0;
  virtual void MF_StartUP_Orbis() = 0;
  virtual void FTP_StartUP_Orbis() = 0;
  virtual void WEB_StartUP_Orbis() = 0;
  virtual void RF_StartUP_Valori() = 0;
  virtual void Cort_StartUP_Valori() = 0;
  virtual void Cort_StartUP_Orbis() = 0;
  /// Puts the icon into the tray, where there is one.
  virtual void IconaAggiungi() = 0;
};

}  // namespace tellaxis
