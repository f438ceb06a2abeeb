// Bitmap file: reading a BMP from the disk.
#pragma once

#include <string>
#include <variant>

#include "platform/printing/bitmap.h"

namespace tellaxis::platform {

/// Why a bitmap could not be read, in Italian, code page 1252.
struct BitmapError {
  std::string reason;
};

/// Reads the file at a native path. Any kind of BMP; what its header promises is held against the file's size first, so
/// that no memory is reserved for pixels that the file cannot hold.
std::variant<Bitmap, BitmapError> readBitmapFile(const std::string& path);

/// The same for the bytes of a file.
std::variant<Bitmap, BitmapError> readBitmap(std::string_view bytes);

}  // namespace tellaxis::platform
