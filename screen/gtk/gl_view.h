#pragma once
// The "GL" device's drawing area: a GtkGLArea that draws a display list through OpenGL
// (vertex buffers kept between frames, fills through the stencil buffer). Screen thread
// only.

#include <gtk/gtk.h>

#include <cstdint>
#include <memory>
#include <vector>

#include "screen/display_list.h"

namespace zorvel::gtk {

struct GlView;

// A new area; null when this build has no OpenGL or ZORVEL_NO_GL is set (not "0"). The
// view belongs to the widget and goes with it.
GtkWidget* gl_view_new(GlView*& view);
// Whether the area got a working context once realized (false: draw without it).
bool gl_view_ok(GlView* view);
// The list drawn from now on; the area is redrawn.
void gl_view_set_list(GlView* view, std::shared_ptr<const screen::DisplayList> list);
// The pixels of the last frame, rows from the top, RGB: the frame is drawn again from the
// current list at the area's size into the area's buffers and read back. False without
// a context (w, h 0).
bool gl_view_read(GlView* view, std::vector<std::uint8_t>& rgb, int& w, int& h);

}  // namespace zorvel::gtk
