#pragma once
// The widget toolkit of the screen module: widget windows and modal dialogs. The library
// keeps every widget's description and value (screen/widget_state.h) and hands the
// module the whole tree when wgfin shows it; the module builds the window, reports what
// the user changes through a WidgetEventFn, and takes the program's changes (swg*
// routines called from a callback) through update().
//
// Threads: every call may come from any thread and runs on the screen thread, except
// wait(), which blocks the calling thread and must not be called on the screen thread.
// Events are raised on the screen thread, with no lock of the module held, so that the
// handler may call back into the module (update(), dialogs). Nothing here throws.

#include <string>
#include <vector>

namespace zorvel::screen {

enum class WidgetKind {
  Window,      // wgini: the top container
  Box,         // wgbas
  Label,       // wglab
  PushButton,  // wgpbut
  Check,       // wgbut
  Text,        // wgtxt
  List,        // wglis
  DropList,    // wgdlis
  Radio,       // wgbox
  Scale,       // wgscl
  File,        // wgfil
  Table,       // wgtbl
  Menu,        // wgpop
  MenuEntry,   // wgapp
  Draw,        // wgdraw
  Ok,          // wgok
  Quit,        // wgquit
};

// How a container stacks its children.
enum class Layout { Vertical, Horizontal, Form };

// What the program may do with a widget (swgatt "STAT").
enum class WidgetStatus { Active, Inactive, Invisible };

// One widget as the library describes it. Ids are 1-based positions in the tree's list;
// a parent always comes before its children.
struct WidgetNode {
  int id = 0;
  int parent = 0;  // 0 for the window
  WidgetKind kind = WidgetKind::Label;
  Layout layout = Layout::Vertical;  // Window, Box
  WidgetStatus status = WidgetStatus::Active;
  std::string label;               // label, button, menu and scale texts
  std::vector<std::string> items;  // List, DropList, Radio
  int ival = 0;                    // Check: 0/1; List, DropList, Radio: the item, 1-based (0 none)
  double xmin = 0.0;               // Scale
  double xmax = 1.0;
  double xval = 0.0;
  int digits = 0;    // Scale: decimals shown
  std::string text;  // Text: the field; File: the file name
  std::string mask;  // File: a pattern such as "*.dat" ("" for all files)
  int rows = 0;      // Table
  int cols = 0;
  std::vector<std::string> cells;  // Table: row by row, the texts shown
};

struct WidgetTree {
  std::string title;
  int width = 0;  // 0: as large as the widgets need
  int height = 0;
  std::vector<WidgetNode> nodes;  // [0] is the Window
};

// A change the user made, raised on the screen thread: the library stores the new value and, when
// `fire` is set, runs the program's callback.
struct WidgetEvent {
  int id = 0;
  bool fire = false;  // a press, a selection, Return in a field, a chosen menu entry
  int ival = 0;       // Check, List, DropList, Radio
  double xval = 0.0;  // Scale
  std::string text;   // Text, File; Table: the cell's text
  int row = 0;        // Table: the cell, 1-based
  int col = 0;
};
using WidgetEventFn = void (*)(void* owner, const WidgetEvent& e);

// How a widget window ended.
enum class WidgetEnd { Closed, Ok, Quit };

class Widgets {
 public:
  virtual ~Widgets() = default;

  // Builds and shows the window; the handle (> 0) or 0 when it cannot be made. `fn` is
  // called with `owner` for every change from the start of wait() until close().
  virtual int show(const WidgetTree& settings, WidgetEventFn fn, void* owner) = 0;
  // Blocks the calling thread (not the screen thread) until OK, Quit or the window's
  // closing; an unknown handle ends at once as Closed.
  virtual WidgetEnd wait(int handle) = 0;
  // Shows the node's value, label and status in its widget (the program set them). Raises
  // no event.
  virtual void update(int handle, const WidgetNode& node) = 0;
  // Destroys the window; no event is raised afterwards.
  virtual void close(int handle) = 0;
  // The size of the window's Draw widget in pixels; false without one. Screen plots of
  // the block draw in it while the window is shown (WindowSettings::embed).
  virtual bool draw_size(int handle, int& w, int& h) = 0;

  // Modal dialogs titled `title`, from any thread (a callback included); each returns
  // false when the user cancels or closes it. Texts may hold several lines ("\n"); isel
  // and chosen are 1-based (0: nothing chosen); mask as for File widgets.
  virtual void message(const std::string& title, const std::string& text) = 0;
  virtual bool question(const std::string& title, const std::string& text, bool yes_default,
                        bool& yes) = 0;
  virtual bool choose(const std::string& title, const std::string& label,
                      const std::vector<std::string>& items, int isel, int& chosen) = 0;
  virtual bool ask_text(const std::string& title, const std::string& label,
                        const std::string& initial, std::string& text) = 0;
  virtual bool ask_file(const std::string& title, const std::string& initial,
                        const std::string& mask, std::string& file) = 0;
};

}  // namespace zorvel::screen
