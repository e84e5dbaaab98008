#!/usr/bin/python3
"""The same counts through this program and through R, SciPy and statsmodels.

Usage: compare.py PROGRAM. Prints a table: what was compared, with how many results, the largest
relative difference, and for differences that are there on purpose their reason. The exit status is
1 when an agreement does not hold to 1e-9, or a difference on purpose has gone.
"""
import csv
import io
import subprocess
import sys

import numpy as np
from scipy import stats
from statsmodels.stats import proportion as sp
from statsmodels.stats.contingency_tables import mcnemar

PROGRAM = sys.argv[1]
LEVEL = 95
ONE = [(0, 10, 0.3), (3, 10, 0.4), (10, 10, 0.5), (7, 25, 0.5), (81, 263, 0.25), (1, 29, 0.1),
       (148, 1000, 0.16), (5001, 10000, 0.5)]
PAIRED = [(5, 3, 1, 4), (20, 12, 2, 16), (794, 150, 86, 570), (11, 6, 6, 9), (43, 25, 9, 23)]
GROUPS = [((3, 10), (7, 12)), ((56, 70), (48, 80)), ((9, 10), (3, 10)), ((150, 1000), (120, 900)),
          ((5, 56), (1, 29))]
TOLERANCE = 1e-9


def ours(*arguments):
    """{(row, statistic): value} of the program's tidy output, for these counts."""
    text = subprocess.run([PROGRAM, 'counts', *arguments, '--level', str(LEVEL), '--tests', 'ALL',
                           '--intervals', 'ALL', '--format', 'csv'],
                          check=True, capture_output=True, text=True).stdout
    found = {}
    for row in csv.DictReader(io.StringIO(text)):
        if row['state'] == 'valid':
            kind = 'ci' if 'Intervals' in row['table'] else 'test'
            statistic = row['statistic'].split(' / ')[-1]
            found[kind, row['row'], statistic] = float(row['value'])
    return found


class Comparison:
    def __init__(self):
        self.rows = {}

    def add(self, name, got, want, reason=''):
        """reason: why these differ on purpose."""
        row = self.rows.setdefault(name, {'count': 0, 'largest': 0.0, 'reason': reason})
        if got is None or want is None or np.isnan(want):
            return
        row['count'] += 1
        row['largest'] = max(row['largest'], abs(got - want) / max(abs(want), 1e-300)
                             if want else abs(got))

    def interval(self, name, found, method, want, reason=''):
        for place, bound in zip(('Lower', 'Upper'), want):
            self.add(name, found.get(('ci', method, place)), float(bound), reason)

    def print(self):
        good = True
        print('| compared with | results | largest relative difference | |')
        print('| --- | --- | --- | --- |')
        for name, row in self.rows.items():
            agrees = row['largest'] <= TOLERANCE
            verdict = row['reason'] or ('agrees' if agrees else 'DIFFERS')
            if agrees == bool(row['reason']) or row['count'] == 0:
                good = False
                verdict += ' (NOT AS EXPECTED)'
            print(f"| {name} | {row['count']} | {row['largest']:.1e} | {verdict} |")
        return good


def one_sample(compare):
    intervals = {'normal': 'Wald', 'agresti_coull': 'Agresti-Coull', 'wilson': 'Wilson Score',
                 'beta': 'Clopper-Pearson Exact ...', 'jeffreys': 'Jeffreys'}
    for x, n, p0 in ONE:
        found = ours(f'{x}/{n}', '--test-value', repr(p0))
        for method, row in intervals.items():
            compare.interval(f'statsmodels proportion_confint {method}', found, row,
                             np.clip(sp.proportion_confint(x, n, 1 - LEVEL / 100, method), 0, 1))
        exact = stats.binomtest(x, n, p0)
        compare.interval('SciPy binomtest proportion_ci exact', found, 'Clopper-Pearson Exact ...',
                         exact.proportion_ci(LEVEL / 100, 'exact'))
        compare.interval('SciPy binomtest proportion_ci wilson', found, 'Wilson Score',
                         exact.proportion_ci(LEVEL / 100, 'wilson'))
        if 0 < x < n:
            compare.interval('SciPy binomtest proportion_ci wilsoncc, 0 < x < n', found,
                             'Wilson Score (Continuity Corrected)',
                             exact.proportion_ci(LEVEL / 100, 'wilsoncc'))
        else:
            compare.interval('SciPy binomtest proportion_ci wilsoncc, x = 0 or n', found,
                             'Wilson Score (Continuity Corrected)',
                             exact.proportion_ci(LEVEL / 100, 'wilsoncc'),
                             'no special bound at 0 and n: the formula as it stands')
        smaller = min(stats.binomtest(x, n, p0, side).pvalue for side in ('less', 'greater'))
        compare.add('SciPy binomtest, one-sided', found['test', 'Exact Binomial', 'One-Sided p'],
                    smaller)
        compare.add('SciPy binomtest, two-sided', found['test', 'Exact Binomial', 'Two-Sided p'],
                    exact.pvalue, 'twice the smaller tail, not the sum of what is as rare')
        z, p = sp.proportions_ztest(x, n, p0, prop_var=p0)
        compare.add('statsmodels proportions_ztest, variance of the null',
                    found['test', 'Score', 'Z'], z)
        compare.add('statsmodels proportions_ztest, variance of the null',
                    found['test', 'Score', 'Two-Sided p'], p)


def paired(compare):
    for a, b, c, d in PAIRED:
        found = ours('--paired', f'{a},{b},{c},{d}')
        table = [[a, b], [c, d]]
        compare.add('statsmodels mcnemar exact', found['test', 'Exact Binomial', 'Two-Sided p'],
                    mcnemar(table, exact=True).pvalue)
        plain = mcnemar(table, exact=False, correction=False)
        compare.add('statsmodels mcnemar', found['test', 'McNemar', 'Two-Sided p'], plain.pvalue)
        compare.add('statsmodels mcnemar', found['test', 'McNemar', 'Z'] ** 2, plain.statistic)
        corrected = mcnemar(table, exact=False, correction=True)
        name = 'statsmodels mcnemar corrected'
        reason = ''
        if b == c:
            name, reason = name + ', equal counts', 'Z is 0 without a difference'
        compare.add(name, found['test', 'McNemar (Continuity Corrected)', 'Two-Sided p'],
                    corrected.pvalue, reason)


def independent(compare):
    for (x1, n1), (x2, n2) in GROUPS:
        found = ours(f'{x1}/{n1}', f'{x2}/{n2}')
        for method, row in (('wald', 'Wald'), ('agresti-caffo', 'Agresti-Caffo'),
                            ('newcomb', 'Newcombe')):
            want = sp.confint_proportions_2indep(x1, n1, x2, n2, method=method, compare='diff',
                                                 alpha=1 - LEVEL / 100)
            compare.interval(f'statsmodels confint_proportions_2indep {method}', found, row, want)
        z, p = sp.proportions_ztest([x1, x2], [n1, n2])
        compare.add('statsmodels proportions_ztest of two', found['test', 'Wald H0', 'Z'], z)
        compare.add('statsmodels proportions_ztest of two',
                    found['test', 'Wald H0', 'Two-Sided p'], p)


R_SCRIPT = r'''
options(digits = 17, warn = -1)
f <- function(...) cat(sprintf("%.17g", c(...)), "\n")
'''


def in_r(lines):
    """The numbers that each expression prints."""
    text = subprocess.run(['Rscript', '--vanilla', '-'], input=R_SCRIPT + '\n'.join(
        f'f({line})' for line in lines), check=True, capture_output=True, text=True).stdout
    return [[float(word) for word in line.split()] for line in text.splitlines()]


def by_r(compare):
    tests, lines = [], []

    def ask(line, use):
        lines.append(line)
        tests.append(use)

    for x, n, p0 in ONE:
        found = ours(f'{x}/{n}', '--test-value', repr(p0))
        ask(f'binom.test({x}, {n}, {p0!r})$conf.int', lambda v, f=found: compare.interval(
            'R binom.test interval', f, 'Clopper-Pearson Exact ...', v))
        ask(f'qbeta(c(.025, .975), {x} + .5, {n - x} + .5)', lambda v, f=found: compare.interval(
            'R qbeta, prior 1/2, 1/2', f, 'Jeffreys', v))
        ask(f'min(binom.test({x}, {n}, {p0!r}, "less")$p.value, '
            f'binom.test({x}, {n}, {p0!r}, "greater")$p.value)',
            lambda v, f=found: compare.add('R binom.test, one-sided',
                                           f['test', 'Exact Binomial', 'One-Sided p'], v[0]))
        ask(f'prop.test({x}, {n}, {p0!r}, correct = FALSE)$conf.int',
            lambda v, f=found: compare.interval('R prop.test interval', f, 'Wilson Score', v))
        ask(f'sqrt(prop.test({x}, {n}, {p0!r}, correct = FALSE)$statistic)',
            lambda v, f=found: compare.add('R prop.test statistic',
                                           abs(f['test', 'Score', 'Z']), v[0]))
    for a, b, c, d in PAIRED:
        found = ours('--paired', f'{a},{b},{c},{d}')
        table = f'matrix(c({a}, {c}, {b}, {d}), 2)'
        ask(f'mcnemar.test({table}, correct = FALSE)$p.value', lambda v, f=found: compare.add(
            'R mcnemar.test', f['test', 'McNemar', 'Two-Sided p'], v[0]))
        ask(f'mcnemar.test({table})$p.value', lambda v, f=found: compare.add(
            'R mcnemar.test corrected', f['test', 'McNemar (Continuity Corrected)', 'Two-Sided p'],
            v[0]))
    for (x1, n1), (x2, n2) in GROUPS:
        found = ours(f'{x1}/{n1}', f'{x2}/{n2}')
        call = f'prop.test(c({x1}, {x2}), c({n1}, {n2})'
        ask(f'{call}, correct = FALSE)$p.value', lambda v, f=found: compare.add(
            'R prop.test of two', f['test', 'Wald H0', 'Two-Sided p'], v[0]))
        ask(f'{call})$p.value', lambda v, f=found: compare.add(
            'R prop.test of two, corrected', f['test', 'Wald H0 (Continuity Corrected)',
                                               'Two-Sided p'], v[0]))
        ask(f'{call}, correct = FALSE)$conf.int', lambda v, f=found: compare.interval(
            'R prop.test of two, interval', f, 'Wald', v))
        ask(f'{call})$conf.int', lambda v, f=found: compare.interval(
            'R prop.test of two, corrected interval', f, 'Wald (Continuity Corrected)', v))
    for use, values in zip(tests, in_r(lines)):
        use(values)


if __name__ == '__main__':
    comparison = Comparison()
    for part in (one_sample, paired, independent, by_r):
        part(comparison)
    sys.exit(0 if comparison.print() else 1)
