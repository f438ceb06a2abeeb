// Printer: a printer object that notes every statement.
#pragma once

#include <sstream>
#include <string>
#include <vector>

#include "fake/journal.h"
#include "platform/printers.h"

namespace tellaxis::fake {

class PrinterObject : public platform::PrinterObject {
 public:
  explicit PrinterObject(Journal& journal) : journal_(journal) {}

  std::vector<platform::InstalledPrinter> installed;
  std::size_t current = 0;
  /// Pictures that can be loaded, by file.
  std::vector<platform::Picture> pictures;

  std::optional<std::vector<platform::InstalledPrinter>> Printers() override {
    if (!journal_.record("Printers")) return std::nullopt;
    return installed;
  }
  bool select(std::size_t index) override {
    if (!journal_.record("select " + std::to_string(index)) || index >= installed.size()) return false;
    current = index;
    return true;
  }
  std::string DeviceName() override {
    if (!journal_.record("DeviceName") || current >= installed.size()) return {};
    return installed[current].DeviceName;
  }
  bool FontName(std::string_view name) override { return journal_.record("FontName " + std::string(name)); }
  bool FontSize(double points) override { return journal_.record("FontSize " + text(points)); }
  bool FontBold(bool bold) override { return journal_.record(bold ? "FontBold true" : "FontBold false"); }
  bool ForeColor(platform::Color color) override {
    return journal_.record("ForeColor " + std::to_string(color.red) + "," + std::to_string(color.green) + "," +
                           std::to_string(color.blue));
  }
  bool CurrentX(double x) override {
    const bool done = journal_.record("CurrentX = " + text(x));
    if (done) x_ = x;
    return done;
  }
  bool CurrentY(double y) override {
    const bool done = journal_.record("CurrentY = " + text(y));
    if (done) y_ = y;
    return done;
  }
  double CurrentX() override { return journal_.record("CurrentX") ? x_ : 0; }
  double CurrentY() override { return journal_.record("CurrentY") ? y_ : 0; }
  bool Print(std::string_view line) override { return journal_.record("Print " + std::string(line)); }
  std::optional<platform::Picture> LoadPicture(std::string_view file) override {
    if (!journal_.record("LoadPicture " + std::string(file))) return std::nullopt;
    for (const platform::Picture& picture : pictures)
      if (picture.file == file) return picture;
    return std::nullopt;
  }
  bool PaintPicture(const platform::Picture& picture, double x, double y) override {
    return journal_.record("PaintPicture " + picture.file + " at " + text(x) + "," + text(y));
  }
  bool EndDoc() override { return journal_.record("EndDoc"); }
  void endOpenDocuments() override { journal_.record("endOpenDocuments"); }

 private:
  static std::string text(double number) {
    std::ostringstream stream;
    stream << number;
    return stream.str();
  }

  Journal& journal_;
  double x_ = 0;
  double y_ = 0;
};

}  // namespace tellaxis::fake
