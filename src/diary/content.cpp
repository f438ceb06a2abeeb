// Content: one reading of the file (FNV-1a).
#include "diary/content.h"

#include "core/input/input_bytes.h"

namespace tellaxis {

Content contentOf(platform::Files& files, std::string_view path) {
  constexpr std::uint64_t basis = 14'695'981'039'346'656'037U;
  constexpr std::uint64_t prime = 1'099'511'628'211U;
  Content content{.mark = basis};
  InputBytes input(files.openInput(path));
  for (std::string_view bytes = input.rest(); !bytes.empty(); bytes = input.rest()) {
    for (const char byte : bytes) content.mark = (content.mark ^ static_cast<unsigned char>(byte)) * prime;
    content.bytes += static_cast<std::int64_t>(bytes.size());
    input.take(bytes.size());
  }
  return content;
}

}  // namespace tellaxis
