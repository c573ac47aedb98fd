#!/usr/bin/env bash
# Regenerates the reference pictures of the golden-image tests for this machine's
# GL renderer (tests/golden/references/<renderer>/), after a change that moves
# pixels on purpose. Look at every changed picture before committing it:
#   git status tests/golden/references
# Arguments go to ctest (-R ButtonStates, say, to regenerate one scene).
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
build="${ORBIS_BUILD_DIR:-$root/build}"
export CCACHE_BASEDIR="$root" CCACHE_NOHASHDIR=true
export LIBGL_ALWAYS_SOFTWARE=1 ORBIS_GOLDEN_UPDATE=1
cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build "$build" --parallel "$(nproc)" --target test_golden_gl
cd "$build"
run=(ctest --output-on-failure -R '^GoldenGLTest\.' "$@")
if [[ -n "${DISPLAY:-}" ]] && xdpyinfo >/dev/null 2>&1; then
  "${run[@]}"
else
  xvfb-run -a -s "-noreset -screen 0 1920x1200x24" "${run[@]}"
fi
echo "References: $root/tests/golden/references/"
