#!/usr/bin/env bash
# That copies go with their sources when a build tree is configured anew, and nothing else does.
set -euo pipefail
sources=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
root=$(mktemp -d)
trap 'rm -rf "$root"' EXIT

mkdir "$root/a tree"
cd "$root/a tree"
touch kept.py made.py renamed.py renamed.pyi kept.pyi module.so py.typed
mkdir below
touch below/renamed.py
cat >"$root/configure.cmake" <<'SCRIPT'
include(${SOURCES}/cmake/remove_stale.cmake)
remove_stale(${TREE}/*.py ${TREE}/*.pyi KEEP ${TREE}/made.py ${TREE}/kept.py ${TREE}/kept.pyi ${TREE}/not_yet.py)
SCRIPT
for _ in once again; do
    cmake "-DSOURCES=$sources" "-DTREE=$PWD" -P "$root/configure.cmake"
    [ "$(echo *)" = "below kept.py kept.pyi made.py module.so py.typed" ] || { echo "left: $(echo *)" >&2; exit 1; }
    [ -f below/renamed.py ]
done
rm kept.py kept.pyi made.py
cmake "-DSOURCES=$sources" "-DTREE=$PWD" -P "$root/configure.cmake"
[ "$(echo *)" = "below module.so py.typed" ]
