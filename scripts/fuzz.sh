#!/usr/bin/env bash
# Builds the curve reader fuzz target with clang's libFuzzer and runs it.
#   scripts/fuzz.sh [SECONDS]     (default 180)
# The build lives in build-fuzz/, the growing corpus in build-fuzz/corpus/,
# crashes are written to build-fuzz/ as crash-*.
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
out="$root/build-fuzz"
seconds="${1:-180}"
cxx="${CXX_FUZZ:-clang++-14}"
mkdir -p "$out/corpus"

"$cxx" -std=c++20 -g -O1 -fsanitize=fuzzer,address,undefined -fno-sanitize-recover=undefined \
  -I"$root/src" \
  "$root/fuzz/curve_reader_fuzz.cpp" \
  "$root/src/files/curve_file.cpp" \
  "$root/src/model/number_format.cpp" "$root/src/model/errors.cpp" "$root/src/model/checked.cpp" \
  -o "$out/curve_reader_fuzz"

# Seeds: the shapes of file the reader meets in practice.
printf ' 0.3 ,          0.00001 \r\n 0.295 ,        2E-05 \r\n' > "$out/corpus/seed-export"
printf '\xEF\xBB\xBFE,I\n0.3,1e-5\n0.29,1,5E-3\n' > "$out/corpus/seed-header"
printf '0.3\t1e-5\r0.29 2e-5\n\n\x1A' > "$out/corpus/seed-blanks"
printf '"0.3","1e-5"\n0.2,1e999\n' > "$out/corpus/seed-quoted"

cd "$out"
./curve_reader_fuzz -max_total_time="$seconds" -max_len=65536 -timeout=10 -print_final_stats=1 corpus
