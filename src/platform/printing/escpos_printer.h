// ESC/POS printer: documents sent as receipt-printer commands through some channel of bytes.
#pragma once

#include <memory>
#include <string>

#include "platform/printing/bitmap.h"
#include "platform/printing/document.h"
#include "platform/printing/spool.h"
#include "platform/trace.h"

namespace tellaxis::platform {

/// A way for bytes into a printer.
class ByteChannel {
 public:
  virtual ~ByteChannel() = default;

  /// Hands over all bytes of `document`, which stands at its first byte. False on a failure, which it reports to the
  /// trace; some bytes may have been taken then.
  virtual bool send(Spool& document) = 0;

  /// What the printer at its end says of itself; `unknown` where nothing comes back through the channel.
  virtual PrinterState state() = 0;
};

/// A receipt printer: each document is sent as a whole once it is finished, and never again.
class EscPosPrinter final : public PrinterBackEnd {
 public:
  EscPosPrinter(std::string deviceName, BitmapReader readBitmap, std::unique_ptr<ByteChannel> channel, Trace& trace);

  std::unique_ptr<DocumentSink> open() override;
  PrinterState state() override { return channel_->state(); }

 private:
  std::string deviceName_;
  BitmapReader readBitmap_;
  std::unique_ptr<ByteChannel> channel_;
  Trace& trace_;
};

}  // namespace tellaxis::platform
