#!/usr/bin/env python3
"""Every format holds the numbers of the document: the program's outputs of the same run, each read by a
reader that knows nothing of the program, are compared with its json, which its schema
describes.

Usage: read_back.py PROGRAM ROOT. Readers: csv and zipfile of Python, html.parser, and cmark-gfm for
Markdown. LaTeX is compiled by script/prove.
"""
import csv
import html.parser
import io
import json
import math
import os
import subprocess
import sys
import tempfile

from jsonschema import Draft202012Validator

PROGRAM, ROOT = (os.path.abspath(word) for word in sys.argv[1:3])
MARK = '\u2020'  # at a bound that is the end of its range

HOSTILE = '''{"fields": [{"name": "v", "title": "<script>alert(1)</script>|*x*", "categories":
  [{"value": 0, "label": "=1+1"}, {"value": 1, "label": "a|b\\\\`c` [d](e) &amp; \\u2020"}]}]}'''


def imputed():
    rows = ['imp,v,w']
    for number, count in enumerate([18, 17, 20, 19, 22, 21]):
        rows += [f'{number},1,{count}', f'{number},0,{45 - count}']
    return '\n'.join(rows) + '\n'


def cases(folder):
    """Names and arguments of the runs."""
    def write(name, text):
        with open(os.path.join(folder, name), 'w', encoding='utf-8') as file:
            file.write(text)
        return os.path.join(folder, name)

    admissions = os.path.join(ROOT, 'examples/admissions.csv')
    everything = 'TESTTYPES=ALL CITYPES=ALL'
    write('hostile.schema.json', HOSTILE)
    hostile = write('hostile.csv', 'v\n' + '1\n' * 3 + '0\n' * 9)
    one = f'PROPORTIONS /ONESAMPLE admitted TESTVAL=0.4 {everything}'
    yield 'one sample', ['run', admissions, '-c', one]
    yield 'split groups', ['run', admissions, '-c', one, '--split', 'department']
    yield 'tables of their own', ['run', admissions, '-c', one, '--split', 'department',
                                  '--split-layout', 'tables']
    yield 'two groups', ['run', admissions, '-c',
                         f'PROPORTIONS /INDEPENDENTSAMPLES admitted BY gender {everything}']
    yield 'pairs', ['run', os.path.join(ROOT, 'examples/approval.csv'), '-c',
                    f'PROPORTIONS /PAIREDSAMPLES first second {everything}']
    yield 'bootstrap', ['run', admissions, '-c', one, '--bootstrap', '200', '--seed', '1']
    yield 'imputation', ['run', write('imputed.csv', imputed()), '--imputation', 'imp', '--weight', 'w',
                         '-c', f'PROPORTIONS /ONESAMPLE v TESTVAL=0.3 {everything}']
    yield 'nothing to compute', ['counts', '0/7', '7/7', '--tests', 'ALL', '--intervals', 'ALL']
    yield 'hostile labels', ['run', hostile, '-c', 'PROPORTIONS /ONESAMPLE v']


def output(arguments, name):
    done = subprocess.run([PROGRAM, *arguments, '--format', name], capture_output=True, check=True)
    return done.stdout


class Tables(html.parser.HTMLParser):
    """The rows of every table's body as lists of texts; raised marks and unseen text are left out."""

    def __init__(self, text):
        super().__init__()
        self.tables, self.text, self.inside, self.silent = [], None, False, 0
        self.spans = {}  # by column: rows still to come, and the text
        self.feed(text)

    def handle_starttag(self, tag, attributes):
        attributes = dict(attributes)
        if tag == 'table':
            self.tables.append([])
            self.group = []  # values of the split group that the rows belong to
        elif tag == 'tbody':
            self.inside, self.spans = True, {}
        elif tag == 'tr' and self.inside:
            self.heads = attributes.get('class') == 'group'
            self.tables[-1].append([] if self.heads else list(self.group))
        elif tag in ('td', 'th') and self.inside:
            self.fill()
            self.text, self.rows = '', int(attributes.get('rowspan', 1))
        elif tag == 'sup':
            self.silent += 1

    def fill(self):
        """The labels that rows above share with this one."""
        row = self.tables[-1][-1]
        while len(row) in self.spans:
            rows, text = self.spans[len(row)]
            self.spans[len(row)] = (rows - 1, text)
            if rows == 1:
                del self.spans[len(row)]
            row.append(text)

    def handle_endtag(self, tag):
        if tag == 'tbody':
            self.inside = False
        elif tag in ('td', 'th') and self.inside:
            row = self.tables[-1][-1]
            if self.rows > 1:
                self.spans[len(row)] = (self.rows - 1, self.text)
            row.append(self.text)
            self.text = None
        elif tag == 'tr' and self.inside and self.heads:
            head = self.tables[-1].pop()[0]
            self.group = [part.partition(' = ')[2] for part in head.split(', ')]
        elif tag == 'sup':
            self.silent -= 1

    def handle_data(self, data):
        if self.text is not None and not self.silent:
            self.text += data


def comparable(rows):
    """What is shown in the rows, whatever the order of rows and columns."""
    plain = [[' '.join(text.replace(MARK, '').split()) for text in row] for row in rows]
    return sorted(sorted(text for text in row if text) for row in plain)


def rows_of(table, own):
    """The rows of a table of the json: the labels of each and its texts. A table of a split group's own
    names the group in its title."""
    rows = {}
    axes = [dimension['axis'] for dimension in table['dimensions']]
    for cell in table['cells']:
        labels = [] if own else [value['text'] for value in cell['split'] or []]
        for axis, path in zip(axes, cell['path']):
            labels += [label['text'] for label in path] if axis != 'column' else []
        rows.setdefault(tuple(labels), list(labels)).append(cell['text'])
    return list(rows.values())


def check_shown(document, found, what):
    """The tables of a format for readers; a table of the split groups' cases may stand before them."""
    titles = [table['title']['id'] for table in document['tables']]
    own = len(titles) > len(set(titles))
    wanted = [rows_of(table, own) for table in document['tables'] if table['cells']]
    expect(len(found) - len(wanted) in (0, 1), f'{what}: {len(found)} tables, not {len(wanted)}')
    for rows, table in zip(wanted, found[len(found) - len(wanted):]):
        expect_equal(comparable(rows), comparable(table), what)


def values(document):
    return sorted(cell['value'] for table in document['tables'] for cell in table['cells']
                  if cell['state'] == 'valid')


def check_csv(document, text):
    rows = list(csv.DictReader(io.StringIO(text, newline='')))
    expect_equal(values(document), sorted(float(row['value']) for row in rows if row['value']), 'csv')
    expect_equal(sum(len(table['cells']) for table in document['tables']), len(rows), 'csv')


def check_xlsx(document, data, folder):
    path = os.path.join(folder, 'book.xlsx')
    with open(path, 'wb') as file:
        file.write(data)
    reader = os.path.join(ROOT, 'tests/render/read_xlsx.py')
    done = subprocess.run([sys.executable, reader, path], capture_output=True, check=True)
    sheets = json.loads(done.stdout)
    tables = [table for table in document['tables'] if table['cells']]
    for table, sheet in zip(tables, sheets[len(sheets) - len(tables):]):
        head, labels = sheet['frozen']
        found = sorted(cell['value'] for place, cell in sheet['cells'].items()
                       if cell['type'] == 'n' and int(place.lstrip('ABCDEFGHIJKLMNOPQRSTUVWXYZ')) > head)
        wanted = sorted(float(f"{value:.16g}") for value in values({'tables': [table]}))
        expect_equal(wanted, found, 'xlsx')


def expect(holds, what):
    if not holds:
        sys.exit('read_back.py: ' + what)


def expect_equal(wanted, found, what):
    expect(isinstance(wanted, int) or len(wanted) == len(found),
           f'{what}: {found if isinstance(found, int) else len(found)} instead of '
           f'{wanted if isinstance(wanted, int) else len(wanted)}')
    if wanted != found:
        differing = [(a, b) for a, b in zip(wanted, found) if a != b] if not isinstance(wanted, int) else []
        sys.exit(f'read_back.py: {what}: {differing[:3] or (wanted, found)}')


def main(folder):
    with open(os.path.join(ROOT, 'docs/document.schema.json'), encoding='utf-8') as file:
        schema = Draft202012Validator(json.load(file))
    for name, arguments in cases(folder):
        document = json.loads(output(arguments, 'json'))
        problems = [f'{error.json_path}: {error.message}' for error in schema.iter_errors(document)]
        expect(not problems, f'{name}, json: {problems[:3]}')
        numbers = values(document)
        expect(len(numbers) > 10 and all(math.isfinite(value) for value in numbers), f'{name}: no numbers')
        rendered = subprocess.run(['cmark-gfm', '--unsafe', '-e', 'table'], capture_output=True, check=True,
                                  input=output(arguments, 'markdown')).stdout.decode()
        check_shown(document, Tables(rendered).tables, f'{name}, markdown')
        check_shown(document, Tables(output(arguments, 'html').decode()).tables, f'{name}, html')
        check_csv(document, output(arguments, 'csv').decode())
        check_xlsx(document, output(arguments, 'xlsx'), folder)
        print(f'{name}: {len(numbers)} numbers')


with tempfile.TemporaryDirectory() as own:
    main(own)
