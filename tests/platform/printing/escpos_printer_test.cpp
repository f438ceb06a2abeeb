// Tests of the receipt printer: documents sent once and whole, also beyond what fits into the memory.
#include "platform/printing/escpos_printer.h"

#include <gmock/gmock.h>

#include <array>

#include "escpos_decoder.h"
#include "platform/printing/sample_documents.h"
#include "platform/trace_log.h"

namespace tellaxis::platform {
namespace {

using testing::ElementsAre;
using tools::Decoded;
using tools::decodeEscPos;

PrintStatement text(std::string line) { return {.text = std::move(line)}; }

/// Keeps what is sent.
class KeptBytes final : public ByteChannel {
 public:
  PrinterState state() override { return PrinterState::unknown; }
  explicit KeptBytes(std::vector<std::string>& documents, bool works = true) : documents_(documents), works_(works) {}
  bool send(Spool& document) override {
    std::string bytes;
    std::array<char, 100> block{};
    while (const std::size_t got = document.read(block)) bytes.append(block.data(), got);
    documents_.push_back(bytes);
    return works_;
  }

 private:
  std::vector<std::string>& documents_;
  bool works_;
};

TEST(EscPosPrinter, SendsADocumentAsOneJobAtItsEndAndOnlyOnce) {
  std::vector<std::string> documents;
  test::TraceLog trace;
  EscPosPrinter printer("X", nullptr, std::make_unique<KeptBytes>(documents, false), trace);
  const auto document = printer.open();
  document->add(text("a"));
  document->add(text("b"));
  EXPECT_TRUE(documents.empty());
  EXPECT_FALSE(document->finish());
  EXPECT_THAT(documents, ElementsAre("\x1B@\x1Bt\x10"
                                     "a\nb\n"));
}

TEST(EscPosPrinter, ADocumentOfAnyLengthIsSpooled) {
  std::vector<std::string> documents;
  test::TraceLog trace;
  EscPosPrinter printer("X", nullptr, std::make_unique<KeptBytes>(documents), trace);
  const auto document = printer.open();
  for (int i = 0; i < 100'000; ++i) document->add(text("Riga " + std::to_string(i) + " della prova di lunghezza"));
  EXPECT_TRUE(document->finish());
  ASSERT_EQ(documents.size(), 1U);
  const Decoded decoded = decodeEscPos(documents[0]);
  EXPECT_EQ(decoded.error, std::nullopt);
  ASSERT_EQ(decoded.events.size(), 100'001U);
  EXPECT_EQ(decoded.events.back(), "text Riga 99999 della prova di lunghezza");
}

TEST(EscPosPrinter, APictureThatCannotBeReadCostsItselfAlone) {
  std::vector<std::string> documents;
  test::TraceLog trace;
  const auto nothing = [](std::string_view) { return std::optional<Bitmap>(); };
  EscPosPrinter printer("X", nothing, std::make_unique<KeptBytes>(documents), trace);
  const auto document = printer.open();
  EXPECT_TRUE(document->add(text("a")));
  EXPECT_FALSE(document->add(PaintedPicture{.picture = {"logo.bmp", 8, 8}}));
  EXPECT_TRUE(document->add(text("b")));
  EXPECT_TRUE(document->finish());
  EXPECT_THAT(documents, ElementsAre("\x1B@\x1Bt\x10"
                                     "a\nb\n"));
}

}  // namespace
}  // namespace tellaxis::platform
