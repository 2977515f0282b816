"""Tables from the 8-bit character sets and Unicode to the fonts' character codes.

The sets are decoded with Python's codecs, so every table follows the published charts;
each character is then looked up in the layouts of layout.py.  A character without a
glyph maps to its unaccented letter if there is one, to a plain ASCII stand-in for a few
signs, and otherwise to 0 (a blank).
"""

import unicodedata

import layout

STAN, GREE, MATH, ITAL, SCRI, RUSS = range(6)

# Signs without a glyph of their own that have a fair ASCII stand-in.
_ASCII_STAND_INS = {
    "\u00a0": " ",   # no-break space
    "\u00ad": "-",   # soft hyphen
    "\u00b4": "'",   # acute accent
    "\u00b7": ".",   # middle dot
    "\u00b2": "2", "\u00b3": "3", "\u00b9": "1",
    "\u00b5": "u",   # micro sign
    "\u2116": "#",   # numero sign
    "\u2019": "'", "\u2018": "`",
}

# Letters of other Cyrillic languages drawn with the Russian letter they look like.
_CYRILLIC_LOOKALIKES = {
    "Ѐ": "Е", "ѐ": "е", "Ѝ": "И", "ѝ": "и", "Ѓ": "Г", "ѓ": "г", "Ќ": "К", "ќ": "к",
    "Ў": "У", "ў": "у", "Є": "Э", "є": "э",
}
# ... and those that look like Latin letters (only reachable where the table gives an
# alphabet too).
_CYRILLIC_LATIN = {"Ѕ": "S", "ѕ": "s", "І": "I", "і": "i", "Ї": "Ï", "ї": "ï", "Ј": "J",
                   "ј": "j"}


def _base_letter(ch):
    decomposed = unicodedata.normalize("NFD", ch)
    base = decomposed[0]
    if base != ch and base.isascii() and base.isalpha():
        return base
    return None


def stan(ch):
    """The STAN code of ch: its glyph, its unaccented letter, a stand-in, or 0."""
    ch = unicodedata.normalize("NFC", ch)
    code = layout.stan_code(ch)
    if code:
        return code
    if ch in _ASCII_STAND_INS:
        return ord(_ASCII_STAND_INS[ch])
    base = _base_letter(ch)
    if base:
        return ord(base)
    if ch == "Đ":
        return layout.stan_code("Ð")
    return 0


def _passes_to_stan(alphabet, code):
    """Whether the remapping of alphabet GREE or RUSS passes code on to STAN."""
    g = code - 31
    if alphabet == GREE:
        return g < 34 or 60 <= g <= 65 or 92 <= g <= 95
    return not (5 <= g <= 7 or 29 <= g <= 31 or 34 <= g <= 63 or 66 <= g <= 95) and g < 96


def russ(ch):
    """A code in alphabet RUSS for ch (0 if none)."""
    ch = _CYRILLIC_LOOKALIKES.get(ch, ch)
    code = layout.russian_code(ch)
    if code:
        return code
    code = stan(ch)
    return code if code and _passes_to_stan(RUSS, code) else 0


def gree(ch):
    """A code in alphabet GREE for ch (0 if none); the Greek ano teleia is the middle dot."""
    ch = unicodedata.normalize("NFC", ch)
    code = layout.greek_code(ch)
    if code:
        return code
    code = stan(ch)
    return code if code and _passes_to_stan(GREE, code) else 0


def _decode(codec, byte):
    try:
        return bytes([byte]).decode(codec)
    except UnicodeDecodeError:
        return None


def byte_table(codec, first, last, fn):
    out = []
    for b in range(first, last + 1):
        ch = _decode(codec, b)
        out.append((ch, fn(ch) if ch else 0))
    return out


def tables():
    """Every character-set table as (C++ name, element type, first code,
    [(character, value)])."""
    t = []
    t.append(("kIso1Codes", "uint16_t", 191, byte_table("latin_1", 191, 255, stan)))
    t.append(("kIso2Codes", "uint16_t", 160, byte_table("iso8859_2", 160, 255, stan)))
    t.append(("kIso3Codes", "uint16_t", 160, byte_table("iso8859_3", 160, 255, stan)))
    t.append(("kIso5Codes", "uint8_t", 160, byte_table("iso8859_5", 160, 255, russ)))
    t.append(("kKoi8Codes", "uint8_t", 160, byte_table("koi8_r", 160, 255, russ)))
    t.append(("kIso7Codes", "uint8_t", 160, byte_table("iso8859_7", 160, 255, gree)))

    cyr_codes, cyr_alpha = [], []
    for cp in range(0x400, 0x460):
        ch = chr(cp)
        code = russ(ch)
        alpha = RUSS
        if not code and ch in _CYRILLIC_LATIN:
            code, alpha = stan(_CYRILLIC_LATIN[ch]), STAN
        if not code:
            alpha = STAN
        cyr_codes.append((ch, code))
        cyr_alpha.append((ch, alpha))
    t.append(("kUnicodeCyrillicCodes", "uint16_t", 0x400, cyr_codes))
    t.append(("kUnicodeCyrillicAlphabets", "uint8_t", 0x400, cyr_alpha))

    gr_codes, gr_alpha = [], []
    for cp in range(0x386, 0x3CF):
        ch = chr(cp)
        if unicodedata.category(ch) == "Cn":
            gr_codes.append((None, 0))
            gr_alpha.append((None, STAN))
            continue
        code = gree(ch)
        gr_codes.append((ch, code))
        gr_alpha.append((ch, GREE if code else STAN))
    t.append(("kUnicodeGreekCodes", "uint16_t", 0x386, gr_codes))
    t.append(("kUnicodeGreekAlphabets", "uint8_t", 0x386, gr_alpha))
    return t
