#!/usr/bin/env bash
# Builds the API documentation of the public headers with the pages in docs/:
#   scripts/build-docs.sh [OUTPUT]      (default build/docs; open OUTPUT/html/index.html)
# Fails on any Doxygen warning and on a public class or struct without a
# description.
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
out="$(mkdir -p "${1:-$root/build/docs}" && cd "${1:-$root/build/docs}" && pwd)"
cd "$root"

command -v doxygen >/dev/null || { echo "build-docs: doxygen is missing (scripts/install-deps.sh)" >&2; exit 2; }

# Public headers: every header of the library folders that
# cmake/OrbisPrivateHeaders.cmake does not keep private.
private="$(grep -oE '^\s+[A-Za-z0-9_/]+\.h\s*$' cmake/OrbisPrivateHeaders.cmake | tr -d ' ')"
mapfile -t headers < <(find utils graphics gui maps -name '*.h' | sort | grep -vxF -f <(printf '%s\n' "$private"))

rm -rf "$out/html" "$out/xml"
export ORBIS_DOCS_ROOT="$root" ORBIS_DOCS_OUT="$out"
export ORBIS_DOCS_VERSION="$(sed -nE 's/^project\(OrbisUIFramework VERSION ([0-9.]+).*/\1/p' CMakeLists.txt)"
export ORBIS_DOCS_INPUT="docs ${headers[*]}"
status=0
doxygen docs/Doxyfile || status=$?
if [[ -s "$out/warnings.log" ]]; then
  cat "$out/warnings.log" >&2
  status=1
fi

# A compound's own descriptions are the ones indented by four spaces; members'
# are deeper. Qt base classes appear as compounds too, without an include line.
undocumented=0
for xml in "$out"/xml/class*.xml "$out"/xml/struct*.xml; do
  [[ -e "$xml" ]] || continue
  if awk '
      /^  <compounddef / { public = ($0 ~ /prot="public"/) }
      /^    <includes / { ours = 1 }
      /^    <compoundname>/ { gsub(/.*<compoundname>|<\/compoundname>.*/, ""); name = $0 }
      /^    <location / { match($0, /file="[^"]*"/); where = substr($0, RSTART + 6, RLENGTH - 7) }
      /^    <(brief|detailed)description>/ { inside = 1; next }
      /^    <\/(brief|detailed)description>/ { inside = 0; next }
      inside && /[^[:space:]]/ { documented = 1 }
      /^    <(brief|detailed)description\/>/ { next }
      END { if (public && ours && !documented) { print where ": " name " has no description"; exit 0 } exit 1 }
    ' "$xml" >&2; then
    undocumented=$((undocumented + 1))
  fi
done
if ((undocumented)); then
  echo "build-docs: $undocumented public classes without a description (a /// comment before the class)" >&2
  status=1
fi
((status == 0)) && echo "build-docs: $out/html/index.html"
exit $status
