// The text engine's entry points: strings are decoded, laid out (layout.cpp) and drawn
// (render.cpp) with their justification point where the caller asks; the page checks,
// the frame of frmess and the continuation point are handled here.
//
// The pen runs along the base line; messag starts it height - 1 below the top of the
// capitals so that the text hangs from the justification point.

#include <cmath>
#include <string>

#include "core/format.h"
#include "core/global_block.h"
#include "core/keywords.h"
#include "core/messages.h"
#include "draw/colour.h"
#include "draw/pipeline.h"
#include "text/decode.h"
#include "text/font.h"
#include "text/layout.h"
#include "text/mix.h"
#include "text/text.h"

namespace zorvel {
namespace {

constexpr int kNumberText = 41;      // characters of a formatted number, terminator included
constexpr int kUndrawable = 214;     // warning: a character without a glyph


// "%5d": the integer right-aligned in five columns (wider when it needs more).
void append_int5(std::string& out, long long v) {
  char num[kNumberBuffer];
  char* end = pad_left(num, format_int(num, v), 5);
  out.append(num, static_cast<std::size_t>(end - num));
}

// Warning 193 for a point (plot units with the origin offset) outside the page.
void check_page(GlobalBlock& g, std::string_view what, long long x, long long y) {
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

// Margin between a string's box and its frame or background: txtmar, by default a
// quarter of the height.
double box_margin(const TextState& t) {
  return t.mix.margin >= 0 ? t.mix.margin : 0.25 * t.height;
}

// A point of a string's box at `u` along the base line and `q` down from the top-left
// corner (sx, sy).
void box_point(const TextState& t, double sx, double sy, double u, double q, double& x,
               double& y) {
  x = sx + u * t.cos_a + q * t.sin_a;
  y = sy - u * t.sin_a + q * t.cos_a;
}

// The background of txtbgd: the box of a string and its margin, filled before the text.
void fill_background(GlobalBlock& g, double sx, double sy, double length, double depth) {
  const TextState& t = g.text;
  const double d = box_margin(t);
  const double us[4] = {-d, length + d, length + d, -d};
  const double qs[4] = {-d, -d, depth + d, depth + d};
  double xs[4];
  double ys[4];
  for (int k = 0; k < 4; ++k) {
    box_point(t, sx, sy, us[k], qs[k], xs[k], ys[k]);
  }
  const int colour = g.colour.current;
  set_colour(g, t.mix.background);
  const int end = 4;
  {
    const FillPatternScope solid(g, kSolidPattern);
    fill_path(g, xs, ys, &end, 1, FillRule::NonZero);
  }
  set_colour(g, colour);
}

// The frame of frmess around the box of a string: `thickness` rectangles one plot unit
// apart, the innermost the margin away from the text. (sx, sy) is the box's top-left
// corner, `length` the string's measured length, `depth` the box's height less one.
void draw_frame(GlobalBlock& g, double sx, double sy, double length, double depth) {
  const TextState& t = g.text;
  const double margin = box_margin(t);
  for (int i = 0; i < t.frame; ++i) {
    const double d = margin + i;
    // Corners in (along the base line, down from the top) coordinates.
    const double us[5] = {-d, length + d, length + d, -d, -d};
    const double qs[5] = {-d, -d, depth + d, depth + d, -d};
    for (int k = 0; k < 5; ++k) {
      double x = 0.0;
      double y = 0.0;
      box_point(t, sx, sy, us[k], qs[k], x, y);
      if (k == 0) {
        move_to(g, x, y);
      } else {
        draw_to(g, x, y);
      }
    }
  }
}

// Draws a laid-out string with the pen starting at (x, y); checks the end point,
// remembers it for continuation and draws the background and the frame. One warning
// for characters that could not be drawn.
void run_string(GlobalBlock& g, const TextLayout& layout, double x, double y) {
  TextState& t = g.text;
  const double lift = layout.ascent - 1;  // from the base line to the box's top
  const double depth = lift + layout.descent;
  const double sx = x - t.sin_a * lift;  // top-left corner of the box
  const double sy = y - t.cos_a * lift;
  if (t.mix.background >= 0) {
    fill_background(g, sx, sy, layout.length, depth);
  }
  const int undrawn = render_layout(g, layout, x, y);
  if (undrawn >= 0) {
    warn(g, kUndrawable, undrawn);
  }
  check_page(g, "Endpoint", round_int(x + g.page.origin_x), round_int(y + g.page.origin_y));
  t.next_x = x;
  t.next_y = y;
  if (t.frame > 0) {
    draw_frame(g, sx, sy, layout.length, depth);
  }
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
  const PageClipScope page_clip(g);
  const TextLayout& layout = layout_codes(g, codes);
  // Vertical justification by the box: for plain text the capitals' height.
  const double box = layout.ascent + layout.descent;
  const double dx = t.hjust == 0 ? 0.0 : t.hjust == 1 ? 0.5 * layout.length : layout.length;
  const double dy = t.vjust == 1 ? 0.5 * box : t.vjust == 2 ? box : 0.0;
  const double sn = t.sin_a;
  const double cs = t.cos_a;
  const int sx = trunc_int(x - dx * cs - dy * sn + 0.5);
  const int sy = trunc_int(y + dx * sn - dy * cs + 0.5);
  const double lift = layout.ascent - 1;
  // In long long: an origin far out must not overflow the sum.
  check_page(g, "Startpoint", static_cast<long long>(sx) + g.page.origin_x,
             static_cast<long long>(sy) + g.page.origin_y);
  run_string(g, layout, sx + sn * lift, sy + cs * lift);
}

void draw_string_continued(GlobalBlock& g, std::string_view s) {
  TextState& t = g.text;
  CodeString codes;
  if (!decode_string(g, s, t.charset, codes) || codes.n == 0) {
    return;
  }
  const PageClipScope page_clip(g);
  run_string(g, layout_codes(g, codes), t.next_x, t.next_y);
}

int measure_string(GlobalBlock& g, std::string_view s) {
  CodeString codes;
  if (!decode_string(g, s, g.text.charset, codes)) {
    return 0;
  }
  return layout_codes(g, codes).length;
}

namespace {

// Sets angle and height for one text and puts the previous ones back.
class TextParameters {
 public:
  TextParameters(GlobalBlock& g, int degrees, int height)
      : g_(g), angle_(g.text.angle), height_(g.text.height) {
    if (degrees != angle_) {
      set_angle(g, degrees);
    }
    if (height != height_ && height >= 1 && height <= 10000) {
      g.text.height = height;
      g.text.font.selected = -1;
    }
  }
  ~TextParameters() {
    TextState& t = g_.text;
    if (t.angle != angle_) {
      set_angle(g_, angle_);
    }
    if (t.height != height_) {
      t.height = height_;
      t.font.selected = -1;
    }
  }
  TextParameters(const TextParameters&) = delete;
  TextParameters& operator=(const TextParameters&) = delete;

 private:
  GlobalBlock& g_;
  int angle_;
  int height_;
};

}  // namespace

namespace {

// The instruction and formula settings of one label: the library's own texts are laid
// out with the instruction alphabet on and the formula mode off.
class LabelMode {
 public:
  LabelMode(GlobalBlock& g, bool user_text)
      : g_(g), label_(g.text.mix.label), tex_(g.text.tex.on) {
    if (!user_text) {
      g.text.mix.label = true;
      g.text.tex.on = false;
    }
  }
  ~LabelMode() {
    g_.text.mix.label = label_;
    g_.text.tex.on = tex_;
  }
  LabelMode(const LabelMode&) = delete;
  LabelMode& operator=(const LabelMode&) = delete;

 private:
  GlobalBlock& g_;
  bool label_;
  bool tex_;
};

}  // namespace

void draw_label(GlobalBlock& g, std::string_view s, double x, double y, const LabelStyle& st) {
  TextState& t = g.text;
  const TextParameters keep(g, st.angle, st.height);
  const LabelMode mode(g, st.user_text);
  const int hjust = t.hjust;
  const int vjust = t.vjust;
  t.hjust = st.hjust;
  t.vjust = st.vjust;
  draw_string(g, s, x, y);
  t.hjust = hjust;
  t.vjust = vjust;
}

int measure_label(GlobalBlock& g, std::string_view s, int height, bool user_text) {
  const TextParameters keep(g, g.text.angle, height);
  const LabelMode mode(g, user_text);
  return measure_string(g, s);
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

void draw_number(GlobalBlock& g, double value, int digits, double x, double y) {
  char text[kNumberText];
  const int n = format_number(text, sizeof text, value, digits);
  draw_string(g, std::string_view(text, static_cast<std::size_t>(n)), x, y);
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
  mix_defaults(t.mix);
  load_font(t.font, kFontZoralf);
  t.tex.reset();
}

}  // namespace zorvel
