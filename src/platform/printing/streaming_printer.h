// Streaming printer: the printer object over any set of back ends.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/printing/document.h"
#include "platform/trace.h"

namespace tellaxis::platform {

/// The operating system's printers in its own order.
struct SystemPrinterList {
  std::vector<InstalledPrinter> printers;
  std::size_t defaultIndex = 0;  ///< of the default printer; where the system names none, of the first
};

/// The printers that the operating system knows.
class SystemPrinters {
 public:
  virtual ~SystemPrinters() = default;

  /// Listed anew at each call; nothing on a failure, which is reported to the trace.
  virtual std::optional<SystemPrinterList> list() = 0;

  /// What prints on `printer`, which came from `list`; null on a failure, which is reported to the trace.
  virtual std::unique_ptr<PrinterBackEnd> backEnd(const InstalledPrinter& printer) = 0;
};

/// A printer of the devices file.
struct ListedPrinter {
  InstalledPrinter printer;
  std::unique_ptr<PrinterBackEnd> backEnd;  ///< never null
};

/// Sizes of a bitmap file; nothing when it is missing or damaged, which is reported to the trace.
using PictureReader = std::function<std::optional<Picture>(std::string_view file)>;

/// Every printer has a document of its own that stays open until it is ended, also while another printer is current.
class StreamingPrinter final : public PrinterObject {
 public:
  /// `listed` come first in the enumeration, then those of `system`, which may be null.
  StreamingPrinter(std::vector<ListedPrinter> listed, std::unique_ptr<SystemPrinters> system, PictureReader readPicture,
                   Trace& trace);

  std::optional<std::vector<InstalledPrinter>> Printers() override;
  PrinterSearch find(const std::function<bool(const InstalledPrinter&)>& matches) override;
  bool select(std::size_t index) override;
  std::string DeviceName() override;
  PrinterState state(std::string_view deviceName) override;
  bool hasFont(std::string_view deviceName, std::string_view font) override;

  bool FontName(std::string_view name) override;
  bool FontSize(double points) override;
  bool FontBold(bool bold) override;
  bool ForeColor(Color color) override;

  bool CurrentX(double x) override;
  bool CurrentY(double y) override;
  double CurrentX() override { return x_; }
  double CurrentY() override { return y_; }

  bool Print(std::string_view text) override;
  std::optional<Picture> LoadPicture(std::string_view file) override { return readPicture_(file); }
  bool PaintPicture(const Picture& picture, double x, double y) override;

  bool EndDoc() override;
  void abandon() override;
  void endOpenDocuments() override;

 private:
  /// A printer of the enumeration; those of the devices file have a back end of their own.
  struct Enumerated {
    InstalledPrinter printer;
    PrinterBackEnd* listed = nullptr;

    bool operator==(const Enumerated& other) const {
      return listed == other.listed && printer.DeviceName == other.printer.DeviceName &&
             printer.Port == other.printer.Port;
    }
  };

  /// What one printer was told since its last end. Moves before the first statement wait: alone they make no document.
  struct OpenDocument {
    Enumerated on;
    std::vector<Move> waitingMoves;
    std::unique_ptr<PrinterBackEnd> ownBackEnd;
    std::unique_ptr<DocumentSink> sink;
  };

  /// What is in force since the printer was chosen.
  struct Style {
    std::string font = initialFontName;
    double size = initialFontSize;
    bool bold = false;
    Color color;
  };

  template <typename Answer>
  Answer asked(std::string_view deviceName, Answer unknown, const std::function<Answer(PrinterBackEnd&)>& ask);
  bool listSystem();
  const Enumerated* current(std::string_view operation);
  std::optional<Enumerated> defaultPrinter();
  std::optional<OpenDocument> takeDocument();
  OpenDocument* openDocumentOn(const Enumerated& printer);
  OpenDocument& documentOn(const Enumerated& printer);
  bool begin(OpenDocument& document);
  bool state(std::string_view operation, const Operation& statement);
  bool move(std::string_view operation, const Move& move);
  bool fail(std::string_view operation, std::string_view subject, std::string_view reason);

  std::vector<ListedPrinter> listed_;
  std::unique_ptr<SystemPrinters> system_;
  PictureReader readPicture_;
  Trace& trace_;
  std::vector<Enumerated> enumeration_;  ///< the listed ones, and the system's as last asked
  std::size_t systemDefault_ = 0;        ///< in it
  std::optional<Enumerated> current_;    ///< the chosen printer, or the default one that has the open document
  bool isChosen_ = false;
  std::vector<OpenDocument> documents_;  ///< in the order of their opening
  Style style_;
  double x_ = 0;
  double y_ = 0;
};

}  // namespace tellaxis::platform
