#!/usr/bin/env bash
# Runs ScreenJava on a virtual X server and clicks into its window until it ends; its
# output must hold three "ok" lines. Usage: run_java.sh JAVA-COMMAND...
set -u
command -v xdotool > /dev/null || { echo "xdotool missing"; exit 77; }
if [ -z "${RUN_JAVA_INNER:-}" ]; then
  RUN_JAVA_INNER=1 exec "$(dirname "$0")/xserver.sh" "$0" "$@"
fi
out=$(mktemp)
trap 'rm -f "$out"' EXIT
"$@" > "$out" 2>&1 &
pid=$!
for _ in $(seq 1 100); do  # at most about 20 s
  kill -0 "$pid" 2> /dev/null || break
  if wid=$(xdotool search --onlyvisible --name "^Java screen$" 2> /dev/null | head -n 1) && [ -n "$wid" ]; then
    xdotool mousemove --window "$wid" 150 100 click 1 2> /dev/null
  fi
  sleep 0.2
done
kill "$pid" 2> /dev/null
wait "$pid"
status=$?
cat "$out"
[ $status -eq 0 ] && [ "$(grep -c ' ok$' "$out")" -eq 3 ] && ! grep -q -E "Exception|Warning [0-9]" "$out"
