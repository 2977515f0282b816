#!/usr/bin/env python3
"""Generates the calling half of the fuzzer from include/routines.tbl, and its seeds.

Usage: gen_fuzz.py ROOT OUT.cpp         the calls of every routine (see fuzz/runtime.h)
       gen_fuzz.py --seeds ROOT DIR     writes the seed corpus into DIR

Every row of the table becomes a case that reads the routine's arguments from the fuzz
input in the encoding of fuzz/runtime.h, so that a routine added to the table is fuzzed
without further work. The keywords passed to string arguments are harvested from the
library's sources: every keyword list ("OFF +ON  +FILE"), every short upper-case literal
("SEND", "DA4L") and every device key of drivers/registry.cpp.
"""

import math
import os
import re
import struct
import sys

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from gen_api import parse_table  # noqa: E402

# The caller's text buffers: zeroed buffers of their count (an "inout" list starts empty).
TEXT_BUFFERS = ("out str[]", "inout str[]")

# Routines that are never called, with the reason. A routine that opens a window or waits
# for the mouse or the keyboard belongs here (without a display they only warn, but a
# fuzzer run under X must not wait for a user).
_WAITS = "waits for the user when a display is open"
EXCLUDED = {"wgfin": _WAITS, "dwgmsg": _WAITS, "dwgbut": _WAITS, "dwglis": _WAITS,
            "dwgtxt": _WAITS, "dwgfil": _WAITS}

# Arguments held to a range, with the reason: (routine, argument) -> (lowest, highest).
CAPS = {
    # The size of the thread table, allocated at once: a count of millions asks for
    # gigabytes, and the library ends the process when it cannot have them.
    ("thrini", "n"): (1, 64),
}

# String arguments that name a file: special names (/dev/null, /dev/full, names too long)
# or names inside the input's own folder.
FILE_NAME_ARGS = {"cfil"}

# Folders at the top of the tree that hold no library code.
NOT_LIBRARY = {"tests", "tools", "examples", "bench", "cmake", "include", "fuzz", "jni",
               "doc", "docs", "gallery"}

# Strings of the formula mode (texmod), well and badly formed, added to the keywords that
# string arguments draw from, so that texts and macros get formulas to take apart.
FORMULA_STRINGS = [
    "$x^2$", "$$\\sum_{i=1}^{n} \\frac{(x_i-\\bar x)^2}{\\sigma^2}$$",
    "$\\frac{\\alpha_i^2}{\\sqrt{2\\pi}}$", "$\\sqrt[3]{\\left(\\frac{a}{b}\\right)}$",
    "$\\begin{pmatrix}a&b\\\\c&d\\end{pmatrix}$",
    "$\\begin{cases}x&\\text{if }x>0\\\\0\\end{cases}$", "$\\int_0^\\infty\\hat{f}\\,dx$",
    "\\$5 $a$", "$", "$$", "$$$$", "${{{{{{{{{{{{{{{{{{{{{{{{{{{{{{{{{{x$", "$}$", "$\\frac$",
    "$\\left(x$", "$\\right)$", "$a^b^c$", "$\\foo$", "$\\begin{x}\\end{y}$", "$&\\\\$",
    "\\m", "\\m\\m", "{\\m}", "#1#2", "$\\m$", "$\\m{a}{b}$",
]

KEY_LIST = re.compile(r'"([A-Z0-9 ]{1,4}(?:\+[A-Z0-9 ]{1,4})+)"')
KEY_WORD = re.compile(r'"([A-Z][A-Z0-9 ]{1,3})"')
DEVICE_ROW = re.compile(r'(?:DeviceInfo\{|\b\w+\()\s*"([^"]{1,4})"\s*,\s*\d+')
PAGE_ROW = re.compile(r'\{"([A-Z0-9]{3})L",\s*\d+,\s*\d+\}')


def library_sources(root):
    for top in sorted(os.listdir(root)):
        path = os.path.join(root, top)
        if not os.path.isdir(path) or top.startswith((".", "build")) or top in NOT_LIBRARY:
            continue
        for folder, _, files in sorted(os.walk(path)):
            for f in sorted(files):
                if f.endswith((".cpp", ".h")):
                    yield os.path.join(folder, f)


def harvest_keywords(root):
    """The library's keywords and device keys, without their padding, sorted."""
    words = set()
    for path in library_sources(root):
        with open(path, encoding="utf-8") as f:
            code = "\n".join(line for line in f if not line.lstrip().startswith("//"))
        for m in KEY_LIST.finditer(code):
            words.update(w.strip() for w in m.group(1).split("+"))
        words.update(m.group(1).strip() for m in KEY_WORD.finditer(code))
        if path.endswith(os.path.join("drivers", "registry.cpp")):
            words.update(m.group(1).strip() for m in DEVICE_ROW.finditer(code))
        # Page formats are listed in their landscape form; the portrait form ends in P.
        words.update(m.group(1) + "P" for m in PAGE_ROW.finditer(code))
    return sorted(w for w in words if w)


def routine_ids(routines):
    """A 16-bit id per routine (FNV-1a of its name), unique: the seeds keep calling the
    same routines when rows are added to the table."""
    ids = {}
    for r in sorted(routines, key=lambda r: r.name):
        h = 0x811C9DC5
        for b in r.name.encode():
            h = ((h ^ b) * 0x01000193) & 0xFFFFFFFF
        i = h & 0xFFFF
        while i in ids.values():
            i = (i + 1) & 0xFFFF
        ids[r.name] = i
    return ids


def callable_routines(table):
    return [r for r in table if r.name not in EXCLUDED]


def c_string(s):
    # Octal escapes end after three digits, so that a digit or letter after them is safe.
    return '"' + "".join(c if c.isalnum() or c in " +-_." else f"\\{ord(c):03o}" for c in s) + '"'


def elements(a):
    """The element count of an array argument, as C."""
    if len(a.counts) == 2:
        nx, ny = (f"a_{c}" for c in a.counts)
        return f"({nx} > 0 && {ny} > 0 ? 1LL * {nx} * {ny} : 0LL)"
    c = a.counts[0]
    return c if c.isdigit() else f"a_{c}"


def gen_case(r):
    counts = {c for a in r.args for c in a.counts}
    pairs = [a.counts for a in r.args if len(a.counts) == 2]
    lines = []
    call = []
    for a in r.args:
        v = "a_" + a.name
        call.append(v + (".get()" if a.kind in ("str",) or a.is_array or a.kind in TEXT_BUFFERS
                         else ""))
        if a.is_array or a.kind in TEXT_BUFFERS:
            continue
        if a.kind == "int":
            reader = "read_count" if a.name in counts else "read_int"
            lines.append(f"int {v} = zfuzz::{reader}(r);")
            if (r.name, a.name) in CAPS:
                lo, hi = CAPS[(r.name, a.name)]
                span = hi - lo + 1
                lines.append(f"{v} = static_cast<int>({lo} + (static_cast<long long>({v}) % {span}"
                             f" + {span}) % {span});")
        elif a.kind == "dbl":
            lines.append(f"const double {v} = zfuzz::read_dbl(r);")
        elif a.kind == "str":
            reader = "read_file_name" if a.name in FILE_NAME_ARGS else "read_str"
            lines.append(f"const zfuzz::Str {v} = zfuzz::{reader}(r);")
        elif a.kind == "file":
            lines.append(f"std::FILE* const {v} = zfuzz::read_file(r);")
        elif a.kind == "cb":
            cb = a.callback.name
            lines.append(f"const {cb} {v} = zfuzz::read_present(r) ? cb_{cb} : nullptr;")
        elif a.kind in ("out int", "out dbl"):
            t = "int" if a.base == "int" else "double"
            lines.append(f"{t} {v}_value = 0;")
            lines.append(f"{t}* const {v} = zfuzz::read_present(r) ? &{v}_value : nullptr;")
        elif a.kind == "buf":
            lines.append(f"char* const {v} = zfuzz::sized_chars(r);")
        elif a.kind in ("out int[*]", "out dbl[*]"):
            t = "int" if a.base == "int" else "double"
            reader = "sized_ints" if a.base == "int" else "sized_dbls"
            lines.append(f"{t}* const {v} = zfuzz::{reader}(r);")
        else:
            sys.exit(f"gen_fuzz.py: {r.name}: no reader for the kind '{a.kind}'")
    for nx, ny in pairs:
        lines.append(f"zfuzz::cap_pair(a_{nx}, a_{ny});")
    for a in r.args:
        if not (a.is_array or a.kind in TEXT_BUFFERS):
            continue
        n = elements(a)
        if a.kind in TEXT_BUFFERS:
            reader = "out_chars"  # an inout list starts empty
        elif a.kind.startswith("out "):
            reader = f"out_{a.base}_array"
        else:
            reader = f"read_{a.base}_array"
        lines.append(f"const auto a_{a.name} = zfuzz::{reader}(r, {n});")
    shown = []
    for a in r.args:
        v = "a_" + a.name
        if a.is_array or a.kind in TEXT_BUFFERS:
            shown.append(f"zfuzz::show({v}, {elements(a)})")
        elif a.kind in ("cb", "out int", "out dbl", "buf", "out int[*]", "out dbl[*]"):
            shown.append(f'zfuzz::show_pointer(reinterpret_cast<const void*>({v}), "{a.kind.split()[-1]}")')
        else:
            shown.append(f"zfuzz::show({v})")
    lines.append(f'if (zfuzz::tracing()) {{\n        zfuzz::trace("{r.name}", {{{", ".join(shown)}}});\n      }}')
    prefix = "(void)" if r.ret != "void" else ""
    lines.append(f"{prefix}{r.name}({', '.join(call)});")
    return lines


def gen_calls(table, keywords):
    routines = callable_routines(table)
    ids = routine_ids(routines)
    order = sorted(routines, key=lambda r: ids[r.name])
    out = ["// Generated by tools/gen_fuzz.py from include/routines.tbl, do not edit.\n",
           "#include <algorithm>\n#include <cstdio>\n#include <iterator>\n\n",
           '#include "fuzz/runtime.h"\n#include "zorvel.h"\n\n',
           "namespace zfuzz {\n\n",
           "const char* const kKeywords[] = {\n"]
    out += [f"    {c_string(k)},\n" for k in keywords + FORMULA_STRINGS]
    out.append("};\nconst std::size_t kKeywordCount = std::size(kKeywords);\n\n")
    out.append("namespace {\n\n// Callbacks that do nothing harmful.\n")
    for cb in table.callbacks.values():
        params = ", ".join({"int": "int", "dbl": "double", "str": "const char*"}[k]
                           for k, _ in cb.params) or "void"
        if cb.ret == "void":
            out.append(f"void cb_{cb.name}({params}) {{}}\n")
        else:
            value = "callback_value()" if cb.ret == "dbl" else "0"
            ret = "double" if cb.ret == "dbl" else "int"
            out.append(f"{ret} cb_{cb.name}({params}) {{ return {value}; }}\n")
    out.append("\n// Routine ids, sorted; a value calls the first routine of an id not below it.\n")
    out.append("constexpr unsigned kIds[] = {" +
               ", ".join(str(ids[r.name]) for r in order) + "};\n\n}  // namespace\n\n")
    out.append("bool call_one(Reader& r) {\n  if (r.empty()) {\n    return false;\n  }\n"
               "  const unsigned id = r.u16();\n"
               "  const unsigned* at = std::lower_bound(std::begin(kIds), std::end(kIds), id);\n"
               "  switch (at == std::end(kIds) ? 0 : at - std::begin(kIds)) {\n")
    for i, r in enumerate(order):
        out.append(f"    case {i}: {{  // {r.name}\n")
        out += [f"      {line}\n" for line in gen_case(r)]
        out.append("      break;\n    }\n")
    out.append("    default:\n      break;\n  }\n  return true;\n}\n\n}  // namespace zfuzz\n")
    return "".join(out)


# ---------------------------------------------------------------------------------------
# Seeds: call sequences that draw something on every device, in every font, with every
# setting, written in the input encoding of fuzz/runtime.h.

def enc_int(v):
    if -0x40 <= v < 0x80:
        return bytes([v + 0x40])
    if -0x8000 <= v < 0x8000:
        return bytes([0xE0]) + (v & 0xFFFF).to_bytes(2, "little")
    return bytes([0xF0]) + (v & 0xFFFFFFFF).to_bytes(4, "little")


def enc_dbl(v):
    if not math.isfinite(v):
        return bytes([0xF8]) + struct.pack("<d", v)
    if v == int(v) and -0x40 <= v < 0x80:
        return bytes([int(v) + 0x40])
    if abs(v) < 300 and abs(v * 100 - round(v * 100)) < 1e-9:
        return bytes([0xE0]) + (round(v * 100) & 0xFFFF).to_bytes(2, "little")
    return bytes([0xF8]) + struct.pack("<d", v)


def enc_str(v):
    if v is None:
        return bytes([0x80])
    b = v.encode("utf-8") if isinstance(v, str) else v
    if len(b) < 256:
        return bytes([0xA0, len(b)]) + b
    return bytes([0xF0]) + len(b).to_bytes(2, "little") + b


def enc_call(routine, ids, values):
    if len(values) != len(routine.args):
        sys.exit(f"gen_fuzz.py: seed call of {routine.name} needs {len(routine.args)} arguments")
    given = dict(zip((a.name for a in routine.args), values))
    out = ids[routine.name].to_bytes(2, "little")
    for a, v in zip(routine.args, values):
        if a.is_array or a.kind in TEXT_BUFFERS:
            continue
        if a.kind == "int":
            out += enc_int(v)
        elif a.kind == "dbl":
            out += enc_dbl(v)
        elif a.kind == "str":
            out += enc_str(v)
        elif a.kind == "file":
            out += bytes([{"null": 0, "devnull": 1, "stdout": 2}[v]])
        else:  # cb, out int, out dbl: present unless None
            out += bytes([0 if v is None else 1])
    for a in routine.args:
        if not (a.is_array or a.kind in TEXT_BUFFERS):
            continue
        v = given[a.name]
        if v is None:
            out += bytes([0])
        elif (a.is_output and not a.kind.startswith("inout")) or a.kind in TEXT_BUFFERS:
            out += bytes([1])
        else:
            n = 1
            for c in a.counts:
                n *= max(int(c) if c.isdigit() else given[c], 0)
            out += bytes([3])
            for x in (v * 16)[:min(n, 16)]:
                out += enc_int(x) if a.base == "int" else enc_dbl(x)
    return out


def picture(text="Zorvel"):
    """A small plot: lines, a polyline, a filled rectangle, text and a number."""
    return [("line", 100, 100, 2000, 1500), ("color", "RED"), ("strtpt", 200.0, 1800.0),
            ("connpt", 900.5, 300.25), ("connpt", 2500.0, 1900.0), ("color", "BLUE"),
            ("point", 1500, 1000, 200, 100, 3), ("color", "FORE"),
            ("messag", text, 300, 300), ("number", 3.14159, 2, 300, 500)]


def seeds(table, keywords, root):
    devices = []
    with open(os.path.join(root, "drivers", "registry.cpp"), encoding="utf-8") as f:
        devices = [m.group(1).strip() for m in DEVICE_ROW.finditer(f.read())]
    s = {}
    for d in devices:
        s[f"device_{d.lower()}"] = ([("metafl", d), ("zorini",)] + picture() + [("zorfin",)])
    fonts = ["zoralf", "complx", "simplx", "duplx", "triplx", "gothic", "serif", "helve",
             "helves", "helvet", "hwfont"]
    for d in ("PS", "EPS", "GKSL", "JAVA", "HPGL"):
        calls = [("metafl", d), ("zorini",), ("height", 60)]
        for i, font in enumerate(fonts):
            calls += [(font,), ("messag", "Font \u00c4\u00df \u20ac (x) %", 100, 150 + 170 * i)]
        s[f"fonts_{d.lower()}"] = calls + [("zorfin",)]
    calls = [("metafl", "PS"), ("zorini",), ("complx",)]
    for i, cs in enumerate(["STAN", "ISO1", "ISO2", "ISO3", "ISO5", "KOI8", "UTF8", "ISO7"]):
        calls += [("chacod", cs), ("messag", "\u00e9\u00fc\u00d6 \xe9\xfc\xd6", 100, 150 + 100 * i)]
    for i, alph in enumerate(["STAN", "GREE", "MATH", "ITAL", "SCRI", "RUSS"]):
        calls += [("basalf", alph), ("messag", "abcXYZ", 1200, 150 + 100 * i)]
    s["charsets"] = calls + [("zorfin",)]
    calls = [("metafl", "EPS"), ("zorini",), ("helve",), ("frmess", 2)]
    for i, (j, ang) in enumerate([("LEFT", 0), ("CENT", 30), ("RIGH", 90), ("TOP", 180),
                                  ("MIDD", -45), ("BOTT", 270)]):
        calls += [("txtjus", j), ("angle", ang), ("chaang", 15.0), ("chaspc", 0.2),
                  ("chawth", 1.5), ("messag", "Justified", 1000, 200 + 250 * i),
                  ("messag", " and more", 999, 999), ("nlmess", "Justified")]
    calls += [("fixspc", 1.0), ("messag", "fixed", 100, 1900), ("number", -1.5e10, -1, 100, 2000),
              ("number", 0.5, 0, 600, 2000)]
    s["text_settings"] = calls + [("zorfin",)]
    # The instruction alphabet: every command, good and bad, switches, national letters,
    # boxes, and XEXP labels.
    calls = [("metafl", "PS"), ("zorini",), ("complx",), ("mixalf",), ("setmix", "@", "GREE"),
             ("eushft", "GERM", "!"), ("settab", [100, 400], 2), ("txtbgd", 150),
             ("txtmar", 5), ("frmess", 1), ("mixval", 0.5, "RAIS")]
    for i, text in enumerate(["E = mc[2$, H]2$O, {C3}red{C}, {S2} data",
                              "{H1.5}{W0.5}{F11}x{F}{R0.5}{M-1}{T2}{N65}{D}{I}{U}{O}{{!a@b$",
                              "{H1e308}{C-5}{Q}{T9}{Hx}{S99}!x[[[[]]]]{H2",
                              "[" * 255 + "x"]):
        calls += [("messag", text, 100, 150 + 150 * i), ("nlmess", text),
                  ("getbox", text, 0, 0, 0)]
    calls += [("labels", "XEXP", "XY"), ("graf", 0.0, 1e5, 0.0, 2e4, 0.0, 1e-3, 0.0, 2e-4),
              ("endgrf",)]
    s["text_instructions"] = calls + [("zorfin",)]
    calls = [("metafl", "PSCL"), ("zorini",)]
    for i, vlt in enumerate(["SMAL", "RAIN", "SPEC", "GREY", "RRAI", "RSPE", "RGRE", "VGA", "TEMP"]):
        calls += [("setvlt", vlt), ("setclr", 30 * i), ("point", 200 + 250 * i, 300, 200, 200, -1)]
    calls += [("setrgb", 0.2, 0.4, 0.6), ("line", 0, 0, 2900, 2000), ("intrgb", 1.0, 0.5, 0.0),
              ("indrgb", 0.1, 0.9, 0.1), ("setind", 5, 0.3, 0.3, 0.3), ("setclr", 5),
              ("line", 0, 2000, 2900, 0)]
    for c in ["WHIT", "RED", "GREE", "YELL", "BLUE", "ORAN", "CYAN", "MAGE", "BLAC", "FORE",
              "BACK", "GRAY", "HALF"]:
        calls += [("color", c), ("line", 100, 1000, 2800, 1100)]
    s["colours"] = calls + [("zorfin",)]
    calls = [("metafl", "PS"), ("zorini",), ("linwid", 5)]
    for i, style in enumerate(["solid", "dot", "dash", "chndsh", "chndot", "dashm", "dotl",
                               "dashl"]):
        calls += [(style,), ("line", 100, 100 + 100 * i, 2800, 150 + 100 * i)]
    for i in range(8):
        calls += [("lintyp", i), ("line", 100, 1000 + 80 * i, 2800, 1000 + 80 * i)]
    calls += [("myline", [10, 20, 5], 3), ("lncap", "ROUN"), ("linwid", 40),
              ("line", 100, 1800, 2800, 1800), ("lncap", "CUT"), ("hwmode", "OFF", "LINE"),
              ("line", 100, 1900, 2800, 1950)]
    s["line_styles"] = calls + [("zorfin",)]
    calls = [("metafl", "EPS"), ("zorini",), ("clpwin", 500, 500, 1000, 800)]
    for mode in ["RECT", "CIRC", "AUTO", "NONE"]:
        calls += [("clpmod", mode)] + picture()[:5]
    calls += [("noclip",), ("line", -5000, -5000, 9000, 9000)]
    s["clipping"] = calls + [("zorfin",)]
    s["pages"] = [("setpag", "DA4P"), ("metafl", "HPA4"), ("units", "INCH"), ("page", 8, 11),
                  ("units", "CM"), ("sclfac", 0.5), ("sclmod", "FULL"), ("hwpage", 3000, 2000),
                  ("hworig", 50, 50), ("hwscal", 0.8), ("pagmod", "PORT"), ("zorini",),
                  ("origin", 100, 200), ("pagorg", "BOTT")] + picture() + [("zorfin",)]
    s["pages_ps"] = [("setpag", "USAL"), ("metafl", "POST"), ("sclmod", "DOWN"),
                     ("pagmod", "NONE"), ("zorini",)] + picture() + [
        ("newpag",), ("pagorg", "TOP")] + picture("Page 2") + [("newpag",), ("erase",),
                                                               ("sendbf",), ("zorfin",)]
    s["single_page"] = [("metafl", "PS"), ("psmode", "SING"), ("zorini",)] + picture() + [
        ("newpag",)] + picture() + [("zorfin",)]
    calls = []
    for mode, sep in [("COUN", "UNDE"), ("VERS", "HYPH"), ("VERS", "NONE"), ("BREA", "UNDE"),
                      ("DELE", "UNDE")]:
        calls += [("metafl", "EPS"), ("setfil", "version.eps"), ("filmod", mode),
                  ("filopt", sep, "SEPA"), ("filopt", "LONG", "NUMB"), ("filopt", "3", "DIGI"),
                  ("zorini",), ("line", 0, 0, 100, 100), ("zorfin",)]
    s["file_versions"] = calls
    s["messages"] = [("errdev", "FILE"), ("errfil", "messages.txt"), ("winapp", "CONS"),
                     ("errmod", "ALL", "ON"), ("metafl", "GKSL"), ("zorini",),
                     ("lintyp", 99), ("color", "NOSUCH"), ("errmod", "WARN", "OFF"),
                     ("height", -1), ("errmod", "PROT", "FILE"), ("unit", "devnull"),
                     ("angle", 1000000), ("zorfin",)]
    s["threads"] = [("thrini", 2), ("metafl", "PS"), ("zorini",)] + picture() + [
        ("thrfin",), ("metafl", "GKSL"), ("zorini",), ("line", 1, 1, 2, 2), ("delglb",),
        ("getlev",)]
    s["callbacks"] = [("swgcbk", 1, True), ("swgcb2", 2, True), ("swgcb3", 150, True),
                      ("wincbk", True), ("surfun", True, 10, 0.5, 10, 0.5),
                      ("swgcbk", 3, None)]
    s["output_control"] = [("metafl", "JAVA"), ("bufmod", "ON", "SEND"), ("zorini",),
                           ("clpbor", "PAGE"), ("erase",), ("sendbf",),
                           ("bufmod", "OFF", "SEND")] + picture() + [("zorfin",)]
    s["raster"] = [("metafl", "PNG"), ("imgsiz", 300, 200), ("scrmod", "REVERS"), ("zorini",),
                   ("imgopt", "ON", "ANTI"), ("linwid", 9)] + picture() + [
        ("imgini",), ("wpixel", 5, 5, 255), ("wpixel", 300, 5, 1), ("imgfin",),
        ("imgopt", "OFF", "ANTI"), ("newpag",), ("wimage", "page.gif"), ("zorfin",),
        ("imgdpi", 30), ("metafl", "VIRT"), ("zorini",)] + picture() + [
        ("wimage", "page.tif"), ("imgini",), ("zorfin",), ("wimage", "page.ps")]
    s["axes3d"] = [("metafl", "EPS"), ("axis3d", 2.0, 3.0, 1.5), ("zorini",),
                   ("view3d", 30.0, 20.0, 8.0, "ANGL"), ("vclp3d", 2.0, 20.0),
                   ("graf3d", 0.0, 10.0, 0.0, 2.0, -1.0, 1.0, -1.0, 0.5, 1.0, 3.0, 1.0, 1.0),
                   ("grid3d", 2, 1, "ALL"), ("strt3d", 0.0, -1.0, 1.0),
                   ("conn3d", 10.0, 1.0, 3.0), ("sym3d", 3, 5.0, 0.0, 2.0),
                   ("grfini", 0.0, 1.0, 1.0, 10.0, 1.0, 1.0, 10.0, 1.0, 3.0),
                   ("graf", 0.0, 1.0, 0.0, 0.5, 0.0, 1.0, 0.0, 0.5), ("endgrf",),
                   ("messag", "plane", 100, 100), ("grffin",), ("endgrf",),
                   ("proj3d", "ORTH"), ("view3d", 0.0, 0.0, 5.0, "ABS"),
                   ("graf3d", 0.0, 10.0, 0.0, 2.0, -1.0, 1.0, -1.0, 0.5, 1.0, 3.0, 1.0, 1.0),
                   ("zorfin",)]
    nan, inf = float("nan"), float("inf")
    s["hostile_numbers"] = [("metafl", "PS"), ("zorini",), ("strtpt", nan, 0.0),
                            ("connpt", inf, -inf), ("connpt", 1e300, 5.0),
                            ("line", 2**31 - 1, -2**31, 5, 5), ("height", 10000),
                            ("messag", "big", 2**31 - 1, 0), ("number", nan, 3, 10, 10),
                            ("number", 1e308, 10, 10, 300), ("chawth", 1e-300),
                            ("messag", "thin", 100, 100), ("zorfin",)]
    s["formulas"] = ([("metafl", "PS"), ("zorini",), ("texmod", "ON"), ("texmac", "m", "{\\m#1}"),
                     ("texmac", "v", "\\vec{#1}")] +
                    [("messag", f, 100, 100 + 60 * i) for i, f in enumerate(FORMULA_STRINGS)] +
                    [("helve",), ("angle", 37), ("frmess", 2), ("messag", FORMULA_STRINGS[1], 500, 500),
                     ("hwfont",), ("nlmess", FORMULA_STRINGS[4]), ("zorfin",)])
    s["hostile_strings"] = [("metafl", "EPS"), ("setfil", "x" * 300), ("zorini",),
                            ("messag", b"\xff\xfe\xc0\xaf(\\)" + b"A" * 400, 100, 100),
                            ("chacod", "UTF8"), ("messag", b"\xe2\x82", 100, 300),
                            ("zorfin",)]
    by_name = {r.name: r for r in table}
    ids = routine_ids(callable_routines(table))
    result = {}
    for name, calls in s.items():
        data = b""
        for call in calls:
            if call[0] not in by_name:
                sys.exit(f"gen_fuzz.py: seed '{name}' calls the unknown routine {call[0]}")
            data += enc_call(by_name[call[0]], ids, list(call[1:]))
        result[name] = data
    return result


def main():
    if len(sys.argv) == 4 and sys.argv[1] == "--seeds":
        root, outdir = sys.argv[2:4]
        table = parse_table(os.path.join(root, "include", "routines.tbl"))
        os.makedirs(outdir, exist_ok=True)
        for name, data in seeds(table, harvest_keywords(root), root).items():
            with open(os.path.join(outdir, "seed_" + re.sub(r"\W", "_", name)), "wb") as f:
                f.write(data)
        return
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    root, out = sys.argv[1:3]
    table = parse_table(os.path.join(root, "include", "routines.tbl"))
    text = gen_calls(table, harvest_keywords(root))
    if os.path.exists(out):
        with open(out, encoding="utf-8") as f:
            if f.read() == text:
                return
    with open(out, "w", encoding="utf-8") as f:
        f.write(text)


if __name__ == "__main__":
    main()
