"""pip install ./python (offline: pip install --no-build-isolation --no-index ./python):
the package with its routines generated from ../include/routines.tbl. libzorvel itself
comes from the C build (cmake --install, or ZORVEL_LIBRARY)."""

import os
import subprocess
import sys

from setuptools import setup
from setuptools.command.build_py import build_py

HERE = os.path.dirname(os.path.abspath(__file__))
ROOT = os.path.dirname(HERE)


class BuildWithRoutines(build_py):
    def run(self):
        super().run()
        target = os.path.join(self.build_lib, "zorvel", "_routines.py")
        subprocess.check_call([sys.executable, os.path.join(ROOT, "tools", "gen_python.py"),
                               os.path.join(ROOT, "include", "routines.tbl"), target])


setup(name="zorvel", version="10.6.0", description="Zorvel plotting library for Python",
      packages=["zorvel"],
      cmdclass={"build_py": BuildWithRoutines}, python_requires=">=3.9")
