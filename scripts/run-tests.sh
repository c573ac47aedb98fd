#!/usr/bin/env bash
# Installs what is missing, configures, builds and runs every test (the GL tests
# on a virtual X server).
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
"$root/scripts/install-deps.sh"
build="${ORBIS_BUILD_DIR:-$root/build}"
# Clones in other folders share the compiler cache.
export CCACHE_BASEDIR="$root" CCACHE_NOHASHDIR=true
cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build "$build" --parallel "$(nproc)"
cd "$build"
export LIBGL_ALWAYS_SOFTWARE=1
if [[ -n "${DISPLAY:-}" ]] && xdpyinfo >/dev/null 2>&1; then
  ctest --output-on-failure --parallel "$(nproc)" --timeout 300 "$@"
else
  # -noreset: without it the server resets whenever its last client leaves,
  # and a program connecting at that moment is refused.
  xvfb-run -a -s "-noreset -screen 0 1920x1200x24" ctest --output-on-failure --parallel "$(nproc)" --timeout 300 "$@"
fi
