// The BDF reader: one pass over the file's lines, each looked at once, with nothing
// allocated per line. A glyph's bitmap rows are appended to the font's bit store as they
// are read, so that what the store holds is what the file holds (short rows padded to the
// glyph's width); a glyph that turns out to be unusable is cut off the store again.

#include "fonts/bdf.h"

#include <algorithm>
#include <climits>
#include <cstring>

namespace zorvel {

namespace {

// Lines and words
// ===============

// A line ends at LF, CR or CRLF; blank lines are never handed out.
class Lines {
 public:
  explicit Lines(std::span<const std::uint8_t> data)
      : p_(reinterpret_cast<const char*>(data.data())), end_(p_ + data.size()) {}

  bool next(std::string_view& line) {
    while (p_ < end_ && (*p_ == '\n' || *p_ == '\r')) {
      ++p_;
    }
    if (p_ == end_) {
      return false;
    }
    const char* start = p_;
    while (p_ < end_ && *p_ != '\n' && *p_ != '\r') {
      ++p_;
    }
    line = std::string_view(start, static_cast<std::size_t>(p_ - start));
    return true;
  }

 private:
  const char* p_;
  const char* end_;
};

bool is_blank(char c) { return c == ' ' || c == '\t' || c == '\f' || c == '\v'; }

std::string_view trim(std::string_view s) {
  while (!s.empty() && is_blank(s.front())) {
    s.remove_prefix(1);
  }
  while (!s.empty() && is_blank(s.back())) {
    s.remove_suffix(1);
  }
  return s;
}

// Takes the next blank-separated word off the front of `s`.
std::string_view word(std::string_view& s) {
  s = trim(s);
  std::size_t n = 0;
  while (n < s.size() && !is_blank(s[n])) {
    ++n;
  }
  const std::string_view w = s.substr(0, n);
  s.remove_prefix(n);
  return w;
}

// A decimal integer with an optional sign, the whole word; false when it is not one or
// does not fit an int.
bool to_int(std::string_view w, int& out) {
  bool negative = false;
  if (!w.empty() && (w.front() == '-' || w.front() == '+')) {
    negative = w.front() == '-';
    w.remove_prefix(1);
  }
  if (w.empty()) {
    return false;
  }
  long long v = 0;
  for (const char c : w) {
    if (c < '0' || c > '9') {
      return false;
    }
    v = v * 10 + (c - '0');
    if (v > static_cast<long long>(INT_MAX) + 1) {
      return false;
    }
  }
  v = negative ? -v : v;
  if (v > INT_MAX) {
    return false;
  }
  out = static_cast<int>(v);
  return true;
}

// Reads `n` integers from the words of `s`; false when any is missing or bad.
bool ints(std::string_view s, int* out, int n) {
  for (int i = 0; i < n; ++i) {
    if (!to_int(word(s), out[i])) {
      return false;
    }
  }
  return true;
}

// A property value: a quoted string, where "" stands for one quote, or else the bare rest
// of the line.
std::string unquote(std::string_view s) {
  s = trim(s);
  if (s.empty() || s.front() != '"') {
    return std::string(s);
  }
  std::string out;
  for (std::size_t i = 1; i < s.size(); ++i) {
    if (s[i] == '"') {
      if (i + 1 < s.size() && s[i + 1] == '"') {
        out += '"';
        ++i;
        continue;
      }
      break;  // the closing quote; a missing one ends the string at the line's end
    }
    out += s[i];
  }
  return out;
}

int hex_value(char c) {
  if (c >= '0' && c <= '9') {
    return c - '0';
  }
  if (c >= 'A' && c <= 'F') {
    return c - 'A' + 10;
  }
  if (c >= 'a' && c <= 'f') {
    return c - 'a' + 10;
  }
  return -1;
}

bool bounded(int v) { return v >= -kBdfMaxPixels && v <= kBdfMaxPixels; }

// The first row of g from the top with a pixel set, or -1.
int first_inked_row(const BdfFont& font, const BdfGlyph& g) {
  const std::size_t stride = static_cast<std::size_t>(g.width + 7) / 8;
  for (int y = 0; y < g.height; ++y) {
    const std::uint8_t* row = font.bits.data() + g.bits + static_cast<std::size_t>(y) * stride;
    if (std::any_of(row, row + stride, [](std::uint8_t b) { return b != 0; })) {
      return y;
    }
  }
  return -1;
}

// The parser
// ==========

enum class Section { Header, Properties, Glyph, Bitmap, End };

class Parser {
 public:
  Parser(BdfFont& font, int* dropped) : font_(font), dropped_(dropped) {}

  BdfStatus run(std::span<const std::uint8_t> data);

 private:
  // One line of each section; false ends the file (refused).
  bool header(std::string_view key, std::string_view rest);
  void property(std::string_view key, std::string_view rest);
  bool glyph_line(std::string_view key, std::string_view rest);
  bool bitmap_line(std::string_view line);

  void start_glyph();
  bool end_glyph();
  void drop_glyph();
  void finish();

  BdfFont& font_;
  int* dropped_;
  Section section_ = Section::Header;
  std::size_t max_glyphs_ = 0;  // the most glyphs the file's size can hold

  // Font-wide values that properties may leave unset.
  bool have_ascent_ = false;
  bool have_descent_ = false;
  bool have_cap_ = false;
  bool have_box_ = false;
  int box_[4] = {0, 0, 0, 0};   // FONTBOUNDINGBOX w h x y
  int font_advance_ = INT_MIN;  // a DWIDTH before CHARS, the default of every glyph
  std::string charset_registry_;
  std::string charset_encoding_;

  // The glyph being read.
  BdfGlyph g_;
  bool have_code_ = false;
  bool have_advance_ = false;
  bool have_bbx_ = false;
  bool bad_ = false;        // a record of the glyph is unusable
  int rows_ = 0;            // bitmap rows read
  std::size_t stride_ = 0;  // bytes per row
};

BdfStatus Parser::run(std::span<const std::uint8_t> data) {
  // The shortest usable glyph, "STARTCHAR\nENCODING 0\nBBX 0 0 0 0\nENDCHAR\n", takes 41
  // bytes: the file's size bounds what a CHARS count may reserve.
  max_glyphs_ = std::min<std::size_t>(data.size() / 40 + 1, kBdfMaxGlyphs);
  Lines lines(data);
  std::string_view line;
  if (!lines.next(line)) {
    return BdfStatus::NotBdf;
  }
  if (line.size() >= 3 && std::memcmp(line.data(), "\xEF\xBB\xBF", 3) == 0) {
    line.remove_prefix(3);  // a byte order mark some editors write
  }
  std::string_view rest = line;
  if (word(rest) != "STARTFONT") {
    return BdfStatus::NotBdf;
  }
  while (section_ != Section::End && lines.next(line)) {
    if (section_ == Section::Bitmap) {
      if (!bitmap_line(line)) {
        return BdfStatus::Damaged;
      }
      continue;
    }
    rest = line;
    const std::string_view key = word(rest);
    bool ok = true;
    switch (section_) {
      case Section::Header:
        ok = header(key, rest);
        break;
      case Section::Properties:
        // A missing ENDPROPERTIES: the glyphs' part ends the properties too.
        if (key == "CHARS" || key == "STARTCHAR") {
          section_ = Section::Header;
          ok = header(key, rest);
        } else if (key == "ENDPROPERTIES") {
          section_ = Section::Header;
        } else {
          property(key, rest);
        }
        break;
      case Section::Glyph:
        ok = glyph_line(key, rest);
        break;
      case Section::Bitmap:
      case Section::End:
        break;
    }
    if (!ok) {
      return BdfStatus::Damaged;
    }
  }
  if (section_ == Section::Glyph || section_ == Section::Bitmap) {
    drop_glyph();  // the file ends inside a glyph
  }
  if (font_.glyphs.empty()) {
    return BdfStatus::Damaged;
  }
  finish();
  return BdfStatus::Ok;
}

bool Parser::header(std::string_view key, std::string_view rest) {
  if (key == "STARTCHAR") {
    start_glyph();
  } else if (key == "STARTPROPERTIES") {
    section_ = Section::Properties;
  } else if (key == "FONT") {
    font_.name = std::string(trim(rest));
  } else if (key == "FONTBOUNDINGBOX") {
    int v[4];
    have_box_ = ints(rest, v, 4) && v[0] >= 0 && v[1] >= 0 && bounded(v[0]) && bounded(v[1]) &&
                bounded(v[2]) && bounded(v[3]);
    if (have_box_) {
      std::copy(v, v + 4, box_);
    }
  } else if (key == "DWIDTH") {
    int v[2];
    if (ints(rest, v, 2) && bounded(v[0])) {
      font_advance_ = v[0];
    }
  } else if (key == "CHARS") {
    // Only a hint: never trusted beyond what the file's size can hold.
    int n = 0;
    if (to_int(word(rest), n) && n > 0) {
      font_.glyphs.reserve(std::min(static_cast<std::size_t>(n), max_glyphs_));
    }
  } else if (key == "ENDFONT") {
    section_ = Section::End;
  }
  // STARTFONT, SIZE, SWIDTH, METRICSSET, COMMENT and what else there is: not needed.
  return true;
}

void Parser::property(std::string_view key, std::string_view rest) {
  int v = 0;
  if (key == "FONT_ASCENT") {
    if (to_int(word(rest), v) && bounded(v)) {
      font_.ascent = v;
      have_ascent_ = true;
    }
  } else if (key == "FONT_DESCENT") {
    if (to_int(word(rest), v) && bounded(v)) {
      font_.descent = v;
      have_descent_ = true;
    }
  } else if (key == "CAP_HEIGHT") {
    if (to_int(word(rest), v) && bounded(v)) {
      font_.cap_height = v;
      have_cap_ = true;
    }
  } else if (key == "DEFAULT_CHAR") {
    if (to_int(word(rest), v) && v >= 0) {
      font_.default_char = v;
    }
  } else if (key == "CHARSET_REGISTRY") {
    charset_registry_ = unquote(rest);
  } else if (key == "CHARSET_ENCODING") {
    charset_encoding_ = unquote(rest);
  }
}

void Parser::start_glyph() {
  g_ = BdfGlyph{};
  g_.bits = static_cast<std::uint32_t>(font_.bits.size());
  have_code_ = false;
  have_advance_ = false;
  have_bbx_ = false;
  bad_ = false;
  rows_ = 0;
  stride_ = 0;
  section_ = Section::Glyph;
}

bool Parser::glyph_line(std::string_view key, std::string_view rest) {
  if (key == "ENCODING") {
    // "-1 n": a glyph outside the standard encoding, kept as n when n is given.
    int code = 0;
    int alt = 0;
    have_code_ = to_int(word(rest), code) &&
                 (code >= 0 || (code == -1 && to_int(word(rest), alt) && alt >= 0));
    if (have_code_) {
      g_.code = static_cast<std::uint32_t>(code >= 0 ? code : alt);
    }
  } else if (key == "DWIDTH") {
    int v[2];
    have_advance_ = ints(rest, v, 2) && bounded(v[0]);
    g_.advance = have_advance_ ? v[0] : 0;
  } else if (key == "BBX") {
    // Widths and heights up to the limit; a zero size is a glyph without pixels (the
    // blank of many fonts is "BBX 0 0 0 0").
    int v[4];
    have_bbx_ = ints(rest, v, 4) && v[0] >= 0 && v[1] >= 0 && v[0] <= kBdfMaxPixels &&
                v[1] <= kBdfMaxPixels && bounded(v[2]) && bounded(v[3]);
    if (have_bbx_) {
      g_.width = v[0] == 0 || v[1] == 0 ? 0 : v[0];
      g_.height = v[0] == 0 || v[1] == 0 ? 0 : v[1];
      g_.xoff = v[2];
      g_.yoff = v[3];
      stride_ = static_cast<std::size_t>(g_.width + 7) / 8;
    }
  } else if (key == "BITMAP") {
    section_ = Section::Bitmap;
  } else if (key == "ENDCHAR") {
    return end_glyph();
  } else if (key == "STARTCHAR") {
    drop_glyph();  // the last glyph has no ENDCHAR
    start_glyph();
  } else if (key == "ENDFONT") {
    drop_glyph();
    section_ = Section::End;
  }
  return true;
}

bool Parser::bitmap_line(std::string_view line) {
  line = trim(line);
  if (line.empty()) {
    return true;
  }
  // A row is hex digits and nothing else; any other line is a keyword, or garbage that
  // costs the glyph.
  const bool row = std::all_of(line.begin(), line.end(), [](char c) { return hex_value(c) >= 0; });
  if (!row) {
    std::string_view rest = line;
    const std::string_view key = word(rest);
    if (key == "ENDCHAR" || key == "STARTCHAR" || key == "ENDFONT") {
      return glyph_line(key, rest);
    }
    if (key != "COMMENT") {
      bad_ = true;
    }
    return true;
  }
  if (!have_bbx_ || bad_ || rows_ >= g_.height) {
    // Rows without a box, of a glyph already lost, or beyond its height: not kept.
    bad_ = bad_ || !have_bbx_;
    return true;
  }
  if (font_.bits.size() + stride_ > kBdfMaxBytes) {
    return false;
  }
  const std::size_t at = font_.bits.size();
  font_.bits.resize(at + stride_);  // zeros: a short row is padded, an odd digit is high
  std::uint8_t* out = font_.bits.data() + at;
  const std::size_t digits = std::min(line.size(), 2 * stride_);  // the rest is too long
  for (std::size_t i = 0; i < digits; ++i) {
    const auto h = static_cast<unsigned>(hex_value(line[i]));
    out[i / 2] = static_cast<std::uint8_t>(out[i / 2] | (i % 2 == 0 ? h << 4 : h));
  }
  // Pixels right of the width are not the glyph's.
  if (g_.width % 8 != 0) {
    out[stride_ - 1] &= static_cast<std::uint8_t>(0xFF00U >> (g_.width % 8));
  }
  ++rows_;
  return true;
}

bool Parser::end_glyph() {
  if (!have_advance_ && font_advance_ != INT_MIN) {
    g_.advance = font_advance_;
    have_advance_ = true;
  }
  if (!have_advance_ && have_box_) {
    g_.advance = box_[0];
    have_advance_ = true;
  }
  if (bad_ || !have_code_ || !have_bbx_ || !have_advance_ || rows_ < g_.height) {
    // A glyph short of rows is dropped, not padded: the store never holds more than the
    // file does.
    drop_glyph();
    return true;
  }
  if (font_.glyphs.size() >= static_cast<std::size_t>(kBdfMaxGlyphs)) {
    return false;
  }
  font_.glyphs.push_back(g_);
  section_ = Section::Header;
  return true;
}

void Parser::drop_glyph() {
  font_.bits.resize(g_.bits);
  if (dropped_ != nullptr) {
    ++*dropped_;
  }
  section_ = Section::Header;
}

void Parser::finish() {
  // Sorted by code; of glyphs with one code, the first in the file stays.
  std::stable_sort(font_.glyphs.begin(), font_.glyphs.end(),
                   [](const BdfGlyph& a, const BdfGlyph& b) { return a.code < b.code; });
  const auto last =
      std::unique(font_.glyphs.begin(), font_.glyphs.end(),
                  [](const BdfGlyph& a, const BdfGlyph& b) { return a.code == b.code; });
  if (dropped_ != nullptr) {
    *dropped_ += static_cast<int>(font_.glyphs.end() - last);
  }
  font_.glyphs.erase(last, font_.glyphs.end());

  if (!charset_registry_.empty()) {
    font_.registry = charset_registry_;
    if (!charset_encoding_.empty()) {
      font_.registry += '-';
      font_.registry += charset_encoding_;
    }
  } else if (font_.name.size() > 1 && font_.name.front() == '-' &&
             std::count(font_.name.begin(), font_.name.end(), '-') == 14) {
    // Without the properties, the last two fields of the X font name say the same.
    std::size_t at = font_.name.size();
    for (int i = 0; i < 2; ++i) {
      at = font_.name.rfind('-', at - 1);
    }
    font_.registry = font_.name.substr(at + 1);
  }
  if (have_box_) {
    if (!have_ascent_) {
      font_.ascent = box_[1] + box_[3];
    }
    if (!have_descent_) {
      font_.descent = -box_[3];
    }
  }
  if (!have_cap_) {
    // The top of the ink of "H": the box of a fixed font's glyph is often the whole cell.
    const BdfGlyph* h = font_.find('H');
    const int top = h != nullptr ? first_inked_row(font_, *h) : -1;
    font_.cap_height = top >= 0 ? h->yoff + h->height - top : font_.ascent;
  }
}

}  // namespace

// BdfFont
// =======

const BdfGlyph* BdfFont::find(std::uint32_t code) const {
  const auto it = std::lower_bound(glyphs.begin(), glyphs.end(), code,
                                   [](const BdfGlyph& g, std::uint32_t c) { return g.code < c; });
  return it != glyphs.end() && it->code == code ? &*it : nullptr;
}

bool BdfFont::pixel(const BdfGlyph& g, int x, int y) const {
  if (x < 0 || y < 0 || x >= g.width || y >= g.height) {
    return false;
  }
  const std::size_t stride = static_cast<std::size_t>(g.width + 7) / 8;
  const std::size_t at =
      g.bits + static_cast<std::size_t>(y) * stride + static_cast<std::size_t>(x >> 3);
  return at < bits.size() && (bits[at] & (0x80U >> (x & 7))) != 0U;
}

BdfStatus parse_bdf(std::span<const std::uint8_t> data, BdfFont& font, int* dropped) {
  font.name.clear();
  font.registry.clear();
  font.ascent = 0;
  font.descent = 0;
  font.cap_height = 0;
  font.default_char = -1;
  font.glyphs.clear();
  font.bits.clear();
  if (dropped != nullptr) {
    *dropped = 0;
  }
  Parser parser(font, dropped);
  const BdfStatus status = parser.run(data);
  if (status != BdfStatus::Ok) {
    // A refused file leaves no half font behind.
    font.glyphs.clear();
    font.bits.clear();
  }
  return status;
}

}  // namespace zorvel
