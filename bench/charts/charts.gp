# Chart workload W6 for gnuplot; see WORKLOAD.md
# usage: gnuplot -c charts.gp FORMAT OUTPREFIX DATAFILE     (FORMAT: ps svg pdf png)
# DATAFILE holds the 1,000,000 values as float64, written beforehand by mkcharts (not
# timed); gnuplot bins them itself (bins of 0.01 centred from -4.995 to 4.995: the bins of
# the workload), as the other programs do.
# ps and pdf: one file OUTPREFIX.FMT of two pages; svg and png: page 1 in OUTPREFIX.FMT,
# page 2 in OUTPREFIX_2.FMT.
FMT = ARG1; OUT = ARG2; DATA = ARG3
YMAX = 4500.0
# output terminal by format (A4 landscape for vector formats, 1200x850 for PNG)
if (FMT eq 'ps')  { set terminal postscript landscape color size 29.7cm,21cm }
if (FMT eq 'svg') { set terminal svg size 842,595 }
if (FMT eq 'pdf') { set terminal pdfcairo color size 29.7cm,21cm }
if (FMT eq 'png') { set terminal pngcairo color size 1200,850 }
set output OUT.'.'.FMT
set xlabel 'X axis'
set ylabel 'Y axis'
unset key

# Page 1: 1,000 touching filled bars, each with its count above it.
set title 'W6 histogram'
set xrange [-5:5]
set yrange [0:YMAX]
set table $BINS
plot DATA binary format='%float64' using 1:(1) bins=1000 binrange [-4.995:4.995]
unset table
set boxwidth 0.01 absolute
set style fill solid 1.0 noborder
plot $BINS using 1:2 with boxes lc rgb 'blue', \
     $BINS using 1:($2 + 0.008*YMAX):(sprintf('%d', int($2))) with labels center font ',2'

# Page 2: 100 bars hatched at 45 degrees, outlined.
if (FMT eq 'svg' || FMT eq 'png') { set output OUT.'_2.'.FMT }
set title 'W6 hatched'
set xrange [-1:100]
set yrange [0:11]
set boxwidth 0.8 absolute
set style fill pattern 5 border lc rgb 'black'
plot sample [i=0:99:1] '+' using (i):(1 + int(i)%10) with boxes lc rgb 'black'
unset output
