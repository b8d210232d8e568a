// The bitwise rewrites keep the value: random trees of masks, sums,
// shifts and conversions over two 8-bit variables are simplified, and the
// result is checked against the original for every value of one variable
// and a spread of the other, in all the small integer types.
#include <gtest/gtest.h>

#include <cstring>
#include <deque>
#include <map>
#include <random>
#include <string>

#include "ir/node.h"
#include "ir/symtab.h"
#include "ir/types.h"
#include "simplify/simplify.h"

#ifndef SEED
#define SEED 20240611
#endif

#include "tree_eval.h"

namespace {

using namespace tree_eval;

struct GENERATOR {
    std::mt19937 rng{SEED};
    SYMTAB* x;
    SYMTAB* y;
    std::vector<TYPE*> types;

    int pick(int n) { return std::uniform_int_distribution<int>(0, n - 1)(rng); }

    NODE* constant(TYPE* r) {
        static constexpr long long values[] = {0,    1,      2,      3,       7,     0xf,
                                               0xf0, 0x7f,   0x80,   0xff,    0x100, 0x1ff,
                                               -1,   -2,     -0x80,  -0x100,  0xff00, 0x7fff,
                                               0x8000, 0xffff, 0x10000, 0x7fffffff, 0x55};
        const long long v = values[pick(sizeof values / sizeof values[0])];
        return mk_ICON(truncate_to_type(INT65(v), r), r);
    }

    NODE* variable(TYPE* r) {
        SYMTAB* s = pick(3) ? x : y;
        NODE* n = mk_NAME(s, nullptr);
        return s->type == r ? n : maketree(SCONV, n, nullptr, r, nullptr);
    }

    NODE* tree(TYPE* r, int depth) {
        if (depth == 0 || pick(5) == 0)
            return pick(4) ? variable(r) : constant(r);
        static constexpr int binary[] = {ANDB, ANDB, ORB, ORB, XORB, XORB, PLUS, MINUS, MULT};
        switch (pick(6)) {
        case 0: {
            // A shift by a constant inside the width, in a promoted type as
            // C has it.
            const int op = pick(2) ? SLL : SRL;
            TYPE* s = r->size() < types[0]->size() ? types[pick(2)] : r;
            NODE* count = mk_ICON(INT65(pick(static_cast<int>(s->size()))), types[0]);
            NODE* shift = maketree(op, tree(s, depth - 1), count, s, nullptr);
            return s == r ? shift : maketree(SCONV, shift, nullptr, r, nullptr);
        }
        case 1:
            return maketree(SCONV, tree(types[pick(types.size())], depth - 1), nullptr, r, nullptr);
        default: {
            const int op = binary[pick(sizeof binary / sizeof binary[0])];
            NODE* right = pick(3) ? constant(r) : tree(r, depth - 1);
            return maketree(op, tree(r, depth - 1), right, r, nullptr);
        }
        }
    }
};

std::string text_of(const NODE* t) {
    if (!t)
        return "";
    switch (t->op) {
    case NAME:
        return t->name_symbol()->name;
    case ICON:
        return std::to_string(t->value.to_int64());
    default:
        break;
    }
    std::string s = std::string("(") + node_operator_name[t->op] + ":" + t->type->print();
    if (t->left)
        s += " " + text_of(t->left);
    if (t->right)
        s += " " + text_of(t->right);
    return s + ")";
}

} // namespace

// Not in the memory check: it evaluates some hundred thousand trees.
TEST(SimpBits, RandomMaskTreesKeepTheirValues) {
    GENERATOR g;
    g.types = {int_kind(TYPE::ik_int),   int_kind(TYPE::ik_uint),
               int_kind(TYPE::ik_char, true), int_kind(TYPE::ik_uchar, true),
               int_kind(TYPE::ik_short), int_kind(TYPE::ik_ushort)};
    static constexpr int y_values[] = {0, 1, 5, 0x7f, 0x80, 0xaa, 0xfe, 0xff};
    for (TYPE* eight : {g.types[2], g.types[3]}) {
        g.x = symbol("x", eight);
        g.y = symbol("y", g.types[3]);
        for (int n = 0; n < 400; n++) {
            TYPE* r = g.types[g.pick(g.types.size())];
            NODE* t = g.tree(r, 3);
            const std::string before = text_of(t);
            NODE* s = simp_tree(copy_tree(t, true), nullptr, nullptr);
            const std::string after = text_of(s);
            for (int vx = -128; vx < 256; vx++) {
                if (truncate_to_type(INT65(vx), eight) != INT65(vx))
                    continue;
                for (int vy : y_values) {
                    const ENV env{{g.x, INT65(vx)}, {g.y, INT65(vy)}};
                    const INT65 want = truncate_to_type(evaluate(t, env), r);
                    const INT65 got = truncate_to_type(evaluate(s, env), r);
                    ASSERT_EQ(want, got) << before << "\n  became " << after << "\n  at x=" << vx
                                         << " y=" << vy << ": " << want.to_int64() << " vs "
                                         << got.to_int64();
                }
            }
            erase_tree(t);
            erase_tree(s);
        }
    }
}

namespace {

// s.f of a struct type whose member f is an int at byte 4.
struct MEMBERS {
    TYPE* i = int_kind(TYPE::ik_int);
    TYPE* csu = tp->mk_struct("pair");
    fkMDATA* f = new fkMDATA("f", i, 0, 32, 0, 0, false, false, false);

    NODE* member_of(NODE* object) {
        NODE* field = new_node(FIELD, i);
        field->mk_field(1, f, csu);
        return maketree(STDOT, object, field, i, nullptr);
    }
    NODE* var(SYMTAB* s) { return mk_NAME(s, nullptr); }
    NODE* deref(SYMTAB* p) { return maketree(UMULT, var(p), nullptr, csu, nullptr); }
    NODE* assign(NODE* d, NODE* s) { return maketree(STASG, d, s, csu, nullptr); }
};

} // namespace

// (d = s).f reads d.f after the assignment; *p is read again only when the
// source cannot move p, and the source only when the target has no effect.
TEST(SimpMembers, MemberOfAStructAssignment) {
    MEMBERS m;
    SYMTAB* d = symbol("d", m.csu);
    SYMTAB* s = symbol("s", m.csu);
    SYMTAB* p = symbol("p", tp->mk_ptr(m.csu));
    NODE* call = maketree(UCALL, m.var(symbol("make", m.csu)), nullptr, m.csu, nullptr);

    NODE* named = simp_node(m.member_of(m.assign(m.var(d), m.var(s))), nullptr, nullptr);
    ASSERT_EQ(named->op, COMMAOP);
    EXPECT_EQ(named->left->op, STASG);
    ASSERT_EQ(named->right->op, STDOT);
    EXPECT_EQ(named->right->left->op, NAME);
    EXPECT_EQ(named->right->left->name_symbol(), d);

    // *p = make(): make may change p, and make runs once: the form stays.
    NODE* through = simp_node(m.member_of(m.assign(m.deref(p), call)), nullptr, nullptr);
    EXPECT_EQ(through->op, STDOT);
    EXPECT_EQ(through->left->op, STASG);

    // *p = s: s is read again.
    NODE* source = simp_node(m.member_of(m.assign(m.deref(p), m.var(s))), nullptr, nullptr);
    ASSERT_EQ(source->op, COMMAOP);
    ASSERT_EQ(source->right->op, STDOT);
    EXPECT_EQ(source->right->left->op, UMULT);
    for (NODE* t : {named, through, source})
        erase_tree(t);
}
