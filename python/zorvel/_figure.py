"""The thin convenience layer: plot() runs a plot as a context manager, Figure is a plot
kept in memory that shows itself in Jupyter as SVG and PNG."""

import ctypes

from . import _routines as z
from . import _runtime


def console(on=True):
    """Warning lines of the library also on its message device (the console, as the
    library prints them: on) or only as ZorvelWarning (off). Process-wide."""
    z._f_msgcbk(_runtime._message_cb, b"ALSO" if on else b"ONLY")


def _kept_file():
    """The file that memfil kept in memory, as bytes (b"" without one)."""
    n = z.rbffil(bytearray(1), 0)
    if n <= 0:
        return b""
    buf = bytearray(n)
    z.rbffil(buf, n)
    return bytes(buf)


def _raster_png():
    n = z.rbfpng(bytearray(1), 0)
    if n <= 0:
        return b""
    buf = bytearray(n)
    z.rbfpng(buf, n)
    return bytes(buf)


class plot:
    """A plot as a context manager: metafl(device), setfil(file) when a file is given,
    zorini() on entry and zorfin() on exit (also after an exception).

        with zorvel.plot("PNG", "wave.png"):
            ...

    plot(device="VIRT") without a file yields a Figure: the scene is kept, drawn as SVG
    in memory and, when asked for, as PNG, so that a notebook shows it inline.
    """

    def __init__(self, device="PS", file=None):
        if not isinstance(device, str):
            raise TypeError("device: a str is needed")
        self.device = device
        self.file = file
        self.figure = None

    def __enter__(self):
        if self.device.strip().upper() == "VIRT" and self.file is None:
            self.figure = Figure()
            z.metafl("SVG")
            z.memfil("ON")
        else:
            z.metafl(self.device)
            if self.file is not None:
                z.setfil(self.file)
        z.zorini()
        if self.figure is not None:
            _runtime.start_journal()
            return self.figure
        return self

    def __exit__(self, *exc):
        calls = _runtime.stop_journal() if self.figure is not None else None
        if z.getlev() > 0:
            z.zorfin()
        if self.figure is not None:
            self.figure._svg = _kept_file()
            self.figure._calls = calls
        return False


class Figure:
    """A plot kept in memory (what plot(device="VIRT") yields). svg() and png() return
    its file as bytes; _repr_svg_ and _repr_png_ show it in Jupyter. The PNG is drawn
    when first asked for, by running the figure's calls again on the raster device
    ("VIRT", then rbfpng), dark on white and anti-aliased (which leaves scrmod "AUTO"
    and imgopt "ANTI" "OFF" behind): arrays given to the routines must not change in
    between."""

    def __init__(self):
        self._svg = b""
        self._png = None
        self._calls = []

    def svg(self):
        return self._svg

    def png(self):
        if self._png is None:
            with _runtime.quiet():
                z.metafl("VIRT")
                z.scrmod("REVERS")  # dark on white, as the SVG
                z.imgopt("ON", "ANTI")
                z.zorini()
                try:
                    for routine, args in self._calls:
                        routine(*args)
                finally:
                    if z.getlev() > 0:
                        z.zorfin()
                    z.scrmod("AUTO")  # back to the defaults
                    z.imgopt("OFF", "ANTI")
            self._png = _raster_png()
        return self._png

    def _repr_svg_(self):
        if not self._svg:
            return None
        head = self._svg[:100]  # the XML declaration names the encoding
        return self._svg.decode("utf-8" if b'encoding="UTF-8"' in head else "iso-8859-1")

    def _repr_png_(self):
        return self.png() or None
