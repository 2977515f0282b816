// Filled shapes (the contours of outline glyphs) through the pipeline: recorded once and
// placed by reference where fill_path would hand the driver the same contours, and left
// to fill_path wherever it would change them.

#include <gtest/gtest.h>

#include <vector>

#include "core/global_block.h"
#include "draw/pipeline.h"
#include "tests/unit/recording_driver.h"

namespace zorvel {
namespace {

using recording::Plot;

// A square of 40 units with a square hole of 20 wound the other way, and between them a
// piece of two points, which encloses nothing and is no contour.
class SquareWithHole final : public ShapeSource {
 public:
  void record(ShapeRecorder& r) const override {
    ++records;
    r.move(0, 0);
    r.draw(40, 0);
    r.draw(40, -40);
    r.draw(0, -40);
    r.move(5, 5);
    r.draw(6, 6);
    r.move(10, -10);
    r.draw(10, -30);
    r.draw(30, -30);
    r.draw(30, -10);
  }
  bool filled() const override { return true; }
  mutable int records = 0;
};

const ShapeKey kKey{1, 2, 3};
constexpr unsigned kCaps = kCapFill | kCapFilledShapes;

TEST(FilledShapes, RecordedOnceAndPlacedAsFillPathWouldFill) {
  // Catches a filled source recorded again at every use, a two-point piece kept as a
  // contour (or a contour dropped as a piece), placed points that differ from the ones
  // fill_path hands to the driver, vectors counted for a fill, and filled shapes taken
  // by drivers that place stroke shapes only.
  Plot shaped("PDF ", true, kCaps);
  Plot filled("PDF ", true, kCapFill);
  SquareWithHole square;
  const double at[][2] = {{100, 200}, {300, 250}};
  for (const auto& o : at) {
    EXPECT_TRUE(place_shape(shaped.g, kKey, o[0], o[1], square));
    EXPECT_FALSE(place_shape(filled.g, kKey, o[0], o[1], square));
    std::vector<double> xs;
    std::vector<double> ys;
    const double px[] = {0, 40, 40, 0, 5, 6, 10, 10, 30, 30};
    const double py[] = {0, 0, -40, -40, 5, 6, -10, -30, -30, -10};
    for (int i = 0; i < 10; ++i) {
      xs.push_back(o[0] + px[i]);
      ys.push_back(o[1] + py[i]);
    }
    const int ends[] = {4, 6, 10};
    fill_path(filled.g, xs.data(), ys.data(), ends, 3, FillRule::NonZero);
  }
  EXPECT_EQ(square.records, 1);
  EXPECT_EQ(shaped.g.core.vectors, filled.g.core.vectors);
  EXPECT_TRUE(shaped.rec->fills.empty());
  EXPECT_TRUE(shaped.rec->points.empty());
  ASSERT_EQ(shaped.rec->shapes.size(), 2U);
  ASSERT_EQ(filled.rec->fills.size(), 2U);
  EXPECT_EQ(shaped.rec->shapes[0].id, shaped.rec->shapes[1].id);
  for (std::size_t k = 0; k < 2; ++k) {
    const recording::Placed& sh = shaped.rec->shapes[k];
    const recording::Filled& f = filled.rec->fills[k];
    EXPECT_TRUE(sh.filled);
    EXPECT_EQ(f.ends, (std::vector<int>{4, 8}));
    ASSERT_EQ(sh.polylines.size(), 2U);
    std::size_t i = 0;
    for (const auto& contour : sh.polylines) {
      ASSERT_EQ(contour.size(), 4U);
      for (const recording::Sent& s : contour) {
        EXPECT_DOUBLE_EQ(s.x, f.xs[i]) << k << ' ' << i;
        EXPECT_DOUBLE_EQ(s.y, f.ys[i]) << k << ' ' << i;
        ++i;
      }
    }
  }
  // A stroke-shape driver takes no filled shape.
  Plot strokes("PDF ", true, kCapFill | kCapShapes);
  EXPECT_FALSE(place_shape(strokes.g, kKey, 100, 200, square));
  EXPECT_TRUE(strokes.rec->shapes.empty());
}

TEST(FilledShapes, LeftToFillPathWhereItWouldChangeTheFill) {
  // Catches a filled shape placed whole under a hatching, across the clip rectangle, or
  // under an affine map, where fill_path would hatch, cut or move its contours; and one
  // refused though it lies inside the clip rectangle or circle.
  SquareWithHole square;
  struct Case {
    const char* name;
    bool placed;
    void (*set)(GlobalBlock& g);
  };
  const Case cases[] = {
      {"solid, inside the page", true, [](GlobalBlock&) {}},
      {"hatching", false, [](GlobalBlock& g) { set_fill_pattern(g, 5); }},
      {"clip edge through it", false,
       [](GlobalBlock& g) {
         g.pipe.clip_mode = ClipMode::Rect;
         g.pipe.clip = {0, 0, 120, 1000};
       }},
      {"inside the clip rectangle", true,
       [](GlobalBlock& g) {
         g.pipe.clip_mode = ClipMode::Rect;
         g.pipe.clip = {100, 160, 140, 200};
       }},
      {"inside a clip circle", true, [](GlobalBlock& g) { set_clip_circle(g, 120, 180, 30); }},
      {"affine map", false,
       [](GlobalBlock& g) {
         const double a[6] = {1, 0.5, 0, 0, 1, 0};
         set_affine(g, a);
       }},
  };
  for (const Case& c : cases) {
    Plot plot("PDF ", true, kCaps);
    c.set(plot.g);
    EXPECT_EQ(place_shape(plot.g, kKey, 100, 200, square), c.placed) << c.name;
    EXPECT_EQ(plot.rec->shapes.size(), c.placed ? 1U : 0U) << c.name;
    EXPECT_TRUE(plot.rec->points.empty()) << c.name;
  }
}

}  // namespace
}  // namespace zorvel
