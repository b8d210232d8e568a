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
    if (t->op != CALL && t->op != UCALL)
        return nullptr;
    const SYMTAB* f = get_callee_for_call(t);
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

bool is_pointer(const NODE* t) { return t && t->type && t->type->is_pointer(); }

// memcpy(to, from, n) as the block copy MEMCPY(to, from, n), whose value is
// to. Each argument keeps its value: an argument conversion becomes the
// plain conversion it is.
NODE* memcpy_to_MEMCPY(NODE* t) {
    if (t->op != CALL || t->call_id != 0 || arg_list_count(t->right) != 3 || !is_pointer(t))
        return t;
    NODE* to = arg_list_lookup(t->right, 0);
    NODE* from = arg_list_lookup(t->right, 1);
    NODE* size = arg_list_lookup(t->right, 2);
    if (!is_pointer(to) || !is_pointer(from) || !size || !is_integer_type(size->type))
        return t;
    const auto plain = [](NODE* arg) {
        if (arg->op != ACONV)
            return arg;
        arg->op = arg->type->is_pointer() ? PCONV : SCONV;
        return simp_node(arg, nullptr, nullptr);
    };
    // The list leans left: COMMA(COMMA(to, from), n).
    NODE* args = t->right;
    args->right = plain(args->right);
    args->left->right = plain(args->left->right);
    args->left->left = plain(args->left->left);
    erase_tree(t->left);
    t->op = MEMCPY;
    t->left = args;
    t->right = nullptr;
    return t;
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
    if (strcmp(name, "memcpy") == 0)
        return memcpy_to_MEMCPY(t);
    // The rewrites of strcpy, memmove and printf need a string literal as an
    // operand, which our trees never hold: a literal is an object.
    if (strcmp(name, "strlen") == 0)
        return fold_strlen(t);
    return t;
}
