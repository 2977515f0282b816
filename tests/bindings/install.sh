#!/usr/bin/env bash
# The bindings as a newcomer installs them: `cmake --install` into a private prefix, then
#  - Python with PYTHONPATH=<prefix>/lib/python3/dist-packages (no ZORVEL_LIBRARY) finds
#    the prefix's libzorvel and plots;
#  - pip installs the package offline from the repository (Debian's setuptools, no
#    download), and it plots with ZORVEL_LIBRARY;
#  - a Fortran program built with `pkg-config --cflags --libs zorvel-fortran` runs (when
#    the module was built).
# Exits with 77 (skipped) when pkg-config is missing.
# Usage: install.sh BUILD WORK LIBDIR SOURCE
set -eu
build=$1 work=$2 libdir=$3 src=$4
command -v pkg-config > /dev/null || { echo "pkg-config not found: skipped"; exit 77; }
unset LD_LIBRARY_PATH ZORVEL_LIBRARY PYTHONPATH
fail() { echo "FAIL: $*"; exit 1; }
rm -rf "$work" && mkdir -p "$work"
prefix=$work/prefix
cmake --install "$build" --prefix "$prefix" > "$work/install.log"
export SOURCE_DATE_EPOCH=1700000000

plot_py='import zorvel
with zorvel.plot("SVG", "installed.svg"):
    zorvel.graf(0, 1, 0, 1, 0, 1, 0, 1)
    zorvel.curve([0, 1], [0, 1])
import zorvel._runtime
print(zorvel._runtime.lib._name)'
(cd "$work" && PYTHONPATH=$prefix/lib/python3/dist-packages /usr/bin/python3 -c "$plot_py" > py.out) ||
  fail "the installed package does not plot"
grep -q "^$prefix/" "$work/py.out" || fail "the installed package loads $(tail -1 "$work/py.out")"
[ -s "$work/installed.svg" ] || fail "no installed.svg"

if /usr/bin/python3 -m pip --version > /dev/null 2>&1; then
  # A copy of what the package is built from, so that the build leaves nothing in the sources.
  mkdir -p "$work/tools" "$work/include"
  cp -r "$src/python" "$work/"
  cp "$src/tools/gen_api.py" "$src/tools/gen_python.py" "$work/tools/"
  cp "$src/include/routines.tbl" "$work/include/"
  /usr/bin/python3 -m pip install -q --no-index --no-build-isolation --no-deps \
      --target "$work/pip" "$work/python" > "$work/pip.log" 2>&1 || { cat "$work/pip.log"; fail "pip install"; }
  rm -f "$work/installed.svg"
  (cd "$work" && PYTHONPATH=$work/pip ZORVEL_LIBRARY=$prefix/$libdir/libzorvel.so.10 \
      /usr/bin/python3 -c "$plot_py" > pip.out) || fail "the pip-installed package does not plot"
  [ -s "$work/installed.svg" ] || fail "no installed.svg from the pip-installed package"
else
  echo "pip not installed: the pip install is skipped"
fi

if [ -f "$prefix/$libdir/pkgconfig/zorvel-fortran.pc" ]; then
  export PKG_CONFIG_PATH=$prefix/$libdir/pkgconfig
  cat > "$work/main.f90" <<'F'
program consumer
  use zorvel
  call metafl('GKSL')
  call setfil('fortran.met')
  call zorini()
  call zorfin()
end program consumer
F
  gfortran "$work/main.f90" $(pkg-config --cflags --libs zorvel-fortran) \
    -Wl,-rpath,"$prefix/$libdir" -o "$work/fortran_consumer" || fail "Fortran consumer build"
  (cd "$work" && ./fortran_consumer > f.out) || fail "Fortran consumer did not run"
  grep -q "Metafile: fortran.met" "$work/f.out" || fail "Fortran consumer"
fi
echo "bindings install test passed"
