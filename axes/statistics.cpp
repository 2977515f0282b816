// Statistics charts: histog counts values into bins for bars or curve, boxplt draws a box
// plot of a sample.
//
// Both follow numpy, so that a program's figures agree with the numbers it computes
// there: histog bins as numpy.histogram with a range (equal bins, the last one closed),
// boxplt takes its quartiles as numpy.percentile does by default (linear interpolation
// between the order statistics).
//
// A box plot, vertical (bartyp "HORI": the same turned on its side):
//
//        o        outlier: beyond 1.5 IQR from the box
//      -----      cap, half the box wide
//        |        whisker: to the furthest value within 1.5 IQR
//    +-------+    Q3
//    |       |
//    |=======|    median
//    +-------+    Q1
//        |
//      -----

#include <algorithm>
#include <cmath>
#include <vector>

#include "api_decl.h"
#include "axes/bars.h"
#include "axes/curves.h"
#include "axes/symbols.h"
#include "core/buffers.h"
#include "core/global_block.h"
#include "core/keywords.h"
#include "core/messages.h"
#include "draw/colour.h"
#include "draw/pipeline.h"

namespace zorvel {
namespace {

// Whiskers reach this many interquartile ranges beyond the box.
constexpr double kWhiskerReach = 1.5;
// The outliers' symbol when the program has chosen none (marker -1): a circle.
constexpr int kOutlierSymbol = 1;

// Quantile q of the sorted values s as numpy.percentile's default: linear between the
// neighbouring order statistics, the interpolation written from the nearer one as numpy
// writes it.
double quantile(const std::vector<double>& s, double q) {
  const double h = q * static_cast<double>(s.size() - 1);
  const double lo = std::floor(h);
  const auto i = static_cast<std::size_t>(lo);
  const double t = h - lo;
  if (i + 1 >= s.size()) {
    return s.back();
  }
  const double a = s[i];
  const double b = s[i + 1];
  const double diff = b - a;
  return t >= 0.5 ? b - diff * (1.0 - t) : a + diff * t;
}

// A colour that stands out on `fill`: the outline's, unless it is the fill itself; then
// the fill darkened, or lightened when it is dark already.
int median_colour(const GlobalBlock& g, const BarColours& k) {
  if (k.line != k.fill) {
    return k.line;
  }
  const Rgb c = colour_rgb(g, k.fill);
  const double luma = 0.299 * c.r + 0.587 * c.g + 0.114 * c.b;
  const auto mix = [&](int v) {
    return static_cast<int>(std::lround(luma < 80.0 ? v + 0.6 * (255 - v) : 0.45 * v));
  };
  return explicit_rgb(mix(c.r), mix(c.g), mix(c.b));
}

// A line from (c0, v0) to (c1, v1) in category and value page coordinates.
void segment(GlobalBlock& g, const BarLayout& l, double c0, double v0, double c1, double v1) {
  if (l.horizontal) {
    move_to(g, v0, c0);
    draw_to(g, v1, c1);
  } else {
    move_to(g, c0, v0);
    draw_to(g, c1, v1);
  }
}

}  // namespace

namespace api {

void histog(GlobalBlock& g, const double* xray, int n, double xa, double xe, int nbin,
            const char* copt, double* xbray, double* ybray) {
  const int mode = match_keyword(g, "COUN+DENS+CUMU", copt);
  if (mode == 0) {
    return;
  }
  if (n < 1 || nbin < 1) {
    warn(g, 2, n < 1 ? n : nbin);
    return;
  }
  const double range = xe - xa;
  if (!std::isfinite(xa) || !std::isfinite(xe) || !(range > 0.0) || !std::isfinite(range)) {
    warn(g, 2, xe);
    return;
  }
  // The bins' edges as numpy.linspace spaces them (the last one exactly xe), kept in xb
  // until the centres replace them.
  const double step = range / nbin;
  const double per_unit = nbin / range;
  const auto edge = [&](int k) { return k == nbin ? xe : k * step + xa; };
  // Integer counts: a sum of doubles would chain every value to the one before.
  std::vector<long long>& counts = g.charts.bars.counts;
  counts.assign(static_cast<std::size_t>(nbin), 0);
  long long outside = 0;
  long long nans = 0;
  const int last = nbin - 1;
  for (int i = 0; i < n; ++i) {
    const double v = xray[i];
    if (!(v >= xa && v <= xe)) {
      (std::isnan(v) ? nans : outside) += 1;
      continue;
    }
    // The bin from the value's fraction of the range, then corrected by the edges
    // themselves, so that a value on an edge falls into the bin that begins there (the
    // edge below bin k < nbin is k * step + xa).
    int k = std::min(static_cast<int>((v - xa) * per_unit), last);
    k -= static_cast<int>(v < k * step + xa);
    k += static_cast<int>(k < last && v >= (k + 1) * step + xa);
    ++counts[static_cast<std::size_t>(k)];
  }
  const auto inside = static_cast<double>(n - outside - nans);
  for (int k = 0; k < nbin; ++k) {
    ybray[k] = static_cast<double>(counts[static_cast<std::size_t>(k)]);
  }
  for (int k = 0; k < nbin; ++k) {
    const double e0 = edge(k);
    const double e1 = edge(k + 1);
    xbray[k] = 0.5 * (e0 + e1);
    if (mode == 2) {
      ybray[k] = inside > 0.0 ? ybray[k] / (e1 - e0) / inside : 0.0;
    } else if (mode == 3 && k > 0) {
      ybray[k] += ybray[k - 1];
    }
  }
  if (outside > 0) {
    warn(g, 262, static_cast<int>(std::min(outside, 2147483647LL)));
  }
}

void boxplt(GlobalBlock& g, const double* xray, int n, double xpos) {
  if (n < 1) {
    warn(g, 2, n);
    return;
  }
  std::vector<double>& s = g.charts.bars.scratch;
  s.clear();
  for (int i = 0; i < n; ++i) {
    if (std::isfinite(xray[i])) {
      s.push_back(xray[i]);
    } else {
      count_nan(g);
    }
  }
  const BarLayout l = bar_layout(g);
  const double c = bar_category_page(g, l, xpos);
  if (std::isnan(c)) {
    count_nan(g);
    return;
  }
  if (s.empty()) {
    return;
  }
  std::sort(s.begin(), s.end());
  const double q1 = quantile(s, 0.25);
  const double median = quantile(s, 0.5);
  const double q3 = quantile(s, 0.75);
  const double reach = kWhiskerReach * (q3 - q1);
  // The whiskers end at the furthest values within reach of the box.
  const double low = *std::lower_bound(s.begin(), s.end(), q1 - reach);
  const double high = *(std::upper_bound(s.begin(), s.end(), q3 + reach) - 1);

  const double w = bar_width(g, l, 0.0);
  const double c0 = c - 0.5 * w;
  const double c1 = c + 0.5 * w;
  const auto v = [&](double value) { return bar_value_page(g, l, value); };
  {
    const CurveColour colour(g, true);
    const BarColours k = bar_colours(g);
    const DashScope solid(g);
    draw_bar(g, l, k, c0, c1, v(q1), v(q3), 0.0, 0.0);
    set_colour_if(g, k.line);
    segment(g, l, c, v(q1), c, v(low));
    segment(g, l, c, v(q3), c, v(high));
    segment(g, l, c - 0.25 * w, v(low), c + 0.25 * w, v(low));
    segment(g, l, c - 0.25 * w, v(high), c + 0.25 * w, v(high));
    set_colour_if(g, median_colour(g, k));
    segment(g, l, c0, v(median), c1, v(median));

    // The outliers, as symbols where they can be placed (not at or below zero on a log
    // axis, where a bar would start at the axis' end).
    const CurveState& cs = g.curves;
    const int symbol = cs.symbol >= 0 && symbol_defined(g, cs.symbol) ? cs.symbol : kOutlierSymbol;
    set_colour_if(g, cs.symbol_colour >= 0 ? cs.symbol_colour : k.line);
    const bool log = g.axes.log[static_cast<std::size_t>(l.value_axis)];
    for (const double value : s) {
      if ((value >= low && value <= high) || (log && value <= 0.0)) {
        continue;
      }
      const double p = v(value);
      draw_symbol(g, symbol, l.horizontal ? p : c, l.horizontal ? c : p, cs.symbol_height);
    }
    end_polyline(g);
    record_bar_legend(g, k.fill);
  }
  end_polyline(g);
}

}  // namespace api
}  // namespace zorvel
