#!/usr/bin/env python3
"""Finds double operands whose exact product or quotient lies within 2^-100
(relative) of a halfway point between two doubles, without being one: cases
where rounding first to nearest at 81 or 96 bits, then to double, differs
from rounding once. Prints them as bit patterns. Exact arithmetic
with integers; the seed makes the output stable."""
import random
from fractions import Fraction

def round_to(x, p):
    """x > 0 rounded to p significant bits, to nearest, ties to even."""
    e = x.numerator.bit_length() - x.denominator.bit_length() - p
    while x / Fraction(2) ** e >= 2 ** p:
        e += 1
    while x / Fraction(2) ** e < 2 ** (p - 1):
        e -= 1
    scaled = x / Fraction(2) ** e
    n, rest = divmod(scaled.numerator, scaled.denominator)
    if 2 * rest > scaled.denominator or (2 * rest == scaled.denominator and n % 2):
        n += 1
    return n * Fraction(2) ** e

def double_rounding_fails(x):
    once = round_to(x, 53)
    return all(round_to(round_to(x, q), 53) != once for q in (81, 96))

def bits_of(m, e):
    # m a 53-bit integer, value m * 2^e, normal double
    biased = e + 52 + 1023
    assert 0 < biased < 2047 and m >> 52 == 1
    return (biased << 52) | (m & ((1 << 52) - 1))

rng = random.Random(1)

def mul_cases(count):
    out = []
    while len(out) < count:
        a = rng.randrange(1 << 52, 1 << 53) | 1
        delta = rng.randrange(1, 1 << 9) * rng.choice((1, -1))
        target = (1 << 52) + delta
        b = (target * pow(a, -1, 1 << 53)) % (1 << 53)
        if b >> 52 != 1:
            continue
        p = a * b
        if p.bit_length() != 106:
            continue
        assert p % (1 << 53) == target
        if not double_rounding_fails(Fraction(p)):
            continue
        out.append((bits_of(a, -52), bits_of(b, -52), 'above' if delta > 0 else 'below'))
    return out

def div_cases(count):
    out = []
    while len(out) < count:
        b = rng.randrange(1 << 52, 1 << 53) | 1
        r = rng.choice((1, -1))
        k = rng.choice((53, 54, 55))
        a = (r * pow(pow(2, k, b), -1, b)) % b
        if a >> 52 != 1:
            continue
        m, rem = divmod(a * (1 << k) - r, b)
        if rem or m % 2 == 0 or m.bit_length() != 54:
            continue
        # a / b = m / 2^k + r / (b 2^k): just above or below the halfway point m / 2^k.
        if not double_rounding_fails(Fraction(a, b)):
            continue
        out.append((bits_of(a, -52), bits_of(b, -52), 'above' if r > 0 else 'below'))
    return out

for a, b, side in mul_cases(4):
    print('mul 0x%016x 0x%016x %s' % (a, b, side))
for a, b, side in div_cases(4):
    print('div 0x%016x 0x%016x %s' % (a, b, side))
