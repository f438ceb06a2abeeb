// Take-over: the FTP and dial-up accounts of the point-of-sale application, copied into our own settings.
#pragma once

#include "core/bridge.h"

namespace tellaxis {

/// Reads `Orbis_Setting` anew and, when it is true, copies the FTP account; absent keys are stored as empty text.
void FTP_StartUP_Orbis(Bridge& bridge);

/// The same for the dial-up account; with all of it given, the connection is marked to be dialled.
void WEB_StartUP_Orbis(Bridge& bridge);

}  // namespace tellaxis
