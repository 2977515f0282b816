#!/usr/bin/env bash
# The Windows libraries: cross-builds zorvel.dll and zorjava.dll with mingw-w64 in
# build-win/ (cmake/mingw-w64.cmake), checks their export and import tables, and runs
# them under wine: gallery examples built against zorvel.dll must write the same files
# as the Linux build's (line ends normalised: Windows writes text files in text mode),
# and a program without a JDK calls zorjava.dll's natives through a stub JNIEnv and must
# write the same files again.
# Usage: tools/windows.sh [LINUX_BUILD_DIR]   (default: build, configured and built)
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
linux=$(cd "${1:-$root/build}" && pwd)
jobs=$(nproc 2>/dev/null || echo 2)
"$root/tools/deps.sh" mingw-w64 g++-mingw-w64-x86-64-posix gcc-mingw-w64-x86-64-posix \
  libz-mingw-w64-dev wine64
win=$root/build-win
cmake -S "$root" -B "$win" -DCMAKE_TOOLCHAIN_FILE="$root/cmake/mingw-w64.cmake" \
  -DCMAKE_BUILD_TYPE=Release -DZORVEL_WERROR=ON -DZORVEL_BUILD_EXAMPLES=ON > /dev/null
cmake --build "$win" -j"$jobs" --target zorvel zorjava gallery_examples zorjava_stub_env windows_paths > /dev/null
cmake --build "$linux" -j"$jobs" --target zorvel zorjava gallery_examples zorjava_stub_env \
  windows_paths > /dev/null

objdump=x86_64-w64-mingw32-objdump
exports() {  # the names a DLL exports
  "$objdump" -p "$1" | sed -n '/\[Ordinal\/Name Pointer\] Table/,/^$/p' | awk 'NR > 1 && NF { print $NF }' | sort
}
fail=0
echo "== Export tables"
for pair in "zorvel.dll:libzorvel.so" "jni/zorjava.dll:jni/libzorjava.so"; do
  dll=$win/${pair%%:*}
  so=$linux/${pair##*:}
  if diff <(exports "$dll") <(nm -D --defined-only "$so" | awk '{ print $3 }' | grep -v '^_' | sort) > /dev/null; then
    echo "$(basename "$dll"): $(exports "$dll" | wc -l) exports, those of $(basename "$so")"
  else
    echo "FAIL: $(basename "$dll") does not export what $(basename "$so") exports"
    fail=1
  fi
  imports=$("$objdump" -p "$dll" | awk '/DLL Name:/ { print $3 }' | sort -u | tr '\n' ' ')
  for d in $imports; do
    case ${d,,} in
      kernel32.dll | advapi32.dll | msvcrt.dll | user32.dll | gdi32.dll | shell32.dll | ws2_32.dll) ;;
      *) echo "FAIL: $(basename "$dll") imports $d, not a Windows system library"; fail=1 ;;
    esac
  done
  echo "$(basename "$dll") imports: $imports"
done

# wine: a prefix of its own, quiet, finding the DLLs in the build.
wine=$(command -v wine || command -v wine64 || ls /usr/lib/wine/wine64 2>/dev/null || true)
[ -n "$wine" ] || { echo "FAIL: no wine"; exit 1; }
export WINEPREFIX=$win/wineprefix WINEDEBUG=-all
export WINEPATH="$(winepath -w "$win" 2>/dev/null || echo "Z:${win//\//\\}");Z:${win//\//\\}\\jni"
export SOURCE_DATE_EPOCH=1700000000
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# Compares two folders of plot files: text formats with their line ends normalised.
same_files() {  # dir_linux dir_windows label
  local f name ok=1
  for f in "$1"/*; do
    name=$(basename "$f")
    [ "$name" = out.txt ] && continue
    if [ ! -f "$2/$name" ]; then
      echo "FAIL: $3: $name missing under wine"; ok=0; continue
    fi
    case $name in
      *.pdf | *.png) cmp -s "$f" "$2/$name" ;;
      *) cmp -s <(tr -d '\r' < "$f") <(tr -d '\r' < "$2/$name") ;;
    esac || { echo "FAIL: $3: $name differs"; ok=0; }
  done
  [ $ok -eq 1 ]
}

echo "== Gallery examples against zorvel.dll under wine"
examples=(first_plot axes_gallery curves_gallery text_formulas contours colour_plots maps)
for ex in "${examples[@]}"; do
  for fmt in PS SVG PDF PNG; do
    mkdir -p "$work/l" "$work/w"
    rm -f "$work"/l/* "$work"/w/*
    (cd "$work/l" && ZORVEL_GALLERY_FORMAT=$fmt "$linux/examples/ex_$ex" > out.txt 2>&1)
    (cd "$work/w" && ZORVEL_GALLERY_FORMAT=$fmt "$wine" "$win/examples/ex_$ex.exe" > out.txt 2>&1)
    if same_files "$work/l" "$work/w" "$ex $fmt"; then
      echo "$ex $fmt: $(ls "$work/l" | grep -vc '^out.txt$') files the same"
    else
      fail=1
    fi
  done
done

echo "== File names under wine"
mkdir -p "$work/pl" "$work/pw"
(cd "$work/pl" && "$linux/tests/windows_paths" > out.txt 2>&1)
(cd "$work/pw" && "$wine" "$win/tests/windows/windows_paths.exe" > out.txt 2>&1)
if same_files "$work/pl" "$work/pw" "paths" &&
   diff <(grep -v 'Date\|Time' "$work/pl/out.txt") <(tr -d '\r' < "$work/pw/out.txt" | grep -v 'Date\|Time'); then
  echo "paths: the same files and messages ($(ls "$work/pl" | grep -vc '^out.txt$') files)"
else
  echo "FAIL: file names under wine"; fail=1
fi

echo "== zorjava.dll through a stub JNIEnv under wine"
mkdir -p "$work/jl" "$work/jw"
(cd "$work/jl" && "$linux/tests/zorjava_stub_env" "$linux/jni/libzorjava.so" > out.txt 2>&1) || true
(cd "$work/jw" && "$wine" "$win/tests/windows/zorjava_stub_env.exe" zorjava.dll > out.txt 2>&1) || true
if same_files "$work/jl" "$work/jw" "zorjava" && [ -n "$(ls "$work/jw" | grep -v out.txt)" ]; then
  echo "zorjava: $(ls "$work/jw" | grep -vc '^out.txt$') files the same as through libzorjava.so"
else
  echo "FAIL: zorjava.dll through the stub JNIEnv"; cat "$work/jw/out.txt"; fail=1
fi
[ $fail -eq 0 ] || { echo "FAIL: the Windows libraries"; exit 1; }
echo "The Windows libraries: exports, imports and wine runs as on Linux"
