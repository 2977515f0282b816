#include "contour/bands.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>

namespace zorvel {
namespace {

// A node of the grid or the mesh (or a saddle cell's centre): its place, value and a
// number that orders the two ends of every line alike in all the pieces that share it.
struct Node {
  double x;
  double y;
  double v;
  std::int64_t id;
};

// A side of a piece, from its lower-numbered node to the other.
struct Line {
  Node a;
  Node b;
};

Line make_line(const Node& p, const Node& q) { return p.id < q.id ? Line{p, q} : Line{q, p}; }

// A corner of a clipped piece: bit k of `mask` is set when it lies on the piece's line k.
struct Vertex {
  double x;
  double y;
  double v;
  unsigned mask;
};

// Corners a piece can reach: three or four, and two more per level.
constexpr int kMaxVertices = 12;

struct Piece {
  Vertex p[kMaxVertices];
  int n = 0;
};

double fraction(double a, double b, double level) {
  double t = (level - a) / (b - a);
  if (!std::isfinite(t)) {
    t = (0.5 * level - 0.5 * a) / (0.5 * b - 0.5 * a);
  }
  return t < 0.0 ? 0.0 : t > 1.0 ? 1.0 : t;
}

double mix(double a, double b, double t) { return (1.0 - t) * a + t * b; }

// Where the level crosses from p to q: on a line of the piece from the line's own ends
// (so that the pieces on both sides of it get the same point), inside it from p and q.
Vertex crossing(const Line* lines, const Vertex& p, const Vertex& q, double level) {
  const unsigned common = p.mask & q.mask;
  if (common != 0U) {
    const int k = std::countr_zero(common);
    const Line& l = lines[k];
    const double t = fraction(l.a.v, l.b.v, level);
    return {mix(l.a.x, l.b.x, t), mix(l.a.y, l.b.y, t), level, 1U << k};
  }
  const double t = fraction(p.v, q.v, level);
  return {mix(p.x, q.x, t), mix(p.y, q.y, t), level, 0U};
}

// Keeps the part of `in` where inside(value) holds (the values run linearly along every
// side, and the corners inside form one run round the piece).
template <class Inside>
void clip(const Line* lines, const Piece& in, double level, Inside inside, Piece& out) {
  out.n = 0;
  for (int k = 0; k < in.n; ++k) {
    const Vertex& p = in.p[k];
    const Vertex& q = in.p[(k + 1) % in.n];
    const bool ip = inside(p.v);
    if (ip) {
      out.p[out.n++] = p;
    }
    if (ip != inside(q.v)) {
      out.p[out.n++] = crossing(lines, p, q, level);
    }
  }
}

// Whether some level has the corners of a cell (in order round it) alternating above
// (at or above the level) and below it: a saddle there.
bool saddle_for_any(const Node* c, const double* levels, int nlev) {
  const double* end = levels + nlev;
  for (int s = 0; s < 2; ++s) {
    // Corners s and s + 2 above a level that corners s + 1 and s + 3 are below.
    const double below = std::max(c[s + 1].v, c[(s + 3) & 3].v);
    const double above = std::min(c[s].v, c[s + 2].v);
    const double* l = std::upper_bound(levels, end, below);
    if (l != end && *l <= above) {
      return true;
    }
  }
  return false;
}

// Whether the cell across side k of cell (i, j) exists and has finite values (the two
// corners that it shares with the cell are checked by the caller).
bool neighbour_unmasked(const GridData& g, int i, int j, int k) {
  int i0 = 0, j0 = 0, i1 = 0, j1 = 0;  // its two other nodes
  switch (k) {
    case 0:
      i0 = i, j0 = j - 1, i1 = i + 1, j1 = j - 1;
      break;
    case 1:
      i0 = i + 2, j0 = j, i1 = i + 2, j1 = j + 1;
      break;
    case 2:
      i0 = i, j0 = j + 2, i1 = i + 1, j1 = j + 2;
      break;
    default:
      i0 = i - 1, j0 = j, i1 = i - 1, j1 = j + 1;
      break;
  }
  if (i0 < 0 || j0 < 0 || i1 >= g.nx || j1 >= g.ny) {
    return false;
  }
  const auto at = [&](int a, int b) {
    return g.z[static_cast<std::size_t>(b) * static_cast<std::size_t>(g.nx) +
               static_cast<std::size_t>(a)];
  };
  return std::isfinite(at(i0, j0)) && std::isfinite(at(i1, j1));
}

class BandCutter {
 public:
  BandCutter(const BandRange& b, std::vector<BandEdge>& edges) : b_(b), edges_(edges) {}

  bool below_top(double v) const { return b_.closed_top ? v <= b_.hi : v < b_.hi; }
  bool in_band(double v) const { return v >= b_.lo && below_top(v); }

  // The piece's part in the band (null: none); it lives until the next call.
  const Piece* piece(const Line* lines, const Piece& shape) {
    const Piece* cur = &shape;
    if (!std::isinf(b_.lo)) {
      clip(lines, *cur, b_.lo, [this](double v) { return v >= b_.lo; }, low_);
      if (low_.n < 3) {
        return nullptr;
      }
      cur = &low_;
    }
    if (!std::isinf(b_.hi)) {
      clip(lines, *cur, b_.hi, [this](double v) { return below_top(v); }, high_);
      if (high_.n < 3) {
        return nullptr;
      }
      cur = &high_;
    }
    return cur;
  }

  // The piece's part in the band, its sides added to the edges but for the cell sides
  // in `skip` (bit k: from c[k] to c[k + 1]).
  void cut(const Line* lines, const Piece& shape, const Node* c = nullptr, unsigned skip = 0) {
    if (const Piece* p = piece(lines, shape)) {
      emit(*p, c, skip);
    }
  }

  void emit(const Piece& piece, const Node* c = nullptr, unsigned skip = 0) {
    for (int k = 0; k < piece.n; ++k) {
      const Vertex& p = piece.p[k];
      const Vertex& q = piece.p[(k + 1) % piece.n];
      if ((p.x != q.x || p.y != q.y) && !skipped(p, q, c, skip)) {
        edges_.push_back({p.x, p.y, q.x, q.y});
      }
    }
  }

  // Whether p to q is a cell side that the neighbour across draws the other way, so that
  // both would cancel.
  static bool skipped(const Vertex& p, const Vertex& q, const Node* c, unsigned skip) {
    for (; skip != 0U; skip &= skip - 1) {
      const int k = std::countr_zero(skip);
      const Node& a = c[k];
      const Node& b = c[(k + 1) & 3];
      if (p.x == a.x && p.y == a.y && q.x == b.x && q.y == b.y) {
        return true;
      }
    }
    return false;
  }

 private:
  const BandRange& b_;
  std::vector<BandEdge>& edges_;
  Piece low_;
  Piece high_;
};

}  // namespace

void cell_ranges(const GridData& grid, std::vector<float>& ranges) {
  const auto cols = static_cast<std::size_t>(grid.nx - 1);
  ranges.resize(2 * cols * static_cast<std::size_t>(grid.ny - 1));
  for (int j = 0; j + 1 < grid.ny; ++j) {
    const double* row = grid.z + static_cast<std::int64_t>(j) * grid.nx;
    const double* up = row + grid.nx;
    float* out = ranges.data() + 2 * cols * static_cast<std::size_t>(j);
    for (int i = 0; i + 1 < grid.nx; ++i) {
      const double a = row[i], b = row[i + 1], c = up[i + 1], d = up[i];
      float lo = std::numeric_limits<float>::quiet_NaN();
      float hi = lo;
      if (std::isfinite(a) && std::isfinite(b) && std::isfinite(c) && std::isfinite(d)) {
        constexpr double kFloatMax = std::numeric_limits<float>::max();
        const double l = std::clamp(std::min(std::min(a, b), std::min(c, d)), -kFloatMax, kFloatMax);
        const double h = std::clamp(std::max(std::max(a, b), std::max(c, d)), -kFloatMax, kFloatMax);
        // Rounded outwards, so that the floats never exclude a cell the band reaches.
        lo = std::nextafter(static_cast<float>(l), -std::numeric_limits<float>::infinity());
        hi = std::nextafter(static_cast<float>(h), std::numeric_limits<float>::infinity());
      }
      out[2 * i] = lo;
      out[2 * i + 1] = hi;
    }
  }
}

void band_edges_grid(const GridData& grid, const BandRange& band, const double* levels,
                     int nlev, std::vector<BandEdge>& edges, const std::vector<float>* ranges) {
  edges.clear();
  BandCutter cutter(band, edges);
  const std::int64_t nodes = static_cast<std::int64_t>(grid.nx) * grid.ny;
  const float* range = ranges != nullptr ? ranges->data() : nullptr;
  for (int j = 0; j + 1 < grid.ny; ++j) {
    for (int i = 0; i + 1 < grid.nx; ++i, range = range != nullptr ? range + 2 : nullptr) {
      if (range != nullptr &&
          (!(range[0] == range[0]) || range[1] < band.lo || !cutter.below_top(range[0]))) {
        continue;  // masked, or wholly outside the band
      }
      const int ci[4] = {i, i + 1, i + 1, i};
      const int cj[4] = {j, j, j + 1, j + 1};
      Node c[4];
      double lo = 0.0;
      double hi = 0.0;
      bool masked = false;
      for (int k = 0; k < 4; ++k) {
        const std::int64_t id = static_cast<std::int64_t>(cj[k]) * grid.nx + ci[k];
        c[k] = {grid.x[ci[k]], grid.y[cj[k]], grid.z[id], id};
        masked = masked || !std::isfinite(c[k].v);
        lo = k == 0 ? c[k].v : std::min(lo, c[k].v);
        hi = k == 0 ? c[k].v : std::max(hi, c[k].v);
      }
      if (masked || hi < band.lo || !cutter.below_top(lo)) {
        continue;  // masked, or wholly outside the band
      }
      Line lines[4];
      Piece quad;
      quad.n = 4;
      for (int k = 0; k < 4; ++k) {
        lines[k] = make_line(c[k], c[(k + 1) & 3]);
        quad.p[k] = {c[k].x, c[k].y, c[k].v, (1U << k) | (1U << ((k + 3) & 3))};
      }
      // Sides inside the band with a cell across that is not masked: both cells keep
      // the whole side, which would cancel; neither adds it.
      unsigned skip = 0;
      for (int k = 0; k < 4; ++k) {
        if (cutter.in_band(c[k].v) && cutter.in_band(c[(k + 1) & 3].v) &&
            neighbour_unmasked(grid, i, j, k)) {
          skip |= 1U << k;
        }
      }
      if (cutter.in_band(lo) && cutter.in_band(hi)) {
        cutter.emit(quad, c, skip);  // the whole cell
        continue;
      }
      if (!saddle_for_any(c, levels, nlev)) {
        cutter.cut(lines, quad, c, skip);
        continue;
      }
      // Four triangles about the centre.
      const Node m{0.5 * c[0].x + 0.5 * c[1].x, 0.5 * c[0].y + 0.5 * c[3].y,
                   0.25 * c[0].v + 0.25 * c[1].v + 0.25 * c[2].v + 0.25 * c[3].v,
                   nodes + static_cast<std::int64_t>(j) * (grid.nx - 1) + i};
      for (int k = 0; k < 4; ++k) {
        const Node& p = c[k];
        const Node& q = c[(k + 1) & 3];
        const Line tl[3] = {make_line(p, q), make_line(p, m), make_line(q, m)};
        Piece tri;
        tri.n = 3;
        tri.p[0] = {p.x, p.y, p.v, 0b011U};
        tri.p[1] = {q.x, q.y, q.v, 0b101U};
        tri.p[2] = {m.x, m.y, m.v, 0b110U};
        cutter.cut(tl, tri, c, skip & (1U << k));
      }
    }
  }
}

long long band_edges_mesh(const MeshData& mesh, const BandRange& band,
                          std::vector<BandEdge>& edges) {
  edges.clear();
  BandCutter cutter(band, edges);
  long long skipped = 0;
  for (int t = 0; t < mesh.ntri; ++t) {
    const int idx[3] = {mesh.i1[t], mesh.i2[t], mesh.i3[t]};
    if (std::any_of(idx, idx + 3, [&](int v) { return v < 1 || v > mesh.n; })) {
      ++skipped;
      continue;
    }
    Node c[3];
    bool masked = false;
    for (int k = 0; k < 3; ++k) {
      const int p = idx[k] - 1;
      c[k] = {mesh.x[p], mesh.y[p], mesh.z[p], p};
      masked = masked || !std::isfinite(c[k].v) || !std::isfinite(c[k].x) ||
               !std::isfinite(c[k].y);
    }
    if (masked) {
      continue;
    }
    // Counter-clockwise, so that a side shared by two triangles runs both ways.
    const double area =
        (c[1].x - c[0].x) * (c[2].y - c[0].y) - (c[2].x - c[0].x) * (c[1].y - c[0].y);
    if (area == 0.0 || std::isnan(area)) {
      continue;
    }
    if (area < 0.0) {
      std::swap(c[1], c[2]);
    }
    Line lines[3];
    Piece tri;
    tri.n = 3;
    for (int k = 0; k < 3; ++k) {
      lines[k] = make_line(c[k], c[(k + 1) % 3]);
      tri.p[k] = {c[k].x, c[k].y, c[k].v, (1U << k) | (1U << ((k + 2) % 3))};
    }
    cutter.cut(lines, tri);
  }
  return skipped;
}

namespace {

bool point_less(double ax, double ay, double bx, double by) {
  return ax < bx || (ax == bx && ay < by);
}

// An edge with its ends in order, and +1 when it runs from the first to the second.
struct Undirected {
  double ax, ay, bx, by;
  int dir;
};

Undirected undirected(const BandEdge& e) {
  if (point_less(e.x2, e.y2, e.x1, e.y1)) {
    return {e.x2, e.y2, e.x1, e.y1, -1};
  }
  return {e.x1, e.y1, e.x2, e.y2, 1};
}

}  // namespace

void join_band_rings(std::vector<BandEdge>& edges, std::vector<std::uint8_t>& used,
                     std::vector<double>& x, std::vector<double>& y, std::vector<int>& ends) {
  x.clear();
  y.clear();
  ends.clear();
  // Shared sides cancel: sorted by their ends, what runs both ways goes.
  std::sort(edges.begin(), edges.end(), [](const BandEdge& p, const BandEdge& q) {
    const Undirected a = undirected(p);
    const Undirected b = undirected(q);
    if (a.ax != b.ax) return a.ax < b.ax;
    if (a.ay != b.ay) return a.ay < b.ay;
    if (a.bx != b.bx) return a.bx < b.bx;
    return a.by < b.by;
  });
  std::size_t kept = 0;
  for (std::size_t k = 0; k < edges.size();) {
    const Undirected a = undirected(edges[k]);
    int net = 0;
    std::size_t m = k;
    for (; m < edges.size(); ++m) {
      const Undirected b = undirected(edges[m]);
      if (b.ax != a.ax || b.ay != a.ay || b.bx != a.bx || b.by != a.by) {
        break;
      }
      net += b.dir;
    }
    for (int r = 0; r < std::abs(net); ++r) {
      edges[kept++] = net > 0 ? BandEdge{a.ax, a.ay, a.bx, a.by} : BandEdge{a.bx, a.by, a.ax, a.ay};
    }
    k = m;
  }
  edges.resize(kept);
  // Rings: from an edge on to one that starts where it ends, until none is left there
  // (every point has as many edges out as in, so that is where the ring began).
  std::sort(edges.begin(), edges.end(), [](const BandEdge& p, const BandEdge& q) {
    return point_less(p.x1, p.y1, q.x1, q.y1);
  });
  used.assign(edges.size(), 0);
  for (std::size_t s = 0; s < edges.size(); ++s) {
    if (used[s] != 0) {
      continue;
    }
    const std::size_t begin = x.size();
    std::size_t k = s;
    for (;;) {
      used[k] = 1;
      x.push_back(edges[k].x1);
      y.push_back(edges[k].y1);
      const double ex = edges[k].x2;
      const double ey = edges[k].y2;
      auto it = std::lower_bound(edges.begin(), edges.end(), BandEdge{ex, ey, 0.0, 0.0},
                                 [](const BandEdge& p, const BandEdge& q) {
                                   return point_less(p.x1, p.y1, q.x1, q.y1);
                                 });
      std::size_t next = edges.size();
      for (auto n = static_cast<std::size_t>(it - edges.begin());
           n < edges.size() && edges[n].x1 == ex && edges[n].y1 == ey; ++n) {
        if (used[n] == 0) {
          next = n;
          break;
        }
      }
      if (next == edges.size()) {
        break;
      }
      k = next;
    }
    // Points in the middle of a straight run along a grid line go.
    std::size_t out = begin;
    const std::size_t count = x.size() - begin;
    for (std::size_t i = 0; i < count; ++i) {
      const std::size_t cur = begin + i;
      const std::size_t nxt = begin + (i + 1) % count;
      if (out > begin) {
        const double px = x[out - 1];
        const double py = y[out - 1];
        if ((px == x[cur] && x[cur] == x[nxt]) || (py == y[cur] && y[cur] == y[nxt])) {
          continue;
        }
      }
      x[out] = x[cur];
      y[out] = y[cur];
      ++out;
    }
    x.resize(out);
    y.resize(out);
    if (out - begin < 3) {
      x.resize(begin);
      y.resize(begin);
      continue;
    }
    ends.push_back(static_cast<int>(out));
  }
}

}  // namespace zorvel

namespace zorvel {

int triangle_band_piece(const double* x, const double* y, const double* v, double lo, double hi,
                        double* px, double* py) {
  std::vector<BandEdge> unused;
  const BandRange band{lo, hi, false};
  BandCutter cutter(band, unused);
  Line lines[3];
  Piece tri;
  tri.n = 3;
  for (int k = 0; k < 3; ++k) {
    const int m = (k + 1) % 3;
    lines[k] = make_line(Node{x[k], y[k], v[k], k}, Node{x[m], y[m], v[m], m});
    tri.p[k] = {x[k], y[k], v[k], (1U << k) | (1U << ((k + 2) % 3))};
  }
  const Piece* piece = cutter.piece(lines, tri);
  if (piece == nullptr) {
    return 0;
  }
  for (int k = 0; k < piece->n; ++k) {
    px[k] = piece->p[k].x;
    py[k] = piece->p[k].y;
  }
  return piece->n;
}

}  // namespace zorvel
