// The PostScript driver of the devices "POST" (501), "PSCL" (502), "EPS " (503) and
// "PS  " (504).
//
// The file is text in lines of at most 80 characters, all written through TextWriter:
// a header of document structuring comments, a prolog of short procedures, and a body of
// integers in driver units (1/200 cm), each group followed by a procedure name:
//
//   x y u             start a path at (x, y)        x y d   line to (x, y)
//   p                 stroke the path               r g b f colour, 0..255 each
//   x y w v r g b e   filled rectangle with the corners (x, y) and (w, v)
//   x y G7            a polyline of a shape drawn before (glyph strokes, markers),
//                     defined once per page as a procedure when it appears a second time
//   x y S4            a shape of the pipeline (a glyph's strokes, or its filled
//                     contours), defined once per page as a procedure at its first use
//
// The prolog's `cm` turns driver units into points (72/508 = 0.1417322835 points per
// unit); the placement line moves the page to its offset on the sheet and applies the
// scale factor. The origin of driver coordinates is the lower left corner of the page.
//
// The variants differ only in a few places:
//   POST  "%!PS-Adobe-2.0"; every page is cleared with "erasepage"
//   PSCL  as POST, but pages are filled with black unless the screen mode is reversed
//   EPS   "%!PS-Adobe-3.0 EPSF-3.0"; background as PSCL; no page count, no trailer, and
//         never "erasepage" (an imported figure must not wipe the page it lands on)
//   PS    as PSCL
// Single-page mode (psmode "SING") writes the same drawing without the multi-page
// structure (no prolog brackets, no page count, no trailer).

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "core/format.h"
#include "core/version.h"
#include "drivers/registry.h"
#include "drivers/shape_table.h"
#include "drivers/text_writer.h"
#include "text/ps_fonts.h"

namespace zorvel {
namespace {

// The variants of the registry rows.
enum Variant { kPost = 0, kPscl = 1, kEps = 2, kPs = 3 };

// Shows a character outside the font's encoding by its glyph name, centred on its place
// like `c`: "/name hw x y a gn", where hw is half the glyph's advance in points, which
// the driver knows from the font's metrics (glyphshow has no stringwidth). Written once
// on each page that needs it, so that other pages keep the prolog as it was.
constexpr std::string_view kGlyphProc =
    "/gn { /a exch def /y exch cm def /x exch cm def /w exch def /n exch def gsave x y "
    "translate a rotate w neg 0 moveto n glyphshow grestore } def ";

// Points per driver unit: the prolog's `cm` multiplies by this value.
constexpr double kPointsPerUnit = 0.1417322835;
// Points held before a polyline is written (it then continues from its last point).
constexpr int kPolylineCapacity = 100;
// Offset of the page on the sheet, in driver units, unless hworig sets one.
constexpr int kDefaultOffsetX = 150;
constexpr int kDefaultOffsetY = 200;
// Coordinates are clamped to this magnitude before integer conversion; far outside any
// sheet, and well inside int.
constexpr double kCoordinateLimit = 1e9;
// Polylines that repeat: one of at most this many points, seen again with the same shape
// elsewhere on the page, is defined once as a procedure and then placed by its start point.
constexpr int kShapePoints = 64;
// Line width in driver units below which no line is drawn thinner.
constexpr int kThinnestLine = 5;

// The prolog, line by line. `u`, `d`, `p`, `e` and `f` draw the body; `clp`, `text`,
// `font`, `font2`, `c`, `sec` and `tri` serve clipping, driver fonts, pie sectors and
// shading; `ReEncodeSmall` with `GermanVec` gives the standard fonts the accented
// letters of the library's character codes 127 to 186.
constexpr std::string_view kProlog[] = {
    "/cm {0.1417322835 mul} def /rgb {255 div} def /lc 1 string def",
    "/u  { /y exch cm def /x exch cm def newpath  x y moveto } def",
    "/d  { /y exch cm def /x exch cm def x y lineto } def",
    "/p  { stroke } def",
    "/e { /b exch rgb def /g exch rgb def",
    " /r exch rgb def /v exch cm def /w exch cm def /y exch cm def",
    " /x exch cm def gsave r g b setrgbcolor newpath x y moveto",
    " w y lineto w v lineto x v lineto closepath fill grestore } def",
    "/f { /b exch rgb def /g exch rgb def",
    " /r exch rgb def r g b setrgbcolor } def",
    "/clp {/v exch cm def /w exch cm def /y exch cm def",
    " /x exch cm def newpath x y moveto",
    " w y lineto w v lineto x v lineto closepath clip } def",
    "/text { /c1 exch def /a exch def /y exch cm def /x exch cm def",
    " /Name exch def gsave x y moveto x y translate a rotate c1 0 gt",
    " { Name stringwidth 2 div neg exch 2 div neg exch rmoveto }",
    " {} ifelse Name show grestore } def /font { /h exch def",
    " /s exch def s findfont h scalefont setfont } def",
    "/font2 { /h2 exch def /h1 exch def /s exch def s findfont",
    " [h2 0 0 h1 0 0] makefont setfont } def",
    "/c { /a exch def /y exch cm def /x exch cm def /i exch def",
    " gsave x y moveto x y translate a rotate lc 0 i put lc",
    " stringwidth 2 div neg exch 2 div neg exch rmoveto lc show",
    " grestore } def",
    "/sec { /b exch rgb def /g exch rgb def /r exch rgb def",
    " /a2 exch def /a exch def /r2 exch cm def /r1 exch cm def",
    " /y exch cm def /x exch cm def gsave r g b setrgbcolor newpath",
    " x y r1 a a2 arc x y r2 a2 a arcn closepath fill grestore } def",
    "/tri { /y3 exch cm def /x3 exch cm def /y2 exch cm def",
    " /x2 exch cm def /y1 exch cm def /x1 exch cm def",
    " gsave newpath x1 y1 moveto",
    " x2 y2 lineto x3 y3 lineto closepath fill grestore } def",
    "/Reencsmalldict 12 dict def",
    "/ReEncodeSmall",
    "{ Reencsmalldict begin",
    "  /NewCodesAndNames exch def",
    "  /NewFontName exch def",
    "  /BaseFontName exch def",
    "  /BaseFontDict",
    "  BaseFontName findfont def",
    "  /NewFont BaseFontDict",
    "  maxlength dict def",
    "  BaseFontDict",
    "  { exch dup /FID ne",
    "    { dup /Encoding eq",
    "      { exch dup length array copy",
    "        NewFont 3 1 roll put",
    "      }",
    "      { exch NewFont 3 1 roll put",
    "      } ifelse",
    "      }",
    "      {pop pop} ifelse",
    "    } forall",
    "    NewFont",
    "    /FontName NewFontName put",
    "    NewCodesAndNames aload pop",
    "    NewCodesAndNames",
    "    length 2 idiv",
    "    { NewFont /Encoding get",
    "    3 1 roll put  } repeat",
    "    NewFontName NewFont",
    "    definefont pop end } def",
    " /GermanVec [ 8#177 /Adieresis",
    " 8#200 /Odieresis 8#201 /Udieresis 8#202 /adieresis",
    " 8#203 /odieresis 8#204 /udieresis 8#205 /germandbls",
    " 8#206 /Aring     8#207 /Oslash    8#210 /AE",
    " 8#211 /aring     8#212 /oslash    8#213 /ae",
    " 8#214 /Ntilde    8#215 /ntilde    8#216 /Ccedilla",
    " 8#217 /ccedilla  8#220 /Edieresis 8#221 /Idieresis",
    " 8#222 /edieresis 8#223 /idieresis 8#224 /Aacute",
    " 8#225 /Eacute    8#226 /Iacute    8#227 /Oacute",
    " 8#230 /Uacute    8#231 /aacute    8#232 /eacute",
    " 8#233 /iacute    8#234 /oacute    8#235 /uacute",
    " 8#236 /Agrave    8#237 /Egrave    8#240 /Igrave",
    " 8#241 /Ograve    8#242 /Ugrave    8#243 /agrave",
    " 8#244 /egrave    8#245 /igrave    8#246 /ograve",
    " 8#247 /ugrave      8#250 /Acircumflex 8#251 /Ecircumflex",
    " 8#252 /Icircumflex 8#253 /Ocircumflex 8#254 /Ucircumflex",
    " 8#255 /acircumflex 8#256 /ecircumflex 8#257 /icircumflex",
    " 8#260 /ocircumflex 8#261 /ucircumflex 8#262 /Atilde",
    " 8#263 /atilde 8#264 /Otilde 8#265 /otilde 8#266 /Yacute",
    " 8#267 /yacute 8#270 /ydieresis",
    " 8#271 /exclamdown 8#272 /questiondown ] def",
};

// Driver units of a coordinate: add 0.5 and truncate, after clamping (NaN counts as 0;
// the pipeline never sends one, but a driver must not overflow on it).
int to_unit(double v) {
  if (!(v == v)) {
    return 0;
  }
  v = std::clamp(v, -kCoordinateLimit, kCoordinateLimit);
  return static_cast<int>(v + 0.5);
}

// floor(v) as an integer for the bounding box, clamped like a coordinate.
long long floor_int(double v) {
  if (!(v == v)) {
    return 0;
  }
  return static_cast<long long>(std::floor(std::clamp(v, -kCoordinateLimit, kCoordinateLimit)));
}

// Text helpers for the few header lines that printf-style formats describe.
void append_int(std::string& s, long long v, int width = 0) {
  char tmp[kNumberBuffer];
  char* end = format_int(tmp, v);
  end = pad_left(tmp, end, std::min<int>(width, static_cast<int>(kNumberBuffer)));
  s.append(tmp, static_cast<std::size_t>(end - tmp));
}

void append_fixed(std::string& s, double v, int decimals, int width = 0) {
  char tmp[kNumberBuffer];
  char* end = format_fixed(tmp, v, decimals);
  end = pad_left(tmp, end, std::min<int>(width, static_cast<int>(kNumberBuffer)));
  s.append(tmp, static_cast<std::size_t>(end - tmp));
}

class PsDriver final : public Driver {
 public:
  bool open(Sink* out, const DriverSetup& setup) override;
  void point(double x, double y, Pen pen) override;
  void colour(Rgb rgb, int value) override;
  void pen_width(const LineWidth& w) override;
  void line_cap(int cap) override;
  void line_join(int join, double miter_limit) override;
  void fill(const Path& path, Rgb rgb) override;
  void sector(const Sector& s, Rgb rgb) override;
  void new_page() override;
  void text(const TextRun& run) override;
  bool close() override;
  bool failed() const override { return out_ && out_->failed(); }
  long long overflows() const override { return out_ ? out_->overflows() : 0; }
  // Paths are filled natively: rectangles through the prolog's `e`, others as paths,
  // sectors through `sec`.
  unsigned caps() const override {
    return kCapFill | kCapText | kCapWidths | kCapShapes | kCapSectors | kCapFilledShapes;
  }
  void place_shape(const Shape& shape, double x, double y) override;

 private:
  void write_header(const DriverSetup& setup);
  void write_placement(const DriverSetup& setup);
  void write_background();
  void write_colour();

  void move(int x, int y);
  void draw(int x, int y);
  void write_polyline();
  void end_polyline();
  bool reuse_polyline();
  void define_shape(const Shape& shape);
  void define_filled_shape(const Shape& shape);
  void show_by_name(int font, const GlyphPlace& glyph, double angle);

  std::unique_ptr<TextWriter> out_;
  bool eps_ = false;
  bool single_page_ = false;
  bool fill_background_ = false;  // pages are filled with black instead of erased
  bool landscape_ = false;
  int background_w_ = 0;          // page sides in driver units for the background fill
  int background_h_ = 0;

  // The open polyline: element 0 is its start. Written when full, on a move, and before
  // every attribute change.
  std::array<int, kPolylineCapacity> xs_{};
  std::array<int, kPolylineCapacity> ys_{};
  int count_ = 0;
  // Last point of a polyline ended by an attribute change: a draw that follows without
  // a move continues from here.
  int end_x_ = 0;
  int end_y_ = 0;

  // Shapes of short polylines drawn on this page, for the procedures that draw them again.
  ShapeTable shapes_;
  // Shapes of the pipeline (glyphs) defined on this page as procedures "S<id>".
  std::vector<std::uint8_t> shapes_defined_;

  int pages_ = 1;  // the first page counts as 1; new_page adds one
  int cap_ = 2;
  int join_ = 2;
  double miter_limit_ = 10.0;
  LineWidth width_{};
  Rgb colour_{};
  bool closed_ = false;

  // Driver fonts: the face and size set last with `font` (empty: none on this page), and
  // the faces re-encoded for the accented letters on this page; whether the page has
  // the procedure that shows glyphs by name.
  bool glyph_proc_ = false;
  std::string font_face_;
  double font_size_ = 0.0;
  double font_stretch_ = 1.0;
  std::string encoded_;
};

// Opening
// =======

bool PsDriver::open(Sink* out, const DriverSetup& setup) {
  out_ = std::make_unique<TextWriter>(out, 80);
  eps_ = setup.variant == kEps;
  single_page_ = setup.single_page;
  landscape_ = setup.landscape;
  fill_background_ = setup.variant != kPost && !setup.reversed;
  background_w_ = to_unit(setup.page_width * setup.scale);
  background_h_ = to_unit(setup.page_height * setup.scale);

  write_header(setup);
  if (single_page_) {
    out_->line("%%Page: 1 1");
    out_->line("2 setlinecap 2 setlinejoin");
  } else {
    out_->line("%%BeginProlog");
  }
  for (std::string_view line : kProlog) {
    out_->line(line);
  }
  if (!single_page_ && !eps_) {
    out_->line("%%EndProlog");
    out_->line("%%Page: 1 1");
    out_->line("initgraphics");
  }
  write_placement(setup);
  if (!single_page_ && eps_) {
    out_->line("%%EndProlog");
    out_->line("%%Page: 1 1");
  }
  if (fill_background_) {
    write_background();
  } else if (!eps_) {
    out_->line("erasepage");
  }
  if (!single_page_) {
    out_->line("2 setlinecap 2 setlinejoin");
  }
  count_ = 0;
  return !out_->failed();
}

void PsDriver::write_header(const DriverSetup& setup) {
  out_->line(eps_ ? "%!PS-Adobe-3.0 EPSF-3.0" : "%!PS-Adobe-2.0");

  // The box covers the scaled page at its offset on the sheet; a landscape page lies
  // rotated on the sheet, its height along x.
  const double ox = setup.user_offset ? 2.0 * setup.offset_x : kDefaultOffsetX;
  const double oy = setup.user_offset ? 2.0 * setup.offset_y : kDefaultOffsetY;
  const double f = static_cast<float>(setup.scale_factor);
  const double k = kPointsPerUnit;
  const double across = landscape_ ? setup.page_height : setup.page_width;
  const double along = landscape_ ? setup.page_width : setup.page_height;
  std::string s = "%%BoundingBox: ";
  append_int(s, floor_int(ox * k));
  s += ' ';
  append_int(s, floor_int(oy * k));
  s += ' ';
  append_int(s, floor_int((across * setup.scale * f + ox) * k + 1.0));
  s += ' ';
  append_int(s, floor_int((along * setup.scale * f + oy) * k + 1.0));
  out_->line(s);

  s = "%%Creator: ZORVEL  ";
  append_fixed(s, kVersion, 1, 4);
  s += landscape_ ? " L" : " P";
  out_->line(s);

  s = "%%CreationDate: ";
  s += setup.stamp.date;
  s += " , ";
  s += setup.stamp.time;
  out_->line(s);

  if (!eps_ && !single_page_) {
    out_->line("%%Pages: (atend)");
  }
  out_->line("%%EndComments");
}

// "%5d cm %5d cm translate %10.6f%10.6f scale" with a user offset, else the default
// offset in the same layout. The user offset is written as set although the bounding
// box counts it twice: files written so far place pages this way.
void PsDriver::write_placement(const DriverSetup& setup) {
  std::string s;
  if (setup.user_offset) {
    append_int(s, setup.offset_x, 5);
    s += " cm ";
    append_int(s, setup.offset_y, 5);
    s += " cm translate ";
  } else {
    s = "  150 cm   200 cm translate ";
  }
  const double f = static_cast<float>(setup.scale_factor);
  append_fixed(s, f, 6, 10);
  append_fixed(s, f, 6, 10);
  s += " scale";
  out_->line(s);
}

// Fills the whole page with black through `e`.
void PsDriver::write_background() {
  if (landscape_) {
    out_->words("0 0 ");
    out_->int_word(background_h_);
    out_->int_word(background_w_);
  } else {
    out_->words("0 ");
    out_->int_word(background_h_);
    out_->int_word(background_w_);
    out_->words("0 ");
  }
  out_->words("0 0 0 e ");
}

// Polylines
// =========

void PsDriver::point(double x, double y, Pen pen) {
  switch (pen) {
    case Pen::Draw:
      draw(to_unit(x), to_unit(y));
      break;
    case Pen::Move:
      move(to_unit(x), to_unit(y));
      break;
    case Pen::End:
    case Pen::Close:
      end_polyline();
      break;
    default:
      break;  // widths come through pen_width
  }
}

void PsDriver::move(int x, int y) {
  write_polyline();
  xs_[0] = x;
  ys_[0] = y;
  count_ = 1;
}

void PsDriver::draw(int x, int y) {
  if (count_ == 0) {
    xs_[0] = end_x_;
    ys_[0] = end_y_;
    count_ = 1;
  }
  // A repeated point adds nothing to a line, but the second point of a polyline is kept
  // even when it repeats the first: such a zero-length line is written as a short dot.
  if (count_ >= 2 && x == xs_[count_ - 1] && y == ys_[count_ - 1]) {
    return;
  }
  xs_[count_] = x;
  ys_[count_] = y;
  if (++count_ == kPolylineCapacity) {
    write_polyline();
    xs_[0] = xs_[kPolylineCapacity - 1];
    ys_[0] = ys_[kPolylineCapacity - 1];
    count_ = 1;
  }
}

// Writes the open polyline ("x y u x y d ... p ") and keeps it open. A lone point draws
// nothing and is not written.
void PsDriver::write_polyline() {
  if (count_ < 2) {
    return;
  }
  int x0 = xs_[0];
  int x1 = xs_[1];
  const bool dot = count_ == 2 && x0 == x1 && ys_[0] == ys_[1];
  if (!dot && count_ >= 3 && count_ <= kShapePoints && reuse_polyline()) {
    return;
  }
  if (dot) {
    // A dot: a line of 4 units, so that the stroke shows.
    x0 -= 2;
    x1 += 2;
  }
  TextWriter& out = *out_;
  out.int_word(x0);
  out.int_word(ys_[0]);
  out.word("u ");
  out.int_word(x1);
  out.int_word(ys_[1]);
  out.word("d ");
  for (int i = 2; i < count_; ++i) {
    out.int_word(xs_[i]);
    out.int_word(ys_[i]);
    out.word("d ");
  }
  out.word("p ");
}

void PsDriver::end_polyline() {
  write_polyline();
  if (count_ > 0) {
    end_x_ = xs_[count_ - 1];
    end_y_ = ys_[count_ - 1];
  }
  count_ = 0;
}

// A polyline whose shape was drawn before: defined as a procedure the second time
// ("/G7 { /oy exch def /ox exch def ox oy u ox 3 add oy -4 add d ... p } def"), then
// drawn by "x y G7". True when the polyline is written this way; false when it must be
// written point by point (the first time, or when the table is full).
bool PsDriver::reuse_polyline() {
  std::array<long long, 2 * kShapePoints> rel{};
  const int n = count_ - 1;  // points after the first
  for (int i = 0; i < n; ++i) {
    rel[static_cast<std::size_t>(2 * i)] = xs_[static_cast<std::size_t>(i + 1)] - xs_[0];
    rel[static_cast<std::size_t>(2 * i + 1)] = ys_[static_cast<std::size_t>(i + 1)] - ys_[0];
  }
  const ShapeTable::Found f =
      shapes_.find(std::span<const long long>(rel).first(static_cast<std::size_t>(2 * n)));
  if (f.name < 0) {
    return false;
  }
  TextWriter& out = *out_;
  char digits[24];
  if (f.define) {
    std::string name = "/G";
    name.append(digits, format_int(digits, f.name));
    name += ' ';
    out.word(name);
    // The points as offsets added to the start in driver units, so that every point is
    // converted exactly as its absolute coordinates would be.
    out.words("{ /oy exch def /ox exch def ox oy u ");
    for (std::size_t i = 0; i + 1 < f.offsets.size(); i += 2) {
      out.word("ox ");
      out.int_word(f.offsets[i]);
      out.words("add oy ");
      out.int_word(f.offsets[i + 1]);
      out.words("add d ");
    }
    out.words("p } def ");
  }
  out.int_word(xs_[0]);
  out.int_word(ys_[0]);
  std::string use = "G";
  use.append(digits, format_int(digits, f.name));
  use += ' ';
  out.word(use);
  return true;
}

// A shape of the pipeline (a glyph), defined on the page where it is first drawn as a
// procedure that takes its origin ("/S4 { gsave cm exch cm exch translate 3 -2 u 3 9 d p
// ... grestore } def") and then drawn by "x y S4". Its points are rounded relative to
// the origin, so the glyph looks alike wherever it stands.
void PsDriver::place_shape(const Shape& shape, double x, double y) {
  end_polyline();
  const auto id = static_cast<std::size_t>(shape.id);
  if (id >= shapes_defined_.size()) {
    shapes_defined_.resize(id + 1, 0);
  }
  if (!shapes_defined_[id]) {
    if (shape.filled) {
      define_filled_shape(shape);
    } else {
      define_shape(shape);
    }
    shapes_defined_[id] = 1;
  }
  TextWriter& out = *out_;
  out.int_word(to_unit(x));
  out.int_word(to_unit(y));
  char name[kNumberBuffer + 2] = "S";
  char* end = format_int(name + 1, shape.id);
  *end++ = ' ';
  out.word({name, static_cast<std::size_t>(end - name)});
}

void PsDriver::define_shape(const Shape& shape) {
  TextWriter& out = *out_;
  char name[kNumberBuffer + 3] = "/S";
  char* end = format_int(name + 2, shape.id);
  *end++ = ' ';
  out.word({name, static_cast<std::size_t>(end - name)});
  out.words("{ gsave cm exch cm exch translate ");
  auto unit = [](double v) { return static_cast<int>(std::floor(std::clamp(v, -1e9, 1e9) + 0.5)); };
  std::size_t from = 0;
  for (const int to : shape.ends) {
    // As polylines are written: repeated points left out, a zero-length line a dot.
    int n = 0;
    for (auto i = from; i < static_cast<std::size_t>(to); ++i) {
      const int px = unit(shape.xs[i]);
      const int py = unit(shape.ys[i]);
      if (n >= 2 && px == xs_[static_cast<std::size_t>(n - 1)] &&
          py == ys_[static_cast<std::size_t>(n - 1)]) {
        continue;
      }
      if (n == kPolylineCapacity) {
        break;  // glyph strokes are short; a longer one is cut, never overrun
      }
      xs_[static_cast<std::size_t>(n)] = px;
      ys_[static_cast<std::size_t>(n)] = py;
      ++n;
    }
    from = static_cast<std::size_t>(to);
    if (n < 2) {
      continue;
    }
    int x0 = xs_[0];
    int x1 = xs_[1];
    if (n == 2 && x0 == x1 && ys_[0] == ys_[1]) {
      x0 -= 2;
      x1 += 2;
    }
    out.int_word(x0);
    out.int_word(ys_[0]);
    out.word("u ");
    out.int_word(x1);
    out.int_word(ys_[1]);
    out.word("d ");
    for (int i = 2; i < n; ++i) {
      out.int_word(xs_[static_cast<std::size_t>(i)]);
      out.int_word(ys_[static_cast<std::size_t>(i)]);
      out.word("d ");
    }
    out.word("p ");
  }
  out.words("grestore } def ");
  count_ = 0;
}

// A filled shape: its contours relative to the origin as one path, filled by the
// non-zero rule in the current colour ("/S5 { gsave cm exch cm exch translate 0 0 u 9 0 d
// 9 9 d closepath 2 2 cm exch cm exch moveto ... closepath fill grestore } def").
// Repeated points are left out; a contour left with fewer than three points encloses
// nothing and is left out too.
void PsDriver::define_filled_shape(const Shape& shape) {
  TextWriter& out = *out_;
  char name[kNumberBuffer + 3] = "/S";
  char* end = format_int(name + 2, shape.id);
  *end++ = ' ';
  out.word({name, static_cast<std::size_t>(end - name)});
  out.words("{ gsave cm exch cm exch translate ");
  auto unit = [](double v) { return static_cast<int>(std::floor(std::clamp(v, -1e9, 1e9) + 0.5)); };
  const std::size_t n = std::min(shape.xs.size(), shape.ys.size());
  bool path_begun = false;
  std::size_t from = 0;
  for (const int end_index : shape.ends) {
    const std::size_t to = std::min(n, static_cast<std::size_t>(std::max(end_index, 0)));
    // The distinct points first, to know whether the contour encloses anything.
    int distinct = 0;
    int lx = 0;
    int ly = 0;
    for (auto i = from; i < to && distinct < 3; ++i) {
      const int px = unit(shape.xs[i]);
      const int py = unit(shape.ys[i]);
      if (distinct == 0 || px != lx || py != ly) {
        ++distinct;
        lx = px;
        ly = py;
      }
    }
    if (distinct >= 3) {
      for (auto i = from; i < to; ++i) {
        const int px = unit(shape.xs[i]);
        const int py = unit(shape.ys[i]);
        if (i > from && px == lx && py == ly) {
          continue;
        }
        out.int_word(px);
        out.int_word(py);
        if (i > from) {
          out.word("d ");
        } else if (!path_begun) {
          out.word("u ");
        } else {
          out.words("cm exch cm exch moveto ");
        }
        lx = px;
        ly = py;
      }
      out.word("closepath ");
      path_begun = true;
    }
    from = std::max(from, to);
  }
  out.words(path_begun ? "fill grestore } def " : "grestore } def ");
  count_ = 0;
}

// Attributes
// ==========

void PsDriver::colour(Rgb rgb, int /*value*/) {
  end_polyline();
  colour_ = rgb;
  write_colour();
}

void PsDriver::write_colour() {
  out_->int_word(std::clamp(colour_.r, 0, 255));
  out_->int_word(std::clamp(colour_.g, 0, 255));
  out_->int_word(std::clamp(colour_.b, 0, 255));
  out_->word("f ");
}

void PsDriver::pen_width(const LineWidth& w) {
  end_polyline();
  width_ = w;
  const int units = w.hardware ? std::max(2 * w.n, kThinnestLine) : kThinnestLine;
  out_->fixed_word(units * w.width_scale, 2);
  out_->word("cm ");
  out_->word("setlinewidth ");
  if (join_ == 0) {
    out_->fixed_word(miter_limit_, 2);
    out_->word("setmiterlimit ");
  }
}

void PsDriver::line_cap(int cap) {
  end_polyline();
  cap_ = std::clamp(cap, 0, 2);
  out_->int_word(cap_);
  out_->word("setlinecap ");
}

void PsDriver::line_join(int join, double miter_limit) {
  end_polyline();
  join_ = std::clamp(join, 0, 2);
  out_->int_word(join_);
  out_->word("setlinejoin ");
  if (join_ == 0) {
    // PostScript refuses limits below 1 with a rangecheck.
    miter_limit_ = miter_limit >= 1.0 && miter_limit <= 1e6 ? miter_limit : 10.0;
    out_->fixed_word(miter_limit_, 2);
    out_->word("setmiterlimit ");
  }
}

// Fills
// =====

// Axis-parallel rectangles go through `e`; other paths are filled inside gsave/grestore,
// so that the current colour stays in force. Contours after the first start with a
// plain moveto, so that `u` does not begin a new path; the even-odd rule fills with
// eofill.
void PsDriver::fill(const Path& path, Rgb rgb) {
  const std::size_t n = std::min(path.xs.size(), path.ys.size());
  if (n < 3 || path.ends.empty()) {
    return;
  }
  end_polyline();
  const int r = std::clamp(rgb.r, 0, 255);
  const int g = std::clamp(rgb.g, 0, 255);
  const int b = std::clamp(rgb.b, 0, 255);
  TextWriter& out = *out_;
  const std::span<const double> xs = path.xs;
  const std::span<const double> ys = path.ys;
  if (n == 4 && path.ends.size() == 1) {
    const int x0 = to_unit(xs[0]), y0 = to_unit(ys[0]);
    const int x2 = to_unit(xs[2]), y2 = to_unit(ys[2]);
    const int x1 = to_unit(xs[1]), y1 = to_unit(ys[1]);
    const int x3 = to_unit(xs[3]), y3 = to_unit(ys[3]);
    const bool rect = (x1 == x0 && y1 == y2 && x3 == x2 && y3 == y0) ||
                      (y1 == y0 && x1 == x2 && y3 == y2 && x3 == x0);
    if (rect) {
      out.int_word(x0);
      out.int_word(y0);
      out.int_word(x2);
      out.int_word(y2);
      out.int_word(r);
      out.int_word(g);
      out.int_word(b);
      out.word("e ");
      return;
    }
  }
  // In the current colour (the usual case: the pipeline sets it before it fills) a fill
  // needs no colour of its own and leaves the graphics state as it was; a lone triangle
  // goes through the prolog's `tri`.
  const bool current = r == std::clamp(colour_.r, 0, 255) && g == std::clamp(colour_.g, 0, 255) &&
                       b == std::clamp(colour_.b, 0, 255);
  if (current && n == 3 && path.ends.size() == 1 && path.ends[0] == 3) {
    for (std::size_t i = 0; i < 3; ++i) {
      out.int_word(to_unit(xs[i]));
      out.int_word(to_unit(ys[i]));
    }
    out.word("tri ");
    return;
  }
  if (!current) {
    out.word("gsave ");
    out.int_word(r);
    out.int_word(g);
    out.int_word(b);
    out.word("f ");
  }
  std::size_t start = 0;
  for (std::size_t c = 0; c < path.ends.size(); ++c) {
    const std::size_t end = std::min(n, static_cast<std::size_t>(std::max(path.ends[c], 0)));
    for (std::size_t i = start; i < end; ++i) {
      out.int_word(to_unit(xs[i]));
      out.int_word(to_unit(ys[i]));
      if (i > start) {
        out.word("d ");
      } else if (c == 0) {
        out.word("u ");
      } else {
        out.words("cm exch cm exch moveto ");
      }
    }
    if (c + 1 < path.ends.size() && end > start) {
      out.word("closepath ");
    }
    start = std::max(start, end);
  }
  out.words(path.rule == FillRule::EvenOdd ? "closepath eofill " : "closepath fill ");
  if (!current) {
    out.word("grestore ");
  }
}

// A sector with the prolog's `sec`: "x y r1 r2 a a2 r g b sec", which draws the inner
// arc from a to a2 and the outer one back, inside gsave/grestore.
void PsDriver::sector(const Sector& s, Rgb rgb) {
  end_polyline();
  TextWriter& out = *out_;
  out.int_word(to_unit(s.x));
  out.int_word(to_unit(s.y));
  out.int_word(to_unit(s.r1));
  out.int_word(to_unit(s.r2));
  out.fixed_word(s.start, 2);
  out.fixed_word(s.end, 2);
  out.int_word(std::clamp(rgb.r, 0, 255));
  out.int_word(std::clamp(rgb.g, 0, 255));
  out.int_word(std::clamp(rgb.b, 0, 255));
  out.word("sec ");
}

// Text
// ====

// Every character in a driver font, centred on its base line by the prolog's `c`; `font`
// sets the face, `font2` a face stretched by chawth. The text fonts are re-encoded once
// per page with GermanVec and the copyright sign at 187, under the name "<face>-Zv";
// Symbol and ZapfDingbats keep their own encodings. A character outside the encoding
// (code 0) is shown by its glyph name through `gn`. Faces other than the 35 standard
// fonts are not written.
void PsDriver::text(const TextRun& run) {
  const int font = find_ps_font(run.face);
  if (run.glyphs.empty() || font < 0) {
    return;
  }
  end_polyline();
  TextWriter& out = *out_;
  const std::string_view face = ps_font(font).name;
  const double size = std::clamp(run.size * kPointsPerUnit, 0.01, 1e5);
  const double stretch = run.stretch > 0.0 && run.stretch < 2.0 ? run.stretch : 1.0;
  if (face != font_face_ || std::fabs(size - font_size_) > 0.005 ||
      stretch != font_stretch_) {
    std::string name("/");
    name += face;
    if (!ps_font(font).symbolic) {
      name += "-Zv";
      const std::string key = std::string(face) + ' ';
      if (encoded_.find(key) == std::string::npos) {
        encoded_ += key;
        std::string line("/");
        line += face;
        line += ' ';
        line += name;
        line += " [ GermanVec aload pop 8#273 /copyright ] ReEncodeSmall ";
        out.words(line);
      }
    }
    out.word(name + ' ');
    out.fixed_word(size, 2);
    if (stretch == 1.0) {
      out.word("font ");
    } else {
      // font2 scales the face by its height h1 and its width h2; a width that would be
      // written as 0 makes the font matrix singular.
      out.fixed_word(std::max(size * stretch, 0.01), 2);
      out.word("font2 ");
    }
    font_face_ = face;
    font_size_ = size;
    font_stretch_ = stretch;
  }
  double angle = std::fmod(run.angle, 360.0);
  if (!(angle == angle)) {
    angle = 0.0;
  }
  for (const GlyphPlace& glyph : run.glyphs) {
    if (glyph.code == ' ') {
      continue;  // blanks only move the next character, which has its own place
    }
    if (glyph.code == 0) {
      show_by_name(font, glyph, angle);
      continue;
    }
    out.int_word(glyph.code);
    out.int_word(to_unit(glyph.x));
    out.int_word(to_unit(glyph.y));
    if (std::fabs(angle - std::round(angle)) < 1e-6) {
      out.int_word(static_cast<long long>(std::round(angle)));
    } else {
      out.fixed_word(angle, 2);
    }
    out.word("c ");
  }
}

// "/name hw x y a gn" for a character of code 0; nothing where the font has no glyph.
void PsDriver::show_by_name(int font, const GlyphPlace& glyph, double angle) {
  const std::string_view name = ps_glyph_name(font, glyph.unicode);
  const int width = ps_width(font, glyph.unicode);
  // Glyph names are PostScript name characters; anything else would end the name.
  if (name.empty() || width < 0 || name.size() > 40 ||
      name.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz"
                             "0123456789._") != std::string_view::npos) {
    return;
  }
  TextWriter& out = *out_;
  if (!glyph_proc_) {
    out.words(kGlyphProc);
    glyph_proc_ = true;
  }
  std::string word("/");
  word += name;
  word += ' ';
  out.word(word);
  out.fixed_word(0.5e-3 * width * font_size_ * font_stretch_, 3);
  out.int_word(to_unit(glyph.x));
  out.int_word(to_unit(glyph.y));
  if (std::fabs(angle - std::round(angle)) < 1e-6) {
    out.int_word(static_cast<long long>(std::round(angle)));
  } else {
    out.fixed_word(angle, 2);
  }
  out.word("gn ");
}

// Pages
// =====

// The finished page goes out with copypage and the next one starts with the same
// graphics state restated. Every "%%Page:" label is 1; only the ordinal counts up. An
// EPS figure has one page: later pages draw over it.
void PsDriver::new_page() {
  ++pages_;
  if (eps_) {
    return;
  }
  end_polyline();
  font_face_.clear();  // a page may be shown alone: its fonts are set up again
  encoded_.clear();
  glyph_proc_ = false;
  shapes_.clear();     // and its shapes defined again
  shapes_defined_.assign(shapes_defined_.size(), 0);
  out_->word("copypage ");
  out_->newline();
  std::string s = "%%Page: 1 ";
  append_int(s, pages_);
  out_->line(s);
  if (fill_background_) {
    write_background();
  } else {
    out_->word("erasepage ");
  }
  out_->newline();
  const double width = 2.0 * std::abs(static_cast<double>(width_.n)) * width_.style_scale;
  out_->int_word(cap_);
  out_->word("setlinecap ");
  out_->int_word(join_);
  out_->word("setlinejoin ");
  out_->int_word(std::max<long long>(floor_int(width), kThinnestLine));
  out_->word("cm ");
  out_->word("setlinewidth");
  out_->newline();
  write_colour();
}

bool PsDriver::close() {
  if (closed_) {
    return !out_->failed();
  }
  closed_ = true;
  end_polyline();
  if (single_page_) {
    out_->word("showpage ");
  } else {
    out_->words("gsave showpage grestore ");
  }
  if (!eps_ && !single_page_) {
    out_->newline();
    out_->word("%%Trailer ");
    out_->newline();
    std::string s = "%%Pages: ";
    append_int(s, pages_);
    out_->words(s);
    out_->newline();
    out_->word("%%EOF ");
  }
  out_->end_line();
  return out_->finish();
}

}  // namespace

std::unique_ptr<Driver> make_ps_driver() { return std::make_unique<PsDriver>(); }

}  // namespace zorvel
