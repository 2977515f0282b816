#!/bin/sh
# Runs a program under an X server of its own (Xvfb with GLX, on a display number it
# picks itself) and passes its exit status on; 77 (skipped) where Xvfb is missing or
# does not start.
command -v Xvfb >/dev/null 2>&1 || { echo "SKIP: no Xvfb"; exit 77; }
number=$(mktemp) || exit 1
Xvfb -displayfd 5 -screen 0 1280x1024x24 +extension GLX -nolisten tcp 5>"$number" 2>/dev/null &
server=$!
tries=0
while [ ! -s "$number" ] && [ $tries -lt 100 ]; do
  sleep 0.1
  tries=$((tries + 1))
done
display=$(head -n 1 "$number")
rm -f "$number"
if [ -z "$display" ]; then
  kill "$server" 2>/dev/null
  echo "SKIP: Xvfb did not start"
  exit 77
fi
# The same look on every machine: GTK's own theme and DejaVu Sans (the widget tests click
# by position).
config=$(mktemp -d)
mkdir -p "$config/gtk-3.0"
printf '[Settings]\ngtk-theme-name=Adwaita\ngtk-font-name=DejaVu Sans 10\n' > "$config/gtk-3.0/settings.ini"
DISPLAY=":$display" XDG_CONFIG_HOME="$config" "$@"
status=$?
rm -rf "$config"
kill "$server" 2>/dev/null
wait "$server" 2>/dev/null
exit $status
