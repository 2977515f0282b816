// Contour lines of one level through a surface of triangles.
//
// Each triangle is turned counter-clockwise on the plane; going round it, the level
// enters through the edge that falls (first corner above, second below) and leaves
// through the edge that rises, as in the cells of the grid (grid_lines.cpp). Neighbours
// are found only for the crossed edges, by sorting them on their pair of corners: an edge
// shared by exactly two triangles joins them, any other edge ends a line there.

#include <algorithm>
#include <cmath>

#include "contour/lines.h"

namespace zorvel {
namespace {

constexpr std::int64_t kNone = -1;

int entry_of(std::int8_t s) { return s >> 2; }
int exit_of(std::int8_t s) { return s & 3; }

double fraction(double a, double b, double level) {
  double t = (level - a) / (b - a);
  if (!std::isfinite(t)) {
    t = (0.5 * level - 0.5 * a) / (0.5 * b - 0.5 * a);
  }
  return t < 0.0 ? 0.0 : t > 1.0 ? 1.0 : t;
}

double mix(double a, double b, double t) { return (1.0 - t) * a + t * b; }

std::uint64_t edge_key(int a, int b) {
  const auto lo = static_cast<std::uint64_t>(std::min(a, b));
  const auto hi = static_cast<std::uint64_t>(std::max(a, b));
  return lo << 32 | hi;
}

class MeshTracer {
 public:
  MeshTracer(const MeshData& m, double level, ContourLines& out, MeshWork& w)
      : m_(m), level_(level), out_(out), w_(w) {}

  // Whether a line comes into triangle t from a neighbour (else it starts there).
  bool fed(std::size_t t) const {
    const std::int64_t tw = w_.twin[3 * t + static_cast<std::size_t>(entry_of(w_.segment[t]))];
    if (tw == kNone) {
      return false;
    }
    const std::int8_t s = w_.segment[static_cast<std::size_t>(tw / 3)];
    return s >= 0 && exit_of(s) == tw % 3;
  }

  void trace(std::size_t t) {
    const std::size_t first = t;
    const std::size_t start = out_.x.size();
    add(t, entry_of(w_.segment[t]), start);
    bool closed = false;
    for (;;) {
      w_.done[t] = 1;
      const int x = exit_of(w_.segment[t]);
      add(t, x, start);
      const std::int64_t tw = w_.twin[3 * t + static_cast<std::size_t>(x)];
      if (tw == kNone) {
        break;
      }
      const auto next = static_cast<std::size_t>(tw / 3);
      const std::int8_t s = w_.segment[next];
      if (s < 0 || entry_of(s) != tw % 3) {
        break;  // a neighbour turned the other way (overlapping triangles)
      }
      if (w_.done[next] != 0) {
        closed = next == first;
        break;
      }
      t = next;
    }
    if (out_.x.size() - start < 2) {
      out_.x.resize(start);
      out_.y.resize(start);
      return;
    }
    out_.ends.push_back(out_.x.size());
    out_.closed.push_back(closed ? 1 : 0);
  }

 private:
  void add(std::size_t t, int k, std::size_t start) {
    const int u = w_.corners[3 * t + static_cast<std::size_t>(k)];
    const int v = w_.corners[3 * t + static_cast<std::size_t>((k + 1) % 3)];
    const auto a = static_cast<std::size_t>(std::min(u, v));
    const auto b = static_cast<std::size_t>(std::max(u, v));
    const double f = fraction(m_.z[a], m_.z[b], level_);
    const double x = mix(m_.x[a], m_.x[b], f);
    const double y = mix(m_.y[a], m_.y[b], f);
    if (out_.x.size() > start && out_.x.back() == x && out_.y.back() == y) {
      return;
    }
    out_.x.push_back(x);
    out_.y.push_back(y);
  }

  const MeshData& m_;
  double level_;
  ContourLines& out_;
  MeshWork& w_;
};

}  // namespace

long long trace_mesh(const MeshData& m, double level, ContourLines& out, MeshWork& w) {
  out.clear();
  const auto nt = static_cast<std::size_t>(std::max(m.ntri, 0));
  w.corners.assign(3 * nt, 0);
  w.segment.assign(nt, -1);
  w.twin.assign(3 * nt, kNone);
  w.done.assign(nt, 0);
  w.keys.clear();
  long long skipped = 0;
  const long long n = m.n;
  for (std::size_t t = 0; t < nt; ++t) {
    const long long idx[3] = {m.i1[t] - 1LL, m.i2[t] - 1LL, m.i3[t] - 1LL};
    if (std::any_of(idx, idx + 3, [n](long long i) { return i < 0 || i >= n; })) {
      ++skipped;
      continue;
    }
    int c[3] = {static_cast<int>(idx[0]), static_cast<int>(idx[1]), static_cast<int>(idx[2])};
    bool finite = true;
    for (const int k : c) {
      finite = finite && std::isfinite(m.x[k]) && std::isfinite(m.y[k]) && std::isfinite(m.z[k]);
    }
    if (!finite) {
      continue;
    }
    const double cross = (m.x[c[1]] - m.x[c[0]]) * (m.y[c[2]] - m.y[c[0]]) -
                         (m.y[c[1]] - m.y[c[0]]) * (m.x[c[2]] - m.x[c[0]]);
    if (cross < 0.0) {
      std::swap(c[1], c[2]);
    }
    int above = 0;
    for (int k = 0; k < 3; ++k) {
      w.corners[3 * t + static_cast<std::size_t>(k)] = c[k];
      above |= (m.z[c[k]] >= level ? 1 : 0) << k;
    }
    if (above == 0 || above == 7) {
      continue;
    }
    int entry = 0;
    int exit = 0;
    for (int k = 0; k < 3; ++k) {
      const bool a = ((above >> k) & 1) != 0;
      const bool b = ((above >> ((k + 1) % 3)) & 1) != 0;
      if (a && !b) {
        entry = k;
      } else if (!a && b) {
        exit = k;
      }
    }
    w.segment[t] = static_cast<std::int8_t>(entry * 4 + exit);
    for (const int k : {entry, exit}) {
      w.keys.push_back({edge_key(c[k], c[(k + 1) % 3]), 3 * t + static_cast<std::size_t>(k)});
    }
  }
  std::sort(w.keys.begin(), w.keys.end(), [](const EdgeKey& a, const EdgeKey& b) {
    return a.corners != b.corners ? a.corners < b.corners : a.slot < b.slot;
  });
  for (std::size_t i = 0; i < w.keys.size();) {
    std::size_t j = i + 1;
    while (j < w.keys.size() && w.keys[j].corners == w.keys[i].corners) {
      ++j;
    }
    if (j - i == 2) {
      w.twin[w.keys[i].slot] = static_cast<std::int64_t>(w.keys[i + 1].slot);
      w.twin[w.keys[i + 1].slot] = static_cast<std::int64_t>(w.keys[i].slot);
    }
    i = j;
  }
  MeshTracer tracer(m, level, out, w);
  for (int pass = 0; pass < 2; ++pass) {
    for (std::size_t t = 0; t < nt; ++t) {
      if (w.segment[t] >= 0 && w.done[t] == 0 && (pass == 1 || !tracer.fed(t))) {
        tracer.trace(t);
      }
    }
  }
  return skipped;
}

}  // namespace zorvel
