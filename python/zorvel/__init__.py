"""Zorvel for Python: every routine of the library under its own name, over libzorvel.

    import zorvel
    with zorvel.plot("PDF", "first.pdf"):
        zorvel.graf(0, 10, 0, 2, -1, 1, -1, 0.5)
        zorvel.curve(x, y)

Warnings of the library arrive as ZorvelWarning (its `number` is the warning's number)
and are also printed on the console as usual; console(False) switches that off.
"""

from . import _runtime
from ._figure import Figure, console, plot
from ._routines import *  # noqa: F401,F403
from ._routines import __all__ as _names
from ._runtime import ZorvelWarning

__all__ = list(_names) + ["Figure", "ZorvelWarning", "console", "plot"]

console(True)  # the library's warnings reach Python from now on
