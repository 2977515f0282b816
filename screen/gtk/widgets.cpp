// Placeholder until the widget toolkit lands.

#include "screen/gtk/widgets.h"

namespace zorvel::gtk {

screen::Widgets* widgets() { return nullptr; }

}  // namespace zorvel::gtk
