"""The alphabets of the Hershey-based stroke fonts, as lists of glyphs per glyph number.

Each builder returns a list of (character or None, Glyph or None) for glyphs 2, 3, ...;
glyph 1, the blank, has no entry.  Hershey glyphs keep their units; every glyph is moved
so that its leftmost point is at x = 0.
"""

import os

from design import read_design
from glyph import Glyph
from hershey import hershey
import latin
import layout
import marks as mk

HERE = os.path.dirname(os.path.abspath(__file__))
_EXTRAS = None


def extra(ch, style):
    """A glyph of extras.txt for the style, falling back to the lighter styles."""
    global _EXTRAS
    if _EXTRAS is None:
        _EXTRAS = read_design(os.path.join(HERE, "extras.txt"))[0]
    if style == "duplex":
        # The duplex letters are the simplex ones drawn twice, side by side.
        g = extra(ch, "simplex")
        return g + g.shift(1, 0)
    order = {"triplex": ["complex", "simplex"], "complex": ["complex", "simplex"],
             "simplex": ["simplex"], "math": ["math", "simplex"]}[style]
    for s in order:
        key = "%s@%s" % (ch, s)
        if key in _EXTRAS:
            return _EXTRAS[key]
    raise KeyError("no extra glyph %r for style %s" % (ch, style))


def caret(style):
    """The ASCII circumflex, where the numbered sources hold an arrow."""
    g = Glyph([[(0, 0), (5, 6), (10, 0)]])
    if style != "simplex":
        g = g + Glyph([[(0, 0), (5, 5), (10, 0)]])
    return g.shift(0, 15)


# ==========================================================================================
# Composition kits
# ==========================================================================================

class HersheyKit(latin.Kit):
    """A kit over a dictionary of glyphs by character."""

    def __init__(self, glyphs, style, extras=None):
        self.glyphs = glyphs
        self.style = style
        xheight = glyphs["x"].top() if "x" in glyphs else 14
        dot_src = glyphs.get("i") or hershey("timesr")["i"]
        dot = mk.centred_dot(dot_src, xheight)
        apostrophe = mk.centred_apostrophe(glyphs.get("'") or hershey("timesr")["'"])
        marks = mk.MarkSet(style, dot, apostrophe)
        super().__init__(glyphs.get, marks, xheight, extra=extras or {})


def ascii_glyphs(setname, caret_style=None, punctuation=None, keep=""):
    """Glyphs of codes 33..126 of a Hershey set by character.

    caret_style replaces the arrow that numbered sets carry on '^'; punctuation names a
    set whose digits and punctuation replace those of setname, except for the characters
    in keep.
    """
    h = hershey(setname)
    out = {chr(c): h[c] for c in range(33, 127)}
    if punctuation:
        p = hershey(punctuation)
        for c in range(33, 127):
            ch = chr(c)
            if not ch.isalpha() and ch not in keep:
                out[ch] = p[c]
    if caret_style:
        out["^"] = caret(caret_style)
    return out


def roman_kit(style):
    if style == "simplex":
        glyphs = ascii_glyphs("rowmans", "simplex")
    elif style == "duplex":
        glyphs = ascii_glyphs("rowmand", "duplex")
    elif style == "triplex":
        glyphs = ascii_glyphs("rowmant", "triplex")
    elif style == "complex":
        # The complex letters come from an unnumbered set whose punctuation stands off the
        # base line; digits and punctuation come from the numbered complex set instead.
        glyphs = ascii_glyphs("timesr", "complex", punctuation="greekc", keep="\"'`")
    else:
        raise ValueError(style)
    extras = {"ß": extra("ß", style)}
    return HersheyKit(glyphs, style, extras=extras)


# ==========================================================================================
# Gothic
# ==========================================================================================

def gothic_alphabets():
    """STAN (English gothic), ITAL (Italian gothic) and SCRI (German gothic)."""
    stan = HersheyKit(ascii_glyphs("gothgbt", "complex"), "complex")
    ital = HersheyKit(ascii_glyphs("gothitt", "complex"), "complex")
    german = ascii_glyphs("gothgrt", "complex")
    # The German s at 's' is the long s; the sharp s joins it with the German z.
    long_s, z = german["s"].normalized(), german["z"].normalized()
    sharp_s = long_s + z.shift(long_s.bbox()[2] - 3, 0)
    scri = HersheyKit(german, "complex", extras={"ß": sharp_s})
    return ([(ch, stan.glyph(ch).normalized()) for ch in layout.stan_chars(95)[1:]],
            [(ch, ital.glyph(ch).normalized()) for ch in layout.stan_chars(95)[1:]],
            [(ch, scri.glyph(ch).normalized()) for ch in layout.stan_chars(102)[1:]])


# ==========================================================================================
# Greek
# ==========================================================================================

# Positions of the Greek letters in the numbered Hershey Greek sets (alphabetical order).
_GREEK_ORDER_CAPS = "ΑΒΓΔΕΖΗΘΙΚΛΜΝΞΟΠΡΣΤΥΦΧΨΩ"
_GREEK_ORDER_SMALL = "αβγδεζηϑικλμνξοπρστυφχψω"


def greek_kit(style):
    setname = {"simplex": "greeks", "complex": "greekc"}[style]
    h = hershey(setname)
    glyphs = {}
    for i, ch in enumerate(_GREEK_ORDER_CAPS):
        glyphs[ch] = h[65 + i]
    for i, ch in enumerate(_GREEK_ORDER_SMALL):
        glyphs[ch] = h[97 + i]
    roman = roman_kit(style)
    for ch, g in roman.glyphs.items():
        glyphs.setdefault(ch, g)
    glyphs["‘"] = h["`"]
    glyphs["’"] = h["'"]
    kit = HersheyKit(glyphs, style)  # marks and dots are those of the roman letters
    heavy = style != "simplex"
    omicron, omega = glyphs["ο"], glyphs["ω"]
    ox0, _, ox1, _ = omicron.bbox()
    cx = (ox0 + ox1) // 2
    stem = Glyph([[(cx, -7), (cx, 20)]] + ([[(cx + 1, -7), (cx + 1, 20)]] if heavy else []))
    wx0, _, wx1, wy1 = omega.bbox()
    bar = Glyph([[(wx0, wy1), (wx1, wy1)]] +
                ([[(wx0, wy1 + 1), (wx1, wy1 + 1)]] if heavy else []))
    theta = glyphs["Θ"]
    tx0 = theta.bbox()[0]
    kit.extra.update({
        "θ": theta.scale(0.6, 1.0, cx=tx0),
        "ς": extra("ς", style),
        "ϕ": omicron + stem,
        "ϖ": omega + bar,
    })
    kit.extra.update(_iso7_symbols(kit, roman, style))
    return kit


def _iso7_symbols(kit, roman, style):
    """The characters of ISO 8859-7 that are neither letters nor ASCII."""
    m = kit.marks
    xh = kit.xheight
    heavy = style != "simplex"

    def small(ch, s=0.55):
        return roman.glyph(ch).normalized().scale(s)

    def top_at(g, y):
        return g.shift(0, y - g.top())

    acute = m.acute()
    lt, gt = small("<", 0.6), small(">", 0.6)
    one, two, three = small("1"), small("2"), small("3")
    bar = roman.glyph("|")
    _, by0, _, by1 = bar.bbox()
    mid = (by0 + by1) // 2
    dash = Glyph([[(0, 9), (20, 9)]] + ([[(0, 10), (20, 10)]] if heavy else []))
    delta, rho = kit.glyph("Δ").normalized().scale(0.6), kit.glyph("ρ").normalized().scale(0.6)
    return {
        "΄": acute.shift(2, xh + 2),
        "΅": m.dieresis().shift(4, xh + 2) + acute.shift(4, xh + 5),
        "·": m.dot().shift(0, xh - 3),
        "«": lt.shift(0, 4) + lt.shift(lt.bbox()[2] + 2, 4),
        "»": gt.shift(0, 4) + gt.shift(gt.bbox()[2] + 2, 4),
        "£": extra("£", style),
        "§": hershey("symbolic")[105],
        "°": latin.compose(roman, "°"),
        "±": hershey("mathlow")[33],
        "²": top_at(two, 21),
        "³": top_at(three, 21),
        "½": top_at(one, 21) + Glyph([[(0, 0), (14, 21)]]) + two.shift(one.bbox()[2] + 4, 0),
        "¦": bar.clip(ymax=mid - 2) + bar.clip(ymin=mid + 2),
        "¬": extra("¬", style),
        "―": dash,
        "©": latin.compose(roman, "©"),
        "¨": m.dieresis().shift(4, xh + 2),
        "ͺ": extra("ͺ", style),
        "€": extra("€", style),
        "₯": delta + rho.shift(delta.bbox()[2] + 1, 0),
    }


def greek_alphabet(style, count):
    kit = greek_kit(style)
    out = []
    for ch in layout.greek_slots(count):
        if ch is None:
            out.append((None, None))
            continue
        g = kit.glyph(ch)
        if g is None:
            raise SystemExit("no Greek glyph for %r (%s)" % (ch, style))
        out.append((ch, g.normalized()))
    return out


# ==========================================================================================
# Russian
# ==========================================================================================

_CYRILLIC_POSITIONS = {
    "А": "A", "Б": "B", "Э": "C", "Д": "D", "Ф": "F", "Г": "G", "Ж": "H", "И": "I",
    "Ч": "J", "К": "K", "Л": "L", "М": "M", "Н": "N", "О": "O", "П": "P", "Ш": "Q",
    "Р": "R", "С": "S", "Т": "T", "Ю": "U", "В": "V", "Щ": "W", "Х": "X", "У": "Y",
    "З": "Z", "Е": "[", "Ъ": "]", "Я": "^", "Ь": "_", "Ц": "`", "Ы": "$",
    "а": "a", "б": "b", "э": "c", "д": "d", "й": "e", "ф": "f", "г": "g", "ж": "h",
    "и": "i", "ч": "j", "к": "k", "л": "l", "м": "m", "н": "n", "о": "o", "п": "p",
    "ш": "q", "р": "r", "с": "s", "т": "t", "ю": "u", "в": "v", "щ": "w", "х": "x",
    "у": "y", "з": "z", "е": "{", "ъ": "|", "я": "}", "ь": "~", "ц": "%", "ы": "&",
}


def russian_alphabet():
    h = hershey("cyrillic")
    glyphs = {ch: h[pos] for ch, pos in _CYRILLIC_POSITIONS.items()}
    glyphs["i"] = hershey("timesr")["i"]  # the dot of the dieresis
    kit = HersheyKit(glyphs, "complex")
    # The breve of the small short i, which the set has, completes the capital.
    breve = glyphs["й"].keep(lambda s: min(y for _, y in s) > kit.xheight)
    bx0, by0, bx1, _ = breve.bbox()
    breve = breve.shift(-(bx0 + bx1) // 2, -by0)
    kit.extra["Й"] = kit.above(glyphs["И"], breve)
    # The set repeats the capital E reversed for the small one: the small es turned
    # round, with a bar, takes its place.
    es = glyphs["с"].mirror_x()
    x0, _, x1, _ = es.bbox()
    kit.extra["э"] = es + Glyph([[(x0 + 5, 7), (x1 - 1, 7)]])
    out = []
    for ch in layout.russian_slots():
        if ch is None:
            out.append((None, None))
            continue
        out.append((ch, kit.glyph(ch).normalized()))
    return out


# ==========================================================================================
# Mathematical symbols, script, italic
# ==========================================================================================

_MATH_POSITIONS = {
    "±": 33, "∓": 34, "×": 35, "·": 36, "≤": 38, "≥": 39, "∏": 58, "∑": 59, "≠": 63,
    "≡": 64, "∝": 94, "∞": 95, "°": 96, "√": 98, "⊂": 100, "∪": 101, "⊃": 102, "∩": 103,
    "∈": 104, "→": 105, "↑": 106, "←": 107, "↓": 108, "∂": 109, "∇": 110, "∫": 112,
    "∃": 118, "ℵ": 119, "÷": 120, "∥": 121, "⊥": 122, "∠": 124, "∴": 126, "∼": 127,
}


def math_alphabet():
    h = hershey("mathlow")
    g = {ch: h[pos] for ch, pos in _MATH_POSITIONS.items()}
    for ch in "∀∨∧′≪≫⇒⇔↔⊕⊗∅≈":
        g[ch] = extra(ch, "simplex")
    g["¬"] = extra("¬", "math")
    integral = g["∫"]
    ix0, iy0, ix1, iy1 = integral.bbox()
    ring = extra("∮", "simplex")
    rx0, ry0, rx1, ry1 = ring.bbox()
    g["∮"] = integral + ring.shift((ix0 + ix1 - rx0 - rx1) // 2, (iy0 + iy1 - ry0 - ry1) // 2)
    h_small = hershey("rowmans")["h"]
    hx0 = h_small.bbox()[0]
    g["ℏ"] = h_small + Glyph([[(hx0 - 2, 15), (hx0 + 6, 19)]])

    def with_bar(sym):
        x0, y0, x1, y1 = sym.bbox()
        return sym.shift(0, 3) + Glyph([[(x0, y0 - 1), (x1, y0 - 1)]])

    g["⊆"] = with_bar(g["⊂"])
    g["⊇"] = with_bar(g["⊃"])
    ex0, ey0, ex1, ey1 = g["∈"].bbox()
    g["∉"] = g["∈"] + Glyph([[(ex0 + 1, ey0 - 3), (ex1 - 1, ey1 + 3)]])
    out = []
    for ch in layout.math_slots():
        out.append((ch, g[ch].normalized()) if ch else (None, None))
    return out


def script_alphabet():
    h = hershey("scriptc")
    glyphs = {chr(c): h[c] for c in range(33, 127)}
    # The script has no sharp s; the simple one, slanted like the script, stands in.
    sharp_s = extra("ß", "simplex").map(lambda x, y: (x + (y * 3) // 10, y))
    kit = HersheyKit(glyphs, "complex", extras={"ß": sharp_s})
    kit.extra["Æ"] = latin.ligature(kit, "A", "E", 6)
    return [(ch, kit.glyph(ch).normalized()) for ch in layout.script_slots()]


def italic_alphabet():
    glyphs = ascii_glyphs("timesi", "complex")
    kit = HersheyKit(glyphs, "complex")
    out = []
    for ch in layout.italic_slots():
        out.append((ch, kit.glyph(ch).normalized()) if ch else (None, None))
    return out
