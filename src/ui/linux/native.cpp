// Native: GTK's side.
#include "ui/native.h"

#include <gtk/gtk.h>

namespace tellaxis::ui {

namespace {

void setName(GtkWidget* widget, const wxString& name) {
  if (AtkObject* accessible = gtk_widget_get_accessible(widget); accessible != nullptr)
    atk_object_set_name(accessible, name.utf8_str());
}

}  // namespace

bool displayIsThere() {
  GdkDisplay* display = gdk_display_open(nullptr);
  if (display == nullptr) return false;
  gdk_display_close(display);
  return true;
}

void setAccessibleName(wxWindow& control, const wxString& name) {
  GtkWidget* widget = control.GetHandle();
  setName(widget, name);
  // The text of a list that can be typed into, or of a box that scrolls, is a widget of its own.
  if (!GTK_IS_BIN(widget)) return;
  if (GtkWidget* inner = gtk_bin_get_child(GTK_BIN(widget)); inner != nullptr) setName(inner, name);
}

std::uintptr_t windowHandle(const wxWindow& /*window*/) { return 0; }

std::uintptr_t iconHandle(const wxIcon& /*icon*/) { return 0; }

}  // namespace tellaxis::ui
