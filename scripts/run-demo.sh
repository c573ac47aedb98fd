#!/usr/bin/env bash
# Installs what is missing, builds the demo centre display and plays its tour
# (apps/demo/tour.touch: every screen, with taps, drags, a pinch and the night
# skin) on a virtual X server when there is no display. Writes one picture of each
# screen, the last frame, and the frame statistics per screen. Extra arguments go
# to the demo (--size 1920x720, --set ui/show_dirty_rects=true, ...).
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
"$root/scripts/install-deps.sh"
build="${ORBIS_BUILD_DIR:-$root/build}"
cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build "$build" --target orbis-demo --parallel "$(nproc)"

out="${ORBIS_DEMO_OUT:-$build/demo-output}"
screens="$out/screens"
mkdir -p "$screens"
screenshot="$out/screenshot.png"
stats="$out/frame-stats.txt"
rm -f "$screenshot" "$stats" "$screens"/*.png
demo=("$build/apps/demo/orbis-demo" --screenshot "$screenshot" --stats "$stats" --screens "$screens")
if [[ -n "${ORBIS_DEMO_FRAMES:-}" ]]; then
  demo+=(--frames "$ORBIS_DEMO_FRAMES")
else
  demo+=(--script "${ORBIS_DEMO_SCRIPT:-$root/apps/demo/tour.touch}")
fi
demo+=("$@")

export LIBGL_ALWAYS_SOFTWARE="${LIBGL_ALWAYS_SOFTWARE:-1}"
if [[ -n "${DISPLAY:-}" ]] && xdpyinfo >/dev/null 2>&1; then
  "${demo[@]}"
else
  # -noreset: without it the server resets whenever its last client leaves,
  # and a program connecting at that moment is refused.
  xvfb-run -a -s "-noreset -screen 0 1920x1200x24" "${demo[@]}"
fi

echo "Pictures of each screen: $screens"
ls "$screens"
echo "Screenshot of the last frame: $screenshot"
echo "Frame statistics: $stats"
