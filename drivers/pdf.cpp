// The PDF driver of the device "PDF " (511).
//
// A PDF 1.4 file, written front to back in one pass:
//
//   %PDF-1.4 and a comment line of four bytes above 127 (the file is binary)
//   1 0 obj  the catalog            2 0 obj  the page tree (written last, with its kids)
//   3 0 obj  the document information: producer and creation date
//   per page: its content streams, each followed by an object holding the stream's
//             length, the images placed on it, and the page object
//   the fonts and their encoding, the page tree, the cross-reference table, the trailer
//
// Content streams go through zlib's deflate straight into the file as they are written
// (pdfmod "COMP", "OFF" writes them as plain text for reading): no page is held in
// memory, so a curve of millions of points costs no more memory than a short one. As a
// stream's length is known only at its end, /Length refers to an object written after
// the stream. An image closes the open content stream, is written as an image XObject
// (deflated RGB, its alpha channel as a soft mask) and a new stream of the same page
// continues; the page lists all its streams in /Contents.
//
// Device units are points, from the lower left corner of the page (the registry row's
// Paper transform at 72/254 points per plot unit, times sclfac and hwscal). The row turns
// a page only on pagmod "PORT"/"MOVI": a landscape page has a landscape MediaBox, which
// viewers show upright. The MediaBox covers the page's W + 1 by H + 1 plot units, so an
// A4 page is exactly A4. Lines and fills are written in tenths of a point (1/720 inch,
// a little finer than PostScript's 1/200 cm); a point that repeats the previous one at
// that resolution is left out, and a zero-length line is written as a short dot as in
// PostScript. Text, images and the page box are placed to hundredths of a point.
//
// Driver fonts are the 35 standard PostScript fonts (drivers/pdf_type1.cpp): the 14 of
// every PDF viewer by name, the others embedded from their URW twins. The text faces are
// re-encoded as the PostScript driver re-encodes them: their standard encoding with the
// accented letters of the library's codes 127..186 and the copyright sign at 187 (an
// /Encoding with /Differences); Symbol and ZapfDingbats keep their own. Characters
// outside the encoding get free codes of the font object. /Widths carries the widths
// the text engine measured with (text/ps_fonts.h), and every character is
// placed at the centre the engine gave it: one string per run, with TJ displacements
// and text rise making up any difference, so that no error accumulates along a line.
//
// Text in outline font files (TrueType, OpenType) is embedded: each face as a subset
// that keeps its glyph ids, under a Type0 font whose 2-byte codes are those ids, with a
// ToUnicode map so that the text can be searched and copied (drivers/pdf_fontfile.cpp).

#define ZLIB_CONST
#include <zlib.h>

#include <algorithm>
#include <utility>
#include <bitset>
#include <cerrno>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "core/format.h"
#include "core/version.h"
#include "drivers/pdf_type1.h"
#include "drivers/pdf_fontfile.h"
#include "drivers/registry.h"
#include "drivers/text_writer.h"
#include "text/driver_font.h"
#include "text/ps_fonts.h"

namespace zorvel {
namespace {

// Bytes handed to the file at a time, and the size of deflate's output blocks.
constexpr std::size_t kBlock = 1 << 16;
// Coordinates are clamped to this many points (far outside any page) before they are
// scaled to integers, which then fit a long long with room to spare.
constexpr double kCoordinateLimit = 1e7;
// Decimals of path coordinates (tenths of a point): finer ones make a dense curve's file
// several times larger, and deflate, which takes most of the time, slower alike.
constexpr int kPathDecimals = 1;
// Objects written at open; pages, fonts and images follow.
constexpr int kCatalog = 1;
constexpr int kPageTree = 2;
constexpr int kInfo = 3;
// Half the length of the line that stands for a dot, in plot units: the PostScript
// driver's 2 units of 1/200 cm.
constexpr double kDotHalf = 1.0;
// Line width in plot units below which no line is drawn thinner (PostScript's 5 units).
constexpr double kThinnestLine = 2.5;
// Longest string of one TJ array piece, so that it stays a word of a content line.
constexpr std::size_t kStringPiece = 60;

// Numbers
// =======

// Writes v / 10^decimals with at most `decimals` decimals and no trailing zeros ("12.5",
// "-0.05", "3") at p and returns the end.
char* format_scaled(char* p, long long v, int decimals) {
  static constexpr long long kPowers[] = {1, 10, 100, 1000, 10000, 100000};
  const long long unit = kPowers[decimals];
  if (v < 0) {
    *p++ = '-';
    v = -v;
  }
  p = format_int(p, v / unit);
  long long frac = v % unit;
  if (frac != 0) {
    *p++ = '.';
    for (long long d = unit / 10; d > 0 && frac != 0; d /= 10) {
      *p++ = static_cast<char>('0' + frac / d);
      frac %= d;
    }
  }
  return p;
}

// v in units of 10^-decimals (0..5), rounded halves up; NaN counts as 0.
long long scaled(double v, int decimals) {
  static constexpr double kFactors[] = {1.0, 10.0, 100.0, 1000.0, 10000.0, 100000.0};
  if (!(v == v)) {
    return 0;
  }
  v = std::clamp(v, -kCoordinateLimit, kCoordinateLimit);
  return static_cast<long long>(std::floor(v * kFactors[decimals] + 0.5));
}

// Appends v with at most `decimals` decimals to s.
void append_real(std::string& s, double v, int decimals) {
  char tmp[kNumberBuffer];
  char* end = format_scaled(tmp, scaled(v, decimals), decimals);
  s.append(tmp, static_cast<std::size_t>(end - tmp));
}

void append_int(std::string& s, long long v) {
  char tmp[kNumberBuffer];
  char* end = format_int(tmp, v);
  s.append(tmp, static_cast<std::size_t>(end - tmp));
}

// A point in tenths of a point and an operator: "12.3 -4 l ".
void append_scaled(std::string& s, long long x, long long y, std::string_view op) {
  char tmp[2 * kNumberBuffer + 2];
  char* end = format_scaled(tmp, x, kPathDecimals);
  *end++ = ' ';
  end = format_scaled(end, y, kPathDecimals);
  *end++ = ' ';
  s.append(tmp, static_cast<std::size_t>(end - tmp));
  s += op;
}

// "n 0 R"
void append_ref(std::string& s, int obj) {
  append_int(s, obj);
  s += " 0 R";
}

// Faces
// =====

// Glyph names of the text faces' codes 127..187, in the order of the PostScript prolog's
// GermanVec vector (text/driver_font.cpp holds the same letters as Unicode).
constexpr std::string_view kAccentedNames[] = {
    "Adieresis",   "Odieresis",   "Udieresis",   "adieresis",   "odieresis",   "udieresis",
    "germandbls",  "Aring",       "Oslash",      "AE",          "aring",       "oslash",
    "ae",          "Ntilde",      "ntilde",      "Ccedilla",    "ccedilla",    "Edieresis",
    "Idieresis",   "edieresis",   "idieresis",   "Aacute",      "Eacute",      "Iacute",
    "Oacute",      "Uacute",      "aacute",      "eacute",      "iacute",      "oacute",
    "uacute",      "Agrave",      "Egrave",      "Igrave",      "Ograve",      "Ugrave",
    "agrave",      "egrave",      "igrave",      "ograve",      "ugrave",      "Acircumflex",
    "Ecircumflex", "Icircumflex", "Ocircumflex", "Ucircumflex", "acircumflex", "ecircumflex",
    "icircumflex", "ocircumflex", "ucircumflex", "Atilde",      "atilde",      "Otilde",
    "otilde",      "Yacute",      "yacute",      "ydieresis",   "exclamdown",  "questiondown",
    "copyright"};
static_assert(std::size(kAccentedNames) == kDriverFirstCode + kDriverCodes - 127);

// The creation date "D:YYYYMMDDHHmmSS" from the stamp's "dd.mm.yyyy" and "hh:mm:ss",
// with the offset of UTC when the stamp is in UTC (SOURCE_DATE_EPOCH set, as
// core/clock.cpp decides); a local time goes without one, as the stamp does not say
// how far it is from UTC.
std::string pdf_date(const DateTime& stamp) {
  const std::string_view d(stamp.date, 10);
  const std::string_view t(stamp.time, 8);
  std::string s = "D:";
  s += d.substr(6, 4);
  s += d.substr(3, 2);
  s += d.substr(0, 2);
  s += t.substr(0, 2);
  s += t.substr(3, 2);
  s += t.substr(6, 2);
  for (std::size_t i = 2; i < s.size(); ++i) {
    if (s[i] < '0' || s[i] > '9') {
      return "D:19700101000000+00'00'";  // a stamp that was never filled in
    }
  }
  const char* epoch = std::getenv("SOURCE_DATE_EPOCH");
  if (epoch != nullptr && *epoch != '\0') {
    char* end = nullptr;
    errno = 0;
    const long long v = std::strtoll(epoch, &end, 10);
    if (errno == 0 && *end == '\0' && v >= 0) {
      s += "+00'00'";
    }
  }
  return s;
}

// The file
// ========

// The file as numbered objects: bytes go to the sink in large blocks, the offset of every
// object is kept for the cross-reference table. The first failed write is remembered
// and nothing is written after it.
class PdfFile final : public PdfObjects {
 public:
  explicit PdfFile(Sink* sink) : sink_(sink) { buf_.reserve(kBlock); }

  // A new object number; its object must be written before the table.
  int reserve() override {
    offsets_.push_back(0);
    return static_cast<int>(offsets_.size());
  }

  // Starts object `obj` here: "obj 0 obj".
  void begin(int obj) override {
    offsets_[static_cast<std::size_t>(obj - 1)] = offset_;
    std::string s;
    append_int(s, obj);
    s += " 0 obj\n";
    put(s);
  }

  void put(std::string_view s) override { put(s.data(), s.size()); }

  bool put(const char* data, std::size_t n) {
    offset_ += n;
    if (buf_.size() + n > kBlock) {
      drain();
      if (n >= kBlock) {
        write(data, n);
        return !failed_;
      }
    }
    buf_.append(data, n);
    return !failed_;
  }

  // The cross-reference table of every object, in 20-byte entries, and the trailer.
  void finish(int root, int info) {
    const std::uint64_t table = offset_;
    std::string s = "xref\n0 ";
    append_int(s, static_cast<long long>(offsets_.size()) + 1);
    s += "\n0000000000 65535 f \n";
    put(s);
    for (const std::uint64_t at : offsets_) {
      char entry[21] = "0000000000 00000 n \n";
      std::uint64_t v = std::min<std::uint64_t>(at, 9999999999ULL);
      for (int i = 9; i >= 0; --i) {
        entry[i] = static_cast<char>('0' + v % 10);
        v /= 10;
      }
      put(entry, 20);
    }
    s = "trailer\n<< /Size ";
    append_int(s, static_cast<long long>(offsets_.size()) + 1);
    s += " /Root ";
    append_ref(s, root);
    s += " /Info ";
    append_ref(s, info);
    s += " >>\nstartxref\n";
    append_int(s, static_cast<long long>(table));
    s += "\n%%EOF\n";
    put(s);
    drain();
    if (!failed_ && sink_ != nullptr && !sink_->flush()) {
      failed_ = true;
    }
  }

  bool failed() const { return failed_; }

 private:
  void drain() {
    write(buf_.data(), buf_.size());
    buf_.clear();
  }
  void write(const char* data, std::size_t n) {
    if (!failed_ && n > 0 && sink_ != nullptr && !sink_->write(data, n)) {
      failed_ = true;
    }
  }

  Sink* sink_;
  std::string buf_;
  std::uint64_t offset_ = 0;
  std::vector<std::uint64_t> offsets_;  // byte offset of object i + 1
  bool failed_ = false;
};

// The data of one stream on its way into the file: deflated, or as it comes. Counts the
// bytes that reach the file, the stream's /Length. Deflate runs at its fastest level:
// drawing commands compress nearly as well there (a million-point curve: 0.60 MB against
// 0.43 MB at the default level) in less than half the time.
class StreamSink final : public Sink {
 public:
  explicit StreamSink(PdfFile& file) : file_(file), out_(new unsigned char[kBlock]) {
    ready_ = deflateInit(&z_, Z_BEST_SPEED) == Z_OK;
  }
  StreamSink(const StreamSink&) = delete;
  StreamSink& operator=(const StreamSink&) = delete;
  ~StreamSink() override {
    if (ready_) {
      deflateEnd(&z_);
    }
  }

  // Starts a stream; `deflate` chooses the FlateDecode filter.
  void start(bool deflate) {
    deflate_ = deflate;
    length_ = 0;
    if (deflate_ && ready_ && deflateReset(&z_) != Z_OK) {
      failed_ = true;
    }
  }

  bool write(const char* data, std::size_t n) override {
    if (failed_) {
      return false;
    }
    if (!deflate_) {
      length_ += n;
      return file_.put(data, n);
    }
    if (!ready_) {
      failed_ = true;
      return false;
    }
    z_.next_in = reinterpret_cast<const Bytef*>(data);
    while (n > 0) {
      const std::size_t chunk = std::min<std::size_t>(n, kBlock);
      z_.avail_in = static_cast<uInt>(chunk);
      n -= chunk;
      if (!pump(Z_NO_FLUSH)) {
        return false;
      }
    }
    return true;
  }

  // Ends the stream; returns its length in the file.
  std::uint64_t finish() {
    if (deflate_ && ready_ && !failed_) {
      z_.avail_in = 0;
      pump(Z_FINISH);
    }
    return length_;
  }

  bool failed() const { return failed_; }

 private:
  // Runs deflate until it has taken all input (or, with Z_FINISH, written its end).
  bool pump(int flush) {
    for (;;) {
      z_.next_out = out_.get();
      z_.avail_out = static_cast<uInt>(kBlock);
      const int rc = deflate(&z_, flush);
      const std::size_t have = kBlock - z_.avail_out;
      if (rc == Z_STREAM_ERROR || (rc == Z_BUF_ERROR && have == 0)) {
        failed_ = true;
        return false;
      }
      length_ += have;
      if (have > 0 && !file_.put(reinterpret_cast<const char*>(out_.get()), have)) {
        return false;
      }
      if (flush == Z_FINISH ? rc == Z_STREAM_END : z_.avail_out != 0) {
        return true;
      }
    }
  }

  PdfFile& file_;
  z_stream z_{};
  std::unique_ptr<unsigned char[]> out_;
  bool ready_ = false;
  bool deflate_ = true;
  bool failed_ = false;
  std::uint64_t length_ = 0;
};

// The driver
// ==========

class PdfDriver final : public Driver {
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
  void place_shape(const Shape& shape, double x, double y) override;
  void new_page() override;
  bool close() override;
  bool failed() const override {
    return file_ && (file_->failed() || stream_->failed() || content_->failed());
  }
  long long overflows() const override { return content_ ? content_->overflows() : 0; }
  unsigned caps() const override {
    return kCapFill | kCapText | kCapWidths | kCapImages | kCapAlpha | kCapShapes |
           kCapFilledShapes | kCapFontFiles;
  }

 private:
  // A font resource of the document: /F<index + 1>.
  struct Font {
    int id;  // text/ps_fonts.h
    int obj;
    PdfExtraCodes extras;
  };
  // An image placed on the current page: /Im<number>.
  struct PlacedImage {
    int number;
    int obj;
  };

  void begin_page();
  void end_page();
  void start_stream();
  void end_stream();
  void write_page_state();
  void write_fonts();
  void write_page_tree();
  void write_image_stream(int obj, int smask, const Image& img, bool alpha_only);
  void write_forms();

  // Content words.
  void word(std::string_view w) { content_->word(w); }
  void number(long long v, int decimals);
  void real(double v, int decimals) { number(scaled(v, decimals), decimals); }
  void point_words(long long x, long long y, std::string_view op);
  void rgb_words(Rgb c, std::string_view op);

  // Polylines in tenths of a point.
  void move(long long x, long long y);
  void draw(long long x, long long y);
  void end_path();

  // The graphics state as it was last written.
  void use_fill_colour(Rgb c);
  int define_filled_form(const Shape& shape);
  void use_alpha(int a);
  int use_font(std::string_view face);
  // Begins the text state of a run: fill colour and alpha, the font `prefix` + (index + 1)
  // at `size` unless `key` and the size are those written last, and the stretch. Returns
  // the cosine and sine of the base line's angle, exact for quarter turns.
  std::pair<double, double> start_text(double angle, std::string_view prefix, int index, int key,
                                       double size, double stretch);
  // Writes the strings and displacements of a TJ array (a lone string with Tj) and
  // empties it.
  void write_tj(std::vector<std::string>& items);
  int glyph_code(Font& font, const GlyphPlace& g);
  void font_file_text(const TextRun& run);

  std::unique_ptr<PdfFile> file_;
  std::unique_ptr<StreamSink> stream_;
  std::unique_ptr<TextWriter> content_;
  bool compress_ = true;
  bool turned_ = false;      // the dispatch turns the page (pagmod "PORT"/"MOVI")
  bool background_ = false;  // pages are filled with black (screen mode not reversed)
  double page_w_ = 0.0;      // MediaBox in points
  double page_h_ = 0.0;
  double scale_ = 1.0;  // points per plot unit
  bool closed_ = false;

  // Objects of the page being written.
  int stream_obj_ = 0;
  int length_obj_ = 0;
  std::vector<int> contents_;
  std::vector<bool> page_fonts_;  // by font index
  std::vector<PlacedImage> page_images_;
  std::vector<int> page_shapes_;  // shapes drawn on the page, as /S<id> resources
  std::bitset<256> page_alphas_;  // opacities used, as /GS<a> resources
  std::vector<int> kids_;

  // Document resources.
  std::vector<Font> fonts_;
  PdfFontFiles font_files_;  // embedded outline fonts, /FF<n>
  // Shapes as form XObjects: the object of each id (0: not yet defined), whether the
  // current page lists it, and the forms defined but not yet written (their content
  // streams wait until the page's content stream is closed).
  struct Form {
    int obj;
    std::string content;
    double xmin, ymin, xmax, ymax;
  };
  std::vector<int> shape_objs_;
  std::vector<std::uint8_t> shape_on_page_;
  std::vector<Form> forms_;
  std::vector<long long> form_points_;  // one contour of a filled form, as written
  int encoding_obj_ = 0;
  int images_ = 0;
  std::vector<unsigned char> row_;     // one row of image samples
  std::vector<std::string> tj_items_;  // the strings and displacements of a TJ array

  // Attributes in force, restated on every page.
  Rgb colour_{};
  LineWidth width_{};
  int cap_ = 2;
  int join_ = 2;
  double miter_limit_ = 10.0;
  // What the page's graphics state holds (-1: not known, written on first use).
  int fill_written_ = -1;  // 0xRRGGBB of rg
  int alpha_written_ = 255;
  int font_written_ = -1;
  double size_written_ = 0.0;
  double stretch_written_ = 1.0;
  double spacing_written_ = 0.0;
  double rise_written_ = 0.0;

  // The open polyline: its start, last point, whether "m" is out, points so far (two
  // equal ones are a dot); the end point of the last polyline, for a draw without move.
  long long first_x_ = 0;
  long long first_y_ = 0;
  long long last_x_ = 0;
  long long last_y_ = 0;
  int points_ = 0;
  bool path_written_ = false;
  long long dot_half_ = 3;  // tenths of a point
};

// Opening and closing
// ===================

bool PdfDriver::open(Sink* out, const DriverSetup& setup) {
  file_ = std::make_unique<PdfFile>(out);
  stream_ = std::make_unique<StreamSink>(*file_);
  content_ = std::make_unique<TextWriter>(stream_.get(), 80);
  compress_ = setup.compress;
  turned_ = setup.page_mode == 1;  // the registry row turns pages by pagmod only
  background_ = !setup.reversed;
  scale_ = setup.scale > 0.0 && std::isfinite(setup.scale) ? setup.scale : 72.0 / 254.0;
  page_w_ = std::max(1.0, setup.device_width + scale_);
  page_h_ = std::max(1.0, setup.device_height + scale_);
  dot_half_ = std::max(1LL, scaled(kDotHalf * scale_, kPathDecimals));

  file_->put("%PDF-1.4\n%\xE2\xE3\xCF\xD3\n");
  for (int obj = kCatalog; obj <= kInfo; ++obj) {
    file_->reserve();  // numbered 1, 2, 3 in this order
  }
  file_->begin(kCatalog);
  std::string s = "<< /Type /Catalog /Pages ";
  append_ref(s, kPageTree);
  s += " >>\nendobj\n";
  file_->put(s);
  file_->begin(kInfo);
  s = "<< /Producer (Zorvel ";
  append_real(s, kVersion, 1);
  s += ") /CreationDate (";
  s += pdf_date(setup.stamp);
  s += ") >>\nendobj\n";
  file_->put(s);

  begin_page();
  return !failed();
}

bool PdfDriver::close() {
  if (closed_ || !file_) {
    return !failed();
  }
  closed_ = true;
  end_page();
  write_fonts();
  font_files_.write([this] { return file_->reserve(); },
                    [this](int obj, std::string_view body) {
                      file_->begin(obj);
                      file_->put(body);
                      file_->put("endobj\n");
                    });
  write_page_tree();
  // OpenType fonts need PDF 1.6, which a catalog of its own states (the one of the file's
  // start, written before any text, stays unused).
  int root = kCatalog;
  if (font_files_.opentype()) {
    root = file_->reserve();
    file_->begin(root);
    std::string s = "<< /Type /Catalog /Version /1.6 /Pages ";
    append_ref(s, kPageTree);
    s += " >>\nendobj\n";
    file_->put(s);
  }
  file_->finish(root, kInfo);
  return !failed();
}

void PdfDriver::new_page() {
  end_page();
  begin_page();
  write_page_state();
}

void PdfDriver::begin_page() {
  contents_.clear();
  page_fonts_.assign(fonts_.size(), false);
  font_files_.begin_page();
  page_images_.clear();
  for (const int id : page_shapes_) {
    shape_on_page_[static_cast<std::size_t>(id)] = 0;
  }
  page_shapes_.clear();
  page_alphas_.reset();
  fill_written_ = -1;
  alpha_written_ = 255;
  font_written_ = -1;
  stretch_written_ = 1.0;
  spacing_written_ = 0.0;
  rise_written_ = 0.0;
  start_stream();
  if (background_) {
    word("0 g ");
    word("0 0 ");
    real(page_w_, 2);
    real(page_h_, 2);
    word("re f ");
    fill_written_ = 0;
  }
  if (kids_.empty()) {
    // The files start with projecting caps and bevelled joins, as PostScript's do.
    number(cap_, 0);
    word("J ");
    number(join_, 0);
    word("j ");
    content_->end_line();
  }
}

void PdfDriver::end_page() {
  end_path();
  end_stream();
  const int page = file_->reserve();
  kids_.push_back(page);
  file_->begin(page);
  std::string s = "<< /Type /Page /Parent ";
  append_ref(s, kPageTree);
  s += " /MediaBox [0 0 ";
  append_real(s, page_w_, 2);
  s += ' ';
  append_real(s, page_h_, 2);
  s += "]\n/Resources <<";
  std::string file_fonts;
  font_files_.append_resources(file_fonts);
  if (std::find(page_fonts_.begin(), page_fonts_.end(), true) != page_fonts_.end() ||
      !file_fonts.empty()) {
    s += "\n/Font <<";
    for (std::size_t i = 0; i < page_fonts_.size(); ++i) {
      if (page_fonts_[i]) {
        s += " /F";
        append_int(s, static_cast<long long>(i) + 1);
        s += ' ';
        append_ref(s, fonts_[i].obj);
      }
    }
    s += file_fonts;
    s += " >>";
  }
  if (!page_images_.empty() || !page_shapes_.empty()) {
    s += "\n/XObject <<";
    for (const PlacedImage& im : page_images_) {
      s += " /Im";
      append_int(s, im.number);
      s += ' ';
      append_ref(s, im.obj);
    }
    for (std::size_t i = 0; i < page_shapes_.size(); ++i) {
      s += i % 8 == 0 ? "\n" : " ";
      s += "/S";
      append_int(s, page_shapes_[i]);
      s += ' ';
      append_ref(s, shape_objs_[static_cast<std::size_t>(page_shapes_[i])]);
    }
    s += " >>";
  }
  if (page_alphas_.any()) {
    s += "\n/ExtGState <<";
    for (int a = 0; a < 256; ++a) {
      if (page_alphas_[static_cast<std::size_t>(a)]) {
        s += "\n/GS";
        append_int(s, a);
        s += " << /Type /ExtGState /CA ";
        append_real(s, a / 255.0, 4);
        s += " /ca ";
        append_real(s, a / 255.0, 4);
        s += " >>";
      }
    }
    s += " >>";
  }
  s += " >>\n/Contents [";
  for (std::size_t i = 0; i < contents_.size(); ++i) {
    s += i % 8 == 0 ? "\n" : " ";
    append_ref(s, contents_[i]);
  }
  s += "] >>\nendobj\n";
  file_->put(s);
  write_forms();
}

// Opens a content stream of the current page.
void PdfDriver::start_stream() {
  stream_obj_ = file_->reserve();
  length_obj_ = file_->reserve();
  contents_.push_back(stream_obj_);
  file_->begin(stream_obj_);
  std::string s = "<< /Length ";
  append_ref(s, length_obj_);
  s += compress_ ? " /Filter /FlateDecode >>\nstream\n" : " >>\nstream\n";
  file_->put(s);
  stream_->start(compress_);
}

// Closes the open content stream and writes its length.
void PdfDriver::end_stream() {
  content_->end_line();
  content_->finish();
  const std::uint64_t length = stream_->finish();
  file_->put("\nendstream\nendobj\n");
  file_->begin(length_obj_);
  std::string s;
  append_int(s, static_cast<long long>(length));
  s += "\nendobj\n";
  file_->put(s);
}

// Every page but the first starts from the default graphics state: the attributes in
// force are stated again.
void PdfDriver::write_page_state() {
  number(cap_, 0);
  word("J ");
  number(join_, 0);
  word("j ");
  if (join_ == 0) {
    real(miter_limit_, 2);
    word("M ");
  }
  pen_width(width_);
  rgb_words(colour_, "RG ");
}

// The fonts used anywhere in the document, and the encoding of the text faces.
void PdfDriver::write_fonts() {
  for (const Font& f : fonts_) {
    write_pdf_standard_font(*file_, f.obj, f.id, f.extras, encoding_obj_, compress_);
  }
  if (encoding_obj_ != 0) {
    file_->begin(encoding_obj_);
    // 39 and 96 are the standard encoding's quotes, which the widths count with; they
    // are named so that no viewer takes another base encoding's straight quotes.
    std::string s = "<< /Type /Encoding /Differences [39 /quoteright 96 /quoteleft 127";
    for (std::size_t i = 0; i < std::size(kAccentedNames); ++i) {
      s += i % 8 == 0 ? "\n/" : " /";
      s += kAccentedNames[i];
    }
    s += "] >>\nendobj\n";
    file_->put(s);
  }
}

void PdfDriver::write_page_tree() {
  file_->begin(kPageTree);
  std::string s = "<< /Type /Pages /Count ";
  append_int(s, static_cast<long long>(kids_.size()));
  s += " /Kids [";
  for (std::size_t i = 0; i < kids_.size(); ++i) {
    s += i % 8 == 0 ? "\n" : " ";
    append_ref(s, kids_[i]);
  }
  s += "] >>\nendobj\n";
  file_->put(s);
}

// Content words
// =============

void PdfDriver::number(long long v, int decimals) {
  char tmp[kNumberBuffer];
  char* end = format_scaled(tmp, v, decimals);
  *end++ = ' ';
  word({tmp, static_cast<std::size_t>(end - tmp)});
}

void PdfDriver::point_words(long long x, long long y, std::string_view op) {
  number(x, kPathDecimals);
  number(y, kPathDecimals);
  word(op);
}

void PdfDriver::rgb_words(Rgb c, std::string_view op) {
  real(std::clamp(c.r, 0, 255) / 255.0, 3);
  real(std::clamp(c.g, 0, 255) / 255.0, 3);
  real(std::clamp(c.b, 0, 255) / 255.0, 3);
  word(op);
}

void PdfDriver::use_fill_colour(Rgb c) {
  const int key =
      std::clamp(c.r, 0, 255) << 16 | std::clamp(c.g, 0, 255) << 8 | std::clamp(c.b, 0, 255);
  if (key != fill_written_) {
    rgb_words(c, "rg ");
    fill_written_ = key;
  }
}

// Opacity of strokes and fills alike, as an ExtGState resource of the page.
void PdfDriver::use_alpha(int a) {
  a = std::clamp(a, 0, 255);
  if (a == alpha_written_) {
    return;
  }
  page_alphas_.set(static_cast<std::size_t>(a));
  char tmp[kNumberBuffer] = "/GS";
  char* end = format_int(tmp + 3, a);
  end = std::copy_n(" gs ", 4, end);
  word({tmp, static_cast<std::size_t>(end - tmp)});
  alpha_written_ = a;
}

// Polylines
// =========

void PdfDriver::point(double x, double y, Pen pen) {
  switch (pen) {
    case Pen::Draw:
      draw(scaled(x, kPathDecimals), scaled(y, kPathDecimals));
      break;
    case Pen::Move:
      move(scaled(x, kPathDecimals), scaled(y, kPathDecimals));
      break;
    case Pen::End:
    case Pen::Close:
      end_path();
      break;
  }
}

void PdfDriver::move(long long x, long long y) {
  end_path();
  first_x_ = last_x_ = x;
  first_y_ = last_y_ = y;
  points_ = 1;
}

void PdfDriver::draw(long long x, long long y) {
  if (points_ == 0) {
    first_x_ = last_x_;  // continues from the end of the last polyline
    first_y_ = last_y_;
    points_ = 1;
  }
  if (x == last_x_ && y == last_y_) {
    // A repeated point adds nothing, but two equal points alone make a dot.
    points_ = std::max(points_, 2);
    return;
  }
  if (!path_written_) {
    use_alpha(colour_.a);
    point_words(first_x_, first_y_, "m ");
    path_written_ = true;
  }
  point_words(x, y, "l ");
  last_x_ = x;
  last_y_ = y;
  ++points_;
}

void PdfDriver::end_path() {
  if (path_written_) {
    word("S ");
  } else if (points_ >= 2) {
    // A zero-length line: a short horizontal one, so that the stroke shows.
    use_alpha(colour_.a);
    point_words(first_x_ - dot_half_, first_y_, "m ");
    point_words(first_x_ + dot_half_, first_y_, "l ");
    word("S ");
  }
  path_written_ = false;
  points_ = 0;
}

// Attributes
// ==========

void PdfDriver::colour(Rgb rgb, int /*value*/) {
  end_path();
  colour_ = rgb;
  rgb_words(rgb, "RG ");
}

void PdfDriver::pen_width(const LineWidth& w) {
  end_path();
  width_ = w;
  const double n = w.hardware ? std::max<double>(w.n, kThinnestLine) : kThinnestLine;
  const double scale = std::isfinite(w.width_scale) ? std::max(w.width_scale, 0.0) : 1.0;
  real(n * scale_ * scale, 3);
  word("w ");
}

void PdfDriver::line_cap(int cap) {
  end_path();
  cap_ = std::clamp(cap, 0, 2);
  number(cap_, 0);
  word("J ");
}

void PdfDriver::line_join(int join, double miter_limit) {
  end_path();
  join_ = std::clamp(join, 0, 2);
  number(join_, 0);
  word("j ");
  if (join_ == 0) {
    // Limits below 1 are an error in PDF as in PostScript.
    miter_limit_ = miter_limit >= 1.0 && miter_limit <= 1e6 ? miter_limit : 10.0;
    real(miter_limit_, 2);
    word("M ");
  }
}

// Fills
// =====

// Every contour as "m l ... h", filled with f (non-zero) or f* (even-odd) in the fill
// colour; the stroke colour stays in force for the lines.
void PdfDriver::fill(const Path& path, Rgb rgb) {
  const std::size_t n = std::min(path.xs.size(), path.ys.size());
  if (n < 3 || path.ends.empty()) {
    return;
  }
  end_path();
  use_fill_colour(rgb);
  use_alpha(rgb.a);
  std::size_t start = 0;
  bool any = false;
  for (const int e : path.ends) {
    const std::size_t end = std::min(n, static_cast<std::size_t>(std::max(e, 0)));
    if (end >= start + 3) {
      for (std::size_t i = start; i < end; ++i) {
        point_words(scaled(path.xs[i], kPathDecimals), scaled(path.ys[i], kPathDecimals),
                    i == start ? "m " : "l ");
      }
      word("h ");
      any = true;
    }
    start = std::max(start, end);
  }
  if (any) {
    word(path.rule == FillRule::EvenOdd ? "f* " : "f ");
  }
}

// Text
// ====

// The font resource of a face, made on its first use in the document and listed in the
// page's resources on its first use on the page.
int PdfDriver::use_font(std::string_view name) {
  const int id = std::max(find_ps_font(name), kPsTimesRoman);  // others: Times-Roman
  std::size_t i = 0;
  while (i < fonts_.size() && fonts_[i].id != id) {
    ++i;
  }
  if (i == fonts_.size()) {
    fonts_.push_back({id, file_->reserve(), PdfExtraCodes(id)});
    page_fonts_.push_back(false);
    if (!ps_font(id).symbolic && encoding_obj_ == 0) {
      encoding_obj_ = file_->reserve();
    }
  }
  page_fonts_[i] = true;
  return static_cast<int>(i);
}

// The code a character is shown with: its own, or for code 0 a free code of the font
// object named by the font's encoding (0: not shown).
int PdfDriver::glyph_code(Font& font, const GlyphPlace& g) {
  return g.code != 0 ? g.code : font.extras.code(g.unicode);
}

// Advance of a character's code in thousandths of the font size.
int code_width(int font, const GlyphPlace& g, int code) {
  if (code == 0) {
    return 0;
  }
  return g.code != 0 ? ps_code_width(font, code) : std::max(ps_width(font, g.unicode), 0);
}

std::pair<double, double> PdfDriver::start_text(double angle, std::string_view prefix,
                                                int index, int key, double size,
                                                double stretch) {
  angle = std::fmod(angle, 360.0);
  if (!std::isfinite(angle)) {
    angle = 0.0;
  }
  double cs = std::cos(angle * (3.14159265358979323846 / 180.0));
  double sn = std::sin(angle * (3.14159265358979323846 / 180.0));
  if (std::fabs(angle - std::round(angle / 90.0) * 90.0) < 1e-9) {
    cs = std::round(cs);  // exact quarter turns
    sn = std::round(sn);
  }
  use_fill_colour(colour_);
  use_alpha(colour_.a);
  const double size_pt = scaled(size, 3) / 1000.0;  // as written
  if (key != font_written_ || size_pt != size_written_) {
    char tmp[kNumberBuffer];
    std::copy(prefix.begin(), prefix.end(), tmp);
    char* end = format_int(tmp + prefix.size(), index + 1);
    *end++ = ' ';
    word({tmp, static_cast<std::size_t>(end - tmp)});
    real(size, 3);
    word("Tf ");
    font_written_ = key;
    size_written_ = size_pt;
  }
  if (stretch != stretch_written_) {
    real(100.0 * stretch, 3);
    word("Tz ");
    stretch_written_ = stretch;
  }
  return {cs, sn};
}

void PdfDriver::write_tj(std::vector<std::string>& items) {
  if (items.size() == 1) {
    word(items[0]);
    word("Tj ");
  } else if (!items.empty()) {
    word("[");
    for (const std::string& w : items) {
      word(w);
    }
    word("] TJ ");
  }
  items.clear();
}

// One BT ... ET per run: the text matrix puts the left end of the first character's
// advance at its place on the rotated base line, then one string shows the characters.
// The gap that the text engine leaves between the first two characters becomes the
// character spacing (Tc), as the engine leaves the same gap after every character; a
// displacement in the TJ array makes up any other difference between the place of a
// character's centre and where the viewer's advance leaves it (fixed pitch, extra
// spacing), and text rise places characters off the base line. All is counted in points
// along the base line; a displacement of d points is -d * 1000 / (size * stretch) in TJ.
void PdfDriver::text(const TextRun& run) {
  if (run.glyphs.empty() || !(run.size > 0.0) || !std::isfinite(run.size)) {
    return;
  }
  if (run.file != nullptr) {
    font_file_text(run);
    return;
  }
  end_path();
  const int font = use_font(run.face);
  Font& resource = fonts_[static_cast<std::size_t>(font)];
  const int id = resource.id;
  const double size = std::min(run.size, 1e5);
  const double stretch = run.stretch > 0.0 && run.stretch < 2.0 ? run.stretch : 1.0;
  const auto [cs, sn] = start_text(run.angle, "/F", font, font, size, stretch);

  const double em = size * stretch / 1000.0;  // points per thousandth along the line
  const double x0 = run.glyphs[0].x;
  const double y0 = run.glyphs[0].y;
  const GlyphPlace& g0 = run.glyphs[0];
  double pen = -0.5 * code_width(id, g0, glyph_code(resource, g0)) * em;
  if (run.glyphs.size() > 1) {
    const GlyphPlace& g1 = run.glyphs[1];
    const double along = (g1.x - x0) * cs + (g1.y - y0) * sn;
    const double gap = along - 0.5 * code_width(id, g1, glyph_code(resource, g1)) * em + pen;
    const double tc = scaled(gap / stretch, 4) / 10000.0;
    if (tc != spacing_written_) {
      real(tc, 4);
      word("Tc ");
      spacing_written_ = tc;
    }
  }
  const double spacing = spacing_written_ * stretch;  // points after every character
  word("BT ");
  real(cs, 5);
  real(sn, 5);
  real(-sn, 5);
  real(cs, 5);
  real(x0 + pen * cs, 2);
  real(y0 + pen * sn, 2);
  word("Tm ");

  // The strings and displacements of one TJ array; a lone string is shown with Tj.
  std::vector<std::string>& items = tj_items_;
  items.clear();
  std::string piece = "(";  // the string being collected
  const auto end_piece = [&] {
    if (piece.size() > 1) {
      items.push_back(piece + ") ");
    }
    piece.assign(1, '(');
  };
  const auto show = [&] {
    end_piece();
    write_tj(items);
  };
  for (const GlyphPlace& g : run.glyphs) {
    const int c = glyph_code(resource, g);
    if (c == 0) {
      continue;  // no glyph or no free code: the next character has its own place
    }
    const double dx = g.x - x0;
    const double dy = g.y - y0;
    const double along = dx * cs + dy * sn;
    const double rise = dy * cs - dx * sn;
    const double w = code_width(id, g, c) * em;
    if (std::fabs(rise - rise_written_) > 0.005) {
      show();
      real(rise, 2);
      word("Ts ");
      rise_written_ = scaled(rise, 2) / 100.0;
    }
    // Differences within a hundredth of a point are left alone.
    const double off = along - 0.5 * w - pen;
    const long long shift = std::fabs(off) < 0.005 ? 0 : scaled(-off / em, 1);
    if (shift != 0) {
      end_piece();
      char tmp[kNumberBuffer];
      char* e = format_scaled(tmp, shift, 1);
      *e++ = ' ';
      items.emplace_back(tmp, static_cast<std::size_t>(e - tmp));
      pen -= shift / 10.0 * em;
    }
    if (piece.size() >= kStringPiece) {
      end_piece();
    }
    if (c == '(' || c == ')' || c == '\\') {
      piece += '\\';
      piece += static_cast<char>(c);
    } else if (c >= 32 && c < 127) {
      piece += static_cast<char>(c);
    } else {
      piece += '\\';
      piece += static_cast<char>('0' + (c >> 6));
      piece += static_cast<char>('0' + ((c >> 3) & 7));
      piece += static_cast<char>('0' + (c & 7));
    }
    pen += w + spacing;
  }
  show();
  word("ET ");
}

// A run in an outline font file: the glyph ids as 2-byte codes of the embedded font,
// each glyph at its origin. The text matrix puts the first origin (to hundredths of a
// point, as all text) on the turned base line; the viewer then advances by the /W widths,
// and a TJ displacement makes up the difference to each next origin wherever it reaches
// a two-hundredth of a point, so that no error accumulates. A run the font files refuse
// (a damaged file or glyph) is left out.
void PdfDriver::font_file_text(const TextRun& run) {
  const int font = font_files_.use(*run.file, run.glyphs, [this] { return file_->reserve(); });
  if (font < 0) {
    return;
  }
  end_path();
  const double size = std::min(run.size, 1e5);
  const double stretch = run.stretch > 0.0 && run.stretch < 2.0 ? run.stretch : 1.0;
  // The font is remembered as -2 - index, which the driver fonts' index never equals.
  const auto [cs, sn] = start_text(run.angle, "/FF", font, -2 - font, size, stretch);
  if (spacing_written_ != 0.0) {
    word("0 Tc ");
    spacing_written_ = 0.0;
  }
  const double x0 = scaled(run.glyphs[0].x, 2) / 100.0;
  const double y0 = scaled(run.glyphs[0].y, 2) / 100.0;
  word("BT ");
  real(cs, 5);
  real(sn, 5);
  real(-sn, 5);
  real(cs, 5);
  real(x0, 2);
  real(y0, 2);
  word("Tm ");

  const double em = size * stretch / 1000.0;  // points per thousandth along the line
  std::vector<std::string>& items = tj_items_;
  items.clear();
  std::string piece = "<";
  const auto end_piece = [&] {
    if (piece.size() > 1) {
      items.push_back(piece + "> ");
    }
    piece.assign(1, '<');
  };
  const auto show = [&] {
    end_piece();
    write_tj(items);
  };
  double pen = 0.0;  // where the viewer's advances have taken the origin
  for (const GlyphPlace& g : run.glyphs) {
    const double dx = scaled(g.x, 2) / 100.0 - x0;
    const double dy = scaled(g.y, 2) / 100.0 - y0;
    const double along = dx * cs + dy * sn;
    const double rise = dy * cs - dx * sn;
    if (std::fabs(rise - rise_written_) > 0.005) {
      show();
      real(rise, 2);
      word("Ts ");
      rise_written_ = scaled(rise, 2) / 100.0;
    }
    const double off = along - pen;
    const long long shift = std::fabs(off) < 0.005 ? 0 : scaled(-off / em, 2);
    if (shift != 0) {
      end_piece();
      char tmp[kNumberBuffer];
      char* e = format_scaled(tmp, shift, 2);
      *e++ = ' ';
      items.emplace_back(tmp, static_cast<std::size_t>(e - tmp));
      pen -= shift / 100.0 * em;
    }
    if (piece.size() >= kStringPiece) {
      end_piece();
    }
    static constexpr char kHex[] = "0123456789ABCDEF";
    for (int k = 12; k >= 0; k -= 4) {
      piece += kHex[(g.glyph >> k) & 0xF];
    }
    pen += font_files_.width(font, g.glyph) * em;
  }
  show();
  word("ET ");
}

// Images
// ======

// Shapes
// ======

// A shape of the pipeline (a glyph) becomes a form XObject the first time it is drawn:
// its polylines relative to its origin, stroked with the graphics state of the place where
// it is drawn (a filled shape: its contours, filled). Every drawing is then
// "q 1 0 0 1 x y cm /S4 Do Q". The forms are written
// after the page that first uses them; later pages refer to the same objects.
void PdfDriver::place_shape(const Shape& shape, double x, double y) {
  end_path();
  const auto id = static_cast<std::size_t>(shape.id);
  if (id >= shape_objs_.size()) {
    shape_objs_.resize(id + 1, 0);
    shape_on_page_.resize(id + 1, 0);
  }
  if (shape_objs_[id] == 0 && shape.filled) {
    shape_objs_[id] = define_filled_form(shape);
  } else if (shape_objs_[id] == 0) {
    Form f{file_->reserve(), {}, shape.xmin, shape.ymin, shape.xmax, shape.ymax};
    std::size_t from = 0;
    for (const int to : shape.ends) {
      // As polylines are written: repeated points left out, a zero-length line a dot.
      long long fx = scaled(shape.xs[from], kPathDecimals);
      long long fy = scaled(shape.ys[from], kPathDecimals);
      long long lx = fx;
      long long ly = fy;
      bool drawn = false;
      for (auto i = from + 1; i < static_cast<std::size_t>(to); ++i) {
        const long long px = scaled(shape.xs[i], kPathDecimals);
        const long long py = scaled(shape.ys[i], kPathDecimals);
        if (px == lx && py == ly) {
          continue;
        }
        if (!drawn) {
          append_scaled(f.content, fx, fy, "m ");
          drawn = true;
        }
        append_scaled(f.content, px, py, "l ");
        lx = px;
        ly = py;
      }
      if (!drawn) {
        append_scaled(f.content, fx - dot_half_, fy, "m ");
        append_scaled(f.content, fx + dot_half_, fy, "l ");
      }
      f.content += "S\n";
      from = static_cast<std::size_t>(to);
    }
    shape_objs_[id] = f.obj;
    forms_.push_back(std::move(f));
  }
  if (shape_on_page_[id] == 0) {
    shape_on_page_[id] = 1;
    page_shapes_.push_back(shape.id);
  }
  if (shape.filled) {
    // The form fills in the fill colour of the place where it is drawn, which the lines
    // (RG) do not set.
    use_fill_colour(colour_);
  }
  use_alpha(colour_.a);
  word("q ");
  word("1 0 0 1 ");
  number(scaled(x, kPathDecimals), kPathDecimals);
  number(scaled(y, kPathDecimals), kPathDecimals);
  word("cm ");
  char name[kNumberBuffer + 2] = "/S";
  char* end = format_int(name + 2, shape.id);
  end = std::copy_n(" Do Q ", 6, end);
  word({name, static_cast<std::size_t>(end - name)});
}

// A filled shape as a form: its contours relative to the origin, each "m l ... h", filled
// by the non-zero rule (f) in the fill colour of the place where it is drawn. Repeated
// points are left out, and contours left with fewer than three points. Returns the
// form's object.
int PdfDriver::define_filled_form(const Shape& shape) {
  Form f{file_->reserve(), {}, shape.xmin, shape.ymin, shape.xmax, shape.ymax};
  const std::size_t n = std::min(shape.xs.size(), shape.ys.size());
  std::vector<long long>& pts = form_points_;
  std::size_t from = 0;
  bool any = false;
  for (const int end_index : shape.ends) {
    const std::size_t to = std::min(n, static_cast<std::size_t>(std::max(end_index, 0)));
    pts.clear();
    for (auto i = from; i < to; ++i) {
      const long long px = scaled(shape.xs[i], kPathDecimals);
      const long long py = scaled(shape.ys[i], kPathDecimals);
      if (pts.empty() || px != pts[pts.size() - 2] || py != pts.back()) {
        pts.push_back(px);
        pts.push_back(py);
      }
    }
    from = std::max(from, to);
    if (pts.size() < 6) {
      continue;
    }
    for (std::size_t i = 0; i < pts.size(); i += 2) {
      append_scaled(f.content, pts[i], pts[i + 1], i == 0 ? "m " : "l ");
    }
    f.content += "h\n";
    any = true;
  }
  if (any) {
    f.content += "f\n";
  }
  const int obj = f.obj;
  forms_.push_back(std::move(f));
  return obj;
}

// The forms defined since the last call. The bounding box leaves room for wide lines.
void PdfDriver::write_forms() {
  constexpr double kMargin = 1000.0;
  for (const Form& f : forms_) {
    file_->begin(f.obj);
    std::string s = "<< /Type /XObject /Subtype /Form /BBox [";
    append_real(s, f.xmin - kMargin, 1);
    s += ' ';
    append_real(s, f.ymin - kMargin, 1);
    s += ' ';
    append_real(s, f.xmax + kMargin, 1);
    s += ' ';
    append_real(s, f.ymax + kMargin, 1);
    s += "] /Resources << >> /Length ";
    append_int(s, static_cast<long long>(f.content.size()));
    s += " >>\nstream\n";
    s += f.content;
    s += "endstream\nendobj\n";
    file_->put(s);
  }
  forms_.clear();
}

// The pixels as an image XObject of the page (its alpha channel, when any pixel is not
// opaque, as a soft mask), placed by cm on the unit square whose top row is the first
// row of pixels. The open content stream ends first, as objects cannot nest; a new one
// of the same page follows.
void PdfDriver::image(const Image& img) {
  if (img.pixels == nullptr || img.width <= 0 || img.height <= 0 ||
      (img.channels != 3 && img.channels != 4) ||
      img.stride < static_cast<std::size_t>(img.width) * static_cast<std::size_t>(img.channels) ||
      !std::isfinite(img.x0) || !std::isfinite(img.y0) || !std::isfinite(img.x1) ||
      !std::isfinite(img.y1)) {
    return;
  }
  end_path();
  bool translucent = false;
  for (int j = 0; j < img.height && img.channels == 4 && !translucent; ++j) {
    const std::uint8_t* row = img.pixels + static_cast<std::size_t>(j) * img.stride;
    for (int i = 0; i < img.width; ++i) {
      if (row[static_cast<std::size_t>(i) * 4 + 3] != 255) {
        translucent = true;
        break;
      }
    }
  }
  end_stream();
  const int obj = file_->reserve();
  const int mask = translucent ? file_->reserve() : 0;
  const int number = ++images_;
  write_image_stream(obj, mask, img, false);
  if (translucent) {
    write_image_stream(mask, 0, img, true);
  }
  page_images_.push_back({number, obj});
  start_stream();

  // The unit square's (u, v), v = 1 being the first row: on an unturned page the rows
  // run along x from (x0, y0); on a turned page along y, and the rows follow along x.
  double m[6];
  if (turned_) {
    m[0] = 0.0;
    m[1] = img.y1 - img.y0;
    m[2] = img.x0 - img.x1;
    m[3] = 0.0;
    m[4] = img.x1;
    m[5] = img.y0;
  } else {
    m[0] = img.x1 - img.x0;
    m[1] = 0.0;
    m[2] = 0.0;
    m[3] = img.y0 - img.y1;
    m[4] = img.x0;
    m[5] = img.y1;
  }
  word("q ");
  for (const double v : m) {
    real(v, 2);
  }
  word("cm ");
  char tmp[kNumberBuffer] = "/Im";
  char* end = format_int(tmp + 3, number);
  end = std::copy_n(" Do Q ", 6, end);
  word({tmp, static_cast<std::size_t>(end - tmp)});
}

// One image stream, always deflated: the RGB samples with the soft mask `smask` (0:
// none), or (alpha_only) the alpha channel, as the soft mask itself.
void PdfDriver::write_image_stream(int obj, int smask, const Image& img, bool alpha_only) {
  const int length = file_->reserve();
  file_->begin(obj);
  std::string s = "<< /Type /XObject /Subtype /Image /Width ";
  append_int(s, img.width);
  s += " /Height ";
  append_int(s, img.height);
  s += alpha_only ? " /ColorSpace /DeviceGray" : " /ColorSpace /DeviceRGB";
  s += " /BitsPerComponent 8\n";
  if (smask != 0) {
    s += "/SMask ";
    append_ref(s, smask);
    s += ' ';
  }
  s += "/Filter /FlateDecode /Length ";
  append_ref(s, length);
  s += " >>\nstream\n";
  file_->put(s);
  stream_->start(true);
  const std::size_t w = static_cast<std::size_t>(img.width);
  const std::size_t channels = static_cast<std::size_t>(img.channels);
  row_.resize(w * 3);
  for (int j = 0; j < img.height; ++j) {
    const std::uint8_t* px = img.pixels + static_cast<std::size_t>(j) * img.stride;
    std::size_t n = 0;
    for (std::size_t i = 0; i < w; ++i, px += channels) {
      if (alpha_only) {
        row_[n++] = px[3];
      } else {
        row_[n++] = px[0];
        row_[n++] = px[1];
        row_[n++] = px[2];
      }
    }
    stream_->write(reinterpret_cast<const char*>(row_.data()), n);
  }
  const std::uint64_t bytes = stream_->finish();
  file_->put("\nendstream\nendobj\n");
  file_->begin(length);
  s.clear();
  append_int(s, static_cast<long long>(bytes));
  s += "\nendobj\n";
  file_->put(s);
}

}  // namespace

std::unique_ptr<Driver> make_pdf_driver() { return std::make_unique<PdfDriver>(); }

}  // namespace zorvel
