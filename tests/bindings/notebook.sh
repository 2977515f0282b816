#!/usr/bin/env bash
# The example notebook runs headless and shows its figure inline: executed by jupyter
# nbconvert, its figure cell must have an SVG and a PNG output and no cell an error.
# Exits with 77 (skipped) without jupyter-nbconvert; the repr methods are tested by
# pytest then (tests/bindings/python).
# Usage: notebook.sh NOTEBOOK WORK
set -eu
notebook=$1 work=$2
command -v jupyter-nbconvert > /dev/null || { echo "jupyter-nbconvert not installed: skipped"; exit 77; }
rm -rf "$work" && mkdir -p "$work"
cd "$work"
jupyter-nbconvert --to notebook --execute --ExecutePreprocessor.timeout=120 \
  --output-dir "$work" --output executed "$notebook" > nbconvert.log 2>&1 ||
  { cat nbconvert.log; echo "FAIL: the notebook did not run"; exit 1; }
/usr/bin/python3 - "$work/executed.ipynb" <<'PY'
import json, sys
cells = json.load(open(sys.argv[1]))["cells"]
outputs = [o for c in cells if c["cell_type"] == "code" for o in c.get("outputs", [])]
assert not [o for o in outputs if o["output_type"] == "error"], "a cell raised"
shown = [o["data"] for o in outputs if o["output_type"] == "execute_result"]
assert any("image/svg+xml" in d and "image/png" in d for d in shown), "no inline figure"
text = lambda d: "".join(d.get("text/plain", ""))  # noqa: E731 (a str or a list of lines)
assert any("Incorrect parameter in setpag" in text(d) for d in shown), "no warning"
print("the notebook ran and showed its figure")
PY
[ -z "$(ls "$work" | grep -v -e '^executed.ipynb$' -e '^nbconvert.log$')" ] || { ls "$work"; echo "FAIL: files left behind"; exit 1; }
