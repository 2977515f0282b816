// The SVG driver of the device "SVG " (801).
//
// The file is an SVG 1.0 document in ISO-8859-1, written through TextWriter without a
// line limit (the driver breaks its own lines). Coordinates are pixels of 1/96 inch with
// y growing downwards, as the dispatch hands them over, written with 2 decimals:
//
//   <?xml ...?> <!DOCTYPE ...> <!-- library, version, date -->
//   <svg width="W" height="H" ...>
//   <g fill="none" stroke="#rrggbb" ... stroke-width="w">     a line group: lines and
//   <line x1=".." y1=".." x2=".." y2=".."/>                    polylines of one colour,
//   <polyline points=" x, y x, y ..."/>                        width, cap and join
//   <use xlink:href="#G7" x=".." y=".."/>                      a polyline of a shape drawn
//                                                              before (defined at its
//                                                              second appearance)
//   </g>
//   <g stroke="none"> <rect .../> <path .../> </g>             a fill group
//   <defs><path id="S4" d=".."/></defs>                        in a fill group: a filled
//   <use xlink:href="#S4" x=".." y=".." fill="#rrggbb"/>       shape (an outline glyph),
//                                                              defined at its first use
//   <g font-family=".." ... font-size="n" ... fill="#rrggbb">  a text group: one element
//   <text x=".." y=".." rotate="0">c</text>                    per character, centred on
//   </g>                                                       its place
//   <image .../>                                               pixels as an embedded PNG
//   </svg>
//
// At most one group is open; an attribute change (colour, width, cap, join) closes it and
// the next element opens the group it needs.
//
// SVG has no pages: new_page finishes the document and continues in a new file named by
// the plot file's first free version (zorvel.svg, zorvel_1.svg, ...), so that no page is
// lost. Output into a device or pipe (/dev/stdout), or into memory, has no name to
// version: there the later pages draw over the first, as on an EPS figure.

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <new>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/format.h"
#include "core/version.h"
#include "drivers/image_files.h"
#include "drivers/page_files.h"
#include "drivers/registry.h"
#include "drivers/shape_table.h"
#include "drivers/text_writer.h"
#include "text/ps_fonts.h"

namespace zorvel {
namespace {

// Points held before a polyline is written (it then continues from its last point).
constexpr int kPolylineCapacity = 100;
// Half the length of the line that stands for a dot, in plot units, as in PDF.
constexpr double kDotHalf = 1.0;
// Polylines that repeat: one of 3 to this many points, seen again with the same shape (its
// points relative to the first, to the hundredth of a unit as written) elsewhere in the
// document, is defined once and then placed by its first point with <use>.
constexpr int kShapePoints = 64;
// A polyline's points are written five to a line.
constexpr int kPointsPerLine = 5;
// Coordinates are clamped to this magnitude (pixels) before they are written: far outside
// any page, and short enough for the fixed-size text buffers below.
constexpr double kCoordinateLimit = 1e9;
// Longest text of one clamped coordinate with 2 decimals ("-1000000000.00").
constexpr std::size_t kCoordinateChars = 14;
// Longest text of one polyline point: " x, y" and a newline.
constexpr std::size_t kPointChars = 2 * kCoordinateChars + 4;
// The thinnest line in pixels: linwid without hardware widths, and every width below it.
constexpr double kThinnestLine = 1.0;

constexpr std::string_view kHomePage = "https://www.zorvel.org";

// Which group is open: the state of the element nesting.
enum class Group { None, Line, Fill, Text };

// Text of a coordinate with 2 decimals at p, where kNumberBuffer bytes must be free (the
// room format_fixed asks for; it writes at most kCoordinateChars of them); returns the
// end. Clamped, NaN written as 0.
char* put_coordinate(char* p, double v) {
  const double c = v == v ? std::clamp(v, -kCoordinateLimit, kCoordinateLimit) : 0.0;
  return format_fixed(p, c, 2);
}

void append_coordinate(std::string& s, double v) {
  char tmp[kNumberBuffer];
  s.append(tmp, put_coordinate(tmp, v));
}

void append_fixed(std::string& s, double v, int decimals, int width = 0) {
  char tmp[kNumberBuffer];
  char* end = format_fixed(tmp, v, decimals);
  end = pad_left(tmp, end, std::min<int>(width, static_cast<int>(kNumberBuffer)));
  s.append(tmp, end);
}

void append_int(std::string& s, long long v) {
  char tmp[kNumberBuffer];
  s.append(tmp, format_int(tmp, v));
}

// An angle in degrees with 2 decimals, or as an integer where they would be zeros (the
// text engine's angles reach the driver through sines and cosines).
void append_angle(std::string& s, double degrees) {
  const double whole = std::round(degrees);
  if (std::fabs(degrees - whole) < 0.005) {
    append_int(s, static_cast<long long>(whole));
  } else {
    append_fixed(s, degrees, 2);
  }
}

// Advance of a character in thousandths of the font size where the face is one of the
// standard fonts, whose widths the text engine lays out with; 0 for other faces.
int advance_of(std::string_view face, const GlyphPlace& glyph) {
  const int font = find_ps_font(face);
  if (font < 0) {
    return 0;
  }
  return glyph.code != 0 ? ps_code_width(font, glyph.code)
                         : std::max(ps_width(font, glyph.unicode), 0);
}

// "#rrggbb" in lower-case hexadecimal.
void append_hex_colour(std::string& s, const Rgb& c) {
  static constexpr char kHex[] = "0123456789abcdef";
  s += '#';
  for (int v : {c.r, c.g, c.b}) {
    s += kHex[(v >> 4) & 15];
    s += kHex[v & 15];
  }
}

// Opacity of a translucent colour as an attribute (` name="0.500"`); nothing when opaque.
void append_opacity(std::string& s, std::string_view name, int alpha) {
  if (alpha >= 255) {
    return;
  }
  s += ' ';
  s += name;
  s += "=\"";
  append_fixed(s, alpha / 255.0, 3);
  s += '"';
}

Rgb clamped(Rgb c) {
  return {std::clamp(c.r, 0, 255), std::clamp(c.g, 0, 255), std::clamp(c.b, 0, 255),
          std::clamp(c.a, 0, 255)};
}

// One character of text content. The file declares ISO-8859-1, so characters up to 255
// are written as their byte and the others as character references; markup characters
// are escaped. Control characters and code points that XML cannot hold are left out.
void append_character(std::string& s, std::uint32_t c) {
  switch (c) {
    case '&':
      s += "&amp;";
      return;
    case '<':
      s += "&lt;";
      return;
    case '>':
      s += "&gt;";
      return;
    case '"':
      s += "&quot;";
      return;
    case '\'':
      s += "&apos;";
      return;
    default:
      break;
  }
  if (c < 0x20 || (c >= 0x7f && c < 0xa0) || (c >= 0xd800 && c < 0xe000) || c == 0xfffe ||
      c == 0xffff || c > 0x10ffff) {
    return;
  }
  if (c < 0x100) {
    s += static_cast<char>(static_cast<unsigned char>(c));
    return;
  }
  s += "&#";
  append_int(s, c);
  s += ';';
}

// Font attributes of a PostScript face name ("Times-BoldItalic": family Times, bold,
// italic). The standard fonts name the families systems give their designs, then a
// generic family (text/ps_fonts.h). The text is Unicode, so Greek of the Symbol face
// needs no symbol font: it falls back to Times, whose Greek looks like Symbol's (viewers
// that find a "Symbol" of their own without Greek, as fontconfig does, would take a
// sans-serif face). Other names are written as they are.
struct FontStyle {
  std::string_view family;
  std::string_view weight;
  std::string_view style;
};

FontStyle font_style(std::string_view face) {
  if (const int id = find_ps_font(face); id >= 0) {
    const PsFontInfo& info = ps_font(id);
    FontStyle f{info.families, "normal", info.italic ? "italic" : "normal"};
    switch (info.weight) {
      case 300:
        f.weight = "300";
        break;
      case 500:
        f.weight = "500";
        break;
      case 600:
        f.weight = "600";
        break;
      case 700:
        f.weight = "bold";
        break;
      default:
        break;
    }
    return f;
  }
  const std::size_t dash = face.find('-');
  const std::string_view variant = dash == std::string_view::npos ? "" : face.substr(dash + 1);
  FontStyle f{face.substr(0, dash), "normal", "normal"};
  // A name is written as it is: anything that could end the attribute makes it "serif".
  if (f.family.find_first_of("\"&<>") != std::string_view::npos) {
    f.family = "serif";
  }
  if (variant.find("Bold") != std::string_view::npos) {
    f.weight = "bold";
  }
  if (variant.find("Italic") != std::string_view::npos) {
    f.style = "italic";
  } else if (variant.find("Oblique") != std::string_view::npos) {
    f.style = "oblique";
  }
  return f;
}

// Embedded images
// ===============

// (The PNG encoder is drivers/png.cpp.)

// Base64 of the bytes, in lines of 76 characters.
std::string base64_lines(const std::vector<std::uint8_t>& bytes) {
  static constexpr char kDigits[] =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  constexpr std::size_t kGroupsPerLine = 19;
  std::string s;
  s.reserve((bytes.size() + 2) / 3 * 4 + bytes.size() / 57 + 2);
  std::size_t groups = 0;
  for (std::size_t i = 0; i < bytes.size(); i += 3) {
    const std::size_t n = std::min<std::size_t>(3, bytes.size() - i);
    std::uint32_t v = static_cast<std::uint32_t>(bytes[i]) << 16;
    if (n > 1) {
      v |= static_cast<std::uint32_t>(bytes[i + 1]) << 8;
    }
    if (n > 2) {
      v |= bytes[i + 2];
    }
    s += kDigits[(v >> 18) & 63];
    s += kDigits[(v >> 12) & 63];
    s += n > 1 ? kDigits[(v >> 6) & 63] : '=';
    s += n > 2 ? kDigits[v & 63] : '=';
    if (++groups % kGroupsPerLine == 0 && i + 3 < bytes.size()) {
      s += '\n';
    }
  }
  return s;
}

// The driver
// ==========

class SvgDriver final : public Driver {
 public:
  bool open(Sink* out, const DriverSetup& setup) override;
  void point(double x, double y, Pen pen) override;
  void colour(Rgb rgb, int value) override;
  void pen_width(const LineWidth& w) override;
  void line_cap(int cap) override;
  void line_join(int join, double miter_limit) override;
  void fill(const Path& path, Rgb rgb) override;
  void text(const TextRun& run) override;
  void image(const Image& img) override;
  void new_page() override;
  bool close() override;
  bool failed() const override { return failed_ || (out_ && out_->failed()); }
  unsigned caps() const override {
    return kCapFill | kCapText | kCapWidths | kCapImages | kCapAlpha | kCapFilledShapes;
  }
  void place_shape(const Shape& shape, double x, double y) override;

 private:
  void write_header();
  void draw(double x, double y);
  void move(double x, double y);
  void write_polyline();
  void end_polyline();
  bool reuse_polyline();
  void open_line_group();
  void open_text_group(const FontStyle& font, int size);
  void open_fill_group();
  void close_group();
  void append_path_data(std::string& s, std::span<const double> xs, std::span<const double> ys,
                        std::span<const int> ends);
  void finish_document();
  void write_text(const TextRun& run, int size);  // into glyphs_

  std::unique_ptr<TextWriter> out_;
  bool failed_ = false;  // a write failed on an earlier page
  bool closed_ = false;

  // Set at open.
  double scale_ = 1.0;  // pixels per plot unit
  double width_ = 0.0;  // the page in pixels
  double height_ = 0.0;
  bool background_ = false;  // pages are filled with black (screen mode not reversed)
  DateTime stamp_{};

  // Pages after the first go to files of their own, which the driver creates and closes.
  PageFiles files_;  // the files of the pages

  // The open polyline: element 0 is its start. Written when full, on a move, and before
  // every attribute change.
  std::array<double, kPolylineCapacity> xs_{};
  std::array<double, kPolylineCapacity> ys_{};
  int count_ = 0;
  // Last point of a polyline ended by an attribute change: a draw that follows without a
  // move continues from here.
  double end_x_ = 0.0;
  double end_y_ = 0.0;
  // Shapes of short polylines drawn in this file, for the definitions that draw them again.
  ShapeTable shapes_;
  // Filled shapes of the pipeline (outline glyphs) defined in this file as paths "S<id>".
  std::vector<std::uint8_t> shapes_defined_;
  // The text of one polyline, written in one piece; numbers are formatted in place, with
  // the room that put_coordinate needs after the last.
  std::array<char, kPolylineCapacity * kPointChars + kNumberBuffer> line_{};

  Group group_ = Group::None;
  Rgb colour_{};
  double stroke_width_ = kThinnestLine;
  int cap_ = 2;
  int join_ = 2;
  double miter_limit_ = 10.0;
  // The open text group's face and font size.
  std::string text_face_;
  int text_size_ = 0;
  std::string scratch_;  // element text, reused
  std::string glyphs_;   // the text elements of a run
};

// Opening
// =======

bool SvgDriver::open(Sink* out, const DriverSetup& setup) {
  out_ = std::make_unique<TextWriter>(out, 0);
  scale_ = setup.scale > 0.0 && std::isfinite(setup.scale) ? setup.scale : 1.0;
  width_ = setup.device_width > 0.0 ? std::min(setup.device_width, kCoordinateLimit) : 0.0;
  height_ = setup.device_height > 0.0 ? std::min(setup.device_height, kCoordinateLimit) : 0.0;
  background_ = !setup.reversed;
  stamp_ = setup.stamp;
  cap_ = std::clamp(setup.line_cap, 0, 2);
  files_.start(out, setup.file_name, setup.versions);
  write_header();
  return !out_->failed();
}

void SvgDriver::write_header() {
  std::string& s = scratch_;
  s = "<?xml version=\"1.0\" encoding=\"ISO-8859-1\" standalone=\"no\"?>\n";
  s += "<!DOCTYPE svg PUBLIC \"-//W3C//DTD SVG 20010904//EN\"\n";
  s += "  \"http://www.w3.org/TR/2001/REC-SVG-20010904/DTD/svg10.dtd\">\n";
  s += "<!-- Zorvel, a scientific plotting library: ";
  s += kHomePage;
  s += "\nVersion: ";
  append_fixed(s, kVersion, 1, 4);
  s += "\nDate   : ";
  s += stamp_.date;
  s += ' ';
  s += stamp_.time;
  const auto width = static_cast<long long>(std::floor(width_ + 1.5));
  const auto height = static_cast<long long>(std::floor(height_ + 1.5));
  s += "\n-->\n<svg width=\"";
  append_int(s, width);
  s += "\" height=\"";
  append_int(s, height);
  s += "\"\nxmlns=\"http://www.w3.org/2000/svg\"\n";
  s += "xmlns:xlink=\"http://www.w3.org/1999/xlink\">\n\n";
  if (background_) {
    // Not reversed, the colour table draws light on a dark page, as on a screen: the
    // whole picture is dark.
    s += "<rect x=\"0.00\" y=\"0.00\" width=\"";
    append_coordinate(s, static_cast<double>(width));
    s += "\" height=\"";
    append_coordinate(s, static_cast<double>(height));
    s += "\"\nfill=\"#000000\" stroke=\"none\"/>\n";
  }
  out_->raw(s);
}

// Polylines
// =========

void SvgDriver::point(double x, double y, Pen pen) {
  switch (pen) {
    case Pen::Draw:
      draw(x, y);
      break;
    case Pen::Move:
      move(x, y);
      break;
    case Pen::End:
    case Pen::Close:
      end_polyline();
      break;
    default:
      break;  // widths come through pen_width
  }
}

void SvgDriver::move(double x, double y) {
  write_polyline();
  xs_[0] = x;
  ys_[0] = y;
  count_ = 1;
}

// Every point is kept, repeated ones too: the file holds what the program drew.
void SvgDriver::draw(double x, double y) {
  if (count_ == 0) {
    xs_[0] = end_x_;
    ys_[0] = end_y_;
    count_ = 1;
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

// Writes the open polyline and keeps it open: two points as a line element (two equal
// ones as a dot), more as a polyline of five points a line. A lone point draws nothing
// and is not written.
void SvgDriver::write_polyline() {
  if (count_ < 2) {
    return;
  }
  if (group_ != Group::Line) {
    open_line_group();
  }
  char* const begin = line_.data();
  char* p = begin;
  if (count_ == 2) {
    static constexpr std::string_view kParts[] = {"<line x1=\"", "\" y1=\"", "\" x2=\"",
                                                  "\" y2=\""};
    double values[] = {xs_[0], ys_[0], xs_[1], ys_[1]};
    if (values[0] == values[2] && values[1] == values[3]) {
      // A zero-length line is a dot: a short horizontal line, so that every renderer
      // draws its stroke (some leave zero-length lines out).
      values[0] -= kDotHalf * scale_;
      values[2] += kDotHalf * scale_;
    }
    for (int i = 0; i < 4; ++i) {
      p = std::copy(kParts[i].begin(), kParts[i].end(), p);
      p = put_coordinate(p, values[i]);
    }
    p = std::copy_n("\"/>\n", 4, p);
    out_->raw({begin, static_cast<std::size_t>(p - begin)});
    return;
  }
  if (count_ <= kShapePoints && reuse_polyline()) {
    return;
  }
  out_->raw("<polyline points=\"\n");
  for (int i = 0; i < count_; ++i) {
    *p++ = ' ';
    p = put_coordinate(p, xs_[i]);
    *p++ = ',';
    *p++ = ' ';
    p = put_coordinate(p, ys_[i]);
    if ((i + 1) % kPointsPerLine == 0 && i + 1 < count_) {
      *p++ = '\n';
    }
  }
  p = std::copy_n("\"/>\n", 4, p);
  out_->raw({begin, static_cast<std::size_t>(p - begin)});
}

// A polyline whose shape was drawn before: defined the second time as
// <defs><polyline id="G7" points="0.00, 0.00 3.25, -4.00 ..."/></defs>, then drawn by
// <use xlink:href="#G7" x=".." y=".."/>, which takes the stroke of the group it stands
// in. True when the polyline is written this way.
bool SvgDriver::reuse_polyline() {
  std::array<long long, 2 * kShapePoints> rel{};
  const int n = count_ - 1;  // points after the first, in hundredths as written
  for (int i = 0; i < n; ++i) {
    const auto k = static_cast<std::size_t>(i + 1);
    rel[2 * k - 2] = std::llround(std::clamp((xs_[k] - xs_[0]) * 100.0, -1e15, 1e15));
    rel[2 * k - 1] = std::llround(std::clamp((ys_[k] - ys_[0]) * 100.0, -1e15, 1e15));
  }
  const ShapeTable::Found f =
      shapes_.find(std::span<const long long>(rel).first(static_cast<std::size_t>(2 * n)));
  if (f.name < 0) {
    return false;
  }
  std::string s;
  char digits[kNumberBuffer];
  if (f.define) {
    s = "<defs><polyline id=\"G";
    s.append(digits, format_int(digits, f.name));
    s += "\" points=\"\n 0.00, 0.00";
    for (std::size_t i = 0; i + 1 < f.offsets.size(); i += 2) {
      s += (i / 2 + 2) % kPointsPerLine == 1 ? "\n " : " ";
      s.append(digits, format_fixed(digits, static_cast<double>(f.offsets[i]) / 100.0, 2));
      s += ", ";
      s.append(digits, format_fixed(digits, static_cast<double>(f.offsets[i + 1]) / 100.0, 2));
    }
    s += "\"/></defs>\n";
  }
  s += "<use xlink:href=\"#G";
  s.append(digits, format_int(digits, f.name));
  s += "\" x=\"";
  append_coordinate(s, xs_[0]);
  s += "\" y=\"";
  append_coordinate(s, ys_[0]);
  s += "\"/>\n";
  out_->raw(s);
  return true;
}

void SvgDriver::end_polyline() {
  write_polyline();
  if (count_ > 0) {
    end_x_ = xs_[count_ - 1];
    end_y_ = ys_[count_ - 1];
  }
  count_ = 0;
}

// Groups
// ======

void SvgDriver::open_line_group() {
  static constexpr std::string_view kCaps[] = {"butt", "round", "square"};
  static constexpr std::string_view kJoins[] = {"miter", "round", "bevel"};
  close_group();
  std::string& s = scratch_;
  s = "<g fill=\"none\" stroke=\"";
  append_hex_colour(s, colour_);
  s += '"';
  append_opacity(s, "stroke-opacity", colour_.a);
  s += " stroke-linecap=\"";
  s += kCaps[cap_];
  s += "\" stroke-linejoin=\"";
  s += kJoins[join_];
  s += '"';
  if (join_ == 0) {
    s += " stroke-miterlimit=\"";
    append_fixed(s, miter_limit_, 2);
    s += '"';
  }
  s += " stroke-width=\"";
  append_fixed(s, stroke_width_, 3);
  s += "\">\n";
  out_->raw(s);
  group_ = Group::Line;
}

// Characters are placed by their centres on the base line: every text element is
// anchored in its middle.
void SvgDriver::open_text_group(const FontStyle& font, int size) {
  close_group();
  std::string& s = scratch_;
  s = "<g font-family=\"";
  s += font.family;
  s += "\" font-weight=\"";
  s += font.weight;
  s += "\" font-style=\"";
  s += font.style;
  s += "\"\nfont-size=\"";
  append_int(s, size);
  s += "\" text-anchor=\"middle\" stroke=\"none\" fill=\"";
  append_hex_colour(s, colour_);
  s += '"';
  append_opacity(s, "fill-opacity", colour_.a);
  s += ">\n";
  out_->raw(s);
  group_ = Group::Text;
  text_size_ = size;
}

// Fills carry their own colours: the group only keeps lines off them.
void SvgDriver::open_fill_group() {
  if (group_ != Group::Fill) {
    close_group();
    out_->raw("<g stroke=\"none\">\n");
    group_ = Group::Fill;
  }
}

void SvgDriver::close_group() {
  if (group_ != Group::None) {
    out_->raw("</g>\n");
    group_ = Group::None;
  }
}

// Attributes
// ==========

void SvgDriver::colour(Rgb rgb, int /*value*/) {
  end_polyline();
  close_group();
  colour_ = clamped(rgb);
}

// Widths in plot units become pixels at the device scale; nothing is thinner than one
// pixel, the width without hardware widths.
void SvgDriver::pen_width(const LineWidth& w) {
  end_polyline();
  close_group();
  const double px = w.hardware ? std::max(w.n * scale_, kThinnestLine) : kThinnestLine;
  const double width = px * w.width_scale;
  stroke_width_ = width > 0.0 && width < kCoordinateLimit ? width : kThinnestLine;
}

void SvgDriver::line_cap(int cap) {
  end_polyline();
  close_group();
  cap_ = std::clamp(cap, 0, 2);
}

void SvgDriver::line_join(int join, double miter_limit) {
  end_polyline();
  close_group();
  join_ = std::clamp(join, 0, 2);
  // SVG ignores limits below 1.
  miter_limit_ = miter_limit >= 1.0 && miter_limit <= 1e6 ? miter_limit : 10.0;
}

// Fills
// =====

// An axis-parallel rectangle becomes a rect element, anything else a path of all
// contours with the fill rule. Both carry their own colour: the current colour stays.
void SvgDriver::fill(const Path& path, Rgb rgb) {
  const std::size_t n = std::min(path.xs.size(), path.ys.size());
  if (n < 3 || path.ends.empty()) {
    return;
  }
  end_polyline();
  open_fill_group();
  const Rgb c = clamped(rgb);
  const std::span<const double> xs = path.xs;
  const std::span<const double> ys = path.ys;
  std::string& s = scratch_;
  if (n == 4 && path.ends.size() == 1 &&
      ((xs[1] == xs[0] && ys[1] == ys[2] && xs[3] == xs[2] && ys[3] == ys[0]) ||
       (ys[1] == ys[0] && xs[1] == xs[2] && ys[3] == ys[2] && xs[3] == xs[0]))) {
    s = "<rect x=\"";
    append_coordinate(s, std::min(xs[0], xs[2]));
    s += "\" y=\"";
    append_coordinate(s, std::min(ys[0], ys[2]));
    s += "\" width=\"";
    append_coordinate(s, std::fabs(xs[2] - xs[0]));
    s += "\" height=\"";
    append_coordinate(s, std::fabs(ys[2] - ys[0]));
    s += "\"\nfill=\"";
    append_hex_colour(s, c);
    s += "\" stroke=\"none\"";
    append_opacity(s, "fill-opacity", c.a);
    s += "/>\n";
    out_->raw(s);
    return;
  }
  s = "<path fill=\"";
  append_hex_colour(s, c);
  s += "\" stroke=\"none\"";
  append_opacity(s, "fill-opacity", c.a);
  s += path.rule == FillRule::EvenOdd ? " fill-rule=\"evenodd\"" : " fill-rule=\"nonzero\"";
  s += " d=\"";
  append_path_data(s, xs.first(n), ys.first(n), path.ends);
  s += "\"/>\n";
  out_->raw(s);
}

// Path data of the contours ("M x,y L x,y x,y ... Z"), five points a line, added to s;
// s goes out whenever it has grown to a block.
void SvgDriver::append_path_data(std::string& s, std::span<const double> xs,
                                 std::span<const double> ys, std::span<const int> ends) {
  const std::size_t n = std::min(xs.size(), ys.size());
  std::size_t start = 0;
  int on_line = 0;
  for (int end_index : ends) {
    const std::size_t end = std::min(n, static_cast<std::size_t>(std::max(end_index, 0)));
    for (std::size_t i = start; i < end; ++i) {
      if (on_line == kPointsPerLine) {
        s += '\n';
        on_line = 0;
      } else if (i > start || start > 0) {
        s += ' ';
      }
      s += i == start ? "M " : i == start + 1 ? "L " : "";
      append_coordinate(s, xs[i]);
      s += ',';
      append_coordinate(s, ys[i]);
      ++on_line;
    }
    if (end > start) {
      s += " Z";
    }
    start = std::max(start, end);
    if (s.size() >= TextWriter::kBlock) {
      out_->raw(s);
      s.clear();
    }
  }
}

// Shapes
// ======

// A filled shape: defined at its first use in the file as a path of its contours relative
// to its origin, in a <defs> of the fill group, and drawn by <use>, which moves it to its
// place and gives it the current colour (the path has no fill of its own, so it takes the
// use element's). Stroke shapes are not taken (no kCapShapes): their polylines come as
// points.
void SvgDriver::place_shape(const Shape& shape, double x, double y) {
  const std::size_t n = std::min(shape.xs.size(), shape.ys.size());
  if (!shape.filled || n < 3 || shape.ends.empty() || shape.id < 0) {
    return;
  }
  end_polyline();
  open_fill_group();
  const auto id = static_cast<std::size_t>(shape.id);
  if (id >= shapes_defined_.size()) {
    shapes_defined_.resize(id + 1, 0);
  }
  std::string& s = scratch_;
  char digits[kNumberBuffer];
  s.clear();
  if (!shapes_defined_[id]) {
    s = "<defs><path id=\"S";
    s.append(digits, format_int(digits, shape.id));
    s += "\" fill-rule=\"nonzero\" d=\"";
    append_path_data(s, shape.xs.first(n), shape.ys.first(n), shape.ends);
    s += "\"/></defs>\n";
    shapes_defined_[id] = 1;
  }
  s += "<use xlink:href=\"#S";
  s.append(digits, format_int(digits, shape.id));
  s += "\" x=\"";
  append_coordinate(s, x);
  s += "\" y=\"";
  append_coordinate(s, y);
  s += "\" fill=\"";
  append_hex_colour(s, colour_);
  s += '"';
  append_opacity(s, "fill-opacity", colour_.a);
  s += "/>\n";
  out_->raw(s);
}

// Text
// ====

// One text element per character at its place, in a text group of the run's face and
// size (rounded to whole pixels) and the current colour.
void SvgDriver::text(const TextRun& run) {
  if (run.glyphs.empty() || run.face.empty() || run.face.size() > 64 ||
      !(run.size > 0.0 && run.size < kCoordinateLimit)) {
    return;
  }
  end_polyline();
  const int size = std::max(1, static_cast<int>(std::lround(run.size)));
  write_text(run, size);
  if (glyphs_.empty()) {
    return;  // blanks only
  }
  if (group_ != Group::Text || run.face != text_face_ || size != text_size_) {
    open_text_group(font_style(run.face), size);
    text_face_ = run.face;
  }
  out_->raw(glyphs_);
}

// Characters on a turned base line carry the turn as a transform about their place,
// not in the rotate attribute: librsvg (rsvg-convert, GNOME) and resvg ignore that
// attribute, and it would turn each character about its origin, which the middle anchor
// has moved half an advance along the page's x axis rather than along the base line. A
// transform turns the anchoring with the character, so that every viewer centres it on
// its place.
//
// Stretched characters (chawth) are widened along their base line by a transform too,
// but placed by their start, half the face's advance before the centre: librsvg moves a
// middle-anchored character by half its unstretched advance after the transform, which
// leaves stretched characters off centre.
void SvgDriver::write_text(const TextRun& run, int size) {
  std::string& s = glyphs_;
  s.clear();
  double angle = std::fmod(run.angle, 360.0);
  if (!(angle == angle)) {
    angle = 0.0;
  }
  const double stretch = run.stretch > 0.0 && run.stretch < 2.0 ? run.stretch : 1.0;
  const bool turned = std::fabs(angle) >= 0.005;  // not written as 0 by append_angle
  const double a = angle * (3.14159265358979323846 / 180.0);
  const double cs = std::cos(a);
  const double sn = std::sin(a);
  for (const GlyphPlace& glyph : run.glyphs) {
    if (glyph.unicode == ' ' || glyph.unicode == 0) {
      continue;  // blanks only move the next character, which has its own place
    }
    const std::size_t mark = s.size();
    if (stretch != 1.0) {
      // In the character's own frame (origin at its place, x along the base line) the
      // matrix R(a) S(stretch, 1) and the move to the place.
      const int advance = advance_of(run.face, glyph);
      s += "<text x=\"";
      append_coordinate(s, -0.5e-3 * advance * size);
      s += advance > 0 ? "\" y=\"0.00\" text-anchor=\"start\"" : "\" y=\"0.00\"";
      s += " transform=\"matrix(";
      for (double v : {stretch * cs, stretch * sn, -sn, cs}) {
        append_fixed(s, v, 4);
        s += ' ';
      }
      append_coordinate(s, glyph.x);
      s += ' ';
      append_coordinate(s, glyph.y);
      s += ")\">";
    } else {
      s += "<text x=\"";
      append_coordinate(s, glyph.x);
      s += "\" y=\"";
      append_coordinate(s, glyph.y);
      if (turned) {
        s += "\" transform=\"rotate(";
        append_angle(s, angle);
        s += ' ';
        append_coordinate(s, glyph.x);
        s += ' ';
        append_coordinate(s, glyph.y);
        s += ")\">";
      } else {
        s += "\" rotate=\"0\">";
      }
    }
    const std::size_t before = s.size();
    append_character(s, glyph.unicode);
    if (s.size() == before) {
      s.resize(mark);  // nothing XML can hold
      continue;
    }
    s += "</text>\n";
  }
}

// Images
// ======

// The pixels as an embedded PNG, stretched over the device rectangle; a rectangle whose
// corners lie the other way round mirrors it.
void SvgDriver::image(const Image& img) {
  if (img.pixels == nullptr || img.width <= 0 || img.height <= 0 ||
      (img.channels != 3 && img.channels != 4) ||
      img.stride < static_cast<std::size_t>(img.width) * static_cast<std::size_t>(img.channels)) {
    return;
  }
  end_polyline();
  close_group();
  std::vector<std::uint8_t> png;
  std::string data;
  try {
    png = encode_png(img);
    data = base64_lines(png);
  } catch (const std::bad_alloc&) {
    png.clear();
  }
  if (png.empty()) {
    failed_ = true;  // no memory: reported like a failed write
    return;
  }
  std::string& s = scratch_;
  s = "<image x=\"0.00\" y=\"0.00\" width=\"";
  append_coordinate(s, img.width);
  s += "\" height=\"";
  append_coordinate(s, img.height);
  s += "\" preserveAspectRatio=\"none\" image-rendering=\"optimizeSpeed\"\ntransform=\"matrix(";
  append_fixed(s, (img.x1 - img.x0) / img.width, 6);
  s += " 0 0 ";
  append_fixed(s, (img.y1 - img.y0) / img.height, 6);
  s += ' ';
  append_coordinate(s, img.x0);
  s += ' ';
  append_coordinate(s, img.y0);
  s += ")\"\nxlink:href=\"data:image/png;base64,\n";
  out_->raw(s);
  out_->raw(data);
  out_->raw("\"/>\n");
}

// Pages
// =====

void SvgDriver::finish_document() {
  end_polyline();
  close_group();
  out_->raw("</svg>\n");
}

// The finished page is complete in its file; the next page starts a new file with the
// same header. The current attributes need no restating: every group states them.
void SvgDriver::new_page() {
  if (!files_.versioned()) {
    end_polyline();  // no file of its own for the page: it draws over this one
    return;
  }
  finish_document();
  if (!out_->finish() || !files_.next()) {
    failed_ = true;
  }
  out_ = std::make_unique<TextWriter>(files_.current(), 0);
  shapes_.clear();  // a file of its own: its shapes are defined again
  shapes_defined_.assign(shapes_defined_.size(), 0);
  write_header();
}

bool SvgDriver::close() {
  if (closed_) {
    return !failed();
  }
  closed_ = true;
  finish_document();
  if (!out_->finish() || !files_.close()) {
    failed_ = true;
  }
  return !failed();
}

}  // namespace

std::unique_ptr<Driver> make_svg_driver() { return std::make_unique<SvgDriver>(); }

}  // namespace zorvel
