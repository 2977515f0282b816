"""Marshalling of every argument kind, through the fixture table's fake routines, which
print what reached them. Faults it would catch: a kind converted wrongly (values, counts,
sizes, order), outputs not returned, bad input reaching the library instead of raising
TypeError/ValueError first, a kind of the real table that no case covers."""
import ctypes
import os
import sys

import numpy as np
import pytest

sys.path.insert(0, os.environ["ZORVEL_TOOLS"])
from gen_api import parse_table  # noqa: E402

_libc = ctypes.CDLL(None)


def printed(capfd):
    _libc.fflush(None)
    return capfd.readouterr().out.splitlines()


def kinds_of(table):
    return {a.kind for r in table for a in r.args}


# Per kind: calls with what the fake routine must print and return, then bad calls with
# the exception they must raise (before the library prints anything).
def case_int_arrays(z):
    good = [(lambda: z.fx_ints([1, -2, 3]), ["fx_ints n=3 iray=[1 -2 3]"], [2, -4, 6]),
            (lambda: z.fx_ints(np.array([5, 6], dtype=np.int64)), ["fx_ints n=2 iray=[5 6]"],
             [10, 12]),
            (lambda: z.fx_ints([1, 2, 3], 2), ["fx_ints n=2 iray=[1 2]"], [2, 4])]
    bad = [(lambda: z.fx_ints([1.5, 2]), TypeError), (lambda: z.fx_ints("12"), TypeError),
           (lambda: z.fx_ints([1, 2], 3), ValueError), (lambda: z.fx_ints(None, 2), TypeError),
           (lambda: z.fx_ints([2 ** 31]), ValueError),
           (lambda: z.fx_ints(np.array([1.5])), TypeError)]
    return good, bad


def case_dbl_arrays(z):
    x = np.array([1.5, -2.25, 1000.0, 7.0])
    good = [(lambda: z.fxdbl([1.5, -2.25, 1000], (0, 0.5, -0.125)),
             ["fxdbl n=3 xray=[1.5 -2.25 1000] yray=[0 0.5 -0.125]"], None),
            (lambda: z.fxdbl(x[::2], x[1::2]), ["fxdbl n=2 xray=[1.5 1000] yray=[-2.25 7]"], None),
            (lambda: z.fxout([1.5, -2.25], 3), ["fxout n=2 xray=[1.5 -2.25] yout(in)=[0 0 0]"],
             [0.75, -1.125, 0.0])]
    bad = [(lambda: z.fxdbl([1, 2], [1, 2, 3]), ValueError), (lambda: z.fxdbl([1, "a"], [1, 2]), TypeError),
           (lambda: z.fxdbl(np.zeros((2, 2)), [1, 2]), ValueError),
           (lambda: z.fxout([1.0], "3"), TypeError)]
    return good, bad


def case_matrices(z):
    zm = np.arange(6.0).reshape(2, 3)  # ny = 2 rows of nx = 3
    im = np.ones((2, 3), dtype=np.int32)
    good = [(lambda: z.fxgrid(zm, im), ["fxgrid nx=3 ny=2 zmat=[0 1 2 3 4 5] imat=[1 1 1 1 1 1]"], 15.0),
            (lambda: z.fxgrid(zm.ravel(), im.ravel(), 3, 2),
             ["fxgrid nx=3 ny=2 zmat=[0 1 2 3 4 5] imat=[1 1 1 1 1 1]"], 15.0),
            (lambda: z.fxgrid(zm.T.copy().T, im), ["fxgrid nx=3 ny=2 zmat=[0 1 2 3 4 5] imat=[1 1 1 1 1 1]"],
             15.0)]
    bad = [(lambda: z.fxgrid(zm, im.T), ValueError), (lambda: z.fxgrid(zm.ravel(), im.ravel()), TypeError),
           (lambda: z.fxgrid(zm, im, 3, 3), ValueError)]
    return good, bad


def case_inout(z):
    x, i = np.array([1.0, 2.0]), np.array([4, 5], dtype=np.int32)

    def call():
        z.fxinout(x, i)
        return x.tolist() + i.tolist()
    ro = np.array([1.0, 2.0])
    ro.flags.writeable = False
    good = [(call, ["fxinout n=2 xray(in)=[1 2] iray(in)=[4 5]"], [2.25, 4.25, 12, 15])]
    bad = [(lambda: z.fxinout([1.0], [1]), TypeError), (lambda: z.fxinout(ro, i), ValueError),
           (lambda: z.fxinout(np.zeros(4)[::2], i), ValueError),
           (lambda: z.fxinout(np.zeros(2, dtype=np.float32), i), TypeError)]
    return good, bad


def case_scalars(z):
    good = [(lambda: z.fxscal(3, 2.5, "grüße 😀"),
             ['fxscal i=3 x=2.5 s="grüße 😀" bytes=12 iv(in)=0 dv(in)=0'], (4, 6, 0.625)),
            (lambda: z.fxscal(np.int32(3), 2, b"gr\xfc"), [], (4, 6, 0.5)),
            (lambda: z.fxscal(True, np.float64(1), "\udcfc"), [], (2, 2, 0.25))]
    bad = [(lambda: z.fxscal(2.0, 1.0, "a"), TypeError), (lambda: z.fxscal(1, "1", "a"), TypeError),
           (lambda: z.fxscal(1, None, "a"), TypeError), (lambda: z.fxscal(1, 1.0, None), TypeError),
           (lambda: z.fxscal(1, 1.0, "a\0b"), ValueError), (lambda: z.fxscal(1, 1.0, "\ud800"), ValueError),
           (lambda: z.fxscal(2 ** 40, 1.0, "a"), ValueError)]
    return good, bad


def case_out_str(z):
    good = [(lambda: z.fxstr("café", 64), ['fxstr cin="café" n=64'], "café grüße € 😀"),
            (lambda: z.fxstr("cut", 8), ['fxstr cin="cut" n=8'], "cut gr\udcc3")]
    return good, []


def case_inout_str(z):
    good = [(lambda: z.fxlist("café", 16, "x"), ['fxlist clis="café" n=16'], "café|x"),
            (lambda: z.fxlist("abcdef", 4, "x"), ['fxlist clis="(unterminated)" n=4'], "abcdef"),
            (lambda: z.fxlist("none", 0, "x"), ["fxlist n=0"], "none")]
    return good, [(lambda: z.fxlist(None, 8, "x"), TypeError)]


def case_file(z):
    good = [(lambda: z.fxfile(None), ['fxfile fp="none"'], None),
            (lambda: z.fxfile(sys.stdout), ['fxfile fp="stdout"', "fxfile wrote this line"], None)]
    return good, [(lambda: z.fxfile(3), ValueError), (lambda: z.fxfile("out.txt"), ValueError)]


def case_sized(z):
    buf, x, i = bytearray(4), np.zeros(4), np.zeros(4, dtype=np.int32)

    def call():
        return z.fxsized(buf, x, i, 3), bytes(buf), x.tolist(), i.tolist()
    good = [(call, ["fxsized n=3 cbuf=4 xout=4 iout=4"],
             (3, b"abc\0", [0.5, 1.5, 2.5, 0.0], [0, 10, 20, 0])),
            (lambda: z.fxsized(bytearray(2), np.zeros(9), np.zeros(9, dtype=np.int32), 3),
             ["fxsized n=3 cbuf=2 xout=9 iout=9"], -1)]
    bad = [(lambda: z.fxsized(b"abcd", x, i, 3), ValueError), (lambda: z.fxsized("abcd", x, i, 3), TypeError),
           (lambda: z.fxsized(buf, [0.0] * 4, i, 3), TypeError)]
    return good, bad


def case_callbacks(z):
    seen = []

    def register():
        z.fxon(7, lambda id, v: seen.append((id, v)))  # nothing else keeps the lambda
        import gc
        gc.collect()
        return z.fxfire(7, 1.5), z.fxfire(8, 2.0), seen
    good = [(register, ["fxon id=7"], (1, 1, [(7, 1.5), (8, 2.0)])),
            (lambda: z.fxsum(lambda x, n: x * n, 4), ["fxsum n=4"], 7.0)]
    return good, [(lambda: z.fxon(1, "Cls.method"), TypeError), (lambda: z.fxsum(None, 2), TypeError)]


CASES = {
    ("int[]", "out int[]"): case_int_arrays,
    ("dbl[]", "out dbl[]"): case_dbl_arrays,
    ("dbl[,]", "int[,]"): case_matrices,
    ("inout dbl[]", "inout int[]"): case_inout,
    ("int", "dbl", "str", "out int", "out dbl"): case_scalars,
    ("out str[]",): case_out_str,
    ("inout str[]",): case_inout_str,
    ("file",): case_file,
    ("buf", "out dbl[*]", "out int[*]"): case_sized,
    ("cb",): case_callbacks,
}


def test_every_kind(zfix, capfd):
    covered = {k for kinds in CASES for k in kinds}
    real = kinds_of(parse_table(os.path.join(os.environ["ZORVEL_TOOLS"], "..", "include",
                                             "routines.tbl")))
    assert real - covered == set(), "kinds of the table without a case"
    assert kinds_of(parse_table(os.environ["ZORVEL_FIXTURE_TABLE"])) <= covered
    for kinds, case in CASES.items():
        good, bad = case(zfix)
        for k, (call, lines, result) in enumerate(good):
            printed(capfd)
            got = call()
            if isinstance(got, np.ndarray):
                got = got.tolist()
            elif isinstance(got, tuple):
                got = tuple(g.tolist() if isinstance(g, np.ndarray) else g for g in got)
            out = printed(capfd)
            assert out[:len(lines)] == lines, (kinds, k)
            assert got == result, (kinds, k)
        for k, (call, error) in enumerate(bad):
            with pytest.raises(error):
                call()
            assert printed(capfd) == [], (kinds, k, "the library was called")
