// Trace: failing steps on standard error, to somebody who listens, or nowhere.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "platform/trace.h"

namespace tellaxis::platform {

/// "passo fallito: OPERATION SUBJECT: REASON".
std::string lineOf(std::string_view operation, std::string_view subject, std::string_view reason);

/// One line a failing step.
class ErrorTrace : public Trace {
 public:
  void failed(std::string_view operation, std::string_view subject, std::string_view reason) override;
};

class NoTrace : public Trace {
 public:
  void failed(std::string_view operation, std::string_view subject, std::string_view reason) override;
};

/// A trace that somebody else hears too.
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

/// The trace of a program: on standard error where `printed`, and to `listener` unless that is null.
std::unique_ptr<Trace> makeTrace(bool printed, Trace* listener);

}  // namespace tellaxis::platform
