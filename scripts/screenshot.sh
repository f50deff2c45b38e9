#!/usr/bin/env bash
# Takes docs/screenshot.png: the desktop program right after one simulation
# of the default forms, on a virtual X display (Xvfb), captured with
# ImageMagick's import.
#   bash scripts/screenshot.sh [PATH-TO-voltrix]
# Without a path it builds build/run/gui/voltrix as scripts/run.sh does.
set -euo pipefail

root=$(cd "$(dirname "$0")/.." && pwd)
out=$root/docs/screenshot.png
if [ $# -ge 1 ]; then
  bin=$1
else
  bin=$root/build/run/gui/voltrix
  cmake -S "$root" -B "$root/build/run" -G Ninja -DCMAKE_BUILD_TYPE=Release -DVOLTRIX_BENCH=OFF -DVOLTRIX_TESTS=OFF >/dev/null
  cmake --build "$root/build/run" --target voltrix
fi
if [ ! -x "$bin" ]; then
  echo "screenshot: $bin not found (is Qt 6 installed? bash scripts/install-deps.sh)" >&2
  exit 1
fi
for tool in Xvfb import; do
  command -v "$tool" >/dev/null || { echo "screenshot: $tool is not installed (apt-get install xvfb imagemagick)" >&2; exit 1; }
done

# A free display number.
n=99
while [ -e "/tmp/.X$n-lock" ]; do n=$((n + 1)); done
display=:$n

Xvfb "$display" -screen 0 1024x768x24 -nolisten tcp >/dev/null 2>&1 &
xvfb=$!
app=
cleanup() {
  [ -n "$app" ] && kill "$app" 2>/dev/null || true
  kill "$xvfb" 2>/dev/null || true
}
trap cleanup EXIT
for _ in $(seq 50); do
  [ -e "/tmp/.X11-unix/X$n" ] && break
  sleep 0.1
done

DISPLAY=$display QT_QPA_PLATFORM=xcb "$bin" --simulate >/dev/null 2>&1 &
app=$!
# The simulation runs at start; give it time to draw.
sleep "${SCREENSHOT_WAIT:-5}"
kill -0 "$app" 2>/dev/null || { echo "screenshot: voltrix ended early" >&2; exit 1; }

mkdir -p "$(dirname "$out")"
# The main window only: it stands at the top left of a display without a
# window manager; the whole display if it cannot be found.
geometry=$(DISPLAY=$display xwininfo -root -tree 2>/dev/null |
  awk '/"Voltrix for Windows"/ { for (i = 1; i <= NF; i++) if ($i ~ /^[0-9]+x[0-9]+\+/) { print $i; exit } }' || true)
if [ -n "$geometry" ]; then
  import -display "$display" -window root -crop "$geometry" +repage "$out"
else
  import -display "$display" -window root "$out"
fi
echo "screenshot: wrote $out"
