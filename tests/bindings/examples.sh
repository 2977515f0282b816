#!/usr/bin/env bash
# The Python examples write what their C originals write (first_plot.met, contours.eps,
# curves_methods.eps byte for byte; science_figure.eps takes its data from NumPy's
# exp and sin, so it is only checked to be written), without a warning; the Fortran
# example writes its PDF, which qpdf accepts.
# Usage: examples.sh WORK EXAMPLES_SOURCE EXAMPLES_BUILD FORTRAN_EXAMPLE|-
set -u
work=$1 src=$2 bin=$3 fortran=$4
export SOURCE_DATE_EPOCH=1700000000
rm -rf "$work" && mkdir -p "$work/c" "$work/py" "$work/fortran"
status=0
fail() { echo "FAIL: $*"; status=1; }
for ex in first_plot contours curves_gallery; do
  (cd "$work/c" && "$bin/ex_$ex" > "$ex.log" 2>&1) || fail "ex_$ex"
  (cd "$work/py" && /usr/bin/python3 -W error "$src/python/$ex.py" > "$ex.log" 2>&1) ||
    { cat "$work/py/$ex.log"; fail "$ex.py"; }
  ! grep -q "Warning [0-9]" "$work/py/$ex.log" || fail "$ex.py gave warnings"
done
for f in first_plot.met contours.eps curves_methods.eps; do
  cmp "$work/c/$f" "$work/py/$f" || fail "$f of Python differs from C's"
done
[ -s "$work/py/science_figure.eps" ] || fail "no science_figure.eps"
if [ "$fortran" != - ]; then
  (cd "$work/fortran" && "$fortran" > run.log 2>&1) || fail "the Fortran example"
  ! grep -q "Warning [0-9]" "$work/fortran/run.log" || fail "the Fortran example gave warnings"
  if command -v qpdf > /dev/null; then
    qpdf --check "$work/fortran/surface_plot.pdf" > /dev/null || fail "qpdf rejects surface_plot.pdf"
  fi
fi
[ $status -eq 0 ] && echo "the examples ran"
exit $status
