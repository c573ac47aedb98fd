#!/usr/bin/env bash
# The scroll scene three ways in one run, on one virtual X server (1280x720x24)
# with Mesa's software rasteriser: this framework (orbis-demo --scene scroll),
# Qt Quick (a QML ListView, basic render loop) and QPainter on Qt's OpenGL 2
# paint engine (bench/peers). Prints one table with the ratios to Qt Quick and
# writes it as JSON.
#
# Frame time is the wall time from the start of a frame's work to the return of
# the swap that shows it, frames run back to back, three rounds interleaved.
# Draws and GL calls per frame are counted by apitrace over a fixed window of
# frames after the warm-up; the framework's own counter shows what its GL state
# cache lets through. Heap bytes come from the allocator over 10,000 instances.
#
# usage: scripts/compare-peers.sh [--frames N] [--warmup N] [--rounds N]
#          [--trace-frames N] [--heap N] [--out FILE.json] [--no-build]
# ORBIS_BUILD_DIR chooses the build folder (default build).
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
build="${ORBIS_BUILD_DIR:-$root/build}"
frames=600
warmup=60
rounds=3
trace_frames=120
heap=10000
out=""
do_build=1

# The comment at the top, without its marks.
usage() { awk 'NR > 1 && /^#/ { sub(/^# ?/, ""); print; next } NR > 1 { exit }' "$0"; }
number() {
  if ! [[ "$2" =~ ^[0-9]+$ ]] || (("$2" < $3)); then
    echo "compare-peers: bad $1: $2" >&2
    exit 2
  fi
}
while (($#)); do
  case "$1" in
    --frames | --warmup | --rounds | --trace-frames | --heap | --out)
      (($# >= 2)) || { echo "compare-peers: $1 needs a value" >&2; exit 2; }
      case "$1" in
        --frames) number "$1" "$2" 1; frames=$2 ;;
        --warmup) number "$1" "$2" 1; warmup=$2 ;;
        --rounds) number "$1" "$2" 1; rounds=$2 ;;
        --trace-frames) number "$1" "$2" 2; trace_frames=$2 ;;
        --heap) number "$1" "$2" 1; heap=$2 ;;
        --out) out=$2 ;;
      esac
      shift 2 ;;
    --no-build) do_build=0; shift ;;
    -h | --help) usage; exit 0 ;;
    *) echo "compare-peers: unknown option: $1" >&2; usage >&2; exit 2 ;;
  esac
done
out="${out:-$build/compare-peers.json}"
work="$build/compare-peers"

if ((do_build)); then
  # Qt Quick, the QML modules and apitrace are among the packages it installs.
  "$root/scripts/install-deps.sh"
  [[ -f "$build/CMakeCache.txt" ]] ||
    cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
  cmake "$build" -DORBIS_BUILD_BENCH=ON >/dev/null
  cmake --build "$build" --parallel "${ORBIS_BUILD_JOBS:-$(nproc)}" \
    --target orbis-demo orbis-peer-quick orbis-peer-painter orbis-heap
fi

declare -A program=(
  [ours]="$build/apps/demo/orbis-demo --scene scroll"
  [qtquick]="$build/bench/peers/orbis-peer-quick"
  [painter]="$build/bench/peers/orbis-peer-painter"
)
for c in ours qtquick painter; do
  binary=${program[$c]%% *}
  [[ -x "$binary" ]] || { echo "compare-peers: $binary is missing (run without --no-build)" >&2; exit 1; }
done
command -v apitrace >/dev/null || { echo "compare-peers: apitrace is missing" >&2; exit 1; }

rm -rf "$work"
mkdir -p "$work"

# Our own X server, on a free display: the size is the scene's, and nothing else draws on it.
fifo="$work/display"
mkfifo "$fifo"
Xvfb -displayfd 3 -noreset -screen 0 1280x720x24 3>"$fifo" 2>"$work/xvfb.log" &
xvfb=$!
trap 'kill "$xvfb" 2>/dev/null || true' EXIT
read -r -t 20 display <"$fifo" || { echo "compare-peers: Xvfb did not start" >&2; exit 1; }
export DISPLAY=":$display" LIBGL_ALWAYS_SOFTWARE=1 QSG_RENDER_LOOP=basic QT_QPA_PLATFORM=xcb
unset ORBIS_CONFIG

# run NAME PROGRAM-ARGS...: one contender's run, its output kept in NAME.log.
run() {
  local name=$1
  shift
  if ! "$@" >"$work/$name.log" 2>&1; then
    echo "compare-peers: $name failed:" >&2
    tail -n 20 "$work/$name.log" >&2
    exit 1
  fi
}
# calls NAME FRAMES [--idle]: a traced run of WARMUP + FRAMES frames, reduced to call names.
calls() {
  local name=$1 contender=${1%%-*} n=$2
  shift 2
  # shellcheck disable=SC2086
  run "$name-trace" apitrace trace --api gl -o "$work/$name.trace" \
    ${program[$contender]} --warmup "$warmup" --frames "$n" "$@"
  apitrace dump --call-nos=no --arg-names=no --multiline=no "$work/$name.trace" |
    sed -n 's/^\(gl[A-Za-z0-9_]*\)(.*/\1/p' >"$work/$name.calls"
  rm -f "$work/$name.trace"
}

for ((r = 1; r <= rounds; r++)); do
  for c in ours qtquick painter; do
    echo "compare-peers: round $r of $rounds: $c"
    # shellcheck disable=SC2086
    run "$c-scroll-$r" ${program[$c]} --warmup "$warmup" --frames "$frames" --stats "$work/$c-scroll-$r.json"
  done
done
for c in ours qtquick painter; do
  echo "compare-peers: $c: idle run, traced runs"
  # shellcheck disable=SC2086
  run "$c-idle" ${program[$c]} --idle --warmup "$warmup" --frames "$frames" --stats "$work/$c-idle.json"
  calls "$c-scroll" "$trace_frames"
  # Idle frames may swap nothing: their calls are the difference of two run lengths.
  calls "$c-idle-short" "$trace_frames" --idle
  calls "$c-idle-long" "$((2 * trace_frames))" --idle
done
echo "compare-peers: heap"
run ours-heap "$build/bench/heap/orbis-heap" --heap "$heap" --stats "$work/ours-heap.json"
run qtquick-heap "${program[qtquick]}" --heap "$heap" --stats "$work/qtquick-heap.json"

cat >"$work/settings.json" <<EOF
{"frames": $frames, "warmup": $warmup, "rounds": $rounds, "traceFrames": $trace_frames,
 "heapInstances": $heap, "screen": "Xvfb 1280x720x24", "gl": "Mesa llvmpipe (LIBGL_ALWAYS_SOFTWARE=1)"}
EOF
python3 "$root/scripts/compare-peers-report.py" "$work" "$out"
echo "compare-peers: written to $out"
