"""W1 in a matplotlib window (GTK3Agg), for bench/run_screen.sh.

usage: /usr/bin/python3 w1_gtk3agg.py exit|wait [N]
  exit  ends the process once the page is on the screen: the canvas has been painted
        into the window and the X server has done it (as the library's zorfin with
        winmod "HOLD" returns once its page is shown)
  wait  keeps the window, redrawing it on resizes, until it is closed
  N     number of points (default 1000000)

The window is titled "W1 big curve" and has no toolbar, so that the canvas, 1200 x 850
pixels, is the whole window, as the other programs' windows are. matplotlib's defaults
stay on (path simplification, anti-aliasing).
"""
import sys

import gi

gi.require_version("Gdk", "3.0")
gi.require_version("Gtk", "3.0")
import matplotlib  # noqa: E402

matplotlib.use("GTK3Agg")
matplotlib.rcParams["toolbar"] = "None"
import matplotlib.pyplot as plt  # noqa: E402
import numpy as np  # noqa: E402
from gi.repository import Gdk, Gtk  # noqa: E402


def main(argv):
    mode = argv[1] if len(argv) > 1 else "exit"
    n = int(argv[2]) if len(argv) > 2 else 1000000
    x = np.arange(n, dtype=np.float64) / n * 10.0
    y = np.sin(3.0 * x) * np.cos(17.0 * x)
    fig = plt.figure(figsize=(12.0, 8.5), dpi=100)
    fig.canvas.manager.set_window_title("W1 big curve")
    ax = fig.add_subplot()
    ax.plot(x, y, color="blue", linewidth=0.5)
    ax.set_xlim(0, 10)
    ax.set_ylim(-1, 1)
    ax.set_xlabel("X axis")
    ax.set_ylabel("Y axis")
    ax.set_title("W1 big curve")
    if mode == "wait":
        plt.show()
        return 0
    # The canvas widget's draw handler blits the rendered figure into the window; once it
    # has run and the main loop has finished that frame, a sync waits for the server.
    painted = []
    fig.canvas.connect_after("draw", lambda *_: painted.append(True))
    plt.show(block=False)
    while not painted:
        Gtk.main_iteration_do(True)
    while Gtk.events_pending():
        Gtk.main_iteration_do(False)
    Gdk.Display.get_default().sync()
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
