// Native: GTK's side.
#include "ui/native.h"

#include <X11/Xlib.h>
#include <gdk/gdkx.h>
#include <gtk/gtk.h>
#include <wx/log.h>
#include <wx/mstream.h>

#include <algorithm>
#include <vector>

namespace tellaxis::ui {

namespace {

void describe(GtkWidget* widget, const wxString& name, const wxString& help) {
  AtkObject* accessible = gtk_widget_get_accessible(widget);
  if (accessible == nullptr) return;
  atk_object_set_name(accessible, name.utf8_str());
  atk_object_set_description(accessible, help.utf8_str());
}

/// Takes the sign of life from the messages that the window says it understands.
void takeSignOfLife(GdkWindow* window) {
  Display* display = GDK_WINDOW_XDISPLAY(window);
  Atom* understood = nullptr;
  int count = 0;
  if (XGetWMProtocols(display, GDK_WINDOW_XID(window), &understood, &count) == 0) return;
  std::vector<Atom> kept(understood, understood + count);
  XFree(understood);
  std::erase(kept, gdk_x11_get_xatom_by_name_for_display(gdk_window_get_display(window), "_NET_WM_PING"));
  XSetWMProtocols(display, GDK_WINDOW_XID(window), kept.data(), static_cast<int>(kept.size()));
}

/// A widget has got its place on the screen; only windows of the X server can do without the sign.
gboolean onRealize(GSignalInvocationHint* /*hint*/, guint /*count*/, const GValue* values, gpointer /*data*/) {
  auto* widget = static_cast<GtkWidget*>(g_value_get_object(values));
  if (!GTK_IS_WINDOW(widget)) return TRUE;
  if (GdkWindow* window = gtk_widget_get_window(widget); window != nullptr && GDK_IS_X11_WINDOW(window))
    takeSignOfLife(window);
  return TRUE;
}

}  // namespace

void forgoSignsOfLife() {
  g_type_class_ref(GTK_TYPE_WIDGET);
  g_signal_add_emission_hook(g_signal_lookup("realize", GTK_TYPE_WIDGET), 0, onRealize, nullptr, nullptr);
}

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

wxImage pageImage(const std::string& bytes) {
  if (wxImage::FindHandler(wxBITMAP_TYPE_PNG) == nullptr) wxImage::AddHandler(new wxPNGHandler);
  const wxLogNull quiet;
  wxMemoryInputStream stream(bytes.data(), bytes.size());
  return wxImage(stream, wxBITMAP_TYPE_PNG);
}

std::uintptr_t windowHandle(const wxWindow& /*window*/) { return 0; }

std::uintptr_t iconHandle(const wxIcon& /*icon*/) { return 0; }

}  // namespace tellaxis::ui
