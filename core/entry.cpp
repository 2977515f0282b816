#include "core/entry.h"

#include "core/global_block.h"
#include "core/messages.h"
#include "core/process.h"

namespace zorvel {

GlobalBlock* enter(int lo, int hi, const char* name) {
  bool created = false;
  GlobalBlock* g = fetch_or_create(created);
  g->msg.routine = name;
  const int level = g->core.level;
  if (level >= lo && level <= hi) {
    return g;
  }
  if (level == 0) {
    // So that the warning is seen even when unit(0) switched messages off.
    g->msg.output = 6;
  }
  // A routine of 3D axis systems inside the 2D one of graf3.
  const bool graf3 = level == 2 && lo == 3 && g->axes.graf_serial != 0 &&
                     g->contours.colour.graf3_serial == g->axes.graf_serial;
  warn(*g, graf3 ? 35 : 3, level);
  return nullptr;
}

GlobalBlock* enter_relaxed(const char* name) {
  GlobalBlock* g = find_block();
  if (g == nullptr) {
    // A new block starts at level 0: the full check creates it and gives warning 3.
    enter(1, 3, name);
    return find_block();
  }
  g->msg.routine = name;
  if (g->core.level == 0) {
    warn(*g, 3, 0);
  }
  return g;
}

void null_argument(GlobalBlock& g, const char* argument) { warn(g, 2, std::string_view(argument)); }

void internal_failure(GlobalBlock* g) noexcept {
  try {
    if (g == nullptr) {
      g = find_block();
    }
    if (g != nullptr) {
      warn(*g, 53);
    }
  } catch (...) {
    // Nothing more can be done without memory.
  }
}

}  // namespace zorvel
