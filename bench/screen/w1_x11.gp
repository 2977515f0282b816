# W1 in gnuplot's x11 terminal, for bench/run_screen.sh: the points come from a binary
# file of N (x,y) float64 pairs written beforehand (not timed), as in the shared
# benchmark's gnuplot row. The window is 1200 x 850 pixels, titled "W1 big curve", at the
# screen's corner (a window partly off the screen cannot be read back);
# "persist" keeps it (and gnuplot_x11, which draws it) after gnuplot has ended.
# usage: gnuplot-x11 -c w1_x11.gp DATAFILE
DATA = ARG1
set terminal x11 size 1200,850 position 0,0 title 'W1 big curve' persist
set title 'W1 big curve'
set xlabel 'X axis'
set ylabel 'Y axis'
set xrange [0:10]
set yrange [-1:1]
unset key
plot DATA binary format='%float64%float64' using 1:2 with lines lc rgb 'blue'
