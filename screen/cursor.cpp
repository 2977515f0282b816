// Cursor input: clicks, paths, rubber bands and keys in the window of the open screen
// plot, returned in plot coordinates (origin and pagorg applied) or user coordinates.
// Without a screen plot every routine gives warning 222 and returns -1 or nothing.

#include <algorithm>
#include <cmath>

#include "api_decl.h"
#include "axes/axis_state.h"
#include "core/global_block.h"
#include "core/keywords.h"
#include "core/messages.h"
#include "core/page.h"
#include "draw/pipeline.h"
#include "screen/module.h"
#include "screen/windows.h"

namespace zorvel {
namespace {

// The display and the window of the open screen plot, after showing what is drawn so
// far; false after warning 222.
bool input_window(GlobalBlock& g, screen::Display*& d, int& handle) {
  d = nullptr;
  handle = 0;
  if (g.pipe.device != nullptr && screen::is_screen(*g.pipe.device) && g.screen.windows) {
    d = screen::display(g, false);
    handle = g.screen.windows->handle();
  }
  if (d == nullptr || handle == 0) {
    warn(g, 222);
    return false;
  }
  flush_polyline(g);
  g.screen.windows->present(g.raster.page.view());
  d->set_cursor(handle, g.screen.cursor);
  return true;
}

// Window pixels to plot coordinates (unrounded).
void to_plot(const GlobalBlock& g, int px, int py, double& x, double& y) {
  from_device(g.pipe, px, py, x, y);
  x -= g.page.origin_x;
  y = page_y(g, y - g.page.origin_y);
}

int rounded(double v) {
  if (!std::isfinite(v)) {
    return 0;
  }
  return static_cast<int>(std::lround(std::clamp(v, -2e9, 2e9)));
}

void plot_point(const GlobalBlock& g, int px, int py, int& x, int& y) {
  double fx = 0.0;
  double fy = 0.0;
  to_plot(g, px, py, fx, fy);
  x = rounded(fx);
  y = rounded(fy);
}

// Points of csrpts and csrmov; -1 after the warning.
void collect(GlobalBlock& g, screen::Track kind, int* nxray, int* nyray, int nmax, int* n,
             int* iret) {
  *n = 0;
  *iret = -1;
  screen::Display* d = nullptr;
  int handle = 0;
  if (nmax < 1) {
    warn(g, 2, nmax);
    return;
  }
  if (!input_window(g, d, handle)) {
    return;
  }
  screen::InputResult r;
  if (!d->input(handle, kind, nmax, r)) {
    return;
  }
  const int count = std::min(static_cast<int>(r.xs.size()), nmax);
  for (int i = 0; i < count; ++i) {
    plot_point(g, r.xs[static_cast<std::size_t>(i)], r.ys[static_cast<std::size_t>(i)],
               nxray[i], nyray[i]);
  }
  *n = count;
  *iret = r.ended_by;
}

// One click in window pixels; false after the warning or when the window closed.
bool one_click(GlobalBlock& g, int& px, int& py) {
  screen::Display* d = nullptr;
  int handle = 0;
  if (!input_window(g, d, handle)) {
    return false;
  }
  screen::InputResult r;
  if (!d->input(handle, screen::Track::Click, 1, r) || r.xs.empty()) {
    return false;
  }
  px = r.xs[0];
  py = r.ys[0];
  return true;
}

void two_points(GlobalBlock& g, screen::Track kind, int* nx1, int* ny1, int* nx2, int* ny2) {
  *nx1 = *ny1 = *nx2 = *ny2 = -1;
  screen::Display* d = nullptr;
  int handle = 0;
  if (!input_window(g, d, handle)) {
    return;
  }
  screen::InputResult r;
  if (!d->input(handle, kind, 2, r) || r.xs.size() < 2) {
    return;
  }
  plot_point(g, r.xs[0], r.ys[0], *nx1, *ny1);
  plot_point(g, r.xs[1], r.ys[1], *nx2, *ny2);
}

}  // namespace

namespace api {

void csrpt1(GlobalBlock& g, int* nx, int* ny) {
  *nx = -1;
  *ny = -1;
  int px = 0;
  int py = 0;
  if (one_click(g, px, py)) {
    plot_point(g, px, py, *nx, *ny);
  }
}

void csrpts(GlobalBlock& g, int* nxray, int* nyray, int nmax, int* n, int* iret) {
  collect(g, screen::Track::Clicks, nxray, nyray, nmax, n, iret);
}

void csrmov(GlobalBlock& g, int* nxray, int* nyray, int nmax, int* n, int* iret) {
  collect(g, screen::Track::Path, nxray, nyray, nmax, n, iret);
}

void csrlin(GlobalBlock& g, int* nx1, int* ny1, int* nx2, int* ny2) {
  two_points(g, screen::Track::Line, nx1, ny1, nx2, ny2);
}

void csrrec(GlobalBlock& g, int* nx1, int* ny1, int* nx2, int* ny2) {
  two_points(g, screen::Track::Rectangle, nx1, ny1, nx2, ny2);
}

int csrkey(GlobalBlock& g) {
  screen::Display* d = nullptr;
  int handle = 0;
  if (!input_window(g, d, handle)) {
    return -1;
  }
  screen::InputResult r;
  return d->input(handle, screen::Track::Key, 1, r) ? r.key : -1;
}

int csrpos(GlobalBlock& g, int* nx, int* ny) {
  *nx = -1;
  *ny = -1;
  screen::Display* d = nullptr;
  int handle = 0;
  if (!input_window(g, d, handle)) {
    return -1;
  }
  int px = 0;
  int py = 0;
  const int buttons = d->pointer(handle, px, py);
  if (buttons >= 0) {
    plot_point(g, px, py, *nx, *ny);
  }
  return buttons;
}

void csrusr(GlobalBlock& g, double* xp, double* yp) {
  *xp = 0.0;
  *yp = 0.0;
  int px = 0;
  int py = 0;
  if (!one_click(g, px, py)) {
    return;
  }
  double x = 0.0;
  double y = 0.0;
  to_plot(g, px, py, x, y);
  const AxisScale& sx = g.axes.scale[kAxisX];
  const AxisScale& sy = g.axes.scale[kAxisY];
  const double u = (x - sx.corner) / sx.factor + sx.a;
  const double v = (sy.corner - page_y(g, y)) / sy.factor + sy.a;
  *xp = g.axes.log[kAxisX] ? std::pow(10.0, u) : u;
  *yp = g.axes.log[kAxisY] ? std::pow(10.0, v) : v;
}

void csrtyp(GlobalBlock& g, const char* ctyp) {
  if (const int i = match_keyword(g, "ARRO+CROS+HAIR", ctyp); i != 0) {
    g.screen.cursor = i - 1;
  }
}

}  // namespace api
}  // namespace zorvel
