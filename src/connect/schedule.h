// Schedule: the weekly timetable of maintenance operations, and the operation requested by hand.
#pragma once

#include "core/bridge.h"

namespace tellaxis {

/// Hands the operation that is due in this minute, or requested by hand, to the point-of-sale application and starts
/// the program that carries it out, without waiting for it. The timetable has one entry a minute at most, so this is to
/// be called at least once a minute; an entry met again in its minute does nothing at all.
void OperazioniPianificate(Bridge& bridge);

}  // namespace tellaxis
