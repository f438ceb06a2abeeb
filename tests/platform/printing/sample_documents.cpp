// Sample documents: what the procedures say to each kind of printer.
#include "platform/printing/sample_documents.h"

#include <array>
#include <cstdint>

namespace tellaxis::test {

namespace {

using platform::Color;
using platform::Move;
using platform::Operation;
using platform::PaintedPicture;
using platform::PrintStatement;

constexpr Color red{255, 0, 0};

struct Style {
  std::string font;
  double size = 9;
  bool bold = false;
  Color color = {};
};

class Document {
 public:
  Document& print(const Style& style, std::initializer_list<const char*> lines) {
    for (const char* line : lines)
      operations_.push_back(PrintStatement{line, style.font, style.size, style.bold, style.color});
    return *this;
  }
  Document& move(Move move) {
    operations_.push_back(move);
    return *this;
  }
  Document& picture(const std::string& file, int width, int height) {
    operations_.push_back(PaintedPicture{{file, width, height}, 0, 0});
    return *this;
  }
  std::vector<Operation> take() { return std::move(operations_); }

 private:
  std::vector<Operation> operations_;
};

const Style control{"FontControl", 9};

std::vector<Operation> logo(const std::string& file) {
  return Document().move({.x = 0}).move({.y = 0}).picture(file, 384, 96).take();
}

std::vector<Operation> courtesyReceipt500() {
  const Style normal{"FontA15cpi", 9};
  const Style small{"FontB17cpi", 9};
  return Document()
      .print(control, {"w"})
      .print({"FontA15cpi", 18, true}, {"       TRATTORIA AL PORTO"})
      .print(normal, {"       Via Garibaldi 12, Genova", "             Tel. 010 555 0134", " "})
      .print(normal, {"Tavolo 7              Coperti 2", "--------------------------------------"})
      .print(normal, {"2 Coperto                    \x80   5,00", "1 Trofie al pesto            \x80  11,50",
                      "1 Fritto misto               \x80  16,00", "1 Vermentino 0,75            \x80  18,00",
                      "2 Caff\xE8                      \x80   3,00"})
      .print(normal, {"--------------------------------------"})
      .print({"FontA15cpi", 18, true, red}, {"Totale EURO                      53,50"})
      .print(normal, {" "})
      .print(small, {"Documento non fiscale. Ritirare lo scontrino", "alla cassa.     21/11/2026 13:05   cassa 1"})
      .print(control, {"P"})
      .take();
}

std::vector<Operation> courtesyReceipt350() {
  const Style normal{"FontA1x1", 14};
  return Document()
      .print({"FontA1x1", 14}, {"        PRECONTO  N. 0042", " "})
      .print(normal, {"Menu del giorno                     12,00", "Acqua naturale                       2,00",
                      "TOTALE                              14,00", " "})
      .print({"FontControl", 8.5}, {"r", "x"})
      .print({"JAN13(EAN)", 18}, {"8001234567897"})
      .print({"FontA1x1", 10}, {"Grazie e arrivederci"})
      .print({"FontControl", 9.5}, {" ", " ", "P"})
      .take();
}

std::vector<Operation> courtesyReceipt103() {
  return Document()
      .print({"FontB1x2", 14}, {"              TAVOLO 12"})
      .print({"FontB1x1", 7}, {"2 Birra media            9,00", "1 Tagliere misto        14,00"})
      .print({"FontB1x2", 14}, {"TOTALE                  23,00"})
      .print({"FontB1x1", 14}, {" ", " ", " ", " "})
      .take();
}

std::string block(int lines, const char* text) {
  std::string block;
  for (int i = 1; i <= lines; ++i) block += std::string(text) + " " + std::to_string(i) + "\r\n";
  return block;
}

std::string body() {
  std::string body;
  for (const char* line : {"Descrizione            Q.ta     Importo", "---------------------------------------",
                           "Pernottamento camera 4    2      140,00", "Prima colazione           4       24,00",
                           "Tassa di soggiorno        4        6,00", "---------------------------------------",
                           "TOTALE EURO                      170,00", "di cui IVA 10%                    15,45"})
    body += std::string(line) + "\r\n";
  return body;
}

const char* const gap = "\r\n\r\n\r\n\r\n\r\n\r\n\r\n\r\n\r\n\r\n";

std::vector<Operation> twoCopySlip() {
  const Style header{"fontB12", 10};
  const Style text{"fontA11", 10};
  const std::string owner =
      "ALBERGO AURORA di Rossi Mario\r\nViale Italia 3 - 17021 Alassio\r\nP.IVA 01234567890\r\n"
      "Ricevuta fiscale n. 118\r\n";
  const std::string guest = "Sig. Bianchi\r\nvia Roma 1\r\nTorino\r\n";
  Document document;
  document.print({"Courier New", 10}, {""}).move({.y = 0}).move({.x = 3});
  for (int copy = 1; copy <= 2; ++copy) {
    document.print(header, {owner.c_str()}).print(text, {guest.c_str(), "\r\n", body().c_str()});
    if (copy == 1) document.print(text, {" \r\n \r\n", gap});
  }
  return document.take();
}

std::vector<Operation> twoCopyForm() {
  const Style text{"Courier New", 10, true};
  const std::string owner = block(4, "Intestazione riga");
  const std::string guest = block(3, "Cliente riga");
  const std::string lines =
      "2 Pernottamenti         140,00\r\n4 Colazioni              24,00\r\nTOTALE                  "
      "164,00\r\n";
  Document document;
  document.print({"Courier New", 10}, {""}).move({.y = 0}).print(text, {"\r\n\r\n"});
  for (int copy = 1; copy <= 2; ++copy) {
    document.print(text, {owner.c_str(), guest.c_str(), "\r\n", lines.c_str()});
    if (copy == 1) document.print(text, {"\r\n\r\n\r\n"});
  }
  return document.take();
}

std::vector<Operation> slipForm() {
  Document document;
  for (int row = 1; row <= 41; ++row) {
    const std::string number = (row < 10 ? "R0" : "R") + std::to_string(row);
    document.print({"FontB11", 10}, {(number + "  Articolo di prova            10,00").c_str()});
  }
  return document.take();
}

std::vector<Operation> linePrinterReceipt() {
  return Document()
      .print({"FontA11", 10},
             {"          BAR CENTRALE", "        Piazza Duomo, 1", "", "CAFFE'                      1,20",
              "CORNETTO                    1,40", "TOTALE                      2,60"})
      .take();
}

std::vector<Operation> filteredReceipt() {
  const Style text{"Courier New", 9};
  Document document;
  document.print(text, {"        BAR CENTRALE", "CAFFE'                    1,20", "CORNETTO                  1,40",
                        "TOTALE EURO               2,60"});
  for (int i = 0; i < 5; ++i) document.print(text, {" \r\n"});
  return document.take();
}

/// Five by seven dots a letter, a row to a byte.
struct Letter {
  std::array<std::uint8_t, 7> rows;
};
constexpr Letter letters[] = {
    {{0x1E, 0x11, 0x11, 0x1E, 0x11, 0x11, 0x1E}},
    {{0x0E, 0x11, 0x11, 0x1F, 0x11, 0x11, 0x11}},
    {{0x1E, 0x11, 0x11, 0x1E, 0x14, 0x12, 0x11}},
};

bool isInk(int x, int y, int width, int height) {
  constexpr int frame = 4;
  constexpr int scale = 10;
  constexpr int pitch = 7 * scale;
  if (x < frame || y < frame || x >= width - frame || y >= height - frame) return true;
  const int column = x - (width - 3 * pitch) / 2;
  const int row = (y - (height - 7 * scale) / 2);
  if (column < 0 || row < 0 || row >= 7 * scale || column >= 3 * pitch || column % pitch >= 5 * scale) return false;
  return (letters[column / pitch].rows.at(row / scale) & (0x10 >> (column % pitch / scale))) != 0;
}

void put(std::string& bytes, std::uint32_t number, int length) {
  for (int i = 0; i < length; ++i) bytes += static_cast<char>(number >> (8 * i));
}

}  // namespace

std::vector<SampleDocument> sampleDocuments(const std::string& logoFile) {
  return {
      {"logo", "SAMSUNG SRP-500", logo(logoFile)},
      {"preconto-500", "SAMSUNG SRP-500", courtesyReceipt500()},
      {"preconto-350", "SAMSUNG SRP-350", courtesyReceipt350()},
      {"preconto-103", "SAMSUNG STP-103", courtesyReceipt103()},
      {"ricevuta-l90", "EPSON TM-L90 Receipt", twoCopySlip()},
      {"ricevuta-kube", "Custom KUBE Ric. Fisc. [A]", twoCopyForm()},
      {"ricevuta-u295", "EPSON TM-U295 Slip", slipForm()},
      {"olivetti", "OLIVETTI PRT100", linePrinterReceipt()},
      {"unipos", "UNIPOS", filteredReceipt()},
  };
}

std::string logoBitmap() {
  constexpr int width = 384;
  constexpr int height = 96;
  constexpr std::uint32_t pixelsAt = 54;
  std::string bytes = "BM";
  put(bytes, pixelsAt + width * height * 3, 4);
  put(bytes, 0, 4);
  put(bytes, pixelsAt, 4);
  put(bytes, 40, 4);
  put(bytes, width, 4);
  put(bytes, height, 4);
  put(bytes, 1, 2);
  put(bytes, 24, 2);
  for (int i = 0; i < 6; ++i) put(bytes, 0, 4);
  for (int y = height - 1; y >= 0; --y)
    for (int x = 0; x < width; ++x) bytes.append(3, isInk(x, y, width, height) ? '\0' : '\xFF');
  return bytes;
}

}  // namespace tellaxis::test
