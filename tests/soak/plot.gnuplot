# gnuplot -e "samples='FILE'; picture='FILE'" plot.gnuplot: what orvu-soak noted, one panel for each thing.
set terminal svg size 900,800 font 'sans-serif,14' background 'white'
set output picture
set datafile separator ','
set key off
set grid
set multiplot layout 3,1 title 'What a process takes while Orvu works in all of its roles'
set xlabel 'minutes'
set xrange [0:*] noextend
set yrange [0:*]
set offsets 0, 0, 1, 0
set lmargin 10
set ylabel 'resident memory (MiB)'
plot samples using ($1/60):2 every ::1 with lines linewidth 2
set ylabel 'open descriptors'
plot samples using ($1/60):3 every ::1 with lines linewidth 2
set ylabel 'threads'
plot samples using ($1/60):4 every ::1 with lines linewidth 2
unset multiplot
