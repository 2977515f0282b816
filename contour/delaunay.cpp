// Delaunay triangulation by incremental insertion (Bowyer-Watson).
//
// The triangulation is kept with "ghost" triangles: every edge of the convex hull has,
// on its outer side, a triangle whose third corner is a vertex at infinity (kGhost). The
// hull then needs no special case: a point outside it lies in the "circle" of the ghost
// triangles whose edge it sees, and the same cavity rule inserts it.
//
//          c                      Each triangle lists its corners counter-clockwise,
//         / \                     ghosts as (a, b, kGhost) with the outside on the
//     n1 /   \ n0                 left of a -> b. n[k] is the neighbour across the edge
//       /  t  \                   opposite corner k.
//      a ----- b
//          n2
//
// Inserting point q: walk from the last new triangle towards q (each step crosses an
// edge that has q strictly on its far side), collect the cavity of the triangles whose
// circumcircle holds q strictly (depth first from the one found), then join q to every
// edge of the cavity's border. With exact predicates the cavity is star-shaped from q,
// so the new triangles are all counter-clockwise.
//
// Order of insertion (BRIO): the points are shuffled, cut into rounds of doubling size,
// and each round is sorted along a Hilbert curve, so that consecutive points are near
// each other (short walks) while the rounds keep the randomness that bounds the work.

#include "contour/delaunay.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "contour/predicates.h"

namespace zorvel {
namespace {

constexpr int kGhost = -1;
// Coordinates this much smaller than the largest are taken as 0, so that no product of
// differences in the predicates falls into the denormal range.
constexpr int kFlushBelow = -100;
// Points below which a round is not cut further.
constexpr std::size_t kSmallRound = 64;
// Cells of the Hilbert curve per side.
constexpr int kHilbertOrder = 16;

struct Tri {
  int v[3];
  int n[3];
};

bool is_ghost(const Tri& t) { return t.v[0] < 0 || t.v[1] < 0 || t.v[2] < 0; }

int ghost_corner(const Tri& t) { return t.v[0] < 0 ? 0 : t.v[1] < 0 ? 1 : 2; }

// splitmix64: a fixed seed, so that equal input gives equal output.
class Random {
 public:
  std::uint64_t next() {
    std::uint64_t z = (state_ += 0x9e3779b97f4a7c15ULL);
    z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9ULL;
    z = (z ^ (z >> 27)) * 0x94d049bb133111ebULL;
    return z ^ (z >> 31);
  }

 private:
  std::uint64_t state_ = 0x5eed5eed5eed5eedULL;
};

// Distance of (x, y) along a Hilbert curve through a 2^order square.
std::uint32_t hilbert(std::uint32_t x, std::uint32_t y) {
  const std::uint32_t n = 1U << kHilbertOrder;
  std::uint32_t d = 0;
  for (std::uint32_t s = n >> 1; s > 0; s >>= 1) {
    const std::uint32_t rx = (x & s) != 0 ? 1 : 0;
    const std::uint32_t ry = (y & s) != 0 ? 1 : 0;
    d += s * s * ((3 * rx) ^ ry);
    if (ry == 0) {
      if (rx == 1) {
        x = n - 1 - x;
        y = n - 1 - y;
      }
      std::swap(x, y);
    }
  }
  return d;
}

// A border edge of the cavity: corners u -> w as the cavity triangle lists them, the
// triangle outside and the index of the edge there.
struct Border {
  int u;
  int w;
  int outside;
  int slot;
};

class Builder {
 public:
  explicit Builder(std::size_t points) {
    p_.reserve(points);
    original_.reserve(points);
    tris_.reserve(2 * points + 8);
    mark_.reserve(2 * points + 8);
    link_.assign(points + 1, 0);
  }

  std::vector<Point2> p_;      // the points in insertion order, scaled
  std::vector<int> original_;  // their indices in the input
  std::vector<Tri> tris_;
  long long duplicates_ = 0;

  // The first triangle from three points that are not collinear, with its ghosts.
  void start(int a, int b, int c) {
    if (orient2d(p_[static_cast<std::size_t>(a)], p_[static_cast<std::size_t>(b)],
                 p_[static_cast<std::size_t>(c)]) < 0.0) {
      std::swap(b, c);
    }
    tris_.push_back({{a, b, c}, {-1, -1, -1}});
    tris_.push_back({{c, b, kGhost}, {-1, -1, -1}});
    tris_.push_back({{a, c, kGhost}, {-1, -1, -1}});
    tris_.push_back({{b, a, kGhost}, {-1, -1, -1}});
    // Neighbours: the edge u -> w of one triangle is w -> u of the other.
    for (std::size_t s = 0; s < 4; ++s) {
      for (int k = 0; k < 3; ++k) {
        const int u = tris_[s].v[(k + 1) % 3];
        const int w = tris_[s].v[(k + 2) % 3];
        for (std::size_t t = 0; t < 4; ++t) {
          for (int j = 0; j < 3; ++j) {
            if (tris_[t].v[(j + 1) % 3] == w && tris_[t].v[(j + 2) % 3] == u) {
              tris_[s].n[k] = static_cast<int>(t);
            }
          }
        }
      }
    }
    mark_.assign(4, 0);
    last_ = 0;
  }

  void insert(int q) {
    const Point2& pq = p_[static_cast<std::size_t>(q)];
    const int seed = locate(pq);
    const Tri& s = tris_[static_cast<std::size_t>(seed)];
    if (!is_ghost(s)) {
      for (const int v : s.v) {
        const Point2& pv = p_[static_cast<std::size_t>(v)];
        if (pv.x == pq.x && pv.y == pq.y) {
          // Of equal points the one first in the input stays.
          int& kept = original_[static_cast<std::size_t>(v)];
          kept = std::min(kept, original_[static_cast<std::size_t>(q)]);
          ++duplicates_;
          return;
        }
      }
    }
    dig(seed, pq);
    fill(q);
  }

 private:
  Point2 at(int v) const { return p_[static_cast<std::size_t>(v)]; }
  Tri& tri(int t) { return tris_[static_cast<std::size_t>(t)]; }

  // The triangle that holds q (a real one, q inside or on its border) or a ghost whose
  // hull edge has q strictly outside.
  int locate(const Point2& q) {
    int t = last_;
    if (is_ghost(tri(t))) {
      t = tri(t).n[ghost_corner(tri(t))];
    }
    for (;;) {
      const Tri& c = tri(t);
      const int first = static_cast<int>(random_.next() % 3);
      int next = -1;
      for (int s = 0; s < 3; ++s) {
        const int e = (first + s) % 3;
        if (orient2d(at(c.v[(e + 1) % 3]), at(c.v[(e + 2) % 3]), q) < 0.0) {
          next = c.n[e];
          break;
        }
      }
      if (next < 0) {
        return t;
      }
      t = next;
      if (is_ghost(tri(t))) {
        return t;
      }
    }
  }

  // Whether q lies strictly inside the circumcircle of triangle t; for a ghost, whether
  // q is strictly outside its hull edge, or on the edge's line between its corners.
  bool in_circle(int t, const Point2& q) {
    const Tri& c = tri(t);
    if (is_ghost(c)) {
      const int k = ghost_corner(c);
      const Point2 a = at(c.v[(k + 1) % 3]);
      const Point2 b = at(c.v[(k + 2) % 3]);
      const double o = orient2d(a, b, q);
      if (o != 0.0) {
        return o > 0.0;
      }
      if (a.x != b.x) {
        return (q.x > a.x && q.x < b.x) || (q.x < a.x && q.x > b.x);
      }
      return (q.y > a.y && q.y < b.y) || (q.y < a.y && q.y > b.y);
    }
    return incircle(at(c.v[0]), at(c.v[1]), at(c.v[2]), q) > 0.0;
  }

  // Collects the cavity of q from the triangle seed: cavity_ and its border_.
  void dig(int seed, const Point2& q) {
    stamp_ += 2;
    const std::uint32_t inside = stamp_;
    const std::uint32_t outside = stamp_ + 1;
    cavity_.clear();
    border_.clear();
    stack_.clear();
    stack_.push_back(seed);
    mark_[static_cast<std::size_t>(seed)] = inside;
    while (!stack_.empty()) {
      const int t = stack_.back();
      stack_.pop_back();
      cavity_.push_back(t);
      for (int e = 0; e < 3; ++e) {
        const int nb = tri(t).n[e];
        std::uint32_t& m = mark_[static_cast<std::size_t>(nb)];
        if (m == inside) {
          continue;
        }
        if (m == outside || !in_circle(nb, q)) {
          m = outside;
          const Tri& o = tri(nb);
          const int slot = o.n[0] == t ? 0 : o.n[1] == t ? 1 : 2;
          border_.push_back({tri(t).v[(e + 1) % 3], tri(t).v[(e + 2) % 3], nb, slot});
        } else {
          m = inside;
          stack_.push_back(nb);
        }
      }
    }
  }

  // Joins q to every border edge of the cavity, in the cavity's slots and new ones.
  void fill(int q) {
    slots_.clear();
    for (std::size_t i = 0; i < border_.size(); ++i) {
      if (i < cavity_.size()) {
        slots_.push_back(cavity_[i]);
      } else {
        slots_.push_back(static_cast<int>(tris_.size()));
        tris_.push_back({});
        mark_.push_back(0);
      }
    }
    for (std::size_t i = 0; i < border_.size(); ++i) {
      const Border& b = border_[i];
      const int s = slots_[i];
      tri(s) = {{b.u, b.w, q}, {-1, -1, b.outside}};
      tri(b.outside).n[b.slot] = s;
      link_[static_cast<std::size_t>(b.u + 1)] = s;
      if (b.u >= 0 && b.w >= 0) {
        last_ = s;
      }
    }
    // (u, w, q) meets (w, x, q) along w -> q: its edge opposite u, their edge opposite x.
    for (const int s : slots_) {
      const int next = link_[static_cast<std::size_t>(tri(s).v[1] + 1)];
      tri(s).n[0] = next;
      tri(next).n[1] = s;
    }
  }

  std::vector<std::uint32_t> mark_;  // per triangle: in or out of the cavity being dug
  std::vector<int> link_;            // per corner + 1: the new triangle that starts there
  std::vector<int> cavity_;
  std::vector<Border> border_;
  std::vector<int> slots_;  // the triangles of the new border edges
  std::vector<int> stack_;
  std::uint32_t stamp_ = 0;
  int last_ = 0;
  Random random_;
};

}  // namespace

void delaunay(const double* x, const double* y, int n, Triangulation& out) {
  out.corners.clear();
  out.duplicates = 0;
  out.possible = false;
  std::vector<int> order;
  order.reserve(static_cast<std::size_t>(std::max(n, 0)));
  double big = 0.0;
  for (int i = 0; i < n; ++i) {
    if (std::isfinite(x[i]) && std::isfinite(y[i])) {
      order.push_back(i);
      big = std::max({big, std::fabs(x[i]), std::fabs(y[i])});
    }
  }
  const std::size_t m = order.size();
  if (m < 3) {
    return;
  }
  // A power of two brings every coordinate into [-1, 1] without rounding, so that the
  // predicates' products cannot overflow; coordinates below 2^-100 become 0, so that
  // they cannot underflow either.
  const int shift = big > 0.0 ? -(std::ilogb(big) + 1) : 0;
  const double tiny = std::ldexp(1.0, kFlushBelow);
  const auto flush = [tiny](double v) { return std::fabs(v) < tiny ? 0.0 : v; };
  std::vector<Point2> scaled(m);
  Point2 lo{HUGE_VAL, HUGE_VAL};
  Point2 hi{-HUGE_VAL, -HUGE_VAL};
  for (std::size_t i = 0; i < m; ++i) {
    const int k = order[i];
    scaled[i] = {flush(std::ldexp(x[k], shift)), flush(std::ldexp(y[k], shift))};
    lo = {std::min(lo.x, scaled[i].x), std::min(lo.y, scaled[i].y)};
    hi = {std::max(hi.x, scaled[i].x), std::max(hi.y, scaled[i].y)};
  }

  // Order of insertion: keys[i] holds the Hilbert distance and the index into order.
  const double cells = (1U << kHilbertOrder) - 1;
  const double kx = hi.x > lo.x ? cells / (hi.x - lo.x) : 0.0;
  const double ky = hi.y > lo.y ? cells / (hi.y - lo.y) : 0.0;
  std::vector<std::uint64_t> keys(m);
  for (std::size_t i = 0; i < m; ++i) {
    const auto hx = static_cast<std::uint32_t>((scaled[i].x - lo.x) * kx);
    const auto hy = static_cast<std::uint32_t>((scaled[i].y - lo.y) * ky);
    keys[i] = static_cast<std::uint64_t>(hilbert(hx, hy)) << 32 | i;
  }
  Random random;
  for (std::size_t i = m - 1; i > 0; --i) {
    std::swap(keys[i], keys[static_cast<std::size_t>(random.next() % (i + 1))]);
  }
  for (std::size_t end = m; end > 0;) {
    const std::size_t begin = end > kSmallRound ? end / 2 : 0;
    std::sort(keys.begin() + static_cast<std::ptrdiff_t>(begin),
              keys.begin() + static_cast<std::ptrdiff_t>(end));
    end = begin;
  }
  Builder b(m);
  for (std::size_t i = 0; i < m; ++i) {
    const std::size_t k = keys[i] & 0xffffffffU;
    b.original_.push_back(order[k]);
    b.p_.push_back(scaled[k]);
  }
  keys = {};
  scaled = {};

  // The first triangle: the first point, the next one elsewhere, the next one off
  // their line.
  const auto same = [&](std::size_t i, std::size_t j) {
    return b.p_[i].x == b.p_[j].x && b.p_[i].y == b.p_[j].y;
  };
  std::size_t second = 1;
  while (second < m && same(0, second)) {
    ++second;
  }
  std::size_t third = second + 1;
  while (third < m && orient2d(b.p_[0], b.p_[second], b.p_[third]) == 0.0) {
    ++third;
  }
  if (third >= m) {
    return;
  }
  b.start(0, static_cast<int>(second), static_cast<int>(third));
  for (std::size_t i = 1; i < m; ++i) {
    if (i != second && i != third) {
      b.insert(static_cast<int>(i));
    }
  }
  out.duplicates = b.duplicates_;
  out.possible = true;
  for (const Tri& t : b.tris_) {
    if (!is_ghost(t)) {
      for (const int v : t.v) {
        out.corners.push_back(b.original_[static_cast<std::size_t>(v)]);
      }
    }
  }
}

}  // namespace zorvel
