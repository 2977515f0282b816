// The dialog routines: modal dialogs of the screen module, usable at any level and from
// the callbacks of a widget window, titled as the next widget window (swgtit). A dialog
// that is cancelled or closed gives the default; without a screen every routine gives
// warning 222 and the default.

#include <algorithm>
#include <cstring>
#include <string>

#include "api_decl.h"
#include "core/global_block.h"
#include "core/messages.h"
#include "screen/widget_backend.h"
#include "screen/widget_state.h"

namespace zorvel {
namespace {

// Lines of a message joined by "|".
std::string lines_of(const char* cstr) {
  std::string s(cstr, strnlen(cstr, 4096));
  std::replace(s.begin(), s.end(), '|', '\n');
  return s;
}

// Writes s, cut to the buffer, into cbuf; false after warning 2 for nmax < 1.
bool copy_out(GlobalBlock& g, const std::string& s, char* cbuf, int nmax) {
  if (nmax < 1) {
    warn(g, 2, nmax);
    return false;
  }
  const std::size_t n = std::min(s.size(), static_cast<std::size_t>(nmax) - 1);
  std::memcpy(cbuf, s.data(), n);
  cbuf[n] = '\0';
  return true;
}

}  // namespace

namespace api {

void dwgmsg(GlobalBlock& g, const char* cstr) {
  if (screen::Widgets* tk = screen::widget_toolkit(g)) {
    tk->message(g.screen.widgets.title, lines_of(cstr));
  }
}

int dwgbut(GlobalBlock& g, const char* cstr, int ival) {
  if (ival != 0 && ival != 1) {
    warn(g, 2, ival);
    return 0;
  }
  screen::Widgets* tk = screen::widget_toolkit(g);
  bool yes = ival == 1;
  if (tk == nullptr || !tk->question(g.screen.widgets.title, lines_of(cstr), ival == 1, yes)) {
    return ival;
  }
  return yes ? 1 : 0;
}

int dwglis(GlobalBlock& g, const char* clab, const char* clis, int isel) {
  const std::vector<std::string> items = screen::split_items(clis);
  if (isel < 0 || static_cast<std::size_t>(isel) > items.size()) {
    warn(g, 2, isel);
    return isel;
  }
  screen::Widgets* tk = screen::widget_toolkit(g);
  int chosen = isel;
  if (tk == nullptr || !tk->choose(g.screen.widgets.title, lines_of(clab), items, isel, chosen)) {
    return isel;
  }
  return chosen;
}

void dwgtxt(GlobalBlock& g, const char* clab, const char* cdef, char* cbuf, int nmax) {
  std::string text = cdef;
  if (nmax < 1) {
    warn(g, 2, nmax);
    return;
  }
  if (screen::Widgets* tk = screen::widget_toolkit(g)) {
    if (!tk->ask_text(g.screen.widgets.title, lines_of(clab), cdef, text)) {
      text = cdef;
    }
  }
  copy_out(g, text, cbuf, nmax);
}

void dwgfil(GlobalBlock& g, const char* clab, const char* cdef, const char* cmask, char* cbuf,
            int nmax) {
  std::string file = cdef;
  if (nmax < 1) {
    warn(g, 2, nmax);
    return;
  }
  if (screen::Widgets* tk = screen::widget_toolkit(g)) {
    if (!tk->ask_file(*clab != '\0' ? std::string(clab) : g.screen.widgets.title, cdef, cmask,
                      file)) {
      file = cdef;
    }
  }
  copy_out(g, file, cbuf, nmax);
}

}  // namespace api
}  // namespace zorvel
