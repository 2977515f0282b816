// The routines of contour lines: contur and conpts on grids, triang and contri on
// scattered points, concrv for a line of the caller's, and the label settings conlab
// and congap (labels, labdig and labdis "CON" are those of the axes).

#include <algorithm>
#include <climits>
#include <cmath>

#include "api_decl.h"
#include "contour/delaunay.h"
#include "contour/draw_lines.h"
#include "contour/lines.h"
#include "core/global_block.h"
#include "core/keywords.h"
#include "core/messages.h"

namespace zorvel {
namespace {

// Largest space around a label, in character heights.
constexpr double kMaxGap = 10.0;
// Most points triang takes: its triangles (about twice as many) are counted in int.
constexpr int kMaxTriangPoints = (INT_MAX - 16) / 2;

// Whether v[0 .. n) rises or falls strictly throughout.
bool monotonic(const double* v, int n) {
  const bool up = v[1] > v[0];
  for (int i = 1; i < n; ++i) {
    if (up ? !(v[i] > v[i - 1]) : !(v[i] < v[i - 1])) {
      return false;  // also for values that are not finite numbers
    }
  }
  return std::isfinite(v[0]) && std::isfinite(v[n - 1]);
}

// The checks of a grid and a level: enough points (30), coordinates that rise or fall
// (271), a level that is a number (2).
bool check_grid(GlobalBlock& g, const GridData& grid, double level) {
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
  if (!std::isfinite(level)) {
    warn(g, 2, level);
    return false;
  }
  return true;
}

// Warning 278 with the size that an output array would need.
void too_small(GlobalBlock& g, std::size_t needed) {
  if (needed <= static_cast<std::size_t>(INT_MAX)) {
    warn(g, 278, static_cast<int>(needed));
  } else {
    warn(g, 278, static_cast<double>(needed));
  }
}

}  // namespace

namespace api {

void contur(GlobalBlock& g, const double* xray, int nx, const double* yray, int ny,
            const double* zmat, double zlev) {
  const GridData grid{xray, nx, yray, ny, zmat};
  if (!check_grid(g, grid, zlev)) {
    return;
  }
  ContourState& c = g.contours;
  trace_grid(grid, zlev, c.lines, c.cells);
  draw_contour_lines(g, c.lines, zlev);
}

void conpts(GlobalBlock& g, const double* xray, int nx, const double* yray, int ny,
            const double* zmat, double zlev, double* xpts, double* ypts, int nmax, int* nray,
            int nlmax, int* nlin) {
  *nlin = 0;
  const GridData grid{xray, nx, yray, ny, zmat};
  if (!check_grid(g, grid, zlev)) {
    return;
  }
  ContourState& c = g.contours;
  trace_grid(grid, zlev, c.lines, c.cells);
  const ContourLines& l = c.lines;
  const auto points = static_cast<long long>(l.x.size());
  const auto lines = static_cast<long long>(l.lines());
  if (points > nmax) {
    too_small(g, l.x.size());
  }
  if (lines > nlmax) {
    too_small(g, l.lines());
  }
  // Whole lines, from the first, as long as both arrays hold them.
  int k = 0;
  std::size_t used = 0;
  for (; k < nlmax && static_cast<std::size_t>(k) < l.lines(); ++k) {
    const std::size_t b = l.begin(static_cast<std::size_t>(k));
    const std::size_t len = l.ends[static_cast<std::size_t>(k)] - b;
    if (used + len > static_cast<std::size_t>(std::max(nmax, 0))) {
      break;
    }
    std::copy_n(l.x.begin() + static_cast<std::ptrdiff_t>(b), len, xpts + used);
    std::copy_n(l.y.begin() + static_cast<std::ptrdiff_t>(b), len, ypts + used);
    nray[k] = static_cast<int>(len);
    used += len;
  }
  *nlin = k;
}

void concrv(GlobalBlock& g, const double* xray, const double* yray, int n, double zlev) {
  if (n < 2) {
    warn(g, 30, n);
    return;
  }
  if (!std::isfinite(zlev)) {
    warn(g, 2, zlev);
    return;
  }
  ContourLines& l = g.contours.lines;
  l.clear();
  l.x.assign(xray, xray + n);
  l.y.assign(yray, yray + n);
  l.ends.push_back(static_cast<std::size_t>(n));
  const bool ring = n > 2 && xray[0] == xray[n - 1] && yray[0] == yray[n - 1];
  l.closed.push_back(ring ? 1 : 0);
  draw_contour_lines(g, l, zlev);
}

int triang(GlobalBlock& g, const double* xray, const double* yray, int n, int* i1ray, int* i2ray,
           int* i3ray, int nmax) {
  if (n < 3) {
    warn(g, 273, n);
    return 0;
  }
  if (n > kMaxTriangPoints) {
    warn(g, 53);
    return 0;
  }
  Triangulation t;
  delaunay(xray, yray, n, t);
  if (t.duplicates > 0) {
    warn(g, 274, static_cast<int>(t.duplicates));
  }
  if (!t.possible) {
    warn(g, 273);
    return 0;
  }
  const std::size_t count = t.corners.size() / 3;
  if (count > static_cast<std::size_t>(std::max(nmax, 0))) {
    too_small(g, count);
    return 0;
  }
  for (std::size_t k = 0; k < count; ++k) {
    i1ray[k] = t.corners[3 * k] + 1;
    i2ray[k] = t.corners[3 * k + 1] + 1;
    i3ray[k] = t.corners[3 * k + 2] + 1;
  }
  return static_cast<int>(count);
}

void contri(GlobalBlock& g, const double* xray, const double* yray, const double* zray, int n,
            const int* i1ray, const int* i2ray, const int* i3ray, int ntri, double zlev) {
  if (n < 3 || ntri < 1) {
    warn(g, 30, n < 3 ? n : ntri);
    return;
  }
  if (!std::isfinite(zlev)) {
    warn(g, 2, zlev);
    return;
  }
  ContourState& c = g.contours;
  const MeshData mesh{xray, yray, zray, n, i1ray, i2ray, i3ray, ntri};
  const long long skipped = trace_mesh(mesh, zlev, c.lines, c.mesh);
  if (skipped > 0) {
    warn(g, 275, static_cast<int>(skipped));
  }
  draw_contour_lines(g, c.lines, zlev);
}

void conlab(GlobalBlock& g, const char* ctext) { g.contours.label_text = ctext; }

void congap(GlobalBlock& g, double xfac) {
  if (check_range(g, xfac, 0.0, kMaxGap)) {
    g.contours.label_gap = xfac;
  }
}

}  // namespace api
}  // namespace zorvel
