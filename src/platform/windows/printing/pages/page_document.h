// Page document: a document that becomes a picture of its first page.
#pragma once

#include "platform/printing/page_maker.h"

namespace tellaxis::platform {

/// Draws the first page of each document of `deviceName` into a BMP file, the one kind of picture that the window's
/// toolkit reads without libraries of its own.
PageMaker openPictures(const std::string& deviceName, BitmapReader readBitmap, Trace& trace);

}  // namespace tellaxis::platform
