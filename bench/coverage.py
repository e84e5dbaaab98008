#!/usr/bin/env python3
"""How often bootstrap intervals of one proportion hold the true one.

  bench/coverage.py PROGRAM [DATA_SETS [SAMPLES]]

Simulates data sets of n cases with a known proportion, lets PROGRAM analyse them in one run, a
split group for each, and prints the share of intervals that hold the proportion; beside them those
of the Wilson interval of the same run. A data set whose samples are all equal has no interval and
counts as a miss; their share is told. The bound of simulation is two standard errors of a share.
"""

import csv
import io
import math
import pathlib
import random
import subprocess
import sys
import tempfile

LEVEL = 95.0
COMMAND = ("PROPORTIONS ONESAMPLE v CITYPES=WILSON_SCORE TESTTYPES=NONE"
           f" /SUCCESS VALUE=LEVEL(1) /CRITERIA CILEVEL={LEVEL:g}")
BOUNDS = {
    "bootstrap": ("Observed / Proportion / Bootstrap / Lower", "Observed / Proportion / Bootstrap / Upper"),
    "wilson": (f"{LEVEL:g}% Confidence Interval / Lower", f"{LEVEL:g}% Confidence Interval / Upper"),
}


def simulate(path, proportion, cases, data_sets):
    """One row for the successes and one for the failures of each data set."""
    draw = random.Random(f"{proportion} {cases}")
    with path.open("w", encoding="utf-8") as out:
        out.write("set,v,w\n")
        for number in range(data_sets):
            successes = sum(draw.random() < proportion for _ in range(cases))
            out.write(f"{number},1,{successes}\n{number},0,{cases - successes}\n")


def analyse(program, path, samples, kind):
    """By data set: the values of the statistics, None where there is none."""
    arguments = [program, "run", path, "--split", "set", "--weight", "w", "-c", COMMAND,
                 "--bootstrap", str(samples), "--seed", "1", "--bootstrap-interval", kind,
                 "--format", "csv", "--quiet"]
    output = subprocess.run(arguments, check=True, capture_output=True, text=True).stdout
    found = {}
    for row in csv.DictReader(io.StringIO(output)):
        value = float(row["value"]) if row["state"] == "valid" else None
        found.setdefault(row["split"], {})[row["statistic"]] = value
    return found


def share_holding(results, bounds, proportion):
    """Shares of data sets whose interval holds the proportion, and of those without interval."""
    held = missing = 0
    for values in results.values():
        lower, upper = (values[bound] for bound in bounds)
        if lower is None or upper is None:
            missing += 1
        else:
            held += lower <= proportion <= upper
    return held / len(results), missing / len(results)


def main():
    program = sys.argv[1]
    data_sets = int(sys.argv[2]) if len(sys.argv) > 2 else 1000
    samples = int(sys.argv[3]) if len(sys.argv) > 3 else 999
    error = 2 * math.sqrt(LEVEL / 100 * (1 - LEVEL / 100) / data_sets)
    print(f"{data_sets} data sets, {samples} samples each, {LEVEL:g}% intervals; "
          f"a share is known to about {error:.3f}\n")
    print("| proportion | cases | percentile | BCa | Wilson | no bootstrap interval |")
    print("| ---: | ---: | ---: | ---: | ---: | ---: |")
    with tempfile.TemporaryDirectory() as folder:
        path = pathlib.Path(folder) / "simulated.csv"
        for proportion in (0.05, 0.2, 0.5):
            for cases in (20, 50, 200):
                simulate(path, proportion, cases, data_sets)
                shares = []
                for kind in ("percentile", "bca"):
                    results = analyse(program, path, samples, kind)
                    assert len(results) == data_sets
                    held, missing = share_holding(results, BOUNDS["bootstrap"], proportion)
                    shares.append(held)
                wilson, _ = share_holding(results, BOUNDS["wilson"], proportion)
                print(f"| {proportion} | {cases} | {shares[0]:.3f} | {shares[1]:.3f} | {wilson:.3f} "
                      f"| {missing:.3f} |", flush=True)


if __name__ == "__main__":
    main()
