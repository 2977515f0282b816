#pragma once
// The widget toolkit of the module (screen/widget_backend.h over GTK 3).

namespace zorvel::screen {
class Widgets;
}

namespace zorvel::gtk {

// The module's widgets; null while they are not built.
screen::Widgets* widgets();

}  // namespace zorvel::gtk
