// The layout of strings with instructions: the same character step as plain strings
// (lay_code), with the working state changed between characters by the instruction
// characters, the {...} commands and the national shifts. Measuring and drawing both
// come from this one loop.

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <string_view>
#include <utility>

#include "axes/symbols.h"
#include "core/global_block.h"
#include "core/messages.h"
#include "text/font.h"
#include "text/mapping.h"
#include "text/mix.h"
#include "text/text.h"

namespace zorvel {
namespace {

// Warnings of bad commands.
constexpr int kBadValue = 43;
constexpr int kBadTab = 44;
constexpr int kNoInteger = 45;
constexpr int kUnknownCommand = 46;
constexpr int kBadNational = 18;

// Limits of command values: far beyond any sensible text, small enough that nothing
// derived from them overflows.
constexpr double kMaxHeightFactor = 100.0;
constexpr double kMaxWidthFactor = 2.0;
constexpr double kMaxShift = 100.0;  // {R} and {M}, in heights
constexpr int kMaxCode = 0x10FFFF;
constexpr int kCommandText = 40;  // characters of a command quoted in a warning

// Under- and overlines: distance below the base line and above the capitals, and
// thickness, in heights of the piece; at least one plot unit thick.
constexpr double kUnderDrop = 0.15;
constexpr double kOverRise = 0.12;
constexpr double kLineThick = 0.07;

// The multiplication sign: a letter of the MATH alphabet.
constexpr int kTimesCode = 't';

// The letters of the national shifts and their ISO 8859-1 codes, one row per eushft
// keyword (GERM, ACUT, GRAV, CIRC, TILD, CEDI, RING, SLAS).
struct Accent {
  char letter;
  int code;
};
constexpr Accent kGerm[] = {{'a', 228}, {'o', 246}, {'u', 252}, {'A', 196},
                            {'O', 214}, {'U', 220}, {'s', 223}};
constexpr Accent kAcut[] = {{'a', 225}, {'e', 233}, {'i', 237}, {'o', 243}, {'u', 250}, {'y', 253},
                            {'A', 193}, {'E', 201}, {'I', 205}, {'O', 211}, {'U', 218}, {'Y', 221}};
constexpr Accent kGrav[] = {{'a', 224}, {'e', 232}, {'i', 236}, {'o', 242}, {'u', 249},
                            {'A', 192}, {'E', 200}, {'I', 204}, {'O', 210}, {'U', 217}};
constexpr Accent kCirc[] = {{'a', 226}, {'e', 234}, {'i', 238}, {'o', 244}, {'u', 251},
                            {'A', 194}, {'E', 202}, {'I', 206}, {'O', 212}, {'U', 219}};
constexpr Accent kTild[] = {{'a', 227}, {'n', 241}, {'o', 245}, {'A', 195}, {'N', 209}, {'O', 213}};
constexpr Accent kCedi[] = {{'c', 231}, {'C', 199}};
constexpr Accent kRing[] = {{'a', 229}, {'A', 197}};
constexpr Accent kSlas[] = {{'o', 248}, {'O', 216}};

struct AccentTable {
  const Accent* rows;
  int n;
};
constexpr AccentTable kAccents[] = {{kGerm, 7}, {kAcut, 12}, {kGrav, 10}, {kCirc, 10},
                                    {kTild, 6}, {kCedi, 2},  {kRing, 2},  {kSlas, 2}};

int accented(int kind, int letter) {
  const AccentTable& t = kAccents[kind];
  for (int i = 0; i < t.n; ++i) {
    if (t.rows[i].letter == letter) {
      return t.rows[i].code;
    }
  }
  return 0;
}

// The role of code c in the present state.
int role_of(const TextState& t, int c) {
  const MixState& m = t.mix;
  if (c < 0 || c >= 128) {
    return kMixNone;
  }
  const int r = m.role[static_cast<std::size_t>(c)];
  if (r >= kMixNational) {
    // The library's labels (numbers, dates) hold no national letters, and their signs
    // may be shift characters.
    return m.label ? kMixNone : r;
  }
  if (!m.on && !m.label) {
    return kMixNone;
  }
  if (r == kMixNone && m.label) {
    // The library's labels fall back on control codes for roles without a character.
    if (c == 1 && m.chars[kMixRaise] == 0) {
      return kMixRaise;
    }
    if (c == 2 && m.chars[kMixReset] == 0) {
      return kMixReset;
    }
    if (c == 3 && m.chars[kMixCommand] == 0) {
      return kMixCommand;
    }
  }
  return r;
}

// A command's argument as text: ASCII only, at most 31 characters.
struct Argument {
  char text[32];
  int n = 0;
  bool ok = true;
};

bool parse_int(const Argument& a, int& v) {
  const char* end = a.text + a.n;
  const char* p = a.text;
  if (p != end && *p == '+') {
    ++p;
  }
  const auto r = std::from_chars(p, end, v);
  return a.ok && a.n > 0 && r.ec == std::errc() && r.ptr == end;
}

bool parse_double(const Argument& a, double& v) {
  const char* end = a.text + a.n;
  const char* p = a.text;
  if (p != end && *p == '+') {
    ++p;
  }
  const auto r = std::from_chars(p, end, v);
  if (r.ec == std::errc::result_out_of_range) {
    v = HUGE_VAL;  // a number all the same, which no range admits
  }
  return a.ok && a.n > 0 && (r.ec == std::errc() || r.ec == std::errc::result_out_of_range) &&
         r.ptr == end;
}

bool font_type_known(int type) {
  switch (type) {
    case kFontZoralf:
    case kFontComplx:
    case kFontSimplx:
    case kFontDuplx:
    case kFontTriplx:
    case kFontGothic:
    case kFontHelve:
    case kFontHelves:
    case kFontHelvet:
    case kFontSerif:
      return true;
    default:
      return false;
  }
}

constexpr int kFontTypes = 10;

// An open under- or overline: the index of its rule glyph and its colour.
struct OpenRule {
  int index = -1;
  int colour = -1;
};

class MixLayout {
 public:
  MixLayout(GlobalBlock& g, const CodeString& codes, TextLayout& out)
      : g_(g), t_(g.text), w_(g.text.work), m_(g.text.mix), codes_(codes), out_(out) {
    base_slant_ = w_.slant;
  }

  void run() {
    // Every code gives at most one glyph and opens at most two rules.
    const auto need = static_cast<std::size_t>(3 * kMaxTextCodes + 2);
    if (out_.glyphs.capacity() < need) {
      out_.glyphs.reserve(need);
    }
    ascent_ = t_.height;
    for (int i = 0; i < codes_.n; ++i) {
      const int c = code(i);
      switch (const int r = role_of(t_, c)) {
        case kMixNone:
          character(c);
          break;
        case kMixRaise:
        case kMixLower:
          w_.shift += (r == kMixRaise ? m_.raise : -m_.lower) * t_.height * w_.size;
          level_ *= m_.size;
          w_.size = level_ * factor_;
          break;
        case kMixReset:
          w_.shift = 0.0;
          level_ = 1.0;
          factor_ = 1.0;
          w_.size = 1.0;
          w_.alphabet = t_.base_alphabet;
          break;
        case kMixCommand:
          i = command(i);
          break;
        default:
          if (r >= kMixNational) {
            i = national(i, r - kMixNational);
          } else {
            w_.alphabet = r - kMixAlphabet;
          }
          break;
      }
    }
    close_rule(under_);
    close_rule(over_);
    switch_font(-1);
    out_.end = pen_;
    out_.ascent = ascent_;
    out_.descent = descent_;
  }

 private:
  int code(int i) const { return codes_.code[static_cast<std::size_t>(i)]; }

  // Places a laid glyph: pen, measured length, missing characters, box, lines.
  void place(LaidGlyph& e) {
    pen_ += e.lead;
    e.pen = pen_;
    pen_ += e.advance;
    const int extent = round_int(std::fabs(pen_) - e.gap);
    if (first_ || extent > out_.length) {
      out_.length = extent;
    }
    first_ = false;
    if (e.missing && out_.missing < 0) {
      out_.missing = e.code;
    }
    if (e.kind != GlyphKind::Blank || e.width > 0.0) {
      include(e.raise, e.raise + t_.height * e.size);
    }
    extend_rule(under_, e, false);
    extend_rule(over_, e, true);
  }

  void include(double low, double high) {
    ascent_ = std::max(ascent_, high);
    descent_ = std::max(descent_, -low);
  }

  // A glyph for the next character: the rules of the piece opened first.
  LaidGlyph& next_glyph() {
    open_rule(under_, under_on_, false);
    open_rule(over_, over_on_, true);
    return out_.glyphs.emplace_back();
  }

  void character(int c) {
    // A device font slants by its italic face.
    const int alphabet = w_.alphabet;
    if (italic_ && t_.font.mode == FontMode::Driver && alphabet == kAlphabetStan) {
      w_.alphabet = kAlphabetItal;
    }
    LaidGlyph& e = next_glyph();
    lay_code(g_, e, c);
    note_font(e);
    place(e);
    w_.alphabet = alphabet;
  }

  // A code laid in another character set or alphabet (national letters, the
  // multiplication sign), the working state put back afterwards.
  void foreign(int c, int charset, int alphabet) {
    const int keep_set = t_.charset;
    const int keep_alphabet = w_.alphabet;
    t_.charset = charset;
    if (alphabet >= 0) {
      w_.alphabet = alphabet;
    }
    character(c);
    t_.charset = keep_set;
    w_.alphabet = keep_alphabet;
  }

  // An empty cell that moves the pen by d.
  void move(double d) {
    LaidGlyph& e = out_.glyphs.emplace_back();
    e.code = ' ';
    e.advance = d;
    e.raise = w_.shift;
    e.size = w_.size;
    e.colour = w_.colour;
    pen_ += d;
    e.pen = pen_ - d;
    const int extent = round_int(std::fabs(pen_));
    if (first_ || extent > out_.length) {
      out_.length = extent;
    }
    first_ = false;
    extend_rule(under_, e, false);
    extend_rule(over_, e, true);
  }

  void symbol(int n) {
    LaidGlyph& e = next_glyph();
    select_alphabet(g_, w_.alphabet);
    e.code = ' ';
    e.font_code = n;
    e.kind = GlyphKind::Symbol;
    e.raise = w_.shift;
    e.size = w_.size;
    e.width = t_.height * w_.size;
    e.gap = t_.font.gap * w_.size;
    e.advance = e.width + e.gap;
    e.colour = w_.colour;
    place(e);
  }

  // Glyphs of a font of a {F} command draw from that font's tables.
  void note_font(LaidGlyph& e) const {
    if (swapped_ >= 0 && (e.kind == GlyphKind::Stroke || e.kind == GlyphKind::Outline)) {
      e.slot = &m_.fonts[static_cast<std::size_t>(swapped_)]
                    .alphabets[static_cast<std::size_t>(e.alphabet)];
    }
  }

  // Makes font `type` the one that lays out characters (-1: the string's own). The
  // fonts trade places with the loaded one, so glyphs laid meanwhile point into the
  // kept record, where their tables are again once the string's font is back.
  void switch_font(int type) {
    if (swapped_ >= 0) {
      std::swap(t_.font, m_.fonts[static_cast<std::size_t>(swapped_)]);
      swapped_ = -1;
    }
    t_.font.selected = -1;
    if (type < 0 || (type == t_.font.type && t_.font.mode == FontMode::Stroke)) {
      return;
    }
    std::size_t k = 0;
    while (k < m_.fonts.size() && m_.fonts[k].type != type) {
      ++k;
    }
    if (k == m_.fonts.size()) {
      if (m_.fonts.capacity() < static_cast<std::size_t>(kFontTypes)) {
        m_.fonts.reserve(kFontTypes);  // before the first: records never move
      }
      load_font(m_.fonts.emplace_back(), type);
    }
    std::swap(t_.font, m_.fonts[k]);
    t_.font.selected = -1;
    swapped_ = static_cast<int>(k);
  }

  // Lines
  // =====

  void open_rule(OpenRule& r, bool on, bool over) {
    if (!on) {
      return;
    }
    if (r.index >= 0 && r.colour == w_.colour) {
      return;
    }
    close_rule(r);
    r.index = static_cast<int>(out_.glyphs.size());
    r.colour = w_.colour;
    LaidGlyph& e = out_.glyphs.emplace_back();
    e.code = ' ';
    e.kind = GlyphKind::Rule;
    e.pen = pen_;
    e.size = w_.size;
    e.colour = w_.colour;
    e.thick = std::max(1.0, kLineThick * t_.height * w_.size);
    // Placed by the characters it spans: below the lowest, above the highest.
    e.raise = over ? -1e300 : 1e300;
    e.width = 0.0;  // grows with the characters
  }

  // The line reaches to the end of the glyph's cell.
  void extend_rule(OpenRule& r, const LaidGlyph& e, bool over) {
    if (r.index < 0) {
      return;
    }
    LaidGlyph& rule = out_.glyphs[static_cast<std::size_t>(r.index)];
    rule.width = std::max(rule.width, e.pen + e.advance - e.gap - rule.pen);
    if (e.kind == GlyphKind::Blank && e.width == 0.0) {
      return;  // a move
    }
    const double h = t_.height * e.size;
    if (over) {
      rule.raise = std::max(rule.raise, e.raise + (1.0 + kOverRise) * h);
    } else {
      rule.raise = std::min(rule.raise, e.raise - kUnderDrop * h - rule.thick);
    }
  }

  // Ends a line; its place is final, and the box takes it in.
  void close_rule(OpenRule& r) {
    if (r.index >= 0) {
      const LaidGlyph& rule = out_.glyphs[static_cast<std::size_t>(r.index)];
      include(rule.raise, rule.raise + rule.thick);
    }
    r.index = -1;
  }

  // Commands
  // ========

  // Warns about the command from codes i to last (the braces included).
  void warn_command(int number, int i, int last) {
    char text[kCommandText];
    int n = 0;
    for (int k = i; k <= last && k < codes_.n && n < kCommandText - 1; ++k) {
      const int c = code(k);
      text[n++] = c >= 32 && c < 127 ? static_cast<char>(c) : '?';
    }
    warn(g_, number, std::string_view(text, static_cast<std::size_t>(n)));
  }

  // Runs the command that starts at code i; returns the index of its last code.
  int command(int i) {
    const int self = code(i);
    if (i + 1 < codes_.n && code(i + 1) == self) {
      foreign(self, kCharsetStan, -1);  // "{{": the character itself
      return i + 1;
    }
    int close = i + 1;
    while (close < codes_.n && code(close) != '}') {
      ++close;
    }
    if (close >= codes_.n) {
      // No end: the rest is drawn as it stands.
      warn_command(kUnknownCommand, i, codes_.n - 1);
      foreign(self, kCharsetStan, -1);
      return i;
    }
    Argument a;
    for (int k = i + 2; k < close; ++k) {
      const int c = code(k);
      if (c <= 32 || c >= 127 || a.n >= static_cast<int>(sizeof a.text) - 1) {
        a.ok = false;
        break;
      }
      a.text[a.n++] = static_cast<char>(c);
    }
    a.text[a.n] = '\0';
    const int letter = close > i + 1 ? code(i + 1) : 0;
    const int problem = run_command(letter >= 'a' && letter <= 'z' ? letter - 32 : letter, a);
    if (problem != 0) {
      warn_command(problem, i, close);
    }
    return close;
  }

  // Runs a command letter with its argument; returns 0 or the number of the warning.
  int run_command(int letter, const Argument& a) {
    int n = 0;
    double f = 0.0;
    switch (letter) {
      case 'H':
        if (!parse_double(a, f)) {
          return kNoInteger;
        }
        if (!(f > 0.0 && f <= kMaxHeightFactor)) {
          return kBadValue;
        }
        factor_ = f;
        w_.size = level_ * factor_;
        return 0;
      case 'W':
        if (!parse_double(a, f)) {
          return kNoInteger;
        }
        if (!(f > 0.0 && f < kMaxWidthFactor)) {
          return kBadValue;
        }
        w_.width_factor = f;
        t_.font.selected = -1;
        return 0;
      case 'R':
      case 'M':
        if (!parse_double(a, f)) {
          return kNoInteger;
        }
        if (!(std::fabs(f) <= kMaxShift)) {
          return kBadValue;
        }
        if (letter == 'R') {
          w_.shift += f * t_.height * w_.size;
        } else {
          move(f * t_.height * w_.size);
        }
        return 0;
      case 'C':
      case 'F':
        if (a.n == 0) {
          if (letter == 'C') {
            w_.colour = -1;
          } else {
            switch_font(-1);
          }
          return 0;
        }
        if (!parse_int(a, n)) {
          return kNoInteger;
        }
        if (letter == 'C') {
          if (n < 0) {
            return kBadValue;
          }
          w_.colour = n;
        } else {
          if (!font_type_known(n)) {
            return kBadValue;
          }
          switch_font(n);
        }
        return 0;
      case 'T':
        if (!parse_int(a, n)) {
          return kNoInteger;
        }
        if (n < 1 || n > kMaxTabs || n > m_.tab_count) {
          return kBadTab;
        }
        move(m_.tabs[static_cast<std::size_t>(n - 1)] - pen_);
        return 0;
      case 'S':
      case 'N':
        if (!parse_int(a, n)) {
          return kNoInteger;
        }
        if (letter == 'S') {
          if (!symbol_defined(g_, n)) {
            return kBadValue;
          }
          symbol(n);
        } else {
          if (n < kBlank || n > kMaxCode) {
            return kBadValue;
          }
          character(n);
        }
        return 0;
      case 'D':
      case 'I':
      case 'U':
      case 'O':
        if (a.n != 0 || !a.ok) {
          return kBadValue;
        }
        if (letter == 'D') {
          foreign(kTimesCode, kCharsetStan, kAlphabetMath);
        } else if (letter == 'I') {
          italic_ = !italic_;
          w_.slant = base_slant_ + (italic_ ? 1.0 / kItalicRise : 0.0);
        } else if (letter == 'U') {
          under_on_ = !under_on_;
          close_rule(under_);
        } else {
          over_on_ = !over_on_;
          close_rule(over_);
        }
        return 0;
      default:
        return kUnknownCommand;
    }
  }

  // A national shift at code i: the next letter accented. Returns the last code used.
  int national(int i, int kind) {
    if (i + 1 >= codes_.n) {
      warn(g_, kBadNational, std::string_view(" "));
      return i;
    }
    const int c = code(i + 1);
    const int accent = accented(kind, c);
    if (accent == 0) {
      const char text[2] = {c >= 32 && c < 127 ? static_cast<char>(c) : '?', '\0'};
      warn(g_, kBadNational, std::string_view(text, 1));
      character(c);
    } else {
      foreign(accent, kCharsetIso1, -1);
    }
    return i + 1;
  }

  GlobalBlock& g_;
  TextState& t_;
  TextWork& w_;
  MixState& m_;
  const CodeString& codes_;
  TextLayout& out_;
  double pen_ = 0.0;
  bool first_ = true;
  double level_ = 1.0;   // size of the raise and lower levels
  double factor_ = 1.0;  // {H}
  double base_slant_ = 0.0;
  bool italic_ = false;
  bool under_on_ = false;
  bool over_on_ = false;
  OpenRule under_;
  OpenRule over_;
  int swapped_ = -1;  // index of the {F} font in use, -1 the string's own
  double ascent_ = 0.0;
  double descent_ = 0.0;
};

}  // namespace

void mix_defaults(MixState& m) {
  m.on = false;
  m.label = false;
  // The national shifts of eushft (a routine of any level) are kept, as settings made
  // before zorini are; the default instruction characters give way to them.
  std::array<char, kMixRoles> kept{};
  std::copy(m.chars.begin() + kMixNational, m.chars.end(), kept.begin() + kMixNational);
  m.chars.fill(0);
  m.role.fill(kMixNone);
  const std::pair<int, char> defaults[] = {
      {kMixRaise, '['}, {kMixLower, ']'}, {kMixReset, '$'}, {kMixCommand, '{'}};
  for (const auto& [role, c] : defaults) {
    if (std::find(kept.begin(), kept.end(), c) == kept.end()) {
      m.chars[static_cast<std::size_t>(role)] = c;
      m.role[static_cast<std::size_t>(c)] = static_cast<std::uint8_t>(role);
    }
  }
  m.national = false;
  for (int r = kMixNational; r < kMixRoles; ++r) {
    const char c = kept[static_cast<std::size_t>(r)];
    if (c != 0) {
      m.chars[static_cast<std::size_t>(r)] = c;
      m.role[static_cast<std::size_t>(c)] = static_cast<std::uint8_t>(r);
      m.national = true;
    }
  }
  m.raise = 0.6;
  m.lower = 0.35;
  m.size = 0.7;
  m.tabs.fill(0);
  m.tab_count = 0;
  m.background = -1;
  m.margin = -1;
}

bool has_instructions(const TextState& t, const CodeString& codes) {
  const MixState& m = t.mix;
  if (!m.on && !m.label && !m.national) {
    return false;
  }
  for (int i = 0; i < codes.n; ++i) {
    const int c = codes.code[static_cast<std::size_t>(i)];
    if (c < 128 && (c < 32 || m.role[static_cast<std::size_t>(c)] != kMixNone) &&
        role_of(t, c) != kMixNone) {
      return true;
    }
  }
  return false;
}

void layout_instructions(GlobalBlock& g, const CodeString& codes, TextLayout& out) {
  MixLayout(g, codes, out).run();
}

}  // namespace zorvel
