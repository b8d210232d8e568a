// If-conversion in the CFG simplifier: an IF whose arms only assign one
// variable becomes a straight assignment, and a test on a just-incremented
// counter is moved ahead of the increment. Each rewrite must compute the same
// as the branches did in every state, since nothing checks it afterwards.
#include <cstddef>
#include <cstdint>
#include <utility>

#include "driver/diag.h"
#include "driver/driver.h"
#include "inline/funinfo.h"
#include "ir/bblk.h"
#include "ir/ir.h"
#include "ir/node.h"
#include "ir/simpcfg_internal.h"
#include "ir/symtab.h"
#include "ir/types.h"
#include "md/md.h"
#include "support/intmath.h"

namespace simpcfg_impl {
namespace {

// The test as a 0/1 value of type int.
NODE* make_boolean(NODE* c) {
    if (boolean_result[c->op])
        return c;
    return maketree(NEQ, c, mk_ICON(INT65(0), c->type), tp->mk_int(TYPE::ik_int), c->scope);
}

// A condition that may be moved into an expression: evaluated once there as
// in the IF, and with a value make_boolean can express.
bool test_is_movable(const NODE* c) {
    return condition_is_pure(c) && (boolean_result[c->op] || TYPE_IS_INT(c->type));
}

NODE* converted(NODE* x, TYPE* to) {
    return exact_types(x->type, to) ? x : maketree(SCONV, x, nullptr, to, x->scope);
}

NODE* icon_in(INT65 v, TYPE* t) { return mk_ICON(truncate_to_type(v, t), t); }

// An arm of a diamond below `from`: reached from it alone, holding one
// statement and a BRANCH. Sets the statement and returns the BRANCH's target.
BBLK* diamond_arm_join(BBLK* arm, const BBLK* from, const NODE*& body) {
    if (!arm || arm == from || arm == entry_bb() || (arm->flags & BB_KEEP_DUPLICATE_TEST) ||
        bb_is_loop_head(arm) || sole_predecessor(arm) != from)
        return nullptr;
    const LIST* s = arm->statements;
    if (!s || !s->next || s->next->next || s->next->tree->op != BRANCH)
        return nullptr;
    body = s->tree;
    return label_target(s->next->tree->left);
}

// Whether the tree may be evaluated where the program did not evaluate it:
// nothing read through a pointer, no call, no division that may fault, no
// volatile access and no floating point (its exceptions, and conversions out
// of range). A QUEST without side effects may end up computing both arms.
bool tree_is_safe_to_speculate(const NODE* t) {
    if (!t)
        return true;
    if (type_is_volatile(t->type) || type_is_float(t->type))
        return false;
    switch (t->op) {
    case NAME:
        return !symbol_is_volatile(t->name_symbol());
    case ICON:
    case LCON:
        return true;
    case UAND:
        return t->left && t->left->op == NAME;
    case DIV:
    case MOD: {
        const NODE* d = t->right;
        if (!d || d->op != ICON || d->value.is_zero() ||
            (t->type->is_signed() && truncate_to_type(d->value, d->type) == INT65(-1)))
            return false;
        return tree_is_safe_to_speculate(t->left);
    }
    case PLUS:
    case MINUS:
    case MULT:
    case ANDB:
    case ORB:
    case XORB:
    case SLL:
    case SRL:
    case UMINUS:
    case NOTB:
    case EXCLAIM:
    case ABS:
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
    case SCONV:
    case PCONV:
    case QUEST:
    case COLON:
    case ANDAND:
    case OROR:
        return tree_is_safe_to_speculate(t->left) && tree_is_safe_to_speculate(t->right);
    default:
        return false;
    }
}

// -1 in p when the test goes the given way, else 0.
NODE* all_or_nothing(NODE* c, bool when, TYPE* p) {
    NODE* bit = converted(make_boolean(as_tested(c, when)), p);
    return maketree(UMINUS, bit, nullptr, p, c->scope);
}

// c ? k1 : k2 in type r, without a branch: ANDB and ORB (or XORB) of the
// constants with the test spread to all bits. Works in r's promoted type, in
// which both constants keep their values, and converts back.
NODE* select_constants(NODE* c, INT65 k1, INT65 k2, TYPE* r) {
    TYPE* p = promoted_type(r);
    k1 = truncate_to_type(k1, p);
    k2 = truncate_to_type(k2, p);
    const uint64_t a = k1.bits();
    const uint64_t z = k2.bits();
    const INT65 diff = INT65::from_unsigned(a ^ z);
    NODE* v;
    if (k1 == k2) {
        erase_tree(c);
        v = icon_in(k1, p);
    } else if (k1 == INT65(1) && k2.is_zero()) {
        v = converted(make_boolean(c), p);
    } else if (k1.is_zero() && k2 == INT65(1)) {
        v = converted(make_boolean(as_tested(c, false)), p);
    } else if (k2.is_zero()) {
        v = maketree(ANDB, all_or_nothing(c, true, p), icon_in(k1, p), p, c->scope);
    } else if (k1.is_zero()) {
        v = maketree(ANDB, all_or_nothing(c, false, p), icon_in(k2, p), p, c->scope);
    } else {
        // The bits that differ are taken from the test; the rest is common.
        const bool k1_covers = (a & z) == z;
        const bool k2_covers = (a & z) == a;
        // The spread test picks the differing bits of the constant that covers.
        NODE* spread = all_or_nothing(c, !k2_covers, p);
        NODE* picked = maketree(ANDB, spread, icon_in(diff, p), p, c->scope);
        if (k1_covers)
            v = maketree(ORB, picked, icon_in(k2, p), p, c->scope);
        else if (k2_covers)
            v = maketree(ORB, picked, icon_in(k1, p), p, c->scope);
        else
            v = maketree(XORB, picked, icon_in(k2, p), p, c->scope);
    }
    return converted(v, r);
}

// The ANDB of a single-bit test `a & m`, `(a & m) != 0`, `(a & m) == 0` or
// `!(a & m)`; `set_holds` tells whether the test holds when the bit is set.
const NODE* single_bit_test(const NODE* c, bool& set_holds, int& log_m) {
    set_holds = true;
    if ((c->op == NEQ || c->op == EQ) && c->right && c->right->op == ICON &&
        c->right->value.is_zero()) {
        set_holds = c->op == NEQ;
        c = c->left;
    } else if (c->op == EXCLAIM) {
        set_holds = false;
        c = c->left;
    }
    if (c->op != ANDB || !c->right || c->right->op != ICON || !c->type->is_integral() ||
        c->type->is_bool())
        return nullptr;
    log_m = power_of_2(INT65::from_unsigned(c->right->value.bits() & type_mask(c->type).bits()));
    return log_m >= 0 ? c : nullptr;
}

// c ? k1 : k2 for a test of one bit m when k1 and k2 differ in one bit d: the
// tested bit itself moved to d, by SLL or SRL of `a & m`, then ORB with the
// other constant (or XORB when that one has d set). The bit is taken as
// unsigned first: a sign bit must neither spread on a right shift nor on
// widening.
NODE* select_constants_by_bit(NODE* c, INT65 k1, INT65 k2, TYPE* r) {
    bool set_holds;
    int log_m;
    const NODE* andb = single_bit_test(c, set_holds, log_m);
    if (!andb)
        return nullptr;
    const uint64_t rmask = type_mask(r).bits();
    const uint64_t k_set = (set_holds ? k1 : k2).bits() & rmask;
    const uint64_t k_clear = (set_holds ? k2 : k1).bits() & rmask;
    const int log_d = power_of_2(INT65::from_unsigned(k_set ^ k_clear));
    if (log_d < 0)
        return nullptr;
    TYPE* u = andb->type;
    TYPE* wide =
        promoted_type(u)->size() > promoted_type(r)->size() ? promoted_type(u) : promoted_type(r);
    TYPE* q = tp->mk_unsigned(strip_qualifiers(wide));
    NODE* bit = converted(copy_tree(andb, true), tp->mk_unsigned(strip_qualifiers(u)));
    bit = converted(bit, q);
    if (log_d != log_m)
        bit = maketree(
            log_d > log_m ? SLL : SRL, bit,
            mk_ICON(INT65(log_d > log_m ? log_d - log_m : log_m - log_d), tp->mk_int(TYPE::ik_int)),
            q, c->scope);
    if (k_clear)
        bit = maketree((k_clear & (k_set ^ k_clear)) ? XORB : ORB, bit,
                       icon_in(INT65::from_unsigned(k_clear), q), q, c->scope);
    erase_tree(c);
    return converted(bit, r);
}

} // namespace

// A local, not volatile and with no address taken: no other thread, no signal
// handler and no pointer can see it, and only the statements that name it
// read or write it.
bool tree_is_private_scalar(const NODE* t) {
    if (t->op != NAME || type_is_volatile(t->type) || !t->type->is_integral())
        return false;
    const SYMTAB* s = t->name_symbol();
    return s && s->lex >= 1 && !symbol_is_volatile(s) && !(s->state & SYM_ADDRESS_TAKEN) &&
           !s->aliased && !(s->qual & SQ_CREGISTER) && s->sclass != SC_STATIC &&
           s->sclass != SC_GLOBAL_DEF && s->sclass != SC_EXTERN_DECL;
}

// if (c) x = x + 1;  =>  x = x + (c != 0), likewise -, | and ^ with 1. Only the
// constant 1 changes, into the test as 0 or 1 of its type: on the path that
// did not assign, x op 0 stores x back, which only a variable nobody else can
// see may do.
bool fold_increment_diamond(BBLK* b, NODE* t) {
    NODE* c = t->left;
    if (!test_is_movable(c))
        return false;
    for (bool arm_taken : {true, false}) {
        BBLK* arm = arm_taken ? taken_target(t) : not_taken_target(t);
        BBLK* join = arm_taken ? not_taken_target(t) : taken_target(t);
        const NODE* asg = nullptr;
        if (!join || join == b || diamond_arm_join(arm, b, asg) != join)
            continue;
        if (asg->op != ASG || !tree_is_private_scalar(asg->left))
            continue;
        const NODE* rhs = asg->right;
        if ((rhs->op != PLUS && rhs->op != MINUS && rhs->op != ORB && rhs->op != XORB) ||
            !rhs->right || rhs->right->op != ICON || rhs->right->value != INT65(1) ||
            !trees_are_congruent(rhs->left, asg->left, 0))
            continue;
        NODE* folded = copy_tree(asg, true);
        NODE* one = folded->right->right;
        t->left = nullptr;
        folded->right->right = converted(make_boolean(as_tested(c, arm_taken)), one->type);
        erase_tree(one);
        insert_stmt_before_stmt_in_bb(folded, last_stmt_cell(b), b);
        make_branch(b, join, nullptr);
        return true;
    }
    return false;
}

// if (c) x = e1; else x = e2;  =>  x = <e1 or e2 by c>. Both arms assign the
// same target, so the store happens on every path as before; the test is
// evaluated once, ahead of the store, as before.
bool merge_two_armed_assignment(BBLK* b, NODE* t, bool full, bool may_speculate) {
    BBLK* yes = taken_target(t);
    BBLK* no = not_taken_target(t);
    const NODE* s1 = nullptr;
    const NODE* s2 = nullptr;
    if (!yes || !no || yes == no)
        return false;
    BBLK* join = diamond_arm_join(yes, b, s1);
    if (!join || diamond_arm_join(no, b, s2) != join || join == b || yes->loop != no->loop ||
        yes->loop != b->loop)
        return false;
    const bool quest_is_ok = full || may_speculate;
    OPTASSERT(quest_is_ok || currfuninfo->bb_list->loop == NULL);
    if (s1->op != s2->op ||
        (s1->op != ASG && (!opcode_is_ASG(s1->op) || op_of_opASG[s1->op] == NONE)))
        return false;
    const NODE* lhs = s1->left;
    const NODE* e1 = s1->right;
    const NODE* e2 = s2->right;
    NODE* c = t->left;
    if (!TYPE_IS_INT(lhs->type) || tree_has_side_effects(lhs) ||
        !trees_are_congruent(lhs, s2->left, 0) || !exact_types(e1->type, e2->type) ||
        !test_is_movable(c) || !condition_is_pure(e1) || !condition_is_pure(e2))
        return false;
    TYPE* r = e1->type;
    NODE* value = nullptr;
    if (e1->op == ICON && e2->op == ICON && TYPE_IS_INT(r)) {
        const INT65 k1 = truncate_to_type(e1->value, r);
        const INT65 k2 = truncate_to_type(e2->value, r);
        value = k1 != k2 ? select_constants_by_bit(c, k1, k2, r) : nullptr;
        if (!value)
            value = select_constants(c, k1, k2, r);
    } else if (trees_are_congruent(e1, e2, 0)) {
        erase_tree(c);
        value = copy_tree(e1, true);
    } else if (quest_is_ok && tree_is_safe_to_speculate(e1) && tree_is_safe_to_speculate(e2)) {
        NODE* arms = maketree(COLON, copy_tree(e1, true), copy_tree(e2, true), r, t->scope);
        value = maketree(QUEST, c, arms, r, t->scope);
        value->weight = t->weight;
        arms->weight = t->weight >= 0.0 ? 1.0 - t->weight : -1.0;
        if (may_speculate)
            value = make_strict_ternary_ICALL(value);
    } else {
        return false;
    }
    t->left = nullptr;
    NODE* merged = copy_node(s1, true);
    merged->left = copy_tree(lhs, true);
    merged->right = value;
    insert_stmt_before_stmt_in_bb(merged, last_stmt_cell(b), b);
    make_branch(b, join, nullptr);
    return true;
}

namespace {

// A counter whose increment may be moved: a plain variable of an integer type
// that wraps (not _Bool), with no volatile access.
bool is_plain_counter(const NODE* x) {
    if (x->op != NAME || type_is_volatile(x->type) || !x->type->is_integral() || x->type->is_bool())
        return false;
    const SYMTAB* s = x->name_symbol();
    return s && !symbol_is_volatile(s) && !(s->qual & SQ_CREGISTER);
}

// `x = x + k` or `x = x - k` computed in x's type, or null.
const NODE* counter_step(const NODE* asg) {
    if (!asg || asg->op != ASG || !is_plain_counter(asg->left))
        return nullptr;
    const NODE* step = asg->right;
    if ((step->op != PLUS && step->op != MINUS) || !step->right || step->right->op != ICON ||
        !exact_types(step->type, asg->left->type) || !exact_types(asg->type, asg->left->type) ||
        !trees_are_congruent(step->left, asg->left, 0))
        return nullptr;
    return step;
}

// `x == c` or `x != c`, x either plain or as `(x = x + k)`, of counter x.
bool tests_counter(const NODE* test, const NODE* x) {
    if (!test || test->op != IF)
        return false;
    const NODE* c = test->left;
    if ((c->op != EQ && c->op != NEQ) || !c->right || c->right->op != ICON)
        return false;
    const NODE* v = c->left;
    if (v->op == ASG && counter_step(v))
        v = v->left;
    return v->op == NAME && trees_are_congruent(v, x, 0);
}

bool arm_takes_statement(const BBLK* arm, const BBLK* from) {
    return arm && arm != from && arm != entry_bb() && !(arm->flags & BB_KEEP_DUPLICATE_TEST) &&
           !bb_is_loop_head(arm) && sole_predecessor(arm) == from;
}

} // namespace

// if ((x = x + k) == c) goto A else B, where an arm tests x again:
// if (x == c - k) goto A else B with x = x + k at the head of both arms. The
// increment is a bijection of x's values, so the test keeps its outcome when
// c is a value of x's type; the arm's test now sits next to a test of the
// same x, where neighbouring tests can fuse into ranges.
bool fuse_loop_exit_test(BBLK* b, NODE* t) {
    NODE* cond = t->left;
    if ((cond->op != EQ && cond->op != NEQ) || !cond->right || cond->right->op != ICON)
        return false;
    NODE* asg = cond->left;
    const NODE* step = counter_step(asg);
    if (!step)
        return false;
    const NODE* x = asg->left;
    TYPE* type = x->type;
    const INT65 c = cond->right->value;
    if (truncate_to_type(c, type) != c)
        return false;
    BBLK* yes = taken_target(t);
    BBLK* no = not_taken_target(t);
    if (yes == no || !arm_takes_statement(yes, b) || !arm_takes_statement(no, b) ||
        (!tests_counter(last_stmt(yes), x) && !tests_counter(last_stmt(no), x)))
        return false;
    const INT65 k = truncate_to_type(step->right->value, type);
    const INT65 before = truncate_to_type(step->op == PLUS ? c - k : c + k, type);
    insert_stmt_before_stmt_in_bb(copy_tree(asg, true), yes->statements, yes);
    insert_stmt_before_stmt_in_bb(copy_tree(asg, true), no->statements, no);
    cond->left = copy_tree(x, true);
    erase_tree(asg);
    erase_tree(cond->right);
    cond->right = mk_ICON(before, type);
    return true;
}

} // namespace simpcfg_impl
