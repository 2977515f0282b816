#include "drivers/pdf_type1.h"

#define ZLIB_CONST
#include <zlib.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include "core/format.h"
#include "core/platform.h"
#include "text/driver_font.h"
#include "text/ps_fonts.h"

namespace zorvel {
namespace {

// Font programs larger than this are not embedded (the URW programs are 30..160 kB).
constexpr long kMaxProgram = 4L << 20;
// Zeros that end the encrypted part of a Type 1 program.
constexpr int kTrailerZeros = 512;
// The folder of Debian's fonts-urw-base35.
constexpr std::string_view kUrwFolder = "/usr/share/fonts/type1/urw-base35/";

void append_int(std::string& s, long long v) {
  char tmp[kNumberBuffer];
  s.append(tmp, format_int(tmp, v));
}

void append_ref(std::string& s, int obj) {
  append_int(s, obj);
  s += " 0 R";
}

// Degrees as an integer where whole, else with one decimal.
void append_angle(std::string& s, double v) {
  const long long tenths = std::llround(v * 10.0);
  if (tenths % 10 == 0) {
    append_int(s, tenths / 10);
    return;
  }
  if (tenths < 0) {
    s += '-';
  }
  append_int(s, std::llabs(tenths) / 10);
  s += '.';
  append_int(s, std::llabs(tenths) % 10);
}

bool is_blank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

bool file_exists(const std::string& path) {
  std::FILE* f = platform::open_file(path, "rb");
  if (f == nullptr) {
    return false;
  }
  std::fclose(f);
  return true;
}

// The font descriptor of font `id`, referring to its program when there is one.
void write_descriptor(PdfObjects& out, int obj, int id, int program) {
  const PsFontDescriptor& d = ps_font_descriptor(id);
  out.begin(obj);
  std::string s = "<< /Type /FontDescriptor /FontName /";
  s += ps_font(id).name;
  s += " /Flags ";
  append_int(s, d.flags);
  s += "\n/FontBBox [";
  for (int i = 0; i < 4; ++i) {
    append_int(s, d.bbox[i]);
    s += i < 3 ? " " : "]";
  }
  s += " /ItalicAngle ";
  append_angle(s, d.italic_angle);
  s += " /Ascent ";
  append_int(s, d.ascent);
  s += " /Descent ";
  append_int(s, d.descent);
  s += "\n/CapHeight ";
  append_int(s, d.cap_height);
  s += " /XHeight ";
  append_int(s, d.x_height);
  s += " /StemV ";
  append_int(s, d.stem_v);
  if (program != 0) {
    s += " /FontFile ";
    append_ref(s, program);
  }
  s += " >>\nendobj\n";
  out.put(s);
}

// The program as a FontFile stream, deflated when `compress` (and deflate succeeds).
void write_program(PdfObjects& out, int obj, const Type1Program& p, bool compress) {
  std::string packed;
  if (compress) {
    uLongf size = compressBound(static_cast<uLong>(p.bytes.size()));
    packed.resize(size);
    if (compress2(reinterpret_cast<Bytef*>(packed.data()), &size,
                  reinterpret_cast<const Bytef*>(p.bytes.data()),
                  static_cast<uLong>(p.bytes.size()), Z_DEFAULT_COMPRESSION) == Z_OK) {
      packed.resize(size);
    } else {
      packed.clear();
      compress = false;
    }
  }
  const std::string& data = compress ? packed : p.bytes;
  out.begin(obj);
  std::string s = "<< /Length ";
  append_int(s, static_cast<long long>(data.size()));
  s += " /Length1 ";
  append_int(s, static_cast<long long>(p.length1));
  s += " /Length2 ";
  append_int(s, static_cast<long long>(p.length2));
  s += " /Length3 ";
  append_int(s, static_cast<long long>(p.length3));
  s += compress ? " /Filter /FlateDecode >>\nstream\n" : " >>\nstream\n";
  out.put(s);
  out.put(data);
  out.put("\nendstream\nendobj\n");
}

// " /name" of the glyph of `unicode` in font `id`.
void append_glyph_name(std::string& s, int id, std::uint32_t unicode) {
  s += " /";
  s += ps_glyph_name(id, unicode);
}

// The encoding of a font with extra codes: the text fonts' differences from the
// standard encoding (as the shared encoding of the PDF driver) with the extra codes
// among them in order; the symbolic fonts' extra codes over their built-in encoding.
void write_encoding(PdfObjects& out, int obj, int id, const PdfExtraCodes& extras) {
  const bool text = !ps_font(id).symbolic;
  out.begin(obj);
  std::string s = "<< /Type /Encoding /Differences [";
  std::size_t column = s.size();
  const auto item = [&](int code, std::uint32_t unicode) {
    if (s.size() - column > 72) {
      s += '\n';
      column = s.size();
    } else if (s.back() != '[') {
      s += ' ';
    }
    append_int(s, code);
    append_glyph_name(s, id, unicode);
  };
  const auto& entries = extras.entries();
  auto e = entries.begin();
  for (; e != entries.end() && e->code < kDriverFirstCode; ++e) {
    item(e->code, e->unicode);
  }
  if (text) {
    item('\'', 0x2019);
    item('`', 0x2018);
    item(127, ps_code_unicode(id, 127));
    for (int code = 128; code < kDriverFirstCode + kDriverCodes; ++code) {
      if (s.size() - column > 72) {
        s += '\n';
        column = s.size();
      }
      append_glyph_name(s, id, ps_code_unicode(id, code));
    }
  }
  for (; e != entries.end(); ++e) {
    item(e->code, e->unicode);
  }
  s += "] >>\nendobj\n";
  out.put(s);
}

}  // namespace

int PdfExtraCodes::code(std::uint32_t unicode) {
  for (const Entry& e : chars_) {
    if (e.unicode == unicode) {
      return e.code;
    }
  }
  if (ps_width(font_, unicode) < 0 || ps_glyph_name(font_, unicode).empty()) {
    return 0;
  }
  const int n = static_cast<int>(chars_.size());
  const int upper = ps_font(font_).symbolic ? 127 : kDriverFirstCode + kDriverCodes;
  const int code = n < kDriverFirstCode - 1 ? n + 1 : upper + n - (kDriverFirstCode - 1);
  if (code > 255) {
    return 0;
  }
  chars_.push_back({code, unicode});
  return code;
}

bool read_type1_program(const std::string& path, Type1Program& program) {
  std::unique_ptr<std::FILE, int (*)(std::FILE*)> f(platform::open_file(path, "rb"), &std::fclose);
  if (!f) {
    return false;
  }
  std::string bytes;
  char block[1 << 14];
  std::size_t n = 0;
  while ((n = std::fread(block, 1, sizeof block, f.get())) > 0) {
    bytes.append(block, n);
    if (bytes.size() > static_cast<std::size_t>(kMaxProgram)) {
      return false;
    }
  }
  if (std::ferror(f.get()) != 0 || bytes.rfind("%!", 0) != 0) {
    return false;
  }
  // The clear text ends after "eexec" and the line end that follows it.
  std::size_t clear = bytes.find("eexec");
  if (clear == std::string::npos) {
    return false;
  }
  clear += 5;
  while (clear < bytes.size() && is_blank(bytes[clear])) {
    ++clear;
  }
  // The trailer: 512 zeros, with line ends among them, before the last "cleartomark".
  const std::size_t mark = bytes.rfind("cleartomark");
  if (mark == std::string::npos || mark <= clear) {
    return false;
  }
  std::size_t start = mark;
  int zeros = 0;
  while (start > clear && zeros < kTrailerZeros) {
    const char c = bytes[start - 1];
    if (c == '0') {
      ++zeros;
    } else if (!is_blank(c)) {
      break;
    }
    --start;
  }
  if (zeros < kTrailerZeros || start <= clear) {
    return false;
  }
  program.bytes = std::move(bytes);
  program.length1 = clear;
  program.length2 = start - clear;
  program.length3 = program.bytes.size() - start;
  return true;
}

std::string find_type1_program(int id) {
  std::string file(ps_font(id).urw);
  file += ".t1";
  if (const char* dir = std::getenv("ZORVEL"); dir != nullptr && *dir != '\0') {
    std::string path(dir);
    path += "/fonts/";
    path += file;
    if (file_exists(path)) {
      return path;
    }
  }
  std::string path(kUrwFolder);
  path += file;
  return file_exists(path) ? path : std::string();
}

void write_pdf_standard_font(PdfObjects& out, int obj, int id, const PdfExtraCodes& extras,
                             int text_encoding, bool compress) {
  const PsFontInfo& font = ps_font(id);
  const int encoding = extras.empty() ? (font.symbolic ? 0 : text_encoding) : out.reserve();
  int descriptor = 0;
  int program_obj = 0;
  Type1Program program;
  if (!font.standard14) {
    descriptor = out.reserve();
    const std::string path = find_type1_program(id);
    if (!path.empty() && read_type1_program(path, program)) {
      program_obj = out.reserve();
    }
  }

  // The widths of codes 32..187 and of the extra codes.
  int first = kDriverFirstCode;
  int last = kDriverFirstCode + kDriverCodes - 1;
  int widths[256] = {};
  for (int code = first; code <= last; ++code) {
    widths[code] = ps_code_width(id, code);
  }
  for (const PdfExtraCodes::Entry& e : extras.entries()) {
    widths[e.code] = std::max(ps_width(id, e.unicode), 0);
    first = std::min(first, e.code);
    last = std::max(last, e.code);
  }

  out.begin(obj);
  std::string s = "<< /Type /Font /Subtype /Type1 /BaseFont /";
  s += font.name;
  if (encoding != 0) {
    s += " /Encoding ";
    append_ref(s, encoding);
  }
  s += "\n/FirstChar ";
  append_int(s, first);
  s += " /LastChar ";
  append_int(s, last);
  s += " /Widths [";
  for (int code = first; code <= last; ++code) {
    s += (code - first) % 16 == 0 ? "\n" : " ";
    append_int(s, widths[code]);
  }
  s += ']';
  if (descriptor != 0) {
    s += " /FontDescriptor ";
    append_ref(s, descriptor);
  }
  s += " >>\nendobj\n";
  out.put(s);

  if (!extras.empty()) {
    write_encoding(out, encoding, id, extras);
  }
  if (descriptor != 0) {
    write_descriptor(out, descriptor, id, program_obj);
  }
  if (program_obj != 0) {
    write_program(out, program_obj, program, compress);
  }
}

}  // namespace zorvel
