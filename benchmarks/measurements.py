"""Figures out of the JSON of Google Benchmark, and how they compare."""

import json
import re
import statistics

NANOSECONDS = {"ns": 1, "us": 1e3, "ms": 1e6, "s": 1e9}
WALL = "/real_time"
LARGEST_SPREAD = 0.1


def read_times(files, kind=None):
    """The nanoseconds of every repetition of every benchmark: of the kind that is asked for, otherwise of the processor or,
    where a benchmark says so, of the clock on the wall."""
    times = {}
    for file in files:
        for run in json.loads(file.read_text())["benchmarks"]:
            if run.get("run_type") != "iteration":
                continue
            if run.get("error_occurred"):
                raise RuntimeError(f"{run['name']}: {run['error_message']}")
            used = kind or ("real_time" if WALL in run["name"] else "cpu_time")
            name = re.sub(r"/(real_time|repeats:\d+|process_time|iterations:\d+)", "", run["name"])
            times.setdefault(name, []).append(run[used] * NANOSECONDS[run["time_unit"]])
    return times


def quartile_distance(values):
    """How far the middle half of the values lies apart, in parts of their median."""
    if len(values) < 3:
        return 0.0
    first, middle, third = statistics.quantiles(values, n=4)
    return (third - first) / middle


def ratio(times, peer_times):
    """That of the medians, and its spread: that of the repetitions, taken in their order."""
    spread = quartile_distance([one / other for one, other in zip(times, peer_times)])
    return statistics.median(times) / statistics.median(peer_times), spread


def time_text(nanoseconds):
    for unit, size in (("s", 1e9), ("ms", 1e6), ("µs", 1e3), ("ns", 1)):
        if nanoseconds >= size or size == 1:
            value = nanoseconds / size
            return f"{value:.0f} {unit}" if value >= 100 else f"{value:.3g} {unit}"
    raise ValueError(nanoseconds)


def ratio_text(value):
    return f"{value:.0f}" if value >= 100 else f"{value:.2g}" if value < 10 else f"{value:.3g}"


def spread_text(spread):
    """In bold where it is too large for the ratio to say much."""
    text = f"{spread * 100:.0f} %"
    return f"**{text}**" if spread > LARGEST_SPREAD else text
