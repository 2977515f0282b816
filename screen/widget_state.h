#pragma once
// The widgets of a block (screen/widgets.cpp): the tree between wgini and wgfin, whose
// values stay readable after wgfin until the next wgini, and the settings of the next
// widget window (swgtit, swgsiz).

#include <string>
#include <string_view>
#include <vector>

#include "screen/widget_backend.h"

namespace zorvel {

struct WidgetState {
  enum class Phase {
    None,      // no wgini yet, or the block ended
    Building,  // after wgini: widgets may be created
    Shown,     // in wgfin: the window is on the screen
    Done,      // wgfin returned: values readable, nothing more created
    NoScreen,  // wgini found no screen (warning 222): the block is skipped quietly
  };
  Phase phase = Phase::None;
  std::vector<screen::WidgetNode> nodes;  // id i is nodes[i - 1]
  int handle = 0;                         // the module's window while Shown
  std::string title = "Zorvel";           // swgtit
  int width = 0;                          // swgsiz (0: as the widgets need)
  int height = 0;
};

struct GlobalBlock;

namespace screen {

// The items of a list joined by "|" ("" has none).
std::vector<std::string> split_items(std::string_view clis);

// The module's widgets on an open display; null after warning 222.
Widgets* widget_toolkit(GlobalBlock& g);

}  // namespace screen

}  // namespace zorvel
