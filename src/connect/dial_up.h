// Dial-up: opening and closing the dial-up connection through the system's own client.
#pragma once

#include <cstdint>
#include <string_view>

#include "core/bridge.h"
#include "platform/processes.h"

namespace tellaxis {

inline constexpr std::int16_t connectLine = 1;
inline constexpr std::int16_t disconnectLine = 2;

/// Opens (1) or closes (2) the connection of "Int_Indirizzo", "Ind_User" and "Ind_Pw" and waits without a limit until
/// the client has ended. -1 says that the client was run, not that it succeeded; 0 that a setting is missing or the
/// action is another.
std::int16_t Connessione(Bridge& bridge, const std::int16_t& Azione);

/// Starts a program and waits without a limit until it has ended.
void EseguiEAttendi(Bridge& bridge, std::string_view commandLine, platform::WindowStyle windowStyle);

}  // namespace tellaxis
