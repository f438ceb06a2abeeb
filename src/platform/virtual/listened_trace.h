// Listened trace: a trace that somebody else hears too.
#pragma once

#include <memory>
#include <utility>

#include "platform/trace.h"

namespace tellaxis::platform {

class ListenedTrace : public Trace {
 public:
  ListenedTrace(std::unique_ptr<Trace> trace, Trace& listener) : trace_(std::move(trace)), listener_(listener) {}

  void failed(std::string_view operation, std::string_view subject, std::string_view reason) override {
    trace_->failed(operation, subject, reason);
    listener_.failed(operation, subject, reason);
  }

 private:
  std::unique_ptr<Trace> trace_;
  Trace& listener_;
};

}  // namespace tellaxis::platform
