#!/usr/bin/env python3
"""What becomes of the output when writing fails, or when the program is killed while it runs.

Usage: output.py PROGRAM. A terminal that cannot show a workbook, a full device, a limit on the size of files, and kills at random moments: the
file that was there is left whole, or the new one stands in its place whole, and nothing else is left.
"""
import os
import pty
import random
import resource
import signal
import subprocess
import sys
import tempfile
import time

PROGRAM = sys.argv[1]
PLAIN = ['counts', '81/263', '12/48', '--tests', 'ALL', '--intervals', 'ALL']
COUNTS = [*PLAIN, '--format', 'json']
OLD = 'the old file\n' * 100
KILLS = 60


def limit_files():
    signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
    resource.setrlimit(resource.RLIMIT_FSIZE, (512, 512))



def run(arguments, **options):
    return subprocess.run([PROGRAM, *COUNTS, *arguments], capture_output=True, text=True, **options)


def expect(holds, what):
    if not holds:
        sys.exit('output.py: ' + what)


def check_full_device():
    done = run(['-o', '/dev/full'])
    expect(done.returncode == 4, f'a full device ends with status {done.returncode}: {done.stderr}')
    with open('/dev/full', 'w') as full:
        done = subprocess.run([PROGRAM, *COUNTS], stdout=full, stderr=subprocess.PIPE)
    expect(done.returncode == 4, f'a full standard output ends with status {done.returncode}')
    expect(b'No space left on device' in done.stderr, f'not the reason: {done.stderr}')


def on_terminal(arguments):
    """Status and standard error of a run whose standard output is a terminal, and what that shows."""
    reader, terminal = pty.openpty()
    with os.fdopen(reader, 'rb', buffering=0) as shown:
        done = subprocess.run([PROGRAM, *PLAIN, *arguments], stdout=terminal, stderr=subprocess.PIPE)
        os.write(terminal, b'\0')  # something to read, whatever the program wrote
        os.close(terminal)
        return done.returncode, done.stderr, shown.read(100)


def check_terminal(folder):
    status, said, shown = on_terminal(['--format', 'xlsx'])
    expect(status == 2, f'a workbook for a terminal ends with status {status}')
    expect(b'terminal' in said and shown == b'\0', f'a workbook for a terminal: {said} {shown}')
    book = os.path.join(folder, 'book.xlsx')
    status, said, shown = on_terminal(['--format', 'xlsx', '-o', book])
    expect(status == 0 and os.path.getsize(book) > 1000, f'a workbook in a file: {status} {said}')
    os.remove(book)
    status, said, shown = on_terminal(['--format', 'csv'])
    expect(status == 0 and shown.startswith(b'table,'), f'csv on a terminal: {status} {said}')


def content(path):
    with open(path) as file:
        return file.read()


def check_limit(path):
    done = run(['-o', path], preexec_fn=limit_files)
    expect(done.returncode == 4, f'a file too large ends with status {done.returncode}')
    expect(content(path) == OLD, 'the old file is not whole')
    expect(os.listdir(os.path.dirname(path)) == ['out.json'], 'something is left beside the file')


def check_kills(path):
    begin = time.monotonic()
    new = run([]).stdout
    taken = time.monotonic() - begin
    expect(new.startswith('{'), 'no output without a file')
    seen = {'old': 0, 'new': 0}
    generator = random.Random(5)
    for _ in range(KILLS):
        with open(path, 'w') as file:
            file.write(OLD)
        process = subprocess.Popen([PROGRAM, *COUNTS, '-o', path], stderr=subprocess.DEVNULL)
        time.sleep(generator.uniform(0, 1.5 * taken))
        process.kill()
        process.wait()
        found = content(path)
        expect(found in (OLD, new), 'a killed run left neither the old file nor the new one')
        seen['old' if found == OLD else 'new'] += 1
    print(f'{KILLS} kills: the old file {seen["old"]} times, the new one {seen["new"]} times')


if __name__ == '__main__':
    with tempfile.TemporaryDirectory() as folder:
        target = os.path.join(folder, 'out.json')
        with open(target, 'w') as old:
            old.write(OLD)
        check_full_device()
        check_terminal(folder)
        check_limit(target)
        check_kills(target)
