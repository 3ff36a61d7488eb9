#!/usr/bin/env bash
# check_sources.sh quick|full: holds the sources against .clang-format and .clang-tidy.
#
# quick  every file against .clang-format; that no rooms include each other in a circle; libraries, generator and command
#        against some checks of .clang-tidy that cost little, a room at a time as the build tree build/asan compiles them.
#        Passes at once when nothing has changed since it last passed.
# full   every file, tests, fuzzers and benchmarks too, against all of .clang-tidy, one by one: an hour or more. What only
#        Windows has is looked at where the compiler for it is there; the programs of tests/consumer are not.
set -euo pipefail
root=$(CDPATH='' cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
. "$root/cmake/prepare.sh"
cd "$root"
mode=${1:?quick or full}
mapfile -t sources < <(git ls-files --cached --others --exclude-standard '*.c' '*.cpp' '*.h')

windows_compiler=x86_64-w64-mingw32-g++-posix

# Found without a look at every declaration of every header, and not by the compilers' warnings.
quick_checks='-*,performance-*,-performance-unnecessary-value-param,misc-definitions-in-headers,misc-unused-using-decls'
quick_checks+=',readability-container-size-empty'

# database PRESET: how the build tree of PRESET compiles, without what only GCC understands and without precompiled headers,
# which are not there yet; in build/tidy.
database() {
    mkdir -p build/tidy
    sed -E 's/ -(fno-gnu-unique|fno-keep-inline-dllexport|Wno-restrict|Wno-subobject-linkage|Werror|fsanitize=[a-z,-]+|fno-sanitize-recover=all)\>//g
        s/( -Xclang -include(-pch)? -Xclang [^ ]+){2}//' \
        "build/$1/compile_commands.json" >build/tidy/compile_commands.json
}

# tidy OPTION...: the files named on standard input.
tidy() {
    xargs -P "$(nproc)" -n 1 clang-tidy -p build/tidy --quiet "$@" 2> >(grep -v ' warnings generated\.$' >&2)
}

# compiled PATTERN: the files that the build compiles and whose paths match.
compiled() { sed -nE 's/^ *"file": "(.*)",?$/\1/p' build/tidy/compile_commands.json | grep -E "$1" | sort -u; }

# circles DIRECTORY: the rooms of the directory that include each other; nothing where all arrows run one way.
circles() {
    (cd "$1" && grep -Eo '^#include "[a-z_]+/' -r --include='*.h' --include='*.cpp' . |
        sed -nE 's|^\./([a-z_]+)/[^:]*:#include "([a-z_]+)/|\1 \2|p' | sort -u | tsort 2>&1 >/dev/null |
        grep -v 'contains a loop' || true)
}

say "Checking the sources"
clang-format --dry-run -Werror "${sources[@]}"
for directory in pgm/pgmdev tools/pgmdev tools/ddb_generator; do
    found=$(circles "$directory")
    if [ -n "$found" ]; then
        say "$directory: rooms in a circle: $found"
        exit 1
    fi
done
if [ "$mode" = full ]; then
    install_packages test bench
    found=0
    by_file=(-G Ninja -DCMAKE_BUILD_TYPE=Debug -DPGMDEV_COMPILE_BY_ROOM=none -DCMAKE_EXPORT_COMPILE_COMMANDS=ON)

    cmake -S . -B build/file_by_file "${by_file[@]}" \
        -DPGMDEV_BUILD_PYTHON=ON -DPGMDEV_BUILD_BENCHMARKS=ON -DPGMDEV_BUILD_FUZZERS=ON >/dev/null
    database file_by_file
    compiled "^$root/(pgm|host|answers|c|system|tools|examples|python|tests|fuzz|benchmarks)/" | tidy || found=1

    cmake -S tests/own_host -B build/file_by_file_own_host "${by_file[@]}" -DPGMDEV_SOURCE_DIR="$root" >/dev/null
    database file_by_file_own_host
    compiled "^$root/tests/own_host/" | tidy || found=1

    if command -v "$windows_compiler" >/dev/null; then
        cmake --preset windows -B build/file_by_file_windows "${by_file[@]}" >/dev/null
        database file_by_file_windows
        headers=$("$windows_compiler" -print-file-name=include/c++)
        compiled "^$root/.*(windows(_test)?|_none)\.cpp$" |
            tidy --extra-arg={--target=x86_64-w64-mingw32,-isystem"$headers"{,/x86_64-w64-mingw32}} || found=1
    else
        say "Not checked, for want of $windows_compiler: what only Windows has"
    fi
    exit $found
fi

passed="$root/build/asan/sources_that_passed"
digest=$(sha256sum .clang-tidy cmake/check_sources.sh "${sources[@]}" | sha256sum)
if [ "$(cat "$passed" 2>/dev/null)" != "$digest" ]; then
    configure_preset asan ON                    # ./test has done it; whoever has not run that need not
    ninja -C build/asan build.ninja >/dev/null  # the tree may be older than the list of sources
    database asan
    # Not what the build generates, which is not there yet.
    compiled "^$root/(build/asan/(pgm|host|answers|c|tools)/.*/Unity/|(pgm|host|answers|c|tools)/)" |
        tidy --checks="$quick_checks" --header-filter="^$root/(h|host|pgm|answers|c|system|tools)/"
    echo "$digest" >"$passed"
fi
