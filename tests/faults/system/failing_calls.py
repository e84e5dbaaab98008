#!/usr/bin/env python3
"""What becomes of a run when a system call fails: every call of every kind, one after the other.

Usage: failing_calls.py PROGRAM LIBRARY TABLES [--all]

LIBRARY makes calls fail (FailingCalls.cpp), TABLES writes files of the engine (make_tables.cpp).
Runs of the program read and write files of many forms. In each the first, second, third, ... call
of a kind fails until a run no longer meets it. Each run must end in one of two ways:

  the fault is survived     status 0, and the output of a sound run, byte for byte
  the fault is told         a documented status that fits the file, a line on standard error with the
                            file and the reason, nothing on standard output, the older output whole

and leaves no file behind either way. A call that an interrupt breaks off, and one that does half of
what it could, are survived. Without --all, only some calls of most runs fail; with it, all do but
for the run that spills, whose calls are too many. It prints the number of fault points then.
"""
import concurrent.futures
import errno
import itertools
import json
import os
import random
import shutil
import subprocess
import sys
import tempfile

PROGRAM, LIBRARY, TABLES = map(os.path.abspath, sys.argv[1:4])
ALL = '--all' in sys.argv
LIBRARIES = os.path.join(os.path.dirname(os.path.dirname(os.path.realpath(PROGRAM))), 'lib')
COMMAND = 'PROPORTIONS /ONESAMPLE v'
OLD = b'an older result\n'
SHORT = 0

# Kind of call, how it fails, whether all calls after it fail as well.
FAULTS = [
    ('open', errno.EMFILE, False),
    ('open', errno.EACCES, True),
    ('read', errno.EIO, False),
    ('read', errno.EIO, True),
    ('read', errno.EINTR, False),
    ('read', SHORT, False),
    ('read', SHORT, True),
    ('list', errno.EIO, False),
    ('map', errno.ENOMEM, False),
    ('status', errno.EIO, False),
    ('status', errno.EACCES, True),
    ('write', errno.ENOSPC, False),
    ('write', errno.EIO, True),
    ('write', errno.EINTR, False),
    ('write', SHORT, False),
    ('write', SHORT, True),
    ('size', errno.ENOSPC, False),
    ('sync', errno.EIO, False),
    ('close', errno.EIO, False),
    ('rename', errno.EACCES, False),
    ('make', errno.ENOSPC, False),
    ('remove', errno.EACCES, False),
]


class Wrong(Exception):
    """A run that ended as none may."""


def expect(holds, what):
    if not holds:
        raise Wrong(what)


def content(path):
    with open(path, 'rb') as file:
        return file.read()


def everything_in(folder):
    return sorted(os.path.join(place, name) for place, folders, files in os.walk(folder) for name in folders + files)


def is_under(path, folder):
    return path == folder or path.startswith(folder + '/')


class Case:
    """A run with folders of its own for its data, its output, its temporary files.

    `files` are texts to write; `address` names what is analysed of them. Every `step`th call fails with
    --all; without it every call of a run in `brief`, and one of every fifth kind of fault of the others.
    """

    def __init__(self, root, name, output, files, address, options=(), stdin=None, command=None, brief=False, step=1):
        self.name, self.brief, self.step = name, brief, step
        self.root = os.path.join(root, name)
        self.data, self.out, self.temporary = (os.path.join(self.root, part) for part in ('data', 'out', 'tmp'))
        for folder in (self.data, self.out, self.temporary):
            os.makedirs(folder)
        for file, text in files.items():
            with open(os.path.join(self.data, file), 'w') as written:
                written.write(text)
        self.folders = [self.data, self.out, self.temporary]
        self.output = os.path.join(self.out, output)
        self.stdin = stdin and os.path.join(self.data, stdin)
        self.address = address if stdin else os.path.join(self.data, address)
        self.command = ['-f', os.path.join(self.data, command)] if command else ['-c', COMMAND]
        self.options = [*options, '--threads', '1']

    def run(self, **faults):
        """Status, standard output and standard error."""
        with open(self.output, 'wb') as older:
            older.write(OLD)
        self.before = everything_in(self.data) + everything_in(self.out)
        with open(self.stdin or os.devnull) as stdin:
            done = subprocess.run([PROGRAM, 'run', self.address, *self.command, '-o', self.output, *self.options],
                                  env={**os.environ, 'TMPDIR': self.temporary, 'LC_ALL': 'C', **faults},
                                  stdin=stdin, capture_output=True, cwd=self.root)
        return done.returncode, done.stdout.decode(), done.stderr.decode()

    def run_sound(self):
        status, out, err = self.run()
        expect(status == 0 and out == '', f'{self.name} without a fault: {status} {out}{err}')
        self.sound = content(self.output), err

    def run_failing(self, fault, at):
        """How the run ended, and which file was met; None when none was."""
        kind, how, lasts = fault
        report = os.path.join(self.root, 'report')
        ended = self.run(LD_PRELOAD=LIBRARY, FAILING_CALLS=kind, FAILING_FOLDERS=':'.join(self.folders),
                         FAILING_AT=str(at), FAILING_HOW=str(how), FAILING_LASTS='1' if lasts else '',
                         FAILING_REPORT=report)
        if not os.path.exists(report):
            return ended, None
        met = content(report).decode()
        os.remove(report)
        return ended, met

    def fitting(self, met):
        """Statuses and names of a message about a file."""
        if is_under(met, self.out):
            return [4], [self.output]
        if is_under(met, self.temporary):
            return [3, 4], [self.temporary, f'"{self.address}"', f' {self.address} ']
        if self.command[0] == '-f' and met == self.command[1]:
            return [2], [met]
        if is_under(met, self.data):
            return [3], [met, ' - '] if self.stdin else [met, self.address]
        return [2, 3], [os.path.basename(met)]

    def check_told(self, fault, ended, met):
        kind, how, lasts = fault
        status, _, err = ended
        last = err.splitlines()[-1]
        expect(last.startswith('proportions: ') and 'nternal' not in err, 'no message of a failed run')
        fits = [self.fitting(met)]
        if lasts:  # what met the first may go on, and meet others
            fits += [self.fitting(folder) for folder in self.folders]
        expect(any(status in statuses and any(name in last for name in names) for statuses, names in fits),
               f'not a fitting status and name: {fits[0]}')
        # The loader has reasons of its own; the engine has none for a file that it cannot look at.
        if self.folders != [LIBRARIES] and not (kind == 'status' and 'No files found' in last):
            expect(os.strerror(how) in last, 'no reason')

    def check(self, fault, ended, met):
        """Whether the fault was survived."""
        kind, how, lasts = fault
        status, out, err = ended
        expect(out == '', 'something on standard output')
        if status == 0:
            expect(content(self.output) == self.sound[0], 'another output')
            expect(err == self.sound[1], 'another message')
        else:
            # An interrupt is an error to the engine ("Could not ..."), to the library that writes
            # workbooks, and to the loader, as is half a read to that.
            theirs = 'cannot be loaded' in err
            if how == errno.EINTR:
                theirs = theirs or 'Could not' in err or 'workbook_close()' in err
            expect(how not in (SHORT, errno.EINTR) or theirs, 'not survived')
            self.check_told(fault, ended, met)
            expect(content(self.output) == OLD, 'the older output is gone')
        expect(everything_in(self.data) + everything_in(self.out) == self.before, 'files have come or gone')
        # A folder that cannot be looked at, opened, listed or removed stays.
        stays = kind in ('status', 'open', 'list', 'remove') and (lasts or is_under(met, self.temporary))
        if not stays:
            expect(everything_in(self.temporary) == [], 'a temporary file is left')
        return status == 0

    def clean(self):
        for left in everything_in(self.out) + everything_in(self.temporary):
            shutil.rmtree(left, ignore_errors=True)
            if os.path.isfile(left):
                os.remove(left)

    def fail_each(self, fault, first):
        """How many faults were told and how many survived."""
        counts = [0, 0]
        for at in itertools.count(first, self.step) if ALL or self.brief else [first]:
            ended, met = self.run_failing(fault, at)
            if met is None:
                expect(ended[0] == 0 and content(self.output) == self.sound[0], f'no fault, yet {ended}')
                return counts
            try:
                counts[self.check(fault, ended, met)] += 1
            except Wrong as wrong:
                how = os.strerror(fault[1]) if fault[1] else 'in part'
                raise Wrong(f'{self.name}: {fault[0]} {at}{" and on" if fault[2] else ""} ({how}), of {met}: {wrong}\n'
                            f'status {ended[0]}\n{ended[1]}{ended[2]}') from None
            finally:
                self.clean()
        return counts

    def fail_all(self, number):
        """The counts of every fault, and what was wrong, of the case with this number."""
        self.run_sound()
        counts, problems = {}, []
        for index, fault in enumerate(FAULTS):
            if self.brief and not ALL and (fault[2] or fault[1] in (SHORT, errno.EINTR)):
                continue
            if not self.brief and not ALL and (index + number) % 5 != 0:
                continue
            try:
                counts[fault] = self.fail_each(fault, 1 if ALL or self.brief else 1 + (number + index) % 7)
            except Wrong as wrong:
                problems.append(str(wrong))
                print(wrong, file=sys.stderr, flush=True)
        return counts, problems


def rows(quote):
    generator = random.Random(1)
    lines = ['g,v,w']
    for _ in range(2000):
        group = generator.choice('ab')
        lines.append(f'{quote}{group}{quote},{generator.randint(0, 1)},{generator.randint(1, 3)}')
    return '\n'.join(lines) + '\n'


def make_cases(root):
    plain = rows('')
    split = ['--split', 'g']
    schema = json.dumps({'fields': [{'name': 'v', 'title': 'Vote', 'missingValues': ['0']}], 'proportions:weight': 'w'})
    package = json.dumps({'resources': [{'path': 'plain.csv', 'schema': 'other.json'}]})
    cases = [
        Case(root, 'plain CSV to JSON', 'out.json', {'plain.csv': plain}, 'plain.csv', split, brief=True),
        Case(root, 'CSV with quotes to CSV', 'out.csv', {'quoted.csv': rows('"')}, 'quoted.csv', split),
        Case(root, 'schema beside it, to HTML', 'out.html', {'plain.csv': plain, 'plain.schema.json': schema}, 'plain.csv'),
        Case(root, 'data package, to text', 'out.txt',
             {'plain.csv': plain, 'datapackage.json': package, 'other.json': schema}, 'plain.csv'),
        Case(root, 'several files', 'out.csv', {'one.csv': plain, 'two.csv': plain}, '*.csv'),
        Case(root, 'standard input', 'out.csv', {'plain.csv': plain}, '-', stdin='plain.csv'),
        Case(root, 'command file, to a workbook', 'out.xlsx', {'plain.csv': plain, 'do.txt': COMMAND}, 'plain.csv',
             command='do.txt'),
        Case(root, 'Parquet', 'out.csv', {}, 'table.parquet', split),
        Case(root, 'database', 'out.csv', {}, 'table.duckdb?table=t', split),
    ]
    libraries = Case(root, 'the program\'s own files', 'out.csv', {'plain.csv': plain}, 'plain.csv')
    libraries.folders = [LIBRARIES]
    cases.append(libraries)
    spilling = Case(root, 'spilling', 'out.csv', {}, 'table.parquet',
                    [*split, '--case-by-case', '--memory', '20MB'], step=211)
    spilling.command[1] = 'PROPORTIONS /ONESAMPLE v x TESTTYPES=NONE'
    if ALL:
        cases.append(spilling)
    table = 'SELECT i % 2 AS v, i % 3 AS g, i % 5 AS w FROM range(5000) t(i)'
    large = 'SELECT i * 7919 % 3 AS g, i % 2 AS v, i * 31 % 1000003 AS x FROM range(1000000) t(i)'
    by_name = {case.name: case.data for case in cases}
    subprocess.run([TABLES, f"COPY ({table}) TO '{by_name['Parquet']}/table.parquet' (FORMAT parquet, ROW_GROUP_SIZE 2048)",
                    f"ATTACH '{by_name['database']}/table.duckdb' AS d", f'CREATE TABLE d.t AS {table}', 'DETACH d',
                    f"COPY ({large}) TO '{spilling.data}/table.parquet' (FORMAT parquet, ROW_GROUP_SIZE 20000)"][:5 + ALL],
                   check=True)
    return cases


def print_counts(results):
    """Tables in Markdown: told and survived by run, and by the kind of call and of fault."""
    print('| run | fault points | told | survived |\n| --- | --- | --- | --- |')
    by_kind = {}
    for name, counts in results.items():
        told, survived = (sum(count[i] for count in counts.values()) for i in (0, 1))
        print(f'| {name} | {told + survived} | {told} | {survived} |')
        for (kind, how, _), count in counts.items():
            way = {SHORT: 'in part', errno.EINTR: 'interrupted'}.get(how, 'error')
            known = by_kind.setdefault((kind, way), [0, 0])
            by_kind[kind, way] = [known[0] + count[0], known[1] + count[1]]
    print('\n| call | fails | fault points | told | survived |\n| --- | --- | --- | --- | --- |')
    for (kind, way), (told, survived) in by_kind.items():
        print(f'| {kind} | {way} | {told + survived} | {told} | {survived} |')


def main():
    with tempfile.TemporaryDirectory() as root:
        cases = make_cases(os.path.realpath(root))
        with concurrent.futures.ThreadPoolExecutor(os.cpu_count() if ALL else 1) as pool:
            ended = dict(zip([case.name for case in cases], pool.map(Case.fail_all, cases, itertools.count())))
    if ALL:
        print_counts({name: counts for name, (counts, _) in ended.items()})
    points = sum(sum(count) for counts, _ in ended.values() for count in counts.values())
    problems = [problem for _, found in ended.values() for problem in found]
    print(f'fault points, system calls: {points}; met in a wrong way, kinds of fault: {len(problems)}')
    sys.exit(1 if problems or points < 100 else 0)


if __name__ == '__main__':
    main()
