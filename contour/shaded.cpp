// Shaded contours: the bands between levels filled in the colours of the Z scaling
// (conshd on grids, shdtri on triangles) and their options (conopt).

#include <algorithm>
#include <climits>
#include <cmath>
#include <limits>

#include "api_decl.h"
#include "axes/axes.h"
#include "contour/bands.h"
#include "contour/colour_plots.h"
#include "contour/colour_scale.h"
#include "contour/draw_lines.h"
#include "contour/surfaces.h"
#include "axes3d/axes3d.h"
#include "core/global_block.h"
#include "core/keywords.h"
#include "core/messages.h"
#include "draw/colour.h"
#include "draw/pipeline.h"

namespace zorvel {
namespace {

constexpr double kInf = std::numeric_limits<double>::infinity();
// Hatchings that bands take in turn under conopt "PATT" (shdpat's numbers).
constexpr int kHatchings = 15;

// The levels as given, checked: at least one, all numbers (2); sorted with warning 272
// when they do not rise, repeated ones once.
bool take_levels(GlobalBlock& g, const double* zlev, int nlev) {
  std::vector<double>& l = g.contours.colour.levels;
  if (nlev < 1) {
    warn(g, 30, nlev);
    return false;
  }
  l.assign(zlev, zlev + nlev);
  for (const double v : l) {
    if (!std::isfinite(v)) {
      warn(g, 2, v);
      return false;
    }
  }
  if (!std::is_sorted(l.begin(), l.end()) ||
      std::adjacent_find(l.begin(), l.end()) != l.end()) {
    warn(g, 272);
    std::sort(l.begin(), l.end());
    l.erase(std::unique(l.begin(), l.end()), l.end());
  }
  return true;
}

// Fills the band whose outline edges are in c.edges, in its colour and (conopt "PATT")
// its hatching; on the floor of the 3D box with `floor`.
void fill_band(GlobalBlock& g, const BandRange& band, int number, bool floor) {
  ColourPlotState& c = g.contours.colour;
  const int colour = band_colour(g, band.lo, band.hi);
  join_band_rings(c.edges, c.used, c.ring_x, c.ring_y, c.ring_ends);
  if (colour < 0 || c.ring_ends.empty()) {
    return;
  }
  const double bottom = -0.5 * g.view3d.box[2];
  for (std::size_t k = 0; k < c.ring_x.size(); ++k) {
    if (floor) {
      // Straight lines stay straight in the projection: the rings' corners suffice.
      std::array<double, 3> b = user_to_box(g, c.ring_x[k], c.ring_y[k], 0.0);
      b[2] = bottom;
      if (!box_to_page(g, b, c.ring_x[k], c.ring_y[k])) {
        return;
      }
    } else {
      c.ring_x[k] = axis_page_x(g, c.ring_x[k]);
      c.ring_y[k] = axis_page_y(g, c.ring_y[k]);
    }
  }
  set_colour(g, colour);
  const FillPatternScope pattern(g, c.hatch ? 1 + number % kHatchings : kSolidPattern);
  fill_path(g, c.ring_x.data(), c.ring_y.data(), c.ring_ends.data(),
            static_cast<int>(c.ring_ends.size()), FillRule::NonZero);
}

// Every band in turn: from below the first level (conopt "EXTE" "LOW") to above the last
// ("HIGH"); the last band between levels holds its upper level too unless a band above
// follows. `edges` makes a band's outline.
template <class Edges>
void shade_bands(GlobalBlock& g, Edges edges, bool floor = false) {
  const SeamlessFillScope bands(g);  // neighbouring bands share their edges
  ColourPlotState& c = g.contours.colour;
  const std::vector<double>& l = c.levels;
  const int colour = g.colour.current;
  const bool low = (c.extend & kExtendLow) != 0;
  const bool high = (c.extend & kExtendHigh) != 0;
  const std::size_t n = l.size();
  int number = 0;
  if (low) {
    const BandRange b{-kInf, l[0], false};
    edges(b);
    fill_band(g, b, number++, floor);
  }
  for (std::size_t k = 0; k + 1 < n; ++k) {
    const BandRange b{l[k], l[k + 1], k + 2 == n && !high};
    edges(b);
    fill_band(g, b, number++, floor);
  }
  if (high) {
    const BandRange b{l[n - 1], kInf, false};
    edges(b);
    fill_band(g, b, number++, floor);
  }
  set_colour(g, colour);
}

}  // namespace

namespace api {

void conshd(GlobalBlock& g, const double* xray, int nx, const double* yray, int ny,
            const double* zmat, const double* zlev, int nlev) {
  const GridData grid{xray, nx, yray, ny, zmat};
  if (!check_colour_grid(g, grid) || !take_levels(g, zlev, nlev)) {
    return;
  }
  ContourState& cs = g.contours;
  ColourPlotState& c = cs.colour;
  const double* lev = c.levels.data();
  const int nl = static_cast<int>(c.levels.size());
  cell_ranges(grid, c.cell_ranges);
  shade_bands(g, [&](const BandRange& b) {
    band_edges_grid(grid, b, lev, nl, c.edges, &c.cell_ranges);
  });
  if (c.level_lines) {
    for (const double level : c.levels) {
      trace_grid(grid, level, cs.lines, cs.cells);
      draw_contour_lines(g, cs.lines, level);
    }
  }
}

void shdtri(GlobalBlock& g, const double* xray, const double* yray, const double* zray, int n,
            const int* i1ray, const int* i2ray, const int* i3ray, int ntri, const double* zlev,
            int nlev) {
  if (n < 3 || ntri < 1) {
    warn(g, 30, n < 3 ? n : ntri);
    return;
  }
  if (!take_levels(g, zlev, nlev)) {
    return;
  }
  ContourState& cs = g.contours;
  ColourPlotState& c = cs.colour;
  const MeshData mesh{xray, yray, zray, n, i1ray, i2ray, i3ray, ntri};
  long long skipped = 0;
  shade_bands(g, [&](const BandRange& b) { skipped = band_edges_mesh(mesh, b, c.edges); });
  if (skipped > 0) {
    warn(g, 275, static_cast<int>(std::min<long long>(skipped, INT_MAX)));
  }
  if (c.level_lines) {
    for (const double level : c.levels) {
      trace_mesh(mesh, level, cs.lines, cs.mesh);
      draw_contour_lines(g, cs.lines, level);
    }
  }
}

void conshd3d(GlobalBlock& g, const double* xray, int nx, const double* yray, int ny,
              const double* zmat, const double* zlev, int nlev) {
  const GridData grid{xray, nx, yray, ny, zmat};
  if (!check_colour_grid(g, grid) || !take_levels(g, zlev, nlev)) {
    return;
  }
  ContourState& cs = g.contours;
  ColourPlotState& c = cs.colour;
  if (!c.floor) {
    shade_surface_bands(g, grid, c.levels, c.extend, c.level_lines);
    return;
  }
  const double* lev = c.levels.data();
  const int nl = static_cast<int>(c.levels.size());
  cell_ranges(grid, c.cell_ranges);
  shade_bands(
      g, [&](const BandRange& b) { band_edges_grid(grid, b, lev, nl, c.edges, &c.cell_ranges); },
      true);
}

void conopt(GlobalBlock& g, const char* cval, const char* copt) {
  const int opt = match_keyword(g, "EXTE+PATT+LINE+3D  ", copt);
  ColourPlotState& c = g.contours.colour;
  if (opt == 1) {
    if (const int i = match_keyword(g, "NONE+LOW +HIGH+BOTH", cval); i != 0) {
      c.extend = i - 1;  // NONE 0, LOW 1, HIGH 2, BOTH 3
    }
  } else if (opt == 4) {
    if (const int i = match_keyword(g, "SURF+BASE", cval); i != 0) {
      c.floor = i == 2;
    }
  } else if (opt == 2 || opt == 3) {
    if (const int i = match_keyword(g, "ON  +OFF ", cval); i != 0) {
      (opt == 2 ? c.hatch : c.level_lines) = i == 1;
    }
  }
}

}  // namespace api
}  // namespace zorvel
