// The value queries of integer trees. A bound that is too tight is the fault
// that matters: each query is checked against the tree's value for every
// value of an 8-bit operand, in many result types. A few exact answers show
// that the queries know something at all.
#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <deque>
#include <functional>
#include <map>

#include "ir/node.h"
#include "ir/symtab.h"
#include "ir/types.h"
#include "simplify/simplify.h"

#include "tree_eval.h"

namespace {

using namespace tree_eval;

TYPE* int_type() { return int_kind(TYPE::ik_int); }
TYPE* uint_type() { return int_kind(TYPE::ik_uint); }
TYPE* schar_type() { return int_kind(TYPE::ik_char, true); }
TYPE* uchar_type() { return int_kind(TYPE::ik_uchar, true); }

NODE* icon(long long v, TYPE* t) { return mk_ICON(INT65(v), t); }

// Every query about t holds for each value of x (all of its 8-bit type) and
// of y (a spread of values), or y absent.
void expect_sound(NODE* t, SYMTAB* x, SYMTAB* y) {
    static constexpr int y_values[] = {0, 1, 2, 7, 64, 127, 128, 255};
    const INT65 lo = calculate_minval_for_tree(t, nullptr, nullptr);
    const INT65 hi = calculate_maxval_for_tree(t, nullptr, nullptr);
    const INT65 factor = max_ICON_factor(t, nullptr, nullptr, 0);
    const bool zero = tree_is_zero(t, nullptr, nullptr);
    const bool non_zero = tree_is_non_zero(t, nullptr, nullptr);
    const bool positive = tree_is_positive(t, nullptr, nullptr);
    const bool negative = tree_is_negative(t, nullptr, nullptr);
    const bool non_negative = tree_is_non_negative(t, nullptr, nullptr);
    const bool is_lo = tree_is_ivalue(t, lo, nullptr, nullptr);
    // Known bits in the tree's own type and as converted to others.
    TYPE* views[] = {t->type, uchar_type(), int_kind(TYPE::ik_short), int_kind(TYPE::ik_llong),
                     int_kind(TYPE::ik_bool)};
    INT65 zeros[5], ones[5];
    for (int k = 0; k < 5; k++) {
        zeros[k] = find_known_zeros(t, views[k]);
        ones[k] = find_known_ones(t, views[k]);
        // A bit known one is a bit that may be one.
        EXPECT_EQ(ones[k].bits() & ~zeros[k].bits(), 0u) << "contradiction";
    }
    for (int vx = -128; vx < 256; vx++) {
        if (truncate_to_type(INT65(vx), x->type) != INT65(vx))
            continue;
        for (int vy : y_values) {
            if (!y && vy != 0)
                continue;
            ENV env{{x, INT65(vx)}};
            if (y)
                env[y] = truncate_to_type(INT65(vy), y->type);
            const INT65 v = evaluate(t, env);
            const auto where = [&] {
                return std::string(node_operator_name[t->op]) + " in " + t->type->print() +
                       " x=" + std::to_string(vx) + " y=" + std::to_string(vy) +
                       " value=" + std::to_string(v.to_int64());
            };
            ASSERT_TRUE(lo <= v && v <= hi)
                << where() << " outside [" << lo.to_int64() << ", " << hi.to_int64() << "]";
            if (factor.is_zero())
                ASSERT_TRUE(v.is_zero()) << where();
            else
                ASSERT_TRUE((v % factor).is_zero()) << where() << " factor " << factor.to_int64();
            ASSERT_TRUE(!zero || v.is_zero()) << where();
            ASSERT_TRUE(!non_zero || !v.is_zero()) << where();
            ASSERT_TRUE(!positive || v > INT65(0)) << where();
            ASSERT_TRUE(!negative || v < INT65(0)) << where();
            ASSERT_TRUE(!non_negative || v >= INT65(0)) << where();
            ASSERT_TRUE(!is_lo || v == lo) << where();
            for (int k = 0; k < 5; k++) {
                const uint64_t bits = convert_integer_constant(v, views[k]).bits();
                ASSERT_EQ(bits & ~zeros[k].bits(), 0u) << where() << " in " << views[k]->print();
                ASSERT_EQ(bits & ones[k].bits(), ones[k].bits())
                    << where() << " in " << views[k]->print();
            }
        }
    }
}

using BUILDER = std::function<NODE*(NODE* (*)(), NODE* (*)(), TYPE*)>;

} // namespace

// Not in the memory check: it evaluates some hundred thousand trees.
TEST(ValueBounds, HoldForEveryValueOfAnEightBitOperand) {
    TYPE* result_types[] = {int_type(),
                            uint_type(),
                            schar_type(),
                            uchar_type(),
                            int_kind(TYPE::ik_short),
                            int_kind(TYPE::ik_ushort),
                            int_kind(TYPE::ik_llong),
                            int_kind(TYPE::ik_ullong)};
    // Each builder gets the operands x and y already converted to the
    // result type r, and makes one tree of type r.
    static const std::vector<std::pair<const char*, BUILDER>> shapes = {
        {"x & 15", [](auto x, auto, TYPE* r) { return node(ANDB, x(), icon(15, r), r); }},
        {"x & -16", [](auto x, auto, TYPE* r) { return node(ANDB, x(), icon(-16, r), r); }},
        {"x & 0x80", [](auto x, auto, TYPE* r) { return node(ANDB, x(), icon(0x80, r), r); }},
        {"x | 0x30", [](auto x, auto, TYPE* r) { return node(ORB, x(), icon(0x30, r), r); }},
        {"x ^ y", [](auto x, auto y, TYPE* r) { return node(XORB, x(), y(), r); }},
        {"x & y", [](auto x, auto y, TYPE* r) { return node(ANDB, x(), y(), r); }},
        {"x | y", [](auto x, auto y, TYPE* r) { return node(ORB, x(), y(), r); }},
        {"x >> 4", [](auto x, auto, TYPE* r) { return node(SRL, x(), icon(4, int_type()), r); }},
        {"x >> 7", [](auto x, auto, TYPE* r) { return node(SRL, x(), icon(7, int_type()), r); }},
        {"x >> 40", [](auto x, auto, TYPE* r) { return node(SRL, x(), icon(40, int_type()), r); }},
        {"x >> (y & 63)",
         [](auto x, auto y, TYPE* r) {
             return node(SRL, x(), node(ANDB, y(), icon(63, r), r), r);
         }},
        {"x << 3", [](auto x, auto, TYPE* r) { return node(SLL, x(), icon(3, int_type()), r); }},
        {"x << 25", [](auto x, auto, TYPE* r) { return node(SLL, x(), icon(25, int_type()), r); }},
        {"x % 10", [](auto x, auto, TYPE* r) { return node(MOD, x(), icon(10, r), r); }},
        {"x % -7", [](auto x, auto, TYPE* r) { return node(MOD, x(), icon(-7, r), r); }},
        {"x % (y|1)",
         [](auto x, auto y, TYPE* r) { return node(MOD, x(), node(ORB, y(), icon(1, r), r), r); }},
        {"x / 3", [](auto x, auto, TYPE* r) { return node(DIV, x(), icon(3, r), r); }},
        {"x / -1", [](auto x, auto, TYPE* r) { return node(DIV, x(), icon(-1, r), r); }},
        {"x / (y|1)",
         [](auto x, auto y, TYPE* r) { return node(DIV, x(), node(ORB, y(), icon(1, r), r), r); }},
        {"x + 100", [](auto x, auto, TYPE* r) { return node(PLUS, x(), icon(100, r), r); }},
        {"x + y", [](auto x, auto y, TYPE* r) { return node(PLUS, x(), y(), r); }},
        {"x + INT_MAX", [](auto x, auto, TYPE* r) { return node(PLUS, x(), icon(INT_MAX, r), r); }},
        {"5 - x", [](auto x, auto, TYPE* r) { return node(MINUS, icon(5, r), x(), r); }},
        {"x - y", [](auto x, auto y, TYPE* r) { return node(MINUS, x(), y(), r); }},
        {"x * 6", [](auto x, auto, TYPE* r) { return node(MULT, x(), icon(6, r), r); }},
        {"x * -7", [](auto x, auto, TYPE* r) { return node(MULT, x(), icon(-7, r), r); }},
        {"x * 0x1000000",
         [](auto x, auto, TYPE* r) { return node(MULT, x(), icon(0x1000000, r), r); }},
        {"x * y", [](auto x, auto y, TYPE* r) { return node(MULT, x(), y(), r); }},
        {"(x|1) * (y|2)",
         [](auto x, auto y, TYPE* r) {
             return node(MULT, node(ORB, x(), icon(1, r), r), node(ORB, y(), icon(2, r), r), r);
         }},
        {"(x|256) * (y|256)",
         [](auto x, auto y, TYPE* r) {
             return node(MULT, node(ORB, x(), icon(256, r), r), node(ORB, y(), icon(256, r), r), r);
         }},
        {"x*4 + y*6",
         [](auto x, auto y, TYPE* r) {
             return node(PLUS, node(MULT, x(), icon(4, r), r), node(MULT, y(), icon(6, r), r), r);
         }},
        {"(x & 3) << 2",
         [](auto x, auto, TYPE* r) {
             return node(SLL, node(ANDB, x(), icon(3, r), r), icon(2, int_type()), r);
         }},
        {"-x", [](auto x, auto, TYPE* r) { return node(UMINUS, x(), nullptr, r); }},
        {"~x", [](auto x, auto, TYPE* r) { return node(NOTB, x(), nullptr, r); }},
        {"abs x", [](auto x, auto, TYPE* r) { return node(ABS, x(), nullptr, r); }},
        {"!x",
         [](auto x, auto, TYPE* r) { return conv(r, node(EXCLAIM, x(), nullptr, int_type())); }},
        {"x < y",
         [](auto x, auto y, TYPE* r) {
             return conv(r, node(r->is_signed() ? LT : ULT, x(), y(), int_type()));
         }},
        {"x ? 9 : y", [](auto x, auto y,
                         TYPE* r) { return node(QUEST, x(), node(COLON, icon(9, r), y(), r), r); }},
        {"(schar)(x + 200)",
         [](auto x, auto, TYPE* r) {
             return conv(r, conv(schar_type(), node(PLUS, x(), icon(200, r), r)));
         }},
        {"(bool)(x & 6)",
         [](auto x, auto, TYPE* r) {
             return conv(r, conv(int_kind(TYPE::ik_bool), node(ANDB, x(), icon(6, r), r)));
         }},
    };
    static SYMTAB* x = nullptr;
    static SYMTAB* y = nullptr;
    static TYPE* r_now = nullptr;
    for (TYPE* eight : {schar_type(), uchar_type()}) {
        x = symbol("x", eight);
        y = symbol("y", uchar_type());
        for (TYPE* r : result_types) {
            r_now = r;
            const auto make_x = []() { return conv(r_now, name(x)); };
            const auto make_y = []() { return conv(r_now, name(y)); };
            for (const auto& [text, build] : shapes) {
                NODE* t = build(+make_x, +make_y, r);
                SCOPED_TRACE(std::string(text) + " with x " + eight->print());
                expect_sound(t, x, sym_appears_in_tree(y, t) ? y : nullptr);
                erase_tree(t);
                if (HasFatalFailure())
                    return;
            }
        }
    }
}

TEST(ValueQuery, KnowsTheRangesOfCommonShapes) {
    TYPE* i = int_type();
    TYPE* u = uint_type();
    SYMTAB* x = symbol("x", i);
    SYMTAB* ux = symbol("ux", u);
    SYMTAB* uc = symbol("uc", uchar_type());
    SYMTAB* sc = symbol("sc", schar_type());
    struct {
        NODE* tree;
        long long lo, hi;
    } cases[] = {
        {node(ANDB, conv(i, name(uc)), icon(15, i), i), 0, 15},
        {conv(i, name(sc)), -128, 127},
        {node(SRL, name(ux), icon(28, i), u), 0, 15},
        {node(MOD, name(x), icon(10, i), i), -9, 9},
        {node(MOD, name(ux), icon(10, u), u), 0, 9},
        {node(LT, name(x), name(x), i), 0, 1},
        {node(PLUS, conv(i, name(uc)), conv(i, name(uc)), i), 0, 510},
        {node(MULT, conv(i, name(uc)), icon(1000, i), i), 0, 255000},
        {node(PLUS, name(x), icon(1, i), i), INT_MIN, INT_MAX},
        {name(ux), 0, UINT_MAX},
        {node(SRL, name(x), icon(31, i), i), -1, 0},
    };
    for (auto& c : cases) {
        EXPECT_EQ(calculate_minval_for_tree(c.tree, nullptr, nullptr), INT65(c.lo))
            << node_operator_name[c.tree->op];
        EXPECT_EQ(calculate_maxval_for_tree(c.tree, nullptr, nullptr), INT65(c.hi))
            << node_operator_name[c.tree->op];
        erase_tree(c.tree);
    }
}

TEST(ValueQuery, FactorsSurviveOnlyWhatWrappingKeeps) {
    TYPE* i = int_type();
    SYMTAB* x = symbol("x", i);
    SYMTAB* uc = symbol("uc", uchar_type());
    struct {
        NODE* tree;
        long long factor;
    } cases[] = {
        {icon(12, i), 12},
        {icon(-12, i), 12},
        {node(MULT, conv(i, name(uc)), icon(6, i), i), 6},
        // x * 6 may wrap: 6 * 0x2aaaaaab is 2 modulo 2^32, so only 2 is sure.
        {node(MULT, name(x), icon(6, i), i), 2},
        {node(SLL, name(x), icon(3, i), i), 8},
        {node(ANDB, name(x), icon(-8, i), i), 8},
        {node(PLUS, node(MULT, conv(i, name(uc)), icon(4, i), i),
              node(MULT, conv(i, name(uc)), icon(6, i), i), i),
         2},
        {name(x), 1},
    };
    for (auto& c : cases) {
        EXPECT_EQ(max_ICON_factor(c.tree, nullptr, nullptr, 0), INT65(c.factor))
            << node_operator_name[c.tree->op];
        erase_tree(c.tree);
    }
}

TEST(ValueQuery, KnownBitsAndSigns) {
    TYPE* i = int_type();
    TYPE* u = uint_type();
    SYMTAB* x = symbol("x", i);
    SYMTAB* y = symbol("y", i);
    SYMTAB* uc = symbol("uc", uchar_type());
    NODE* masked = node(ANDB, name(x), icon(0xf0, i), i);
    EXPECT_EQ(find_known_zeros(masked, i), INT65(0xf0));
    EXPECT_EQ(find_known_ones(masked, i), INT65(0));
    NODE* odd = node(ORB, name(x), icon(1, i), i);
    EXPECT_EQ(find_known_ones(odd, i), INT65(1));
    EXPECT_TRUE(tree_is_non_zero(odd, nullptr, nullptr));
    NODE* widened = conv(u, name(uc));
    EXPECT_EQ(find_known_zeros(widened, u), INT65(0xff));
    EXPECT_EQ(sign_of_integer_expression(widened, nullptr, true, nullptr), 1);
    EXPECT_EQ(sign_of_integer_expression(widened, nullptr, false, nullptr), 0);
    NODE* negative = node(ORB, name(x), icon(INT_MIN, i), i);
    EXPECT_EQ(sign_of_integer_expression(negative, nullptr, true, nullptr), -1);
    EXPECT_TRUE(tree_is_negative(negative, nullptr, nullptr));
    // Both factors are non-zero, yet 65536 * 65536 is 0 in 32 bits.
    NODE* wraps = node(MULT, node(ORB, name(x), icon(0x10000, i), i),
                       node(ORB, name(y), icon(0x10000, i), i), i);
    EXPECT_FALSE(tree_is_non_zero(wraps, nullptr, nullptr));
    // An odd factor has an inverse modulo 2^32: the product is not 0.
    NODE* odd_product = node(MULT, copy_tree(odd, false), node(ORB, name(y), icon(4, i), i), i);
    EXPECT_TRUE(tree_is_non_zero(odd_product, nullptr, nullptr));
    NODE* nothing = node(ANDB, name(x), icon(0, i), i);
    EXPECT_TRUE(tree_is_zero(nothing, nullptr, nullptr));
    EXPECT_TRUE(tree_is_ivalue(nothing, INT65(0), nullptr, nullptr));
    // As _Bool, 256 is 1, not the 0 of its low byte.
    NODE* big = node(ORB, name(x), icon(0x100, i), i);
    EXPECT_EQ(find_known_zeros(big, int_kind(TYPE::ik_bool)), INT65(1));
    EXPECT_EQ(find_known_ones(big, int_kind(TYPE::ik_bool)), INT65(1));
    for (NODE* t : {masked, odd, widened, negative, wraps, odd_product, nothing, big})
        erase_tree(t);
}

TEST(ValueQuery, AddressesOfObjectsAreNotNull) {
    TYPE* i = int_type();
    TYPE* pi = tp->mk_ptr(i);
    SYMTAB* g = symbol("g", i);
    SYMTAB* weak = symbol("w", i);
    weak->pragmas = mk_pragma(83, 0, nullptr, nullptr);
    SYMTAB* p = symbol("p", pi);
    NODE* address = node(UAND, name(g), nullptr, pi);
    EXPECT_TRUE(tree_is_non_zero(address, nullptr, nullptr));
    NODE* offset = node(PLUS, copy_tree(address, false), icon(4, i), pi);
    EXPECT_TRUE(tree_is_non_zero(offset, nullptr, nullptr));
    NODE* weak_address = node(UAND, name(weak), nullptr, pi);
    EXPECT_FALSE(tree_is_non_zero(weak_address, nullptr, nullptr));
    // &*p is p, which may be null.
    NODE* through = node(UAND, node(UMULT, name(p), nullptr, i), nullptr, pi);
    EXPECT_FALSE(tree_is_non_zero(through, nullptr, nullptr));
    NODE* null = maketree(PCONV, icon(0, i), nullptr, pi, nullptr);
    EXPECT_TRUE(tree_is_zero(null, nullptr, nullptr));
    for (NODE* t : {address, offset, weak_address, through, null})
        erase_tree(t);
    erase_pragma_list(weak->pragmas);
    weak->pragmas = nullptr;
}

// A bit field holds the values of its width, not of its declared type; a
// signed one reaches its sign bit's copies, so no high bit is known.
TEST(ValueQuery, BitFieldsHoldTheirWidth) {
    TYPE* i = int_type();
    TYPE* u = uint_type();
    TYPE* csu = tp->mk_struct("bits");
    SYMTAB* s = symbol("s", csu);
    const auto read = [&](TYPE* type, int offset, int width, bool bitfield) {
        static auto* members = new std::deque<fkMDATA>;
        fkMDATA* m = &members->emplace_back("f", type, 0, offset, width, 0, bitfield, false, false);
        NODE* field = new_node(FIELD, type);
        field->mk_field(1, m, csu);
        return node(STDOT, name(s), field, type);
    };
    NODE* three = read(u, 3, 3, true);
    EXPECT_EQ(calculate_minval_for_tree(three, nullptr, nullptr), INT65(0));
    EXPECT_EQ(calculate_maxval_for_tree(three, nullptr, nullptr), INT65(7));
    EXPECT_EQ(find_known_zeros(three, u), INT65(7));
    NODE* four = read(i, 6, 4, true);
    EXPECT_EQ(calculate_minval_for_tree(four, nullptr, nullptr), INT65(-8));
    EXPECT_EQ(calculate_maxval_for_tree(four, nullptr, nullptr), INT65(7));
    EXPECT_EQ(find_known_zeros(four, u), INT65::from_unsigned(0xffffffffu));
    // A one-bit signed field is 0 or -1.
    NODE* one = read(i, 10, 1, true);
    EXPECT_EQ(calculate_minval_for_tree(one, nullptr, nullptr), INT65(-1));
    EXPECT_EQ(calculate_maxval_for_tree(one, nullptr, nullptr), INT65(0));
    // A plain member has its type's range.
    NODE* plain = read(u, 32, 0, false);
    EXPECT_EQ(calculate_maxval_for_tree(plain, nullptr, nullptr), int_type_max(u));
    for (NODE* t : {three, four, one, plain})
        erase_tree(t);
}
