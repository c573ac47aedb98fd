#!/usr/bin/env bash
# Installs what is missing, configures, builds and runs every test (the GL tests
# on a virtual X server). Arguments go to ctest, except:
#   --sanitize address,undefined   builds in build-asan with those sanitizers and
#                                  runs the whole suite with leak detection
#   --sanitize thread              builds in build-tsan and runs the tests whose
#                                  code crosses threads
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"

sanitize=""
args=()
while (($#)); do
  case "$1" in
    --sanitize) sanitize="$2"; shift 2 ;;
    --sanitize=*) sanitize="${1#--sanitize=}"; shift ;;
    *) args+=("$1"); shift ;;
  esac
done

"$root/scripts/install-deps.sh"
# Clones in other folders share the compiler cache.
export CCACHE_BASEDIR="$root" CCACHE_NOHASHDIR=true
export LIBGL_ALWAYS_SOFTWARE=1
suppressions="$root/tests/sanitizers"
case "$sanitize" in
  "")
    build="${ORBIS_BUILD_DIR:-$root/build}"
    config=()
    ;;
  address,undefined | undefined,address | address)
    build="${ORBIS_BUILD_DIR:-$root/build-asan}"
    config=(-DORBIS_SANITIZE="$sanitize" -DORBIS_BUILD_BENCH=OFF)
    # intercept_tls_get_addr=0: the runtime's own record of dynamic TLS blocks
    # guesses a block's bounds from a header that this glibc does not write. When a
    # block happened to start 16 bytes into a page, the leak check read a made-up
    # range and crashed ("Tracer caught signal 11"). Without the record, those
    # blocks, which glibc allocates with malloc, are scanned like other heap blocks.
    export ASAN_OPTIONS="detect_leaks=1:abort_on_error=1:detect_stack_use_after_return=0:intercept_tls_get_addr=0"
    export LSAN_OPTIONS="suppressions=$suppressions/lsan.supp:print_suppressions=0"
    export UBSAN_OPTIONS="print_stacktrace=1:halt_on_error=1"
    # The style churn test makes a million styles; a tenth of that shows the same
    # under the slower allocator.
    export ORBIS_STYLE_CHURN=100000
    ;;
  thread)
    build="${ORBIS_BUILD_DIR:-$root/build-tsan}"
    config=(-DORBIS_SANITIZE=thread -DORBIS_BUILD_BENCH=OFF)
    # Qt is not built with the sanitizer: its mutexes and event queues are invisible to
    # it. Accesses that Qt alone makes on both sides (its D-Bus thread freeing events
    # that the main thread posted, say) are left out; the framework's own
    # cross-thread state uses standard primitives, which the sanitizer sees.
    export TSAN_OPTIONS="suppressions=$suppressions/tsan.supp:halt_on_error=1:second_deadlock_stack=1:ignore_noninstrumented_modules=1"
    # Tests whose code runs on more than one thread: data values, the touch
    # driver's reader and queue, the screenshot worker, logging, singletons, the
    # GUI-thread checks, the generated tiles' painters and the demo's vehicle.
    args=(-R 'DataValueTest\.|ValueBinding\.|Logger\.|Singleton\.|EvdevTouchDriver\.|VirtualTouchDevice\.|TouchFixture\.|DisplayDeviceGLTest\.Screenshots|MapCRS\.Setting|TextureCacheTest\.OtherThreads|GeneratedTileTest\.SourceDelivers|VehicleSimulatorTest\.OnItsOwnThread' "${args[@]}")
    ;;
  *)
    echo "run-tests: --sanitize takes address,undefined or thread" >&2
    exit 2
    ;;
esac

cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo "${config[@]}" >/dev/null
cmake --build "$build" --parallel "$(nproc)"
cd "$build"
if [[ -n "${DISPLAY:-}" ]] && xdpyinfo >/dev/null 2>&1; then
  ctest --output-on-failure --parallel "$(nproc)" --timeout 300 "${args[@]}"
else
  # -noreset: without it the server resets whenever its last client leaves,
  # and a program connecting at that moment is refused.
  xvfb-run -a -s "-noreset -screen 0 1920x1200x24" ctest --output-on-failure --parallel "$(nproc)" --timeout 300 "${args[@]}"
fi
