"""The runtime of the generated routines (_routines.py): loading libzorvel, the argument
conversions, callbacks and the delivery of the library's warnings.

Every conversion raises TypeError or ValueError naming the argument before the library
is called. Arrays of the right type (contiguous float64 or int32 NumPy arrays) are handed
over as they are; anything else is copied once into a temporary array.
"""

import ctypes
import operator
import os
import sys
import threading
import warnings

try:
    import numpy as _np
except ImportError:  # the binding works on plain sequences without NumPy
    _np = None

LIBRARY_ENV = "ZORVEL_LIBRARY"
_SONAME = "libzorvel.so.10"


# Loading
# =======

def _candidates():
    """Where libzorvel is looked for, in order: $ZORVEL_LIBRARY, next to the package,
    the library folder of the prefix the package is installed in, the folder the build
    configured, then the dynamic loader's own search."""
    here = os.path.dirname(os.path.abspath(__file__))
    env = os.environ.get(LIBRARY_ENV)
    if env:
        yield env
    yield os.path.join(here, _SONAME)
    yield os.path.join(here, "libzorvel.so")
    try:
        from . import _paths  # written by the build: where the library is installed
    except ImportError:
        _paths = None
    if _paths is not None:
        yield os.path.normpath(os.path.join(here, _paths.PACKAGE_TO_LIBDIR, _SONAME))
        yield os.path.join(_paths.LIBDIR, _SONAME)
    yield _SONAME


def _load():
    tried = []
    for path in _candidates():
        if os.sep in path and not os.path.exists(path):
            tried.append(path)
            continue
        try:
            return ctypes.CDLL(path)
        except OSError as e:
            tried.append(f"{path} ({e})")
    raise ImportError("zorvel: libzorvel not found; set " + LIBRARY_ENV +
                      " to its path. Tried: " + "; ".join(tried))


lib = _load()


def proto(name, restype, argtypes):
    """The library's function `name` with its prototype, built once at import."""
    f = getattr(lib, name)
    f.restype = restype
    f.argtypes = argtypes
    return f


# Warnings
# ========

class ZorvelWarning(UserWarning):
    """A warning of the library. `number` is its number (-1 for an unnumbered message),
    `line` the line as the library prints it; `exception` the exception that a callback
    of the program raised (warning 292), else None."""

    def __init__(self, number, line, exception=None):
        super().__init__(line)
        self.number = number
        self.line = line
        self.exception = exception


# Warnings reported during a call, delivered by the routine when the call returns (so
# that warning filters, "error" included, act in the caller's frame). The list is never
# rebound: _routines.py holds the same object.
events = []
_state = threading.local()  # replaying: warnings of a figure's replay are not repeated
_journal = []  # the calls recorded for a Figure: [list] while one records
_interrupts = []  # KeyboardInterrupt, SystemExit raised in callbacks, raised afterwards


def _on_message(number, line):
    if getattr(_state, "quiet", False):
        return
    text = line.decode("utf-8", "surrogateescape") if line else ""
    events.append(ZorvelWarning(number, text.removeprefix(" <<<< ")))


MESSAGE_CB = ctypes.CFUNCTYPE(None, ctypes.c_int, ctypes.c_char_p)
_message_cb = MESSAGE_CB(_on_message)


def after(routine, args):
    """Called by a routine when `events` is not empty: records the call for a figure,
    then issues the warnings of the call."""
    if _journal:
        _journal[-1].append((routine, args))
    pending = [e for e in events if e is not _RECORDING]
    events[:] = [e for e in events if e is _RECORDING]
    if _interrupts:
        exc = _interrupts.pop()
        _interrupts.clear()
        raise exc
    for w in pending:
        warnings.warn(w, stacklevel=3)


_RECORDING = object()  # kept in `events` while a figure records, so that every call reports


def start_journal():
    _journal.append([])
    events.append(_RECORDING)


def stop_journal():
    calls = _journal.pop()
    events.remove(_RECORDING)
    return calls


class quiet:
    """Within it, warnings of the library are not delivered (a figure's replay)."""

    def __enter__(self):
        self.was = getattr(_state, "quiet", False)
        _state.quiet = True

    def __exit__(self, *exc):
        _state.quiet = self.was


def callback_failed(exc):
    """An exception raised inside a callback of the program: the library continues with a
    neutral value, the program gets warning 292 carrying the exception (interrupts are
    raised again when the routine returns)."""
    if not isinstance(exc, Exception):
        _interrupts.append(exc)
        events.append(ZorvelWarning(292, "Warning 292: Exception in a callback of the program"
                                         f" ({type(exc).__name__})", exc))
        return
    for e in events:  # one warning per call, whatever the number of failed calls
        if isinstance(e, ZorvelWarning) and e.number == 292:
            return
    events.append(ZorvelWarning(292, "Warning 292: Exception in a callback of the program: "
                                     f"{type(exc).__name__}: {exc}", exc))


# Callbacks are kept here while the library holds them: {key: ctypes function}.
kept_callbacks = {}


def callable_arg(fn, name):
    if not callable(fn):
        raise TypeError(f"{name}: a callable is needed, not {type(fn).__name__}")
    return fn


# Scalars and strings
# ===================

INT_MIN, INT_MAX = -2 ** 31, 2 ** 31 - 1


def to_int(v, name):
    try:
        i = operator.index(v)
    except TypeError:
        raise TypeError(f"{name}: an integer is needed, not {type(v).__name__}") from None
    if not INT_MIN <= i <= INT_MAX:
        raise ValueError(f"{name}: {i} does not fit a C int")
    return i


def to_dbl(v, name):
    if isinstance(v, (str, bytes, bytearray)) or v is None:
        raise TypeError(f"{name}: a number is needed, not {type(v).__name__}")
    try:
        return float(v)
    except (TypeError, ValueError):
        raise TypeError(f"{name}: a number is needed, not {type(v).__name__}") from None


def to_str(v, name):
    """Text for the library: a str as UTF-8 (U+DC80..U+DCFF stand for the raw bytes
    0x80..0xFF, as os.fsencode has them), bytes as they are, a bytearray or memoryview up
    to its first zero byte (the legend buffer of legini)."""
    if isinstance(v, str):
        try:
            b = v.encode("utf-8", "surrogateescape")
        except UnicodeEncodeError as e:
            raise ValueError(f"{name}: {e}") from None
    elif isinstance(v, bytes):
        b = v
    elif isinstance(v, (bytearray, memoryview)):
        b = bytes(v).split(b"\0", 1)[0]
    else:
        raise TypeError(f"{name}: a str or bytes is needed, not {type(v).__name__}")
    if b"\0" in b:
        raise ValueError(f"{name}: the text holds a zero byte")
    return b


_libc_files = None


def to_file(v, name):
    """A FILE* from None (no file), 1 or sys.stdout (standard output), 2 or sys.stderr."""
    global _libc_files
    if v is None or v == 0:
        return None
    if v is sys.stdout:
        v = 1
    elif v is sys.stderr:
        v = 2
    if type(v) is not int or v not in (1, 2):
        raise ValueError(f"{name}: None, 1 (sys.stdout) or 2 (sys.stderr)")
    if _libc_files is None:
        libc = ctypes.CDLL(None)
        _libc_files = {k: ctypes.c_void_p.in_dll(libc, s).value
                       for k, s in ((1, "stdout"), (2, "stderr"))}
    return _libc_files[v]


# Arrays
# ======
# An input converter returns (pointer, owner, length): the pointer for the call (an
# address or a ctypes array), the object that must live until the call returns, and the
# element count (-1 for None, which only a count of 0 or less admits).

_CTYPE = {"d": ctypes.c_double, "i": ctypes.c_int32}
_DTYPE = {"d": "float64", "i": "int32"}


def _convert(a, code, name):
    if _np is not None:
        if code == "i" and not isinstance(a, _np.ndarray):
            a = check_integers(a, name)  # numpy would cut 1.5 to 1 and wrap 2**31
        try:
            return _np.ascontiguousarray(a, dtype=_DTYPE[code])
        except (TypeError, ValueError):
            raise TypeError(f"{name}: an array of numbers is needed, "
                            f"not {type(a).__name__}") from None
    try:
        values = list(a)
        conv = to_int if code == "i" else to_dbl
        values = [conv(v, name) for v in values]
    except TypeError:
        raise TypeError(f"{name}: a sequence of numbers is needed, "
                        f"not {type(a).__name__}") from None
    return (_CTYPE[code] * len(values))(*values)


def check_integers(a, name):
    try:
        values = list(a)
    except TypeError:
        raise TypeError(f"{name}: a sequence of integers is needed, "
                        f"not {type(a).__name__}") from None
    for v in values:
        to_int(v, name)
    return values


def array_in(a, code, name, ndim=1):
    """An input array of float64 ("d") or int32 ("i") values."""
    if a is None:
        return None, None, -1
    if _np is not None and type(a) is _np.ndarray:
        if a.dtype.char != ("d" if code == "d" else "i") or not a.flags.c_contiguous:
            if code == "i" and a.dtype.kind not in "iub":
                raise TypeError(f"{name}: an integer array is needed, not {a.dtype}")
            a = _np.ascontiguousarray(a, dtype=_DTYPE[code])
        if a.ndim != ndim and not (ndim == 2 and a.ndim == 1):
            raise ValueError(f"{name}: a {ndim}-dimensional array is needed, "
                             f"not {a.ndim}-dimensional")
        return a.ctypes.data, a, a.size
    if isinstance(a, (str, bytes, bytearray)):
        raise TypeError(f"{name}: an array of numbers is needed, not {type(a).__name__}")
    arr = _convert(a, code, name)
    if _np is None:
        return arr, arr, len(arr)
    if arr.ndim != ndim and not (ndim == 2 and arr.ndim == 1):
        raise ValueError(f"{name}: a {ndim}-dimensional array is needed")
    return arr.ctypes.data, arr, arr.size


def shape2(owner):
    """(nx, ny) of a two-dimensional input array, numpy's (rows, columns) = (ny, nx);
    (None, None) for a flat one."""
    if _np is not None and isinstance(owner, _np.ndarray) and owner.ndim == 2:
        return owner.shape[1], owner.shape[0]
    return None, None


def array_out(n, code, ny=None):
    """A new output array of n (or n by ny) elements: (pointer, array)."""
    count = max(n, 0) * (1 if ny is None else max(ny, 0))
    if _np is not None:
        arr = _np.zeros(count if ny is None else (max(ny, 0), max(n, 0)), dtype=_DTYPE[code])
        return arr.ctypes.data, arr
    arr = (_CTYPE[code] * count)()
    return arr, arr


def out_value(arr):
    return arr if _np is not None else list(arr)


def writable(a, code, name):
    """An array the routine writes into in place (inout arrays and arrays whose size the
    routine determines): (pointer, owner, elements). It must be of the right type,
    contiguous and writable: a copy would lose what the routine writes."""
    if a is None:
        return None, None, 0
    if _np is not None and isinstance(a, _np.ndarray):
        if a.dtype != _np.dtype(_DTYPE[code]):
            raise TypeError(f"{name}: a {_DTYPE[code]} array is needed, not {a.dtype}")
        if not a.flags.c_contiguous:
            raise ValueError(f"{name}: the array is not contiguous")
        if not a.flags.writeable:
            raise ValueError(f"{name}: the array is read-only")
        return a.ctypes.data, a, a.size
    if isinstance(a, ctypes.Array) and a._type_ is _CTYPE[code]:
        return a, a, len(a)
    try:
        m = memoryview(a)
    except TypeError:
        raise TypeError(f"{name}: a writable {_DTYPE[code]} array is needed, "
                        f"not {type(a).__name__}") from None
    if m.readonly:
        raise ValueError(f"{name}: the array is read-only")
    if m.format != code or not m.c_contiguous:
        raise TypeError(f"{name}: a contiguous {_DTYPE[code]} array is needed")
    arr = (_CTYPE[code] * (m.nbytes // m.itemsize)).from_buffer(a) if m.nbytes else None
    return arr, a, len(m)


def byte_buffer(a, name):
    """A "buf" argument: a writable bytes-like object (bytearray), (pointer, owner, size)."""
    try:
        m = memoryview(a)
    except TypeError:
        raise TypeError(f"{name}: a bytearray is needed, not {type(a).__name__}") from None
    if m.readonly:
        raise ValueError(f"{name}: the buffer is read-only (a bytearray is needed)")
    if not m.c_contiguous:
        raise ValueError(f"{name}: the buffer is not contiguous")
    if m.nbytes == 0:
        return None, a, 0
    return (ctypes.c_char * m.nbytes).from_buffer(a), a, m.nbytes


def count_of(name, sources):
    """A count argument left out: the length that its arrays give. `sources` holds
    (length, array name) pairs, None lengths (flat matrices) are passed over."""
    known = [(n, a) for n, a in sources if n is not None and n >= 0]
    if not known:
        raise TypeError(f"{name} is needed: no array gives it")
    n, a = known[0]
    for m, b in known[1:]:
        if m != n:
            raise ValueError(f"{a} and {b} differ in length ({n} and {m}); give {name}")
    return n


def check_lengths(n, name, sources):
    """A count that was given: every array must hold that many elements."""
    for length, a in sources:
        if length is None:
            continue
        if length < 0:
            if n > 0:
                raise TypeError(f"{a}: None, but {name} is {n}")
        elif length < n:
            raise ValueError(f"{a}: {length} elements, but {name} is {n}")


def check_matrix(nx, ny, owner, size, name, cx, cy):
    if size is None or size < 0:
        if nx > 0 and ny > 0:
            raise TypeError(f"{name}: None, but {cx} and {cy} are {nx} and {ny}")
        return
    sx, sy = shape2(owner)
    if sx is not None and (sx, sy) != (nx, ny) and nx > 0 and ny > 0:
        raise ValueError(f"{name}: shape {(sy, sx)}, but {cy} x {cx} is {(ny, nx)} "
                         f"(rows are y)")
    if size < max(nx, 0) * max(ny, 0):
        raise ValueError(f"{name}: {size} elements, fewer than {cx} * {cy} = {nx * ny}")


def fixed_length(length, n, name):
    if length < n:
        raise ValueError(f"{name}: {n} elements are needed, not {max(length, 0)}")
