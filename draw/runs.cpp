// Text runs in driver fonts and pixel blocks: placed through the same point transforms,
// clipping and dispatch as lines, then handed to the driver whole.

#include <algorithm>
#include <cmath>

#include "core/global_block.h"
#include "draw/colour.h"
#include "draw/pipeline.h"

namespace zorvel {
namespace {

// Length of the probe along the base line that gives the device's view of the angle and
// the scale, in plot units.
constexpr double kProbe = 100.0;

// Whether a point (plot units, transformed) lies in the active clip region.
bool visible(const PipelineState& p, double x, double y) {
  double t0 = 0.0;
  double t1 = 0.0;
  switch (p.clip_mode) {
    case ClipMode::None:
      return true;
    case ClipMode::Rect:
      return clip_segment_rect(p.clip, x, y, x, y, t0, t1);
    case ClipMode::Auto:
    case ClipMode::Circle:
      break;
  }
  if (p.circle) {
    return clip_segment_circle(p.circle_x, p.circle_y, p.circle_r, x, y, x, y, t0, t1);
  }
  return clip_segment_rect(p.clip, x, y, x, y, t0, t1);
}

void append_utf8(std::string& s, std::uint32_t c) {
  if (c < 0x80) {
    s += static_cast<char>(c);
  } else if (c < 0x800) {
    s += static_cast<char>(0xc0 | (c >> 6));
    s += static_cast<char>(0x80 | (c & 0x3f));
  } else if (c < 0x10000) {
    s += static_cast<char>(0xe0 | (c >> 12));
    s += static_cast<char>(0x80 | ((c >> 6) & 0x3f));
    s += static_cast<char>(0x80 | (c & 0x3f));
  } else {
    s += static_cast<char>(0xf0 | ((c >> 18) & 0x07));
    s += static_cast<char>(0x80 | ((c >> 12) & 0x3f));
    s += static_cast<char>(0x80 | ((c >> 6) & 0x3f));
    s += static_cast<char>(0x80 | (c & 0x3f));
  }
}

}  // namespace

void draw_text_run(GlobalBlock& g, const TextRun& run) {
  PipelineState& p = g.pipe;
  if (!p.driver || (p.caps & kCapText) == 0U || run.glyphs.empty()) {
    return;
  }
  // The library's own degree factor, so that the text engine's angles come out exactly.
  const double a = std::fmod(run.angle, 360.0) * g.core.deg_to_rad;
  const double cs = std::cos(a);
  const double sn = std::sin(a);
  p.glyphs.clear();
  p.run_text.clear();
  double angle = 0.0;
  double scale = 0.0;
  for (const GlyphPlace& glyph : run.glyphs) {
    double x = 0.0;
    double y = 0.0;
    if (!place_point(g, glyph.x, glyph.y, x, y) || !visible(p, x, y)) {
      continue;
    }
    if (p.glyphs.empty()) {
      // The device's view of the base line at the first glyph gives the angle and the
      // scale of the run.
      double ex = 0.0;
      double ey = 0.0;
      if (!place_point(g, glyph.x + kProbe * cs, glyph.y - kProbe * sn, ex, ey)) {
        continue;
      }
      double dx0 = 0.0;
      double dy0 = 0.0;
      double dx1 = 0.0;
      double dy1 = 0.0;
      to_device(p, x, y, dx0, dy0);
      to_device(p, ex, ey, dx1, dy1);
      angle = std::atan2(dy1 - dy0, dx1 - dx0) * (180.0 / 3.14159265358979323846);
      scale = std::hypot(dx1 - dx0, dy1 - dy0) / kProbe;
    }
    GlyphPlace d = glyph;
    to_device(p, x, y, d.x, d.y);
    p.glyphs.push_back(d);
    append_utf8(p.run_text, glyph.unicode);
  }
  if (p.glyphs.empty()) {
    return;
  }
  TextRun out = run;
  out.utf8 = p.run_text;
  out.glyphs = p.glyphs;
  out.angle = angle;
  out.size = run.size * scale;
  end_polyline(g);
  p.driver->text(out);
  check_driver(g);
}

void draw_image(GlobalBlock& g, const Image& img) {
  PipelineState& p = g.pipe;
  if (!p.driver || img.pixels == nullptr || img.width <= 0 || img.height <= 0 ||
      (img.channels != 3 && img.channels != 4)) {
    return;
  }
  end_polyline(g);
  if ((p.caps & kCapImages) != 0U) {
    Image d = img;
    double x0 = 0.0;
    double y0 = 0.0;
    double x1 = 0.0;
    double y1 = 0.0;
    if (!place_point(g, img.x0, img.y0, x0, y0) || !place_point(g, img.x1, img.y1, x1, y1)) {
      return;
    }
    to_device(p, x0, y0, d.x0, d.y0);
    to_device(p, x1, y1, d.x1, d.y1);
    p.driver->image(d);
    check_driver(g);
    return;
  }
  // One filled rectangle per run of equal pixels in a row; transparent pixels are left
  // out, translucent ones drawn opaque.
  const int saved = g.colour.current;
  const double dx = (img.x1 - img.x0) / img.width;
  const double dy = (img.y1 - img.y0) / img.height;
  for (int j = 0; j < img.height; ++j) {
    const std::uint8_t* row = img.pixels + static_cast<std::size_t>(j) * img.stride;
    int i = 0;
    while (i < img.width) {
      const std::uint8_t* px = row + static_cast<std::size_t>(i) * img.channels;
      int k = i + 1;
      while (k < img.width &&
             std::equal(px, px + img.channels, row + static_cast<std::size_t>(k) * img.channels)) {
        ++k;
      }
      if (img.channels == 3 || px[3] != 0) {
        set_colour(g, explicit_rgb(px[0], px[1], px[2]));
        const double xa = img.x0 + i * dx;
        const double xb = img.x0 + k * dx;
        const double ya = img.y0 + j * dy;
        const double yb = img.y0 + (j + 1) * dy;
        const double xs[4] = {xa, xb, xb, xa};
        const double ys[4] = {ya, ya, yb, yb};
        const FillPatternScope solid(g, kSolidPattern);
        fill_polygon(g, xs, ys, 4);
      }
      i = k;
    }
  }
  set_colour(g, saved);
}

}  // namespace zorvel
