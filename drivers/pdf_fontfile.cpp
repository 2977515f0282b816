// Outline font files embedded in PDF files (see pdf_fontfile.h).
//
// The layout of an sfnt file, as far as it is read here (all numbers big-endian):
//
//   offset table   sfntVersion (0x00010000 or "true": glyf outlines; "OTTO": CFF)
//                  numTables, searchRange, entrySelector, rangeShift      12 bytes
//   table records  tag, checkSum, offset, length                          16 bytes each
//   a collection   "ttcf", version, numFonts, then an offset table per face
//
// Offsets and lengths are checked against the file before anything is read, and every
// read goes through Reader, which yields 0 and remembers the fault outside its bytes.

#include "drivers/pdf_fontfile.h"

#define ZLIB_CONST
#include <zlib.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <memory>

#include "core/format.h"
#include "core/platform.h"

namespace zorvel {
namespace {

// Largest font file read (a large CJK collection stays below it).
constexpr std::uint64_t kMaxFileBytes = std::uint64_t{1} << 28;
// Deepest nesting of composite glyphs accepted; TrueType rasterisers stop far earlier.
constexpr int kMaxComponentDepth = 16;
// Entries of one bfchar or bfrange block of a CMap (the CMap format's limit).
constexpr std::size_t kCmapBlock = 100;
// Glyph ids per line of /W.
constexpr std::size_t kWidthsPerLine = 16;

constexpr std::uint32_t make_tag(const char* t) {
  return static_cast<std::uint32_t>(static_cast<unsigned char>(t[0])) << 24 |
         static_cast<std::uint32_t>(static_cast<unsigned char>(t[1])) << 16 |
         static_cast<std::uint32_t>(static_cast<unsigned char>(t[2])) << 8 |
         static_cast<std::uint32_t>(static_cast<unsigned char>(t[3]));
}

// Bounds-checked big-endian reads of a byte range: a read outside it yields 0 and clears
// ok().
class Reader {
 public:
  explicit Reader(std::string_view d) : d_(d) {}
  bool has(std::uint64_t at, std::uint64_t n) const {
    return at <= d_.size() && n <= d_.size() - at;
  }
  std::uint32_t u8(std::uint64_t at) const {
    if (!has(at, 1)) {
      ok_ = false;
      return 0;
    }
    return static_cast<unsigned char>(d_[static_cast<std::size_t>(at)]);
  }
  std::uint32_t u16(std::uint64_t at) const {
    if (!has(at, 2)) {
      ok_ = false;
      return 0;
    }
    return u8(at) << 8 | u8(at + 1);
  }
  std::uint32_t u32(std::uint64_t at) const {
    if (!has(at, 4)) {
      ok_ = false;
      return 0;
    }
    return u16(at) << 16 | u16(at + 2);
  }
  int s16(std::uint64_t at) const { return static_cast<std::int16_t>(u16(at)); }
  bool ok() const { return ok_; }
  std::size_t size() const { return d_.size(); }

 private:
  std::string_view d_;
  mutable bool ok_ = true;
};

void put16(std::string& s, std::uint32_t v) {
  s += static_cast<char>((v >> 8) & 0xFF);
  s += static_cast<char>(v & 0xFF);
}

void put32(std::string& s, std::uint32_t v) {
  put16(s, v >> 16);
  put16(s, v & 0xFFFF);
}

void set32(std::string& s, std::size_t at, std::uint32_t v) {
  s[at] = static_cast<char>(v >> 24);
  s[at + 1] = static_cast<char>((v >> 16) & 0xFF);
  s[at + 2] = static_cast<char>((v >> 8) & 0xFF);
  s[at + 3] = static_cast<char>(v & 0xFF);
}

// The sfnt checksum: the sum of the data as big-endian 32-bit words, zero-padded.
std::uint32_t checksum(std::string_view d) {
  std::uint32_t sum = 0;
  for (std::size_t i = 0; i < d.size(); i += 4) {
    std::uint32_t w = 0;
    for (std::size_t k = 0; k < 4; ++k) {
      w = w << 8 | (i + k < d.size() ? static_cast<unsigned char>(d[i + k]) : 0U);
    }
    sum += w;
  }
  return sum;
}

// An sfnt file of the given tables (sorted by tag, as the format asks), each 4-byte
// aligned with its checksum, and head's checkSumAdjustment set so that the whole file
// sums to 0xB1B0AFBA.
std::string build_sfnt(std::uint32_t version,
                       std::vector<std::pair<std::uint32_t, std::string>>& tables) {
  std::sort(tables.begin(), tables.end(),
            [](const auto& a, const auto& b) { return a.first < b.first; });
  const auto n = static_cast<std::uint32_t>(tables.size());
  std::uint32_t power = 1;
  std::uint32_t log2 = 0;
  while (power * 2 <= n) {
    power *= 2;
    ++log2;
  }
  std::string out;
  put32(out, version);
  put16(out, n);
  put16(out, power * 16);
  put16(out, log2);
  put16(out, n * 16 - power * 16);
  std::size_t offset = 12 + 16 * static_cast<std::size_t>(n);
  std::size_t head_at = 0;
  for (auto& [tag, bytes] : tables) {
    if (tag == make_tag("head") && bytes.size() >= 12) {
      set32(bytes, 8, 0);  // checkSumAdjustment counts as 0 in head's checksum
      head_at = offset;
    }
    put32(out, tag);
    put32(out, checksum(bytes));
    put32(out, static_cast<std::uint32_t>(offset));
    put32(out, static_cast<std::uint32_t>(bytes.size()));
    offset += (bytes.size() + 3) & ~std::size_t{3};
  }
  for (const auto& t : tables) {
    out += t.second;
    out.append((4 - t.second.size() % 4) % 4, '\0');
  }
  if (head_at != 0) {
    set32(out, head_at + 8, 0xB1B0AFBAU - checksum(out));
  }
  return out;
}

// A PDF name from a PostScript name: its printable characters other than the delimiters.
std::string pdf_name(std::string_view ps) {
  std::string s;
  for (const char c : ps) {
    if (c > ' ' && c < 127 && std::strchr("()<>[]{}/%#", c) == nullptr) {
      s += c;
    }
  }
  return s.empty() ? std::string("Font") : s;
}

void append_int(std::string& s, long long v) {
  char tmp[kNumberBuffer];
  char* end = format_int(tmp, v);
  s.append(tmp, static_cast<std::size_t>(end - tmp));
}

void append_hex4(std::string& s, std::uint32_t v) {
  static constexpr char kHex[] = "0123456789ABCDEF";
  for (int shift = 12; shift >= 0; shift -= 4) {
    s += kHex[(v >> shift) & 0xF];
  }
}

// A character as UTF-16 in hex: "<00E4>", "<D835DC00>".
void append_utf16(std::string& s, std::uint32_t u) {
  s += '<';
  if (u >= 0x10000) {
    u -= 0x10000;
    append_hex4(s, 0xD800 + (u >> 10));
    append_hex4(s, 0xDC00 + (u & 0x3FF));
  } else {
    append_hex4(s, u);
  }
  s += '>';
}

// The deflated stream object of `data` with extra dictionary entries.
std::string stream_object(std::string_view data, std::string_view entries) {
  uLongf n = compressBound(static_cast<uLong>(data.size()));
  std::string z(n, '\0');
  const bool deflated =
      compress2(reinterpret_cast<Bytef*>(z.data()), &n, reinterpret_cast<const Bytef*>(data.data()),
                static_cast<uLong>(data.size()), Z_BEST_COMPRESSION) == Z_OK;
  std::string s = "<< /Length ";
  append_int(s, static_cast<long long>(deflated ? n : data.size()));
  if (deflated) {
    s += " /Filter /FlateDecode";
  }
  s += entries;
  s += " >>\nstream\n";
  if (deflated) {
    s.append(z.data(), n);
  } else {
    s += data;
  }
  s += "\nendstream\n";
  return s;
}

}  // namespace

// Reading
// =======

bool FontProgram::load(std::string_view path, int face_index) {
  struct Closer {
    void operator()(std::FILE* f) const { std::fclose(f); }
  };
  const std::unique_ptr<std::FILE, Closer> f(platform::open_file(std::string(path), "rb"));
  if (!f) {
    return false;
  }
  std::string bytes;
  char buf[1 << 15];
  std::size_t n = 0;
  while ((n = std::fread(buf, 1, sizeof buf, f.get())) > 0) {
    if (bytes.size() + n > kMaxFileBytes) {
      return false;
    }
    bytes.append(buf, n);
  }
  if (std::ferror(f.get()) != 0) {
    return false;
  }
  return load_bytes(std::move(bytes), face_index);
}

bool FontProgram::load_bytes(std::string bytes, int face_index) {
  data_ = std::move(bytes);
  if (!parse(face_index)) {
    data_.clear();
    tables_.clear();
    num_glyphs_ = 0;
    return false;
  }
  return true;
}

const FontProgram::Table* FontProgram::table(const char* tag) const {
  const std::uint32_t t = make_tag(tag);
  for (const Table& e : tables_) {
    if (e.tag == t) {
      return &e;
    }
  }
  return nullptr;
}

std::string_view FontProgram::table_bytes(const char* tag) const {
  const Table* t = table(tag);
  return t == nullptr ? std::string_view() : std::string_view(data_).substr(t->offset, t->length);
}

bool FontProgram::parse(int face_index) {
  const Reader file(data_);
  std::uint64_t sfnt = 0;
  if (file.u32(0) == make_tag("ttcf")) {
    const std::uint32_t faces = file.u32(8);
    if (face_index < 0 || static_cast<std::uint32_t>(face_index) >= faces) {
      return false;
    }
    sfnt = file.u32(12 + 4 * static_cast<std::uint64_t>(face_index));
  } else if (face_index != 0) {
    return false;
  }
  const std::uint32_t version = file.u32(sfnt);
  if (version == make_tag("OTTO")) {
    cff_ = true;
  } else if (version != 0x00010000U && version != make_tag("true")) {
    return false;
  }
  const std::uint32_t count = file.u16(sfnt + 4);
  if (!file.ok() || !file.has(sfnt + 12, 16 * std::uint64_t{count})) {
    return false;
  }
  for (std::uint32_t i = 0; i < count; ++i) {
    const std::uint64_t rec = sfnt + 12 + 16 * std::uint64_t{i};
    Table t{file.u32(rec), file.u32(rec + 8), file.u32(rec + 12)};
    if (!file.has(t.offset, t.length)) {
      return false;
    }
    tables_.push_back(t);
  }

  const Reader head(table_bytes("head"));
  const Reader maxp(table_bytes("maxp"));
  const Reader hhea(table_bytes("hhea"));
  if (head.size() < 54 || maxp.size() < 6 || hhea.size() < 36 || table("hmtx") == nullptr) {
    return false;
  }
  units_per_em_ = static_cast<int>(head.u16(18));
  num_glyphs_ = maxp.u16(4);
  num_metrics_ = hhea.u16(34);
  const int loca_format = head.s16(50);
  if (units_per_em_ < 16 || units_per_em_ > 16384 || num_glyphs_ == 0 || num_metrics_ == 0 ||
      num_metrics_ > num_glyphs_ || table("hmtx")->length < 4 * num_metrics_ ||
      (loca_format != 0 && loca_format != 1)) {
    return false;
  }
  long_loca_ = loca_format == 1;
  state_.assign(num_glyphs_, GlyphState::Unknown);

  if (cff_) {
    if (table("CFF ") == nullptr || cff_is_cid_keyed()) {
      return false;
    }
  } else {
    // Every glyph's outline must lie within glyf: a viewer trusts loca.
    const Reader loca(table_bytes("loca"));
    const Table* glyf = table("glyf");
    const std::uint64_t entry = long_loca_ ? 4 : 2;
    if (glyf == nullptr || !loca.has(0, entry * (std::uint64_t{num_glyphs_} + 1))) {
      return false;
    }
    loca_.resize(num_glyphs_ + 1);
    for (std::uint32_t i = 0; i <= num_glyphs_; ++i) {
      loca_[i] = long_loca_ ? loca.u32(4 * std::uint64_t{i}) : 2 * loca.u16(2 * std::uint64_t{i});
      if (loca_[i] > glyf->length || (i > 0 && loca_[i] < loca_[i - 1])) {
        return false;
      }
    }
  }

  // The Unicode cmap: full repertoire (3,10) or (0,4+) format 12 first, then the BMP's
  // format 4 of (3,1) or (0,x).
  const Table* cmap = table("cmap");
  if (cmap != nullptr) {
    const Reader c(table_bytes("cmap"));
    const std::uint32_t n = c.u16(2);
    int best = 0;
    for (std::uint32_t i = 0; i < n && c.has(4 + 8 * std::uint64_t{i}, 8); ++i) {
      const std::uint32_t platform = c.u16(4 + 8 * i);
      const std::uint32_t encoding = c.u16(6 + 8 * i);
      const std::uint32_t at = c.u32(8 + 8 * i);
      const std::uint32_t format = c.u16(at);
      const bool unicode = platform == 0 || (platform == 3 && (encoding == 1 || encoding == 10));
      const int rank = !c.ok() || !unicode ? 0 : format == 12 ? 2 : format == 4 ? 1 : 0;
      if (rank > best) {
        best = rank;
        cmap_offset_ = cmap->offset + at;
        cmap_format_ = static_cast<int>(format);
      }
    }
  }
  read_metrics();
  // .notdef goes into every subset, so it must be sound too.
  return cff_ || glyph_check(0, 0);
}

// A CFF table whose Top DICT holds ROS (operator 12 30) is CID-keyed: a CIDFontType0
// would take the run's glyph ids for CIDs, which it maps through the charset.
bool FontProgram::cff_is_cid_keyed() const {
  const Reader c(table_bytes("CFF "));
  // Header, then the Name INDEX, then the Top DICT INDEX, whose first DICT is read.
  std::uint64_t at = c.u8(2);
  const auto skip_index = [&](std::uint64_t p, std::uint64_t& data, std::uint64_t& first,
                              std::uint64_t& second) {
    const std::uint32_t count = c.u16(p);
    if (count == 0) {
      data = first = second = 0;
      return p + 2;
    }
    const std::uint32_t size = c.u8(p + 2);
    if (size < 1 || size > 4) {
      return std::uint64_t{c.size()} + 1;
    }
    const auto offset = [&](std::uint64_t i) {
      std::uint32_t v = 0;
      for (std::uint32_t k = 0; k < size; ++k) {
        v = v << 8 | c.u8(p + 3 + i * size + k);
      }
      return std::uint64_t{v};
    };
    data = p + 3 + (std::uint64_t{count} + 1) * size - 1;  // offsets count from 1
    first = data + offset(0);
    second = data + offset(1);
    return data + offset(count);
  };
  std::uint64_t data = 0;
  std::uint64_t first = 0;
  std::uint64_t second = 0;
  at = skip_index(at, data, first, second);
  skip_index(at, data, first, second);
  if (!c.ok() || first == 0 || second > c.size() || first > second) {
    return true;  // unreadable: refused like a CID-keyed one
  }
  // DICT data: operands (28, 29, 30 real, 32..254) and operators (0..21, 12 x).
  for (std::uint64_t p = first; p < second;) {
    const std::uint32_t b = c.u8(p);
    if (b == 12) {
      if (c.u8(p + 1) == 30) {
        return true;
      }
      p += 2;
    } else if (b <= 21) {
      p += 1;
    } else if (b == 28) {
      p += 3;
    } else if (b == 29) {
      p += 5;
    } else if (b == 30) {
      ++p;
      while (p < second && (c.u8(p) & 0x0F) != 0x0F && (c.u8(p) >> 4) != 0x0F) {
        ++p;
      }
      ++p;
    } else if (b >= 247 && b <= 254) {
      p += 2;
    } else {
      p += 1;
    }
  }
  return !c.ok();
}

void FontProgram::read_metrics() {
  const Reader head(table_bytes("head"));
  const Reader hhea(table_bytes("hhea"));
  const Reader os2(table_bytes("OS/2"));
  const Reader post(table_bytes("post"));
  const double k = 1000.0 / units_per_em_;
  const auto em = [k](int v) { return static_cast<int>(std::lround(v * k)); };
  for (int i = 0; i < 4; ++i) {
    metrics_.bbox[i] = em(head.s16(36 + 2 * static_cast<std::uint64_t>(i)));
  }
  metrics_.ascent = em(hhea.s16(4));
  metrics_.descent = em(hhea.s16(6));
  metrics_.cap_height = metrics_.ascent;
  int weight = 400;
  if (os2.size() >= 78) {
    weight = static_cast<int>(os2.u16(4));
  }
  if (os2.size() >= 90 && os2.u16(0) >= 2 && os2.s16(88) > 0) {
    metrics_.cap_height = em(os2.s16(88));
  } else if (const std::uint32_t h = glyph_of('H'); h != 0 && !cff_) {
    const Reader g(glyph_data(h));
    if (g.size() >= 10) {
      metrics_.cap_height = em(g.s16(8));  // yMax of H
    }
  }
  weight = std::clamp(weight, 100, 900);
  metrics_.stem_v = static_cast<int>(std::lround(50.0 + (weight / 65.0) * (weight / 65.0)));
  bool fixed = false;
  if (post.size() >= 16) {
    metrics_.italic_angle = static_cast<std::int32_t>(post.u32(4)) / 65536.0;
    fixed = post.u32(12) != 0;
  }
  const bool italic = metrics_.italic_angle != 0.0 || (head.u16(44) & 2U) != 0;
  metrics_.flags = 4 | (fixed ? 1 : 0) | (italic ? 64 : 0);
}

std::uint32_t FontProgram::glyph_of(std::uint32_t u) const {
  if (cmap_offset_ == 0) {
    return 0;
  }
  const Reader c(std::string_view(data_).substr(cmap_offset_));
  std::uint32_t g = 0;
  if (cmap_format_ == 12) {
    const std::uint32_t groups = c.u32(12);
    for (std::uint32_t i = 0; i < groups && c.has(16 + 12 * std::uint64_t{i}, 12); ++i) {
      const std::uint64_t at = 16 + 12 * std::uint64_t{i};
      const std::uint32_t first = c.u32(at);
      const std::uint32_t last = c.u32(at + 4);
      if (u >= first && u <= last) {
        g = c.u32(at + 8) + (u - first);
        break;
      }
    }
  } else if (cmap_format_ == 4 && u <= 0xFFFF) {
    const std::uint32_t seg2 = c.u16(6);
    for (std::uint32_t i = 0; i < seg2 && c.ok(); i += 2) {
      const std::uint32_t end = c.u16(14 + i);
      const std::uint32_t start = c.u16(16 + seg2 + i);
      if (u > end || u < start) {
        continue;
      }
      const std::uint32_t delta = c.u16(16 + 2 * seg2 + i);
      const std::uint64_t range_at = 16 + 3 * std::uint64_t{seg2} + i;
      const std::uint32_t range = c.u16(range_at);
      if (range == 0) {
        g = (u + delta) & 0xFFFF;
      } else {
        g = c.u16(range_at + range + 2 * std::uint64_t{u - start});
        g = g == 0 ? 0 : (g + delta) & 0xFFFF;
      }
      break;
    }
  }
  return c.ok() && g < num_glyphs_ ? g : 0;
}

int FontProgram::width(std::uint32_t glyph) const {
  if (num_glyphs_ == 0) {
    return 0;
  }
  const Reader hmtx(table_bytes("hmtx"));
  const std::uint32_t i = std::min(glyph, num_metrics_ - 1);
  return static_cast<int>(std::lround(hmtx.u16(4 * std::uint64_t{i}) * 1000.0 / units_per_em_));
}

// Glyphs
// ======

std::string_view FontProgram::glyph_data(std::uint32_t glyph) const {
  const Table* glyf = table("glyf");
  if (glyf == nullptr || glyph + 1 >= loca_.size()) {
    return {};
  }
  return std::string_view(data_).substr(glyf->offset + loca_[glyph],
                                        loca_[glyph + 1] - loca_[glyph]);
}

bool FontProgram::components(std::uint32_t glyph, std::vector<std::uint32_t>& out) const {
  const Reader g(glyph_data(glyph));
  if (g.size() == 0 || g.s16(0) >= 0) {
    return g.ok();
  }
  constexpr std::uint32_t kWords = 0x0001;
  constexpr std::uint32_t kScale = 0x0008;
  constexpr std::uint32_t kMore = 0x0020;
  constexpr std::uint32_t kXyScale = 0x0040;
  constexpr std::uint32_t kTwoByTwo = 0x0080;
  std::uint64_t at = 10;
  std::uint32_t flags = kMore;
  while ((flags & kMore) != 0) {
    flags = g.u16(at);
    out.push_back(g.u16(at + 2));
    at += 4 + ((flags & kWords) != 0 ? 4 : 2);
    at += (flags & kScale) != 0      ? 2
          : (flags & kXyScale) != 0  ? 4
          : (flags & kTwoByTwo) != 0 ? 8
                                     : 0;
    if (!g.ok() || at > g.size()) {
      return false;
    }
  }
  return true;
}

bool FontProgram::glyph_ok(std::uint32_t glyph) {
  return glyph < num_glyphs_ && glyph <= 0xFFFF && (cff_ || glyph_check(glyph, 0));
}

// Depth-first through the components: a glyph met again while it is being visited is a
// loop, which would send a viewer round for ever.
bool FontProgram::glyph_check(std::uint32_t glyph, int depth) {
  if (glyph >= num_glyphs_ || depth > kMaxComponentDepth) {
    return false;
  }
  switch (state_[glyph]) {
    case GlyphState::Good:
      return true;
    case GlyphState::Bad:
    case GlyphState::Visiting:
      return false;
    case GlyphState::Unknown:
      break;
  }
  const Reader g(glyph_data(glyph));
  bool ok = true;
  if (g.size() > 0) {
    const int contours = g.s16(0);
    if (g.size() < 10) {
      ok = false;
    } else if (contours >= 0) {
      // End points and the instructions must be inside the glyph's bytes.
      const std::uint64_t ins = 10 + 2 * static_cast<std::uint64_t>(contours);
      ok = g.has(ins, 2) && g.has(ins + 2, g.u16(ins));
    } else {
      std::vector<std::uint32_t> parts;
      state_[glyph] = GlyphState::Visiting;
      ok = components(glyph, parts);
      for (std::size_t i = 0; ok && i < parts.size(); ++i) {
        ok = glyph_check(parts[i], depth + 1);
      }
    }
  }
  state_[glyph] = ok ? GlyphState::Good : GlyphState::Bad;
  return ok;
}

// The subset
// ==========

std::string FontProgram::program(const std::vector<bool>& used) const {
  std::vector<std::pair<std::uint32_t, std::string>> out;
  if (cff_) {
    // The whole face; a face of a collection becomes a file of its own.
    for (const Table& t : tables_) {
      out.emplace_back(t.tag, std::string(std::string_view(data_).substr(t.offset, t.length)));
    }
    return build_sfnt(make_tag("OTTO"), out);
  }
  // The used glyphs and, transitively, their components (checked by glyph_ok).
  std::vector<bool> keep(num_glyphs_, false);
  std::vector<std::uint32_t> work;
  work.push_back(0);  // .notdef stays, as viewers show it for missing codes
  for (std::uint32_t g = 0; g < num_glyphs_ && g < used.size(); ++g) {
    if (used[g]) {
      work.push_back(g);
    }
  }
  while (!work.empty()) {
    const std::uint32_t g = work.back();
    work.pop_back();
    if (g >= num_glyphs_ || keep[g]) {
      continue;
    }
    keep[g] = true;
    if (!components(g, work)) {
      return {};
    }
  }
  std::string glyf;
  std::string loca;
  const std::size_t align = long_loca_ ? 4 : 2;
  for (std::uint32_t g = 0; g <= num_glyphs_; ++g) {
    if (long_loca_) {
      put32(loca, static_cast<std::uint32_t>(glyf.size()));
    } else if (glyf.size() / 2 > 0xFFFF) {
      return {};
    } else {
      put16(loca, static_cast<std::uint32_t>(glyf.size() / 2));
    }
    if (g < num_glyphs_ && keep[g]) {
      glyf += glyph_data(g);
      glyf.append((align - glyf.size() % align) % align, '\0');
    }
  }
  out.emplace_back(make_tag("glyf"), std::move(glyf));
  out.emplace_back(make_tag("loca"), std::move(loca));
  for (const char* tag : {"head", "hhea", "maxp", "hmtx", "cvt ", "fpgm", "prep"}) {
    if (table(tag) != nullptr) {
      out.emplace_back(make_tag(tag), std::string(table_bytes(tag)));
    }
  }
  return build_sfnt(0x00010000U, out);
}

bool pdf_can_embed(std::string_view path, int face_index) {
  FontProgram p;
  return p.load(path, face_index);
}

// The fonts of a document
// =======================

struct PdfFontFiles::Font {
  std::uint64_t id = 0;
  std::string ps_name;
  bool readable = false;
  FontProgram program;
  int obj = 0;
  bool on_page = false;
  std::vector<bool> used;               // by glyph id
  std::vector<std::uint32_t> unicodes;  // the character first shown with each glyph
};

PdfFontFiles::PdfFontFiles() = default;
PdfFontFiles::~PdfFontFiles() = default;

int PdfFontFiles::use(const FontFileRef& ref, std::span<const GlyphPlace> glyphs,
                      const std::function<int()>& reserve) {
  std::size_t i = 0;
  while (i < fonts_.size() && fonts_[i]->id != ref.id) {
    ++i;
  }
  if (i == fonts_.size()) {
    auto f = std::make_unique<Font>();
    f->id = ref.id;
    f->ps_name = pdf_name(ref.ps_name);
    f->readable = f->program.load(ref.path, ref.face_index);
    fonts_.push_back(std::move(f));
  }
  Font& f = *fonts_[i];
  if (!f.readable) {
    return -1;
  }
  for (const GlyphPlace& g : glyphs) {
    if (!f.program.glyph_ok(g.glyph)) {
      return -1;
    }
  }
  if (f.obj == 0) {
    f.obj = reserve();
    f.used.assign(f.program.glyph_count(), false);
    f.unicodes.assign(f.program.glyph_count(), 0);
  }
  for (const GlyphPlace& g : glyphs) {
    f.used[g.glyph] = true;
    if (f.unicodes[g.glyph] == 0) {
      f.unicodes[g.glyph] = g.unicode;
    }
  }
  f.on_page = true;
  return static_cast<int>(i);
}

int PdfFontFiles::width(int font, std::uint32_t glyph) const {
  return fonts_[static_cast<std::size_t>(font)]->program.width(glyph);
}

void PdfFontFiles::append_resources(std::string& s) const {
  for (std::size_t i = 0; i < fonts_.size(); ++i) {
    if (fonts_[i]->on_page) {
      s += " /FF";
      append_int(s, static_cast<long long>(i) + 1);
      s += ' ';
      append_int(s, fonts_[i]->obj);
      s += " 0 R";
    }
  }
}

bool PdfFontFiles::opentype() const {
  return std::any_of(fonts_.begin(), fonts_.end(),
                     [](const auto& f) { return f->obj != 0 && f->program.cff(); });
}

void PdfFontFiles::begin_page() {
  for (const auto& f : fonts_) {
    f->on_page = false;
  }
}

namespace {

// "ABCDEF+": six letters from a hash of the name and the glyph set, so that the same
// text gives the same file and different subsets of a face different names.
std::string subset_tag(std::string_view name, const std::vector<bool>& used) {
  std::uint64_t h = 14695981039346656037ULL;
  const auto mix = [&h](std::uint32_t v) {
    h ^= v;
    h *= 1099511628211ULL;
  };
  for (const char c : name) {
    mix(static_cast<unsigned char>(c));
  }
  for (std::uint32_t g = 0; g < used.size(); ++g) {
    if (used[g]) {
      mix(g);
    }
  }
  std::string tag;
  for (int i = 0; i < 6; ++i) {
    tag += static_cast<char>('A' + h % 26);
    h /= 26;
  }
  return tag + "+";
}

// The ToUnicode CMap: runs of glyph ids whose characters follow each other as one
// bfrange (within one last byte of both), single glyphs as bfchar.
std::string to_unicode(const std::vector<bool>& used, const std::vector<std::uint32_t>& uni) {
  std::vector<std::string> chars;
  std::vector<std::string> ranges;
  const auto valid = [&](std::uint32_t g) {
    const std::uint32_t u = uni[g];
    return used[g] && u != 0 && u <= 0x10FFFF && (u < 0xD800 || u > 0xDFFF);
  };
  for (std::uint32_t g = 0; g < used.size(); ++g) {
    if (!valid(g)) {
      continue;
    }
    std::uint32_t last = g;
    while (last + 1 < used.size() && valid(last + 1) && uni[last + 1] == uni[last] + 1 &&
           uni[last + 1] <= 0xFFFF && ((last + 1) & 0xFF) != 0 && (uni[last + 1] & 0xFF) != 0) {
      ++last;
    }
    std::string e = "<";
    append_hex4(e, g);
    e += "> ";
    if (last > g) {
      e += '<';
      append_hex4(e, last);
      e += "> ";
      append_utf16(e, uni[g]);
      ranges.push_back(e);
    } else {
      append_utf16(e, uni[g]);
      chars.push_back(e);
    }
    g = last;
  }
  std::string s =
      "/CIDInit /ProcSet findresource begin\n12 dict begin\nbegincmap\n"
      "/CIDSystemInfo << /Registry (Adobe) /Ordering (UCS) /Supplement 0 >> def\n"
      "/CMapName /Adobe-Identity-UCS def\n/CMapType 2 def\n"
      "1 begincodespacerange\n<0000> <FFFF>\nendcodespacerange\n";
  const auto blocks = [&s](const std::vector<std::string>& entries, std::string_view kind) {
    for (std::size_t i = 0; i < entries.size(); i += kCmapBlock) {
      const std::size_t n = std::min(kCmapBlock, entries.size() - i);
      append_int(s, static_cast<long long>(n));
      s += " begin";
      s += kind;
      s += '\n';
      for (std::size_t k = i; k < i + n; ++k) {
        s += entries[k];
        s += '\n';
      }
      s += "end";
      s += kind;
      s += '\n';
    }
  };
  blocks(chars, "bfchar");
  blocks(ranges, "bfrange");
  s += "endcmap\nCMapName currentdict /CMap defineresource pop\nend\nend\n";
  return s;
}

}  // namespace

// Per font: the Type0 font, its CIDFont, the descriptor, the font program and the
// ToUnicode CMap. Glyph space is 1000 units per em for both CIDFont types.
void PdfFontFiles::write(const std::function<int()>& reserve,
                         const std::function<void(int, std::string_view)>& put) const {
  for (const auto& fp : fonts_) {
    const Font& f = *fp;
    if (f.obj == 0) {
      continue;
    }
    const FontProgram& p = f.program;
    const int cid = reserve();
    const int descriptor = reserve();
    const int file = reserve();
    const int unicode = reserve();
    // A CFF face goes in whole, and so carries no subset tag.
    const std::string name = p.cff() ? f.ps_name : subset_tag(f.ps_name, f.used) + f.ps_name;

    std::string s = "<< /Type /Font /Subtype /Type0 /BaseFont /" + name +
                    " /Encoding /Identity-H\n/DescendantFonts [";
    append_int(s, cid);
    s += " 0 R] /ToUnicode ";
    append_int(s, unicode);
    s += " 0 R >>\n";
    put(f.obj, s);

    s = p.cff() ? "<< /Type /Font /Subtype /CIDFontType0" : "<< /Type /Font /Subtype /CIDFontType2";
    s += " /BaseFont /" + name +
         "\n/CIDSystemInfo << /Registry (Adobe) /Ordering (Identity) /Supplement 0 >>\n"
         "/FontDescriptor ";
    append_int(s, descriptor);
    s += " 0 R";
    if (!p.cff()) {
      s += " /CIDToGIDMap /Identity";
    }
    s += "\n/W [";
    std::size_t on_line = 0;
    for (std::uint32_t g = 0; g < f.used.size(); ++g) {
      if (!f.used[g]) {
        continue;
      }
      s += on_line == 0 ? "\n" : " ";
      append_int(s, g);
      s += " [";
      append_int(s, p.width(g));
      while (g + 1 < f.used.size() && f.used[g + 1]) {
        ++g;
        s += ' ';
        append_int(s, p.width(g));
      }
      s += ']';
      on_line = (on_line + 1) % kWidthsPerLine;
    }
    s += "] >>\n";
    put(cid, s);

    const FontProgram::Metrics& m = p.metrics();
    s = "<< /Type /FontDescriptor /FontName /" + name + " /Flags ";
    append_int(s, m.flags);
    s += "\n/FontBBox [";
    for (int i = 0; i < 4; ++i) {
      append_int(s, m.bbox[i]);
      s += i < 3 ? " " : "]";
    }
    s += " /ItalicAngle ";
    append_int(s, std::lround(m.italic_angle));
    s += " /Ascent ";
    append_int(s, m.ascent);
    s += " /Descent ";
    append_int(s, m.descent);
    s += " /CapHeight ";
    append_int(s, m.cap_height);
    s += " /StemV ";
    append_int(s, m.stem_v);
    s += p.cff() ? "\n/FontFile3 " : "\n/FontFile2 ";
    append_int(s, file);
    s += " 0 R >>\n";
    put(descriptor, s);

    const std::string program = p.program(f.used);
    std::string entries;
    if (p.cff()) {
      entries = " /Subtype /OpenType";
    } else {
      entries = " /Length1 ";
      append_int(entries, static_cast<long long>(program.size()));
    }
    put(file, stream_object(program, entries));
    put(unicode, stream_object(to_unicode(f.used, f.unicodes), ""));
  }
}

}  // namespace zorvel
