"""The Python side of bench/python: the same two measurements as bench_c.c, through the
zorvel package (W1's data as a NumPy array, handed over without a copy).
usage: bench.py CALLS N OUTPREFIX"""
import sys
import time

import numpy as np

import zorvel as z

calls, n, prefix = int(sys.argv[1]), int(sys.argv[2]), sys.argv[3]
x = np.arange(n) / n * 10.0  # W1 (bench/workload_data.h)
y = np.sin(3 * x) * np.cos(17 * x)

z.metafl("PS")
z.setfil(prefix + "_calls.ps")
z.filmod("DELE")
z.zorini()
z.errmod("PROT", "OFF")
setclr = z.setclr
t0 = time.perf_counter()
for i in range(calls):
    setclr(i & 255)
t_calls = time.perf_counter() - t0
z.zorfin()

t0 = time.perf_counter()
z.metafl("PS")
z.setfil(prefix + "_w1.ps")
z.filmod("DELE")
z.zorini()
z.errmod("PROT", "OFF")
z.name("X axis", "X")
z.name("Y axis", "Y")
z.titlin("W1 big curve", 1)
z.graf(0.0, 10.0, 0.0, 2.0, -1.0, 1.0, -1.0, 0.5)
z.title()
z.curve(x, y)
z.endgrf()
z.zorfin()
t_w1 = time.perf_counter() - t0
print(f"Python calls: {t_calls / calls * 1e9:.1f} ns per call   W1 {n} points: {t_w1:.3f} s")
