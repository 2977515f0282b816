#!/usr/bin/env bash
# Installs the build into a fresh private prefix, as a newcomer would, and checks that
#  - every installed ELF file that needs libzorvel finds it through an $ORIGIN-relative
#    RUNPATH (no LD_LIBRARY_PATH), and none carries an absolute path such as the build's;
#  - a C program compiled with `pkg-config --cflags --libs zorvel` (PKG_CONFIG_PATH set to
#    the prefix) and linked with -Wl,-rpath runs;
#  - a CMake project with find_package(zorvel) and CMAKE_PREFIX_PATH builds and runs.
# Exits with 77 (skipped) when pkg-config is missing.
# Usage: install_prefix.sh BUILD WORK LIBDIR CC   (LIBDIR: CMAKE_INSTALL_LIBDIR)
set -eu
build=$1 work=$2 libdir=$3 cc=$4
command -v pkg-config > /dev/null || { echo "pkg-config not found: skipped"; exit 77; }
unset LD_LIBRARY_PATH
fail() { echo "FAIL: $*"; exit 1; }
# Where the dynamic loader finds libzorvel for the ELF file $1.
loaded_from() { ldd "$1" | awk '/libzorvel\.so/ {print ($3 == "not" ? "nowhere" : $3)}'; }
rm -rf "$work" && mkdir -p "$work"
prefix=$work/prefix
cmake --install "$build" --prefix "$prefix" > "$work/install.log"

while IFS= read -r -d '' f; do
  [ "$(head -c 4 "$f" | od -An -c | tr -d ' ')" = '177ELF' ] || continue
  runpath=$(readelf -d "$f" | sed -n 's/.*(R\(UN\)\{0,1\}PATH).*\[\(.*\)\]/\2/p')
  for entry in ${runpath//:/ }; do
    case $entry in '$ORIGIN'*) ;; *) fail "$f: RUNPATH entry $entry is not relative to \$ORIGIN" ;; esac
  done
  if readelf -d "$f" | grep -q 'NEEDED.*\[libzorvel\.so'; then
    found=$(loaded_from "$f")
    case $found in "$prefix"/*) ;; *) fail "$f loads libzorvel from $found, not from the prefix" ;; esac
  fi
done < <(find "$prefix" -type f -print0)

cat > "$work/main.c" <<'C'
#include <zorvel.h>
int main(void) { metafl("GKSL"); setfil("consumer.met"); zorini(); zorfin(); return getlev(); }
C
export PKG_CONFIG_PATH=$prefix/$libdir/pkgconfig
"$cc" -std=c99 -Wall -Werror "$work/main.c" $(pkg-config --cflags --libs zorvel) \
   -Wl,-rpath,"$prefix/$libdir" -o "$work/pc_consumer"
(cd "$work" && ./pc_consumer > pc.out) || fail "pkg-config consumer did not run"
grep -q "Metafile: consumer.met" "$work/pc.out" || { cat "$work/pc.out"; fail "pkg-config consumer"; }
case $(loaded_from "$work/pc_consumer") in
  "$prefix"/*) ;; *) fail "pkg-config consumer does not load the installed libzorvel" ;;
esac

mkdir -p "$work/cm"
cat > "$work/cm/CMakeLists.txt" <<'C'
cmake_minimum_required(VERSION 3.25)
project(consumer C)
find_package(zorvel REQUIRED)
add_executable(consumer ../main.c)
target_link_libraries(consumer PRIVATE zorvel::zorvel)
C
cmake -S "$work/cm" -B "$work/cm/build" -DCMAKE_C_COMPILER="$cc" \
      -DCMAKE_PREFIX_PATH="$prefix" > "$work/cm.log" 2>&1 || { cat "$work/cm.log"; fail "find_package"; }
cmake --build "$work/cm/build" >> "$work/cm.log" 2>&1 || { cat "$work/cm.log"; fail "find_package build"; }
(cd "$work" && rm -f consumer.met && ./cm/build/consumer > cm.out) || fail "find_package consumer did not run"
grep -q "Metafile: consumer.met" "$work/cm.out" || fail "find_package consumer"
echo "install test passed"
