#pragma once
// The program's callbacks: the functions of the widgets (swgcbk, swgcb2, swgcb3), of the
// window (wincbk) and the surface function of surfun. The routines only store them; the
// widget, screen and surface code calls them.
//
// The function pointer types are those of the public header (generated from the routine
// table, see api_decl.h).

#include <array>

#include "api_decl.h"

namespace zorvel {

// Capacity of the widget table; a further widget is refused with warning 291.
inline constexpr int kMaxWidgetCallbacks = 100;

// The callback of one widget: exactly one of the three kinds is set, the one of the
// routine that registered it last.
struct WidgetCallback {
  int id = 0;
  zorvel_widget_cb on_event = nullptr;  // swgcbk: buttons, lists and the like: (id)
  zorvel_table_cb on_cell = nullptr;    // swgcb2: tables: (id, row, column)
  zorvel_value_cb on_value = nullptr;   // swgcb3: scales and the like: (id, value)
};

struct CallbackState {
  std::array<WidgetCallback, kMaxWidgetCallbacks> widgets{};
  int widget_count = 0;  // entries in use, in the order of their first registration
  zorvel_window_cb window = nullptr;    // wincbk
  zorvel_surface_fn surface = nullptr;  // surfun: z = f(x, y)
};

// The callback of widget `id`: its own entry, else the first one registered (a widget
// without a callback of its own reports through the first); null when there is none.
const WidgetCallback* find_widget_callback(const CallbackState& s, int id);

}  // namespace zorvel
