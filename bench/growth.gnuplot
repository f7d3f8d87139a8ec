# SPDX-FileCopyrightText: 2026 Brenvale
# SPDX-License-Identifier: MIT

# Draws how time and memory of a run grow with the number of files; data and
# picture are named by the caller.
stats data using 1 nooutput
last = STATS_blocks - 1
set terminal svg size 900,420 font "sans,12" background "white"
set output picture
set multiplot layout 1,2
set logscale x 10
set key left top
set xlabel "files of 4 KiB"
set grid
set logscale y 10
set title "time of a run"
set ylabel "seconds"
plot for [i=0:last] data index i using 1:2 with linespoints title columnheader(1)
unset logscale y
set yrange [0:110]
set title "most memory in use"
set ylabel "MiB"
plot for [i=0:last] data index i using 1:3 with linespoints title columnheader(1), \
     100 title "limit" dashtype 2
