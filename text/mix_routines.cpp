// The public routines of the instruction alphabet, the national shifts and the text
// box: they only set MixState; text/mix_layout.cpp applies the settings.

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "api_decl.h"
#include "core/global_block.h"
#include "core/keywords.h"
#include "core/messages.h"
#include "text/decode.h"
#include "text/layout.h"
#include "text/mix.h"
#include "text/text.h"

namespace zorvel {
namespace {

constexpr int kCharsInUse = 57;    // a character that another role holds
constexpr int kBaseAlphabet = 19;  // a switch to the base alphabet
constexpr double kMaxRaise = 5.0;  // mixval RAIS and LOWE, in heights
constexpr double kMaxSize = 2.0;   // mixval SIZE
constexpr int kMaxTabPosition = 100000;
constexpr int kMaxMargin = 10000;

// The character of a role argument: one printable ASCII character, blank to remove.
// -1 with warning 2 for anything else.
int role_char(GlobalBlock& g, const char* s) {
  const auto c = static_cast<unsigned char>(s[0]);
  if (c < 32 || c >= 127 || s[1] != '\0') {
    warn(g, 2, s);
    return -1;
  }
  return c;
}

// Gives `role` the character c (blank: none) unless another role holds it.
void assign(GlobalBlock& g, int role, int c) {
  MixState& m = g.text.mix;
  if (c != ' ' && m.role[static_cast<std::size_t>(c)] != kMixNone &&
      m.role[static_cast<std::size_t>(c)] != role) {
    warn(g, kCharsInUse, std::string_view(reinterpret_cast<const char*>(&c), 1));
    return;
  }
  const char old = m.chars[static_cast<std::size_t>(role)];
  if (old != 0) {
    m.role[static_cast<std::size_t>(old)] = kMixNone;
  }
  m.chars[static_cast<std::size_t>(role)] = c == ' ' ? 0 : static_cast<char>(c);
  if (c != ' ') {
    m.role[static_cast<std::size_t>(c)] = static_cast<std::uint8_t>(role);
  }
  m.national = false;
  for (int r = kMixNational; r < kMixRoles; ++r) {
    m.national = m.national || m.chars[static_cast<std::size_t>(r)] != 0;
  }
}

}  // namespace

LabelChars label_chars(const GlobalBlock& g) {
  const MixState& m = g.text.mix;
  auto pick = [&](int role, char fallback) {
    const char c = m.chars[static_cast<std::size_t>(role)];
    return c != 0 ? c : fallback;
  };
  return {pick(kMixRaise, '\x01'), pick(kMixReset, '\x02'), pick(kMixCommand, '\x03')};
}

bool text_box(GlobalBlock& g, std::string_view s, TextBox& box) {
  CodeString codes;
  if (!decode_string(g, s, g.text.charset, codes) || codes.n == 0) {
    return false;
  }
  const TextLayout& l = layout_codes(g, codes);
  box.width = l.length;
  box.ascent = round_int(l.ascent);
  box.descent = round_int(l.descent);
  return true;
}

namespace api {

void mixalf(GlobalBlock& g) { g.text.mix.on = true; }

void mixmod(GlobalBlock& g, const char* cmode) {
  if (const int i = match_keyword(g, "ON  +OFF ", cmode); i != 0) {
    g.text.mix.on = i == 1;
  }
}

void setmix(GlobalBlock& g, const char* cchr, const char* cfunc) {
  const int i = match_keyword(g, "EXP +IND +RES +INST+STAN+GREE+MATH+ITAL+SCRI+RUSS", cfunc);
  if (i == 0) {
    return;
  }
  const int c = role_char(g, cchr);
  if (c < 0) {
    return;
  }
  const int role = i <= 4 ? i : kMixAlphabet + (i - 5);
  if (c != ' ' && i >= 5 && i - 5 == g.text.base_alphabet) {
    // RES already returns to the base alphabet.
    warn(g, kBaseAlphabet, cfunc);
    return;
  }
  assign(g, role, c);
}

void mixval(GlobalBlock& g, double x, const char* copt) {
  const int i = match_keyword(g, "RAIS+LOWE+SIZE", copt);
  if (i == 0) {
    return;
  }
  const double high = i == 3 ? kMaxSize : kMaxRaise;
  if (!(x >= 0.0 && x <= high) || (i == 3 && x == 0.0)) {
    warn(g, 2, x);
    return;
  }
  MixState& m = g.text.mix;
  (i == 1 ? m.raise : i == 2 ? m.lower : m.size) = x;
}

void settab(GlobalBlock& g, const int* nray, int n) {
  if (!check_range(g, n, 0, kMaxTabs)) {
    return;
  }
  for (int k = 0; k < n; ++k) {
    if (!check_range(g, nray[k], 0, kMaxTabPosition)) {
      return;
    }
  }
  MixState& m = g.text.mix;
  std::copy(nray, nray + n, m.tabs.begin());
  m.tab_count = n;
}

void eushft(GlobalBlock& g, const char* cnat, const char* cshf) {
  const int i = match_keyword(g, "GERM+ACUT+GRAV+CIRC+TILD+CEDI+RING+SLAS", cnat);
  if (i == 0) {
    return;
  }
  if (const int c = role_char(g, cshf); c >= 0) {
    assign(g, kMixNational + i - 1, c);
  }
}

void getbox(GlobalBlock& g, const char* cstr, int* nw, int* nasc, int* ndsc) {
  TextBox box;
  text_box(g, cstr, box);
  *nw = box.width;
  *nasc = box.ascent;
  *ndsc = box.descent;
}

void txtbgd(GlobalBlock& g, int ncol) {
  if (check_range(g, ncol, -1, -2)) {
    g.text.mix.background = ncol;
  }
}

void txtmar(GlobalBlock& g, int nmar) {
  if (check_range(g, nmar, -1, kMaxMargin)) {
    g.text.mix.margin = nmar;
  }
}

}  // namespace api
}  // namespace zorvel
