#pragma once
// Shapes of short polylines that a vector driver has written, so that one drawn again
// (a glyph's stroke, a marker) can be defined once and placed by reference. A shape is
// the list of its points' offsets from its first point, as integers in the units the
// driver writes; equal lists are the same shape.

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace zorvel {

class ShapeTable {
 public:
  // What find says of a shape: `name` -1 when it is new (remembered now, unless the table
  // is full: write the polyline as it is), else its number, with `define` set the first
  // time it comes again (write its definition, then place it).
  struct Found {
    int name = -1;
    bool define = false;
    std::span<const long long> offsets;  // the stored offsets of a shape found
  };

  // Offsets: x and y of each point after the first, relative to the first.
  Found find(std::span<const long long> offsets);
  // Forgets every shape (a new page or file); numbers go on counting.
  void clear();

  // Most shapes remembered; the table of slots has twice as many.
  static constexpr std::size_t kShapes = 4096;

 private:
  struct Shape {
    std::uint64_t hash = 0;
    std::size_t from = 0;  // into offsets_
    std::size_t count = 0;
    int name = -1;
  };
  std::vector<Shape> shapes_;
  std::vector<long long> offsets_;
  std::vector<int> slots_;  // index + 1 into shapes_, 0 empty
  int names_ = 0;
};

}  // namespace zorvel
