#!/usr/bin/env bash
# Installs what is missing, then builds and runs every test twice: once as
# users build it, once under AddressSanitizer and UndefinedBehaviorSanitizer.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/install-deps.sh

jobs=$(nproc)
export QT_QPA_PLATFORM=offscreen

echo "== Build and test (release) =="
# The optimisation users get; their debug information is no use to a test run
# and costs a quarter of the build. Sources are compiled in batches (half the
# time again); the sanitizer build below compiles them one by one, so a file
# that leans on a neighbour's includes still fails here.
cmake -S . -B build/release -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DCMAKE_CXX_FLAGS_RELWITHDEBINFO="-O2 -DNDEBUG" \
  -DCMAKE_UNITY_BUILD=ON >/dev/null
cmake --build build/release -j "$jobs"
ctest --test-dir build/release --output-on-failure -j "$jobs"

# What users get from "cmake --install": the programs, the guide, the man
# page, the desktop entry and icon, in a temporary prefix; the installed CLI
# must run from there.
echo "== Install check =="
prefix=$(mktemp -d)
trap 'rm -rf "$prefix"' EXIT
cmake --install build/release --prefix "$prefix" >/dev/null
for f in bin/voltrix-cli share/doc/voltrix/VoltrixDoc.htm share/man/man1/voltrix-cli.1; do
  [[ -f "$prefix/$f" ]] || { echo "install check: $f is missing" >&2; exit 1; }
done
if [[ -x build/release/gui/voltrix ]]; then
  for f in bin/voltrix share/applications/voltrix.desktop share/icons/hicolor/scalable/apps/voltrix.svg; do
    [[ -f "$prefix/$f" ]] || { echo "install check: $f is missing" >&2; exit 1; }
  done
fi
"$prefix/bin/voltrix-cli" --help | grep -q '^usage: voltrix-cli' || { echo "install check: voltrix-cli --help failed" >&2; exit 1; }
echo "install check: voltrix-cli --help runs from $prefix"

# The desktop program is left out here: Qt's own allocations are not ours to
# check, and the core it drives is covered by the other programs.
echo "== Build and test (AddressSanitizer + UndefinedBehaviorSanitizer) =="
# Line tables are all a sanitizer's report needs to name file and line.
cmake -S . -B build/sanitize -G Ninja -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_FLAGS_DEBUG=-g1 -DVOLTRIX_SANITIZE=ON -DVOLTRIX_GUI=OFF \
  -DVOLTRIX_BENCH=OFF >/dev/null
cmake --build build/sanitize -j "$jobs"
ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 \
  ctest --test-dir build/sanitize --output-on-failure -j "$jobs"
