#pragma once
// The screen windows of a block: the settings of window, winsiz's neighbours, wintit,
// winmod and csrtyp, and the windows themselves, which stay open between plots
// ("XWND" is one window reused by every plot, "XWIN" and "XWI1".."XWI8" are numbered
// windows kept apart) until delglb or thrfin closes them.

#include <array>
#include <memory>
#include <string>

#include "screen/widget_state.h"

namespace zorvel {

struct GlobalBlock;

namespace screen {
class BlockWindows;  // screen/windows.cpp
}

struct ScreenState {
  int x = 0;  // window: upper left corner on the screen ...
  int y = 0;
  bool placed = false;           // ... when set
  std::string title = "Zorvel";  // wintit
  int end_mode = 0;              // winmod: 0 STAN (wait), 1 HOLD, 2 NONE (close)
  int cursor = 0;                // csrtyp: 0 ARRO, 1 CROS, 2 HAIR
  int embed = 0;                 // the open plot draws in the Draw widget of this shown
                                 //   widget window (wgdraw), 0: in a window of its own
  // The open windows; created at the first screen plot.
  std::unique_ptr<screen::BlockWindows> windows;
  WidgetState widgets;  // wgini .. wgfin and the values kept after it

  ScreenState();
  ScreenState(const ScreenState&) = delete;
  ScreenState& operator=(const ScreenState&) = delete;
  ~ScreenState();  // closes the windows
};

}  // namespace zorvel
