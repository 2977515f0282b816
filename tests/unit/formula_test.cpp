// Unit tests of the formula mode: every warning with its fall-back to plain text, the
// geometry of scripts, fractions and delimiters, and the ink of generated formulas inside
// the box that justification and frames use, in several fonts and angles. Drawing goes to
// the recording driver with plot units passed through unchanged and clipping off.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "api_decl.h"
#include "tests/unit/recording_driver.h"
#include "text/formula.h"
#include "text/text.h"

namespace zorvel {
namespace {

class TexPlot : public recording::Plot {
 public:
  explicit TexPlot(unsigned caps = kCapFill | kCapText) : Plot("PS  ", true, caps) {
    g.pipe.clip_mode = ClipMode::None;
    text_defaults(g);
    api::texmod(g, "ON");
  }
  // The messages since the last call.
  std::string fresh() {
    const std::string all = text();
    const std::string out = all.substr(seen_);
    seen_ = all.size();
    return out;
  }
  // The glyphs of s laid out (as nlmess leaves them).
  std::vector<LaidGlyph> lay(const char* s) {
    api::nlmess(g, s);
    return g.text.layout.glyphs;
  }

 private:
  std::size_t seen_ = 0;
};

// The length of s as plain text.
int plain_length(GlobalBlock& g, const char* s) {
  api::texmod(g, "OFF");
  const int n = api::nlmess(g, s);
  api::texmod(g, "ON");
  return n;
}

TEST(TexParse, EveryFaultWarnsAndFallsBackToPlainText) {
  // Catches a fault that passes silently, a warning with the wrong number, text or value,
  // a formula measured after a warning instead of the literal string, and unbounded work
  // or recursion on hostile sources (recursive macros, deep nesting, huge expansions).
  struct Case {
    const char* s;
    const char* warning;
  } const cases[] = {
      {"$a^{b$", "Warning 201: TeX syntax error: missing } in test!   ( 4)"},
      {"x $a}$", "Warning 201: TeX syntax error: unbalanced } in test!   ( 5)"},
      {"$a", "Warning 201: TeX syntax error: missing closing $ in test!   ( 1)"},
      {"$$", "Warning 201: TeX syntax error: missing closing $ in test!   ( 1)"},
      {"$$$$", "Warning 201: TeX syntax error: empty formula in test!   ( 1)"},
      {"$\\frac{a}$", "Warning 201: TeX syntax error: missing argument in test!   ( 10)"},
      {"$\\frac$", "Warning 201: TeX syntax error: missing argument in test!   ( 7)"},
      {"$a^b^c$", "Warning 201: TeX syntax error: double superscript in test!   ( 5)"},
      {"$\\left( a$", "Warning 201: TeX syntax error: \\left without \\right in test!   ( 2)"},
      {"$a \\right)$", "Warning 201: TeX syntax error: \\right without \\left in test!   ( 4)"},
      {"$a & b$", "Warning 201: TeX syntax error: & outside a matrix in test!   ( 4)"},
      {"$\\begin{matrix}a\\end{cases}$",
       "Warning 201: TeX syntax error: \\end does not match \\begin in test!   ( 21)"},
      {"$\\foo x$", "Warning 202: Unknown TeX command in test!   (foo)"},
      {"$\\begin{foo}a\\end{foo}$", "Warning 202: Unknown TeX command in test!   (foo)"},
      {"${{{{{{{{{{{{{{{{{{{{{{{{{{{{{{{{{x}}}}}}}}}}}}}}}}}}}}}}}}}}}}}}}$",
       "Warning 203: Formula too complex in test!"},
      {"$\\rec$", "Warning 203: Formula too complex in test!"},
      {"$\\nest$", "Warning 203: Formula too complex in test!"},
      {"$\\k\\k\\k\\k\\k$", "Warning 203: Formula too complex in test!"},
  };
  TexPlot p;
  GlobalBlock& g = p.g;
  api::texmac(g, "\\rec", "\\rec\\rec");
  api::texmac(g, "nest", "{\\nest}");
  api::texmac(g, "t", "abcdefghij");
  api::texmac(g, "h", "\\t\\t\\t\\t\\t\\t\\t\\t\\t\\t");
  api::texmac(g, "k", "\\h\\h\\h\\h\\h");  // 500 characters: five are 2,500 boxes
  EXPECT_EQ(p.fresh(), "");
  for (const Case& c : cases) {
    const int plain = plain_length(g, c.s);
    EXPECT_EQ(api::nlmess(g, c.s), plain) << c.s;
    EXPECT_EQ(p.fresh(), std::string(" <<<< ") + c.warning + "\n") << c.s;
    // Drawn as measured: the dollars are there.
    api::messag(g, c.s, 100, 100);
    p.fresh();
    EXPECT_EQ(g.text.layout.glyphs.front().code, c.s[0]) << c.s;
  }
  // Escaped dollars are dollars, in and out of formulas; no instruction is read.
  EXPECT_GT(api::nlmess(g, "\\$5 $\\$ \\alpha$"), 0);
  const auto glyphs = p.lay("\\$5");
  ASSERT_EQ(glyphs.size(), 2U);
  EXPECT_EQ(glyphs[0].code, '$');
  // The routines refuse what they cannot keep.
  api::texmac(g, "a1", "x");
  api::texmac(g, "x", std::string(1001, 'x').c_str());
  api::texopt(g, "DISP", "SIZE");
  EXPECT_EQ(p.fresh(),
            " <<<< Warning 2: Incorrect parameter in test!   (a1)\n"
            " <<<< Warning 2: Incorrect parameter in test!   (cdef)\n"
            " <<<< Warning 2: Incorrect parameter in test!   (SIZE)\n");
}

// Vertical ink of laid glyph e: its raise and the extent of the cell the layout gave it.
struct Span {
  double lo;
  double hi;
};

TEST(TexLayout, ScriptsFractionsAndDelimiters) {
  // Catches scripts that are not raised or lowered or not reduced, a numerator that is not
  // centred over its denominator or not above the bar, delimiters that do not reach over
  // their content, and a formula whose measured length depends on the angle.
  TexPlot p;
  GlobalBlock& g = p.g;
  api::complx(g);
  auto sup = p.lay("$x^2$");
  ASSERT_EQ(sup.size(), 2U);
  EXPECT_GT(sup[1].raise, 0.3 * g.text.height);
  EXPECT_NEAR(sup[1].size, 0.7, 1e-9);
  auto sub = p.lay("$x_2$");
  ASSERT_EQ(sub.size(), 2U);
  EXPECT_LT(sub[1].raise, 0.0);
  auto both = p.lay("$x_i^2$");
  ASSERT_EQ(both.size(), 3U);
  const auto at = [&](int code) {
    return std::find_if(both.begin(), both.end(), [&](const LaidGlyph& e) { return e.code == code; });
  };
  EXPECT_GT(at('2')->raise - at('i')->raise, 0.5 * g.text.height);

  auto frac = p.lay("$\\frac{a}{bbbb}$");
  ASSERT_EQ(frac.size(), 6U);
  const LaidGlyph& num = frac[0];
  const LaidGlyph& bar = frac[5];
  ASSERT_EQ(bar.kind, GlyphKind::Shape);  // a stroke font draws its bars with the pen
  const double num_mid = num.pen + num.inset + 0.5 * num.width;
  const double den_mid = 0.5 * (frac[1].pen + frac[4].pen + frac[4].width);
  EXPECT_NEAR(num_mid, den_mid, 2.0);
  EXPECT_GT(num.raise, bar.raise + bar.thick);
  EXPECT_LT(frac[1].raise, bar.raise);

  // Delimiters of \left and \right and of matrices reach over everything between them.
  // (Capitals and digits: their ink reaches from the base line to the capitals' height.)
  for (const char* s : {"$\\left(\\frac{\\frac{A}{B}}{C}\\right)$",
                        "$\\left[X^{2^{2^2}}\\right]$", "$\\left\\{\\sum_{I=1}^N\\right.$",
                        "$\\begin{pmatrix}A&B\\\\C&D\\\\E&\\frac{F}{G}\\end{pmatrix}$",
                        "$$\\left|\\int_0^1 Y\\right|$$"}) {
    const auto gl = p.lay(s);
    EXPECT_EQ(p.fresh(), "") << s;
    double lo = 1e9;
    double hi = -1e9;
    double ink_lo = 1e9;
    double ink_hi = -1e9;
    for (const LaidGlyph& e : gl) {
      if (e.kind == GlyphKind::Shape && e.thick > g.text.height) {
        lo = std::min(lo, e.raise);
        hi = std::max(hi, e.raise + e.thick);
      } else if (e.kind == GlyphKind::Stroke && e.alphabet != kAlphabetMath) {
        // The ink of stroke glyphs: from the descender to the capitals of their size.
        ink_lo = std::min(ink_lo, e.raise);
        ink_hi = std::max(ink_hi, e.raise + e.size * (g.text.height - 1));
      }
    }
    EXPECT_LE(lo, ink_lo) << s;
    EXPECT_GE(hi, ink_hi) << s;
  }

  for (auto font : {api::complx, api::helve, api::hwfont}) {
    font(g);
    api::angle(g, 0);
    const char* s = "$$\\sum_{k=1}^n \\frac{\\alpha_k}{\\sqrt{2\\pi}}$$ and text";
    const int flat = api::nlmess(g, s);
    EXPECT_GT(flat, plain_length(g, "Sk=1n") );
    for (int a : {37, 90, -120}) {
      api::angle(g, a);
      EXPECT_EQ(api::nlmess(g, s), flat) << a;
    }
  }
  EXPECT_EQ(p.fresh(), "");
}

TEST(TexLayout, MacrosOptionsAndMatrices) {
  // Catches macro parameters that are not substituted, texopt settings without effect,
  // matrix cells out of their columns or rows, and settings that survive zorini.
  TexPlot p;
  GlobalBlock& g = p.g;
  api::complx(g);
  api::texmac(g, "\\v", "\\vec{#1}_{#2}");
  EXPECT_EQ(api::nlmess(g, "$\\v{x}k$"), api::nlmess(g, "$\\vec{x}_{k}$"));
  EXPECT_EQ(p.lay("$\\v{x}k$").size(), p.lay("$\\vec{x}_k$").size());

  const int text = api::nlmess(g, "$\\sum_{i=1}^{n} i$");
  const int display = api::nlmess(g, "$$\\sum_{i=1}^{n} i$$");
  EXPECT_NE(text, display);
  api::texopt(g, "DISP", "STYL");
  EXPECT_EQ(api::nlmess(g, "$\\sum_{i=1}^{n} i$"), display);
  api::texopt(g, "TEXT", "STYL");
  EXPECT_EQ(p.lay("$x$")[0].alphabet, kAlphabetItal);
  api::texopt(g, "OFF", "ITAL");
  EXPECT_EQ(p.lay("$x$")[0].alphabet, kAlphabetStan);
  EXPECT_EQ(p.lay("$\\mathit{x}$")[0].alphabet, kAlphabetItal);

  // Cells: a column shares its centre, a row its base line; the matrix is centred on the
  // axis of the formula (the middle of the signs + and -).
  const auto m = p.lay("$\\begin{matrix}1&22\\\\333&4\\end{matrix}$");
  ASSERT_EQ(m.size(), 7U);
  auto mid = [](const LaidGlyph& e) { return e.pen + e.inset + 0.5 * e.width; };
  EXPECT_NEAR(mid(m[0]), mid(m[4]), 1.0);                              // 1 over 333
  EXPECT_NEAR(0.5 * (mid(m[1]) + mid(m[2])), mid(m[6]), 1.0);           // 22 over 4
  EXPECT_EQ(m[0].raise, m[2].raise);
  EXPECT_EQ(m[3].raise, m[6].raise);
  EXPECT_GT(m[0].raise - m[3].raise, g.text.height);
  const TextLayout& box = g.text.layout;
  const double axis = 0.45 * (g.text.height - 1);
  EXPECT_NEAR(box.ascent - 1 - axis, box.descent + axis, 0.01);
  EXPECT_EQ(p.fresh(), "");

  text_defaults(g);
  EXPECT_FALSE(g.text.tex.on);
  EXPECT_TRUE(g.text.tex.macros.empty());
  EXPECT_TRUE(g.text.tex.italic);
}

// Deterministic generator of formulas from pieces.
std::string make_formula(unsigned& seed, int depth) {
  static const char* const kAtoms[] = {
      "x", "\\alpha", "2", "y_i", "z^2", "\\infty", "\\partial f", "\\sin x", "A",
      "\\ldots", "\\Omega", "(a+b)", "\\nabla", "\\vec{v}", "\\hat{x}", "\\bar{z}", "\\dot{q}",
      "\\tilde{n}", "\\pm", "\\leq", "\\int", "\\sum", "\\prod", "f'", "\\text{if }",
      "\\mathbf{F}", "\\mathcal{L}", "\\overline{ab}", "\\underline{c}", "\\binom{n}{k}"};
  auto next = [&seed]() {
    seed = seed * 1103515245U + 12345U;
    return (seed >> 16) & 0x7fffU;
  };
  std::string s;
  const int parts = 1 + static_cast<int>(next() % 3);
  for (int i = 0; i < parts; ++i) {
    const unsigned k = depth > 0 ? next() % 12 : 0;
    auto inner = [&]() { return make_formula(seed, depth - 1); };
    switch (k) {
      case 1:
        s += "\\frac{" + inner() + "}{" + inner() + "}";
        break;
      case 2:
        s += "\\sqrt{" + inner() + "}";
        break;
      case 3:
        s += "\\sqrt[3]{" + inner() + "}";
        break;
      case 4:
        s += "\\sum_{i=1}^{" + inner() + "}";
        break;
      case 5:
        s += "\\left(" + inner() + "\\right)";
        break;
      case 6:
        s += "\\int_0^{" + inner() + "}";
        break;
      case 7:
        s += "\\begin{bmatrix}" + inner() + "&1\\\\0&" + inner() + "\\end{bmatrix}";
        break;
      case 8:
        s += "{" + inner() + "}^{" + inner() + "}_{k}";
        break;
      case 9:
        s += "\\lim_{n\\to\\infty}";
        break;
      case 10:
        s += "\\begin{cases}a&x>0\\\\" + inner() + "&x\\leq 0\\end{cases}";
        break;
      default:
        s += kAtoms[next() % (sizeof kAtoms / sizeof kAtoms[0])];
        break;
    }
    s += ' ';
  }
  return s;
}

TEST(TexLayout, InkLiesInsideTheBox) {
  // Catches boxes that are too small for what is drawn in them (ascent, descent, length),
  // in stroke, outline and driver fonts and at angles: justification, frames and the
  // positions of the next texts all build on these boxes.
  unsigned seed = 12345U;
  std::vector<std::string> formulas;
  for (int i = 0; i < 100; ++i) {
    const std::string f = make_formula(seed, 2);
    formulas.push_back((i % 3 == 0 ? "$$" : "$") + f + (i % 3 == 0 ? "$$" : "$"));
  }
  int checked = 0;
  for (auto font : {api::complx, api::simplx, api::helve, api::hwfont}) {
    for (int angle : {0, 37, 90}) {
      TexPlot p;
      GlobalBlock& g = p.g;
      font(g);
      api::angle(g, angle);
      const double sn = g.text.sin_a;
      const double cs = g.text.cos_a;
      for (const std::string& f : formulas) {
        if (f.size() > 250) {
          continue;
        }
        p.rec->points.clear();
        p.rec->fills.clear();
        p.rec->texts.clear();
        const double x0 = 1500;
        const double y0 = 1500;
        draw_string(g, f, x0, y0);
        end_polyline(g);
        ASSERT_EQ(p.fresh(), "") << f;
        const TextLayout& l = g.text.layout;
        const double depth = l.ascent - 1 + l.descent;
        const double tol = 1.5;
        auto check = [&](double x, double y) {
          const double dx = x - x0;
          const double dy = y - y0;
          const double along = dx * cs - dy * sn;
          const double down = dx * sn + dy * cs;
          EXPECT_GE(along, -tol) << f << " angle " << angle;
          EXPECT_LE(along, l.length + tol) << f << " angle " << angle;
          EXPECT_GE(down, -tol) << f << " angle " << angle;
          EXPECT_LE(down, depth + tol) << f << " angle " << angle;
          ++checked;
        };
        for (const recording::Sent& s : p.rec->points) {
          if (s.pen != Pen::End) {
            check(s.x, s.y);
          }
        }
        for (const recording::Filled& fl : p.rec->fills) {
          for (std::size_t k = 0; k < fl.xs.size(); ++k) {
            check(fl.xs[k], fl.ys[k]);
          }
        }
        for (const recording::Written& w : p.rec->texts) {
          for (const GlyphPlace& gp : w.glyphs) {
            check(gp.x, gp.y);
          }
        }
        if (::testing::Test::HasFailure()) {
          return;
        }
      }
    }
  }
  EXPECT_GT(checked, 100000);
}

}  // namespace
}  // namespace zorvel
