// The public routines of text output: drawing and measuring strings and numbers, the
// text parameters and the font selection.

#include <cmath>

#include "api_decl.h"
#include "core/format.h"
#include "core/global_block.h"
#include "core/keywords.h"
#include "core/messages.h"
#include "core/page.h"
#include "screen/module.h"
#include "text/font.h"
#include "text/text.h"

namespace zorvel {
namespace {

// Thickest frame of frmess, in plot units.
constexpr int kMaxFrame = 100;

// messag and number continue at the end of the previous string at this position.
constexpr int kContinue = 999;

void draw_at(GlobalBlock& g, std::string_view s, int nx, int ny) {
  if (nx == kContinue && ny == kContinue) {
    draw_string_continued(g, s);
  } else {
    draw_string(g, s, nx, static_cast<double>(page_y(g, ny)));
  }
}

// Devices with fonts of their own that hwfont selects: those whose driver writes text.
bool has_driver_font(const GlobalBlock& g) {
  return g.pipe.driver && (g.pipe.caps & kCapText) != 0U;
}

// Loads a stroke font, leaving any outline, bitmap or standard font.
void select_stroke_font(GlobalBlock& g, int type) {
  load_font(g.text.font, type);
  forget_font_file(g.fonts);
}

}  // namespace

namespace api {

void messag(GlobalBlock& g, const char* cstr, int nx, int ny) { draw_at(g, cstr, nx, ny); }

int nlmess(GlobalBlock& g, const char* cstr) { return measure_string(g, cstr); }

void number(GlobalBlock& g, double x, int ndig, int nx, int ny) {
  if (!check_range(g, ndig, -1, 100)) {
    return;
  }
  if (nx == kContinue && ny == kContinue) {
    // The number goes on from the end of the previous string.
    char text[41];
    const int n = format_number(text, sizeof text, x, ndig);
    draw_string_continued(g, std::string_view(text, static_cast<std::size_t>(n)));
    return;
  }
  draw_number(g, x, ndig, nx, static_cast<double>(page_y(g, ny)));
}

void height(GlobalBlock& g, int n) { set_height(g, n); }

void angle(GlobalBlock& g, int n) { set_angle(g, n); }

void chaang(GlobalBlock& g, double x) {
  if (!(x >= -60.0 && x <= 60.0)) {
    warn(g, 2, x);
    return;
  }
  g.text.slant = 1.0 / std::tan((90.0 - x) * g.core.pi / 180.0);
}

void chaspc(GlobalBlock& g, double x) { g.text.spacing = x; }

void chawth(GlobalBlock& g, double x) {
  if (!(x > 0.0 && x < 2.0)) {
    warn(g, 2, x);
    return;
  }
  g.text.width_factor = x;
  g.text.font.selected = -1;
}

void fixspc(GlobalBlock& g, double x) {
  if (!(x > 0.0)) {
    warn(g, 2, x);
    return;
  }
  g.text.fixed = true;
  g.text.fixed_factor = x;
}

void txtjus(GlobalBlock& g, const char* copt) {
  const int i = match_keyword(g, "LEFT+CENT+RIGH+TOP +MIDD+BOTT", copt);
  if (i >= 1 && i <= 3) {
    g.text.hjust = i - 1;
  } else if (i >= 4) {
    g.text.vjust = i - 4;
  }
}

void chacod(GlobalBlock& g, const char* copt) {
  if (const int i = match_keyword(g, "STAN+ISO1+ISO2+ISO3+ISO5+KOI8+UTF8+ISO7", copt); i != 0) {
    g.text.charset = i - 1;
  }
}

void basalf(GlobalBlock& g, const char* calph) {
  if (const int i = match_keyword(g, "STAN+GREE+MATH+ITAL+SCRI+RUSS", calph); i != 0) {
    g.text.base_alphabet = i - 1;
  }
}

void frmess(GlobalBlock& g, int nfrm) {
  // Each unit of thickness is one more rectangle: beyond a 1 cm frame it only costs time.
  if (check_range(g, nfrm, 0, kMaxFrame)) {
    g.text.frame = nfrm;
  }
}

void zoralf(GlobalBlock& g) { select_stroke_font(g, kFontZoralf); }
void complx(GlobalBlock& g) { select_stroke_font(g, kFontComplx); }
void simplx(GlobalBlock& g) { select_stroke_font(g, kFontSimplx); }
void duplx(GlobalBlock& g) { select_stroke_font(g, kFontDuplx); }
void triplx(GlobalBlock& g) { select_stroke_font(g, kFontTriplx); }
void gothic(GlobalBlock& g) { select_stroke_font(g, kFontGothic); }
void helve(GlobalBlock& g) { select_stroke_font(g, kFontHelve); }
void helves(GlobalBlock& g) { select_stroke_font(g, kFontHelves); }
void helvet(GlobalBlock& g) { select_stroke_font(g, kFontHelvet); }
void serif(GlobalBlock& g) { select_stroke_font(g, kFontSerif); }

void hwfont(GlobalBlock& g) {
  if (g.pipe.device != nullptr && screen::is_screen(*g.pipe.device)) {
    winfnt(g, "Times New Roman");  // a screen's own font is a system font
    return;
  }
  // The driver font stands on the complx record: its alphabets without a driver face
  // (math, script, Russian) are drawn with complx strokes, and on devices without fonts
  // of their own hwfont is complx.
  select_stroke_font(g, kFontComplx);
  if (has_driver_font(g)) {
    g.text.font.mode = FontMode::Driver;
  }
}

}  // namespace api
}  // namespace zorvel
