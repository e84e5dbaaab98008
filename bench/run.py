#!/usr/bin/env python3
"""Measures this system beside its limits and its peers, in one run, and prints the ratios.

Data are made in a scratch folder that goes away. Readers of one subject take turns, every answer
is checked against the others', and figures are medians; a ratio is the median of the ratios of one
turn each. Processor time is what a busy machine disturbs least.
"""

import argparse
import datetime
import os
import pathlib
import platform
import subprocess
import sys

import report
import subjects


def arguments():
    parser = argparse.ArgumentParser(prog="script/bench", description=__doc__.split("\n")[0])
    parser.add_argument("subjects", nargs="*", help=f"of {', '.join(SUBJECTS)}; all by default")
    parser.add_argument("--quick", action="store_true", help="small sizes, under two minutes")
    parser.add_argument("--large", action="store_true", help="1e8 rows as well")
    parser.add_argument("--rounds", type=int, help="turns of each reader (3)")
    parser.add_argument("--threads", type=int, default=os.cpu_count())
    parser.add_argument("--write", action="store_true", help="keep the tables in docs/performance.md")
    parser.add_argument("--build", type=pathlib.Path, required=True, help=argparse.SUPPRESS)
    return parser.parse_args()


def files(bench, given):
    sizes = [10**5, 10**6] if given.quick else [10**5, 10**6, 10**7]
    if given.large:
        sizes.append(10**8)
    for kind in ("csv", "parquet", "duckdb"):
        for rows in sizes:
            yield report.files(kind, rows, subjects.file_of(bench, kind, rows))


def wide(bench, given):
    variables, rows = (200, 20_000) if given.quick else (1000, 100_000)
    yield report.wide(variables, rows, subjects.wide(bench, variables, rows))


def memory(bench, given):
    rows = 10**5 if given.quick else 5 * 10**6
    yield report.memory(rows, subjects.memory(bench, rows))


def groups(bench, given):
    counts = [1_000, 10_000] if given.quick else [10_000, 50_000, 100_000]
    cells = subjects.cells_of(bench, 100)
    yield report.groups(cells, {count: subjects.groups(bench, count) for count in counts})


def bootstrap(bench, given):
    samples = 1_000 if given.quick else 10_000
    sizes = [10**4, 10**6] if given.quick else [10**4, 10**7]
    yield report.bootstrap(samples, {n: subjects.bootstrap(bench, n, samples) for n in sizes})


def small(bench, _):
    yield report.small(subjects.small(bench))


SUBJECTS = {
    "files": files,
    "wide": wide,
    "memory": memory,
    "groups": groups,
    "bootstrap": bootstrap,
    "small": small,
}


def machine(given):
    """What the figures were had on."""
    model = "an unknown processor"
    for line in pathlib.Path("/proc/cpuinfo").read_text().splitlines():
        if line.startswith("model name"):
            model = line.split(":")[1].strip()
            break
    pages = os.sysconf("SC_PHYS_PAGES") * os.sysconf("SC_PAGE_SIZE")
    system = platform.freedesktop_os_release().get("PRETTY_NAME", platform.system())
    version = subprocess.run([given.build / "bin" / "proportions", "--version"], capture_output=True)
    load = ", ".join(f"{value:.1f}" for value in os.getloadavg())
    return [
        f"{version.stdout.decode().strip()}, {datetime.date.today()}",
        f"{model}, {os.cpu_count()} processors, {pages / 2**30:.0f} GB, {system}; "
        f"{given.threads} threads each",
        f"load of the machine (1, 5, 15 minutes) when the run began: {load}",
    ]


def main():
    given = arguments()
    unknown = set(given.subjects) - set(SUBJECTS)
    if unknown:
        sys.exit(f"bench: no subject is called {', '.join(sorted(unknown))}")
    rounds = given.rounds or 3
    facts = machine(given)
    print("\n".join(facts), flush=True)
    tables = []
    with subjects.Bench(given.build, given.threads, rounds) as bench:
        for name in given.subjects or SUBJECTS:
            for table in SUBJECTS[name](bench, given):
                print(f"\n{table.text()}", flush=True)
                tables.append(table)
    for table in report.targets(tables):
        print(f"\n{table.text()}", flush=True)
        tables.insert(0, table)
    if given.write:
        report.write(pathlib.Path("docs/performance.md"), facts, rounds, tables)


main()
