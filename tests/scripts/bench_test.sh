#!/usr/bin/env bash
# What ./bench hands on of what was measured, and that it says when a filter has chosen nothing.
set -euo pipefail
bench=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)/bench
root=$(mktemp -d)
trap 'rm -rf "$root"' EXIT
mkdir -p "$root/cmake" "$root/benchmarks" "$root/build/bench/bin"
cp "$bench" "$root"
cat >"$root/cmake/prepare.sh" <<'PREPARE'
say() { printf '%s\n' "$*" >&2; }
install_packages() { :; }
configure_preset() { :; }
build_preset() { :; }
PREPARE
# Like those of the benchmark library: what nothing fits leaves an empty file.
cat >"$root/build/bench/bin/some_bench" <<'PROGRAM'
#!/usr/bin/env bash
for argument; do
    case $argument in
        --benchmark_filter=*) filter=${argument#*=} ;;
        --benchmark_out=*) output=${argument#*=} ;;
    esac
done
: >"$output"
[[ ! LoadFlash =~ $filter ]] || echo '{}' >"$output"
PROGRAM
printf '#!/bin/sh\necho "ratios of $*"\n' >"$root/benchmarks/ratios.py"
chmod +x "$root/build/bench/bin/some_bench" "$root/benchmarks/ratios.py"

[ "$("$root/bench" Load 2>/dev/null)" = "ratios of --filtered $root/build/bench/results/some_bench.json" ] ||
    { "$root/bench" Load >&2; exit 1; }
if said=$("$root/bench" Lod 2>&1); then
    echo "nothing was measured, and nothing says so: $said" >&2
    exit 1
fi
[[ $said == *'No benchmark is called like "Lod"' ]] || { echo "$said" >&2; exit 1; }
