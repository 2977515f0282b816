// Symbols at points: the 24 built-in shapes, the polygons of mysymb, and the routines
// that choose, size and draw them.
//
// The built-in symbols. Numbers 0..7 are outlines; n + 12 is the same shape filled.
//
//    0  square              12  filled square
//    1  circle              13  filled circle
//    2  triangle up         14  filled triangle up
//    3  diamond             15  filled diamond
//    4  triangle down       16  filled triangle down
//    5  star (5 points)     17  filled star
//    6  pentagon            18  filled pentagon
//    7  hexagon             19  filled hexagon
//    8  plus                20  square with a cross
//    9  cross (x)           21  circle with a plus
//   10  asterisk            22  triangle left
//   11  dot                 23  triangle right
//
// Sizes: the height h is the side of the square. The circle's diameter, the triangles'
// base and height, and the plus are h as well; the other shapes are sized by eye to look
// as large as these (a diamond of the square's side would look small, a cross of it
// large). Every shape is centred on its bounding box.
//
// Filled shapes are filled and then outlined with the same line as the open ones, so
// that both look equally heavy. Symbols are drawn in solid lines whatever the dash
// pattern; the pattern and its phase continue afterwards as they were.

#include "axes/symbols.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

#include "api_decl.h"
#include "axes/curve_state.h"
#include "core/global_block.h"
#include "core/keywords.h"
#include "core/messages.h"
#include "core/page.h"
#include "draw/pipeline.h"

namespace zorvel {
namespace {

// Circles: the largest gap between the true circle and its polygon, in plot units, and
// bounds on the number of corners. Corners come in fours, so that the polygon touches
// the circle's bounding square.
constexpr double kRoundness = 0.1;
constexpr double kPixelRoundness = 0.25;  // in device pixels
constexpr int kMinCircleCorners = 12;
constexpr int kMaxCircleCorners = 256;
constexpr int kMaxOutline = std::max(kMaxCircleCorners, kMaxSymbolPoints);

// Limits of the routines.
constexpr int kMaxHeight = 10000;
constexpr int kMaxInterval = 1000000000;

// Proportions, in units of the height.
constexpr double kDiamond = 0.58;        // half diagonal
constexpr double kPentagon = 0.55;       // corner radius
constexpr double kHexagon = 0.53;
constexpr double kStarOuter = 0.60;
constexpr double kStarInner = 0.25;
constexpr double kCross = 0.40;          // half width of the x
constexpr double kDot = 0.20;            // radius of the dot

enum class Shape {
  Square,
  Circle,
  TriangleUp,
  Diamond,
  TriangleDown,
  Star,
  Pentagon,
  Hexagon,
  Plus,
  Cross,
  Asterisk,
  Dot,
  SquareCross,
  CirclePlus,
  TriangleLeft,
  TriangleRight,
};

struct Builtin {
  Shape shape;
  bool filled;
};

constexpr std::array<Builtin, kBuiltinSymbols> kBuiltins{{
    {Shape::Square, false},       {Shape::Circle, false},       {Shape::TriangleUp, false},
    {Shape::Diamond, false},      {Shape::TriangleDown, false}, {Shape::Star, false},
    {Shape::Pentagon, false},     {Shape::Hexagon, false},      {Shape::Plus, false},
    {Shape::Cross, false},        {Shape::Asterisk, false},     {Shape::Dot, true},
    {Shape::Square, true},        {Shape::Circle, true},        {Shape::TriangleUp, true},
    {Shape::Diamond, true},       {Shape::TriangleDown, true},  {Shape::Star, true},
    {Shape::Pentagon, true},      {Shape::Hexagon, true},       {Shape::SquareCross, false},
    {Shape::CirclePlus, false},   {Shape::TriangleLeft, false}, {Shape::TriangleRight, false},
}};

// Places unit coordinates (y up, centred at 0) on the page.
struct Place {
  double x;
  double y;
  double h;
  double roundness;  // largest gap between a circle and its polygon, plot units
  double px(double u) const { return x + u * h; }
  double py(double v) const { return y - v * h; }
};

// A closed polygon in page coordinates, built on the stack.
struct Outline {
  std::array<double, kMaxOutline> xs;
  std::array<double, kMaxOutline> ys;
  int n = 0;
  void add(const Place& p, double u, double v) {
    xs[static_cast<std::size_t>(n)] = p.px(u);
    ys[static_cast<std::size_t>(n)] = p.py(v);
    ++n;
  }
};

// Corners of a circle of `radius` plot units.
int circle_corners(double radius, double roundness) {
  if (radius <= roundness) {
    return kMinCircleCorners;
  }
  const double step = std::acos(1.0 - roundness / radius);
  const double n = std::ceil(std::numbers::pi / step / 4.0) * 4.0;
  return static_cast<int>(std::clamp(n, double{kMinCircleCorners}, double{kMaxCircleCorners}));
}

void circle(Outline& o, const Place& p, double r) {
  const int n = circle_corners(r * p.h, p.roundness);
  // The corners by turning one step at a time (no sine per corner).
  const double step = 2.0 * std::numbers::pi / n;
  const double cs = std::cos(step);
  const double sn = std::sin(step);
  double c = 1.0;
  double s = 0.0;
  for (int i = 0; i < n; ++i) {
    o.add(p, r * c, r * s);
    const double next = c * cs - s * sn;
    s = s * cs + c * sn;
    c = next;
  }
}

// A regular polygon of `corners` corners with one corner at the top; with inner > 0 a
// star, whose inner corners lie at that radius.
void regular(Outline& o, const Place& p, int corners, double outer, double inner) {
  const int steps = inner > 0.0 ? 2 * corners : corners;
  for (int i = 0; i < steps; ++i) {
    const double a = std::numbers::pi / 2.0 + 2.0 * std::numbers::pi * i / steps;
    const double r = inner > 0.0 && i % 2 == 1 ? inner : outer;
    o.add(p, r * std::cos(a), r * std::sin(a));
  }
}

// Moves the outline so that its bounding box is centred at the symbol's place (the
// pentagon and the star are taller above their centre than below).
void centre(Outline& o, const Place& p) {
  const auto n = static_cast<std::ptrdiff_t>(o.n);
  const auto [x0, x1] = std::minmax_element(o.xs.begin(), o.xs.begin() + n);
  const auto [y0, y1] = std::minmax_element(o.ys.begin(), o.ys.begin() + n);
  const double dx = p.x - (*x0 + *x1) / 2.0;
  const double dy = p.y - (*y0 + *y1) / 2.0;
  for (int i = 0; i < o.n; ++i) {
    o.xs[static_cast<std::size_t>(i)] += dx;
    o.ys[static_cast<std::size_t>(i)] += dy;
  }
}

// The outline of a shape; none for the shapes made of strokes alone.
void build(Outline& o, Shape shape, const Place& p) {
  switch (shape) {
    case Shape::Square:
    case Shape::SquareCross:
      o.add(p, -0.5, -0.5);
      o.add(p, 0.5, -0.5);
      o.add(p, 0.5, 0.5);
      o.add(p, -0.5, 0.5);
      break;
    case Shape::Circle:
    case Shape::CirclePlus:
      circle(o, p, 0.5);
      break;
    case Shape::Dot:
      circle(o, p, kDot);
      break;
    case Shape::TriangleUp:
      o.add(p, 0.0, 0.5);
      o.add(p, -0.5, -0.5);
      o.add(p, 0.5, -0.5);
      break;
    case Shape::TriangleDown:
      o.add(p, 0.0, -0.5);
      o.add(p, 0.5, 0.5);
      o.add(p, -0.5, 0.5);
      break;
    case Shape::TriangleLeft:
      o.add(p, -0.5, 0.0);
      o.add(p, 0.5, -0.5);
      o.add(p, 0.5, 0.5);
      break;
    case Shape::TriangleRight:
      o.add(p, 0.5, 0.0);
      o.add(p, -0.5, 0.5);
      o.add(p, -0.5, -0.5);
      break;
    case Shape::Diamond:
      o.add(p, 0.0, kDiamond);
      o.add(p, -kDiamond, 0.0);
      o.add(p, 0.0, -kDiamond);
      o.add(p, kDiamond, 0.0);
      break;
    case Shape::Star:
      regular(o, p, 5, kStarOuter, kStarInner);
      centre(o, p);
      break;
    case Shape::Pentagon:
      regular(o, p, 5, kPentagon, 0.0);
      centre(o, p);
      break;
    case Shape::Hexagon:
      regular(o, p, 6, kHexagon, 0.0);
      break;
    case Shape::Plus:
    case Shape::Cross:
    case Shape::Asterisk:
      break;
  }
}

void segment(GlobalBlock& g, const Place& p, double u0, double v0, double u1, double v1) {
  move_to(g, p.px(u0), p.py(v0));
  draw_to(g, p.px(u1), p.py(v1));
}

void plus(GlobalBlock& g, const Place& p, double r) {
  segment(g, p, -r, 0.0, r, 0.0);
  segment(g, p, 0.0, -r, 0.0, r);
}

void cross(GlobalBlock& g, const Place& p, double r) {
  segment(g, p, -r, -r, r, r);
  segment(g, p, -r, r, r, -r);
}

// The strokes drawn over (or instead of) the outline.
void strokes(GlobalBlock& g, Shape shape, const Place& p) {
  switch (shape) {
    case Shape::Plus:
    case Shape::CirclePlus:
      plus(g, p, 0.5);
      break;
    case Shape::Cross:
      cross(g, p, kCross);
      break;
    case Shape::SquareCross:
      cross(g, p, 0.5);
      break;
    case Shape::Asterisk:
      plus(g, p, 0.5);
      cross(g, p, 0.5 * std::numbers::sqrt2 / 2.0);
      break;
    default:
      break;
  }
}

// The outline as one closed line. It starts half-way along the closing edge, so that its
// two ends meet in a straight run and every corner gets the same join.
void stroke(GlobalBlock& g, const Outline& o) {
  if (o.n < 2) {
    return;
  }
  const auto last = static_cast<std::size_t>(o.n - 1);
  const double mx = (o.xs[last] + o.xs[0]) / 2.0;
  const double my = (o.ys[last] + o.ys[0]) / 2.0;
  move_to(g, mx, my);
  for (std::size_t i = 0; i <= last; ++i) {
    draw_to(g, o.xs[i], o.ys[i]);
  }
  draw_to(g, mx, my);
}

void paint(GlobalBlock& g, const Outline& o, bool filled) {
  if (filled && o.n >= 3) {
    const FillPatternScope solid(g, kSolidPattern);  // symbols stay solid in hatched charts
    fill_polygon(g, o.xs.data(), o.ys.data(), o.n);
  }
  stroke(g, o);
}

const UserSymbol& user_symbol(const GlobalBlock& g, int nsym) {
  return g.curves.user_symbols[static_cast<std::size_t>(nsym - kBuiltinSymbols)];
}

}  // namespace

bool symbol_defined(const GlobalBlock& g, int nsym) {
  if (nsym >= 0 && nsym < kBuiltinSymbols) {
    return true;
  }
  return nsym >= kBuiltinSymbols && nsym < kMaxSymbols && !user_symbol(g, nsym).xs.empty();
}

void draw_symbol(GlobalBlock& g, int nsym, double x, double y, int height) {
  if (height <= 0 || !symbol_defined(g, nsym) || !std::isfinite(x) || !std::isfinite(y)) {
    return;
  }
  const DashScope plain(g);
  // On pixels, a quarter of a pixel is as round as a circle can look.
  const Place p{x, y, static_cast<double>(height),
                std::max(kRoundness, kPixelRoundness * device_pixel(g))};
  Outline o;
  if (nsym < kBuiltinSymbols) {
    const Builtin& b = kBuiltins[static_cast<std::size_t>(nsym)];
    build(o, b.shape, p);
    paint(g, o, b.filled);
    strokes(g, b.shape, p);
  } else {
    const UserSymbol& u = user_symbol(g, nsym);
    for (std::size_t i = 0; i < u.xs.size(); ++i) {
      o.add(p, u.xs[i], u.ys[i]);
    }
    paint(g, o, u.filled);
  }
}

namespace api {

void marker(GlobalBlock& g, int nsym) {
  if (nsym != -1 && !symbol_defined(g, nsym)) {
    warn(g, 2, nsym);
    return;
  }
  g.curves.symbol = nsym;
}

void hsymbl(GlobalBlock& g, int nhsym) {
  if (check_range(g, nhsym, 1, kMaxHeight)) {
    g.curves.symbol_height = nhsym;
  }
}

void incmrk(GlobalBlock& g, int nmrk) {
  if (check_range(g, nmrk, -kMaxInterval, kMaxInterval)) {
    g.curves.marker_interval = nmrk;
  }
}

void symbol(GlobalBlock& g, int nsym, int nx, int ny) {
  if (!symbol_defined(g, nsym)) {
    warn(g, 2, nsym);
    return;
  }
  draw_symbol(g, nsym, nx, page_y(g, static_cast<double>(ny)), g.curves.symbol_height);
}

void mysymb(GlobalBlock& g, const double* xray, const double* yray, int n, int isym,
            int iflag) {
  if (!check_range(g, n, 3, kMaxSymbolPoints) ||
      !check_range(g, isym, kBuiltinSymbols, kMaxSymbols - 1) || !check_range(g, iflag, 0, 1)) {
    return;
  }
  for (int i = 0; i < n; ++i) {
    for (const double v : {xray[i], yray[i]}) {
      if (!std::isfinite(v)) {
        warn(g, 2, v);
        return;
      }
    }
  }
  UserSymbol& u = g.curves.user_symbols[static_cast<std::size_t>(isym - kBuiltinSymbols)];
  u.xs.assign(xray, xray + n);
  u.ys.assign(yray, yray + n);
  u.filled = iflag == 1;
}

void symclr(GlobalBlock& g, int nclr) {
  if (nclr < -1) {
    warn(g, 2, nclr);
    return;
  }
  g.curves.symbol_colour = nclr;
}

}  // namespace api
}  // namespace zorvel
