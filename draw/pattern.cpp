// Fill patterns: shdpat selects one of the built-in patterns, myptrn defines line
// families of the program's own. The pattern is pipeline state, so every filled area
// (bars, pie slices, sectors, areas between curves, filled curve bars) takes it through
// fill_path; fill.cpp draws it.
//
// The built-in hatchings, angles counter-clockwise from the page's x axis, spacings in
// plot units (0.1 mm):
//
//    n   families            look                n   families            look
//    1   45 / 24             ////                7   45 / 12             ////  dense
//    2   135 / 24            \\\\                8   135 / 12            \\\\  dense
//    3   45, 135 / 24        xxxx                9   45, 135 / 12        xxxx  dense
//    4   0 / 24              ====               10   0 / 12              ====  dense
//    5   90 / 24             ||||               11   90 / 12             ||||  dense
//    6   0, 90 / 24          ++++ (grid)        12   0, 90 / 12          ++++  dense
//   13   0, 60, 120 / 24     triangles          14   0, 45, 90, 135 / 24 stars
//   15   45, 135 / 6         nearly solid
//
// 0 draws the outline alone, 16 fills solid (the default), 17 is the pattern of myptrn.
// Hatch lines lie at whole multiples of their spacing from the page's corner, so that
// neighbouring areas of one pattern continue each other's lines.

#include <algorithm>
#include <array>
#include <cmath>

#include "api_decl.h"
#include "core/global_block.h"
#include "core/keywords.h"
#include "core/messages.h"
#include "draw/pipeline.h"

namespace zorvel {
namespace {

constexpr double kWide = 24.0;
constexpr double kDense = 12.0;
// myptrn's spacings: from one plot unit to a metre.
constexpr int kMaxSpacing = 10000;

struct BuiltinPattern {
  int count;
  std::array<HatchFamily, 4> families;
};

constexpr std::array<BuiltinPattern, 15> kPatterns = {{
    {1, {{{45, kWide}}}},
    {1, {{{135, kWide}}}},
    {2, {{{45, kWide}, {135, kWide}}}},
    {1, {{{0, kWide}}}},
    {1, {{{90, kWide}}}},
    {2, {{{0, kWide}, {90, kWide}}}},
    {1, {{{45, kDense}}}},
    {1, {{{135, kDense}}}},
    {2, {{{45, kDense}, {135, kDense}}}},
    {1, {{{0, kDense}}}},
    {1, {{{90, kDense}}}},
    {2, {{{0, kDense}, {90, kDense}}}},
    {3, {{{0, kWide}, {60, kWide}, {120, kWide}}}},
    {4, {{{0, kWide}, {45, kWide}, {90, kWide}, {135, kWide}}}},
    {2, {{{45, 6}, {135, 6}}}},
}};

}  // namespace

void set_fill_pattern(GlobalBlock& g, int number) { g.pipe.pattern.number = number; }

int hatch_families(const FillPattern& f, int number, HatchFamily* out) {
  if (number == kUserPattern) {
    std::copy_n(f.user.begin(), f.user_count, out);
    return f.user_count;
  }
  if (number < 1 || number > static_cast<int>(kPatterns.size())) {
    return 0;
  }
  const BuiltinPattern& b = kPatterns[static_cast<std::size_t>(number - 1)];
  std::copy_n(b.families.begin(), b.count, out);
  return b.count;
}

FillPatternScope::FillPatternScope(GlobalBlock& g, int number)
    : g_(g), old_(g.pipe.pattern.number) {
  g.pipe.pattern.number = number;
}

FillPatternScope::~FillPatternScope() { g_.pipe.pattern.number = old_; }

SeamlessFillScope::SeamlessFillScope(GlobalBlock& g) : g_(g), old_(g.pipe.seamless_fills) {
  g.pipe.seamless_fills = true;
}

SeamlessFillScope::~SeamlessFillScope() { g_.pipe.seamless_fills = old_; }

namespace api {

void shdpat(GlobalBlock& g, int ipat) {
  if (check_range(g, ipat, kOutlinePattern, kSolidPattern)) {
    set_fill_pattern(g, ipat);
  }
}

void myptrn(GlobalBlock& g, const int* iang, const int* nspc, int n) {
  if (!check_range(g, n, 1, kMaxHatchFamilies)) {
    return;
  }
  for (int i = 0; i < n; ++i) {
    if (nspc[i] < 1 || nspc[i] > kMaxSpacing) {
      warn(g, 2, nspc[i]);
      return;
    }
  }
  FillPattern& f = g.pipe.pattern;
  for (int i = 0; i < n; ++i) {
    // Lines at a and a + 180 degrees are the same: the angle is kept within 0..180.
    const int a = iang[i] % 180;
    f.user[static_cast<std::size_t>(i)] = {static_cast<double>(a < 0 ? a + 180 : a),
                                           static_cast<double>(nspc[i])};
  }
  f.user_count = n;
  f.number = kUserPattern;
}

}  // namespace api
}  // namespace zorvel
