// Bar code: the bars of an EAN-13.
#include "platform/linux/printing/pages/bar_code.h"

#include <zint.h>

#include <memory>

namespace tellaxis::platform {

std::vector<bool> ean13Modules(const std::string& digits) {
  struct Release {
    void operator()(zint_symbol* symbol) const { ZBarcode_Delete(symbol); }
  };
  const std::unique_ptr<zint_symbol, Release> symbol(ZBarcode_Create());
  if (!symbol) return {};
  symbol->symbology = BARCODE_EANX;
  const std::basic_string<unsigned char> source(digits.begin(), digits.end());
  if (ZBarcode_Encode(symbol.get(), source.c_str(), static_cast<int>(source.size())) >= ZINT_ERROR || symbol->rows < 1)
    return {};
  std::vector<bool> modules(static_cast<std::size_t>(symbol->width));
  for (std::size_t i = 0; i < modules.size(); ++i) modules[i] = ((symbol->encoded_data[0][i / 8] >> (i % 8)) & 1) != 0;
  return modules;
}

}  // namespace tellaxis::platform
