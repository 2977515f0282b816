"""The scene of scene.c from Python (NumPy arrays). Usage: scene.py DEVICE FILE"""
import sys

import numpy as np

import zorvel as z

x = np.arange(41) / 4.0
y1 = (x * (10.0 - x)) / 12.5 - 1.0
y2 = ((np.arange(41) * 7) % 11) / 10.0 - 0.5
cbuf = bytearray(2 * 24 + 1)
z.metafl(sys.argv[1])
z.setfil(sys.argv[2])
z.setpag("DA4L")
z.zorini()
z.legini(cbuf, 2, 24)
z.complx()
z.titlin("One figure, five languages", 1)
z.name("Distance x", "X")
z.name("Value y", "Y")
z.labdig(1, "X")
z.graf(0.0, 10.0, 0.0, 2.0, -1.0, 1.0, -1.0, 0.5)
z.title()
z.color("RED")
z.linwid(3)
z.curve(x, y1)
z.color("BLUE")
z.incmrk(-1)
z.marker(15)
z.curve(x, y2)
z.color("FORE")
z.leglin(cbuf, "parabola", 1)
z.leglin(cbuf, "scattered points", 2)
z.legend(cbuf, 7)
z.endgrf()
z.zorfin()
