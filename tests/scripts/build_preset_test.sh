#!/usr/bin/env bash
# That the scripts at the root say that they build when they do, and else nothing: with a project that looks for new files
# at every build, as this one does.
set -euo pipefail
prepare=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)/cmake/prepare.sh
root=$(mktemp -d)
trap 'rm -rf "$root"' EXIT
# shellcheck source=../../cmake/prepare.sh disable=SC1091
. "$prepare"

cat >"$root/CMakeLists.txt" <<'PROJECT'
cmake_minimum_required(VERSION 3.25)
project(copies NONE)
file(GLOB texts CONFIGURE_DEPENDS RELATIVE ${PROJECT_SOURCE_DIR} *.txt)
list(REMOVE_ITEM texts CMakeLists.txt)
foreach(text IN LISTS texts)
  add_custom_command(OUTPUT ${text} DEPENDS ${PROJECT_SOURCE_DIR}/${text}
    COMMAND ${CMAKE_COMMAND} -E copy ${PROJECT_SOURCE_DIR}/${text} ${text})
endforeach()
add_custom_target(copies ALL DEPENDS ${texts})
PROJECT
echo one >"$root/one.txt"
cmake -G Ninja -S "$root" -B "$root/build/small" >/dev/null

# expect WHAT SAID: that building ends well and says that.
expect() {
    local said
    said=$(build_preset small 2>&1) || { echo "$1: it failed: $said" >&2; exit 1; }
    [ "$said" = "$2" ] || { echo "$1: said \"$said\" instead of \"$2\"" >&2; exit 1; }
}

expect "the first time" "Building small"
expect "nothing to do" ""
echo two >"$root/two.txt"
expect "a new file" "Building small"
[ "$(cat "$root/build/small/two.txt")" = two ]
expect "nothing to do behind a new file" ""
sleep 1
echo three >"$root/one.txt"
expect "a changed file" "Building small"
[ "$(cat "$root/build/small/one.txt")" = three ]
expect "nothing to do behind a changed file" ""
echo 'message(FATAL_ERROR "no project")' >"$root/CMakeLists.txt"
if said=$(build_preset small 2>&1); then
    echo "a project that cannot be configured was built" >&2
    exit 1
fi
[[ $said == *"no project"* ]] || { echo "a fault of the project is not said: $said" >&2; exit 1; }
