// Connected devices: which folder serves which call.
#include "app/connected_devices.h"

#include "connect/take_over.h"
#include "courtesy/job.h"
#include "courtesy/setup.h"
#include "display/job.h"
#include "display/setup.h"
#include "fiscal/job.h"
#include "fiscal/setup.h"
#include "slip/job.h"
#include "slip/setup.h"

namespace tellaxis {

void ConnectedDevices::LanciaFileDisplay() { tellaxis::LanciaFileDisplay(bridge_); }
void ConnectedDevices::MF_Invia(std::string_view jobFile) { tellaxis::MF_Invia(bridge_, jobFile); }
void ConnectedDevices::LanciaFileRF() { tellaxis::LanciaFileRF(bridge_, printedForms_); }
void ConnectedDevices::Cort_StampaFile(std::string_view jobFile) { tellaxis::Cort_StampaFile(bridge_, jobFile); }

std::optional<platform::InstalledPrinter> ConnectedDevices::printerOf(Device device) {
  if (device == Device::courtesyPrinter) return courtesyPrinter(bridge_);
  if (device == Device::slipPrinter) return slipPrinter(bridge_);
  return std::nullopt;
}

void ConnectedDevices::Display_StartUP_Valori() { tellaxis::Display_StartUP_Valori(bridge_); }
void ConnectedDevices::Display_StartUP_Orbis() { tellaxis::Display_StartUP_Orbis(bridge_); }
void ConnectedDevices::MF_StartUP_Valori() { tellaxis::MF_StartUP_Valori(bridge_); }
void ConnectedDevices::MF_StartUP_Orbis() { tellaxis::MF_StartUP_Orbis(bridge_); }
void ConnectedDevices::FTP_StartUP_Orbis() { tellaxis::FTP_StartUP_Orbis(bridge_); }
void ConnectedDevices::WEB_StartUP_Orbis() { tellaxis::WEB_StartUP_Orbis(bridge_); }
void ConnectedDevices::RF_StartUP_Valori() { tellaxis::RF_StartUP_Valori(bridge_); }
void ConnectedDevices::Cort_StartUP_Valori() { tellaxis::Cort_StartUP_Valori(bridge_); }
void ConnectedDevices::Cort_StartUP_Orbis() { tellaxis::Cort_StartUP_Orbis(bridge_); }
/// Without a window there is no icon.
void ConnectedDevices::IconaAggiungi() {}

}  // namespace tellaxis
