// The optimizer's callbacks from the reader of the input file: they build each
// function's symbols, statements and blocks and append it to `functions`.
#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <map>

#include "alias/alias.h"
#include "driver/client.h"
#include "driver/diag.h"
#include "driver/driver.h"
#include "driver/options.h"
#include "ifile/ifile.h"
#include "ifile/write.h"
#include "inline/funinfo.h"
#include "inline/inline.h"
#include "ir/bblk.h"
#include "ir/ir.h"
#include "ir/node.h"
#include "ir/symtab.h"
#include "ir/types.h"
#include "scalar/scalar.h"
#include "simplify/simplify.h"
#include "ssa/ssa.h"

char curr_file[2048];
int unique_call_index;
int arg_offset;
int output_index;
bool client_reads_only;

namespace {

constexpr int PRAGMA_OPT_OVERRIDE = 36;
constexpr unsigned char ASM_KIND_ASSEMBLY = 36;
constexpr unsigned char ASM_KIND_COMMENT = 47;
constexpr uint32_t FUN_CPP = 0x80000000u;
constexpr uint32_t FUN_HAS_PARAM_27 = 0x40022;
constexpr uint32_t FUN_QUAL_0X20 = 0x2000;

std::map<FUNINFO*, std::vector<EHT_ENTRY>> eht_tables;
// Ordinal of the symbols read, counted anew in each function.
uint32_t symbol_ordinal;

// Storage classes whose address, once taken, the function must know about.
constexpr uint32_t address_taken_classes = 0x420212;

void mark_address_taken(const NODE* t) {
    const NODE* n = t->left;
    while (n && n->op == STDOT)
        n = n->left;
    if (!n || n->op != NAME || !n->name_symbol() || !currfuninfo)
        return;
    const unsigned sclass = n->name_symbol()->sclass;
    if (sclass < 32 && ((address_taken_classes >> sclass) & 1))
        currfuninfo->address_taken = true;
}

// A conversion of an argument that only restates its operand's type is
// dropped: the operand's type replaces the conversion's.
void adopt_operand_type(NODE* arg) {
    if ((arg->op != PCONV && arg->op != ACONV) || !arg->left || !arg->left->type || !arg->type)
        return;
    TYPE* from = arg->left->type;
    const unsigned char added = from->qual_kind() & ~arg->type->qual_kind();
    if ((added & (TQ_CONST | TQ_VOLATILE)) == 0 && compatible_types(arg->type, from, false))
        arg->type = from;
}

// Integer arguments are passed converted to their own type.
NODE* wrap_integer_argument(NODE* arg) {
    if (!arg->type || arg->op == ACONV || !(arg->type->is_integral() || arg->type->is_enum()))
        return arg;
    return maketree(ACONV, arg, nullptr, arg->type, arg->scope);
}

void rewrite_call_arguments(NODE* call) {
    NODE** slot = &call->right;
    // The chain leans left: each COMMA's right is one argument.
    while (*slot && (*slot)->op == COMMA) {
        NODE* comma = *slot;
        adopt_operand_type(comma->right);
        comma->right = wrap_integer_argument(comma->right);
        slot = &comma->left;
    }
    if (*slot) {
        adopt_operand_type(*slot);
        *slot = wrap_integer_argument(*slot);
    }
}

// A member-pointer offset counts bits; the address arithmetic counts bytes.
NODE* pmconv_to_mult(NODE* t) {
    if (!t->right || t->right->op != ICON || !t->left)
        return t;
    NODE* scale = t->right;
    scale->value = scale->value / INT65(8);
    if (t->left->type && t->type && t->left->type->size() != t->type->size())
        t->left = maketree(SCONV, t->left, nullptr, t->type, t->scope);
    t->op = MULT;
    return t;
}

// On file a test is CBRANCH(test, LABEL L): go to L, else fall through. In
// memory it is an IF with both targets, so that it ends a block with two
// successors; the fall-through gets a label of its own where it has none.
// The list runs last statement first, so the statement after a cell is the
// cell before it.
void cbranches_to_ifs() {
    LIST* after = nullptr;
    for (LIST** slot = &currfuninfo->stmts; *slot; slot = &(*slot)->next) {
        LIST* cell = *slot;
        NODE* t = cell->tree;
        if (t && t->op == CBRANCH && t->right && t->right->op == LABEL) {
            int fall_through;
            if (after && after->tree && after->tree->op == LABELDEF) {
                fall_through = after->tree->label_value();
            } else if (after && after->tree && after->tree->op == BRANCH && after->tree->left &&
                       after->tree->left->op == LABEL) {
                // The writer's own shape, CBRANCH then BRANCH: the jump is the
                // else target, and is left behind unreachable. Reading a
                // written file back then gives the blocks it was written from.
                fall_through = after->tree->left->label_value();
            } else {
                LBL* label = mklabel(0, nullptr, nullptr);
                fall_through = label->number;
                NODE* def = mk_LABELDEF(label);
                def->scope = t->scope;
                // The new label goes between this statement and the next.
                *slot = mkelist(def, cell, nullptr);
                slot = &(*slot)->next;
            }
            NODE* taken = t->right;
            NODE* test = t->left;
            t->left = t->right = nullptr;
            NODE* branch = mk_IF(test, taken, mk_LABELREF(fall_through, t->scope), t->scope);
            branch->edge_profile = t->edge_profile;
            erase_node(t);
            cell->tree = branch;
        }
        after = cell;
    }
}

// Applies fn to every node of the tree, children first.
template <class FN> void for_each_node(NODE* t, FN fn) {
    if (!t)
        return;
    for_each_node(t->left, fn);
    for_each_node(t->right, fn);
    fn(t);
}

template <class FN> void for_each_statement_node(FN fn) {
    for (LIST* l = currfuninfo->stmts; l; l = l->next)
        for_each_node(l->tree, fn);
}

bool is_call(const NODE* t) { return t->op == CALL || t->op == UCALL; }

TYPE* without_enum(TYPE* t) {
    if (!t || !t->is_enum())
        return t;
    return tp->mk_qual(normalized_underlying_type(t), t->qual_kind());
}

bool arg_is(const PRAGMA* p, int n, const char* text) {
    return p->nargs > n && p->args[n] && strcmp(p->args[n], text) == 0;
}

bool visibility_is_default_or_extern(const PRAGMA* p) {
    return arg_is(p, 0, "default") || arg_is(p, 0, "extern");
}

bool visibility_is_outside(const PRAGMA* p) {
    return visibility_is_default_or_extern(p) || arg_is(p, 0, "protected");
}

// The facts pragmas of a function's symbol give its FUNINFO.
void process_function_pragma(SYMTAB* sym, PRAGMA* p) {
    FUNINFO* f = make_FUNINFO(skip_name_prefix(sym->name));
    // Facts of system functions count only when they are cached and the
    // function keeps to the standard.
    const bool trusted = cache_sys_funinfo && !func_is_nonconforming(sym);
    switch (p->kind) {
    case PRAGMA_SRC_LANGUAGE:
        if (arg_is(p, 0, "C++")) {
            f->flags |= FUN_CPP;
            if (fileinfo.pass_number == 1)
                init_FUNINFO_flags(f);
        }
        break;
    case 3:
        if (trusted)
            f->flags |= 0x8;
        break;
    case 5:
        if (trusted)
            f->flags |= 0x80;
        break;
    case 6:
        if (trusted)
            f->flags |= 0x400000;
        break;
    case 7:
        if (trusted)
            f->flags |= 0x20000;
        break;
    case 8:
        if (trusted)
            f->flags |= 0x10000000;
        break;
    case PRAGMA_FUNC_IS_NONCONFORMING:
        if (!func_is_nonconforming(sym))
            nonconforming_functions = mk_symlist(sym, nonconforming_functions);
        f->flags = 0;
        break;
    case PRAGMA_SYM_VISIBILITY:
        if (visibility_is_default_or_extern(p))
            f->flags |= 0x220;
        if (visibility_is_outside(p)) {
            f->flags |= 0x1040202;
            no_outside_callers = 0;
        }
        break;
    case PRAGMA_FUNC_SYNONYM:
        f->flags |= 0x40000;
        if (p->nargs >= 1 && p->args[0]) {
            FUNINFO* target = make_FUNINFO(skip_name_prefix(p->args[0]));
            target->flags |= 0x40000;
            if (arg_is(p, 1, "1")) {
                f->flags |= 0x800;
                target->flags |= 0x200;
                fileinfo.synonym_functions = mkFUNLIST(f, fileinfo.synonym_functions);
                if (sym->type)
                    f->result_type = sym->type->return_type();
            }
        }
        break;
    case 23:
    case PRAGMA_SYM_IS_REFERENCED:
    case 95:
        f->flags |= 0x200;
        break;
    case 4:
    case 83:
        f->flags |= 0x222;
        break;
    case PRAGMA_FUNC_ESPEC:
        if (!(p->nargs >= 2 && arg_is(p, 1, "0")))
            f->flags |= 0x222;
        break;
    default:
        break;
    }
}

// Renumbers the exception table links and the call ids of the statements by
// the entries' places after sorting.
void renumber_eht(std::vector<EHT_ENTRY>& table) {
    std::sort(table.begin(), table.end(),
              [](const EHT_ENTRY& a, const EHT_ENTRY& b) { return a.first < b.first; });
    const uint32_t largest = table.back().first;
    std::vector<int> place(largest + 1, -1);
    for (size_t i = 0; i < table.size(); i++)
        place[table[i].first] = static_cast<int>(i);
    auto map = [&](uint32_t old) {
        OPTASSERT(old <= largest && place[old] >= 0);
        return static_cast<uint32_t>(place[old]);
    };
    for (EHT_ENTRY& e : table) {
        e.second = map(e.second);
        // The third number of a catch entry is its clause count, not a link.
        if (e.kind != EHT_CATCHES)
            e.third = map(e.third);
    }
    for_each_statement_node([&](NODE* t) {
        if (is_call(t))
            t->call_id = static_cast<int32_t>(map(static_cast<uint32_t>(t->call_id)));
    });
}

// The label number of a LOOP statement: its LABEL child.
NODE* loop_label_child(NODE* t) {
    if (t->left && t->left->op == LABEL)
        return t->left;
    if (t->right && t->right->op == LABEL)
        return t->right;
    return nullptr;
}

NODE* cleanup_node(NODE* t) {
    if (t->type && t->type->is_enum())
        t->type = without_enum(t->type);
    if (t->op > IMAG)
        return t;
    switch (t->op) {
    case NAME:
        if (t->name_symbol())
            t->sym = get_sym_def_for_decl(t->name_symbol());
        return t;
    case LOOP_OP: {
        NODE* label = loop_label_child(t);
        NODE* other = label == t->left ? t->right : t->left;
        // What the loop head holds besides its label must not be lost.
        if (!label || (other && tree_has_side_effects(other)))
            return t;
        NODE* def = mk_LABELDEF(mklabel(label->label_value(), nullptr, nullptr));
        def->scope = t->scope;
        erase_tree(t);
        return def;
    }
    case ENDLOOP: {
        if (!t->left || !t->right || t->right->op != LABEL)
            return t;
        NODE* counter = t->left;
        TYPE* ct = counter->type;
        NODE* dec = maketree(MINUSASG, counter, mk_ICON(INT65(1), ct), ct, t->scope);
        NODE* test = maketree(LT, dec, mk_ICON(INT65(0), ct), tp->mk_int(TYPE::ik_int), t->scope);
        NODE* branch = maketree(CBRANCH, test, t->right, t->type, t->scope);
        t->left = t->right = nullptr;
        erase_node(t);
        return branch;
    }
    case EPVAL: {
        NODE* child = t->left;
        if (!child)
            return t;
        child->set_edge_profile_value(t->get_edge_profile_value());
        t->left = nullptr;
        erase_node(t);
        return child;
    }
    case UAND:
        mark_address_taken(t);
        return t;
    case CALL:
        rewrite_call_arguments(t);
        return t;
    case SCONV:
        if (t->type && t->type->is_vector()) {
            OPTASSERT(t->left && t->left->type && t->left->type->is_vector());
            t->op = VSCONV;
        }
        return t;
    case PMCONV:
        return pmconv_to_mult(t);
    case CBRANCH:
        return convert_CBRANCH_with_builtin_expect(t);
    case NASSERT:
        // An assertion must not have an effect of its own.
        if (tree_has_side_effects(t->left)) {
            erase_tree(t);
            return mk_ICON(INT65(0), tp->mk_int(TYPE::ik_int));
        }
        return t;
    case ASSERT: {
        NODE* pair = t->left;
        if (!pair || t->right)
            return t;
        t->left = pair->left;
        t->right = pair->right;
        pair->left = pair->right = nullptr;
        erase_node(pair);
        t->dd_info = nullptr;
        return t;
    }
    default:
        return t;
    }
}

} // namespace

std::vector<EHT_ENTRY>& function_eht(FUNINFO* f) { return eht_tables[f]; }

NODE* expr_cleanup(NODE* t) {
    if (!t)
        return t;
    t->left = expr_cleanup(t->left);
    t->right = expr_cleanup(t->right);
    return cleanup_node(t);
}

void opt_process_pragma(SYMTAB* sym, PRAGMA* p) {
    OPTASSERT(p->kind != PRAGMA_OPT_OVERRIDE);
    if (!sym)
        return;
    if (p->kind == PRAGMA_SYM_IS_REFERENCED)
        sym->qual |= SQ_PINNED;
    if (sym_is_function(sym)) {
        process_function_pragma(sym, p);
    } else if (p->kind == PRAGMA_SYM_VISIBILITY && visibility_is_outside(p)) {
        sym->qual |= SQ_PINNED;
        no_outside_writers = 0;
    }
}

namespace {

// The one constant of a scalar's initial data, or null: a number, or the
// address of an object of static storage with a constant offset, covering
// the whole object.
const NODE* single_initial_constant(const SYMTAB* sym, const EXPR_LIST* list) {
    if (!list || !list->tree)
        return nullptr;
    if (list->next && (list->next->tree->op != ENDINIT || list->next->next))
        return nullptr;
    const NODE* t = list->tree;
    if (!t->type || t->type->size() != sym->type->size())
        return nullptr;
    if (t->op == ICON || t->op == LCON || t->op == FCON)
        return t;
    return t->type->is_pointer() && pointer_is_an_adcon(t) ? t : nullptr;
}

NODE* rewrite_pmconvs(NODE* t) {
    if (!t)
        return t;
    t->left = rewrite_pmconvs(t->left);
    t->right = rewrite_pmconvs(t->right);
    return t->op == PMCONV ? pmconv_to_mult(t) : t;
}

} // namespace

void opt_symbol_init(SYMTAB* sym, EXPR_LIST* list) {
    sym->state |= SYM_HAS_INIT;
    for (EXPR_LIST* l = list; l; l = l->next)
        scan_for_funinfo(l->tree);
    // A value that may change behind the program's back is never known.
    if (!sym->type || !sym->type->is_scalar() || (sym->qual & SQ_KNOWN_VALUE_MASK) ||
        type_is_volatile(sym->type))
        return;
    if (const NODE* c = single_initial_constant(sym, list)) {
        erase_tree(sym->known_value);
        sym->known_value = rewrite_pmconvs(copy_tree(c, true));
    }
}

bool IF_CLIENT::cl_magic(int, int) { return true; }

void IF_CLIENT::cl_option_set(unsigned set_number, unsigned count, char** strings) {
    // The reader's strings die with it; the sets live for the whole run.
    char** copy = new char*[count];
    for (unsigned i = 0; i < count; i++)
        copy[i] = strdup(strings[i]);
    icode_optionlist.push_back({set_number, count, copy});
}

SYMTAB* IF_CLIENT::cl_symbol_create(const char* name, TYPE* type, TYPE* stype, uint32_t size,
                                    uint32_t align, uint32_t offset, int sclass, unsigned qual,
                                    PSN* psn, uint32_t file_offset, uint32_t extra) {
    if (type)
        type = without_enum(type->normalized());
    qual &= 0x19FF;
    // Below level 3 every changeable global is pinned: kept, and its value
    // never taken as known.
    if (lex == 0 && type && !(type->qual_kind() & TQ_CONST) && opt_level() < 3) {
        if (qual & (SQ_CREGISTER | SQ_REGISTER))
            qual |= 0xC000;
        else
            qual |= SQ_PINNED;
    }
    // The file counts in bits, the symbol table in bytes.
    SYMTAB* sym = new SYMTAB(name, size / 8, offset, static_cast<unsigned char>(sclass),
                             static_cast<unsigned short>(qual), type, type, align, psn, lex);
    sym->order = ++symbol_ordinal;
    sym->stype = stype;
    sym->file_offset = file_offset;
    sym->extra = extra;
    sym->uses = 0xFFFF;
    if (sym->sclass == SC_PARAM_27) {
        sym->sclass = SC_PARAM;
        if (currfuninfo)
            currfuninfo->flags |= FUN_HAS_PARAM_27;
    }
    if (type && type->is_func())
        make_FUNINFO(skip_name_prefix(name))->symbol = sym;
    if (lex > 2)
        add_stack_sharing_variable(sym);
    sym_def(sym);
    if (lex != 0)
        LS_add_symbol(sym);
    return sym;
}

void IF_CLIENT::cl_pragma(SYMTAB* sym, PRAGMA* p) {
    if (sym) {
        p->next = sym->pragmas;
        sym->pragmas = p;
        opt_process_pragma(sym, p);
        return;
    }
    OPTASSERT(p->kind != PRAGMA_OPT_OVERRIDE);
    if (lex != 0 && currfuninfo) {
        NODE* n = new_node(PPRAGMA, tp->mk_void());
        n->pragma = p;
        LS_initialize_scopes_and_ptrs_from_tree(n);
        currfuninfo->stmts = mkelist(n, currfuninfo->stmts, nullptr);
        return;
    }
    if (print_debug) {
        dprintf("%c[Pragma] %d %d", '\n', p->kind, p->nargs);
        for (int i = 0; i < p->nargs; i++)
            dprintf(" %s", p->args[i]);
        dprintf("\n");
    }
    if (o_file)
        o_file->if_write_pragma(p);
    erase_pragma(p);
}

void IF_CLIENT::cl_symbol_init(SYMTAB* sym, EXPR_LIST* list) {
    if (!sym)
        return;
    sym->init = list;
    opt_symbol_init(sym, list);
}

void IF_CLIENT::cl_symbol_def(SYMTAB* sym) {
    make_symbol_groupable(sym);
    if (sym_is_function(sym))
        check_fun_for_byref_asgs(sym);
}

void IF_CLIENT::cl_expr(NODE* tree, PSN* psn) {
    // An empty statement, or one outside any function, has no use.
    if (!tree || lex == 0 || !currfuninfo) {
        erase_tree(tree);
        return;
    }
    tree = expr_cleanup(tree);
    for_each_node(tree, [](NODE* t) {
        if (t->op == CALL)
            unique_call_index = std::max(unique_call_index, t->call_value());
    });
    LS_initialize_scopes_and_ptrs_from_tree(tree);
    currfuninfo->stmts = mkelist(tree, currfuninfo->stmts, psn);
}

void IF_CLIENT::cl_begin_func(SYMTAB* sym, PSN* psn) {
    if (!sym)
        return;
    currfunc = sym;
    currfuninfo = make_FUNINFO(skip_name_prefix(sym->name));
    currfuninfo->symbol = sym;
    currfuninfo->psn = psn;
    currfuninfo->result_type = sym->type ? sym->type->return_type() : nullptr;
    const char* file = psn ? (psn->file ? psn->file : "NO_FILE") : "NO_PSN_FILE";
    snprintf(curr_file, sizeof curr_file, "%s", file);
    currfuninfo->stmts = nullptr;
    currfuninfo->symbols = nullptr;
    // Generated label numbers start again at -1 for each function.
    currfuninfo->last_label = 0;
    // A definition read again gets its table again.
    for (EHT_ENTRY& e : function_eht(currfuninfo))
        free_eht_followers(e);
    function_eht(currfuninfo).clear();
    lex = 1;
    symbol_ordinal = 0;
    arg_offset = 0;
    unique_call_index = 0;
    init_stack_sharing();
    if (sym->qual & 0x20)
        currfuninfo->flags |= FUN_QUAL_0X20;
    make_RSET_root();
    LS_open();
    LS_open();
    if ((sym->qual & SQ_INLINE) && (currfuninfo->flags & FUN_MUST_BE_UNSUPPRESSED))
        unsuppress_inline_function(currfuninfo);
    dump_function_header();
    initialize_the_profiling_state(nullptr);
}

void IF_CLIENT::cl_end_args(PSN* psn) {
    // Records of a function body outside any function are dropped.
    if (lex == 0)
        return;
    output_index = 0;
    currfuninfo->args_end_psn = currfuninfo->locals_end_psn = psn;
    if (do_beta_MVP)
        beta_parms_using_mvp_ip();
    else
        beta_parms();
    for (SYMTAB* s = currfuninfo->symbols; s; s = s->next)
        find_or_make_PTR_entry(s);
    lex++;
    begin_stack_sharing_scope(lex);
    LS_open();
}

void IF_CLIENT::cl_end_locals(PSN* psn) {
    if (lex != 0)
        currfuninfo->locals_end_psn = psn;
}

void IF_CLIENT::cl_begin_block(PSN*) {
    if (lex == 0)
        return;
    lex++;
    begin_stack_sharing_scope(lex);
    LS_open();
}

void IF_CLIENT::cl_end_block(PSN*) {
    if (lex == 0)
        return;
    end_stack_sharing_scope();
    LS_close();
    lex--;
}

void IF_CLIENT::cl_source(const char*) {}

void IF_CLIENT::cl_label(unsigned number) {
    if (lex == 0)
        return;
    LIST* stmts = currfuninfo->stmts;
    // A body that only jumps to its first label is empty.
    if (stmts && !stmts->next && stmts->tree && stmts->tree->op == BRANCH && stmts->tree->left &&
        stmts->tree->left->op == LABEL &&
        static_cast<unsigned>(stmts->tree->left->label_value()) == number) {
        initialize_the_profiling_state(stmts->tree);
        currfuninfo->stmts = erase_tree_list(stmts);
        return;
    }
    NODE* def = mk_LABELDEF(mklabel(static_cast<int>(number), nullptr, nullptr));
    LS_initialize_scopes_and_ptrs_from_tree(def);
    currfuninfo->stmts = mkelist(def, currfuninfo->stmts, nullptr);
}

static void add_asm_statement(unsigned char kind, const char* text, PSN* psn) {
    NODE* n = new_node(ASM, tp->mk_void());
    n->text = strdup(text);
    n->value = INT65(static_cast<int>(kind));
    currfuninfo->stmts = mkelist(n, currfuninfo->stmts, psn);
}

void IF_CLIENT::cl_inline_asm(const char* text, PSN* psn) {
    if (lex == 0)
        wrasmr(ASM_KIND_ASSEMBLY, text, psn);
    else
        add_asm_statement(ASM_KIND_ASSEMBLY, text, psn);
}

void IF_CLIENT::cl_comment(const char* text) {
    if (text[0] == ';')
        return;
    if (lex == 0)
        wrasmr(ASM_KIND_COMMENT, text, nullptr);
    else
        add_asm_statement(ASM_KIND_COMMENT, text, nullptr);
}

// Types of one file need no merging here.
void IF_CLIENT::cl_merge_type_defs() {}
void IF_CLIENT::cl_preprocess_statics() {}
void IF_CLIENT::cl_func_info(int) {}

bool IF_CLIENT::cl_func_eht(EHT_ENTRY* table, unsigned count) {
    std::vector<EHT_ENTRY>& copy = function_eht(currfuninfo);
    copy.assign(1, EHT_ENTRY{});
    for (unsigned i = 0; i < count; i++) {
        copy.push_back(table[i]);
        // The followers now belong to the copy.
        table[i].expr = nullptr;
        table[i].catches = nullptr;
        table[i].third = 0;
    }
    renumber_eht(copy);
    return true;
}

// Code generator records: this program reads and drops them.
void IF_CLIENT::cl_loop_def(uint32_t, uint32_t, uint32_t, uint32_t, uint32_t, unsigned) {}
void IF_CLIENT::cl_loop_header(uint32_t, int32_t, int32_t, unsigned) {}
void IF_CLIENT::cl_dd_vector(uint32_t, unsigned, unsigned, const unsigned char*) {}
void IF_CLIENT::cl_dd_edge(uint32_t, uint32_t, uint32_t) {}
void IF_CLIENT::cl_mbank(const uint32_t*) {}
void IF_CLIENT::cl_ldspec_induct(uint32_t, uint32_t, int32_t, TYPE*, SYMTAB*) {}
void IF_CLIENT::cl_ldspec_rand(uint32_t, uint32_t, uint32_t, TYPE*, SYMTAB*) {}
void IF_CLIENT::cl_ldspec_region(uint32_t, uint32_t) {}
void IF_CLIENT::cl_ir_begin_func(uint32_t, int32_t, int, uint32_t, PSN*) {}
void IF_CLIENT::cl_ir_end_func(PSN*) {}
void IF_CLIENT::cl_ir_ins(PSN*, const unsigned char*, uint32_t) {}

void note_return_by_copy_constructor() {
    FUNINFO* f = currfuninfo;
    if (!f || !currfunc || !sym_has_pragma(currfunc, PRAGMA_FUNC_RET_BY_CCTOR) || !f->result_type ||
        f->result_type->is_void() || !f->stmts)
        return;
    // The list runs last statement first.
    LIST* last = f->stmts;
    const NODE* t = last->tree;
    while (t && t->op == PCOMMA)
        t = t->right;
    if (!t || t->op != ASG || !t->left || !t->right || t->left->op != NAME || t->right->op != NAME)
        return;
    SYMTAB* local = t->left->name_symbol();
    SYMTAB* param = t->right->name_symbol();
    if (!local || !param || local->lex != 2 || param->lex != 1 || !local->name || !param->name ||
        strcmp(local->name, param->name) != 0)
        return;
    TYPE* pointer = local->type;
    if (!pointer || !pointer->is_pointer() || !pointer->type_pointed_to() ||
        !pointer->type_pointed_to()->is_csu())
        return;
    local->type = tp->mk_qual(pointer, TQ_CONST);
    param->type = tp->mk_qual(param->type, TQ_CONST);
    f->result_by_cctor = local;
    NODE* null = new_node(ICON, pointer);
    NODE* test = maketree(NEQ, mk_NAME(local, nullptr), null, tp->mk_int(TYPE::ik_int), nullptr);
    last->next =
        mkelist(maketree(NASSERT, test, nullptr, tp->mk_void(), nullptr), last->next, last->psn);
}

void IF_CLIENT::cl_end_func(PSN* psn) {
    if (lex == 0)
        return;
    currfuninfo->end_psn = psn;
    functions.push_back(currfunc);
    // Blocks the file left open are closed here.
    while (lex > 2) {
        end_stack_sharing_scope();
        lex--;
    }
    LS_close();
    LS_close();
    LS_close();
    lex = 0;
    if (function_eht(currfuninfo).empty())
        for_each_statement_node([](NODE* t) {
            if (is_call(t))
                t->call_id = 0;
        });
    if (!client_reads_only)
        for (LIST* l = currfuninfo->stmts; l; l = l->next)
            l->tree = simp_tree(fix_BIF_types(l->tree), nullptr, nullptr);
    check_for_synonym_function_in_pass_1();
    check_integrable_definition();
    note_return_by_copy_constructor();
    currfuninfo->defined = true;
    cbranches_to_ifs();
    // A dump shows the statements as the file has them.
    if (!client_reads_only)
        seq_trees();
    buildcfg();
    if (client_reads_only)
        return;
    simpcfg(false, false);
    fast_CP(4, 1);
    preprocess_fundef();
    init_ipcp_for_fun();
    if (do_IP_MVP)
        init_IP_MVP_for_current_function();
    identify_fl_statics_safe_for_auto();
    convert_safe_fl_statics_to_auto();
}
