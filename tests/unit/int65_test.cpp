// INT65 and the integer helpers, checked against 128-bit arithmetic on the
// values where 64- and 65-bit arithmetic have their edges.
#include <gtest/gtest.h>

#include <climits>
#include <cstdint>
#include <cstring>
#include <malloc.h>
#include <vector>

#include "support/int65.h"
#include "support/intmath.h"

namespace {

using i128 = __int128;
using u128 = unsigned __int128;

const i128 two64 = i128(1) << 64;

// The value an ordinary INT65 stands for.
i128 val(INT65 a) { return i128(a.sign) * two64 + i128(a.bits()); }

// An exact value in [-2^64, 2^64 - 1] as INT65.
INT65 of(i128 v) { return INT65(v < 0 ? -1 : 0, static_cast<long long>(static_cast<uint64_t>(v))); }

// v reduced to 65-bit two's complement.
i128 wrap65(i128 v) { return i128(u128(v) << 63) >> 63; }

i128 abs128(i128 v) { return v < 0 ? -v : v; }

i128 gcd128(i128 a, i128 b) {
    a = abs128(a), b = abs128(b);
    while (b != 0) {
        i128 r = a % b;
        a = b, b = r;
    }
    return a;
}

const INT65 minus_two64(-1, 0);

std::vector<INT65> edges() {
    std::vector<i128> v = {0,
                           1,
                           -1,
                           2,
                           -2,
                           3,
                           -7,
                           12,
                           INT32_MAX,
                           INT32_MIN,
                           i128(1) << 32,
                           (i128(1) << 32) - 1,
                           -(i128(1) << 32),
                           1000000007,
                           INT64_MAX,
                           INT64_MAX - 1,
                           INT64_MIN,
                           INT64_MIN + 1,
                           i128(1) << 63,
                           (i128(1) << 63) + 1,
                           0x5555555555555555LL,
                           i128(UINT64_MAX),
                           i128(UINT64_MAX) - 1,
                           -i128(UINT64_MAX),
                           -two64 + 2,
                           -two64};
    std::vector<INT65> out;
    for (i128 x : v)
        out.push_back(of(x));
    return out;
}

std::string show(INT65 a) {
    char buf[64];
    snprintf(buf, sizeof buf, "{sign %d, 0x%016llx}", a.sign, (unsigned long long)a.bits());
    return buf;
}

TEST(Int65Construct, SignWordMakesMinusOneAndTwoTo64MinusOneDiffer) {
    INT65 minus_one(-1);
    INT65 all_ones(0, -1);
    EXPECT_EQ(minus_one.bits(), all_ones.bits());
    EXPECT_EQ(minus_one.sign, -1);
    EXPECT_EQ(all_ones.sign, 0);
    EXPECT_NE(minus_one, all_ones);
    EXPECT_FALSE(minus_one == all_ones);
    EXPECT_LT(minus_one, all_ones);
    EXPECT_EQ(val(all_ones), i128(UINT64_MAX));
    EXPECT_EQ(all_ones, INT65::from_unsigned(UINT64_MAX));
    EXPECT_EQ(minus_one + INT65(1), INT65());
    EXPECT_EQ(all_ones + INT65(1), minus_two64);
}

TEST(Int65Construct, SignExtendsEveryWidth) {
    EXPECT_EQ(val(INT65(INT_MIN)), INT_MIN);
    EXPECT_EQ(val(INT65(INT_MAX)), INT_MAX);
    EXPECT_EQ(val(INT65(LLONG_MIN)), LLONG_MIN);
    EXPECT_EQ(val(INT65(LLONG_MAX)), LLONG_MAX);
    EXPECT_EQ(val(INT65(int64_t(-5))), -5);
    EXPECT_EQ(val(INT65(long(-5))), -5);
    EXPECT_TRUE(INT65().is_zero());
    EXPECT_FALSE(minus_two64.is_zero());
}

TEST(Int65Construct, FitsMatchesTheTwo64BitRanges) {
    for (INT65 a : edges()) {
        i128 v = val(a);
        SCOPED_TRACE(show(a));
        EXPECT_EQ(a.fits_int64(), v >= INT64_MIN && v <= INT64_MAX);
        EXPECT_EQ(a.fits_uint64(), v >= 0 && v <= i128(UINT64_MAX));
        if (a.fits_int64()) {
            EXPECT_EQ(a.to_int64(), v);
        }
        if (a.fits_uint64()) {
            EXPECT_EQ(a.to_uint64(), u128(v));
        }
    }
}

TEST(Int65Arith, AddSubNegateWrapAt65Bits) {
    for (INT65 a : edges()) {
        EXPECT_EQ(-a, of(wrap65(-val(a)))) << show(a);
        EXPECT_EQ(~a, of(-val(a) - 1)) << show(a);
        for (INT65 b : edges()) {
            SCOPED_TRACE(show(a) + " " + show(b));
            EXPECT_EQ(a + b, of(wrap65(val(a) + val(b))));
            EXPECT_EQ(a - b, of(wrap65(val(a) - val(b))));
        }
    }
}

TEST(Int65Arith, AddAcrossBit64AndBit65) {
    // Past 64 bits the sum is still exact.
    EXPECT_EQ(INT65(LLONG_MAX) + INT65(1), INT65::from_unsigned(1ull << 63));
    EXPECT_EQ(INT65(LLONG_MIN) + INT65(-1), of(i128(INT64_MIN) - 1));
    EXPECT_EQ(INT65::from_unsigned(1ull << 63) + INT65::from_unsigned(1ull << 63),
              of(two64 - 1) + 1);
    // Past 65 bits it wraps.
    EXPECT_EQ(INT65::from_unsigned(UINT64_MAX) + INT65(1), minus_two64);
    EXPECT_EQ(minus_two64 - INT65(1), INT65::from_unsigned(UINT64_MAX));
    EXPECT_EQ(-minus_two64, minus_two64);
}

TEST(Int65Arith, MultiplyIsExactWithinAndDropsAbove64Bits) {
    for (INT65 a : edges())
        for (INT65 b : edges()) {
            SCOPED_TRACE(show(a) + " " + show(b));
            i128 va = val(a), vb = val(b);
            u128 ma = u128(abs128(va)), mb = u128(abs128(vb));
            if (ma * mb < u128(two64) && va != -two64 && vb != -two64) {
                EXPECT_EQ(a * b, of(va * vb));
            } else {
                i128 low = i128(uint64_t(uint64_t(ma) * uint64_t(mb)));
                EXPECT_EQ(a * b, of(wrap65((va < 0) != (vb < 0) ? -low : low)));
            }
        }
    EXPECT_EQ(INT65(0, 1ll << 32) * INT65(0, 1ll << 32), INT65());
    EXPECT_EQ(INT65::from_unsigned(1ull << 63) * INT65(2), INT65());
    // -2^64 would fit, but the product of magnitudes lost it.
    EXPECT_EQ(INT65(LLONG_MIN) * INT65(2), INT65());
    EXPECT_EQ(INT65::from_unsigned(UINT64_MAX) * INT65(-1), of(-i128(UINT64_MAX)));
}

TEST(Int65Arith, DivisionTruncatesAndRemainderFollowsTheLeft) {
    struct Case {
        int a, b, q, r;
    } cases[] = {{7, 2, 3, 1}, {-7, 2, -3, -1}, {7, -2, -3, 1}, {-7, -2, 3, -1}};
    for (const Case& c : cases) {
        EXPECT_EQ(INT65(c.a) / INT65(c.b), INT65(c.q)) << c.a << " / " << c.b;
        EXPECT_EQ(INT65(c.a) % INT65(c.b), INT65(c.r)) << c.a << " % " << c.b;
    }
    for (INT65 a : edges())
        for (INT65 b : edges()) {
            i128 va = val(a), vb = val(b);
            if (vb == 0 || va == -two64 || vb == -two64)
                continue;
            SCOPED_TRACE(show(a) + " " + show(b));
            EXPECT_EQ(a / b, of(va / vb));
            EXPECT_EQ(a % b, of(va % vb));
        }
}

TEST(Int65Shift, CountsUpToAndPast64) {
    for (INT65 a : edges())
        for (int n = 0; n <= 70; n++) {
            SCOPED_TRACE(show(a) + " by " + std::to_string(n));
            i128 left = n <= 64 ? wrap65(i128(u128(val(a)) << n)) : 0;
            EXPECT_EQ(a << n, of(left));
            EXPECT_EQ(a >> n, of(val(a) >> (n < 100 ? n : 100)));
            EXPECT_EQ((a >> n).sign, a.sign);
        }
}

TEST(Int65Shift, NamedEdges) {
    INT65 one(1);
    EXPECT_EQ(one << 0, one);
    EXPECT_EQ(one << 63, INT65::from_unsigned(1ull << 63));
    EXPECT_TRUE((one << 63).fits_uint64());
    EXPECT_EQ(one << 64, minus_two64);
    EXPECT_EQ(one << 65, INT65());
    EXPECT_EQ(INT65::from_unsigned(UINT64_MAX) << 1, INT65(-2));
    EXPECT_EQ(INT65::from_unsigned(UINT64_MAX) >> 63, one);
    EXPECT_EQ(INT65::from_unsigned(UINT64_MAX) >> 64, INT65());
    EXPECT_EQ(INT65(-1) >> 64, INT65(-1));
    EXPECT_EQ(INT65(-1) >> 200, INT65(-1));
    EXPECT_EQ(minus_two64 >> 63, INT65(-2));
    EXPECT_EQ(minus_two64 >> 64, INT65(-1));
    EXPECT_EQ(INT65(LLONG_MIN) >> 63, INT65(-1));
    // A negative count shifts nothing.
    EXPECT_EQ(INT65(12) << -1, INT65(12));
    EXPECT_EQ(INT65(12) >> -1, INT65(12));
}

TEST(Int65Compare, OrdersBySignWordThenPattern) {
    for (INT65 a : edges())
        for (INT65 b : edges()) {
            SCOPED_TRACE(show(a) + " " + show(b));
            i128 va = val(a), vb = val(b);
            EXPECT_EQ(a == b, va == vb);
            EXPECT_EQ(a != b, va != vb);
            EXPECT_EQ(a < b, va < vb);
            EXPECT_EQ(a > b, va > vb);
            EXPECT_EQ(a <= b, va <= vb);
            EXPECT_EQ(a >= b, va >= vb);
        }
    // The sign word is signed: a value above 64 bits is above every ordinary one.
    INT65 above(1, 0);
    EXPECT_GT(above, INT65::from_unsigned(UINT64_MAX));
    EXPECT_LT(minus_two64, INT65(LLONG_MIN));
    EXPECT_LT(INT65(-1, 5), INT65(0, 0));
}

TEST(IntMath, Clp2) {
    EXPECT_EQ(clp2(0), 0u);
    EXPECT_EQ(clp2(1), 1u);
    EXPECT_EQ(clp2(5), 8u);
    EXPECT_EQ(clp2(64), 64u);
    EXPECT_EQ(clp2(65), 128u);
    EXPECT_EQ(clp2(0x80000000u), 0x80000000u);
    EXPECT_EQ(clp2(0x80000001u), 0u);
    for (unsigned x = 1; x < 5000; x++) {
        unsigned p = clp2(x);
        ASSERT_TRUE(p >= x && (p & (p - 1)) == 0 && p / 2 < x) << x;
    }
}

TEST(IntMath, UintGcdLcm) {
    EXPECT_EQ(uint_gcd(12, 0), 12u);
    EXPECT_EQ(uint_gcd(0, 12), 12u);
    EXPECT_EQ(uint_gcd(0, 0), 0u);
    EXPECT_EQ(uint_lcm(0, 7), 0u);
    EXPECT_EQ(uint_lcm(7, 0), 0u);
    unsigned vals[] = {1, 2, 6, 9, 12, 35, 64, 97, 360, 1001, 65536, 0x7fffffff, 0xfffffffe};
    for (unsigned a : vals)
        for (unsigned b : vals) {
            unsigned g = uint_gcd(a, b);
            ASSERT_TRUE(a % g == 0 && b % g == 0) << a << " " << b;
            EXPECT_EQ(uint_gcd(a / g, b / g), 1u) << a << " " << b;
            uint64_t l = uint64_t(a) / g * b;
            if (l <= UINT32_MAX) {
                EXPECT_EQ(uint_lcm(a, b), l) << a << " " << b;
            }
        }
}

TEST(IntMath, LongGcdLcmOnMagnitudes) {
    EXPECT_EQ(long_gcd(INT65(-12), INT65(18)), INT65(6));
    EXPECT_EQ(long_gcd(INT65(-12), INT65(0)), INT65(12));
    EXPECT_EQ(long_lcm(INT65(-4), INT65(6)), INT65(12));
    EXPECT_EQ(long_lcm(INT65(0), INT65(6)), INT65());
    EXPECT_EQ(long_lcm(INT65::from_unsigned(1ull << 32), INT65(-(1ll << 31))),
              INT65::from_unsigned(1ull << 32));
    for (INT65 a : edges())
        for (INT65 b : edges()) {
            if (a == minus_two64 || b == minus_two64)
                continue;
            SCOPED_TRACE(show(a) + " " + show(b));
            EXPECT_EQ(long_gcd(a, b), of(gcd128(val(a), val(b))));
            i128 g = gcd128(val(a), val(b));
            if (g == 0)
                continue;
            // Both factors are below 2^64, so their product cannot wrap 128 bits.
            u128 lcm = u128(abs128(val(a)) / g) * u128(abs128(val(b)));
            if (lcm < u128(two64)) {
                EXPECT_EQ(long_lcm(a, b), of(i128(lcm)));
            }
        }
}

TEST(IntMath, ExtendedGcdSolvesBezout) {
    INT65 x, y;
    EXPECT_EQ(extended_gcd(INT65(240), INT65(46), &x, &y), INT65(2));
    EXPECT_EQ(val(x) * 240 + val(y) * 46, 2);
    EXPECT_EQ(extended_gcd(INT65(0), INT65(-5), &x, &y), INT65(5));
    EXPECT_EQ(val(y) * -5, 5);
    EXPECT_EQ(extended_gcd(INT65(0), INT65(0), nullptr, nullptr), INT65());
    for (INT65 a : edges())
        for (INT65 b : edges()) {
            if (a == minus_two64 || b == minus_two64)
                continue;
            SCOPED_TRACE(show(a) + " " + show(b));
            INT65 g = extended_gcd(a, b, &x, &y);
            EXPECT_EQ(g, of(gcd128(val(a), val(b))));
            // Products may pass 2^127: check the identity modulo 2^128.
            u128 lhs = u128(val(a)) * u128(val(x)) + u128(val(b)) * u128(val(y));
            EXPECT_TRUE(lhs == u128(val(g)));
        }
}

TEST(IntMath, LongSqrt) {
    EXPECT_EQ(long_sqrt(INT65(-4)), INT65());
    EXPECT_EQ(long_sqrt(INT65(15)), INT65(3));
    EXPECT_EQ(long_sqrt(INT65(16)), INT65(4));
    EXPECT_EQ(long_sqrt(INT65(0)), INT65());
    EXPECT_EQ(long_sqrt(INT65(1, 0)), INT65::from_unsigned(0xffffffffu));
    for (INT65 a : edges()) {
        if (a.is_negative())
            continue;
        i128 r = val(long_sqrt(a)), v = val(a);
        EXPECT_TRUE(r * r <= v && (r + 1) * (r + 1) > v) << show(a);
    }
}

TEST(IntMath, LongAddFlagsOnlyResultsOutside65Bits) {
    for (INT65 a : edges())
        for (INT65 b : edges()) {
            SCOPED_TRACE(show(a) + " " + show(b));
            int overflow = 0;
            INT65 sum = long_add(a, b, &overflow);
            i128 exact = val(a) + val(b);
            EXPECT_EQ(overflow != 0, exact < -two64 || exact >= two64);
            if (!overflow) {
                EXPECT_EQ(sum, of(exact));
            }
        }
    int overflow = 0;
    long_add(INT65::from_unsigned(UINT64_MAX), INT65(1), &overflow);
    EXPECT_EQ(overflow, 1);
    long_add(INT65(1), INT65(1), &overflow);
    EXPECT_EQ(overflow, 1) << "the flag is never cleared";
}

TEST(IntMath, LongMultiplyFlagsLostProducts) {
    for (INT65 a : edges())
        for (INT65 b : edges()) {
            SCOPED_TRACE(show(a) + " " + show(b));
            int overflow = 0;
            INT65 p = long_multiply(a, b, &overflow);
            u128 ma = u128(abs128(val(a))), mb = u128(abs128(val(b)));
            if (ma < u128(two64) && mb < u128(two64) && ma * mb < u128(two64)) {
                EXPECT_EQ(overflow, 0);
            }
            if (!overflow) {
                EXPECT_EQ(p, of(val(a) * val(b)));
            }
        }
    int overflow = 0;
    long_multiply(minus_two64, INT65(1), &overflow);
    EXPECT_EQ(overflow, 1);
    overflow = 0;
    long_multiply(INT65(1), minus_two64, &overflow);
    EXPECT_EQ(overflow, 1);
    long_multiply(INT65(3), INT65(4), &overflow);
    EXPECT_EQ(overflow, 1) << "the flag is never cleared";
}

TEST(IntMath, ExptAgainstExactPowers) {
    int bases[] = {-10, -3, -2, 0, 2, 3, 7, 10};
    for (int base : bases) {
        i128 exact = 1;
        bool past = false;
        for (unsigned e = 0; e < 70; e++) {
            SCOPED_TRACE(std::to_string(base) + "^" + std::to_string(e));
            int overflow = 0;
            INT65 p = long_expt(INT65(base), e, &overflow);
            EXPECT_EQ(overflow != 0, past);
            if (!past) {
                EXPECT_EQ(p, of(exact));
            }
            if (!past) {
                exact *= base;
                past = exact >= two64 || exact < -two64;
            }
        }
    }
    int overflow = 0;
    EXPECT_EQ(long_expt(INT65(1), UINT_MAX, &overflow), INT65(1));
    EXPECT_EQ(long_expt(INT65(-1), UINT_MAX, &overflow), INT65(-1));
    EXPECT_EQ(long_expt(INT65(-1), UINT_MAX - 1, &overflow), INT65(1));
    EXPECT_EQ(long_expt(INT65(0), 0, &overflow), INT65(1));
    EXPECT_EQ(overflow, 0);
    EXPECT_EQ(long_expt(INT65(2), 63, &overflow), INT65::from_unsigned(1ull << 63));
    EXPECT_EQ(long_expt(INT65(-2), 63, &overflow), INT65(LLONG_MIN));
    EXPECT_EQ(overflow, 0);
    long_expt(INT65(2), 64, &overflow);
    EXPECT_EQ(overflow, 1);
    long_expt(INT65(2), 3, &overflow);
    EXPECT_EQ(overflow, 1) << "the flag is never cleared";
}

TEST(IntMath, UlongExptOnTheUnsignedView) {
    int overflow = 0;
    EXPECT_EQ(ulong_expt(INT65(2), 63, &overflow), INT65::from_unsigned(1ull << 63));
    EXPECT_EQ(ulong_expt(INT65(0xffffffffll), 2, &overflow),
              INT65::from_unsigned(0xfffffffe00000001ull));
    EXPECT_EQ(ulong_expt(INT65(-1), 1, &overflow), INT65::from_unsigned(UINT64_MAX));
    EXPECT_EQ(ulong_expt(INT65(1), UINT_MAX, &overflow), INT65(1));
    EXPECT_EQ(ulong_expt(INT65(5), 0, &overflow), INT65(1));
    EXPECT_EQ(overflow, 0);
    ulong_expt(INT65(2), 64, &overflow);
    EXPECT_EQ(overflow, 1);
    overflow = 0;
    ulong_expt(INT65(1ll << 32), 2, &overflow);
    EXPECT_EQ(overflow, 1);
    overflow = 0;
    ulong_expt(INT65(-1), 2, &overflow);
    EXPECT_EQ(overflow, 1);
    ulong_expt(INT65(3), 2, &overflow);
    EXPECT_EQ(overflow, 1) << "the flag is never cleared";
}

TEST(IntMath, PowersOfTwo) {
    for (int k = 0; k < 64; k++) {
        INT65 p = INT65::from_unsigned(1ull << k);
        EXPECT_EQ(power_of_2(p), k);
        EXPECT_EQ(power_of_2(-p), -1) << k;
        EXPECT_EQ(extract_power_of_2_factor(p), p);
        EXPECT_EQ(extract_power_of_2_factor(-p), p);
        if (k > 0) {
            EXPECT_EQ(power_of_2(p + INT65(1)), -1) << k;
        }
    }
    EXPECT_EQ(power_of_2(INT65()), -1);
    EXPECT_EQ(power_of_2(minus_two64), -1);
    EXPECT_EQ(power_of_2(INT65::from_unsigned(UINT64_MAX)), -1);
    EXPECT_EQ(extract_power_of_2_factor(INT65()), INT65());
    EXPECT_EQ(extract_power_of_2_factor(INT65(-12)), INT65(4));
    for (INT65 a : edges()) {
        if (a.is_zero() || a == minus_two64)
            continue;
        i128 f = val(extract_power_of_2_factor(a));
        EXPECT_TRUE(f > 0 && (f & (f - 1)) == 0 && val(a) % f == 0 && (val(a) / f) % 2 != 0)
            << show(a);
    }
}

TEST(GrowTable, ReallocatesAtEachHundredthEntryOnly) {
    const unsigned element = 64;
    void* table = nullptr;
    unsigned count = 0;
    for (unsigned i = 0; i < 250; i++) {
        void* before = table;
        size_t before_size = table ? malloc_usable_size(table) : 0;
        grow_table(&table, &count, element);
        ASSERT_EQ(count, i + 1);
        size_t size = malloc_usable_size(table);
        if (i % 100 == 0) {
            ASSERT_GE(size, (i + 100) * element) << i;
            ASSERT_GT(size, before_size) << i;
        } else {
            EXPECT_EQ(table, before) << i;
            EXPECT_EQ(size, before_size) << i;
        }
        memset(static_cast<char*>(table) + size_t(i) * element, int(i & 0xff), element);
    }
    for (unsigned i = 0; i < count; i++)
        ASSERT_EQ(static_cast<unsigned char*>(table)[size_t(i) * element + element - 1], i & 0xff);
    free(table);
}

TEST(GrowTable, TypedFormScalesByTheElement) {
    struct Entry {
        int a, b, c;
    };
    Entry* table = nullptr;
    unsigned count = 0;
    grow_table(&table, &count);
    ASSERT_NE(table, nullptr);
    EXPECT_EQ(count, 1u);
    EXPECT_GE(malloc_usable_size(table), 100 * sizeof(Entry));
    free(table);
}

} // namespace
