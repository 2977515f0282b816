#!/usr/bin/python3
"""Compares the pages of the gallery in its formats by rendering them.

tools/gallery.sh writes every page of the gallery as PostScript/EPS into a folder, as SVG
into <folder>/svg/, as PDF into <folder>/pdf/ and as PNG into <folder>/png/. This script
renders each page in every format it was written in, at one pixel size, and prints a
difference score for each page and pair of formats (PS-SVG, PS-PDF, SVG-PDF, PS-PNG,
SVG-PNG).

Rendering (in colour, anti-aliased; the scores make the images grey by one formula):
  EPS  gs -dEPSCrop: the figure's bounding box;
  PS   gs on a sheet as large as the bounding box's upper right corner, cropped to the box
       (the box covers the page on the sheet; every page of a file has the same box);
  SVG  rsvg-convert -w W -h H on white;
  PDF  pdftoppm -scale-to-x W -scale-to-y H;
  PNG  the image itself, scaled to W x H.
The PostScript devices turn a landscape page onto the portrait sheet: a page whose
rendering is upright where the SVG (or else the PDF) page is landscape, or the other way
round, is turned back clockwise before it is compared. W x H has the reference page's
proportions (SVG, else PDF, else PNG, else PS) and --size pixels along its longer side; the
PostScript renderings are scaled to it. Pages whose proportions differ by more than 1 %
are reported (they are compared stretched).

Pages: an EPS file is one page, a PS or PDF file one page per page. The SVG and PNG
devices write each page to a file of its own: the first page in the file named, the following ones in
versioned files whose name is shortened to make room for the number (ps_pages.svg,
ps_pag_1.svg, ps_pag_2.svg; font_chart.svg, font_c_1.svg, ..., font__59.svg). Pages are
matched by their order: the file named, then the versions by number. A file missing in
a format, or whose page count differs between the formats, is reported and fails.

Scores, each from 0 (same) to 1:
  mad   the mean absolute difference of the grey images (0 black, 1 white), blurred by a
        Gaussian of --blur pixels so that anti-aliasing counts for little;
  over  the share of the page's pixels whose blurred grey differs by more than --diff;
  ink   the share of the inked pixels (ink above --diff in the grey image or in one of
        the colour channels, in either rendering) for which the other rendering has no
        ink at all (below 0.05) within --reach pixels: an element missing, added, moved,
        scaled or drawn in another colour. The reach forgives the pixel or two by which
        renderers place lines apart; "any ink" forgives their shades of the thinnest
        lines (Ghostscript draws them at least a pixel dark, the others lighter).
A pair fails when its ink share exceeds --max-ink (0.002) or its mad exceeds --max-mad
(0.03). The thresholds come from the gallery written by the three working devices, at
the default size: correct pages give ink 0.0002 at most (PostScript's own fonts drawn by
each renderer's font) and mad 0.014 at most (the 256 thin bars of the colour tables,
anti-aliased differently); a curve left out gives ink 0.20, a page 1 % too large 0.28,
the colours of one table swapped 0.12, thirty strokes of text left out 0.013, nine of
twenty dots of 0.5 mm left out 0.004 to 0.007. The mad threshold only catches gross changes
(darker or lighter fills over a large area).

Usage:
  compare_formats.py [options] FOLDER
      compares the pages in FOLDER, FOLDER/svg and FOLDER/pdf;
  compare_formats.py [options] --run WORK PROGRAM...
      runs each program (gallery examples) once per format, with ZORVEL_GALLERY_FORMAT
      unset, =SVG, =PDF and =PNG, into WORK, WORK/svg, WORK/pdf and WORK/png, then
      compares WORK. Exits with 77 (skipped) when a device is not available yet (warning
      183). --formats svg,png runs only those besides PostScript.
Options: --formats LIST (svg,pdf,png), --size N (1000), --blur R (1.5), --diff T (0.25), --reach N (2),
  --max-ink S (0.002), --max-mad S (0.03), --keep DIR (the renderings of each page are
  kept there side by side as one PNG, in the order PS, SVG, PDF).
Exit status: 0 all pairs within the thresholds, 1 a pair above them or a page missing in
a format, 2 a renderer or input missing, 77 skipped (--run).
"""

import argparse
import os
import re
import shutil
import subprocess
import sys
import tempfile
import xml.etree.ElementTree as ET

import numpy as np
from PIL import Image, ImageFilter

SKIP = 77
FAINT = 0.05  # less ink than this is no ink
PS_RENDERED = {}  # (file, resolution): the pattern of its rendered pages' files
FORMATS = ("ps", "svg", "pdf", "png")
TOOLS = {"ps": "gs", "svg": "rsvg-convert", "pdf": "pdftoppm"}


def run(cmd):
    r = subprocess.run(cmd, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)
    if r.returncode != 0:
        raise RuntimeError("%s failed: %s" % (cmd[0], (r.stderr or r.stdout).strip()[-400:]))
    return r.stdout


# Pages and their sizes
# =====================

def ps_bbox(path):
    with open(path, "rb") as f:
        head = f.read(4096).decode("latin-1")
    m = re.search(r"^%%BoundingBox:\s*(-?\d+)\s+(-?\d+)\s+(-?\d+)\s+(-?\d+)", head, re.M)
    if not m:
        raise RuntimeError("%s: no %%%%BoundingBox in its header" % path)
    return tuple(int(v) for v in m.groups())


def ps_page_count(path):
    if path.endswith(".eps"):
        return 1
    with open(path, "rb") as f:
        return max(1, len(re.findall(rb"^%%Page:", f.read(), re.M)))


def pdf_page_sizes(path):
    out = run(["pdfinfo", "-f", "1", "-l", "100000", path])
    return [(float(w), float(h)) for w, h in
            re.findall(r"^Page\s+\d+\s+size:\s*([\d.]+)\s*x\s*([\d.]+)", out, re.M)]


def svg_size(path):
    root = next(ET.iterparse(path, events=("start",)))[1]
    vb = root.get("viewBox")
    if vb:
        v = [float(t) for t in re.split(r"[\s,]+", vb.strip())]
        return v[2], v[3]
    num = lambda s: float(re.match(r"[\d.]+", s).group(0))
    return num(root.get("width")), num(root.get("height"))


def page_files(stem, npages, files, ext):
    """The files of a document's pages in order: the file named, then its versions."""
    pages = [stem + ext] if stem + ext in files else []
    if npages > 1:
        versions = []
        for f in files:
            m = re.fullmatch(r"(.+?)[_-]?0*(\d+)" + re.escape(ext), f)
            if m and f != stem + ext and stem.startswith(m.group(1)):
                versions.append((int(m.group(2)), f))
        pages += [f for _, f in sorted(versions)]
    return pages


def collect(folder):
    """{stem: {format: [page, ...]}}; a page is (path, index, (width, height))."""
    docs = {}
    top = sorted(os.listdir(folder))
    for f in top:
        stem, ext = os.path.splitext(f)
        if ext in (".eps", ".ps") and os.path.isfile(os.path.join(folder, f)):
            path = os.path.join(folder, f)
            x0, y0, x1, y1 = ps_bbox(path)
            docs.setdefault(stem, {})["ps"] = [(path, i, (x1 - x0, y1 - y0))
                                               for i in range(ps_page_count(path))]
    pdf_dir = os.path.join(folder, "pdf")
    if os.path.isdir(pdf_dir):
        for f in sorted(os.listdir(pdf_dir)):
            if f.endswith(".pdf"):
                path = os.path.join(pdf_dir, f)
                docs.setdefault(f[:-4], {})["pdf"] = [
                    (path, i, s) for i, s in enumerate(pdf_page_sizes(path))]
    for fmt, size in (("svg", svg_size), ("png", lambda p: Image.open(p).size)):
        sub = os.path.join(folder, fmt)
        if not os.path.isdir(sub):
            continue
        ext = "." + fmt
        files = sorted(f for f in os.listdir(sub) if f.endswith(ext))
        claimed = set()
        # Documents of several pages first, so that their versioned files are theirs.
        order = sorted(docs, key=lambda s: -max(len(p) for p in docs[s].values()))
        for stem in order:
            n = max(len(p) for f, p in docs[stem].items() if f != fmt)
            pages = [f for f in page_files(stem, n, files, ext) if f not in claimed]
            if pages:
                claimed.update(pages)
                docs[stem][fmt] = [(os.path.join(sub, f), 0, size(os.path.join(sub, f)))
                                   for f in pages]
        for f in files:
            if f not in claimed:
                path = os.path.join(sub, f)
                docs.setdefault(f[:-len(ext)], {})[fmt] = [(path, 0, size(path))]
    return docs


# Rendering
# =========

def landscape(size):
    return size[0] > size[1]


def render(fmt, page, target, tmp, turn):
    """The page as an RGB image of target (W, H) pixels."""
    path, index, size = page
    w, h = target
    rw, rh = (h, w) if turn else (w, h)  # the rendering before it is turned
    out = os.path.join(tmp, "r.png")
    if fmt == "png":
        shutil.copyfile(path, out)
    elif fmt == "svg":
        run(["rsvg-convert", "-w", str(rw), "-h", str(rh), "-b", "white", "-o", out, path])
    elif fmt == "pdf":
        run(["pdftoppm", "-png", "-f", str(index + 1), "-l", str(index + 1),
             "-scale-to-x", str(rw), "-scale-to-y", str(rh), "-singlefile", path,
             out[:-4]])
    else:
        x0, y0, x1, y1 = ps_bbox(path)
        dpi = 72.0 * 2 * max(rw / (x1 - x0), rh / (y1 - y0))  # twice the size, then scaled
        gs = ["gs", "-q", "-dSAFER", "-dBATCH", "-dNOPAUSE", "-sDEVICE=png16m",
              "-dTextAlphaBits=4", "-dGraphicsAlphaBits=4", "-r%.3f" % dpi]
        if path.endswith(".eps"):
            run(gs + ["-sOutputFile=" + out, "-dEPSCrop", path])
        else:
            # Every page of the file in one run, kept for the pages that follow.
            key = (path, dpi)
            if key not in PS_RENDERED:
                PS_RENDERED[key] = os.path.join(tmp, "ps%d_%%05d.png" % len(PS_RENDERED))
                run(gs + ["-sOutputFile=" + PS_RENDERED[key],
                          "-dDEVICEWIDTHPOINTS=%d" % x1, "-dDEVICEHEIGHTPOINTS=%d" % y1,
                          "-dFIXEDMEDIA", path])
            os.replace(PS_RENDERED[key] % (index + 1), out)
    # In colour: the scores make them grey by one formula (Ghostscript's own grey devices
    # weigh the colours otherwise).
    img = Image.open(out).convert("RGB")
    if fmt == "ps" and not path.endswith(".eps"):
        s = img.size[0] / x1
        img = img.crop((round(x0 * s), 0, img.size[0], round((y1 - y0) * s)))
    if fmt == "ps":
        img = img.resize((rw, rh), Image.LANCZOS)
    if turn:
        img = img.transpose(Image.ROTATE_270)  # clockwise
    if img.size != (w, h):
        img = img.resize((w, h), Image.LANCZOS)
    os.remove(out)
    return img


def spread(x, reach):
    """The greatest value within reach pixels (a square) of each pixel."""
    for axis in (0, 1):
        y = x.copy()
        for k in range(1, reach + 1):
            lo = [slice(None)] * 2
            hi = [slice(None)] * 2
            lo[axis], hi[axis] = slice(None, -k), slice(k, None)
            np.maximum(y[tuple(lo)], x[tuple(hi)], out=y[tuple(lo)])
            np.maximum(y[tuple(hi)], x[tuple(lo)], out=y[tuple(hi)])
        x = y
    return x


def prepare(img, args):
    """What the scores need of one rendering: its blurred grey image, and the ink of its
    grey image and colour channels (a red line has no ink in the red channel, a green
    one has), each with the most ink within reach."""
    grey = img.convert("L")
    blurred = np.asarray(grey.filter(ImageFilter.GaussianBlur(args.blur)),
                         dtype=np.float32) / 255
    inks = []
    for c in (grey,) + img.split():
        ink = 1 - np.asarray(c, dtype=np.float32) / 255
        inks.append((ink, spread(ink, args.reach)))
    return blurred, inks


def scores(a, b, args):
    """mad, over and ink of two prepared renderings. Renderers draw the thinnest lines
    in other shades (Ghostscript at least a pixel dark, the others a fraction of a pixel
    light), so ink counts as found wherever the other rendering has any ink nearby."""
    d = np.abs(a[0] - b[0])
    inked = lost = False
    for (ia, na), (ib, nb) in zip(a[1], b[1]):
        inked = inked | (ia > args.diff) | (ib > args.diff)
        lost = lost | ((ia > args.diff) & (nb < FAINT)) | ((ib > args.diff) & (na < FAINT))
    return (float(d.mean()), float((d > args.diff).mean()),
            float(np.sum(lost) / max(1, np.sum(inked))))


# Comparing
# =========

def compare(folder, args):
    missing = [t for t in set(TOOLS.values()) | {"pdfinfo"} if not shutil.which(t)]
    if missing:
        print("cannot render: %s not installed (tools/deps.sh installs them)"
              % ", ".join(sorted(missing)))
        return 2
    docs = collect(folder)
    failed = unmatched = 0
    rows = []
    present = {f for d in docs.values() for f in d}
    with tempfile.TemporaryDirectory() as tmp:
        for stem in sorted(docs):
            have = {f: docs[stem][f] for f in FORMATS if f in docs[stem]}
            lacking = sorted(present - set(have), key=FORMATS.index)
            if lacking:
                print("%s: not written as %s" % (stem, ", ".join(f.upper() for f in lacking)))
                unmatched += 1
            if len(have) < 2:
                continue
            counts = {f: len(p) for f, p in have.items()}
            if len(set(counts.values())) > 1:
                print("%s: page counts differ: %s" % (stem, ", ".join(
                    "%s %d" % (f.upper(), n) for f, n in counts.items())))
                unmatched += 1
            elif counts.get("svg", 1) > 1:
                names = [os.path.basename(p[0]) for p in have["svg"]]
                if len(names) > 4:
                    names = names[:3] + ["...", names[-1]]
                print("%s: %d pages; SVG pages matched by order: %s" % (stem, counts["svg"],
                      ", ".join(names)))
            for i in range(min(counts.values())):
                pages = {f: have[f][i] for f in have}
                ref = pages.get("svg") or pages.get("pdf") or pages.get("png") or pages["ps"]
                rs = ref[2]
                if landscape(rs):
                    target = (args.size, max(1, round(args.size * rs[1] / rs[0])))
                else:
                    target = (max(1, round(args.size * rs[0] / rs[1])), args.size)
                imgs = {}
                for f, p in pages.items():
                    turn = landscape(p[2]) != landscape(rs) and p[2][0] != p[2][1]
                    ws, hs = (p[2][1], p[2][0]) if turn else p[2]
                    if abs(ws / hs - rs[0] / rs[1]) > 0.01 * rs[0] / rs[1]:
                        print("%s page %d: proportions differ: %s %gx%g, %s %gx%g" % (
                            stem, i + 1, f.upper(), ws, hs,
                            next(k for k in pages if pages[k] is ref).upper(), rs[0], rs[1]))
                    imgs[f] = render(f, p, target, tmp, turn)
                name = stem if counts[next(iter(counts))] == 1 else "%s#%d" % (stem, i + 1)
                if args.keep:
                    os.makedirs(args.keep, exist_ok=True)
                    row = Image.new("RGB", (target[0] * len(imgs) + 10 * (len(imgs) - 1),
                                          target[1]), (128, 128, 128))
                    for k, f in enumerate(f for f in FORMATS if f in imgs):
                        row.paste(imgs[f], (k * (target[0] + 10), 0))
                    row.save(os.path.join(args.keep, name.replace("#", "_p") + ".png"))
                prepared = {f: prepare(img, args) for f, img in imgs.items()}
                for fa, fb in (("ps", "svg"), ("ps", "pdf"), ("svg", "pdf"), ("ps", "png"),
                               ("svg", "png")):
                    if fa in imgs and fb in imgs:
                        mad, over, ink = scores(prepared[fa], prepared[fb], args)
                        bad = ink > args.max_ink or mad > args.max_mad
                        failed += bad
                        rows.append((name, fa + "-" + fb, mad, over, ink, bad))
    print("%-26s %-8s %8s %8s %8s" % ("page", "formats", "mad", "over", "ink"))
    for name, pair, mad, over, ink, bad in rows:
        print("%-26s %-8s %8.4f %8.4f %8.4f%s" % (name, pair, mad, over, ink,
                                                  "  FAIL" if bad else ""))
    if not rows:
        print("no page is written in two formats in %s" % folder)
        return 1
    print("%d pair(s) compared, %d above the thresholds (ink > %g or mad > %g)%s"
          % (len(rows), failed, args.max_ink, args.max_mad,
             "; %d file(s) missing in a format or with other page counts" % unmatched
             if unmatched else ""))
    return 1 if failed or unmatched else 0


def run_programs(work, programs, formats):
    """Runs the programs in PostScript and the formats given; False when a device is not
    available."""
    shutil.rmtree(work, ignore_errors=True)
    env = dict(os.environ, SOURCE_DATE_EPOCH=os.environ.get("SOURCE_DATE_EPOCH", "1700000000"))
    env.pop("ZORVEL_GALLERY_FORMAT", None)
    for fmt, sub in [("", "")] + [(f.upper(), f) for f in formats]:
        d = os.path.join(work, sub)
        os.makedirs(d, exist_ok=True)
        e = dict(env, ZORVEL_GALLERY_FORMAT=fmt) if fmt else env
        for prog in programs:
            r = subprocess.run([os.path.abspath(prog)], cwd=d, env=e, text=True,
                               stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
            if "Warning 183:" in r.stdout:
                print("SKIP: the %s device is not available yet (warning 183 from %s)"
                      % (fmt, os.path.basename(prog)))
                return False
            if r.returncode != 0:
                raise RuntimeError("%s exited with %d" % (prog, r.returncode))
    return True


def main():
    ap = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    ap.add_argument("folder")
    ap.add_argument("programs", nargs="*")
    ap.add_argument("--run", action="store_true")
    ap.add_argument("--formats", default="svg,pdf,png")
    ap.add_argument("--size", type=int, default=1000)
    ap.add_argument("--blur", type=float, default=1.5)
    ap.add_argument("--diff", type=float, default=0.25)
    ap.add_argument("--reach", type=int, default=2)
    ap.add_argument("--max-ink", type=float, default=0.002)
    ap.add_argument("--max-mad", type=float, default=0.03)
    ap.add_argument("--keep")
    args = ap.parse_args()
    try:
        if args.run:
            if not args.programs:
                ap.error("--run needs the programs to run")
            formats = [f for f in args.formats.lower().split(",") if f]
            if any(f not in FORMATS[1:] for f in formats):
                ap.error("--formats takes svg, pdf and png")
            if not run_programs(args.folder, args.programs, formats):
                return SKIP
        elif args.programs:
            ap.error("programs are given only with --run")
        return compare(args.folder, args)
    except (RuntimeError, OSError, ET.ParseError) as e:
        print("error: %s" % e)
        return 2


if __name__ == "__main__":
    sys.exit(main())
