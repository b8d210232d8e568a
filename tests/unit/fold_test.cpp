// Constant folding and the conversion simplifiers. The folding results are
// checked against what code compiled for the 32-bit ARM target computes at
// run time; the rewrites of conversions are checked by evaluating a tree
// before and after, for many values of its names.
#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <deque>
#include <map>

#include "ir/ir.h"
#include "ir/node.h"
#include "ir/symtab.h"
#include "ir/types.h"
#include "simplify/simplify.h"

namespace {

enum TID { T_BOOL, T_SCHAR, T_UCHAR, T_CHAR, T_SHORT, T_USHORT, T_INT, T_UINT, T_LLONG, T_ULLONG };
constexpr TID all_types[] = {T_BOOL,   T_SCHAR, T_UCHAR, T_CHAR,  T_SHORT,
                             T_USHORT, T_INT,   T_UINT,  T_LLONG, T_ULLONG};

TYPE* type_of(TID id) {
    if (!tp) {
        tp = new TYPE_PKG;
        init_types();
    }
    switch (id) {
    case T_BOOL:
        return tp->mk_int(TYPE::ik_bool);
    case T_SCHAR:
        return tp->mk_int(TYPE::ik_char, true);
    case T_UCHAR:
        return tp->mk_int(TYPE::ik_uchar, true);
    case T_CHAR:
        // Plain char is unsigned on this target: the unsigned kind without
        // the explicit-sign flag, as the front end writes it.
        return tp->mk_int(TYPE::ik_uchar);
    case T_SHORT:
        return tp->mk_int(TYPE::ik_short);
    case T_USHORT:
        return tp->mk_int(TYPE::ik_ushort);
    case T_INT:
        return tp->mk_int(TYPE::ik_int);
    case T_UINT:
        return tp->mk_int(TYPE::ik_uint);
    case T_LLONG:
        return tp->mk_int(TYPE::ik_llong);
    default:
        return tp->mk_int(TYPE::ik_ullong);
    }
}

TYPE* int_type() { return type_of(T_INT); }

// A reference value as the INT65 constant of its type: the generator prints
// signed results sign-extended and unsigned ones zero-extended.
INT65 ref(int64_t v, const TYPE* t) {
    return t->is_signed() ? INT65(static_cast<long long>(v))
                          : INT65::from_unsigned(static_cast<uint64_t>(v));
}

NODE* icon(int64_t v, TYPE* t) { return mk_ICON(ref(v, t), t); }
NODE* node(int op, NODE* l, NODE* r, TYPE* t) { return maketree(op, l, r, t, nullptr); }
NODE* conv(TYPE* t, NODE* x) { return maketree(SCONV, x, nullptr, t, nullptr); }

// Symbols outlive the trees that name them; the tests keep them all.
SYMTAB* symbol(const char* name, TYPE* type) {
    static auto* symbols = new std::deque<SYMTAB>;
    SYMTAB* s = &symbols->emplace_back();
    s->name = strdup(name);
    s->type = type;
    return s;
}
NODE* name(SYMTAB* s) { return mk_NAME(s, nullptr); }

using ENV = std::map<const SYMTAB*, INT65>;

// The value of a tree for given values of its names, computed node by node
// by the folder, whose results the tables below check against the target.
// Sets *ok to false when a node does not fold.
INT65 evaluate(const NODE* t, const ENV& env, bool* ok) {
    switch (t->op) {
    case NAME:
        return convert_integer_constant(env.at(t->name_symbol()), t->type);
    case ICON:
        return t->value;
    case QUEST:
        return evaluate(evaluate(t->left, env, ok).is_zero() ? t->right->right : t->right->left,
                        env, ok);
    case COMMAOP:
        evaluate(t->left, env, ok);
        return evaluate(t->right, env, ok);
    default:
        break;
    }
    NODE* n = copy_node(t, false);
    if (t->left)
        n->left = mk_ICON(evaluate(t->left, env, ok), t->left->type);
    if (t->right)
        n->right = mk_ICON(evaluate(t->right, env, ok), t->right->type);
    n = fold_constants(n);
    const INT65 v = n->value;
    *ok = *ok && n->op == ICON;
    erase_tree(n);
    return v;
}

// Operand values with the edges of every integer type.
constexpr long long samples[] = {
    0,           1,         -1,        2,           0x7f,    0x80,    0xff,    0x100,
    -0x81,       0x7fff,    0x8000,    0xffff,      0x10000, INT_MAX, INT_MIN, 0xffffffff,
    0x100000000, LLONG_MAX, LLONG_MIN, 12345678901, -3,      0x55aa};

// Whether simplifying a copy of `t` keeps its value for every sample value of
// each of the names a and b (either may be null). Returns the simplified copy
// through `out` when asked; the caller erases it.
void expect_same_values(NODE* t, SYMTAB* a, SYMTAB* b, NODE** out = nullptr) {
    static constexpr long long second[] = {0, 1, -1, 3, 0x80, 0xffff, INT_MIN, LLONG_MIN};
    NODE* s = simp_tree(copy_tree(t, false), nullptr, nullptr);
    for (long long va : samples)
        for (long long vb : second) {
            if (!b && vb != 0)
                continue;
            ENV env;
            if (a)
                env[a] = convert_integer_constant(INT65(va), a->type);
            if (b)
                env[b] = convert_integer_constant(INT65(vb), b->type);
            bool ok = true;
            const INT65 before = evaluate(t, env, &ok);
            const INT65 after = evaluate(s, env, &ok);
            ASSERT_TRUE(ok);
            ASSERT_EQ(before, after) << "a=" << va << " b=" << vb << " op " << t->op;
        }
    if (out)
        *out = s;
    else
        erase_tree(s);
}

// The tables below were printed by tests/unit/gen/fold_ref.c, compiled with
// arm-linux-gnueabihf-gcc -O0 -fwrapv -static and run once under qemu-arm:
// every operand came from a volatile object, so each result is what the
// target's instructions and division routines gave. Values are 64-bit
// patterns as INT65 constants hold them.

struct ARITH {
    TID type;
    int op;
    int64_t a, b, result;
};
// clang-format off
constexpr ARITH arith[] = {
    {T_SCHAR, PLUS, 1, 1, 2}, {T_SCHAR, MINUS, 1, 1, 0}, {T_SCHAR, MULT, 1, 1, 1},
    {T_SCHAR, PLUS, 1, -1, 0}, {T_SCHAR, MINUS, 1, -1, 2}, {T_SCHAR, MULT, 1, -1, -1},
    {T_SCHAR, PLUS, 1, -128, -127}, {T_SCHAR, MINUS, 1, -128, -127}, {T_SCHAR, MULT, 1, -128, -128},
    {T_SCHAR, PLUS, 1, 0, 1}, {T_SCHAR, MINUS, 1, 0, 1}, {T_SCHAR, MULT, 1, 0, 0},
    {T_SCHAR, PLUS, -1, 1, 0}, {T_SCHAR, MINUS, -1, 1, -2}, {T_SCHAR, MULT, -1, 1, -1},
    {T_SCHAR, PLUS, -1, -1, -2}, {T_SCHAR, MINUS, -1, -1, 0}, {T_SCHAR, MULT, -1, -1, 1},
    {T_SCHAR, PLUS, -1, -128, 127}, {T_SCHAR, MINUS, -1, -128, 127},
    {T_SCHAR, MULT, -1, -128, -128}, {T_SCHAR, PLUS, -1, 0, -1}, {T_SCHAR, MINUS, -1, 0, -1},
    {T_SCHAR, MULT, -1, 0, 0}, {T_SCHAR, PLUS, 127, 1, -128}, {T_SCHAR, MINUS, 127, 1, 126},
    {T_SCHAR, MULT, 127, 1, 127}, {T_SCHAR, PLUS, 127, -1, 126}, {T_SCHAR, MINUS, 127, -1, -128},
    {T_SCHAR, MULT, 127, -1, -127}, {T_SCHAR, PLUS, 127, -128, -1}, {T_SCHAR, MINUS, 127, -128, -1},
    {T_SCHAR, MULT, 127, -128, -128}, {T_SCHAR, PLUS, 127, 0, 127}, {T_SCHAR, MINUS, 127, 0, 127},
    {T_SCHAR, MULT, 127, 0, 0}, {T_SCHAR, PLUS, -128, 1, -127}, {T_SCHAR, MINUS, -128, 1, 127},
    {T_SCHAR, MULT, -128, 1, -128}, {T_SCHAR, PLUS, -128, -1, 127},
    {T_SCHAR, MINUS, -128, -1, -127}, {T_SCHAR, MULT, -128, -1, -128},
    {T_SCHAR, PLUS, -128, -128, 0}, {T_SCHAR, MINUS, -128, -128, 0}, {T_SCHAR, MULT, -128, -128, 0},
    {T_SCHAR, PLUS, -128, 0, -128}, {T_SCHAR, MINUS, -128, 0, -128}, {T_SCHAR, MULT, -128, 0, 0},
    {T_SCHAR, PLUS, 0, 1, 1}, {T_SCHAR, MINUS, 0, 1, -1}, {T_SCHAR, MULT, 0, 1, 0},
    {T_SCHAR, PLUS, 0, -1, -1}, {T_SCHAR, MINUS, 0, -1, 1}, {T_SCHAR, MULT, 0, -1, 0},
    {T_SCHAR, PLUS, 0, -128, -128}, {T_SCHAR, MINUS, 0, -128, -128}, {T_SCHAR, MULT, 0, -128, 0},
    {T_SCHAR, PLUS, 0, 0, 0}, {T_SCHAR, MINUS, 0, 0, 0}, {T_SCHAR, MULT, 0, 0, 0},
    {T_UCHAR, PLUS, 1, 1, 2}, {T_UCHAR, MINUS, 1, 1, 0}, {T_UCHAR, MULT, 1, 1, 1},
    {T_UCHAR, PLUS, 1, 255, 0}, {T_UCHAR, MINUS, 1, 255, 2}, {T_UCHAR, MULT, 1, 255, 255},
    {T_UCHAR, PLUS, 1, 128, 129}, {T_UCHAR, MINUS, 1, 128, 129}, {T_UCHAR, MULT, 1, 128, 128},
    {T_UCHAR, PLUS, 1, 0, 1}, {T_UCHAR, MINUS, 1, 0, 1}, {T_UCHAR, MULT, 1, 0, 0},
    {T_UCHAR, PLUS, 255, 1, 0}, {T_UCHAR, MINUS, 255, 1, 254}, {T_UCHAR, MULT, 255, 1, 255},
    {T_UCHAR, PLUS, 255, 255, 254}, {T_UCHAR, MINUS, 255, 255, 0}, {T_UCHAR, MULT, 255, 255, 1},
    {T_UCHAR, PLUS, 255, 128, 127}, {T_UCHAR, MINUS, 255, 128, 127}, {T_UCHAR, MULT, 255, 128, 128},
    {T_UCHAR, PLUS, 255, 0, 255}, {T_UCHAR, MINUS, 255, 0, 255}, {T_UCHAR, MULT, 255, 0, 0},
    {T_UCHAR, PLUS, 127, 1, 128}, {T_UCHAR, MINUS, 127, 1, 126}, {T_UCHAR, MULT, 127, 1, 127},
    {T_UCHAR, PLUS, 127, 255, 126}, {T_UCHAR, MINUS, 127, 255, 128}, {T_UCHAR, MULT, 127, 255, 129},
    {T_UCHAR, PLUS, 127, 128, 255}, {T_UCHAR, MINUS, 127, 128, 255}, {T_UCHAR, MULT, 127, 128, 128},
    {T_UCHAR, PLUS, 127, 0, 127}, {T_UCHAR, MINUS, 127, 0, 127}, {T_UCHAR, MULT, 127, 0, 0},
    {T_UCHAR, PLUS, 128, 1, 129}, {T_UCHAR, MINUS, 128, 1, 127}, {T_UCHAR, MULT, 128, 1, 128},
    {T_UCHAR, PLUS, 128, 255, 127}, {T_UCHAR, MINUS, 128, 255, 129}, {T_UCHAR, MULT, 128, 255, 128},
    {T_UCHAR, PLUS, 128, 128, 0}, {T_UCHAR, MINUS, 128, 128, 0}, {T_UCHAR, MULT, 128, 128, 0},
    {T_UCHAR, PLUS, 128, 0, 128}, {T_UCHAR, MINUS, 128, 0, 128}, {T_UCHAR, MULT, 128, 0, 0},
    {T_UCHAR, PLUS, 0, 1, 1}, {T_UCHAR, MINUS, 0, 1, 255}, {T_UCHAR, MULT, 0, 1, 0},
    {T_UCHAR, PLUS, 0, 255, 255}, {T_UCHAR, MINUS, 0, 255, 1}, {T_UCHAR, MULT, 0, 255, 0},
    {T_UCHAR, PLUS, 0, 128, 128}, {T_UCHAR, MINUS, 0, 128, 128}, {T_UCHAR, MULT, 0, 128, 0},
    {T_UCHAR, PLUS, 0, 0, 0}, {T_UCHAR, MINUS, 0, 0, 0}, {T_UCHAR, MULT, 0, 0, 0},
    {T_CHAR, PLUS, 1, 1, 2}, {T_CHAR, MINUS, 1, 1, 0}, {T_CHAR, MULT, 1, 1, 1},
    {T_CHAR, PLUS, 1, 255, 0}, {T_CHAR, MINUS, 1, 255, 2}, {T_CHAR, MULT, 1, 255, 255},
    {T_CHAR, PLUS, 1, 128, 129}, {T_CHAR, MINUS, 1, 128, 129}, {T_CHAR, MULT, 1, 128, 128},
    {T_CHAR, PLUS, 1, 0, 1}, {T_CHAR, MINUS, 1, 0, 1}, {T_CHAR, MULT, 1, 0, 0},
    {T_CHAR, PLUS, 255, 1, 0}, {T_CHAR, MINUS, 255, 1, 254}, {T_CHAR, MULT, 255, 1, 255},
    {T_CHAR, PLUS, 255, 255, 254}, {T_CHAR, MINUS, 255, 255, 0}, {T_CHAR, MULT, 255, 255, 1},
    {T_CHAR, PLUS, 255, 128, 127}, {T_CHAR, MINUS, 255, 128, 127}, {T_CHAR, MULT, 255, 128, 128},
    {T_CHAR, PLUS, 255, 0, 255}, {T_CHAR, MINUS, 255, 0, 255}, {T_CHAR, MULT, 255, 0, 0},
    {T_CHAR, PLUS, 127, 1, 128}, {T_CHAR, MINUS, 127, 1, 126}, {T_CHAR, MULT, 127, 1, 127},
    {T_CHAR, PLUS, 127, 255, 126}, {T_CHAR, MINUS, 127, 255, 128}, {T_CHAR, MULT, 127, 255, 129},
    {T_CHAR, PLUS, 127, 128, 255}, {T_CHAR, MINUS, 127, 128, 255}, {T_CHAR, MULT, 127, 128, 128},
    {T_CHAR, PLUS, 127, 0, 127}, {T_CHAR, MINUS, 127, 0, 127}, {T_CHAR, MULT, 127, 0, 0},
    {T_CHAR, PLUS, 128, 1, 129}, {T_CHAR, MINUS, 128, 1, 127}, {T_CHAR, MULT, 128, 1, 128},
    {T_CHAR, PLUS, 128, 255, 127}, {T_CHAR, MINUS, 128, 255, 129}, {T_CHAR, MULT, 128, 255, 128},
    {T_CHAR, PLUS, 128, 128, 0}, {T_CHAR, MINUS, 128, 128, 0}, {T_CHAR, MULT, 128, 128, 0},
    {T_CHAR, PLUS, 128, 0, 128}, {T_CHAR, MINUS, 128, 0, 128}, {T_CHAR, MULT, 128, 0, 0},
    {T_CHAR, PLUS, 0, 1, 1}, {T_CHAR, MINUS, 0, 1, 255}, {T_CHAR, MULT, 0, 1, 0},
    {T_CHAR, PLUS, 0, 255, 255}, {T_CHAR, MINUS, 0, 255, 1}, {T_CHAR, MULT, 0, 255, 0},
    {T_CHAR, PLUS, 0, 128, 128}, {T_CHAR, MINUS, 0, 128, 128}, {T_CHAR, MULT, 0, 128, 0},
    {T_CHAR, PLUS, 0, 0, 0}, {T_CHAR, MINUS, 0, 0, 0}, {T_CHAR, MULT, 0, 0, 0},
    {T_SHORT, PLUS, 1, 1, 2}, {T_SHORT, MINUS, 1, 1, 0}, {T_SHORT, MULT, 1, 1, 1},
    {T_SHORT, PLUS, 1, -1, 0}, {T_SHORT, MINUS, 1, -1, 2}, {T_SHORT, MULT, 1, -1, -1},
    {T_SHORT, PLUS, 1, 128, 129}, {T_SHORT, MINUS, 1, 128, -127}, {T_SHORT, MULT, 1, 128, 128},
    {T_SHORT, PLUS, 1, 0, 1}, {T_SHORT, MINUS, 1, 0, 1}, {T_SHORT, MULT, 1, 0, 0},
    {T_SHORT, PLUS, -1, 1, 0}, {T_SHORT, MINUS, -1, 1, -2}, {T_SHORT, MULT, -1, 1, -1},
    {T_SHORT, PLUS, -1, -1, -2}, {T_SHORT, MINUS, -1, -1, 0}, {T_SHORT, MULT, -1, -1, 1},
    {T_SHORT, PLUS, -1, 128, 127}, {T_SHORT, MINUS, -1, 128, -129}, {T_SHORT, MULT, -1, 128, -128},
    {T_SHORT, PLUS, -1, 0, -1}, {T_SHORT, MINUS, -1, 0, -1}, {T_SHORT, MULT, -1, 0, 0},
    {T_SHORT, PLUS, 127, 1, 128}, {T_SHORT, MINUS, 127, 1, 126}, {T_SHORT, MULT, 127, 1, 127},
    {T_SHORT, PLUS, 127, -1, 126}, {T_SHORT, MINUS, 127, -1, 128}, {T_SHORT, MULT, 127, -1, -127},
    {T_SHORT, PLUS, 127, 128, 255}, {T_SHORT, MINUS, 127, 128, -1},
    {T_SHORT, MULT, 127, 128, 16256}, {T_SHORT, PLUS, 127, 0, 127}, {T_SHORT, MINUS, 127, 0, 127},
    {T_SHORT, MULT, 127, 0, 0}, {T_SHORT, PLUS, 128, 1, 129}, {T_SHORT, MINUS, 128, 1, 127},
    {T_SHORT, MULT, 128, 1, 128}, {T_SHORT, PLUS, 128, -1, 127}, {T_SHORT, MINUS, 128, -1, 129},
    {T_SHORT, MULT, 128, -1, -128}, {T_SHORT, PLUS, 128, 128, 256}, {T_SHORT, MINUS, 128, 128, 0},
    {T_SHORT, MULT, 128, 128, 16384}, {T_SHORT, PLUS, 128, 0, 128}, {T_SHORT, MINUS, 128, 0, 128},
    {T_SHORT, MULT, 128, 0, 0}, {T_SHORT, PLUS, -32768, 1, -32767},
    {T_SHORT, MINUS, -32768, 1, 32767}, {T_SHORT, MULT, -32768, 1, -32768},
    {T_SHORT, PLUS, -32768, -1, 32767}, {T_SHORT, MINUS, -32768, -1, -32767},
    {T_SHORT, MULT, -32768, -1, -32768}, {T_SHORT, PLUS, -32768, 128, -32640},
    {T_SHORT, MINUS, -32768, 128, 32640}, {T_SHORT, MULT, -32768, 128, 0},
    {T_SHORT, PLUS, -32768, 0, -32768}, {T_SHORT, MINUS, -32768, 0, -32768},
    {T_SHORT, MULT, -32768, 0, 0}, {T_SHORT, PLUS, 0, 1, 1}, {T_SHORT, MINUS, 0, 1, -1},
    {T_SHORT, MULT, 0, 1, 0}, {T_SHORT, PLUS, 0, -1, -1}, {T_SHORT, MINUS, 0, -1, 1},
    {T_SHORT, MULT, 0, -1, 0}, {T_SHORT, PLUS, 0, 128, 128}, {T_SHORT, MINUS, 0, 128, -128},
    {T_SHORT, MULT, 0, 128, 0}, {T_SHORT, PLUS, 0, 0, 0}, {T_SHORT, MINUS, 0, 0, 0},
    {T_SHORT, MULT, 0, 0, 0}, {T_USHORT, PLUS, 1, 1, 2}, {T_USHORT, MINUS, 1, 1, 0},
    {T_USHORT, MULT, 1, 1, 1}, {T_USHORT, PLUS, 1, 65535, 0}, {T_USHORT, MINUS, 1, 65535, 2},
    {T_USHORT, MULT, 1, 65535, 65535}, {T_USHORT, PLUS, 1, 128, 129},
    {T_USHORT, MINUS, 1, 128, 65409}, {T_USHORT, MULT, 1, 128, 128}, {T_USHORT, PLUS, 1, 0, 1},
    {T_USHORT, MINUS, 1, 0, 1}, {T_USHORT, MULT, 1, 0, 0}, {T_USHORT, PLUS, 65535, 1, 0},
    {T_USHORT, MINUS, 65535, 1, 65534}, {T_USHORT, MULT, 65535, 1, 65535},
    {T_USHORT, PLUS, 65535, 65535, 65534}, {T_USHORT, MINUS, 65535, 65535, 0},
    {T_USHORT, MULT, 65535, 65535, 1}, {T_USHORT, PLUS, 65535, 128, 127},
    {T_USHORT, MINUS, 65535, 128, 65407}, {T_USHORT, MULT, 65535, 128, 65408},
    {T_USHORT, PLUS, 65535, 0, 65535}, {T_USHORT, MINUS, 65535, 0, 65535},
    {T_USHORT, MULT, 65535, 0, 0}, {T_USHORT, PLUS, 127, 1, 128}, {T_USHORT, MINUS, 127, 1, 126},
    {T_USHORT, MULT, 127, 1, 127}, {T_USHORT, PLUS, 127, 65535, 126},
    {T_USHORT, MINUS, 127, 65535, 128}, {T_USHORT, MULT, 127, 65535, 65409},
    {T_USHORT, PLUS, 127, 128, 255}, {T_USHORT, MINUS, 127, 128, 65535},
    {T_USHORT, MULT, 127, 128, 16256}, {T_USHORT, PLUS, 127, 0, 127},
    {T_USHORT, MINUS, 127, 0, 127}, {T_USHORT, MULT, 127, 0, 0}, {T_USHORT, PLUS, 128, 1, 129},
    {T_USHORT, MINUS, 128, 1, 127}, {T_USHORT, MULT, 128, 1, 128},
    {T_USHORT, PLUS, 128, 65535, 127}, {T_USHORT, MINUS, 128, 65535, 129},
    {T_USHORT, MULT, 128, 65535, 65408}, {T_USHORT, PLUS, 128, 128, 256},
    {T_USHORT, MINUS, 128, 128, 0}, {T_USHORT, MULT, 128, 128, 16384},
    {T_USHORT, PLUS, 128, 0, 128}, {T_USHORT, MINUS, 128, 0, 128}, {T_USHORT, MULT, 128, 0, 0},
    {T_USHORT, PLUS, 32768, 1, 32769}, {T_USHORT, MINUS, 32768, 1, 32767},
    {T_USHORT, MULT, 32768, 1, 32768}, {T_USHORT, PLUS, 32768, 65535, 32767},
    {T_USHORT, MINUS, 32768, 65535, 32769}, {T_USHORT, MULT, 32768, 65535, 32768},
    {T_USHORT, PLUS, 32768, 128, 32896}, {T_USHORT, MINUS, 32768, 128, 32640},
    {T_USHORT, MULT, 32768, 128, 0}, {T_USHORT, PLUS, 32768, 0, 32768},
    {T_USHORT, MINUS, 32768, 0, 32768}, {T_USHORT, MULT, 32768, 0, 0}, {T_USHORT, PLUS, 0, 1, 1},
    {T_USHORT, MINUS, 0, 1, 65535}, {T_USHORT, MULT, 0, 1, 0}, {T_USHORT, PLUS, 0, 65535, 65535},
    {T_USHORT, MINUS, 0, 65535, 1}, {T_USHORT, MULT, 0, 65535, 0}, {T_USHORT, PLUS, 0, 128, 128},
    {T_USHORT, MINUS, 0, 128, 65408}, {T_USHORT, MULT, 0, 128, 0}, {T_USHORT, PLUS, 0, 0, 0},
    {T_USHORT, MINUS, 0, 0, 0}, {T_USHORT, MULT, 0, 0, 0}, {T_INT, PLUS, 1, 1, 2},
    {T_INT, MINUS, 1, 1, 0}, {T_INT, MULT, 1, 1, 1}, {T_INT, PLUS, 1, -1, 0},
    {T_INT, MINUS, 1, -1, 2}, {T_INT, MULT, 1, -1, -1}, {T_INT, PLUS, 1, 128, 129},
    {T_INT, MINUS, 1, 128, -127}, {T_INT, MULT, 1, 128, 128},
    {T_INT, PLUS, 1, -0x80000000ll, -0x7fffffffll}, {T_INT, MINUS, 1, -0x80000000ll, -0x7fffffffll},
    {T_INT, MULT, 1, -0x80000000ll, -0x80000000ll}, {T_INT, PLUS, -1, 1, 0},
    {T_INT, MINUS, -1, 1, -2}, {T_INT, MULT, -1, 1, -1}, {T_INT, PLUS, -1, -1, -2},
    {T_INT, MINUS, -1, -1, 0}, {T_INT, MULT, -1, -1, 1}, {T_INT, PLUS, -1, 128, 127},
    {T_INT, MINUS, -1, 128, -129}, {T_INT, MULT, -1, 128, -128},
    {T_INT, PLUS, -1, -0x80000000ll, 0x7fffffff}, {T_INT, MINUS, -1, -0x80000000ll, 0x7fffffff},
    {T_INT, MULT, -1, -0x80000000ll, -0x80000000ll}, {T_INT, PLUS, 127, 1, 128},
    {T_INT, MINUS, 127, 1, 126}, {T_INT, MULT, 127, 1, 127}, {T_INT, PLUS, 127, -1, 126},
    {T_INT, MINUS, 127, -1, 128}, {T_INT, MULT, 127, -1, -127}, {T_INT, PLUS, 127, 128, 255},
    {T_INT, MINUS, 127, 128, -1}, {T_INT, MULT, 127, 128, 16256},
    {T_INT, PLUS, 127, -0x80000000ll, -0x7fffff81ll},
    {T_INT, MINUS, 127, -0x80000000ll, -0x7fffff81ll},
    {T_INT, MULT, 127, -0x80000000ll, -0x80000000ll}, {T_INT, PLUS, 128, 1, 129},
    {T_INT, MINUS, 128, 1, 127}, {T_INT, MULT, 128, 1, 128}, {T_INT, PLUS, 128, -1, 127},
    {T_INT, MINUS, 128, -1, 129}, {T_INT, MULT, 128, -1, -128}, {T_INT, PLUS, 128, 128, 256},
    {T_INT, MINUS, 128, 128, 0}, {T_INT, MULT, 128, 128, 16384},
    {T_INT, PLUS, 128, -0x80000000ll, -0x7fffff80ll},
    {T_INT, MINUS, 128, -0x80000000ll, -0x7fffff80ll}, {T_INT, MULT, 128, -0x80000000ll, 0},
    {T_INT, PLUS, 32768, 1, 32769}, {T_INT, MINUS, 32768, 1, 32767}, {T_INT, MULT, 32768, 1, 32768},
    {T_INT, PLUS, 32768, -1, 32767}, {T_INT, MINUS, 32768, -1, 32769},
    {T_INT, MULT, 32768, -1, -32768}, {T_INT, PLUS, 32768, 128, 32896},
    {T_INT, MINUS, 32768, 128, 32640}, {T_INT, MULT, 32768, 128, 0x400000},
    {T_INT, PLUS, 32768, -0x80000000ll, -0x7fff8000ll},
    {T_INT, MINUS, 32768, -0x80000000ll, -0x7fff8000ll}, {T_INT, MULT, 32768, -0x80000000ll, 0},
    {T_INT, PLUS, 0x7fffffff, 1, -0x80000000ll}, {T_INT, MINUS, 0x7fffffff, 1, 0x7ffffffe},
    {T_INT, MULT, 0x7fffffff, 1, 0x7fffffff}, {T_INT, PLUS, 0x7fffffff, -1, 0x7ffffffe},
    {T_INT, MINUS, 0x7fffffff, -1, -0x80000000ll}, {T_INT, MULT, 0x7fffffff, -1, -0x7fffffffll},
    {T_INT, PLUS, 0x7fffffff, 128, -0x7fffff81ll}, {T_INT, MINUS, 0x7fffffff, 128, 0x7fffff7f},
    {T_INT, MULT, 0x7fffffff, 128, -128}, {T_INT, PLUS, 0x7fffffff, -0x80000000ll, -1},
    {T_INT, MINUS, 0x7fffffff, -0x80000000ll, -1},
    {T_INT, MULT, 0x7fffffff, -0x80000000ll, -0x80000000ll},
    {T_INT, PLUS, -0x80000000ll, 1, -0x7fffffffll}, {T_INT, MINUS, -0x80000000ll, 1, 0x7fffffff},
    {T_INT, MULT, -0x80000000ll, 1, -0x80000000ll}, {T_INT, PLUS, -0x80000000ll, -1, 0x7fffffff},
    {T_INT, MINUS, -0x80000000ll, -1, -0x7fffffffll},
    {T_INT, MULT, -0x80000000ll, -1, -0x80000000ll},
    {T_INT, PLUS, -0x80000000ll, 128, -0x7fffff80ll},
    {T_INT, MINUS, -0x80000000ll, 128, 0x7fffff80}, {T_INT, MULT, -0x80000000ll, 128, 0},
    {T_INT, PLUS, -0x80000000ll, -0x80000000ll, 0}, {T_INT, MINUS, -0x80000000ll, -0x80000000ll, 0},
    {T_INT, MULT, -0x80000000ll, -0x80000000ll, 0}, {T_INT, PLUS, 0, 1, 1},
    {T_INT, MINUS, 0, 1, -1}, {T_INT, MULT, 0, 1, 0}, {T_INT, PLUS, 0, -1, -1},
    {T_INT, MINUS, 0, -1, 1}, {T_INT, MULT, 0, -1, 0}, {T_INT, PLUS, 0, 128, 128},
    {T_INT, MINUS, 0, 128, -128}, {T_INT, MULT, 0, 128, 0},
    {T_INT, PLUS, 0, -0x80000000ll, -0x80000000ll}, {T_INT, MINUS, 0, -0x80000000ll, -0x80000000ll},
    {T_INT, MULT, 0, -0x80000000ll, 0}, {T_UINT, PLUS, 1, 1, 2}, {T_UINT, MINUS, 1, 1, 0},
    {T_UINT, MULT, 1, 1, 1}, {T_UINT, PLUS, 1, 0xffffffff, 0}, {T_UINT, MINUS, 1, 0xffffffff, 2},
    {T_UINT, MULT, 1, 0xffffffff, 0xffffffff}, {T_UINT, PLUS, 1, 128, 129},
    {T_UINT, MINUS, 1, 128, 0xffffff81}, {T_UINT, MULT, 1, 128, 128},
    {T_UINT, PLUS, 1, 0x80000000, 0x80000001}, {T_UINT, MINUS, 1, 0x80000000, 0x80000001},
    {T_UINT, MULT, 1, 0x80000000, 0x80000000}, {T_UINT, PLUS, 0xffffffff, 1, 0},
    {T_UINT, MINUS, 0xffffffff, 1, 0xfffffffe}, {T_UINT, MULT, 0xffffffff, 1, 0xffffffff},
    {T_UINT, PLUS, 0xffffffff, 0xffffffff, 0xfffffffe}, {T_UINT, MINUS, 0xffffffff, 0xffffffff, 0},
    {T_UINT, MULT, 0xffffffff, 0xffffffff, 1}, {T_UINT, PLUS, 0xffffffff, 128, 127},
    {T_UINT, MINUS, 0xffffffff, 128, 0xffffff7f}, {T_UINT, MULT, 0xffffffff, 128, 0xffffff80},
    {T_UINT, PLUS, 0xffffffff, 0x80000000, 0x7fffffff},
    {T_UINT, MINUS, 0xffffffff, 0x80000000, 0x7fffffff},
    {T_UINT, MULT, 0xffffffff, 0x80000000, 0x80000000}, {T_UINT, PLUS, 127, 1, 128},
    {T_UINT, MINUS, 127, 1, 126}, {T_UINT, MULT, 127, 1, 127}, {T_UINT, PLUS, 127, 0xffffffff, 126},
    {T_UINT, MINUS, 127, 0xffffffff, 128}, {T_UINT, MULT, 127, 0xffffffff, 0xffffff81},
    {T_UINT, PLUS, 127, 128, 255}, {T_UINT, MINUS, 127, 128, 0xffffffff},
    {T_UINT, MULT, 127, 128, 16256}, {T_UINT, PLUS, 127, 0x80000000, 0x8000007f},
    {T_UINT, MINUS, 127, 0x80000000, 0x8000007f}, {T_UINT, MULT, 127, 0x80000000, 0x80000000},
    {T_UINT, PLUS, 128, 1, 129}, {T_UINT, MINUS, 128, 1, 127}, {T_UINT, MULT, 128, 1, 128},
    {T_UINT, PLUS, 128, 0xffffffff, 127}, {T_UINT, MINUS, 128, 0xffffffff, 129},
    {T_UINT, MULT, 128, 0xffffffff, 0xffffff80}, {T_UINT, PLUS, 128, 128, 256},
    {T_UINT, MINUS, 128, 128, 0}, {T_UINT, MULT, 128, 128, 16384},
    {T_UINT, PLUS, 128, 0x80000000, 0x80000080}, {T_UINT, MINUS, 128, 0x80000000, 0x80000080},
    {T_UINT, MULT, 128, 0x80000000, 0}, {T_UINT, PLUS, 32768, 1, 32769},
    {T_UINT, MINUS, 32768, 1, 32767}, {T_UINT, MULT, 32768, 1, 32768},
    {T_UINT, PLUS, 32768, 0xffffffff, 32767}, {T_UINT, MINUS, 32768, 0xffffffff, 32769},
    {T_UINT, MULT, 32768, 0xffffffff, 0xffff8000}, {T_UINT, PLUS, 32768, 128, 32896},
    {T_UINT, MINUS, 32768, 128, 32640}, {T_UINT, MULT, 32768, 128, 0x400000},
    {T_UINT, PLUS, 32768, 0x80000000, 0x80008000}, {T_UINT, MINUS, 32768, 0x80000000, 0x80008000},
    {T_UINT, MULT, 32768, 0x80000000, 0}, {T_UINT, PLUS, 0x7fffffff, 1, 0x80000000},
    {T_UINT, MINUS, 0x7fffffff, 1, 0x7ffffffe}, {T_UINT, MULT, 0x7fffffff, 1, 0x7fffffff},
    {T_UINT, PLUS, 0x7fffffff, 0xffffffff, 0x7ffffffe},
    {T_UINT, MINUS, 0x7fffffff, 0xffffffff, 0x80000000},
    {T_UINT, MULT, 0x7fffffff, 0xffffffff, 0x80000001}, {T_UINT, PLUS, 0x7fffffff, 128, 0x8000007f},
    {T_UINT, MINUS, 0x7fffffff, 128, 0x7fffff7f}, {T_UINT, MULT, 0x7fffffff, 128, 0xffffff80},
    {T_UINT, PLUS, 0x7fffffff, 0x80000000, 0xffffffff},
    {T_UINT, MINUS, 0x7fffffff, 0x80000000, 0xffffffff},
    {T_UINT, MULT, 0x7fffffff, 0x80000000, 0x80000000}, {T_UINT, PLUS, 0x80000000, 1, 0x80000001},
    {T_UINT, MINUS, 0x80000000, 1, 0x7fffffff}, {T_UINT, MULT, 0x80000000, 1, 0x80000000},
    {T_UINT, PLUS, 0x80000000, 0xffffffff, 0x7fffffff},
    {T_UINT, MINUS, 0x80000000, 0xffffffff, 0x80000001},
    {T_UINT, MULT, 0x80000000, 0xffffffff, 0x80000000}, {T_UINT, PLUS, 0x80000000, 128, 0x80000080},
    {T_UINT, MINUS, 0x80000000, 128, 0x7fffff80}, {T_UINT, MULT, 0x80000000, 128, 0},
    {T_UINT, PLUS, 0x80000000, 0x80000000, 0}, {T_UINT, MINUS, 0x80000000, 0x80000000, 0},
    {T_UINT, MULT, 0x80000000, 0x80000000, 0}, {T_UINT, PLUS, 0, 1, 1},
    {T_UINT, MINUS, 0, 1, 0xffffffff}, {T_UINT, MULT, 0, 1, 0},
    {T_UINT, PLUS, 0, 0xffffffff, 0xffffffff}, {T_UINT, MINUS, 0, 0xffffffff, 1},
    {T_UINT, MULT, 0, 0xffffffff, 0}, {T_UINT, PLUS, 0, 128, 128},
    {T_UINT, MINUS, 0, 128, 0xffffff80}, {T_UINT, MULT, 0, 128, 0},
    {T_UINT, PLUS, 0, 0x80000000, 0x80000000}, {T_UINT, MINUS, 0, 0x80000000, 0x80000000},
    {T_UINT, MULT, 0, 0x80000000, 0}, {T_LLONG, PLUS, 1, 1, 2}, {T_LLONG, MINUS, 1, 1, 0},
    {T_LLONG, MULT, 1, 1, 1}, {T_LLONG, PLUS, 1, -1, 0}, {T_LLONG, MINUS, 1, -1, 2},
    {T_LLONG, MULT, 1, -1, -1}, {T_LLONG, PLUS, 1, 128, 129}, {T_LLONG, MINUS, 1, 128, -127},
    {T_LLONG, MULT, 1, 128, 128}, {T_LLONG, PLUS, 1, -0x80000000ll, -0x7fffffffll},
    {T_LLONG, MINUS, 1, -0x80000000ll, 0x80000001},
    {T_LLONG, MULT, 1, -0x80000000ll, -0x80000000ll}, {T_LLONG, PLUS, -1, 1, 0},
    {T_LLONG, MINUS, -1, 1, -2}, {T_LLONG, MULT, -1, 1, -1}, {T_LLONG, PLUS, -1, -1, -2},
    {T_LLONG, MINUS, -1, -1, 0}, {T_LLONG, MULT, -1, -1, 1}, {T_LLONG, PLUS, -1, 128, 127},
    {T_LLONG, MINUS, -1, 128, -129}, {T_LLONG, MULT, -1, 128, -128},
    {T_LLONG, PLUS, -1, -0x80000000ll, -0x80000001ll},
    {T_LLONG, MINUS, -1, -0x80000000ll, 0x7fffffff}, {T_LLONG, MULT, -1, -0x80000000ll, 0x80000000},
    {T_LLONG, PLUS, 127, 1, 128}, {T_LLONG, MINUS, 127, 1, 126}, {T_LLONG, MULT, 127, 1, 127},
    {T_LLONG, PLUS, 127, -1, 126}, {T_LLONG, MINUS, 127, -1, 128}, {T_LLONG, MULT, 127, -1, -127},
    {T_LLONG, PLUS, 127, 128, 255}, {T_LLONG, MINUS, 127, 128, -1},
    {T_LLONG, MULT, 127, 128, 16256}, {T_LLONG, PLUS, 127, -0x80000000ll, -0x7fffff81ll},
    {T_LLONG, MINUS, 127, -0x80000000ll, 0x8000007f},
    {T_LLONG, MULT, 127, -0x80000000ll, -0x3f80000000ll}, {T_LLONG, PLUS, 128, 1, 129},
    {T_LLONG, MINUS, 128, 1, 127}, {T_LLONG, MULT, 128, 1, 128}, {T_LLONG, PLUS, 128, -1, 127},
    {T_LLONG, MINUS, 128, -1, 129}, {T_LLONG, MULT, 128, -1, -128}, {T_LLONG, PLUS, 128, 128, 256},
    {T_LLONG, MINUS, 128, 128, 0}, {T_LLONG, MULT, 128, 128, 16384},
    {T_LLONG, PLUS, 128, -0x80000000ll, -0x7fffff80ll},
    {T_LLONG, MINUS, 128, -0x80000000ll, 0x80000080},
    {T_LLONG, MULT, 128, -0x80000000ll, -0x4000000000ll}, {T_LLONG, PLUS, 32768, 1, 32769},
    {T_LLONG, MINUS, 32768, 1, 32767}, {T_LLONG, MULT, 32768, 1, 32768},
    {T_LLONG, PLUS, 32768, -1, 32767}, {T_LLONG, MINUS, 32768, -1, 32769},
    {T_LLONG, MULT, 32768, -1, -32768}, {T_LLONG, PLUS, 32768, 128, 32896},
    {T_LLONG, MINUS, 32768, 128, 32640}, {T_LLONG, MULT, 32768, 128, 0x400000},
    {T_LLONG, PLUS, 32768, -0x80000000ll, -0x7fff8000ll},
    {T_LLONG, MINUS, 32768, -0x80000000ll, 0x80008000},
    {T_LLONG, MULT, 32768, -0x80000000ll, -0x400000000000ll},
    {T_LLONG, PLUS, 0x7fffffff, 1, 0x80000000}, {T_LLONG, MINUS, 0x7fffffff, 1, 0x7ffffffe},
    {T_LLONG, MULT, 0x7fffffff, 1, 0x7fffffff}, {T_LLONG, PLUS, 0x7fffffff, -1, 0x7ffffffe},
    {T_LLONG, MINUS, 0x7fffffff, -1, 0x80000000}, {T_LLONG, MULT, 0x7fffffff, -1, -0x7fffffffll},
    {T_LLONG, PLUS, 0x7fffffff, 128, 0x8000007f}, {T_LLONG, MINUS, 0x7fffffff, 128, 0x7fffff7f},
    {T_LLONG, MULT, 0x7fffffff, 128, 0x3fffffff80}, {T_LLONG, PLUS, 0x7fffffff, -0x80000000ll, -1},
    {T_LLONG, MINUS, 0x7fffffff, -0x80000000ll, 0xffffffff},
    {T_LLONG, MULT, 0x7fffffff, -0x80000000ll, -0x3fffffff80000000ll},
    {T_LLONG, PLUS, -0x80000000ll, 1, -0x7fffffffll},
    {T_LLONG, MINUS, -0x80000000ll, 1, -0x80000001ll},
    {T_LLONG, MULT, -0x80000000ll, 1, -0x80000000ll},
    {T_LLONG, PLUS, -0x80000000ll, -1, -0x80000001ll},
    {T_LLONG, MINUS, -0x80000000ll, -1, -0x7fffffffll},
    {T_LLONG, MULT, -0x80000000ll, -1, 0x80000000},
    {T_LLONG, PLUS, -0x80000000ll, 128, -0x7fffff80ll},
    {T_LLONG, MINUS, -0x80000000ll, 128, -0x80000080ll},
    {T_LLONG, MULT, -0x80000000ll, 128, -0x4000000000ll},
    {T_LLONG, PLUS, -0x80000000ll, -0x80000000ll, -0x100000000ll},
    {T_LLONG, MINUS, -0x80000000ll, -0x80000000ll, 0},
    {T_LLONG, MULT, -0x80000000ll, -0x80000000ll, 0x4000000000000000},
    {T_LLONG, PLUS, 0x7fffffffffffffff, 1, INT64_MIN},
    {T_LLONG, MINUS, 0x7fffffffffffffff, 1, 0x7ffffffffffffffe},
    {T_LLONG, MULT, 0x7fffffffffffffff, 1, 0x7fffffffffffffff},
    {T_LLONG, PLUS, 0x7fffffffffffffff, -1, 0x7ffffffffffffffe},
    {T_LLONG, MINUS, 0x7fffffffffffffff, -1, INT64_MIN},
    {T_LLONG, MULT, 0x7fffffffffffffff, -1, -0x7fffffffffffffffll},
    {T_LLONG, PLUS, 0x7fffffffffffffff, 128, -0x7fffffffffffff81ll},
    {T_LLONG, MINUS, 0x7fffffffffffffff, 128, 0x7fffffffffffff7f},
    {T_LLONG, MULT, 0x7fffffffffffffff, 128, -128},
    {T_LLONG, PLUS, 0x7fffffffffffffff, -0x80000000ll, 0x7fffffff7fffffff},
    {T_LLONG, MINUS, 0x7fffffffffffffff, -0x80000000ll, -0x7fffffff80000001ll},
    {T_LLONG, MULT, 0x7fffffffffffffff, -0x80000000ll, 0x80000000},
    {T_LLONG, PLUS, INT64_MIN, 1, -0x7fffffffffffffffll},
    {T_LLONG, MINUS, INT64_MIN, 1, 0x7fffffffffffffff}, {T_LLONG, MULT, INT64_MIN, 1, INT64_MIN},
    {T_LLONG, PLUS, INT64_MIN, -1, 0x7fffffffffffffff},
    {T_LLONG, MINUS, INT64_MIN, -1, -0x7fffffffffffffffll},
    {T_LLONG, MULT, INT64_MIN, -1, INT64_MIN},
    {T_LLONG, PLUS, INT64_MIN, 128, -0x7fffffffffffff80ll},
    {T_LLONG, MINUS, INT64_MIN, 128, 0x7fffffffffffff80}, {T_LLONG, MULT, INT64_MIN, 128, 0},
    {T_LLONG, PLUS, INT64_MIN, -0x80000000ll, 0x7fffffff80000000},
    {T_LLONG, MINUS, INT64_MIN, -0x80000000ll, -0x7fffffff80000000ll},
    {T_LLONG, MULT, INT64_MIN, -0x80000000ll, 0}, {T_ULLONG, PLUS, 1, 1, 2},
    {T_ULLONG, MINUS, 1, 1, 0}, {T_ULLONG, MULT, 1, 1, 1}, {T_ULLONG, PLUS, 1, -1, 0},
    {T_ULLONG, MINUS, 1, -1, 2}, {T_ULLONG, MULT, 1, -1, -1}, {T_ULLONG, PLUS, 1, 128, 129},
    {T_ULLONG, MINUS, 1, 128, -127}, {T_ULLONG, MULT, 1, 128, 128},
    {T_ULLONG, PLUS, 1, -0x80000000ll, -0x7fffffffll},
    {T_ULLONG, MINUS, 1, -0x80000000ll, 0x80000001},
    {T_ULLONG, MULT, 1, -0x80000000ll, -0x80000000ll}, {T_ULLONG, PLUS, -1, 1, 0},
    {T_ULLONG, MINUS, -1, 1, -2}, {T_ULLONG, MULT, -1, 1, -1}, {T_ULLONG, PLUS, -1, -1, -2},
    {T_ULLONG, MINUS, -1, -1, 0}, {T_ULLONG, MULT, -1, -1, 1}, {T_ULLONG, PLUS, -1, 128, 127},
    {T_ULLONG, MINUS, -1, 128, -129}, {T_ULLONG, MULT, -1, 128, -128},
    {T_ULLONG, PLUS, -1, -0x80000000ll, -0x80000001ll},
    {T_ULLONG, MINUS, -1, -0x80000000ll, 0x7fffffff},
    {T_ULLONG, MULT, -1, -0x80000000ll, 0x80000000}, {T_ULLONG, PLUS, 127, 1, 128},
    {T_ULLONG, MINUS, 127, 1, 126}, {T_ULLONG, MULT, 127, 1, 127}, {T_ULLONG, PLUS, 127, -1, 126},
    {T_ULLONG, MINUS, 127, -1, 128}, {T_ULLONG, MULT, 127, -1, -127},
    {T_ULLONG, PLUS, 127, 128, 255}, {T_ULLONG, MINUS, 127, 128, -1},
    {T_ULLONG, MULT, 127, 128, 16256}, {T_ULLONG, PLUS, 127, -0x80000000ll, -0x7fffff81ll},
    {T_ULLONG, MINUS, 127, -0x80000000ll, 0x8000007f},
    {T_ULLONG, MULT, 127, -0x80000000ll, -0x3f80000000ll}, {T_ULLONG, PLUS, 128, 1, 129},
    {T_ULLONG, MINUS, 128, 1, 127}, {T_ULLONG, MULT, 128, 1, 128}, {T_ULLONG, PLUS, 128, -1, 127},
    {T_ULLONG, MINUS, 128, -1, 129}, {T_ULLONG, MULT, 128, -1, -128},
    {T_ULLONG, PLUS, 128, 128, 256}, {T_ULLONG, MINUS, 128, 128, 0},
    {T_ULLONG, MULT, 128, 128, 16384}, {T_ULLONG, PLUS, 128, -0x80000000ll, -0x7fffff80ll},
    {T_ULLONG, MINUS, 128, -0x80000000ll, 0x80000080},
    {T_ULLONG, MULT, 128, -0x80000000ll, -0x4000000000ll}, {T_ULLONG, PLUS, 32768, 1, 32769},
    {T_ULLONG, MINUS, 32768, 1, 32767}, {T_ULLONG, MULT, 32768, 1, 32768},
    {T_ULLONG, PLUS, 32768, -1, 32767}, {T_ULLONG, MINUS, 32768, -1, 32769},
    {T_ULLONG, MULT, 32768, -1, -32768}, {T_ULLONG, PLUS, 32768, 128, 32896},
    {T_ULLONG, MINUS, 32768, 128, 32640}, {T_ULLONG, MULT, 32768, 128, 0x400000},
    {T_ULLONG, PLUS, 32768, -0x80000000ll, -0x7fff8000ll},
    {T_ULLONG, MINUS, 32768, -0x80000000ll, 0x80008000},
    {T_ULLONG, MULT, 32768, -0x80000000ll, -0x400000000000ll},
    {T_ULLONG, PLUS, 0x7fffffff, 1, 0x80000000}, {T_ULLONG, MINUS, 0x7fffffff, 1, 0x7ffffffe},
    {T_ULLONG, MULT, 0x7fffffff, 1, 0x7fffffff}, {T_ULLONG, PLUS, 0x7fffffff, -1, 0x7ffffffe},
    {T_ULLONG, MINUS, 0x7fffffff, -1, 0x80000000}, {T_ULLONG, MULT, 0x7fffffff, -1, -0x7fffffffll},
    {T_ULLONG, PLUS, 0x7fffffff, 128, 0x8000007f}, {T_ULLONG, MINUS, 0x7fffffff, 128, 0x7fffff7f},
    {T_ULLONG, MULT, 0x7fffffff, 128, 0x3fffffff80},
    {T_ULLONG, PLUS, 0x7fffffff, -0x80000000ll, -1},
    {T_ULLONG, MINUS, 0x7fffffff, -0x80000000ll, 0xffffffff},
    {T_ULLONG, MULT, 0x7fffffff, -0x80000000ll, -0x3fffffff80000000ll},
    {T_ULLONG, PLUS, -0x80000000ll, 1, -0x7fffffffll},
    {T_ULLONG, MINUS, -0x80000000ll, 1, -0x80000001ll},
    {T_ULLONG, MULT, -0x80000000ll, 1, -0x80000000ll},
    {T_ULLONG, PLUS, -0x80000000ll, -1, -0x80000001ll},
    {T_ULLONG, MINUS, -0x80000000ll, -1, -0x7fffffffll},
    {T_ULLONG, MULT, -0x80000000ll, -1, 0x80000000},
    {T_ULLONG, PLUS, -0x80000000ll, 128, -0x7fffff80ll},
    {T_ULLONG, MINUS, -0x80000000ll, 128, -0x80000080ll},
    {T_ULLONG, MULT, -0x80000000ll, 128, -0x4000000000ll},
    {T_ULLONG, PLUS, -0x80000000ll, -0x80000000ll, -0x100000000ll},
    {T_ULLONG, MINUS, -0x80000000ll, -0x80000000ll, 0},
    {T_ULLONG, MULT, -0x80000000ll, -0x80000000ll, 0x4000000000000000},
    {T_ULLONG, PLUS, 0x7fffffffffffffff, 1, INT64_MIN},
    {T_ULLONG, MINUS, 0x7fffffffffffffff, 1, 0x7ffffffffffffffe},
    {T_ULLONG, MULT, 0x7fffffffffffffff, 1, 0x7fffffffffffffff},
    {T_ULLONG, PLUS, 0x7fffffffffffffff, -1, 0x7ffffffffffffffe},
    {T_ULLONG, MINUS, 0x7fffffffffffffff, -1, INT64_MIN},
    {T_ULLONG, MULT, 0x7fffffffffffffff, -1, -0x7fffffffffffffffll},
    {T_ULLONG, PLUS, 0x7fffffffffffffff, 128, -0x7fffffffffffff81ll},
    {T_ULLONG, MINUS, 0x7fffffffffffffff, 128, 0x7fffffffffffff7f},
    {T_ULLONG, MULT, 0x7fffffffffffffff, 128, -128},
    {T_ULLONG, PLUS, 0x7fffffffffffffff, -0x80000000ll, 0x7fffffff7fffffff},
    {T_ULLONG, MINUS, 0x7fffffffffffffff, -0x80000000ll, -0x7fffffff80000001ll},
    {T_ULLONG, MULT, 0x7fffffffffffffff, -0x80000000ll, 0x80000000},
    {T_ULLONG, PLUS, INT64_MIN, 1, -0x7fffffffffffffffll},
    {T_ULLONG, MINUS, INT64_MIN, 1, 0x7fffffffffffffff}, {T_ULLONG, MULT, INT64_MIN, 1, INT64_MIN},
    {T_ULLONG, PLUS, INT64_MIN, -1, 0x7fffffffffffffff},
    {T_ULLONG, MINUS, INT64_MIN, -1, -0x7fffffffffffffffll},
    {T_ULLONG, MULT, INT64_MIN, -1, INT64_MIN},
    {T_ULLONG, PLUS, INT64_MIN, 128, -0x7fffffffffffff80ll},
    {T_ULLONG, MINUS, INT64_MIN, 128, 0x7fffffffffffff80}, {T_ULLONG, MULT, INT64_MIN, 128, 0},
    {T_ULLONG, PLUS, INT64_MIN, -0x80000000ll, 0x7fffffff80000000},
    {T_ULLONG, MINUS, INT64_MIN, -0x80000000ll, -0x7fffffff80000000ll},
    {T_ULLONG, MULT, INT64_MIN, -0x80000000ll, 0},
    {T_SCHAR, DIV, 7, 2, 3}, {T_SCHAR, MOD, 7, 2, 1}, {T_SCHAR, DIV, 7, -2, -3},
    {T_SCHAR, MOD, 7, -2, 1}, {T_SCHAR, DIV, 7, -1, -7}, {T_SCHAR, MOD, 7, -1, 0},
    {T_SCHAR, DIV, 7, 3, 2}, {T_SCHAR, MOD, 7, 3, 1}, {T_SCHAR, DIV, -7, 2, -3},
    {T_SCHAR, MOD, -7, 2, -1}, {T_SCHAR, DIV, -7, -2, 3}, {T_SCHAR, MOD, -7, -2, -1},
    {T_SCHAR, DIV, -7, -1, 7}, {T_SCHAR, MOD, -7, -1, 0}, {T_SCHAR, DIV, -7, 3, -2},
    {T_SCHAR, MOD, -7, 3, -1}, {T_SCHAR, DIV, 0, 2, 0}, {T_SCHAR, MOD, 0, 2, 0},
    {T_SCHAR, DIV, 0, -2, 0}, {T_SCHAR, MOD, 0, -2, 0}, {T_SCHAR, DIV, 0, -1, 0},
    {T_SCHAR, MOD, 0, -1, 0}, {T_SCHAR, DIV, 0, 3, 0}, {T_SCHAR, MOD, 0, 3, 0},
    {T_SCHAR, ANDB, -1, -128, -128}, {T_SCHAR, ORB, 0, -1, -1}, {T_SCHAR, XORB, -1, 0, -1},
    {T_UCHAR, DIV, 7, 2, 3}, {T_UCHAR, MOD, 7, 2, 1}, {T_UCHAR, DIV, 7, 254, 0},
    {T_UCHAR, MOD, 7, 254, 7}, {T_UCHAR, DIV, 7, 255, 0}, {T_UCHAR, MOD, 7, 255, 7},
    {T_UCHAR, DIV, 7, 3, 2}, {T_UCHAR, MOD, 7, 3, 1}, {T_UCHAR, DIV, 249, 2, 124},
    {T_UCHAR, MOD, 249, 2, 1}, {T_UCHAR, DIV, 249, 254, 0}, {T_UCHAR, MOD, 249, 254, 249},
    {T_UCHAR, DIV, 249, 255, 0}, {T_UCHAR, MOD, 249, 255, 249}, {T_UCHAR, DIV, 249, 3, 83},
    {T_UCHAR, MOD, 249, 3, 0}, {T_UCHAR, DIV, 0, 2, 0}, {T_UCHAR, MOD, 0, 2, 0},
    {T_UCHAR, DIV, 0, 254, 0}, {T_UCHAR, MOD, 0, 254, 0}, {T_UCHAR, DIV, 0, 255, 0},
    {T_UCHAR, MOD, 0, 255, 0}, {T_UCHAR, DIV, 0, 3, 0}, {T_UCHAR, MOD, 0, 3, 0},
    {T_UCHAR, ANDB, 255, 128, 128}, {T_UCHAR, ORB, 0, 255, 255}, {T_UCHAR, XORB, 255, 0, 255},
    {T_CHAR, DIV, 7, 2, 3}, {T_CHAR, MOD, 7, 2, 1}, {T_CHAR, DIV, 7, 254, 0},
    {T_CHAR, MOD, 7, 254, 7}, {T_CHAR, DIV, 7, 255, 0}, {T_CHAR, MOD, 7, 255, 7},
    {T_CHAR, DIV, 7, 3, 2}, {T_CHAR, MOD, 7, 3, 1}, {T_CHAR, DIV, 249, 2, 124},
    {T_CHAR, MOD, 249, 2, 1}, {T_CHAR, DIV, 249, 254, 0}, {T_CHAR, MOD, 249, 254, 249},
    {T_CHAR, DIV, 249, 255, 0}, {T_CHAR, MOD, 249, 255, 249}, {T_CHAR, DIV, 249, 3, 83},
    {T_CHAR, MOD, 249, 3, 0}, {T_CHAR, DIV, 0, 2, 0}, {T_CHAR, MOD, 0, 2, 0},
    {T_CHAR, DIV, 0, 254, 0}, {T_CHAR, MOD, 0, 254, 0}, {T_CHAR, DIV, 0, 255, 0},
    {T_CHAR, MOD, 0, 255, 0}, {T_CHAR, DIV, 0, 3, 0}, {T_CHAR, MOD, 0, 3, 0},
    {T_CHAR, ANDB, 255, 128, 128}, {T_CHAR, ORB, 0, 255, 255}, {T_CHAR, XORB, 255, 0, 255},
    {T_SHORT, DIV, 7, 2, 3}, {T_SHORT, MOD, 7, 2, 1}, {T_SHORT, DIV, 7, -2, -3},
    {T_SHORT, MOD, 7, -2, 1}, {T_SHORT, DIV, 7, -1, -7}, {T_SHORT, MOD, 7, -1, 0},
    {T_SHORT, DIV, 7, 3, 2}, {T_SHORT, MOD, 7, 3, 1}, {T_SHORT, DIV, -7, 2, -3},
    {T_SHORT, MOD, -7, 2, -1}, {T_SHORT, DIV, -7, -2, 3}, {T_SHORT, MOD, -7, -2, -1},
    {T_SHORT, DIV, -7, -1, 7}, {T_SHORT, MOD, -7, -1, 0}, {T_SHORT, DIV, -7, 3, -2},
    {T_SHORT, MOD, -7, 3, -1}, {T_SHORT, DIV, 0, 2, 0}, {T_SHORT, MOD, 0, 2, 0},
    {T_SHORT, DIV, 0, -2, 0}, {T_SHORT, MOD, 0, -2, 0}, {T_SHORT, DIV, 0, -1, 0},
    {T_SHORT, MOD, 0, -1, 0}, {T_SHORT, DIV, 0, 3, 0}, {T_SHORT, MOD, 0, 3, 0},
    {T_SHORT, DIV, -32768, 2, -16384}, {T_SHORT, MOD, -32768, 2, 0},
    {T_SHORT, DIV, -32768, -2, 16384}, {T_SHORT, MOD, -32768, -2, 0},
    {T_SHORT, DIV, -32768, -1, -32768}, {T_SHORT, MOD, -32768, -1, 0},
    {T_SHORT, DIV, -32768, 3, -10922}, {T_SHORT, MOD, -32768, 3, -2}, {T_SHORT, ANDB, -1, 128, 128},
    {T_SHORT, ORB, 0, 32767, 32767}, {T_SHORT, XORB, -1, 0, -1}, {T_USHORT, DIV, 7, 2, 3},
    {T_USHORT, MOD, 7, 2, 1}, {T_USHORT, DIV, 7, 65534, 0}, {T_USHORT, MOD, 7, 65534, 7},
    {T_USHORT, DIV, 7, 65535, 0}, {T_USHORT, MOD, 7, 65535, 7}, {T_USHORT, DIV, 7, 3, 2},
    {T_USHORT, MOD, 7, 3, 1}, {T_USHORT, DIV, 65529, 2, 32764}, {T_USHORT, MOD, 65529, 2, 1},
    {T_USHORT, DIV, 65529, 65534, 0}, {T_USHORT, MOD, 65529, 65534, 65529},
    {T_USHORT, DIV, 65529, 65535, 0}, {T_USHORT, MOD, 65529, 65535, 65529},
    {T_USHORT, DIV, 65529, 3, 21843}, {T_USHORT, MOD, 65529, 3, 0}, {T_USHORT, DIV, 0, 2, 0},
    {T_USHORT, MOD, 0, 2, 0}, {T_USHORT, DIV, 0, 65534, 0}, {T_USHORT, MOD, 0, 65534, 0},
    {T_USHORT, DIV, 0, 65535, 0}, {T_USHORT, MOD, 0, 65535, 0}, {T_USHORT, DIV, 0, 3, 0},
    {T_USHORT, MOD, 0, 3, 0}, {T_USHORT, DIV, 32768, 2, 16384}, {T_USHORT, MOD, 32768, 2, 0},
    {T_USHORT, DIV, 32768, 65534, 0}, {T_USHORT, MOD, 32768, 65534, 32768},
    {T_USHORT, DIV, 32768, 65535, 0}, {T_USHORT, MOD, 32768, 65535, 32768},
    {T_USHORT, DIV, 32768, 3, 10922}, {T_USHORT, MOD, 32768, 3, 2},
    {T_USHORT, ANDB, 65535, 128, 128}, {T_USHORT, ORB, 0, 32767, 32767},
    {T_USHORT, XORB, 65535, 0, 65535}, {T_INT, DIV, 7, 2, 3}, {T_INT, MOD, 7, 2, 1},
    {T_INT, DIV, 7, -2, -3}, {T_INT, MOD, 7, -2, 1}, {T_INT, DIV, 7, -1, -7},
    {T_INT, MOD, 7, -1, 0}, {T_INT, DIV, 7, 3, 2}, {T_INT, MOD, 7, 3, 1}, {T_INT, DIV, -7, 2, -3},
    {T_INT, MOD, -7, 2, -1}, {T_INT, DIV, -7, -2, 3}, {T_INT, MOD, -7, -2, -1},
    {T_INT, DIV, -7, -1, 7}, {T_INT, MOD, -7, -1, 0}, {T_INT, DIV, -7, 3, -2},
    {T_INT, MOD, -7, 3, -1}, {T_INT, DIV, -0x80000000ll, 2, -0x40000000ll},
    {T_INT, MOD, -0x80000000ll, 2, 0}, {T_INT, DIV, -0x80000000ll, -2, 0x40000000},
    {T_INT, MOD, -0x80000000ll, -2, 0}, {T_INT, DIV, -0x80000000ll, -1, -0x80000000ll},
    {T_INT, MOD, -0x80000000ll, -1, 0}, {T_INT, DIV, -0x80000000ll, 3, -0x2aaaaaaall},
    {T_INT, MOD, -0x80000000ll, 3, -2}, {T_INT, DIV, 0, 2, 0}, {T_INT, MOD, 0, 2, 0},
    {T_INT, DIV, 0, -2, 0}, {T_INT, MOD, 0, -2, 0}, {T_INT, DIV, 0, -1, 0}, {T_INT, MOD, 0, -1, 0},
    {T_INT, DIV, 0, 3, 0}, {T_INT, MOD, 0, 3, 0}, {T_INT, DIV, 32768, 2, 16384},
    {T_INT, MOD, 32768, 2, 0}, {T_INT, DIV, 32768, -2, -16384}, {T_INT, MOD, 32768, -2, 0},
    {T_INT, DIV, 32768, -1, -32768}, {T_INT, MOD, 32768, -1, 0}, {T_INT, DIV, 32768, 3, 10922},
    {T_INT, MOD, 32768, 3, 2}, {T_INT, ANDB, -1, 128, 128},
    {T_INT, ORB, -0x80000000ll, 32767, -0x7fff8001ll}, {T_INT, XORB, -1, 0, -1},
    {T_UINT, DIV, 7, 2, 3}, {T_UINT, MOD, 7, 2, 1}, {T_UINT, DIV, 7, 0xfffffffe, 0},
    {T_UINT, MOD, 7, 0xfffffffe, 7}, {T_UINT, DIV, 7, 0xffffffff, 0},
    {T_UINT, MOD, 7, 0xffffffff, 7}, {T_UINT, DIV, 7, 3, 2}, {T_UINT, MOD, 7, 3, 1},
    {T_UINT, DIV, 0xfffffff9, 2, 0x7ffffffc}, {T_UINT, MOD, 0xfffffff9, 2, 1},
    {T_UINT, DIV, 0xfffffff9, 0xfffffffe, 0}, {T_UINT, MOD, 0xfffffff9, 0xfffffffe, 0xfffffff9},
    {T_UINT, DIV, 0xfffffff9, 0xffffffff, 0}, {T_UINT, MOD, 0xfffffff9, 0xffffffff, 0xfffffff9},
    {T_UINT, DIV, 0xfffffff9, 3, 0x55555553}, {T_UINT, MOD, 0xfffffff9, 3, 0},
    {T_UINT, DIV, 0x80000000, 2, 0x40000000}, {T_UINT, MOD, 0x80000000, 2, 0},
    {T_UINT, DIV, 0x80000000, 0xfffffffe, 0}, {T_UINT, MOD, 0x80000000, 0xfffffffe, 0x80000000},
    {T_UINT, DIV, 0x80000000, 0xffffffff, 0}, {T_UINT, MOD, 0x80000000, 0xffffffff, 0x80000000},
    {T_UINT, DIV, 0x80000000, 3, 0x2aaaaaaa}, {T_UINT, MOD, 0x80000000, 3, 2},
    {T_UINT, DIV, 0, 2, 0}, {T_UINT, MOD, 0, 2, 0}, {T_UINT, DIV, 0, 0xfffffffe, 0},
    {T_UINT, MOD, 0, 0xfffffffe, 0}, {T_UINT, DIV, 0, 0xffffffff, 0},
    {T_UINT, MOD, 0, 0xffffffff, 0}, {T_UINT, DIV, 0, 3, 0}, {T_UINT, MOD, 0, 3, 0},
    {T_UINT, DIV, 32768, 2, 16384}, {T_UINT, MOD, 32768, 2, 0}, {T_UINT, DIV, 32768, 0xfffffffe, 0},
    {T_UINT, MOD, 32768, 0xfffffffe, 32768}, {T_UINT, DIV, 32768, 0xffffffff, 0},
    {T_UINT, MOD, 32768, 0xffffffff, 32768}, {T_UINT, DIV, 32768, 3, 10922},
    {T_UINT, MOD, 32768, 3, 2}, {T_UINT, ANDB, 0xffffffff, 128, 128},
    {T_UINT, ORB, 0x80000000, 32767, 0x80007fff}, {T_UINT, XORB, 0xffffffff, 0, 0xffffffff},
    {T_LLONG, DIV, 7, 2, 3}, {T_LLONG, MOD, 7, 2, 1}, {T_LLONG, DIV, 7, -2, -3},
    {T_LLONG, MOD, 7, -2, 1}, {T_LLONG, DIV, 7, -1, -7}, {T_LLONG, MOD, 7, -1, 0},
    {T_LLONG, DIV, 7, 3, 2}, {T_LLONG, MOD, 7, 3, 1}, {T_LLONG, DIV, -7, 2, -3},
    {T_LLONG, MOD, -7, 2, -1}, {T_LLONG, DIV, -7, -2, 3}, {T_LLONG, MOD, -7, -2, -1},
    {T_LLONG, DIV, -7, -1, 7}, {T_LLONG, MOD, -7, -1, 0}, {T_LLONG, DIV, -7, 3, -2},
    {T_LLONG, MOD, -7, 3, -1}, {T_LLONG, DIV, -0x80000000ll, 2, -0x40000000ll},
    {T_LLONG, MOD, -0x80000000ll, 2, 0}, {T_LLONG, DIV, -0x80000000ll, -2, 0x40000000},
    {T_LLONG, MOD, -0x80000000ll, -2, 0}, {T_LLONG, DIV, -0x80000000ll, -1, 0x80000000},
    {T_LLONG, MOD, -0x80000000ll, -1, 0}, {T_LLONG, DIV, -0x80000000ll, 3, -0x2aaaaaaall},
    {T_LLONG, MOD, -0x80000000ll, 3, -2}, {T_LLONG, DIV, INT64_MIN, 2, -0x4000000000000000ll},
    {T_LLONG, MOD, INT64_MIN, 2, 0}, {T_LLONG, DIV, INT64_MIN, -2, 0x4000000000000000},
    {T_LLONG, MOD, INT64_MIN, -2, 0}, {T_LLONG, DIV, INT64_MIN, -1, INT64_MIN},
    {T_LLONG, MOD, INT64_MIN, -1, 0}, {T_LLONG, DIV, INT64_MIN, 3, -0x2aaaaaaaaaaaaaaall},
    {T_LLONG, MOD, INT64_MIN, 3, -2}, {T_LLONG, DIV, 32768, 2, 16384}, {T_LLONG, MOD, 32768, 2, 0},
    {T_LLONG, DIV, 32768, -2, -16384}, {T_LLONG, MOD, 32768, -2, 0},
    {T_LLONG, DIV, 32768, -1, -32768}, {T_LLONG, MOD, 32768, -1, 0},
    {T_LLONG, DIV, 32768, 3, 10922}, {T_LLONG, MOD, 32768, 3, 2}, {T_LLONG, ANDB, -1, 128, 128},
    {T_LLONG, ORB, -0x80000000ll, 32767, -0x7fff8001ll},
    {T_LLONG, XORB, -1, INT64_MIN, 0x7fffffffffffffff}, {T_ULLONG, DIV, 7, 2, 3},
    {T_ULLONG, MOD, 7, 2, 1}, {T_ULLONG, DIV, 7, -2, 0}, {T_ULLONG, MOD, 7, -2, 7},
    {T_ULLONG, DIV, 7, -1, 0}, {T_ULLONG, MOD, 7, -1, 7}, {T_ULLONG, DIV, 7, 3, 2},
    {T_ULLONG, MOD, 7, 3, 1}, {T_ULLONG, DIV, -7, 2, 0x7ffffffffffffffc}, {T_ULLONG, MOD, -7, 2, 1},
    {T_ULLONG, DIV, -7, -2, 0}, {T_ULLONG, MOD, -7, -2, -7}, {T_ULLONG, DIV, -7, -1, 0},
    {T_ULLONG, MOD, -7, -1, -7}, {T_ULLONG, DIV, -7, 3, 0x5555555555555553},
    {T_ULLONG, MOD, -7, 3, 0}, {T_ULLONG, DIV, -0x80000000ll, 2, 0x7fffffffc0000000},
    {T_ULLONG, MOD, -0x80000000ll, 2, 0}, {T_ULLONG, DIV, -0x80000000ll, -2, 0},
    {T_ULLONG, MOD, -0x80000000ll, -2, -0x80000000ll}, {T_ULLONG, DIV, -0x80000000ll, -1, 0},
    {T_ULLONG, MOD, -0x80000000ll, -1, -0x80000000ll},
    {T_ULLONG, DIV, -0x80000000ll, 3, 0x555555552aaaaaaa}, {T_ULLONG, MOD, -0x80000000ll, 3, 2},
    {T_ULLONG, DIV, INT64_MIN, 2, 0x4000000000000000}, {T_ULLONG, MOD, INT64_MIN, 2, 0},
    {T_ULLONG, DIV, INT64_MIN, -2, 0}, {T_ULLONG, MOD, INT64_MIN, -2, INT64_MIN},
    {T_ULLONG, DIV, INT64_MIN, -1, 0}, {T_ULLONG, MOD, INT64_MIN, -1, INT64_MIN},
    {T_ULLONG, DIV, INT64_MIN, 3, 0x2aaaaaaaaaaaaaaa}, {T_ULLONG, MOD, INT64_MIN, 3, 2},
    {T_ULLONG, DIV, 32768, 2, 16384}, {T_ULLONG, MOD, 32768, 2, 0}, {T_ULLONG, DIV, 32768, -2, 0},
    {T_ULLONG, MOD, 32768, -2, 32768}, {T_ULLONG, DIV, 32768, -1, 0},
    {T_ULLONG, MOD, 32768, -1, 32768}, {T_ULLONG, DIV, 32768, 3, 10922},
    {T_ULLONG, MOD, 32768, 3, 2}, {T_ULLONG, ANDB, -1, 128, 128},
    {T_ULLONG, ORB, -0x80000000ll, 32767, -0x7fff8001ll},
    {T_ULLONG, XORB, -1, INT64_MIN, 0x7fffffffffffffff},
};
// clang-format on

struct SHIFT {
    TID type;
    int op;
    int64_t a;
    int count;
    int64_t result;
};
// clang-format off
constexpr SHIFT shifts[] = {
    {T_INT, SLL, 1, 0, 1}, {T_INT, SRL, 1, 0, 1}, {T_INT, SLL, 1, 1, 2}, {T_INT, SRL, 1, 1, 0},
    {T_INT, SLL, 1, 31, -0x80000000ll}, {T_INT, SRL, 1, 31, 0}, {T_INT, SLL, 1, 32, 0},
    {T_INT, SRL, 1, 32, 0}, {T_INT, SLL, 1, 33, 0}, {T_INT, SRL, 1, 33, 0}, {T_INT, SLL, 1, 63, 0},
    {T_INT, SRL, 1, 63, 0}, {T_INT, SLL, 1, 64, 0}, {T_INT, SRL, 1, 64, 0}, {T_INT, SLL, 1, 65, 0},
    {T_INT, SRL, 1, 65, 0}, {T_INT, SLL, 1, 128, 0}, {T_INT, SRL, 1, 128, 0},
    {T_INT, SLL, 1, 255, 0}, {T_INT, SRL, 1, 255, 0}, {T_INT, SLL, 1, 256, 1},
    {T_INT, SRL, 1, 256, 1}, {T_INT, SLL, 1, 257, 2}, {T_INT, SRL, 1, 257, 0},
    {T_INT, SLL, 1, -1, 0}, {T_INT, SRL, 1, -1, 0}, {T_INT, SLL, 0x12345678, 0, 0x12345678},
    {T_INT, SRL, 0x12345678, 0, 0x12345678}, {T_INT, SLL, 0x12345678, 1, 0x2468acf0},
    {T_INT, SRL, 0x12345678, 1, 0x91a2b3c}, {T_INT, SLL, 0x12345678, 31, 0},
    {T_INT, SRL, 0x12345678, 31, 0}, {T_INT, SLL, 0x12345678, 32, 0},
    {T_INT, SRL, 0x12345678, 32, 0}, {T_INT, SLL, 0x12345678, 33, 0},
    {T_INT, SRL, 0x12345678, 33, 0}, {T_INT, SLL, 0x12345678, 63, 0},
    {T_INT, SRL, 0x12345678, 63, 0}, {T_INT, SLL, 0x12345678, 64, 0},
    {T_INT, SRL, 0x12345678, 64, 0}, {T_INT, SLL, 0x12345678, 65, 0},
    {T_INT, SRL, 0x12345678, 65, 0}, {T_INT, SLL, 0x12345678, 128, 0},
    {T_INT, SRL, 0x12345678, 128, 0}, {T_INT, SLL, 0x12345678, 255, 0},
    {T_INT, SRL, 0x12345678, 255, 0}, {T_INT, SLL, 0x12345678, 256, 0x12345678},
    {T_INT, SRL, 0x12345678, 256, 0x12345678}, {T_INT, SLL, 0x12345678, 257, 0x2468acf0},
    {T_INT, SRL, 0x12345678, 257, 0x91a2b3c}, {T_INT, SLL, 0x12345678, -1, 0},
    {T_INT, SRL, 0x12345678, -1, 0}, {T_INT, SLL, -0x80000000ll, 0, -0x80000000ll},
    {T_INT, SRL, -0x80000000ll, 0, -0x80000000ll}, {T_INT, SLL, -0x80000000ll, 1, 0},
    {T_INT, SRL, -0x80000000ll, 1, -0x40000000ll}, {T_INT, SLL, -0x80000000ll, 31, 0},
    {T_INT, SRL, -0x80000000ll, 31, -1}, {T_INT, SLL, -0x80000000ll, 32, 0},
    {T_INT, SRL, -0x80000000ll, 32, -1}, {T_INT, SLL, -0x80000000ll, 33, 0},
    {T_INT, SRL, -0x80000000ll, 33, -1}, {T_INT, SLL, -0x80000000ll, 63, 0},
    {T_INT, SRL, -0x80000000ll, 63, -1}, {T_INT, SLL, -0x80000000ll, 64, 0},
    {T_INT, SRL, -0x80000000ll, 64, -1}, {T_INT, SLL, -0x80000000ll, 65, 0},
    {T_INT, SRL, -0x80000000ll, 65, -1}, {T_INT, SLL, -0x80000000ll, 128, 0},
    {T_INT, SRL, -0x80000000ll, 128, -1}, {T_INT, SLL, -0x80000000ll, 255, 0},
    {T_INT, SRL, -0x80000000ll, 255, -1}, {T_INT, SLL, -0x80000000ll, 256, -0x80000000ll},
    {T_INT, SRL, -0x80000000ll, 256, -0x80000000ll}, {T_INT, SLL, -0x80000000ll, 257, 0},
    {T_INT, SRL, -0x80000000ll, 257, -0x40000000ll}, {T_INT, SLL, -0x80000000ll, -1, 0},
    {T_INT, SRL, -0x80000000ll, -1, -1}, {T_INT, SLL, 0, 0, 0}, {T_INT, SRL, 0, 0, 0},
    {T_INT, SLL, 0, 1, 0}, {T_INT, SRL, 0, 1, 0}, {T_INT, SLL, 0, 31, 0}, {T_INT, SRL, 0, 31, 0},
    {T_INT, SLL, 0, 32, 0}, {T_INT, SRL, 0, 32, 0}, {T_INT, SLL, 0, 33, 0}, {T_INT, SRL, 0, 33, 0},
    {T_INT, SLL, 0, 63, 0}, {T_INT, SRL, 0, 63, 0}, {T_INT, SLL, 0, 64, 0}, {T_INT, SRL, 0, 64, 0},
    {T_INT, SLL, 0, 65, 0}, {T_INT, SRL, 0, 65, 0}, {T_INT, SLL, 0, 128, 0},
    {T_INT, SRL, 0, 128, 0}, {T_INT, SLL, 0, 255, 0}, {T_INT, SRL, 0, 255, 0},
    {T_INT, SLL, 0, 256, 0}, {T_INT, SRL, 0, 256, 0}, {T_INT, SLL, 0, 257, 0},
    {T_INT, SRL, 0, 257, 0}, {T_INT, SLL, 0, -1, 0}, {T_INT, SRL, 0, -1, 0}, {T_UINT, SLL, 1, 0, 1},
    {T_UINT, SRL, 1, 0, 1}, {T_UINT, SLL, 1, 1, 2}, {T_UINT, SRL, 1, 1, 0},
    {T_UINT, SLL, 1, 31, 0x80000000}, {T_UINT, SRL, 1, 31, 0}, {T_UINT, SLL, 1, 32, 0},
    {T_UINT, SRL, 1, 32, 0}, {T_UINT, SLL, 1, 33, 0}, {T_UINT, SRL, 1, 33, 0},
    {T_UINT, SLL, 1, 63, 0}, {T_UINT, SRL, 1, 63, 0}, {T_UINT, SLL, 1, 64, 0},
    {T_UINT, SRL, 1, 64, 0}, {T_UINT, SLL, 1, 65, 0}, {T_UINT, SRL, 1, 65, 0},
    {T_UINT, SLL, 1, 128, 0}, {T_UINT, SRL, 1, 128, 0}, {T_UINT, SLL, 1, 255, 0},
    {T_UINT, SRL, 1, 255, 0}, {T_UINT, SLL, 1, 256, 1}, {T_UINT, SRL, 1, 256, 1},
    {T_UINT, SLL, 1, 257, 2}, {T_UINT, SRL, 1, 257, 0}, {T_UINT, SLL, 1, -1, 0},
    {T_UINT, SRL, 1, -1, 0}, {T_UINT, SLL, 0x12345678, 0, 0x12345678},
    {T_UINT, SRL, 0x12345678, 0, 0x12345678}, {T_UINT, SLL, 0x12345678, 1, 0x2468acf0},
    {T_UINT, SRL, 0x12345678, 1, 0x91a2b3c}, {T_UINT, SLL, 0x12345678, 31, 0},
    {T_UINT, SRL, 0x12345678, 31, 0}, {T_UINT, SLL, 0x12345678, 32, 0},
    {T_UINT, SRL, 0x12345678, 32, 0}, {T_UINT, SLL, 0x12345678, 33, 0},
    {T_UINT, SRL, 0x12345678, 33, 0}, {T_UINT, SLL, 0x12345678, 63, 0},
    {T_UINT, SRL, 0x12345678, 63, 0}, {T_UINT, SLL, 0x12345678, 64, 0},
    {T_UINT, SRL, 0x12345678, 64, 0}, {T_UINT, SLL, 0x12345678, 65, 0},
    {T_UINT, SRL, 0x12345678, 65, 0}, {T_UINT, SLL, 0x12345678, 128, 0},
    {T_UINT, SRL, 0x12345678, 128, 0}, {T_UINT, SLL, 0x12345678, 255, 0},
    {T_UINT, SRL, 0x12345678, 255, 0}, {T_UINT, SLL, 0x12345678, 256, 0x12345678},
    {T_UINT, SRL, 0x12345678, 256, 0x12345678}, {T_UINT, SLL, 0x12345678, 257, 0x2468acf0},
    {T_UINT, SRL, 0x12345678, 257, 0x91a2b3c}, {T_UINT, SLL, 0x12345678, -1, 0},
    {T_UINT, SRL, 0x12345678, -1, 0}, {T_UINT, SLL, 0x80000000, 0, 0x80000000},
    {T_UINT, SRL, 0x80000000, 0, 0x80000000}, {T_UINT, SLL, 0x80000000, 1, 0},
    {T_UINT, SRL, 0x80000000, 1, 0x40000000}, {T_UINT, SLL, 0x80000000, 31, 0},
    {T_UINT, SRL, 0x80000000, 31, 1}, {T_UINT, SLL, 0x80000000, 32, 0},
    {T_UINT, SRL, 0x80000000, 32, 0}, {T_UINT, SLL, 0x80000000, 33, 0},
    {T_UINT, SRL, 0x80000000, 33, 0}, {T_UINT, SLL, 0x80000000, 63, 0},
    {T_UINT, SRL, 0x80000000, 63, 0}, {T_UINT, SLL, 0x80000000, 64, 0},
    {T_UINT, SRL, 0x80000000, 64, 0}, {T_UINT, SLL, 0x80000000, 65, 0},
    {T_UINT, SRL, 0x80000000, 65, 0}, {T_UINT, SLL, 0x80000000, 128, 0},
    {T_UINT, SRL, 0x80000000, 128, 0}, {T_UINT, SLL, 0x80000000, 255, 0},
    {T_UINT, SRL, 0x80000000, 255, 0}, {T_UINT, SLL, 0x80000000, 256, 0x80000000},
    {T_UINT, SRL, 0x80000000, 256, 0x80000000}, {T_UINT, SLL, 0x80000000, 257, 0},
    {T_UINT, SRL, 0x80000000, 257, 0x40000000}, {T_UINT, SLL, 0x80000000, -1, 0},
    {T_UINT, SRL, 0x80000000, -1, 0}, {T_UINT, SLL, 0, 0, 0}, {T_UINT, SRL, 0, 0, 0},
    {T_UINT, SLL, 0, 1, 0}, {T_UINT, SRL, 0, 1, 0}, {T_UINT, SLL, 0, 31, 0},
    {T_UINT, SRL, 0, 31, 0}, {T_UINT, SLL, 0, 32, 0}, {T_UINT, SRL, 0, 32, 0},
    {T_UINT, SLL, 0, 33, 0}, {T_UINT, SRL, 0, 33, 0}, {T_UINT, SLL, 0, 63, 0},
    {T_UINT, SRL, 0, 63, 0}, {T_UINT, SLL, 0, 64, 0}, {T_UINT, SRL, 0, 64, 0},
    {T_UINT, SLL, 0, 65, 0}, {T_UINT, SRL, 0, 65, 0}, {T_UINT, SLL, 0, 128, 0},
    {T_UINT, SRL, 0, 128, 0}, {T_UINT, SLL, 0, 255, 0}, {T_UINT, SRL, 0, 255, 0},
    {T_UINT, SLL, 0, 256, 0}, {T_UINT, SRL, 0, 256, 0}, {T_UINT, SLL, 0, 257, 0},
    {T_UINT, SRL, 0, 257, 0}, {T_UINT, SLL, 0, -1, 0}, {T_UINT, SRL, 0, -1, 0},
    {T_LLONG, SLL, 1, 0, 1}, {T_LLONG, SRL, 1, 0, 1}, {T_LLONG, SLL, 1, 1, 2},
    {T_LLONG, SRL, 1, 1, 0}, {T_LLONG, SLL, 1, 31, 0x80000000}, {T_LLONG, SRL, 1, 31, 0},
    {T_LLONG, SLL, 1, 32, 0x100000000}, {T_LLONG, SRL, 1, 32, 0},
    {T_LLONG, SLL, 1, 33, 0x200000000}, {T_LLONG, SRL, 1, 33, 0}, {T_LLONG, SLL, 1, 63, INT64_MIN},
    {T_LLONG, SRL, 1, 63, 0}, {T_LLONG, SLL, 1, 64, 0}, {T_LLONG, SRL, 1, 64, 0},
    {T_LLONG, SLL, 1, 65, 0}, {T_LLONG, SRL, 1, 65, 0}, {T_LLONG, SLL, 1, 128, 0},
    {T_LLONG, SRL, 1, 128, 0}, {T_LLONG, SLL, 1, 255, 0}, {T_LLONG, SRL, 1, 255, 0},
    {T_LLONG, SLL, 1, 256, 1}, {T_LLONG, SRL, 1, 256, 1}, {T_LLONG, SLL, 1, 257, 2},
    {T_LLONG, SRL, 1, 257, 0}, {T_LLONG, SLL, 1, -1, 0}, {T_LLONG, SRL, 1, -1, 0},
    {T_LLONG, SLL, 0x12345678, 0, 0x12345678}, {T_LLONG, SRL, 0x12345678, 0, 0x12345678},
    {T_LLONG, SLL, 0x12345678, 1, 0x2468acf0}, {T_LLONG, SRL, 0x12345678, 1, 0x91a2b3c},
    {T_LLONG, SLL, 0x12345678, 31, 0x91a2b3c00000000}, {T_LLONG, SRL, 0x12345678, 31, 0},
    {T_LLONG, SLL, 0x12345678, 32, 0x1234567800000000}, {T_LLONG, SRL, 0x12345678, 32, 0},
    {T_LLONG, SLL, 0x12345678, 33, 0x2468acf000000000}, {T_LLONG, SRL, 0x12345678, 33, 0},
    {T_LLONG, SLL, 0x12345678, 63, 0}, {T_LLONG, SRL, 0x12345678, 63, 0},
    {T_LLONG, SLL, 0x12345678, 64, 0}, {T_LLONG, SRL, 0x12345678, 64, 0},
    {T_LLONG, SLL, 0x12345678, 65, 0}, {T_LLONG, SRL, 0x12345678, 65, 0},
    {T_LLONG, SLL, 0x12345678, 128, 0}, {T_LLONG, SRL, 0x12345678, 128, 0},
    {T_LLONG, SLL, 0x12345678, 255, 0}, {T_LLONG, SRL, 0x12345678, 255, 0},
    {T_LLONG, SLL, 0x12345678, 256, 0x12345678}, {T_LLONG, SRL, 0x12345678, 256, 0x12345678},
    {T_LLONG, SLL, 0x12345678, 257, 0x2468acf0}, {T_LLONG, SRL, 0x12345678, 257, 0x91a2b3c},
    {T_LLONG, SLL, 0x12345678, -1, 0}, {T_LLONG, SRL, 0x12345678, -1, 0},
    {T_LLONG, SLL, -0x80000000ll, 0, -0x80000000ll},
    {T_LLONG, SRL, -0x80000000ll, 0, -0x80000000ll},
    {T_LLONG, SLL, -0x80000000ll, 1, -0x100000000ll},
    {T_LLONG, SRL, -0x80000000ll, 1, -0x40000000ll},
    {T_LLONG, SLL, -0x80000000ll, 31, -0x4000000000000000ll}, {T_LLONG, SRL, -0x80000000ll, 31, -1},
    {T_LLONG, SLL, -0x80000000ll, 32, INT64_MIN}, {T_LLONG, SRL, -0x80000000ll, 32, -1},
    {T_LLONG, SLL, -0x80000000ll, 33, 0}, {T_LLONG, SRL, -0x80000000ll, 33, -1},
    {T_LLONG, SLL, -0x80000000ll, 63, 0}, {T_LLONG, SRL, -0x80000000ll, 63, -1},
    {T_LLONG, SLL, -0x80000000ll, 64, 0}, {T_LLONG, SRL, -0x80000000ll, 64, -1},
    {T_LLONG, SLL, -0x80000000ll, 65, 0}, {T_LLONG, SRL, -0x80000000ll, 65, -1},
    {T_LLONG, SLL, -0x80000000ll, 128, 0}, {T_LLONG, SRL, -0x80000000ll, 128, -1},
    {T_LLONG, SLL, -0x80000000ll, 255, 0}, {T_LLONG, SRL, -0x80000000ll, 255, -1},
    {T_LLONG, SLL, -0x80000000ll, 256, -0x80000000ll}, {T_LLONG, SRL, -0x80000000ll, 256, -1},
    {T_LLONG, SLL, -0x80000000ll, 257, -0x100000000ll}, {T_LLONG, SRL, -0x80000000ll, 257, -1},
    {T_LLONG, SLL, -0x80000000ll, -1, 0}, {T_LLONG, SRL, -0x80000000ll, -1, -0x100000000ll},
    {T_LLONG, SLL, INT64_MIN, 0, INT64_MIN}, {T_LLONG, SRL, INT64_MIN, 0, INT64_MIN},
    {T_LLONG, SLL, INT64_MIN, 1, 0}, {T_LLONG, SRL, INT64_MIN, 1, -0x4000000000000000ll},
    {T_LLONG, SLL, INT64_MIN, 31, 0}, {T_LLONG, SRL, INT64_MIN, 31, -0x100000000ll},
    {T_LLONG, SLL, INT64_MIN, 32, 0}, {T_LLONG, SRL, INT64_MIN, 32, -0x80000000ll},
    {T_LLONG, SLL, INT64_MIN, 33, 0}, {T_LLONG, SRL, INT64_MIN, 33, -0x40000000ll},
    {T_LLONG, SLL, INT64_MIN, 63, 0}, {T_LLONG, SRL, INT64_MIN, 63, -1},
    {T_LLONG, SLL, INT64_MIN, 64, 0}, {T_LLONG, SRL, INT64_MIN, 64, -1},
    {T_LLONG, SLL, INT64_MIN, 65, 0}, {T_LLONG, SRL, INT64_MIN, 65, -1},
    {T_LLONG, SLL, INT64_MIN, 128, 0}, {T_LLONG, SRL, INT64_MIN, 128, -1},
    {T_LLONG, SLL, INT64_MIN, 255, 0}, {T_LLONG, SRL, INT64_MIN, 255, -1},
    {T_LLONG, SLL, INT64_MIN, 256, INT64_MIN},
    {T_LLONG, SRL, INT64_MIN, 256, -0x7fffffff00000001ll}, {T_LLONG, SLL, INT64_MIN, 257, 0},
    {T_LLONG, SRL, INT64_MIN, 257, -0x3fffffff00000001ll}, {T_LLONG, SLL, INT64_MIN, -1, 0},
    {T_LLONG, SRL, INT64_MIN, -1, -0x100000000ll}, {T_ULLONG, SLL, 1, 0, 1},
    {T_ULLONG, SRL, 1, 0, 1}, {T_ULLONG, SLL, 1, 1, 2}, {T_ULLONG, SRL, 1, 1, 0},
    {T_ULLONG, SLL, 1, 31, 0x80000000}, {T_ULLONG, SRL, 1, 31, 0},
    {T_ULLONG, SLL, 1, 32, 0x100000000}, {T_ULLONG, SRL, 1, 32, 0},
    {T_ULLONG, SLL, 1, 33, 0x200000000}, {T_ULLONG, SRL, 1, 33, 0},
    {T_ULLONG, SLL, 1, 63, INT64_MIN}, {T_ULLONG, SRL, 1, 63, 0}, {T_ULLONG, SLL, 1, 64, 0},
    {T_ULLONG, SRL, 1, 64, 0}, {T_ULLONG, SLL, 1, 65, 0}, {T_ULLONG, SRL, 1, 65, 0},
    {T_ULLONG, SLL, 1, 128, 0}, {T_ULLONG, SRL, 1, 128, 0}, {T_ULLONG, SLL, 1, 255, 0},
    {T_ULLONG, SRL, 1, 255, 0}, {T_ULLONG, SLL, 1, 256, 1}, {T_ULLONG, SRL, 1, 256, 1},
    {T_ULLONG, SLL, 1, 257, 2}, {T_ULLONG, SRL, 1, 257, 0}, {T_ULLONG, SLL, 1, -1, 0},
    {T_ULLONG, SRL, 1, -1, 0}, {T_ULLONG, SLL, 0x12345678, 0, 0x12345678},
    {T_ULLONG, SRL, 0x12345678, 0, 0x12345678}, {T_ULLONG, SLL, 0x12345678, 1, 0x2468acf0},
    {T_ULLONG, SRL, 0x12345678, 1, 0x91a2b3c}, {T_ULLONG, SLL, 0x12345678, 31, 0x91a2b3c00000000},
    {T_ULLONG, SRL, 0x12345678, 31, 0}, {T_ULLONG, SLL, 0x12345678, 32, 0x1234567800000000},
    {T_ULLONG, SRL, 0x12345678, 32, 0}, {T_ULLONG, SLL, 0x12345678, 33, 0x2468acf000000000},
    {T_ULLONG, SRL, 0x12345678, 33, 0}, {T_ULLONG, SLL, 0x12345678, 63, 0},
    {T_ULLONG, SRL, 0x12345678, 63, 0}, {T_ULLONG, SLL, 0x12345678, 64, 0},
    {T_ULLONG, SRL, 0x12345678, 64, 0}, {T_ULLONG, SLL, 0x12345678, 65, 0},
    {T_ULLONG, SRL, 0x12345678, 65, 0}, {T_ULLONG, SLL, 0x12345678, 128, 0},
    {T_ULLONG, SRL, 0x12345678, 128, 0}, {T_ULLONG, SLL, 0x12345678, 255, 0},
    {T_ULLONG, SRL, 0x12345678, 255, 0}, {T_ULLONG, SLL, 0x12345678, 256, 0x12345678},
    {T_ULLONG, SRL, 0x12345678, 256, 0x12345678}, {T_ULLONG, SLL, 0x12345678, 257, 0x2468acf0},
    {T_ULLONG, SRL, 0x12345678, 257, 0x91a2b3c}, {T_ULLONG, SLL, 0x12345678, -1, 0},
    {T_ULLONG, SRL, 0x12345678, -1, 0}, {T_ULLONG, SLL, -0x80000000ll, 0, -0x80000000ll},
    {T_ULLONG, SRL, -0x80000000ll, 0, -0x80000000ll},
    {T_ULLONG, SLL, -0x80000000ll, 1, -0x100000000ll},
    {T_ULLONG, SRL, -0x80000000ll, 1, 0x7fffffffc0000000},
    {T_ULLONG, SLL, -0x80000000ll, 31, -0x4000000000000000ll},
    {T_ULLONG, SRL, -0x80000000ll, 31, 0x1ffffffff}, {T_ULLONG, SLL, -0x80000000ll, 32, INT64_MIN},
    {T_ULLONG, SRL, -0x80000000ll, 32, 0xffffffff}, {T_ULLONG, SLL, -0x80000000ll, 33, 0},
    {T_ULLONG, SRL, -0x80000000ll, 33, 0x7fffffff}, {T_ULLONG, SLL, -0x80000000ll, 63, 0},
    {T_ULLONG, SRL, -0x80000000ll, 63, 1}, {T_ULLONG, SLL, -0x80000000ll, 64, 0},
    {T_ULLONG, SRL, -0x80000000ll, 64, 0}, {T_ULLONG, SLL, -0x80000000ll, 65, 0},
    {T_ULLONG, SRL, -0x80000000ll, 65, 0}, {T_ULLONG, SLL, -0x80000000ll, 128, 0},
    {T_ULLONG, SRL, -0x80000000ll, 128, 0}, {T_ULLONG, SLL, -0x80000000ll, 255, 0},
    {T_ULLONG, SRL, -0x80000000ll, 255, 0}, {T_ULLONG, SLL, -0x80000000ll, 256, -0x80000000ll},
    {T_ULLONG, SRL, -0x80000000ll, 256, -0x80000000ll},
    {T_ULLONG, SLL, -0x80000000ll, 257, -0x100000000ll},
    {T_ULLONG, SRL, -0x80000000ll, 257, 0x7fffffffc0000000}, {T_ULLONG, SLL, -0x80000000ll, -1, 0},
    {T_ULLONG, SRL, -0x80000000ll, -1, 0}, {T_ULLONG, SLL, INT64_MIN, 0, INT64_MIN},
    {T_ULLONG, SRL, INT64_MIN, 0, INT64_MIN}, {T_ULLONG, SLL, INT64_MIN, 1, 0},
    {T_ULLONG, SRL, INT64_MIN, 1, 0x4000000000000000}, {T_ULLONG, SLL, INT64_MIN, 31, 0},
    {T_ULLONG, SRL, INT64_MIN, 31, 0x100000000}, {T_ULLONG, SLL, INT64_MIN, 32, 0},
    {T_ULLONG, SRL, INT64_MIN, 32, 0x80000000}, {T_ULLONG, SLL, INT64_MIN, 33, 0},
    {T_ULLONG, SRL, INT64_MIN, 33, 0x40000000}, {T_ULLONG, SLL, INT64_MIN, 63, 0},
    {T_ULLONG, SRL, INT64_MIN, 63, 1}, {T_ULLONG, SLL, INT64_MIN, 64, 0},
    {T_ULLONG, SRL, INT64_MIN, 64, 0}, {T_ULLONG, SLL, INT64_MIN, 65, 0},
    {T_ULLONG, SRL, INT64_MIN, 65, 0}, {T_ULLONG, SLL, INT64_MIN, 128, 0},
    {T_ULLONG, SRL, INT64_MIN, 128, 0}, {T_ULLONG, SLL, INT64_MIN, 255, 0},
    {T_ULLONG, SRL, INT64_MIN, 255, 0}, {T_ULLONG, SLL, INT64_MIN, 256, INT64_MIN},
    {T_ULLONG, SRL, INT64_MIN, 256, INT64_MIN}, {T_ULLONG, SLL, INT64_MIN, 257, 0},
    {T_ULLONG, SRL, INT64_MIN, 257, 0x4000000000000000}, {T_ULLONG, SLL, INT64_MIN, -1, 0},
    {T_ULLONG, SRL, INT64_MIN, -1, 0},
};
// clang-format on

struct CAST {
    TID from, to;
    int64_t value, result;
};
// clang-format off
constexpr CAST casts[] = {
    {T_BOOL, T_SCHAR, 0, 0}, {T_BOOL, T_UCHAR, 0, 0}, {T_BOOL, T_CHAR, 0, 0},
    {T_BOOL, T_SHORT, 0, 0}, {T_BOOL, T_USHORT, 0, 0}, {T_BOOL, T_INT, 0, 0},
    {T_BOOL, T_UINT, 0, 0}, {T_BOOL, T_LLONG, 0, 0}, {T_BOOL, T_ULLONG, 0, 0},
    {T_BOOL, T_SCHAR, 1, 1}, {T_BOOL, T_UCHAR, 1, 1}, {T_BOOL, T_CHAR, 1, 1},
    {T_BOOL, T_SHORT, 1, 1}, {T_BOOL, T_USHORT, 1, 1}, {T_BOOL, T_INT, 1, 1},
    {T_BOOL, T_UINT, 1, 1}, {T_BOOL, T_LLONG, 1, 1}, {T_BOOL, T_ULLONG, 1, 1},
    {T_SCHAR, T_BOOL, 0, 0}, {T_SCHAR, T_UCHAR, 0, 0}, {T_SCHAR, T_CHAR, 0, 0},
    {T_SCHAR, T_SHORT, 0, 0}, {T_SCHAR, T_USHORT, 0, 0}, {T_SCHAR, T_INT, 0, 0},
    {T_SCHAR, T_UINT, 0, 0}, {T_SCHAR, T_LLONG, 0, 0}, {T_SCHAR, T_ULLONG, 0, 0},
    {T_SCHAR, T_BOOL, 1, 1}, {T_SCHAR, T_UCHAR, 1, 1}, {T_SCHAR, T_CHAR, 1, 1},
    {T_SCHAR, T_SHORT, 1, 1}, {T_SCHAR, T_USHORT, 1, 1}, {T_SCHAR, T_INT, 1, 1},
    {T_SCHAR, T_UINT, 1, 1}, {T_SCHAR, T_LLONG, 1, 1}, {T_SCHAR, T_ULLONG, 1, 1},
    {T_SCHAR, T_BOOL, -1, 1}, {T_SCHAR, T_UCHAR, -1, 255}, {T_SCHAR, T_CHAR, -1, 255},
    {T_SCHAR, T_SHORT, -1, -1}, {T_SCHAR, T_USHORT, -1, 65535}, {T_SCHAR, T_INT, -1, -1},
    {T_SCHAR, T_UINT, -1, 0xffffffff}, {T_SCHAR, T_LLONG, -1, -1}, {T_SCHAR, T_ULLONG, -1, -1},
    {T_SCHAR, T_BOOL, -128, 1}, {T_SCHAR, T_UCHAR, -128, 128}, {T_SCHAR, T_CHAR, -128, 128},
    {T_SCHAR, T_SHORT, -128, -128}, {T_SCHAR, T_USHORT, -128, 65408}, {T_SCHAR, T_INT, -128, -128},
    {T_SCHAR, T_UINT, -128, 0xffffff80}, {T_SCHAR, T_LLONG, -128, -128},
    {T_SCHAR, T_ULLONG, -128, -128}, {T_SCHAR, T_BOOL, -17, 1}, {T_SCHAR, T_UCHAR, -17, 239},
    {T_SCHAR, T_CHAR, -17, 239}, {T_SCHAR, T_SHORT, -17, -17}, {T_SCHAR, T_USHORT, -17, 65519},
    {T_SCHAR, T_INT, -17, -17}, {T_SCHAR, T_UINT, -17, 0xffffffef}, {T_SCHAR, T_LLONG, -17, -17},
    {T_SCHAR, T_ULLONG, -17, -17}, {T_UCHAR, T_BOOL, 0, 0}, {T_UCHAR, T_SCHAR, 0, 0},
    {T_UCHAR, T_CHAR, 0, 0}, {T_UCHAR, T_SHORT, 0, 0}, {T_UCHAR, T_USHORT, 0, 0},
    {T_UCHAR, T_INT, 0, 0}, {T_UCHAR, T_UINT, 0, 0}, {T_UCHAR, T_LLONG, 0, 0},
    {T_UCHAR, T_ULLONG, 0, 0}, {T_UCHAR, T_BOOL, 1, 1}, {T_UCHAR, T_SCHAR, 1, 1},
    {T_UCHAR, T_CHAR, 1, 1}, {T_UCHAR, T_SHORT, 1, 1}, {T_UCHAR, T_USHORT, 1, 1},
    {T_UCHAR, T_INT, 1, 1}, {T_UCHAR, T_UINT, 1, 1}, {T_UCHAR, T_LLONG, 1, 1},
    {T_UCHAR, T_ULLONG, 1, 1}, {T_UCHAR, T_BOOL, 255, 1}, {T_UCHAR, T_SCHAR, 255, -1},
    {T_UCHAR, T_CHAR, 255, 255}, {T_UCHAR, T_SHORT, 255, 255}, {T_UCHAR, T_USHORT, 255, 255},
    {T_UCHAR, T_INT, 255, 255}, {T_UCHAR, T_UINT, 255, 255}, {T_UCHAR, T_LLONG, 255, 255},
    {T_UCHAR, T_ULLONG, 255, 255}, {T_UCHAR, T_BOOL, 128, 1}, {T_UCHAR, T_SCHAR, 128, -128},
    {T_UCHAR, T_CHAR, 128, 128}, {T_UCHAR, T_SHORT, 128, 128}, {T_UCHAR, T_USHORT, 128, 128},
    {T_UCHAR, T_INT, 128, 128}, {T_UCHAR, T_UINT, 128, 128}, {T_UCHAR, T_LLONG, 128, 128},
    {T_UCHAR, T_ULLONG, 128, 128}, {T_UCHAR, T_BOOL, 239, 1}, {T_UCHAR, T_SCHAR, 239, -17},
    {T_UCHAR, T_CHAR, 239, 239}, {T_UCHAR, T_SHORT, 239, 239}, {T_UCHAR, T_USHORT, 239, 239},
    {T_UCHAR, T_INT, 239, 239}, {T_UCHAR, T_UINT, 239, 239}, {T_UCHAR, T_LLONG, 239, 239},
    {T_UCHAR, T_ULLONG, 239, 239}, {T_CHAR, T_BOOL, 0, 0}, {T_CHAR, T_SCHAR, 0, 0},
    {T_CHAR, T_UCHAR, 0, 0}, {T_CHAR, T_SHORT, 0, 0}, {T_CHAR, T_USHORT, 0, 0},
    {T_CHAR, T_INT, 0, 0}, {T_CHAR, T_UINT, 0, 0}, {T_CHAR, T_LLONG, 0, 0},
    {T_CHAR, T_ULLONG, 0, 0}, {T_CHAR, T_BOOL, 1, 1}, {T_CHAR, T_SCHAR, 1, 1},
    {T_CHAR, T_UCHAR, 1, 1}, {T_CHAR, T_SHORT, 1, 1}, {T_CHAR, T_USHORT, 1, 1},
    {T_CHAR, T_INT, 1, 1}, {T_CHAR, T_UINT, 1, 1}, {T_CHAR, T_LLONG, 1, 1},
    {T_CHAR, T_ULLONG, 1, 1}, {T_CHAR, T_BOOL, 255, 1}, {T_CHAR, T_SCHAR, 255, -1},
    {T_CHAR, T_UCHAR, 255, 255}, {T_CHAR, T_SHORT, 255, 255}, {T_CHAR, T_USHORT, 255, 255},
    {T_CHAR, T_INT, 255, 255}, {T_CHAR, T_UINT, 255, 255}, {T_CHAR, T_LLONG, 255, 255},
    {T_CHAR, T_ULLONG, 255, 255}, {T_CHAR, T_BOOL, 128, 1}, {T_CHAR, T_SCHAR, 128, -128},
    {T_CHAR, T_UCHAR, 128, 128}, {T_CHAR, T_SHORT, 128, 128}, {T_CHAR, T_USHORT, 128, 128},
    {T_CHAR, T_INT, 128, 128}, {T_CHAR, T_UINT, 128, 128}, {T_CHAR, T_LLONG, 128, 128},
    {T_CHAR, T_ULLONG, 128, 128}, {T_CHAR, T_BOOL, 239, 1}, {T_CHAR, T_SCHAR, 239, -17},
    {T_CHAR, T_UCHAR, 239, 239}, {T_CHAR, T_SHORT, 239, 239}, {T_CHAR, T_USHORT, 239, 239},
    {T_CHAR, T_INT, 239, 239}, {T_CHAR, T_UINT, 239, 239}, {T_CHAR, T_LLONG, 239, 239},
    {T_CHAR, T_ULLONG, 239, 239}, {T_SHORT, T_BOOL, 0, 0}, {T_SHORT, T_SCHAR, 0, 0},
    {T_SHORT, T_UCHAR, 0, 0}, {T_SHORT, T_CHAR, 0, 0}, {T_SHORT, T_USHORT, 0, 0},
    {T_SHORT, T_INT, 0, 0}, {T_SHORT, T_UINT, 0, 0}, {T_SHORT, T_LLONG, 0, 0},
    {T_SHORT, T_ULLONG, 0, 0}, {T_SHORT, T_BOOL, 1, 1}, {T_SHORT, T_SCHAR, 1, 1},
    {T_SHORT, T_UCHAR, 1, 1}, {T_SHORT, T_CHAR, 1, 1}, {T_SHORT, T_USHORT, 1, 1},
    {T_SHORT, T_INT, 1, 1}, {T_SHORT, T_UINT, 1, 1}, {T_SHORT, T_LLONG, 1, 1},
    {T_SHORT, T_ULLONG, 1, 1}, {T_SHORT, T_BOOL, -1, 1}, {T_SHORT, T_SCHAR, -1, -1},
    {T_SHORT, T_UCHAR, -1, 255}, {T_SHORT, T_CHAR, -1, 255}, {T_SHORT, T_USHORT, -1, 65535},
    {T_SHORT, T_INT, -1, -1}, {T_SHORT, T_UINT, -1, 0xffffffff}, {T_SHORT, T_LLONG, -1, -1},
    {T_SHORT, T_ULLONG, -1, -1}, {T_SHORT, T_BOOL, 128, 1}, {T_SHORT, T_SCHAR, 128, -128},
    {T_SHORT, T_UCHAR, 128, 128}, {T_SHORT, T_CHAR, 128, 128}, {T_SHORT, T_USHORT, 128, 128},
    {T_SHORT, T_INT, 128, 128}, {T_SHORT, T_UINT, 128, 128}, {T_SHORT, T_LLONG, 128, 128},
    {T_SHORT, T_ULLONG, 128, 128}, {T_SHORT, T_BOOL, 255, 1}, {T_SHORT, T_SCHAR, 255, -1},
    {T_SHORT, T_UCHAR, 255, 255}, {T_SHORT, T_CHAR, 255, 255}, {T_SHORT, T_USHORT, 255, 255},
    {T_SHORT, T_INT, 255, 255}, {T_SHORT, T_UINT, 255, 255}, {T_SHORT, T_LLONG, 255, 255},
    {T_SHORT, T_ULLONG, 255, 255}, {T_SHORT, T_BOOL, 256, 1}, {T_SHORT, T_SCHAR, 256, 0},
    {T_SHORT, T_UCHAR, 256, 0}, {T_SHORT, T_CHAR, 256, 0}, {T_SHORT, T_USHORT, 256, 256},
    {T_SHORT, T_INT, 256, 256}, {T_SHORT, T_UINT, 256, 256}, {T_SHORT, T_LLONG, 256, 256},
    {T_SHORT, T_ULLONG, 256, 256}, {T_SHORT, T_BOOL, -32768, 1}, {T_SHORT, T_SCHAR, -32768, 0},
    {T_SHORT, T_UCHAR, -32768, 0}, {T_SHORT, T_CHAR, -32768, 0}, {T_SHORT, T_USHORT, -32768, 32768},
    {T_SHORT, T_INT, -32768, -32768}, {T_SHORT, T_UINT, -32768, 0xffff8000},
    {T_SHORT, T_LLONG, -32768, -32768}, {T_SHORT, T_ULLONG, -32768, -32768},
    {T_SHORT, T_BOOL, -12817, 1}, {T_SHORT, T_SCHAR, -12817, -17}, {T_SHORT, T_UCHAR, -12817, 239},
    {T_SHORT, T_CHAR, -12817, 239}, {T_SHORT, T_USHORT, -12817, 52719},
    {T_SHORT, T_INT, -12817, -12817}, {T_SHORT, T_UINT, -12817, 0xffffcdef},
    {T_SHORT, T_LLONG, -12817, -12817}, {T_SHORT, T_ULLONG, -12817, -12817},
    {T_USHORT, T_BOOL, 0, 0}, {T_USHORT, T_SCHAR, 0, 0}, {T_USHORT, T_UCHAR, 0, 0},
    {T_USHORT, T_CHAR, 0, 0}, {T_USHORT, T_SHORT, 0, 0}, {T_USHORT, T_INT, 0, 0},
    {T_USHORT, T_UINT, 0, 0}, {T_USHORT, T_LLONG, 0, 0}, {T_USHORT, T_ULLONG, 0, 0},
    {T_USHORT, T_BOOL, 1, 1}, {T_USHORT, T_SCHAR, 1, 1}, {T_USHORT, T_UCHAR, 1, 1},
    {T_USHORT, T_CHAR, 1, 1}, {T_USHORT, T_SHORT, 1, 1}, {T_USHORT, T_INT, 1, 1},
    {T_USHORT, T_UINT, 1, 1}, {T_USHORT, T_LLONG, 1, 1}, {T_USHORT, T_ULLONG, 1, 1},
    {T_USHORT, T_BOOL, 65535, 1}, {T_USHORT, T_SCHAR, 65535, -1}, {T_USHORT, T_UCHAR, 65535, 255},
    {T_USHORT, T_CHAR, 65535, 255}, {T_USHORT, T_SHORT, 65535, -1}, {T_USHORT, T_INT, 65535, 65535},
    {T_USHORT, T_UINT, 65535, 65535}, {T_USHORT, T_LLONG, 65535, 65535},
    {T_USHORT, T_ULLONG, 65535, 65535}, {T_USHORT, T_BOOL, 128, 1}, {T_USHORT, T_SCHAR, 128, -128},
    {T_USHORT, T_UCHAR, 128, 128}, {T_USHORT, T_CHAR, 128, 128}, {T_USHORT, T_SHORT, 128, 128},
    {T_USHORT, T_INT, 128, 128}, {T_USHORT, T_UINT, 128, 128}, {T_USHORT, T_LLONG, 128, 128},
    {T_USHORT, T_ULLONG, 128, 128}, {T_USHORT, T_BOOL, 255, 1}, {T_USHORT, T_SCHAR, 255, -1},
    {T_USHORT, T_UCHAR, 255, 255}, {T_USHORT, T_CHAR, 255, 255}, {T_USHORT, T_SHORT, 255, 255},
    {T_USHORT, T_INT, 255, 255}, {T_USHORT, T_UINT, 255, 255}, {T_USHORT, T_LLONG, 255, 255},
    {T_USHORT, T_ULLONG, 255, 255}, {T_USHORT, T_BOOL, 256, 1}, {T_USHORT, T_SCHAR, 256, 0},
    {T_USHORT, T_UCHAR, 256, 0}, {T_USHORT, T_CHAR, 256, 0}, {T_USHORT, T_SHORT, 256, 256},
    {T_USHORT, T_INT, 256, 256}, {T_USHORT, T_UINT, 256, 256}, {T_USHORT, T_LLONG, 256, 256},
    {T_USHORT, T_ULLONG, 256, 256}, {T_USHORT, T_BOOL, 32768, 1}, {T_USHORT, T_SCHAR, 32768, 0},
    {T_USHORT, T_UCHAR, 32768, 0}, {T_USHORT, T_CHAR, 32768, 0}, {T_USHORT, T_SHORT, 32768, -32768},
    {T_USHORT, T_INT, 32768, 32768}, {T_USHORT, T_UINT, 32768, 32768},
    {T_USHORT, T_LLONG, 32768, 32768}, {T_USHORT, T_ULLONG, 32768, 32768},
    {T_USHORT, T_BOOL, 52719, 1}, {T_USHORT, T_SCHAR, 52719, -17}, {T_USHORT, T_UCHAR, 52719, 239},
    {T_USHORT, T_CHAR, 52719, 239}, {T_USHORT, T_SHORT, 52719, -12817},
    {T_USHORT, T_INT, 52719, 52719}, {T_USHORT, T_UINT, 52719, 52719},
    {T_USHORT, T_LLONG, 52719, 52719}, {T_USHORT, T_ULLONG, 52719, 52719}, {T_INT, T_BOOL, 0, 0},
    {T_INT, T_SCHAR, 0, 0}, {T_INT, T_UCHAR, 0, 0}, {T_INT, T_CHAR, 0, 0}, {T_INT, T_SHORT, 0, 0},
    {T_INT, T_USHORT, 0, 0}, {T_INT, T_UINT, 0, 0}, {T_INT, T_LLONG, 0, 0}, {T_INT, T_ULLONG, 0, 0},
    {T_INT, T_BOOL, 1, 1}, {T_INT, T_SCHAR, 1, 1}, {T_INT, T_UCHAR, 1, 1}, {T_INT, T_CHAR, 1, 1},
    {T_INT, T_SHORT, 1, 1}, {T_INT, T_USHORT, 1, 1}, {T_INT, T_UINT, 1, 1}, {T_INT, T_LLONG, 1, 1},
    {T_INT, T_ULLONG, 1, 1}, {T_INT, T_BOOL, -1, 1}, {T_INT, T_SCHAR, -1, -1},
    {T_INT, T_UCHAR, -1, 255}, {T_INT, T_CHAR, -1, 255}, {T_INT, T_SHORT, -1, -1},
    {T_INT, T_USHORT, -1, 65535}, {T_INT, T_UINT, -1, 0xffffffff}, {T_INT, T_LLONG, -1, -1},
    {T_INT, T_ULLONG, -1, -1}, {T_INT, T_BOOL, 128, 1}, {T_INT, T_SCHAR, 128, -128},
    {T_INT, T_UCHAR, 128, 128}, {T_INT, T_CHAR, 128, 128}, {T_INT, T_SHORT, 128, 128},
    {T_INT, T_USHORT, 128, 128}, {T_INT, T_UINT, 128, 128}, {T_INT, T_LLONG, 128, 128},
    {T_INT, T_ULLONG, 128, 128}, {T_INT, T_BOOL, 255, 1}, {T_INT, T_SCHAR, 255, -1},
    {T_INT, T_UCHAR, 255, 255}, {T_INT, T_CHAR, 255, 255}, {T_INT, T_SHORT, 255, 255},
    {T_INT, T_USHORT, 255, 255}, {T_INT, T_UINT, 255, 255}, {T_INT, T_LLONG, 255, 255},
    {T_INT, T_ULLONG, 255, 255}, {T_INT, T_BOOL, 256, 1}, {T_INT, T_SCHAR, 256, 0},
    {T_INT, T_UCHAR, 256, 0}, {T_INT, T_CHAR, 256, 0}, {T_INT, T_SHORT, 256, 256},
    {T_INT, T_USHORT, 256, 256}, {T_INT, T_UINT, 256, 256}, {T_INT, T_LLONG, 256, 256},
    {T_INT, T_ULLONG, 256, 256}, {T_INT, T_BOOL, 32768, 1}, {T_INT, T_SCHAR, 32768, 0},
    {T_INT, T_UCHAR, 32768, 0}, {T_INT, T_CHAR, 32768, 0}, {T_INT, T_SHORT, 32768, -32768},
    {T_INT, T_USHORT, 32768, 32768}, {T_INT, T_UINT, 32768, 32768}, {T_INT, T_LLONG, 32768, 32768},
    {T_INT, T_ULLONG, 32768, 32768}, {T_INT, T_BOOL, -0x80000000ll, 1},
    {T_INT, T_SCHAR, -0x80000000ll, 0}, {T_INT, T_UCHAR, -0x80000000ll, 0},
    {T_INT, T_CHAR, -0x80000000ll, 0}, {T_INT, T_SHORT, -0x80000000ll, 0},
    {T_INT, T_USHORT, -0x80000000ll, 0}, {T_INT, T_UINT, -0x80000000ll, 0x80000000},
    {T_INT, T_LLONG, -0x80000000ll, -0x80000000ll}, {T_INT, T_ULLONG, -0x80000000ll, -0x80000000ll},
    {T_INT, T_BOOL, -0x76543211ll, 1}, {T_INT, T_SCHAR, -0x76543211ll, -17},
    {T_INT, T_UCHAR, -0x76543211ll, 239}, {T_INT, T_CHAR, -0x76543211ll, 239},
    {T_INT, T_SHORT, -0x76543211ll, -12817}, {T_INT, T_USHORT, -0x76543211ll, 52719},
    {T_INT, T_UINT, -0x76543211ll, 0x89abcdef}, {T_INT, T_LLONG, -0x76543211ll, -0x76543211ll},
    {T_INT, T_ULLONG, -0x76543211ll, -0x76543211ll}, {T_UINT, T_BOOL, 0, 0},
    {T_UINT, T_SCHAR, 0, 0}, {T_UINT, T_UCHAR, 0, 0}, {T_UINT, T_CHAR, 0, 0},
    {T_UINT, T_SHORT, 0, 0}, {T_UINT, T_USHORT, 0, 0}, {T_UINT, T_INT, 0, 0},
    {T_UINT, T_LLONG, 0, 0}, {T_UINT, T_ULLONG, 0, 0}, {T_UINT, T_BOOL, 1, 1},
    {T_UINT, T_SCHAR, 1, 1}, {T_UINT, T_UCHAR, 1, 1}, {T_UINT, T_CHAR, 1, 1},
    {T_UINT, T_SHORT, 1, 1}, {T_UINT, T_USHORT, 1, 1}, {T_UINT, T_INT, 1, 1},
    {T_UINT, T_LLONG, 1, 1}, {T_UINT, T_ULLONG, 1, 1}, {T_UINT, T_BOOL, 0xffffffff, 1},
    {T_UINT, T_SCHAR, 0xffffffff, -1}, {T_UINT, T_UCHAR, 0xffffffff, 255},
    {T_UINT, T_CHAR, 0xffffffff, 255}, {T_UINT, T_SHORT, 0xffffffff, -1},
    {T_UINT, T_USHORT, 0xffffffff, 65535}, {T_UINT, T_INT, 0xffffffff, -1},
    {T_UINT, T_LLONG, 0xffffffff, 0xffffffff}, {T_UINT, T_ULLONG, 0xffffffff, 0xffffffff},
    {T_UINT, T_BOOL, 128, 1}, {T_UINT, T_SCHAR, 128, -128}, {T_UINT, T_UCHAR, 128, 128},
    {T_UINT, T_CHAR, 128, 128}, {T_UINT, T_SHORT, 128, 128}, {T_UINT, T_USHORT, 128, 128},
    {T_UINT, T_INT, 128, 128}, {T_UINT, T_LLONG, 128, 128}, {T_UINT, T_ULLONG, 128, 128},
    {T_UINT, T_BOOL, 255, 1}, {T_UINT, T_SCHAR, 255, -1}, {T_UINT, T_UCHAR, 255, 255},
    {T_UINT, T_CHAR, 255, 255}, {T_UINT, T_SHORT, 255, 255}, {T_UINT, T_USHORT, 255, 255},
    {T_UINT, T_INT, 255, 255}, {T_UINT, T_LLONG, 255, 255}, {T_UINT, T_ULLONG, 255, 255},
    {T_UINT, T_BOOL, 256, 1}, {T_UINT, T_SCHAR, 256, 0}, {T_UINT, T_UCHAR, 256, 0},
    {T_UINT, T_CHAR, 256, 0}, {T_UINT, T_SHORT, 256, 256}, {T_UINT, T_USHORT, 256, 256},
    {T_UINT, T_INT, 256, 256}, {T_UINT, T_LLONG, 256, 256}, {T_UINT, T_ULLONG, 256, 256},
    {T_UINT, T_BOOL, 32768, 1}, {T_UINT, T_SCHAR, 32768, 0}, {T_UINT, T_UCHAR, 32768, 0},
    {T_UINT, T_CHAR, 32768, 0}, {T_UINT, T_SHORT, 32768, -32768}, {T_UINT, T_USHORT, 32768, 32768},
    {T_UINT, T_INT, 32768, 32768}, {T_UINT, T_LLONG, 32768, 32768},
    {T_UINT, T_ULLONG, 32768, 32768}, {T_UINT, T_BOOL, 0x80000000, 1},
    {T_UINT, T_SCHAR, 0x80000000, 0}, {T_UINT, T_UCHAR, 0x80000000, 0},
    {T_UINT, T_CHAR, 0x80000000, 0}, {T_UINT, T_SHORT, 0x80000000, 0},
    {T_UINT, T_USHORT, 0x80000000, 0}, {T_UINT, T_INT, 0x80000000, -0x80000000ll},
    {T_UINT, T_LLONG, 0x80000000, 0x80000000}, {T_UINT, T_ULLONG, 0x80000000, 0x80000000},
    {T_UINT, T_BOOL, 0x89abcdef, 1}, {T_UINT, T_SCHAR, 0x89abcdef, -17},
    {T_UINT, T_UCHAR, 0x89abcdef, 239}, {T_UINT, T_CHAR, 0x89abcdef, 239},
    {T_UINT, T_SHORT, 0x89abcdef, -12817}, {T_UINT, T_USHORT, 0x89abcdef, 52719},
    {T_UINT, T_INT, 0x89abcdef, -0x76543211ll}, {T_UINT, T_LLONG, 0x89abcdef, 0x89abcdef},
    {T_UINT, T_ULLONG, 0x89abcdef, 0x89abcdef}, {T_LLONG, T_BOOL, 0, 0}, {T_LLONG, T_SCHAR, 0, 0},
    {T_LLONG, T_UCHAR, 0, 0}, {T_LLONG, T_CHAR, 0, 0}, {T_LLONG, T_SHORT, 0, 0},
    {T_LLONG, T_USHORT, 0, 0}, {T_LLONG, T_INT, 0, 0}, {T_LLONG, T_UINT, 0, 0},
    {T_LLONG, T_ULLONG, 0, 0}, {T_LLONG, T_BOOL, 1, 1}, {T_LLONG, T_SCHAR, 1, 1},
    {T_LLONG, T_UCHAR, 1, 1}, {T_LLONG, T_CHAR, 1, 1}, {T_LLONG, T_SHORT, 1, 1},
    {T_LLONG, T_USHORT, 1, 1}, {T_LLONG, T_INT, 1, 1}, {T_LLONG, T_UINT, 1, 1},
    {T_LLONG, T_ULLONG, 1, 1}, {T_LLONG, T_BOOL, -1, 1}, {T_LLONG, T_SCHAR, -1, -1},
    {T_LLONG, T_UCHAR, -1, 255}, {T_LLONG, T_CHAR, -1, 255}, {T_LLONG, T_SHORT, -1, -1},
    {T_LLONG, T_USHORT, -1, 65535}, {T_LLONG, T_INT, -1, -1}, {T_LLONG, T_UINT, -1, 0xffffffff},
    {T_LLONG, T_ULLONG, -1, -1}, {T_LLONG, T_BOOL, 128, 1}, {T_LLONG, T_SCHAR, 128, -128},
    {T_LLONG, T_UCHAR, 128, 128}, {T_LLONG, T_CHAR, 128, 128}, {T_LLONG, T_SHORT, 128, 128},
    {T_LLONG, T_USHORT, 128, 128}, {T_LLONG, T_INT, 128, 128}, {T_LLONG, T_UINT, 128, 128},
    {T_LLONG, T_ULLONG, 128, 128}, {T_LLONG, T_BOOL, 255, 1}, {T_LLONG, T_SCHAR, 255, -1},
    {T_LLONG, T_UCHAR, 255, 255}, {T_LLONG, T_CHAR, 255, 255}, {T_LLONG, T_SHORT, 255, 255},
    {T_LLONG, T_USHORT, 255, 255}, {T_LLONG, T_INT, 255, 255}, {T_LLONG, T_UINT, 255, 255},
    {T_LLONG, T_ULLONG, 255, 255}, {T_LLONG, T_BOOL, 256, 1}, {T_LLONG, T_SCHAR, 256, 0},
    {T_LLONG, T_UCHAR, 256, 0}, {T_LLONG, T_CHAR, 256, 0}, {T_LLONG, T_SHORT, 256, 256},
    {T_LLONG, T_USHORT, 256, 256}, {T_LLONG, T_INT, 256, 256}, {T_LLONG, T_UINT, 256, 256},
    {T_LLONG, T_ULLONG, 256, 256}, {T_LLONG, T_BOOL, 32768, 1}, {T_LLONG, T_SCHAR, 32768, 0},
    {T_LLONG, T_UCHAR, 32768, 0}, {T_LLONG, T_CHAR, 32768, 0}, {T_LLONG, T_SHORT, 32768, -32768},
    {T_LLONG, T_USHORT, 32768, 32768}, {T_LLONG, T_INT, 32768, 32768},
    {T_LLONG, T_UINT, 32768, 32768}, {T_LLONG, T_ULLONG, 32768, 32768},
    {T_LLONG, T_BOOL, -0x80000000ll, 1}, {T_LLONG, T_SCHAR, -0x80000000ll, 0},
    {T_LLONG, T_UCHAR, -0x80000000ll, 0}, {T_LLONG, T_CHAR, -0x80000000ll, 0},
    {T_LLONG, T_SHORT, -0x80000000ll, 0}, {T_LLONG, T_USHORT, -0x80000000ll, 0},
    {T_LLONG, T_INT, -0x80000000ll, -0x80000000ll}, {T_LLONG, T_UINT, -0x80000000ll, 0x80000000},
    {T_LLONG, T_ULLONG, -0x80000000ll, -0x80000000ll}, {T_LLONG, T_BOOL, 0xffffffff, 1},
    {T_LLONG, T_SCHAR, 0xffffffff, -1}, {T_LLONG, T_UCHAR, 0xffffffff, 255},
    {T_LLONG, T_CHAR, 0xffffffff, 255}, {T_LLONG, T_SHORT, 0xffffffff, -1},
    {T_LLONG, T_USHORT, 0xffffffff, 65535}, {T_LLONG, T_INT, 0xffffffff, -1},
    {T_LLONG, T_UINT, 0xffffffff, 0xffffffff}, {T_LLONG, T_ULLONG, 0xffffffff, 0xffffffff},
    {T_LLONG, T_BOOL, 0x100000000, 1}, {T_LLONG, T_SCHAR, 0x100000000, 0},
    {T_LLONG, T_UCHAR, 0x100000000, 0}, {T_LLONG, T_CHAR, 0x100000000, 0},
    {T_LLONG, T_SHORT, 0x100000000, 0}, {T_LLONG, T_USHORT, 0x100000000, 0},
    {T_LLONG, T_INT, 0x100000000, 0}, {T_LLONG, T_UINT, 0x100000000, 0},
    {T_LLONG, T_ULLONG, 0x100000000, 0x100000000}, {T_LLONG, T_BOOL, INT64_MIN, 1},
    {T_LLONG, T_SCHAR, INT64_MIN, 0}, {T_LLONG, T_UCHAR, INT64_MIN, 0},
    {T_LLONG, T_CHAR, INT64_MIN, 0}, {T_LLONG, T_SHORT, INT64_MIN, 0},
    {T_LLONG, T_USHORT, INT64_MIN, 0}, {T_LLONG, T_INT, INT64_MIN, 0},
    {T_LLONG, T_UINT, INT64_MIN, 0}, {T_LLONG, T_ULLONG, INT64_MIN, INT64_MIN},
    {T_LLONG, T_BOOL, 0x123456789abcdef, 1}, {T_LLONG, T_SCHAR, 0x123456789abcdef, -17},
    {T_LLONG, T_UCHAR, 0x123456789abcdef, 239}, {T_LLONG, T_CHAR, 0x123456789abcdef, 239},
    {T_LLONG, T_SHORT, 0x123456789abcdef, -12817}, {T_LLONG, T_USHORT, 0x123456789abcdef, 52719},
    {T_LLONG, T_INT, 0x123456789abcdef, -0x76543211ll},
    {T_LLONG, T_UINT, 0x123456789abcdef, 0x89abcdef},
    {T_LLONG, T_ULLONG, 0x123456789abcdef, 0x123456789abcdef}, {T_ULLONG, T_BOOL, 0, 0},
    {T_ULLONG, T_SCHAR, 0, 0}, {T_ULLONG, T_UCHAR, 0, 0}, {T_ULLONG, T_CHAR, 0, 0},
    {T_ULLONG, T_SHORT, 0, 0}, {T_ULLONG, T_USHORT, 0, 0}, {T_ULLONG, T_INT, 0, 0},
    {T_ULLONG, T_UINT, 0, 0}, {T_ULLONG, T_LLONG, 0, 0}, {T_ULLONG, T_BOOL, 1, 1},
    {T_ULLONG, T_SCHAR, 1, 1}, {T_ULLONG, T_UCHAR, 1, 1}, {T_ULLONG, T_CHAR, 1, 1},
    {T_ULLONG, T_SHORT, 1, 1}, {T_ULLONG, T_USHORT, 1, 1}, {T_ULLONG, T_INT, 1, 1},
    {T_ULLONG, T_UINT, 1, 1}, {T_ULLONG, T_LLONG, 1, 1}, {T_ULLONG, T_BOOL, -1, 1},
    {T_ULLONG, T_SCHAR, -1, -1}, {T_ULLONG, T_UCHAR, -1, 255}, {T_ULLONG, T_CHAR, -1, 255},
    {T_ULLONG, T_SHORT, -1, -1}, {T_ULLONG, T_USHORT, -1, 65535}, {T_ULLONG, T_INT, -1, -1},
    {T_ULLONG, T_UINT, -1, 0xffffffff}, {T_ULLONG, T_LLONG, -1, -1}, {T_ULLONG, T_BOOL, 128, 1},
    {T_ULLONG, T_SCHAR, 128, -128}, {T_ULLONG, T_UCHAR, 128, 128}, {T_ULLONG, T_CHAR, 128, 128},
    {T_ULLONG, T_SHORT, 128, 128}, {T_ULLONG, T_USHORT, 128, 128}, {T_ULLONG, T_INT, 128, 128},
    {T_ULLONG, T_UINT, 128, 128}, {T_ULLONG, T_LLONG, 128, 128}, {T_ULLONG, T_BOOL, 255, 1},
    {T_ULLONG, T_SCHAR, 255, -1}, {T_ULLONG, T_UCHAR, 255, 255}, {T_ULLONG, T_CHAR, 255, 255},
    {T_ULLONG, T_SHORT, 255, 255}, {T_ULLONG, T_USHORT, 255, 255}, {T_ULLONG, T_INT, 255, 255},
    {T_ULLONG, T_UINT, 255, 255}, {T_ULLONG, T_LLONG, 255, 255}, {T_ULLONG, T_BOOL, 256, 1},
    {T_ULLONG, T_SCHAR, 256, 0}, {T_ULLONG, T_UCHAR, 256, 0}, {T_ULLONG, T_CHAR, 256, 0},
    {T_ULLONG, T_SHORT, 256, 256}, {T_ULLONG, T_USHORT, 256, 256}, {T_ULLONG, T_INT, 256, 256},
    {T_ULLONG, T_UINT, 256, 256}, {T_ULLONG, T_LLONG, 256, 256}, {T_ULLONG, T_BOOL, 32768, 1},
    {T_ULLONG, T_SCHAR, 32768, 0}, {T_ULLONG, T_UCHAR, 32768, 0}, {T_ULLONG, T_CHAR, 32768, 0},
    {T_ULLONG, T_SHORT, 32768, -32768}, {T_ULLONG, T_USHORT, 32768, 32768},
    {T_ULLONG, T_INT, 32768, 32768}, {T_ULLONG, T_UINT, 32768, 32768},
    {T_ULLONG, T_LLONG, 32768, 32768}, {T_ULLONG, T_BOOL, -0x80000000ll, 1},
    {T_ULLONG, T_SCHAR, -0x80000000ll, 0}, {T_ULLONG, T_UCHAR, -0x80000000ll, 0},
    {T_ULLONG, T_CHAR, -0x80000000ll, 0}, {T_ULLONG, T_SHORT, -0x80000000ll, 0},
    {T_ULLONG, T_USHORT, -0x80000000ll, 0}, {T_ULLONG, T_INT, -0x80000000ll, -0x80000000ll},
    {T_ULLONG, T_UINT, -0x80000000ll, 0x80000000},
    {T_ULLONG, T_LLONG, -0x80000000ll, -0x80000000ll}, {T_ULLONG, T_BOOL, 0xffffffff, 1},
    {T_ULLONG, T_SCHAR, 0xffffffff, -1}, {T_ULLONG, T_UCHAR, 0xffffffff, 255},
    {T_ULLONG, T_CHAR, 0xffffffff, 255}, {T_ULLONG, T_SHORT, 0xffffffff, -1},
    {T_ULLONG, T_USHORT, 0xffffffff, 65535}, {T_ULLONG, T_INT, 0xffffffff, -1},
    {T_ULLONG, T_UINT, 0xffffffff, 0xffffffff}, {T_ULLONG, T_LLONG, 0xffffffff, 0xffffffff},
    {T_ULLONG, T_BOOL, 0x100000000, 1}, {T_ULLONG, T_SCHAR, 0x100000000, 0},
    {T_ULLONG, T_UCHAR, 0x100000000, 0}, {T_ULLONG, T_CHAR, 0x100000000, 0},
    {T_ULLONG, T_SHORT, 0x100000000, 0}, {T_ULLONG, T_USHORT, 0x100000000, 0},
    {T_ULLONG, T_INT, 0x100000000, 0}, {T_ULLONG, T_UINT, 0x100000000, 0},
    {T_ULLONG, T_LLONG, 0x100000000, 0x100000000}, {T_ULLONG, T_BOOL, INT64_MIN, 1},
    {T_ULLONG, T_SCHAR, INT64_MIN, 0}, {T_ULLONG, T_UCHAR, INT64_MIN, 0},
    {T_ULLONG, T_CHAR, INT64_MIN, 0}, {T_ULLONG, T_SHORT, INT64_MIN, 0},
    {T_ULLONG, T_USHORT, INT64_MIN, 0}, {T_ULLONG, T_INT, INT64_MIN, 0},
    {T_ULLONG, T_UINT, INT64_MIN, 0}, {T_ULLONG, T_LLONG, INT64_MIN, INT64_MIN},
    {T_ULLONG, T_BOOL, 0x123456789abcdef, 1}, {T_ULLONG, T_SCHAR, 0x123456789abcdef, -17},
    {T_ULLONG, T_UCHAR, 0x123456789abcdef, 239}, {T_ULLONG, T_CHAR, 0x123456789abcdef, 239},
    {T_ULLONG, T_SHORT, 0x123456789abcdef, -12817}, {T_ULLONG, T_USHORT, 0x123456789abcdef, 52719},
    {T_ULLONG, T_INT, 0x123456789abcdef, -0x76543211ll},
    {T_ULLONG, T_UINT, 0x123456789abcdef, 0x89abcdef},
    {T_ULLONG, T_LLONG, 0x123456789abcdef, 0x123456789abcdef},
};
// clang-format on

} // namespace

TEST(Folding, TruncationKeepsTheTypesBits) {
    EXPECT_EQ(truncate_to_type(INT65(255), type_of(T_SCHAR)), INT65(-1));
    EXPECT_EQ(truncate_to_type(INT65(-1), type_of(T_UCHAR)), INT65(255));
    EXPECT_EQ(truncate_to_type(INT65(-1), type_of(T_CHAR)), INT65(255));
    EXPECT_EQ(truncate_to_type(INT65(0x1ffff), type_of(T_SHORT)), INT65(-1));
    EXPECT_EQ(truncate_to_type(INT65(-1), type_of(T_ULLONG)), INT65::from_unsigned(~0ull));
    // Read as signed whatever the type's sign, by the type's size.
    EXPECT_EQ(sign_extend_by_type(INT65(0xff), type_of(T_UCHAR)), INT65(-1));
    EXPECT_EQ(sign_extend_by_type(INT65::from_unsigned(0xffffffff), type_of(T_UINT)), INT65(-1));
    EXPECT_EQ(sign_extend_by_type(INT65(0x7f), type_of(T_UCHAR)), INT65(0x7f));
    EXPECT_EQ(sign_extend_by_type_size(INT65::from_unsigned(0x8000), type_of(T_USHORT)),
              INT65(-0x8000));
    EXPECT_EQ(sign_extend_by_type_size(INT65::from_unsigned(~0ull), type_of(T_ULLONG)), INT65(-1));
    // A conversion to _Bool tests against zero.
    EXPECT_EQ(convert_integer_constant(INT65(256), type_of(T_BOOL)), INT65(1));
    EXPECT_EQ(convert_integer_constant(INT65(0), type_of(T_BOOL)), INT65(0));
}

TEST(Folding, ArithmeticAsTheTargetComputesIt) {
    for (const ARITH& row : arith) {
        TYPE* t = type_of(row.type);
        NODE* folded = fold_constants(node(row.op, icon(row.a, t), icon(row.b, t), t));
        ASSERT_EQ(folded->op, ICON)
            << node_operator_name[row.op] << " " << row.a << " " << row.b << " in " << t->print();
        EXPECT_EQ(folded->value, ref(row.result, t))
            << node_operator_name[row.op] << " " << row.a << " " << row.b << " in " << t->print();
        EXPECT_EQ(folded->type, t);
        erase_tree(folded);
    }
}

TEST(Folding, ShiftsFoldOnlyWhereTheTargetAgrees) {
    int folded_count = 0;
    for (const SHIFT& row : shifts) {
        TYPE* t = type_of(row.type);
        NODE* folded = fold_constants(node(row.op, icon(row.a, t), icon(row.count, int_type()), t));
        // The register shift uses the count's low byte: 0 to 255 must fold,
        // and any other count may only fold to what the target gives.
        if (row.count >= 0 && row.count <= 255) {
            EXPECT_EQ(folded->op, ICON) << row.a << " by " << row.count;
        }
        if (folded->op == ICON) {
            folded_count++;
            EXPECT_EQ(folded->value, ref(row.result, t))
                << node_operator_name[row.op] << " " << row.a << " by " << row.count << " in "
                << t->print();
        } else {
            EXPECT_EQ(folded->op, row.op);
            EXPECT_EQ(count_nodes_in_tree(folded), 3);
        }
        erase_tree(folded);
    }
    EXPECT_GT(folded_count, 0);
    // 1 << 40 in a 32-bit int.
    NODE* big = fold_constants(node(SLL, icon(1, int_type()), icon(40, int_type()), int_type()));
    ASSERT_EQ(big->op, ICON);
    EXPECT_EQ(big->value, INT65(0));
    erase_tree(big);
}

TEST(Folding, ConversionsBetweenEveryIntegerType) {
    for (const CAST& row : casts) {
        TYPE* from = type_of(row.from);
        TYPE* to = type_of(row.to);
        NODE* folded = simp_tree(conv(to, icon(row.value, from)), nullptr, nullptr);
        ASSERT_EQ(folded->op, ICON) << from->print() << " to " << to->print();
        EXPECT_EQ(folded->value, ref(row.result, to))
            << row.value << " from " << from->print() << " to " << to->print();
        EXPECT_EQ(folded->type, to->normalized());
        erase_tree(folded);
    }
}

TEST(Folding, UnaryOperatorsWrapAsRegistersDo) {
    TYPE* i = int_type();
    TYPE* u = type_of(T_UINT);
    struct {
        int op;
        NODE* operand;
        TYPE* type;
        INT65 expected;
    } cases[] = {
        {UMINUS, icon(INT_MIN, i), i, INT65(INT_MIN)},
        {UMINUS, icon(1, u), u, INT65::from_unsigned(0xffffffff)},
        {ABS, icon(INT_MIN, i), i, INT65(INT_MIN)},
        {ABS, icon(-5, i), i, INT65(5)},
        {NOTB, icon(0, u), u, INT65::from_unsigned(0xffffffff)},
        {NOTB, icon(0, type_of(T_LLONG)), type_of(T_LLONG), INT65(-1)},
        {EXCLAIM, icon(0, type_of(T_LLONG)), i, INT65(1)},
        {EXCLAIM, icon(LLONG_MIN, type_of(T_LLONG)), i, INT65(0)},
    };
    for (auto& c : cases) {
        NODE* folded = fold_constants(node(c.op, c.operand, nullptr, c.type));
        ASSERT_EQ(folded->op, ICON) << node_operator_name[c.op];
        EXPECT_EQ(folded->value, c.expected) << node_operator_name[c.op];
        erase_tree(folded);
    }
}

TEST(Folding, RelationsCompareAsTheOperatorSays) {
    TYPE* i = int_type();
    TYPE* u = type_of(T_UINT);
    struct {
        int op;
        NODE *l, *r;
        int expected;
    } cases[] = {
        {LT, icon(-1, i), icon(1, i), 1},
        {GE, icon(INT_MIN, i), icon(INT_MAX, i), 0},
        {ULT, icon(0xffffffff, u), icon(1, u), 0},
        {UGT, icon(0x80000000, u), icon(0x7fffffff, u), 1},
        {EQ, icon(-1, i), icon(-1, i), 1},
        {NEQ, icon(LLONG_MIN, type_of(T_LLONG)), icon(0, type_of(T_LLONG)), 1},
        {LE, icon(-1, type_of(T_LLONG)), icon(0, type_of(T_LLONG)), 1},
    };
    for (auto& c : cases) {
        NODE* folded = fold_constants(node(c.op, c.l, c.r, i));
        ASSERT_EQ(folded->op, ICON) << node_operator_name[c.op];
        EXPECT_EQ(folded->value, INT65(c.expected)) << node_operator_name[c.op];
        EXPECT_EQ(folded->type, i);
        erase_tree(folded);
    }
    // Where the operator and the operands' type read the bits differently,
    // nothing says which reading the code generator takes: any fold must
    // agree with both.
    NODE* mixed = fold_constants(node(LT, icon(0xffffffff, u), icon(1, u), i));
    if (mixed->op == ICON)
        ADD_FAILURE() << "LT of unsigned operands folded to " << mixed->value.low;
    erase_tree(mixed);
}

TEST(Folding, WhatIsNotCertainStays) {
    TYPE* i = int_type();
    for (int op : {DIV, MOD}) {
        NODE* by_zero = fold_constants(node(op, icon(7, i), icon(0, i), i));
        EXPECT_EQ(by_zero->op, op);
        EXPECT_EQ(by_zero->right->value, INT65(0));
        erase_tree(by_zero);
    }
    // A read through a constant address is no arithmetic.
    NODE* read = fold_constants(node(UMULT, icon(0x1000, type_of(T_UINT)), nullptr, i));
    EXPECT_EQ(read->op, UMULT);
    erase_tree(read);
    // 1 + 1 is no value of _Bool.
    TYPE* b = type_of(T_BOOL);
    NODE* sum = fold_constants(node(PLUS, icon(1, b), icon(1, b), b));
    EXPECT_NE(sum->op, ICON);
    erase_tree(sum);
    // A long long dividend in an int division: its high bits matter.
    NODE* wide = fold_constants(
        node(DIV, icon(0x100000000ll, type_of(T_LLONG)), icon(2, type_of(T_LLONG)), i));
    EXPECT_TRUE(wide->op == DIV || wide->value == INT65(INT_MIN));
    erase_tree(wide);
}

TEST(Folding, TwoLevelsBelowAreFolded) {
    TYPE* i = int_type();
    // (2 + 3) * (10 - 4) built without simplifying the inner nodes.
    NODE* t = node(MULT, node(PLUS, icon(2, i), icon(3, i), i),
                   node(MINUS, icon(10, i), icon(4, i), i), i);
    t = fold_constants(t);
    ASSERT_EQ(t->op, ICON);
    EXPECT_EQ(t->value, INT65(30));
    erase_tree(t);
}

TEST(SimpTree, FoldsBottomUpAndKeepsEffects) {
    TYPE* i = int_type();
    SYMTAB* f = symbol("f", i);
    SYMTAB* v = symbol("v", tp->mk_qual(i, TQ_VOLATILE));
    NODE* call = node(UCALL, node(UAND, name(f), nullptr, tp->mk_ptr(i)), nullptr, i);
    // f() + ((1 + 2) * 3): the constant part folds, the call stays.
    NODE* t = node(PLUS, call, node(MULT, node(PLUS, icon(1, i), icon(2, i), i), icon(3, i), i), i);
    t = simp_tree(t, nullptr, nullptr);
    ASSERT_EQ(t->op, PLUS);
    EXPECT_EQ(t->left->op, UCALL);
    ASSERT_EQ(t->right->op, ICON);
    EXPECT_EQ(t->right->value, INT65(9));
    erase_tree(t);
    // v * 0 keeps the volatile read.
    NODE* read = simp_tree(node(MULT, name(v), icon(0, i), i), nullptr, nullptr);
    EXPECT_TRUE(sym_appears_in_tree(v, read));
    erase_tree(read);
    // A whole constant statement value becomes one new root.
    NODE* root = simp_tree(conv(type_of(T_SHORT), node(MINUS, icon(0, i), icon(0x18000, i), i)),
                           nullptr, nullptr);
    ASSERT_EQ(root->op, ICON);
    EXPECT_EQ(root->value, INT65(0x8000 - 0x10000));
    erase_tree(root);
}

TEST(SimpTreeDeathTest, SharedCseTreesAreRefused) {
    NODE* t = node(CSE_DUPE, nullptr, icon(1, int_type()), int_type());
    EXPECT_EXIT(simp_tree(t, nullptr, nullptr), ::testing::ExitedWithCode(1),
                "Bad opcode in simplifier");
    erase_tree(t->right);
    t->right = nullptr;
    erase_tree(t);
}

TEST(Conversions, NestedConversionsGoOnlyWhenTheValueStays) {
    TYPE* c = type_of(T_CHAR);
    TYPE* i = int_type();
    SYMTAB* x = symbol("x", i);
    SYMTAB* cc = symbol("c", c);
    // (int)(char)x truncates: it stays.
    NODE* keep = simp_tree(conv(i, conv(c, name(x))), nullptr, nullptr);
    EXPECT_EQ(count_nodes_in_tree(keep), 3);
    erase_tree(keep);
    // (char)(int)c is c.
    NODE* gone = simp_tree(conv(c, conv(i, name(cc))), nullptr, nullptr);
    EXPECT_EQ(gone->op, NAME);
    erase_tree(gone);

    // Every combination of three integer types: whatever the simplifier
    // removes, the value of (t)(m)y must stay.
    int removed = 0;
    for (TID y : all_types) {
        SYMTAB* sy = symbol("y", type_of(y));
        for (TID m : all_types)
            for (TID t : all_types) {
                NODE* tree = conv(type_of(t), conv(type_of(m), name(sy)));
                NODE* s = nullptr;
                expect_same_values(tree, sy, nullptr, &s);
                removed += count_nodes_in_tree(s) < 3;
                erase_tree(s);
                erase_tree(tree);
            }
    }
    EXPECT_GT(removed, 300);
}

TEST(Conversions, NarrowingMovesIntoOperandsWhereLowBitsAllow) {
    TYPE* i = int_type();
    TYPE* s = type_of(T_SHORT);
    SYMTAB* a = symbol("a", i);
    SYMTAB* b = symbol("b", i);
    // (short)(a + b) is a short addition of narrowed operands.
    NODE* sum = simp_tree(conv(s, node(PLUS, name(a), name(b), i)), nullptr, nullptr);
    ASSERT_EQ(sum->op, PLUS);
    EXPECT_EQ(sum->type, s);
    EXPECT_EQ(sum->left->op, SCONV);
    EXPECT_EQ(sum->left->type, s);
    erase_tree(sum);
    // (short)(a / b) is not: the quotient's low bits need the high ones.
    NODE* quotient = simp_tree(conv(s, node(DIV, name(a), name(b), i)), nullptr, nullptr);
    EXPECT_EQ(quotient->op, SCONV);
    EXPECT_EQ(quotient->left->op, DIV);
    erase_tree(quotient);
    // (_Bool)(a + b) tests the whole sum.
    NODE* test =
        simp_tree(conv(type_of(T_BOOL), node(PLUS, name(a), name(b), i)), nullptr, nullptr);
    EXPECT_EQ(test->op, SCONV);
    erase_tree(test);

    // Every operator in every narrower type, evaluated before and after.
    for (TID wide : {T_INT, T_UINT, T_LLONG, T_ULLONG}) {
        TYPE* w = type_of(wide);
        SYMTAB* p = symbol("p", w);
        SYMTAB* q = symbol("q", w);
        for (TID narrow : all_types) {
            TYPE* n = type_of(narrow);
            if (n->size() >= w->size())
                continue;
            for (int op : {PLUS, MINUS, MULT, ANDB, ORB, XORB, SLL, SRL, DIV, MOD}) {
                NODE* right = op == SLL || op == SRL ? icon(3, i) : name(q);
                if (op == DIV || op == MOD)
                    right = node(ORB, right, icon(1, w), w); // never 0
                NODE* tree = conv(n, node(op, name(p), right, w));
                expect_same_values(tree, p, q);
                erase_tree(tree);
            }
            for (int op : {UMINUS, NOTB}) {
                NODE* tree = conv(n, node(op, name(p), nullptr, w));
                expect_same_values(tree, p, nullptr);
                erase_tree(tree);
            }
            // A narrowing whose value always fits goes away; but a 64-bit
            // value stays narrowed, as an argument it would take two registers.
            NODE* masked = conv(n, node(ANDB, name(p), icon(narrow == T_BOOL ? 1 : 0x7f, w), w));
            NODE* simplified = nullptr;
            expect_same_values(masked, p, nullptr, &simplified);
            if (narrow == T_BOOL && w->size() > 32) {
                EXPECT_EQ(simplified->op, SCONV);
            } else {
                EXPECT_EQ(simplified->op, ANDB) << n->print();
                EXPECT_LE(simplified->type->size(), 32u) << n->print();
            }
            erase_tree(simplified);
            erase_tree(masked);
        }
    }
}

TEST(Conversions, SequencesChoicesAndPointers) {
    TYPE* i = int_type();
    TYPE* c = type_of(T_SCHAR);
    SYMTAB* x = symbol("x", i);
    SYMTAB* y = symbol("y", i);
    // (schar)(f(), 300) is (f(), 44); (schar)(x, 300) is 44.
    NODE* seq = simp_tree(conv(c, node(COMMAOP, node(ASG, name(y), name(x), i), icon(300, i), i)),
                          nullptr, nullptr);
    ASSERT_EQ(seq->op, COMMAOP);
    ASSERT_EQ(seq->right->op, ICON);
    EXPECT_EQ(seq->right->value, INT65(44));
    EXPECT_EQ(seq->type, c->normalized());
    erase_tree(seq);
    NODE* pure = simp_tree(conv(c, node(COMMAOP, name(x), icon(300, i), i)), nullptr, nullptr);
    ASSERT_EQ(pure->op, ICON);
    EXPECT_EQ(pure->value, INT65(44));
    erase_tree(pure);
    // (schar)(x ? 200 : y): the conversion goes into both arms.
    NODE* choice = conv(c, node(QUEST, name(x), node(COLON, icon(200, i), name(y), i), i));
    NODE* simplified = nullptr;
    expect_same_values(choice, x, y, &simplified);
    ASSERT_EQ(simplified->op, QUEST);
    EXPECT_EQ(simplified->type, c->normalized());
    EXPECT_EQ(simplified->right->left->op, ICON);
    EXPECT_EQ(simplified->right->left->value, INT65(-56));
    erase_tree(simplified);
    erase_tree(choice);

    // Pointer offsets are bytes: (int*)(p + 4) is ((int*)p) + 4, and the
    // push-down of a conversion is undone by remove_pushed_down_casts.
    TYPE* pc = tp->mk_ptr(type_of(T_CHAR));
    TYPE* pi = tp->mk_ptr(i);
    SYMTAB* p = symbol("p", pc);
    NODE* moved =
        simp_tree(maketree(PCONV, node(PLUS, name(p), icon(4, i), pc), nullptr, pi, nullptr),
                  nullptr, nullptr);
    ASSERT_EQ(moved->op, PLUS);
    EXPECT_EQ(moved->type, pi);
    EXPECT_EQ(moved->left->op, PCONV);
    moved = remove_pushed_down_casts(moved);
    ASSERT_EQ(moved->op, PCONV);
    EXPECT_EQ(moved->left->op, PLUS);
    EXPECT_EQ(moved->left->type, pc);
    erase_tree(moved);
    // A pointer converted to its own type loses the conversion.
    SYMTAB* r = symbol("r", pi);
    NODE* same = simp_tree(maketree(PCONV, name(r), nullptr, pi, nullptr), nullptr, nullptr);
    EXPECT_EQ(same->op, NAME);
    erase_tree(same);
    // The array *q decays to q.
    TYPE* arr = tp->mk_array(i, false, 4);
    SYMTAB* q = symbol("q", tp->mk_ptr(arr));
    NODE* decay =
        simp_tree(maketree(ACONV, node(UMULT, name(q), nullptr, arr), nullptr, pi, nullptr),
                  nullptr, nullptr);
    ASSERT_EQ(decay->op, PCONV);
    EXPECT_EQ(decay->left->op, NAME);
    erase_tree(decay);
}

TEST(Conversions, CoercionTakesTheLeastMeans) {
    TYPE* i = int_type();
    SYMTAB* x = symbol("x", i);
    NODE* same = name(x);
    EXPECT_EQ(coerce_to_type(i, same), same);
    erase_tree(same);
    NODE* constant = coerce_to_type(type_of(T_UCHAR), icon(-1, i));
    ASSERT_EQ(constant->op, ICON);
    EXPECT_EQ(constant->value, INT65(255));
    erase_tree(constant);
    NODE* widened = coerce_to_type(type_of(T_LLONG), name(x));
    EXPECT_EQ(widened->op, SCONV);
    erase_tree(widened);
    NODE* pointer = coerce_to_type(tp->mk_ptr(i), name(x));
    EXPECT_EQ(pointer->op, PCONV);
    erase_tree(pointer);
}

TEST(Conversions, ValuesThatFit) {
    TYPE* i = int_type();
    SYMTAB* x = symbol("x", i);
    SYMTAB* uc = symbol("uc", type_of(T_UCHAR));
    NODE* masked = node(ANDB, name(x), icon(0xff, i), i);
    EXPECT_TRUE(value_fits_in_type(masked, type_of(T_UCHAR), nullptr, nullptr));
    EXPECT_FALSE(value_fits_in_type(masked, type_of(T_SCHAR), nullptr, nullptr));
    EXPECT_FALSE(value_fits_in_type(masked, type_of(T_BOOL), nullptr, nullptr));
    erase_tree(masked);
    NODE* test = node(LT, name(x), icon(3, i), i);
    EXPECT_TRUE(value_fits_in_type(test, type_of(T_BOOL), nullptr, nullptr));
    erase_tree(test);
    NODE* widened = conv(i, name(uc));
    EXPECT_TRUE(value_fits_in_type(widened, type_of(T_USHORT), nullptr, nullptr));
    EXPECT_FALSE(value_fits_in_type(widened, type_of(T_SCHAR), nullptr, nullptr));
    erase_tree(widened);
    NODE* plain = name(x);
    EXPECT_FALSE(value_fits_in_type(plain, type_of(T_SHORT), nullptr, nullptr));
    EXPECT_FALSE(value_fits_in_type(plain, tp->mk_fltpt(TYPE::fk_float), nullptr, nullptr));
    erase_tree(plain);
}

TEST(MandatoryCasts, OperandsTakeTheOperatorsType) {
    TYPE* i = int_type();
    TYPE* c = type_of(T_CHAR);
    SYMTAB* x = symbol("x", i);
    SYMTAB* ch = symbol("ch", c);
    // ch = (char)(x & 0x7f): the simplifier drops the conversion, since the
    // value fits; before writing it comes back, and the value is the same.
    NODE* stmt = mk_ASG(name(ch), conv(c, node(ANDB, name(x), icon(0x7f, i), i)));
    stmt = simp_tree(stmt, nullptr, nullptr);
    EXPECT_EQ(stmt->right->op, ANDB);
    stmt = insert_mandatory_casts(stmt);
    ASSERT_EQ(stmt->right->op, SCONV);
    EXPECT_EQ(stmt->right->type, c);
    erase_tree(stmt);
    // An int sum of a char: the char is widened; a constant is retyped.
    NODE* sum = insert_mandatory_casts(node(PLUS, name(ch), icon(1, c), i));
    EXPECT_EQ(sum->left->op, SCONV);
    EXPECT_EQ(sum->left->type, i);
    EXPECT_EQ(sum->right->op, ICON);
    EXPECT_EQ(sum->right->type, i);
    erase_tree(sum);
    // A relation of an int and a char widens the char.
    NODE* rel = insert_mandatory_casts(node(LT, name(x), name(ch), i));
    EXPECT_EQ(rel->left->op, NAME);
    EXPECT_EQ(rel->right->op, SCONV);
    erase_tree(rel);
    // Pointer arithmetic keeps its integer offset.
    SYMTAB* p = symbol("p", tp->mk_ptr(c));
    NODE* offset = insert_mandatory_casts(node(PLUS, name(p), name(ch), p->type));
    EXPECT_EQ(offset->right->op, NAME);
    erase_tree(offset);
    // A constant to _Bool is a test against zero.
    SYMTAB* flag = symbol("flag", type_of(T_BOOL));
    NODE* set = insert_mandatory_casts(mk_ASG(name(flag), icon(256, i)));
    EXPECT_EQ(set->right->value, INT65(1));
    erase_tree(set);
}

TEST(PeelForEffect, OnlyWhatMustRunIsLeft) {
    TYPE* i = int_type();
    SYMTAB* f = symbol("f", i);
    SYMTAB* x = symbol("x", i);
    SYMTAB* a = symbol("a", i);
    SYMTAB* b = symbol("b", i);
    SYMTAB* v = symbol("v", tp->mk_qual(i, TQ_VOLATILE));
    const auto call = [&] {
        return node(UCALL, node(UAND, name(f), nullptr, tp->mk_ptr(i)), nullptr, i);
    };
    // x + f() leaves f().
    NODE* rest = peel_for_effect(node(PLUS, name(x), call(), i));
    ASSERT_NE(rest, nullptr);
    EXPECT_EQ(rest->op, UCALL);
    erase_tree(rest);
    // a && b with both pure leaves nothing; with an effect on the right the
    // test stays, since that effect happens only for one value of a.
    EXPECT_EQ(peel_for_effect(node(ANDAND, name(a), name(b), i)), nullptr);
    rest = peel_for_effect(node(OROR, name(a), call(), i));
    ASSERT_NE(rest, nullptr);
    EXPECT_EQ(rest->op, OROR);
    erase_tree(rest);
    // a || (int)(u, x) with u a volatile union: the read of u stays, and the
    // right side of || stays a test (found by a csmith program).
    TYPE* un = tp->mk_qual(tp->mk_struct("U"), TQ_VOLATILE);
    SYMTAB* u = symbol("u", un);
    rest = peel_for_effect(node(OROR, name(a), conv(i, node(COMMAOP, name(u), name(x), i)), i));
    ASSERT_NE(rest, nullptr);
    ASSERT_EQ(rest->op, OROR);
    ASSERT_NE(rest->right->type, nullptr);
    EXPECT_TRUE(rest->right->type->is_scalar());
    EXPECT_TRUE(sym_appears_in_tree(u, rest->right));
    erase_tree(rest);
    // A volatile read is an effect.
    rest = peel_for_effect(node(MULT, name(v), icon(2, i), i));
    ASSERT_NE(rest, nullptr);
    EXPECT_EQ(rest->op, NAME);
    erase_tree(rest);
    // x = x does nothing; x = 1 does.
    EXPECT_EQ(peel_for_effect(mk_ASG(name(x), name(x))), nullptr);
    rest = peel_for_effect(mk_ASG(name(x), icon(1, i)));
    ASSERT_NE(rest, nullptr);
    EXPECT_EQ(rest->op, ASG);
    erase_tree(rest);
    // v = v reads and writes a volatile: it stays.
    rest = peel_for_effect(mk_ASG(name(v), name(v)));
    ASSERT_NE(rest, nullptr);
    erase_tree(rest);
    // x++ for effect is x += 1.
    rest = peel_for_effect(node(PLUSPLUS, name(x), icon(1, i), i));
    ASSERT_NE(rest, nullptr);
    EXPECT_EQ(rest->op, PLUSASG);
    erase_tree(rest);
    // (f(), x) ? 1 : 2 leaves f().
    rest = peel_for_effect(
        node(QUEST, node(COMMAOP, call(), name(x), i), node(COLON, icon(1, i), icon(2, i), i), i));
    ASSERT_NE(rest, nullptr);
    EXPECT_EQ(rest->op, UCALL);
    erase_tree(rest);
}

TEST(Folding, ValuesOfZeroOrOne) {
    TYPE* i = int_type();
    SYMTAB* x = symbol("x", i);
    SYMTAB* flag = symbol("flag", type_of(T_BOOL));
    NODE* yes[] = {
        node(LT, name(x), icon(1, i), i),
        node(ANDB, name(x), icon(1, i), i),
        icon(1, i),
        name(flag),
        conv(type_of(T_LLONG), node(EXCLAIM, name(x), nullptr, i)),
        node(QUEST, name(x), node(COLON, icon(0, i), node(EQ, name(x), icon(3, i), i), i), i),
    };
    for (NODE* t : yes) {
        EXPECT_TRUE(returns_1_or_0(t)) << node_operator_name[t->op];
        erase_tree(t);
    }
    NODE* no[] = {
        node(ANDB, name(x), icon(2, i), i),
        icon(2, i),
        name(x),
        node(QUEST, name(x), node(COLON, icon(0, i), icon(-1, i), i), i),
    };
    for (NODE* t : no) {
        EXPECT_FALSE(returns_1_or_0(t)) << node_operator_name[t->op];
        erase_tree(t);
    }
}
