# Sourced by the scripts at the root. Everything said here goes to standard error.

say() { printf '%s\n' "$*" >&2; }

# install_packages NEED...: installs the packages of cmake/debian-packages.txt that one of NEED calls for and that are
# missing. Asks for sudo only when there is something to install and this is not root.
install_packages() {
    local list="$root/cmake/debian-packages.txt" wanted installed missing=() package
    wanted=$(awk -v needs=" $* " '!/^#/ && NF == 2 && index(needs, " " $2 " ") { print $1 }' "$list")
    # shellcheck disable=SC2086  # one word a package
    installed=$(dpkg-query -W -f '${Package} ${Status}\n' $wanted 2>/dev/null) || true
    for package in $wanted; do
        [[ $'\n'$installed$'\n' == *$'\n'"$package install ok installed"$'\n'* ]] || missing+=("$package")
    done
    [ ${#missing[@]} -gt 0 ] || return 0
    say "Installing: ${missing[*]}"
    local as_root=()
    [ "$(id -u)" -eq 0 ] || as_root=(sudo)
    "${as_root[@]}" apt-get update >&2
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y --no-install-recommends "${missing[@]}" >&2
}

# install_node_packages: fetches what tests/page/package-lock.json names into build/npm, unless it is there.
install_node_packages() {
    local wanted="$root/tests/page" directory="$root/build/npm"
    cmp -s "$wanted/package-lock.json" "$directory/node_modules/.fetched" && return 0
    command -v npm >/dev/null || install_packages npm
    say "Fetching packages from the npm registry"
    mkdir -p "$directory"
    cp "$wanted/package.json" "$wanted/package-lock.json" "$directory"
    (cd "$directory" && logged "$directory/npm.log" npm ci --prefer-offline --ignore-scripts --no-audit --no-fund)
    cp "$wanted/package-lock.json" "$directory/node_modules/.fetched"
}

# logged LOG COMMAND...: what the command says goes to LOG, and to standard error when it fails.
logged() {
    local log=$1
    shift
    mkdir -p "$(dirname "$log")"
    "$@" >"$log" 2>&1 || { cat "$log" >&2; return 1; }
}

# configure_preset PRESET WITH_TESTS: configures when that has not been done. WITH_TESTS is ON or OFF; a build tree that has
# the tests keeps them.
configure_preset() {
    local preset=$1 with_tests=$2 directory="$root/build/$1"
    if [ -f "$directory/build.ninja" ]; then
        [ "$with_tests" = ON ] || return 0
        ! grep -q '^PGMDEV_BUILD_TESTS:[A-Z]*=ON$' "$directory/CMakeCache.txt" || return 0
    fi
    say "Configuring $preset"
    (cd "$root" && logged "$directory/build.log" cmake --preset "$preset" -DPGMDEV_BUILD_TESTS="$with_tests")
}

# build_preset PRESET [TARGET...]: builds. Speaks only when there is work or when it fails. As many compilers run as there are
# processors: with more of them, as ninja would have it, each takes an eighth longer.
build_preset() {
    local preset=$1 directory="$root/build/$1"
    shift
    # What looks for new files always runs, and a dry run would take it for work: it runs first, and the dry run is one of a
    # file by another name, which ninja does not bring up to date.
    logged "$directory/build.log" ninja -C "$directory" build.ninja || return 1
    if ! ninja -C "$directory" -f "$directory/build.ninja" -n "$@" 2>/dev/null | grep -q 'no work to do'; then
        say "Building $preset"
        logged "$directory/build.log" ninja -C "$directory" -j "$(nproc)" "$@"
    fi
}
