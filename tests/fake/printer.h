// Printer: a printer object that notes every statement, and keeps the documents that came out.
#pragma once

#include <algorithm>
#include <array>
#include <cstdio>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "fake/journal.h"
#include "platform/printers.h"

namespace tellaxis::fake {

/// What came out of a printer: print statements as "text, font, size, bold, #rrggbb", and pictures by their files.
struct PrintedDocument {
  std::string DeviceName;
  std::vector<std::string> statements;
};

class PrinterObject : public platform::PrinterObject {
 public:
  explicit PrinterObject(Journal& journal) : journal_(journal) {}

  std::vector<platform::InstalledPrinter> installed;
  /// The current one, in `installed`; the first is the default.
  std::size_t current = 0;
  /// Pictures that can be loaded, by file.
  std::vector<platform::Picture> pictures;
  /// What printers say of themselves, by name; one that is not here is ready.
  std::map<std::string, platform::PrinterState> states;
  /// Fonts that printers lack, by printer.
  std::map<std::string, std::string> missingFonts;
  /// Documents that were ended, in that order.
  std::vector<PrintedDocument> printed;

  std::optional<std::vector<platform::InstalledPrinter>> Printers() override {
    if (!journal_.record("Printers")) return std::nullopt;
    return installed;
  }
  platform::PrinterSearch find(const std::function<bool(const platform::InstalledPrinter&)>& matches) override {
    if (!journal_.record("Printers")) return {};
    for (std::size_t i = 0; i < installed.size(); ++i)
      if (matches(installed[i])) return {.complete = true, .index = i, .printer = installed[i]};
    return {.complete = true};
  }
  bool select(std::size_t index) override {
    if (!journal_.record("select " + std::to_string(index)) || index >= installed.size()) return false;
    current = index;
    style_ = {};
    x_ = y_ = 0;
    return true;
  }
  platform::PrinterState state(std::string_view deviceName) override {
    if (!journal_.record("state " + std::string(deviceName))) return platform::PrinterState::unknown;
    const auto found = std::find_if(installed.begin(), installed.end(),
                                    [&](const auto& printer) { return printer.DeviceName == deviceName; });
    if (found == installed.end()) return platform::PrinterState::unknown;
    const auto told = states.find(found->DeviceName);
    return told == states.end() ? platform::PrinterState::ready : told->second;
  }
  bool hasFont(std::string_view deviceName, std::string_view font) override {
    if (!journal_.record("hasFont " + std::string(deviceName) + ", " + std::string(font))) return true;
    const auto missing = missingFonts.find(std::string(deviceName));
    return missing == missingFonts.end() || missing->second != font;
  }
  std::string DeviceName() override {
    if (!journal_.record("DeviceName") || current >= installed.size()) return {};
    return installed[current].DeviceName;
  }

  bool FontName(std::string_view name) override {
    if (!journal_.record("FontName " + std::string(name)) || name.empty()) return false;
    style_.font = name;
    return true;
  }
  bool FontSize(double points) override {
    if (!journal_.record("FontSize " + text(points)) || !(points > 0)) return false;
    style_.size = points;
    return true;
  }
  bool FontBold(bool bold) override {
    if (!journal_.record(bold ? "FontBold true" : "FontBold false")) return false;
    style_.bold = bold;
    return true;
  }
  bool ForeColor(platform::Color color) override {
    if (!journal_.record("ForeColor " + std::to_string(color.red) + "," + std::to_string(color.green) + "," +
                         std::to_string(color.blue)))
      return false;
    style_.color = color;
    return true;
  }

  bool CurrentX(double x) override { return journal_.record("CurrentX = " + text(x)) && move(x_, x); }
  bool CurrentY(double y) override { return journal_.record("CurrentY = " + text(y)) && move(y_, y); }
  double CurrentX() override { return journal_.record("CurrentX") ? x_ : 0; }
  double CurrentY() override { return journal_.record("CurrentY") ? y_ : 0; }

  bool Print(std::string_view line) override {
    return journal_.record("Print " + std::string(line)) && state(std::string(line) + ", " + style_.text());
  }
  std::optional<platform::Picture> LoadPicture(std::string_view file) override {
    if (!journal_.record("LoadPicture " + std::string(file))) return std::nullopt;
    for (const platform::Picture& picture : pictures)
      if (picture.file == file) return picture;
    return std::nullopt;
  }
  bool PaintPicture(const platform::Picture& picture, double x, double y) override {
    return journal_.record("PaintPicture " + picture.file + " at " + text(x) + "," + text(y)) && picture.width > 0 &&
           picture.height > 0 && state(picture.file);
  }

  bool EndDoc() override {
    const bool taken = journal_.record("EndDoc");
    end(current, taken);
    x_ = y_ = 0;
    return taken;
  }
  void abandon() override {
    journal_.record("abandon");
    end(current, false);
    x_ = y_ = 0;
  }
  void endOpenDocuments() override {
    const bool taken = journal_.record("endOpenDocuments");
    while (!open_.empty()) end(open_.begin()->first, taken);
  }

 private:
  struct Style {
    std::string font = "Courier New";
    double size = 10;
    bool bold = false;
    platform::Color color;

    std::string text() const {
      std::array<char, 8> hex{};
      std::snprintf(hex.data(), hex.size(), "#%02x%02x%02x", color.red, color.green, color.blue);
      return font + ", " + PrinterObject::text(size) + (bold ? ", bold, " : ", not bold, ") + hex.data();
    }
  };

  static std::string text(double number) {
    std::ostringstream stream;
    stream << number;
    return stream.str();
  }

  bool move(double& coordinate, double value) {
    if (installed.empty()) return false;
    coordinate = value;
    return true;
  }
  bool state(std::string statement) {
    if (current >= installed.size()) return false;
    open_[current].push_back(std::move(statement));
    return true;
  }
  void end(std::size_t printer, bool prints) {
    const auto document = open_.find(printer);
    if (document == open_.end()) return;
    if (prints) printed.push_back({installed.at(printer).DeviceName, std::move(document->second)});
    open_.erase(document);
  }

  Journal& journal_;
  std::map<std::size_t, std::vector<std::string>> open_;
  Style style_;
  double x_ = 0;
  double y_ = 0;
};

}  // namespace tellaxis::fake
