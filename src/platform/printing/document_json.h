// Document JSON: the operations of a document as JSON objects, one each.
#pragma once

#include <string>

#include "platform/printing/document.h"

namespace tellaxis::platform {

/// Appends the operation as a JSON object in UTF-8, without a line's end.
void appendJson(std::string& json, const Operation& operation);

std::string jsonOf(const Operation& operation);

}  // namespace tellaxis::platform
