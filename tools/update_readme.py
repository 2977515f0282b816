#!/usr/bin/env python3
"""Keeps the routine reference of README.md in step with include/routines.tbl.

Usage: update_readme.py [--check]
Rewrites the part of README.md between "<!-- routines:begin -->" and
"<!-- routines:end -->"; with --check it only reports whether it is up to date
(exit status 1 when not).
"""
import os
import sys

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from gen_api import gen_reference, parse_table  # noqa: E402

BEGIN = "<!-- routines:begin -->"
END = "<!-- routines:end -->"


def main():
    root = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
    readme = os.path.join(root, "README.md")
    table = os.path.join(root, "include", "routines.tbl")
    with open(readme, encoding="utf-8") as f:
        text = f.read()
    head, sep, rest = text.partition(BEGIN)
    _, sep2, tail = rest.partition(END)
    if not sep or not sep2:
        sys.exit("README.md lacks the routine reference markers")
    new = head + BEGIN + gen_reference(parse_table(table)) + "\n" + END + tail
    if "--check" in sys.argv[1:]:
        if new != text:
            sys.exit("README.md: the routine reference is out of date; run tools/update_readme.py")
        return
    if new != text:
        with open(readme, "w", encoding="utf-8") as f:
            f.write(new)


if __name__ == "__main__":
    main()
