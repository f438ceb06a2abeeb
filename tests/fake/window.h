// Window: a main form on no screen, which notes what was done to it.
#pragma once

#include <string>

#include "core/form/window.h"
#include "fake/journal.h"

namespace tellaxis::fake {

class Window : public tellaxis::Window {
 public:
  explicit Window(Journal& journal) : journal_(journal) {}

  bool visible = true;
  bool loaded = true;
  std::string caption = "Tellaxis";

  void Show() override {
    journal_.record("window show");
    visible = true;
  }
  void Hide() override {
    journal_.record("window hide");
    visible = false;
  }
  void Minimize() override { journal_.record("window minimize"); }
  void Unload() override {
    journal_.record("window unload");
    loaded = false;
  }
  std::string Caption() const override { return caption; }
  std::uintptr_t hWnd() const override { return 4711; }
  std::uintptr_t Icon() const override { return 815; }

 private:
  Journal& journal_;
};

}  // namespace tellaxis::fake
