#!/usr/bin/env bash
# compile_with_clang.sh CLANG OPTION... -- GCC ARGUMENT...: compiles with Clang and these options what a build asks GCC for.
# A launcher of compilers for CMake: cmake/tests_by_clang.cmake.
set -euo pipefail
command=()
while [ "$1" != -- ]; do
    command+=("$1")
    shift
done
shift 2  # and GCC itself

previous='' output='' makes_headers=
for argument; do
    case $argument in
        # What only GCC understands.
        -fno-gnu-unique | -fno-keep-inline-dllexport | -Wno-restrict | -Wno-subobject-linkage) ;;
        *) command+=("$argument") ;;
    esac
    case $previous in
        -o) output=$argument ;;
        -x) [ "$argument" != c++-header ] || makes_headers=1 ;;
    esac
    previous=$argument
done
# Clang would take the precompiled headers of the last time for a part of the new ones.
[ -z "$makes_headers" ] || rm -f "$output"
exec "${command[@]}"
