#pragma once
// Exact geometric tests for the triangulation: the sign of each result is that of the
// exact determinant of the given doubles. A floating-point evaluation with an error bound
// decides almost every case; only when it cannot, the determinant is evaluated again
// from its exact parts as floating-point expansions (sums of doubles that do not overlap),
// first from the rounded coordinate differences, and when those were not exact, from the
// differences with their rounding errors.
//
// The inputs must be finite, and their products must neither overflow nor underflow:
// the triangulation scales its points by a power of two into [-1, 1] first.

namespace zorvel {

struct Point2 {
  double x;
  double y;
};

// Positive when a, b, c turn counter-clockwise (c left of the line a -> b), negative
// when they turn clockwise, zero when they are collinear.
double orient2d(const Point2& a, const Point2& b, const Point2& c);

// For a, b, c counter-clockwise: positive when d lies inside their circumcircle,
// negative outside, zero on it (the sign is reversed for a clockwise a, b, c).
double incircle(const Point2& a, const Point2& b, const Point2& c, const Point2& d);

}  // namespace zorvel
