#!/usr/bin/env bash
# Installs the built library into a fresh prefix and builds a consumer with pkg-config
# and with find_package(zorvel); both must run.
set -eu
build=$1 work=$2
rm -rf "$work" && mkdir -p "$work"
cmake --install "$build" --prefix "$work/prefix" > "$work/install.log"
for f in include/zorvel.h lib/libzorvel.so lib/pkgconfig/zorvel.pc lib/cmake/zorvel/zorvelConfig.cmake; do
  [ -e "$work/prefix/$f" ] || { echo "missing after install: $f"; exit 1; }
done
soname=$(objdump -p "$work/prefix/lib/libzorvel.so" | awk '/SONAME/ {print $2}')
[ "$soname" = "libzorvel.so.10" ] || { echo "unexpected soname $soname"; exit 1; }
cat > "$work/main.c" <<'C'
#include <zorvel.h>
int main(void) { metafl("GKSL"); setfil("consumer.met"); zorini(); zorfin(); return getlev(); }
C
export PKG_CONFIG_PATH="$work/prefix/lib/pkgconfig"
cc -std=c99 -Wall -Werror "$work/main.c" $(pkg-config --cflags --libs zorvel) \
   -Wl,-rpath,"$work/prefix/lib" -o "$work/pc_consumer"
(cd "$work" && SOURCE_DATE_EPOCH=0 ./pc_consumer > pc.out)
grep -q "Metafile: consumer.met" "$work/pc.out" || { echo "pkg-config consumer failed"; cat "$work/pc.out"; exit 1; }
mkdir -p "$work/cm"
cat > "$work/cm/CMakeLists.txt" <<'C'
cmake_minimum_required(VERSION 3.25)
project(consumer C)
find_package(zorvel REQUIRED)
add_executable(consumer ../main.c)
target_link_libraries(consumer PRIVATE zorvel::zorvel)
C
cmake -S "$work/cm" -B "$work/cm/build" -DCMAKE_PREFIX_PATH="$work/prefix" > "$work/cm.log"
cmake --build "$work/cm/build" >> "$work/cm.log"
(cd "$work" && rm -f consumer.met && ./cm/build/consumer > cm.out)
grep -q "Metafile: consumer" "$work/cm.out" || { echo "find_package consumer failed"; exit 1; }
echo "install test passed"
