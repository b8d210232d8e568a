// Function output: the optimized blocks of the current function go back to
// the record stream of the output file, each record logged.
#include <algorithm>
#include <map>
#include <set>
#include <vector>

#include "driver/client.h"
#include "driver/diag.h"
#include "driver/driver.h"
#include "ifile/ifile.h"
#include "ifile/write.h"
#include "inline/funinfo.h"
#include "inline/inline.h"
#include "ir/bblk.h"
#include "ir/ir.h"
#include "ir/node.h"
#include "ir/symtab.h"
#include "ir/types.h"
#include "loopnest/loopnest.h"
#include "simplify/simplify.h"

namespace {

constexpr int asm_kind_comment = 47;
// A pragma that only steers the optimizer's own loop passes.
constexpr int pragma_loop_flags = 57;
constexpr int func_info_leaf = 'L';
constexpr uint32_t no_profile_count = 0xffffffffu;
// Set on a function once it is written, so that it is never written twice.
constexpr uint32_t fun_written = FUN_DROPPED;

// The locals entered in the output for the function being written: a NAME
// of any other local would name a wrong slot in the reader's table.
std::set<const SYMTAB*> written_locals;

bool is_call_op(int op) {
    return op == CALL || op == UCALL || op == ICALL || op == UICALL || op == MCALL || op == UMCALL;
}

void unsuppress_callee(const NODE* t) {
    const char* name = nullptr;
    if (t->op == CALL || t->op == UCALL) {
        if (const SYMTAB* callee = get_callee_for_call(t))
            name = callee->name;
    } else {
        name = t->icall_name();
    }
    if (!name)
        return;
    if (FUNINFO* f = find_FUNINFO(skip_name_prefix(name)))
        unsuppress_inline_function(f);
}

void check_name(const NODE* t) {
    const SYMTAB* sym = t->name_symbol();
    if (!sym)
        return;
    if (sym->lex == 0) {
        OPTASSERT(sym->file_level == 0 && sym->file_index < o_file->global_count &&
                  o_file->globals[sym->file_index] == sym);
        return;
    }
    OPTASSERT(written_locals.count(sym) != 0);
}

// Turns the operators that exist only in memory into their file forms, or
// strips them; anything else of memory only stops the run here, before a
// record of the tree is written.
NODE* prepare_tree(NODE* t) {
    if (!t)
        return nullptr;
    t->left = prepare_tree(t->left);
    t->right = prepare_tree(t->right);
    switch (t->op) {
    case ISP2CHAR:
        t->op = PCONV;
        break;
    case OUIALIGN:
        // Read from a file, 163 is a VREG: it has no operand.
        if (!t->left)
            break;
        [[fallthrough]];
    case IDENTITY:
    case NONALIGN: {
        NODE* inner = t->left;
        t->left = nullptr;
        erase_node(t);
        return inner;
    }
    case NAME:
        check_name(t);
        break;
    default:
        break;
    }
    if (is_call_op(t->op))
        unsuppress_callee(t);
    OPTASSERT(t->op <= VREG && if_node_info[t->op].name);
    return t;
}

// One statement as it goes to the file. `temp` is a node made for the file
// form only (the CBRANCH or BRANCH of an IF); its operands stay the IF's.
struct OUT_STMT {
    NODE* tree;
    PSN* psn;
    bool temp;
};

struct OUT_BLOCK {
    BBLK* bb;
    std::vector<OUT_STMT> stmts;
};

void collect_labels(NODE* t, std::vector<NODE*>& out) {
    for (; t; t = t->right) {
        if (t->op == LABEL)
            out.push_back(t);
        collect_labels(t->left, out);
    }
}

NODE* mk_file_node(int op, TYPE* type, NODE* left, NODE* right) {
    NODE* n = new_node(op, type);
    n->left = left;
    n->right = right;
    return n;
}

void log_control(int kind, const PSN* psn) {
    const char* name;
    switch (kind) {
    case IF_BEGIN_FUNC:
        name = "I_BF";
        break;
    case IF_END_FUNC:
        name = "I_EF";
        break;
    case IF_BEGIN_BLOCK:
        name = "I_BB";
        break;
    case IF_END_BLOCK:
        name = "I_EB";
        break;
    case IF_END_ARGS:
        name = "I_EA";
        break;
    case IF_END_LOCALS:
        name = "I_EL";
        break;
    default:
        name = "<unknown key>";
        break;
    }
    dprintf("%s\t%d\t%ld\t\t\t;%s\n", name, kind, psn ? static_cast<long>(psn->line) : 0L, name);
}

void write_local_symbol(SYMTAB* s, bool& header_done) {
    const uint8_t sclass = s->sclass;
    // The reader turned class 27 into 9; the code generator wants it back.
    if (s->sclass == SC_PARAM && s->oclass == SC_PARAM_27)
        s->sclass = SC_PARAM_27;
    if (s->sclass != SC_LOCAL_22 && s->sclass != SC_LOCAL_4)
        s->offset = 0;
    TYPE* normalized = s->type;
    revert_symbol_type(s);
    o_file->if_enter_local(s);
    o_file->if_write_symbol(s);
    written_locals.insert(s);
    if (print_debug) {
        if (!header_done)
            dprintf("-- variable -- size -- offset/class/scqual/aln/otype;\n");
        header_done = true;
        dprintf("%s\t%u\t%u/%d/0x%x/%u\n", s->name, s->size, s->offset, s->sclass, s->qual,
                s->align);
    }
    s->type = normalized;
    s->sclass = sclass;
}

template <class FN> void walk_nodes(NODE* t, FN& fn) {
    for (; t; t = t->right) {
        fn(t);
        walk_nodes(t->left, fn);
    }
}

// Exception table entries that no call names any more are removed and the
// table closes up. Entries 0 and 1 always stay. An entry that a kept entry
// links to stays too, or the link would dangle.
void prune_eht(FUNINFO* f) {
    std::vector<EHT_ENTRY>& eht = function_eht(f);
    if (eht.empty())
        return;
    const size_t n = eht.size();
    std::vector<bool> used(n, false);
    used[0] = true;
    if (n > 1)
        used[1] = true;
    std::vector<NODE*> calls;
    auto note = [&](NODE* t) {
        if ((t->op == CALL || t->op == UCALL) && t->call_id != 0) {
            OPTASSERT(t->call_id > 0 && static_cast<size_t>(t->call_id) < n);
            used[static_cast<size_t>(t->call_id)] = true;
            calls.push_back(t);
        }
    };
    for (BBLK* b = f->bb_list; b; b = b->next)
        for (LIST* l = b->statements; l; l = l->next)
            walk_nodes(l->tree, note);
    for (EHT_ENTRY& e : eht)
        if (e.kind == EHT_CLEANUP)
            walk_nodes(e.expr, note);
    for (bool grew = true; grew;) {
        grew = false;
        for (size_t i = 0; i < n; i++) {
            if (!used[i])
                continue;
            for (uint32_t link : {eht[i].second, eht[i].kind == EHT_CATCHES ? 0u : eht[i].third}) {
                OPTASSERT(link < n);
                if (!used[link])
                    used[link] = grew = true;
            }
        }
    }
    std::vector<uint32_t> place(n, 0);
    std::vector<EHT_ENTRY> kept;
    for (size_t i = 0; i < n; i++) {
        if (used[i]) {
            place[i] = static_cast<uint32_t>(kept.size());
            kept.push_back(eht[i]);
            // On file an entry is named by its number, and links and call
            // ids are places in the table: the number becomes the place.
            kept.back().first = place[i];
        } else {
            free_eht_followers(eht[i]);
        }
    }
    for (EHT_ENTRY& e : kept) {
        e.second = place[e.second];
        if (e.kind != EHT_CATCHES)
            e.third = place[e.third];
    }
    for (NODE* t : calls)
        t->call_id = static_cast<int32_t>(place[static_cast<size_t>(t->call_id)]);
    eht = std::move(kept);
}

// Each block's statements in file form: IF becomes CBRANCH to the taken
// label and a BRANCH to the other one, and a closing BRANCH to the block
// written next is dropped.
std::vector<OUT_BLOCK> plan_blocks() {
    std::vector<OUT_BLOCK> plan;
    for (BBLK* b = currfuninfo->bb_list; b; b = b->next) {
        OUT_BLOCK out{b, {}};
        for (LIST* l = b->statements; l; l = l->next) {
            NODE* t = l->tree;
            if (!t)
                continue;
            const bool last = l->next == nullptr;
            if (t->op == IF) {
                OPTASSERT(last && t->right && t->right->op == COLON && t->right->left &&
                          t->right->right);
                t->left = prepare_tree(t->left);
                NODE* arms = t->right;
                out.stmts.push_back(
                    {mk_file_node(CBRANCH, t->type, t->left, arms->left), l->psn, true});
                if (label_target(arms->right) != b->next)
                    out.stmts.push_back(
                        {mk_file_node(BRANCH, t->type, arms->right, nullptr), l->psn, true});
                continue;
            }
            if (last && t->op == BRANCH && t->left && b->next && label_target(t->left) == b->next) {
                t->left->label_rec->uses--;
                continue;
            }
            if (t->op != ASM && t->op != PPRAGMA) {
                OPTASSERT(t->op != LABELDEF);
                l->tree = t = prepare_tree(insert_mandatory_casts(t));
            }
            out.stmts.push_back({t, l->psn, false});
        }
        plan.push_back(std::move(out));
    }
    return plan;
}

// Numbers the labels named on file 1, 2, ... in the order of their blocks,
// and brings every LABEL operand to its label's number. Labels that no
// written jump names are not written: read again, they would only split a
// block. A LABEL operand not yet tied to its record is found by number.
std::map<LBL*, bool> number_labels(std::vector<OUT_BLOCK>& plan) {
    std::map<int, LBL*> by_number;
    std::set<BBLK*> emitted;
    for (OUT_BLOCK& ob : plan) {
        emitted.insert(ob.bb);
        for (LBL* l = ob.bb->labels; l; l = l->next)
            by_number.emplace(l->number, l);
    }
    std::vector<std::pair<NODE*, LBL*>> refs;
    std::map<LBL*, bool> named;
    std::vector<NODE*> labels;
    for (OUT_BLOCK& ob : plan)
        for (OUT_STMT& s : ob.stmts) {
            if (s.tree->op == ASM || s.tree->op == PPRAGMA)
                continue;
            labels.clear();
            collect_labels(s.tree, labels);
            for (NODE* n : labels) {
                LBL* l = n->label_rec;
                if (!l) {
                    auto it = by_number.find(n->label_value());
                    l = it != by_number.end() ? it->second : nullptr;
                }
                // A jump to a block that is not written would be a broken file.
                OPTASSERT(l && emitted.count(l->bb));
                refs.push_back({n, l});
                named[l] = true;
            }
        }
    int number = 0;
    for (OUT_BLOCK& ob : plan)
        for (LBL* l = ob.bb->labels; l; l = l->next)
            if (named.count(l))
                l->number = ++number;
    for (auto& [n, l] : refs)
        n->mk_label(static_cast<unsigned>(l->number));
    return named;
}

void wrbdlr(BBLK* bb, const std::map<LBL*, bool>& named) {
    // The list holds the newest label first; the file gets them oldest first.
    std::vector<LBL*> labels;
    for (LBL* l = bb->labels; l; l = l->next)
        if (named.count(l))
            labels.push_back(l);
    for (auto it = labels.rbegin(); it != labels.rend(); ++it) {
        o_file->if_write_label(static_cast<unsigned>((*it)->number));
        dprintf("*%d\n", (*it)->number);
    }
}

void wrexpr(const OUT_STMT& s) {
    NODE* t = s.tree;
    if (t->op == ASM) {
        wrasmr(static_cast<int>(t->value.low), t->text ? t->text : "", s.psn);
        return;
    }
    if (t->op == PPRAGMA) {
        PRAGMA* p = t->pragma;
        if (!p || p->kind == pragma_loop_flags)
            return;
        o_file->if_write_pragma(p);
        dprintf("%c[Pragma] %d %d", '\n', p->kind, p->nargs);
        for (int i = 0; i < p->nargs; i++)
            dprintf(" %s", p->args[i]);
        dprintf("\n");
        return;
    }
    dprintf(".%ld\n", s.psn ? static_cast<long>(s.psn->line) : 0L);
    o_file->if_write_expr(nullptr, s.psn);
    // No profile is read, so every statement carries the all-ones count.
    t->set_edge_profile_value(no_profile_count);
    o_file->if_write_expr_node(t);
}

int loop_depth(const BBLK* b) { return b->loop ? loop_nesting_level(b->loop) : 0; }

void log_block_header(const BBLK* b) {
    dprintf("\n++++(WRBBLOCKS): START NEXT BB, UON=%d, DFN=%d\n", b->uon, b->dfn);
    for (const LBL* l = b->labels; l; l = l->next)
        dprintf("\tLABEL, INDEX=%d, REFCOUNT=%d, NAME=<NONE>\n", l->number, l->uses);
    dprintf("\tPREDECESSORS = ( ");
    for (const EDGE* e = b->preds; e; e = e->next)
        dprintf("%d ", e->bb->dfn);
    dprintf(")\n\tSUCCESSORS =   ( ");
    for (const EDGE* e = b->succs; e; e = e->next)
        dprintf("%d ", e->bb->dfn);
    dprintf(")\n\tLOOP DEPTH = %d\n", loop_depth(b));
}

void wrbblocks() {
    std::vector<OUT_BLOCK> plan = plan_blocks();
    const std::map<LBL*, bool> named = number_labels(plan);
    for (OUT_BLOCK& ob : plan) {
        if (print_debug)
            log_block_header(ob.bb);
        wrbdlr(ob.bb, named);
        for (OUT_STMT& s : ob.stmts) {
            wrexpr(s);
            if (s.temp) {
                // The operands belong to the IF.
                s.tree->left = s.tree->right = nullptr;
                erase_node(s.tree);
            }
        }
    }
}

} // namespace

void wrstcr(int kind, PSN* psn) {
    if (kind == IF_BEGIN_FUNC)
        o_file->if_write_begin_func(currfunc, psn);
    else
        o_file->if_write_control(kind, psn);
    log_control(kind, psn);
}

// Steps run without an output file (in tests of the step list) write nothing.
void write_func_header() {
    if (o_file)
        wrstcr(IF_BEGIN_FUNC, currfuninfo->psn);
}

void wrtree(NODE* t) {
    t = prepare_tree(t);
    t->set_edge_profile_value(no_profile_count);
    o_file->if_write_expr_node(t);
}

void write_symbol_init(SYMTAB* sym) {
    // A global not entered in the output has no index to give its data.
    OPTASSERT(sym->file_index < o_file->global_count && o_file->globals[sym->file_index] == sym);
    o_file->if_write_init(sym);
    dprintf("%c\tinitial data of %s\n", ';', sym->name);
}

void wrsfid(const char* text) {
    o_file->i_write_string(text, 0);
    o_file->i_flush(IF_SOURCE_NAME);
    dprintf("~\t%s\n", text);
}

void wrasmr(int kind, const char* text, PSN* psn) {
    if (!o_file)
        return;
    if (kind == asm_kind_comment) {
        o_file->if_write_comment(text);
        dprintf("\n%c%s\n\n", ';', text);
    } else {
        o_file->if_write_assembly(text, psn);
        dprintf("\n%c%5ld %s\n\n", ';', psn ? static_cast<long>(psn->line) : 0L, text);
    }
}

void write_func_body() {
    if (!o_file)
        return;
    FUNINFO* f = currfuninfo;
    written_locals.clear();
    bool header_done = false;

    std::vector<SYMTAB*> params;
    for (SYMTAB* s = f->autos; s; s = s->next)
        if (s->lex == 1 && (s->state & SYM_STATE_NEW)) {
            // Behind its equals: the order of declaration is kept.
            auto at = std::upper_bound(
                params.begin(), params.end(), s,
                [](const SYMTAB* a, const SYMTAB* b) { return a->order < b->order; });
            params.insert(at, s);
        }
    for (SYMTAB* s : params)
        write_local_symbol(s, header_done);
    wrstcr(IF_END_ARGS, f->args_end_psn);

    for (SYMTAB* list : {f->autos, f->regs, f->symbols, f->temps})
        for (SYMTAB* s = list; s; s = s->next)
            if (s->lex > 1)
                write_local_symbol(s, header_done);
    wrstcr(IF_END_LOCALS, f->locals_end_psn);

    if (f->is_leaf) {
        o_file->if_write_func_info(func_info_leaf);
        dprintf("\n%c\t'L':\t%s is a leaf function.\n", ';', f->name ? f->name : "");
    }
    finalize_ldspec_advice();
    prune_eht(f);
    if (f->bb_list)
        wrbblocks();
    if (std::vector<EHT_ENTRY>& eht = function_eht(f); !eht.empty()) {
        o_file->if_write_func_eht(eht.data(), static_cast<unsigned>(eht.size()));
        dprintf("\n;\tEHT: %u entries\n", static_cast<unsigned>(eht.size() - 1));
    }
    wrstcr(IF_END_FUNC, f->end_psn);
    f->flags |= fun_written;
    written_locals.clear();
    if (print_debug)
        o_file->if_flush();
    if (PRAGMA* p = symbol_has_pragma(f->symbol, PRAGMA_FUNC_SYNONYM))
        if (p->nargs > 0)
            if (FUNINFO* target = find_FUNINFO(skip_name_prefix(p->args[0])))
                unsuppress_inline_function(target);
}

// The type read is kept as `otype`; the symbol goes out with it again when
// the optimizer's type still means the same, requalified to today's
// qualifiers.
void revert_symbol_type(SYMTAB* sym) {
    TYPE* old = sym->otype;
    TYPE* cur = sym->type;
    if (old && cur && old != cur && compatible_types(normalized_underlying_type(old), cur, false)) {
        const unsigned char q = cur->qual_kind();
        if (old->qual_kind() == q)
            sym->type = old;
        else
            sym->type = q ? tp->mk_qual(old->stqs(), q) : old->stqs();
    }
    if (o_file && sym->type) {
        o_file->if_reference_type(sym->type);
        o_file->if_reference_type(sym->type->stds());
    }
}
