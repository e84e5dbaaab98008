"""The table of script/coverage: coverage.py FILE ROOT, FILE an export of llvm-cov."""
import collections
import json
import os
import sys

FOLDERS = ('backend/proportions', 'embedded', 'render', 'cli')


def share(counts):
    covered, total = counts
    return f'{100 * covered / total:.1f} %' if total else '-'


def folder_of(path):
    return os.path.dirname(path)


def uncovered_lines(segments):
    """Lines where a region begins that was never run."""
    return sorted({line for line, _, count, has_count, is_entry, gap in segments
                   if has_count and is_entry and not gap and count == 0})


def main():
    with open(sys.argv[1]) as file:
        files = json.load(file)['data'][0]['files']
    table = collections.defaultdict(lambda: collections.defaultdict(lambda: [0, 0]))
    missed = []
    for file in files:
        path = os.path.relpath(os.path.realpath(file['filename']), sys.argv[2])
        if not path.startswith(FOLDERS):
            continue
        for kind in ('lines', 'branches', 'mcdc'):
            counts = table[folder_of(path)][kind]
            counts[0] += file['summary'][kind]['covered']
            counts[1] += file['summary'][kind]['count']
        if path.startswith('backend/proportions'):
            missed += [f'{path}:{line}' for line in uncovered_lines(file['segments'])]
    print('| folder | lines | branches | MC/DC |\n| --- | --- | --- | --- |')
    for folder in sorted(table):
        kinds = table[folder]
        print(f'| {folder} | ' + ' | '.join(share(kinds[kind])
                                            for kind in ('lines', 'branches', 'mcdc')) + ' |')
    print('\nnever run in backend/proportions: ' + (', '.join(missed) or 'nothing'))


if __name__ == '__main__':
    main()
