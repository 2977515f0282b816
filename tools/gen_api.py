#!/usr/bin/env python3
"""Generates the public C API of Zorvel from include/routines.tbl.

Usage: gen_api.py TABLE OUTDIR
       gen_api.py --check-sources ROOT TABLE STAMP

Writes into OUTDIR:
  zorvel.h          the public C header (C99 and C++)
  api_decl.h        internal declarations: zorvel::api::<name>(GlobalBlock&, ...), and
                    zorvel::sized::<name> for the routines with sized buffers
  api_entries.cpp   the exported C entries: entry check, null-argument guards,
                    exception barrier, call of the internal implementation (for a routine
                    with sized buffers in zorvel::sized::<name>, which the C entry calls
                    with buffers of unknown size, and which zorvel_sized_<name> exports
                    for bindings that know the sizes: each sized pointer followed by its
                    size_t size, in bytes for "buf" and in elements for arrays)
  routines.md       the routine reference by group (for the README)

With --check-sources it checks instead that the file the table names for each routine
(relative to ROOT) defines it inside namespace api, taking the GlobalBlock& first unless
the routine is free; it lists every routine that is not found and fails, else it writes
STAMP (for the build).

The table format is described at the top of include/routines.tbl. Other generators
(language bindings) import parse_table() from this module.
"""

import os
import re
import sys

BASE_TYPES = {"int": "int", "dbl": "double", "str": "const char*", "file": "FILE*"}
RET_TYPES = {"void": "void", "int": "int", "dbl": "double"}

# The argument kinds: direction ("out ", "inout " or none), base type and shape ("[]" for
# arrays of one count, "[,]" for arrays of two counts); "cb" is a callback.
KINDS = {
    "int", "dbl", "str", "file", "cb", "buf",
    "int[]", "dbl[]", "int[,]", "dbl[,]",
    "out int", "out dbl", "out int[]", "out dbl[]", "out int[,]", "out dbl[,]", "out str[]",
    "inout int[]", "inout dbl[]", "inout int[,]", "inout dbl[,]", "inout str[]",
    "out int[*]", "out dbl[*]",
}
# Buffers whose size the routine needs, not the table: the caller's character buffer
# ("buf") and output arrays whose element count the routine determines ("[*]"). The
# internal routine receives them with their sizes (core/buffers.h), kUnknownSize from C.
SIZED_TYPES = {"buf": "zorvel::TextBuffer", "out int[*]": "zorvel::OutArray<int>",
               "out dbl[*]": "zorvel::OutArray<double>"}


class Callback:
    """A function pointer type declared by an "@callback" line."""

    def __init__(self, name, ret, params, mode, key, java_float, line):
        self.name = name
        self.ret = ret  # key of RET_TYPES
        self.params = params  # [(kind, name)] with kind "int", "dbl" or "str"
        self.mode = mode  # "handler" or "function"
        self.key = key  # the int parameter that keys a handler, or None
        self.java_float = java_float  # floating-point values are float in Java
        self.line = line

    def c_params(self):
        return ", ".join(f"{BASE_TYPES[k]} {n}" for k, n in self.params) or "void"

    def typedef(self):
        return f"typedef {RET_TYPES[self.ret]} (*{self.name})({self.c_params()});"


class Arg:
    def __init__(self, kind, name, counts, callback=None):
        self.kind = kind  # one of KINDS
        self.name = name
        self.counts = counts  # names of the count arguments of an array: one or two
        self.callback = callback  # the Callback of a "cb" argument

    @property
    def count(self):
        """The count of a one-dimensional array."""
        return self.counts[0] if len(self.counts) == 1 else None

    @property
    def base(self):
        return self.kind.split()[-1].split("[")[0]

    @property
    def ctype(self):
        if self.callback is not None:
            return self.callback.name
        if self.kind == "buf":
            return "char*"
        if self.kind.startswith(("out ", "inout ")):
            return {"int": "int*", "dbl": "double*", "str": "char*"}[self.base]
        if self.is_array:
            return f"const {BASE_TYPES[self.base]}*"
        return BASE_TYPES[self.base]

    @property
    def internal_type(self):
        """The parameter type of the internal routine: the C type, or a sized buffer."""
        return SIZED_TYPES.get(self.kind, self.ctype)

    @property
    def is_sized(self):
        return self.kind in SIZED_TYPES

    @property
    def is_array(self):
        return bool(self.counts)

    @property
    def is_output(self):
        """Written by the routine: out and inout arguments."""
        return self.kind.startswith(("out ", "inout "))

    @property
    def is_pointer(self):
        """A pointer that the entry refuses when null (where the routine would use it)."""
        return self.is_array or self.is_sized or self.kind in ("out int", "out dbl", "cb")

    def null_condition(self):
        if self.is_sized:
            return f"{self.name}.data == nullptr"
        return " && ".join([f"{self.name} == nullptr"] + [f"{c} > 0" for c in self.counts])


class Routine:
    def __init__(self, name, ret, levels, args, group, line, doc="", source=None):
        self.doc = doc  # the row's trailing comment: a one-line description
        self.name = name
        self.ret = ret
        self.levels = levels  # (lo, hi), "relaxed" or "free"
        self.args = args
        self.group = group
        self.line = line
        self.source = source  # the file that defines the routine, relative to the root

    def c_params(self, with_names=True):
        if not self.args:
            return "void"
        if with_names:
            return ", ".join(f"{a.ctype} {a.name}" for a in self.args)
        return ", ".join(a.ctype for a in self.args)

    @property
    def sized(self):
        """Whether the routine takes a sized buffer: its entry is then
        zorvel::sized::name, which bindings that know the sizes call directly."""
        return any(a.is_sized for a in self.args)


class Table(list):
    """The routines of a table, in order, with the callback types it declares."""

    def __init__(self, routines, callbacks):
        super().__init__(routines)
        self.callbacks = callbacks  # name -> Callback, in the order of declaration


def fail(path, line, msg):
    sys.exit(f"{path}:{line}: {msg}")


def parse_arg(text, callbacks, path, line):
    m = re.fullmatch(
        r"(?:(out|inout)\s+)?(\w+)(?:\[\s*(\w+|\*)\s*(?:,\s*(\w+)\s*)?\])?\s+(\w+)",
        text.strip())
    if not m:
        fail(path, line, f"cannot parse argument '{text.strip()}'")
    direction, base, n1, n2, name = m.groups()
    counts = [c for c in (n1, n2) if c and c != "*"]
    if base in callbacks:
        if direction or counts:
            fail(path, line, f"callback '{name}' cannot be an array or an output")
        return Arg("cb", name, [], callbacks[base])
    if n1 == "*" and n2:
        fail(path, line, f"'{name}': an array of a count that the routine determines has one")
    shape = "[*]" if n1 == "*" else "[,]" if n2 else "[]" if n1 else ""
    kind = (direction + " " if direction else "") + base + shape
    if kind not in KINDS:
        fail(path, line, f"unknown argument kind '{kind}'")
    return Arg(kind, name, counts)


def parse_callback(text, path, line, callbacks, routines):
    m = re.fullmatch(r"@callback\s+(\w+)\s+(\w+)\s*\(([^)]*)\)\s*(.*)", text)
    if not m:
        fail(path, line, "expected: @callback name returns (parameters) handler|function ...")
    name, ret, params_text, options = m.groups()
    if name in callbacks or name in routines or name in KINDS or name in ("out", "inout"):
        fail(path, line, f"callback type '{name}' is already a name of the table")
    if ret not in RET_TYPES:
        fail(path, line, f"unknown return type '{ret}'")
    params = []
    for p in filter(None, (p.strip() for p in params_text.split(","))):
        pm = re.fullmatch(r"(int|dbl|str)\s+(\w+)", p)
        if not pm:
            fail(path, line, f"callback parameter '{p}': int, dbl or str and a name")
        params.append(pm.groups())
    words = options.replace(",", " ").split()
    mode, key, java_float = None, None, False
    while words:
        w = words.pop(0)
        if w in ("handler", "function") and mode is None:
            mode = w
        elif w == "by" and words:
            key = words.pop(0)
        elif w == "java" and words[:1] == ["float"]:
            words.pop(0)
            java_float = True
        else:
            fail(path, line, f"unknown callback option '{w}'")
    if mode is None:
        fail(path, line, f"callback '{name}': say 'handler' or 'function'")
    if key is not None and (mode != "handler" or (("int", key) not in params)):
        fail(path, line, f"callback '{name}': 'by {key}' needs a handler with an int "
                         f"parameter {key}")
    return Callback(name, ret, params, mode, key, java_float, line)


def parse_table(path):
    routines = []
    callbacks = {}
    group = "Other routines"
    source = None
    names = set()
    with open(path, encoding="utf-8") as f:
        for no, raw in enumerate(f, 1):
            text = raw.rstrip("\n")
            if text.startswith("## "):
                group = text[3:].strip()
                continue
            text, _, doc = text.partition("#")
            text, doc = text.strip(), doc.strip()
            if not text:
                continue
            if text.startswith("@callback"):
                cb = parse_callback(text, path, no, callbacks, names)
                callbacks[cb.name] = cb
                continue
            if text.startswith("@file"):
                source = text[len("@file"):].strip()
                if not source or " " in source:
                    fail(path, no, "expected: @file path")
                continue
            row_source = source
            m = re.fullmatch(r"(.*?)\s+@(\S+)", text)
            if m:
                text, row_source = m.groups()
            m = re.fullmatch(r"(\w+)\s+(\w+)\s+(\S+)\s*(.*)", text)
            if not m:
                fail(path, no, "expected: name returns levels [arguments] [@file]")
            name, ret, levels, rest = m.groups()
            if ret not in RET_TYPES:
                fail(path, no, f"unknown return type '{ret}'")
            if name in names or name in callbacks:
                fail(path, no, f"routine '{name}' listed twice")
            if row_source is None:
                fail(path, no, f"no file named for '{name}': an '@file path' line must come first")
            names.add(name)
            if levels in ("relaxed", "free"):
                lv = levels
            else:
                lm = re.fullmatch(r"([0-3])-([0-3])", levels)
                if not lm:
                    fail(path, no, f"bad levels '{levels}'")
                lv = (int(lm.group(1)), int(lm.group(2)))
            # Commas inside brackets belong to the counts of a 2-D array.
            pieces = re.split(r",(?![^\[]*\])", rest) if rest else []
            args = [parse_arg(a, callbacks, path, no) for a in pieces]
            kinds = {a.name: a.kind for a in args}
            if len(kinds) != len(args):
                fail(path, no, f"'{name}' has two arguments of the same name")
            for a in args:
                for c in a.counts:
                    if not c.isdigit() and kinds.get(c) != "int":
                        fail(path, no, f"count '{c}' of '{a.name}' is not an int argument")
                cb = a.callback
                if cb is not None and cb.key is not None and kinds.get(cb.key) != "int":
                    fail(path, no, f"'{name}' passes a {cb.name}, keyed by {cb.key}, "
                                   f"without an int argument {cb.key}")
            routines.append(Routine(name, ret, lv, args, group, no, doc, row_source))
    return Table(routines, callbacks)


def used_callbacks(table, rows=None):
    """The callback types that the rows (by default every row of the table) use, in the
    order of their declaration."""
    used = {a.callback.name for r in (table if rows is None else rows) for a in r.args
            if a.callback is not None}
    return [cb for cb in table.callbacks.values() if cb.name in used]


HEADER_TOP = """\
/* Zorvel: scientific plotting library. Public C interface.
 * Generated by tools/gen_api.py from include/routines.tbl, do not edit. */
#ifndef ZORVEL_H
#define ZORVEL_H

#include <stdio.h>

#if defined(_WIN32) && defined(ZORVEL_BUILDING)
#  define ZORVEL_API /* the DLLs export what their .def files list */
#elif defined(_WIN32)
#  define ZORVEL_API __declspec(dllimport)
#elif defined(__GNUC__)
#  define ZORVEL_API __attribute__((visibility("default")))
#else
#  define ZORVEL_API
#endif

#ifdef __cplusplus
#  define ZORVEL_NOEXCEPT noexcept
extern "C" {
#else
#  define ZORVEL_NOEXCEPT
#endif
"""

HEADER_END = """
#ifdef __cplusplus
}
#endif

#endif /* ZORVEL_H */
"""


def gen_header(routines):
    out = [HEADER_TOP]
    if routines.callbacks:
        out.append("\n/* Callbacks: the program's functions that routines take */\n")
        out.extend(cb.typedef() + "\n" for cb in routines.callbacks.values())
    group = None
    for r in routines:
        if r.group != group:
            group = r.group
            out.append(f"\n/* {group} */\n")
        out.append(f"ZORVEL_API {RET_TYPES[r.ret]} {r.name}({r.c_params()}) ZORVEL_NOEXCEPT;\n")
    out.append(HEADER_END)
    return "".join(out)


def gen_decl(routines):
    out = [
        "// Generated by tools/gen_api.py from include/routines.tbl, do not edit.\n",
        "// Internal implementations of the public routines. The library calls these,\n",
        "// never the exported names, so a user's function of the same name cannot\n",
        "// take the place of one of ours.\n",
        "#pragma once\n#include <cstdio>\n\n",
    ]
    if any(r.sized for r in routines):
        out.append('#include "core/buffers.h"\n\n')
    if routines.callbacks:
        # The same declarations as in zorvel.h, which a C++ file may include as well.
        out.append('extern "C" {\n')
        out.extend(cb.typedef() + "\n" for cb in routines.callbacks.values())
        out.append("}\n\n")
    out.append("namespace zorvel {\nstruct GlobalBlock;\nnamespace api {\n\n")
    for r in routines:
        params = [f"{a.internal_type} {a.name}" for a in r.args]
        if r.levels != "free":
            params.insert(0, "GlobalBlock& g")
        out.append(f"{RET_TYPES[r.ret]} {r.name}({', '.join(params)});\n")
    out.append("\n}  // namespace api\n")
    sized = [r for r in routines if r.sized]
    if sized:
        out.append("\n// The entries of the routines with sized buffers, for bindings that know the\n"
                   "// sizes; the C entries call them with kUnknownSize.\n"
                   "namespace sized {\n\n")
        out.extend(f"{RET_TYPES[r.ret]} {r.name}({sized_params(r)}) noexcept;\n" for r in sized)
        out.append("\n}  // namespace sized\n")
    out.append("}  // namespace zorvel\n")
    return "".join(out)


def sized_params(r):
    return ", ".join(f"{a.internal_type} {a.name}" for a in r.args)


def gen_entries(routines):
    out = [
        "// Generated by tools/gen_api.py from include/routines.tbl, do not edit.\n",
        '#include "zorvel.h"\n#include "api_decl.h"\n#include "core/entry.h"\n\n',
        "// Every entry: entry check, null guards, exception barrier, implementation.\n\n",
    ]
    for r in routines:
        ret = RET_TYPES[r.ret]
        zero = {"void": "", "int": " 0", "dbl": " 0.0"}[r.ret]
        body = []
        call_args = []
        if r.levels == "free":
            pass
        elif r.levels == "relaxed":
            body.append(f'  zorvel::GlobalBlock* g = zorvel::enter_relaxed("{r.name}");\n')
            call_args.append("*g")
        else:
            lo, hi = r.levels
            body.append(f'  zorvel::GlobalBlock* g = zorvel::enter({lo}, {hi}, "{r.name}");\n')
            call_args.append("*g")
        if r.levels != "free":
            body.append(f"  if (g == nullptr) {{\n    return{zero};\n  }}\n")
        for a in r.args:
            if a.kind == "str":
                call_args.append(f'({a.name} != nullptr ? {a.name} : "")')
            elif a.is_pointer and r.levels != "free":
                body.append(f"  if ({a.null_condition()}) {{\n"
                            f"    zorvel::null_argument(*g, \"{a.name}\");\n"
                            f"    return{zero};\n  }}\n")
                call_args.append(a.name)
            else:
                call_args.append(a.name)
        call = f"zorvel::api::{r.name}({', '.join(call_args)})"
        g_arg = "g" if r.levels != "free" else "nullptr"
        body.append("  try {\n")
        if r.ret == "void":
            body.append(f"    {call};\n")
        else:
            body.append(f"    return {call};\n")
        body.append(f"  }} catch (...) {{\n    zorvel::internal_failure({g_arg});\n  }}\n")
        if r.ret != "void":
            body.append(f"  return{zero};\n")
        if r.sized:
            # The body takes the sizes; the C entry hands it buffers of unknown size.
            out.append(f"{ret} zorvel::sized::{r.name}({sized_params(r)}) noexcept {{\n")
            out.extend(body)
            out.append("}\n\n")
            args = ", ".join(f"{{{a.name}, zorvel::kUnknownSize}}" if a.is_sized else a.name
                             for a in r.args)
            body = [f"  return zorvel::sized::{r.name}({args});\n"]
            out.append(sized_export(r))
        out.append(f"extern \"C\" ZORVEL_API {ret} {r.name}({r.c_params()}) noexcept {{\n")
        out.extend(body)
        out.append("}\n\n")
    return "".join(out)


def sized_export_params(r):
    """The C parameters of zorvel_sized_<name>: every sized pointer followed by its size."""
    params = []
    for a in r.args:
        params.append(f"{a.ctype} {a.name}")
        if a.is_sized:
            params.append(f"size_t {a.name}_size")
    return ", ".join(params)


def sized_export(r):
    """zorvel_sized_<name>, the entry of a routine with sized buffers for the bindings that
    know the sizes (Python, Fortran). Not in zorvel.h: C programs call the routine."""
    ret = RET_TYPES[r.ret]
    args = ", ".join(f"{{{a.name}, {a.name}_size}}" if a.is_sized else a.name for a in r.args)
    return (f'extern "C" ZORVEL_API {ret} zorvel_sized_{r.name}({sized_export_params(r)}) noexcept;\n'
            f'{ret} zorvel_sized_{r.name}({sized_export_params(r)}) noexcept {{\n'
            f"  return zorvel::sized::{r.name}({args});\n}}\n\n")


def level_text(r):
    if r.levels == "relaxed":
        return "any (warns at 0)"
    if r.levels == "free":
        return "any"
    lo, hi = r.levels
    return str(lo) if lo == hi else f"{lo}-{hi}"


def gen_reference(routines):
    out = []
    group = None
    described = set()

    def callback_types(group):
        """The typedefs of the callbacks that the group's routines use first."""
        cbs = [a.callback for r in routines if r.group == group for a in r.args if a.callback]
        new = [cb for cb in dict.fromkeys(cbs) if cb.name not in described]
        described.update(cb.name for cb in new)
        if not new:
            return ""
        return "\nCallback types:\n\n" + "".join(f"- `{cb.typedef()}`\n" for cb in new)

    for r in routines:
        if r.group != group:
            if group is not None:
                out.append(callback_types(group))
            group = r.group
            out.append(f"\n#### {group}\n\n| routine | arguments | levels | what it does |\n|---|---|---|---|\n")
        args = ", ".join(f"{a.ctype} {a.name}" for a in r.args) or "void"
        ret = "" if r.ret == "void" else f" → {RET_TYPES[r.ret]}"
        out.append(f"| `{r.name}` | `{args}`{ret} | {level_text(r)} | {r.doc} |\n")
    if group is not None:
        out.append(callback_types(group))
    return "".join(out)


# The files that define the routines
# ==================================

def strip_code(text):
    """C++ text with comments, strings and character literals blanked out (line breaks
    kept), so that braces and names inside them do not count."""
    pattern = re.compile(r'//[^\n]*|/\*.*?\*/|"(?:\\.|[^"\\\n])*"|\'(?:\\.|[^\'\\\n])*\'', re.S)
    return pattern.sub(lambda m: re.sub(r"[^\n]", " ", m.group(0)), text)


def api_definitions(text):
    """{name: [parameter text of each definition]} of the functions defined directly
    inside a namespace `api` (also `namespace zorvel::api`)."""
    text = strip_code(text)
    token = re.compile(r"\bnamespace\s+([\w:]+)\s*\{|\{|\}|\b(\w+)\s*\(")
    scopes = []  # the namespace name of each open brace, None for other braces
    found = {}
    for m in token.finditer(text):
        if m.group(1):
            scopes.append(m.group(1))
        elif m.group(0) == "{":
            scopes.append(None)
        elif m.group(0) == "}":
            if scopes:
                scopes.pop()
        elif scopes and scopes[-1] is not None and scopes[-1].split("::")[-1] == "api":
            depth, i = 1, m.end()
            while i < len(text) and depth > 0:
                depth += {"(": 1, ")": -1}.get(text[i], 0)
                i += 1
            if re.match(r"\s*(?:const\s*)?(?:noexcept\s*)?\{", text[i:]):
                found.setdefault(m.group(2), []).append(text[m.end():i - 1].strip())
    return found


def check_sources(routines, table, root):
    """The messages for routines that their named file does not define inside namespace
    api with the GlobalBlock& parameter first (none for free routines)."""
    errors = []
    cache = {}
    for r in routines:
        path = os.path.join(root, r.source)
        if path not in cache:
            try:
                with open(path, encoding="utf-8") as f:
                    cache[path] = api_definitions(f.read())
            except OSError:
                cache[path] = None
        defs = cache[path]
        if defs is None:
            errors.append(f"{table}:{r.line}: {r.name}: {r.source}: no such file")
            continue
        defined = defs.get(r.name, [])
        takes_block = any(re.match(r"GlobalBlock\s*&", p) for p in defined)
        if r.levels == "free":
            if not any(not re.match(r"GlobalBlock\s*&", p) for p in defined):
                errors.append(f"{table}:{r.line}: {r.name}: {r.source} defines no {r.name}(...) "
                              "without the GlobalBlock inside namespace api")
        elif not takes_block:
            errors.append(f"{table}:{r.line}: {r.name}: {r.source} defines no "
                          f"{r.name}(GlobalBlock& g, ...) inside namespace api")
    return errors


def write_if_changed(path, text):
    try:
        with open(path, encoding="utf-8") as f:
            if f.read() == text:
                return
    except OSError:
        pass
    with open(path, "w", encoding="utf-8") as f:
        f.write(text)


def main():
    args = sys.argv[1:]
    if len(args) == 4 and args[0] == "--check-sources":
        root, table, stamp = args[1:]
        if os.path.exists(stamp):
            os.remove(stamp)
        errors = check_sources(parse_table(table), table, root)
        if errors:
            sys.exit("\n".join(errors) + "\nThe table names the file that defines each routine"
                     " (\"@file path\" lines, \"@path\" at the end of a row).")
        os.makedirs(os.path.dirname(os.path.abspath(stamp)), exist_ok=True)
        with open(stamp, "w", encoding="utf-8") as f:
            f.write("every routine is defined in its file\n")
        return
    if len(args) != 2:
        sys.exit(__doc__)
    table, outdir = args
    routines = parse_table(table)
    os.makedirs(outdir, exist_ok=True)
    write_if_changed(os.path.join(outdir, "zorvel.h"), gen_header(routines))
    write_if_changed(os.path.join(outdir, "api_decl.h"), gen_decl(routines))
    write_if_changed(os.path.join(outdir, "api_entries.cpp"), gen_entries(routines))
    write_if_changed(os.path.join(outdir, "routines.md"), gen_reference(routines))


if __name__ == "__main__":
    main()
