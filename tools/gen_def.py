#!/usr/bin/env python3
"""Writes the export lists (.def files) of the Windows libraries: zorvel.def with the C
routines of include/routines.tbl, zorjava.def with the native methods of zorvel.Zorvel
(the second column of the Java generator's jni_exports.txt) and JNI_OnLoad. The DLLs
export exactly these names, as libzorvel.so and libzorjava.so do on Linux.

Usage: gen_def.py ROUTINES_TBL JNI_EXPORTS_TXT OUT_DIR
"""
import os
import sys

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import gen_api  # noqa: E402


def write(path, library, names):
    text = f"LIBRARY {library}\nEXPORTS\n" + "".join(f"  {n}\n" for n in names)
    old = open(path).read() if os.path.exists(path) else None
    if old != text:
        with open(path, "w") as f:
            f.write(text)


def main():
    table, exports, out = sys.argv[1:4]
    table = gen_api.parse_table(table)
    # The routines, then the entries with sized buffers that the bindings call.
    routines = [r.name for r in table] + [f"zorvel_sized_{r.name}" for r in table if r.sized]
    write(os.path.join(out, "zorvel.def"), "zorvel.dll", routines)
    natives = []
    if os.path.exists(exports):
        for line in open(exports):
            parts = line.split()
            if len(parts) >= 2:
                natives.append(parts[1])
    write(os.path.join(out, "zorjava.def"), "zorjava.dll", natives + ["JNI_OnLoad"])


main()
