// The widget routines. Between wgini and wgfin the block only describes its widgets
// (WidgetState); wgfin hands the tree to the screen module, which shows it and reports
// every change back, so that the values live in the block and stay readable after the
// window is gone. A callback of the program runs on the screen thread while the block's
// thread waits in wgfin; the routines it calls reach the block through a BlockLoan, and
// setters then update the shown widget at once.

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <string>
#include <string_view>

#include "api_decl.h"
#include "core/callbacks.h"
#include "core/global_block.h"
#include "core/keywords.h"
#include "core/messages.h"
#include "core/process.h"
#include "screen/module.h"
#include "screen/widget_state.h"

namespace zorvel {

using screen::Layout;
using screen::WidgetKind;
using screen::WidgetNode;
using Phase = WidgetState::Phase;

namespace {

// Limits of what one widget window may hold (warning 2 beyond).
constexpr std::size_t kMaxWidgets = 1000;
constexpr int kMaxTableSide = 1000;
constexpr int kMaxTableCells = 10000;
constexpr int kMaxDigits = 15;  // decimals of scales and table cells
// Texts kept from the program: labels, fields, item lists.
constexpr std::size_t kMaxText = 4096;
constexpr std::size_t kMaxItems = 1000;

std::string bounded(std::string_view s) { return std::string(s.substr(0, kMaxText)); }

bool is_container(WidgetKind k) { return k == WidgetKind::Window || k == WidgetKind::Box; }

// The layout keyword of wgini and wgbas ("" is "VERT"); false after warning 2.
bool layout_of(GlobalBlock& g, const char* ctyp, Layout& out) {
  if (*ctyp == '\0') {
    out = Layout::Vertical;
    return true;
  }
  const int i = match_keyword(g, "VERT+HORI+FORM", ctyp);
  if (i == 0) {
    return false;
  }
  out = static_cast<Layout>(i - 1);
  return true;
}

// Whether a widget of kind k may go into `parent`: menus into the window's menu bar,
// their entries into menus, everything else into the window and its boxes.
bool fits_in(const WidgetNode& parent, WidgetKind k) {
  switch (k) {
    case WidgetKind::Menu:
      return parent.kind == WidgetKind::Window;
    case WidgetKind::MenuEntry:
      return parent.kind == WidgetKind::Menu;
    default:
      return is_container(parent.kind);
  }
}

WidgetNode* node_of(WidgetState& w, int id) {
  if (id < 1 || static_cast<std::size_t>(id) > w.nodes.size()) {
    return nullptr;
  }
  return &w.nodes[static_cast<std::size_t>(id - 1)];
}

// A new widget of kind k in ip; null after warning 224 (no wgini before, or wgfin has
// shown the window), 223 (ip is no container of its kind) or 2 (too many widgets).
// After a wgini without a screen the block is skipped: null without a warning.
WidgetNode* add(GlobalBlock& g, int ip, WidgetKind k) {
  WidgetState& w = g.screen.widgets;
  if (w.phase == Phase::NoScreen) {
    return nullptr;
  }
  if (w.phase != Phase::Building) {
    warn(g, 224);
    return nullptr;
  }
  const WidgetNode* parent = node_of(w, ip);
  if (parent == nullptr || !fits_in(*parent, k)) {
    warn(g, 223, ip);
    return nullptr;
  }
  if (w.nodes.size() >= kMaxWidgets) {
    warn(g, 2, static_cast<int>(kMaxWidgets));
    return nullptr;
  }
  WidgetNode& n = w.nodes.emplace_back();
  n.id = static_cast<int>(w.nodes.size());
  n.parent = ip;
  n.kind = k;
  return &n;
}

int add_labelled(GlobalBlock& g, int ip, WidgetKind k, const char* clab) {
  WidgetNode* n = add(g, ip, k);
  if (n == nullptr) {
    return 0;
  }
  n->label = bounded(clab);
  return n->id;
}

// An existing widget of one of the kinds; null after warning 223 naming the id.
template <typename... Kinds>
WidgetNode* widget(GlobalBlock& g, int id, Kinds... kinds) {
  WidgetNode* n = node_of(g.screen.widgets, id);
  if (n == nullptr || ((n->kind != kinds) && ...)) {
    warn(g, 223, id);
    return nullptr;
  }
  return n;
}

// Shows a changed widget while its window is on the screen.
void refresh(GlobalBlock& g, const WidgetNode& n) {
  const WidgetState& w = g.screen.widgets;
  if (w.phase != Phase::Shown || w.handle == 0) {
    return;
  }
  if (const screen::Module* m = screen::module(); m != nullptr && m->widgets != nullptr) {
    m->widgets->update(w.handle, n);
  }
}

// Item isel (1-based, 0 for none) of a list of n items; radio buttons always have one on.
// False after warning 2.
bool item_ok(GlobalBlock& g, WidgetKind k, int isel, std::size_t n) {
  const int lowest = k == WidgetKind::Radio && n > 0 ? 1 : 0;
  if (isel < lowest || static_cast<std::size_t>(isel) > n) {
    warn(g, 2, isel);
    return false;
  }
  return true;
}

int add_list(GlobalBlock& g, int ip, WidgetKind k, const char* clis, int isel) {
  std::vector<std::string> items = screen::split_items(clis);
  if (items.size() > kMaxItems) {
    warn(g, 2, static_cast<int>(items.size()));
    return 0;
  }
  if (!item_ok(g, k, isel, items.size())) {
    return 0;
  }
  WidgetNode* n = add(g, ip, k);
  if (n == nullptr) {
    return 0;
  }
  n->items = std::move(items);
  n->ival = isel;
  return n->id;
}

// A cell's text with ndig decimals, independent of the locale.
std::string cell_text(double v, int ndig) {
  char buf[64];
  const auto r = std::to_chars(buf, buf + sizeof buf, v, std::chars_format::fixed, ndig);
  if (r.ec != std::errc()) {
    return std::to_string(v);  // beyond 64 characters: not reachable with |v| < 1e40
  }
  return std::string(buf, r.ptr);
}

// The number a user typed into a cell: a decimal comma counts as a point; what follows
// the number is ignored, and a cell without one is 0.
double cell_value(std::string s) {
  std::replace(s.begin(), s.end(), ',', '.');
  const char* p = s.data();
  const char* end = p + s.size();
  while (p < end && (*p == ' ' || *p == '+')) {
    ++p;
  }
  double v = 0.0;
  if (std::from_chars(p, end, v).ec != std::errc() || !std::isfinite(v)) {
    return 0.0;
  }
  return v;
}

// The value that zorvel_value_cb reports: the state or item, and for scales the value in
// units of its last decimal shown (so that no decimal the user sees is lost).
int reported_value(const WidgetNode& n) {
  if (n.kind != WidgetKind::Scale) {
    return n.ival;
  }
  const double v = std::round(n.xval * std::pow(10.0, n.digits));
  return static_cast<int>(std::clamp(v, -2147483647.0, 2147483647.0));
}

void run_callback(GlobalBlock& g, const WidgetNode& n, const screen::WidgetEvent& e) {
  const WidgetCallback* cb = find_widget_callback(g.callbacks, n.id);
  if (cb == nullptr) {
    return;
  }
  BlockLoan loan(&g);
  // The routines the callback calls name themselves in warnings; wgfin goes on after it.
  const auto running = g.msg.routine;
  if (cb->on_cell != nullptr) {
    if (n.kind == WidgetKind::Table) {
      cb->on_cell(n.id, e.row, e.col);
    }
  } else if (cb->on_value != nullptr) {
    cb->on_value(n.id, reported_value(n));
  } else if (cb->on_event != nullptr) {
    cb->on_event(n.id);
  }
  g.msg.routine = running;
}

// The module's report of a change (screen thread, while the block waits in wgfin).
void on_event(void* owner, const screen::WidgetEvent& e) {
  GlobalBlock& g = *static_cast<GlobalBlock*>(owner);
  WidgetState& w = g.screen.widgets;
  WidgetNode* n = node_of(w, e.id);
  if (w.phase != Phase::Shown || n == nullptr) {
    return;
  }
  switch (n->kind) {
    case WidgetKind::Check:
    case WidgetKind::List:
    case WidgetKind::DropList:
    case WidgetKind::Radio:
      n->ival = e.ival;
      break;
    case WidgetKind::Scale:
      n->xval = std::clamp(e.xval, n->xmin, n->xmax);
      break;
    case WidgetKind::Text:
    case WidgetKind::File:
      n->text = bounded(e.text);
      break;
    case WidgetKind::Table:
      if (e.row >= 1 && e.row <= n->rows && e.col >= 1 && e.col <= n->cols) {
        n->cells[static_cast<std::size_t>((e.row - 1) * n->cols + e.col - 1)] = bounded(e.text);
      }
      break;
    default:
      break;
  }
  if (e.fire) {
    run_callback(g, *n, e);
  }
}

}  // namespace

std::vector<std::string> screen::split_items(std::string_view clis) {
  std::vector<std::string> items;
  if (clis.empty()) {
    return items;
  }
  for (;;) {
    const std::size_t bar = clis.find('|');
    items.emplace_back(clis.substr(0, std::min(bar, kMaxText)));
    if (bar == std::string_view::npos || items.size() > kMaxItems) {
      break;
    }
    clis.remove_prefix(bar + 1);
  }
  return items;
}

screen::Widgets* screen::widget_toolkit(GlobalBlock& g) {
  const Module* m = module();
  if (m == nullptr || m->widgets == nullptr || !m->display->open()) {
    warn(g, 222);
    return nullptr;
  }
  return m->widgets;
}

namespace api {

int wgini(GlobalBlock& g, const char* ctyp) {
  WidgetState& w = g.screen.widgets;
  if (w.phase == Phase::Shown) {
    warn(g, 224);  // from a callback of the shown window
    return 0;
  }
  Layout layout = Layout::Vertical;
  if (!layout_of(g, ctyp, layout)) {
    return 0;
  }
  w.nodes.clear();
  if (screen::widget_toolkit(g) == nullptr) {
    w.phase = Phase::NoScreen;
    return 0;
  }
  w.phase = Phase::Building;
  WidgetNode& n = w.nodes.emplace_back();
  n.id = 1;
  n.kind = WidgetKind::Window;
  n.layout = layout;
  return n.id;
}

int wgbas(GlobalBlock& g, int ip, const char* ctyp) {
  Layout layout = Layout::Vertical;
  if (!layout_of(g, ctyp, layout)) {
    return 0;
  }
  WidgetNode* n = add(g, ip, WidgetKind::Box);
  if (n == nullptr) {
    return 0;
  }
  n->layout = layout;
  return n->id;
}

int wglab(GlobalBlock& g, int ip, const char* clab) {
  return add_labelled(g, ip, WidgetKind::Label, clab);
}

int wgpbut(GlobalBlock& g, int ip, const char* clab) {
  return add_labelled(g, ip, WidgetKind::PushButton, clab);
}

int wgbut(GlobalBlock& g, int ip, const char* clab, int ival) {
  if (ival != 0 && ival != 1) {
    warn(g, 2, ival);
    return 0;
  }
  const int id = add_labelled(g, ip, WidgetKind::Check, clab);
  if (id != 0) {
    g.screen.widgets.nodes[static_cast<std::size_t>(id - 1)].ival = ival;
  }
  return id;
}

int wgtxt(GlobalBlock& g, int ip, const char* cstr) {
  WidgetNode* n = add(g, ip, WidgetKind::Text);
  if (n == nullptr) {
    return 0;
  }
  n->text = bounded(cstr);
  return n->id;
}

int wglis(GlobalBlock& g, int ip, const char* clis, int isel) {
  return add_list(g, ip, WidgetKind::List, clis, isel);
}

int wgdlis(GlobalBlock& g, int ip, const char* clis, int isel) {
  return add_list(g, ip, WidgetKind::DropList, clis, isel);
}

int wgbox(GlobalBlock& g, int ip, const char* clis, int isel) {
  return add_list(g, ip, WidgetKind::Radio, clis, isel);
}

int wgscl(GlobalBlock& g, int ip, const char* clab, double xmin, double xmax, double xval,
          int ndez) {
  if (!std::isfinite(xmin) || !std::isfinite(xmax) || !(xmin < xmax) || !std::isfinite(xval)) {
    warn(g, 2, xmax);
    return 0;
  }
  if (ndez < 0 || ndez > kMaxDigits) {
    warn(g, 2, ndez);
    return 0;
  }
  WidgetNode* n = add(g, ip, WidgetKind::Scale);
  if (n == nullptr) {
    return 0;
  }
  n->label = bounded(clab);
  n->xmin = xmin;
  n->xmax = xmax;
  n->xval = std::clamp(xval, xmin, xmax);
  n->digits = ndez;
  return n->id;
}

int wgfil(GlobalBlock& g, int ip, const char* clab, const char* cfil, const char* cmask) {
  WidgetNode* n = add(g, ip, WidgetKind::File);
  if (n == nullptr) {
    return 0;
  }
  n->label = bounded(clab);
  n->text = bounded(cfil);
  n->mask = bounded(cmask);
  return n->id;
}

int wgtbl(GlobalBlock& g, int ip, int nrow, int ncol) {
  if (nrow < 1 || nrow > kMaxTableSide) {
    warn(g, 2, nrow);
    return 0;
  }
  if (ncol < 1 || ncol > kMaxTableSide || nrow * ncol > kMaxTableCells) {
    warn(g, 2, ncol);
    return 0;
  }
  WidgetNode* n = add(g, ip, WidgetKind::Table);
  if (n == nullptr) {
    return 0;
  }
  n->rows = nrow;
  n->cols = ncol;
  n->cells.assign(static_cast<std::size_t>(nrow * ncol), std::string());
  return n->id;
}

int wgpop(GlobalBlock& g, int ip, const char* clab) {
  return add_labelled(g, ip, WidgetKind::Menu, clab);
}

int wgapp(GlobalBlock& g, int ip, const char* clab) {
  return add_labelled(g, ip, WidgetKind::MenuEntry, clab);
}

int wgdraw(GlobalBlock& g, int ip) {
  WidgetNode* n = add(g, ip, WidgetKind::Draw);
  return n != nullptr ? n->id : 0;
}

int wgok(GlobalBlock& g, int ip) { return add_labelled(g, ip, WidgetKind::Ok, "OK"); }

int wgquit(GlobalBlock& g, int ip) { return add_labelled(g, ip, WidgetKind::Quit, "Quit"); }

void wgfin(GlobalBlock& g) {
  WidgetState& w = g.screen.widgets;
  if (w.phase == Phase::NoScreen) {
    w.phase = Phase::Done;
    return;
  }
  if (w.phase != Phase::Building) {
    warn(g, 224);  // no wgini, a second wgfin, or wgfin from a callback of the window
    return;
  }
  w.phase = Phase::Done;
  const screen::Module* m = screen::module();
  screen::Widgets* tk = m != nullptr ? m->widgets : nullptr;
  if (tk == nullptr) {
    warn(g, 222);
    return;
  }
  screen::WidgetTree settings;
  settings.title = w.title;
  settings.width = w.width;
  settings.height = w.height;
  settings.nodes = w.nodes;
  const int handle = tk->show(settings, &on_event, &g);
  if (handle == 0) {
    warn(g, 221);
    return;
  }
  w.phase = Phase::Shown;
  w.handle = handle;
  const screen::WidgetEnd end = tk->wait(handle);
  tk->close(handle);
  w.handle = 0;
  w.phase = Phase::Done;
  if (end == screen::WidgetEnd::Quit) {
    std::fflush(stdout);
    std::exit(0);
  }
}

int itmcnt(GlobalBlock& /*g*/, const char* clis) {
  if (*clis == '\0') {
    return 0;
  }
  return static_cast<int>(std::count(clis, clis + std::strlen(clis), '|')) + 1;
}

void itmncat(GlobalBlock& g, char* clis, int nmax, const char* citem) {
  if (nmax < 1) {
    warn(g, 2, nmax);
    return;
  }
  const auto size = static_cast<std::size_t>(nmax);
  const std::size_t have = strnlen(clis, size);
  const std::size_t add_len = std::strlen(citem);
  const std::size_t bar = have > 0 ? 1 : 0;
  // The list must stay a list: an item that does not fit whole is not added.
  if (have == size || add_len + bar >= size - have) {
    warn(g, 2, nmax);
    return;
  }
  if (bar != 0) {
    clis[have] = '|';
  }
  std::memcpy(clis + have + bar, citem, add_len);
  clis[have + bar + add_len] = '\0';
}

int gwgbut(GlobalBlock& g, int id) {
  const WidgetNode* n = widget(g, id, WidgetKind::Check);
  return n != nullptr ? n->ival : 0;
}

int gwglis(GlobalBlock& g, int id) {
  const WidgetNode* n = widget(g, id, WidgetKind::List, WidgetKind::DropList);
  return n != nullptr ? n->ival : 0;
}

int gwgbox(GlobalBlock& g, int id) {
  const WidgetNode* n = widget(g, id, WidgetKind::Radio);
  return n != nullptr ? n->ival : 0;
}

double gwgscl(GlobalBlock& g, int id) {
  const WidgetNode* n = widget(g, id, WidgetKind::Scale);
  return n != nullptr ? n->xval : 0.0;
}

namespace {

void copy_out(GlobalBlock& g, const std::string& s, char* cbuf, int nmax) {
  if (nmax < 1) {
    warn(g, 2, nmax);
    return;
  }
  const std::size_t n = std::min(s.size(), static_cast<std::size_t>(nmax) - 1);
  std::memcpy(cbuf, s.data(), n);
  cbuf[n] = '\0';
}

}  // namespace

void gwgtxt(GlobalBlock& g, int id, char* cbuf, int nmax) {
  if (nmax >= 1) {
    cbuf[0] = '\0';
  }
  if (const WidgetNode* n = widget(g, id, WidgetKind::Text)) {
    copy_out(g, n->text, cbuf, nmax);
  }
}

void gwgfil(GlobalBlock& g, int id, char* cbuf, int nmax) {
  if (nmax >= 1) {
    cbuf[0] = '\0';
  }
  if (const WidgetNode* n = widget(g, id, WidgetKind::File)) {
    copy_out(g, n->text, cbuf, nmax);
  }
}

double gwgtbf(GlobalBlock& g, int id, int irow, int icol) {
  const WidgetNode* n = widget(g, id, WidgetKind::Table);
  if (n == nullptr) {
    return 0.0;
  }
  if (irow < 1 || irow > n->rows || icol < 1 || icol > n->cols) {
    warn(g, 2, irow < 1 || irow > n->rows ? irow : icol);
    return 0.0;
  }
  return cell_value(n->cells[static_cast<std::size_t>((irow - 1) * n->cols + icol - 1)]);
}

void swgbut(GlobalBlock& g, int id, int ival) {
  WidgetNode* n = widget(g, id, WidgetKind::Check);
  if (n == nullptr) {
    return;
  }
  if (ival != 0 && ival != 1) {
    warn(g, 2, ival);
    return;
  }
  n->ival = ival;
  refresh(g, *n);
}

namespace {

void select_item(GlobalBlock& g, WidgetNode* n, int isel) {
  if (n == nullptr || !item_ok(g, n->kind, isel, n->items.size())) {
    return;
  }
  n->ival = isel;
  refresh(g, *n);
}

}  // namespace

void swglis(GlobalBlock& g, int id, int isel) {
  select_item(g, widget(g, id, WidgetKind::List, WidgetKind::DropList), isel);
}

void swgbox(GlobalBlock& g, int id, int isel) {
  select_item(g, widget(g, id, WidgetKind::Radio), isel);
}

void swgscl(GlobalBlock& g, int id, double xval) {
  WidgetNode* n = widget(g, id, WidgetKind::Scale);
  if (n == nullptr) {
    return;
  }
  if (!std::isfinite(xval)) {
    warn(g, 2, xval);
    return;
  }
  n->xval = std::clamp(xval, n->xmin, n->xmax);
  refresh(g, *n);
}

void swgtxt(GlobalBlock& g, int id, const char* cstr) {
  WidgetNode* n = widget(g, id, WidgetKind::Text, WidgetKind::Label, WidgetKind::File);
  if (n == nullptr) {
    return;
  }
  (n->kind == WidgetKind::Label ? n->label : n->text) = bounded(cstr);
  refresh(g, *n);
}

void swgtbf(GlobalBlock& g, int id, double xval, int ndig, int irow, int icol) {
  WidgetNode* n = widget(g, id, WidgetKind::Table);
  if (n == nullptr) {
    return;
  }
  if (irow < 1 || irow > n->rows || icol < 1 || icol > n->cols) {
    warn(g, 2, irow < 1 || irow > n->rows ? irow : icol);
    return;
  }
  if (ndig < 0 || ndig > kMaxDigits || !std::isfinite(xval) || std::fabs(xval) >= 1e40) {
    warn(g, 2, ndig < 0 || ndig > kMaxDigits ? static_cast<double>(ndig) : xval);
    return;
  }
  n->cells[static_cast<std::size_t>((irow - 1) * n->cols + icol - 1)] = cell_text(xval, ndig);
  refresh(g, *n);
}

void swgatt(GlobalBlock& g, int id, const char* cval, const char* copt) {
  if (match_keyword(g, "STAT", copt) == 0) {
    return;
  }
  WidgetNode* n =
      widget(g, id, WidgetKind::Box, WidgetKind::Label, WidgetKind::PushButton, WidgetKind::Check,
             WidgetKind::Text, WidgetKind::List, WidgetKind::DropList, WidgetKind::Radio,
             WidgetKind::Scale, WidgetKind::File, WidgetKind::Table, WidgetKind::Menu,
             WidgetKind::MenuEntry, WidgetKind::Draw, WidgetKind::Ok, WidgetKind::Quit);
  if (n == nullptr) {
    return;
  }
  if (const int i = match_keyword(g, "ACTI+INAC+INVI", cval); i != 0) {
    n->status = static_cast<screen::WidgetStatus>(i - 1);
    refresh(g, *n);
  }
}

void swgtit(GlobalBlock& g, const char* ctit) { g.screen.widgets.title = bounded(ctit); }

void swgsiz(GlobalBlock& g, int nw, int nh) {
  constexpr int kMaxSide = 10000;  // as window and winsiz
  if (nw < 1 || nh < 1 || nw > kMaxSide || nh > kMaxSide) {
    warn(g, 225);
    return;
  }
  g.screen.widgets.width = nw;
  g.screen.widgets.height = nh;
}

}  // namespace api
}  // namespace zorvel
