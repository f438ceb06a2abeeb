// Report: the findings for a reader and for another program, both in UTF-8, and the words for them.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "check/finding.h"

namespace tellaxis {

/// "Misuratore fiscale" and "ERRORE", in code page 1252.
std::string_view titleOf(Checked device);
std::string_view wordOf(Level level);

/// "2 errori, 1 avviso."
std::string summaryOf(const std::vector<Finding>& findings);

/// A block a device, in Italian: its state, what was looked at, each problem with its remedy.
std::string checkText(const std::vector<Finding>& findings);

/// An array of objects {"device","level","code","text","remedy"}, one a line.
std::string checkJson(const std::vector<Finding>& findings);

}  // namespace tellaxis
