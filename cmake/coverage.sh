#!/usr/bin/env bash
# Which branches the tests take: cmake/coverage.sh [TEST-PROGRAM...]
#
# Builds the preset coverage, runs the test programs one after the other, all that concern the rooms when none is named, and
# tells which branches of those rooms none of them takes. Fails when these are not those that docs/reliability.md lists.
# What is left in build/coverage/merged.profdata is for llvm-cov: `llvm-cov show build/coverage/lib/libpgmdev.so
# -instr-profile=build/coverage/merged.profdata --show-branches=count`.
set -euo pipefail
root=$(CDPATH='' cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
. "$root/cmake/prepare.sh"
cd "$root"

programs=(fault_tests pgmdev_tests host_tests ddb_tests command_tests)
[ $# -eq 0 ] || programs=("$@")
directory="$root/build/coverage"
profiles="$directory/profiles"

command -v llvm-cov >/dev/null || install_packages more
configure_preset coverage ON
build_preset coverage "${programs[@]}"
rm -rf "$profiles"
export LLVM_PROFILE_FILE="$profiles/%m.profraw"  # one for each binary, to which every process adds
for program in "${programs[@]}"; do
    say "Running $program"
    # Hardening is that of optimised builds.
    logged "$directory/$program.log" "$directory/bin/$program" --gtest_brief=1 --gtest_filter='-*Hardening*'
done
llvm-profdata merge -sparse "$profiles"/*.profraw -o "$directory/merged.profdata"
llvm-cov export -format=text -instr-profile="$directory/merged.profdata" "$directory/lib/libpgmdev.so" \
    -object "$directory/lib/libpgmhost.so" -object "$directory/bin/ddb_tests" >"$directory/branches.json" 2>"$directory/export.log"
python3 cmake/coverage.py "$directory/branches.json" "$root"
