// Connected devices: which folder serves which call. A device that has no folder yet is left alone.
#include "app/connected_devices.h"

#include "fiscal/invia.h"

namespace tellaxis {

void ConnectedDevices::LanciaFileDisplay() {}
void ConnectedDevices::MF_Invia(std::string_view jobFile) { tellaxis::MF_Invia(bridge_, jobFile); }
void ConnectedDevices::LanciaFileRF() {}
void ConnectedDevices::Cort_StampaFile(std::string_view /*jobFile*/) {}

void ConnectedDevices::Display_StartUP_Valori() {}
void ConnectedDevices::Display_StartUP_Orbis() {}
void ConnectedDevices::MF_StartUP_Valori() {}
void ConnectedDevices::MF_StartUP_Orbis() {}
void ConnectedDevices::FTP_StartUP_Orbis() {}
void ConnectedDevices::WEB_StartUP_Orbis() {}
void ConnectedDevices::RF_StartUP_Valori() {}
void ConnectedDevices::Cort_StartUP_Valori() {}
void ConnectedDevices::Cort_StartUP_Orbis() {}
void ConnectedDevices::IconaAggiungi() {}

}  // namespace tellaxis
