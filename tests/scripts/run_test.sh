#!/usr/bin/env bash
# What ./run builds before it runs the command: the databases, but for a table that is checked, which may have faults.
set -euo pipefail
run=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)/run
root=$(mktemp -d)
trap 'rm -rf "$root"' EXIT
mkdir -p "$root/cmake" "$root/build/release/bin"
cp "$run" "$root"
cat >"$root/cmake/prepare.sh" <<'PREPARE'
install_packages() { :; }
configure_preset() { :; }
build_preset() { echo "builds $*"; }
PREPARE
printf '#!/bin/sh\necho "pgmdev $*"\n' >"$root/build/release/bin/pgmdev"
chmod +x "$root/build/release/bin/pgmdev"

# Of a relative path, of which the shell could make another one, or two.
(cd "$root/.." && CDPATH=.:/ "${root##*/}/run" --version >/dev/null) || { echo "with CDPATH it does not run" >&2; exit 1; }

# expect TARGETS ARGUMENT...: that ./run with these arguments builds the targets and then runs the command with them.
expect() {
    local targets=$1 said
    shift
    said=$("$root/run" "$@")
    [ "$said" = "builds release $targets"$'\n'"pgmdev $*" ] || { echo "./run $*: $said" >&2; exit 1; }
}

expect "pgmdev_command databases" flash show W25Q64JV
expect "pgmdev_command databases" flash compile check.csv out.pcf
expect "pgmdev_command catalog" flash check data/flash/pgm_flash.csv
expect "pgmdev_command catalog" --json profile check --strict data/dev_info/pgm_dev_info.csv
