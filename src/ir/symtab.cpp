#include "ir/symtab.h"
#include "support/cells.h"

#include <cstdlib>
#include <cstring>

#include "driver/diag.h"
#include "driver/driver.h"
#include "inline/funinfo.h"
#include "ir/node.h"
#include "ir/types.h"

SYMTAB* global_symbols;
SYMTAB* errno_symbol;
SYMLIST* nonconforming_functions;
SYMLIST* barrier_MCALLs;

namespace {

// Creation ordinals; the call-graph order below opt level 2 sorts on them.
uint32_t symbol_counter;

// A global register is the code generator's business; the optimizer only
// passes the request on.
void reserve_if_register(SYMTAB* sym) {
    if (sym->qual >= 128)
        reserve_global_register(sym);
}

} // namespace

SYMTAB::SYMTAB(const char* name_, unsigned long size_, unsigned long offset_, unsigned char sclass_,
               unsigned short qual_, TYPE* type_, TYPE* otype_, unsigned long align_, PSN* psn_,
               int lex_)
    : name(strdup(name_)), size(static_cast<uint32_t>(size_)),
      offset(static_cast<uint32_t>(offset_)), sclass(sclass_), oclass(sclass_), qual(qual_),
      type(type_), otype(otype_), align(static_cast<uint32_t>(align_)), psn(psn_),
      lex(static_cast<uint8_t>(lex_)), order(++symbol_counter) {
    if (!(otype->is_func() || size == otype->size_in_bytes()))
        optassert("otype->is_func() || size == otype->size()", __FILE__, __LINE__);
    state = SYM_STATE_NEW;
    if (!sclass_in_set(sclass, SC_SET_NOT_ALIASED))
        state |= SYM_ADDRESS_TAKEN;
}

void erase_symbol(SYMTAB* sym) {
    if (!sym)
        return;
    free(sym->name);
    erase_pragma_list(sym->pragmas);
    erase_tree(sym->known_value);
    delete sym;
}

SYMTAB* copy_symbol(const SYMTAB* sym, int keep) {
    SYMTAB* c = new SYMTAB(*sym);
    c->name = strdup(sym->name);
    c->pragmas = copy_pragma_list(sym->pragmas);
    c->known_value = sym->known_value ? copy_tree(sym->known_value, true) : nullptr;
    c->order = keep ? sym->order : ++symbol_counter;
    return c;
}

void init_symbols() { global_symbols = nullptr; }

void sym_def(SYMTAB* sym) {
    if (sym->lex == 0) {
        sym->next = global_symbols;
        global_symbols = sym;
        reserve_if_register(sym);
        const char* bare = skip_name_prefix(sym->name);
        if (!errno_symbol && (strcmp(bare, "errno") == 0 || strcmp(bare, "_Errno") == 0) &&
            sym->type && sym->type->is_int())
            errno_symbol = sym;
        return;
    }
    if (sym->sclass != SC_OFF_LIST) {
        sym->next = currfuninfo->symbols;
        currfuninfo->symbols = sym;
    }
    if (sym->sclass == SC_LOCAL_22 || sym->sclass == SC_LOCAL_4)
        sym->sclass = SC_AUTO;
    if (sym->lex > 1)
        sym->lex = 2;
}

namespace {

void split_one(SYMTAB* s, FUNINFO* f) {
    switch (s->sclass) {
    case SC_AUTO:
    case SC_LOCAL_4:
    case SC_LOCAL_22:
        s->sclass = SC_AUTO;
        if (s->type && s->type->is_scalar() && !type_is_volatile(s->type)) {
            s->next = f->regs;
            f->regs = s;
            return;
        }
        break;
    case SC_PARAM:
    case SC_REG_PARAM:
    case SC_PARAM_27:
        break;
    case SC_OFF_LIST:
        s->next = nullptr;
        return;
    default:
        abort_optimizer();
    }
    s->next = f->autos;
    f->autos = s;
}

} // namespace

void sym_split(FUNINFO* f) {
    // The temporaries go second so that they end up in front.
    for (SYMTAB** list : {&f->symbols, &f->temps}) {
        for (SYMTAB* s = *list; s;) {
            SYMTAB* next = s->next;
            split_one(s, f);
            s = next;
        }
        *list = nullptr;
    }
}

namespace {

SYMTAB* new_temp(const char* name, TYPE* type, LS* scope) {
    SYMTAB* s = new SYMTAB(name, type->size_in_bytes(), 0, SC_AUTO, 0, type, type, type->align(),
                           nullptr, 2);
    s->order = 0;
    s->state &= static_cast<uint8_t>(~(SYM_ADDRESS_TAKEN | SYM_STATE_1));
    s->scope = scope;
    s->next = currfuninfo->temps;
    currfuninfo->temps = s;
    return s;
}

} // namespace

SYMTAB* sym_temp(int kind, long n, TYPE* type, LS* scope) {
    if (n < 0)
        n = ++currfuninfo->temp_counter;
    char name[32];
    snprintf(name, sizeof name, "%s$%c%ld", "$O", kind, n);
    if (type->is_enum())
        type = tp->mk_int(TYPE::ik_int);
    const TYPE* base = type;
    while (base->is_array())
        base = base->resolved->ar->elem;
    if (base->kind == TYPE::tpk_qual)
        type = type->type_qualified();
    return new_temp(name, type, scope);
}

SYMTAB* gen_operator_new_temp(TYPE* type) {
    // Numbered over the whole file: the names of the output must not clash
    // when inlining brings two functions' temporaries together.
    static long counter;
    SYMTAB* s = sym_temp('n', ++counter, type, nullptr);
    // Set after sym_temp, which strips qualifiers: the new object is reached
    // through this pointer only.
    s->type = s->otype = tp->mk_qual(tp->remove_known_qual(type, TQ_VOLATILE), TQ_RESTRICT);
    return s;
}

SYMTAB* get_sym_def_for_decl(SYMTAB* sym) {
    if (sym->sclass != SC_EXTERN_DECL || sym->lex != 0)
        return sym;
    const char* name = sym->name;
    for (SYMTAB* s = global_symbols; s; s = s->next) {
        if (s->sclass != SC_GLOBAL_DEF || s == sym)
            continue;
        // The first character is mostly the ABI prefix, so the second tells more.
        if (name[0] && s->name[0] && s->name[1] != name[1])
            continue;
        if (strcmp(s->name, name) == 0 && compatible_types(s->type, sym->type, false))
            return s;
    }
    return sym;
}

bool sym_is_function(const SYMTAB* sym) { return type_is_function(sym->type); }

SYMTAB* revsymtab(SYMTAB* list, SYMTAB* tail) {
    while (list) {
        SYMTAB* next = list->next;
        list->next = tail;
        tail = list;
        list = next;
    }
    return tail;
}

SYMTAB* unlink_symbol(SYMTAB* sym, SYMTAB* list) {
    for (SYMTAB** p = &list; *p; p = &(*p)->next)
        if (*p == sym) {
            *p = sym->next;
            sym->next = nullptr;
            break;
        }
    return list;
}

SYMLIST* mk_symlist(SYMTAB* sym, SYMLIST* next) { return new SYMLIST{sym, next}; }
SYMALIST* mk_symalist(SYMTAB* sym, void* attr, SYMALIST* next) {
    return new SYMALIST{sym, attr, next};
}
SYMPAIRLIST* mk_symplist(SYMTAB* first, SYMTAB* second, SYMPAIRLIST* next) {
    return new SYMPAIRLIST{first, second, next};
}

namespace {

template <class CELL> CELL* copy_cells(const CELL* list) {
    CELL* head = nullptr;
    CELL** tail = &head;
    for (; list; list = list->next) {
        *tail = new CELL(*list);
        tail = &(*tail)->next;
    }
    *tail = nullptr;
    return head;
}

} // namespace

SYMLIST* revsymlist(SYMLIST* list) { return reverse_cells(list); }
SYMALIST* revsymalist(SYMALIST* list) { return reverse_cells(list); }

SYMLIST* find_sym_in_symlist(const SYMTAB* sym, SYMLIST* list) {
    for (; list; list = list->next)
        if (list->sym == sym)
            return list;
    return nullptr;
}

bool symbol_in_list(const SYMTAB* sym, const SYMLIST* list) {
    return find_sym_in_symlist(sym, const_cast<SYMLIST*>(list)) != nullptr;
}

SYMPAIRLIST* find_sym_in_sympairlist(const SYMTAB* sym, SYMPAIRLIST* list) {
    for (; list; list = list->next)
        if (list->first == sym)
            return list;
    return nullptr;
}

SYMLIST* remove_sym_from_symlist(const SYMTAB* sym, SYMLIST* list) {
    for (SYMLIST** p = &list; *p; p = &(*p)->next)
        if ((*p)->sym == sym) {
            SYMLIST* dead = *p;
            *p = dead->next;
            delete dead;
            break;
        }
    return list;
}

SYMLIST* copy_symlist(const SYMLIST* list) { return copy_cells(list); }
SYMALIST* copy_symalist(const SYMALIST* list) { return copy_cells(list); }
SYMLIST* erase_symlist(SYMLIST* list) { return erase_cells(list); }
SYMALIST* erase_symalist(SYMALIST* list) { return erase_cells(list); }
SYMPAIRLIST* erase_symplist(SYMPAIRLIST* list) { return erase_cells(list); }

const char* skip_name_prefix(const char* name) {
    if (TYPE_PKG::abi == 1)
        return name;
    return name[0] == '.' || name[0] == '_' ? name + 1 : name;
}

bool name_has_prefix(const char* name) { return skip_name_prefix(name) != name; }

bool is_internal_name(const char* name) { return name && strncmp(name, "$O", 2) == 0; }
bool is_internal_symbol(const SYMTAB* sym) { return is_internal_name(sym->name); }

bool is_optimizer_temp(const char* name, int kind1, int kind2) {
    if (strncmp(name, "$O$", 3) != 0 || !name[3] || (name[3] != kind1 && name[3] != kind2))
        return false;
    for (const char* p = name + 4; *p; p++)
        if (*p < '0' || *p > '9')
            return false;
    return true;
}

bool is_operator_new_symbol(const SYMTAB* sym) {
    // The encoded form of "operator new (...)"; "operator new[]" is "__nwa".
    return sym_is_function(sym) && strncmp(skip_name_prefix(sym->name), "__nw__", 6) == 0;
}

bool func_is_nonconforming(const SYMTAB* sym) {
    return symbol_in_list(sym, nonconforming_functions);
}
bool is_barrier_MCALL(const SYMTAB* sym) { return symbol_in_list(sym, barrier_MCALLs); }
