// Native: GTK's side.
#include "ui/native.h"

#include <gtk/gtk.h>

namespace tellaxis::ui {

namespace {

void describe(GtkWidget* widget, const wxString& name, const wxString& help) {
  AtkObject* accessible = gtk_widget_get_accessible(widget);
  if (accessible == nullptr) return;
  atk_object_set_name(accessible, name.utf8_str());
  atk_object_set_description(accessible, help.utf8_str());
}

}  // namespace

bool displayIsThere() {
  GdkDisplay* display = gdk_display_open(nullptr);
  if (display == nullptr) return false;
  gdk_display_close(display);
  return true;
}

void setAccessible(wxWindow& control, const wxString& name, const wxString& help) {
  GtkWidget* widget = control.GetHandle();
  describe(widget, name, help);
  // The text of a list that can be typed into, or of a box that scrolls, is a widget of its own.
  if (!GTK_IS_BIN(widget)) return;
  if (GtkWidget* inner = gtk_bin_get_child(GTK_BIN(widget)); inner != nullptr) describe(inner, name, help);
}

std::uintptr_t windowHandle(const wxWindow& /*window*/) { return 0; }

std::uintptr_t iconHandle(const wxIcon& /*icon*/) { return 0; }

}  // namespace tellaxis::ui
