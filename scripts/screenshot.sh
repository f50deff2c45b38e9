#!/usr/bin/env bash
# Takes the pictures of the README on a virtual X display (Xvfb), captured
# with ImageMagick's import:
#   docs/screenshot.png  the desktop program right after one simulation of
#                        the default forms;
#   docs/overlay.png     three sweeps at 0.01, 0.1 and 1 V/s overlaid, each
#                        row in its colour and line, with the legend naming them.
#   bash scripts/screenshot.sh [PATH-TO-voltrix]
# Without a path it builds build/run/gui/voltrix as scripts/run.sh does; the
# parameter files of the overlay come from the voltrix-cli built beside it.
set -euo pipefail

root=$(cd "$(dirname "$0")/.." && pwd)
if [ $# -ge 1 ]; then
  bin=$1
else
  bin=$root/build/run/gui/voltrix
  cmake -S "$root" -B "$root/build/run" -G Ninja -DCMAKE_BUILD_TYPE=Release -DVOLTRIX_BENCH=OFF -DVOLTRIX_TESTS=OFF >/dev/null
  cmake --build "$root/build/run" --target voltrix voltrix-cli
fi
cli=$(dirname "$bin")/../cli/voltrix-cli
for program in "$bin" "$cli"; do
  if [ ! -x "$program" ]; then
    echo "screenshot: $program not found (is Qt 6 installed? bash scripts/install-deps.sh)" >&2
    exit 1
  fi
done
for tool in Xvfb import; do
  command -v "$tool" >/dev/null || { echo "screenshot: $tool is not installed (apt-get install xvfb imagemagick)" >&2; exit 1; }
done

# A free display number.
n=99
while [ -e "/tmp/.X$n-lock" ]; do n=$((n + 1)); done
display=:$n
work=$(mktemp -d)

Xvfb "$display" -screen 0 1024x768x24 -nolisten tcp >/dev/null 2>&1 &
xvfb=$!
app=
cleanup() {
  [ -n "$app" ] && kill "$app" 2>/dev/null || true
  kill "$xvfb" 2>/dev/null || true
  rm -rf "$work"
}
trap cleanup EXIT
for _ in $(seq 50); do
  [ -e "/tmp/.X11-unix/X$n" ] && break
  sleep 0.1
done

# shoot OUT ARGS...: starts voltrix with ARGS, waits for it to draw, captures
# its main window into OUT and ends it. Window places of earlier runs are
# kept in a settings folder of its own, so every picture starts alike.
shoot() {
  local out=$1
  shift
  rm -rf "$work/config"
  DISPLAY=$display QT_QPA_PLATFORM=xcb XDG_CONFIG_HOME=$work/config "$bin" "$@" >/dev/null 2>&1 &
  app=$!
  sleep "${SCREENSHOT_WAIT:-5}"
  kill -0 "$app" 2>/dev/null || { echo "screenshot: voltrix ended early" >&2; exit 1; }
  mkdir -p "$(dirname "$out")"
  # The main window only: it stands at the top left of a display without a
  # window manager; the whole display if it cannot be found.
  local geometry
  geometry=$(DISPLAY=$display xwininfo -root -tree 2>/dev/null |
    awk '/"Voltrix for Windows"/ { for (i = 1; i <= NF; i++) if ($i ~ /^[0-9]+x[0-9]+\+/) { print $i; exit } }' || true)
  if [ -n "$geometry" ]; then
    import -display "$display" -window root -crop "$geometry" +repage "$out"
  else
    import -display "$display" -window root "$out"
  fi
  kill "$app" 2>/dev/null || true
  wait "$app" 2>/dev/null || true
  app=
  echo "screenshot: wrote $out"
}

shoot "$root/docs/screenshot.png" --simulate

# Three parameter files that differ in the scan rate alone.
overlay=()
for rate in 0.01 0.1 1; do
  "$cli" "set FormIns.V=$rate" "menu mnuSimulate" "menu mnuSave $work/sweep-$rate.par" >/dev/null
  overlay+=("$work/sweep-$rate.par")
done
shoot "$root/docs/overlay.png" --simulate "${overlay[@]}"
