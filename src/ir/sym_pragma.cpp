// The pragma table, pragma lists of symbols and their log form.
#include <cstdlib>
#include <cstring>

#include "driver/driver.h"
#include "ir/symtab.h"
#include "ir/types.h"

const char* const pragma_names[maxpragma + 1] = {
    "INVALID",
    "DATA_ALIGN",
    "DATA_SECTION",
    "FUNC_NEVER_RETURNS",
    "FUNC_CANNOT_INLINE",
    "FUNC_NO_GLOBAL_ASG",
    "FUNC_NO_IND_ASG",
    "FUNC_IS_PURE",
    "FUNC_IS_SYSTEM",
    "NO_INTERRUPT",
    "NEAR",
    "FAR",
    "INTERRUPT",
    "PORT",
    "INLINE",
    "OVLY_INDIRECT",
    "NO_OVLY",
    "FUNC_NOT_IND_CALLED",
    "SHARED",
    "SHAREDPP",
    "DUAL_STATE",
    "TASK",
    "OVLY_IND_CALLS",
    "FUNC_EXT_CALLED",
    "REENTRANT",
    "CALLS",
    "SWI_ALIAS",
    "CODE_SECTION",
    "TRAP",
    "FUNC_INTERRUPT_THRESHOLD",
    "FUNC_NO_MDEP",
    "NMI_INTERRUPT",
    "PROTECT_VOLATILE",
    "STRUCT_ALIGN",
    "DATA_MEM_BANK",
    "IDENT",
    "OPT_OVERRIDE",
    "UNROLL",
    "UNROLL_AMOUNT",
    "MUST_ITERATE",
    "PROB_ITERATE",
    "SRC_LOOP",
    "ALIAS_ADVICE",
    "ALIGN_ADVICE",
    "INLINE_ADVICE",
    "WRAP_ADVICE",
    "FAST_FUNC_CALL",
    "KLA_CALL",
    "KLA_FAR_CALL",
    "SRC_LANGUAGE",
    "TEMPLATE_ENTITY",
    "SCOPING_FUNC",
    "SYM_IS_REFERENCED",
    "STANDARD_LIBRARY_FUNCTION",
    "FUNC_IS_NONCONFORMING",
    "TRANSLATION_UNIT_ID",
    "TRIP_CNTR_MUNGED",
    "LOOP_FLAGS",
    "IS_CLASS_MEMBER",
    "SYM_IS_DEAD",
    "NO_ALIAS",
    "REG_FLAGS",
    "REG_MAP",
    "SP_CONSTRAINT",
    "II_ESTIMATE",
    "UNIT_RESOURCES",
    "SP_HINDRANCES",
    "READ_WRITE",
    "NO_ALIAS_CLONE",
    "COMDAT GROUP",
    "DEFAULT_NEVER_EXECUTED",
    "FUNC_IS_CTOR_DTOR",
    "SYM_VISIBILITY",
    "DLLEXPORT_OBSOLETE",
    "FS_DYNAMIC_INIT",
    "FUNC_ESPEC",
    "FUNC_EXCEPTIONS_NOUNWIND",
    "KLB_CALL",
    "FUNC_SYNONYM",
    "BIS_IE1_INTERRUPT",
    "LOOP_NO_ALIAS",
    "FUNC_RET_BY_CCTOR",
    "CODE_ALIGN",
    "Ondrel_WEAK",
    "WORD_MODE_FUNC",
    "NO_HOOKS",
    "HOOK_FUNCTION",
    "FUNC_NUM_CALLED",
    "FUNC_ALWAYS_INLINE",
    "FUNC_PPROF_INFO",
    "INTR_FUNC",
    "TRAP_FUNC",
    "VECTOR_EQUALS",
    "CODE_STATE",
    "FUNC_RET_UNIQUE_POINTER",
    "RETAIN",
    "CLINK",
    "FUNC_IN_INIT_ARRAY",
    "VCC_VREG",
    "EVE_REG",
    "LOCATION",
    "NOINIT",
    "PERSISTENT",
    "LPM_INFO",
    "PORTS_INIT_INFO",
    "FUNC_HAS_FP_INTERFACE",
    "THREAD_LOCAL",
    "CREGISTER",
    "INS_PROPS",
    "FRAM_LOCKIO",
    "FRAM_WAITSTATE",
    "HW_MPY32",
    "PARALLEL_LOOP",
    "HW_MPY_INTR_SAFE",
    "Ondrel_PATCHABLE",
    "TRAMPOLINE",
    "RAMFUNC",
    "FUNC_IS_NAKED",
    "LEA_STATUS",
    "BLOCKED",
    "NOBLOCKED",
};

const unsigned char pragma_flags[maxpragma + 1] = {
    0, 0, 1, 2, 2, 2, 2, 2, 2, 2, 2, 2, 0, 0, 0, 2, 2, 2, 0, 0, 0, 2, 2, 2, 2, 2, 0, 2, 0, 0, 2,
    0, 2, 1, 0, 2, 2, 4, 4, 4, 4, 4, 4, 4, 4, 2, 2, 0, 0, 2, 2, 3, 1, 2, 2, 3, 4, 4, 3, 2, 4, 2,
    2, 4, 4, 4, 4, 4, 4, 2, 2, 2, 3, 0, 3, 0, 0, 0, 2, 0, 4, 2, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,
    0, 0, 3, 3, 0, 0, 0, 0, 0, 0, 0, 0, 2, 0, 0, 0, 0, 0, 0, 4, 0, 0, 2, 2, 0, 0, 0, 0,
};

const char* PRAGMA::name() const { return kind > maxpragma ? "unknown" : pragma_names[kind]; }

PRAGMA* mk_pragma(int kind, int nargs, char** args, PRAGMA* next) {
    return new PRAGMA{static_cast<uint8_t>(kind), nargs, args, next};
}

PRAGMA* copy_pragma(const PRAGMA* p) {
    char** args = p->nargs > 0 ? new char*[p->nargs] : nullptr;
    for (int i = 0; i < p->nargs; i++)
        args[i] = p->args[i] ? strdup(p->args[i]) : nullptr;
    return mk_pragma(p->kind, p->nargs, args, nullptr);
}

PRAGMA* copy_pragma_list(const PRAGMA* list) {
    PRAGMA* head = nullptr;
    PRAGMA** tail = &head;
    for (; list; list = list->next) {
        *tail = copy_pragma(list);
        tail = &(*tail)->next;
    }
    return head;
}

void erase_pragma(PRAGMA* p) {
    for (int i = 0; i < p->nargs; i++)
        free(p->args[i]);
    delete[] p->args;
    delete p;
}

void erase_pragma_list(PRAGMA* list) {
    while (list) {
        PRAGMA* next = list->next;
        erase_pragma(list);
        list = next;
    }
}

PRAGMA* symbol_has_pragma(const SYMTAB* sym, int kind) {
    for (PRAGMA* p = sym->pragmas; p; p = p->next)
        if (p->kind == kind)
            return p;
    return nullptr;
}

bool sym_has_pragma(const SYMTAB* sym, int kind) { return symbol_has_pragma(sym, kind); }

PRAGMA* remove_pragma(int kind, PRAGMA* list) {
    for (PRAGMA** p = &list; *p; p = &(*p)->next)
        if ((*p)->kind == kind) {
            PRAGMA* dead = *p;
            *p = dead->next;
            erase_pragma(dead);
            break;
        }
    return list;
}

namespace {

const char* first_arg(const PRAGMA* p) { return p->nargs > 0 && p->args[0] ? p->args[0] : ""; }

bool visibility_is(const PRAGMA* p, const char* a, const char* b = nullptr,
                   const char* c = nullptr) {
    if (!p || p->kind != PRAGMA_SYM_VISIBILITY)
        return false;
    const char* v = first_arg(p);
    return strcmp(v, a) == 0 || (b && strcmp(v, b) == 0) || (c && strcmp(v, c) == 0);
}

} // namespace

bool pragma_says_preemptible(const PRAGMA* p) { return visibility_is(p, "default", "extern"); }
bool pragma_says_outside_accessible(const PRAGMA* p) {
    return visibility_is(p, "default", "extern", "protected");
}
bool symbol_is_preemptible(const SYMTAB* sym) {
    return pragma_says_preemptible(symbol_has_pragma(sym, PRAGMA_SYM_VISIBILITY));
}
bool symbol_is_outside_accessible(const SYMTAB* sym) {
    return pragma_says_outside_accessible(symbol_has_pragma(sym, PRAGMA_SYM_VISIBILITY));
}
bool symbol_is_protected(const SYMTAB* sym) {
    return visibility_is(symbol_has_pragma(sym, PRAGMA_SYM_VISIBILITY), "protected");
}
bool symbol_will_be_indirected(const SYMTAB*) { return false; }

void dump_pragma(const PRAGMA* p) {
    switch (p->kind) {
    case PRAGMA_SRC_LANGUAGE:
        dprintf("\t  Symbol pragma: SOURCE LANGUAGE = '%s'\n", first_arg(p));
        return;
    case PRAGMA_SCOPING_FUNC:
        dprintf("\t  Symbol pragma: SYMBOL IS LOCAL STATIC OF %s()\n", first_arg(p));
        return;
    case PRAGMA_TRANSLATION_UNIT_ID:
        dprintf("\t  Symbol pragma: TRANSLATION UNIT ID #%s\n", first_arg(p));
        return;
    case PRAGMA_IS_CLASS_MEMBER:
        dprintf("\t  Symbol pragma: SYMBOL IS CLASS MEMBER\n");
        return;
    case PRAGMA_SYMBOL_IS_DEAD:
        dprintf("\t  Symbol pragma: SYMBOL IS DEAD\n");
        return;
    case PRAGMA_COMDAT_GROUP:
        dprintf("\t  Symbol pragma: COMDAT GROUP %s\n", first_arg(p));
        return;
    case PRAGMA_FUNC_IS_CTOR_DTOR:
        if (first_arg(p)[0] == 'C')
            dprintf("\t  Symbol pragma: SYMBOL IS CONSTRUCTOR\n");
        else if (first_arg(p)[0] == 'D')
            dprintf("\t  Symbol pragma: SYMBOL IS DESTRUCTOR\n");
        else
            dprintf("\t  Symbol pragma: SYMBOL IS CONSTRUCTOR/DESTRUCTOR\n");
        return;
    case PRAGMA_FUNC_ESPEC:
        dprintf("\t  Symbol pragma: EXCEPTION SPEC: (");
        for (int i = 0; i < p->nargs; i++)
            dprintf(" %s", p->args[i] ? p->args[i] : "");
        dprintf(" )\n");
        return;
    case PRAGMA_FUNC_SYNONYM:
        dprintf("\t  Symbol pragma: SYMBOL IS FUNCTION SYNONYM of %s\n", first_arg(p));
        return;
    case PRAGMA_FUNC_RET_BY_CCTOR:
        dprintf("\t  Symbol pragma: FUNC_RET_BY_CCTOR\n");
        return;
    case PRAGMA_FUNC_ALWAYS_INLINE:
        dprintf("\t  Symbol pragma: FUNCTION ALWAYS INLINE\n");
        return;
    default:
        dprintf("\t  Symbol pragma #%d has %d arguments:", p->kind, p->nargs);
        for (int i = 0; i < p->nargs; i++)
            dprintf(" %s", p->args[i] ? p->args[i] : "");
        dprintf("\n");
    }
}

void dump_symbol_pragmas(SYMTAB* sym) {
    for (const PRAGMA* p = sym->pragmas; p; p = p->next)
        dump_pragma(p);
}

void dump_global_symbol(SYMTAB* sym) {
    // The mark column flags symbols whose initial data follow in the output.
    TYPE* shown = sym->stype ? sym->stype : sym->type;
    dprintf("%c   %-11.32s %2ld\t%4ld   %2d  %#6x  %2ld %-16s", sym->init ? 'I' : ' ',
            sym->name ? sym->name : "", static_cast<long>(sym->size),
            static_cast<long>(sym->offset), sym->sclass, sym->qual, static_cast<long>(sym->align),
            shown ? shown->printstr() : "");
    dprintf("\t; (%d,%d)\n", static_cast<int>(sym->file_level), static_cast<int>(sym->file_index));
}
