#!/usr/bin/env bash
# Installs what is missing, builds and runs the demo centre display for a number
# of frames (on a virtual X server when there is no display), then says where the
# screenshot of the last frame and the frame statistics went. Extra arguments go
# to the demo (--size 1920x720, --set ui/show_dirty_rects=true, ...).
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
"$root/scripts/install-deps.sh"
build="${ORBIS_BUILD_DIR:-$root/build}"
cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build "$build" --target orbis-demo --parallel "$(nproc)"

out="${ORBIS_DEMO_OUT:-$build/demo-output}"
mkdir -p "$out"
screenshot="$out/screenshot.png"
stats="$out/frame-stats.txt"
rm -f "$screenshot" "$stats"
demo=("$build/apps/demo/orbis-demo" --frames "${ORBIS_DEMO_FRAMES:-180}" --screenshot "$screenshot" --stats "$stats" "$@")

export LIBGL_ALWAYS_SOFTWARE="${LIBGL_ALWAYS_SOFTWARE:-1}"
if [[ -n "${DISPLAY:-}" ]] && xdpyinfo >/dev/null 2>&1; then
  "${demo[@]}"
else
  # -noreset: without it the server resets whenever its last client leaves,
  # and a program connecting at that moment is refused.
  xvfb-run -a -s "-noreset -screen 0 1920x1200x24" "${demo[@]}"
fi

echo "Screenshot of the last frame: $screenshot"
echo "Frame statistics: $stats"
cat "$stats"
