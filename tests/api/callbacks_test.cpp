// The callback routines through their C entries, as a C program calls them: the functions
// are stored where the widget, window and surface code finds them, and can be called.

#include <gtest/gtest.h>

#include "core/callbacks.h"
#include "core/global_block.h"
#include "core/process.h"
#include "zorvel.h"

namespace {

int calls[3] = {0, 0, 0};  // of on_button, on_cell and on_value, with what they received
int seen = 0;

void on_button(int id) {
  ++calls[0];
  seen = id;
}
void on_other(int id) { seen = -id; }
void on_cell(int id, int row, int col) {
  ++calls[1];
  seen = id * 10000 + row * 100 + col;
}
void on_value(int id, int value) {
  ++calls[2];
  seen = id + value;
}
void on_window(int id, int nx, int ny, int nw, int nh) { seen = id + nx + ny + nw + nh; }
double plane(double x, double y) { return 2 * x + y; }

TEST(Callbacks, StoredByTheCEntriesAndCallable) {
  // Catches: a routine that stores nothing or in the wrong place, a widget registered
  // twice taking a second entry or keeping its old kind, a table that grows past its
  // capacity, an unknown widget that does not report through the first, and a null
  // function that is stored.
  swgcbk(10, on_button);
  swgcb2(11, on_cell);
  swgcb3(12, on_value);
  wincbk(on_window);
  surfun(plane, 10, 0.5, 10, 0.5);
  const zorvel::GlobalBlock* g = zorvel::find_block();
  ASSERT_NE(g, nullptr);
  const zorvel::CallbackState& s = g->callbacks;
  ASSERT_EQ(s.widget_count, 3);

  zorvel::find_widget_callback(s, 10)->on_event(10);
  zorvel::find_widget_callback(s, 11)->on_cell(11, 2, 3);
  EXPECT_EQ(seen, 110203);
  zorvel::find_widget_callback(s, 12)->on_value(12, 30);
  EXPECT_EQ(seen, 42);
  zorvel::find_widget_callback(s, 99)->on_event(99);  // no entry of its own: the first
  EXPECT_EQ(seen, 99);
  EXPECT_EQ(calls[0], 2);
  EXPECT_EQ(calls[1], 1);
  EXPECT_EQ(calls[2], 1);
  s.window(1, 2, 3, 4, 5);
  EXPECT_EQ(seen, 15);
  EXPECT_EQ(s.surface(1.5, -1.0), 2.0);

  swgcbk(11, on_other);  // the table widget becomes a button
  EXPECT_EQ(s.widget_count, 3);
  const zorvel::WidgetCallback* w = zorvel::find_widget_callback(s, 11);
  EXPECT_EQ(w->on_cell, nullptr);
  w->on_event(11);
  EXPECT_EQ(seen, -11);

  for (int id = 100; s.widget_count < zorvel::kMaxWidgetCallbacks; ++id) {
    swgcbk(id, on_other);
  }
  swgcbk(5000, on_other);
  EXPECT_EQ(s.widget_count, zorvel::kMaxWidgetCallbacks);
  EXPECT_EQ(zorvel::find_widget_callback(s, 5000)->id, 10);

  const int warnings = g->msg.warnings;
  swgcbk(10, nullptr);
  surfun(nullptr, 10, 0.5, 10, 0.5);
  EXPECT_EQ(g->msg.warnings, warnings + 2);
  EXPECT_EQ(zorvel::find_widget_callback(s, 10)->on_event, on_button);
  EXPECT_EQ(s.surface, plane);
}

}  // namespace
