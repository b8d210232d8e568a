// Rewrites of calls: sequences out of the callee, and calls of library
// functions whose result is known from constant arguments.
#include <cstring>

#include "driver/options.h"
#include "ir/symtab.h"
#include "simplify/simp_internal.h"

namespace {

// The string a pointer argument names directly, or null.
const NODE* string_argument(const NODE* arg) {
    while (arg && (arg->op == ACONV || arg->op == PCONV || arg->op == ISP2CHAR))
        arg = arg->left;
    return arg && arg->op == SCON ? arg : nullptr;
}

// The callee of a direct call of a library function that behaves as the
// standard says: its name without the prefix, or null.
const char* standard_callee(const NODE* t) {
    if ((t->op != CALL && t->op != UCALL) || !t->left || t->left->op != NAME)
        return nullptr;
    const SYMTAB* f = t->left->name_symbol();
    if (!f || !f->name || func_is_nonconforming(f))
        return nullptr;
    return skip_name_prefix(f->name);
}

// strlen of a constant string stops at its first NUL, wherever that is.
NODE* fold_strlen(NODE* t) {
    if (arg_list_count(t->right) != 1 || !t->type || !TYPE_IS_INT(t->type))
        return t;
    const NODE* s = string_argument(arg_list_lookup(t->right, 0));
    if (!s || !s->scon_value())
        return t;
    const char* bytes = s->scon_value();
    const uint32_t length = s->scon_length();
    const void* nul = memchr(bytes, 0, length);
    if (!nul)
        return t; // not terminated within the literal: the call reads past it
    const auto n = static_cast<long long>(static_cast<const char*>(nul) - bytes);
    NODE* c = mk_ICON(INT65(n), t->type);
    c->scope = t->scope;
    erase_tree(t);
    return c;
}

} // namespace

NODE* simp_call(NODE* t, LOOP* loop, CONTEXT* context) {
    // (a, f)(args) is (a, f(args)).
    if (t->left && t->left->op == COMMAOP) {
        NODE* seq = t->left;
        t->left = seq->right;
        seq->right = simp_call(t, loop, context);
        seq->type = seq->right->type;
        return seq;
    }
    if (opt_level() == 0)
        return t;
    switch (t->op) {
    case ICALL:
    case UICALL:
    case MCALL:
    case UMCALL:
        return simp_ICALL(t, loop, context);
    default:
        break;
    }
    const char* name = standard_callee(t);
    if (!name)
        return t;
    // Copies and output stay calls: the block copy has no form the file
    // carries, and a string argument is never a literal in our trees.
    if (strcmp(name, "strlen") == 0)
        return fold_strlen(t);
    return t;
}
