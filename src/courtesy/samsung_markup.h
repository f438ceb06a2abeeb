// Samsung markup: a line of the job taken apart into its fields.
#pragma once

#include <string_view>

#include "courtesy/samsung_models.h"

namespace tellaxis {

/// Stores the fields of a line, separated by "#", by the model's table; fields beyond those of the table are ignored,
/// however many. An empty line has no fields, and nothing follows a "#" at the line's end.
void readLine(platform::Host& host, const SamsungModel& model, std::string_view line, Markup& markup);

// The fields' meanings, for the models' tables.
bool storeText(platform::Host& host, const SamsungModel& model, std::string_view field, Markup& markup);
bool storeCommand(platform::Host& host, const SamsungModel& model, std::string_view field, Markup& markup);
bool storeSize(platform::Host& host, const SamsungModel& model, std::string_view field, Markup& markup);
bool storePitch(platform::Host& host, const SamsungModel& model, std::string_view field, Markup& markup);
bool storeStyle(platform::Host& host, const SamsungModel& model, std::string_view field, Markup& markup);
bool storeStyleUnlessSmall(platform::Host& host, const SamsungModel& model, std::string_view field, Markup& markup);
bool storeBold(platform::Host& host, const SamsungModel& model, std::string_view field, Markup& markup);
bool storeColour(platform::Host& host, const SamsungModel& model, std::string_view field, Markup& markup);

}  // namespace tellaxis
