#pragma once
// The widget toolkit of the module (screen/widget_backend.h over GTK 3).

namespace zorvel::screen {
class Widgets;
}

namespace zorvel::gtk {

// The module's widget windows and dialogs (one object for the process).
screen::Widgets* widgets();

}  // namespace zorvel::gtk
