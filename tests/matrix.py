#!/usr/bin/python3
"""Runs every scenario in many configurations, which must not change a byte of what comes out.

Usage: matrix.py PROGRAM [--also PROGRAM] [--only TEXT]. The scenarios are the files of
tests/scenarios; --also names a build by another compiler, --only takes those whose name holds the
text. Configurations: threads, cases one by one, rows fetched one by one, languages and time zones of the machine.
"""
import argparse
import glob
import os
import subprocess
import sys
import tempfile

HERE = os.path.dirname(os.path.abspath(__file__))
# Words of the command line, and the environment.
CONFIGURATIONS = {
    '1 thread': (['--threads', '1'], {}),
    '2 threads': (['--threads', '2'], {}),
    '7 threads': (['--threads', '7'], {}),
    'case by case': (['--case-by-case'], {}),
    'case by case, 7 threads': (['--case-by-case', '--threads', '7'], {}),
    'one row at a time': (['--case-by-case', '--rows-at-once', '1'], {}),
    'German': ([], {'LC_ALL': 'de_DE.UTF-8'}),
    'Turkish': ([], {'LC_ALL': 'tr_TR.UTF-8'}),
    'no language': ([], {'LC_ALL': 'C'}),
    'far east': ([], {'TZ': 'Pacific/Kiritimati'}),
    'half hours': ([], {'TZ': 'America/St_Johns'}),
}


def sections_of(path):
    """The sections of a scenario by their headings; a blank line before the next belongs to none."""
    sections, lines = {}, None
    with open(path, encoding='utf-8', newline='') as file:
        for line in file.read().split('\n'):
            if line.startswith('--- '):
                lines = sections.setdefault(line[4:], [])
            elif lines is not None:
                lines.append(line)
    return {heading: '\n'.join(lines).rstrip('\n') + '\n' for heading, lines in sections.items()}


def write_files(sections, folder):
    for heading, text in sections.items():
        kind, _, name = heading.partition(' ')
        if kind in ('data', 'schema'):
            usual = 'data.csv' if kind == 'data' else 'data.schema.json'
            with open(os.path.join(folder, name or usual), 'w', encoding='utf-8') as file:
                file.write(text)


def outcome(program, sections, folder, words, changes, languages):
    environment = {'PATH': os.environ['PATH'], 'COLUMNS': '100', 'LC_ALL': 'C.UTF-8', 'TZ': 'UTC',
                   'LOCPATH': languages} | changes
    if environment['LC_ALL'].startswith('C'):
        del environment['LOCPATH']
    options = sections.get('options', '').split()
    done = subprocess.run([program, 'run', 'data.csv', *options, '-c', sections['command'].rstrip('\n'),
                           '--format', 'json', *words], cwd=folder, env=environment,
                          capture_output=True, timeout=600)
    return done.returncode, done.stdout, done.stderr


def make_languages(folder):
    for name in ('de_DE', 'tr_TR'):
        subprocess.run(['localedef', '-f', 'UTF-8', '-i', name, os.path.join(folder, f'{name}.UTF-8')],
                       check=True, capture_output=True)


def main():
    parser = argparse.ArgumentParser(usage=__doc__)
    parser.add_argument('program')
    parser.add_argument('--also')
    parser.add_argument('--only', default='')
    options = parser.parse_args()
    program = os.path.abspath(options.program)
    scenarios = [path for path in sorted(glob.glob(os.path.join(HERE, 'scenarios', '*.test')))
                 if options.only in os.path.basename(path)]
    runs = differences = 0
    with tempfile.TemporaryDirectory() as languages:
        make_languages(languages)
        for path in scenarios:
            sections = sections_of(path)
            with tempfile.TemporaryDirectory() as folder:
                write_files(sections, folder)
                wanted = outcome(program, sections, folder, [], {}, languages)
                others = [(name, program, *how) for name, how in CONFIGURATIONS.items()]
                if options.also:
                    others.append(('other compiler', os.path.abspath(options.also), [], {}))
                for name, other, words, changes in others:
                    runs += 1
                    if outcome(other, sections, folder, words, changes, languages) != wanted:
                        differences += 1
                        print(f'{os.path.basename(path)}: differs with {name}')
    print(f'{len(scenarios)} scenarios, {runs} runs in other configurations, {differences} differ')
    sys.exit(differences != 0 or not scenarios)


if __name__ == '__main__':
    main()
