#pragma once
// The widget toolkit of the module (screen/widget_backend.h over GTK 3).

#include <gtk/gtk.h>

namespace zorvel::screen {
class Widgets;
}

namespace zorvel::gtk {

// The module's widget windows and dialogs (one object for the process).
screen::Widgets* widgets();

// The Draw widget of shown widget window `handle`, where a plot's window is embedded
// (screen thread); null without one.
GtkWidget* draw_area(int handle);

}  // namespace zorvel::gtk
