// The commands of formulas: Greek letters (GREE, on the Latin letters as in the Symbol
// font), the signs of the MATH alphabet by their usual names, big operators, function
// names, spaces and the structural commands.

#include <algorithm>
#include <array>
#include <string_view>

#include "text/font_data.h"
#include "text/formula.h"
#include "text/tex_state.h"

namespace zorvel {
namespace {

constexpr std::int8_t S = kAlphabetStan;
constexpr std::int8_t G = kAlphabetGree;
constexpr std::int8_t M = kAlphabetMath;

constexpr TexSymbol glyph(std::string_view n, std::int8_t alphabet, int code, TexClass cls) {
  return {n, TexCmd::Glyph, alphabet, cls, static_cast<std::int16_t>(code), 0.0F};
}
constexpr TexSymbol greek(std::string_view n, char c) {
  return {n, TexCmd::Glyph, G, kTexOrd, static_cast<std::int16_t>(c), 0.0F};
}
constexpr TexSymbol cmd(std::string_view n, TexCmd c, int code = 0, float amount = 0.0F) {
  return {n, c, S, kTexOrd, static_cast<std::int16_t>(code), amount};
}
constexpr TexSymbol func(std::string_view n, bool limits) {
  return {n, TexCmd::Func, S, kTexOp, 0, limits ? 1.0F : 0.0F};
}
constexpr TexSymbol delim(std::string_view n, TexShape shape, TexClass cls) {
  return {n, TexCmd::Delim, S, cls, static_cast<std::int16_t>(shape), 0.0F};
}

// One em of glue: thin, medium and thick spaces are 3/18, 4/18 and 5/18 of it.
constexpr float kThin = 3.0F / 18.0F;
constexpr float kMedium = 4.0F / 18.0F;
constexpr float kThick = 5.0F / 18.0F;

constexpr TexSymbol kSymbols[] = {
    // Greek
    greek("alpha", 'a'), greek("beta", 'b'), greek("gamma", 'g'), greek("delta", 'd'),
    greek("epsilon", 'e'), greek("varepsilon", 'e'), greek("zeta", 'z'), greek("eta", 'h'),
    greek("theta", 'q'), greek("vartheta", 'J'), greek("iota", 'i'), greek("kappa", 'k'),
    greek("lambda", 'l'), greek("mu", 'm'), greek("nu", 'n'), greek("xi", 'x'),
    greek("omicron", 'o'), greek("pi", 'p'), greek("varpi", 'v'), greek("rho", 'r'),
    greek("varrho", 'r'), greek("sigma", 's'), greek("varsigma", 'V'), greek("tau", 't'),
    greek("upsilon", 'u'), greek("phi", 'f'), greek("varphi", 'j'), greek("chi", 'c'),
    greek("psi", 'y'), greek("omega", 'w'), greek("Gamma", 'G'), greek("Delta", 'D'),
    greek("Theta", 'Q'), greek("Lambda", 'L'), greek("Xi", 'X'), greek("Pi", 'P'),
    greek("Sigma", 'S'), greek("Upsilon", 'U'), greek("Phi", 'F'), greek("Psi", 'Y'),
    greek("Omega", 'W'),
    // Signs of the MATH alphabet
    glyph("infty", M, 'i', kTexOrd), glyph("partial", M, 'D', kTexOrd),
    glyph("nabla", M, 'G', kTexOrd), glyph("forall", M, 'A', kTexOrd),
    glyph("exists", M, 'F', kTexOrd), glyph("emptyset", M, 'O', kTexOrd),
    glyph("varnothing", M, 'O', kTexOrd), glyph("aleph", M, 'Z', kTexOrd),
    glyph("hbar", M, 'H', kTexOrd), glyph("angle", M, 'L', kTexOrd),
    glyph("perp", M, 'B', kTexRel), glyph("bot", M, 'B', kTexOrd),
    glyph("neg", M, 'z', kTexOrd), glyph("lnot", M, 'z', kTexOrd),
    glyph("prime", M, 's', kTexOrd), glyph("therefore", M, 'T', kTexRel),
    glyph("pm", M, 'p', kTexBin), glyph("mp", M, 'M', kTexBin),
    glyph("times", M, 't', kTexBin), glyph("div", M, 'd', kTexBin),
    glyph("cdot", M, 127, kTexBin), glyph("circ", M, 'o', kTexBin),
    glyph("cup", M, 'U', kTexBin), glyph("cap", M, 'N', kTexBin),
    glyph("vee", M, 'V', kTexBin), glyph("lor", M, 'V', kTexBin),
    glyph("wedge", M, 'W', kTexBin), glyph("land", M, 'W', kTexBin),
    glyph("otimes", M, 'X', kTexBin), glyph("oplus", M, 'x', kTexBin),
    glyph("ast", S, '*', kTexBin), glyph("setminus", S, '\\', kTexBin),
    glyph("leq", M, 'l', kTexRel), glyph("le", M, 'l', kTexRel),
    glyph("geq", M, 'g', kTexRel), glyph("ge", M, 'g', kTexRel),
    glyph("neq", M, 'n', kTexRel), glyph("ne", M, 'n', kTexRel),
    glyph("approx", M, 'a', kTexRel), glyph("equiv", M, 'Q', kTexRel),
    glyph("sim", M, 'q', kTexRel), glyph("propto", M, 'K', kTexRel),
    glyph("ll", M, 'm', kTexRel), glyph("gg", M, 'y', kTexRel),
    glyph("in", M, 'E', kTexRel), glyph("notin", M, 'e', kTexRel),
    glyph("subset", M, 'C', kTexRel), glyph("supset", M, 'Y', kTexRel),
    glyph("subseteq", M, 'c', kTexRel), glyph("supseteq", M, 'h', kTexRel),
    glyph("parallel", M, 'b', kTexRel), glyph("mid", S, '|', kTexRel),
    glyph("rightarrow", M, 'r', kTexRel), glyph("to", M, 'r', kTexRel),
    glyph("leftarrow", M, 'w', kTexRel), glyph("gets", M, 'w', kTexRel),
    glyph("uparrow", M, 'u', kTexRel), glyph("downarrow", M, 'v', kTexRel),
    glyph("leftrightarrow", M, 'k', kTexRel), glyph("Rightarrow", M, 'f', kTexRel),
    glyph("implies", M, 'f', kTexRel), glyph("Leftrightarrow", M, 'j', kTexRel),
    glyph("iff", M, 'j', kTexRel), glyph("colon", S, ':', kTexPunct),
    glyph("degree", M, 'o', kTexOrd),
    // Big operators
    {"sum", TexCmd::BigOp, M, kTexOp, 'S', 1.0F},
    {"prod", TexCmd::BigOp, M, kTexOp, 'P', 1.0F},
    {"bigcup", TexCmd::BigOp, M, kTexOp, 'U', 1.0F},
    {"bigcap", TexCmd::BigOp, M, kTexOp, 'N', 1.0F},
    {"bigoplus", TexCmd::BigOp, M, kTexOp, 'x', 1.0F},
    {"bigotimes", TexCmd::BigOp, M, kTexOp, 'X', 1.0F},
    {"int", TexCmd::BigOp, M, kTexOp, 'I', 0.0F},
    {"oint", TexCmd::BigOp, M, kTexOp, 'J', 0.0F},
    // Function names
    func("sin", false), func("cos", false), func("tan", false), func("cot", false),
    func("sec", false), func("csc", false), func("arcsin", false), func("arccos", false),
    func("arctan", false), func("sinh", false), func("cosh", false), func("tanh", false),
    func("coth", false), func("log", false), func("ln", false), func("lg", false),
    func("exp", false), func("dim", false), func("ker", false), func("deg", false),
    func("arg", false), func("hom", false), func("det", true), func("gcd", true),
    func("lim", true), func("liminf", true), func("limsup", true), func("max", true),
    func("min", true), func("sup", true), func("inf", true), func("Pr", true),
    // Spaces
    cmd(",", TexCmd::Space, 0, kThin), cmd("thinspace", TexCmd::Space, 0, kThin),
    cmd(":", TexCmd::Space, 0, kMedium), cmd(">", TexCmd::Space, 0, kMedium),
    cmd(";", TexCmd::Space, 0, kThick), cmd("!", TexCmd::Space, 0, -kThin),
    cmd(" ", TexCmd::Space, 0, 1.0F / 3.0F), cmd("quad", TexCmd::Space, 0, 1.0F),
    cmd("qquad", TexCmd::Space, 0, 2.0F),
    // Structure
    cmd("frac", TexCmd::Frac, 0), cmd("dfrac", TexCmd::Frac, 1), cmd("tfrac", TexCmd::Frac, 2),
    cmd("binom", TexCmd::Frac, 3), cmd("sqrt", TexCmd::Sqrt),
    cmd("hat", TexCmd::Accent, kAccentHat), cmd("widehat", TexCmd::Accent, kAccentHat),
    cmd("bar", TexCmd::Accent, kAccentBar), cmd("vec", TexCmd::Accent, kAccentVec),
    cmd("dot", TexCmd::Accent, kAccentDot), cmd("ddot", TexCmd::Accent, kAccentDdot),
    cmd("tilde", TexCmd::Accent, kAccentTilde), cmd("widetilde", TexCmd::Accent, kAccentTilde),
    cmd("overline", TexCmd::Accent, kAccentOverline),
    cmd("underline", TexCmd::Accent, kAccentUnderline),
    cmd("left", TexCmd::Left), cmd("right", TexCmd::Right), cmd("middle", TexCmd::Middle),
    cmd("big", TexCmd::Big, 0, 1.2F), cmd("Big", TexCmd::Big, 0, 1.8F),
    cmd("bigg", TexCmd::Big, 0, 2.4F), cmd("Bigg", TexCmd::Big, 0, 3.0F),
    cmd("bigl", TexCmd::Big, 1, 1.2F), cmd("Bigl", TexCmd::Big, 1, 1.8F),
    cmd("biggl", TexCmd::Big, 1, 2.4F), cmd("Biggl", TexCmd::Big, 1, 3.0F),
    cmd("bigr", TexCmd::Big, 2, 1.2F), cmd("Bigr", TexCmd::Big, 2, 1.8F),
    cmd("biggr", TexCmd::Big, 2, 2.4F), cmd("Biggr", TexCmd::Big, 2, 3.0F),
    cmd("mathrm", TexCmd::Font, kFontRm), cmd("rm", TexCmd::Font, kFontRm),
    cmd("operatorname", TexCmd::Font, kFontRm), cmd("mathit", TexCmd::Font, kFontIt),
    cmd("mathbf", TexCmd::Font, kFontBf), cmd("boldsymbol", TexCmd::Font, kFontBf),
    cmd("mathcal", TexCmd::Font, kFontCal), cmd("text", TexCmd::Text),
    cmd("textrm", TexCmd::Text), cmd("mbox", TexCmd::Text),
    cmd("begin", TexCmd::Begin), cmd("end", TexCmd::End),
    cmd("ldots", TexCmd::Dots, 0), cmd("dots", TexCmd::Dots, 0), cmd("cdots", TexCmd::Dots, 1),
    cmd("limits", TexCmd::Limits, 1), cmd("nolimits", TexCmd::Limits, 0),
    cmd("displaystyle", TexCmd::Ignore), cmd("textstyle", TexCmd::Ignore),
    cmd("nonumber", TexCmd::Ignore),
    // Delimiters by name
    delim("langle", kShapeAngleL, kTexOpen), delim("rangle", kShapeAngleR, kTexClose),
    delim("lfloor", kShapeFloorL, kTexOpen), delim("rfloor", kShapeFloorR, kTexClose),
    delim("lceil", kShapeCeilL, kTexOpen), delim("rceil", kShapeCeilR, kTexClose),
    delim("|", kShapeDoubleVert, kTexOrd), delim("Vert", kShapeDoubleVert, kTexOrd),
    delim("vert", kShapeVert, kTexOrd), delim("lvert", kShapeVert, kTexOpen),
    delim("rvert", kShapeVert, kTexClose), delim("lbrace", kShapeBraceL, kTexOpen),
    delim("rbrace", kShapeBraceR, kTexClose), delim("{", kShapeBraceL, kTexOpen),
    delim("}", kShapeBraceR, kTexClose),
    // Characters that are commands when written plainly
    glyph("$", S, '$', kTexOrd), glyph("%", S, '%', kTexOrd), glyph("&", S, '&', kTexOrd),
    glyph("#", S, '#', kTexOrd), glyph("_", S, '_', kTexOrd),
};

constexpr std::size_t kCount = sizeof kSymbols / sizeof kSymbols[0];

}  // namespace

const TexSymbol* find_tex_symbol(std::string_view name) {
  static const std::array<TexSymbol, kCount> sorted = [] {
    std::array<TexSymbol, kCount> t{};
    std::copy(std::begin(kSymbols), std::end(kSymbols), t.begin());
    std::sort(t.begin(), t.end(),
              [](const TexSymbol& a, const TexSymbol& b) { return a.name < b.name; });
    return t;
  }();
  const auto it = std::lower_bound(
      sorted.begin(), sorted.end(), name,
      [](const TexSymbol& s, std::string_view n) { return s.name < n; });
  return it != sorted.end() && it->name == name ? &*it : nullptr;
}

}  // namespace zorvel
