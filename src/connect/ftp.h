// FTP: the one transfer that the settings file asks for.
#pragma once

#include <string_view>

#include "core/bridge.h"

namespace tellaxis {

/// Carries out the transfer requested in the settings file ("FTP_Azione" 1: upload, 2: download), dialled up where
/// "WEB_chkDial" says so, and answers there: "FTP_Esito", "FTP_Finish" and an emptied request. Tells also the caller
/// whether the transfer succeeded. Blocks until it is over.
bool EseguiFTP(Bridge& bridge);

/// Fetches `fileName` from the log-in folder to `localFolder` & `fileName`.
bool FTP_Scarica(Bridge& bridge, std::string_view localFolder, std::string_view fileName, std::string_view user,
                 std::string_view password, std::string_view server);

/// Deletes the remote file that is named by the whole `localPath`, and only if that succeeded stores the local file in
/// the log-in folder under its bare name.
bool FTP_Carica(Bridge& bridge, std::string_view localPath, std::string_view user, std::string_view password,
                std::string_view server);

}  // namespace tellaxis
