"""Runs programs and says what they took: wall time, processor time, memory, time to first output."""

import os
import statistics
import subprocess
import tempfile
import time
from dataclasses import dataclass


@dataclass
class Run:
    """One run of a program. Times in seconds, memory in megabytes."""

    wall: float
    processor: float
    peak: float
    first: float  # until the first byte of output
    output: bytes


class Failed(Exception):
    """A program did not do what it was started for."""


def run(arguments, keep=True):
    """Runs a program to its end, its output through a pipe; `keep` holds that output.

    Without it only the output's length is known, so that a measurement of memory is not that of
    this program too; `output` is then the last block.
    """
    start = time.perf_counter()
    errors = tempfile.TemporaryFile()
    process = subprocess.Popen(arguments, stdout=subprocess.PIPE, stderr=errors)
    first = None
    blocks = []
    while block := os.read(process.stdout.fileno(), 1 << 20):
        first = first or time.perf_counter() - start
        if keep or not blocks:
            blocks.append(block)
        else:
            blocks[0] = block
    _, status, usage = os.wait4(process.pid, 0)
    wall = time.perf_counter() - start
    process.returncode = os.waitstatus_to_exitcode(status)
    process.stdout.close()
    errors.seek(0)
    text = errors.read().decode(errors="replace").strip()
    errors.close()
    if process.returncode != 0:
        raise Failed(f"{arguments[0]} ended with {process.returncode}: {text[-500:]}")
    return Run(
        wall,
        usage.ru_utime + usage.ru_stime,
        usage.ru_maxrss / 1024,
        first if first is not None else wall,
        b"".join(blocks),
    )


class Reader:
    """A program that answers a question: how it is started, and how its answer is read."""

    def __init__(self, name, arguments, answer, keep=True):
        self.name = name
        self.arguments = [str(argument) for argument in arguments]
        self.answer = answer
        self.keep = keep


@dataclass
class Result:
    """All runs of one reader."""

    name: str
    runs: list

    def median(self, what):
        return statistics.median(getattr(run, what) for run in self.runs)

    def ratio(self, other, what):
        """The median of the ratios of one round each, so that a busy minute troubles both."""
        pairs = zip(self.runs, other.runs)
        return statistics.median(getattr(a, what) / getattr(b, what) for a, b in pairs)


def compare(readers, rounds):
    """Runs the readers in turns; their answers must agree. Returns a Result for each."""
    results = [Result(reader.name, []) for reader in readers]
    expected = None
    for _ in range(rounds):
        for reader, result in zip(readers, results):
            measured = run(reader.arguments, reader.keep)
            answer = reader.answer(measured.output)
            if answer is not None and expected is None:
                expected = answer
            if answer is not None and answer != expected:
                raise Failed(f"{reader.name} answers {answer}, not {expected}")
            measured.output = b""
            result.runs.append(measured)
    return results
