#!/usr/bin/env bash
# Runs a program on a virtual X server of its own; exit 77 when there is none.
exec "$(dirname "$0")/xserver.sh" "$@"
