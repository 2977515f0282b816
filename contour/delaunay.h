#pragma once
// Delaunay triangulation of scattered points.

#include <vector>

namespace zorvel {

struct Triangulation {
  std::vector<int> corners;  // three 0-based point indices per triangle, counter-clockwise
  long long duplicates = 0;  // points left out: an earlier point lies at the same place
  bool possible = false;     // false: fewer than three distinct points, or all on a line
};

// Triangulates the points (x[i], y[i]), i < n, that have finite coordinates (the others
// are left out): no point lies strictly inside the circumcircle of any triangle, and
// the triangles cover the convex hull. Points are inserted one by one (Bowyer-Watson) in
// a randomised order that follows a space-filling curve within each round, so that the
// work grows as n log n; the result does not depend on anything but the input. Where
// four or more points lie on one circle, one of the valid triangulations is chosen.
void delaunay(const double* x, const double* y, int n, Triangulation& out);

}  // namespace zorvel
