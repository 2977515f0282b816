#pragma once
// Contour lines of one level: traced through a rectangular grid (marching squares) or a
// surface of triangles, joined into polylines in user coordinates.
//
// Conventions shared by both tracers (and meant for the bands of shaded contours, which
// can reuse the cell cases and edge points below):
//   - a value at or above the level counts as above it; values that are not finite mask
//     every cell (triangle) they belong to, and lines end at masked cells;
//   - the crossing of an edge is interpolated linearly from the edge's first node (the
//     lower index) to its second, so that both cells of an edge get the same point;
//   - lines run with the values above the level on their left (x to the right, y up);
//   - a closed line repeats its first point at its end; consecutive equal points are
//     merged, and a line left with a single point is dropped.

#include <cstddef>
#include <cstdint>
#include <vector>

namespace zorvel {

// A grid of nx * ny values: z[j * nx + i] at (x[i], y[j]).
struct GridData {
  const double* x;
  int nx;
  const double* y;
  int ny;
  const double* z;
};

// Values at n points and triangles of them: i1[k], i2[k], i3[k] are 1-based indices.
struct MeshData {
  const double* x;
  const double* y;
  const double* z;
  int n;
  const int* i1;
  const int* i2;
  const int* i3;
  int ntri;
};

// Polylines: the points of every line one after another; line k holds the points
// ends[k - 1] (0 for the first) up to ends[k].
struct ContourLines {
  std::vector<double> x;
  std::vector<double> y;
  std::vector<std::size_t> ends;
  std::vector<std::uint8_t> closed;  // 1 for a closed line

  void clear() {
    x.clear();
    y.clear();
    ends.clear();
    closed.clear();
  }
  std::size_t lines() const { return ends.size(); }
  std::size_t begin(std::size_t k) const { return k == 0 ? 0 : ends[k - 1]; }
};

// The marching-squares case of a cell: bit k is set when corner k is above the level,
// corners counted counter-clockwise from the lower left (i, j), (i + 1, j),
// (i + 1, j + 1), (i, j + 1). Edge k runs from corner k to corner k + 1 (bottom, right,
// top, left). kMaskedCell marks a cell with a corner that is not a finite number.
inline constexpr std::uint8_t kMaskedCell = 0;
std::uint8_t cell_case(const GridData& grid, double level, int i, int j);

// For a saddle cell (case 5 or 10): whether its centre counts as above the level (the
// mean of its corners at or above it), which joins its two corners above.
bool saddle_centre_above(const GridData& grid, double level, int i, int j);

// The crossing of the level on edge `edge` of cell (i, j).
void edge_point(const GridData& grid, double level, int i, int j, int edge, double& x,
                double& y);

// Traces the contour lines of `level` through the grid into `out` (cleared first);
// `cells` is work space of one byte per cell. The grid is taken as checked: nx, ny >= 2.
void trace_grid(const GridData& grid, double level, ContourLines& out,
                std::vector<std::uint8_t>& cells);

// An edge crossed by the level: its two corners as one key, and the triangle edge
// (3 t + k) it belongs to.
struct EdgeKey {
  std::uint64_t corners;
  std::size_t slot;
};

// Work space of trace_mesh, reused.
struct MeshWork {
  std::vector<int> corners;          // per triangle its 0-based corners, counter-clockwise
  std::vector<std::int8_t> segment;  // entry edge * 4 + exit edge, -1 none
  std::vector<EdgeKey> keys;         // the crossed edges, sorted to find neighbours
  std::vector<std::int64_t> twin;    // per triangle edge (3 t + k): the same edge of the
                                     // neighbour, -1 none
  std::vector<std::uint8_t> done;    // triangles traced
};

// Traces the contour lines of `level` through the triangles into `out` (cleared first).
// Triangles with an index outside 1..n are left out; their number is returned.
long long trace_mesh(const MeshData& mesh, double level, ContourLines& out, MeshWork& work);

}  // namespace zorvel
