# W1 in the further vector formats for gnuplot, as ../shared/bench/peers/gnuplot/w1_file.gp
# does it for PS: the N points read from a binary file of (x, y) float64 pairs written
# beforehand (not timed).
# usage: gnuplot -c w1_formats.gp FORMAT OUTPREFIX DATAFILE   (FORMAT cgm, emf or hpgl)
FMT = ARG1; OUT = ARG2; DATA = ARG3
if (FMT eq 'cgm')  { set terminal cgm landscape color }
if (FMT eq 'emf')  { set terminal emf color size 1024,724 }
if (FMT eq 'hpgl') { set terminal hpgl }
EXT = (FMT eq 'hpgl') ? 'hpg' : FMT
set output OUT.'.'.EXT
set title 'W1 big curve'
set xlabel 'X axis'
set ylabel 'Y axis'
set xrange [0:10]
set yrange [-1:1]
unset key
plot DATA binary format='%float64%float64' using 1:2 with lines lc rgb 'blue'
