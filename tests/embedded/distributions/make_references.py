#!/usr/bin/env python3
"""Reference values of the distribution functions in hard places, by mpmath.

Writes into the folder given as argument: beta-quantile-hard.csv, binomial-tail-hard.csv,
normal-tail.csv and normal-quantile-hard.csv, in the formats of the grids beside them. Inputs are
doubles printed with 17 digits; results are those of the doubles, with 25 digits.

Incomplete beta values come from the power series in many digits where a shape is small, and from
Gauss-Legendre panels over the log-odds where both are 20 and more. Binomial tails whose smaller
shape is under 20 need tails down to 1e-306: hence so many digits.
"""
import functools
import math
import random
import sys

from mpmath import mp, mpf, loggamma, log, log1p, exp, erfc, erfinv, sqrt, findroot

mp.dps = 60
rnd = random.Random(20240611)


def log_density(a, b, x):
    """Logarithm of x^a (1-x)^b / B(a, b), the density over log-odds."""
    return (a * log(x) + b * log1p(-x)
            + loggamma(a + b) - loggamma(a) - loggamma(b))


def lower_by_series(a, b, x):
    """I_x(a, b) by the series with positive terms; as many as a + 100 or n x demands."""
    term = total = mpf(1)
    k = 0
    while term > total * mpf(10) ** -mp.dps or (a + b + k) * x > a + 1 + k:
        term *= (a + b + k) / (a + 1 + k) * x
        total += term
        k += 1
    return exp(log_density(a, b, x)) * total / a


def outer_by_quadrature(a, b, x):
    """The tail on the far side of the mode and whether it is the upper one: the density over the
    log-odds, in four panels of 40 nodes down to 1e-45 of its value at x."""
    w0 = log(x) - log1p(-x)
    upper = w0 >= log(a / b)
    sign = 1 if upper else -1
    lx0, lc0 = log(x), log1p(-x)

    def ratio(s):
        t = w0 + sign * s
        lc = -log1p(exp(t))
        return exp(a * (t + lc - lx0) + b * (lc - lc0))

    reach = mpf(1) / (a + b + 1)
    while ratio(reach) > mpf(10) ** -45:
        reach *= mpf(5) / 4
    quarter = reach / 8
    value = mpf(0)
    for panel in range(4):
        middle = quarter * (2 * panel + 1)
        for node, weight in legendre_nodes():
            value += weight * ratio(middle + quarter * node)
    return exp(log_density(a, b, x)) * quarter * value, upper


@functools.lru_cache(maxsize=1)
def legendre_nodes():
    """Nodes and weights of the 40-point Gauss-Legendre rule, by Newton's method."""
    n = 40
    pairs = []
    for i in range(n):
        z = mpf(math.cos(math.pi * (i + 0.75) / (n + 0.5)))
        for _ in range(8):
            before, value = mpf(1), z
            for k in range(2, n + 1):
                before, value = value, ((2 * k - 1) * z * value - (k - 1) * before) / k
            slope = n * (z * value - before) / (z * z - 1)
            z -= value / slope
        pairs.append((z, 2 / ((1 - z * z) * slope * slope)))
    return pairs


def tail(a, b, x, upper):
    """I_x(a, b), or 1 - I_x(a, b) when upper, to 30 digits and more."""
    a, b, x = mpf(a), mpf(b), mpf(x)
    nearby = (a + b) * (x if a <= b else 1 - x) < 1000
    if min(a, b) >= 20 or not nearby:
        with mp.workdps(60):
            value, own = outer_by_quadrature(a, b, x)
        return value if own == bool(upper) else 1 - value
    # The series of the smaller of x and 1 - x; hundreds of digits outlast the complement's loss.
    if x <= 0.5:
        value, own = lower_by_series(a, b, x), False
    else:
        value, own = lower_by_series(b, a, 1 - x), True
    return value if own == bool(upper) else 1 - value


def quantile(a, b, p, upper):
    """x with the given tail probability: Newton's method on the log tail over the log-odds.

    The log tail is concave there, so that the steps converge from any start; they are kept short,
    or else a tail might fall below all digits.
    """
    a, b, p = mpf(a), mpf(b), mpf(p)
    w = log(a / b)
    side = -1 if upper else 1
    longest = min(3 * sqrt(1 / a + 1 / b), mpf(0.5))
    for _ in range(1000):
        x = 1 / (1 + exp(-w))
        value = tail(a, b, x, upper)
        if value <= 0:  # beyond all digits: half the way back
            step = -step / 2
            w += step
            continue
        slope = side * exp(log_density(a, b, x)) / value
        step = max(-longest, min(longest, -log(value / p) / slope))
        w += step
        if abs(step) < mpf(10) ** -28:
            return 1 / (1 + exp(-w))
    raise ArithmeticError(f'no quantile for {a} {b} {p} {upper}')


def num(v):
    return mp.nstr(mpf(v), 17) if v != int(v) or abs(v) > 1e15 else str(int(v))


def beta_cases():
    for n in (1, 10, 1000, 10**6, 10**9, 10**12):
        for k in (0, 1, 2, 5, 11, n // 10, n // 3, n // 2, n):
            if k > n or (k == 0 and n == 0):
                continue
            yield k + 0.5, n - k + 0.5
            if k > 0:
                yield k, n - k + 1
    for _ in range(30):
        a = math.exp(rnd.uniform(math.log(0.5), math.log(1e10)))
        b = math.exp(rnd.uniform(math.log(0.5), math.log(1e10)))
        yield a, b


def write_beta(folder):
    mp.dps = 260
    with open(folder + '/beta-quantile-hard.csv', 'w', buffering=1) as out:
        out.write('a,b,tail,upper,x\n')
        seen = set()
        for a, b in beta_cases():
            for p in rnd.sample((0.5, 0.4, 0.25, 0.025, 0.005, 1e-4, 1e-7, 1e-12, 1e-50), 1):
                for upper in (0, 1):
                    if (a, b, p, upper) in seen:
                        continue
                    seen.add((a, b, p, upper))
                    x = quantile(a, b, p, upper)
                    if x < mpf(10) ** -290:
                        continue
                    out.write(f'{num(a)},{num(b)},{num(p)},{upper},{mp.nstr(x, 25)}\n')


def binomial_cases():
    for n in (1, 2, 7, 30, 200, 1000, 12345, 10**6, 10**9, 10**12):
        for p in (0.5, 0.3, 0.01, 0.999, 1e-6, 3.7e-11):
            mean, sd = n * p, math.sqrt(n * p * (1 - p))
            xs = {math.floor(mean + z * sd) for z in (-36, -20, -8, -3, -1, -.1, 0, .1, 1, 3, 8,
                                                      20, 36)}
            xs |= {0, 1, 2, 5, 11, n - 1}
            for x in sorted(xs):
                if 0 <= x < n:
                    yield x, n, p
    for _ in range(1000):
        n = int(math.exp(rnd.uniform(math.log(5), math.log(1e12))))
        p = rnd.random() ** rnd.choice((1, 1, 4))
        x = math.floor(n * p + rnd.gauss(0, 5) * math.sqrt(n * p * (1 - p)))
        if 0 <= x < n:
            yield x, n, p


def write_binomial(folder):
    mp.dps = 360
    with open(folder + '/binomial-tail-hard.csv', 'w', buffering=1) as out:
        out.write('x,n,p,upper,probability\n')
        for x, n, p in binomial_cases():
            for upper in (0, 1):
                # P(X <= x) = 1 - I_p(x + 1, n - x)
                value = tail(x + 1, n - x, p, 1 - upper)
                if value < mpf(10) ** -306:
                    continue
                out.write(f'{x},{n},{num(p)},{upper},{mp.nstr(value, 25)}\n')


def write_normal(folder):
    with open(folder + '/normal-tail.csv', 'w') as out:
        out.write('z,probability\n')
        for i in range(600):
            z = rnd.uniform(-38.4, 8) if i % 2 else rnd.gauss(0, 1)
            if i < 40:
                z = -38.5 + i * 0.96
            out.write(f'{num(z)},{mp.nstr(erfc(-mpf(z) / sqrt(2)) / 2, 25)}\n')
    with open(folder + '/normal-quantile-hard.csv', 'w') as out:
        out.write('p,z\n')
        for i in range(600):
            p = (10 ** rnd.uniform(-307, -1), rnd.random(), 0.5 + rnd.gauss(0, 1) * 1e-3,
                 1 - 10 ** rnd.uniform(-15, -1), 5e-324 * rnd.randrange(1, 10**6))[i % 5]
            target = mpf(p)
            f = lambda z: log(erfc(-z / sqrt(2)) / 2) - log(target)
            if abs(p - 0.5) < 0.49:
                z = sqrt(2) * erfinv(2 * target - 1)
            else:
                q = min(target, 1 - target)
                g = lambda z: log(erfc(z / sqrt(2)) / 2) - log(q)
                start = sqrt(-2 * log(q))
                z = findroot(g, (start * 0.8, start), tol=mpf(10) ** -60, verify=False)
                z = z if p > 0.5 else -z
            out.write(f'{num(p)},{mp.nstr(z, 25)}\n')


if __name__ == '__main__':
    target = sys.argv[1]
    wanted = sys.argv[2:] or ['normal', 'binomial', 'beta']
    for name in wanted:
        {'normal': write_normal, 'binomial': write_binomial, 'beta': write_beta}[name](target)
