#!/usr/bin/env bash
# Builds the file readers' fuzz targets with clang's libFuzzer and runs them.
#   scripts/fuzz.sh [SECONDS] [TARGET...]     (default 180 s each; targets
#   curve_reader and instrument_reader)
# The builds live in build-fuzz/, each target's growing corpus in
# build-fuzz/corpus-TARGET/, crashes are written to build-fuzz/ as crash-*.
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
out="$root/build-fuzz"
seconds="${1:-180}"
shift || true
targets=("$@")
[ ${#targets[@]} -gt 0 ] || targets=(curve_reader instrument_reader)
cxx="${CXX_FUZZ:-clang++-14}"
model=("$root/src/model/number_format.cpp" "$root/src/model/errors.cpp" "$root/src/model/checked.cpp")
mkdir -p "$out"

build() {
  local target="$1"
  shift
  "$cxx" -std=c++20 -g -O1 -fsanitize=fuzzer,address,undefined -fno-sanitize-recover=undefined \
    -I"$root/src" "$root/fuzz/${target}_fuzz.cpp" "$@" "${model[@]}" -o "$out/${target}_fuzz"
}

# Seeds: the shapes of file each reader meets in practice.
seed_curve_reader() {
  local c="$1"
  printf ' 0.3 ,          0.00001 \r\n 0.295 ,        2E-05 \r\n' > "$c/seed-export"
  printf '\xEF\xBB\xBFE,I\n0.3,1e-5\n0.29,1,5E-3\n' > "$c/seed-header"
  printf '0.3\t1e-5\r0.29 2e-5\n\n\x1A' > "$c/seed-blanks"
  printf '"0.3","1e-5"\n0.2,1e999\n' > "$c/seed-quoted"
}

# The test fixtures, once through every way in (the first byte picks it).
seed_instrument_reader() {
  local c="$1" f way
  for f in "$root"/tests/files/fixtures/*; do
    for way in 00 01 02 03 04 05 06 07 85; do
      { printf "\\x$way"; cat "$f"; } > "$c/seed-$way-$(basename "$f")"
    done
  done
}

dictionary_instrument_reader() {
  local d="$out/instrument_reader.dict"
  # libFuzzer's dictionaries escape only as \xNN: \x09 is a tab.
  printf '%s\n' '"EXPLAIN"' '"TAG\x09CV"' '"CURVE1\x09TABLE\x09"' '"\x09Pt\x09T\x09Vf\x09Im"' \
    '"\x09#\x09s\x09V vs. Ref.\x09A"' '"QUANT\x09STEPSIZE\x09"' '"EXPERIMENTABORTED\x09TOGGLE\x09T"' \
    '"EC-Lab ASCII FILE"' '"Nb header lines : "' '"Ewe/V\x09<I>/mA\x09cycle number\x09error"' '"dE/dt unit"' \
    '"Init E (V) = "' '"Segment = "' '"Potential/V, Current/A"' '"V,\xC2\xB5A,V,\xC2\xB5A"' \
    '"WE(1).Potential (V);WE(1).Current (A);Scan"' '"E (mV),I (nA)"' '"1,5E-003"' '"\xFF\xFE"' '"\x0D\x0A"' > "$d"
  echo "-dict=$d"
}

for target in "${targets[@]}"; do
  case "$target" in
    curve_reader) build curve_reader "$root/src/files/curve_file.cpp" ;;
    instrument_reader) build instrument_reader "$root"/src/files/instrument_*.cpp "$root/src/files/import_grid.cpp" ;;
    *) echo "unknown target $target" >&2; exit 2 ;;
  esac
  corpus="$out/corpus-$target"
  mkdir -p "$corpus"
  "seed_$target" "$corpus"
  dict=()
  [ "$target" = instrument_reader ] && dict=("$(dictionary_instrument_reader)")
  (cd "$out" && "./${target}_fuzz" -max_total_time="$seconds" -max_len=65536 -timeout=10 -print_final_stats=1 \
    "${dict[@]}" "$corpus")
done
