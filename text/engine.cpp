// The character loop of the text engine: strings are decoded, every code is mapped to a
// glyph, the glyph's strokes are scaled, slanted, rotated and sent through the pipeline
// (or the character is handed to the driver's own font), and the pen advances.
//
// Geometry of one character, in plot units (y downwards), with s, c the sine and cosine
// of the text angle:
//
//        up = (-s, -c)
//          ^
//          |   v (font units * unit_y)
//          |
//   pen ---+-------------> base line = (c, -s)
//           u (font units * unit_x, + slant * v)
//
//   X = X0 - s * shift + u * c - v * s
//   Y = Y0 - c * shift - v * c - u * s
//
// The pen runs along the base line; messag starts it height - 1 below the top of the
// capitals so that the text hangs from the justification point.

#include <cmath>
#include <cstdint>
#include <string>

#include "core/format.h"
#include "core/global_block.h"
#include "core/keywords.h"
#include "core/messages.h"
#include "draw/pipeline.h"
#include "text/decode.h"
#include "text/driver_font.h"
#include "text/font.h"
#include "text/mapping.h"
#include "text/text.h"

namespace zorvel {
namespace {

constexpr int kNumberText = 41;      // characters of a formatted number, terminator included
constexpr int kIntLimit = 2000000000;
constexpr double kDriverGap = 0.1;   // gap of driver fonts, in heights

// Nearest int of v (halves away from zero), clamped so that no conversion overflows; NaN
// gives 0.
int round_int(double v) {
  if (!(v == v)) {
    return 0;
  }
  if (v > kIntLimit) {
    return kIntLimit;
  }
  if (v < -kIntLimit) {
    return -kIntLimit;
  }
  return static_cast<int>(std::lround(v));
}

// Conversion towards zero with the same clamp.
int trunc_int(double v) {
  if (!(v == v)) {
    return 0;
  }
  if (v > kIntLimit) {
    return kIntLimit;
  }
  if (v < -kIntLimit) {
    return -kIntLimit;
  }
  return static_cast<int>(v);
}

// Driver face of alphabet k, or -1 for the alphabets that the driver fonts lack (they
// are drawn with the stroke glyphs of the font record).
int face_of(int k) {
  switch (k) {
    case kAlphabetStan:
      return static_cast<int>(DriverFace::Roman);
    case kAlphabetGree:
      return static_cast<int>(DriverFace::Greek);
    case kAlphabetItal:
      return static_cast<int>(DriverFace::Italic);
    default:
      return -1;
  }
}

// Selects alphabet k into the cache: unit sizes and gap for the working parameters.
void select(GlobalBlock& g, int k) {
  TextState& t = g.text;
  FontRecord& f = t.font;
  if (f.selected == k) {
    return;
  }
  const TextWork& w = t.work;
  const AlphabetSlot& s = f.alphabets[static_cast<std::size_t>(k)];
  const double h1 = t.height - 1;
  f.unit_x = h1 * w.width_factor / s.x_divisor;
  f.unit_y = h1 / s.y_divisor;
  if (w.fixed) {
    f.gap = w.spacing * t.height;
  } else if (f.mode == FontMode::Driver && face_of(k) >= 0) {
    f.gap = (kDriverGap + w.spacing) * t.height;
  } else {
    f.gap = (s.gap_factor + w.spacing) * t.height;
  }
  f.selected = k;
}

void advance(TextState& t, double d) {
  t.work.x += d * t.cos_a;
  t.work.y -= d * t.sin_a;
}

// Width of the fixed cell, and the shift that centres a glyph of `width` in it.
double fixed_cell(const TextState& t) {
  return t.work.fixed_factor * kFixedCell * t.work.width_factor * (t.height - 1);
}

// Contour labels: a character is drawn only when its centre lies within the circle.
bool visible(const TextState& t, double width) {
  if (!t.label_mode) {
    return true;
  }
  const double along = 0.5 * width;
  const double up = 0.5 * t.height;
  const double cx = t.work.x + along * t.cos_a - up * t.sin_a;
  const double cy = t.work.y - along * t.sin_a - up * t.cos_a;
  return std::hypot(cx - t.label_cx, cy - t.label_cy) <= t.label_radius;
}

// Sends the strokes of a glyph (and for outline glyphs the filled polygon first).
void render(GlobalBlock& g, const AlphabetSlot& s, int glyph, bool italic, double shift) {
  const TextState& t = g.text;
  const TextWork& w = t.work;
  const FontRecord& f = t.font;
  const double sn = t.sin_a;
  const double cs = t.cos_a;
  const double x0 = w.x - sn * w.shift;
  const double y0 = w.y - cs * w.shift;
  const double ux = f.unit_x;
  const double uy = f.unit_y;
  const double slant = w.slant;
  auto place = [&](double fx, double fy, double& px, double& py) {
    const double v = fy * uy;
    double u = fx * ux + slant * v + shift;
    if (italic) {
      u += v / kItalicRise;
    }
    px = x0 + u * cs - v * sn;
    py = y0 - v * cs - u * sn;
  };

  if (s.outline) {
    // All contours as one polygon: after every contour but the first the polygon
    // returns to the last point of the first one, so the inner contours become holes
    // joined by bridges that are walked once in each direction.
    double px[kMaxOutlinePolygon];
    double py[kMaxOutlinePolygon];
    int n = 0;
    int contours = 0;
    bool fits = true;
    double jx = 0.0;
    double jy = 0.0;
    auto append = [&](double x, double y) {
      if (n == kMaxOutlinePolygon) {
        fits = false;
        return;
      }
      px[n] = x;
      py[n] = y;
      ++n;
    };
    for_each_point(s, glyph, [&](double fx, double fy, bool first) {
      if (first) {
        if (contours == 1 && n > 0) {
          jx = px[n - 1];
          jy = py[n - 1];
        } else if (contours > 1) {
          append(jx, jy);
        }
        ++contours;
      }
      double x = 0.0;
      double y = 0.0;
      place(fx, fy, x, y);
      append(x, y);
    });
    if (contours > 1) {
      append(jx, jy);
    }
    if (fits && n >= 3) {
      fill_polygon(g, px, py, n);
    }
  }
  for_each_point(s, glyph, [&](double fx, double fy, bool first) {
    double x = 0.0;
    double y = 0.0;
    place(fx, fy, x, y);
    if (first) {
      move_to(g, x, y);
    } else {
      draw_to(g, x, y);
    }
  });
}

// One glyph of a stroke font (alphabet already selected).
void put_glyph(GlobalBlock& g, const GlyphChoice& c) {
  TextState& t = g.text;
  const FontRecord& f = t.font;
  const AlphabetSlot& s = f.alphabets[static_cast<std::size_t>(c.alphabet)];
  const int at = c.glyph > 1 ? s.record[static_cast<std::size_t>(c.glyph)] : -1;
  double width = 0.0;
  if (at < 0) {
    width = f.blank_width * f.unit_x;  // the blank, and codes without a glyph
  } else if (s.fixed_pitch) {
    width = 6.0 * f.unit_x;
  } else {
    width = s.width[static_cast<std::size_t>(c.glyph)] * f.unit_x;
  }
  double shift = 0.0;
  if (t.work.fixed) {
    const double cell = fixed_cell(t);
    shift = 0.5 * (cell - width);
    width = cell;
  }
  if (at >= 0 && !t.work.measuring && visible(t, width)) {
    render(g, s, c.glyph, c.italic, shift);
  }
  advance(t, width + f.gap);
  t.work.last_gap = f.gap;
}

// One character of a driver font: measured with the face's widths, handed to the driver
// centred on its base line.
void put_driver_char(GlobalBlock& g, DriverFace face, int k, int code) {
  TextState& t = g.text;
  select(g, k);
  t.work.fell_back = false;
  int w1000 = driver_width(face, code);
  if (w1000 == 0) {
    code = kBlank;
    w1000 = driver_width(face, code);
  }
  double width = w1000 / 1000.0 * kDriverEmPerHeight * t.height * t.work.width_factor;
  double shift = 0.0;
  if (t.work.fixed) {
    const double cell = fixed_cell(t);
    shift = 0.5 * (cell - width);
    width = cell;
  }
  if (code != kBlank && !t.work.measuring && g.pipe.driver && visible(t, width)) {
    const double u = shift + 0.5 * width;
    GlyphPlace glyph;
    glyph.x = t.work.x - t.sin_a * t.work.shift + u * t.cos_a;
    glyph.y = t.work.y - t.cos_a * t.work.shift - u * t.sin_a;
    glyph.code = static_cast<std::uint8_t>(code);
    glyph.unicode = driver_unicode(face, code);
    TextRun run;
    run.glyphs = std::span<const GlyphPlace>(&glyph, 1);
    run.face = driver_face_name(face);
    run.angle = t.angle;
    run.size = kDriverEmPerHeight * t.height;
    run.stretch = t.work.width_factor;
    draw_text_run(g, run);
  }
  advance(t, width + t.font.gap);
  t.work.last_gap = t.font.gap;
}

// One code of a string.
void put_code(GlobalBlock& g, int code) {
  TextState& t = g.text;
  TextWork& w = t.work;
  FontRecord& f = t.font;
  const MappedCode m = map_charset(t.charset, code, w.alphabet);
  const int k = m.alphabet >= 0 ? m.alphabet : w.alphabet;
  if (f.mode == FontMode::Driver) {
    if (const int face = face_of(k); face >= 0) {
      put_driver_char(g, static_cast<DriverFace>(face), k, driver_code(m.code));
      return;
    }
  }
  const GlyphChoice c = choose_glyph(f, k, m.code);
  if (c.fell_back && !w.fell_back) {
    select(g, c.alphabet);
    advance(t, f.gap);  // a gap before the first of a run of fall-back characters
  }
  w.fell_back = c.fell_back;
  select(g, c.alphabet);
  put_glyph(g, c);
}

// Copies the parameters into the working state for one string.
void begin_string(TextState& t, bool measuring) {
  TextWork& w = t.work;
  w.shift = 0.0;
  w.alphabet = t.base_alphabet;
  w.spacing = t.spacing;
  w.width_factor = t.width_factor;
  w.slant = t.slant;
  w.fixed = t.fixed;
  w.fixed_factor = t.fixed_factor;
  w.measuring = measuring;
  w.fell_back = false;
  w.last_gap = 0.0;
  t.font.selected = -1;
}

int measure_codes(GlobalBlock& g, const CodeString& codes) {
  if (codes.n == 0) {
    return 0;
  }
  TextState& t = g.text;
  const TextWork saved = t.work;
  begin_string(t, true);
  t.work.x = 0.0;
  t.work.y = 0.0;
  int longest = 0;
  for (int i = 0; i < codes.n; ++i) {
    put_code(g, codes.code[static_cast<std::size_t>(i)]);
    const int extent = round_int(std::hypot(t.work.x, t.work.y) - t.work.last_gap);
    if (i == 0 || extent > longest) {
      longest = extent;
    }
  }
  t.work = saved;
  t.font.selected = -1;
  return longest;
}

// "%5d": the integer right-aligned in five columns (wider when it needs more).
void append_int5(std::string& out, int v) {
  char num[kNumberBuffer];
  char* end = pad_left(num, format_int(num, v), 5);
  out.append(num, static_cast<std::size_t>(end - num));
}

// Warning 193 for a point (plot units with the origin offset) outside the page.
void check_page(GlobalBlock& g, std::string_view what, int x, int y) {
  if (!g.text.page_check) {
    return;
  }
  if (x >= 0 && x <= g.page.width && y >= 0 && y <= g.page.height) {
    return;
  }
  std::string xs;
  std::string ys;
  append_int5(xs, x);
  append_int5(ys, y);
  warn(g, 193, what, xs, ys);
}

// The frame of frmess around the box of a string: `thickness` rectangles one plot unit
// apart, the innermost a quarter of the height away from the text. (sx, sy) is the
// string's top-left corner, `length` its measured length.
void draw_frame(GlobalBlock& g, double sx, double sy, double length) {
  const TextState& t = g.text;
  const double sn = t.sin_a;
  const double cs = t.cos_a;
  const double margin = 0.25 * t.height;
  const double depth = t.height - 1;
  for (int i = 0; i < t.frame; ++i) {
    const double d = margin + i;
    // Corners in (along the base line, down from the top) coordinates.
    const double us[5] = {-d, length + d, length + d, -d, -d};
    const double qs[5] = {-d, -d, depth + d, depth + d, -d};
    for (int k = 0; k < 5; ++k) {
      const double x = sx + us[k] * cs + qs[k] * sn;
      const double y = sy - us[k] * sn + qs[k] * cs;
      if (k == 0) {
        move_to(g, x, y);
      } else {
        draw_to(g, x, y);
      }
    }
  }
}

// Draws decoded codes from the pen position in t.work; checks the end point, remembers
// it for continuation and draws the frame.
void run_string(GlobalBlock& g, const CodeString& codes) {
  TextState& t = g.text;
  const double h1 = t.height - 1;
  const double sx = t.work.x - t.sin_a * h1;  // top-left corner of the string
  const double sy = t.work.y - t.cos_a * h1;
  for (int i = 0; i < codes.n; ++i) {
    put_code(g, codes.code[static_cast<std::size_t>(i)]);
  }
  check_page(g, "Endpoint", round_int(t.work.x + g.page.origin_x),
             round_int(t.work.y + g.page.origin_y));
  t.next_x = t.work.x;
  t.next_y = t.work.y;
  if (t.frame > 0) {
    draw_frame(g, sx, sy, measure_codes(g, codes));
  }
  t.font.selected = -1;
}

}  // namespace

// Entry points
// ============

void draw_string(GlobalBlock& g, std::string_view s, double x, double y) {
  TextState& t = g.text;
  CodeString codes;
  if (!decode_string(g, s, t.charset, codes) || codes.n == 0) {
    return;
  }
  double dx = 0.0;
  if (t.hjust != 0) {
    const int length = measure_codes(g, codes);
    dx = t.hjust == 1 ? 0.5 * length : length;
  }
  const double dy = t.vjust == 1 ? 0.5 * t.height : t.vjust == 2 ? t.height : 0.0;
  const double sn = t.sin_a;
  const double cs = t.cos_a;
  const int sx = trunc_int(x - dx * cs - dy * sn + 0.5);
  const int sy = trunc_int(y + dx * sn - dy * cs + 0.5);
  begin_string(t, false);
  const double h1 = t.height - 1;
  t.work.x = sx + sn * h1;
  t.work.y = sy + cs * h1;
  check_page(g, "Startpoint", sx + g.page.origin_x, sy + g.page.origin_y);
  run_string(g, codes);
}

void draw_string_continued(GlobalBlock& g, std::string_view s) {
  TextState& t = g.text;
  CodeString codes;
  if (!decode_string(g, s, t.charset, codes) || codes.n == 0) {
    return;
  }
  begin_string(t, false);
  t.work.x = t.next_x;
  t.work.y = t.next_y;
  run_string(g, codes);
}

int measure_string(GlobalBlock& g, std::string_view s) {
  CodeString codes;
  if (!decode_string(g, s, g.text.charset, codes)) {
    return 0;
  }
  return measure_codes(g, codes);
}

bool set_height(GlobalBlock& g, int height) {
  if (!check_range(g, height, 1, 10000)) {
    return false;
  }
  g.text.height = height;
  g.text.font.selected = -1;
  return true;
}

void set_angle(GlobalBlock& g, int degrees) {
  TextState& t = g.text;
  t.angle = degrees;
  // Reduced first, so that right angles give exact zeros as far as the factor allows.
  const double a = (degrees % 360) * g.core.deg_to_rad;
  t.sin_a = std::sin(a);
  t.cos_a = std::cos(a);
}

void draw_string_with(GlobalBlock& g, std::string_view s, double x, double y, int degrees,
                      int height) {
  TextState& t = g.text;
  const int old_angle = t.angle;
  const int old_height = t.height;
  if (degrees != old_angle) {
    set_angle(g, degrees);
  }
  if (height != old_height) {
    set_height(g, height);
  }
  draw_string(g, s, x, y);
  if (t.angle != old_angle) {
    set_angle(g, old_angle);
  }
  if (t.height != old_height) {
    t.height = old_height;
    t.font.selected = -1;
  }
}

void draw_number(GlobalBlock& g, double value, int digits, double x, double y) {
  char text[kNumberText];
  const int n = format_number(text, sizeof text, value, digits);
  draw_string(g, std::string_view(text, static_cast<std::size_t>(n)), x, y);
}

void select_alphabet(GlobalBlock& g, int k) {
  if (k < 0 || k >= kAlphabetCount) {
    return;
  }
  select(g, k);
}

void text_defaults(GlobalBlock& g) {
  TextState& t = g.text;
  t.height = kDefaultHeight;
  set_angle(g, 0);
  t.slant = 0.0;
  t.spacing = 0.0;
  t.width_factor = 1.0;
  t.fixed = false;
  t.fixed_factor = 1.0;
  t.hjust = 0;
  t.vjust = 0;
  t.charset = kCharsetStan;
  t.base_alphabet = kAlphabetStan;
  t.frame = 0;
  t.page_check = true;
  t.label_mode = false;
  t.next_x = 0.0;
  t.next_y = 0.0;
  t.work = TextWork{};
  load_font(t.font, kFontZoralf);
}

}  // namespace zorvel
