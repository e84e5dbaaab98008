#!/usr/bin/python3
"""Builds a program again with a few of its sources compiled otherwise, and all else as it is built.

  script/instrument.py BUILD PROGRAM OUTPUT --flags FLAGS [--compiler C++] SOURCE...

BUILD is a build folder in which PROGRAM is up to date. The SOURCEs (patterns, from the top of the
repository) are compiled with their own options and FLAGS; the program is linked to OUTPUT with FLAGS
as well. So coverage or a sanitizer of one folder costs that folder, not the whole program.
"""
import argparse
import glob
import json
import os
import re
import shutil
import subprocess
import sys

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
LAUNCHER = ['ccache'] if shutil.which('ccache') else []


def sources_of(patterns):
    return [path for pattern in patterns for path in sorted(glob.glob(os.path.join(ROOT, pattern)))]


class Build:
    def __init__(self, folder):
        self.folder = os.path.abspath(folder)
        with open(os.path.join(self.folder, 'compile_commands.json')) as file:
            self.commands = json.load(file)
        with open(os.path.join(self.folder, 'CMakeCache.txt')) as file:
            self.home = re.search(r'^CMAKE_HOME_DIRECTORY:\w+=(.*)$', file.read(), re.M)[1]

    def link_of(self, program):
        """The command that links a program, as words."""
        commands = subprocess.run(['ninja', '-C', self.folder, '-t', 'commands', program],
                                  check=True, capture_output=True, text=True).stdout
        link = [line for line in commands.splitlines() if f'-o bin/{program} ' in line][-1]
        return re.sub(r'^: && ', '', link).split(' && ')[0].split()

    def compile_of(self, source, link):
        """How a source of the program is compiled: its command as words, and its object."""
        found = []
        for entry in self.commands:
            if os.path.relpath(entry['file'], self.home) == os.path.relpath(source, ROOT):
                words = entry['command'].split()
                found.append((words[1:] if 'ccache' in words[0] else words, words[words.index('-o') + 1]))
        # An object that the program names comes before one that a library holds.
        found.sort(key=lambda one: one[1] not in link)
        if not found:
            raise LookupError(source)
        return found[0]

    def compile(self, words, source, target, flags=(), compiler=None):
        """Compiles `source`, another text of the same place, like `words`; gives the errors."""
        words = [w for w in words[:words.index('-o')] if w != '-Werror']
        command = [*LAUNCHER, compiler or words[0], *words[1:], '-w', *flags, '-o', target, '-c', source]
        done = subprocess.run(command, cwd=self.folder, capture_output=True, text=True)
        return done.stderr if done.returncode else ''

    def link(self, link, objects, output, flags=(), compiler=None):
        """Links with `objects` (original to new) replaced; members of libraries come first."""
        words = [objects.get(word, word) for word in link]
        at = words.index('-o')
        more = [new for old, new in objects.items() if old not in link]
        command = [compiler or words[0], *words[1:at], *flags, *more, '-o', output, *words[at + 2:]]
        subprocess.run(command, cwd=self.folder, check=True)


def main():
    parser = argparse.ArgumentParser(usage=__doc__)
    parser.add_argument('build')
    parser.add_argument('program')
    parser.add_argument('output')
    parser.add_argument('--flags', required=True)
    parser.add_argument('--compiler')
    parser.add_argument('sources', nargs='+')
    options = parser.parse_args()
    build = Build(options.build)
    link = build.link_of(options.program)
    flags = options.flags.split()
    objects = {}
    folder = os.path.abspath(options.output) + '.objects'
    os.makedirs(folder, exist_ok=True)
    for source in sources_of(options.sources):
        words, original = build.compile_of(source, link)
        target = os.path.join(folder, os.path.basename(source) + '.o')
        errors = build.compile(words, source, target, flags, options.compiler)
        if errors:
            sys.exit(errors)
        objects[original] = target
    build.link(link, objects, os.path.abspath(options.output), flags, options.compiler)


if __name__ == '__main__':
    main()
