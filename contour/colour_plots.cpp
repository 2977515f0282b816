// Colour plots: the axis system with a colour bar (graf3), its settings (colbar, colran,
// colopt), heat maps (colmat), coloured symbols (colpts) and coloured triangles (coltri).

#include "contour/colour_plots.h"

#include <algorithm>
#include <cmath>
#include <climits>
#include <cstdint>
#include <limits>

#include "api_decl.h"
#include "axes/axes.h"
#include "axes/labels.h"
#include "axes/symbols.h"
#include "contour/bands.h"
#include "contour/colour_scale.h"
#include "core/global_block.h"
#include "core/keywords.h"
#include "core/messages.h"
#include "draw/colour.h"
#include "draw/pipeline.h"
#include "text/text_state.h"

namespace zorvel {
namespace {

// Most plot units for the bar's width and distance.
constexpr int kMaxBarSize = 10000;
// Grids of more cells than this become one image under colopt "IMAG" "AUTO".
constexpr long long kImageCells = 4096;
// Cell widths on the page that differ by less than this share (of the mean) count as
// even, so that an image can show the grid.
constexpr double kEvenSpacing = 1e-3;
// Room for the labels of a colour bar on the right, in character heights beyond its
// ticks; and the least axis length that graf3 narrows the axis system to for the bar.
constexpr double kBarLabelRoom = 6.0;
constexpr double kBarMinAxis = 100.0;
// How far a cell of colmat reaches under its neighbours drawn later, plot units.
constexpr double kCellOverlap = 2.0;

bool monotonic(const double* v, int n) {
  const bool up = v[1] > v[0];
  for (int i = 1; i < n; ++i) {
    if (up ? !(v[i] > v[i - 1]) : !(v[i] < v[i - 1])) {
      return false;
    }
  }
  return std::isfinite(v[0]) && std::isfinite(v[n - 1]);
}

// Page positions of the edges of the cells around the grid values: halfway between
// neighbours, and half a cell beyond the first and the last. False when a value has no
// place on the axis (log axes: values <= 0).
bool cell_edges(const double* v, int n, bool x_axis, const GlobalBlock& g,
                std::vector<double>& out) {
  out.resize(static_cast<std::size_t>(n) + 1);
  auto page = [&](double u) { return x_axis ? axis_page_x(g, u) : axis_page_y(g, u); };
  double prev = page(v[0]);
  for (int i = 1; i < n; ++i) {
    const double cur = page(v[i]);
    out[static_cast<std::size_t>(i)] = 0.5 * prev + 0.5 * cur;
    prev = cur;
  }
  out[0] = 2.0 * page(v[0]) - out[1];
  out[static_cast<std::size_t>(n)] =
      2.0 * page(v[n - 1]) - out[static_cast<std::size_t>(n) - 1];
  return std::all_of(out.begin(), out.end(), [](double d) { return std::isfinite(d); });
}

bool evenly_spaced(const std::vector<double>& e) {
  const double mean = (e.back() - e.front()) / static_cast<double>(e.size() - 1);
  for (std::size_t i = 1; i < e.size(); ++i) {
    if (std::fabs(e[i] - e[i - 1] - mean) > kEvenSpacing * std::fabs(mean)) {
      return false;
    }
  }
  return true;
}

void fill_rect(GlobalBlock& g, double x0, double y0, double x1, double y1) {
  const double xs[4] = {x0, x1, x1, x0};
  const double ys[4] = {y0, y0, y1, y1};
  fill_polygon(g, xs, ys, 4);
}

// Warning 27 once for the values that a log Z axis cannot show.
void check_log_values(GlobalBlock& g, const double* z, std::size_t n) {
  if (!g.axes.log[2]) {
    return;
  }
  for (std::size_t k = 0; k < n; ++k) {
    if (z[k] <= 0.0) {
      warn(g, 27);
      return;
    }
  }
}

// The Z scaling in the slot of axis `slot` while it lives, so that the axis painter
// draws it as it draws that axis.
class ZAxisInSlot {
 public:
  ZAxisInSlot(AxisState& s, std::size_t slot) : s_(s), slot_(slot) { swap(); }
  ~ZAxisInSlot() { swap(); }
  ZAxisInSlot(const ZAxisInSlot&) = delete;
  ZAxisInSlot& operator=(const ZAxisInSlot&) = delete;

 private:
  void swap() {
    std::swap(s_.axis[slot_], s_.axis[2]);
    std::swap(s_.scale[slot_], s_.scale[2]);
    std::swap(s_.log[slot_], s_.log[2]);
    std::swap(s_.autoscale[slot_], s_.autoscale[2]);
    std::swap(s_.auto_min[slot_], s_.auto_min[2]);
    std::swap(s_.auto_max[slot_], s_.auto_max[2]);
  }
  AxisState& s_;
  std::size_t slot_;
};

// A triangle with its colours running smoothly between its corners: one piece per colour
// of the range that it reaches, the colour taken where the values round to it (linear
// over the triangle, in exponents on a log Z axis).
void colour_triangle(GlobalBlock& g, const double* xray, const double* yray, const double* zray,
                     const int* idx) {
  const ColourPlotState& c = g.contours.colour;
  double x[3], y[3], f[3];
  for (int k = 0; k < 3; ++k) {
    const int p = idx[k] - 1;
    x[k] = axis_page_x(g, xray[p]);
    y[k] = axis_page_y(g, yray[p]);
    f[k] = colour_position(g, zray[p]);
    if (!std::isfinite(x[k]) || !std::isfinite(y[k]) || !std::isfinite(f[k])) {
      return;
    }
  }
  const int low = std::min(c.first, c.last);
  const int high = std::max(c.first, c.last);
  const double fmin = std::min({f[0], f[1], f[2]});
  const double fmax = std::max({f[0], f[1], f[2]});
  const int k0 = static_cast<int>(std::clamp(std::floor(fmin + 0.5), double(low), double(high)));
  const int k1 = static_cast<int>(std::clamp(std::floor(fmax + 0.5), double(low), double(high)));
  constexpr double kInf = std::numeric_limits<double>::infinity();
  double px[kMaxTrianglePiece];
  double py[kMaxTrianglePiece];
  for (int k = k0; k <= k1; ++k) {
    // The end colours reach on beyond the scaling, unless colopt "OUTS" "NONE".
    const double lo = k == low ? (c.clip_outside ? -kInf : low - 1e-9) : k - 0.5;
    const double hi = k == high ? (c.clip_outside ? kInf : high + 1e-9) : k + 0.5;
    const int m = triangle_band_piece(x, y, f, lo, hi, px, py);
    if (m >= 3) {
      set_colour(g, k);
      fill_polygon(g, px, py, m);
    }
  }
}

}  // namespace

bool check_colour_grid(GlobalBlock& g, const GridData& grid) {
  if (grid.nx < 2 || grid.ny < 2) {
    warn(g, 30, std::min(grid.nx, grid.ny));
    return false;
  }
  if (!monotonic(grid.x, grid.nx)) {
    warn(g, 271, "X");
    return false;
  }
  if (!monotonic(grid.y, grid.ny)) {
    warn(g, 271, "Y");
    return false;
  }
  return true;
}

void draw_colour_bar(GlobalBlock& g) {
  ColourPlotState& c = g.contours.colour;
  if (c.bar_side == kBarNone) {
    return;
  }
  AxisState& s = g.axes;
  const AxisExtents ext = draw_axis_system(g, false);
  const bool vertical = c.bar_side == kBarRight || c.bar_side == kBarLeft;
  const double left = s.pos_x;
  const double right = s.pos_x + s.len_x - 1.0;
  const double bottom = s.pos_y;
  const double top = s.pos_y - s.len_y + 1.0;
  double x0 = left, x1 = right, y0 = top, y1 = bottom;  // the bar, y down
  switch (c.bar_side) {
    case kBarRight:
      x0 = right + ext[kSideRight] + c.bar_gap;
      x1 = x0 + c.bar_width;
      break;
    case kBarLeft:
      x1 = left - ext[kSideLeft] - c.bar_gap;
      x0 = x1 - c.bar_width;
      break;
    case kBarTop:
      y1 = top - ext[kSideTop] - c.bar_gap;
      y0 = y1 - c.bar_width;
      break;
    default:
      y0 = bottom + ext[kSideBottom] + c.bar_gap;
      y1 = y0 + c.bar_width;
      break;
  }
  // The colours: one pixel per colour of the range, the scaling's start at the bar's
  // lower (left) end.
  const int step = c.last >= c.first ? 1 : -1;
  const int n = std::abs(c.last - c.first) + 1;
  std::vector<std::uint8_t>& px = c.pixels;
  px.resize(static_cast<std::size_t>(n) * 3);
  for (int k = 0; k < n; ++k) {
    const int colour = vertical ? c.last - k * step : c.first + k * step;
    const Rgb rgb = colour_rgb(g, colour);
    px[3 * static_cast<std::size_t>(k)] = static_cast<std::uint8_t>(rgb.r);
    px[3 * static_cast<std::size_t>(k) + 1] = static_cast<std::uint8_t>(rgb.g);
    px[3 * static_cast<std::size_t>(k) + 2] = static_cast<std::uint8_t>(rgb.b);
  }
  Image img;
  img.pixels = px.data();
  img.width = vertical ? 1 : n;
  img.height = vertical ? n : 1;
  img.channels = 3;
  img.stride = static_cast<std::size_t>(img.width) * 3;
  img.x0 = x0;
  img.y0 = y0;
  img.x1 = x1;
  img.y1 = y1;
  const PageClipScope page(g);
  draw_image(g, img);
  {
    const DashScope solid(g);
    move_to(g, x0, y0);
    draw_to(g, x1, y0);
    draw_to(g, x1, y1);
    draw_to(g, x0, y1);
    draw_to(g, x0, y0);
  }
  // The Z axis along the bar's outer side, drawn as the Y (X) axis is drawn.
  AxisScale& z = s.scale[2];
  const double length = vertical ? y1 - y0 : x1 - x0;
  z.factor = length / (z.e - z.a);
  const std::size_t slot = vertical ? kAxisY : kAxisX;
  const ZAxisInSlot swap(s, slot);
  switch (c.bar_side) {
    case kBarRight:
      draw_axis_ray(g, static_cast<int>(slot), x1, y1, 0.0, -1.0, 1.0, 0.0, length, true, false);
      break;
    case kBarLeft:
      draw_axis_ray(g, static_cast<int>(slot), x0, y1, 0.0, -1.0, -1.0, 0.0, length, true, false);
      break;
    case kBarTop:
      draw_axis_ray(g, static_cast<int>(slot), x0, y0, 1.0, 0.0, 0.0, -1.0, length, true, false);
      break;
    default:
      draw_axis_ray(g, static_cast<int>(slot), x0, y1, 1.0, 0.0, 0.0, 1.0, length, true, false);
      break;
  }
}

namespace api {

void graf3(GlobalBlock& g, double xa, double xe, double xorg, double xstp, double ya, double ye,
           double yorg, double ystp, double za, double ze, double zorg, double zstp) {
  AxisState& s = g.axes;
  AxisScale& z = s.scale[2];
  z.time_form = -1;
  z.date_form = kDateFull;
  z.months = 0;
  double v[4] = {za, ze, zorg, zstp};
  if (s.autoscale[2]) {
    auto_scale_axis(g, 2, v);
  }
  if (!check_axis_scaling(g, v)) {
    return;
  }
  // A bar on the right that would leave the page narrows the axis system instead.
  const ColourPlotState& c = g.contours.colour;
  if (c.bar_side == kBarRight) {
    const double labels = g.axes.tick_major + kBarLabelRoom * g.text.height;
    const double over = s.pos_x + s.len_x + c.bar_gap + c.bar_width + labels - g.page.width;
    if (over > 0.0 && s.len_x - over >= kBarMinAxis) {
      s.len_x -= static_cast<int>(std::ceil(over));
    }
  }
  graf(g, xa, xe, xorg, xstp, ya, ye, yorg, ystp);
  if (g.core.level != 2) {
    return;
  }
  z.a = v[0];
  z.e = v[1];
  z.first = v[2];
  z.step = v[3];
  double lo = z.a;
  double hi = z.e;
  if (s.log[2]) {
    lo = std::pow(10.0, lo);
    hi = std::pow(10.0, hi);
  }
  z.umin = std::min(lo, hi);
  z.umax = std::max(lo, hi);
  g.contours.colour.graf3_serial = s.graf_serial;
  const int colour = g.colour.current;
  draw_colour_bar(g);
  if (g.colour.current != colour) {
    set_colour(g, colour);
  }
}

void colbar(GlobalBlock& g, const char* cpos, int nwth, int ndis) {
  const int i = match_keyword(g, "RIGH+LEFT+TOP +BOTT+NONE", cpos);
  if (i == 0 || !check_range(g, nwth, 1, kMaxBarSize) ||
      !check_range(g, ndis, -kMaxBarSize, kMaxBarSize)) {
    return;
  }
  ColourPlotState& c = g.contours.colour;
  constexpr int kSides[5] = {kBarRight, kBarLeft, kBarTop, kBarBottom, kBarNone};
  c.bar_side = kSides[i - 1];
  c.bar_width = nwth;
  c.bar_gap = ndis;
}

void colran(GlobalBlock& g, int nfirst, int nlast) {
  if (!check_range(g, nfirst, 0, 255) || !check_range(g, nlast, 0, 255)) {
    return;
  }
  g.contours.colour.first = nfirst;
  g.contours.colour.last = nlast;
}

void colopt(GlobalBlock& g, const char* cval, const char* copt) {
  const int opt = match_keyword(g, "OUTS+IMAG", copt);
  ColourPlotState& c = g.contours.colour;
  if (opt == 1) {
    if (const int i = match_keyword(g, "CLIP+NONE", cval); i != 0) {
      c.clip_outside = i == 1;
    }
  } else if (opt == 2) {
    if (const int i = match_keyword(g, "AUTO+RECT+IMAG", cval); i != 0) {
      c.matrix_mode = i - 1;
    }
  }
}

void colmat(GlobalBlock& g, const double* xray, int nx, const double* yray, int ny,
            const double* zmat) {
  const GridData grid{xray, nx, yray, ny, zmat};
  if (!check_colour_grid(g, grid)) {
    return;
  }
  ColourPlotState& c = g.contours.colour;
  const std::size_t cells = static_cast<std::size_t>(nx) * static_cast<std::size_t>(ny);
  check_log_values(g, zmat, cells);
  std::vector<double>& ex = c.ring_x;
  std::vector<double>& ey = c.ring_y;
  if (!cell_edges(xray, nx, true, g, ex) || !cell_edges(yray, ny, false, g, ey)) {
    warn(g, 27);  // a log axis with coordinates <= 0
    return;
  }
  const int colour = g.colour.current;
  const bool big = static_cast<long long>(nx) * ny > kImageCells;
  const bool image = c.matrix_mode == kMatrixImage ||
                     (c.matrix_mode == kMatrixAuto && big && evenly_spaced(ex) &&
                      evenly_spaced(ey));
  if (image) {
    // One pixel per value, the rows in the order of y (the image's corners say where
    // its first row goes), cells without a colour transparent. The image spans the
    // outer cell edges; uneven grids are shown at even spacing.
    std::vector<std::uint8_t>& px = c.pixels;
    px.resize(cells * 4);
    for (std::size_t k = 0; k < cells; ++k) {
      const int v = z_colour(g, zmat[k]);
      const Rgb rgb = v < 0 ? Rgb{} : colour_rgb(g, v);
      px[4 * k] = static_cast<std::uint8_t>(rgb.r);
      px[4 * k + 1] = static_cast<std::uint8_t>(rgb.g);
      px[4 * k + 2] = static_cast<std::uint8_t>(rgb.b);
      px[4 * k + 3] = v < 0 ? 0 : 255;
    }
    Image img;
    img.pixels = px.data();
    img.width = nx;
    img.height = ny;
    img.channels = 4;
    img.stride = static_cast<std::size_t>(nx) * 4;
    img.x0 = ex.front();
    img.y0 = ey.front();
    img.x1 = ex.back();
    img.y1 = ey.back();
    draw_image(g, img);
    return;
  }
  // Rectangles, one per run of equal colours along a row. Each reaches a little under
  // the cells drawn after it (the next run and the next row), so that anti-aliasing
  // viewers show no light seams between cells.
  const FillPatternScope solid(g, kSolidPattern);
  const double sx = ex.back() > ex.front() ? kCellOverlap : -kCellOverlap;
  const double sy = ey.back() > ey.front() ? kCellOverlap : -kCellOverlap;
  for (int j = 0; j < ny; ++j) {
    const double* row = zmat + static_cast<std::size_t>(j) * static_cast<std::size_t>(nx);
    const double y0 = ey[static_cast<std::size_t>(j)];
    const double y1 = ey[static_cast<std::size_t>(j) + 1] + (j + 1 < ny ? sy : 0.0);
    for (int i = 0; i < nx;) {
      const int v = z_colour(g, row[i]);
      int k = i + 1;
      while (k < nx && z_colour(g, row[k]) == v) {
        ++k;
      }
      if (v >= 0) {
        set_colour(g, v);
        fill_rect(g, ex[static_cast<std::size_t>(i)], y0,
                  ex[static_cast<std::size_t>(k)] + (k < nx ? sx : 0.0), y1);
      }
      i = k;
    }
  }
  set_colour(g, colour);
}

void colpts(GlobalBlock& g, const double* xray, const double* yray, const double* zray, int n) {
  if (n < 1) {
    warn(g, 30, n);
    return;
  }
  check_log_values(g, zray, static_cast<std::size_t>(n));
  const int colour = g.colour.current;
  const CurveState& cs = g.curves;
  // The symbol of marker, a filled circle without one.
  const int symbol = cs.symbol >= 0 ? cs.symbol : 13;
  for (int k = 0; k < n; ++k) {
    const int v = z_colour(g, zray[k]);
    const double px = axis_page_x(g, xray[k]);
    const double py = axis_page_y(g, yray[k]);
    if (v < 0 || !std::isfinite(px) || !std::isfinite(py)) {
      continue;
    }
    set_colour(g, v);
    draw_symbol(g, symbol, std::floor(px + 0.5), std::floor(py + 0.5), cs.symbol_height);
  }
  set_colour(g, colour);
}

void coltri(GlobalBlock& g, const double* xray, const double* yray, const double* zray, int n,
            const int* i1ray, const int* i2ray, const int* i3ray, int ntri) {
  if (n < 3 || ntri < 1) {
    warn(g, 30, n < 3 ? n : ntri);
    return;
  }
  check_log_values(g, zray, static_cast<std::size_t>(n));
  const int colour = g.colour.current;
  const FillPatternScope solid(g, kSolidPattern);
  const SeamlessFillScope mesh(g);
  long long skipped = 0;
  for (int t = 0; t < ntri; ++t) {
    const int idx[3] = {i1ray[t], i2ray[t], i3ray[t]};
    if (std::any_of(idx, idx + 3, [&](int v) { return v < 1 || v > n; })) {
      ++skipped;
      continue;
    }
    colour_triangle(g, xray, yray, zray, idx);
  }
  if (skipped > 0) {
    warn(g, 275, static_cast<int>(std::min<long long>(skipped, INT_MAX)));
  }
  set_colour(g, colour);
}

}  // namespace api
}  // namespace zorvel
