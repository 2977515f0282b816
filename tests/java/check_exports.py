#!/usr/bin/env python3
"""Completeness of the exports: every row of the routine table has exactly one C entry in
the C library and one native (two for float[]/double[] overloads) in the Java library,
and nothing else is exported.

Usage: check_exports.py --table T --class K --jni-lib L --generated G [--c-lib C]
                        [--expected E] -- JAVA_COMMAND...

  --table      the routine table
  --class      the Java class ("zorvel.Zorvel")
  --jni-lib    the Java native library (libzorjava.so or a test library)
  --generated  jni_exports.txt of tools/gen_java.py: "routine export" per line
  --c-lib      the C library whose exports must be exactly the routines
  --expected   a hand-written list of the export names (the fixture's)
  JAVA_COMMAND prints "method export" for every native method of the class, the names
               computed by Java from the class itself (tests/java/cases/ListNatives.java)

Exits 1 and lists every difference when one is found.
"""

import argparse
import os
import subprocess
import sys

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "tools"))
from gen_api import parse_table  # noqa: E402
from gen_java import mangle  # noqa: E402

FLOATING = {"dbl[]", "dbl[,]", "out dbl[]", "out dbl[,]", "inout dbl[]", "inout dbl[,]", "out dbl"}


def defined_functions(lib):
    out = subprocess.run(["nm", "-D", "--defined-only", lib], check=True, capture_output=True,
                         text=True).stdout
    names = []
    for line in out.splitlines():
        parts = line.split()
        if len(parts) == 3 and parts[1] in "TtWi" and not parts[2].startswith("_"):
            names.append(parts[2])
    return names


def pairs(lines):
    result = []
    for line in lines:
        if line.strip():
            method, export = line.split()
            result.append((method, export))
    return result


def main():
    ap = argparse.ArgumentParser()
    ap.add_argument("--table", required=True)
    ap.add_argument("--class", dest="cls", required=True)
    ap.add_argument("--jni-lib", required=True)
    ap.add_argument("--generated", required=True)
    ap.add_argument("--c-lib")
    ap.add_argument("--expected")
    ap.add_argument("java", nargs=argparse.REMAINDER)
    opt = ap.parse_args()
    java_cmd = opt.java[1:] if opt.java[:1] == ["--"] else opt.java

    errors = []
    routines = parse_table(opt.table)
    names = [r.name for r in routines]

    if opt.c_lib:
        c_exports = defined_functions(opt.c_lib)
        for n in names:
            if c_exports.count(n) != 1:
                errors.append(f"{opt.c_lib}: {c_exports.count(n)} exports of routine {n}")
        for e in sorted(set(c_exports) - set(names)):
            errors.append(f"{opt.c_lib}: {e} is exported but is no routine of the table")

    from_java = pairs(subprocess.run(java_cmd, check=True, capture_output=True,
                                     text=True).stdout.splitlines())
    java_names = {e for _, e in from_java}
    prefix = f"Java_{mangle(opt.cls.replace('.', '/'))}_"
    jni_exports = [e for e in defined_functions(opt.jni_lib) if e.startswith("Java_")]
    mine = [e for e in jni_exports if e.startswith(prefix)]
    others = [e for e in defined_functions(opt.jni_lib) if not e.startswith("Java_")]

    for e in sorted(java_names - set(mine)):
        errors.append(f"{opt.jni_lib}: no export {e} for a native method of the class")
    for e in sorted(set(mine) - java_names):
        errors.append(f"{opt.jni_lib}: {e} is exported but the class has no such method")
    for e in others:
        if e != "JNI_OnLoad":
            errors.append(f"{opt.jni_lib}: unexpected export {e}")

    per_method = {}
    for method, e in from_java:
        per_method.setdefault(method, []).append(e)
    for r in routines:
        want = 2 if any(a.kind in FLOATING for a in r.args) else 1
        got = len(per_method.get(r.name, []))
        if got != want:
            errors.append(f"routine {r.name}: {got} Java natives, expected {want}")

    generated = pairs(open(opt.generated, encoding="utf-8").read().splitlines())
    if sorted(e for _, e in generated) != sorted(e for m, e in from_java if m in names):
        errors.append("the generator's export names differ from those of the Java class:")
        errors.extend(f"  generated only: {e}" for e in sorted(
            {e for _, e in generated} - java_names))
        errors.extend(f"  class only: {e}" for e in sorted(
            {e for m, e in from_java if m in names} - {e for _, e in generated}))

    if opt.expected:
        expected = sorted(line.strip() for line in open(opt.expected, encoding="utf-8")
                          if line.strip())
        if expected != sorted(mine):
            errors.append(f"exports differ from {opt.expected}:")
            errors.extend(f"  missing: {e}" for e in sorted(set(expected) - set(mine)))
            errors.extend(f"  extra: {e}" for e in sorted(set(mine) - set(expected)))

    if errors:
        print("\n".join(errors))
        sys.exit(1)
    print(f"{len(routines)} routines: {len(mine)} natives, all present")


if __name__ == "__main__":
    main()
