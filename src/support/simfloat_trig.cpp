// Transcendental functions in simulated arithmetic: argument reduction, then
// Taylor series summed to the simulated precision, which leaves a margin of
// some 25 bits over the target's double for the errors of the reduction.
#include "support/simfloat_impl.h"

using namespace simfloat_impl;

namespace {

simul_fval add(simul_fval a, simul_fval b) {
    simul_fval r;
    f_add(&a, &b, &r);
    return r;
}
simul_fval sub(simul_fval a, simul_fval b) {
    simul_fval r;
    f_sub(&a, &b, &r);
    return r;
}
simul_fval mul(simul_fval a, simul_fval b) {
    simul_fval r;
    f_mul(&a, &b, &r);
    return r;
}
simul_fval div(simul_fval a, simul_fval b) {
    simul_fval r;
    f_div(&a, &b, &r);
    return r;
}
simul_fval num(long long v) {
    simul_fval r;
    f_itof(v, &r);
    return r;
}
simul_fval scale(simul_fval a, int n) {
    simul_fval r;
    f_ldexp(&a, n, &r);
    return r;
}
simul_fval neg(simul_fval a) {
    a.sign = !a.sign;
    return a;
}
simul_fval root(simul_fval a) {
    simul_fval r;
    f_sqrt(&a, &r);
    return r;
}

const simul_fval& ln2() {
    static const simul_fval v = from_text("0.69314718055994530941723212145817656807550013436");
    return v;
}
const simul_fval& ln10() {
    static const simul_fval v = from_text("2.30258509299404568401799145468436420760110148862877");
    return v;
}
const simul_fval& pi() {
    static const simul_fval v = from_text("3.14159265358979323846264338327950288419716939937511");
    return v;
}

// Whether a term of a series no longer changes the sum at the simulated precision.
bool negligible(const simul_fval& term, const simul_fval& sum) {
    return f_is_zero(&term) || (!f_is_zero(&sum) && f_findexp(&term) < f_findexp(&sum) - 110);
}

// The sum of x^k / k! for k = first, first + step, ..., the signs alternating
// when asked: the series of exp, sin, cos, sinh and cosh.
simul_fval factorial_series(const simul_fval& x, int first, int step, bool alternate) {
    simul_fval term = num(1);
    for (int k = 1; k <= first; k++)
        term = div(mul(term, x), num(k));
    simul_fval sum = term;
    const simul_fval x2 = mul(x, x);
    for (int k = first + step; k < 400; k += step) {
        term = step == 1 ? div(mul(term, x), num(k)) : div(mul(term, x2), num(k * (k - 1)));
        if (alternate)
            term = neg(term);
        if (negligible(term, sum))
            break;
        sum = add(sum, term);
    }
    return sum;
}

// x - x^3/3 + x^5/5 - ..., or with all signs positive (the series of atanh).
simul_fval odd_power_series(const simul_fval& x, bool alternate) {
    const simul_fval x2 = mul(x, x);
    simul_fval power = x;
    simul_fval sum = x;
    for (int k = 3; k < 400; k += 2) {
        power = mul(power, x2);
        if (alternate)
            power = neg(power);
        const simul_fval term = div(power, num(k));
        if (negligible(term, sum))
            break;
        sum = add(sum, term);
    }
    return sum;
}

// exp of a finite value within range.
simul_fval exp_finite(const simul_fval& x) {
    // x = k ln2 + r with |r| <= ln2 / 2; then r / 1024, whose series is short,
    // and ten squarings back.
    simul_fval k;
    const simul_fval q = div(x, ln2());
    f_round(&q, &k);
    long long n = 0;
    f_ftoi(&k, &n);
    simul_fval sum = factorial_series(scale(sub(x, mul(k, ln2())), -10), 0, 1, false);
    for (int i = 0; i < 10; i++)
        sum = mul(sum, sum);
    return scale(sum, static_cast<int>(n));
}

// Beyond this, exp leaves the simulated range: about 32752 ln2.
constexpr long long exp_limit = 22700;

// sin and cos of x, reduced by multiples of pi/2: the quadrant and the rest.
int quadrant(const simul_fval& x, simul_fval* rest) {
    const simul_fval half_pi = scale(pi(), -1);
    simul_fval k;
    const simul_fval q = div(x, half_pi);
    f_round(&q, &k);
    *rest = sub(x, mul(k, half_pi));
    simul_fval four = num(4), m;
    f_fmod(&k, &four, &m);
    long long n = 0;
    f_ftoi(&m, &n);
    return static_cast<int>((n % 4 + 4) % 4);
}

simul_fval sin_reduced(const simul_fval& r) { return factorial_series(r, 1, 2, true); }
simul_fval cos_reduced(const simul_fval& r) { return factorial_series(r, 0, 2, true); }

// atan of 0 <= y <= 1.
simul_fval atan_unit(simul_fval y) {
    // atan y = 2 atan(y / (1 + sqrt(1 + y^2))), twice: then y <= tan(pi/16).
    for (int i = 0; i < 2; i++)
        y = div(y, add(num(1), root(add(num(1), mul(y, y)))));
    return scale(odd_power_series(y, true), 2);
}

simul_fval atan_finite(const simul_fval& x) {
    simul_fval y;
    f_abs(&x, &y);
    const simul_fval one = num(1);
    simul_fval r = f_gt(&y, &one) ? sub(scale(pi(), -1), atan_unit(div(one, y))) : atan_unit(y);
    r.sign = x.sign;
    return r;
}

bool is_nan_or_copy(const simul_fval* a, simul_fval* r) {
    if (!f_is_nan(a))
        return false;
    *r = *a;
    return true;
}

} // namespace

int f_exp(const simul_fval* a, simul_fval* r) {
    if (is_nan_or_copy(a, r))
        return 0;
    if (f_is_inf(a)) {
        *r = a->sign ? pos_zero : pos_infin;
        return 0;
    }
    if (f_is_zero(a)) {
        *r = num(1);
        return 0;
    }
    const simul_fval limit = num(exp_limit);
    if (f_gt(a, &limit)) {
        *r = pos_infin;
        fp_error |= FP_OVERFLOW;
        return 1;
    }
    const simul_fval low_limit = neg(limit);
    if (f_lt(a, &low_limit)) {
        *r = pos_zero;
        fp_error |= FP_UNDERFLOW;
        return 1;
    }
    *r = exp_finite(*a);
    return 0;
}

int f_log(const simul_fval* a, simul_fval* r) {
    if (is_nan_or_copy(a, r))
        return 0;
    if (f_is_zero(a)) {
        *r = neg_infin;
        return 0;
    }
    if (a->sign)
        return invalid(r);
    if (f_is_inf(a)) {
        *r = pos_infin;
        return 0;
    }
    // a = f 2^n with sqrt(1/2) <= f < sqrt(2); log f = 2 atanh((f - 1) / (f + 1)).
    int n = 0;
    simul_fval f;
    f_frexp(a, &n, &f);
    static const simul_fval sqrt_half = from_text("0.70710678118654752440084436210484903928");
    if (f_lt(&f, &sqrt_half)) {
        f = scale(f, 1);
        n--;
    }
    const simul_fval s = div(sub(f, num(1)), add(f, num(1)));
    *r = add(mul(num(n), ln2()), scale(odd_power_series(s, false), 1));
    return 0;
}

int f_log10(const simul_fval* a, simul_fval* r) {
    simul_fval l;
    const int status = f_log(a, &l);
    *r = f_is_nan(&l) || f_is_inf(&l) ? l : div(l, ln10());
    return status;
}

int f_pow(const simul_fval* a, const simul_fval* b, simul_fval* r) {
    const simul_fval one = num(1);
    if (f_is_zero(b) || f_eq(a, &one)) {
        *r = one;
        return 0;
    }
    if (f_is_nan(a) || f_is_nan(b)) {
        *r = f_is_nan(a) ? *a : *b;
        return 0;
    }
    const bool integral = f_int(b);
    simul_fval two = num(2), half = pos_zero;
    if (integral)
        f_fmod(b, &two, &half);
    const bool odd = !f_is_zero(&half);
    long long n = 0;
    if (integral && f_findexp(b) <= 11 && f_ftoi(b, &n) == 0) {
        // Repeated squaring, exact but for one rounding per step.
        simul_fval result = one, base = *a;
        for (long long k = n < 0 ? -n : n; k; k >>= 1) {
            if (k & 1)
                result = mul(result, base);
            base = mul(base, base);
        }
        *r = n < 0 ? div(one, result) : result;
        return 0;
    }
    if (f_is_zero(a) || f_is_inf(a)) {
        const bool grows = f_is_zero(a) == static_cast<bool>(b->sign);
        *r = grows ? pos_infin : pos_zero;
        r->sign = a->sign && odd;
        return 0;
    }
    if (a->sign && !integral)
        return invalid(r);
    simul_fval magnitude, l, e;
    f_abs(a, &magnitude);
    f_log(&magnitude, &l);
    const simul_fval product = mul(*b, l);
    const int status = f_exp(&product, &e);
    e.sign = a->sign && odd;
    *r = e;
    return status;
}

int f_sin(const simul_fval* a, simul_fval* r) {
    if (is_nan_or_copy(a, r))
        return 0;
    if (f_is_inf(a))
        return invalid(r);
    if (f_is_zero(a)) {
        *r = *a;
        return 0;
    }
    simul_fval rest;
    switch (quadrant(*a, &rest)) {
    case 0:
        *r = sin_reduced(rest);
        break;
    case 1:
        *r = cos_reduced(rest);
        break;
    case 2:
        *r = neg(sin_reduced(rest));
        break;
    default:
        *r = neg(cos_reduced(rest));
        break;
    }
    return 0;
}

int f_cos(const simul_fval* a, simul_fval* r) {
    if (is_nan_or_copy(a, r))
        return 0;
    if (f_is_inf(a))
        return invalid(r);
    simul_fval rest;
    switch (quadrant(*a, &rest)) {
    case 0:
        *r = cos_reduced(rest);
        break;
    case 1:
        *r = neg(sin_reduced(rest));
        break;
    case 2:
        *r = neg(cos_reduced(rest));
        break;
    default:
        *r = sin_reduced(rest);
        break;
    }
    return 0;
}

int f_tan(const simul_fval* a, simul_fval* r) {
    if (is_nan_or_copy(a, r))
        return 0;
    if (f_is_inf(a))
        return invalid(r);
    if (f_is_zero(a)) {
        *r = *a;
        return 0;
    }
    simul_fval rest;
    const int q = quadrant(*a, &rest);
    const simul_fval s = sin_reduced(rest), c = cos_reduced(rest);
    *r = q % 2 ? neg(div(c, s)) : div(s, c);
    return 0;
}

int f_atan(const simul_fval* a, simul_fval* r) {
    if (is_nan_or_copy(a, r))
        return 0;
    if (f_is_zero(a)) {
        *r = *a;
        return 0;
    }
    if (f_is_inf(a)) {
        *r = scale(pi(), -1);
        r->sign = a->sign;
        return 0;
    }
    *r = atan_finite(*a);
    return 0;
}

int f_asin(const simul_fval* a, simul_fval* r) {
    if (is_nan_or_copy(a, r))
        return 0;
    const simul_fval one = num(1);
    simul_fval y;
    f_abs(a, &y);
    if (f_gt(&y, &one) || f_is_inf(a))
        return invalid(r);
    if (f_is_zero(a)) {
        *r = *a;
        return 0;
    }
    if (f_eq(&y, &one)) {
        *r = scale(pi(), -1);
    } else {
        // 1 - y^2 as (1 - y)(1 + y): no cancellation near 1.
        const simul_fval c = root(mul(sub(one, y), add(one, y)));
        *r = atan_finite(div(y, c));
    }
    r->sign = a->sign;
    return 0;
}

int f_acos(const simul_fval* a, simul_fval* r) {
    if (is_nan_or_copy(a, r))
        return 0;
    const simul_fval one = num(1);
    const simul_fval half = scale(one, -1);
    simul_fval y;
    f_abs(a, &y);
    if (f_gt(&y, &one) || f_is_inf(a))
        return invalid(r);
    simul_fval s;
    if (!f_gt(&y, &half)) {
        f_asin(a, &s);
        *r = sub(scale(pi(), -1), s);
        return 0;
    }
    // Near +-1: acos x = 2 asin(sqrt((1 - |x|) / 2)), from pi for negative x.
    const simul_fval t = root(scale(sub(one, y), -1));
    f_asin(&t, &s);
    *r = a->sign ? sub(pi(), scale(s, 1)) : scale(s, 1);
    return 0;
}

int f_atan2(const simul_fval* y, const simul_fval* x, simul_fval* r) {
    if (f_is_nan(y) || f_is_nan(x)) {
        *r = f_is_nan(y) ? *y : *x;
        return 0;
    }
    const simul_fval half_pi = scale(pi(), -1);
    simul_fval result;
    if (f_is_zero(y)) {
        result = x->sign ? pi() : pos_zero;
    } else if (f_is_zero(x)) {
        result = half_pi;
    } else if (f_is_inf(x)) {
        if (f_is_inf(y))
            result = x->sign ? scale(mul(pi(), num(3)), -2) : scale(pi(), -2);
        else
            result = x->sign ? pi() : pos_zero;
    } else if (f_is_inf(y)) {
        result = half_pi;
    } else {
        simul_fval q = div(*y, *x);
        f_abs(&q, &q);
        result = f_is_inf(&q) ? half_pi : atan_finite(q);
        if (x->sign)
            result = sub(pi(), result);
    }
    result.sign = y->sign;
    *r = result;
    return 0;
}

int f_sinh(const simul_fval* a, simul_fval* r) {
    if (is_nan_or_copy(a, r))
        return 0;
    if (f_is_inf(a) || f_is_zero(a)) {
        *r = *a;
        return 0;
    }
    simul_fval y;
    f_abs(a, &y);
    int status = 0;
    if (f_findexp(&y) <= -1) {
        // Below 1/2 the difference of exponentials would cancel.
        *r = factorial_series(y, 1, 2, false);
    } else {
        simul_fval e;
        status = f_exp(&y, &e);
        *r = scale(sub(e, div(num(1), e)), -1);
    }
    r->sign = a->sign;
    return status;
}

int f_cosh(const simul_fval* a, simul_fval* r) {
    if (is_nan_or_copy(a, r))
        return 0;
    if (f_is_inf(a)) {
        *r = pos_infin;
        return 0;
    }
    simul_fval y, e;
    f_abs(a, &y);
    const int status = f_exp(&y, &e);
    *r = scale(add(e, div(num(1), e)), -1);
    return status;
}

int f_tanh(const simul_fval* a, simul_fval* r) {
    if (is_nan_or_copy(a, r))
        return 0;
    if (f_is_zero(a)) {
        *r = *a;
        return 0;
    }
    simul_fval y;
    f_abs(a, &y);
    const simul_fval far = num(80); // 1 - tanh 80 is far below the last bit
    if (f_gt(&y, &far) || f_is_inf(a)) {
        *r = num(1);
    } else if (f_findexp(&y) <= -1) {
        const simul_fval s = factorial_series(y, 1, 2, false);
        const simul_fval c = factorial_series(y, 0, 2, false);
        *r = div(s, c);
    } else {
        simul_fval e;
        const simul_fval twice = scale(y, 1);
        f_exp(&twice, &e);
        *r = div(sub(e, num(1)), add(e, num(1)));
    }
    r->sign = a->sign;
    return 0;
}
