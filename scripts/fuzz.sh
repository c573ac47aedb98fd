#!/usr/bin/env bash
# Fuzzes one target of fuzz/ for a number of seconds:
#   scripts/fuzz.sh TARGET SECONDS [libFuzzer options...]
# TARGET is the name of fuzz/TARGET.cpp. The fuzzers are built with clang, with
# coverage instrumentation and ASan+UBSan, in build-fuzz/. The run starts from the
# tree's seed corpus, keeps what it learns in build-fuzz/work/TARGET/corpus, and
# writes any crashing input to build-fuzz/work/TARGET/findings: fix the fault,
# then add the input to fuzz/corpus/TARGET/ so that ctest replays it from then on.
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
if (($# < 2)); then
  echo "usage: $0 TARGET SECONDS [libFuzzer options...]" >&2
  echo "targets: $(cd "$root/fuzz" && ls ./*.cpp | sed 's|^\./||; s|\.cpp$||' | tr '\n' ' ')" >&2
  exit 2
fi
target="$1"
seconds="$2"
shift 2
if [[ ! -f "$root/fuzz/$target.cpp" ]]; then
  echo "fuzz: no target $target (fuzz/$target.cpp)" >&2
  exit 2
fi

"$root/scripts/install-deps.sh"
export CCACHE_BASEDIR="$root" CCACHE_NOHASHDIR=true
build="${ORBIS_FUZZ_BUILD_DIR:-$root/build-fuzz}"
CC=clang CXX=clang++ cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
  -DORBIS_FUZZ=ON -DORBIS_SANITIZE=address,undefined -DORBIS_BUILD_TESTS=OFF -DORBIS_BUILD_BENCH=OFF >/dev/null
cmake --build "$build" --parallel 2 --target "fuzz_$target"

work="$build/work/$target"
mkdir -p "$work/corpus" "$work/findings"
dictionary=()
[[ -f "$root/fuzz/$target.dict" ]] && dictionary=(-dict="$root/fuzz/$target.dict")
export QT_QPA_PLATFORM=offscreen
export ASAN_OPTIONS="detect_leaks=1:abort_on_error=0:symbolize=1"
export LSAN_OPTIONS="suppressions=$root/tests/sanitizers/lsan.supp:print_suppressions=0"
export UBSAN_OPTIONS="print_stacktrace=1:halt_on_error=1"
cd "$work"
exec "$build/fuzz/fuzz_$target" -max_total_time="$seconds" -print_final_stats=1 -rss_limit_mb=2048 \
  -artifact_prefix="$work/findings/" "${dictionary[@]}" "$@" "$work/corpus" "$root/fuzz/corpus/$target"
