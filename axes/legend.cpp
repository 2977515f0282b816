// Legends: a framed box that repeats, for each curve, its line, symbol or bar beside a
// line of text. legini and leglin keep the lines in the legend's own copy of the caller's
// buffer; legend measures the entries that are shown, places the box and draws it.
//
// The box, with h the character height and g = 1.5 h one text line (f = 1.5: the text
// engine has no line-spacing setting of its own):
//
//   +--------------------------------------+  <- frame (frame() thickness, inwards)
//   |  Title                               |  <- trunc(MARG g) below the frame
//   |                                      |
//   |  ------o------    first entry        |  <- trunc(1.5 g) below the title's top
//   |  - - - - - - -    second entry,      |  <- g further, plus LINE g for every
//   |                   two text lines     |     extra text line of the entry above
//   +--------------------------------------+
//      |<-PATT h->|<h>|
//
// Horizontal margins are trunc(MARG g) as well. In the horizontal layout the entries
// stand side by side, HSPA h apart, under a centred title.

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

#include "api_decl.h"
#include "axes/axis_state.h"
#include "axes/curve_state.h"
#include "axes/symbols.h"
#include "core/format.h"
#include "core/global_block.h"
#include "core/keywords.h"
#include "core/messages.h"
#include "core/page.h"
#include "draw/colour.h"
#include "draw/pipeline.h"
#include "text/text.h"

namespace zorvel {
namespace {

// legini's bounds: a legend of 1000 lines of 1000 bytes is larger than any page, and the
// legend's own copy stays below a megabyte.
constexpr int kMaxLines = 1000;
constexpr int kMaxLineLength = 1000;
// Upper bound of PATT, MARG, LINE, SYMB and HSPA, in character heights.
constexpr double kMaxFactor = 100.0;
// One text line in character heights.
constexpr double kLineFactor = 1.5;
// legpos: within 1 km of the page corner, like origin.
constexpr int kMaxPosition = 100000;
// legpat: line styles of lintyp, widths of linwid, the fill patterns of shdpat and
// myptrn (0 empty to kUserPattern).
constexpr int kMaxStyle = 7;
constexpr int kMaxWidth = 32000;
constexpr int kMaxPattern = kUserPattern;

bool opened(GlobalBlock& g) {
  if (!g.legend.open) {
    warn(g, 15);
    return false;
  }
  return true;
}

// Truncation into an int for sizes and positions, which stay far inside its range for
// any drawable legend; the clamp only keeps absurd ones defined.
int whole(double v) { return static_cast<int>(std::clamp(std::trunc(v), -2e9, 2e9)); }

std::string_view trim(std::string_view s) {
  const std::size_t first = s.find_first_not_of(' ');
  if (first == std::string_view::npos) {
    return {};
  }
  return s.substr(first, s.find_last_not_of(' ') - first + 1);
}

// Warning 149 for an undefined legend line: " by legsel" or nothing fills the place in
// the text, the line number follows in brackets.
void warn_undefined(GlobalBlock& g, std::string_view how, int line) {
  char buf[kNumberBuffer];
  buf[0] = ' ';
  const char* end = format_int(buf + 1, line);
  warn(g, 149, how, std::string_view(buf, static_cast<std::size_t>(end - buf)));
}

// The lines of a legend call: the legend's own copy, with the caller's text over it up to
// its terminator, so that a program may still edit the buffer between leglin and legend
// (and a binding without the buffer may pass "").
std::string legend_text(const GlobalBlock& g, const char* cbuf) {
  std::string text = g.legend.text;
  const std::size_t n = strnlen(cbuf, text.size());
  text.replace(0, n, cbuf, n);
  return text;
}

// What one entry shows.
struct Entry {
  int line = 0;           // 0-based row of the buffer
  std::string_view text;  // without the blanks around it
  int rows = 0;           // text lines, split at the line-break character
  double width = 0.0;     // of the widest text line
};

// The shown entries with their sizes and the legend's size, as nxlegn and nylegn give it.
struct Measure {
  std::vector<Entry> entries;
  double h = 0.0;     // character height
  double line = 0.0;  // one text line, h f (and what raised or lowered parts add)
  double box = 0.0;   // height of a text line's box: h, more with raised or lowered parts
  int pattern = 0;    // width of the pattern column, 0 without patterns
  int width = 0;
  int height = 0;
};

// Splits `text` at the line-break character; calls f(piece) for every text line.
template <typename F>
void for_each_row(const GlobalBlock& g, std::string_view text, F f) {
  const char brk = g.legend.line_break;
  for (;;) {
    const std::size_t at = brk != '\0' ? text.find(brk) : std::string_view::npos;
    f(trim(text.substr(0, at)));
    if (at == std::string_view::npos) {
      return;
    }
    text.remove_prefix(at + 1);
  }
}

Measure measure(GlobalBlock& g, const std::string& text) {
  const LegendState& l = g.legend;
  Measure m;
  m.h = g.text.height;
  m.line = kLineFactor * m.h;
  const int shown = l.selected < 0 ? l.lines : l.selected;
  m.entries.reserve(static_cast<std::size_t>(shown));
  const int h = g.text.height;
  for (int k = 0; k < shown; ++k) {
    Entry e;
    e.line = l.selected < 0 ? k : l.selection[static_cast<std::size_t>(k)] - 1;
    const auto at = static_cast<std::size_t>(e.line) * static_cast<std::size_t>(l.line_length);
    e.text = trim(std::string_view(text).substr(at, static_cast<std::size_t>(l.line_length)));
    for_each_row(g, e.text, [&](std::string_view row) {
      ++e.rows;
      e.width = std::max(e.width, static_cast<double>(measure_label(g, row, h, true)));
      TextBox box;
      if (text_box(g, row, box)) {
        m.box = std::max(m.box, static_cast<double>(box.ascent + box.descent));
      }
    });
    m.entries.push_back(e);
  }
  // Lines with exponents or indices (instruction alphabet) move apart by what their box
  // adds to the height.
  m.box = std::max(m.box, m.h);
  m.line += m.box - m.h;

  // Width: the text, the margins, the pattern column(s), the title, the frame.
  const int n = static_cast<int>(m.entries.size());
  double t = 0.0;
  int rows = 1;   // the most text lines of an entry
  int extra = 0;  // text lines beyond the first of every entry
  for (const Entry& e : m.entries) {
    t = l.horizontal ? t + e.width : std::max(t, e.width);
    rows = std::max(rows, e.rows);
    extra += e.rows - 1;
  }
  if (l.horizontal && n > 1) {
    t += (n - 1) * l.column_space * m.h;
  }
  const double margins = 2.0 * l.margin * m.line;
  m.width = whole(margins + t);
  if (std::fabs(l.pattern) > 0.001) {
    m.pattern = whole((l.pattern + 1.0) * m.h);
    m.width += m.pattern * (l.horizontal ? n : 1);
  }
  if (!l.title.empty()) {
    const int title = measure_label(g, l.title.view(), h, true);
    if (title > m.width) {
      m.width = whole(margins + title);
    }
  }
  const int frame = g.axes.frame >= 1 ? g.axes.frame : 0;
  m.width += 2 * frame;

  // Height.
  double height = l.horizontal
                      ? margins + m.box + (rows - 1) * l.spacing * m.line
                      : (2.0 * l.margin + (n - 1)) * m.line + m.box + extra * l.spacing * m.line;
  height += 2 * frame;
  if (!l.title.empty()) {
    height += 1.5 * m.line;
  }
  m.height = whole(height + 0.5);
  return m;
}

// How the pattern of a legend line looks.
struct Look {
  bool defined = false;
  bool line = false;                    // a piece of line ...
  const CurveRecord* record = nullptr;  // ... in a curve's dash pattern, or
  int style = 0;                        // ... in a lintyp style (legpat)
  int width = 1;
  int colour = -1;  // -1 the current colour
  int symbol = -1;
  int symbol_colour = -1;  // -1 the colour of the line
  int box = -1;            // a bar in this fill pattern (0 empty .. kUserPattern); -1 none
};

Look look_of(const GlobalBlock& g, int line) {
  Look k;
  const auto i = static_cast<std::size_t>(line);
  if (line < kMaxLegendLines && g.legend.patterns[i].defined) {
    const LegendPattern& p = g.legend.patterns[i];
    k.defined = true;
    k.line = p.style >= 0;
    k.style = p.style;
    k.width = p.width;
    k.colour = p.colour;
    k.symbol = p.symbol;
    k.box = p.pattern;
  } else if (line < g.curves.curves) {
    k.defined = true;
    if (line < kMaxLegendLines) {  // later curves are not recorded: text alone
      const CurveRecord& r = g.curves.records[i];
      k.line = r.line && r.pattern < 0;
      k.record = &r;
      k.width = r.width;
      k.colour = r.colour;
      k.symbol = r.symbol;
      k.symbol_colour = r.symbol_colour;
      k.box = r.pattern;
    }
  }
  return k;
}

// The pipeline's pen as the legend found it: colour, width and the dash engine come back
// when the scope ends. Inside, lines are solid and without a sideways offset unless a
// pattern sets its own.
class PenScope {
 public:
  explicit PenScope(GlobalBlock& g)
      : g_(g), colour_(g.colour.current), width_(g.pipe.line_width), dashes_(g) {}
  ~PenScope() {
    end_polyline(g_);
    colour(colour_);
    width(width_);
  }
  PenScope(const PenScope&) = delete;
  PenScope& operator=(const PenScope&) = delete;

  // The colour the legend was called with.
  int caller_colour() const { return colour_; }
  int caller_width() const { return width_; }

  void colour(int value) {
    if (g_.colour.current != value) {
      set_colour(g_, value);
    }
  }
  void width(int w) {
    if (g_.pipe.line_width != w) {
      end_polyline(g_);
      g_.pipe.line_width = w;
      send_line_width(g_);
    }
  }
  void solid() {
    const int one = 1;
    set_dash_pattern(g_, &one, 1);
  }

 private:
  GlobalBlock& g_;
  int colour_;
  int width_;
  DashScope dashes_;  // the dash engine and the offset, restored after the rest
};

void rectangle(GlobalBlock& g, double x0, double y0, double x1, double y1) {
  move_to(g, x0, y0);
  draw_to(g, x1, y0);
  draw_to(g, x1, y1);
  draw_to(g, x0, y1);
  draw_to(g, x0, y0);
}

void fill_rectangle(GlobalBlock& g, double x0, double y0, double x1, double y1) {
  const double xs[4] = {x0, x1, x1, x0};
  const double ys[4] = {y0, y0, y1, y1};
  fill_polygon(g, xs, ys, 4);
}

// The pattern of one entry in the column from x, `length` long, centred on y.
void draw_pattern(GlobalBlock& g, PenScope& pen, const Look& k, double x, double y, double length,
                  const Measure& m) {
  const int colour = k.colour >= 0 ? k.colour : pen.caller_colour();
  pen.colour(colour);
  if (k.box >= 0) {
    // A bar of the capitals' height in its fill pattern, outlined in the caller's width
    // (fills that are not solid draw their outline themselves).
    const double top = y - m.h / 2;
    const double bottom = y + m.h / 2;
    const FillPatternScope pattern(g, k.box);
    fill_rectangle(g, x, top, x + length, bottom);
    if (k.box == kSolidPattern) {
      rectangle(g, x, top, x + length, bottom);
    }
  }
  if (k.line) {
    if (k.record != nullptr) {
      set_dash_pattern(g, k.record->dash.data(), k.record->dash_count);
    } else {
      api::lintyp(g, k.style);
    }
    pen.width(k.width);
    move_to(g, x, y);
    draw_to(g, x + length, y);
    end_polyline(g);
    pen.solid();
    pen.width(pen.caller_width());
  }
  if (k.symbol >= 0) {
    pen.colour(k.symbol_colour >= 0 ? k.symbol_colour : colour);
    draw_symbol(g, k.symbol, x + length / 2, y, whole(g.legend.symbol_size * m.h));
  }
  pen.colour(pen.caller_colour());
}

// Upper left corner of the box for the position ncor (1..8) or legpos.
void place(const GlobalBlock& g, int ncor, const Measure& m, int& x, int& y) {
  const LegendState& l = g.legend;
  if (l.position_set) {
    x = l.pos_x;
    y = l.pos_y;
    return;
  }
  const int gap = whole(l.margin * m.h);  // to the edge of the page or the axis system
  if (ncor <= 4) {
    // Page corners: the origin offset taken off, so that they are the page's own.
    const int right = whole(g.page.width) - gap - m.width;
    const int bottom = whole(g.page.height) - gap - m.height;
    x = (ncor == 1 || ncor == 4 ? gap : right) - g.page.origin_x;
    y = (ncor <= 2 ? bottom : gap) - g.page.origin_y;
    return;
  }
  const AxisState& s = g.axes;
  const int left = s.pos_x + gap;
  const int right = s.pos_x + s.len_x - 1 - gap - m.width;
  const int top = s.pos_y - s.len_y + 1 + gap;
  const int bottom = s.pos_y - gap - m.height;
  x = ncor == 5 || ncor == 8 ? left : right;
  y = ncor <= 6 ? bottom : top;
}

// Reports the entries without a pattern: 149 for each when legpat is in use, else 42 with
// their number.
void check_looks(GlobalBlock& g, const Measure& m) {
  const bool explicit_patterns = std::any_of(g.legend.patterns.begin(), g.legend.patterns.end(),
                                             [](const LegendPattern& p) { return p.defined; });
  int surplus = 0;
  for (const Entry& e : m.entries) {
    if (look_of(g, e.line).defined) {
      continue;
    }
    if (explicit_patterns) {
      warn_undefined(g, "", e.line + 1);
    } else {
      ++surplus;
    }
  }
  if (surplus > 0) {
    warn(g, 42, surplus);
  }
}

void draw_legend(GlobalBlock& g, const Measure& m, int x0, int y0) {
  const LegendState& l = g.legend;
  const PageClipScope page(g);
  PenScope pen(g);
  const double x1 = x0 + m.width - 1;
  const double y1 = y0 + m.height - 1;
  const int background = l.background == kLegendPageBackground
                             ? ((g.pipe.caps & kCapFill) != 0U ? g.colour.background : -1)
                             : l.background;
  if (background >= 0) {
    pen.colour(background);
    const FillPatternScope solid(g, kSolidPattern);
    fill_rectangle(g, x0, y0, x1, y1);
  }
  const int frame = g.axes.frame >= 1 ? g.axes.frame : 0;
  pen.colour(l.frame_colour >= 0 ? l.frame_colour : pen.caller_colour());
  for (int i = 0; i < frame; ++i) {
    rectangle(g, x0 + i, y0 + i, x1 - i, y1 - i);
  }

  const int h = g.text.height;
  const int margin = whole(m.line * l.margin);
  const double left = x0 + frame + margin;
  double top = y0 + frame + margin;
  if (!l.title.empty()) {
    const LabelStyle centred{0, h, 1, 0, true};
    const LabelStyle at_left{0, h, 0, 0, true};
    if (l.horizontal) {
      draw_label(g, l.title.view(), x0 + (m.width - 1) / 2.0, top, centred);
    } else {
      draw_label(g, l.title.view(), left, top, at_left);
    }
    top += whole(1.5 * m.line);
  }
  pen.colour(pen.caller_colour());

  const double step = l.spacing * m.line;  // between the text lines of an entry
  const double length = std::max(l.pattern, 0.0) * m.h;
  double x = left;
  for (const Entry& e : m.entries) {
    const double block = m.box + (e.rows - 1) * step;
    if (m.pattern > 0) {
      draw_pattern(g, pen, look_of(g, e.line), x, top + block / 2, length, m);
    }
    double row_top = top;
    for_each_row(g, e.text, [&](std::string_view row) {
      draw_label(g, row, x + m.pattern, row_top, LabelStyle{0, h, 0, 0, true});
      row_top += step;
    });
    if (l.horizontal) {
      x += m.pattern + e.width + l.column_space * m.h;
    } else {
      top += m.line + (e.rows - 1) * step;
    }
  }
}

}  // namespace

namespace api {

void legini(GlobalBlock& g, TextBuffer cbuf, int nlin, int nmaxln) {
  if (!check_range(g, nlin, 1, kMaxLines) || !check_range(g, nmaxln, 1, kMaxLineLength)) {
    return;
  }
  const auto size = static_cast<std::size_t>(nlin) * static_cast<std::size_t>(nmaxln);
  if (!cbuf.holds(size + 1)) {
    warn(g, 2, std::string_view("cbuf"));
    return;
  }
  std::string text(size, ' ');  // may throw: nothing is changed then
  const bool horizontal = g.legend.horizontal;
  g.legend = LegendState{};
  g.legend.horizontal = horizontal;
  g.legend.open = true;
  g.legend.lines = nlin;
  g.legend.line_length = nmaxln;
  g.legend.text = std::move(text);
  std::memset(cbuf.data, ' ', size);
  cbuf.data[size] = '\0';
  g.curves.curves = 0;
}

void leglin(GlobalBlock& g, TextBuffer cbuf, const char* cstr, int ilin) {
  LegendState& l = g.legend;
  if (!opened(g) || !check_range(g, ilin, 1, l.lines)) {
    return;
  }
  const auto length = static_cast<std::size_t>(l.line_length);
  const std::size_t n = strnlen(cstr, length + 1);
  if (n > length) {
    warn(g, 16, std::string_view(cstr));
    return;
  }
  if (!cbuf.holds(l.text.size() + 1)) {
    warn(g, 2, std::string_view("cbuf"));
    return;
  }
  const std::size_t at = static_cast<std::size_t>(ilin - 1) * length;
  l.text.replace(at, length, length, ' ');
  l.text.replace(at, n, cstr, n);
  std::memcpy(cbuf.data + at, l.text.data() + at, length);
}

void legtit(GlobalBlock& g, const char* ctitle) {
  if (!opened(g)) {
    return;
  }
  const std::string_view t(ctitle);
  if (t.size() > 80) {
    warn(g, 2, t);
    return;
  }
  g.legend.title = t;
}

void legtyp(GlobalBlock& g, const char* copt) {
  if (g.legend.open) {
    warn(g, 182);
    return;
  }
  if (const int i = match_keyword(g, "VERT+HORI", copt); i != 0) {
    g.legend.horizontal = i == 2;
  }
}

void legpos(GlobalBlock& g, int nx, int ny) {
  if (!opened(g) || !check_range(g, nx, -kMaxPosition, kMaxPosition) ||
      !check_range(g, ny, -kMaxPosition, kMaxPosition)) {
    return;
  }
  g.legend.position_set = true;
  g.legend.pos_x = nx;
  g.legend.pos_y = page_y(g, ny);
}

void legopt(GlobalBlock& g, double x1, double x2, double x3) {
  constexpr double kPositive = std::numeric_limits<double>::denorm_min();
  if (!opened(g) || !check_range(g, x1, 0.0, kMaxFactor) ||
      !check_range(g, x2, kPositive, kMaxFactor) || !check_range(g, x3, kPositive, kMaxFactor)) {
    return;
  }
  g.legend.pattern = x1;
  g.legend.margin = x2;
  g.legend.spacing = x3;
}

void legval(GlobalBlock& g, double x, const char* copt) {
  if (!opened(g) || !check_range(g, x, 0.0, kMaxFactor)) {
    return;
  }
  LegendState& l = g.legend;
  double* const values[] = {&l.pattern, &l.margin, &l.spacing, &l.symbol_size, &l.column_space};
  if (const int i = match_keyword(g, "PATT+MARG+LINE+SYMB+HSPA", copt); i != 0) {
    *values[i - 1] = x;
  }
}

void legsel(GlobalBlock& g, const int* nray, int n) {
  LegendState& l = g.legend;
  if (!opened(g) || !check_range(g, n, -1, kMaxLegendLines)) {
    return;
  }
  for (int i = 0; i < n; ++i) {
    if (nray[i] < 1) {
      warn(g, 2, nray[i]);
      return;
    }
    if (nray[i] > l.lines) {
      warn_undefined(g, " by legsel", nray[i]);
      return;
    }
  }
  l.selected = n;
  std::copy(nray, nray + std::max(n, 0), l.selection.begin());
}

void legpat(GlobalBlock& g, int ityp, int ithk, int isym, int iclr, int ipat, int ilin) {
  if (!opened(g) || !check_range(g, ityp, -1, kMaxStyle) || !check_range(g, ithk, 1, kMaxWidth) ||
      !check_range(g, isym, -1, kMaxSymbols - 1) || !check_range(g, iclr, -1, -2) ||
      !check_range(g, ipat, -1, kMaxPattern) ||
      !check_range(g, ilin, 1, std::min(g.legend.lines, kMaxLegendLines))) {
    return;
  }
  g.legend.patterns[static_cast<std::size_t>(ilin - 1)] = {true, ityp, ithk, isym, iclr, ipat};
}

void legbgd(GlobalBlock& g, int nclr) {
  if (opened(g) && check_range(g, nclr, -1, -2)) {
    g.legend.background = nclr;
  }
}

void legclr(GlobalBlock& g, int nclr) {
  if (opened(g) && check_range(g, nclr, -1, -2)) {
    g.legend.frame_colour = nclr;
  }
}

void legbrk(GlobalBlock& g, const char* cbrk) {
  if (!opened(g)) {
    return;
  }
  const std::string_view c(cbrk);
  if (c.size() > 1) {
    warn(g, 2, c);
    return;
  }
  g.legend.line_break = c.empty() ? '\0' : c[0];
}

int nxlegn(GlobalBlock& g, const char* cbuf) {
  if (!opened(g)) {
    return 0;
  }
  return measure(g, legend_text(g, cbuf)).width;
}

int nylegn(GlobalBlock& g, const char* cbuf) {
  if (!opened(g)) {
    return 0;
  }
  return measure(g, legend_text(g, cbuf)).height;
}

void legend(GlobalBlock& g, const char* cbuf, int ncor) {
  if (!opened(g) || !check_range(g, ncor, 1, 8)) {
    return;
  }
  const std::string text = legend_text(g, cbuf);
  const Measure m = measure(g, text);
  check_looks(g, m);
  int x = 0;
  int y = 0;
  place(g, ncor, m, x, y);
  draw_legend(g, m, x, y);
}

}  // namespace api
}  // namespace zorvel
