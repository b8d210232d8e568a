// The reassociation of the bitwise operators and the rules of ABS, which no
// C program reaches through the front end: each rewritten tree must have the
// value of the tree it came from for every pair of operand values tried, and
// the rewrite must have happened, or not, as the rules say.
#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <deque>
#include <map>

#include "ir/node.h"
#include "ir/symtab.h"
#include "ir/types.h"
#include "simplify/simp_internal.h"
#include "simplify/simplify.h"

#include "tree_eval.h"

namespace {

using namespace tree_eval;

TYPE* int_type() { return int_kind(TYPE::ik_int); }
TYPE* uint_type() { return int_kind(TYPE::ik_uint); }

NODE* icon(long long v, TYPE* t) { return mk_ICON(truncate_to_type(INT65(v), t), t); }

constexpr long long samples[] = {0,  1,    2,      3,          7,       8,          255,
                                 -1, -2,   -129,   0x80,       0xffff,  0x12345678, -0x12345678,
                                 256, 1000, 0x7fff, 0x7fffffff, INT_MIN, 0x40000001};

// after, a rewrite of before, has its value for every pair of samples of x
// and y.
void expect_same_values(const NODE* before, const NODE* after, SYMTAB* x, SYMTAB* y) {
    for (long long vx : samples)
        for (long long vy : samples) {
            const ENV env{{x, truncate_to_type(INT65(vx), x->type)},
                          {y, truncate_to_type(INT65(vy), y->type)}};
            const INT65 want = evaluate(before, env);
            const INT65 got = convert_integer_constant(evaluate(after, env), before->type);
            ASSERT_EQ(want, got) << node_operator_name[before->op] << " x=" << vx << " y=" << vy;
        }
}

// The rewrite of a copy of t by `simplify`, checked against t; t is freed.
template <class F> NODE* rewritten(NODE* t, SYMTAB* x, SYMTAB* y, F simplify) {
    NODE* after = simplify(copy_tree(t, false));
    expect_same_values(t, after, x, y);
    erase_tree(t);
    return after;
}

NODE* assoc(NODE* t) { return simp_assoc(t, nullptr, nullptr); }
NODE* simp(NODE* t) { return simp_node(t, nullptr, nullptr); }

} // namespace

TEST(SimpArith, RightShiftsComeOutOfBitwiseOperatorsButNotSums) {
    for (TYPE* type : {int_type(), uint_type()}) {
        SYMTAB* x = symbol("x", type);
        SYMTAB* y = symbol("y", type);
        const auto shifted = [&](SYMTAB* s, int count) {
            return node(SRL, name(s), icon(count, int_type()), type);
        };
        for (int op : {ORB, XORB, ANDB, PLUS})
            for (auto [c1, c2] : {std::pair{3, 1}, {1, 3}, {4, 4}, {31, 0}}) {
                NODE* t = node(op, shifted(x, c1), shifted(y, c2), type);
                NODE* after = rewritten(t, x, y, assoc);
                if (op == PLUS || c2 == 0)
                    EXPECT_EQ(after->op, op) << c1 << " " << c2;
                else
                    EXPECT_EQ(after->op, SRL) << node_operator_name[op] << " " << c1 << " " << c2;
                erase_tree(after);
            }
    }
}

TEST(SimpArith, PowersOfTwoAndMasksComeOut) {
    TYPE* type = uint_type();
    SYMTAB* x = symbol("x", type);
    SYMTAB* y = symbol("y", int_type());
    const auto times = [&](NODE* a, int c) { return node(MULT, a, icon(c, type), type); };
    const auto shifted = [&](NODE* a, int c) { return node(SLL, a, icon(c, int_type()), type); };
    for (int op : {ORB, XORB, ANDB, PLUS}) {
        NODE* after = rewritten(node(op, times(name(x), 4), times(name(y), 8), type), x, y, assoc);
        EXPECT_EQ(after->op, MULT) << node_operator_name[op];
        erase_tree(after);
        after = rewritten(node(op, shifted(name(x), 5), shifted(name(y), 2), type), x, y, assoc);
        EXPECT_EQ(after->op, SLL) << node_operator_name[op];
        erase_tree(after);
    }
    // (a & m) op (b & m) is (a op b) & m, for a mask that is no constant too.
    for (int op : {ORB, XORB}) {
        NODE* t = node(op, node(ANDB, name(x), node(ANDB, name(y), icon(0xf0f0, type), type), type),
                       node(ANDB, times(name(y), 3), node(ANDB, name(y), icon(0xf0f0, type), type),
                            type),
                       type);
        NODE* after = rewritten(t, x, y, assoc);
        EXPECT_EQ(after->op, ANDB) << node_operator_name[op];
        erase_tree(after);
    }
}

TEST(SimpArith, BitwiseConstantsFoldAndIdentitiesGo) {
    TYPE* type = int_type();
    SYMTAB* x = symbol("x", type);
    SYMTAB* y = symbol("y", type);
    NODE* after = rewritten(
        node(ANDB, node(ANDB, name(x), icon(12, type), type), icon(10, type), type), x, y, assoc);
    ASSERT_EQ(after->op, ANDB);
    EXPECT_EQ(after->left->op, NAME);
    EXPECT_EQ(after->right->value, INT65(8));
    erase_tree(after);
    after = rewritten(node(XORB, node(XORB, name(x), icon(5, type), type), icon(3, type), type), x,
                      y, assoc);
    ASSERT_EQ(after->op, XORB);
    EXPECT_EQ(after->right->value, INT65(6));
    erase_tree(after);
    after = rewritten(node(ORB, name(x), icon(0, type), type), x, y, assoc);
    EXPECT_EQ(after->op, NAME);
    erase_tree(after);
    after = rewritten(node(ANDB, name(x), icon(0, type), type), x, y, assoc);
    EXPECT_EQ(after->op, ICON);
    erase_tree(after);
    after = rewritten(
        node(ANDB, node(ANDB, name(x), icon(0xff, type), type), icon(0xffffff00, type), type), x,
        y, assoc);
    EXPECT_EQ(after->op, ICON);
    erase_tree(after);
    // A truth value or 1 is 1; a truth value and 1 is the truth value.
    NODE* less = node(LT, name(x), name(y), type);
    after = rewritten(node(ORB, copy_tree(less, false), icon(1, type), type), x, y, assoc);
    EXPECT_EQ(after->op, ICON);
    erase_tree(after);
    after = rewritten(node(ANDB, less, icon(1, type), type), x, y, assoc);
    EXPECT_EQ(after->op, LT);
    erase_tree(after);
}

TEST(SimpArith, AbsoluteValues) {
    TYPE* type = int_type();
    SYMTAB* x = symbol("x", type);
    SYMTAB* c = symbol("c", int_kind(TYPE::ik_uchar, true));
    // |-x| and ||x|| are |x|, also at INT_MIN.
    for (int inner : {UMINUS, ABS}) {
        NODE* after =
            rewritten(node(ABS, node(inner, name(x), nullptr, type), nullptr, type), x, c, simp);
        ASSERT_EQ(after->op, ABS);
        EXPECT_EQ(after->left->op, NAME);
        erase_tree(after);
    }
    // A value whose sign bit is zero is its own absolute value.
    NODE* widened = node(SCONV, name(c), nullptr, type);
    NODE* after = rewritten(node(ABS, widened, nullptr, type), x, c, simp);
    EXPECT_EQ(after->op, SCONV);
    erase_tree(after);
    // |1 - x| is |x - 1|; |(x < c) - 1| is 1 - (x < c).
    after = rewritten(node(ABS, node(MINUS, icon(1, type), name(x), type), nullptr, type), x, c,
                      simp);
    ASSERT_EQ(after->op, ABS);
    EXPECT_EQ(after->left->op, PLUS);
    erase_tree(after);
    NODE* truth = node(LT, name(x), node(SCONV, name(c), nullptr, type), type);
    after = rewritten(node(ABS, node(PLUS, truth, icon(-1, type), type), nullptr, type), x, c,
                      simp);
    EXPECT_EQ(after->op, MINUS);
    erase_tree(after);
    // |x * x| wraps negative for a large x: it stays.
    after = rewritten(node(ABS, node(MULT, name(x), name(x), type), nullptr, type), x, c, simp);
    EXPECT_EQ(after->op, ABS);
    erase_tree(after);
}

TEST(SimpArith, FloatingMagnitudesKeepNaNSigns) {
    TYPE* dbl = tp->mk_fltpt(TYPE::fk_double);
    SYMTAB* f = symbol("f", dbl);
    // The absolute value clears a NaN's sign either way; a square keeps it.
    NODE* t = simp(node(ABS, node(UMINUS, name(f), nullptr, dbl), nullptr, dbl));
    ASSERT_EQ(t->op, ABS);
    EXPECT_EQ(t->left->op, NAME);
    erase_tree(t);
    t = simp(node(SQR, node(UMINUS, name(f), nullptr, dbl), nullptr, dbl));
    ASSERT_EQ(t->op, SQR);
    EXPECT_EQ(t->left->op, UMINUS);
    erase_tree(t);
}
