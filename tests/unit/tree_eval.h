// Building small integer trees and computing their values, for the tests of
// the simplifier and the value queries: a rewrite or a query is checked
// against the value of the tree for given values of its names.
#pragma once

#include <gtest/gtest.h>

#include <cstring>
#include <deque>
#include <map>

#include "ir/node.h"
#include "ir/symtab.h"
#include "ir/types.h"
#include "simplify/simplify.h"

namespace tree_eval {

inline TYPE* int_kind(TYPE::IKIND k, bool explicit_sign = false) {
    if (!tp) {
        tp = new TYPE_PKG;
        init_types();
    }
    return tp->mk_int(k, explicit_sign);
}

// Symbols outlive the trees that name them; the tests keep them all.
inline SYMTAB* symbol(const char* name, TYPE* type) {
    static auto* symbols = new std::deque<SYMTAB>;
    SYMTAB* s = &symbols->emplace_back();
    s->name = strdup(name);
    s->type = type;
    return s;
}

inline NODE* node(int op, NODE* l, NODE* r, TYPE* t) { return maketree(op, l, r, t, nullptr); }
inline NODE* conv(TYPE* t, NODE* x) { return maketree(SCONV, x, nullptr, t, nullptr); }
inline NODE* name(SYMTAB* s) { return mk_NAME(s, nullptr); }

using ENV = std::map<const SYMTAB*, INT65>;

// The tree's value for given values of its names, node by node through the
// folder (whose results the folding tests check against the target).
inline INT65 evaluate(const NODE* t, const ENV& env) {
    switch (t->op) {
    case NAME:
        return env.at(t->name_symbol());
    case ICON:
        return truncate_to_type(t->value, t->type);
    case COMMAOP:
        return evaluate(t->right, env);
    case QUEST:
        return evaluate(evaluate(t->left, env).is_zero() ? t->right->right : t->right->left, env);
    default:
        break;
    }
    NODE* n = copy_node(t, false);
    if (t->left)
        n->left = mk_ICON(evaluate(t->left, env), t->left->type);
    if (t->right)
        n->right = mk_ICON(evaluate(t->right, env), t->right->type);
    n = fold_constants(n);
    EXPECT_EQ(n->op, ICON) << node_operator_name[t->op];
    const INT65 v = truncate_to_type(n->value, n->type);
    erase_tree(n);
    return v;
}

} // namespace tree_eval
