// Main window: the whole configuration on one form, the devices at a glance, the menus.
#pragma once

#include <wx/frame.h>
#include <wx/scrolwin.h>
#include <wx/stattext.h>
#include <wx/weakref.h>

#include <functional>
#include <memory>

#include "core/activity.h"
#include "core/bridge.h"
#include "core/form/window.h"
#include "core/tray_icon.h"
#include "ui/bound_controls.h"
#include "ui/model/background_work.h"
#include "ui/status_strip.h"

namespace tellaxis::ui {

class MainWindow : public wxFrame {
 public:
  /// `work` is what the diagnosis and the diary ask. `ended` is called once, after the form was unloaded.
  MainWindow(Bridge& bridge, const Activity& activity, std::shared_ptr<BackgroundWork> work,
             std::function<void()> ended);

  /// The form as the rules know it.
  Window& form() { return form_; }
  TrayIcon& trayIcon() { return trayIcon_; }

  /// From now on each `refresh` shows what this says of folders that are closed; in code page 1252, empty where none
  /// is.
  void setClosedFolders(std::function<std::string()> closedFolders) { closedFolders_ = std::move(closedFolders); }

  /// Shows the form's values and the lists to choose from.
  void refresh();
  /// Shows what the devices did since the last look.
  void refreshStatus() { status_->refresh(); }

 private:
  /// Does on the screen what the rules ask of the form.
  class Form : public Window {
   public:
    explicit Form(MainWindow& window) : window_(window) {}
    void Show() override;
    void Hide() override;
    void Minimize() override;
    void Unload() override;
    std::string Caption() const override;
    std::uintptr_t hWnd() const override;
    std::uintptr_t Icon() const override;

   private:
    MainWindow& window_;
  };

  void makeMenus();
  wxSizer* makeColumns(wxScrolledWindow* parent);
  wxSizer* makeGroup(wxWindow* parent, const GroupLayout& group, int labelWidth);
  wxSizer* makeRow(wxWindow* parent, const GroupLayout& group, const Row& row, int labelWidth);
  void addField(wxWindow* parent, wxSizer* line, const GroupLayout& group, const Field& field);
  wxSizer* makeButtons(wxWindow* parent);
  /// As large as everything needs, but no larger than the screen.
  void fitToScreen(wxWindow& panel, wxScrolledWindow& scrolled);

  /// Shows a window of which there is at most one.
  template <typename ToolWindow, typename... Arguments>
  void showTool(wxWeakRef<wxFrame>& tool, Arguments&&... arguments);

  void showDiary();
  void browse(wxWindow* widget, const Field& field);
  void userChanged(const ControlMember& control);
  void cmdSalva();
  void mouseMoved(wxMouseEvent& event);
  void unload();

  Bridge& bridge_;
  std::shared_ptr<BackgroundWork> work_;
  std::function<void()> ended_;
  std::function<std::string()> closedFolders_;
  std::string warning_;  ///< what it said last
  Form form_;
  TrayIcon trayIcon_;
  wxIcon icon_;
  BoundControls controls_;
  StatusStrip* status_ = nullptr;
  wxStaticText* saved_ = nullptr;
  wxWeakRef<wxFrame> slipTest_;
  wxWeakRef<wxFrame> printers_;
  wxWeakRef<wxFrame> diagnosis_;
  wxWeakRef<wxFrame> diary_;
  wxWeakRef<wxFrame> about_;
  bool unloaded_ = false;
};

}  // namespace tellaxis::ui
