#!/usr/bin/env bash
# What the scripts at the root install, and how: with a sudo that hands down nothing of the environment, as it does by
# default, so that installing asks nobody anything.
set -euo pipefail
prepare=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)/cmake/prepare.sh
root=$(mktemp -d)
trap 'rm -rf "$root"' EXIT
mkdir -p "$root/cmake" "$root/bin"
cat >"$root/cmake/debian-packages.txt" <<'PACKAGES'
# Who needs it
there  run
absent run
removed run
other  test
PACKAGES
program() { cat >"$root/bin/$1" && chmod +x "$root/bin/$1"; }
program dpkg-query <<<$'#!/bin/sh\nprintf "there install ok installed\\nremoved deinstall ok config-files\\n"; exit 1'
program id <<<$'#!/bin/sh\necho 1000'
program sudo <<<$'#!/bin/sh\nexec env -i PATH="$PATH" ROOT=yes "$@"'
program apt-get <<PROGRAM
#!/bin/sh
echo "\$ROOT \$DEBIAN_FRONTEND \$*" >>"$root/said"
[ ! -e "$root/broken" ]
PROGRAM
PATH="$root/bin:$PATH"
# shellcheck source=../../cmake/prepare.sh disable=SC1091
. "$prepare"

install_packages run 2>/dev/null
[ "$(cat "$root/said")" = "yes  update
yes noninteractive install -y --no-install-recommends absent removed" ] || { cat "$root/said" >&2; exit 1; }

touch "$root/broken"
if (install_packages run) 2>/dev/null; then
    echo "installing failed, and nothing says so" >&2
    exit 1
fi
