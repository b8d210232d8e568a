// Rewrites of ANDB, ORB and XORB, and masks pushed into their operands.
//
// Masks are worked on as the 64-bit pattern of the node's type: a bit of a
// constant means what it means in the operation, whatever the constant's own
// type. An operand narrower or wider than its operator is converted to the
// operator's type (the code generator gets that conversion spelled out by
// insert_mandatory_casts), which is what lets a conversion under a mask go.
#include <algorithm>
#include <bit>
#include <cstdint>
#include <utility>

#include "ir/ir.h"
#include "ir/node.h"
#include "ir/types.h"
#include "simplify/simp_internal.h"
#include "support/intmath.h"

namespace {

// An integer or enum of at most 64 bits that is no _Bool: a conversion to
// _Bool tests against zero, so no mask reasoning holds across one.
bool is_bits_type(const TYPE* t) {
    return is_integer_type(t) && !t->is_bool() && t->size() >= 1 && t->size() <= 64;
}

unsigned width(const TYPE* t) { return static_cast<unsigned>(t->size()); }

uint64_t low_mask(unsigned n) { return n >= 64 ? ~uint64_t(0) : (uint64_t(1) << n) - 1; }

uint64_t all_bits(const TYPE* t) { return low_mask(width(t)); }

// Bits 0 up to the highest bit of d: what a carry-propagating operator
// needs of its operands to get the bits of d right.
uint64_t up_to_highest(uint64_t d) { return d ? low_mask(64 - std::countl_zero(d)) : 0; }

// The constant c as an operand of an operation in `type`.
uint64_t constant_in(const NODE* c, const TYPE* type) {
    return truncate_to_type(icon_of(c), type).bits() & all_bits(type);
}

// The constant takes the pattern `bits` in `type`.
void set_constant(NODE* c, uint64_t bits, TYPE* type) {
    c->value = truncate_to_type(INT65::from_unsigned(bits), type);
    c->type = type;
}

// Bits of x (converted to `type`) that may be one, and that are surely one.
uint64_t may_be_one(NODE* x, TYPE* type) {
    return find_known_zeros(x, type).bits() & all_bits(type);
}
uint64_t surely_one(NODE* x, TYPE* type) {
    return find_known_ones(x, type).bits() & all_bits(type);
}

bool is_constant_op(const NODE* t, int op) { return t && t->op == op && is_icon(t->right); }

// Whether removing t loses nothing the program does: no store, call or
// volatile access.
bool is_pure(const NODE* t) { return !tree_has_side_effects(t); }

// A constant on the left of a commutative bitwise node goes right.
void constant_right(NODE* t) {
    if (is_icon(t->left) && !is_icon(t->right))
        std::swap(t->left, t->right);
}

// The node becomes the constant `bits` of its type; what it did for effect
// stays before it.
NODE* constant_keeping_effects(NODE* t, uint64_t bits) {
    TYPE* type = t->type;
    return replace_keeping_effects(t, truncate_to_type(INT65::from_unsigned(bits), type), type);
}

// ---- Masks pushed into a tree -------------------------------------------------

// How deep the mask goes; deeper parts keep all their bits.
constexpr int max_mask_depth = 8;
// Mask propagation re-enters itself through simp_node; a rewrite pair that
// undid each other would recurse without end, and this stops it.
int mask_nesting = 0;
constexpr int max_mask_nesting = 24;

struct MASKER {
    LOOP* loop;
    CONTEXT* context;
    bool changed = false;

    NODE* node(NODE* t, uint64_t demand, int depth);
    NODE* operand(NODE* k, uint64_t demand, TYPE* into, bool may_retype, int depth);
    NODE* bitwise(NODE* t, uint64_t demand, int depth);
    NODE* carrying(NODE* t, uint64_t demand, int depth);
    NODE* shift(NODE* t, uint64_t demand, int depth);
    NODE* drop_term(NODE* t, NODE* term);
};

// The bits of a value of type `into` in `demand`, asked of an operand of
// type `from` that is converted to it: the same bits where the operand has
// them, and its sign bit for the bits a signed operand extends into.
uint64_t demand_of_operand(uint64_t demand, const TYPE* into, const TYPE* from) {
    const unsigned wf = width(from);
    if (wf >= width(into))
        return demand;
    uint64_t d = demand & low_mask(wf);
    if ((demand & ~low_mask(wf)) && from->is_signed())
        d |= uint64_t(1) << (wf - 1);
    return d;
}

// Whether the conversion k, an operand converted to `into`, may go: the
// operand converted to `into` directly has the same bits in `demand`. A
// conversion at least as wide as `into` decides nothing that the direct one
// does not; a narrower one only what lies above its width.
bool conversion_is_redundant(const NODE* k, uint64_t demand, const TYPE* into) {
    if (k->op != SCONV || !k->left || !is_bits_type(k->type) || !is_bits_type(k->left->type) ||
        !k->type->is_integral() || !k->left->type->is_integral() || tree_is_bit_field(k->left))
        return false;
    return width(into) <= width(k->type) || (demand & ~low_mask(width(k->type))) == 0;
}

NODE* MASKER::operand(NODE* k, uint64_t demand, TYPE* into, bool may_retype, int depth) {
    if (!k || !is_bits_type(k->type))
        return k;
    while (may_retype && conversion_is_redundant(k, demand, into)) {
        NODE* x = k->left;
        k->left = nullptr;
        erase_node(k);
        k = x;
        changed = true;
    }
    return node(k, demand_of_operand(demand, into, k->type), depth + 1);
}

// A term of t that adds no bit to the result goes; t is replaced by its
// other operand, in t's type.
NODE* MASKER::drop_term(NODE* t, NODE* term) {
    NODE* other = term == t->left ? t->right : t->left;
    TYPE* type = t->type;
    if (term == t->left)
        t->left = nullptr;
    else
        t->right = nullptr;
    erase_tree(term);
    changed = true;
    return coerce_to_type(type, replace_by_operand(t, other));
}

// ANDB, ORB, XORB: each result bit is made of the operands' same bits.
NODE* MASKER::bitwise(NODE* t, uint64_t demand, int depth) {
    TYPE* type = t->type;
    if (t->op != ANDB) {
        // x | y and x ^ y are x where y has no bit that is asked for.
        if (is_pure(t->right) && (may_be_one(t->right, type) & demand) == 0)
            return node(drop_term(t, t->right), demand, depth);
        if (is_pure(t->left) && (may_be_one(t->left, type) & demand) == 0)
            return node(drop_term(t, t->left), demand, depth);
    }
    uint64_t left_demand = demand;
    if (is_icon(t->right)) {
        const uint64_t c = constant_in(t->right, type);
        // x & c with c covering all that is asked for is x.
        if (t->op == ANDB && (c & demand) == demand)
            return node(drop_term(t, t->right), demand, depth);
        if (t->op == ANDB)
            left_demand = demand & c;
        else if (t->op == ORB)
            left_demand = demand & ~c;
        if ((c & demand) != c) {
            set_constant(t->right, c & demand, type);
            changed = true;
        }
    } else {
        t->right = operand(t->right, demand, type, true, depth);
    }
    t->left = operand(t->left, left_demand, type, true, depth);
    return t;
}

// PLUS, MINUS, MULT: a result bit depends on the operands' bits at and
// below it, never above.
NODE* MASKER::carrying(NODE* t, uint64_t demand, int depth) {
    TYPE* type = t->type;
    const uint64_t low = up_to_highest(demand);
    if (t->op != MULT) {
        // A term with no bit in the low part adds nothing there.
        if (is_pure(t->right) && (may_be_one(t->right, type) & low) == 0)
            return node(drop_term(t, t->right), demand, depth);
        if (t->op == PLUS && is_pure(t->left) && (may_be_one(t->left, type) & low) == 0)
            return node(drop_term(t, t->left), demand, depth);
    }
    if (is_icon(t->right)) {
        const uint64_t c = constant_in(t->right, type);
        if ((c & low) != c) {
            set_constant(t->right, c & low, type);
            changed = true;
        }
    } else {
        t->right = operand(t->right, low, type, true, depth);
    }
    t->left = operand(t->left, low, type, true, depth);
    return t;
}

// SLL and SRL by a constant move the demand with the bits; by a variable
// count a left shift still needs nothing above the highest demanded bit.
NODE* MASKER::shift(NODE* t, uint64_t demand, int depth) {
    TYPE* type = t->type;
    const unsigned n = width(type);
    const NODE* count = t->right;
    const INT65 s = is_icon(count) && is_integer_type(count->type) ? icon_of(count) : INT65(-1);
    if (s < INT65(0) || s >= INT65(static_cast<int>(n))) {
        if (t->op == SLL)
            t->left = operand(t->left, up_to_highest(demand), type, true, depth);
        return t;
    }
    const int k = static_cast<int>(s.low);
    uint64_t d;
    if (t->op == SLL) {
        d = demand >> k;
    } else {
        d = (demand << k) & all_bits(type);
        // An arithmetic shift copies the sign into the top k bits.
        if (type->is_signed() && (demand & ~(all_bits(type) >> k)))
            d |= uint64_t(1) << (n - 1);
    }
    t->left = operand(t->left, d, type, true, depth);
    return t;
}

NODE* MASKER::node(NODE* t, uint64_t demand, int depth) {
    if (!t || !is_bits_type(t->type) || depth > max_mask_depth)
        return t;
    demand &= all_bits(t->type);
    // Nothing of t is wanted: whatever it is, it may stay.
    if (demand == 0)
        return t;
    const bool changed_before = changed;
    changed = false;
    switch (t->op) {
    case ICON: {
        const uint64_t c = constant_in(t, t->type);
        if ((c & demand) != c) {
            set_constant(t, c & demand, t->type);
            changed = true;
        }
        break;
    }
    case ANDB:
    case ORB:
    case XORB:
        if (t->left && t->right)
            t = bitwise(t, demand, depth);
        break;
    case PLUS:
    case MINUS:
    case MULT:
        if (t->left && t->right)
            t = carrying(t, demand, depth);
        break;
    case SLL:
    case SRL:
        if (t->left && t->right)
            t = shift(t, demand, depth);
        break;
    case SCONV:
        if (t->left && !tree_is_bit_field(t->left))
            t->left = operand(t->left, demand, t->type, true, depth);
        break;
    case QUEST:
        if (t->right && t->right->op == COLON)
            t->right = node(t->right, demand, depth);
        break;
    case COLON:
        // The arms keep their types: QUEST does not convert them here.
        t->left = operand(t->left, demand, t->type, false, depth);
        t->right = operand(t->right, demand, t->type, false, depth);
        break;
    case COMMAOP:
        t->right = operand(t->right, demand, t->type, false, depth);
        break;
    default:
        break;
    }
    // A node whose operands changed is simplified again; a replacement
    // was built from simplified parts and is simplified where it was made.
    if (changed && t->op != ICON && t->op != COLON)
        t = simp_node(t, loop, context);
    changed = changed || changed_before;
    return t;
}

// k, an operand converted to `into`, with only the bits of `demand` kept
// right; `changed` tells whether anything was rewritten.
NODE* mask_operand(NODE* k, uint64_t demand, TYPE* into, bool& changed, LOOP* loop,
                   CONTEXT* context) {
    if (mask_nesting >= max_mask_nesting)
        return k;
    ++mask_nesting;
    MASKER m{loop, context};
    k = m.operand(k, demand, into, true, 0);
    --mask_nesting;
    changed = m.changed;
    return k;
}

// ---- ANDB -----------------------------------------------------------------------

// An unsigned bit field of w bits has no bit above them.
bool covers_unsigned_bit_field(const NODE* x, uint64_t c, const TYPE* type) {
    if ((x->op != STDOT && x->op != STREF) || !tree_is_bit_field(x) || !x->type ||
        x->type->is_signed())
        return false;
    const uint64_t field = low_mask(std::min(x->right->field_mval()->width, width(type)));
    return (c & field) == field;
}

// (T)x & c: the ANDB converts its operand itself. A conversion of the
// node's width gives the bits the node's own conversion gives.
bool conversion_under_mask_goes(const NODE* l, uint64_t c, const TYPE* type) {
    if (l->op != SCONV || !l->left || !is_bits_type(l->type) || !is_bits_type(l->left->type))
        return false;
    const TYPE* inner = l->left->type;
    return width(l->type) == width(type) && width(type) <= 32 && width(inner) <= 32 &&
           (c & ~all_bits(inner)) == 0;
}

// (x * 2^k) & c: the product has k zero bits at the bottom.
NODE* andb_of_product(NODE* t, uint64_t c, LOOP* loop, CONTEXT* context) {
    NODE* l = t->left;
    if (!is_constant_op(l, MULT) || !is_bits_type(l->type) || width(l->type) != width(t->type))
        return nullptr;
    const INT65 f = icon_of(l->right);
    if (f <= INT65(0))
        return nullptr;
    const unsigned k = static_cast<unsigned>(std::countr_zero(f.bits()));
    if (k == 0 || k >= width(l->type))
        return nullptr;
    const uint64_t kept = c & ~low_mask(k);
    if (kept == c)
        return nullptr;
    if (kept == 0)
        return constant_keeping_effects(t, 0);
    set_constant(t->right, kept, t->type);
    return simp_node(t, loop, context);
}

// (u >> s) & c for an unsigned u: the shift leaves only the low bits.
NODE* andb_of_shift(NODE* t, uint64_t c, LOOP* loop, CONTEXT* context) {
    NODE* l = t->left;
    if (!is_constant_op(l, SRL) || !is_bits_type(l->type) || l->type->is_signed() ||
        width(l->type) > width(t->type) || !is_integer_type(l->right->type))
        return nullptr;
    const INT65 s = icon_of(l->right);
    if (s <= INT65(0) || s >= INT65(static_cast<int>(width(l->type))))
        return nullptr;
    const uint64_t shifted = all_bits(l->type) >> s.low;
    const uint64_t kept = c & shifted;
    if (kept == shifted)
        return become_conversion(t, loop, context);
    if (kept == c)
        return nullptr;
    set_constant(t->right, kept, t->type);
    return simp_node(t, loop, context);
}

// (a | c1) & c2: bits of c2 that c1 sets are ones.
NODE* andb_of_orb(NODE* t, uint64_t c, LOOP* loop, CONTEXT* context) {
    NODE* l = t->left;
    if (!is_constant_op(l, ORB) || !is_bits_type(l->type) || width(l->type) != width(t->type))
        return nullptr;
    const uint64_t c1 = constant_in(l->right, t->type);
    if ((c1 & c) == c)
        return constant_keeping_effects(t, c);
    if ((c1 & c) == c1)
        return nullptr;
    set_constant(l->right, c1 & c, l->type);
    t->left = simp_node(l, loop, context);
    return simp_node(t, loop, context);
}

NODE* andb_with_constant(NODE* t, LOOP* loop, CONTEXT* context) {
    TYPE* type = t->type;
    const uint64_t all = all_bits(type);
    uint64_t c = constant_in(t->right, type);
    NODE* l = t->left;
    if (c == 0)
        return constant_keeping_effects(t, 0);
    if (covers_unsigned_bit_field(l, c, type))
        return become_conversion(t, loop, context);
    // A value of 0 or 1 keeps only bit 0 of the mask.
    if (returns_1_or_0(l)) {
        if (c & 1)
            return become_conversion(t, loop, context);
        return constant_keeping_effects(t, 0);
    }
    if (conversion_under_mask_goes(l, c, type)) {
        t->left = l->left;
        l->left = nullptr;
        erase_node(l);
        return simp_node(t, loop, context);
    }
    if (c == all ||
        (is_bits_type(l->type) && !l->type->is_signed() && width(l->type) <= width(type) &&
         (c & all_bits(l->type)) == all_bits(l->type)))
        return become_conversion(t, loop, context);
    if (NODE* r = andb_of_product(t, c, loop, context))
        return r;
    if (NODE* r = andb_of_shift(t, c, loop, context))
        return r;

    // The general step: the left need only be right in the bits of c, and
    // bits it cannot have need no mask.
    bool changed = false;
    t->left = mask_operand(t->left, c, type, changed, loop, context);
    if (changed)
        return simp_node(t, loop, context);
    const uint64_t may = may_be_one(t->left, type);
    if ((may & c) == 0)
        return constant_keeping_effects(t, 0);
    if ((may & ~c) == 0)
        return become_conversion(t, loop, context);
    if ((c & may) != c) {
        c &= may;
        set_constant(t->right, c, type);
        return simp_node(t, loop, context);
    }
    if (NODE* r = andb_of_orb(t, c, loop, context))
        return r;
    return t;
}

// ---- ORB ------------------------------------------------------------------------

// (x ^ c1) | c2, where x has none of the bits of c2: those bits are ones
// either way, and the XORB can set them.
NODE* orb_of_xorb(NODE* t, uint64_t c, LOOP* loop, CONTEXT* context) {
    NODE* l = t->left;
    if (!is_constant_op(l, XORB) || !is_bits_type(l->type) || width(l->type) != width(t->type))
        return nullptr;
    if ((may_be_one(l->left, l->type) & c) != 0)
        return nullptr;
    set_constant(l->right, constant_in(l->right, l->type) | c, l->type);
    set_constant(t->right, 0, t->type);
    t->left = simp_node(l, loop, context);
    return simp_node(t, loop, context);
}

// ((a | c3) & c1) | c2 is ((a | c3) | c2) & (c1 | c2).
NODE* orb_of_masked_orb(NODE* t, uint64_t c, LOOP* loop, CONTEXT* context) {
    NODE* andb = t->left;
    if (!is_constant_op(andb, ANDB) || !is_bits_type(andb->type) ||
        width(andb->type) != width(t->type) || !is_constant_op(andb->left, ORB))
        return nullptr;
    TYPE* type = t->type;
    const uint64_t c1 = constant_in(andb->right, type);
    NODE* inner = maketree(ORB, andb->left, t->right, type, t->scope);
    andb->left = nullptr;
    set_constant(andb->right, c1 | c, type);
    t->right = andb->right;
    andb->right = nullptr;
    erase_node(andb);
    t->op = ANDB;
    t->left = simp_node(inner, loop, context);
    return simp_node(t, loop, context);
}

NODE* orb_with_constant(NODE* t, LOOP* loop, CONTEXT* context) {
    TYPE* type = t->type;
    const uint64_t all = all_bits(type);
    uint64_t c = constant_in(t->right, type);
    if (c == 0)
        return become_conversion(t, loop, context);
    if (c == all)
        return constant_keeping_effects(t, all);
    // Bits the left surely has need not be set again; when they and c make
    // all ones, the result is all ones.
    const uint64_t ones = surely_one(t->left, type);
    if (c & ones) {
        set_constant(t->right, c & ~ones, type);
        return simp_node(t, loop, context);
    }
    if ((c | ones) == all) {
        set_constant(t->right, all, type);
        return simp_node(t, loop, context);
    }
    bool changed = false;
    t->left = mask_operand(t->left, all & ~c, type, changed, loop, context);
    if (changed)
        return simp_node(t, loop, context);
    if (NODE* r = orb_of_xorb(t, c, loop, context))
        return r;
    if (NODE* r = orb_of_masked_orb(t, c, loop, context))
        return r;
    return t;
}

// ((p & c0) | (y & c1)) | (y & c2) is (p & c0) | (y & (c1 | c2)).
NODE* orb_of_common_masks(NODE* t, LOOP* loop, CONTEXT* context) {
    NODE* l = t->left;
    NODE* r = t->right;
    if (!l || l->op != ORB || !is_bits_type(l->type) || width(l->type) != width(t->type) ||
        !is_constant_op(r, ANDB) || !is_constant_op(l->right, ANDB) ||
        !is_constant_op(l->left, ANDB))
        return nullptr;
    NODE* inner = l->right;
    if (width(inner->type) != width(t->type) || width(r->type) != width(t->type) ||
        !trees_are_congruent(inner->left, r->left, 0) || !is_pure(r->left))
        return nullptr;
    const uint64_t c2 = constant_in(r->right, inner->type);
    set_constant(inner->right, constant_in(inner->right, inner->type) | c2, inner->type);
    l->right = simp_node(inner, loop, context);
    TYPE* type = t->type;
    t->left = nullptr;
    erase_tree(t);
    return simp_node(coerce_to_type(type, l), loop, context);
}

// ---- XORB -----------------------------------------------------------------------

// (a & c) ^ c is (a ^ c) & c; (a & c2) ^ ~0 is (a ^ ~0) | ~c2.
NODE* xorb_of_andb(NODE* t, uint64_t c, LOOP* loop, CONTEXT* context) {
    NODE* andb = t->left;
    TYPE* type = t->type;
    if (!is_constant_op(andb, ANDB) || !is_bits_type(andb->type) ||
        width(andb->type) != width(type))
        return nullptr;
    const uint64_t c2 = constant_in(andb->right, type);
    if (c2 == c) {
        andb->op = XORB;
        t->op = ANDB;
    } else if (c == all_bits(type)) {
        andb->op = XORB;
        set_constant(andb->right, c, andb->type);
        set_constant(t->right, c & ~c2, type);
        t->op = ORB;
    } else {
        return nullptr;
    }
    t->left = simp_node(andb, loop, context);
    return simp_node(t, loop, context);
}

NODE* xorb_with_constant(NODE* t, LOOP* loop, CONTEXT* context) {
    TYPE* type = t->type;
    const uint64_t c = constant_in(t->right, type);
    set_constant(t->right, c, type);
    if (c == 0)
        return become_conversion(t, loop, context);
    // With no bit of c in the left, ^ is |; with all of them, it clears them.
    if ((may_be_one(t->left, type) & c) == 0) {
        t->op = ORB;
        return simp_node(t, loop, context);
    }
    if ((surely_one(t->left, type) & c) == c) {
        set_constant(t->right, ~c & all_bits(type), type);
        t->op = ANDB;
        return simp_node(t, loop, context);
    }
    if (NODE* r = xorb_of_andb(t, c, loop, context))
        return r;
    return t;
}

} // namespace

NODE* prop_mask_into_subtree(NODE* t, INT65 mask) {
    if (!t || !is_bits_type(t->type) || mask_nesting >= max_mask_nesting)
        return t;
    ++mask_nesting;
    MASKER m{nullptr, nullptr};
    t = m.node(t, mask.bits(), 0);
    --mask_nesting;
    return t;
}

NODE* simp_ANDB(NODE* t, LOOP* loop, CONTEXT* context) {
    t = simp_assoc(t, loop, context);
    if (t->op != ANDB || !t->left || !t->right || !is_bits_type(t->type))
        return t;
    constant_right(t);
    if (is_icon(t->right))
        return andb_with_constant(t, loop, context);
    if (trees_are_congruent(t->left, t->right, 0) && is_pure(t->left) && is_pure(t->right))
        return become_conversion(t, loop, context);
    return t;
}

NODE* simp_ORB(NODE* t, LOOP* loop, CONTEXT* context) {
    t = simp_assoc(t, loop, context);
    if (t->op != ORB || !t->left || !t->right)
        return t;
    if (is_bits_type(t->type)) {
        constant_right(t);
        // x | x is x. Not for two volatile reads: they may differ.
        if (trees_are_congruent(t->left, t->right, 0) && is_pure(t->left) && is_pure(t->right)) {
            TYPE* type = t->type;
            return coerce_to_type(type, replace_by_operand(t, t->right));
        }
        if (is_icon(t->right))
            return orb_with_constant(t, loop, context);
        if (NODE* r = orb_of_common_masks(t, loop, context))
            return r;
    }
    if (is_float_type(t->left->type) || is_float_type(t->right->type))
        return t;
    return simp_redundant_test(t, loop, context);
}

NODE* simp_XORB(NODE* t, LOOP* loop, CONTEXT* context) {
    t = simp_assoc(t, loop, context);
    if (t->op != XORB || !t->left || !t->right || !is_bits_type(t->type))
        return t;
    constant_right(t);
    // x ^ x is 0 only when both reads give the same value: two volatile
    // reads or two calls may not.
    if (trees_are_congruent(t->left, t->right, 0) && is_pure(t->left) && is_pure(t->right)) {
        NODE* zero = mk_ICON(INT65(0), t->type);
        zero->scope = t->scope;
        erase_tree(t);
        return zero;
    }
    if (is_icon(t->right))
        return xorb_with_constant(t, loop, context);
    return t;
}
