// Bound controls: widgets that show the controls of the main form and take the user's changes back to it.
#pragma once

#include <wx/checkbox.h>
#include <wx/combobox.h>
#include <wx/sizer.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>

#include <functional>
#include <vector>

#include "core/form/main_form.h"
#include "ui/main_layout.h"

namespace tellaxis::ui {

class BoundControls {
 public:
  /// Called after the user changed a control; the form holds the new value already.
  using UserChanged = std::function<void(const ControlMember& control)>;
  /// The text of a key of the settings file, in code page 1252.
  using ReadKey = std::function<std::string(const char* key)>;

  BoundControls(MainForm& form, UserChanged userChanged, ReadKey readKey)
      : form_(form), userChanged_(std::move(userChanged)), readKey_(std::move(readKey)) {}

  /// Makes the field's widget, without its label. `group` dims it while the group's device is switched off.
  wxWindow* make(wxWindow* parent, const Field& field, const GroupLayout& group);

  /// Notes a label, so that it dims with its group.
  void addLabel(wxWindow* label, const GroupLayout& group);

  /// Shows the form's values; this is no change of the user's.
  void show();

  /// Puts a text into a field as if the user had typed it.
  void enter(wxWindow* widget, const wxString& text);

 private:
  struct Binding {
    wxWindow* widget;
    const Field* field;
    const GroupLayout* group;
  };

  wxWindow* makeCheckBox(wxWindow* parent, const Field& field);
  wxWindow* makeTextBox(wxWindow* parent, const Field& field);
  wxWindow* makeComboBox(wxWindow* parent, const Field& field);
  void take(CheckBox MainForm::*control, bool checked);
  template <typename TextControl>
  void take(TextControl MainForm::*control, const wxString& text);
  void changed(const ControlMember& control);
  void show(const Binding& binding);
  void dim(const Binding& binding);

  MainForm& form_;
  UserChanged userChanged_;
  ReadKey readKey_;
  std::vector<Binding> bindings_;
};

}  // namespace tellaxis::ui
