#!/usr/bin/env python3
"""Generates the Fortran module zorvel (ISO_C_BINDING) from include/routines.tbl.

Usage: gen_fortran.py TABLE OUTFILE

Every row becomes a public procedure of the module with the routine's name and its
arguments in the table's order:

  int, dbl        integer(c_int), real(c_double) (by value to C)
  str             character(len=*): trailing blanks removed, a zero byte appended
  file            type(c_ptr) (c_null_ptr: no file)
  dbl[n], int[n]  real(c_double), integer(c_int) arrays (assumed size); matrices
                  dbl[nx,ny] are arrays z(nx, ny): Fortran's column order is the
                  library's row order, z(i, j) the value at (x(i), y(j))
  out, inout      intent(out), intent(inout) of the same types
  out str[n]      character(len=*), filled from the library's text, blank-padded
  inout str[n]    character(len=*), handed over trimmed in a buffer of n bytes and
                  replaced by the library's text (left as it was when it filled the buffer)
  buf             character(len=*), whose length the routine is told
  out dbl[*] ...  arrays of assumed shape, whose size the routine is told
  callbacks       procedures of the abstract interfaces of the callback types, which
                  must be bind(C) with value arguments (a str parameter is a type(c_ptr))

Routines whose arguments C takes as they are get an interface to the C entry under their
own name; the others a module procedure that converts and calls it (c_<name>).
"""

import os
import sys

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from gen_api import parse_table, write_if_changed  # noqa: E402

SCALAR = {"int": "integer(c_int)", "dbl": "real(c_double)"}
# The kinds only: an argument may have the name of a routine of the module.
IMPORT = "      import :: c_int, c_double, c_char, c_ptr, c_funptr, c_size_t\n"


def needs_wrapper(r):
    return any(a.kind in ("str", "buf", "out str[]", "inout str[]") or a.is_sized or a.callback is not None
               for a in r.args)


def wrap(line, indent):
    """Free-form lines of at most 100 characters, continued with '&'."""
    out, pad = [], " " * indent
    while len(pad + line) > 100:
        cut = line.rfind(", ", 0, 100 - len(pad) - 2)
        if cut <= 0:
            break
        out.append(pad + line[:cut + 1] + " &")
        line = line[cut + 2:]
        pad = " " * (indent + 4)
    out.append(pad + line)
    return "\n".join(out) + "\n"


def c_decl(a):
    """The declaration of an argument in the interface of the C entry."""
    k = a.kind
    if k in SCALAR:
        return f"{SCALAR[k]}, value :: {a.name}"
    if k in ("str", "out str[]", "inout str[]", "buf"):
        intent = "in" if k == "str" else "inout"
        return f"character(kind=c_char), intent({intent}) :: {a.name}(*)"
    if k == "file":
        return f"type(c_ptr), value :: {a.name}"
    if a.callback is not None:
        return f"type(c_funptr), value :: {a.name}"
    if k in ("out int", "out dbl"):
        return f"{SCALAR[a.base]}, intent(out) :: {a.name}"
    intent = "inout" if k.startswith("inout") else "out" if a.is_output else "in"
    return f"{SCALAR[a.base]}, intent({intent}) :: {a.name}(*)"


def f_decl(a):
    """The declaration of an argument of the module procedure."""
    k = a.kind
    if k in SCALAR:
        return f"{SCALAR[k]}, intent(in) :: {a.name}"
    if k == "str":
        return f"character(len=*), intent(in) :: {a.name}"
    if k == "out str[]":
        return f"character(len=*), intent(out) :: {a.name}"
    if k == "inout str[]":
        return f"character(len=*), intent(inout) :: {a.name}"
    if k == "buf":
        return f"character(len=*), intent(inout) :: {a.name}"
    if a.callback is not None:
        return f"procedure({a.callback.name}) :: {a.name}"
    if a.is_sized:
        return f"{SCALAR[a.base]}, intent(out), contiguous :: {a.name}(:)"
    return c_decl(a)


def c_params(r):
    params = []
    for a in r.args:
        params.append(a.name)
        if a.is_sized:
            params.append(f"{a.name}_size")
    return params


def interface(r, name):
    """The interface of the C entry, as procedure `name`."""
    kind = "subroutine" if r.ret == "void" else "function"
    cname = f"zorvel_sized_{r.name}" if r.sized else r.name
    result = "" if r.ret == "void" else " result(r)"
    out = [wrap(f'{kind} {name}({", ".join(c_params(r))}){result} bind(C, name="{cname}")', 4),
           IMPORT]
    for a in r.args:
        out.append(f"      {c_decl(a)}\n")
        if a.is_sized:
            out.append(f"      integer(c_size_t), value :: {a.name}_size\n")
    if r.ret != "void":
        out.append(f"      {SCALAR[r.ret]} :: r\n")
    out.append(f"    end {kind} {name}\n")
    return "".join(out)


def wrapper(r):
    """The module procedure of a routine with strings, buffers or callbacks."""
    kind = "subroutine" if r.ret == "void" else "function"
    result = "" if r.ret == "void" else " result(r)"
    out = [wrap(f"{kind} {r.name}({', '.join(a.name for a in r.args)}){result}", 2)]
    for a in r.args:
        out.append(f"    {f_decl(a)}\n")
    if r.ret != "void":
        out.append(f"    {SCALAR[r.ret]} :: r\n")
    call, after = [], []
    for a in r.args:
        n = a.name
        if a.kind == "str":
            out.append(f"    character(kind=c_char, len=len_trim({n}) + 1) :: c_{n}\n")
            call.append(f"c_{n}")
        elif a.kind == "out str[]":
            out.append(f"    character(kind=c_char, len=max({a.count}, 1)) :: c_{n}\n")
            call.append(f"c_{n}")
            after.append(f"{n} = from_c(c_{n})")
        elif a.kind == "inout str[]":
            out.append(f"    character(kind=c_char, len=max({a.count}, 1)) :: c_{n}\n")
            call.append(f"c_{n}")
            after.append(f"if (index(c_{n}, c_null_char) > 0) {n} = from_c(c_{n})")
        elif a.kind == "buf":
            call += [n, f"len({n}, kind=c_size_t)"]
        elif a.is_sized:
            call += [n, f"size({n}, kind=c_size_t)"]
        elif a.callback is not None:
            call.append(f"c_funloc({n})")
        else:
            call.append(n)
    for a in r.args:
        if a.kind in ("str", "inout str[]"):
            out.append(f"    c_{a.name} = trim({a.name}) // c_null_char\n")
    target = f"call c_{r.name}(" if r.ret == "void" else f"r = c_{r.name}("
    out.append(wrap(target + ", ".join(call) + ")", 4))
    out.extend(f"    {line}\n" for line in after)
    out.append(f"  end {kind} {r.name}\n\n")
    return "".join(out)


def abstract_interfaces(table):
    out = ["  abstract interface\n"]
    for cb in table.callbacks.values():
        kind = "subroutine" if cb.ret == "void" else "function"
        names = ", ".join(n for _, n in cb.params)
        result = "" if cb.ret == "void" else " result(r)"
        out.append(f"    {kind} {cb.name}({names}){result} bind(C)\n{IMPORT}")
        for k, n in cb.params:
            out.append(f"      {'type(c_ptr)' if k == 'str' else SCALAR[k]}, value :: {n}\n")
        if cb.ret != "void":
            out.append(f"      {SCALAR[cb.ret]} :: r\n")
        out.append(f"    end {kind} {cb.name}\n")
    out.append("  end interface\n\n")
    return "".join(out)


def generate(table):
    names = [r.name for r in table]
    public = ", ".join(names + list(table.callbacks))
    out = ["! Generated by tools/gen_fortran.py from include/routines.tbl, do not edit.\n",
           "! The routines of Zorvel for Fortran: use zorvel\n",
           "module zorvel\n  use, intrinsic :: iso_c_binding\n  implicit none\n  private\n",
           wrap(f"public :: {public}", 2), "\n"]
    out.append(abstract_interfaces(table))
    out.append("  interface\n")
    for r in table:
        out.append(interface(r, f"c_{r.name}" if needs_wrapper(r) else r.name))
    out.append("  end interface\n\ncontains\n\n")
    if any(a.kind in ("out str[]", "inout str[]") for r in table for a in r.args):
        out.append(FROM_C)
    out.extend(wrapper(r) for r in table if needs_wrapper(r))
    out.append("end module zorvel\n")
    return "".join(out)


FROM_C = ("  ! The text of a C buffer up to its zero byte, for a blank-padded string.\n"
          "  pure function from_c(c) result(s)\n"
          "    character(kind=c_char, len=*), intent(in) :: c\n"
          "    character(len=len(c)) :: s\n    integer :: k\n"
          "    k = index(c, c_null_char)\n    if (k == 0) k = len(c) + 1\n"
          "    s = c(1:k - 1)\n  end function from_c\n\n")


def main():
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    table, outfile = sys.argv[1:]
    os.makedirs(os.path.dirname(os.path.abspath(outfile)), exist_ok=True)
    write_if_changed(outfile, generate(parse_table(table)))


if __name__ == "__main__":
    main()
