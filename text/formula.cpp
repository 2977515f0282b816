// Formulas: the dollars of a string are found, the source of every formula is expanded
// (texmac) and parsed in one pass into boxes (TexNode), the boxes are measured bottom-up
// and placed top-down, and every glyph, rule and drawn sign becomes a laid glyph at its
// place. Recursion follows the nesting of the source, which the parser bounds by
// kTexMaxNesting; the boxes are bounded by kTexMaxBoxes. Glue is in ems of the style,
// one em being kEm character heights.

#include <algorithm>
#include <utility>
#include <cmath>
#include <cstring>
#include <string_view>

#include "core/format.h"
#include "core/global_block.h"
#include "core/messages.h"
#include "text/font.h"
#include "text/formula.h"

namespace zorvel {
namespace {

// Dimensions in character heights (the capitals' height, plot units height - 1).
constexpr double kEm = 1.45;           // one em: the capitals are 0.69 em high
constexpr double kAxis = 0.45;         // the middle of + and -, where fractions sit
constexpr double kXHeight = 0.67;      // lower-case letters
constexpr double kRule = 0.055;        // fraction bars and radicals of filled fonts
constexpr double kRuleBox = 0.05;      // the room a bar drawn with the pen takes
constexpr double kGapShare = 0.5;      // share of the font's character gap in formulas
constexpr double kBold = 0.04;         // offset of the second print of bold characters
constexpr double kBigOpScale = 1.4;    // sums and products in display style
constexpr double kIntegralScale = 1.3; // integrals in display style
constexpr double kItalicKern = 0.1;    // superscripts of italic letters move right
constexpr double kStyleSize[4] = {1.0, 1.0, 0.7, 0.5};
constexpr int kMaxColumns = 32;

// Spacing between atoms by class (left row, right column): 1 thin, 2 medium, 3 thick;
// negative only in display and text style.
constexpr std::int8_t kSpacing[8][8] = {
    {0, 1, -2, -3, 0, 0, 0, -1},      {1, 1, 0, -3, 0, 0, 0, -1},
    {-2, -2, 0, 0, -2, 0, 0, -2},     {-3, -3, 0, 0, -3, 0, 0, -3},
    {0, 0, 0, 0, 0, 0, 0, 0},         {0, 1, -2, -3, 0, 0, 0, -1},
    {-1, -1, 0, -1, -1, -1, -1, -1},  {-1, 1, -2, -3, -1, 0, -1, -1},
};

// Environments of \begin.
enum TexEnv : int { kEnvMatrix, kEnvPmatrix, kEnvBmatrix, kEnvBbmatrix, kEnvVmatrix,
                    kEnvVvmatrix, kEnvCases };
constexpr std::string_view kEnvNames[] = {"matrix",  "pmatrix", "bmatrix", "Bmatrix",
                                          "vmatrix", "Vmatrix", "cases"};

// The delimiters of an environment (kShapeNone: none), left and right.
std::pair<int, int> env_delimiters(int env) {
  switch (env) {
    case kEnvPmatrix:
      return {kShapeParenL, kShapeParenR};
    case kEnvBmatrix:
      return {kShapeBracketL, kShapeBracketR};
    case kEnvBbmatrix:
      return {kShapeBraceL, kShapeBraceR};
    case kEnvCases:
      return {kShapeBraceL, kShapeNone};
    case kEnvVmatrix:
      return {kShapeVert, kShapeVert};
    case kEnvVvmatrix:
      return {kShapeDoubleVert, kShapeDoubleVert};
    default:
      return {kShapeNone, kShapeNone};
  }
}

// Why a list ended.
enum class Stop { End, Brace, Amp, Row, Right, EnvEnd };

int sup_style(int s) { return s <= 1 ? 2 : 3; }
int frac_style(int s) { return s == 0 ? 1 : s == 1 ? 2 : 3; }

bool is_letter(int c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

// The formula engine for one string: parser, measuring and placing share its state.
class Formula {
 public:
  Formula(GlobalBlock& g, TextLayout& out)
      : g_(g), t_(g.text), tx_(g.text.tex), out_(out) {}

  bool run(const CodeString& codes);

 private:
  // Warnings: the first one ends the formula work.
  void syntax(std::string_view what, int at);
  void unknown(std::string_view name);
  void complex();

  // Source
  bool expand(const std::int32_t* codes, int n);
  int peek(int k = 0) const { return pos_ + k < n_ ? src_[pos_ + k] : -1; }
  void skip_spaces() {
    while (pos_ < n_ && src_[pos_] == ' ') {
      ++pos_;
    }
  }
  std::string_view read_name();

  // Parser
  int add(TexKind kind);
  void append(int list, int& last, int node);
  int parse_list(int font, bool group, Stop& stop);
  int parse_arg(int font);
  int parse_atom(int font);
  int parse_command(int font, int& last_in_list);
  int make_char(int code, int font);
  int read_delimiter();
  int parse_environment(int font);
  int attach_script(int list, int& last, int& before_last, bool sup, int font);

  // Layout
  double em(int s) const { return kEm * h1_ * kStyleSize[s]; }
  double axis(int s) const { return kAxis * h1_ * kStyleSize[s]; }
  double xheight(int s) const { return kXHeight * h1_ * kStyleSize[s]; }
  void measure(int id, int s);
  void measure_char(TexNode& n, int s, double scale);
  void measure_list(TexNode& n, int s);
  void measure_scripts(TexNode& n, int s);
  void measure_op(TexNode& n, int s);
  void measure_accent(TexNode& n, int s);
  void measure_matrix(TexNode& n, int s);
  double delimiter_width(int shape, double size, int s) const;
  void emit(int id, double x, double y, int s);
  void emit_shape(int shape, double x, double y, double w, double h);
  void emit_rule(double x, double y, double w);
  void place(const LaidGlyph& proto, double x, double y);

  GlobalBlock& g_;
  TextState& t_;
  TexState& tx_;
  TextLayout& out_;
  const std::int32_t* src_ = nullptr;
  int n_ = 0;
  int pos_ = 0;
  int base_ = 0;        // position of the formula in the string, for the warnings
  int depth_ = 0;
  bool failed_ = false;
  char name_[kTexMaxMacroName + 2] = {};

  double h1_ = 0.0;     // the capitals' height
  double theta_ = 0.0;  // rule thickness
  bool pen_rules_ = false;  // stroke fonts: bars and signs drawn as lines
  double x0_ = 0.0;     // pen at the start of the formula
  double rpen_ = 0.0;   // where the renderer's pen stands after the glyphs so far
};

// Warnings
// ========

void Formula::syntax(std::string_view what, int at) {
  if (failed_) {
    return;
  }
  failed_ = true;
  char num[kNumberBuffer + 1];
  num[0] = ' ';
  const int len = static_cast<int>(format_int(num + 1, base_ + at + 1) - num);
  warn(g_, kTexSyntax, what, std::string_view(num, static_cast<std::size_t>(len)));
}

void Formula::unknown(std::string_view name) {
  if (!failed_) {
    failed_ = true;
    warn(g_, kTexUnknown, name);
  }
}

void Formula::complex() {
  if (!failed_) {
    failed_ = true;
    warn(g_, kTexComplex);
  }
}

// Source
// ======

// The command name after a backslash at pos_ (moved past it): letters, or one other
// character. Longer names are cut (they are unknown anyway).
std::string_view Formula::read_name() {
  ++pos_;  // the backslash
  int len = 0;
  if (pos_ < n_ && is_letter(src_[pos_])) {
    while (pos_ < n_ && is_letter(src_[pos_])) {
      if (len < kTexMaxMacroName) {
        name_[len++] = static_cast<char>(src_[pos_]);
      }
      ++pos_;
    }
  } else if (pos_ < n_) {
    const int c = src_[pos_++];
    name_[len++] = c > 32 && c < 127 ? static_cast<char>(c) : ' ';
  }
  return {name_, static_cast<std::size_t>(len)};
}

// Replaces the macros of texmac in codes[0, n) into tx_.source, rescanning every
// replacement (so macros may use macros); recursion ends at kTexMaxExpansions or
// kTexMaxSource with warning 203.
bool Formula::expand(const std::int32_t* codes, int n) {
  std::vector<std::int32_t>& work = tx_.source;
  std::vector<std::int32_t>& next = tx_.expand;
  work.assign(codes, codes + n);
  int expansions = 0;
  int i = 0;
  while (i < static_cast<int>(work.size())) {
    if (work[static_cast<std::size_t>(i)] != '\\') {
      ++i;
      continue;
    }
    int j = i + 1;
    while (j < static_cast<int>(work.size()) && is_letter(work[static_cast<std::size_t>(j)])) {
      ++j;
    }
    if (j == i + 1) {
      i += 2;  // an escaped character
      continue;
    }
    const TexMacro* m = nullptr;
    if (j - i - 1 <= kTexMaxMacroName) {
      for (const TexMacro& mac : tx_.macros) {
        if (static_cast<int>(mac.name.size()) == j - i - 1 &&
            std::equal(mac.name.begin(), mac.name.end(), work.begin() + i + 1,
                       [](char a, std::int32_t b) { return static_cast<unsigned char>(a) == b; })) {
          m = &mac;
          break;
        }
      }
    }
    if (m == nullptr) {
      i = j;
      continue;
    }
    if (++expansions > kTexMaxExpansions) {
      complex();
      return false;
    }
    // The arguments: a group's contents or one character (a command with its name).
    int arg_at[9] = {};
    int arg_len[9] = {};
    int k = j;
    for (int a = 0; a < m->params; ++a) {
      while (k < static_cast<int>(work.size()) && work[static_cast<std::size_t>(k)] == ' ') {
        ++k;
      }
      if (k >= static_cast<int>(work.size())) {
        syntax("missing macro argument", k);
        return false;
      }
      if (work[static_cast<std::size_t>(k)] == '{') {
        int level = 1;
        int e = k + 1;
        while (e < static_cast<int>(work.size()) && level > 0) {
          const int c = work[static_cast<std::size_t>(e)];
          if (c == '\\') {
            ++e;
          } else if (c == '{') {
            ++level;
          } else if (c == '}') {
            --level;
          }
          ++e;
        }
        if (level > 0) {
          syntax("missing }", k);
          return false;
        }
        arg_at[a] = k + 1;
        arg_len[a] = e - k - 2;
        k = e;
      } else {
        int e = k + 1;
        if (work[static_cast<std::size_t>(k)] == '\\') {
          while (e < static_cast<int>(work.size()) &&
                 is_letter(work[static_cast<std::size_t>(e)])) {
            ++e;
          }
          if (e == k + 1 && e < static_cast<int>(work.size())) {
            ++e;
          }
        }
        arg_at[a] = k;
        arg_len[a] = e - k;
        k = e;
      }
    }
    // work[0, i) + the body with its parameters + work[k, end)
    next.assign(work.begin(), work.begin() + i);
    const std::string& body = m->body;
    for (std::size_t b = 0; b < body.size(); ++b) {
      const auto c = static_cast<unsigned char>(body[b]);
      if (c == '#' && b + 1 < body.size() && body[b + 1] >= '1' && body[b + 1] <= '9') {
        const int a = body[++b] - '1';
        if (a < m->params) {
          next.insert(next.end(), work.begin() + arg_at[a],
                      work.begin() + arg_at[a] + arg_len[a]);
        }
      } else {
        next.push_back(c);
      }
      if (static_cast<int>(next.size()) > kTexMaxSource) {
        break;
      }
    }
    next.insert(next.end(), work.begin() + k, work.end());
    if (static_cast<int>(next.size()) > kTexMaxSource) {
      complex();
      return false;
    }
    work.swap(next);
  }
  return true;
}

// Parser
// ======

int Formula::add(TexKind kind) {
  if (failed_) {
    return -1;
  }
  if (static_cast<int>(tx_.nodes.size()) >= kTexMaxBoxes) {
    complex();
    return -1;
  }
  TexNode& n = tx_.nodes.emplace_back();
  n.kind = kind;
  return static_cast<int>(tx_.nodes.size()) - 1;
}

void Formula::append(int list, int& last, int node) {
  if (node < 0 || list < 0) {
    return;
  }
  if (last < 0) {
    tx_.nodes[static_cast<std::size_t>(list)].a = node;
  } else {
    tx_.nodes[static_cast<std::size_t>(last)].next = node;
  }
  last = node;
}

int Formula::make_char(int code, int font) {
  if (font == kFontText && code == ' ') {
    const int s = add(TexKind::Space);
    if (s >= 0) {
      tx_.nodes[static_cast<std::size_t>(s)].aux = 1.0F / 3.0F;
    }
    return s;
  }
  const int id = add(TexKind::Char);
  if (id < 0) {
    return -1;
  }
  TexNode& n = tx_.nodes[static_cast<std::size_t>(id)];
  n.code = code;
  n.alphabet = kAlphabetStan;
  if (font == kFontText) {
    n.flags |= 4U;
    return id;
  }
  if (is_letter(code)) {
    if (font == kFontCal) {
      n.alphabet = kAlphabetScri;
    } else if (font == kFontIt || (font == kFontMath && tx_.italic)) {
      n.alphabet = kAlphabetItal;
      n.flags |= 2U;
    }
  }
  if (font == kFontBf) {
    n.flags |= 1U;
  }
  // The driver font's Symbol face has a true minus and relation signs of the same weight.
  if (t_.font.mode == FontMode::Driver && (code == '+' || code == '-' || code == '=' ||
                                           code == '<' || code == '>')) {
    n.alphabet = kAlphabetGree;
  }
  switch (code) {
    case '+':
    case '-':
    case '*':
      n.cls = kTexBin;
      break;
    case '=':
    case '<':
    case '>':
    case ':':
      n.cls = kTexRel;
      break;
    case ',':
    case ';':
      n.cls = kTexPunct;
      break;
    case '(':
    case '[':
      n.cls = kTexOpen;
      break;
    case ')':
    case ']':
    case '!':
    case '?':
      n.cls = kTexClose;
      break;
    default:
      break;
  }
  return id;
}

// A delimiter after \left, \right, \big...: its shape, kShapeNone for '.', -1 (with a
// warning) when none follows.
int Formula::read_delimiter() {
  skip_spaces();
  const int at = pos_;
  const int c = peek();
  if (c < 0) {
    syntax("missing delimiter", at);
    return -1;
  }
  if (c == '\\') {
    const std::string_view name = read_name();
    const TexSymbol* s = find_tex_symbol(name);
    if (s != nullptr && s->cmd == TexCmd::Delim) {
      return s->code;
    }
    syntax("missing delimiter", at);
    return -1;
  }
  ++pos_;
  switch (c) {
    case '(':
      return kShapeParenL;
    case ')':
      return kShapeParenR;
    case '[':
      return kShapeBracketL;
    case ']':
      return kShapeBracketR;
    case '|':
      return kShapeVert;
    case '<':
      return kShapeAngleL;
    case '>':
      return kShapeAngleR;
    case '/':
      return kShapeSlash;
    case '.':
      return kShapeNone;
    default:
      syntax("missing delimiter", at);
      return -1;
  }
}

// Wraps the last box of the list into a Scripts box (or fills the limits of an operator)
// and parses the script after ^ or _ (pos_ at the script).
int Formula::attach_script(int list, int& last, int& before_last, bool sup, int font) {
  const int at = pos_ - 1;
  int target = last;
  TexNode* t = target >= 0 ? &tx_.nodes[static_cast<std::size_t>(target)] : nullptr;
  if (t == nullptr || (t->kind != TexKind::Scripts && t->kind != TexKind::Op)) {
    const int s = add(TexKind::Scripts);
    if (s < 0) {
      return -1;
    }
    tx_.nodes[static_cast<std::size_t>(s)].a = last;
    // The new box takes the place of the last one.
    if (last >= 0) {
      if (before_last < 0) {
        tx_.nodes[static_cast<std::size_t>(list)].a = s;
      } else {
        tx_.nodes[static_cast<std::size_t>(before_last)].next = s;
      }
    } else {
      append(list, last, s);
      before_last = -1;
    }
    last = s;
    target = s;
  }
  const int script = parse_arg(font == kFontText ? kFontMath : font);
  if (failed_) {
    return -1;
  }
  TexNode& n = tx_.nodes[static_cast<std::size_t>(target)];
  std::int32_t& slot = sup ? n.b : n.c;
  if (slot >= 0) {
    syntax(sup ? "double superscript" : "double subscript", at);
    return -1;
  }
  slot = script;
  return target;
}

int Formula::parse_arg(int font) {
  skip_spaces();
  const int c = peek();
  if (c < 0 || c == '}' || c == '&' || c == '^' || c == '_') {
    syntax("missing argument", pos_);
    return -1;
  }
  if (c == '{') {
    ++pos_;
    Stop stop = Stop::End;
    return parse_list(font, true, stop);
  }
  return parse_atom(font);
}

int Formula::parse_atom(int font) {
  const int c = peek();
  if (c == '{') {
    ++pos_;
    Stop stop = Stop::End;
    return parse_list(font, true, stop);
  }
  if (c == '\\') {
    int dummy = -1;
    return parse_command(font, dummy);
  }
  ++pos_;
  if (c == '~') {
    const int s = add(TexKind::Space);
    if (s >= 0) {
      tx_.nodes[static_cast<std::size_t>(s)].aux = 1.0F / 3.0F;
    }
    return s;
  }
  return make_char(c, font);
}

// A command at pos_: the box it makes, or -1 (nothing, or after a warning).
// `last_in_list` is the list's last box, which \limits changes.
int Formula::parse_command(int font, int& last_in_list) {
  const int at = pos_;
  const std::string_view name = read_name();
  const TexSymbol* s = find_tex_symbol(name);
  if (s == nullptr) {
    unknown(name);
    return -1;
  }
  auto node = [&](int id) -> TexNode& { return tx_.nodes[static_cast<std::size_t>(id)]; };
  switch (s->cmd) {
    case TexCmd::Glyph: {
      const int id = add(TexKind::Char);
      if (id >= 0) {
        node(id).code = s->code;
        node(id).alphabet = s->alphabet;
        node(id).cls = s->cls;
        if (font == kFontBf) {
          node(id).flags |= 1U;
        }
      }
      return id;
    }
    case TexCmd::BigOp: {
      const int op = add(TexKind::Op);
      const int ch = add(TexKind::Char);
      if (ch < 0) {
        return -1;
      }
      node(ch).code = s->code;
      node(ch).alphabet = s->alphabet;
      node(op).a = ch;
      node(op).cls = kTexOp;
      node(op).flags = s->amount > 0.0F ? 1U | 4U : 4U;
      node(op).code = s->amount > 0.0F ? 0 : 1;  // 1: an integral
      return op;
    }
    case TexCmd::Func: {
      const int op = add(TexKind::Op);
      const int list = add(TexKind::List);
      if (list < 0) {
        return -1;
      }
      int last = -1;
      for (const char ch : name) {
        append(list, last, make_char(ch, kFontRm));
      }
      node(op).a = list;
      node(op).cls = kTexOp;
      node(op).flags = s->amount > 0.0F ? 1U : 0U;
      return failed_ ? -1 : op;
    }
    case TexCmd::Space: {
      const int id = add(TexKind::Space);
      if (id >= 0) {
        node(id).aux = s->amount;
      }
      return id;
    }
    case TexCmd::Frac: {
      if (++depth_ > kTexMaxNesting) {
        complex();
        return -1;
      }
      const int num = parse_arg(font);
      const int den = failed_ ? -1 : parse_arg(font);
      --depth_;
      const int id = add(TexKind::Frac);
      if (id < 0) {
        return -1;
      }
      node(id).a = num;
      node(id).b = den;
      node(id).cls = kTexInner;
      node(id).flags = s->code == 1 ? 2U : s->code == 2 ? 4U : s->code == 3 ? 1U : 0U;
      if (s->code != 3) {
        return id;
      }
      const int d = add(TexKind::Delims);
      if (d >= 0) {
        node(d).a = id;
        node(d).code = kShapeParenL << 8 | kShapeParenR;
        node(d).cls = kTexInner;
      }
      return d;
    }
    case TexCmd::Sqrt: {
      if (++depth_ > kTexMaxNesting) {
        complex();
        return -1;
      }
      int index = -1;
      skip_spaces();
      if (peek() == '[') {
        // The index runs to the matching ']' outside braces.
        int level = 0;
        int e = pos_ + 1;
        while (e < n_ && !(level == 0 && src_[e] == ']')) {
          if (src_[e] == '\\') {
            ++e;
          } else if (src_[e] == '{') {
            ++level;
          } else if (src_[e] == '}') {
            --level;
          }
          ++e;
        }
        if (e >= n_) {
          syntax("missing ]", pos_);
          return -1;
        }
        const int saved = n_;
        n_ = e;
        ++pos_;
        Stop stop = Stop::End;
        index = parse_list(font, false, stop);
        n_ = saved;
        if (failed_) {
          return -1;
        }
        if (stop != Stop::End) {
          syntax("unexpected character in index", pos_);
          return -1;
        }
        pos_ = e + 1;
      }
      const int body = parse_arg(font);
      --depth_;
      const int id = add(TexKind::Sqrt);
      if (id >= 0) {
        node(id).a = body;
        node(id).b = index;
      }
      return id;
    }
    case TexCmd::Accent: {
      if (++depth_ > kTexMaxNesting) {
        complex();
        return -1;
      }
      const int body = parse_arg(font);
      --depth_;
      const int id = add(TexKind::Accent);
      if (id >= 0) {
        node(id).a = body;
        node(id).code = s->code;
      }
      return id;
    }
    case TexCmd::Left: {
      if (++depth_ > kTexMaxNesting) {
        complex();
        return -1;
      }
      const int left = read_delimiter();
      if (failed_) {
        return -1;
      }
      Stop stop = Stop::End;
      const int body = parse_list(font, false, stop);
      if (failed_) {
        return -1;
      }
      if (stop != Stop::Right) {
        syntax("\\left without \\right", at);
        return -1;
      }
      read_name();  // "right"
      const int right = read_delimiter();
      --depth_;
      const int id = add(TexKind::Delims);
      if (id >= 0) {
        node(id).a = body;
        node(id).code = left << 8 | right;
        node(id).cls = kTexInner;
      }
      return id;
    }
    case TexCmd::Right:
      syntax("\\right without \\left", at);
      return -1;
    case TexCmd::Big:
    case TexCmd::Middle: {
      const int shape = read_delimiter();
      const int id = add(TexKind::Big);
      if (id >= 0) {
        node(id).code = shape;
        node(id).aux = s->amount;
        const bool opening = shape == kShapeParenL || shape == kShapeBracketL ||
                             shape == kShapeBraceL || shape == kShapeAngleL ||
                             shape == kShapeFloorL || shape == kShapeCeilL;
        node(id).cls = s->code == 1 ? kTexOpen
                       : s->code == 2 ? kTexClose
                       : s->cmd == TexCmd::Middle ? kTexRel
                       : opening ? kTexOpen : kTexClose;
        if (s->code == 0 && s->cmd == TexCmd::Big &&
            (shape == kShapeVert || shape == kShapeDoubleVert || shape == kShapeSlash)) {
          node(id).cls = kTexOrd;
        }
      }
      return id;
    }
    case TexCmd::Delim: {
      const int id = add(TexKind::Big);
      if (id >= 0) {
        node(id).code = s->code;
        node(id).cls = s->cls;
      }
      return id;
    }
    case TexCmd::Font:
    case TexCmd::Text: {
      if (++depth_ > kTexMaxNesting) {
        complex();
        return -1;
      }
      const int id = parse_arg(s->cmd == TexCmd::Text ? static_cast<int>(kFontText) : s->code);
      --depth_;
      return id;
    }
    case TexCmd::Begin:
      return parse_environment(font);
    case TexCmd::End:
      syntax("\\end without \\begin", at);
      return -1;
    case TexCmd::Dots: {
      const int list = add(TexKind::List);
      int last = -1;
      for (int k = 0; k < 3 && !failed_; ++k) {
        if (k > 0) {
          const int sp = add(TexKind::Space);
          if (sp >= 0) {
            node(sp).aux = 0.12F;
          }
          append(list, last, sp);
        }
        const int ch = add(TexKind::Char);
        if (ch >= 0) {
          node(ch).code = s->code == 0 ? '.' : 127;
          node(ch).alphabet = s->code == 0 ? kAlphabetStan : kAlphabetMath;
        }
        append(list, last, ch);
      }
      if (list >= 0) {
        node(list).cls = kTexInner;
      }
      return failed_ ? -1 : list;
    }
    case TexCmd::Limits:
      if (last_in_list >= 0 && node(last_in_list).kind == TexKind::Op) {
        TexNode& op = node(last_in_list);
        op.flags = static_cast<std::uint8_t>(s->code == 1 ? (op.flags | 2U) & ~1U
                                                          : op.flags & ~3U);
      }
      return -1;
    case TexCmd::Ignore:
      return -1;
  }
  return -1;
}

// \begin{name} ... \end{name}: the cells of a matrix or of cases.
int Formula::parse_environment(int font) {
  const int at = pos_;
  skip_spaces();
  if (peek() != '{') {
    syntax("missing environment name", pos_);
    return -1;
  }
  auto read_env = [&]() -> std::string_view {
    int len = 0;
    ++pos_;
    while (pos_ < n_ && src_[pos_] != '}') {
      if (len < kTexMaxMacroName) {
        const int c = src_[pos_];
        name_[len++] = c > 32 && c < 127 ? static_cast<char>(c) : ' ';
      }
      ++pos_;
    }
    if (pos_ >= n_) {
      syntax("missing }", at);
      return {};
    }
    ++pos_;
    return {name_, static_cast<std::size_t>(len)};
  };
  const std::string_view env = read_env();
  if (failed_) {
    return -1;
  }
  int kind = -1;
  for (int k = 0; k < static_cast<int>(std::size(kEnvNames)); ++k) {
    if (kEnvNames[k] == env) {
      kind = k;
    }
  }
  if (kind < 0) {
    unknown(env);
    return -1;
  }
  if (++depth_ > kTexMaxNesting) {
    complex();
    return -1;
  }
  const int id = add(TexKind::Matrix);
  if (id < 0) {
    return -1;
  }
  tx_.nodes[static_cast<std::size_t>(id)].code = kind;
  tx_.nodes[static_cast<std::size_t>(id)].cls = kTexInner;
  int last = -1;
  int columns = 0;
  int column = 0;
  for (;;) {
    Stop stop = Stop::End;
    const int cell = parse_list(font, false, stop);
    if (failed_) {
      return -1;
    }
    append(id, last, cell);
    column += 1;
    columns = std::max(columns, column);
    if (columns > kMaxColumns) {
      complex();
      return -1;
    }
    if (stop == Stop::Amp) {
      ++pos_;
    } else if (stop == Stop::Row) {
      pos_ += 2;
      append(id, last, add(TexKind::RowEnd));
      column = 0;
    } else if (stop == Stop::EnvEnd) {
      read_name();  // "end"
      skip_spaces();
      if (peek() != '{') {
        syntax("missing environment name", pos_);
        return -1;
      }
      const int end_at = pos_;
      const std::string_view closing = read_env();
      if (failed_) {
        return -1;
      }
      if (closing != kEnvNames[kind]) {
        syntax("\\end does not match \\begin", end_at);
        return -1;
      }
      break;
    } else {
      syntax("\\begin without \\end", at);
      return -1;
    }
  }
  --depth_;
  tx_.nodes[static_cast<std::size_t>(id)].aux = static_cast<float>(columns);
  return id;
}

// A list up to the end of the source, a closing brace (group), or the separators of
// matrices and \right (reported in `stop`, pos_ left at them).
int Formula::parse_list(int font, bool group, Stop& stop) {
  const int open_at = pos_ - 1;
  if (++depth_ > kTexMaxNesting) {
    complex();
    return -1;
  }
  const int list = add(TexKind::List);
  int last = -1;
  int before_last = -1;
  stop = Stop::End;
  while (!failed_) {
    if (font != kFontText) {
      skip_spaces();
    }
    const int c = peek();
    if (c < 0) {
      if (group) {
        syntax("missing }", open_at);
      }
      break;
    }
    if (c == '}') {
      if (!group) {
        syntax("unbalanced }", pos_);
        break;
      }
      ++pos_;
      stop = Stop::Brace;
      break;
    }
    if (c == '&' || (c == '\\' && peek(1) == '\\')) {
      if (group) {
        syntax(c == '&' ? "& outside a matrix" : "\\\\ outside a matrix", pos_);
        break;
      }
      stop = c == '&' ? Stop::Amp : Stop::Row;
      break;
    }
    if (c == '\\' && is_letter(peek(1))) {
      const int save = pos_;
      const std::string_view name = read_name();
      if (!group && (name == "right" || name == "end")) {
        pos_ = save;
        stop = name == "right" ? Stop::Right : Stop::EnvEnd;
        break;
      }
      pos_ = save;
    }
    if (c == '^' || c == '_') {
      ++pos_;
      attach_script(list, last, before_last, c == '^', font);
      continue;
    }
    if (c == '\'' && font != kFontText) {
      // A prime: a superscript of its own, or added to the primes before it.
      ++pos_;
      const int prime = add(TexKind::Char);
      if (prime < 0) {
        break;
      }
      tx_.nodes[static_cast<std::size_t>(prime)].code = 's';
      tx_.nodes[static_cast<std::size_t>(prime)].alphabet = kAlphabetMath;
      TexNode* l = last >= 0 ? &tx_.nodes[static_cast<std::size_t>(last)] : nullptr;
      if (l != nullptr && l->kind == TexKind::Scripts && l->b >= 0 &&
          tx_.nodes[static_cast<std::size_t>(l->b)].kind == TexKind::List &&
          tx_.nodes[static_cast<std::size_t>(l->b)].flags == 0x80U) {
        int tail = tx_.nodes[static_cast<std::size_t>(l->b)].a;
        while (tx_.nodes[static_cast<std::size_t>(tail)].next >= 0) {
          tail = tx_.nodes[static_cast<std::size_t>(tail)].next;
        }
        tx_.nodes[static_cast<std::size_t>(tail)].next = prime;
        continue;
      }
      const int primes = add(TexKind::List);
      if (primes < 0) {
        break;
      }
      tx_.nodes[static_cast<std::size_t>(primes)].a = prime;
      tx_.nodes[static_cast<std::size_t>(primes)].flags = 0x80U;
      if (l == nullptr || l->kind != TexKind::Scripts) {
        const int sc = add(TexKind::Scripts);
        if (sc < 0) {
          break;
        }
        tx_.nodes[static_cast<std::size_t>(sc)].a = last;
        if (last >= 0) {
          if (before_last < 0) {
            tx_.nodes[static_cast<std::size_t>(list)].a = sc;
          } else {
            tx_.nodes[static_cast<std::size_t>(before_last)].next = sc;
          }
          last = sc;
        } else {
          append(list, last, sc);
        }
        l = &tx_.nodes[static_cast<std::size_t>(sc)];
      }
      if (l->b >= 0) {
        syntax("double superscript", pos_ - 1);
        break;
      }
      l->b = primes;
      continue;
    }
    int node = -1;
    if (c == '\\') {
      node = parse_command(font, last);
    } else {
      node = parse_atom(font);
    }
    if (node >= 0) {
      before_last = last;
      append(list, last, node);
    }
  }
  --depth_;
  return failed_ ? -1 : list;
}

// Layout: measuring
// =================

// Vertical extents of glyph `glyph` of alphabet k in font units, from the cache.
void glyph_extents(TexState& tx, const AlphabetSlot& s, int k, int glyph, double& top,
                   double& bottom) {
  TexState::Extents& e = tx.extents[static_cast<std::size_t>(k)];
  if (e.index != s.index || e.offset_unit != s.offset_unit) {
    e.index = s.index;
    e.offset_unit = s.offset_unit;
    e.known.fill(false);
  }
  const auto gi = static_cast<std::size_t>(glyph);
  if (!e.known[gi]) {
    double hi = 0.0;
    double lo = 0.0;
    bool any = false;
    if (glyph > 1 && s.record[gi] >= 0) {
      for_each_point(s, glyph, [&](double, double fy, bool) {
        hi = any ? std::max(hi, fy) : fy;
        lo = any ? std::min(lo, fy) : fy;
        any = true;
      });
    }
    e.top[gi] = static_cast<std::int16_t>(std::clamp(std::ceil(hi), -30000.0, 30000.0));
    e.bottom[gi] = static_cast<std::int16_t>(std::clamp(std::floor(lo), -30000.0, 30000.0));
    e.known[gi] = true;
  }
  top = e.top[gi];
  bottom = e.bottom[gi];
}

// Extents of a driver-font character in heights: capitals and ascenders reach the
// capitals' height, lower-case letters the x-height, descenders go below.
void driver_extents(int code, DriverFace face, double& top, double& bottom) {
  top = 1.0;
  bottom = 0.0;
  if (code >= 'a' && code <= 'z') {
    top = std::strchr("bdfhklt", code) != nullptr ? 1.02 : kXHeight;
    if (std::strchr("gjpqy", code) != nullptr) {
      bottom = -0.33;
    }
    if (face == DriverFace::Greek) {
      top = std::strchr("bdfjlqxz", code) != nullptr ? 1.05 : kXHeight;
      bottom = std::strchr("bcfghjmqrxyz", code) != nullptr ? -0.33 : 0.0;
    }
  } else if (std::strchr("()[]{}|/", code) != nullptr && code != 0) {
    top = 1.15;
    bottom = -0.3;
  } else if (code == '.' || code == ',') {
    top = 0.15;
    bottom = code == ',' ? -0.2 : 0.0;
  } else if (code == '-' || code == '+' || code == '=' || code == '*') {
    top = 0.75;
    bottom = 0.1;
  }
}

void Formula::measure_char(TexNode& n, int s, double scale) {
  TextWork& w = t_.work;
  w.alphabet = n.alphabet;
  w.size = kStyleSize[s] * scale;
  w.shift = 0.0;
  LaidGlyph& e = tx_.laid.emplace_back();
  lay_code(g_, e, n.code);
  n.p = static_cast<float>(tx_.laid.size() - 1);
  double top = 0.0;
  double bottom = 0.0;
  if (e.kind == GlyphKind::Driver) {
    driver_extents(e.font_code, e.face, top, bottom);
    top *= h1_ * w.size;
    bottom *= h1_ * w.size;
  } else if (e.kind != GlyphKind::Blank) {
    const AlphabetSlot& slot = t_.font.alphabets[static_cast<std::size_t>(e.alphabet)];
    glyph_extents(tx_, slot, e.alphabet, e.glyph, top, bottom);
    top *= e.unit_y;
    bottom *= e.unit_y;
  }
  // Slanted glyphs reach beyond their cell: the cell grows by what they lean out.
  const double lean = e.slant + (e.italic ? 1.0 / kItalicRise : 0.0);
  const double left = std::max(0.0, -std::min(lean * top, lean * bottom));
  const double right = std::max(0.0, std::max(lean * top, lean * bottom));
  e.inset += left;
  // Text keeps the font's spacing; formulas set their characters closer.
  const double gap = ((n.flags & 4U) != 0U ? 1.0 : kGapShare) * e.gap;
  n.r = static_cast<float>(0.5 * gap);
  n.w = static_cast<float>(e.width + left + right + gap +
                           ((n.flags & 1U) != 0U ? kBold * h1_ * w.size : 0.0));
  n.h = static_cast<float>(std::max(0.0, top));
  n.d = static_cast<float>(std::max(0.0, -bottom));
}

void Formula::measure_list(TexNode& n, int s) {
  // First the atoms and their classes: a binary sign at the start, after another sign or
  // an opening, or before a relation, a closing or the end is an ordinary one.
  TexNode* prev = nullptr;
  for (int c = n.a; c >= 0; c = tx_.nodes[static_cast<std::size_t>(c)].next) {
    measure(c, s);
    if (failed_) {
      return;
    }
    TexNode& k = tx_.nodes[static_cast<std::size_t>(c)];
    if (k.kind == TexKind::Space) {
      continue;
    }
    int cls = k.cls;
    const int before = prev != nullptr ? prev->ecls : -1;
    if (cls == kTexBin && (before < 0 || before == kTexBin || before == kTexOp ||
                           before == kTexRel || before == kTexOpen || before == kTexPunct)) {
      cls = kTexOrd;
    }
    if (before == kTexBin && (cls == kTexRel || cls == kTexClose || cls == kTexPunct)) {
      prev->ecls = kTexOrd;
    }
    k.ecls = static_cast<std::uint8_t>(cls);
    prev = &k;
  }
  if (prev != nullptr && prev->ecls == kTexBin) {
    prev->ecls = kTexOrd;
  }
  // Then their places, with the spaces between classes.
  double x = 0.0;
  double h = 0.0;
  double d = 0.0;
  int last = -1;
  for (int c = n.a; c >= 0; c = tx_.nodes[static_cast<std::size_t>(c)].next) {
    TexNode& k = tx_.nodes[static_cast<std::size_t>(c)];
    if (k.kind != TexKind::Space) {
      if (last >= 0) {
        const int sp = kSpacing[last][k.ecls];
        if (sp > 0 || (sp < 0 && s <= 1)) {
          x += em(s) * ((sp < 0 ? -sp : sp) + 2) / 18.0;  // 3/18, 4/18 or 5/18 em
        }
      }
      last = k.ecls;
      h = std::max(h, static_cast<double>(k.h));
      d = std::max(d, static_cast<double>(k.d));
    }
    k.x = static_cast<float>(x);
    x += k.w;
  }
  n.w = static_cast<float>(x);
  n.h = static_cast<float>(h);
  n.d = static_cast<float>(d);
}

void Formula::measure_scripts(TexNode& n, int s) {
  const int ss = sup_style(s);
  double nw = 0.0;
  double nh = 0.0;
  double nd = 0.0;
  bool plain_char = true;
  bool italic = false;
  if (n.a >= 0) {
    measure(n.a, s);
    const TexNode& nuc = tx_.nodes[static_cast<std::size_t>(n.a)];
    nw = nuc.w;
    nh = nuc.h;
    nd = nuc.d;
    plain_char = nuc.kind == TexKind::Char;
    italic = plain_char && (nuc.flags & 2U) != 0U;
    n.cls = nuc.cls;
  }
  if (n.b >= 0) {
    measure(n.b, ss);
  }
  if (n.c >= 0) {
    measure(n.c, ss);
  }
  if (failed_) {
    return;
  }
  const double e = em(s);
  double u = plain_char ? 0.0 : nh - 0.386 * em(ss);
  double v = plain_char ? 0.0 : nd + 0.05 * em(ss);
  const TexNode* sup = n.b >= 0 ? &tx_.nodes[static_cast<std::size_t>(n.b)] : nullptr;
  const TexNode* sub = n.c >= 0 ? &tx_.nodes[static_cast<std::size_t>(n.c)] : nullptr;
  if (sup != nullptr) {
    u = std::max({u, (s == 0 ? 0.413 : 0.363) * e, sup->d + 0.25 * xheight(s)});
  }
  if (sub != nullptr && sup == nullptr) {
    v = std::max({v, 0.15 * e, sub->h - 0.8 * xheight(s)});
  } else if (sub != nullptr) {
    v = std::max(v, 0.247 * e);
    const double gap = (u - sup->d) - (sub->h - v);
    if (gap < 4.0 * theta_) {
      v += 4.0 * theta_ - gap;
    }
  }
  const double kern = italic ? kItalicKern * h1_ * kStyleSize[s] : 0.0;
  const double sw = std::max(sup != nullptr ? sup->w + kern : 0.0, sub != nullptr ? sub->w : 0.0);
  n.w = static_cast<float>(nw + sw + 0.05 * e);
  n.h = static_cast<float>(std::max(nh, sup != nullptr ? u + sup->h : 0.0));
  n.d = static_cast<float>(std::max(nd, sub != nullptr ? v + sub->d : 0.0));
  n.p = static_cast<float>(u);
  n.q = static_cast<float>(v);
  n.r = static_cast<float>(kern);
}

void Formula::measure_op(TexNode& n, int s) {
  const bool large = s == 0 && (n.flags & 4U) != 0U;
  TexNode& nuc = tx_.nodes[static_cast<std::size_t>(n.a)];
  if (nuc.kind == TexKind::Char) {
    measure_char(nuc, s, large ? (n.code == 1 ? kIntegralScale : kBigOpScale) : 1.0);
    // Centred on the axis.
    const double shift = 0.5 * (nuc.h - nuc.d) - axis(s);
    nuc.h = static_cast<float>(nuc.h - shift);
    nuc.d = static_cast<float>(nuc.d + shift);
    n.r = static_cast<float>(-shift);
  } else {
    measure(n.a, s);
    n.r = 0.0F;
  }
  const int ss = sup_style(s);
  if (n.b >= 0) {
    measure(n.b, ss);
  }
  if (n.c >= 0) {
    measure(n.c, ss);
  }
  if (failed_) {
    return;
  }
  const TexNode* sup = n.b >= 0 ? &tx_.nodes[static_cast<std::size_t>(n.b)] : nullptr;
  const TexNode* sub = n.c >= 0 ? &tx_.nodes[static_cast<std::size_t>(n.c)] : nullptr;
  const double e = em(s);
  const bool limits = (n.flags & 2U) != 0U || (s == 0 && (n.flags & 1U) != 0U);
  n.flags = static_cast<std::uint8_t>(limits ? n.flags | 8U : n.flags & ~8U);
  if (limits) {
    double w = nuc.w;
    double h = nuc.h;
    double d = nuc.d;
    if (sup != nullptr) {
      w = std::max(w, static_cast<double>(sup->w));
      n.p = static_cast<float>(nuc.h + std::max(0.15 * e, 0.25 * e - sup->d) + sup->d);
      h = n.p + sup->h + 0.05 * e;
    }
    if (sub != nullptr) {
      w = std::max(w, static_cast<double>(sub->w));
      n.q = static_cast<float>(nuc.d + std::max(0.2 * e, 0.5 * e - sub->h) + sub->h);
      d = n.q + sub->d + 0.05 * e;
    }
    n.w = static_cast<float>(w);
    n.h = static_cast<float>(h);
    n.d = static_cast<float>(d);
    return;
  }
  // Scripts at the side; an integral's lean moves the upper one out, the lower one in.
  // (n.aux: the lean of an integral; n.b, n.c further out by a thin space for all.)
  const double kern = n.code == 1 ? 0.12 * h1_ * kStyleSize[s] * (large ? kIntegralScale : 1.0)
                                  : 0.0;
  const double side = 0.1 * e;
  double u = sup != nullptr ? std::max({nuc.h - 0.386 * em(ss), (s == 0 ? 0.413 : 0.363) * e,
                                        sup->d + 0.25 * xheight(s)})
                            : 0.0;
  double v = sub != nullptr ? std::max({nuc.d + 0.05 * em(ss), 0.247 * e,
                                        sub->h - 0.8 * xheight(s)})
                            : 0.0;
  if (sup != nullptr && sub != nullptr) {
    const double gap = (u - sup->d) - (sub->h - v);
    if (gap < 4.0 * theta_) {
      v += 4.0 * theta_ - gap;
    }
  }
  const double sw = std::max(sup != nullptr ? sup->w + kern : 0.0,
                             sub != nullptr ? sub->w - kern : 0.0);
  n.w = static_cast<float>(nuc.w + side + std::max(0.0, sw) + (sw > 0.0 ? 0.05 * e : 0.0));
  n.h = static_cast<float>(std::max(static_cast<double>(nuc.h), sup != nullptr ? u + sup->h : 0.0));
  n.d = static_cast<float>(std::max(static_cast<double>(nuc.d), sub != nullptr ? v + sub->d : 0.0));
  n.p = static_cast<float>(u);
  n.q = static_cast<float>(v);
  n.aux = static_cast<float>(kern);
  n.r2 = static_cast<float>(side);
}

void Formula::measure_accent(TexNode& n, int s) {
  measure(n.a, s);
  if (failed_) {
    return;
  }
  const TexNode& body = tx_.nodes[static_cast<std::size_t>(n.a)];
  const double sz = h1_ * kStyleSize[s];
  const double e = em(s);
  double aw = body.w;
  double ah = 0.0;
  double ay = std::max(static_cast<double>(body.h), xheight(s)) + 0.12 * sz;
  switch (n.code) {
    case kAccentHat:
      aw = std::clamp(0.8 * body.w, 0.35 * e, std::max(0.6 * e, 0.9 * static_cast<double>(body.w)));
      ah = 0.22 * sz;
      break;
    case kAccentTilde:
      aw = std::clamp(0.8 * body.w, 0.35 * e, std::max(0.6 * e, 0.9 * static_cast<double>(body.w)));
      ah = 0.14 * sz;
      break;
    case kAccentVec:
      aw = std::max(static_cast<double>(body.w), 0.5 * e);
      ah = 0.22 * sz;
      break;
    case kAccentBar:
      aw = std::clamp(0.8 * body.w, 0.3 * e, std::max(0.5 * e, 0.9 * static_cast<double>(body.w)));
      ah = pen_rules_ ? kRuleBox * h1_ : theta_;
      break;
    case kAccentDot:
      aw = 0.09 * sz;
      ah = 0.09 * sz;
      break;
    case kAccentDdot:
      aw = 0.3 * sz;
      ah = 0.09 * sz;
      break;
    case kAccentOverline:
      aw = body.w;
      ah = pen_rules_ ? kRuleBox * h1_ : theta_;
      ay = body.h + 3.0 * theta_;
      break;
    case kAccentUnderline:
      aw = body.w;
      ah = pen_rules_ ? kRuleBox * h1_ : theta_;
      ay = -(body.d + 3.0 * theta_ + ah);
      break;
    default:
      break;
  }
  n.w = static_cast<float>(std::max(static_cast<double>(body.w), aw));
  n.h = static_cast<float>(std::max(static_cast<double>(body.h), ay + ah + (ay > 0 ? theta_ : 0.0)));
  n.d = static_cast<float>(std::max(static_cast<double>(body.d), ay < 0 ? -ay + theta_ : 0.0));
  n.p = static_cast<float>(ah);
  n.q = static_cast<float>(aw);
  // Italic letters: the accent leans with them.
  const bool italic = body.kind == TexKind::Char && (body.flags & 2U) != 0U;
  n.r = static_cast<float>(ay);
  n.aux = static_cast<float>(italic && ay > 0 ? std::min(0.08 * sz, 0.5 * (n.w - aw) + 0.08 * sz) : 0.0);
  if (italic && ay > 0) {
    n.w = static_cast<float>(std::max(static_cast<double>(n.w), 0.5 * (n.w + aw) + n.aux));
  }
}

double Formula::delimiter_width(int shape, double size, int s) const {
  const double e = em(s);
  switch (shape) {
    case kShapeNone:
      return 0.12 * e;
    case kShapeParenL:
    case kShapeParenR:
      return std::min(0.3 * e + 0.08 * size, 0.8 * e);
    case kShapeBracketL:
    case kShapeBracketR:
    case kShapeFloorL:
    case kShapeFloorR:
    case kShapeCeilL:
    case kShapeCeilR:
      return std::min(0.3 * e + 0.03 * size, 0.6 * e);
    case kShapeBraceL:
    case kShapeBraceR:
      return std::min(0.35 * e + 0.06 * size, 0.8 * e);
    case kShapeVert:
      return 0.25 * e;
    case kShapeDoubleVert:
      return 0.35 * e;
    case kShapeAngleL:
    case kShapeAngleR:
      return std::min(0.3 * e + 0.06 * size, 0.7 * e);
    case kShapeSlash:
      return std::min(0.3 * e + 0.25 * size, 1.5 * e);
    default:
      return 0.3 * e;
  }
}

void Formula::measure_matrix(TexNode& n, int s) {
  const int cs = s <= 1 ? 1 : s;
  const int columns = std::max(1, static_cast<int>(n.aux));
  // Column widths, then per row height and depth, in tx_.cells from `base`.
  const auto base = static_cast<int>(tx_.cells.size());
  tx_.cells.resize(tx_.cells.size() + static_cast<std::size_t>(columns), 0.0F);
  int rows = 0;
  int column = 0;
  double rh = 0.0;
  double rd = 0.0;
  const double strut_h = 0.7 * em(cs);
  const double strut_d = 0.3 * em(cs);
  std::size_t row_at = tx_.cells.size();
  tx_.cells.push_back(0.0F);
  tx_.cells.push_back(0.0F);
  for (int c = n.a; c >= 0; c = tx_.nodes[static_cast<std::size_t>(c)].next) {
    TexNode& k = tx_.nodes[static_cast<std::size_t>(c)];
    if (k.kind == TexKind::RowEnd) {
      tx_.cells[row_at] = static_cast<float>(std::max(rh, strut_h));
      tx_.cells[row_at + 1] = static_cast<float>(std::max(rd, strut_d));
      ++rows;
      row_at = tx_.cells.size();
      tx_.cells.push_back(0.0F);
      tx_.cells.push_back(0.0F);
      column = 0;
      rh = 0.0;
      rd = 0.0;
      continue;
    }
    measure(c, cs);
    if (failed_) {
      return;
    }
    const TexNode& cell = tx_.nodes[static_cast<std::size_t>(c)];
    float& cw = tx_.cells[static_cast<std::size_t>(base + std::min(column, columns - 1))];
    cw = std::max(cw, cell.w);
    rh = std::max(rh, static_cast<double>(cell.h));
    rd = std::max(rd, static_cast<double>(cell.d));
    ++column;
  }
  // The last row (unless the source ended with \\ and nothing after it).
  if (column > 0 || rows == 0) {
    tx_.cells[row_at] = static_cast<float>(std::max(rh, strut_h));
    tx_.cells[row_at + 1] = static_cast<float>(std::max(rd, strut_d));
    ++rows;
  } else {
    tx_.cells.resize(row_at);
  }
  const double gap = 0.25 * em(cs);
  double total = 0.0;
  double width = 0.0;
  for (int r = 0; r < rows; ++r) {
    const std::size_t at = static_cast<std::size_t>(base + columns + 2 * r);
    total += tx_.cells[at] + tx_.cells[at + 1] + (r > 0 ? gap : 0.0);
  }
  const double sep = em(cs);
  for (int k = 0; k < columns; ++k) {
    width += tx_.cells[static_cast<std::size_t>(base + k)] + (k > 0 ? sep : 0.0);
  }
  const auto [left, right] = env_delimiters(n.code);
  const double size = total + 0.2 * em(s);
  const double pad = 0.15 * em(s);
  const double lw = n.code == kEnvMatrix ? 0.0 : delimiter_width(left, size, s) + pad;
  const double rw = n.code == kEnvMatrix ? 0.0 : delimiter_width(right, size, s) + pad;
  n.p = static_cast<float>(base);
  n.q = static_cast<float>(rows);
  n.r = static_cast<float>(total);
  n.w = static_cast<float>(lw + width + rw);
  n.h = static_cast<float>(axis(s) + 0.5 * size);
  n.d = static_cast<float>(0.5 * size - axis(s));
}

void Formula::measure(int id, int s) {
  if (failed_ || id < 0) {
    return;
  }
  TexNode& n = tx_.nodes[static_cast<std::size_t>(id)];
  switch (n.kind) {
    case TexKind::Char:
      measure_char(n, s, 1.0);
      break;
    case TexKind::List:
      measure_list(n, s);
      break;
    case TexKind::Frac: {
      const int fs = (n.flags & 2U) != 0U ? 0 : (n.flags & 4U) != 0U ? 1 : s;
      const int ns = frac_style(fs);
      measure(n.a, ns);
      measure(n.b, ns);
      if (failed_) {
        return;
      }
      const TexNode* num = n.a >= 0 ? &tx_.nodes[static_cast<std::size_t>(n.a)] : nullptr;
      const TexNode* den = n.b >= 0 ? &tx_.nodes[static_cast<std::size_t>(n.b)] : nullptr;
      const double nh = num != nullptr ? num->h : 0.0;
      const double nd = num != nullptr ? num->d : 0.0;
      const double dh = den != nullptr ? den->h : 0.0;
      const double dd = den != nullptr ? den->d : 0.0;
      const double e = em(fs);
      const double a = axis(fs);
      double u = fs == 0 ? 0.677 * e : 0.394 * e;
      double v = fs == 0 ? 0.686 * e : 0.345 * e;
      if ((n.flags & 1U) == 0U) {
        const double phi = fs == 0 ? 3.0 * theta_ : theta_;
        const double half = 0.5 * theta_;
        u += std::max(0.0, phi - ((u - nd) - (a + half)));
        v += std::max(0.0, phi - ((a - half) - (dh - v)));
      } else {
        const double psi = fs == 0 ? 7.0 * theta_ : 3.0 * theta_;
        const double clear = (u - nd) - (dh - v);
        if (clear < psi) {
          u += 0.5 * (psi - clear);
          v += 0.5 * (psi - clear);
        }
      }
      const double pad = 0.12 * e;
      n.w = static_cast<float>(std::max(num != nullptr ? num->w : 0.0F,
                                        den != nullptr ? den->w : 0.0F) + 2.0 * pad);
      n.h = static_cast<float>(u + nh);
      n.d = static_cast<float>(v + dd);
      n.p = static_cast<float>(u);
      n.q = static_cast<float>(v);
      n.r = static_cast<float>(fs);
      break;
    }
    case TexKind::Sqrt: {
      measure(n.a, s);
      if (n.b >= 0) {
        measure(n.b, 3);
      }
      if (failed_) {
        return;
      }
      const TexNode* body = n.a >= 0 ? &tx_.nodes[static_cast<std::size_t>(n.a)] : nullptr;
      const double bh = body != nullptr ? std::max(body->h, static_cast<float>(xheight(s))) : 0.0;
      const double bd = body != nullptr ? body->d : 0.0;
      const double bw = body != nullptr ? body->w : 0.0;
      const double sz = h1_ * kStyleSize[s];
      const double clear = std::max(1.25 * theta_, 0.2 * sz);
      const double bottom = -bd - 0.05 * sz;
      const double top = bh + clear;  // the middle of the vinculum
      const double size = top - bottom;
      const double rw = 0.55 * sz + 0.08 * size;
      double ox = 0.0;
      double ih = 0.0;
      if (n.b >= 0) {
        const TexNode& index = tx_.nodes[static_cast<std::size_t>(n.b)];
        ox = std::max(0.0, index.w - 0.55 * rw);
        ih = bottom + 0.6 * size + index.d + index.h;
      }
      n.w = static_cast<float>(ox + rw + bw + 0.1 * em(s));
      n.h = static_cast<float>(std::max(top + theta_, ih));
      n.d = static_cast<float>(-bottom);
      n.p = static_cast<float>(ox);
      n.q = static_cast<float>(top);
      n.r = static_cast<float>(rw);
      break;
    }
    case TexKind::Scripts:
      measure_scripts(n, s);
      break;
    case TexKind::Op:
      measure_op(n, s);
      break;
    case TexKind::Accent:
      measure_accent(n, s);
      break;
    case TexKind::Delims: {
      measure(n.a, s);
      if (failed_) {
        return;
      }
      const TexNode* body = n.a >= 0 ? &tx_.nodes[static_cast<std::size_t>(n.a)] : nullptr;
      const double bh = body != nullptr ? body->h : 0.0;
      const double bd = body != nullptr ? body->d : 0.0;
      const double a = axis(s);
      const double size = std::max(2.0 * std::max(bh - a, bd + a) + 0.1 * em(s),
                                   1.2 * h1_ * kStyleSize[s]);
      const double lw = delimiter_width(n.code >> 8, size, s);
      const double rw = delimiter_width(n.code & 0xff, size, s);
      n.w = static_cast<float>(lw + (body != nullptr ? body->w : 0.0F) + rw);
      n.h = static_cast<float>(std::max(bh, a + 0.5 * size));
      n.d = static_cast<float>(std::max(bd, 0.5 * size - a));
      n.p = static_cast<float>(size);
      n.q = static_cast<float>(lw);
      break;
    }
    case TexKind::Big: {
      const double size = (n.aux > 0.0F ? n.aux : 1.25) * h1_ * kStyleSize[s];
      n.w = static_cast<float>(delimiter_width(n.code, size, s));
      n.h = static_cast<float>(axis(s) + 0.5 * size);
      n.d = static_cast<float>(std::max(0.0, 0.5 * size - axis(s)));
      n.p = static_cast<float>(size);
      break;
    }
    case TexKind::Space:
      n.w = static_cast<float>(n.aux * em(s));
      n.h = 0.0F;
      n.d = 0.0F;
      break;
    case TexKind::Matrix:
      measure_matrix(n, s);
      break;
    case TexKind::RowEnd:
      break;
  }
}

// Layout: placing
// ===============

void Formula::place(const LaidGlyph& proto, double x, double y) {
  LaidGlyph& e = out_.glyphs.emplace_back(proto);
  const double at = x0_ + x;
  e.lead = at - rpen_;
  e.pen = at;
  e.raise = y;
  e.gap = 0.0;
  e.advance = 0.0;
  e.colour = t_.work.colour;
  rpen_ = at;
}

void Formula::emit_shape(int shape, double x, double y, double w, double h) {
  if (shape == kShapeNone || w <= 0.0) {
    return;
  }
  LaidGlyph e;
  e.kind = GlyphKind::Shape;
  e.glyph = static_cast<std::int16_t>(shape);
  e.width = w;
  e.thick = h;
  e.weight = pen_rules_ ? 0.0 : theta_;
  // A filled stroke stays inside the cell: its centre lines move in by its reach.
  if (e.weight > 0.0 && shape != kShapeRule) {
    const double reach = kTexShapeReach * e.weight;
    e.inset = reach;
    e.width = std::max(0.0, w - 2.0 * reach);
    e.thick = std::max(0.0, h - 2.0 * reach);
    y += reach;
  }
  place(e, x, y);
}

// A bar of the rule thickness whose bottom is at y.
void Formula::emit_rule(double x, double y, double w) {
  if (w <= 0.0) {
    return;
  }
  if (pen_rules_) {
    emit_shape(kShapeRule, x, y, w, kRuleBox * h1_);
    return;
  }
  LaidGlyph e;
  e.kind = GlyphKind::Rule;
  e.width = w;
  e.thick = theta_;
  place(e, x, y);
}

void Formula::emit(int id, double x, double y, int s) {
  if (id < 0) {
    return;
  }
  const TexNode& n = tx_.nodes[static_cast<std::size_t>(id)];
  auto child = [&](int c) -> const TexNode& { return tx_.nodes[static_cast<std::size_t>(c)]; };
  switch (n.kind) {
    case TexKind::Char: {
      const LaidGlyph& proto = tx_.laid[static_cast<std::size_t>(n.p)];
      if (proto.kind == GlyphKind::Blank) {
        return;
      }
      place(proto, x + n.r, y);
      if ((n.flags & 1U) != 0U) {
        place(proto, x + n.r + kBold * h1_ * proto.size, y);
      }
      break;
    }
    case TexKind::List:
      for (int c = n.a; c >= 0; c = child(c).next) {
        emit(c, x + child(c).x, y, s);
      }
      break;
    case TexKind::Frac: {
      const int fs = static_cast<int>(n.r);
      const int ns = frac_style(fs);
      const double pad = 0.12 * em(fs);
      if (n.a >= 0) {
        emit(n.a, x + 0.5 * (n.w - child(n.a).w), y + n.p, ns);
      }
      if (n.b >= 0) {
        emit(n.b, x + 0.5 * (n.w - child(n.b).w), y - n.q, ns);
      }
      if ((n.flags & 1U) == 0U) {
        const double bar = pen_rules_ ? kRuleBox * h1_ : theta_;
        emit_rule(x + pad, y + axis(fs) - 0.5 * bar, n.w - 2.0 * pad);
      }
      break;
    }
    case TexKind::Sqrt: {
      const double ox = n.p;
      const double top = n.q;
      const double rw = n.r;
      const double bottom = -n.d;
      const double size = top - bottom;
      const double half = 0.5 * (pen_rules_ ? kRuleBox * h1_ : theta_);
      if (n.b >= 0) {
        const TexNode& index = child(n.b);
        emit(n.b, x + ox + 0.55 * rw - index.w, y + bottom + 0.6 * size + index.d, 3);
      }
      // The sign, then the vinculum from its top over the body.
      emit_shape(kShapeRadical, x + ox, y + bottom, rw, size + half);
      const double body_x = x + ox + rw;
      emit(n.a, body_x, y, s);
      emit_rule(x + ox + rw, y + top - half, n.w - ox - rw);
      break;
    }
    case TexKind::Scripts: {
      double nw = 0.0;
      if (n.a >= 0) {
        emit(n.a, x, y, s);
        nw = child(n.a).w;
      }
      const int ss = sup_style(s);
      if (n.b >= 0) {
        emit(n.b, x + nw + n.r, y + n.p, ss);
      }
      if (n.c >= 0) {
        emit(n.c, x + nw, y - n.q, ss);
      }
      break;
    }
    case TexKind::Op: {
      const TexNode& nuc = child(n.a);
      const int ss = sup_style(s);
      if ((n.flags & 8U) != 0U) {
        emit(n.a, x + 0.5 * (n.w - nuc.w), y + n.r, s);
        if (n.b >= 0) {
          emit(n.b, x + 0.5 * (n.w - child(n.b).w), y + n.p, ss);
        }
        if (n.c >= 0) {
          emit(n.c, x + 0.5 * (n.w - child(n.c).w), y - n.q, ss);
        }
      } else {
        emit(n.a, x, y + n.r, s);
        if (n.b >= 0) {
          emit(n.b, x + nuc.w + n.r2 + n.aux, y + n.p, ss);
        }
        if (n.c >= 0) {
          emit(n.c, x + nuc.w + n.r2 - n.aux, y - n.q, ss);
        }
      }
      break;
    }
    case TexKind::Accent: {
      const TexNode& body = child(n.a);
      const double bx = x + 0.5 * (n.w - body.w) - (n.aux > 0.0F ? 0.5 * n.aux : 0.0);
      emit(n.a, bx, y, s);
      const double aw = n.q;
      const double ah = n.p;
      const double ax = bx + 0.5 * (body.w - aw) + n.aux;
      const double ay = y + n.r;
      switch (n.code) {
        case kAccentHat:
          emit_shape(kShapeHat, ax, ay, aw, ah);
          break;
        case kAccentTilde:
          emit_shape(kShapeTilde, ax, ay, aw, ah);
          break;
        case kAccentVec:
          emit_shape(kShapeVec, ax, ay, aw, ah);
          break;
        case kAccentDot:
        case kAccentDdot: {
          // Dots as filled squares of their height, in every font.
          LaidGlyph dot;
          dot.kind = GlyphKind::Rule;
          dot.width = ah;
          dot.thick = ah;
          if (n.code == kAccentDot) {
            place(dot, ax + 0.5 * (aw - ah), ay);
          } else {
            place(dot, ax, ay);
            place(dot, ax + aw - ah, ay);
          }
          break;
        }
        default:
          emit_rule(ax, ay, aw);
          break;
      }
      break;
    }
    case TexKind::Delims: {
      const double size = n.p;
      const double bottom = y + axis(s) - 0.5 * size;
      const double lw = n.q;
      const double bw = n.a >= 0 ? child(n.a).w : 0.0;
      const double rw = n.w - lw - bw;
      emit_shape(n.code >> 8, x, bottom, lw, size);
      emit(n.a, x + lw, y, s);
      emit_shape(n.code & 0xff, x + lw + bw, bottom, rw, size);
      break;
    }
    case TexKind::Big:
      emit_shape(n.code, x, y + axis(s) - 0.5 * n.p, n.w, n.p);
      break;
    case TexKind::Space:
    case TexKind::RowEnd:
      break;
    case TexKind::Matrix: {
      const int cs = s <= 1 ? 1 : s;
      const int columns = std::max(1, static_cast<int>(n.aux));
      const auto base = static_cast<std::size_t>(n.p);
      const double total = n.r;
      const double gap = 0.25 * em(cs);
      const double sep = em(cs);
      const double size = total + 0.2 * em(s);
      const auto [left, right] = env_delimiters(n.code);
      const double pad = 0.15 * em(s);
      const double lw = n.code == kEnvMatrix ? 0.0 : delimiter_width(left, size, s);
      const double rw = n.code == kEnvMatrix ? 0.0 : delimiter_width(right, size, s);
      const double dbottom = y + axis(s) - 0.5 * size;
      emit_shape(left, x, dbottom, lw, size);
      emit_shape(right, x + n.w - rw, dbottom, rw, size);
      const double cx0 = x + (n.code == kEnvMatrix ? 0.0 : lw + pad);
      // First row's baseline: the top of the rows, centred on the axis, less its height.
      double top = y + axis(s) + 0.5 * total;
      int row = 0;
      int column = 0;
      double cx = cx0;
      double baseline = top - tx_.cells[base + static_cast<std::size_t>(columns)];
      for (int c = n.a; c >= 0; c = child(c).next) {
        const TexNode& k = child(c);
        if (k.kind == TexKind::RowEnd) {
          const std::size_t at = base + static_cast<std::size_t>(columns + 2 * row);
          top = baseline - tx_.cells[at + 1] - gap;
          ++row;
          if (static_cast<double>(row) < n.q) {
            baseline = top - tx_.cells[at + 2];
          }
          column = 0;
          cx = cx0;
          continue;
        }
        const double cw = tx_.cells[base + static_cast<std::size_t>(std::min(column, columns - 1))];
        const double off = n.code == kEnvCases ? 0.0 : 0.5 * (cw - k.w);
        emit(c, cx + off, baseline, cs);
        cx += cw + sep;
        ++column;
      }
      break;
    }
  }
}

bool Formula::run(const CodeString& codes) {
  // Only strings with a dollar are formula strings.
  bool any = false;
  for (int i = 0; i < codes.n && !any; ++i) {
    any = codes.code[static_cast<std::size_t>(i)] == '$';
  }
  if (!any) {
    return false;
  }
  TextWork& w = t_.work;
  const TextWork saved = w;
  h1_ = std::max(0, t_.height - 1);
  const bool outline = t_.font.alphabets[kAlphabetStan].outline;
  pen_rules_ = t_.font.mode == FontMode::Stroke && !outline;
  theta_ = (pen_rules_ ? kRuleBox : kRule) * h1_;
  if (tx_.nodes.capacity() < static_cast<std::size_t>(kTexMaxBoxes)) {
    tx_.nodes.reserve(kTexMaxBoxes);
    tx_.laid.reserve(kTexMaxBoxes);
  }
  double pen = 0.0;
  rpen_ = 0.0;
  double length = 0.0;
  double ascent = t_.height;
  double descent = 0.0;
  const std::int32_t* c = codes.code.data();
  int i = 0;
  auto text_char = [&](int code) {
    LaidGlyph& e = out_.glyphs.emplace_back();
    lay_code(g_, e, code);
    const double at = pen + e.lead;
    e.lead = at - rpen_;
    e.pen = at;
    pen = at + e.advance;
    rpen_ = pen;
    length = std::max(length, pen - e.gap);
  };
  while (i < codes.n && !failed_) {
    if (c[i] == '\\' && i + 1 < codes.n && c[i + 1] == '$') {
      text_char('$');
      i += 2;
      continue;
    }
    if (c[i] != '$') {
      text_char(c[i]);
      ++i;
      continue;
    }
    const bool display = i + 1 < codes.n && c[i + 1] == '$';
    const int start = i + (display ? 2 : 1);
    int end = start;
    while (end < codes.n) {
      if (c[end] == '\\') {
        end += 2;
        continue;
      }
      if (c[end] == '$') {
        break;
      }
      ++end;
    }
    end = std::min(end, codes.n);
    if (end >= codes.n || (display && (end + 1 >= codes.n || c[end + 1] != '$'))) {
      base_ = 0;
      syntax("missing closing $", i);
      break;
    }
    if (end == start) {
      base_ = 0;
      syntax("empty formula", i);
      break;
    }
    // The formula's source, expanded when macros are defined.
    base_ = start;
    if (tx_.macros.empty()) {
      src_ = c + start;
      n_ = end - start;
    } else {
      if (!expand(c + start, end - start)) {
        break;
      }
      src_ = tx_.source.data();
      n_ = static_cast<int>(tx_.source.size());
    }
    pos_ = 0;
    depth_ = 0;
    tx_.nodes.clear();
    tx_.laid.clear();
    tx_.cells.clear();
    Stop stop = Stop::End;
    const int root = parse_list(kFontMath, false, stop);
    if (!failed_ && stop != Stop::End) {
      syntax(stop == Stop::Amp ? "& outside a matrix"
             : stop == Stop::Row ? "\\\\ outside a matrix"
             : stop == Stop::Right ? "\\right without \\left"
                                   : "\\end without \\begin",
             pos_);
    }
    if (failed_) {
      break;
    }
    // Characters are laid out in the formula's sizes without spacing settings.
    w.spacing = 0.0;
    w.fixed = false;
    w.fell_back = false;
    t_.font.selected = -1;
    const int style = display || tx_.display ? 0 : 1;
    measure(root, style);
    if (failed_) {
      break;
    }
    x0_ = pen;
    emit(root, 0.0, 0.0, style);
    const TexNode& box = tx_.nodes[static_cast<std::size_t>(root)];
    pen = x0_ + box.w;
    if (!out_.glyphs.empty()) {
      out_.glyphs.back().advance += pen - rpen_;
    }
    rpen_ = pen;
    length = std::max(length, pen);
    ascent = std::max(ascent, box.h + 1.0);
    descent = std::max(descent, static_cast<double>(box.d));
    w.alphabet = saved.alphabet;
    w.size = saved.size;
    w.shift = saved.shift;
    w.spacing = saved.spacing;
    w.fixed = saved.fixed;
    w.fell_back = false;
    t_.font.selected = -1;
    i = end + (display ? 2 : 1);
  }
  w = saved;
  t_.font.selected = -1;
  if (failed_) {
    out_.glyphs.clear();
    return false;
  }
  out_.end = pen;
  out_.length = round_int(length);
  out_.ascent = ascent;
  out_.descent = descent;
  out_.missing = -1;
  for (const LaidGlyph& e : out_.glyphs) {
    if (e.missing) {
      out_.missing = e.code;
      break;
    }
  }
  return true;
}

}  // namespace

bool layout_formula(GlobalBlock& g, const CodeString& codes, TextLayout& out) {
  Formula f(g, out);
  return f.run(codes);
}

}  // namespace zorvel
