// Unit tests of the instruction alphabet: the command parser with every warning and its
// fallback, measuring against drawing for generated instruction strings in a stroke, an
// outline and the driver font at several angles, the sizes of scripts, and the axis
// labels written with the instruction characters. Drawing goes to the recording driver
// with plot units passed through unchanged and clipping off.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "api_decl.h"
#include "axes/labels.h"
#include "tests/unit/recording_driver.h"
#include "text/font_data.h"
#include "text/text.h"

namespace zorvel {
namespace {

class MixPlot : public recording::Plot {
 public:
  explicit MixPlot(unsigned caps = kCapFill | kCapText) : Plot("PS  ", true, caps) {
    g.pipe.clip_mode = ClipMode::None;
    text_defaults(g);
  }
  void clear() {
    end_polyline(g);
    rec->points.clear();
    rec->fills.clear();
    rec->texts.clear();
  }
};

// The ink of what a plot drew since the last clear, in text coordinates: u along the
// base line from the pen's start, v up from the base line. (x0, y0) is the pen's start.
struct Ink {
  double u_min = 1e300, u_max = -1e300, v_min = 1e300, v_max = -1e300;
  double driver_u_max = -1e300;  // centres of driver-font characters
  int points = 0;
};

Ink ink(MixPlot& p, double x0, double y0) {
  end_polyline(p.g);
  const double sn = p.g.text.sin_a;
  const double cs = p.g.text.cos_a;
  Ink k;
  auto add = [&](double x, double y) {
    const double dx = x - x0;
    const double dy = y - y0;
    const double u = dx * cs - dy * sn;
    const double v = -(dx * sn + dy * cs);
    k.u_min = std::min(k.u_min, u);
    k.u_max = std::max(k.u_max, u);
    k.v_min = std::min(k.v_min, v);
    k.v_max = std::max(k.v_max, v);
    ++k.points;
    return u;
  };
  for (const recording::Sent& s : p.rec->points) {
    if (s.pen != Pen::End) {
      add(s.x, s.y);
    }
  }
  for (const recording::Filled& f : p.rec->fills) {
    for (std::size_t i = 0; i < f.xs.size(); ++i) {
      add(f.xs[i], f.ys[i]);
    }
  }
  for (const recording::Written& w : p.rec->texts) {
    for (const GlyphPlace& gp : w.glyphs) {
      k.driver_u_max = std::max(k.driver_u_max, add(gp.x, gp.y));
    }
  }
  return k;
}

TEST(TextMix, CommandWarningsAndFallbacks) {
  // Catches a bad command that is drawn, swallows the text after it or warns with the
  // wrong number, a value that reaches the layout unchecked ({H1e308}, {C-5}), a
  // command without its brace that loses the text, national shifts that fail silently,
  // setmix accepting a character that is in use or a switch to the base alphabet, and
  // input that overflows (10,000 raises, broken UTF-8).
  MixPlot p;
  GlobalBlock& g = p.g;
  api::complx(g);
  api::mixalf(g);
  api::eushft(g, "GERM", "!");
  struct Case {
    const char* text;
    const char* same_as;  // the plain text it measures like (instructions off)
    const char* warning;  // the warning line's start, "" for none
  } const cases[] = {
      {"a{Q}b", "ab", "Warning 46: Instruction code: unknown command in test!   ({Q})"},
      {"a{}b", "ab", "Warning 46"},
      {"a{H}b", "ab", "Warning 45: Instruction code: no integer value in test!   ({H})"},
      {"a{Hx}b", "ab", "Warning 45"},
      {"a{C1.5}b", "ab", "Warning 45"},
      {"a{H1e308}b", "ab", "Warning 43: Instruction code: incorrect parameter in test!"},
      {"a{H0}b", "ab", "Warning 43"},
      {"a{W2}b", "ab", "Warning 43"},
      {"a{C-5}b", "ab", "Warning 43"},
      {"a{F2}b", "ab", "Warning 43"},
      {"a{S99}b", "ab", "Warning 43"},
      {"a{N5}b", "ab", "Warning 43"},
      {"a{D1}b", "ab", "Warning 43"},
      {"a{R1e9}b", "ab", "Warning 43"},
      {"a{M1e999}b", "ab", "Warning 43"},
      {"a{T1}b", "ab", "Warning 44: Instruction code: incorrect tabulator index in test!"},
      {"a{T11}b", "ab", "Warning 44"},
      {"a{H2", "a{H2", "Warning 46"},
      {"{{a}", "{a}", ""},
      {"{h2}{H1}a", "a", ""},
      {"!x", "x", "Warning 18: Incorrect character after the eushft operator in test!   (x)"},
      {"x!", "x", "Warning 18"},
      {"a[b]c$d", "abcd", "+"},  // differs: scripts are smaller
  };
  for (const Case& c : cases) {
    const std::size_t before = p.text().size();
    const int n = api::nlmess(g, c.text);
    p.clear();
    api::messag(g, c.text, 500, 500);
    const std::string said = p.text().substr(before);
    api::mixmod(g, "OFF");
    const int plain = api::nlmess(g, c.same_as);
    api::mixmod(g, "ON");
    if (std::string(c.warning) == "+") {
      EXPECT_LT(n, plain) << c.text;
      continue;
    }
    EXPECT_EQ(n, plain) << c.text;
    if (c.warning[0] == '\0') {
      EXPECT_EQ(said, "") << c.text;
    } else {
      // Once for measuring, once for drawing; nothing else.
      const std::string line = " <<<< " + std::string(c.warning);
      ASSERT_GE(said.size(), line.size()) << c.text;
      EXPECT_EQ(said.substr(0, line.size()), line) << c.text;
      EXPECT_EQ(std::count(said.begin(), said.end(), '\n'), 2) << c.text << said;
    }
  }
  // A tab stop moves the pen to its position.
  const int tabs[] = {300, 600};
  api::settab(g, tabs, 2);
  EXPECT_EQ(api::nlmess(g, "{T2}"), 600);
  EXPECT_EQ(api::nlmess(g, "a{T1}"), 300);

  // setmix: a character in use, a switch to the base alphabet, a blank that removes.
  std::size_t before = p.text().size();
  api::setmix(g, "[", "IND");
  api::setmix(g, "!", "EXP");
  api::setmix(g, "@", "STAN");
  api::setmix(g, "ab", "GREE");
  EXPECT_EQ(p.text().substr(before),
            " <<<< Warning 57: Control characters must be different in test!   ([)\n"
            " <<<< Warning 57: Control characters must be different in test!   (!)\n"
            " <<<< Warning 19: The basealphabet cannot be used in test!   (STAN)\n"
            " <<<< Warning 2: Incorrect parameter in test!   (ab)\n");
  api::setmix(g, " ", "EXP");
  api::mixmod(g, "OFF");
  const int plain = api::nlmess(g, "a[b");
  api::mixmod(g, "ON");
  EXPECT_EQ(api::nlmess(g, "a[b"), plain);
  api::setmix(g, "^", "EXP");
  EXPECT_LT(api::nlmess(g, "a^bb"), api::nlmess(g, "abb"));

  // Bounded: 255 nested raises lay out; more codes than a string holds are refused.
  before = p.text().size();
  const std::string deep = std::string(255, '^') + "x";
  p.clear();
  api::messag(g, deep.c_str(), 500, 500);
  const Ink k = ink(p, 500, 500);
  EXPECT_TRUE(std::isfinite(k.u_max) && std::isfinite(k.v_max));
  EXPECT_EQ(p.text().substr(before), "");
  api::messag(g, std::string(10000, '^').c_str(), 500, 500);
  api::chacod(g, "UTF8");
  api::messag(g, "a^\xC3", 500, 500);
  const std::string said = p.text().substr(before);
  EXPECT_EQ(std::count(said.begin(), said.end(), '\n'), 2) << said;
  EXPECT_NE(said.find("Warning 174"), std::string::npos);

  // zorini keeps the national shifts (eushft may be called before it), and a default
  // instruction character gives way to one.
  api::eushft(g, "ACUT", "[");
  text_defaults(g);
  api::mixalf(g);
  before = p.text().size();
  api::nlmess(g, "!x[x");
  EXPECT_EQ(p.text().substr(before),
            " <<<< Warning 18: Incorrect character after the eushft operator in test!   (x)\n"
            " <<<< Warning 18: Incorrect character after the eushft operator in test!   (x)\n");
}

TEST(TextMix, MeasuringIsDrawing) {
  // Catches a layout that measures one thing and draws another: commands that move the
  // pen in one step and not in the other, rules or symbols outside the box that getbox
  // reports, fonts of {F} drawn with the wrong tables, and a length that depends on the
  // text angle. Generated strings of every instruction, in a stroke, an outline and the
  // driver font, at 0, 37 and 90 degrees.
  const char* const tokens[] = {
      "Ab",    "[",       "]",    "$",    "{H1.5}", "{W0.7}", "{C3}", "{C}",     "{R0.3}",
      "{M1}x", "{M-0.2}", "{T1}", "{S1}", "{S13}",  "{N65}",  "{D}x", "{I}x{I}", "{U}",
      "{O}",   "{{",      "@",    "!a",   "{F4}",   "{F11}",  "{F}",  "x y",     "7"};
  const int n_tokens = static_cast<int>(sizeof tokens / sizeof tokens[0]);
  unsigned seed = 12345U;
  auto next = [&]() {
    seed = seed * 1103515245U + 12345U;
    return static_cast<int>((seed >> 16) % 32768U);
  };
  std::vector<std::string> strings;
  for (int i = 0; i < 200; ++i) {
    std::string s = "Ab";  // no step back before the start
    for (int k = 0, n = 2 + next() % 8; k < n; ++k) {
      s += tokens[next() % n_tokens];
    }
    // End on a capital on the base line, so that the ink ends at the cell. (Moves and
    // the multiplication sign, whose cell is wider than its strokes, are followed by a
    // character and slants end before it, so that the ink reaches the farthest cell
    // whatever it is.)
    s += "$X";
    strings.push_back(s);
  }
  void (*const fonts[])(GlobalBlock&) = {api::complx, api::helve, api::hwfont};
  int checked = 0;
  for (auto font : fonts) {
    MixPlot p;
    GlobalBlock& g = p.g;
    font(g);
    api::mixalf(g);
    api::setmix(g, "@", "GREE");
    api::eushft(g, "GERM", "!");
    const int tab = 150;
    api::settab(g, &tab, 1);
    for (std::size_t i = 0; i < strings.size(); ++i) {
      const std::string& s = strings[i];
      if (i % 3 != static_cast<std::size_t>(font == api::complx  ? 0
                                            : font == api::helve ? 1
                                                                 : 2) &&
          i >= 10) {
        continue;  // every string in one font, the first ten in all three
      }
      int lengths[3];
      int k = 0;
      for (const int a : {0, 37, 90}) {
        api::angle(g, a);
        int w = 0, asc = 0, dsc = 0;
        api::getbox(g, s.c_str(), &w, &asc, &dsc);
        lengths[k++] = w;
        EXPECT_EQ(w, api::nlmess(g, s.c_str())) << s;
        const double gap = g.text.layout.glyphs.back().gap;
        p.clear();
        api::messag(g, s.c_str(), 1000, 1000);
        const double lift = asc - 1;
        const Ink ink_of = ink(p, 1000 + g.text.sin_a * lift, 1000 + g.text.cos_a * lift);
        const double m = 0.5 * g.text.height;  // descenders at 1.5 times, symbol corners
        if (g.text.font.mode == FontMode::Driver && ink_of.driver_u_max > ink_of.u_max - 1) {
          // The last character is a driver glyph: its centre lies inside the cell.
          EXPECT_LE(ink_of.driver_u_max, w + gap) << s << " " << a;
        } else {
          EXPECT_NEAR(ink_of.u_max, w, gap + 1.0) << s << " " << a;
        }
        EXPECT_GE(ink_of.u_min, -m) << s << " " << a;
        EXPECT_LE(ink_of.v_max, asc + m) << s << " " << a;
        EXPECT_GE(ink_of.v_min, -dsc - m) << s << " " << a;
        ++checked;
      }
      EXPECT_EQ(lengths[0], lengths[1]) << s;
      EXPECT_EQ(lengths[0], lengths[2]) << s;
    }
    // Valid strings: no warning but 211 for the accented letter of fonts that lack it.
    std::string said = p.text();
    for (std::size_t at = said.find(" <<<< Warning 214:"); at != std::string::npos;
         at = said.find(" <<<< Warning 214:")) {
      said.erase(at, said.find('\n', at) + 1 - at);
    }
    EXPECT_EQ(said, "");
  }
  EXPECT_GE(checked, 180);
}

TEST(TextMix, ScriptsFollowTheSetValues) {
  // Catches raise, drop and size factors that are not those of mixval, levels that do
  // not nest, and a RES that leaves the height or the base line behind.
  for (const bool custom : {false, true}) {
    MixPlot p;
    GlobalBlock& g = p.g;
    api::complx(g);
    api::height(g, 100);
    api::mixalf(g);
    const double raise = custom ? 0.5 : 0.6;
    const double lower = custom ? 0.2 : 0.35;
    const double size = custom ? 0.5 : 0.7;
    if (custom) {
      api::mixval(g, raise, "RAIS");
      api::mixval(g, lower, "LOWE");
      api::mixval(g, size, "SIZE");
    }
    // The capital H stands on the base line and is (height - 1) high.
    auto ink_of = [&](const char* s) {
      int w = 0, asc = 0, dsc = 0;
      api::getbox(g, s, &w, &asc, &dsc);
      p.clear();
      api::messag(g, s, 500, 500);
      return ink(p, 500.0, 500.0 + asc - 1);
    };
    const Ink base = ink_of("H");
    const Ink up = ink_of("[H");
    const Ink down = ink_of("]H");
    const Ink twice = ink_of("[[H");
    const Ink back = ink_of("[$H");
    const double h = base.v_max - base.v_min;
    EXPECT_NEAR(up.v_min - base.v_min, raise * 100, 0.5);
    EXPECT_NEAR(up.v_max - up.v_min, size * h, 0.5);
    EXPECT_NEAR(down.v_min - base.v_min, -lower * 100, 0.5);
    EXPECT_NEAR(twice.v_min - base.v_min, raise * 100 * (1 + size), 0.5);
    EXPECT_NEAR(twice.v_max - twice.v_min, size * size * h, 0.5);
    EXPECT_NEAR(back.v_min, base.v_min, 1e-9);
    EXPECT_NEAR(back.v_max, base.v_max, 1e-9);
  }
}

TEST(TextMix, LabelsWriteTheInstructionCharacters) {
  // Catches XEXP labels without the multiplication sign or the raised exponent, labels
  // that follow the user's instruction or formula settings (mixalf off, EXP removed,
  // texmod on), a formatter that writes other characters than those in force, and a
  // user's text (names, titles) forced into the instruction alphabet.
  MixPlot p;
  GlobalBlock& g = p.g;
  api::complx(g);
  AxisSettings s;
  s.label_type = kLabXexp;
  LabelRequest r;
  r.digits = 1;
  char buf[kLabelBuffer];
  for (int setting = 0; setting < 3; ++setting) {
    if (setting == 1) {
      api::setmix(g, "^", "EXP");
      api::setmix(g, "|", "INST");
    } else if (setting == 2) {
      api::setmix(g, " ", "EXP");
      api::setmix(g, " ", "RES");
      api::setmix(g, " ", "INST");
      g.text.tex.on = true;
    }
    r.chars = label_chars(g);
    const int n = format_label(g.axes, s, r, 2.5e5, buf, sizeof buf);
    const std::string text(buf, static_cast<std::size_t>(n));
    const std::string want[] = {"2.5{D}10[5$", "2.5|D}10^5$",
                                "2.5\x03"
                                "D}10\x01"
                                "5\x02"};
    EXPECT_EQ(text, want[setting]);
    measure_label(g, text, 36);
    const TextLayout& l = g.text.layout;
    // Glyphs: 2 . 5 x 1 0 5, the sign from MATH, the exponent raised and smaller.
    std::vector<const LaidGlyph*> drawn;
    for (const LaidGlyph& e : l.glyphs) {
      if (e.kind != GlyphKind::Blank) {
        drawn.push_back(&e);
      }
    }
    ASSERT_EQ(drawn.size(), 7U) << setting;
    EXPECT_EQ(drawn[3]->alphabet, kAlphabetMath);
    EXPECT_EQ(drawn[3]->raise, 0.0);
    EXPECT_NEAR(drawn[6]->raise, 0.6 * 36, 1e-9);
    EXPECT_NEAR(drawn[6]->size, 0.7, 1e-12);
    EXPECT_GT(l.ascent, 36.0);
  }
  // A caller's text keeps the caller's settings: instructions off, the characters plain.
  g.text.tex.on = false;
  api::setmix(g, "[", "EXP");
  EXPECT_EQ(measure_label(g, "a[b", 36, true), measure_string(g, "a[b"));
  EXPECT_GT(measure_label(g, "a[b", 36, true), measure_label(g, "a[b", 36));
  EXPECT_EQ(p.text(), "");
}

}  // namespace
}  // namespace zorvel
