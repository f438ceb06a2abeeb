// Report: the findings for a reader and for another program; both in UTF-8.
#pragma once

#include <string>
#include <vector>

#include "check/finding.h"

namespace tellaxis {

/// A block a device, in Italian: its state, what was looked at, each problem with its remedy.
std::string checkText(const std::vector<Finding>& findings);

/// An array of objects {"device","level","code","text","remedy"}, one a line.
std::string checkJson(const std::vector<Finding>& findings);

}  // namespace tellaxis
