// Devices: the check of each one. The first finding says what was looked at, or that the device is off.
#pragma once

#include "check/scene.h"

namespace tellaxis {

void checkGeneral(const CheckScene& scene, Findings& findings);
void checkFiscal(const CheckScene& scene, Findings& findings);
void checkDisplay(const CheckScene& scene, Findings& findings);
void checkSlip(const CheckScene& scene, Findings& findings);
void checkCourtesy(const CheckScene& scene, Findings& findings);
void checkFtp(const CheckScene& scene, Findings& findings);
void checkDialUp(const CheckScene& scene, Findings& findings);
void checkSchedule(const CheckScene& scene, Findings& findings);

}  // namespace tellaxis
