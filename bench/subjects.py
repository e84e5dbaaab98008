"""What is measured: for each subject the data, the readers, and what the ratios stand for."""

import csv
import io
import pathlib
import shutil
import subprocess
import tempfile

from measuring import Reader, compare

COLUMNS = ["a", "b", "c", "d"]
INTERVALS = (
    "PROPORTIONS ONESAMPLE v TESTVAL=0.5 CITYPES=ALL TESTTYPES=ALL /SUCCESS VALUE=LEVEL(1)"
)


class Bench:
    """The programs, a scratch folder that goes away, and how much is asked for."""

    def __init__(self, build, threads, rounds):
        self.program = build / "bin" / "proportions"
        self.engine = build / "bin" / "bench_engine"
        self.empty = build / "bin" / "bench_empty"
        self.peers = pathlib.Path(__file__).parent / "peers"
        self.threads = threads
        self.rounds = rounds
        self.scratch = pathlib.Path(tempfile.mkdtemp(prefix="proportions-bench-"))

    def __enter__(self):
        return self

    def __exit__(self, *_):
        shutil.rmtree(self.scratch, ignore_errors=True)

    def make(self, name, query, options="FORMAT parquet"):
        """A file with the rows of a query."""
        path = self.scratch / name
        if name.endswith(".duckdb"):
            statements = [f"ATTACH '{path}' AS made", f"CREATE TABLE made.t AS {query}"]
        else:
            statements = [f"COPY ({query}) TO '{path}' ({options})"]
        subprocess.run([self.engine, str(self.threads), *statements], check=True, stdout=-3)
        return path

    def ours(self, name, data, command, *options, answer=lambda _: None, keep=True):
        arguments = [self.program, "run", data, "-c", command, "--format", "csv"]
        return Reader(name, [*arguments, "--threads", self.threads, *options], answer, keep)

    def bare(self, name, *statements, answer=lambda _: None):
        return Reader(name, [self.engine, self.threads, *statements], answer)


def successes(output):
    """The observed successes of each variable, from tidy csv."""
    found = {}
    for row in csv.DictReader(io.StringIO(output.decode())):
        if row["statistic"].endswith("Successes"):
            found.setdefault(row["variable"], float(row["value"]))
    return list(found.values())


def numbers(output):
    return [float(value) for line in output.decode().split() for value in line.split(",")]


def ones(output):
    """The ones of each column, from the engine's counts of the distinct rows."""
    rows = [[float(value) for value in line.split(",")] for line in output.decode().split()]
    return [sum(row[-1] for row in rows if row[i] == 1) for i in range(len(rows[0]) - 1)]


def few_values(rows):
    parts = ["(hash(i) % 10 < 3)", "(hash(i + 1) % 2)", "(hash(i + 2) % 7 = 0)", "(hash(i + 3) % 3 = 0)"]
    columns = ", ".join(f"{part}::DOUBLE AS {name}" for part, name in zip(parts, COLUMNS))
    return f"SELECT {columns} FROM range({rows}) t(i)"


def installed(*command):
    found = shutil.which(command[0])
    return found and subprocess.run([found, *command[1:]], stdout=-3, stderr=-3).returncode == 0


def peers_of_csv(bench, path):
    """The peers that are installed here; a line for each that is not."""
    readers = []
    python = "/usr/bin/python3"
    if installed(python, "-c", "import pandas, statsmodels"):
        script = bench.peers / "statsmodels_counts.py"
        readers.append(Reader("pandas, statsmodels", [python, script, path, *COLUMNS], numbers))
    else:
        print("without pandas and statsmodels, which are not installed (script/bench --peers)")
    if installed("Rscript", "-e", "library(data.table)"):
        arguments = ["Rscript", bench.peers / "datatable_counts.R", bench.threads, path]
        readers.append(Reader("R data.table", [*arguments, *COLUMNS], numbers))
    else:
        print("without R's data.table, which is not installed (script/bench --peers)")
    return readers


def file_of(bench, kind, rows):
    """Few-valued numeric columns in one kind of file: this program, limits, peers."""
    name = f"data.{kind}"
    options = "FORMAT csv, HEADER" if kind == "csv" else "FORMAT parquet"
    path = bench.make(name, few_values(rows), options)
    source, attach, data = f"'{path}'", [], path
    if kind == "duckdb":
        source, attach, data = "made.t", [f"ATTACH '{path}' AS made (READ_ONLY)"], f"{path}?table=t"
    if kind == "csv":
        types = ", ".join(f"'{column}': 'DOUBLE'" for column in COLUMNS)
        source = f"read_csv({source}, columns={{{types}}}, header=true, auto_detect=false)"
    listed = ", ".join(COLUMNS)
    sums = ", ".join(f"sum({column})" for column in COLUMNS)
    group = f"SELECT {listed}, count(*) FROM {source} GROUP BY {listed}"
    command = f"PROPORTIONS ONESAMPLE {' '.join(COLUMNS)}"
    readers = [
        bench.ours("proportions", data, command, answer=successes),
        bench.bare("bare engine, GROUP BY", *attach, group, answer=ones),
        bench.bare("bare engine, plain sums", *attach, f"SELECT {sums} FROM {source}", answer=numbers),
    ]
    if kind == "csv":
        readers += peers_of_csv(bench, path)
    results = compare(readers, bench.rounds)
    path.unlink()
    return results


def wide(bench, variables, rows):
    """Every case through the stream: too many columns for any two cases to be alike."""
    parts = ", ".join(f"(hash(i * {variables} + {v}) % 4 = 0)::DOUBLE AS v{v}" for v in range(variables))
    path = bench.make("wide.parquet", f"SELECT {parts} FROM range({rows}) t(i)")
    sums = ", ".join(f"sum(v{v})" for v in range(variables))
    results = compare(
        [
            bench.ours("proportions", path, f"PROPORTIONS ONESAMPLE v0..v{variables - 1}", answer=successes),
            bench.bare("bare engine, plain sums", f"SELECT {sums} FROM '{path}'", answer=numbers),
        ],
        bench.rounds,
    )
    path.unlink()
    return results


def groups(bench, count):
    """Split groups of ten cases each, all intervals and tests, to csv on a pipe."""
    query = f"SELECT i // 10 AS g, (hash(i) % 3 = 0)::DOUBLE AS v FROM range({count * 10}) t(i)"
    path = bench.make(f"groups{count}.parquet", query)
    reader = bench.ours(f"{count:,} groups", path, INTERVALS, "--split", "g", "--quiet", keep=False)
    return compare([reader], bench.rounds)[0]


def memory(bench, rows):
    """A fifth as many distinct cases as rows: as patterns, and one by one."""
    query = f"SELECT i // 5 AS g, (hash(i // 5) % 3 = 0)::DOUBLE AS v FROM range({rows}) t(i)"
    path = bench.make("memory.parquet", query)
    command = "PROPORTIONS ONESAMPLE g v /SUCCESS VALUE=CUTPOINT(0.5)"
    readers = [
        bench.ours("as patterns", path, command, answer=successes),
        bench.ours("case by case", path, command, "--case-by-case", answer=successes),
    ]
    results = compare(readers, bench.rounds)
    path.unlink()
    return results


def cells_of(bench, count):
    query = f"SELECT i // 10 AS g, (hash(i) % 3 = 0)::DOUBLE AS v FROM range({count * 10}) t(i)"
    path = bench.make("cells.parquet", query)
    arguments = bench.ours("", path, INTERVALS, "--split", "g", "--quiet").arguments
    lines = subprocess.run(arguments, check=True, capture_output=True).stdout.count(b"\n")
    return (lines - 1) / count


def bootstrap(bench, rows, samples):
    """A default command with and without samples: the difference is what they cost."""
    path = bench.make(f"bootstrap{rows}.parquet", few_values(rows))
    command = "PROPORTIONS ONESAMPLE a"
    sampled = [str(samples), "--seed", "1"]
    return compare(
        [
            bench.ours(f"{rows:,} rows, {samples:,} samples", path, command, "--bootstrap", *sampled),
            bench.ours(f"{rows:,} rows, 1 sample", path, command, "--bootstrap", "1", "--seed", "1"),
        ],
        bench.rounds,
    )


def small(bench):
    """What a run costs that has next to nothing to do."""
    path = bench.make("small.csv", few_values(100), "FORMAT csv, HEADER")
    return compare(
        [
            bench.ours("a run of 100 rows", path, "PROPORTIONS ONESAMPLE a b c d"),
            bench.bare("bare engine, one row", "SELECT 1"),
            Reader("--version", [bench.program, "--version"], lambda _: None),
            Reader("an empty program", [bench.empty], lambda _: None),
        ],
        max(bench.rounds, 5),
    )
