#!/usr/bin/env bash
# Formats the tree's C++ sources with the root .clang-format:
#   scripts/format.sh            rewrites every file that differs
#   scripts/format.sh --check    changes nothing; lists the files that differ and
#                                fails if there are any (CI runs this)
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
cd "$root"

check=0
case "${1:-}" in
  --check) check=1 ;;
  "") ;;
  *) echo "usage: scripts/format.sh [--check]" >&2; exit 2 ;;
esac
command -v clang-format >/dev/null || { echo "format: clang-format is missing (scripts/install-deps.sh)" >&2; exit 2; }

mapfile -t files < <(git ls-files -- '*.cpp' '*.h' '*.c' | grep -v '^node_modules/')
# One clang-format per batch of files; each file that differs is named in its
# first complaint ("path:line:col: error: code should be clang-formatted").
mapfile -t differ < <(printf '%s\0' "${files[@]}" |
  xargs -0 -n 64 -P "$(nproc)" clang-format --dry-run -Werror 2>&1 >/dev/null |
  sed -nE 's/^([^:]+):[0-9]+:[0-9]+: error: code should be clang-formatted.*/\1/p' | sort -u)
if ((${#differ[@]} == 0)); then
  echo "format: ${#files[@]} files, all formatted"
  exit 0
fi
if ((check)); then
  printf 'format: not formatted: %s\n' "${differ[@]}" >&2
  echo "format: ${#differ[@]} of ${#files[@]} files differ; run scripts/format.sh" >&2
  exit 1
fi
clang-format -i "${differ[@]}"
echo "format: reformatted ${#differ[@]} files"
