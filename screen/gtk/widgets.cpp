// The widget windows and dialogs of the module over GTK 3. A window is built from the
// library's tree in one go; its signal handlers turn what the user does into WidgetEvents
// for the library, and update() shows what the program set (with the handlers muted, so
// that a program's change never comes back to it as the user's).

#include "screen/gtk/widgets.h"

#include <gtk/gtk.h>

#include <cmath>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "screen/gtk/thread.h"
#include "screen/widget_backend.h"

namespace zorvel::gtk {
namespace {

using screen::WidgetEnd;
using screen::WidgetEvent;
using screen::WidgetKind;
using screen::WidgetNode;

constexpr int kSpacing = 4;
constexpr int kDrawWidth = 400;  // the size a drawing area asks for
constexpr int kDrawHeight = 300;

struct Shown;

// What a signal handler needs: the window, the widget and, for tables, the cell.
struct Slot {
  Shown* shown = nullptr;
  int id = 0;
  int row = 0;  // Table cell, 1-based; Radio: the item
  int col = 0;
};

// One widget window (screen thread, apart from the end state).
struct Shown {
  int handle = 0;
  GtkWidget* window = nullptr;
  screen::WidgetEventFn fn = nullptr;
  void* owner = nullptr;
  std::vector<WidgetKind> kinds;                 // by id - 1
  std::map<int, GtkWidget*> outer;               // what status hides or greys
  std::map<int, GtkWidget*> inner;               // the widget that holds the value
  std::map<int, GtkWidget*> labels;              // Scale, File: the label beside
  std::map<int, std::vector<GtkWidget*>> parts;  // Radio buttons, List rows, Table cells
  std::vector<std::unique_ptr<Slot>> slots;
  int muted = 0;         // > 0 while update() changes widgets
  bool closing = false;  // close() has begun: no more events
  // Under state_lock():
  bool waiting = false;  // wait() has begun: the library is ready for events
  bool ended = false;
  WidgetEnd end = WidgetEnd::Closed;
};

class GtkWidgets final : public screen::Widgets {
 public:
  int show(const screen::WidgetTree& settings, screen::WidgetEventFn fn, void* owner) override;
  WidgetEnd wait(int handle) override;
  void update(int handle, const WidgetNode& node) override;
  void close(int handle) override;
  bool draw_size(int handle, int& w, int& h) override;
  // The Draw widget of a shown window (screen thread); null without one.
  GtkWidget* draw_widget(int handle);

  void message(const std::string& title, const std::string& text) override;
  bool question(const std::string& title, const std::string& text, bool yes_default,
                bool& yes) override;
  bool choose(const std::string& title, const std::string& label,
              const std::vector<std::string>& items, int isel, int& chosen) override;
  bool ask_text(const std::string& title, const std::string& label, const std::string& initial,
                std::string& text) override;
  bool ask_file(const std::string& title, const std::string& initial, const std::string& mask,
                std::string& file) override;

 private:
  std::shared_ptr<Shown> find(int handle) {
    std::lock_guard<std::mutex> guard(state_lock());
    auto it = windows_.find(handle);
    return it != windows_.end() ? it->second : nullptr;
  }
  std::map<int, std::shared_ptr<Shown>> windows_;  // under state_lock()
  int next_ = 1;
};

// GTK takes UTF-8 only: the program's texts (which may be Latin-1 or cut in a character)
// get U+FFFD for what is not.
std::string valid(const std::string& text) {
  if (g_utf8_validate(text.data(), static_cast<gssize>(text.size()), nullptr) != FALSE) {
    return text;
  }
  gchar* v = g_utf8_make_valid(text.data(), static_cast<gssize>(text.size()));
  std::string out = v;
  g_free(v);
  return out;
}

WidgetNode valid(const WidgetNode& n) {
  WidgetNode v = n;
  v.label = valid(n.label);
  v.text = valid(n.text);
  for (std::string& item : v.items) {
    item = valid(item);
  }
  for (std::string& cell : v.cells) {
    cell = valid(cell);
  }
  return v;
}

// Events
// ======

// Whether a change goes to the library: only while it waits for the window (before, it
// is still setting up what the events change) and not for the program's own changes.
bool live(const Shown* s) {
  if (s->muted > 0 || s->closing) {
    return false;
  }
  std::lock_guard<std::mutex> guard(state_lock());
  return s->waiting && !s->ended;
}

void raise(Shown* s, const WidgetEvent& e) {
  if (live(s)) {
    s->fn(s->owner, e);
  }
}

void end_window(Shown* s, WidgetEnd how) {
  {
    std::lock_guard<std::mutex> guard(state_lock());
    if (s->ended) {
      return;
    }
    s->ended = true;
    s->end = how;
  }
  notify();
}

Slot* slot(Shown* s, int id, int row = 0, int col = 0) {
  s->slots.push_back(std::make_unique<Slot>(Slot{s, id, row, col}));
  return s->slots.back().get();
}

void on_pressed(GtkWidget*, gpointer data) {
  auto* sl = static_cast<Slot*>(data);
  WidgetEvent e;
  e.id = sl->id;
  e.fire = true;
  raise(sl->shown, e);
}

void on_ok(GtkWidget*, gpointer data) { end_window(static_cast<Shown*>(data), WidgetEnd::Ok); }

void on_quit(GtkWidget*, gpointer data) { end_window(static_cast<Shown*>(data), WidgetEnd::Quit); }

gboolean on_delete(GtkWidget*, GdkEvent*, gpointer data) {
  end_window(static_cast<Shown*>(data), WidgetEnd::Closed);
  return TRUE;  // close() destroys it
}

void on_toggled(GtkToggleButton* b, gpointer data) {
  auto* sl = static_cast<Slot*>(data);
  WidgetEvent e;
  e.id = sl->id;
  e.fire = true;
  if (sl->shown->kinds[static_cast<std::size_t>(sl->id - 1)] == WidgetKind::Radio) {
    if (gtk_toggle_button_get_active(b) == FALSE) {
      return;  // the button that lost the choice: its partner reports
    }
    e.ival = sl->row;
  } else {
    e.ival = gtk_toggle_button_get_active(b) != FALSE ? 1 : 0;
  }
  raise(sl->shown, e);
}

void on_text_changed(GtkEditable* ed, gpointer data) {
  auto* sl = static_cast<Slot*>(data);
  WidgetEvent e;
  e.id = sl->id;
  e.text = gtk_entry_get_text(GTK_ENTRY(ed));
  e.row = sl->row;
  e.col = sl->col;
  raise(sl->shown, e);
}

void on_text_activated(GtkEntry* entry, gpointer data) {
  auto* sl = static_cast<Slot*>(data);
  WidgetEvent e;
  e.id = sl->id;
  e.fire = true;
  e.text = gtk_entry_get_text(entry);
  e.row = sl->row;
  e.col = sl->col;
  raise(sl->shown, e);
}

void on_row_selected(GtkListBox*, GtkListBoxRow* row, gpointer data) {
  auto* sl = static_cast<Slot*>(data);
  WidgetEvent e;
  e.id = sl->id;
  e.fire = true;
  e.ival = row != nullptr ? gtk_list_box_row_get_index(row) + 1 : 0;
  raise(sl->shown, e);
}

void on_combo_changed(GtkComboBox* c, gpointer data) {
  auto* sl = static_cast<Slot*>(data);
  WidgetEvent e;
  e.id = sl->id;
  e.fire = true;
  e.ival = gtk_combo_box_get_active(c) + 1;
  raise(sl->shown, e);
}

void on_scale_changed(GtkRange* r, gpointer data) {
  auto* sl = static_cast<Slot*>(data);
  WidgetEvent e;
  e.id = sl->id;
  e.fire = true;
  e.xval = gtk_range_get_value(r);
  raise(sl->shown, e);
}

// Shell patterns such as "*.dat" (several joined by ";"); "" or "*" for every file.
void add_filter(GtkFileChooser* chooser, const std::string& mask) {
  if (mask.empty() || mask == "*") {
    return;
  }
  GtkFileFilter* f = gtk_file_filter_new();
  gtk_file_filter_set_name(f, valid(mask).c_str());
  std::size_t start = 0;
  while (start <= mask.size()) {
    const std::size_t end = std::min(mask.find(';', start), mask.size());
    if (end > start) {
      gtk_file_filter_add_pattern(f, mask.substr(start, end - start).c_str());
    }
    start = end + 1;
  }
  gtk_file_chooser_add_filter(chooser, f);
  GtkFileFilter* all = gtk_file_filter_new();
  gtk_file_filter_set_name(all, "*");
  gtk_file_filter_add_pattern(all, "*");
  gtk_file_chooser_add_filter(chooser, all);
}

// A file chooser run to its end: true with the chosen file.
bool run_chooser(GtkWindow* parent, const std::string& title, const std::string& initial,
                 const std::string& mask, std::string& file) {
  const std::string name = title.empty() ? "File" : valid(title);
  GtkWidget* d =
      gtk_file_chooser_dialog_new(name.c_str(), parent, GTK_FILE_CHOOSER_ACTION_OPEN, "_Cancel",
                                  GTK_RESPONSE_CANCEL, "_Open", GTK_RESPONSE_ACCEPT, nullptr);
  auto* chooser = GTK_FILE_CHOOSER(d);
  add_filter(chooser, mask);
  if (!initial.empty()) {
    if (g_file_test(initial.c_str(), G_FILE_TEST_EXISTS)) {
      gtk_file_chooser_set_filename(chooser, initial.c_str());
    } else {
      gtk_file_chooser_set_current_name(chooser, initial.c_str());
    }
  }
  bool ok = false;
  if (gtk_dialog_run(GTK_DIALOG(d)) == GTK_RESPONSE_ACCEPT) {
    if (gchar* name = gtk_file_chooser_get_filename(chooser)) {
      file = name;
      g_free(name);
      ok = true;
    }
  }
  gtk_widget_destroy(d);
  return ok;
}

void on_browse(GtkWidget*, gpointer data) {
  auto* sl = static_cast<Slot*>(data);
  Shown* s = sl->shown;
  if (!live(s)) {
    return;
  }
  GtkWidget* entry = s->inner[sl->id];
  GtkWidget* label = s->labels[sl->id];
  std::string file;
  const gchar* mask = static_cast<const gchar*>(g_object_get_data(G_OBJECT(entry), "zorvel-mask"));
  if (run_chooser(GTK_WINDOW(s->window), gtk_label_get_text(GTK_LABEL(label)),
                  gtk_entry_get_text(GTK_ENTRY(entry)), mask != nullptr ? mask : "", file) &&
      live(s)) {
    gtk_entry_set_text(GTK_ENTRY(entry), file.c_str());  // stores it through "changed"
    on_pressed(nullptr, data);
  }
}

// Building
// ========

GtkWidget* box_of(screen::Layout layout) {
  // "FORM" has no positions of its own here: its children are stacked as "VERT".
  return gtk_box_new(
      layout == screen::Layout::Horizontal ? GTK_ORIENTATION_HORIZONTAL : GTK_ORIENTATION_VERTICAL,
      kSpacing);
}

void set_status(GtkWidget* w, screen::WidgetStatus st) {
  gtk_widget_set_sensitive(w, st == screen::WidgetStatus::Active);
  gtk_widget_set_visible(w, st != screen::WidgetStatus::Invisible);
}

void fill_list(Shown* s, const WidgetNode& n, GtkWidget* list) {
  for (const std::string& item : n.items) {
    GtkWidget* label = gtk_label_new(item.c_str());
    gtk_widget_set_halign(label, GTK_ALIGN_START);
    gtk_list_box_insert(GTK_LIST_BOX(list), label, -1);
  }
  if (n.ival > 0) {
    gtk_list_box_select_row(GTK_LIST_BOX(list),
                            gtk_list_box_get_row_at_index(GTK_LIST_BOX(list), n.ival - 1));
  }
  g_signal_connect(list, "row-selected", G_CALLBACK(on_row_selected), slot(s, n.id));
}

GtkWidget* make_radio(Shown* s, const WidgetNode& n) {
  GtkWidget* box = gtk_box_new(GTK_ORIENTATION_VERTICAL, 0);
  GtkWidget* first = nullptr;
  std::vector<GtkWidget*>& buttons = s->parts[n.id];
  for (std::size_t i = 0; i < n.items.size(); ++i) {
    GtkWidget* b = first == nullptr ? gtk_radio_button_new_with_label(nullptr, n.items[i].c_str())
                                    : gtk_radio_button_new_with_label_from_widget(
                                          GTK_RADIO_BUTTON(first), n.items[i].c_str());
    first = first != nullptr ? first : b;
    gtk_toggle_button_set_active(GTK_TOGGLE_BUTTON(b), static_cast<int>(i) + 1 == n.ival);
    g_signal_connect(b, "toggled", G_CALLBACK(on_toggled), slot(s, n.id, static_cast<int>(i) + 1));
    gtk_box_pack_start(GTK_BOX(box), b, FALSE, FALSE, 0);
    buttons.push_back(b);
  }
  return box;
}

GtkWidget* make_scale(Shown* s, const WidgetNode& n) {
  GtkWidget* box = gtk_box_new(GTK_ORIENTATION_HORIZONTAL, kSpacing);
  GtkWidget* label = gtk_label_new(n.label.c_str());
  const double step = std::pow(10.0, -n.digits);
  GtkWidget* scale = gtk_scale_new_with_range(GTK_ORIENTATION_HORIZONTAL, n.xmin, n.xmax, step);
  gtk_scale_set_digits(GTK_SCALE(scale), n.digits);
  gtk_range_set_increments(GTK_RANGE(scale), step, step * 10.0);
  gtk_range_set_value(GTK_RANGE(scale), n.xval);
  gtk_widget_set_size_request(scale, 200, -1);
  gtk_widget_set_hexpand(scale, TRUE);
  g_signal_connect(scale, "value-changed", G_CALLBACK(on_scale_changed), slot(s, n.id));
  gtk_box_pack_start(GTK_BOX(box), label, FALSE, FALSE, 0);
  gtk_box_pack_start(GTK_BOX(box), scale, TRUE, TRUE, 0);
  s->inner[n.id] = scale;
  s->labels[n.id] = label;
  return box;
}

GtkWidget* make_entry(Shown* s, int id, const std::string& text, int row = 0, int col = 0) {
  GtkWidget* e = gtk_entry_new();
  gtk_entry_set_text(GTK_ENTRY(e), text.c_str());
  g_signal_connect(e, "changed", G_CALLBACK(on_text_changed), slot(s, id, row, col));
  g_signal_connect(e, "activate", G_CALLBACK(on_text_activated), slot(s, id, row, col));
  return e;
}

GtkWidget* make_file(Shown* s, const WidgetNode& n) {
  GtkWidget* box = gtk_box_new(GTK_ORIENTATION_HORIZONTAL, kSpacing);
  GtkWidget* label = gtk_label_new(n.label.c_str());
  GtkWidget* entry = make_entry(s, n.id, n.text);
  g_object_set_data_full(G_OBJECT(entry), "zorvel-mask", g_strdup(n.mask.c_str()), g_free);
  GtkWidget* button = gtk_button_new_with_label("...");
  g_signal_connect(button, "clicked", G_CALLBACK(on_browse), slot(s, n.id));
  gtk_box_pack_start(GTK_BOX(box), label, FALSE, FALSE, 0);
  gtk_box_pack_start(GTK_BOX(box), entry, TRUE, TRUE, 0);
  gtk_box_pack_start(GTK_BOX(box), button, FALSE, FALSE, 0);
  s->inner[n.id] = entry;
  s->labels[n.id] = label;
  return box;
}

GtkWidget* make_table(Shown* s, const WidgetNode& n) {
  GtkWidget* grid = gtk_grid_new();
  std::vector<GtkWidget*>& cells = s->parts[n.id];
  for (int r = 0; r < n.rows; ++r) {
    for (int c = 0; c < n.cols; ++c) {
      GtkWidget* e =
          make_entry(s, n.id, n.cells[static_cast<std::size_t>(r * n.cols + c)], r + 1, c + 1);
      gtk_entry_set_width_chars(GTK_ENTRY(e), 8);
      gtk_grid_attach(GTK_GRID(grid), e, c, r, 1, 1);
      cells.push_back(e);
    }
  }
  return grid;
}

// The widget of one node (not the window, menus and their entries); its value widget is
// recorded in s->inner.
GtkWidget* make_widget(Shown* s, const WidgetNode& n) {
  GtkWidget* w = nullptr;
  switch (n.kind) {
    case WidgetKind::Box:
      w = box_of(n.layout);
      break;
    case WidgetKind::Label:
      w = gtk_label_new(n.label.c_str());
      gtk_widget_set_halign(w, GTK_ALIGN_START);
      break;
    case WidgetKind::PushButton:
      w = gtk_button_new_with_label(n.label.c_str());
      g_signal_connect(w, "clicked", G_CALLBACK(on_pressed), slot(s, n.id));
      break;
    case WidgetKind::Check:
      w = gtk_check_button_new_with_label(n.label.c_str());
      gtk_toggle_button_set_active(GTK_TOGGLE_BUTTON(w), n.ival == 1);
      g_signal_connect(w, "toggled", G_CALLBACK(on_toggled), slot(s, n.id));
      break;
    case WidgetKind::Text:
      w = make_entry(s, n.id, n.text);
      break;
    case WidgetKind::List:
      w = gtk_list_box_new();
      fill_list(s, n, w);
      break;
    case WidgetKind::DropList:
      w = gtk_combo_box_text_new();
      for (const std::string& item : n.items) {
        gtk_combo_box_text_append_text(GTK_COMBO_BOX_TEXT(w), item.c_str());
      }
      gtk_combo_box_set_active(GTK_COMBO_BOX(w), n.ival - 1);
      g_signal_connect(w, "changed", G_CALLBACK(on_combo_changed), slot(s, n.id));
      break;
    case WidgetKind::Radio:
      w = make_radio(s, n);
      break;
    case WidgetKind::Scale:
      w = make_scale(s, n);
      break;
    case WidgetKind::File:
      w = make_file(s, n);
      break;
    case WidgetKind::Table:
      w = make_table(s, n);
      break;
    case WidgetKind::Draw:
      // At least 400 x 300, and larger with the window: a plot in it is drawn again at
      // the new size.
      w = gtk_drawing_area_new();
      gtk_widget_set_size_request(w, kDrawWidth, kDrawHeight);
      gtk_widget_set_hexpand(w, TRUE);
      gtk_widget_set_vexpand(w, TRUE);
      break;
    case WidgetKind::Ok:
      w = gtk_button_new_with_label("OK");
      g_signal_connect(w, "clicked", G_CALLBACK(on_ok), s);
      break;
    case WidgetKind::Quit:
      w = gtk_button_new_with_label("Quit");
      g_signal_connect(w, "clicked", G_CALLBACK(on_quit), s);
      break;
    case WidgetKind::Window:
    case WidgetKind::Menu:
    case WidgetKind::MenuEntry:
      break;
  }
  if (s->inner.count(n.id) == 0) {
    s->inner[n.id] = w;
  }
  return w;
}

void build(Shown* s, const screen::WidgetTree& settings) {
  s->window = gtk_window_new(GTK_WINDOW_TOPLEVEL);
  gtk_window_set_title(GTK_WINDOW(s->window), settings.title.c_str());
  if (settings.width > 0 && settings.height > 0) {
    gtk_window_set_default_size(GTK_WINDOW(s->window), settings.width, settings.height);
  }
  g_signal_connect(s->window, "delete-event", G_CALLBACK(on_delete), s);
  GtkWidget* frame = gtk_box_new(GTK_ORIENTATION_VERTICAL, 0);
  GtkWidget* bar = nullptr;
  gtk_container_add(GTK_CONTAINER(s->window), frame);
  std::map<int, GtkWidget*> containers;  // boxes and menus by id
  std::map<int, bool> horizontal;
  for (const WidgetNode& n : settings.nodes) {
    s->kinds.push_back(n.kind);
    GtkWidget* w = nullptr;
    if (n.kind == WidgetKind::Window) {
      w = box_of(n.layout);
      gtk_container_set_border_width(GTK_CONTAINER(w), 6);
      gtk_box_pack_end(GTK_BOX(frame), w, TRUE, TRUE, 0);
      containers[n.id] = w;
      horizontal[n.id] = n.layout == screen::Layout::Horizontal;
      s->outer[n.id] = w;
      continue;
    }
    if (n.kind == WidgetKind::Menu) {
      if (bar == nullptr) {
        bar = gtk_menu_bar_new();
        gtk_box_pack_start(GTK_BOX(frame), bar, FALSE, FALSE, 0);
      }
      w = gtk_menu_item_new_with_label(n.label.c_str());
      GtkWidget* menu = gtk_menu_new();
      gtk_menu_item_set_submenu(GTK_MENU_ITEM(w), menu);
      gtk_menu_shell_append(GTK_MENU_SHELL(bar), w);
      containers[n.id] = menu;
      s->outer[n.id] = w;
      s->inner[n.id] = w;
      continue;
    }
    auto parent = containers.find(n.parent);
    if (parent == containers.end()) {
      continue;  // the library only makes children of containers
    }
    if (n.kind == WidgetKind::MenuEntry) {
      w = gtk_menu_item_new_with_label(n.label.c_str());
      g_signal_connect(w, "activate", G_CALLBACK(on_pressed), slot(s, n.id));
      gtk_menu_shell_append(GTK_MENU_SHELL(parent->second), w);
      s->outer[n.id] = w;
      s->inner[n.id] = w;
      continue;
    }
    w = make_widget(s, n);
    if (w == nullptr) {
      continue;
    }
    // Side by side, widgets share the width; stacked, they keep their height.
    const bool expand = horizontal[n.parent];
    gtk_box_pack_start(GTK_BOX(parent->second), w, expand, TRUE, 0);
    s->outer[n.id] = w;
    if (n.kind == WidgetKind::Box) {
      containers[n.id] = w;
      horizontal[n.id] = n.layout == screen::Layout::Horizontal;
    }
  }
  gtk_widget_show_all(s->window);
  for (const WidgetNode& n : settings.nodes) {
    if (auto it = s->outer.find(n.id);
        it != s->outer.end() && n.status != screen::WidgetStatus::Active) {
      set_status(it->second, n.status);
    }
  }
}

// The Widgets
// ===========

int GtkWidgets::show(const screen::WidgetTree& settings, screen::WidgetEventFn fn, void* owner) {
  if (!start()) {
    return 0;
  }
  auto s = std::make_shared<Shown>();
  s->fn = fn;
  s->owner = owner;
  screen::WidgetTree v;
  v.title = valid(settings.title);
  v.width = settings.width;
  v.height = settings.height;
  for (const WidgetNode& n : settings.nodes) {
    v.nodes.push_back(valid(n));
  }
  run([&] { build(s.get(), v); });
  std::lock_guard<std::mutex> guard(state_lock());
  s->handle = next_++;
  windows_[s->handle] = s;
  return s->handle;
}

WidgetEnd GtkWidgets::wait(int handle) {
  std::shared_ptr<Shown> s = find(handle);
  if (!s) {
    return WidgetEnd::Closed;
  }
  {
    std::lock_guard<std::mutex> guard(state_lock());
    s->waiting = true;
  }
  if (on_screen_thread()) {
    // A widget window opened from a callback: the main loop goes on from here.
    for (;;) {
      {
        std::lock_guard<std::mutex> guard(state_lock());
        if (s->ended) {
          return s->end;
        }
      }
      g_main_context_iteration(nullptr, TRUE);
    }
  }
  std::unique_lock<std::mutex> lock(state_lock());
  gtk::wait(lock, [&s] { return s->ended; });
  return s->end;
}

void GtkWidgets::update(int handle, const WidgetNode& node) {
  std::shared_ptr<Shown> s = find(handle);
  if (!s) {
    return;
  }
  const WidgetNode n = valid(node);
  run([&] {
    auto it = s->inner.find(n.id);
    if (it == s->inner.end() || it->second == nullptr) {
      return;
    }
    GtkWidget* w = it->second;
    ++s->muted;
    switch (n.kind) {
      case WidgetKind::Label:
        gtk_label_set_text(GTK_LABEL(w), n.label.c_str());
        break;
      case WidgetKind::Check:
        gtk_toggle_button_set_active(GTK_TOGGLE_BUTTON(w), n.ival == 1);
        break;
      case WidgetKind::Text:
      case WidgetKind::File:
        gtk_entry_set_text(GTK_ENTRY(w), n.text.c_str());
        break;
      case WidgetKind::List:
        if (n.ival > 0) {
          gtk_list_box_select_row(GTK_LIST_BOX(w),
                                  gtk_list_box_get_row_at_index(GTK_LIST_BOX(w), n.ival - 1));
        } else {
          gtk_list_box_unselect_all(GTK_LIST_BOX(w));
        }
        break;
      case WidgetKind::DropList:
        gtk_combo_box_set_active(GTK_COMBO_BOX(w), n.ival - 1);
        break;
      case WidgetKind::Radio: {
        const std::vector<GtkWidget*>& b = s->parts[n.id];
        if (n.ival >= 1 && static_cast<std::size_t>(n.ival) <= b.size()) {
          gtk_toggle_button_set_active(GTK_TOGGLE_BUTTON(b[static_cast<std::size_t>(n.ival - 1)]),
                                       TRUE);
        }
        break;
      }
      case WidgetKind::Scale:
        gtk_range_set_value(GTK_RANGE(w), n.xval);
        break;
      case WidgetKind::Table: {
        const std::vector<GtkWidget*>& cells = s->parts[n.id];
        for (std::size_t i = 0; i < cells.size() && i < n.cells.size(); ++i) {
          if (n.cells[i] != gtk_entry_get_text(GTK_ENTRY(cells[i]))) {
            gtk_entry_set_text(GTK_ENTRY(cells[i]), n.cells[i].c_str());
          }
        }
        break;
      }
      default:
        break;
    }
    if (auto o = s->outer.find(n.id); o != s->outer.end()) {
      set_status(o->second, n.status);
    }
    --s->muted;
  });
}

void GtkWidgets::close(int handle) {
  std::shared_ptr<Shown> s;
  {
    std::lock_guard<std::mutex> guard(state_lock());
    auto it = windows_.find(handle);
    if (it == windows_.end()) {
      return;
    }
    s = it->second;
    windows_.erase(it);
  }
  run([&] {
    s->closing = true;
    gtk_widget_destroy(s->window);
    // Let the server see the window go before the program carries on.
    while (g_main_context_pending(nullptr)) {
      g_main_context_iteration(nullptr, FALSE);
    }
  });
}

GtkWidget* GtkWidgets::draw_widget(int handle) {
  std::shared_ptr<Shown> s = find(handle);
  if (!s || s->closing) {
    return nullptr;
  }
  for (std::size_t i = 0; i < s->kinds.size(); ++i) {
    if (s->kinds[i] == WidgetKind::Draw) {
      auto it = s->inner.find(static_cast<int>(i) + 1);
      return it != s->inner.end() ? it->second : nullptr;
    }
  }
  return nullptr;
}

bool GtkWidgets::draw_size(int handle, int& w, int& h) {
  bool found = false;
  run([&] {
    GtkWidget* area = draw_widget(handle);
    if (area == nullptr) {
      return;
    }
    // The window may still be on its way to the screen: its size first.
    while (g_main_context_pending(nullptr)) {
      g_main_context_iteration(nullptr, FALSE);
    }
    w = gtk_widget_get_allocated_width(area);
    h = gtk_widget_get_allocated_height(area);
    if (w <= 1 || h <= 1) {
      w = kDrawWidth;
      h = kDrawHeight;
    }
    found = true;
  });
  return found;
}

// Dialogs
// =======

void GtkWidgets::message(const std::string& title, const std::string& text) {
  if (!start()) {
    return;
  }
  run([&] {
    GtkWidget* d = gtk_message_dialog_new(nullptr, GTK_DIALOG_MODAL, GTK_MESSAGE_INFO,
                                          GTK_BUTTONS_OK, "%s", valid(text).c_str());
    gtk_window_set_title(GTK_WINDOW(d), valid(title).c_str());
    gtk_dialog_run(GTK_DIALOG(d));
    gtk_widget_destroy(d);
  });
}

bool GtkWidgets::question(const std::string& title, const std::string& text, bool yes_default,
                          bool& yes) {
  if (!start()) {
    return false;
  }
  int r = GTK_RESPONSE_NONE;
  run([&] {
    GtkWidget* d = gtk_message_dialog_new(nullptr, GTK_DIALOG_MODAL, GTK_MESSAGE_QUESTION,
                                          GTK_BUTTONS_YES_NO, "%s", valid(text).c_str());
    gtk_window_set_title(GTK_WINDOW(d), valid(title).c_str());
    gtk_dialog_set_default_response(GTK_DIALOG(d),
                                    yes_default ? GTK_RESPONSE_YES : GTK_RESPONSE_NO);
    r = gtk_dialog_run(GTK_DIALOG(d));
    gtk_widget_destroy(d);
  });
  if (r != GTK_RESPONSE_YES && r != GTK_RESPONSE_NO) {
    return false;
  }
  yes = r == GTK_RESPONSE_YES;
  return true;
}

// A dialog with OK and Cancel around a label and one widget; true for OK, after read()
// has taken the widget's value (before the dialog and the widget are destroyed).
bool run_form(const std::string& title, const std::string& label, GtkWidget* body,
              const std::function<bool()>& read) {
  GtkWidget* d =
      gtk_dialog_new_with_buttons(valid(title).c_str(), nullptr, GTK_DIALOG_MODAL, "_Cancel",
                                  GTK_RESPONSE_CANCEL, "_OK", GTK_RESPONSE_OK, nullptr);
  gtk_dialog_set_default_response(GTK_DIALOG(d), GTK_RESPONSE_OK);
  GtkWidget* area = gtk_dialog_get_content_area(GTK_DIALOG(d));
  gtk_container_set_border_width(GTK_CONTAINER(area), 6);
  gtk_box_set_spacing(GTK_BOX(area), kSpacing);
  if (!label.empty()) {
    GtkWidget* l = gtk_label_new(valid(label).c_str());
    gtk_widget_set_halign(l, GTK_ALIGN_START);
    gtk_box_pack_start(GTK_BOX(area), l, FALSE, FALSE, 0);
  }
  gtk_box_pack_start(GTK_BOX(area), body, TRUE, TRUE, 0);
  gtk_widget_show_all(d);
  const bool ok = gtk_dialog_run(GTK_DIALOG(d)) == GTK_RESPONSE_OK && read();
  gtk_widget_destroy(d);
  return ok;
}

bool GtkWidgets::choose(const std::string& title, const std::string& label,
                        const std::vector<std::string>& items, int isel, int& chosen) {
  if (!start()) {
    return false;
  }
  bool ok = false;
  run([&] {
    GtkWidget* list = gtk_list_box_new();
    for (const std::string& item : items) {
      GtkWidget* l = gtk_label_new(valid(item).c_str());
      gtk_widget_set_halign(l, GTK_ALIGN_START);
      gtk_list_box_insert(GTK_LIST_BOX(list), l, -1);
    }
    if (isel > 0) {
      gtk_list_box_select_row(GTK_LIST_BOX(list),
                              gtk_list_box_get_row_at_index(GTK_LIST_BOX(list), isel - 1));
    }
    ok = run_form(title, label, list, [&] {
      GtkListBoxRow* row = gtk_list_box_get_selected_row(GTK_LIST_BOX(list));
      if (row == nullptr) {
        return false;
      }
      chosen = gtk_list_box_row_get_index(row) + 1;
      return true;
    });
  });
  return ok;
}

bool GtkWidgets::ask_text(const std::string& title, const std::string& label,
                          const std::string& initial, std::string& text) {
  if (!start()) {
    return false;
  }
  bool ok = false;
  run([&] {
    GtkWidget* entry = gtk_entry_new();
    gtk_entry_set_text(GTK_ENTRY(entry), valid(initial).c_str());
    gtk_entry_set_activates_default(GTK_ENTRY(entry), TRUE);
    ok = run_form(title, label, entry, [&] {
      text = gtk_entry_get_text(GTK_ENTRY(entry));
      return true;
    });
  });
  return ok;
}

bool GtkWidgets::ask_file(const std::string& title, const std::string& initial,
                          const std::string& mask, std::string& file) {
  if (!start()) {
    return false;
  }
  bool ok = false;
  run([&] { ok = run_chooser(nullptr, title, initial, mask, file); });
  return ok;
}

}  // namespace

namespace {

GtkWidgets& the_widgets() {
  static GtkWidgets* w = new GtkWidgets;  // lives as long as the screen thread
  return *w;
}

}  // namespace

screen::Widgets* widgets() { return &the_widgets(); }

GtkWidget* draw_area(int handle) { return the_widgets().draw_widget(handle); }

}  // namespace zorvel::gtk
