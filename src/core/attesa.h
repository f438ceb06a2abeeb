// Attesa: the waits of the device procedures.
#pragma once

#include <cstdint>

#include "core/bridge.h"
#include "core/ini/values.h"

namespace tellaxis {

/// Waits until the seconds-since-midnight clock, in hundredths, has reached its present value + `hundredths`. With
/// `noYield` false the window handles its events meanwhile. There is no handling of midnight: a wait that spans it goes
/// on until the new day's count has passed the same figure; with the option `midnight` it ends when its time is over.
void Attesa(Bridge& bridge, std::int16_t hundredths, bool noYield);

/// The same, for a delay as a setting holds it; a value that is no 16-bit integer is a failed step and does not wait.
void Attesa(Bridge& bridge, const Value& hundredths, bool noYield);

/// A negligible pause: counts from 1 to `count`.
void PausaCicli(std::int16_t count);

}  // namespace tellaxis
