// ESC/POS printer: commands kept until the document is complete, then sent once.
#include "platform/printing/escpos_printer.h"

#include <string_view>
#include <utility>

#include "platform/printing/escpos_encoder.h"

namespace tellaxis::platform {

namespace {

class EscPosDocument final : public DocumentSink {
 public:
  EscPosDocument(const std::string& deviceName, BitmapReader readBitmap, ByteChannel& channel, Trace& trace)
      : deviceName_(deviceName),
        encoder_(paperOf(deviceName), std::move(readBitmap)),
        channel_(channel),
        trace_(trace) {}

  bool add(const Operation& operation) override {
    // What the encoder has said is never said again, so that there must be room for it first.
    if (!spool_.makeRoom()) return failed("Print");
    std::string bytes;
    const bool encoded = encoder_.encode(operation, bytes);
    return spool_.append(bytes) && encoded;
  }

  bool finish() override {
    std::string bytes;
    encoder_.finish(bytes);
    if (!spool_.append(bytes) || !spool_.rewind()) return failed("EndDoc");
    return channel_.send(spool_);
  }

 private:
  bool failed(std::string_view operation) {
    trace_.failed(operation, deviceName_, "il disco non ha pi\xF9 spazio per il documento");
    return false;
  }

  std::string deviceName_;
  EscPosEncoder encoder_;
  Spool spool_;
  ByteChannel& channel_;
  Trace& trace_;
};

}  // namespace

EscPosPrinter::EscPosPrinter(std::string deviceName, BitmapReader readBitmap, std::unique_ptr<ByteChannel> channel,
                             Trace& trace)
    : deviceName_(std::move(deviceName)),
      readBitmap_(std::move(readBitmap)),
      channel_(std::move(channel)),
      trace_(trace) {}

std::unique_ptr<DocumentSink> EscPosPrinter::open() {
  return std::make_unique<EscPosDocument>(deviceName_, readBitmap_, *channel_, trace_);
}

}  // namespace tellaxis::platform
