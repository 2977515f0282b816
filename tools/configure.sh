#!/usr/bin/env bash
# Configures build/, the one build folder that tools/check.sh and tools/gallery.sh share:
# g++, RelWithDebInfo, warnings as errors. Both scripts configure through here, so that
# running one after the other only builds what the first left out. Installs missing
# Debian packages first.
# Usage: tools/configure.sh
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
"$root/tools/deps.sh"
cmake -S "$root" -B "$root/build" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DZORVEL_WERROR=ON \
      -DCMAKE_CXX_COMPILER=g++ -DCMAKE_C_COMPILER=gcc > /dev/null
