#!/usr/bin/env python3
"""The description of the module, completed from the tables of methods, and what the tool refuses.

Usage: describe_module.py TOOL HAND_WRITTEN BUILT.
"""
import json
import os
import subprocess
import sys
import tempfile

TOOL, WRITTEN, BUILT = sys.argv[1:]


def expect(holds, what):
    if not holds:
        sys.exit('describe_module.py: ' + what)


def describe(*arguments):
    done = subprocess.run([TOOL, *arguments], capture_output=True, text=True)
    return done.returncode, done.stderr


def load(path):
    with open(path, encoding='utf-8') as file:
        return json.load(file)


def check_labels(written, completed):
    """Methods get labels of their own; a label and a word that were written by hand stay."""
    expect(written['tables'].keys() == completed['tables'].keys(), 'tables were lost')
    added = 0
    for title, before in written['tables'].items():
        after = completed['tables'][title]
        if 'methods' not in before:
            expect(before == after, 'a table without methods has changed')
            continue
        for label, words in before.get('labels', {}).items():
            expect(words.items() <= after['labels'][label].items(), f'{label}: a word was lost')
        methods = [words for words in after['labels'].values() if words.get('role') == 'method']
        expect(all(words['keyword'] and words['source'] for words in methods), 'a method says nothing')
        expect(any(words['default'] for words in methods), 'no method is the usual one')
        added += len(methods)
    expect(added == 21 + 17, f'{added} methods')


def check_refusals(folder, written):
    """A design that is not there, a file that is not, and a folder in the place of the output."""
    target = os.path.join(folder, 'out.json')
    other = os.path.join(folder, 'other.json')
    table = next(table for table in written['tables'].values() if 'methods' in table)
    table['methods']['design'] = 'no design'
    with open(other, 'w', encoding='utf-8') as file:
        json.dump(written, file)
    status, said = describe(other, target)
    expect(status == 1 and 'no such methods' in said and other in said, f'an unknown design: {said}')
    status, said = describe(os.path.join(folder, 'absent.json'), target)
    expect(status == 1 and 'absent.json' in said, f'no file: {said}')
    status, said = describe(WRITTEN, folder)
    expect(status == 1 and 'cannot write' in said, f'a folder for a target: {said}')
    expect(not os.path.exists(target), 'a refused description left a file')
    expect(describe(WRITTEN)[0] == 2, 'one argument is enough')


if __name__ == '__main__':
    with tempfile.TemporaryDirectory() as place:
        made = os.path.join(place, 'made.json')
        expect(describe(WRITTEN, made) == (0, ''), 'the description cannot be made')
        expect(load(made) == load(BUILT), 'the built description is another one')
        check_labels(load(WRITTEN), load(made))
        check_refusals(place, load(WRITTEN))
