#!/usr/bin/env bash
# Builds the fuzzer in build-fuzz/, runs it for a bounded time, then replays everything
# it found (and the committed seeds) with the plot files kept, and hands every finished
# file to its real reader (tools/fuzz_consumers.py). Fails on a crash, a sanitizer
# report, an input running over 60 s, or a file that its reader rejects. Crashing inputs
# are left in build-fuzz/artifacts/.
# Usage: tools/fuzz.sh [SECONDS]   (default 150 s of fuzzing; 0: replay and check only)
#        tools/fuzz.sh --coverage    line coverage of the library by both corpora
#                                    (build-fuzz/corpus and fuzz/corpus), in build-fuzz-cov/
#        Further libFuzzer options in ZORVEL_FUZZ_ARGS (e.g. "-seed=7").
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
seconds=${1:-150}
build=$root/build-fuzz
"$root/tools/deps.sh" clang libclang-rt-dev python3 ghostscript libxml2-utils qpdf pngcheck hp2xx \
  libtiff-tools giflib-tools netpbm

if [ "$seconds" = "--coverage" ]; then
  cov=$root/build-fuzz-cov
  cmake -S "$root" -B "$cov" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DZORVEL_FUZZ=ON \
        -DCMAKE_CXX_COMPILER=clang++ -DCMAKE_C_COMPILER=clang \
        -DCMAKE_CXX_FLAGS="-fprofile-instr-generate -fcoverage-mapping" \
        -DCMAKE_EXE_LINKER_FLAGS="-fprofile-instr-generate" \
        -DZORVEL_BUILD_TESTS=OFF -DZORVEL_BUILD_EXAMPLES=OFF -DZORVEL_BUILD_BENCH=OFF > /dev/null
  cmake --build "$cov" --target zorvel_fuzz -j2
  rm -f "$cov"/*.profraw
  mkdir -p "$build/corpus"
  (cd "$cov" && LLVM_PROFILE_FILE="$cov/fuzz.profraw" ASAN_OPTIONS=detect_leaks=0 \
     fuzz/zorvel_fuzz -runs=0 "$build/corpus" "$root/fuzz/corpus" 2> "$cov/replay.log")
  llvm-profdata merge -o "$cov/fuzz.profdata" "$cov/fuzz.profraw"
  llvm-cov report "$cov/fuzz/zorvel_fuzz" -instr-profile="$cov/fuzz.profdata" \
    -ignore-filename-regex="^$root/(fuzz/|build)|font_data_" | tail -n 1
  exit 0
fi

echo "== Fuzzer build (clang, libFuzzer + ASan + UBSan)"
cmake -S "$root" -B "$build" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DZORVEL_FUZZ=ON \
      -DZORVEL_WERROR=ON -DCMAKE_CXX_COMPILER=clang++ -DCMAKE_C_COMPILER=clang \
      -DZORVEL_BUILD_TESTS=OFF -DZORVEL_BUILD_EXAMPLES=OFF -DZORVEL_BUILD_BENCH=OFF > /dev/null
cmake --build "$build" --target zorvel_fuzz zorvel_fuzz_mapfile zorvel_fuzz_gksl zorvel_fuzz_bdf zorvel_fuzz_sfnt -j2
fuzzer=$build/fuzz/zorvel_fuzz
mkdir -p "$build/corpus" "$build/artifacts"
# The fuzzer's temporary folders: what an input killed by a timeout leaves goes too.
rm -rf "$build/tmp" && mkdir -p "$build/tmp"
export TMPDIR=$build/tmp
export ASAN_OPTIONS=detect_leaks=1:abort_on_error=1
export UBSAN_OPTIONS=print_stacktrace=1
# libFuzzer options shared by the run and the replay. The timeout leaves room for slow
# but finite inputs: hundreds of characters a metre high, each line drawn as 100
# parallel strokes on a device without line widths and not clipped (noclip), are a
# gigabyte of metafile and seconds under the sanitizers.
opts=(-timeout=60 -rss_limit_mb=2048 -artifact_prefix="$build/artifacts/")

if [ "$seconds" -gt 0 ]; then
  echo "== Fuzzing for $seconds s"
  # New inputs go to build-fuzz/corpus; fuzz/corpus holds the committed seeds.
  # shellcheck disable=SC2086
  (cd "$build" && nice -n 19 "$fuzzer" "${opts[@]}" -max_total_time="$seconds" \
     -print_final_stats=1 ${ZORVEL_FUZZ_ARGS:-} "$build/corpus" "$root/fuzz/corpus" \
     2> "$build/fuzz.log") || {
    tail -n 60 "$build/fuzz.log"
    echo "FAIL: the fuzzer found a fault; the input is in $build/artifacts/"
    exit 1
  }
  grep -E "^(#[0-9]+[[:space:]]+DONE|stat::)" "$build/fuzz.log" || true
fi

if [ "$seconds" -gt 0 ]; then
  # The map file reader: a tenth of the time, at most 30 s.
  map_seconds=$(( seconds / 10 < 30 ? seconds / 10 + 1 : 30 ))
  echo "== Fuzzing the map file reader for $map_seconds s"
  mkdir -p "$build/corpus_map"
  (cd "$build" && nice -n 19 "$build/fuzz/zorvel_fuzz_mapfile" "${opts[@]}" \
     -max_total_time="$map_seconds" "$build/corpus_map" "$root/fuzz/corpus_map" \
     2> "$build/fuzz_map.log") || {
    tail -n 60 "$build/fuzz_map.log"
    echo "FAIL: the map file fuzzer found a fault; the input is in $build/artifacts/"
    exit 1
  }
  # The metafile reader (incmet): as long as the map file reader.
  echo "== Fuzzing the metafile reader for $map_seconds s"
  mkdir -p "$build/corpus_gksl"
  (cd "$build" && nice -n 19 "$build/fuzz/zorvel_fuzz_gksl" "${opts[@]}" \
     -max_total_time="$map_seconds" "$build/corpus_gksl" "$root/fuzz/corpus_gksl" \
     2> "$build/fuzz_gksl.log") || {
    tail -n 60 "$build/fuzz_gksl.log"
    echo "FAIL: the metafile fuzzer found a fault; the input is in $build/artifacts/"
    exit 1
  }
  # The BDF font reader: as long as the map file reader.
  echo "== Fuzzing the BDF font reader for $map_seconds s"
  mkdir -p "$build/corpus_bdf"
  (cd "$build" && nice -n 19 "$build/fuzz/zorvel_fuzz_bdf" "${opts[@]}" \
     -max_total_time="$map_seconds" "$build/corpus_bdf" "$root/fuzz/corpus_bdf" \
     2> "$build/fuzz_bdf.log") || {
    tail -n 60 "$build/fuzz_bdf.log"
    echo "FAIL: the BDF font fuzzer found a fault; the input is in $build/artifacts/"
    exit 1
  }
  # The font file reader of the PDF embedding: as long, seeded with the smallest
  # TrueType and OpenType faces of the machine's fonts.
  echo "== Fuzzing the font file reader for $map_seconds s"
  mkdir -p "$build/corpus_sfnt"
  if [ -z "$(ls -A "$build/corpus_sfnt")" ]; then
    find /usr/share/fonts -type f \( -name '*.ttf' -o -name '*.otf' \) -printf '%s %p\n' \
      2>/dev/null | sort -n | sed -n 1,4p | cut -d' ' -f2- |
      while read -r f; do cp "$f" "$build/corpus_sfnt/"; done
  fi
  (cd "$build" && nice -n 19 "$build/fuzz/zorvel_fuzz_sfnt" "${opts[@]}" \
     -max_total_time="$map_seconds" "$build/corpus_sfnt" 2> "$build/fuzz_sfnt.log") || {
    tail -n 60 "$build/fuzz_sfnt.log"
    echo "FAIL: the font file fuzzer found a fault; the input is in $build/artifacts/"
    exit 1
  }
fi

echo "== Replay with the plot files kept, and their readers"
rm -rf "$build/out"
(cd "$build" && ZORVEL_FUZZ_OUT="$build/out" "$fuzzer" "${opts[@]}" -runs=0 \
   "$build/corpus" "$root/fuzz/corpus" 2> "$build/replay.log") || {
  tail -n 60 "$build/replay.log"
  echo "FAIL: an input of the corpus fails on replay"
  exit 1
}
python3 "$root/tools/fuzz_consumers.py" "$build/out"
