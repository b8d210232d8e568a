// The interpreter's target arithmetic against the target. The expected values
// in gen/target_arith_ref.inc were measured once on the target:
// gen/target_arith_ref.c, built with arm-linux-gnueabihf-gcc -O0 -static and
// run under qemu-arm (gen/target_arith_ref.sh), prints them. Every operand
// there goes through a volatile, so each result is what the target's code
// computes at run time, not what gcc folded.
#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <cstdio>
#include <string>

#include "target_arith.h"

namespace {

// Ops: 'l' shift left, 'r' logical right, 'a' arithmetic right.
struct RefShift32 {
    char op;
    uint32_t v, count, r;
};
struct RefShift64 {
    char op;
    uint64_t v;
    uint32_t count;
    uint64_t r;
};
// Ops: '/' and '%'.
struct RefDiv32 {
    char op;
    int is_signed;
    uint32_t a, b, r;
};
struct RefDiv64 {
    char op;
    int is_signed;
    uint64_t a, b, r;
};
// From a single (0) or a double (1); the result widened to 64 bits as its
// type widens.
struct RefFloatToInt {
    int from_double;
    uint64_t bits;
    unsigned width;
    int is_signed;
    uint64_t result;
};
// Kinds: 0 int, 1 unsigned, 2 long long, 3 unsigned long long.
struct RefIntToFloat {
    int kind;
    uint64_t value;
    uint32_t single_bits;
    uint64_t double_bits;
};
// Ops: '+', '-', '*', '/', 's' square root of a.
struct RefSingleOp {
    char op;
    uint32_t a, b, r;
};
struct RefDoubleOp {
    char op;
    uint64_t a, b, r;
};
struct RefWiden {
    uint32_t single_bits;
    uint64_t double_bits;
};
struct RefNarrow {
    uint64_t double_bits;
    uint32_t single_bits;
};

#include "gen/target_arith_ref.inc"

std::string hex(uint64_t v) {
    char buf[24];
    std::snprintf(buf, sizeof buf, "0x%llx", static_cast<unsigned long long>(v));
    return buf;
}

uint32_t bits_of(float f) { return std::bit_cast<uint32_t>(f); }
uint64_t bits_of(double d) { return std::bit_cast<uint64_t>(d); }
float single_of(uint32_t u) { return std::bit_cast<float>(u); }
double double_of(uint64_t u) { return std::bit_cast<double>(u); }

TEST(TargetArith, Shift32) {
    for (const RefShift32& t : ref_shift32) {
        uint32_t r = 0;
        switch (t.op) {
        case 'l':
            r = target::shl32(t.v, t.count);
            break;
        case 'r':
            r = target::lsr32(t.v, t.count);
            break;
        default:
            r = static_cast<uint32_t>(target::asr32(static_cast<int32_t>(t.v), t.count));
            break;
        }
        EXPECT_EQ(r, t.r) << t.op << " " << hex(t.v) << " by " << hex(t.count);
    }
}

TEST(TargetArith, Shift64) {
    for (const RefShift64& t : ref_shift64) {
        uint64_t r = 0;
        switch (t.op) {
        case 'l':
            r = target::shl64(t.v, t.count);
            break;
        case 'r':
            r = target::lsr64(t.v, t.count);
            break;
        default:
            r = static_cast<uint64_t>(target::asr64(static_cast<int64_t>(t.v), t.count));
            break;
        }
        EXPECT_EQ(r, t.r) << t.op << " " << hex(t.v) << " by " << hex(t.count);
    }
}

TEST(TargetArith, Division32) {
    for (const RefDiv32& t : ref_div32) {
        int32_t sa = static_cast<int32_t>(t.a), sb = static_cast<int32_t>(t.b);
        uint32_t r = 0;
        if (t.op == '/')
            r = t.is_signed ? static_cast<uint32_t>(target::sdiv32(sa, sb))
                            : target::udiv32(t.a, t.b);
        else
            r = t.is_signed ? static_cast<uint32_t>(target::srem32(sa, sb))
                            : target::urem32(t.a, t.b);
        EXPECT_EQ(r, t.r) << hex(t.a) << " " << t.op << " " << hex(t.b)
                          << (t.is_signed ? " signed" : " unsigned");
    }
}

TEST(TargetArith, Division64) {
    for (const RefDiv64& t : ref_div64) {
        int64_t sa = static_cast<int64_t>(t.a), sb = static_cast<int64_t>(t.b);
        uint64_t r = 0;
        if (t.op == '/')
            r = t.is_signed ? static_cast<uint64_t>(target::sdiv64(sa, sb))
                            : target::udiv64(t.a, t.b);
        else
            r = t.is_signed ? static_cast<uint64_t>(target::srem64(sa, sb))
                            : target::urem64(t.a, t.b);
        EXPECT_EQ(r, t.r) << hex(t.a) << " " << t.op << " " << hex(t.b)
                          << (t.is_signed ? " signed" : " unsigned");
    }
}

TEST(TargetArith, FloatToInt) {
    for (const RefFloatToInt& t : ref_float_to_int) {
        double v = t.from_double ? double_of(t.bits) : single_of(static_cast<uint32_t>(t.bits));
        EXPECT_EQ(target::float_to_int(v, t.width, t.is_signed), t.result)
            << (t.from_double ? "double " : "single ") << hex(t.bits) << " to "
            << (t.is_signed ? "int" : "uint") << t.width;
    }
}

// The interpreter converts integers to floating point with plain casts; these
// rows confirm that the host rounds as the target does.
TEST(TargetArith, IntToFloatIsTheHostCast) {
    for (const RefIntToFloat& t : ref_int_to_float) {
        float f = 0;
        double d = 0;
        switch (t.kind) {
        case 0:
            f = static_cast<float>(static_cast<int32_t>(t.value));
            d = static_cast<double>(static_cast<int32_t>(t.value));
            break;
        case 1:
            f = static_cast<float>(static_cast<uint32_t>(t.value));
            d = static_cast<double>(static_cast<uint32_t>(t.value));
            break;
        case 2:
            f = static_cast<float>(static_cast<int64_t>(t.value));
            d = static_cast<double>(static_cast<int64_t>(t.value));
            break;
        default:
            f = static_cast<float>(t.value);
            d = static_cast<double>(t.value);
            break;
        }
        EXPECT_EQ(bits_of(f), t.single_bits) << "kind " << t.kind << " " << hex(t.value);
        EXPECT_EQ(bits_of(d), t.double_bits) << "kind " << t.kind << " " << hex(t.value);
    }
}

TEST(TargetArith, SingleOps) {
    for (const RefSingleOp& t : ref_single_ops) {
        float a = single_of(t.a), b = single_of(t.b), r = 0;
        switch (t.op) {
        case '+':
            r = target::fadd(a, b);
            break;
        case '-':
            r = target::fsub(a, b);
            break;
        case '*':
            r = target::fmul(a, b);
            break;
        case '/':
            r = target::fdiv(a, b);
            break;
        default:
            r = target::fsqrt(a);
            break;
        }
        EXPECT_EQ(bits_of(r), t.r) << hex(t.a) << " " << t.op << " " << hex(t.b);
    }
}

TEST(TargetArith, DoubleOps) {
    for (const RefDoubleOp& t : ref_double_ops) {
        double a = double_of(t.a), b = double_of(t.b), r = 0;
        switch (t.op) {
        case '+':
            r = target::dadd(a, b);
            break;
        case '-':
            r = target::dsub(a, b);
            break;
        case '*':
            r = target::dmul(a, b);
            break;
        case '/':
            r = target::ddiv(a, b);
            break;
        default:
            r = target::dsqrt(a);
            break;
        }
        EXPECT_EQ(bits_of(r), t.r) << hex(t.a) << " " << t.op << " " << hex(t.b);
    }
}

TEST(TargetArith, WidenAndNarrow) {
    for (const RefWiden& t : ref_widen)
        EXPECT_EQ(bits_of(target::f2d(single_of(t.single_bits))), t.double_bits)
            << hex(t.single_bits);
    for (const RefNarrow& t : ref_narrow)
        EXPECT_EQ(bits_of(target::d2f(double_of(t.double_bits))), t.single_bits)
            << hex(t.double_bits);
}

} // namespace
