"""Character layouts shared by every font: the extended codes of the standard alphabet and
the letter positions of the Greek, mathematical and Russian alphabets.

Character codes, not glyph numbers, are used throughout: glyph = code - 31.
"""

# Standard alphabet, codes 127..186: the order of the PostScript driver's re-encoding
# vector (octal 177 to 272).
EXTENDED_1 = "ÄÖÜäöüßÅØÆåøæÑñÇçËÏëïÁÉÍÓÚáéíóúÀÈÌÒÙàèìòùÂÊÎÔÛâêîôûÃãÕõÝýÿ¡¿"

# Codes 187..262, only in fonts with 233 characters: the ISO 8859-1 characters still
# missing (Eth also stands for D with stroke), the multiplication and division signs and
# the degree sign, then the letters of ISO 8859-2 and 8859-3 in Unicode order.  R and L
# with acute (Slovak) did not fit and fall back to R and L.
EXTENDED_2 = ("ÐðÞþ×÷°"
              "ĂăĄąĆćĈĉĊċČčĎďđĘęĚěĜĝĞğĠġĤĥĦħİıĴĵĽľŁłŃńŇňŐőŘřŚśŜŝŞşŠšŢţŤťŬŭŮůŰűŹźŻżŽž")

# Codes 263 and 264.
EXTENDED_3 = "¤©"

EXTENDED = EXTENDED_1 + EXTENDED_2 + EXTENDED_3
assert len(EXTENDED_1) == 60 and len(EXTENDED_2) == 76 and len(EXTENDED) == 138

ASCII = "".join(chr(c) for c in range(33, 127))


def stan_chars(count):
    """The characters of a standard alphabet of count characters (codes 32 .. 31 + count)."""
    chars = " " + ASCII + EXTENDED
    return chars[:count]


def stan_code(ch):
    """The character code of ch in the standard alphabet (0 if it has none)."""
    if ch == " ":
        return 32
    if ch in ASCII:
        return ord(ch)
    i = EXTENDED.find(ch)
    return 127 + i if i >= 0 else 0


# Greek: the letters stand on the Latin letters as in the PostScript Symbol font, which the
# PostScript driver selects for Greek text, so that both draw the same letter.
GREEK_CAPITALS = "ΑΒΧΔΕΦΓΗΙϑΚΛΜΝΟΠΘΡΣΤΥςΩΞΨΖ"
GREEK_SMALLS = "αβχδεφγηιϕκλμνοπθρστυϖωξψζ"
assert len(GREEK_CAPITALS) == 26 and len(GREEK_SMALLS) == 26

# Greek codes 127..189 (glyphs 54..116): the accented letters and the other characters of
# ISO 8859-7, so that every character of that set has a glyph.  The alphabets of 95
# characters end after code 168; codes 169..189 are free.
GREEK_EXTENDED = ("ΆΈΉΊΌΎΏΪΫάέήίόύώϊϋΐΰ"
                  "΄΅·«»£§°±²³½¦¬―‘’©¨ͺ€₯")
assert len(GREEK_EXTENDED) == 42
GREEK_CHARS = 116
GREEK_SHORT_CHARS = 95


def greek_code(ch):
    """The code of a Greek character in alphabet GREE (0 if it has none)."""
    if ch in GREEK_CAPITALS:
        return ord("A") + GREEK_CAPITALS.index(ch)
    if ch in GREEK_SMALLS:
        return ord("a") + GREEK_SMALLS.index(ch)
    i = GREEK_EXTENDED.find(ch)
    return 127 + i if i >= 0 else 0


def greek_slots(count):
    """Characters on glyphs 2 .. count of alphabet GREE (None for a free slot)."""
    slots = list(GREEK_CAPITALS) + list(GREEK_SMALLS) + list(GREEK_EXTENDED)
    slots += [None] * (count - 1 - len(slots))
    return slots[:count - 1]


# Russian: 33 + 33 letters.  Glyphs 8..37 are reached from codes 65..94 (A-Z [ \ ] ^),
# 38..67 from 97..126 (a-z { | } ~), 2..4 from 36..38 ($ % &) and 5..7 from 60..62 (< = >).
# The letters follow their Latin sound where one exists; the remaining capitals stand on
# [ \ ] ^ $ % & and the small letters on { | } ~ < = >.
RUSSIAN_ON_LATIN = "АБЦДЕФГХИЙКЛМНОПЯРСТУВШЖЫЗ"  # A .. Z
RUSSIAN_CAPITALS_REST = "ЮЭЩЧ"  # [ \ ] ^
RUSSIAN_CAPITALS_LOW = "ЁЪЬ"  # $ % &
RUSSIAN_SMALLS_REST = "юэщч"  # { | } ~
RUSSIAN_SMALLS_LOW = "ёъь"  # < = >
RUSSIAN_CHARS = 95


def russian_slots():
    """Characters on glyphs 2..95 of alphabet RUSS (None for a free slot)."""
    caps = RUSSIAN_ON_LATIN + RUSSIAN_CAPITALS_REST
    smalls = caps.lower()[:26] + RUSSIAN_SMALLS_REST
    slots = list(RUSSIAN_CAPITALS_LOW) + list(RUSSIAN_SMALLS_LOW) + list(caps) + list(smalls)
    assert len(slots) == 66 and len(set(slots)) == 66
    return slots + [None] * (RUSSIAN_CHARS - 1 - 66)


def russian_code(ch):
    """The code of a Russian letter in alphabet RUSS (0 if it has none)."""
    caps = RUSSIAN_ON_LATIN + RUSSIAN_CAPITALS_REST
    if ch in caps:
        return 65 + caps.index(ch)
    if ch in caps.lower():
        return 97 + caps.lower().index(ch)
    if ch in RUSSIAN_CAPITALS_LOW:
        return 36 + RUSSIAN_CAPITALS_LOW.index(ch)
    if ch in RUSSIAN_SMALLS_LOW:
        return 60 + RUSSIAN_SMALLS_LOW.index(ch)
    return 0


# Mathematical symbols on the letters (glyphs 2..53) and on code 127 (glyph 54).
MATH_CAPITALS = "∀⊥⊂∂∈∃∇ℏ∫∮∝∠∓∩∅∏≡√∑∴∪∨∧⊗⊃ℵ"
MATH_SMALLS = "≈∥⊆÷∉⇒≥⊇∞⇔↔≤≪≠°±∼→′×↑↓←⊕≫¬"
MATH_DEL = "·"
MATH_CHARS = 96
assert len(MATH_CAPITALS) == 26 and len(MATH_SMALLS) == 26


def math_slots():
    slots = list(MATH_CAPITALS) + list(MATH_SMALLS) + [MATH_DEL]
    return slots + [None] * (MATH_CHARS - 1 - len(slots))


# Script: capitals, small letters and codes 127..175 of the extended standard alphabet.
SCRIPT_CHARS = 102


def script_slots():
    caps = [chr(c) for c in range(65, 91)]
    smalls = [chr(c) for c in range(97, 123)]
    return caps + smalls + list(EXTENDED_1[:SCRIPT_CHARS - 53])


# Italic of the complex font: small letters (glyphs 2..27) and the small letters with
# dieresis a, o, u (codes 130..132 reach glyphs 28..30); the rest of its 102 characters
# are free.
ITALIC_CHARS = 102


def italic_slots():
    slots = [chr(c) for c in range(97, 123)] + list("äöü")
    return slots + [None] * (ITALIC_CHARS - 1 - len(slots))
