#!/usr/bin/env python3
"""Feeds every plot file that the fuzzer kept to the program that reads it.

Usage: fuzz_consumers.py DIR

DIR is the ZORVEL_FUZZ_OUT folder of a replay: DIR/N holds the files that input N made,
DIR/N.input the input. A file goes to its reader by what it is, not by its name (the
fuzzer chooses the names): PostScript and EPS to Ghostscript, PDF to qpdf --check, PNG to
pngcheck, TIFF to tiffinfo, GIF to giftext, BMP and PPM to netpbm, SVG to xmllint, HPGL to
hp2xx. Formats without a reader here (the metafile, the applet source, the raw image,
message files) are skipped. Any rejection, or a reader running longer
than a minute, fails: it names the file, the input and the reader's first lines.
"""

import concurrent.futures
import os
import shutil
import subprocess
import sys
import tempfile

GS = ["gs", "-dSAFER", "-dBATCH", "-dNOPAUSE", "-dQUIET", "-sDEVICE=nullpage"]


def reader(path, head):
    """The command that reads the file, with its kind; None for other formats."""
    if head.startswith(b"%!PS-Adobe-3.0 EPSF"):
        return "EPS", GS + ["-dEPSCrop", path]
    if head.startswith(b"%!"):
        return "PostScript", GS + [path]
    if head.startswith(b"%PDF-"):
        return "PDF", ["qpdf", "--check", path]
    if head.startswith(b"\x89PNG"):
        return "PNG", ["pngcheck", "-q", path]
    if head.startswith((b"II*\0", b"MM\0*")):
        return "TIFF", ["tiffinfo", "-D", path]
    if head.startswith((b"GIF87a", b"GIF89a")):
        return "GIF", ["giftext", path]
    if head.startswith(b"BM"):
        return "BMP", ["sh", "-c", 'bmptopnm "$1" | pnmfile', "-", path]
    if head.startswith(b"P6"):
        return "PPM", ["pnmfile", path]
    if head.lstrip().startswith((b"<?xml", b"<svg")):
        return "SVG", ["xmllint", "--noout", path]
    if head.startswith(b"IN;"):
        return "HPGL", ["hp2xx", "-q", "-m", "png", "-f", os.devnull, path]
    return None


def check(job):
    path, copy = job
    with open(path, "rb") as f:
        head = f.read(64)
    # The reader gets a copy of a plain name: the fuzzer's names may hold anything.
    found = reader(copy, head)
    if found is None:
        return None, None
    shutil.copyfile(path, copy)
    kind, cmd = found
    try:
        p = subprocess.run(cmd, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                           stdin=subprocess.DEVNULL, timeout=60)
        out = p.stdout.decode("utf-8", "replace")
        bad = p.returncode != 0
        if kind in ("EPS", "PostScript"):
            bad = bad or "Error" in out or "Unrecoverable" in out
        if kind == "HPGL":
            bad = bad or out.strip() != ""  # hp2xx reports problems on its output only
    except subprocess.TimeoutExpired:
        out, bad = "no answer within 60 seconds", True
    os.remove(copy)
    return kind, (out if bad else None)


def main():
    top = sys.argv[1]
    files = []
    for n in sorted(os.listdir(top)):
        d = os.path.join(top, n)
        if os.path.isdir(d):
            files += [os.path.join(d, f) for f in sorted(os.listdir(d))
                      if os.path.isfile(os.path.join(d, f))]
    counts = {}
    failures = 0
    with tempfile.TemporaryDirectory() as tmp:
        jobs = [(f, os.path.join(tmp, f"file{i}")) for i, f in enumerate(files)]
        with concurrent.futures.ThreadPoolExecutor(max_workers=2) as pool:
            for path, (kind, problem) in zip(files, pool.map(check, jobs)):
                if kind is None:
                    continue
                counts[kind] = counts.get(kind, 0) + 1
                if problem is not None:
                    failures += 1
                    print(f"FAIL: {kind} reader rejects {path} "
                          f"(input {os.path.dirname(path)}.input):")
                    print("".join("  " + line + "\n" for line in problem.splitlines()[:15]))
    summary = ", ".join(f"{n} {k}" for k, n in sorted(counts.items())) or "none"
    print(f"Consumers: {len(files)} files, read: {summary}; {failures} rejected")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
