# Workload W7 for gnuplot; see WORKLOAD.md
# usage: gnuplot -c contours.gp w7h|w7s FORMAT OUTPREFIX     (FORMAT: ps pdf png)
# The values are computed here, on the grid of the '++' file (u: samples, v: isosamples,
# both ends of urange and vrange included). One page in OUTPREFIX.FMT. gnuplot 5.4 has no filled contours, so
# w7c is not a gnuplot case.
SUB = ARG1; FMT = ARG2; OUT = ARG3
if (FMT eq 'ps')  { set terminal postscript landscape color size 29.7cm,21cm }
if (FMT eq 'pdf') { set terminal pdfcairo color size 29.7cm,21cm }
if (FMT eq 'png') { set terminal pngcairo color size 1200,850 }
set output OUT.'.'.FMT
f(x, y) = sin(3*x)*cos(2*y) + 0.3*x
# viridis from nine samples of matplotlib's table
set palette defined (0 '#440154', 1 '#472d7b', 2 '#3b528b', 3 '#2c728e', 4 '#21918c', \
                     5 '#28ae80', 6 '#5ec962', 7 '#addc30', 8 '#fde725')
set xlabel 'X axis'
set ylabel 'Y axis'
set autoscale cbfix  # colours over [min, max] of the values, as the other programs
set xrange [0:4]
set yrange [0:3]
set urange [0:4]  # the '++' grid
set vrange [0:3]
unset key

if (SUB eq 'w7h') {
  set title 'W7 heat map'
  set samples 2000
  set isosamples 2000
  plot '++' using 1:2:(f($1, $2)) with image
}
if (SUB eq 'w7s') {
  set title 'W7 surface'
  set zlabel 'Z axis'
  set samples 200
  set isosamples 200
  set pm3d
  splot f(x, y) with pm3d
}
unset output
