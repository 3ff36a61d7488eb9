#!/usr/bin/python3
"""How the library, its generator and its command grow with the catalog, and what several threads get; ./bench --growth runs it.

    benchmarks/growth.py [--write] [NAMES...]

Each size is compared with the shipped catalog. With --write it puts the tables into docs/scale.md, and plots beside it.
Times are those of the processor, so that what else runs counts little.
"""

import pathlib
import re
import resource
import shutil
import statistics
import subprocess
import sys
import tempfile

import bars
import documents
import flash_growth
import measurements

BUILD = documents.ROOT / "build" / "bench"
SHIPPED = "shipped"
SIZES = ("10000", "100000", "1000000")
RUNS = 5  # of processes, the median of which counts
LONG = 1e9  # nanoseconds: what takes that long is run once
PROFILES = documents.ROOT / "data" / "dev_info" / "pgm_dev_info.csv"
TIME, BYTES = "time", "bytes"

BENCHMARKS = (
    ("grammar ready for any name", "FirstUseOfGrammar"),
    ("ordering codes ready", "FirstUseOfOrderingCodes"),
    ("indexes for parts made", "MakePartIndexes"),
    ("package name of a full name", "GetPackageName"),
    ("the same in a bare hash map", "FindInHashMap"),
    ("part from a hash", "GetOpnFromHash"),
    ("full name from less", "GetPossibleFullName"),
)


def run(arguments):
    """Nanoseconds of the processor, bytes of memory, and standard output of a process."""
    before = resource.getrusage(resource.RUSAGE_CHILDREN)
    # A child of this process itself would begin with the memory of Python.
    process = subprocess.run(["/usr/bin/time", "--format=%M", *map(str, arguments)], capture_output=True, text=True,
                             check=False)
    after = resource.getrusage(resource.RUSAGE_CHILDREN)
    if process.returncode:
        raise RuntimeError(f"{arguments}: {process.stderr[-1000:]}")
    time = after.ru_utime + after.ru_stime - before.ru_utime - before.ru_stime
    return time * 1e9, int(process.stderr.split()[-1]) * 1024, process.stdout


def median_run(arguments):
    runs = [run(arguments)]
    while len(runs) < RUNS and runs[0][0] < LONG:
        runs.append(run(arguments))
    return statistics.median(time for time, _, _ in runs), statistics.median(memory for _, memory, _ in runs)


def catalog_of(size):
    if size == SHIPPED:
        return documents.ROOT / "data" / "catalog"
    return BUILD / "growth" / size / "catalog"


def name_count(size):
    _, _, summary = run([BUILD / "bin" / "ddb_generator", "--check", catalog_of(size)])
    return int(re.search(r"(\d+) ordering names", summary)[1])


def measured_benchmarks(size):
    results = BUILD / "results" / f"growth_{size}.json"
    run([BUILD / "growth" / size / "bin" / "growth_bench", "--benchmark_repetitions=5", "--benchmark_min_time=0.05",
         "--benchmark_enable_random_interleaving=true", "--benchmark_out_format=json", f"--benchmark_out={results}"])
    times = measurements.read_times([results])
    return [(what, TIME, statistics.median(times[name])) for what, name in BENCHMARKS]


def measured_processes(size, scratch):
    tree = BUILD / "growth" / size
    command = tree / "bin" / "pgmdev"
    part = (tree / "share" / "tessary" / "h" / "pgm_parts.txt").read_text().splitlines()[-1].split()[0]
    installation = scratch / size
    shutil.copytree(tree / "share", installation / "share")
    home = [command, "--install-dir", installation / "share" / "tessary", "--module-dir", scratch]
    database = installation / "share" / "tessary" / "devices" / "programmer" / "pgm_dev_info.pcf"
    generator = BUILD / "bin" / "ddb_generator"
    outputs = [scratch / name for name in ("data.cpp", "tables.cpp", "parts.txt")]

    made, made_memory = median_run([generator, catalog_of(size), *outputs])
    compiled, compiled_memory = median_run([*home, "profile", "compile", "--force", PROFILES, database])
    shown, shown_memory = median_run([*home, "name", "show", part])
    told, told_memory = median_run([*home, "part", "info", part])
    libraries = sum((tree / "lib" / f"lib{name}.so.1").stat().st_size for name in ("pgmdev", "pgmhost"))
    return [
        ("size of the libraries", BYTES, libraries),
        ("size of the profile database", BYTES, database.stat().st_size),
        ("`ddb_generator --check`", TIME, median_run([generator, "--check", catalog_of(size)])[0]),
        ("tables generated", TIME, made),
        ("memory for that", BYTES, made_memory),
        ("`profile check`", TIME, median_run([*home, "profile", "check", PROFILES])[0]),
        ("`profile compile`", TIME, compiled),
        ("memory for that", BYTES, compiled_memory),
        ("`name show`, a process", TIME, shown),
        ("memory for that", BYTES, shown_memory),
        ("`part info`, a process", TIME, told),
        ("memory for that", BYTES, told_memory),
        ("`profile show --part`, a process", TIME, median_run([*home, "profile", "show", "--part", part])[0]),
    ]


def value_text(kind, value):
    return measurements.time_text(value) if kind == TIME else f"{value / 1e6:.3g} MB"


def growth_table(sizes, scratch):
    names = {size: name_count(size) for size in sizes}
    columns = {size: measured_benchmarks(size) + measured_processes(size, scratch) for size in sizes}
    lines = [("names", f"{names[SHIPPED]:,}", *(f"{names[size] / names[SHIPPED]:.2g}" for size in sizes[1:]))]
    for place, (what, kind, base) in enumerate(columns[SHIPPED]):
        ratios = [measurements.ratio_text(columns[size][place][2] / base) for size in sizes[1:]]
        lines.append((what, value_text(kind, base), *ratios))
    headings = ("", SHIPPED, *(f"{int(size):,}" for size in sizes[1:]))
    plot = bars.plot("Names", [[(f"{what}, {label}", columns[size][place][2])
                                for size, label in zip(sizes, headings[1:])]
                               for place, (what, _) in enumerate(BENCHMARKS)], measurements.time_text)
    return documents.table(headings, ("---", *["--:"] * len(sizes)), lines), plot


def threads_table():
    """Requests a second by number of threads, and what a request takes of a processor."""
    results = BUILD / "results" / "threads.json"
    run([BUILD / "bin" / "growth" / "threads_bench", "--benchmark_repetitions=5", "--benchmark_min_time=0.1",
         "--benchmark_enable_random_interleaving=true", "--benchmark_out_format=json", f"--benchmark_out={results}"])
    wall, processor = (measurements.read_times([results], kind) for kind in ("real_time", "cpu_time"))
    kinds = sorted({name.partition("/")[0] for name in wall})
    threads = sorted({int(name.rpartition(":")[2]) for name in wall})
    lines = []
    for kind in kinds:
        names = [f"{kind}/threads:{count}" for count in threads]
        lines.append((kind.removesuffix("Requests").lower(),
                      *(f"{1e9 / statistics.median(wall[name]):,.0f}" for name in names),
                      *(measurements.time_text(statistics.median(processor[name])) for name in names)))
    headings = ("requests", *(f"a second, {count} thread{'s' if count > 1 else ''}" for count in threads),
                *(f"processor, {count}" for count in threads))
    return documents.table(headings, ("---", *["--:"] * (len(headings) - 1)), lines)


def main():
    arguments = [argument for argument in sys.argv[1:] if argument != "--write"]
    sizes = [SHIPPED, *(arguments or SIZES)]
    subprocess.run(["cmake", "--preset", "bench", f"-DPGMDEV_GROWTH_NAMES={';'.join(sizes[1:])}"], check=True,
                   cwd=documents.ROOT, stdout=subprocess.DEVNULL)
    subprocess.run(["ninja", "-C", BUILD, "threads_bench", *(f"growth_{size}" for size in sizes)], check=True,
                   stdout=sys.stderr)
    begin = f"{documents.where_and_when()}\n\n"
    with tempfile.TemporaryDirectory() as scratch:
        names, plot = growth_table(sizes, pathlib.Path(scratch))
    threads = threads_table()
    flash = flash_growth.growth_table(BUILD / "bin" / "pgmdev")
    print(f"{begin}{names}\n{threads}\n{flash}", end="")
    if "--write" in sys.argv[1:]:
        documents.replace_part("scale.md", "names", begin + names)
        documents.replace_part("scale.md", "threads", begin + threads)
        documents.replace_part("scale.md", "flash", begin + flash)
        documents.write_plot("growth", plot)


if __name__ == "__main__":
    main()
