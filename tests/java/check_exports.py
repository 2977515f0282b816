#!/usr/bin/env python3
"""Completeness of the exports: every row of the routine table has exactly one C entry in
the C library and its natives in the Java library (two for float[]/double[] overloads),
under the names that Java itself computes, and nothing else is exported (but for
zorvel_sized_<name>, the entry with buffer sizes of each routine with sized buffers).

Usage: check_exports.py --table T --class K --jni-lib L --c-lib C -- JAVA_COMMAND...
  JAVA_COMMAND prints "method export" for every native method of the class
  (tests/java/cases/ListNatives.java). Exits 1 and lists every difference.
"""

import argparse
import subprocess
import sys
import os

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "tools"))
from gen_api import parse_table  # noqa: E402

FLOATING = {"dbl[]", "dbl[,]", "out dbl[]", "out dbl[,]", "inout dbl[]", "inout dbl[,]", "out dbl",
            "out dbl[*]"}


def defined_functions(lib):
    out = subprocess.run(["nm", "-D", "--defined-only", lib], check=True, capture_output=True,
                         text=True).stdout
    return [p[2] for p in (line.split() for line in out.splitlines())
            if len(p) == 3 and p[1] in "TtWi" and not p[2].startswith("_")]


def main():
    ap = argparse.ArgumentParser()
    for a in ("--table", "--class", "--jni-lib", "--c-lib"):
        ap.add_argument(a, required=True)
    ap.add_argument("java", nargs=argparse.REMAINDER)
    opt = ap.parse_args()
    java_cmd = opt.java[1:] if opt.java[:1] == ["--"] else opt.java

    errors = []
    table = parse_table(opt.table)
    names = [r.name for r in table]
    c_exports = defined_functions(opt.c_lib)
    sized = [f"zorvel_sized_{r.name}" for r in table if r.sized]
    errors += [f"{opt.c_lib}: {c_exports.count(n)} exports of {n}"
               for n in sized if c_exports.count(n) != 1]
    errors += [f"{opt.c_lib}: {c_exports.count(n)} exports of routine {n}"
               for n in names if c_exports.count(n) != 1]
    errors += [f"{opt.c_lib}: {e} is exported but is no routine"
               for e in sorted(set(c_exports) - set(names) - set(sized))]

    from_java = [tuple(line.split()) for line in subprocess.run(
        java_cmd, check=True, capture_output=True, text=True).stdout.splitlines() if line.strip()]
    want = {e for _, e in from_java} | {"JNI_OnLoad"}
    got = set(defined_functions(opt.jni_lib))
    errors += [f"{opt.jni_lib}: no export {e}" for e in sorted(want - got)]
    errors += [f"{opt.jni_lib}: unexpected export {e}" for e in sorted(got - want)]

    for r in parse_table(opt.table):
        expected = 2 if any(a.kind in FLOATING for a in r.args) else 1
        count = sum(1 for m, _ in from_java if m == r.name)
        if count != expected:
            errors.append(f"routine {r.name}: {count} Java natives, expected {expected}")

    if errors:
        print("\n".join(errors))
        sys.exit(1)
    print(f"{len(names)} routines: {len(from_java)} natives, all present")


if __name__ == "__main__":
    main()
