#!/usr/bin/python3
"""Compares what Google Benchmark measured: prints the tables of docs/performance.md; ./bench runs it.

    benchmarks/ratios.py [--write] JSON... [TEXT...]

A TEXT is a table already. With --write it puts the tables into docs/performance.md, and plots beside it.
"""

import pathlib
import statistics
import sys

import bars
import documents
import measurements
import rows

HEADINGS = ("what", "takes", "beside", "takes", "ratio", "spread")
ALIGNMENTS = ("---", "--:", "---", "--:", "--:", "--:")


def table_rows(row, times):
    """A line for each peer that was measured."""
    own = times[row.benchmark]
    lines = []
    for name, benchmark in row.peers:
        if benchmark in times:
            value, spread = measurements.ratio(own, times[benchmark])
            first = not lines
            lines.append((row.what if first else "", measurements.time_text(statistics.median(own)) if first else "",
                          name, measurements.time_text(statistics.median(times[benchmark])),
                          measurements.ratio_text(value), measurements.spread_text(spread)))
    return lines


def plotted(row, times):
    pairs = ((row.what, row.benchmark), *row.peers)
    return [(name, statistics.median(times[benchmark])) for name, benchmark in pairs if benchmark in times]


def known_benchmarks():
    return {name for group in rows.GROUPS for row in group.rows for name in (row.benchmark, *dict(row.peers).values())}


def check_names(times, filtered):
    """A row whose benchmark is gone would vanish without a word; so would a benchmark without a row."""
    missing = set() if filtered else known_benchmarks() - times.keys()
    unused = times.keys() - known_benchmarks() - set(rows.WITHOUT_ROW)
    if missing or unused:
        raise SystemExit(f"Not measured: {sorted(missing)}. Without a row: {sorted(unused)}")


def main():
    arguments = sys.argv[1:]
    write, filtered = "--write" in arguments, "--filtered" in arguments
    files = [pathlib.Path(file) for file in arguments if not file.startswith("--")]
    times = measurements.read_times([file for file in files if file.suffix == ".json"])
    check_names(times, filtered)
    text = f"{documents.where_and_when()}\n"
    for group in rows.GROUPS:
        measured = [row for row in group.rows if row.benchmark in times]
        lines = [line for row in measured for line in table_rows(row, times)]
        if lines:
            text += f"\n### {group.title}\n\n{documents.table(HEADINGS, ALIGNMENTS, lines)}"
            text += f"\n![{group.title}](performance/{group.plot}.svg)\n"
        if write:
            plot = bars.plot(group.title, [plotted(row, times) for row in measured], measurements.time_text)
            documents.write_plot(group.plot, plot)
    for file in files:
        if file.suffix == ".txt":
            text += f"\n### The {file.stem}\n\n```\n{file.read_text()}```\n"
    if write:
        documents.replace_part("performance.md", "ratios", text)
    print("".join(line for line in text.splitlines(keepends=True) if not line.startswith("![")), end="")


if __name__ == "__main__":
    main()
