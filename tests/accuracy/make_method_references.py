#!/usr/bin/env python3
"""Reference values of every interval and test, by mpmath, for the accuracy report.

Usage: make_method_references.py FOLDER [one-sample] [paired] [independent]

Every formula is written here a second time, from its definition. Each result stands with its
condition: the sum, over all real inputs (counts, level, test value), of the relative change of the
result over that of the input. A double cannot do better than that many ulp. Results that hang on
a comparison that rounding may turn are left out.

A line: counts and test value, level, the method's kind, slot and place (interval: lower, upper;
test: statistic, one-sided, two-sided), the result as a double and the rest of it, the condition.
"""
import os
import random
import sys

from mpmath import erfc, erfinv, exp, isnan, log, loggamma, mp, mpf, sqrt

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)),
                                '../embedded/distributions'))
from make_references import quantile, tail  # noqa: E402

mp.dps = 60
STEP = mpf(10) ** -20
rnd = random.Random(11)


class Missing(Exception):
    """A result that does not exist, or that rounding decides."""


def apart(left, right):
    """left - right, refused where rounding could turn the comparison."""
    off = left - right
    if abs(off) < mpf(10) ** -9 * (abs(left) + abs(right)):
        raise Missing
    return off


def z_of(level):
    return sqrt(2) * erfinv(level / 100)


def normal_test(z):
    one = erfc(abs(z) / sqrt(2)) / 2
    return z, one, 2 * one


def root(value):
    if value < 0:
        raise Missing
    return sqrt(value)


def clamp(low, high, least):
    return max(low, least), min(high, mpf(1))


def wilson(p, n, z):
    half = z * sqrt(p * (1 - p) / n + z * z / (4 * n * n))
    return (p + z * z / (2 * n) - half) / (1 + z * z / n), (p + z * z / (2 * n) + half) / (1 + z * z / n)


def wilson_corrected(x, n, z):
    p = x / n
    common = z * z - 1 / n + 4 * n * p * (1 - p)
    low = 2 * x + z * z - (1 + z * root(common + (4 * p - 2)))
    high = 2 * x + z * z + (1 + z * root(common - (4 * p - 2)))
    return low / (2 * (n + z * z)), high / (2 * (n + z * z))


# --- One sample: v = (x, f, p0) --------------------------------------------------------------------

def logistic(ratio, s, z):
    return 1 / (1 + ratio * exp(z * s)), 1 / (1 + ratio * exp(-z * s))


def agresti_coull(x, n, z):
    m = (x + z * z / 2) / (n + z * z)
    half = z * sqrt(m * (1 - m) / (n + z * z))
    return m - half, m + half


def wald_one(x, n, z, correction):
    p = x / n
    half = z * sqrt(p * (1 - p) / n) + correction
    return p - half, p + half


def one_intervals(v, level):
    x, f, _ = v
    n = x + f
    z = z_of(level)
    half = (1 - level / 100) / 2

    def exact(a, b, upper):
        return quantile(a, b, half, upper)

    def logit():
        if x == 0 or f == 0:
            raise Missing
        return logistic(f / x, sqrt(n / (x * f)), z)

    raw = [
        lambda: agresti_coull(x, n, z),
        lambda: logistic((f + mpf(1) / 2) / (x + mpf(1) / 2),
                         sqrt((n + 1) * (n + 2) / (n * (x + 1) * (f + 1))), z),
        lambda: (exact(x, f + 1, 0) if x > 0 else mpf(0), exact(x + 1, f, 1) if f > 0 else mpf(1)),
        lambda: (exact(x + mpf(1) / 2, f + mpf(1) / 2, 0), exact(x + mpf(1) / 2, f + mpf(1) / 2, 1)),
        logit,
        lambda: wald_one(x, n, z, 0),
        lambda: wald_one(x, n, z, 1 / (2 * n)),
        lambda: wilson(x / n, n, z),
        lambda: wilson_corrected(x, n, z),
    ]
    return [lambda r=r: clamp(*r(), mpf(0)) for r in raw]


def binomial_term(x, n, p):
    return exp(loggamma(n + 1) - loggamma(x + 1) - loggamma(n - x + 1)
               + (x * log(p) if x > 0 else 0) + ((n - x) * log(1 - p) if n > x else 0))


def smaller_tail(x, n, p):
    """min(P(X <= x), P(X >= x)) with real arguments, and which tail it is."""
    lower = tail(x + 1, n - x, p, 1) if x < n else mpf(1)
    upper = tail(x, n - x + 1, p, 0) if x > 0 else mpf(1)
    apart(lower, upper)
    return min(lower, upper)


def one_tests(v, _):
    x, f, p0 = v
    n = x + f
    p = x / n

    def exact():
        one = smaller_tail(x, n, p0)
        return None, one, min(mpf(1), 2 * one)

    def midp():
        one = smaller_tail(x, n, p0) - binomial_term(x, n, p0) / 2
        return None, one, min(mpf(1), 2 * one)

    def corrected():
        if apart(1 / (2 * n), abs(p - p0)) > 0:
            return mpf(0)
        return x - n * p0 - (mpf(1) / 2 if p > p0 else -mpf(1) / 2)

    def need():
        if x == 0 or f == 0:
            raise Missing

    def wald(top):
        need()
        return normal_test(top() / sqrt(x * (1 - p)))

    null = sqrt(n * p0 * (1 - p0))
    return [exact, midp, lambda: normal_test((x - n * p0) / null),
            lambda: normal_test(corrected() / null),
            lambda: wald(lambda: x - n * p0), lambda: wald(corrected)]


# --- Paired: v = (n11, n10, n01, n00) ----------------------------------------------------------------

def paired_intervals(v, level):
    a, b, c, d = v
    n = a + b + c + d
    z = z_of(level)

    def around(added, cases, correction=0):
        value = (b - c) / cases
        half = z * sqrt(((b + added) / cases + (c + added) / cases - value ** 2) / cases) + correction
        return value - half, value + half

    def newcombe():
        p1, p2 = (a + b) / n, (a + c) / n
        (l1, u1), (l2, u2) = wilson(p1, n, z), wilson(p2, n, z)
        margins = (a + b) * (c + d) * (a + c) * (b + d)
        excess = a * d - b * c
        if margins == 0:
            phi = mpf(0)
        else:
            if excess > 0 and 2 * excess > n:
                excess -= n / 2
            elif 2 * excess == n:
                excess = mpf(0)
            phi = excess / sqrt(margins)

        def hybrid(s, t):
            return root(s * s + t * t - 2 * phi * s * t)

        return p1 - p2 - hybrid(p1 - l1, u2 - p2), p1 - p2 + hybrid(u1 - p1, p2 - l2)

    raw = [lambda: around(mpf(1) / 2, n + 2), lambda: around(mpf(1), n + 2), newcombe,
           lambda: around(mpf(0), n), lambda: around(mpf(0), n, 1 / n)]
    return [lambda r=r: clamp(*r(), mpf(-1)) for r in raw]


def sign_tail(b, c):
    k, n = min(b, c), b + c
    lower = tail(k + 1, n - k, mpf(1) / 2, 1) if n > k else mpf(1)
    return lower, binomial_term(k, n, mpf(1) / 2)


def paired_tests(v, _):
    a, b, c, d = v
    n = a + b + c + d
    spread = (b + c) - (b - c) ** 2 / n

    def exact():
        one = sign_tail(b, c)[0]
        return None, one, min(mpf(1), 2 * one)

    def midp():
        lower, term = sign_tail(b, c)
        one = lower - term / 2
        return None, one, min(mpf(1), 2 * one)

    def standard(variance, correction):
        top = b - c
        if correction and top == 0:
            return normal_test(mpf(0))
        if variance <= 0:
            raise Missing
        top -= correction if top > 0 else -correction
        return normal_test(top / sqrt(variance))

    return [exact, midp, lambda: standard(b + c, 0), lambda: standard(b + c, 1),
            lambda: standard(spread, 0), lambda: standard(spread, 1)]


# --- Independent: v = (s1, f1, s2, f2) ---------------------------------------------------------------

def variance_of(p, n):
    return p * (1 - p) / n


def independent_intervals(v, level):
    s1, f1, s2, f2 = v
    n1, n2 = s1 + f1, s2 + f2
    p1, p2 = s1 / n1, s2 / n2
    z = z_of(level)

    def around(q1, q2, m1, m2, correction=0):
        half = z * sqrt(variance_of(q1, m1) + variance_of(q2, m2)) + correction
        return q1 - q2 - half, q1 - q2 + half

    def added(t, divisor):
        q1, q2 = (s1 + t) / (n1 + 2 * t), (s2 + t) / (n2 + 2 * t)
        return around(q1, q2, n1 + divisor, n2 + divisor)

    def square_and_add(first, second):
        (l1, u1), (l2, u2) = first, second
        return (p1 - p2 - sqrt((p1 - l1) ** 2 + (u2 - p2) ** 2),
                p1 - p2 + sqrt((u1 - p1) ** 2 + (p2 - l2) ** 2))

    def hauck():
        if n1 <= 1 or n2 <= 1:
            raise Missing
        return around(p1, p2, n1 - 1, n2 - 1, 1 / (2 * min(n1, n2)))

    raw = [lambda: added(mpf(1), 2), lambda: added(mpf(1) / 2, 0), hauck,
           lambda: square_and_add(wilson(p1, n1, z), wilson(p2, n2, z)),
           lambda: square_and_add(wilson_corrected(s1, n1, z), wilson_corrected(s2, n2, z)),
           lambda: around(p1, p2, n1, n2),
           lambda: around(p1, p2, n1, n2, (1 / n1 + 1 / n2) / 2)]
    return [lambda r=r: clamp(*r(), mpf(-1)) for r in raw]


def independent_tests(v, _):
    s1, f1, s2, f2 = v
    n1, n2 = s1 + f1, s2 + f2
    p1, p2 = s1 / n1, s2 / n2
    plain = variance_of(p1, n1) + variance_of(p2, n2)
    pool = (s1 + s2) / (n1 + n2)
    pooled = pool * (1 - pool) * (1 / n1 + 1 / n2)
    yates = (1 / n1 + 1 / n2) / 2

    def standard(variance, correction):
        top = p1 - p2
        if correction:
            if apart(correction, abs(top)) > 0:
                return normal_test(mpf(0))
            top -= correction if top > 0 else -correction
        if variance <= 0:
            raise Missing
        return normal_test(top / sqrt(variance))

    def hauck():
        ok = n1 > 1 and n2 > 1
        variance = variance_of(p1, n1 - 1) + variance_of(p2, n2 - 1) if ok else mpf(0)
        return standard(variance, 1 / (2 * min(n1, n2)))

    return [hauck, lambda: standard(plain, 0), lambda: standard(plain, yates),
            lambda: standard(pooled, 0), lambda: standard(pooled, yates)]


# --- Cases, conditions, output ------------------------------------------------------------------------

LEVELS = (0.0, 50.0, 90.0, 95.0, 99.0, 99.999999)


def one_cases():
    for n in (1, 2, 5, 13, 100, 1000, 10**6, 10**9, 10**12):
        for x in sorted({0, 1, n - 1, n, n // 2, n // 10, 3 * n // 10}):
            for p0 in rnd.sample((1e-12, 1 - 1e-12, 0.5, 0.3, 0.05, x / n if 0 < x < n else 0.7), 2):
                yield (x, n - x, p0), rnd.choice(LEVELS)


def paired_cases():
    for scale in (1, 10, 1000, 10**6, 10**12):
        for shape in ((1, 1, 1, 1), (5, 3, 1, 4), (0, 2, 1, 0), (3, 0, 2, 5), (7, 1, 0, 2),
                      (4, 0, 0, 3), (2, 9, 9, 1), (0, 1, 0, 3), (9, 1, 7, 0), (1, 0, 0, 0)):
            yield tuple(k * scale for k in shape), rnd.choice(LEVELS)
    for _ in range(60):
        yield tuple(int(10 ** rnd.uniform(0, 6)) for _ in range(4)), rnd.choice(LEVELS)


def independent_cases():
    sizes = (1, 2, 10, 37, 1000, 10**6, 10**12)
    for n1 in sizes:
        for n2 in rnd.sample(sizes, 3):
            for part1 in rnd.sample((0, 0.1, 0.5, 0.7, 1), 2):
                for part2 in rnd.sample((0, 0.3, 0.5, 1), 2):
                    s1, s2 = int(n1 * part1), int(n2 * part2)
                    yield (s1, n1 - s1, s2, n2 - s2), rnd.choice(LEVELS)
    for _ in range(60):
        yield tuple(int(10 ** rnd.uniform(0, 6)) for _ in range(4)), rnd.choice(LEVELS)


DESIGNS = {
    'one-sample': (one_cases, one_intervals, one_tests),
    'paired': (paired_cases, paired_intervals, paired_tests),
    'independent': (independent_cases, independent_intervals, independent_tests),
}
INTERVALS = {
    'one-sample': ('AGRESTI_COULL', 'ANSCOMBE', 'CLOPPER_PEARSON', 'JEFFREYS', 'LOGIT', 'WALD',
                   'WALDCC', 'WILSON_SCORE', 'WILSON_SCORECC'),
    'paired': ('AGRESTI_MIN', 'BONETT_PRICE', 'NEWCOMBE', 'WALD', 'WALDCC'),
    'independent': ('AGRESTI_CAFFO', 'BROWN_LI_JEFFREYS', 'HAUCK_ANDERSON', 'NEWCOMBE',
                    'NEWCOMBECC', 'WALD', 'WALDCC'),
}
TESTS = {
    'one-sample': ('EXACT', 'MIDP', 'SCORE', 'SCORECC', 'WALD', 'WALDCC'),
    'paired': ('EXACT', 'MIDP', 'MCNEMAR', 'MCNEMARCC', 'WALD', 'WALDCC'),
    'independent': ('HAUCK_ANDERSON', 'WALD', 'WALDCC', 'WALDH0', 'WALDH0CC'),
}


EXACT = ('CLOPPER_PEARSON', 'JEFFREYS', 'EXACT', 'MIDP')


def evaluate(design, kind, keyword, v, level):
    methods = DESIGNS[design][1 if kind == 'interval' else 2](v, level)
    keywords = (INTERVALS if kind == 'interval' else TESTS)[design]
    return methods[keywords.index(keyword)]()


def condition_of(design, kind, keyword, v, level, base):
    """Per place, the sum of relative changes over all inputs that are not 0.

    The exact methods take counts as whole numbers: of them only level and test value count.
    """
    sums = [mpf(0)] * len(base)
    inputs = range(len(v) + 1)
    if keyword in EXACT:
        inputs = [len(v)] if kind == 'interval' else [2] if design == 'one-sample' else []
    for i in inputs:
        moved = list(v) + [level]
        if moved[i] == 0:
            continue
        moved[i] *= 1 + STEP
        other = evaluate(design, kind, keyword, tuple(moved[:-1]), moved[-1])
        for place, value in enumerate(base):
            if value:
                sums[place] += abs((other[place] - value) / value) / STEP
    return sums


def rows(design, kind, keyword, v, level):
    """One row a result; a method without an answer has none."""
    v = tuple(mpf(k) for k in v)
    mp.dps = 60
    if keyword in EXACT:
        mp.dps = 120 if kind == 'interval' else 360
    try:
        base = evaluate(design, kind, keyword, v, mpf(level))
        condition = condition_of(design, kind, keyword, v, mpf(level), base)
    except Missing:
        return
    for place, value in enumerate(base):
        if value is None or isnan(value) or 0 < abs(value) < mpf(10) ** -300:
            continue
        head = float(value)
        yield (f'{keyword},{kind},{place},{head!r},{float(value - mpf(head))!r},'
               f'{float(condition[place]):.3e}')


def write(design, out):
    cases = DESIGNS[design][0]
    names = 'x,f,p0' if design == 'one-sample' else 'c1,c2,c3,c4'
    out.write(f'{names},level,method,kind,place,hi,lo,condition\n')
    for v, level in cases():
        inputs = ','.join(repr(k) for k in v) + f',{level!r}'
        for kind, keywords in (('interval', INTERVALS[design]), ('test', TESTS[design])):
            for keyword in keywords:
                for row in rows(design, kind, keyword, v, level):
                    out.write(f'{inputs},{row}\n')


if __name__ == '__main__':
    for name in sys.argv[2:] or DESIGNS:
        with open(os.path.join(sys.argv[1], name + '.csv'), 'w', buffering=1) as file:
            write(name, file)
