"""The table of script/coverage: coverage.py FILE ROOT MISSED, FILE an export of llvm-cov.

What no test ran, and which outcome of a condition was never seen, is written into the file MISSED.
"""
import collections
import json
import os
import sys

FOLDERS = ('backend/proportions', 'embedded', 'render', 'cli')
# Here each line and branch is to be run, or named in the list of exemptions, which is to stay short.
WHOLE = 'backend/proportions'
EXEMPT = os.path.join(os.path.dirname(os.path.abspath(__file__)), 'coverage.exempt')
MOST_EXEMPT = {'backend/proportions': 10, 'backend/proportions/statistics': 10}


def lines_of(segments):
    """How often each line was run; the lines without code are left out."""
    starts = collections.defaultdict(list)
    for segment in segments:
        starts[segment[0]].append(segment)
    counts, before = {}, None
    for line in range(segments[0][0], segments[-1][0] + 1) if segments else ():
        here = starts[line]
        entries = [count for _, _, count, has_count, entry, gap in here
                   if has_count and entry and not gap]
        skipped = bool(here) and not here[0][3] and here[0][4]
        if not skipped and (entries or (before and before[3])):
            counts[line] = max(entries + ([before[2]] if before and before[3] else []))
        before = here[-1] if here else before
    return counts


def branches_of(records):
    """How often each condition was true and was false, instances of a template taken together."""
    seen = collections.defaultdict(lambda: [0, 0])
    for line, column, _, _, true, false, *_ in records:
        seen[line, column][0] += true
        seen[line, column][1] += false
    return seen


class Exemptions:
    """Places that no test reaches, each `FILE | text in the line | reason`."""

    def __init__(self):
        self.reasons, self.used = {}, set()
        with open(EXEMPT, encoding='utf-8') as file:
            for line in file:
                if line.strip() and not line.startswith('#'):
                    path, text, reason = (part.strip() for part in line.split(' | '))
                    assert reason
                    self.reasons[path, text] = reason

    def hold(self, path, text):
        found = [key for key in self.reasons if key[0] == path and key[1] in text]
        self.used.update(found)
        return bool(found)

    def complaints(self):
        unused = [f'an exemption that nothing needs: {path} | {text}'
                  for path, text in self.reasons if (path, text) not in self.used]
        numbers = collections.Counter(os.path.dirname(path) for path, _ in self.used)
        return unused + [f'{folder}: {number} exemptions' for folder, number in numbers.items()
                         if number > MOST_EXEMPT.get(folder, 0)]


def missed_of(file, source):
    """What was not seen in a file: pairs of a line and a word on it; and the counts of the table."""
    lines, branches = lines_of(file['segments']), branches_of(file['branches'])
    missed = [(line, 'never run') for line, count in lines.items() if count == 0]
    for (line, column), outcomes in branches.items():
        # A condition whose line was never run is told by the line.
        if lines.get(line, 0) > 0:
            missed += [(line, f'column {column}: never {word}')
                       for word, count in zip(('true', 'false'), outcomes) if count == 0]
    covered = {'lines': [sum(count > 0 for count in lines.values()), len(lines)],
               'branches': [sum(count > 0 for two in branches.values() for count in two),
                            2 * len(branches)],
               'mcdc': [file['summary']['mcdc'][word] for word in ('covered', 'count')]}
    return [(line, word, source[line - 1].strip()) for line, word in sorted(missed)], covered


def share(counts):
    covered, total = counts
    return f'{100 * covered / total:.1f} %' if total else '-'


def main():
    export, root, missed_file = sys.argv[1:]
    with open(export, encoding='utf-8') as file:
        files = json.load(file)['data'][0]['files']
    table = collections.defaultdict(lambda: collections.defaultdict(lambda: [0, 0]))
    exemptions, told, open_places = Exemptions(), [], []
    for file in files:
        path = os.path.relpath(os.path.realpath(file['filename']), root)
        if not path.startswith(FOLDERS):
            continue
        with open(os.path.join(root, path), encoding='utf-8') as text:
            missed, covered = missed_of(file, text.read().split('\n'))
        for kind, counts in covered.items():
            for place in (os.path.dirname(path), path.split('/')[0] + '/, together'):
                table[place][kind] = [a + b for a, b in zip(table[place][kind], counts)]
        for line, word, text in missed:
            entry = f'{path}:{line}: {word}: {text}'
            told.append(entry)
            if path.startswith(WHOLE) and not exemptions.hold(path, text):
                open_places.append(entry)
    print('| folder | lines | branches | MC/DC |\n| --- | --- | --- | --- |')
    for folder in sorted(table):
        print(f'| {folder} | ' + ' | '.join(share(table[folder][kind])
                                            for kind in ('lines', 'branches', 'mcdc')) + ' |')
    with open(missed_file, 'w', encoding='utf-8') as out:
        out.write('\n'.join(told) + '\n')
    print(f'\nnever seen in {WHOLE}, exemptions apart: {len(open_places)}')
    for entry in open_places + exemptions.complaints():
        print(entry)
    sys.exit(bool(open_places or exemptions.complaints()))


if __name__ == '__main__':
    main()
