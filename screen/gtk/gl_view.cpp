// Placeholder until OpenGL drawing lands: no GL areas, so "GL" plots go to plain windows.

#include "screen/gtk/gl_view.h"

namespace zorvel::gtk {

GtkWidget* gl_view_new(GlView*& view) {
  view = nullptr;
  return nullptr;
}

bool gl_view_ok(GlView* /*view*/) { return false; }

void gl_view_set_list(GlView* /*view*/, std::shared_ptr<const screen::DisplayList> /*list*/) {}

bool gl_view_read(GlView* /*view*/, std::vector<std::uint8_t>& /*rgb*/, int& w, int& h) {
  w = 0;
  h = 0;
  return false;
}

}  // namespace zorvel::gtk
