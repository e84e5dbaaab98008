#!/usr/bin/env python3
"""Reference values of the distribution functions, by mpmath, for the accuracy report.

Usage: make_distribution_references.py FOLDER [NAME...], NAME one of beta, binomial, normal, t.
Inputs are doubles with 17 digits. A result stands as two doubles, the nearest one and what it
leaves out, so that errors of a fraction of an ulp can be told; `condition` is the relative change
of the result over that of the real input, where a gate depends on it.

The domain holds the hard places: counts 0, 1, n - 1, n with n to 1e12; levels 0 and 99.999999;
shapes from 1/2 to 1e9; tails to 1e-300; probabilities of success to 1e-12 from both ends.
"""
import math
import os
import random
import sys

from mpmath import mp, mpf, erfc, erfinv, exp, findroot, gamma, inf, log, ncdf, quad, sqrt

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)),
                                '../embedded/distributions'))
from make_references import log_density, quantile, tail  # noqa: E402

rnd = random.Random(7)
TRIALS = (1, 2, 5, 10, 37, 100, 1000, 12345, 10**6, 10**9, 10**12)
LEVELS = (0.0, 1e-6, 50.0, 95.0, 99.0, 99.9, 99.999999)


def num(value):
    return repr(float(value))


def parts(value):
    """The double nearest to a value, and the rest."""
    head = float(value)
    return f'{head!r},{float(value - mpf(head))!r}'


def counts_of(n):
    return sorted({0, 1, n - 1, n, n // 2, n // 10, 3 * n // 10, min(n, 7)})


def beta_cases():
    """Shapes and tail probabilities of exact and Jeffreys limits, then shapes at random."""
    for n in TRIALS:
        for x in counts_of(n):
            for level in rnd.sample(LEVELS, 3):
                half = (1 - level / 100) / 2
                yield x + 0.5, n - x + 0.5, half
                if x > 0:
                    yield x, n - x + 1, half
    for _ in range(150):
        a, b = (math.exp(rnd.uniform(math.log(0.5), math.log(1e9))) for _ in 'ab')
        yield a, b, 10 ** rnd.uniform(-12, -0.31)


def write_beta(out):
    out.write('a,b,tail,upper,hi,lo\n')
    mp.dps = 120
    for a, b, p in beta_cases():
        for upper in (0, 1):
            x = quantile(a, b, p, upper)
            if x > mpf(10) ** -290:
                out.write(f'{num(a)},{num(b)},{num(p)},{upper},{parts(x)}\n')


def binomial_cases():
    for n in TRIALS:
        for p in (0.5, 0.3, 0.95, 1e-3, 1e-12, 1 - 1e-12, 0.02):
            mean, sd = n * p, math.sqrt(n * p * (1 - p))
            xs = {0, 1, n - 1} | {math.floor(mean + z * sd)
                                  for z in rnd.sample((-36, -20, -8, -3, -1, 0, 1, 3, 8, 20, 36), 4)}
            for x in sorted(xs):
                if 0 <= x < n:
                    yield x, n, p


def write_binomial(out):
    out.write('x,n,p,upper,hi,lo,condition\n')
    mp.dps = 340
    for x, n, p in binomial_cases():
        term = exp(log_density(mpf(x + 1), mpf(n - x), mpf(p))) / (1 - mpf(p))
        for upper in (0, 1):
            value = tail(x + 1, n - x, p, 1 - upper)
            if value > mpf(10) ** -300:
                out.write(f'{x},{n},{num(p)},{upper},{parts(value)},{float(term / value):.3e}\n')


def write_normal(out):
    out.write('function,argument,hi,lo\n')
    mp.dps = 60
    for i in range(1500):
        z = mpf(rnd.uniform(-37.5, 8) if i % 2 else rnd.gauss(0, 1))
        out.write(f'tail,{num(z)},{parts(erfc(-z / sqrt(2)) / 2)}\n')
    for i in range(1500):
        p = (10 ** rnd.uniform(-307, -1), rnd.random(), 0.5 + rnd.gauss(0, 1) * 1e-3,
             1 - 10 ** rnd.uniform(-15, -1))[i % 4]
        q = min(mpf(p), 1 - mpf(p))
        if q > mpf(10) ** -6:
            z = -sqrt(2) * erfinv(1 - 2 * q)
        else:
            start = sqrt(-2 * log(q))
            z = -findroot(lambda v: log(erfc(v / sqrt(2)) / 2) - log(q), (start * 0.8, start),
                          tol=mpf(10) ** -50, verify=False)
        out.write(f'quantile,{num(p)},{parts(z if p < 0.5 else -z)}\n')


def noncentral_tail(t, f, delta):
    """P(T <= t) as the mean of P(Z <= t s - delta) over s = sqrt(chi^2 / f)."""
    scale = 2 * (f / 2) ** (f / 2) / gamma(f / 2)
    body = lambda s: scale * s ** (f - 1) * exp(-f * s * s / 2) * ncdf(t * s - delta)
    return quad(body, [0, 0.5, 1, 1.5, 2, 3, 5, inf])


def write_t(out):
    out.write('t,freedom,q,hi,lo\n')
    mp.dps = 20
    for f in (1, 4, 12, 60):
        for t in (-2.0, 0.0, 0.7, 3.0):
            for q in (0.025, 0.5, 0.9):
                start = mpf(t) + sqrt(2) * erfinv(1 - 2 * mpf(q))
                delta = findroot(lambda d: noncentral_tail(mpf(t), mpf(f), d) - q,
                                 (start, start + 0.1), tol=mpf(10) ** -17, verify=False)
                out.write(f'{num(t)},{f},{num(q)},{parts(delta)}\n')


WRITERS = {'beta': ('beta-quantile', write_beta), 'binomial': ('binomial-tail', write_binomial),
           'normal': ('normal', write_normal), 't': ('noncentral-t', write_t)}

if __name__ == '__main__':
    for name in sys.argv[2:] or WRITERS:
        file, writer = WRITERS[name]
        with open(os.path.join(sys.argv[1], file + '.csv'), 'w', buffering=1) as out:
            writer(out)
