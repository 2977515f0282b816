"""Runs the Python tests with Debian's pytest, from WORK (the tests' plots go there).
Exit status 77 (skipped) without pytest. Usage: run_pytest.py TESTS WORK"""
import os
import sys

try:
    import pytest
except ImportError:
    print("pytest not installed (Debian: python3-pytest): skipped")
    sys.exit(77)

tests, work = sys.argv[1:3]
os.makedirs(work, exist_ok=True)
os.chdir(work)
sys.exit(pytest.main(["-q", "-p", "no:cacheprovider", "-W", "error::pytest.PytestUnraisableExceptionWarning",
                      "--rootdir", tests, tests]))
