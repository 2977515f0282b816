// The rendering step: a laid-out string is drawn through the pipeline from a pen
// position along the text angle.
//
// Geometry of one glyph, in plot units (y downwards), with s, c the sine and cosine of
// the text angle:
//
//        up = (-s, -c)
//          ^
//          |   v (font units * unit_y)
//          |
//   pen ---+-------------> base line = (c, -s)
//           u (font units * unit_x, + slant * v, + inset)
//
//   X = X0 - s * raise + u * c - v * s
//   Y = Y0 - c * raise - v * c - u * s

#include <bit>
#include <cmath>
#include <cstdint>

#include "axes/symbols.h"
#include "core/global_block.h"
#include "draw/colour.h"
#include "draw/pipeline.h"
#include "text/file_fonts.h"
#include "text/font.h"
#include "text/ps_fonts.h"
#include "text/formula.h"
#include "text/glyph_frame.h"
#include "text/layout.h"

namespace zorvel {
namespace {

// Contour labels: a character is drawn only when its centre lies within the circle.
bool visible(const TextState& t, double x, double y, double width) {
  if (!t.label_mode) {
    return true;
  }
  const double along = 0.5 * width;
  const double up = 0.5 * t.height;
  const double cx = x + along * t.cos_a - up * t.sin_a;
  const double cy = y - along * t.sin_a - up * t.cos_a;
  return std::hypot(cx - t.label_cx, cy - t.label_cy) <= t.label_radius;
}


void draw_strokes(GlobalBlock& g, const AlphabetSlot& s, int glyph, const GlyphFrame& fr) {
  for_each_point(s, glyph, [&](double fx, double fy, bool first) {
    double x = 0.0;
    double y = 0.0;
    fr.place(fx, fy, x, y);
    if (first) {
      move_to(g, x, y);
    } else {
      draw_to(g, x, y);
    }
  });
}

// A stroke glyph for the pipeline's shapes: its polylines with the pen at (0, 0).
class StrokeShape final : public ShapeSource {
 public:
  StrokeShape(const AlphabetSlot& s, int glyph, const GlyphFrame& fr)
      : s_(s), glyph_(glyph), fr_(fr) {}
  void record(ShapeRecorder& r) const override {
    for_each_point(s_, glyph_, [&](double fx, double fy, bool first) {
      double x = 0.0;
      double y = 0.0;
      fr_.place(fx, fy, x, y);
      if (first) {
        r.move(x, y);
      } else {
        r.draw(x, y);
      }
    });
  }

 private:
  const AlphabetSlot& s_;
  int glyph_;
  GlyphFrame fr_;
};

// Draws a stroke glyph as a shape when the device places shapes (the same glyph at the
// same size and angle is then written once); false when it must be drawn line by line.
bool place_stroke_glyph(GlobalBlock& g, const AlphabetSlot& s, int glyph,
                        const GlyphFrame& fr) {
  if ((g.pipe.caps & kCapShapes) == 0U) {
    return false;
  }
  GlyphFrame rel = fr;
  rel.x0 = 0.0;
  rel.y0 = 0.0;
  const ShapeKey key{reinterpret_cast<std::uintptr_t>(s.index),
                     static_cast<std::uint64_t>(glyph) | (fr.italic ? 1ULL << 20 : 0ULL) |
                         static_cast<std::uint64_t>(std::bit_cast<std::uint32_t>(
                             static_cast<float>(s.offset_unit)))
                             << 32,
                     std::bit_cast<std::uint64_t>(fr.ux),
                     std::bit_cast<std::uint64_t>(fr.uy),
                     std::bit_cast<std::uint64_t>(fr.slant),
                     std::bit_cast<std::uint64_t>(fr.inset),
                     std::bit_cast<std::uint64_t>(fr.sn),
                     std::bit_cast<std::uint64_t>(fr.cs)};
  return place_shape(g, key, fr.x0, fr.y0, StrokeShape(s, glyph, rel));
}

// Fills all contours of an outline glyph as one path by the even-odd rule, so that inner
// contours are holes whichever way they run. The point that closes a contour is left
// out (paths close themselves). False when a contour has too few points to enclose
// anything; the others are filled all the same.
bool fill_outline(GlobalBlock& g, const AlphabetSlot& s, int glyph, const GlyphFrame& fr) {
  TextScratch& sc = g.text.scratch;
  sc.xs.clear();
  sc.ys.clear();
  sc.ends.clear();
  bool whole = true;
  std::size_t start = 0;
  auto end_contour = [&]() {
    std::size_t n = sc.xs.size();
    if (n - start >= 2 && sc.xs[n - 1] == sc.xs[start] && sc.ys[n - 1] == sc.ys[start]) {
      sc.xs.pop_back();
      sc.ys.pop_back();
      --n;
    }
    if (n - start < 3) {
      whole = false;
      sc.xs.resize(start);
      sc.ys.resize(start);
      return;
    }
    sc.ends.push_back(static_cast<int>(n));
    start = n;
  };
  for_each_point(s, glyph, [&](double fx, double fy, bool first) {
    if (first && sc.xs.size() > start) {
      end_contour();
    }
    double x = 0.0;
    double y = 0.0;
    fr.place(fx, fy, x, y);
    sc.xs.push_back(x);
    sc.ys.push_back(y);
  });
  if (sc.xs.size() > start) {
    end_contour();
  }
  if (!sc.ends.empty()) {
    const FillPatternScope solid(g, kSolidPattern);  // glyphs are never hatched
    fill_path(g, sc.xs.data(), sc.ys.data(), sc.ends.data(), static_cast<int>(sc.ends.size()),
              FillRule::EvenOdd);
  }
  return whole;
}

// Driver glyphs that can share one text run.
bool same_run(const LaidGlyph& a, const LaidGlyph& b) {
  return a.face == b.face && a.ps_id == b.ps_id && a.size == b.size && a.stretch == b.stretch;
}

// Hands the collected driver glyphs to the pipeline as one run in the face of `head`.
void send_run(GlobalBlock& g, const LaidGlyph& head) {
  TextState& t = g.text;
  std::vector<GlyphPlace>& places = t.scratch.places;
  if (places.empty()) {
    return;
  }
  TextRun run;
  run.glyphs = places;
  run.face = head.ps_id >= 0 ? ps_font(head.ps_id).name : driver_face_name(head.face);
  run.angle = t.angle;
  // Standard fonts: the em whose capitals are the base font's height.
  run.size = head.ps_id >= 0 ? head.unit_y * 1000.0 : kDriverEmPerHeight * t.height * head.size;
  run.stretch = head.stretch;
  draw_text_run(g, run);
  places.clear();
}

// A rule: the rectangle of its cell between raise and raise + thick, filled.
void fill_rule(GlobalBlock& g, const LaidGlyph& e, double x, double y) {
  const TextState& t = g.text;
  const double sn = t.sin_a;
  const double cs = t.cos_a;
  const double us[4] = {e.inset, e.inset + e.width, e.inset + e.width, e.inset};
  const double vs[4] = {e.raise, e.raise, e.raise + e.thick, e.raise + e.thick};
  double xs[4];
  double ys[4];
  for (int k = 0; k < 4; ++k) {
    xs[k] = x + us[k] * cs - vs[k] * sn;
    ys[k] = y - vs[k] * cs - us[k] * sn;
  }
  const int end = 4;
  const FillPatternScope solid(g, kSolidPattern);
  fill_path(g, xs, ys, &end, 1, FillRule::NonZero);
}

}  // namespace

int render_layout(GlobalBlock& g, const TextLayout& layout, double& x, double& y) {
  TextState& t = g.text;
  const double sn = t.sin_a;
  const double cs = t.cos_a;
  std::vector<GlyphPlace>& places = t.scratch.places;
  places.clear();
  const LaidGlyph* head = nullptr;  // first glyph of the run being collected
  int undrawn = layout.missing;
  const int colour = g.colour.current;
  FileRun& file_run = t.scratch.file_run;
  file_run.places.clear();
  file_run.face = -1;
  const bool driver_text = (g.pipe.caps & kCapText) != 0U;
  for (const LaidGlyph& e : layout.glyphs) {
    if (e.lead != 0.0) {
      x += e.lead * cs;
      y -= e.lead * sn;
    }
    if (e.kind == GlyphKind::Blank && head != nullptr && e.width > 0.0 &&
        visible(t, x, y, e.width)) {
      // A blank inside a driver-font run stays in its text (one element per string in
      // SVG and PDF); drivers that place characters one by one skip it.
      const double u = e.inset + 0.5 * e.width;
      GlyphPlace& p = places.emplace_back();
      p.x = x - sn * e.raise + u * cs;
      p.y = y - cs * e.raise - u * sn;
      p.code = ' ';
      p.unicode = ' ';
    } else if (e.kind != GlyphKind::Blank && visible(t, x, y, e.width)) {
      const int want = e.colour >= 0 ? e.colour : colour;
      if (want != g.colour.current) {
        if (head != nullptr) {
          send_run(g, *head);
          head = nullptr;
        }
        flush_file_run(g, file_run);
        set_colour(g, want);
      }
      if (e.kind != GlyphKind::File) {
        flush_file_run(g, file_run);
      }
      if (e.kind == GlyphKind::Rule || e.kind == GlyphKind::Shape) {
        if (head != nullptr) {
          send_run(g, *head);
          head = nullptr;
        }
        if (e.kind == GlyphKind::Rule) {
          fill_rule(g, e, x, y);
        } else {
          draw_tex_shape(g, e, x, y);
        }
      } else if (e.kind == GlyphKind::Symbol) {
        if (head != nullptr) {
          send_run(g, *head);
          head = nullptr;
        }
        // Centred on its cell, as high as the cell is wide.
        const double u = e.inset + 0.5 * e.width;
        const double v = e.raise + 0.5 * e.width;
        draw_symbol(g, e.font_code, x + u * cs - v * sn, y - v * cs - u * sn,
                    round_int(e.width));
      } else if (e.kind == GlyphKind::File || e.kind == GlyphKind::Bitmap ||
                 (e.kind == GlyphKind::Driver && e.ps_id >= 0 && !driver_text)) {
        if (head != nullptr) {
          send_run(g, *head);
          head = nullptr;
        }
        if (!draw_font_glyph(g, e, x, y, file_run) && undrawn < 0) {
          undrawn = e.code;
        }
      } else if (e.kind == GlyphKind::Driver) {
        if (head != nullptr && !same_run(*head, e)) {
          send_run(g, *head);
        }
        if (places.empty()) {
          head = &e;
        }
        // The character centred on its cell on the base line (standard fonts: on its own
        // width, as their outlines are drawn elsewhere).
        const double u = e.inset + 0.5 * (e.ps_id >= 0 ? e.own_width : e.width);
        GlyphPlace& p = places.emplace_back();
        p.x = x - sn * e.raise + u * cs;
        p.y = y - cs * e.raise - u * sn;
        if (e.ps_id >= 0) {
          p.code = static_cast<std::uint8_t>(ps_code(e.ps_id, e.unicode));
          p.unicode = e.unicode;
        } else {
          p.code = static_cast<std::uint8_t>(e.font_code);
          p.unicode = driver_unicode(e.face, e.font_code);
        }
      } else {
        if (head != nullptr) {
          send_run(g, *head);
          head = nullptr;
        }
        const AlphabetSlot& s = e.slot != nullptr
                                    ? *e.slot
                                    : t.font.alphabets[static_cast<std::size_t>(e.alphabet)];
        const GlyphFrame fr{x - sn * e.raise, y - cs * e.raise, sn,      cs,      e.unit_x,
                            e.unit_y,         e.slant,          e.inset, e.italic};
        const bool filled = e.kind == GlyphKind::Outline && fill_outline(g, s, e.glyph, fr);
        if (e.kind == GlyphKind::Outline && !filled && undrawn < 0) {
          undrawn = e.code;
        }
        // A glyph filled by the device keeps the font's weight; hatched or broken
        // outlines are drawn as lines too.
        if (e.kind == GlyphKind::Stroke) {
          if (!place_stroke_glyph(g, s, e.glyph, fr)) {
            draw_strokes(g, s, e.glyph, fr);
          }
        } else if (!filled || (g.pipe.caps & kCapFill) == 0U) {
          draw_strokes(g, s, e.glyph, fr);
        }
      }
    }
    x += e.advance * cs;
    y -= e.advance * sn;
  }
  if (head != nullptr) {
    send_run(g, *head);
  }
  flush_file_run(g, file_run);
  if (g.colour.current != colour) {
    set_colour(g, colour);
  }
  return undrawn;
}

}  // namespace zorvel
