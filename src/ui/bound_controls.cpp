// Bound controls: making widgets and carrying values both ways.
#include "ui/bound_controls.h"

#include <wx/settings.h>

#include <algorithm>

#include "core/catalogue.h"
#include "text/overloaded.h"
#include "ui/native.h"
#include "ui/text.h"

namespace tellaxis::ui {

namespace {

/// A setting that the save leaves alone: changing its control would change nothing.
bool isReadOnly(const ControlMember& control) {
  return std::ranges::any_of(
      catalogue(), [&](const Setting& row) { return row.control == control && row.write == WriteKind::never; });
}

void setWidth(wxWindow* widget, int columns, int extraPixels) {
  const int width =
      columns > 0 ? columns * widget->GetTextExtent("0").x + widget->FromDIP(extraPixels) : widget->FromDIP(80);
  widget->SetMinSize(wxSize(width, -1));
}

wxArrayString itemsOf(const ComboBox& control) {
  wxArrayString items;
  for (const std::string& entry : control.List) items.Add(toWx(entry));
  return items;
}

constexpr int entryBorders = 18;
constexpr int comboArrow = 48;

}  // namespace

wxWindow* BoundControls::make(wxWindow* parent, const Field& field, const GroupLayout& group) {
  wxWindow* widget = std::visit(Overloaded{[&](CheckBox MainForm::*) { return makeCheckBox(parent, field); },
                                           [&](ComboBox MainForm::*) { return makeComboBox(parent, field); },
                                           [&](auto) { return makeTextBox(parent, field); }},
                                field.control);
  widget->SetToolTip(fromUtf8(field.help));
  const char* name = field.spoken != nullptr ? field.spoken : field.label;
  setAccessible(*widget, fromUtf8(group.title) + " - " + fromUtf8(name), fromUtf8(field.help));
  bindings_.push_back({widget, &field, &group});
  return widget;
}

void BoundControls::addLabel(wxWindow* label, const GroupLayout& group) {
  bindings_.push_back({label, nullptr, &group});
}

wxWindow* BoundControls::makeCheckBox(wxWindow* parent, const Field& field) {
  auto* box = new wxCheckBox(parent, wxID_ANY, fromUtf8(field.label));
  const auto control = std::get<CheckBox MainForm::*>(field.control);
  box->Enable(!isReadOnly(field.control));
  box->Bind(wxEVT_CHECKBOX, [this, control](const wxCommandEvent& event) { take(control, event.IsChecked()); });
  return box;
}

wxWindow* BoundControls::makeTextBox(wxWindow* parent, const Field& field) {
  const auto* control = std::get_if<TextBox MainForm::*>(&field.control);
  const long style = control == nullptr || isReadOnly(field.control) ? wxTE_READONLY : 0;
  auto* box = new wxTextCtrl(parent, wxID_ANY, "", wxDefaultPosition, wxDefaultSize, style);
  if (style == wxTE_READONLY) box->SetBackgroundColour(wxSystemSettings::GetColour(wxSYS_COLOUR_BTNFACE));
  setWidth(box, field.columns, entryBorders);
  if (control != nullptr)
    box->Bind(wxEVT_TEXT, [this, box, member = *control](const wxCommandEvent&) { take(member, box->GetValue()); });
  return box;
}

wxWindow* BoundControls::makeComboBox(wxWindow* parent, const Field& field) {
  auto* box = new wxComboBox(parent, wxID_ANY, "", wxDefaultPosition, wxDefaultSize, 0, nullptr, wxCB_DROPDOWN);
  setWidth(box, field.columns, comboArrow);
  const auto control = std::get<ComboBox MainForm::*>(field.control);
  const auto changedByUser = [this, box, control](const wxCommandEvent&) { take(control, box->GetValue()); };
  box->Bind(wxEVT_TEXT, changedByUser);
  box->Bind(wxEVT_COMBOBOX, changedByUser);
  return box;
}

void BoundControls::take(CheckBox MainForm::*control, bool checked) {
  (form_.*control).Value = checked ? 1 : 0;
  changed(control);
}

template <typename TextControl>
void BoundControls::take(TextControl MainForm::*control, const wxString& text) {
  std::string entered = fromWx(text);
  if (entered == (form_.*control).Text) return;
  (form_.*control).Text = std::move(entered);
  changed(control);
}

void BoundControls::changed(const ControlMember& control) {
  userChanged_(control);
  for (const Binding& binding : bindings_)
    if (binding.field == nullptr || binding.field->control != control) show(binding);
}

void BoundControls::enter(wxWindow* widget, const wxString& text) {
  if (auto* box = dynamic_cast<wxTextCtrl*>(widget)) box->SetValue(text);
}

void BoundControls::show() {
  for (const Binding& binding : bindings_) show(binding);
}

void BoundControls::show(const Binding& binding) {
  dim(binding);
  if (binding.field == nullptr) return;
  const auto showText = [](wxTextEntry* entry, const wxString& text) {
    if (entry->GetValue() != text) entry->ChangeValue(text);
  };
  std::visit(Overloaded{[&](CheckBox MainForm::*control) {
                          static_cast<wxCheckBox*>(binding.widget)->SetValue((form_.*control).Value != 0);
                        },
                        [&](TextBox MainForm::*control) {
                          showText(static_cast<wxTextCtrl*>(binding.widget), toWx((form_.*control).Text));
                        },
                        [&](ComboBox MainForm::*control) {
                          auto* box = static_cast<wxComboBox*>(binding.widget);
                          const wxArrayString items = itemsOf(form_.*control);
                          if (box->GetStrings() != items) box->Set(items);
                          showText(box, toWx((form_.*control).Text));
                        },
                        [&](std::monostate) {
                          showText(static_cast<wxTextCtrl*>(binding.widget), toWx(readKey_(binding.field->key)));
                        }},
             binding.field->control);
}

void BoundControls::dim(const Binding& binding) {
  const auto active = binding.group->active;
  if (active == nullptr) return;
  if (binding.field != nullptr && binding.field->control == ControlMember(active)) return;
  const bool on = (form_.*active).Value != 0;
  const wxColour colour = on ? wxColour() : wxSystemSettings::GetColour(wxSYS_COLOUR_GRAYTEXT);
  if (binding.widget->GetForegroundColour() == colour && !on) return;
  binding.widget->SetForegroundColour(on ? wxNullColour : colour);
  binding.widget->Refresh();
}

}  // namespace tellaxis::ui
