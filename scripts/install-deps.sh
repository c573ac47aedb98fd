#!/usr/bin/env bash
# Installs what the build, the tests and the demo need: Debian packages that
# are missing (checked with dpkg first, so a ready machine costs seconds), then
# the pinned npm packages. With --browser it also installs chromium for the
# inspector's browser smoke test.
set -euo pipefail
cd "$(dirname "$0")/.."

packages=(
  build-essential cmake ninja-build pkg-config ccache
  qtbase5-dev qtbase5-dev-tools libqt5opengl5-dev libqt5svg5-dev libqt5sql5-sqlite libqt5websockets5-dev
  libegl-dev libgles-dev libgl-dev libgl1-mesa-dri mesa-common-dev
  xvfb xauth xdotool x11-utils
  libpolyclipping-dev libstb-dev libfreetype-dev libfontconfig-dev zlib1g-dev libicu-dev libglu1-mesa-dev
  googletest libgtest-dev libgmock-dev libbenchmark-dev
  fonts-dejavu-core
  # The API documentation (scripts/build-docs.sh).
  doxygen graphviz
  # The scroll scene's peers and their GL call counts (scripts/compare-peers.sh).
  qtdeclarative5-dev qml-module-qtquick2 apitrace python3
  # The fuzzers (scripts/fuzz.sh) need clang's libFuzzer.
  clang libclang-rt-dev
  nodejs npm
)
# The browser smoke test of the view inspector (test_browser) alone needs a browser.
if [[ "${1:-}" == "--browser" ]]; then
  packages+=(chromium)
fi

missing=()
for p in "${packages[@]}"; do
  if ! dpkg -s "$p" >/dev/null 2>&1; then
    missing+=("$p")
  elif ! dpkg -s "$p" 2>/dev/null | grep -q '^Status: install ok installed'; then
    missing+=("$p")
  fi
done

# nodejs/npm may come from outside Debian's packages; a working npm is enough.
if command -v npm >/dev/null 2>&1; then
  filtered=()
  for p in "${missing[@]}"; do
    [[ "$p" == nodejs || "$p" == npm ]] || filtered+=("$p")
  done
  missing=("${filtered[@]}")
fi

if ((${#missing[@]})); then
  echo "install-deps: installing ${missing[*]}"
  SUDO=""
  [[ $(id -u) -ne 0 ]] && SUDO="sudo"
  $SUDO apt-get update -qq
  DEBIAN_FRONTEND=noninteractive $SUDO apt-get install -y -qq --no-install-recommends "${missing[@]}"
fi

if [[ ! -f node_modules/css-layout/src/Layout.c ]]; then
  npm ci --no-audit --no-fund --loglevel=error
fi
