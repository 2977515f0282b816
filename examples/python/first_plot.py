"""The smallest plot: choose a device and a file, start and end the plot
(examples/first_plot.c in Python)."""
import zorvel

zorvel.metafl("GKSL")
zorvel.setfil("first_plot.met")
zorvel.filmod("DELE")
zorvel.zorini()
zorvel.zorfin()
