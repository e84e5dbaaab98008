#!/usr/bin/env python3
"""What a run costs on this side when a cluster does the counting.

Starts three shards (script/clickhouse-servers), fills tables of growing size and of growing numbers
of patterns, and runs the program on them through a proxy that counts bytes. Each answer is checked.

    bench/cluster.py [PROGRAM] [ROWS...]

Prints one line for each table: rows, patterns, wall time, the client's processor time, bytes that
the server sent, the client's peak memory. Exit status 1 when an answer is wrong, or when the client's
bytes grow with the rows.
"""

import json
import os
import socket
import statistics
import subprocess
import sys
import tempfile
import threading
import time
import urllib.request

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
REPEATS = 3


class Cluster:
    """Three shards, for as long as the object is in use."""

    def __init__(self, folder):
        self.process = subprocess.Popen(
            [os.path.join(ROOT, "script", "clickhouse-servers"), os.path.join(folder, "servers")],
            stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
        self.ports = []
        for line in self.process.stdout:
            words = line.split()
            if words[0] == "ready":
                return
            self.ports.append(int(words[3]))
        sys.exit("the servers did not start (is clickhouse-server installed?)")

    def ask(self, sql, shard=0):
        opener = urllib.request.build_opener(urllib.request.ProxyHandler({}))
        url = f"http://127.0.0.1:{self.ports[shard]}/"
        return opener.open(url, data=sql.encode()).read().decode()

    def fill(self, name, rows, patterns):
        """A table of so many rows, a third on each shard, with so many different cases."""
        for shard in range(3):
            self.ask(f"CREATE TABLE {name}_part (v UInt8, g UInt32) ENGINE = MergeTree ORDER BY "
                     "tuple()", shard)
            share = rows // 3 + (1 if shard < rows % 3 else 0)
            self.ask(f"INSERT INTO {name}_part SELECT number % 2, intDiv(number, 2) % "
                     f"{patterns // 2} FROM system.numbers LIMIT {share}", shard)
        self.ask(f"CREATE TABLE {name} AS {name}_part ENGINE = Distributed(shards, default, "
                 f"{name}_part)")

    def end(self):
        self.process.stdin.close()
        self.process.wait()


class CountingProxy:
    """Hands every connection on to a port of this machine and counts what comes back."""

    def __init__(self, port):
        self.target = port
        self.received = 0
        self.listener = socket.create_server(("127.0.0.1", 0))
        self.port = self.listener.getsockname()[1]
        threading.Thread(target=self.serve, daemon=True).start()

    def serve(self):
        while True:
            client = self.listener.accept()[0]
            server = socket.create_connection(("127.0.0.1", self.target))
            for source, sink, counts in ((client, server, False), (server, client, True)):
                threading.Thread(target=self.carry, args=(source, sink, counts),
                                 daemon=True).start()

    def carry(self, source, sink, counts):
        try:
            while data := source.recv(65536):
                if counts:
                    self.received += len(data)
                sink.sendall(data)
            sink.shutdown(socket.SHUT_WR)
        except OSError:
            pass  # one side hung up


def run(program, address):
    """Wall time, processor time, peak memory in MB, and the document of one run."""
    command = "PROPORTIONS /ONESAMPLE v g TESTTYPES=NONE CITYPES=WALD /SUCCESS VALUE=LAST"
    begin = time.monotonic()
    with tempfile.TemporaryFile() as output:
        process = subprocess.Popen([program, "run", address, "-c", command, "--format", "json"],
                                   stdout=output)
        _, status, usage = os.wait4(process.pid, 0)
        process.returncode = os.waitstatus_to_exitcode(status)
        wall = time.monotonic() - begin
        output.seek(0)
        document = json.load(output)
    return wall, usage.ru_utime + usage.ru_stime, usage.ru_maxrss / 1024, document


def measure(program, proxy, name, rows, patterns):
    """The medians over some runs of the same table."""
    walls, processors, memories, received = [], [], [], []
    for _ in range(REPEATS):
        before = proxy.received
        address = f"clickhouse://127.0.0.1:{proxy.port}/default/{name}"
        wall, processor, memory, document = run(program, address)
        if document["data"]["cases"]["read"] != rows:
            sys.exit(f"{name}: {document['data']['cases']['read']} cases instead of {rows}")
        walls.append(wall)
        processors.append(processor)
        memories.append(memory)
        received.append(proxy.received - before)
    medians = [statistics.median(list) for list in (walls, processors, received, memories)]
    print(f"{rows:>12,} {patterns:>9,} {medians[0]:>8.2f} {medians[1]:>10.3f} {medians[2]:>12,.0f}"
          f" {medians[3]:>8.0f}", flush=True)
    return medians


def main():
    arguments = sys.argv[1:]
    program = arguments.pop(0) if arguments and not arguments[0].isdigit() else \
        os.path.join(ROOT, "build", "bin", "proportions")
    sizes = [int(text) for text in arguments] or [10**5, 10**6, 10**7]
    with tempfile.TemporaryDirectory() as folder:
        os.chmod(folder, 0o755)
        cluster = Cluster(folder)
        try:
            proxy = CountingProxy(cluster.ports[0])
            print(f"{'rows':>12} {'patterns':>9} {'wall s':>8} {'client s':>10} {'bytes':>12}"
                  f" {'MB':>8}")
            by_size = []
            for rows in sizes:
                cluster.fill(f"rows_{rows}", rows, 20)
                by_size.append(measure(program, proxy, f"rows_{rows}", rows, 20))
            for patterns in (200, 2000, 20000):
                cluster.fill(f"patterns_{patterns}", 10**6, patterns)
                measure(program, proxy, f"patterns_{patterns}", 10**6, patterns)
        finally:
            cluster.end()
    if max(line[2] for line in by_size) > 1.5 * min(line[2] for line in by_size):
        sys.exit("the bytes grow with the rows")


if __name__ == "__main__":
    main()
