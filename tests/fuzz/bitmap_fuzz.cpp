// Fuzzing the bitmap reader: any bytes are a picture or refused, and a picture has all its pixels.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>
#include <variant>

#include "platform/linux/printing/pages/bitmap_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto read = tellaxis::platform::readBitmap({reinterpret_cast<const char*>(data), size});
  const auto* bitmap = std::get_if<tellaxis::platform::Bitmap>(&read);
  if (bitmap != nullptr && bitmap->pixels.size() != std::size_t{3} * bitmap->width * bitmap->height) std::abort();
  return 0;
}
