// Rewrites of the logical operators and of QUEST: negation pushed into the
// tested relation, short circuits with a constant side, pairs of tests
// joined, and choices between values that simpler arithmetic gives.
//
// A short circuit evaluates its right side only for one value of the left.
// Where a rewrite evaluates the right side always, that side must be unable
// to fault or have an effect: no call, no division, no access through a
// pointer, nothing volatile, no floating point.
#include <bit>
#include <cstdint>

#include "ir/ir.h"
#include "ir/node.h"
#include "ir/symtab.h"
#include "ir/types.h"
#include "md/md.h"
#include "simplify/simp_internal.h"

namespace {

TYPE* int_type() { return tp->mk_int(TYPE::ik_int); }

NODE* take(NODE*& slot) {
    NODE* k = slot;
    slot = nullptr;
    return k;
}

bool is_zero_icon(const NODE* k) { return is_icon(k) && icon_of(k).is_zero(); }

// A value of its own type that a test against zero can take.
bool is_testable(const TYPE* t) {
    return t && (is_integer_type(t) || t->is_pointer() || is_float_type(t));
}

// The zero x is compared with to test its truth.
NODE* zero_of(const NODE* x) {
    TYPE* type = strip_qualifiers(x->type);
    NODE* z;
    if (type->is_pointer()) {
        z = new_node(ICON, type);
        z->value = INT65(0);
    } else if (is_integer_type(type)) {
        z = mk_ICON(INT65(0), type);
    } else {
        z = coerce_to_type(type, mk_ICON(INT65(0), int_type()));
    }
    z->scope = x->scope;
    return z;
}

// x == 0, of type int.
NODE* mk_zero_test(NODE* x) { return maketree(EQ, x, zero_of(x), int_type(), x->scope); }

// The node t goes and value, of any type, takes its place in t's type.
NODE* replace_by_value(NODE* t, NODE* value) {
    TYPE* type = t->type;
    erase_tree(t);
    if (type && value->type && type->is_scalar() && value->type->is_scalar())
        return coerce_to_type(type, value);
    return value;
}

// The truth of a constant condition: 1, 0, or -1 when it is no constant.
int constant_truth(const NODE* c) {
    if (!is_icon(c))
        return -1;
    return icon_of(c).is_zero() ? 0 : 1;
}

// ---- Evaluation without the guard of a short circuit ----------------------

constexpr int max_safe_depth = 12;

bool is_volatile_name(const NODE* k) {
    return k->op == NAME && k->name_symbol() && symbol_is_volatile(k->name_symbol());
}

// Whether evaluating t can neither fault nor have an effect.
bool evaluation_is_safe(const NODE* t, int depth) {
    if (!t)
        return true;
    if (depth > max_safe_depth || (t->type && (type_is_volatile(t->type) || t->type->is_fltpt())))
        return false;
    switch (t->op) {
    case ICON:
    case SCON:
        return true;
    case NAME:
        return !is_volatile_name(t);
    case UAND:
        return t->left && t->left->op == NAME;
    case STDOT:
        // A member of a named object, not one reached through a pointer.
        return t->left && t->left->op == NAME && !is_volatile_name(t->left) && t->right &&
               t->right->op == FIELD;
    case PLUS:
    case MINUS:
    case MULT:
    case ANDB:
    case ORB:
    case XORB:
    case SLL:
    case SRL:
    case EQ:
    case NEQ:
    case LE:
    case LT:
    case GE:
    case GT:
    case ULE:
    case ULT:
    case UGE:
    case UGT:
        return evaluation_is_safe(t->left, depth + 1) && evaluation_is_safe(t->right, depth + 1);
    case UMINUS:
    case NOTB:
    case ABS:
    case EXCLAIM:
    case SCONV:
    case PCONV:
        return evaluation_is_safe(t->left, depth + 1);
    default:
        return false;
    }
}

// A relation whose right side is a zero constant, with an integer or
// address left side.
bool is_plain_zero_test(const NODE* k, int op) {
    return k->op == op && k->left && k->left->type && is_zero_icon(k->right) &&
           (is_integer_type(k->left->type) || k->left->type->is_pointer());
}

// The operands of a short circuit, each simplified for its truth.
void simplify_operands_for_truth(NODE* t, LOOP* loop, CONTEXT* context) {
    t->left = simp_for_control(t->left, loop, context);
    t->right = simp_for_control(t->right, loop, context);
}

NODE* boolean_of(NODE* t, NODE* operand, LOOP* loop, CONTEXT* context) {
    TYPE* type = t->type;
    erase_tree(t);
    return coerce_to_type(type, make_boolean(operand, loop, context));
}

} // namespace

bool rhs_may_need_guard_in_lhs(NODE*, NODE* rhs) { return !evaluation_is_safe(rhs, 0); }

int andor_andor_height(NODE* t, int limit, NODE* stop) {
    if (!t || t == stop || limit <= 0)
        return 0;
    const int l = andor_andor_height(t->left, limit - 1, stop);
    const int r = andor_andor_height(t->right, limit - 1, stop);
    return 1 + (l > r ? l : r);
}

NODE* invert_boolean_tree(NODE* t) {
    // (y == 0) for a y of 0 or 1 is the inversion of y itself.
    if (t->op == EQ && is_zero_icon(t->right) && returns_1_or_0(t->left)) {
        NODE* y = take(t->left);
        erase_tree(t);
        return coerce_to_type(int_type(), y);
    }
    if (t->op == EXCLAIM && t->left) {
        NODE* y = take(t->left);
        erase_node(t);
        if (returns_1_or_0(y))
            return coerce_to_type(int_type(), y);
        return maketree(NEQ, y, zero_of(y), int_type(), y->scope);
    }
    if (tree_is_trivially_invertible(t)) {
        t->op = boolean_inv[t->op];
        return t;
    }
    return mk_zero_test(t);
}

NODE* simp_EXCLAIM(NODE* t, LOOP* loop, CONTEXT* context) {
    NODE* x = t->left;
    if (!x || !is_testable(x->type) || x->op == DDNODE)
        return t;
    if (x->op == EQ && is_zero_icon(x->right) && returns_1_or_0(x->left)) {
        NODE* y = take(x->left);
        return simp_node(replace_by_value(t, y), loop, context);
    }
    if (tree_is_trivially_invertible(x)) {
        x->op = boolean_inv[x->op];
        NODE* y = take(t->left);
        return simp_node(replace_by_value(t, y), loop, context);
    }
    t->op = EQ;
    t->right = zero_of(x);
    return simp_node(t, loop, context);
}

NODE* simp_ANDAND(NODE* t, LOOP* loop, CONTEXT* context) {
    if (!t->left || !t->right || t->left->op == DDNODE || t->right->op == DDNODE)
        return t;
    simplify_operands_for_truth(t, loop, context);
    // A constant left side: the right side runs for one value only.
    switch (constant_truth(t->left)) {
    case 0:
        return replace_by_value(t, mk_ICON(INT65(0), int_type()));
    case 1:
        return boolean_of(t, take(t->right), loop, context);
    default:
        break;
    }
    switch (constant_truth(t->right)) {
    case 0:
        return replace_keeping_effects(t, INT65(0), t->type);
    case 1:
        return boolean_of(t, take(t->left), loop, context);
    default:
        break;
    }
    if (!tree_has_side_effects(t->left) && trees_are_congruent(t->left, t->right, 0))
        return boolean_of(t, take(t->left), loop, context);
    // !a && !b is !(a || b).
    if (is_plain_zero_test(t->left, EQ) && is_plain_zero_test(t->right, EQ)) {
        NODE* a = take(t->left->left);
        NODE* b = take(t->right->left);
        erase_tree(t->left);
        erase_tree(t->right);
        t->left = a;
        t->right = b;
        t->op = OROR;
        NODE* either = simp_node(t, loop, context);
        return simp_node(mk_zero_test(either), loop, context);
    }
    NODE* joined = simp_redundant_test(t, loop, context);
    if (joined != t)
        return joined;
    return simp_ANDOR_ANDOR(t, loop, context);
}

NODE* simp_OROR(NODE* t, LOOP* loop, CONTEXT* context) {
    if (!t->left || !t->right || t->left->op == DDNODE || t->right->op == DDNODE)
        return t;
    simplify_operands_for_truth(t, loop, context);
    switch (constant_truth(t->left)) {
    case 1:
        return replace_by_value(t, mk_ICON(INT65(1), int_type()));
    case 0:
        return boolean_of(t, take(t->right), loop, context);
    default:
        break;
    }
    switch (constant_truth(t->right)) {
    case 1:
        return replace_keeping_effects(t, INT65(1), t->type);
    case 0:
        return boolean_of(t, take(t->left), loop, context);
    default:
        break;
    }
    if (!tree_has_side_effects(t->left) && trees_are_congruent(t->left, t->right, 0))
        return boolean_of(t, take(t->left), loop, context);
    // (a != 0) || (b != 0) is a || b.
    if (is_plain_zero_test(t->left, NEQ) && is_plain_zero_test(t->right, NEQ)) {
        for (NODE** side : {&t->left, &t->right}) {
            NODE* test = *side;
            *side = take(test->left);
            erase_tree(test);
        }
        return simp_node(t, loop, context);
    }
    NODE* joined = simp_redundant_test(t, loop, context);
    if (joined != t)
        return joined;
    return simp_ANDOR_ANDOR(t, loop, context);
}

namespace {

constexpr int max_andor_height = 10;

// a && b as a single-bit ANDB: each side can have only one bit set, and the
// higher one is shifted down onto the other.
NODE* single_bit_and(NODE* t, TYPE* type, LOOP* loop, CONTEXT* context) {
    const uint64_t bits_a = find_known_zeros(t->left, type).bits();
    const uint64_t bits_b = find_known_zeros(t->right, type).bits();
    if (std::popcount(bits_a) != 1 || std::popcount(bits_b) != 1)
        return nullptr;
    const int ka = std::countr_zero(bits_a), kb = std::countr_zero(bits_b);
    NODE* a = coerce_to_type(type, take(t->left));
    NODE* b = coerce_to_type(type, take(t->right));
    const auto shift_down = [&](NODE* x, int by) {
        NODE* count = mk_ICON(INT65(by), int_type());
        return simp_node(maketree(SRL, x, count, type, t->scope), loop, context);
    };
    if (ka > kb)
        a = shift_down(a, ka - kb);
    else if (kb > ka)
        b = shift_down(b, kb - ka);
    return simp_node(maketree(ANDB, a, b, type, t->scope), loop, context);
}

} // namespace

NODE* simp_ANDOR_ANDOR(NODE* t, LOOP* loop, CONTEXT* context) {
    NODE* l = t->left;
    NODE* r = t->right;
    if (!l || !r || !is_integer_type(l->type) || !is_integer_type(r->type) ||
        boolean_result[l->op] || boolean_result[r->op] || tree_has_side_effects(l) ||
        rhs_may_need_guard_in_lhs(l, r) ||
        andor_andor_height(t, max_andor_height, nullptr) >= max_andor_height)
        return t;
    TYPE* type = combined_type(l, r);
    if (!is_integer_type(type))
        return t;
    NODE* value;
    if (t->op == OROR) {
        NODE* a = coerce_to_type(type, take(t->left));
        NODE* b = coerce_to_type(type, take(t->right));
        value = simp_node(maketree(ORB, a, b, type, t->scope), loop, context);
    } else {
        value = single_bit_and(t, type, loop, context);
        if (!value)
            return t;
    }
    return boolean_of(t, value, loop, context);
}

// ---- QUEST ----------------------------------------------------------------

namespace {

NODE*& true_arm(NODE* q) { return q->right->left; }
NODE*& false_arm(NODE* q) { return q->right->right; }

bool congruent_pure(const NODE* a, const NODE* b) {
    return !tree_has_side_effects(a) && trees_are_congruent(a, b, 0);
}

// c ? a : b with a constant c, also under a COMMAOP of effects.
NODE* choose_constant(NODE* t) {
    NODE* c = t->left;
    NODE* constant = c->op == COMMAOP ? c->right : c;
    const int truth = constant_truth(constant);
    if (truth < 0)
        return nullptr;
    NODE* arm = truth ? take(true_arm(t)) : take(false_arm(t));
    NODE* effects = c->op == COMMAOP ? take(c->left) : nullptr;
    NODE* value = replace_by_value(t, arm);
    return effects ? mk_COMMAOP(effects, value) : value;
}

// Both arms alike: the condition only for its effects.
NODE* choose_either(NODE* t) {
    if (!congruent_pure(true_arm(t), false_arm(t)))
        return nullptr;
    NODE* effects = peel_for_effect(take(t->left));
    NODE* value = replace_by_value(t, take(true_arm(t)));
    return effects ? mk_COMMAOP(effects, value) : value;
}

// Constant arms: the truth of c, its inversion, or the truth added to a
// constant where the arms differ by one.
NODE* choose_by_truth(NODE* t, LOOP* loop, CONTEXT* context) {
    TYPE* type = t->type;
    if (!is_integer_type(type) || !is_icon(true_arm(t)) || !is_icon(false_arm(t)))
        return nullptr;
    const INT65 a = convert_integer_constant(icon_of(true_arm(t)), type);
    const INT65 b = convert_integer_constant(icon_of(false_arm(t)), type);
    const INT65 one(1);
    NODE* truth;
    if ((a == one && b.is_zero()) || (a - b == one && !type->is_bool()))
        truth = make_boolean(take(t->left), loop, context);
    else if ((a.is_zero() && b == one) || (b - a == one && !type->is_bool()))
        truth = simp_node(invert_boolean_tree(take(t->left)), loop, context);
    else
        return nullptr;
    // c ? b + 1 : b is b + (c != 0); both values are in the type, so the sum
    // does not wrap.
    const INT65 base = a < b ? a : b;
    LS* scope = t->scope;
    erase_tree(t);
    NODE* value = coerce_to_type(type, truth);
    if (base.is_zero())
        return value;
    NODE* k = mk_ICON(base, strip_qualifiers(type));
    k->scope = scope;
    return simp_node(maketree(PLUS, value, k, type, scope), loop, context);
}

// x != 0 ? x : 0, and x == 0 ? 0 : x, are x.
NODE* choose_self(NODE* t) {
    NODE* c = t->left;
    NODE* x = c;
    bool when_true = true;
    if (is_plain_zero_test(c, NEQ) || is_plain_zero_test(c, EQ)) {
        x = c->left;
        when_true = c->op == NEQ;
    }
    if (!x->type || (!is_integer_type(x->type) && !x->type->is_pointer()))
        return nullptr;
    NODE*& same = when_true ? true_arm(t) : false_arm(t);
    NODE* other = when_true ? false_arm(t) : true_arm(t);
    if (!is_zero_icon(other) || !congruent_pure(x, same))
        return nullptr;
    return replace_by_value(t, take(same));
}

const char* minmax_name(bool is_max, TYPE* t) {
    if (is_float_type(t))
        return t->is_float() ? (is_max ? "FMAX" : "FMIN")
               : t->is_double() ? (is_max ? "DMAX" : "DMIN")
                                : (is_max ? "LDMAX" : "LDMIN");
    const bool u = !t->is_signed();
    if (t->is_llong() || t->is_ullong())
        return is_max ? (u ? "LLMAXU" : "LLMAX") : (u ? "LLMINU" : "LLMIN");
    if (t->is_long() || t->is_ulong())
        return is_max ? (u ? "LMAXU" : "LMAX") : (u ? "LMINU" : "LMIN");
    return is_max ? (u ? "MAXU" : "MAX") : (u ? "MINU" : "MIN");
}

// (a < b) ? a : b and its mirror forms as the target's MIN or MAX builtin,
// when it has one.
NODE* choose_extreme(NODE* t) {
    NODE* c = t->left;
    TYPE* type = t->type;
    const bool ordering = (c->op >= LE && c->op <= GT) || (c->op >= ULE && c->op <= UGT);
    if (!ordering || !type || (!is_integer_type(type) && !is_float_type(type)) ||
        tree_has_side_effects(c) || (is_integer_type(type) && type->is_signed() != (c->op <= GT)))
        return nullptr;
    bool is_max;
    const bool less = c->op == LT || c->op == LE || c->op == ULT || c->op == ULE;
    if (congruent_pure(c->left, true_arm(t)) && congruent_pure(c->right, false_arm(t)))
        is_max = !less;
    else if (congruent_pure(c->right, true_arm(t)) && congruent_pure(c->left, false_arm(t)))
        is_max = less;
    else
        return nullptr;
    if (!compatible_types(c->left->type, type, true) || !compatible_types(c->right->type, type, true))
        return nullptr;
    const char* name = minmax_name(is_max, type);
    if (!find_BIF_descriptor(name))
        return nullptr;
    NODE* args = maketree(COMMA, take(true_arm(t)), take(false_arm(t)), type, t->scope);
    NODE* call = mk_ICALL(name, args, type);
    call->scope = t->scope;
    erase_tree(t);
    return call;
}

bool is_distributable(int op) {
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
        return true;
    default:
        return false;
    }
}

// c ? a + k : b + k is (c ? a : b) + k; the same with the common operand on
// the left. k is computed on both paths already.
NODE* choose_inside(NODE* t, LOOP* loop, CONTEXT* context) {
    NODE* a = true_arm(t);
    NODE* b = false_arm(t);
    if (a->op != b->op || !is_distributable(a->op) || !a->left || !a->right || !b->left ||
        !b->right || !compatible_types(a->type, t->type, true) ||
        !compatible_types(b->type, t->type, true))
        return nullptr;
    const bool common_right = congruent_pure(a->right, b->right);
    if (!common_right && !congruent_pure(a->left, b->left))
        return nullptr;
    NODE*& a_part = common_right ? a->left : a->right;
    NODE*& b_part = common_right ? b->left : b->right;
    if (!compatible_types(a_part->type, b_part->type, true))
        return nullptr;
    // The QUEST chooses between the parts; the first arm's operator node
    // takes its place.
    take(true_arm(t));
    true_arm(t) = take(a_part);
    false_arm(t) = take(b_part);
    erase_tree(b);
    t->type = true_arm(t)->type;
    t->right->type = t->type;
    a_part = simp_node(t, loop, context);
    return simp_node(a, loop, context);
}

// c ? (c ? a : b) : d is c ? a : d, and the same in the other arm.
NODE* choose_nested(NODE* t, LOOP* loop, CONTEXT* context) {
    NODE* c = t->left;
    if (tree_has_side_effects(c))
        return nullptr;
    for (const bool first : {true, false}) {
        NODE*& arm = first ? true_arm(t) : false_arm(t);
        if (arm->op != QUEST || !arm->right || arm->right->op != COLON ||
            !trees_are_congruent(arm->left, c, 0))
            continue;
        NODE*& inner = first ? true_arm(arm) : false_arm(arm);
        NODE* value = take(inner);
        arm = replace_by_value(arm, value);
        return simp_node(t, loop, context);
    }
    return nullptr;
}

} // namespace

NODE* simp_QUEST(NODE* t, LOOP* loop, CONTEXT* context) {
    NODE* colon = t->right;
    if (!t->left || !colon || colon->op != COLON || !colon->left || !colon->right ||
        t->left->op == DDNODE)
        return t;
    t->left = simp_for_control(t->left, loop, context);
    if (NODE* done = choose_constant(t))
        return done;
    if (NODE* done = choose_either(t))
        return done;
    if (NODE* done = choose_by_truth(t, loop, context))
        return done;
    if (NODE* done = choose_self(t))
        return done;
    if (NODE* done = choose_extreme(t))
        return done;
    if (NODE* done = choose_inside(t, loop, context))
        return done;
    if (NODE* done = choose_nested(t, loop, context))
        return done;
    return t;
}
