// Fuzzing the receipt-printer commands: whatever text is printed in whatever font, the decoder accepts the bytes.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <iterator>
#include <string>

#include "escpos_decoder.h"
#include "platform/printing/escpos_encoder.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tellaxis::platform;
  static constexpr const char* fonts[] = {"FontControl", "JAN13(EAN)", "FontA15cpi",
                                          "fontB12",     "FontA33",    "Courier New"};
  static constexpr const char* printers[] = {"SAMSUNG SRP-500", "EPSON TM-U295 Slip", "EPSON TM-L90 Receipt"};
  if (size < 2) return 0;
  EscPosEncoder encoder(paperOf(printers[data[0] % std::size(printers)]), nullptr);
  std::string bytes;
  const std::string_view text(reinterpret_cast<const char*>(data) + 1, size - 1);
  for (std::size_t from = 0; from < text.size();) {
    const auto choice = static_cast<std::uint8_t>(text[from]);
    const std::size_t end = std::min(text.find('#', from), text.size());
    const std::string line(text.substr(from, end - from));
    encoder.encode(PrintStatement{line, fonts[choice % std::size(fonts)], choice / 8.0 + 1, choice % 2 == 0, {}},
                   bytes);
    if (choice % 5 == 0) encoder.encode(Move{.y = choice * 100.0}, bytes);
    if (choice % 7 == 0) encoder.encode(Move{.x = choice * 100.0}, bytes);
    from = end + 1;
  }
  encoder.finish(bytes);
  if (tellaxis::tools::decodeEscPos(bytes).error) std::abort();
  return 0;
}
