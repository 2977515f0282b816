#pragma once
// The screen layer's interface between the library and the screen module
// (libzorvel_screen.so, built from screen/gtk/ over GTK 3), which owns the display and
// runs the toolkit on a thread of its own. The library loads the module at the first use
// of a screen (screen/module.cpp); without it (a build without GTK 3, Windows) screen
// devices give warning 183 and the screen routines warning 222.
//
// A call may come from any thread of the program: the module runs it on its screen
// thread and waits for it. Calls made on the screen thread itself (from a callback) run
// at once. Nothing here throws.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "screen/display_list.h"

namespace zorvel::screen {

// Raised by the module's entry when the library and the module were built apart.
inline constexpr int kModuleVersion = 2;

// A page of pixels: rows from the top, 3 bytes (RGB) per pixel, `stride` bytes apart.
struct Pixels {
  const std::uint8_t* rgb = nullptr;
  int width = 0;
  int height = 0;
  std::size_t stride = 0;
};

// Draws a window's plot again at another size (after a resize). Called on the screen
// thread; the pixels stay valid until the next call or the renderer's end.
class Renderer {
 public:
  virtual ~Renderer() = default;
  virtual Pixels render(int width, int height) = 0;
};

struct WindowSettings {
  int x = 0;  // upper left corner on the screen ...
  int y = 0;
  bool placed = false;  // ... when set; else the window manager places it
  int width = 853;      // the drawing area in pixels
  int height = 603;
  std::string title = "Zorvel";
  bool gl = false;  // drawn through OpenGL from a display list (show_list)
  int embed = 0;    // a shown widget window whose Draw widget the plot draws in (wgdraw)
};

// What an input request waits for.
enum class Track {
  Click,      // one click of any button
  Clicks,     // clicks until the right button, Return, or max points
  Path,       // the pointer's path while the left button is held
  Line,       // a line dragged with the left button (rubber band)
  Rectangle,  // a rectangle dragged with the left button
  Key,        // one key
  Dismiss,    // the end of a plot: Return, a click, or closing the window
};

struct InputResult {
  std::vector<int> xs;  // window pixels
  std::vector<int> ys;
  int key = 0;          // Track::Key: Unicode of the key (Return 13, Escape 27)
  int ended_by = 0;     // Clicks, Path: 0 right button, Return or release; 1 max points
  bool closed = false;  // the window was closed while waiting
};

// Window events for wincbk: the window's number, position and size (0 x 0 when closed),
// and -1 as x when a plot starts in it.
using WindowEventFn = void (*)(void* owner, int id, int x, int y, int w, int h);

class Display {
 public:
  virtual ~Display() = default;
  // Opens the display on the first call; false when it cannot be opened ($DISPLAY).
  virtual bool open() = 0;
  virtual void screen_size(int& w, int& h) = 0;

  // A new window; handles start at 1 and are never reused; 0 on failure (no GL context
  // for settings.gl: the caller draws in a plain window instead). `id` is the number wincbk
  // reports.
  virtual int create(const WindowSettings& settings, int id) = 0;
  // A new plot in an existing window: its title, and its size when it differs.
  virtual void reshape(int win, const WindowSettings& settings) = 0;
  // Copies the page and returns when it is on the screen.
  virtual void show(int win, const Pixels& page) = 0;
  // GL windows: the list drawn from now on (shared, not changed afterwards).
  virtual void show_list(int win, std::shared_ptr<const DisplayList> list) = 0;
  // What draws the window again at another size; null: the page stays as it is.
  virtual void set_renderer(int win, std::shared_ptr<Renderer> renderer) = 0;
  virtual void close(int win) = 0;
  // Position and size of the window's drawing area; false when it is closed.
  virtual bool geometry(int win, int& x, int& y, int& w, int& h) = 0;
  virtual unsigned long xid(int win) = 0;
  // Cursor shape while input is awaited: 0 arrow, 1 cross, 2 lines across the window.
  virtual void set_cursor(int win, int shape) = 0;
  // Waits for the input; false when the window is gone (closed before or during it).
  virtual bool input(int win, Track kind, int max_points, InputResult& out) = 0;
  // The pointer now: the buttons held (1 left, 2 middle, 4 right), -1 outside.
  virtual int pointer(int win, int& x, int& y) = 0;
  virtual void set_events(int win, WindowEventFn fn, void* owner) = 0;
  // GL windows: the pixels drawn last (tests); false without.
  virtual bool read_gl(int win, std::vector<std::uint8_t>& rgb, int& w, int& h) = 0;
};

class Widgets;  // screen/widget_backend.h

// What the module's entry returns.
struct Module {
  int version = kModuleVersion;
  Display* display = nullptr;
  Widgets* widgets = nullptr;
};

}  // namespace zorvel::screen

// The module's entry point (looked up by name).
extern "C" const zorvel::screen::Module* zorvel_screen_module();
