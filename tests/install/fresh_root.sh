#!/usr/bin/env bash
# fresh_root.sh [BUILD]: installs the packages in a Debian that has nothing else, and runs the README's commands there.
#
# BUILD is the build tree, build/release unless told; cpack has packed there. Downloads Debian's packages from where this
# machine's own come from, by mmdebstrap (marked `more` in cmake/debian-packages.txt), as root or in a user namespace.
set -euo pipefail
project=$(CDPATH='' cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
build=$(CDPATH='' cd "${1:-$project/build/release}" && pwd)
mapfile -t packages < <(find "$build" -maxdepth 1 -name '*.deb' | sort)
[ ${#packages[@]} -eq 4 ] || { echo "$build has ${#packages[@]} packages instead of 4: run cpack there" >&2; exit 1; }
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
mkdir "$scratch/packages"
cp "${packages[@]}" "$project/examples/"identify.{c,cpp} "$scratch/packages"

# What Debian is made of here: the sources of this machine that are Debian's.
if [ -f /etc/apt/sources.list.d/debian.sources ]; then
    sources=/etc/apt/sources.list.d/debian.sources
else
    sources=/etc/apt/sources.list
fi

# The commands of the README, as they are there: those of its blocks that begin with "$ ./run", without what follows a bar.
sed -nE 's/^\$ \.\/run ([^|]*).*/pgmdev \1/p' "$project/README.md" >"$scratch/packages/commands.sh"
[ "$(wc -l <"$scratch/packages/commands.sh")" -ge 5 ] || { echo "the README has no commands" >&2; exit 1; }

cat >"$scratch/packages/test.sh" <<'INSIDE'
set -eux
cd /packages
export DEBIAN_FRONTEND=noninteractive
apt-get install -y --no-install-recommends ./*.deb
command -v pgmdev
pgmdev --version
pgmdev doctor
sh -eux commands.sh
test -f /usr/share/man/man1/pgmdev.1.gz
test -f /usr/share/doc/pgmdev/html/index.html
apt-get install -y --no-install-recommends g++ pkg-config
g++ -std=c++20 identify.cpp $(pkg-config --cflags --libs pgmdev) -o identify
[ "$(./identify)" = "W25Q64JV: 67108864 bits, erased within 100 s" ]
gcc -std=c99 identify.c $(pkg-config --cflags --libs pgmdev_c) -o identify_c
[ "$(./identify_c)" = "W25Q64JV: erased within 100 s" ]
[ "$(python3 -c 'import pgmdev; print(pgmdev.flash.identify(b"\xef\x40\x17").record.device_name)')" = W25Q64JV ]
apt-get purge -y pgmdev pgmdev-dev pgmdev-doc python3-pgmdev
for place in /usr/bin/pgmdev /usr/share/tessary /usr/include/pgmdev /usr/share/doc/pgmdev; do
    test ! -e "$place"
done
echo "The packages work on a fresh root."
INSIDE

mmdebstrap --quiet --variant=apt --skip=check/empty \
    --customize-hook="copy-in $scratch/packages /" \
    --customize-hook='chroot "$1" sh /packages/test.sh' \
    bookworm /dev/null "$sources"
