#pragma once
// Filled contour bands: the region between two levels, traced through a grid or a
// surface of triangles, as the outline edges of one polygon with holes.
//
// Every cell (triangle) is cut down to the part whose values lie in the band: a cell is
// clipped against both levels along its sides with the same edge points as the contour
// lines; a saddle cell (the level's corners alternating round it) is cut into four
// triangles about its centre, whose value is the mean of the corners, so that it joins
// its corners as the contour lines do. The pieces' sides shared by two pieces of the
// band cancel; what is left is the band's outline, joined into rings (holes run the
// other way round), filled as one path so that no seams show between the cells.

#include <cstddef>
#include <cstdint>
#include <vector>

#include "contour/contour_state.h"
#include "contour/lines.h"

namespace zorvel {

// The band lo <= z < hi (lo <= z <= hi with `closed_top`); lo may be -inf and hi +inf.
struct BandRange {
  double lo;
  double hi;
  bool closed_top;
};

// The outline edges of the band over the grid (taken as checked) into `edges`
// (cleared first); cells with a corner that is not a finite number are left out. `levels`
// (rising, nlev of them) are all the levels whose bands are drawn: a cell that is a
// saddle for any of them is cut into triangles for every band, so that neighbouring
// bands share their outline exactly.
// With `ranges` (from cell_ranges), cells that the band does not reach are passed over
// without reading their corners.
void band_edges_grid(const GridData& grid, const BandRange& band, const double* levels,
                     int nlev, std::vector<BandEdge>& edges,
                     const std::vector<float>* ranges = nullptr);

// The range of every cell's corner values, row by row, as two floats rounded outwards
// (low, high), NaN for a cell with a corner that is not a finite number: computed once
// for all the bands of a call.
void cell_ranges(const GridData& grid, std::vector<float>& ranges);

// The same over triangles; triangles with an index outside 1..n are left out and counted.
long long band_edges_mesh(const MeshData& mesh, const BandRange& band,
                          std::vector<BandEdge>& edges);

// Cancels the edges that run both ways and joins the rest into closed rings: ring k holds
// the points ends[k - 1] .. ends[k] (0 for the first), without repeating its first point.
// `used` is work space.
void join_band_rings(std::vector<BandEdge>& edges, std::vector<std::uint8_t>& used,
                     std::vector<double>& x, std::vector<double>& y, std::vector<int>& ends);

}  // namespace zorvel

namespace zorvel {

// Most points of a triangle's piece between two levels.
inline constexpr int kMaxTrianglePiece = 12;

// The part of the triangle (x[k], y[k]) with the values v[k], linear over it, where
// lo <= v < hi (either may be infinite), into px, py (kMaxTrianglePiece points at most);
// its number of points, 0 for none.
int triangle_band_piece(const double* x, const double* y, const double* v, double lo, double hi,
                        double* px, double* py);

}  // namespace zorvel
