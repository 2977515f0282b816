// The callback routines: each stores the program's function in the block's CallbackState.
// A null function is refused by the generated entry (warning 2) before it gets here.

#include "core/callbacks.h"

#include "api_decl.h"
#include "core/global_block.h"

namespace zorvel {
namespace {

// The widget's entry, emptied for the new callback: the existing one for `id`, else a new
// one at the end; null after warning 291 when the table is full.
WidgetCallback* widget_entry(GlobalBlock& g, int id) {
  CallbackState& s = g.callbacks;
  for (int i = 0; i < s.widget_count; ++i) {
    WidgetCallback& w = s.widgets[static_cast<std::size_t>(i)];
    if (w.id == id) {
      w = WidgetCallback{id};
      return &w;
    }
  }
  if (s.widget_count >= kMaxWidgetCallbacks) {
    warn(g, 291, id);
    return nullptr;
  }
  WidgetCallback& w = s.widgets[static_cast<std::size_t>(s.widget_count++)];
  w = WidgetCallback{id};
  return &w;
}

}  // namespace

const WidgetCallback* find_widget_callback(const CallbackState& s, int id) {
  if (s.widget_count == 0) {
    return nullptr;
  }
  for (int i = 0; i < s.widget_count; ++i) {
    if (s.widgets[static_cast<std::size_t>(i)].id == id) {
      return &s.widgets[static_cast<std::size_t>(i)];
    }
  }
  return &s.widgets[0];
}

namespace api {

void swgcbk(GlobalBlock& g, int id, zorvel_widget_cb cfun) {
  if (WidgetCallback* w = widget_entry(g, id)) {
    w->on_event = cfun;
  }
}

void swgcb2(GlobalBlock& g, int id, zorvel_table_cb cfun) {
  if (WidgetCallback* w = widget_entry(g, id)) {
    w->on_cell = cfun;
  }
}

void swgcb3(GlobalBlock& g, int id, zorvel_value_cb cfun) {
  if (WidgetCallback* w = widget_entry(g, id)) {
    w->on_value = cfun;
  }
}

void wincbk(GlobalBlock& g, zorvel_window_cb cfun) { g.callbacks.window = cfun; }

}  // namespace api
}  // namespace zorvel
