// Constant folding with the target's word widths, and the small queries of
// the simplifier that the folding shares: what must still run of a tree whose
// value is not needed, whether a value is 0 or 1.
//
// Integer results are those of the 32-bit ARM target: int and long are 32
// bits, long long 64, signed arithmetic wraps as the registers do, and a
// register shift uses the low byte of its count. Where the target's result
// is not certain the node is left as it is.
#include <cstdint>

#include "ir/ir.h"
#include "ir/node.h"
#include "ir/symtab.h"
#include "ir/types.h"
#include "simplify/fold.h"
#include "simplify/simplify.h"

namespace {

uint64_t low_bits(unsigned size) { return size >= 64 ? ~uint64_t(0) : (uint64_t(1) << size) - 1; }

int64_t sign_extend(uint64_t bits, unsigned size) {
    if (size >= 64)
        return static_cast<int64_t>(bits);
    const uint64_t sign = uint64_t(1) << (size - 1);
    bits &= low_bits(size);
    return static_cast<int64_t>((bits ^ sign) - sign);
}

bool is_int_type(const TYPE* t) { return t && TYPE_IS_INT(t); }

// C's _Bool: a conversion to it tests against zero rather than truncating.
bool is_bool_type(const TYPE* t) { return t && t->is_bool(); }

// An integer constant's value as a number of its own type.
INT65 icon_value(const NODE* c) {
    return is_int_type(c->type) ? truncate_to_type(c->value, c->type) : c->value;
}

// The width the target computes an integer type in, 0 when it has none.
unsigned int_width(const TYPE* t) {
    if (!t)
        return 0;
    const uint64_t size = t->size();
    return size == 0 || size > 64 ? 0 : static_cast<unsigned>(size);
}

// A node's constant result replaces it; the old tree goes.
NODE* replace_by_icon(NODE* t, INT65 value, TYPE* type) {
    NODE* c = mk_ICON(value, type);
    c->scope = t->scope;
    erase_tree(t);
    return c;
}

bool is_constant(const NODE* t) { return t && (t->op == ICON || t->op == FCON); }

bool is_relation(int op) { return op >= EQ && op <= UGT; }

// Operators that compute a value from their operands and nothing else: an
// access through a constant address, for one, is no candidate.
bool op_is_foldable(int op) {
    switch (op) {
    case PLUS:
    case MINUS:
    case MULT:
    case DIV:
    case MOD:
    case ANDB:
    case ORB:
    case XORB:
    case SLL:
    case SRL:
    case UMINUS:
    case NOTB:
    case ABS:
    case EXCLAIM:
    case ANDAND:
    case OROR:
    case SCONV:
    // The floating point side has these besides.
    case SQRT:
    case SQR:
    case RECIP:
    case EXPT:
    case COMPLEX:
    case REAL:
    case IMAG:
        return true;
    default:
        return is_relation(op);
    }
}

// The value of a relation of two integer constants, or -1 when it is not
// certain: the operands must have one width, and where the operator's sign
// and the operands' types read the bits differently, the reading the code
// generator uses is not known.
int fold_relation(int op, const NODE* l, const NODE* r) {
    const unsigned n = int_width(l->type);
    if (!is_int_type(l->type) || !is_int_type(r->type) || n == 0 || int_width(r->type) != n)
        return -1;
    const uint64_t a = l->value.bits() & low_bits(n);
    const uint64_t b = r->value.bits() & low_bits(n);
    const auto compare = [&](bool as_signed) {
        const int64_t sa = sign_extend(a, n), sb = sign_extend(b, n);
        switch (op) {
        case EQ:
            return a == b;
        case NEQ:
            return a != b;
        case LT:
        case ULT:
            return as_signed ? sa < sb : a < b;
        case LE:
        case ULE:
            return as_signed ? sa <= sb : a <= b;
        case GT:
        case UGT:
            return as_signed ? sa > sb : a > b;
        default:
            return as_signed ? sa >= sb : a >= b;
        }
    };
    const bool by_operator = compare(op < ULE);
    const bool by_type = compare(l->type->is_signed() && r->type->is_signed());
    return by_operator == by_type ? by_operator : -1;
}

// The integer operators. Operands are C-converted to the node's type, the
// result is what the node's width holds.
NODE* fold_integer_node(NODE* t) {
    TYPE* type = t->type;
    NODE* l = t->left;
    NODE* r = t->right;
    if (l->op != ICON || (r && r->op != ICON))
        return t;
    if (is_relation(t->op)) {
        const int result = fold_relation(t->op, l, r);
        return result < 0 || !is_int_type(type) ? t : replace_by_icon(t, INT65(result), type);
    }
    // A pointer result would lose its type in an ICON.
    const unsigned n = int_width(type);
    if (!is_int_type(type) || n == 0)
        return t;
    const bool is_signed = type->is_signed();
    const uint64_t mask = low_bits(n);
    const auto in_type = [&](const NODE* c) {
        return truncate_to_type(icon_value(c), type).bits() & mask;
    };
    // Operators whose result depends on bits above the node's width would
    // need an operand no wider than the node.
    const auto fits_width = [&](const NODE* c) { return int_width(c->type) <= n; };
    const uint64_t a = in_type(l);
    const uint64_t b = r ? in_type(r) : 0;
    uint64_t result;
    switch (t->op) {
    case PLUS:
        result = a + b;
        break;
    case MINUS:
        result = a - b;
        break;
    case MULT:
        result = a * b;
        break;
    case ANDB:
        result = a & b;
        break;
    case ORB:
        result = a | b;
        break;
    case XORB:
        result = a ^ b;
        break;
    case DIV:
    case MOD:
        if (b == 0 || !fits_width(l) || !fits_width(r))
            return t;
        if (is_signed) {
            const int64_t sa = sign_extend(a, n), sb = sign_extend(b, n);
            // The most negative value by -1: the division routines give the
            // dividend back and a zero remainder, which is also the wrapped
            // negation. Dividing in int64_t would overflow only at 64 bits.
            if (sb == -1)
                result = t->op == DIV ? 0 - a : 0;
            else
                result = static_cast<uint64_t>(t->op == DIV ? sa / sb : sa % sb);
        } else {
            result = t->op == DIV ? a / b : a % b;
        }
        break;
    case SLL:
    case SRL: {
        if (!is_int_type(r->type) || (t->op == SRL && !fits_width(l)))
            return t;
        // The register shift reads the count's low byte, so 256 shifts by 0
        // and -1 by 255. Only counts that mean the same on the target and
        // here are folded.
        const INT65 count = icon_value(r);
        if (count < INT65(0) || count > INT65(255))
            return t;
        const unsigned c = count.low;
        if (t->op == SLL)
            result = c >= n ? 0 : a << c;
        else if (is_signed)
            result = static_cast<uint64_t>(sign_extend(a, n) >> (c >= n ? n - 1 : c));
        else
            result = c >= n ? 0 : a >> c;
        break;
    }
    case UMINUS:
        result = 0 - a;
        break;
    case NOTB:
        result = ~a;
        break;
    case ABS:
        result = is_signed && sign_extend(a, n) < 0 ? 0 - a : a;
        break;
    case EXCLAIM:
        result = icon_value(l).is_zero();
        break;
    case ANDAND:
        result = !icon_value(l).is_zero() && !icon_value(r).is_zero();
        break;
    case OROR:
        result = !icon_value(l).is_zero() || !icon_value(r).is_zero();
        break;
    case SCONV:
        return replace_by_icon(t, convert_integer_constant(icon_value(l), type), type);
    default:
        return t;
    }
    result &= mask;
    // Arithmetic in _Bool is no truncation; only a 0 or 1 is certain.
    if (is_bool_type(type) && result > 1)
        return t;
    return replace_by_icon(t, INT65::from_unsigned(result), type);
}

NODE* fold_level(NODE* t, int depth) {
    if (!t || !t->left || !op_is_foldable(t->op))
        return t;
    // The two levels below are folded first, for callers that build a nest
    // of constants without simplifying each node.
    if (depth > 0) {
        if (!is_constant(t->left))
            t->left = fold_level(t->left, depth - 1);
        if (t->right && !is_constant(t->right))
            t->right = fold_level(t->right, depth - 1);
    }
    if (!is_constant(t->left) || (t->right && !is_constant(t->right)))
        return t;
    if (type_is_float(t->type) || t->left->op == FCON || (t->right && t->right->op == FCON))
        return fold_float_node(t);
    return fold_integer_node(t);
}

} // namespace

INT65 sign_extend_by_type_size(INT65 v, const TYPE* t) {
    const unsigned n = int_width(t);
    return n ? INT65(static_cast<long long>(sign_extend(v.bits(), n))) : v;
}

INT65 sign_extend_by_type(INT65 v, const TYPE* t) {
    // On this target a pointer is no wider than long, so the pointer's own
    // size is the size of the signed type it is read as.
    return sign_extend_by_type_size(v, t);
}

INT65 convert_integer_constant(INT65 v, const TYPE* t) {
    if (is_bool_type(t))
        return INT65(v.is_zero() ? 0 : 1);
    return truncate_to_type(v, t);
}

NODE* fold_constants(NODE* t) { return fold_level(t, 2); }

bool returns_1_or_0(const NODE* t) {
    if (!t)
        return false;
    switch (t->op) {
    case ICON: {
        const INT65 v = icon_value(t);
        return v == INT65(0) || v == INT65(1);
    }
    case ANDB:
        if ((t->right && t->right->op == ICON && icon_value(t->right) == INT65(1)) ||
            (t->left && t->left->op == ICON && icon_value(t->left) == INT65(1)))
            return true;
        // b & x is b or 0 for b of 0 or 1.
        return returns_1_or_0(t->left) || returns_1_or_0(t->right);
    case SCONV:
        return is_int_type(t->type) && returns_1_or_0(t->left);
    case QUEST:
        return t->right && t->right->op == COLON && returns_1_or_0(t->right->left) &&
               returns_1_or_0(t->right->right);
    case COMMAOP:
        return returns_1_or_0(t->right);
    default:
        break;
    }
    if (boolean_result[t->op])
        return true;
    return t->type && t->type->is_integral() && (t->type->is_bool() || t->type->resolved->boolean);
}

// Only ever adds the volatile qualifier that the symbol or the pointed-to
// type carries, so that a volatile access is seen as one wherever it stands.
NODE* fix_type_info(NODE* t) {
    if (!t || !t->type)
        return t;
    bool is_volatile = false;
    if (t->op == NAME && t->name_symbol())
        is_volatile = symbol_is_volatile(t->name_symbol());
    else if (t->op == UMULT && t->left && t->left->type && t->left->type->is_pointer())
        is_volatile = type_is_volatile(t->left->type->type_pointed_to());
    if (is_volatile && !type_is_volatile(t->type))
        t->type = tp->mk_qual(t->type, TQ_VOLATILE);
    return t;
}

bool tree_is_bit_field(const NODE* t) {
    if (!t)
        return false;
    if ((t->op == STDOT || t->op == STREF) && t->right && t->right->op == FIELD)
        t = t->right;
    return t->op == FIELD && t->field_mval() && t->field_mval()->is_bitfield;
}

namespace {

NODE* join_effects(NODE* a, NODE* b) {
    if (!a)
        return b;
    if (!b)
        return a;
    return mk_COMMAOP(a, b);
}

// An access whose read is itself an effect.
bool is_volatile_access(const NODE* t) {
    switch (t->op) {
    case NAME:
    case UMULT:
    case STDOT:
    case STREF:
        return type_is_volatile(t->type) ||
               (t->op == NAME && t->name_symbol() && symbol_is_volatile(t->name_symbol()));
    default:
        return false;
    }
}

} // namespace

NODE* peel_for_effect(NODE* t) {
    if (!t)
        return nullptr;
    switch (t->op) {
    case PLUSPLUS:
    case MINMIN:
        // The old value is not wanted: the plain update does the same, in
        // the form the simplifier gives it.
        t->op = t->op == PLUSPLUS ? PLUSASG : MINUSASG;
        return simp_node(t, nullptr, nullptr);
    case ASG:
        // x = x only reads and writes back what is there.
        if (t->left && t->right && !tree_is_arg_prolog(t) &&
            trees_are_congruent(t->left, t->right, 0) && !tree_has_side_effects(t->left)) {
            NODE* rest = join_effects(peel_for_effect(t->left), peel_for_effect(t->right));
            t->left = t->right = nullptr;
            erase_node(t);
            return rest;
        }
        return t;
    case COMMAOP: {
        NODE* rest = join_effects(peel_for_effect(t->left), peel_for_effect(t->right));
        t->left = t->right = nullptr;
        erase_node(t);
        return rest;
    }
    case ANDAND:
    case OROR:
        // The right side runs only for one value of the left: what it does
        // keeps the whole test. Otherwise only the left side is left.
        t->right = peel_for_effect(t->right);
        if (t->right) {
            // What is left must still be a test: the volatile read of a
            // struct or union, say, is followed by a 0.
            if (!t->right->type || !t->right->type->is_scalar())
                t->right = mk_COMMAOP(t->right, mk_ICON(INT65(0), tp->mk_int(TYPE::ik_int)));
            return t;
        }
        {
            NODE* left = t->left;
            t->left = nullptr;
            erase_node(t);
            return peel_for_effect(left);
        }
    case QUEST:
        if (t->right && t->right->op == COLON &&
            (tree_has_side_effects(t->right->left) || tree_has_side_effects(t->right->right)))
            return t;
        {
            NODE* cond = t->left;
            t->left = nullptr;
            erase_tree(t);
            return peel_for_effect(cond);
        }
    case SSA_MU:
        return t;
    default:
        break;
    }
    if (side_effects[t->op] != SE_NONE || is_volatile_access(t))
        return t;
    NODE* rest = join_effects(peel_for_effect(t->left), peel_for_effect(t->right));
    t->left = t->right = nullptr;
    erase_node(t);
    return rest;
}
