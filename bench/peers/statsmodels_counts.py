"""The default analysis of a CSV file with pandas and statsmodels: counts, intervals, tests.

    statsmodels_counts.py FILE COLUMN...

Prints the successes (values of 1) of each column.
"""

import sys

import pandas
from scipy import stats
from statsmodels.stats import proportion

METHODS = ("normal", "agresti_coull", "beta", "wilson", "jeffreys")


def main(path, columns):
    data = pandas.read_csv(path, usecols=columns)
    for column in columns:
        values = data[column].dropna()
        trials = len(values)
        successes = int((values == values.max()).sum())
        for method in METHODS:
            proportion.proportion_confint(successes, trials, method=method)
        proportion.proportions_ztest(successes, trials, 0.5)
        stats.binomtest(successes, trials, 0.5)
        print(successes)


main(sys.argv[1], sys.argv[2:])
