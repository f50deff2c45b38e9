#!/usr/bin/env bash
# Installs what is missing, builds Voltrix and runs it: the desktop program
# where a display exists, otherwise a default simulation through the CLI
# that writes its curve (and its plot, where the renderer is built).
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/install-deps.sh

cmake -S . -B build/run -G Ninja -DCMAKE_BUILD_TYPE=Release -DVOLTRIX_BENCH=OFF -DVOLTRIX_TESTS=OFF >/dev/null
cmake --build build/run

cli=$(pwd)/build/run/cli/voltrix-cli
echo "The command line is $cli"
echo "  $cli --help                 how to call it"
echo "  $cli \"help FormIns\"         the controls of a form, with units and values"
echo "  $cli \"menu mnuSimulate\" \"show curves out.csv\""
echo "The user guide is $(pwd)/docs/VoltrixDoc.htm (F1 in the desktop program)."

if [[ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" && -x build/run/gui/voltrix ]]; then
  exec build/run/gui/voltrix
fi

mkdir -p out
echo "No display here: running the default simulation headless instead."
statements=("menu mnuSimulate" "show curves out/default-curve.csv")
if "$cli" help | grep -q '^  plot FILE'; then
  statements+=("plot out/default-plot.png")
fi
"$cli" "${statements[@]}"
echo "Curve written to $(pwd)/out/default-curve.csv"
[[ -f out/default-plot.png ]] && echo "Plot written to $(pwd)/out/default-plot.png"
exit 0
