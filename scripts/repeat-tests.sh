#!/usr/bin/env bash
# Runs the whole suite ROUNDS times in a row (default 50), in parallel as CI does,
# against the build that scripts/run-tests.sh made, and reports every test that
# failed, timed out or did not start in any round. Extra arguments go to ctest.
#   scripts/repeat-tests.sh [ROUNDS] [ctest arguments...]
# Logs of failing rounds stay in build/repeat-logs/. Exits 1 when anything failed.
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
build="${ORBIS_BUILD_DIR:-$root/build}"
rounds=50
if [[ "${1:-}" =~ ^[0-9]+$ ]]; then
  rounds="$1"
  shift
fi
if [[ ! -f "$build/CTestTestfile.cmake" ]]; then
  echo "repeat-tests: no build in $build; run scripts/run-tests.sh first" >&2
  exit 2
fi
logs="$build/repeat-logs"
rm -rf "$logs"
mkdir -p "$logs"
export LIBGL_ALWAYS_SOFTWARE=1

rounds_body() {
  local failures="$logs/failures.txt" i
  : >"$failures"
  for ((i = 1; i <= rounds; i++)); do
    local log="$logs/round-$i.log" start=$SECONDS
    if ctest --test-dir "$build" --parallel "$(nproc)" --timeout 300 --output-on-failure "$@" >"$log" 2>&1; then
      echo "round $i: passed ($((SECONDS - start)) s)"
      rm -f "$log"
    else
      # ctest lists each failing test as "  <n> - <name> (<Failed|Timeout|Not Run|...>)".
      sed -n '/The following tests FAILED:/,$p' "$log" | grep -E '^\s+[0-9]+ - ' |
        sed -E "s/^\s+[0-9]+ - /round $i: /" | tee -a "$failures"
      grep -qE '^\s+[0-9]+ - ' "$log" || echo "round $i: ctest failed without a test result (see $log)" | tee -a "$failures"
    fi
  done
  echo
  if [[ -s "$failures" ]]; then
    echo "Failures in $rounds rounds (test: count):"
    sed -E 's/^round [0-9]+: //' "$failures" | sort | uniq -c | sort -rn
    return 1
  fi
  echo "$rounds rounds, no failure"
}

if [[ -n "${DISPLAY:-}" ]] && xdpyinfo >/dev/null 2>&1; then
  rounds_body "$@"
else
  export -f rounds_body
  export build logs rounds
  xvfb-run -a -s "-noreset -screen 0 1920x1200x24" bash -c 'rounds_body "$@"' _ "$@"
fi
