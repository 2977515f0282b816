// Marching squares: the contour lines of one level through a rectangular grid.
//
//   (i, j+1) 3 ----- edge 2 ----- 2 (i+1, j+1)
//            |                    |
//          edge 3     cell      edge 1
//            |                    |
//     (i, j) 0 ----- edge 0 ----- 1 (i+1, j)
//
// Going round a cell counter-clockwise, an edge whose first corner is above the level and
// whose second is below ("falling") is where a line enters the cell with the values above
// on its left, and it leaves through an edge whose first corner is below ("rising"). A
// cell has one such pair, or two in a saddle (case 5 or 10), where the edges alternate:
// with the centre above, a falling edge is joined to the rising edge after it, which
// leaves the corners above connected through the cell; otherwise to the one before it.
//
// Lines are followed from cell to cell: first from every falling edge on the border of
// the grid or of a masked cell (the open lines), then from whatever is left (the closed
// ones). Each cell remembers which of its segments have been traced.

#include <cmath>

#include "contour/lines.h"

namespace zorvel {
namespace {

constexpr std::uint8_t kCaseBits = 0x0f;

// Bit of a cell: its segment entering through edge e has been traced.
constexpr std::uint8_t traced_bit(int e) { return static_cast<std::uint8_t>(16 << e); }

bool corner_above(std::uint8_t c, int k) { return ((c >> (k & 3)) & 1) != 0; }
bool falling(std::uint8_t c, int e) { return corner_above(c, e) && !corner_above(c, e + 1); }
bool rising(std::uint8_t c, int e) { return !corner_above(c, e) && corner_above(c, e + 1); }
bool saddle(std::uint8_t c) { return c == 5 || c == 10; }

// The cells across each edge, and the edge's number there.
constexpr int kStepI[4] = {0, 1, 0, -1};
constexpr int kStepJ[4] = {-1, 0, 1, 0};
constexpr int opposite(int e) { return (e + 2) & 3; }

double node(const GridData& g, int i, int j) {
  return g.z[static_cast<std::size_t>(j) * static_cast<std::size_t>(g.nx) +
             static_cast<std::size_t>(i)];
}

// Where the level lies between the values a (t = 0) and b (t = 1), which are on either
// side of it. Halved values keep the difference finite near the largest doubles.
double fraction(double a, double b, double level) {
  double t = (level - a) / (b - a);
  if (!std::isfinite(t)) {
    t = (0.5 * level - 0.5 * a) / (0.5 * b - 0.5 * a);
  }
  return t < 0.0 ? 0.0 : t > 1.0 ? 1.0 : t;
}

// Exact at both ends, and without overflow between far-apart coordinates.
double mix(double a, double b, double t) { return (1.0 - t) * a + t * b; }

class Tracer {
 public:
  Tracer(const GridData& grid, double level, ContourLines& out, std::vector<std::uint8_t>& cells)
      : g_(grid), level_(level), out_(out), cells_(cells), cx_(grid.nx - 1), cy_(grid.ny - 1) {}

  std::uint8_t& cell(int i, int j) {
    return cells_[static_cast<std::size_t>(j) * static_cast<std::size_t>(cx_) +
                  static_cast<std::size_t>(i)];
  }

  // Whether a line can come into cell (i, j) through edge e: the cell across exists and
  // is not masked. (Across an edge that the level crosses, an unmasked cell always has
  // a segment, so a case of 0 there means masked.)
  bool fed(int i, int j, int e) {
    const int ni = i + kStepI[e];
    const int nj = j + kStepJ[e];
    if (ni < 0 || nj < 0 || ni >= cx_ || nj >= cy_) {
      return false;
    }
    return (cell(ni, nj) & kCaseBits) != kMaskedCell;
  }

  // Follows the line that enters cell (i, j) through edge e until it leaves the grid,
  // meets a masked cell or comes back to where it started.
  void trace(int i, int j, int e) {
    const std::size_t start = out_.x.size();
    add(i, j, e, start);
    bool closed = false;
    for (;;) {
      std::uint8_t& c = cell(i, j);
      c = static_cast<std::uint8_t>(c | traced_bit(e));
      const int x = exit_edge(i, j, c & kCaseBits, e);
      add(i, j, x, start);
      const int ni = i + kStepI[x];
      const int nj = j + kStepJ[x];
      if (ni < 0 || nj < 0 || ni >= cx_ || nj >= cy_) {
        break;
      }
      const std::uint8_t n = cell(ni, nj);
      if ((n & kCaseBits) == kMaskedCell) {
        break;
      }
      e = opposite(x);
      if ((n & traced_bit(e)) != 0) {
        closed = true;  // back at the first segment
        break;
      }
      i = ni;
      j = nj;
    }
    finish(start, closed);
  }

 private:
  int exit_edge(int i, int j, std::uint8_t c, int entry) const {
    if (saddle(c)) {
      return saddle_centre_above(g_, level_, i, j) ? (entry + 1) & 3 : (entry + 3) & 3;
    }
    for (int e = 0; e < 4; ++e) {
      if (rising(c, e)) {
        return e;
      }
    }
    return entry;  // not reached: a cell with a falling edge has a rising one
  }

  void add(int i, int j, int e, std::size_t start) {
    double x = 0.0;
    double y = 0.0;
    edge_point(g_, level_, i, j, e, x, y);
    if (out_.x.size() > start && out_.x.back() == x && out_.y.back() == y) {
      return;  // through a corner on the level: the same point again
    }
    out_.x.push_back(x);
    out_.y.push_back(y);
  }

  void finish(std::size_t start, bool closed) {
    if (out_.x.size() - start < 2) {
      out_.x.resize(start);
      out_.y.resize(start);
      return;
    }
    out_.ends.push_back(out_.x.size());
    out_.closed.push_back(closed ? 1 : 0);
  }

  const GridData& g_;
  double level_;
  ContourLines& out_;
  std::vector<std::uint8_t>& cells_;
  int cx_;
  int cy_;
};

}  // namespace

std::uint8_t cell_case(const GridData& grid, double level, int i, int j) {
  const double z[4] = {node(grid, i, j), node(grid, i + 1, j), node(grid, i + 1, j + 1),
                       node(grid, i, j + 1)};
  std::uint8_t c = 0;
  for (int k = 0; k < 4; ++k) {
    if (!std::isfinite(z[k])) {
      return kMaskedCell;
    }
    if (z[k] >= level) {
      c = static_cast<std::uint8_t>(c | (1 << k));
    }
  }
  return c;
}

bool saddle_centre_above(const GridData& grid, double level, int i, int j) {
  // Quarters first: the sum of four large values must not overflow.
  const double mean = 0.25 * node(grid, i, j) + 0.25 * node(grid, i + 1, j) +
                      0.25 * node(grid, i + 1, j + 1) + 0.25 * node(grid, i, j + 1);
  return mean >= level;
}

void edge_point(const GridData& grid, double level, int i, int j, int edge, double& x, double& y) {
  if (edge == 0 || edge == 2) {
    const int row = edge == 0 ? j : j + 1;
    const double t = fraction(node(grid, i, row), node(grid, i + 1, row), level);
    x = mix(grid.x[i], grid.x[i + 1], t);
    y = grid.y[row];
  } else {
    const int col = edge == 3 ? i : i + 1;
    const double t = fraction(node(grid, col, j), node(grid, col, j + 1), level);
    x = grid.x[col];
    y = mix(grid.y[j], grid.y[j + 1], t);
  }
}

void trace_grid(const GridData& grid, double level, ContourLines& out,
                std::vector<std::uint8_t>& cells) {
  out.clear();
  const int cx = grid.nx - 1;
  const int cy = grid.ny - 1;
  cells.resize(static_cast<std::size_t>(cx) * static_cast<std::size_t>(cy));
  std::size_t k = 0;
  for (int j = 0; j < cy; ++j) {
    for (int i = 0; i < cx; ++i) {
      cells[k++] = cell_case(grid, level, i, j);
    }
  }
  Tracer t(grid, level, out, cells);
  for (int pass = 0; pass < 2; ++pass) {
    for (int j = 0; j < cy; ++j) {
      for (int i = 0; i < cx; ++i) {
        const std::uint8_t c = t.cell(i, j) & kCaseBits;
        if (c == 0 || c == kCaseBits) {
          continue;
        }
        for (int e = 0; e < 4; ++e) {
          // The first pass starts the open lines only; the second the closed ones.
          if (falling(c, e) && (t.cell(i, j) & traced_bit(e)) == 0 &&
              (pass == 1 || !t.fed(i, j, e))) {
            t.trace(i, j, e);
          }
        }
      }
    }
  }
}

}  // namespace zorvel
