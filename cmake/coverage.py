#!/usr/bin/env python3
"""Tells which branches of the rooms that keep the promises of docs/reliability.md no test takes.

    coverage.py EXPORT ROOT        EXPORT is what llvm-cov export gives; coverage.sh makes it

A branch is a condition in the source that was true, or false. What only an exception or a template makes is none. Branches
that cannot be taken are listed in docs/reliability.md, each with its reason; where more or fewer are not taken than that
table says, the exit code is 1.
"""

import collections
import json
import os
import re
import sys

ROOMS = re.compile(
    r"pgm/pgmdev/(packed|parameters|user_flash)/.*"
    r"|pgm/pgmdev/records/c.*"
    r"|pgm/pgmdev/(flash|profiles)/(manager|default_rows|table|loading|records|part_list).*"
    r"|host/src/(fio_replacement|descriptor|cfg|configuration).*"
)
ROW = re.compile(r"\| `([^`]+)` \| (\d+) \| ")


def conditions_of(file):
    """What was counted of each condition, true and false, by its place; of all instances of a template together."""
    counts = collections.defaultdict(lambda: [0, 0])
    places = [((0, 0), file["branches"])]
    places += [(tuple(e["source_region"][:2]), e.get("branches", [])) for e in file["expansions"]]
    for place, branches in places:
        for branch in branches:
            taken = counts[place + tuple(branch[:4])]
            taken[0] += branch[4]
            taken[1] += branch[5]
    return counts


def executed(file, line, column):
    """Whether what stands there was reached."""
    count = 0
    for segment in file["segments"]:
        if (segment[0], segment[1]) > (line, column):
            break
        if segment[3]:
            count = segment[2]
    return count > 0


def missing_of(file):
    """Place and kind of each branch that was not taken, and how many branches there are."""
    missing = []
    total = 0
    for key, taken in sorted(conditions_of(file).items()):
        line, column = key[:2] if key[:2] != (0, 0) else key[2:4]
        if taken == [0, 0] and executed(file, line, column):
            continue  # known while compiling
        total += 2
        missing += [(line, "never " + kind) for kind, count in zip(("true", "false"), taken) if count == 0]
    return missing, total


def main(export, root):
    with open(export, encoding="utf-8") as text:
        files = json.load(text)["data"][0]["files"]
    with open(os.path.join(root, "docs", "reliability.md"), encoding="utf-8") as text:
        known = {name: int(count) for name, count in ROW.findall(text.read())}
    result = 0
    total = taken = 0
    for file in sorted(files, key=lambda file: file["filename"]):
        name = re.sub(r"^(.*/)?build/coverage/", "", os.path.normpath(file["filename"]))  # as prefixes are mapped
        if not ROOMS.fullmatch(name):
            continue
        missing, branches = missing_of(file)
        total += branches
        taken += branches - len(missing)
        expected = known.pop(name, 0)
        if missing or expected:
            print(f"{name}: {branches - len(missing)} of {branches} branches, {expected} cannot be taken")
        if len(missing) != expected:
            result = 1
            for line, kind in missing:
                print(f"    {name}:{line}: {kind}")
    for name in known:
        print(f"{name}: listed, and not there")
        result = 1
    print(f"{taken} of {total} branches")
    return result


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
