// The module's windows: a GtkWindow holding one drawing area that shows the page the
// library hands over (or, for "GL", a GL area drawing the display list), re-rendered by
// the library's renderer when the window takes another size. Input is collected on the
// screen thread by the request a waiting thread has posted.

#include <gdk/gdkx.h>
#include <gtk/gtk.h>

#include <algorithm>
#include <chrono>
#include <cstring>
#include <map>
#include <memory>

#include "screen/backend.h"
#include "screen/gtk/gl_view.h"
#include "screen/gtk/thread.h"
#include "screen/gtk/widgets.h"

namespace zorvel::gtk {
namespace {

using screen::InputResult;
using screen::Track;

// How long show() waits for a page to reach the screen before it gives up (a window
// that never maps must not hang the program).
constexpr auto kShowTimeout = std::chrono::seconds(5);

struct Win {
  int handle = 0;
  int id = 0;
  GtkWidget* window = nullptr;
  GtkWidget* area = nullptr;
  GlView* gl = nullptr;
  bool embedded = false;  // the area is a widget window's Draw widget (wgdraw)
  cairo_surface_t* surface = nullptr;  // the page shown (screen thread)
  std::uint32_t background = 0;        // what lies beyond the page
  std::shared_ptr<screen::Renderer> renderer;
  int cursor = 0;
  // Read by waiting threads: under state_lock().
  bool closed = false;
  unsigned long long wanted = 0;  // serial of the last page handed over ...
  unsigned long long painted = 0;  // ... and of the last one on the screen
  bool waiting = false;            // an input request is active
  Track track = Track::Click;
  int max_points = 0;
  InputResult result;
  bool done = false;
  bool dragging = false;
  int band_x0 = 0, band_y0 = 0, band_x1 = 0, band_y1 = 0;  // rubber band
  int pointer_x = -1, pointer_y = -1;                       // for "HAIR"
  screen::WindowEventFn events = nullptr;
  void* owner = nullptr;
};

class GtkDisplay final : public screen::Display {
 public:
  bool open() override { return start(); }
  void screen_size(int& w, int& h) override;
  int create(const screen::WindowSettings& settings, int id) override;
  void reshape(int win, const screen::WindowSettings& settings) override;
  void show(int win, const screen::Pixels& page) override;
  void show_list(int win, std::shared_ptr<const screen::DisplayList> list) override;
  void set_renderer(int win, std::shared_ptr<screen::Renderer> renderer) override;
  void close(int win) override;
  bool geometry(int win, int& x, int& y, int& w, int& h) override;
  unsigned long xid(int win) override;
  void set_cursor(int win, int shape) override;
  bool input(int win, Track kind, int max_points, InputResult& out) override;
  int pointer(int win, int& x, int& y) override;
  void set_events(int win, screen::WindowEventFn fn, void* owner) override;
  bool read_gl(int win, std::vector<std::uint8_t>& rgb, int& w, int& h) override;

 private:
  std::shared_ptr<Win> find(int win) {
    std::lock_guard<std::mutex> guard(state_lock());
    auto it = windows_.find(win);
    return it != windows_.end() ? it->second : nullptr;
  }
  std::map<int, std::shared_ptr<Win>> windows_;  // under state_lock()
  int next_ = 1;
};

GtkDisplay& the_display() {
  static GtkDisplay* d = new GtkDisplay;  // lives as long as the screen thread
  return *d;
}

// A page as a cairo surface (screen thread).
cairo_surface_t* page_surface(const std::uint8_t* rgb, int w, int h, std::size_t stride) {
  cairo_surface_t* s = cairo_image_surface_create(CAIRO_FORMAT_RGB24, w, h);
  if (cairo_surface_status(s) != CAIRO_STATUS_SUCCESS) {
    cairo_surface_destroy(s);
    return nullptr;
  }
  cairo_surface_flush(s);
  unsigned char* data = cairo_image_surface_get_data(s);
  const int dst_stride = cairo_image_surface_get_stride(s);
  for (int j = 0; j < h; ++j) {
    const std::uint8_t* src = rgb + stride * static_cast<std::size_t>(j);
    auto* dst = reinterpret_cast<std::uint32_t*>(data + static_cast<std::ptrdiff_t>(dst_stride) * j);
    for (int i = 0; i < w; ++i) {
      dst[i] = (static_cast<std::uint32_t>(src[0]) << 16) | (static_cast<std::uint32_t>(src[1]) << 8) |
               src[2];
      src += 3;
    }
  }
  cairo_surface_mark_dirty(s);
  return s;
}

void set_source_rgb(cairo_t* cr, std::uint32_t c) {
  cairo_set_source_rgb(cr, ((c >> 16) & 255) / 255.0, ((c >> 8) & 255) / 255.0, (c & 255) / 255.0);
}

// Signal handlers (screen thread).

gboolean on_draw(GtkWidget* widget, cairo_t* cr, gpointer data) {
  Win* w = static_cast<Win*>(data);
  const int aw = gtk_widget_get_allocated_width(widget);
  const int ah = gtk_widget_get_allocated_height(widget);
  if (w->renderer && w->surface != nullptr &&
      (cairo_image_surface_get_width(w->surface) != aw ||
       cairo_image_surface_get_height(w->surface) != ah)) {
    const screen::Pixels px = w->renderer->render(aw, ah);
    if (px.rgb != nullptr) {
      cairo_surface_destroy(w->surface);
      w->surface = page_surface(px.rgb, px.width, px.height, px.stride);
    }
  }
  set_source_rgb(cr, w->background);
  cairo_paint(cr);
  if (w->surface != nullptr) {
    cairo_set_source_surface(cr, w->surface, 0, 0);
    cairo_pattern_set_filter(cairo_get_source(cr), CAIRO_FILTER_NEAREST);
    cairo_paint(cr);
  }
  std::lock_guard<std::mutex> guard(state_lock());
  if (w->waiting && w->dragging && (w->track == Track::Line || w->track == Track::Rectangle)) {
    cairo_set_operator(cr, CAIRO_OPERATOR_DIFFERENCE);
    cairo_set_source_rgb(cr, 1, 1, 1);
    cairo_set_line_width(cr, 1);
    if (w->track == Track::Line) {
      cairo_move_to(cr, w->band_x0 + 0.5, w->band_y0 + 0.5);
      cairo_line_to(cr, w->band_x1 + 0.5, w->band_y1 + 0.5);
    } else {
      cairo_rectangle(cr, std::min(w->band_x0, w->band_x1) + 0.5, std::min(w->band_y0, w->band_y1) + 0.5,
                      std::abs(w->band_x1 - w->band_x0), std::abs(w->band_y1 - w->band_y0));
    }
    cairo_stroke(cr);
  }
  if (w->waiting && w->cursor == 2 && w->pointer_x >= 0) {
    cairo_set_operator(cr, CAIRO_OPERATOR_DIFFERENCE);
    cairo_set_source_rgb(cr, 1, 1, 1);
    cairo_set_line_width(cr, 1);
    cairo_move_to(cr, 0, w->pointer_y + 0.5);
    cairo_line_to(cr, aw, w->pointer_y + 0.5);
    cairo_move_to(cr, w->pointer_x + 0.5, 0);
    cairo_line_to(cr, w->pointer_x + 0.5, ah);
    cairo_stroke(cr);
  }
  return TRUE;
}

// After a frame is painted: what was handed over is on the screen.
void on_after_paint(GdkFrameClock*, gpointer data) {
  Win* w = static_cast<Win*>(data);
  gdk_display_sync(gdk_display_get_default());
  {
    std::lock_guard<std::mutex> guard(state_lock());
    w->painted = w->wanted;
  }
  notify();
}

void report(Win* w, int x, int y, int width, int height) {
  if (w->events != nullptr) {
    w->events(w->owner, w->id, x, y, width, height);
  }
}

gboolean on_configure(GtkWidget* widget, GdkEventConfigure* ev, gpointer data) {
  Win* w = static_cast<Win*>(data);
  (void)widget;
  report(w, ev->x, ev->y, ev->width, ev->height);
  return FALSE;
}

void mark_closed(Win* w) {
  {
    std::lock_guard<std::mutex> guard(state_lock());
    w->closed = true;
    w->done = true;
    w->result.closed = true;
  }
  notify();
}

gboolean on_delete(GtkWidget*, GdkEvent*, gpointer data) {
  Win* w = static_cast<Win*>(data);
  mark_closed(w);
  report(w, 0, 0, 0, 0);
  gtk_widget_hide(w->window);
  return TRUE;  // the window object stays until the library closes it
}

// Ends the input request (under the lock).
void finish_input(Win* w, int ended_by) {
  w->result.ended_by = ended_by;
  w->done = true;
  w->dragging = false;
}

void add_point(Win* w, int x, int y) {
  w->result.xs.push_back(x);
  w->result.ys.push_back(y);
}

gboolean on_button(GtkWidget* widget, GdkEventButton* ev, gpointer data) {
  Win* w = static_cast<Win*>(data);
  if (ev->type != GDK_BUTTON_PRESS && ev->type != GDK_BUTTON_RELEASE) {
    return TRUE;  // double clicks come as two presses besides
  }
  const bool press = ev->type == GDK_BUTTON_PRESS;
  const int x = static_cast<int>(ev->x);
  const int y = static_cast<int>(ev->y);
  bool redraw = false;
  {
    std::lock_guard<std::mutex> guard(state_lock());
    if (!w->waiting || w->done) {
      return TRUE;
    }
    switch (w->track) {
      case Track::Click:
        if (press) {
          add_point(w, x, y);
          finish_input(w, 0);
        }
        break;
      case Track::Dismiss:
        if (press) {
          finish_input(w, 0);
        }
        break;
      case Track::Clicks:
        if (press && ev->button == 3) {
          finish_input(w, 0);
        } else if (press) {
          add_point(w, x, y);
          if (static_cast<int>(w->result.xs.size()) >= w->max_points) {
            finish_input(w, 1);
          }
        }
        break;
      case Track::Path:
        if (press && ev->button == 1) {
          w->dragging = true;
          add_point(w, x, y);
        } else if (!press && w->dragging) {
          finish_input(w, 0);
        }
        break;
      case Track::Line:
      case Track::Rectangle:
        if (press && ev->button == 1) {
          w->dragging = true;
          w->band_x0 = w->band_x1 = x;
          w->band_y0 = w->band_y1 = y;
        } else if (!press && w->dragging) {
          add_point(w, w->band_x0, w->band_y0);
          add_point(w, x, y);
          finish_input(w, 0);
          redraw = true;
        }
        break;
      case Track::Key:
        break;
    }
  }
  notify();
  if (redraw) {
    gtk_widget_queue_draw(widget);
  }
  return TRUE;
}

gboolean on_motion(GtkWidget* widget, GdkEventMotion* ev, gpointer data) {
  Win* w = static_cast<Win*>(data);
  const int x = static_cast<int>(ev->x);
  const int y = static_cast<int>(ev->y);
  bool redraw = false;
  {
    std::lock_guard<std::mutex> guard(state_lock());
    w->pointer_x = x;
    w->pointer_y = y;
    if (!w->waiting || w->done) {
      return TRUE;
    }
    redraw = w->cursor == 2;
    if (w->dragging && w->track == Track::Path) {
      add_point(w, x, y);
      if (static_cast<int>(w->result.xs.size()) >= w->max_points) {
        finish_input(w, 1);
      }
    } else if (w->dragging) {
      w->band_x1 = x;
      w->band_y1 = y;
      redraw = true;
    }
  }
  notify();
  if (redraw) {
    gtk_widget_queue_draw(widget);
  }
  return TRUE;
}

gboolean on_leave(GtkWidget* widget, GdkEventCrossing*, gpointer data) {
  Win* w = static_cast<Win*>(data);
  {
    std::lock_guard<std::mutex> guard(state_lock());
    w->pointer_x = -1;
    w->pointer_y = -1;
  }
  gtk_widget_queue_draw(widget);
  return FALSE;
}

gboolean on_key(GtkWidget*, GdkEventKey* ev, gpointer data) {
  Win* w = static_cast<Win*>(data);
  int key = 0;
  switch (ev->keyval) {
    case GDK_KEY_Return:
    case GDK_KEY_KP_Enter:
      key = 13;
      break;
    case GDK_KEY_Escape:
      key = 27;
      break;
    case GDK_KEY_BackSpace:
      key = 8;
      break;
    case GDK_KEY_Tab:
      key = 9;
      break;
    default:
      key = static_cast<int>(gdk_keyval_to_unicode(ev->keyval));
      break;
  }
  if (key == 0) {
    return FALSE;  // a modifier alone
  }
  {
    std::lock_guard<std::mutex> guard(state_lock());
    if (!w->waiting || w->done) {
      return TRUE;
    }
    switch (w->track) {
      case Track::Key:
        w->result.key = key;
        finish_input(w, 0);
        break;
      case Track::Dismiss:
      case Track::Clicks:
        if (key == 13) {
          finish_input(w, 0);
        }
        break;
      default:
        break;
    }
  }
  notify();
  return TRUE;
}

const char* cursor_name(int shape) {
  switch (shape) {
    case 1:
      return "crosshair";
    case 2:
      return "crosshair";
    default:
      return "default";
  }
}

void apply_cursor(Win* w) {
  GdkWindow* gw = w->area != nullptr ? gtk_widget_get_window(w->area) : nullptr;
  if (gw == nullptr) {
    return;
  }
  GdkCursor* c = gdk_cursor_new_from_name(gdk_window_get_display(gw), cursor_name(w->cursor));
  gdk_window_set_cursor(gw, c);
  if (c != nullptr) {
    g_object_unref(c);
  }
}

void on_realize(GtkWidget*, gpointer data) { apply_cursor(static_cast<Win*>(data)); }

void size_window(Win* w, const screen::WindowSettings& settings) {
  gtk_window_set_title(GTK_WINDOW(w->window), settings.title.c_str());
  gtk_window_set_default_size(GTK_WINDOW(w->window), settings.width, settings.height);
  gtk_window_resize(GTK_WINDOW(w->window), settings.width, settings.height);
  if (settings.placed) {
    gtk_window_move(GTK_WINDOW(w->window), settings.x, settings.y);
  }
}

void GtkDisplay::screen_size(int& w, int& h) {
  w = 0;
  h = 0;
  run([&] {
    GdkDisplay* d = gdk_display_get_default();
    GdkMonitor* m = gdk_display_get_primary_monitor(d);
    if (m == nullptr) {
      m = gdk_display_get_monitor(d, 0);
    }
    if (m != nullptr) {
      GdkRectangle r;
      gdk_monitor_get_geometry(m, &r);
      w = r.width;
      h = r.height;
    }
  });
}

void on_area_destroy(GtkWidget*, gpointer data) {
  Win* w = static_cast<Win*>(data);
  w->area = nullptr;
  w->window = nullptr;
  mark_closed(w);
}

// A plot in the Draw widget of a widget window: the area is the widget window's, this
// window only draws in it and takes its clicks.
bool embed_window(const std::shared_ptr<Win>& w, GtkWidget* area) {
  w->embedded = true;
  w->area = area;
  w->window = gtk_widget_get_toplevel(area);
  g_signal_connect(area, "draw", G_CALLBACK(on_draw), w.get());
  gtk_widget_add_events(area, GDK_BUTTON_PRESS_MASK | GDK_BUTTON_RELEASE_MASK |
                                  GDK_POINTER_MOTION_MASK | GDK_LEAVE_NOTIFY_MASK);
  g_signal_connect(area, "button-press-event", G_CALLBACK(on_button), w.get());
  g_signal_connect(area, "button-release-event", G_CALLBACK(on_button), w.get());
  g_signal_connect(area, "motion-notify-event", G_CALLBACK(on_motion), w.get());
  g_signal_connect(area, "leave-notify-event", G_CALLBACK(on_leave), w.get());
  g_signal_connect(area, "destroy", G_CALLBACK(on_area_destroy), w.get());
  if (GdkFrameClock* clock = gtk_widget_get_frame_clock(area)) {
    g_signal_connect(clock, "after-paint", G_CALLBACK(on_after_paint), w.get());
  }
  apply_cursor(w.get());
  gtk_widget_queue_draw(area);
  return true;
}

// Builds the window on the screen thread; false when a GL area cannot be made.
bool build_window(const std::shared_ptr<Win>& w, const screen::WindowSettings& settings) {
  if (settings.embed != 0 && !settings.gl) {
    if (GtkWidget* area = draw_area(settings.embed)) {
      return embed_window(w, area);
    }
  }
  w->window = gtk_window_new(GTK_WINDOW_TOPLEVEL);
  if (settings.gl) {
    w->area = gl_view_new(w->gl);
    if (w->area == nullptr) {
      gtk_widget_destroy(w->window);
      return false;
    }
  } else {
    w->area = gtk_drawing_area_new();
    g_signal_connect(w->area, "draw", G_CALLBACK(on_draw), w.get());
  }
  gtk_widget_add_events(w->area, GDK_BUTTON_PRESS_MASK | GDK_BUTTON_RELEASE_MASK |
                                     GDK_POINTER_MOTION_MASK | GDK_LEAVE_NOTIFY_MASK);
  gtk_widget_add_events(w->window, GDK_KEY_PRESS_MASK | GDK_STRUCTURE_MASK);
  g_signal_connect(w->area, "button-press-event", G_CALLBACK(on_button), w.get());
  g_signal_connect(w->area, "button-release-event", G_CALLBACK(on_button), w.get());
  g_signal_connect(w->area, "motion-notify-event", G_CALLBACK(on_motion), w.get());
  g_signal_connect(w->area, "leave-notify-event", G_CALLBACK(on_leave), w.get());
  g_signal_connect(w->area, "realize", G_CALLBACK(on_realize), w.get());
  g_signal_connect(w->window, "key-press-event", G_CALLBACK(on_key), w.get());
  g_signal_connect(w->window, "delete-event", G_CALLBACK(on_delete), w.get());
  g_signal_connect(w->window, "configure-event", G_CALLBACK(on_configure), w.get());
  gtk_container_add(GTK_CONTAINER(w->window), w->area);
  size_window(w.get(), settings);
  gtk_widget_show_all(w->window);
  if (settings.gl) {
    gtk_widget_realize(w->area);
    if (!gl_view_ok(w->gl)) {
      gtk_widget_destroy(w->window);
      return false;
    }
  }
  GdkFrameClock* clock = gtk_widget_get_frame_clock(w->area);
  if (clock != nullptr) {
    g_signal_connect(clock, "after-paint", G_CALLBACK(on_after_paint), w.get());
  }
  return true;
}

// A plain window is built while the program draws its plot (run_async): the first page
// shown waits for it in the screen thread's queue. A GL window is built at once, as
// whether it gets a context decides the device.
int GtkDisplay::create(const screen::WindowSettings& settings, int id) {
  auto w = std::make_shared<Win>();
  w->id = id;
  if (settings.gl) {
    bool ok = false;
    run([&] { ok = build_window(w, settings); });
    if (!ok) {
      return 0;
    }
  } else {
    run_async([w, settings] { build_window(w, settings); });
  }
  std::lock_guard<std::mutex> guard(state_lock());
  w->handle = next_++;
  windows_[w->handle] = w;
  return w->handle;
}

void GtkDisplay::reshape(int win, const screen::WindowSettings& settings) {
  std::shared_ptr<Win> w = find(win);
  if (!w) {
    return;
  }
  run([&] {
    if (!w->embedded && w->window != nullptr) {
      size_window(w.get(), settings);
      gtk_widget_show(w->window);
    }
  });
}

// Returns when the frame of `serial` is on the screen (or the window is gone).
void wait_painted(Win& w, unsigned long long serial) {
  if (serial == 0 || on_screen_thread()) {
    return;
  }
  std::unique_lock<std::mutex> lock(state_lock());
  const auto until = std::chrono::steady_clock::now() + kShowTimeout;
  while (w.painted < serial && !w.closed && std::chrono::steady_clock::now() < until) {
    wait(lock, [&] { return w.painted >= serial || w.closed || std::chrono::steady_clock::now() >= until; });
  }
}

void GtkDisplay::show(int win, const screen::Pixels& page) {
  std::shared_ptr<Win> w = find(win);
  if (!w || page.rgb == nullptr) {
    return;
  }
  unsigned long long serial = 0;
  run([&] {
    cairo_surface_t* s = page_surface(page.rgb, page.width, page.height, page.stride);
    if (s == nullptr) {
      return;
    }
    if (w->surface != nullptr) {
      cairo_surface_destroy(w->surface);
    }
    w->surface = s;
    w->background = (static_cast<std::uint32_t>(page.rgb[0]) << 16) |
                    (static_cast<std::uint32_t>(page.rgb[1]) << 8) | page.rgb[2];
    {
      std::lock_guard<std::mutex> guard(state_lock());
      serial = ++w->wanted;
    }
    if (w->area == nullptr) {
      serial = 0;  // its widget window is gone
      return;
    }
    gtk_widget_queue_draw(w->area);
    // An iconified window paints nothing: no waiting for it.
    GdkWindow* gw = gtk_widget_get_window(w->window);
    if (gw != nullptr && (gdk_window_get_state(gw) & GDK_WINDOW_STATE_ICONIFIED) != 0) {
      serial = 0;
    }
  });
  wait_painted(*w, serial);
}

void GtkDisplay::show_list(int win, std::shared_ptr<const screen::DisplayList> list) {
  std::shared_ptr<Win> w = find(win);
  if (!w || w->gl == nullptr) {
    return;
  }
  unsigned long long serial = 0;
  run([&] {
    gl_view_set_list(w->gl, std::move(list));
    std::lock_guard<std::mutex> guard(state_lock());
    serial = ++w->wanted;
  });
  wait_painted(*w, serial);
}

void GtkDisplay::set_renderer(int win, std::shared_ptr<screen::Renderer> renderer) {
  std::shared_ptr<Win> w = find(win);
  if (!w) {
    return;
  }
  run_async([w, renderer = std::move(renderer)]() mutable { w->renderer = std::move(renderer); });
}

void GtkDisplay::close(int win) {
  std::shared_ptr<Win> w;
  {
    std::lock_guard<std::mutex> guard(state_lock());
    auto it = windows_.find(win);
    if (it == windows_.end()) {
      return;
    }
    w = it->second;
    windows_.erase(it);
  }
  run([&] {
    if (w->area != nullptr) {
      if (GdkFrameClock* clock = gtk_widget_get_frame_clock(w->area)) {
        g_signal_handlers_disconnect_by_data(clock, w.get());
      }
      if (w->embedded) {
        // The area stays with its widget window.
        g_signal_handlers_disconnect_by_data(w->area, w.get());
        gtk_widget_queue_draw(w->area);
      } else {
        gtk_widget_destroy(w->window);
      }
      w->area = nullptr;
      w->window = nullptr;
    }
    if (w->surface != nullptr) {
      cairo_surface_destroy(w->surface);
      w->surface = nullptr;
    }
    w->renderer.reset();
  });
  mark_closed(w.get());
}

bool GtkDisplay::geometry(int win, int& x, int& y, int& width, int& height) {
  std::shared_ptr<Win> w = find(win);
  if (!w) {
    return false;
  }
  bool open = false;
  run([&] {
    {
      std::lock_guard<std::mutex> guard(state_lock());
      open = !w->closed;
    }
    if (!open || w->area == nullptr) {
      open = false;
      return;
    }
    GdkWindow* gw = gtk_widget_get_window(w->area);
    if (w->embedded && gw != nullptr) {
      gdk_window_get_origin(gw, &x, &y);  // the drawing area on the screen
    } else {
      gtk_window_get_position(GTK_WINDOW(w->window), &x, &y);
    }
    width = gtk_widget_get_allocated_width(w->area);
    height = gtk_widget_get_allocated_height(w->area);
    if (width <= 1 && height <= 1) {
      gtk_window_get_size(GTK_WINDOW(w->window), &width, &height);
    }
  });
  return open;
}

unsigned long GtkDisplay::xid(int win) {
  std::shared_ptr<Win> w = find(win);
  unsigned long id = 0;
  if (w) {
    run([&] {
      GdkWindow* gw = w->window != nullptr ? gtk_widget_get_window(w->window) : nullptr;
      if (gw != nullptr && GDK_IS_X11_WINDOW(gw)) {
        id = gdk_x11_window_get_xid(gw);
      }
    });
  }
  return id;
}

void GtkDisplay::set_cursor(int win, int shape) {
  std::shared_ptr<Win> w = find(win);
  if (!w) {
    return;
  }
  run_async([w, shape] {
    w->cursor = shape;
    apply_cursor(w.get());
  });
}

bool GtkDisplay::input(int win, Track kind, int max_points, InputResult& out) {
  std::shared_ptr<Win> w = find(win);
  out = InputResult{};
  if (!w || on_screen_thread()) {
    return false;  // no waiting for input inside a callback
  }
  {
    std::unique_lock<std::mutex> lock(state_lock());
    if (w->closed) {
      out.closed = true;
      return kind == Track::Dismiss;
    }
    w->result = InputResult{};
    w->track = kind;
    w->max_points = std::max(max_points, 1);
    w->done = false;
    w->dragging = false;
    w->waiting = true;
  }
  run([&] {
    if (w->window != nullptr) {
      gtk_window_present(GTK_WINDOW(w->window));
    }
  });
  std::unique_lock<std::mutex> lock(state_lock());
  wait(lock, [&] { return w->done || w->closed; });
  w->waiting = false;
  out = std::move(w->result);
  out.closed = out.closed || w->closed;
  return kind == Track::Dismiss || !out.closed;
}

int GtkDisplay::pointer(int win, int& x, int& y) {
  std::shared_ptr<Win> w = find(win);
  int buttons = -1;
  if (!w) {
    return -1;
  }
  run([&] {
    GdkWindow* gw = w->area != nullptr ? gtk_widget_get_window(w->area) : nullptr;
    if (gw == nullptr) {
      return;
    }
    GdkSeat* seat = gdk_display_get_default_seat(gdk_window_get_display(gw));
    GdkDevice* dev = seat != nullptr ? gdk_seat_get_pointer(seat) : nullptr;
    if (dev == nullptr) {
      return;
    }
    GdkModifierType mask{};
    int px = 0;
    int py = 0;
    gdk_window_get_device_position(gw, dev, &px, &py, &mask);
    const int aw = gtk_widget_get_allocated_width(w->area);
    const int ah = gtk_widget_get_allocated_height(w->area);
    if (px < 0 || py < 0 || px >= aw || py >= ah) {
      return;
    }
    x = px;
    y = py;
    buttons = ((mask & GDK_BUTTON1_MASK) != 0 ? 1 : 0) | ((mask & GDK_BUTTON2_MASK) != 0 ? 2 : 0) |
              ((mask & GDK_BUTTON3_MASK) != 0 ? 4 : 0);
  });
  return buttons;
}

void GtkDisplay::set_events(int win, screen::WindowEventFn fn, void* owner) {
  std::shared_ptr<Win> w = find(win);
  if (!w) {
    return;
  }
  run_async([w, fn, owner] {
    w->events = fn;
    w->owner = owner;
  });
}

bool GtkDisplay::read_gl(int win, std::vector<std::uint8_t>& rgb, int& w, int& h) {
  std::shared_ptr<Win> win_ = find(win);
  bool ok = false;
  if (win_ && win_->gl != nullptr) {
    run([&] { ok = gl_view_read(win_->gl, rgb, w, h); });
  }
  return ok;
}

}  // namespace
}  // namespace zorvel::gtk

extern "C" __attribute__((visibility("default"))) const zorvel::screen::Module* zorvel_screen_module() {
  static const zorvel::screen::Module m{zorvel::screen::kModuleVersion, &zorvel::gtk::the_display(),
                                        zorvel::gtk::widgets()};
  return &m;
}
