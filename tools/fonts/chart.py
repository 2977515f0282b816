#!/usr/bin/python3
"""Glyph charts of the generated font tables, for checking them by eye.

    /usr/bin/python3 tools/fonts/chart.py [output directory]   (default: build/font_charts)

Reads text/font_data_*.cpp (not the sources), walks every record the way the text engine
does and draws one PNG per font and alphabet, plus a sample line per font set with the
engine's gaps.  Outline glyphs are filled as the single polygon the engine assembles, so
holes that do not come out show up here.  Needs python3-pil.
"""

import os
import re
import sys

from PIL import Image, ImageDraw, ImageFont

HERE = os.path.dirname(os.path.abspath(__file__))
ROOT = os.path.dirname(os.path.dirname(HERE))
ALPHABETS = ("STAN", "GREE", "MATH", "ITAL", "SCRI", "RUSS")
LABEL_FONT = "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf"


# ==========================================================================================
# Reading the tables
# ==========================================================================================

def read_tables(text_dir):
    arrays = {}
    for name in sorted(os.listdir(text_dir)):
        if not (name.startswith("font_data_") and name.endswith(".cpp")):
            continue
        src = open(os.path.join(text_dir, name), encoding="ascii").read()
        src = re.sub(r"//[^\n]*", "", src)
        for m in re.finditer(r"(\w+)\[(\d+)\] = \{(.*?)\};", src, re.S):
            body = m.group(3)
            if "pt(" in body:
                vals = [(int(a), int(b)) for a, b in re.findall(r"pt\((-?\d+), (-?\d+)\)", body)]
            else:
                vals = [int(v) for v in re.findall(r"-?\d+", body)]
            assert len(vals) == int(m.group(2)), m.group(1)
            arrays[m.group(1)] = vals
    reg = open(os.path.join(text_dir, "font_data_registry.cpp"), encoding="ascii").read()
    fonts = []
    for m in re.finditer(r'\{(\d+), "(\w+)", (\d+), (true|false), \{(.*?)\}\},', reg, re.S):
        alphas = []
        for a in re.finditer(r"\{(\w+), (\w+), (\w+), (-?\d+), (\w+), (\d+), (\d+), (\w+)\}",
                             m.group(5)):
            alphas.append({"packed": a.group(1), "xs": a.group(2), "ys": a.group(3),
                           "points": int(a.group(4)), "index": a.group(5),
                           "words": int(a.group(6)), "chars": int(a.group(7)),
                           "direct": a.group(8) == "true"})
        fonts.append({"type": int(m.group(1)), "name": m.group(2), "blank": int(m.group(3)),
                      "outline": m.group(4) == "true", "alphabets": alphas})
    return arrays, fonts


def glyph_strokes(arrays, font, k, g):
    """Strokes of glyph g of alphabet k: lists of (x, y) in font units, offsets applied."""
    a = font["alphabets"][k]
    stan = font["alphabets"][0]
    if a["words"] == 0:
        a = stan
    pool_of = a if a["points"] != 0 else stan
    if pool_of["points"] > 0:
        pool = arrays[pool_of["packed"]]
    else:
        pool = list(zip(arrays[pool_of["xs"]], arrays[pool_of["ys"]]))
    index = arrays[a["index"]]
    unit = 2.0 if font["outline"] and a is stan else 0.5
    pos = 0
    for _ in range(g - 2):
        pos += index[pos]
    length = index[pos]
    i = pos + 1
    strokes = []
    while i < pos + length:
        n, start = index[i], index[i + 1]
        dx = dy = 0
        if n < 0:
            w = index[i + 2] & 0xFFFF
            dx = ((w & 0xFF) ^ 0x80) - 0x80
            dy = ((w >> 8) ^ 0x80) - 0x80
            n = -n
            i += 3
        else:
            i += 2
        strokes.append([(x + dx * unit, y + dy * unit) for x, y in pool[start - 1:start - 1 + n]])
    return strokes


def divisors(font, k):
    t = font["type"]
    if t == 1 and k in (0, 1, 3):
        return 6, 7, 0.0
    if t > 10 and k in (0, 3):
        return 200, 200, 0.2
    gap = 0.0 if (k == 4 and t != 7) else 0.25
    return 20, 21, gap


# ==========================================================================================
# Drawing
# ==========================================================================================

def remap(font, k, code):
    """Glyph number of code in alphabet k, or None when the character falls back."""
    g = code - 31
    a = font["alphabets"][k]
    if k == 0 or a["direct"] or a["words"] == 0:
        return g
    if k == 5:
        for lo, hi, d in ((5, 7, 3), (29, 31, 24), (34, 63, 26), (66, 95, 28)):
            if lo <= g <= hi:
                return g - d
        return None
    if k == 3 and font["type"] == 3:
        if 66 <= g <= 91:
            return g - 64
        if 99 <= g <= 101:
            return g - 71
        return None
    if 34 <= g <= 59:
        return g - 32
    if 66 <= g <= 91:
        return g - 38
    if k == 2 and g == 96:
        return 54
    if g >= 96 and k in (1, 4):
        return g - 42
    return None


def draw_glyph(dr, strokes, x0, y0, hu, vu, outline):
    pts = [[(x0 + x * hu, y0 - y * vu) for x, y in s] for s in strokes]
    if outline and pts:
        poly = []
        for c in pts:
            poly += c
            if len(poly) > len(c):
                poly.append(pts[0][-1])
        if len(poly) >= 3:
            dr.polygon(poly, fill=(150, 170, 230))
    for s in pts:
        if len(s) >= 2:
            dr.line(s, fill=(0, 0, 0), width=2)


def chart(arrays, font, k, out):
    a = font["alphabets"][k]
    if k > 0 and a["words"] == 0:
        return None
    hdiv, vdiv, _ = divisors(font, k)
    h = 60  # pixels per character height
    hu, vu = h / hdiv, h / vdiv
    cols, cw, ch = 16, 100, 130
    label = ImageFont.truetype(LABEL_FONT, 11)
    reach = {}
    for code in range(300, 32, -1):
        g = remap(font, k, code)
        if g:
            reach.setdefault(g, []).insert(0, code)
    n = a["chars"] - 1
    rows = (n + cols - 1) // cols
    im = Image.new("RGB", (cols * cw, rows * ch + 30), "white")
    dr = ImageDraw.Draw(im)
    dr.text((6, 6), "%s (type %d), %s: %d characters" % (font["name"], font["type"],
                                                         ALPHABETS[k], a["chars"]),
            fill="black", font=label)
    for i in range(n):
        g = i + 2
        cx, cy = (i % cols) * cw, (i // cols) * ch + 30
        codes = reach.get(g, [])
        dr.text((cx + 3, cy + 112), "%d%s" % (g, " = %d" % codes[0] if codes else ""),
                fill=(120, 120, 120), font=label)
        x0, y0 = cx + 20, cy + 85
        dr.line([(cx + 4, y0), (cx + cw - 4, y0)], fill=(220, 220, 220))
        dr.line([(cx + 4, y0 - h), (cx + cw - 4, y0 - h)], fill=(235, 235, 235))
        strokes = glyph_strokes(arrays, font, k, g)
        if strokes:
            width = max(x for s in strokes for x, _ in s)
            dr.line([(x0 + width * hu, y0 - h), (x0 + width * hu, y0 + 5)], fill=(255, 200, 200))
        draw_glyph(dr, strokes, x0, y0, hu, vu, font["outline"] and k == 0)
    im.save(out)
    return out


SAMPLES = [
    (0, "Zorvel 0123456789 (x+y)/2 = 3.5% Hamburgefonstiv"),
    (0, "ÄÖÜ äöü ß Åå é à ñ ç"),
    (1, "ABGDEZ abgdez"),
    (5, "ABWGDE abwgde"),
]


def sample(arrays, font, out):
    """A few lines set with the engine's widths and gaps (STAN, GREE, RUSS)."""
    import layout  # the generator's layout module, for the extended codes
    h = 40
    im = Image.new("RGB", (1500, 70 * len(SAMPLES) + 20), "white")
    dr = ImageDraw.Draw(im)
    for row, (k, text) in enumerate(SAMPLES):
        if k > 0 and font["alphabets"][k]["words"] == 0:
            continue
        hdiv, vdiv, gapf = divisors(font, k)
        x, y0 = 10.0, 60 + row * 70
        for c in text:
            code = layout.stan_code(c) if ord(c) > 126 else ord(c)
            g = remap(font, k, code) if code else None
            kk = k
            if g is None or (code > 32 and g > font["alphabets"][k]["chars"]):
                kk, g = 0, code - 31
                hdiv2, vdiv2, gapf2 = divisors(font, 0)
            else:
                hdiv2, vdiv2, gapf2 = hdiv, vdiv, gapf
            hu2, vu2 = h / hdiv2, h / vdiv2
            if g <= 1 or g > font["alphabets"][kk]["chars"]:
                width = font["blank"] if kk == 0 else 9
                strokes = []
            else:
                strokes = glyph_strokes(arrays, font, kk, g)
                width = max((px for s in strokes for px, _ in s), default=0)
            if font["type"] == 1 and kk == 0:
                width = 6
            draw_glyph(dr, strokes, x, y0, hu2, vu2, font["outline"] and kk == 0)
            x += width * hu2 + gapf2 * h
    im.save(out)
    return out


def main():
    outdir = sys.argv[1] if len(sys.argv) > 1 else os.path.join(ROOT, "build", "font_charts")
    os.makedirs(outdir, exist_ok=True)
    sys.path.insert(0, HERE)
    arrays, fonts = read_tables(os.path.join(ROOT, "text"))
    shared_done = set()
    for font in fonts:
        for k in range(6):
            a = font["alphabets"][k]
            key = (a["index"], font["outline"] and k == 0)
            if k > 0 and key in shared_done:
                continue
            shared_done.add(key)
            path = chart(arrays, font, k, os.path.join(outdir, "%s_%s.png" % (
                font["name"], ALPHABETS[k].lower())))
            if path:
                print(path)
        print(sample(arrays, font, os.path.join(outdir, "%s_sample.png" % font["name"])))


if __name__ == "__main__":
    main()
