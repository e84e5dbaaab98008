"""Figures as tables: on a terminal, and kept in docs/performance.md."""

from dataclasses import dataclass, field

KINDS = {"csv": "CSV", "parquet": "Parquet", "duckdb": "Database table"}


@dataclass
class Table:
    title: str
    heads: list
    rows: list
    notes: list = field(default_factory=list)
    targets: list = field(default_factory=list)  # of Target

    def text(self):
        """Aligned columns, the first to the left."""
        lines = [self.heads, *self.rows]
        widths = [max(len(line[i]) for line in lines) for i in range(len(self.heads))]
        aligned = [
            "  ".join(cell.ljust(w) if i == 0 else cell.rjust(w) for i, (cell, w) in enumerate(zip(line, widths)))
            for line in lines
        ]
        return "\n".join([self.title, *(f"  {line.rstrip()}" for line in aligned), *(f"  {note}" for note in self.notes)])

    def markdown(self):
        rule = ["---"] + ["---:"] * (len(self.heads) - 1)
        lines = ["| " + " | ".join(line) + " |" for line in [self.heads, rule, *self.rows]]
        return "\n".join([f"### {self.title}", "", *lines, *(["", " ".join(self.notes)] if self.notes else [])])


@dataclass
class Target:
    """A figure that is to stay at or below (else at or above) a limit."""

    name: str
    figure: float
    limit: float
    unit: str = ""
    most: bool = True

    def row(self):
        holds = self.figure <= self.limit if self.most else self.figure >= self.limit
        bound = "at most" if self.most else "at least"
        return [
            self.name,
            f"{self.figure:.3g}{self.unit}",
            f"{bound} {self.limit:g}{self.unit}",
            "yes" if holds else "no",
        ]


def targets(tables):
    """All targets of some tables as a table of their own; nothing when there are none."""
    rows = [target.row() for table in tables for target in table.targets]
    return [Table("Targets", ["figure", "now", "wanted", "holds"], rows)] if rows else []


def seconds(value):
    return f"{value:.3f} s"


def taken(result):
    """The columns that every table begins with."""
    return [
        result.name,
        seconds(result.median("wall")),
        seconds(result.median("processor")),
        f"{result.median('peak'):.0f} MB",
    ]


TAKEN = ["reader", "wall", "processor", "peak"]


# At which size a kind of file is judged, and against whom: wall time of ours by theirs.
JUDGED_ROWS = 10**7
JUDGED = {
    "csv": {"bare engine, GROUP BY": 1.1, "pandas, statsmodels": 1 / 6, "R data.table": 1 / 2.5},
    "parquet": {"bare engine, GROUP BY": 1.0, "bare engine, plain sums": 1.5},
    "duckdb": {"bare engine, GROUP BY": 1.0, "bare engine, plain sums": 1.5},
}


def targets_of_files(kind, rows, ours, others):
    found = []
    if rows == 10**8:
        found.append(Target(f"{KINDS[kind]}, {rows:,} rows: peak memory", ours.median("peak"), 600, " MB"))
    if rows != JUDGED_ROWS:
        return found
    for other in others:
        limit = JUDGED[kind].get(other.name)
        if limit is None:
            continue
        name = f"{KINDS[kind]}, {rows:,} rows: wall time, ours / {other.name}"
        found.append(Target(name, ours.ratio(other, "wall"), round(limit, 3)))
    return found


def files(kind, rows, results):
    ours, limits = results[0], results[1:]
    lines = [[*taken(ours), "", ""]]
    for other in limits:
        lines.append([*taken(other), *(f"{ours.ratio(other, what):.2f}" for what in ("wall", "processor"))])
    return Table(
        f"{KINDS[kind]}, {rows:,} rows of four numeric columns",
        [*TAKEN, "ours / this, wall", "processor"],
        lines,
        targets=targets_of_files(kind, rows, ours, limits),
    )


def wide(variables, rows, results):
    values = variables * rows
    ours, sums = results
    rate = values / ours.median("processor") / 1e6
    return Table(
        f"Wide: {variables:,} variables of {rows:,} rows, every case through the stream",
        [*TAKEN, "ours / this, wall", "processor"],
        [[*taken(ours), "", ""], [*taken(sums), *(f"{ours.ratio(sums, what):.2f}" for what in ("wall", "processor"))]],
        [
            f"{rate:.0f} million values a second of processor time, the whole run with its two passes;",
            f"{2 * rate:.0f} million a second of one pass.",
        ],
        [Target("Wide: million values a second of processor time, the whole run", rate, 30, most=False)],
    )


def memory(rows, results):
    patterns, stream = results
    ratio = patterns.ratio(stream, "peak")
    return Table(
        f"Many distinct cases: {rows:,} rows, a fifth as many patterns",
        TAKEN,
        [taken(patterns), taken(stream)],
        [f"The patterns take {ratio:.2f} times the memory of the stream."],
        [Target("Many patterns: peak memory, patterns / stream", ratio, 2)],
    )


def groups(cells, results):
    lines = []
    for count, result in results.items():
        each = result.median("processor") / (count * cells) * 1e6
        lines.append([*taken(result), seconds(result.median("first")), f"{each:.2f} us"])
    return Table(
        f"Split groups: all intervals and tests, {cells:.0f} cells a group, csv on a pipe",
        [*TAKEN, "first output", "a cell"],
        lines,
    )


def bootstrap(samples, results):
    lines = []
    costs = []
    for with_samples, without in results.values():
        cost = with_samples.median("wall") - without.median("wall")
        effort = with_samples.median("processor") - without.median("processor")
        costs.append(effort)
        lines += [[*taken(with_samples), seconds(cost), seconds(effort)], [*taken(without), "", ""]]
    return Table(
        f"Bootstrap: a default one-sample command, {samples:,} samples",
        [*TAKEN, "samples alone, wall", "processor"],
        lines,
        [f"From the fewest rows to the most, the samples take {costs[-1] / costs[0]:.2f} times as much."],
    )


def small(results):
    run, engine, version, empty = results

    def milliseconds(result):
        return [f"{result.median(what) * 1e3:.1f} ms" for what in ("wall", "processor")]

    def row(result, peer=None):
        ratios = [f"{result.ratio(peer, what):.1f}" for what in ("wall", "processor")] if peer else ["", ""]
        return [result.name, *milliseconds(result), f"{result.median('peak'):.0f} MB", *ratios]

    return Table(
        "Starting",
        [*TAKEN, "by the next row, wall", "processor"],
        [row(run, engine), row(engine), row(version, empty), row(empty)],
        targets=[
            Target("A small file: wall time of the whole run", run.median("wall") * 1e3, 100, " ms"),
            Target("--version: wall time", version.median("wall") * 1e3, 20, " ms"),
        ],
    )


INTRODUCTION = """# Performance

Written by `script/bench --write`; `script/bench --help` says what can be measured.

{facts}

Each figure is the median of {rounds} turns, in which the readers follow one another; a ratio is the
median of the ratios of one turn each. All readers of a table must find the same counts. Processor
time counts all threads; memory is a process's peak, but never less than that of the benchmark which
started it, some 70 MB.

## What the limits are

- A file or table: the engine that reads it. *GROUP BY* is the engine's own way to the same counts;
  *plain sums* reads the same columns and does next to nothing with them, which nothing that reads
  them can beat, as long as the engine reads. Plain CSV is not read by it: making a number of every
  field was nearly all that it cost, and texts can be counted without. There the limit is finding
  the ends of fields.
- Wide data: the plain sums again, but every case has to pass through the procedure, twice: by two
  calls of the host for each value, which touch more memory for a thousand variables than the first
  caches hold. The second pass reads from memory.
- Split groups: the digits. A cell is a number in seventeen digits and the labels around it.
- Bootstrap: samples are drawn from the distinct cases, so the number of rows does not matter.
- Starting: loading the engine's library and opening it. What reads no file does not load it.

## Figures

"""


def write(path, facts, rounds, tables):
    head = INTRODUCTION.format(facts="\n".join(f"- {fact}" for fact in facts), rounds=rounds)
    path.write_text(head + "\n\n".join(table.markdown() for table in tables) + "\n")
