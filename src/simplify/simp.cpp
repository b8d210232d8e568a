// The simplifier's entry points: the bottom-up walk of a tree and the
// per-node dispatcher. One node goes through a fixed order: its type is
// normalized, embedded sequences are hoisted above it, constant operands
// fold, and its operator's handler runs. There is no global iteration: a
// handler that changes the node's operator calls simp_node again, and the
// rules make progress on every such call.
#include <cstdio>

#include "driver/diag.h"
#include "driver/driver.h"
#include "inline/funinfo.h"
#include "ir/bblk.h"
#include "ir/ir.h"
#include "ir/node.h"
#include "ir/symtab.h"
#include "ir/types.h"
#include "simplify/fold.h"
#include "simplify/simp_internal.h"

namespace {

bool is_constant(const NODE* t) { return t && (t->op == ICON || t->op == FCON); }

// Operators whose operands must stay where they are: short circuits, lists,
// statements, calls and their arguments. An lvalue operand is no reason to
// stay: &(a, x) is (a, &x), and a sequence must never be left where an
// object is needed.
bool keeps_operands_in_place(int op) {
    switch (op) {
    case QUEST:
    case COLON:
    case ANDAND:
    case OROR:
    case COMMAOP:
    case COMMA:
    case PCOMMA:
    case IF:
    case CBRANCH:
    case SWITCH:
    case CASE:
    case DEFAULT:
    case RETURN:
    case URETURN:
    case BRANCH:
    case LABEL:
    case LABELDEF:
    case LOOP_OP:
    case ENDLOOP:
    case INITLOOP:
    case ASSERT:
    case NASSERT:
    case ASM:
    case CALL:
    case UCALL:
    case ICALL:
    case UICALL:
    case MCALL:
    case UMCALL:
    case STARG:
    case ACONV:
    case ARGREF:
    case FIELD:
    case PPRAGMA:
    case DDNODE:
    case EXPRSTUB:
    case MIXVALUE:
    case MIX_CONJ:
    case MIX_DISJ:
    case MIX_SET:
    case SSA_PHI:
    case SSA_USE:
    case SSA_DEF:
    case SSA_MU:
    case SSA_CHI:
    case MEMCPY:
    case ARASG:
        return true;
    default:
        return false;
    }
}

bool is_vector_op(int op) {
    return op == VPACK || op == VPACKM || op == VPACK1P || op == VFIELD || op == VRCONV ||
           op == VSCONV;
}

// The common-subexpression pairs share their right side: a rewrite inside
// one would leave the other pointing at a freed node.
[[noreturn]] void bad_opcode(const NODE* t) {
    const char* name = node_operator_name[t->op] ? node_operator_name[t->op] : "?";
    fprintf(stderr, "\n\n   !!! Bad opcode in simplifier (%d) %s !!!\n", t->op, name);
    dprintf("\n\n   !!! Bad opcode in simplifier (%d) %s !!!\n", t->op, name);
    abort_optimizer();
}

// The value of `x = c` as the assignment's type holds it; null when that is
// not certain (a bit field keeps fewer bits than its type).
NODE* value_of_constant_assignment(const NODE* asg) {
    if (!asg || asg->op != ASG || !is_icon(asg->right) || !asg->type ||
        !is_integer_type(asg->type) || tree_is_bit_field(asg->left))
        return nullptr;
    return coerce_to_type(asg->type, copy_tree(asg->right, true));
}

// (a, b) op c is (a, b op c), and the same on the right; (x = c) op y is
// (x = c, c op y). Returns null when nothing was hoisted.
NODE* hoist_sequences(NODE* t, LOOP* loop, CONTEXT* context) {
    if (t->left && t->left->op == COMMAOP) {
        NODE* seq = t->left;
        t->left = seq->right;
        seq->right = simp_node(t, loop, context);
        seq->type = seq->right->type;
        return seq;
    }
    if (t->right && t->right->op == COMMAOP && number_of_operands[t->op] == 2) {
        NODE* seq = t->right;
        t->right = seq->right;
        seq->right = simp_node(t, loop, context);
        seq->type = seq->right->type;
        return seq;
    }
    if (t->left && t->left->op == ASG) {
        if (NODE* value = value_of_constant_assignment(t->left)) {
            NODE* asg = t->left;
            t->left = value;
            NODE* rest = simp_node(t, loop, context);
            return maketree(COMMAOP, asg, rest, rest->type, asg->scope);
        }
    }
    if (t->right && t->right->op == ASG && number_of_operands[t->op] == 2 && t->op != ASG &&
        t->op != INITLOOP && !opcode_is_ASG(t->op)) {
        if (NODE* value = value_of_constant_assignment(t->right)) {
            NODE* asg = t->right;
            t->right = value;
            NODE* rest = simp_node(t, loop, context);
            return maketree(COMMAOP, asg, rest, rest->type, asg->scope);
        }
    }
    return nullptr;
}

// A node built from parts takes its source scope from its main operand.
void take_scope(NODE* t) {
    if (t->scope)
        return;
    if (t->left && t->left->scope)
        t->scope = t->left->scope;
    else if (t->right && t->right->scope)
        t->scope = t->right->scope;
}

} // namespace

NODE* become_conversion(NODE* t, LOOP* loop, CONTEXT* context) {
    if (t->right) {
        erase_tree(t->right);
        t->right = nullptr;
    }
    t->op = t->type && t->type->is_pointer() ? PCONV : SCONV;
    return simp_node(t, loop, context);
}

NODE* replace_keeping_effects(NODE* t, INT65 value, TYPE* type) {
    NODE* c = mk_ICON(value, type);
    c->scope = t->scope;
    NODE* effects = peel_for_effect(t);
    if (!effects)
        return c;
    return maketree(COMMAOP, effects, c, type, c->scope);
}

NODE* replace_by_operand(NODE* t, NODE* operand) {
    if (t->left == operand)
        t->left = nullptr;
    else if (t->right == operand)
        t->right = nullptr;
    erase_tree(t);
    return operand;
}

NODE* simp_node(NODE* t, LOOP* loop, CONTEXT* context) {
    if (!t)
        return t;
    if (t->op == CSE_DUPE || t->op == CSE_ORIG)
        bad_opcode(t);
    for (;;) {
        if (t->type)
            t->type = t->type->normalized();
        if ((!keeps_operands_in_place(t->op) || (t->op == UMULT && t->left)) &&
            !(t->op == STASG && tree_is_arg_prolog(t)))
            if (NODE* hoisted = hoist_sequences(t, loop, context))
                return hoisted;
        if (is_vector_op(t->op))
            return simp_vector_node(t, loop, context);
        if (is_constant(t->left) && (!t->right || is_constant(t->right))) {
            const int op = t->op;
            NODE* folded = fold_constants(t);
            if (folded != t || folded->op != op)
                return folded;
        }
        take_scope(t);
        switch (t->op) {
        case NAME:
            return fix_type_info(t);
        case PLUS:
            return simp_PLUS(t, loop, context);
        case MINUS:
            return simp_MINUS(t, loop, context);
        case MULT:
            return simp_MULT(t, loop, context);
        case ANDB:
            return simp_ANDB(t, loop, context);
        case ORB:
            return simp_ORB(t, loop, context);
        case XORB:
            return simp_XORB(t, loop, context);
        case PLUSASG:
        case MINUSASG:
        case MULTASG:
        case ANDBASG:
        case ORBASG:
        case XORBASG:
        case SLLASG:
        case SRLASG:
        case DIVASG:
        case MODASG:
            return simp_opASG(t, loop, context);
        case UMINUS:
        case ABS:
        case NOTB:
        case SQRT:
        case SQR:
            return simp_unary(t, loop, context);
        case UMULT:
            return simp_UMULT(fix_type_info(t), loop, context);
        case UAND:
        case ARGREF:
            return simp_UAND(t, loop, context);
        case QUEST:
            return simp_QUEST(t, loop, context);
        case ANDAND:
            return simp_ANDAND(t, loop, context);
        case OROR:
            return simp_OROR(t, loop, context);
        case EXCLAIM:
            return simp_EXCLAIM(t, loop, context);
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
            return simp_relop(t, loop, context);
        case SWITCH:
            return simp_SWITCH(t, loop, context);
        case IF:
            return simp_IF(t, loop, context);
        case CBRANCH:
            return simp_CBRANCH(t, loop, context);
        case ASG:
            return simp_ASG(t, loop, context);
        case COMMAOP:
            return simp_COMMAOP(t, loop, context);
        case DIV:
            return simp_DIV(t, 0, loop, context);
        case MOD:
            return simp_MOD(t, loop, context);
        case SLL:
        case SRL:
            return simp_shift(t, loop, context);
        case STDOT:
            return simp_STDOT(fix_type_info(t), loop, context);
        case STREF:
            return simp_STREF(fix_type_info(t), loop, context);
        case CALL:
        case UCALL:
        case ICALL:
        case UICALL:
        case MCALL:
        case UMCALL:
            return simp_call(t, loop, context);
        case SCONV:
            return simp_SCONV(t, loop, context);
        case PCONV:
            return simp_PCONV(t, loop, context);
        case ACONV:
            return simp_ACONV(t, loop, context);
        case ASSERT:
        case NASSERT:
            return simp_ASSERT(t, loop, context);
        case MEMCPY:
            return simp_MEMCPY(t, loop, context);
        case COMPLEX:
        case REAL:
        case IMAG:
            return simp_complexop(t, loop, context);
        case EXPT:
            return simp_EXPT(t, loop, context);
        case BRANCH:
            t->type = tp->mk_int(TYPE::ik_int);
            if (t->left)
                t->left->type = t->type;
            t->edge_profile = 0;
            return t;
        case STASG:
            if (!tree_is_arg_prolog(t) && t->left && t->right && t->left->op == t->right->op &&
                !tree_has_side_effects(t->left) && trees_are_congruent(t->left, t->right, 0))
                return replace_by_operand(t, t->right);
            return t;
        case PMCONV:
        case PVCONV: {
            if (!is_icon(t->right))
                return t;
            // The scale is in bits.
            NODE* scale = mk_ICON(icon_of(t->right) / INT65(8), tp->mk_int(TYPE::ik_int));
            erase_tree(t->right);
            t->right = scale;
            if (t->op == PMCONV) {
                t->op = MULT;
                if (t->left->type && t->type && t->left->type->size() != t->type->size())
                    t->left = coerce_to_type(t->type, t->left);
            } else {
                t->op = DIV;
            }
            continue;
        }
        default:
            return t;
        }
    }
}

NODE* simp_tree(NODE* t, LOOP* loop, CONTEXT* context) {
    if (!t)
        return t;
    if (t->op == CSE_DUPE || t->op == CSE_ORIG)
        bad_opcode(t);
    t->left = simp_tree(t->left, loop, context);
    t->right = simp_tree(t->right, loop, context);
    return simp_node(t, loop, context);
}

void simp_all_trees() {
    dprintf("\n\n\t\t\t---------- ENTERING 'simp_all_trees' ----------\n");
    for (BBLK* b = currfuninfo ? currfuninfo->bb_list : nullptr; b; b = b->next)
        for (LIST* l = b->statements; l; l = l->next)
            l->tree = simp_tree(l->tree, nullptr, nullptr);
}
