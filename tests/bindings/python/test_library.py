"""The package against the real library: arrays without copies, warnings with their
numbers, callbacks and their exceptions, the message callback, figures in memory."""
import ctypes
import gc
import os
import warnings
import xml.etree.ElementTree as ET

import numpy as np
import pytest

import zorvel
from zorvel import ZorvelWarning, _routines

_libc = ctypes.CDLL(None)


def stdout_of(capfd):
    _libc.fflush(None)
    return capfd.readouterr().out


def test_numpy_arrays_reach_the_library_without_copies(monkeypatch):
    # Fault: an extra copy of a contiguous float64 array on every call (W1 would pay for
    # it), or a non-contiguous / wrong-typed array passed as it is (the library would
    # read the wrong values).
    seen = []
    real = _routines._f_curve
    monkeypatch.setattr(_routines, "_f_curve", lambda px, py, n: seen.append((px, py, n)) or real(px, py, n))
    x = np.linspace(0.0, 1.0, 11)
    y = np.linspace(0.0, 1.0, 22)
    ro = x.copy()
    ro.flags.writeable = False  # read-only input arrays are fine: the library only reads
    with zorvel.plot("PS", "arrays.ps"):
        zorvel.graf(0, 1, 0, 1, 0, 1, 0, 1)
        zorvel.curve(x, ro)
        zorvel.curve(x, y[::2])  # a strided view: copied
        zorvel.curve(x.astype(np.float32), y[:11])  # float32: copied
        with pytest.raises(ValueError):
            zorvel.curve(x, y)  # lengths differ
    assert seen[0] == (x.ctypes.data, ro.ctypes.data, 11)
    assert seen[1][0] == x.ctypes.data and seen[1][1] != y.ctypes.data
    assert seen[2][0] != x.ctypes.data and seen[2][1] == y.ctypes.data
    assert len(seen) == 3
    os.remove("arrays.ps")


def test_warnings_arrive_with_their_numbers(capfd):
    # Fault: warnings lost, numbered wrongly, delivered to the wrong call, or printed
    # twice / not at all on the console.
    with pytest.warns(ZorvelWarning) as got:
        zorvel.setpag("NOPE")
        zorvel.curve([1, 2], [1, 2])  # level 0: warning 3 for curve
    assert [(w.message.number, w.lineno) for w in got][:1] == [(2, got[0].lineno)]
    assert [w.message.number for w in got] == [2, 3]
    assert "setpag" in got[0].message.line and "NOPE" in got[0].message.line
    assert got[0].filename == __file__
    out = stdout_of(capfd)
    assert "Warning 2: Incorrect parameter in setpag!" in out and "Warning 3" in out
    zorvel.console(False)
    try:
        with warnings.catch_warnings():
            warnings.simplefilter("error")
            with pytest.raises(ZorvelWarning) as e:
                zorvel.setpag("BAD")
            assert e.value.number == 2
        assert stdout_of(capfd) == ""
    finally:
        zorvel.console(True)
    with warnings.catch_warnings(record=True) as none:
        warnings.simplefilter("always")
        zorvel.setpag("DA4L")
    assert none == []


def test_callbacks_and_their_exceptions():
    # Fault: a Python exception inside a callback crashing the process, leaving an
    # exception set for an unrelated call, or vanishing; a callback freed while the
    # library still holds it.
    calls = []

    def surface(x, y):
        calls.append((x, y))
        return x * y

    def broken(x, y):
        raise ZeroDivisionError("inside the surface")

    with zorvel.plot("PS", "surface.ps"):
        zorvel.graf3d(0, 1, 0, 0.5, 0, 1, 0, 0.5, 0, 1, 0, 0.5)
        zorvel.surfun(surface, 4, 0.0, 3, 0.0)
        assert len(calls) == 12
        with pytest.warns(ZorvelWarning) as got:
            zorvel.surfun(broken, 4, 0.0, 3, 0.0)  # every point fails: one warning
        assert [w.message.number for w in got] == [292]
        assert isinstance(got[0].message.exception, ZeroDivisionError)
        with warnings.catch_warnings():
            warnings.simplefilter("error")
            zorvel.endgrf()  # nothing left over for the next call
        with pytest.raises(KeyboardInterrupt):
            zorvel.graf3d(0, 1, 0, 0.5, 0, 1, 0, 0.5, 0, 1, 0, 0.5)
            zorvel.surfun(lambda x, y: (_ for _ in ()).throw(KeyboardInterrupt()), 2, 0.0, 2, 0.0)
        assert zorvel.getlev() == 3
        zorvel.endgrf()
    os.remove("surface.ps")
    with pytest.raises(TypeError):
        zorvel.surfun("surface", 2, 0.0, 2, 0.0)


def test_message_callback_of_c_programs(capfd):
    # Fault: msgcbk not calling back, or not able to silence the console, or removing it
    # (None) leaving a dangling function.
    lines = []
    zorvel.msgcbk(lambda number, line: lines.append((number, line)), "ONLY")
    try:
        zorvel.setpag("XY")
        gc.collect()
        zorvel.setpag("XZ")
    finally:
        zorvel.msgcbk(None, "")
        zorvel.setpag("YY")  # no callback: the console only
        zorvel.console(True)
    assert [n for n, _ in lines] == [2, 2]
    assert lines[0][1] == " <<<< Warning 2: Incorrect parameter in setpag!   (XY)"
    out = stdout_of(capfd)
    assert "(YY)" in out and "(XY)" not in out
    with pytest.raises(ValueError):
        zorvel.msgcbk(None, "NOPE\0")


def test_figure_shows_itself_from_memory(workdir):
    # Fault: a figure leaving files behind, an SVG that is not well-formed, a PNG that
    # is not a PNG, or a figure whose PNG is not the same scene.
    x = np.linspace(0, 10, 50)
    with zorvel.plot("VIRT") as fig:
        zorvel.graf(0, 10, 0, 2, -1, 1, -1, 0.5)
        zorvel.curve(x, np.sin(x))
    assert isinstance(fig, zorvel.Figure)
    root = ET.fromstring(fig._repr_svg_().encode("iso-8859-1"))
    assert root.tag.endswith("svg")
    png = fig._repr_png_()
    assert png[:8] == b"\x89PNG\r\n\x1a\n" and fig._repr_png_() is png
    assert os.listdir(workdir) == []
    assert zorvel.getlev() == 0
