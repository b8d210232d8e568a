// Folding of floating constants in trees, against what the target computes at
// run time (gen/simfloat_ref.inc: see simfloat_test.cpp), and the FCON node's
// value record.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <string>

#include "ir/node.h"
#include "ir/types.h"
#include "simplify/fold.h"
#include "support/simfloat.h"

namespace {

struct RefSingleOp {
    char op;
    uint32_t a, b, r;
};
struct RefDoubleOp {
    char op;
    uint64_t a, b, r;
};
struct RefSingleCompare {
    uint32_t a, b;
    unsigned mask;
};
struct RefDoubleCompare {
    uint64_t a, b;
    unsigned mask;
};
struct RefText {
    const char* text;
    uint32_t single_bits;
    uint64_t double_bits;
};
struct RefIntToFloat {
    int kind;
    uint64_t value;
    uint32_t single_bits;
    uint64_t double_bits;
};
struct RefFloatToInt {
    int from_double;
    uint64_t bits;
    int kind;
    uint64_t result;
};
struct RefNarrow {
    uint64_t double_bits;
    uint32_t single_bits;
};
struct RefWiden {
    uint32_t single_bits;
    uint64_t double_bits;
};
struct RefMath {
    const char* name;
    uint64_t x, y, r;
};
struct RefPrint {
    const char* format;
    uint64_t bits;
    const char* text;
};

#include "gen/simfloat_ref.inc"

bool is_nan(uint64_t bits, bool is_double) {
    return is_double ? (bits & 0x7fffffffffffffffull) > 0x7ff0000000000000ull
                     : (bits & 0x7fffffffu) > 0x7f800000u;
}

// An FCON holds no NaN payload but the quiet bit.
bool nan_with_payload(uint64_t bits, bool is_double) {
    const uint64_t quiet = is_double ? 0x7ff8000000000000ull : 0x7fc00000u;
    const uint64_t sign = is_double ? 0x8000000000000000ull : 0x80000000u;
    return is_nan(bits, is_double) && (bits & ~sign) != quiet;
}

std::string hex(uint64_t v) {
    char buf[24];
    snprintf(buf, sizeof buf, "0x%llx", static_cast<unsigned long long>(v));
    return buf;
}

int operator_of(char op) {
    switch (op) {
    case '+':
        return PLUS;
    case '-':
        return MINUS;
    case '*':
        return MULT;
    case '/':
        return DIV;
    default:
        return UMINUS;
    }
}

struct FoldFloat : ::testing::Test {
    TYPE_PKG* saved = nullptr;

    // One package for all the tests: types live as long as the program.
    void SetUp() override {
        static TYPE_PKG* package = nullptr;
        saved = tp;
        if (!package)
            package = new TYPE_PKG;
        tp = package;
        init_types();
    }
    void TearDown() override { tp = saved; }

    TYPE* single_type() { return tp->mk_fltpt(TYPE::fk_float); }
    TYPE* double_type() { return tp->mk_fltpt(TYPE::fk_double); }
    TYPE* int_kind(int kind) {
        static const TYPE::IKIND kinds[] = {TYPE::ik_int,    TYPE::ik_uint,  TYPE::ik_llong,
                                            TYPE::ik_ullong, TYPE::ik_short, TYPE::ik_uchar,
                                            TYPE::ik_bool};
        return tp->mk_int(kinds[kind]);
    }

    NODE* fcon(uint64_t bits, TYPE* t) {
        simul_fval v;
        if (t->size() == 32)
            ieee_cvt_ftos(static_cast<unsigned>(bits), &v);
        else
            ieee_cvt_dtos(static_cast<unsigned>(bits >> 32), static_cast<unsigned>(bits), &v);
        NODE* n = new_node(FCON, t);
        n->sym = copy_fval(&v);
        return n;
    }

    // The value of a folded FCON, read back from the text it is written as.
    static uint64_t written_bits(const NODE* n) {
        simul_fval v;
        EXPECT_EQ(f_atof(n->fcon_value(), &v), 0) << n->fcon_value();
        unsigned high = 0, low = 0;
        if (n->type->size() == 32)
            ieee_cvt_stof(&v, &low);
        else
            ieee_cvt_stod(&v, &high, &low);
        return static_cast<uint64_t>(high) << 32 | low;
    }

    template <class Row> void check_operation(const Row& c, TYPE* t, bool is_double) {
        if (nan_with_payload(c.a, is_double) || nan_with_payload(c.b, is_double))
            return;
        const int op = operator_of(c.op);
        NODE* right = op == UMINUS ? nullptr : fcon(c.b, t);
        NODE* tree = maketree(op, fcon(c.a, t), right, t, nullptr);
        NODE* folded = fold_float_node(tree);
        const bool invalid = is_nan(c.r, is_double) && !is_nan(c.a, is_double) &&
                             (op == UMINUS || !is_nan(c.b, is_double));
        const std::string what = hex(c.a) + " " + c.op + " " + hex(c.b);
        if (invalid) {
            // Left for run time, which gives its default NaN.
            EXPECT_EQ(folded, tree) << what;
            EXPECT_EQ(folded->op, op) << what;
        } else {
            ASSERT_EQ(folded->op, FCON) << what;
            EXPECT_EQ(folded->type, t);
            EXPECT_EQ(hex(written_bits(folded)), hex(c.r)) << what;
        }
        erase_tree(folded);
    }
};

} // namespace

TEST_F(FoldFloat, ArithmeticIsTheTargetsBitForBit) {
    for (const RefSingleOp& c : ref_single_ops)
        check_operation(c, single_type(), false);
    for (const RefDoubleOp& c : ref_double_ops)
        check_operation(c, double_type(), true);
}

// long double is the target's double, hard cases of rounding included.
TEST_F(FoldFloat, LongDoubleFoldsAsDouble) {
    TYPE* t = tp->mk_fltpt(TYPE::fk_ldouble);
    int checked = 0;
    for (const RefDoubleOp& c : ref_double_ops)
        if (c.a >> 52 == 0x3ff || c.a >> 52 == 0x434) {
            check_operation(c, t, true);
            checked++;
        }
    EXPECT_GT(checked, 100);
}

TEST_F(FoldFloat, ComparisonsGiveInts) {
    static const int ops[] = {EQ, NEQ, LT, LE, GT, GE};
    TYPE* i32 = int_kind(0);
    auto check = [&](uint64_t a, uint64_t b, unsigned mask, TYPE* t) {
        for (int k = 0; k < 6; k++) {
            NODE* folded = fold_float_node(maketree(ops[k], fcon(a, t), fcon(b, t), i32, nullptr));
            ASSERT_EQ(folded->op, ICON) << hex(a) << " " << node_operator_name[ops[k]];
            EXPECT_EQ(folded->type, i32);
            EXPECT_EQ(folded->value, INT65(static_cast<int>(mask >> k & 1)))
                << hex(a) << " " << node_operator_name[ops[k]] << " " << hex(b);
            erase_tree(folded);
        }
    };
    for (const RefSingleCompare& c : ref_single_compares)
        check(c.a, c.b, c.mask, single_type());
    for (const RefDoubleCompare& c : ref_double_compares)
        check(c.a, c.b, c.mask, double_type());
}

TEST_F(FoldFloat, IntegersConvertToTheTargetsFloats) {
    for (const RefIntToFloat& c : ref_int_to_float)
        for (TYPE* t : {single_type(), double_type()}) {
            TYPE* from = int_kind(c.kind);
            NODE* tree =
                maketree(SCONV, mk_ICON(INT65::from_unsigned(c.value), from), nullptr, t, nullptr);
            NODE* folded = fold_float_node(tree);
            ASSERT_EQ(folded->op, FCON) << c.kind << " " << hex(c.value);
            EXPECT_EQ(folded->type, t);
            EXPECT_EQ(hex(written_bits(folded)),
                      hex(t->size() == 32 ? c.single_bits : c.double_bits))
                << c.kind << " " << hex(c.value);
            erase_tree(folded);
        }
}

TEST_F(FoldFloat, FloatsConvertToIntegersThatHoldThem) {
    for (const RefFloatToInt& c : ref_float_to_int) {
        TYPE* to = int_kind(c.kind);
        TYPE* from = c.from_double ? double_type() : single_type();
        NODE* folded = fold_float_node(maketree(SCONV, fcon(c.bits, from), nullptr, to, nullptr));
        ASSERT_EQ(folded->op, ICON) << hex(c.bits) << " to kind " << c.kind;
        EXPECT_EQ(folded->type, to);
        EXPECT_EQ(folded->value, truncate_to_type(INT65::from_unsigned(c.result), to))
            << hex(c.bits) << " to kind " << c.kind;
        erase_tree(folded);
    }
}

// Undefined in C, and saturated by the target: left for run time.
TEST_F(FoldFloat, ConversionsOutOfRangeStay) {
    struct {
        uint64_t bits;
        int kind;
    } cases[] = {
        {0x41e0000000000000ull, 0}, // 2^31 to int
        {0xc1e0000000200000ull, 0}, // -2^31 - 1 to int
        {0xbff0000000000000ull, 1}, // -1 to unsigned
        {0x41f0000000000000ull, 1}, // 2^32 to unsigned
        {0x43e0000000000000ull, 2}, // 2^63 to long long
        {0x43f0000000000000ull, 3}, // 2^64 to unsigned long long
        {0x40e0000000000000ull, 4}, // 32768 to short
        {0x4070000000000000ull, 5}, // 256 to unsigned char
        {0x7ff8000000000000ull, 0}, // NaN
        {0xfff0000000000000ull, 2}, // -inf
    };
    for (auto& c : cases) {
        NODE* tree =
            maketree(SCONV, fcon(c.bits, double_type()), nullptr, int_kind(c.kind), nullptr);
        NODE* folded = fold_float_node(tree);
        EXPECT_EQ(folded, tree) << hex(c.bits);
        EXPECT_EQ(folded->op, SCONV);
        erase_tree(folded);
    }
}

TEST_F(FoldFloat, FormatsConvert) {
    for (const RefNarrow& c : ref_narrow) {
        NODE* folded = fold_float_node(
            maketree(SCONV, fcon(c.double_bits, double_type()), nullptr, single_type(), nullptr));
        ASSERT_EQ(folded->op, FCON);
        EXPECT_EQ(hex(written_bits(folded)), hex(c.single_bits)) << hex(c.double_bits);
        erase_tree(folded);
    }
    for (const RefWiden& c : ref_widen) {
        NODE* folded = fold_float_node(
            maketree(SCONV, fcon(c.single_bits, single_type()), nullptr, double_type(), nullptr));
        ASSERT_EQ(folded->op, FCON);
        EXPECT_EQ(hex(written_bits(folded)), hex(c.double_bits)) << hex(c.single_bits);
        erase_tree(folded);
    }
}

// Trees that say nothing certain about the run-time computation stay.
TEST_F(FoldFloat, UnclearTreesStay) {
    TYPE* f = single_type();
    TYPE* d = double_type();
    TYPE* i32 = int_kind(0);
    const uint64_t one_d = 0x3ff0000000000000ull;
    NODE* trees[] = {
        // Operands of another format than the operation's, without a conversion.
        maketree(PLUS, fcon(0x3f800000, f), fcon(one_d, d), d, nullptr),
        maketree(MULT, fcon(one_d, d), fcon(one_d, d), f, nullptr),
        maketree(LT, fcon(0x3f800000, f), fcon(one_d, d), i32, nullptr),
        // An integer operand.
        maketree(PLUS, fcon(0x3f800000, f), mk_ICON(INT65(1), i32), f, nullptr),
        // Unsigned relations, which have no float meaning.
        maketree(ULT, fcon(one_d, d), fcon(0x4000000000000000ull, d), i32, nullptr),
        // A float operation typed as an integer.
        maketree(PLUS, fcon(one_d, d), fcon(one_d, d), i32, nullptr),
        // Not a constant.
        maketree(UMINUS, new_node(NAME, d), nullptr, d, nullptr),
    };
    for (NODE* t : trees) {
        const int op = t->op;
        NODE* folded = fold_float_node(t);
        EXPECT_EQ(folded, t) << node_operator_name[op];
        EXPECT_EQ(folded->op, op);
        erase_tree(folded);
    }
}

TEST_F(FoldFloat, ConstantsHoldTheTargetsValue) {
    NODE* single = new_node(FCON, single_type());
    single->mk_fcon("0.1");
    NODE* dbl = new_node(FCON, double_type());
    dbl->mk_fcon("0.1");
    // What the target's printf gives for (double)0.1f and 0.1.
    EXPECT_STREQ(single->fcon_value(), "0x1.99999ap-4");
    EXPECT_STREQ(dbl->fcon_value(), "0x1.999999999999ap-4");
    fp_error = 0;
    single->mk_fcon("1e39");
    EXPECT_STREQ(single->fcon_value(), "inf");
    EXPECT_EQ(fp_error, 0);
    single->mk_fcon("-0x1.000001p0");
    EXPECT_STREQ(single->fcon_value(), "-0x1p+0");
    erase_tree(single);
    erase_tree(dbl);

    for (const RefText& c : ref_texts) {
        NODE* n = new_node(FCON, single_type());
        n->mk_fcon(c.text);
        EXPECT_EQ(hex(written_bits(n)), hex(c.single_bits)) << c.text;
        erase_tree(n);
    }
}

TEST_F(FoldFloat, CopiesOwnTheirValueAndCompareByBits) {
    NODE* a = new_node(FCON, single_type());
    a->mk_fcon("0.1");
    NODE* same = new_node(FCON, single_type());
    same->mk_fcon("0x1.99999ap-4");
    NODE* zero = new_node(FCON, single_type());
    zero->mk_fcon("0.0");
    NODE* minus_zero = new_node(FCON, single_type());
    minus_zero->mk_fcon("-0.0");
    EXPECT_TRUE(trees_are_congruent(a, same, 0));
    EXPECT_FALSE(trees_are_congruent(zero, minus_zero, 0));
    EXPECT_FALSE(trees_are_congruent(a, zero, 0));

    NODE* copy = copy_tree(a, false);
    ASSERT_NE(copy->fval(), a->fval());
    EXPECT_TRUE(trees_are_congruent(a, copy, 0));
    erase_tree(a); // the copy's value outlives the original's
    EXPECT_STREQ(copy->fcon_value(), "0x1.99999ap-4");
    for (NODE* n : {copy, same, zero, minus_zero})
        erase_tree(n);
}

TEST_F(FoldFloat, IntegerTextNormalizes) {
    EXPECT_EQ(normalize_fcon("16777217.0", 0), "0x1p+24");
    EXPECT_EQ(normalize_fcon("16777217.0", 1), "0x1.000001p+24");
    EXPECT_EQ(normalize_fcon("-9223372036854775808.0", 1), "-0x1p+63");
    simul_fval v;
    f_atof("1e39", &v);
    fp_error = 0;
    EXPECT_EQ(truncate_fval_to_target(&v, single_type()), 1);
    EXPECT_EQ(fp_error, FP_OVERFLOW);
    EXPECT_TRUE(f_is_inf(&v));
    fp_error = 0;
    f_atof("0.1", &v);
    const simul_fval before = v;
    EXPECT_EQ(truncate_fval_to_target(&v, int_kind(0)), 0);
    EXPECT_TRUE(f_bit_eq(&v, &before));
}
