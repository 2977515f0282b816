#!/usr/bin/env bash
# Runs a program on a virtual X server of its own (xvfb-run picks a free display);
# exit 77 when there is none.
set -u
command -v xvfb-run > /dev/null || { echo "xvfb-run missing"; exit 77; }
exec xvfb-run -a -s "-screen 0 1280x1024x24" "$@"
