// Statement sequencing: before the blocks are built, every statement is made
// a straight tree. Sequences at statement level become statements of their
// own, and a short circuit (&&, ||, ?:) whose conditional part has an effect
// becomes a test with labels and jumps, so that later passes see every effect
// of a statement happen whenever the statement runs.
//
// A short circuit inside a larger statement is taken out by copying the
// statement into both arms of a test of the short circuit's condition:
// `y = g + (a && f())` becomes `if (a) y = g + (f() != 0); else y = g + 0`.
// That keeps every evaluation in its order except the condition's, which now
// comes before what the statement evaluated ahead of the short circuit; so
// either that part or the condition must be free of effects. Where neither
// holds, or the statement is too large to copy, the statement stays as it is:
// the trees keep their meaning, they are only less straight.
#include <tuple>
#include <utility>
#include <vector>

#include "driver/driver.h"
#include "inline/funinfo.h"
#include "ir/bblk.h"
#include "ir/ir.h"
#include "ir/node.h"
#include "ir/symtab.h"
#include "ir/types.h"
#include "scalar/scalar.h"
#include "simplify/simp_internal.h"

namespace {

// A statement is copied into both arms of a test only up to this size, and
// one source statement gives at most this many copies, so that a chain of
// short circuits cannot blow up the function.
constexpr int max_copied_nodes = 96;
constexpr int max_copies = 8;

bool is_short_circuit(int op) { return op == ANDAND || op == OROR || op == QUEST; }

// The part of a short circuit that runs for one value of its test only.
bool conditional_part_has_effects(const NODE* t) {
    if (t->op == QUEST) {
        const NODE* colon = t->right;
        return colon && colon->op == COLON &&
               (tree_has_side_effects(colon->left) || tree_has_side_effects(colon->right));
    }
    return tree_has_side_effects(t->right);
}

bool is_expandable(const NODE* t) {
    return t && is_short_circuit(t->op) && t->left && t->right && conditional_part_has_effects(t);
}

bool is_assignment(int op) { return op == ASG || op == STASG || op == ARASG; }

// Statements that are no expressions: they are never copied.
bool is_fixed_statement(const NODE* t) {
    switch (t->op) {
    case LABELDEF:
    case BRANCH:
    case ASSERT:
    case NASSERT:
    case URETURN:
    case PPRAGMA:
    case ASM:
        return true;
    default:
        return tree_is_arg_prolog(const_cast<NODE*>(t));
    }
}

bool has_exception_calls(const NODE* t) {
    if (!t)
        return false;
    if ((t->op == CALL || t->op == UCALL) && t->call_id != 0)
        return true;
    return has_exception_calls(t->left) || has_exception_calls(t->right);
}

// What is known of the evaluation in front of the short circuit found.
struct Search {
    std::vector<bool> path; // true: right child
    bool effects_before = false;
    bool reads_before = false;
};

// The slot of the first expandable short circuit in evaluation order (an
// assignment evaluates its value before its target), not counting those
// inside the conditional part of another; null when there is none.
NODE** find_first_expandable(NODE** slot, Search& s) {
    NODE* t = *slot;
    if (!t)
        return nullptr;
    if (is_expandable(t))
        return slot;
    if (is_short_circuit(t->op)) {
        s.path.push_back(false);
        if (NODE** found = find_first_expandable(&t->left, s))
            return found;
        s.path.pop_back();
        return nullptr;
    }
    const bool right_first = is_assignment(t->op);
    NODE** first = right_first ? &t->right : &t->left;
    NODE** second = right_first ? &t->left : &t->right;
    s.path.push_back(right_first);
    if (NODE** found = find_first_expandable(first, s))
        return found;
    s.path.pop_back();
    if (*first) {
        s.effects_before |= tree_has_side_effects(*first);
        s.reads_before |= !expr_is_constant(*first);
    }
    s.path.push_back(!right_first);
    if (NODE** found = find_first_expandable(second, s))
        return found;
    s.path.pop_back();
    return nullptr;
}

// The two arms of a ?:, its COLON freed.
std::pair<NODE*, NODE*> take_arms(NODE* colon) {
    std::pair<NODE*, NODE*> arms{colon->left, colon->right};
    colon->left = colon->right = nullptr;
    erase_node(colon);
    return arms;
}

NODE** follow(NODE** slot, const std::vector<bool>& path) {
    for (bool right : path)
        slot = right ? &(*slot)->right : &(*slot)->left;
    return slot;
}

NODE* int_constant(int value, TYPE* type) {
    return coerce_to_type(type, mk_ICON(INT65(value), tp->mk_int(TYPE::ik_int)));
}

class Sequencer {
  public:
    Sequencer(std::vector<std::pair<NODE*, PSN*>>& out, PSN* psn) : out(out), psn(psn) {}

    // t is a statement whose value is not used.
    void statement(NODE* t) {
        while (t) {
            switch (t->op) {
            case COMMAOP: {
                NODE* first = t->left;
                NODE* rest = t->right;
                t->left = t->right = nullptr;
                erase_node(t);
                statement(peel_for_effect(first));
                t = peel_for_effect(rest);
                continue;
            }
            case IF:
                if (is_expandable(t->left) && t->right && t->right->op == COLON &&
                    t->right->left && t->right->right) {
                    const int yes = t->right->left->label_value();
                    const int no = t->right->right->label_value();
                    LS* scope = t->scope;
                    NODE* test = t->left;
                    t->left = nullptr;
                    erase_tree(t);
                    emit_test(test, yes, no, scope);
                    return;
                }
                [[fallthrough]];
            case SWITCH:
                if (hoist_sequence(t->left))
                    continue;
                break;
            case RETURN:
                if (hoist_sequence(t->right))
                    continue;
                break;
            case ANDAND:
            case OROR:
            case QUEST:
                if (is_expandable(t)) {
                    expand_at_root(t);
                    return;
                }
                break;
            default:
                break;
            }
            if (!distribute(t))
                emit(t);
            return;
        }
    }

  private:
    std::vector<std::pair<NODE*, PSN*>>& out;
    PSN* psn;
    int copies = 0;

    // A sequence as the value a statement uses: what comes before the value
    // goes ahead as statements of its own.
    bool hoist_sequence(NODE*& value) {
        if (!value || value->op != COMMAOP)
            return false;
        NODE* seq = value;
        value = seq->right;
        statement(peel_for_effect(seq->left));
        seq->left = seq->right = nullptr;
        erase_node(seq);
        return true;
    }

    void emit(NODE* t) {
        if (t)
            out.emplace_back(t, psn);
    }

    static LBL* new_label() { return mklabel(0, nullptr, nullptr); }
    static NODE* ref(int number, LS* scope) { return mk_LABELREF(number, scope); }

    void emit_label(LBL* l) { emit(mk_LABELDEF(l)); }

    // if (test) goto yes; else goto no. A short circuit with effects in its
    // conditional part becomes a test of each operand.
    void emit_test(NODE* test, int yes, int no, LS* scope) {
        test = simp_for_control(test, nullptr, nullptr);
        if (!is_expandable(test)) {
            statement(simp_node(mk_IF(test, ref(yes, scope), ref(no, scope), scope), nullptr,
                                nullptr));
            return;
        }
        NODE* left = test->left;
        NODE* right = test->right;
        test->left = test->right = nullptr;
        const int op = test->op;
        erase_node(test);
        LBL* mid = new_label();
        switch (op) {
        case ANDAND:
            emit_test(left, mid->number, no, scope);
            emit_label(mid);
            emit_test(right, yes, no, scope);
            break;
        case OROR:
            emit_test(left, yes, mid->number, scope);
            emit_label(mid);
            emit_test(right, yes, no, scope);
            break;
        default: {
            LBL* other = new_label();
            auto [x, y] = take_arms(right);
            emit_test(left, mid->number, other->number, scope);
            emit_label(mid);
            emit_test(x, yes, no, scope);
            emit_label(other);
            emit_test(y, yes, no, scope);
            break;
        }
        }
    }

    void emit_jump(const LBL* to, LS* scope) {
        emit(maketree(BRANCH, ref(to->number, scope), nullptr, tp->mk_void(), scope));
    }

    // `a && b;`, `a || b;`, `c ? x : y;` as statements.
    void expand_at_root(NODE* t) {
        LS* scope = t->scope;
        NODE* test = t->left;
        NODE* right = t->right;
        t->left = t->right = nullptr;
        const int op = t->op;
        erase_node(t);
        LBL* join = new_label();
        LBL* then = new_label();
        if (op == QUEST) {
            LBL* other = new_label();
            auto [x, y] = take_arms(right);
            emit_test(test, then->number, other->number, scope);
            emit_label(then);
            statement(peel_for_effect(x));
            emit_jump(join, scope);
            emit_label(other);
            statement(peel_for_effect(y));
        } else {
            if (op == ANDAND)
                emit_test(test, then->number, join->number, scope);
            else
                emit_test(test, join->number, then->number, scope);
            emit_label(then);
            statement(peel_for_effect(right));
        }
        emit_label(join);
    }

    // A short circuit inside the statement: the statement is copied into
    // both arms of a test of its condition. False when it stays as it is.
    bool distribute(NODE* t) {
        if (is_fixed_statement(t) || copies >= max_copies ||
            count_nodes_in_tree(t) > max_copied_nodes || has_exception_calls(t))
            return false;
        Search s;
        NODE* root = t;
        NODE** slot = find_first_expandable(&root, s);
        if (!slot || s.effects_before)
            return false;
        NODE* n = *slot;
        if (s.reads_before && tree_has_side_effects(n->left))
            return false;
        copies += 2;
        NODE* other = copy_tree(root, true);
        NODE** other_slot = follow(&other, s.path);
        erase_tree(*other_slot);
        NODE* test = n->left;
        NODE* right = n->right;
        TYPE* type = n->type;
        LS* scope = t->scope;
        n->left = n->right = nullptr;
        NODE* yes;
        NODE* no;
        switch (n->op) {
        case ANDAND:
            yes = coerce_to_type(type, make_boolean(right, nullptr, nullptr));
            no = int_constant(0, type);
            break;
        case OROR:
            yes = int_constant(1, type);
            no = coerce_to_type(type, make_boolean(right, nullptr, nullptr));
            break;
        default:
            std::tie(yes, no) = take_arms(right);
            if (yes->type != type && type->is_scalar())
                yes = coerce_to_type(type, yes);
            if (no->type != type && type->is_scalar())
                no = coerce_to_type(type, no);
            break;
        }
        erase_node(n);
        *slot = yes;
        *other_slot = no;
        LBL* then = new_label();
        LBL* otherwise = new_label();
        LBL* join = new_label();
        emit_test(test, then->number, otherwise->number, scope);
        emit_label(then);
        statement(simp_tree(root, nullptr, nullptr));
        emit_jump(join, scope);
        emit_label(otherwise);
        statement(simp_tree(other, nullptr, nullptr));
        emit_label(join);
        return true;
    }
};

} // namespace

bool quest_colon_is_strict(NODE* quest, NODE* colon) {
    if (!quest || !colon || colon->op != COLON)
        return false;
    return !rhs_may_need_guard_in_lhs(quest->left, colon->left) &&
           !rhs_may_need_guard_in_lhs(quest->left, colon->right);
}

void promote_tree(NODE* tree, LIST* cell) {
    if (NODE* rest = peel_for_effect(tree))
        cell->next = mkelist(rest, cell->next, cell->psn);
}

NODE* convert_STASG_to_asgs(NODE* tree, int keep_comma) {
    if (!tree || tree->op != STASG || !tree->left || !tree->right)
        return tree;
    TYPE* type = tree->left->type;
    if (!type || !type->is_csu() || type_is_volatile(type) || type_is_volatile(tree->right->type) ||
        tree_has_side_effects(tree->left) || tree_has_side_effects(tree->right) ||
        count_calls_in_tree(tree->right) != 0)
        return tree;
    // A union's members overlap: copying them one by one is no copy.
    if (!type->is_struct() && !type->is_class())
        return tree;
    fkMDATA* members = type->members();
    if (!members)
        return tree;
    NODE* result = nullptr;
    for (fkMDATA* m = members; m; m = m->next) {
        if (m->is_bitfield && m->width == 0)
            continue;
        const auto access = [&](NODE* object) {
            NODE* field = new_node(FIELD, m->type);
            field->mk_field(1, m, type);
            return maketree(STDOT, copy_tree(object, true), field, m->type, tree->scope);
        };
        NODE* to = access(tree->left);
        NODE* from = access(tree->right);
        NODE* one = mk_ASG(to, from);
        one->scope = tree->scope;
        if (one->op == STASG)
            one = convert_STASG_to_asgs(one, keep_comma);
        result = !result ? one
                         : maketree(keep_comma ? COMMA : COMMAOP, result, one, one->type,
                                    tree->scope);
    }
    erase_tree(tree);
    return result;
}

void seq_trees() {
    propagate_global_constants(currfuninfo->stmts);
    // The list runs last statement first; it is walked in source order and
    // built again in the same reversed order.
    std::vector<LIST*> cells;
    for (LIST* l = currfuninfo->stmts; l; l = l->next)
        cells.push_back(l);
    std::vector<std::pair<NODE*, PSN*>> out;
    out.reserve(cells.size());
    for (auto it = cells.rbegin(); it != cells.rend(); ++it) {
        LIST* cell = *it;
        NODE* t = cell->tree;
        cell->tree = nullptr;
        if (!t) {
            out.emplace_back(nullptr, cell->psn);
            continue;
        }
        Sequencer(out, cell->psn).statement(t);
    }
    erase_tree_list_only(currfuninfo->stmts);
    LIST* list = nullptr;
    for (auto& [tree, psn] : out)
        list = mkelist(tree, list, psn);
    currfuninfo->stmts = list;
}

bool tree_has_expandable_short_circuit(const NODE* t) {
    return t && (is_expandable(t) || tree_has_expandable_short_circuit(t->left) ||
                 tree_has_expandable_short_circuit(t->right));
}
