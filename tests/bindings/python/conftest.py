import importlib
import os
import shutil
import subprocess
import sys

import pytest


@pytest.fixture(scope="session")
def zfix(tmp_path_factory):
    """The routines of the fixture table (tests/java/fixture: every argument kind; the fake
    routines print what reached them) as a package of the same runtime, over the fixture
    library."""
    import zorvel
    root = tmp_path_factory.mktemp("fixture")
    pkg = root / "zfix"
    pkg.mkdir()
    shutil.copy(os.path.join(os.path.dirname(zorvel.__file__), "_runtime.py"), pkg)
    (pkg / "__init__.py").write_text("from ._routines import *  # noqa\n")
    subprocess.check_call([sys.executable, os.path.join(os.environ["ZORVEL_TOOLS"], "gen_python.py"),
                           os.environ["ZORVEL_FIXTURE_TABLE"], str(pkg / "_routines.py")])
    sys.path.insert(0, str(root))
    saved = os.environ["ZORVEL_LIBRARY"]
    os.environ["ZORVEL_LIBRARY"] = os.environ["ZORVEL_FIXTURE_LIBRARY"]
    try:
        return importlib.import_module("zfix")
    finally:
        os.environ["ZORVEL_LIBRARY"] = saved


@pytest.fixture
def workdir(tmp_path, monkeypatch):
    monkeypatch.chdir(tmp_path)
    return tmp_path


@pytest.fixture(autouse=True)
def no_open_plot():
    """Every test starts and leaves without an open plot."""
    import zorvel
    yield
    if zorvel.getlev() > 0:
        zorvel.zorfin()
