// Node builders, copy, congruence, erasure and the shared tree predicates.
#include "ir/node.h"

#include <cstdlib>
#include <cstring>

#include "driver/diag.h"
#include "driver/driver.h"
#include "inline/funinfo.h"
#include "ir/bblk.h"
#include "ir/symtab.h"
#include "ir/types.h"
#include "simplify/fold.h"
#include "support/cells.h"
#include "support/simfloat.h"

NODE* new_node(int op, TYPE* type) {
    NODE* n = new NODE{};
    n->op = op;
    n->type = type;
    n->orig_type = type;
    n->edge_profile = 0xFFFFFFFFu;
    n->weight = -1.0;
    new_node_special_cases(n);
    return n;
}

void NODE::mk_name(SYMTAB* s) {
    sym = s;
    if ((s->qual & 0x10) && currfuninfo)
        currfuninfo->uses_cregister = true;
}

void NODE::mk_label(unsigned n) { value = INT65(0, static_cast<long long>(n)); }
void NODE::mk_skip(int n) { value = INT65(n); }

void NODE::mk_call(int index, int id) {
    value = INT65(0, static_cast<long long>(static_cast<unsigned>(index)));
    call_id = id;
    if (currfuninfo)
        currfuninfo->is_leaf = false;
}

void NODE::mk_ucall(int id) {
    call_id = id;
    if (currfuninfo)
        currfuninfo->is_leaf = false;
}

void NODE::mk_icall(const char* name) { sym = strdup(name); }

NODE* maketree(int op, NODE* left, NODE* right, TYPE* type, LS* scope) {
    if (op == SCONV || op == PCONV || op == ACONV)
        type = strip_qualifiers(type);
    NODE* n = new_node(op, type);
    n->left = left;
    n->right = right;
    n->scope = scope;
    return n;
}

NODE* mktree(int op, NODE* left, NODE* right, TYPE* type, SYMTAB* sym, INT65 value) {
    NODE* n = maketree(op, left, right, type, nullptr);
    if (sym)
        n->sym = sym;
    else
        n->value = value;
    return n;
}

NODE* mk_COMMAOP(NODE* a, NODE* b) {
    if (!a)
        return b;
    return maketree(COMMAOP, a, b, b->type, nullptr);
}

NODE* mk_ICALL(const char* name, NODE* args, TYPE* type) {
    NODE* n = maketree(args ? ICALL : UICALL, args, nullptr, type, nullptr);
    n->mk_icall(name);
    return n;
}

NODE* mk_MCALL(const char* name, NODE* args, TYPE* type) {
    NODE* n = maketree(args ? MCALL : UMCALL, args, nullptr, type, nullptr);
    n->mk_icall(name);
    return n;
}

NODE* mk_NAME(SYMTAB* sym, LS* scope) {
    NODE* n = new_node(NAME, sym->type);
    n->mk_name(sym);
    n->scope = scope ? scope : sym->scope;
    return n;
}

// Copying and erasing.

namespace {

// The payloads a node owns besides its children.
void copy_owned_payload(NODE* n) {
    if (n->op == FCON && n->sym)
        n->sym = copy_fval(n->fval());
    if (n->op == FCON && n->text)
        n->text = strdup(n->text);
    if ((n->op == ICALL || n->op == UICALL || n->op == MCALL || n->op == UMCALL) && n->sym)
        n->sym = strdup(n->icall_name());
    if (n->op == SCON && n->text) {
        // Counted, so that embedded NULs survive.
        const char* bytes = n->text;
        n->text = nullptr;
        n->mk_scon(bytes, n->value.low);
    }
    if (n->op == ASM && n->text)
        n->text = strdup(n->text);
    if (n->op == PPRAGMA && n->pragma) {
        const PRAGMA* p = n->pragma;
        char** args = p->nargs ? new char*[p->nargs] : nullptr;
        for (int i = 0; i < p->nargs; i++)
            args[i] = strdup(p->args[i]);
        n->pragma = mk_pragma(p->kind, p->nargs, args, nullptr);
    }
}

void free_owned_payload(NODE* n) {
    if (n->op == FCON && n->sym)
        free_fval(n->fval());
    if (n->op == FCON && n->text)
        free(n->text);
    if ((n->op == ICALL || n->op == UICALL || n->op == MCALL || n->op == UMCALL) && n->sym)
        free(n->sym);
    if ((n->op == SCON || n->op == ASM) && n->text)
        free(n->text);
    if (n->op == PPRAGMA && n->pragma) {
        for (int i = 0; i < n->pragma->nargs; i++)
            free(n->pragma->args[i]);
        delete[] n->pragma->args;
        delete n->pragma;
    }
}

} // namespace

NODE* copy_node(const NODE* t, bool keep_scope) {
    if (!t)
        return nullptr;
    NODE* n = new NODE(*t);
    n->left = n->right = nullptr;
    n->ptenv = nullptr;
    n->dd_info = nullptr;
    n->dd_work[0] = n->dd_work[1] = n->dd_work[2] = 0;
    n->work1 = 0;
    n->flags &= 1;
    if (!keep_scope)
        n->scope = nullptr;
    copy_owned_payload(n);
    return n;
}

NODE* copy_tree(const NODE* t, bool keep_scope) {
    if (!t)
        return nullptr;
    if (t->op == DDNODE)
        return copy_dd_node(t);
    NODE* n = copy_node(t, keep_scope);
    n->left = copy_tree(t->left, keep_scope);
    n->right = copy_tree(t->right, keep_scope);
    return n;
}

namespace {

// Poisons and frees one node. Erasing a node twice is a defect caught here,
// which is why nodes are never pooled.
void free_one_node(NODE* n) {
    if (n->op == ERASED_OP)
        compiler_error("erase_node", " %p", static_cast<void*>(n));
    free_owned_payload(n);
    if (n->dd_info)
        release_dd_info(n);
    if (n->ptenv)
        delete_PTENV(n->ptenv, 1);
    n->op = ERASED_OP;
    n->left = n->right = nullptr;
    delete n;
}

} // namespace

NODE* erase_tree(NODE* t) {
    while (t) {
        if (t->op == ERASED_OP)
            compiler_error("erase_node", " %p", static_cast<void*>(t));
        NODE* left = t->left;
        NODE* right = t->right;
        // A CSE_DUPE's children belong to its CSE_ORIG.
        if (t->op == CSE_DUPE)
            left = right = nullptr;
        erase_tree(right);
        free_one_node(t);
        t = left;
    }
    return nullptr;
}

NODE* erase_node(NODE* t) {
    if (t)
        free_one_node(t);
    return nullptr;
}

// Statement cells.

LIST* mklist(NODE* tree, LIST* next, int a, int b) {
    return new LIST{tree, nullptr, static_cast<int16_t>(a), static_cast<int16_t>(b), next};
}

LIST* mkelist(NODE* tree, LIST* next, PSN* psn) { return new LIST{tree, psn, 0, 0, next}; }

LIST* append_node_to_list(NODE* tree, LIST* list, PSN* psn) {
    LIST* cell = mkelist(tree, nullptr, psn);
    if (!list)
        return cell;
    LIST* last = list;
    while (last->next)
        last = last->next;
    last->next = cell;
    return list;
}

// Predicates.

bool opcode_is_ASG(int op) {
    switch (op) {
    case PLUSASG:
    case MINUSASG:
    case MULTASG:
    case ANDBASG:
    case ORBASG:
    case XORBASG:
    case ASG:
    case DIVASG:
    case MODASG:
    case SLLASG:
    case SRLASG:
        return true;
    default:
        return false;
    }
}

int arg_list_count(const NODE* t) {
    if (!t)
        return 0;
    int n = 1;
    for (; t->op == COMMA; t = t->left)
        n++;
    return n;
}

NODE* arg_list_lookup(NODE* t, int n) {
    const int count = arg_list_count(t);
    if (n < 0 || n >= count)
        return nullptr;
    // Argument count-1 is the outermost right; argument 0 the deepest left.
    for (int i = count - 1; i > n; i--)
        t = t->left;
    return n == 0 ? t : t->right;
}

SYMTAB* get_callee_for_call(const NODE* t) {
    if (!t || (t->op != CALL && t->op != UCALL))
        return nullptr;
    const NODE* f = t->left;
    if (f && f->op == UAND && f->left && f->left->op == NAME)
        return f->left->name_symbol();
    return nullptr;
}

int count_nodes_in_tree(const NODE* t) {
    return t ? 1 + count_nodes_in_tree(t->left) + count_nodes_in_tree(t->right) : 0;
}

int count_calls_in_tree(const NODE* t) {
    if (!t)
        return 0;
    const int self = t->op == CALL || t->op == UCALL ? 1 : 0;
    return self + count_calls_in_tree(t->left) + count_calls_in_tree(t->right);
}

bool sym_appears_in_tree(const SYMTAB* sym, const NODE* t) {
    if (!t)
        return false;
    if (t->op == NAME && t->sym == sym)
        return true;
    return sym_appears_in_tree(sym, t->left) || sym_appears_in_tree(sym, t->right);
}

bool tree_is_subtree_of_tree(const NODE* sub, const NODE* t) {
    if (!t)
        return false;
    return t == sub || tree_is_subtree_of_tree(sub, t->left) ||
           tree_is_subtree_of_tree(sub, t->right);
}

void subst_sym_for_sym_in_tree(SYMTAB* to, SYMTAB* from, NODE* t) {
    for (; t; t = t->left) {
        if (t->op == NAME && t->sym == from)
            t->sym = to;
        subst_sym_for_sym_in_tree(to, from, t->right);
    }
}

bool tree_is_arg_prolog(NODE* t) {
    if (!t)
        return false;
    if (t->op == PCOMMA)
        return true;
    while (t->op == SSA_DEF || t->op == SSA_CHI)
        t = t->left;
    if (t->op != ASG && t->op != STASG)
        return false;
    const auto through_conversions = [](const NODE* n) {
        while (n && (n->op == SCONV || n->op == PCONV || n->op == ISP2CHAR))
            n = n->left;
        if (n && n->op == UMULT && n->left && n->left->op == UAND)
            n = n->left->left;
        return n;
    };
    const NODE* dst = through_conversions(t->left);
    const NODE* src = through_conversions(t->right);
    if (!dst || !src || dst->op != NAME || src->op != NAME)
        return false;
    const SYMTAB* local = dst->name_symbol();
    const SYMTAB* param = src->name_symbol();
    return param->lex == 1 && local->lex == 2 && strcmp(param->name, local->name) == 0;
}

NODE* expunge_IDENTITY_ops_from_tree(NODE* t) {
    if (!t)
        return nullptr;
    while (t->op == IDENTITY) {
        NODE* inner = t->left;
        t->left = nullptr;
        erase_node(t);
        t = inner;
    }
    t->left = expunge_IDENTITY_ops_from_tree(t->left);
    t->right = expunge_IDENTITY_ops_from_tree(t->right);
    return t;
}

int count_lvalues_in_tree(const NODE* t) {
    if (!t)
        return 0;
    const int self = t->op == NAME || t->op == UMULT || t->op == STDOT || t->op == STREF;
    if (t->op == UAND)
        return 0;
    return self + count_lvalues_in_tree(t->left) + count_lvalues_in_tree(t->right);
}

bool tree_references_NAME(const NODE* t) {
    if (!t)
        return false;
    return t->op == NAME || tree_references_NAME(t->left) || tree_references_NAME(t->right);
}

bool expr_is_constant(const NODE* t) {
    if (!t)
        return true;
    switch (t->op) {
    case ICON:
    case FCON:
    case SCON:
    case LCON:
        return true;
    case NAME:
        return false;
    case UAND:
        return t->left && t->left->op == NAME;
    default:
        return side_effects[t->op] == SE_NONE && number_of_operands[t->op] != NONE &&
               number_of_operands[t->op] > 0 && expr_is_constant(t->left) &&
               expr_is_constant(t->right);
    }
}

// Sharing check.

namespace {

int sharing_generation;

int mark_shared(NODE* t, FILE* out) {
    int shared = 0;
    for (; t; t = t->left) {
        if (t->share_mark == sharing_generation) {
            if (out)
                fprintf(out, "\n!!! Node %p (%s) is shared\n", static_cast<void*>(t),
                        node_operator_name[t->op] ? node_operator_name[t->op] : "?");
            return shared + 1;
        }
        t->share_mark = sharing_generation;
        // The CSE pairs share their right side on purpose.
        if (t->op != CSE_DUPE)
            shared += mark_shared(t->right, out);
    }
    return shared;
}

} // namespace

int dupchk(NODE* t) {
    sharing_generation++;
    return mark_shared(t, fdebug);
}

int scan_for_sharing(BBLK* blocks) {
    sharing_generation++;
    int shared = 0;
    for (BBLK* b = blocks; b; b = b->next)
        for (LIST* s = b->statements; s; s = s->next)
            shared += mark_shared(s->tree, fdebug);
    return shared;
}

// Lists of trees.

LIST* erase_tree_list(LIST* l) {
    while (l) {
        LIST* next = l->next;
        erase_tree(l->tree);
        delete l;
        l = next;
    }
    return nullptr;
}

LIST* erase_tree_list_only(LIST* l) { return erase_cells(l); }

LIST* erase_tree_list_to_entry(LIST* l, LIST* last, bool include) {
    while (l && l != last) {
        LIST* next = l->next;
        erase_tree(l->tree);
        delete l;
        l = next;
    }
    if (l && include) {
        LIST* next = l->next;
        erase_tree(l->tree);
        delete l;
        l = next;
    }
    return l;
}

LLIST* mklistlist(LIST* list, LLIST* next) { return new LLIST{list, next}; }
NODELIST* mk_nodelist(NODE* node, NODELIST* next) { return new NODELIST{node, next}; }
NODEPAIRLIST* mk_nodepairlist(NODE* a, NODE* b, NODEPAIRLIST* next) {
    return new NODEPAIRLIST{a, b, next};
}
NODE* nl_left_child(const NODELIST* l) { return l ? l->node : nullptr; }
NODE* list_left_child(const LIST* l) { return l ? l->tree : nullptr; }
NODE* pair_left_child(const NODEPAIRLIST* l) { return l ? l->left : nullptr; }

void NODE::mk_scon(const char* bytes, uint32_t length) {
    text = static_cast<char*>(malloc(length + 1));
    if (length)
        memcpy(text, bytes, length);
    text[length] = '\0';
    value = INT65::from_unsigned(length);
}

void NODE::mk_lcon(const char* digits) {
    const bool negative = *digits == '-';
    if (negative)
        digits++;
    INT65 v;
    for (; *digits >= '0' && *digits <= '9'; digits++)
        v = v * INT65(10) + INT65(*digits - '0');
    value = negative ? -v : v;
}

namespace {

bool is_static_storage(const SYMTAB* s) {
    // Definitions, file statics and external declarations have fixed addresses.
    return s && (s->sclass == 2 || s->sclass == 3 || s->sclass == 5);
}

const NODE* skip_pointer_conversions(const NODE* t) {
    while (t && (t->op == PCONV || t->op == ISP2CHAR))
        t = t->left;
    return t;
}

} // namespace

bool pointer_is_an_adcon(const NODE* t) {
    t = skip_pointer_conversions(t);
    if (!t)
        return false;
    if (t->op == UAND)
        return t->left && t->left->op == NAME && is_static_storage(t->left->name_symbol());
    if (t->op == PLUS || t->op == MINUS) {
        if (t->right && t->right->op == ICON)
            return pointer_is_an_adcon(t->left);
        if (t->op == PLUS && t->left && t->left->op == ICON)
            return pointer_is_an_adcon(t->right);
    }
    return false;
}

INT65 total_pointer_offset_value(const NODE* t) {
    t = skip_pointer_conversions(t);
    if (!t)
        return INT65();
    if (t->op == PLUS && t->right && t->right->op == ICON)
        return total_pointer_offset_value(t->left) + t->right->value;
    if (t->op == PLUS && t->left && t->left->op == ICON)
        return t->left->value + total_pointer_offset_value(t->right);
    if (t->op == MINUS && t->right && t->right->op == ICON)
        return total_pointer_offset_value(t->left) - t->right->value;
    return INT65();
}

bool expr_is_globally_evaluable(const NODE* t) {
    if (!t)
        return true;
    switch (t->op) {
    case ICON:
    case LCON:
    case FCON:
    case SCON:
        return true;
    case UAND:
        return pointer_is_an_adcon(t);
    case NAME:
        return false;
    default:
        if (side_effects[t->op] != SE_NONE || number_of_operands[t->op] == NONE ||
            number_of_operands[t->op] == 0)
            return false;
        return expr_is_globally_evaluable(t->left) && expr_is_globally_evaluable(t->right);
    }
}

// The value as the target holds it: whatever the text read, the text written
// is made from the value.
void NODE::mk_fcon(const char* digits) {
    const int saved = fp_error;
    simul_fval v;
    f_atof(digits, &v);
    truncate_fval_to_target(&v, type);
    fp_error = saved;
    free(text);
    text = nullptr;
    free_fval(fval());
    sym = copy_fval(&v);
}

const char* NODE::fcon_value() const {
    if (!text && fval()) {
        const int saved = fp_error;
        truncate_fval_to_target(fval(), type);
        fp_error = saved;
        char buf[F_FTOA_BUFSIZE];
        f_ftoa(buf, "%a", fval());
        const_cast<NODE*>(this)->text = strdup(buf);
    }
    return text;
}
