#!/usr/bin/env bash
# Runs a widget test program with the argument "nodisplay" without a display, then
# without it under a private X server (xserver.sh), and compares both outputs with
# EXPECTED. Exit 77 (skipped) without Xvfb, xdotool or the screen module.
#   run_widgets.sh EXPECTED MODULE COMMAND...
set -u
expected=$1 module=$2
shift 2
for tool in xdotool Xvfb; do
  command -v "$tool" > /dev/null || { echo "SKIP: no $tool"; exit 77; }
done
[ -f "$module" ] || { echo "SKIP: no screen module"; exit 77; }
actual=$(mktemp)
trap 'rm -f "$actual"' EXIT
timeout 30 env -u DISPLAY "$@" nodisplay > "$actual" 2>&1
echo "exit $?" >> "$actual"
# Each step of the program's driver has its own timeout; this one ends a window that
# never closes. Standard error holds the X server's and Java's chatter.
"$(dirname "$0")/xserver.sh" timeout 90 "$@" >> "$actual" 2> /dev/null
echo "exit $?" >> "$actual"
diff -u "$expected" "$actual"
