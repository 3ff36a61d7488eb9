#!/usr/bin/env bash
# That the bill of materials, which installing writes, has the time of the commit, also where the sources have a blank in
# their path.
set -euo pipefail
sources=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
root=$(mktemp -d)
trap 'rm -rf "$root"' EXIT
unset SOURCE_DATE_EPOCH "${!GIT_@}"
export HOME=$root XDG_CONFIG_HOME=$root GIT_CONFIG_NOSYSTEM=1

copy="$root/with a blank"
mkdir -p "$copy/cmake"
cp "$sources"/cmake/{bill_of_materials,package_time}.cmake "$copy/cmake"
git init -q "$copy"
GIT_COMMITTER_DATE=2001-02-03T04:05:06Z \
    git -C "$copy" -c user.name=Somebody -c user.email=somebody@example.com commit -q --allow-empty -m Sources

# As the script of the build tree does when it installs.
lines=$(sed -n '/^install(CODE "$/,/^install(SCRIPT /{//!p}' "$sources/cmake/install.cmake")
[ -n "$lines" ] || { echo "cmake/install.cmake writes no bill" >&2; exit 1; }
printf '%s\n' "${lines%\" COMPONENT*}" 'include("${PROJECT_SOURCE_DIR}/cmake/bill_of_materials.cmake")' |
    sed -e 's/\\"/"/g' -e "s|\${PROJECT_SOURCE_DIR}|$copy|g" -e 's|\${PROJECT_VERSION}|1.0.0|g' \
        -e 's|\${PGMDEV_INSTALL_DOCDIR}|doc|g' >"$root/install.cmake"
cmake -DCMAKE_INSTALL_PREFIX="$root/prefix" -P "$root/install.cmake"
grep -q '"created": "2001-02-03T04:05:06Z"' "$root/prefix/doc/pgmdev.spdx.json" ||
    { cat "$root/prefix/doc/pgmdev.spdx.json" >&2; exit 1; }
