// Symbols: the record and its class and state bits, the pragma table and its
// log texts, the symbol lists, temporaries, interning, and the two frame
// transformations of locals.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "driver/client.h"
#include "driver/driver.h"
#include "ifile/ifile.h"
#include "inline/funinfo.h"
#include "ir/bblk.h"
#include "ir/node.h"
#include "ir/symtab.h"
#include "ir/types.h"

namespace {

using testing::ExitedWithCode;

// A fresh type package, one current function, empty symbol tables, and every
// symbol made here freed at the end.
struct SymtabTest : testing::Test {
    TYPE_PKG* saved_tp = nullptr;
    int saved_abi = 0;
    std::vector<SYMTAB*> made;
    std::string log_name;

    void SetUp() override {
        saved_tp = tp;
        saved_abi = TYPE_PKG::abi;
        TYPE_PKG::abi = 0;
        tp = new TYPE_PKG;
        init_types();
        clear_FUNINFO_table();
        currfuninfo = make_FUNINFO("f");
        currfunc = nullptr;
        init_symbols();
        errno_symbol = nullptr;
    }
    void TearDown() override {
        stop_log();
        clear_interned_symbols();
        for (FUNINFO* f : {find_FUNINFO("f"), find_FUNINFO("g")})
            if (f) {
                erase_stack_sharing(f);
                for (SYMTAB* list : {f->symbols, f->temps, f->autos, f->regs})
                    for (SYMTAB* s = list; s; s = s->next)
                        remember(s);
            }
        for (SYMTAB* s : made)
            erase_symbol(s);
        clear_FUNINFO_table();
        currfuninfo = nullptr;
        global_symbols = nullptr;
        errno_symbol = nullptr;
        delete tp;
        tp = saved_tp;
        TYPE_PKG::abi = saved_abi;
    }

    void remember(SYMTAB* s) {
        for (SYMTAB* m : made)
            if (m == s)
                return;
        made.push_back(s);
    }
    TYPE* int_type() { return tp->mk_int(TYPE::ik_int); }
    SYMTAB* sym(const char* name, int sclass, TYPE* type = nullptr, int lex = 2) {
        if (!type)
            type = int_type();
        auto* s = new SYMTAB(name, type->is_func() ? 32 : type->size_in_bytes(), 0, sclass, 0, type,
                             type, type->align(), nullptr, lex);
        made.push_back(s);
        return s;
    }
    TYPE* func_type() {
        TYPE* f = tp->mk_func(int_type(), false, true, false);
        tp->type_frozen(f);
        return f;
    }

    void start_log() {
        log_name = testing::TempDir() + "symtab_log.txt";
        fdebug = fopen(log_name.c_str(), "w");
        print_debug = 1;
    }
    void stop_log() {
        if (fdebug) {
            fclose(fdebug);
            fdebug = nullptr;
        }
        print_debug = 0;
    }
    std::string log_text() {
        stop_log();
        std::string text;
        if (FILE* f = fopen(log_name.c_str(), "r")) {
            for (int c; (c = fgetc(f)) != EOF;)
                text += static_cast<char>(c);
            fclose(f);
        }
        return text;
    }
    static char** args(std::initializer_list<const char*> list) {
        char** a = new char*[list.size()];
        int i = 0;
        for (const char* s : list)
            a[i++] = strdup(s);
        return a;
    }
    std::string pragma_text(int kind, std::initializer_list<const char*> list) {
        PRAGMA* p = mk_pragma(kind, static_cast<int>(list.size()), args(list), nullptr);
        start_log();
        dump_pragma(p);
        erase_pragma(p);
        return log_text();
    }
    static std::vector<std::string> names(const SYMTAB* list) {
        std::vector<std::string> v;
        for (; list; list = list->next)
            v.push_back(list->name);
        return v;
    }
};

using SymtabRecord = SymtabTest;

TEST_F(SymtabRecord, ConstructorAssertsTheSizeOfTheReadType) {
    TYPE* i = int_type();
    EXPECT_EXIT(SYMTAB("x", 8, 0, 1, 0, i, i, 32, nullptr, 2), ExitedWithCode(1), "");
    // The read type is what counts, and a function has no data size to check.
    EXPECT_EXIT(SYMTAB("x", 4, 0, 1, 0, i, tp->mk_int(TYPE::ik_llong), 32, nullptr, 2),
                ExitedWithCode(1), "");
    SYMTAB* f = sym("fn", SC_GLOBAL_DEF, func_type(), 0);
    EXPECT_EQ(f->size, 32u);

    const char* text = "local";
    SYMTAB* a = sym(text, SC_LOCAL_22);
    SYMTAB* b = sym("b", SC_AUTO);
    EXPECT_NE(a->name, text);
    EXPECT_STREQ(a->name, "local");
    EXPECT_EQ(a->oclass, SC_LOCAL_22);
    EXPECT_EQ(a->uses, 0xFFFF);
    EXPECT_EQ(a->size, 4u);
    EXPECT_LT(a->order, b->order);
}

TEST_F(SymtabRecord, StateAtCreationMarksClassesOutsideFourSeventeenTwentyTwo) {
    for (int c : {4, 17, 22})
        EXPECT_EQ(sym("s", c)->state, SYM_STATE_NEW) << c;
    for (int c : {1, 2, 3, 5, 9, 21, 23})
        EXPECT_EQ(sym("s", c)->state, SYM_STATE_NEW | SYM_ADDRESS_TAKEN) << c;
}

TEST_F(SymtabRecord, CopyOwnsNameAndPragmas) {
    SYMTAB* s = sym("s", SC_AUTO);
    s->pragmas = mk_pragma(49, 1, args({"C"}), nullptr);
    SYMTAB* kept = copy_symbol(s, 1);
    SYMTAB* fresh = copy_symbol(s, 0);
    made.push_back(kept);
    made.push_back(fresh);
    EXPECT_NE(kept->name, s->name);
    EXPECT_NE(kept->pragmas, s->pragmas);
    EXPECT_NE(kept->pragmas->args[0], s->pragmas->args[0]);
    EXPECT_STREQ(kept->pragmas->args[0], "C");
    EXPECT_EQ(kept->order, s->order);
    EXPECT_GT(fresh->order, s->order);
}

using SymtabPragma = SymtabTest;

TEST_F(SymtabPragma, NamesAndFlagsOfTheTable) {
    auto name = [](int kind) {
        return std::string(PRAGMA{uint8_t(kind), 0, nullptr, nullptr}.name());
    };
    EXPECT_EQ(name(0), "INVALID");
    EXPECT_EQ(name(52), "SYM_IS_REFERENCED");
    EXPECT_EQ(name(69), "COMDAT GROUP");
    EXPECT_EQ(name(83), "Ondrel_WEAK");
    EXPECT_EQ(name(114), "Ondrel_PATCHABLE");
    EXPECT_EQ(name(120), "NOBLOCKED");
    EXPECT_EQ(name(121), "unknown");
    EXPECT_EQ(name(255), "unknown");
    EXPECT_EQ(pragma_flags[0], 0);
    EXPECT_EQ(pragma_flags[2], PRAGMA_ON_VAR);
    EXPECT_EQ(pragma_flags[3], PRAGMA_ON_FUNC);
    EXPECT_EQ(pragma_flags[37], PRAGMA_ON_LOOP);
    EXPECT_EQ(pragma_flags[51], PRAGMA_ON_VAR | PRAGMA_ON_FUNC);
    EXPECT_EQ(pragma_flags[112], PRAGMA_ON_LOOP);
    EXPECT_EQ(pragma_flags[120], 0);
}

TEST_F(SymtabPragma, FixedDumpTexts) {
    EXPECT_EQ(pragma_text(49, {"C++"}), "\t  Symbol pragma: SOURCE LANGUAGE = 'C++'\n");
    EXPECT_EQ(pragma_text(51, {"main"}), "\t  Symbol pragma: SYMBOL IS LOCAL STATIC OF main()\n");
    EXPECT_EQ(pragma_text(55, {"7"}), "\t  Symbol pragma: TRANSLATION UNIT ID #7\n");
    EXPECT_EQ(pragma_text(58, {}), "\t  Symbol pragma: SYMBOL IS CLASS MEMBER\n");
    EXPECT_EQ(pragma_text(59, {}), "\t  Symbol pragma: SYMBOL IS DEAD\n");
    EXPECT_EQ(pragma_text(69, {"grp"}), "\t  Symbol pragma: COMDAT GROUP grp\n");
    EXPECT_EQ(pragma_text(71, {"C1"}), "\t  Symbol pragma: SYMBOL IS CONSTRUCTOR\n");
    EXPECT_EQ(pragma_text(71, {"D0"}), "\t  Symbol pragma: SYMBOL IS DESTRUCTOR\n");
    EXPECT_EQ(pragma_text(71, {"X"}), "\t  Symbol pragma: SYMBOL IS CONSTRUCTOR/DESTRUCTOR\n");
    EXPECT_EQ(pragma_text(71, {}), "\t  Symbol pragma: SYMBOL IS CONSTRUCTOR/DESTRUCTOR\n");
    EXPECT_EQ(pragma_text(75, {"int", "E"}), "\t  Symbol pragma: EXCEPTION SPEC: ( int E )\n");
    EXPECT_EQ(pragma_text(75, {}), "\t  Symbol pragma: EXCEPTION SPEC: ( )\n");
    EXPECT_EQ(pragma_text(78, {"_g"}), "\t  Symbol pragma: SYMBOL IS FUNCTION SYNONYM of _g\n");
    EXPECT_EQ(pragma_text(81, {}), "\t  Symbol pragma: FUNC_RET_BY_CCTOR\n");
    EXPECT_EQ(pragma_text(88, {}), "\t  Symbol pragma: FUNCTION ALWAYS INLINE\n");
    EXPECT_EQ(pragma_text(2, {".data", "x"}), "\t  Symbol pragma #2 has 2 arguments: .data x\n");
    EXPECT_EQ(pragma_text(130, {}), "\t  Symbol pragma #130 has 0 arguments:\n");
}

TEST_F(SymtabPragma, DumpsGoToTheLogOnlyWithPrintDebug) {
    SYMTAB* s = sym("_v", SC_STATIC, nullptr, 0);
    s->pragmas = mk_pragma(59, 0, nullptr, mk_pragma(58, 0, nullptr, nullptr));
    dump_symbol_pragmas(s); // print_debug off: nothing, and no crash without a log
    start_log();
    dump_symbol_pragmas(s);
    EXPECT_EQ(log_text(), "\t  Symbol pragma: SYMBOL IS DEAD\n"
                          "\t  Symbol pragma: SYMBOL IS CLASS MEMBER\n");
}

TEST_F(SymtabPragma, GlobalSymbolLine) {
    SYMTAB* s = sym("_counter", SC_STATIC, nullptr, 0);
    s->offset = 12;
    s->qual = 0x8000;
    s->file_index = 5;
    start_log();
    dump_global_symbol(s);
    EXPECT_EQ(log_text(), "    _counter     4\t  12    3  0x8000  32 int             \t; (0,5)\n");
}

TEST_F(SymtabPragma, LookupRemovalAndVisibility) {
    SYMTAB* s = sym("s", SC_GLOBAL_DEF, nullptr, 0);
    s->pragmas = mk_pragma(72, 1, args({"protected"}),
                           mk_pragma(59, 0, nullptr, mk_pragma(72, 1, args({"default"}), nullptr)));
    EXPECT_EQ(symbol_has_pragma(s, 72), s->pragmas);
    EXPECT_EQ(symbol_has_pragma(s, 1), nullptr);
    EXPECT_TRUE(symbol_is_protected(s));
    EXPECT_TRUE(symbol_is_outside_accessible(s));
    EXPECT_FALSE(symbol_is_preemptible(s));

    // Only the first of the kind goes; the second visibility pragma now rules.
    s->pragmas = remove_pragma(72, s->pragmas);
    EXPECT_EQ(s->pragmas->kind, 59);
    EXPECT_TRUE(symbol_is_preemptible(s));
    EXPECT_FALSE(symbol_is_protected(s));
    s->pragmas = remove_pragma(59, s->pragmas);
    s->pragmas = remove_pragma(59, s->pragmas);
    ASSERT_NE(s->pragmas, nullptr);
    EXPECT_EQ(s->pragmas->next, nullptr);
    char hidden_arg[] = "hidden";
    char* hidden_args[] = {hidden_arg};
    PRAGMA hidden{72, 1, hidden_args, nullptr};
    EXPECT_FALSE(pragma_says_outside_accessible(&hidden));
}

using SymtabLists = SymtabTest;

TEST_F(SymtabLists, ReverseAndUnlinkSymbols) {
    SYMTAB* a = sym("a", 1);
    SYMTAB* b = sym("b", 1);
    SYMTAB* c = sym("c", 1);
    SYMTAB* t = sym("t", 1);
    a->next = b;
    b->next = c;
    SYMTAB* list = revsymtab(a, t);
    EXPECT_EQ(names(list), (std::vector<std::string>{"c", "b", "a", "t"}));
    list = unlink_symbol(b, list);
    EXPECT_EQ(names(list), (std::vector<std::string>{"c", "a", "t"}));
    EXPECT_EQ(b->next, nullptr);
    list = unlink_symbol(c, list);
    EXPECT_EQ(names(list), (std::vector<std::string>{"a", "t"}));
    list = unlink_symbol(b, list);
    EXPECT_EQ(names(list), (std::vector<std::string>{"a", "t"}));
    EXPECT_EQ(revsymtab(nullptr, nullptr), nullptr);
}

TEST_F(SymtabLists, SymlistCells) {
    SYMTAB* a = sym("a", 1);
    SYMTAB* b = sym("b", 1);
    SYMTAB* c = sym("c", 1);
    SYMLIST* l = mk_symlist(a, mk_symlist(b, mk_symlist(a, nullptr)));
    EXPECT_TRUE(symbol_in_list(b, l));
    EXPECT_FALSE(symbol_in_list(c, l));
    EXPECT_EQ(find_sym_in_symlist(a, l), l);
    l = remove_sym_from_symlist(a, l); // the first cell of a only
    EXPECT_EQ(l->sym, b);
    EXPECT_TRUE(symbol_in_list(a, l));
    SYMLIST* copy = copy_symlist(l);
    EXPECT_NE(copy, l);
    copy = revsymlist(copy);
    EXPECT_EQ(copy->sym, a);
    EXPECT_EQ(copy->next->sym, b);
    EXPECT_EQ(copy->next->next, nullptr);
    EXPECT_EQ(l->sym, b); // the original kept its order
    EXPECT_EQ(remove_sym_from_symlist(c, l), l);
    EXPECT_EQ(erase_symlist(copy), nullptr);
    EXPECT_EQ(erase_symlist(l), nullptr);

    int one = 1, two = 2;
    SYMALIST* al = revsymalist(mk_symalist(a, &one, mk_symalist(b, &two, nullptr)));
    EXPECT_EQ(al->sym, b);
    EXPECT_EQ(al->attr, &two);
    SYMALIST* acopy = copy_symalist(al);
    EXPECT_EQ(acopy->next->attr, &one);
    erase_symalist(acopy);
    erase_symalist(al);

    SYMPAIRLIST* pl = mk_symplist(a, b, mk_symplist(b, c, nullptr));
    EXPECT_EQ(find_sym_in_sympairlist(b, pl)->second, c);
    EXPECT_EQ(find_sym_in_sympairlist(c, pl), nullptr);
    EXPECT_EQ(erase_symplist(pl), nullptr);
}

TEST_F(SymtabLists, SymDefEntersGlobalsAndLocals) {
    SYMTAB* g1 = sym("_g1", SC_GLOBAL_DEF, nullptr, 0);
    SYMTAB* g2 = sym("_g2", SC_STATIC, nullptr, 0);
    sym_def(g1);
    sym_def(g2);
    EXPECT_EQ(names(global_symbols), (std::vector<std::string>{"_g2", "_g1"}));

    SYMTAB* p = sym("p", SC_PARAM, nullptr, 1);
    SYMTAB* l = sym("l", SC_LOCAL_22, nullptr, 3);
    SYMTAB* k = sym("k", SC_LOCAL_4, nullptr, 2);
    SYMTAB* off = sym("off", SC_OFF_LIST, nullptr, 2);
    for (SYMTAB* s : {p, l, k, off})
        sym_def(s);
    EXPECT_EQ(names(currfuninfo->symbols), (std::vector<std::string>{"k", "l", "p"}));
    EXPECT_EQ(l->sclass, SC_AUTO);
    EXPECT_EQ(k->sclass, SC_AUTO);
    EXPECT_EQ(l->oclass, SC_LOCAL_22);
    EXPECT_EQ(l->lex, 2);
    EXPECT_EQ(p->lex, 1);
    EXPECT_EQ(p->sclass, SC_PARAM);
}

TEST_F(SymtabLists, SymDefFindsErrnoOfTypeIntOnce) {
    sym_def(sym("_errno", SC_GLOBAL_DEF, tp->mk_int(TYPE::ik_long), 0));
    EXPECT_EQ(errno_symbol, nullptr);
    sym_def(sym("_errnox", SC_GLOBAL_DEF, nullptr, 0));
    EXPECT_EQ(errno_symbol, nullptr);
    SYMTAB* e = sym("__Errno", SC_EXTERN_DECL, nullptr, 0);
    sym_def(e);
    EXPECT_EQ(errno_symbol, e);
    sym_def(sym("_errno", SC_GLOBAL_DEF, nullptr, 0));
    EXPECT_EQ(errno_symbol, e);
}

TEST_F(SymtabLists, SplitSortsByClassAndPutsTemporariesInFront) {
    TYPE* st = tp->mk_struct("S");
    tp->layout_csu(st);
    tp->type_frozen(st);
    TYPE* vol = tp->mk_qual(int_type(), TQ_VOLATILE);
    SYMTAB* p = sym("p", SC_PARAM, nullptr, 1);
    SYMTAB* r = sym("r", SC_REG_PARAM, nullptr, 1);
    SYMTAB* i = sym("i", SC_AUTO);
    SYMTAB* s = sym("s", SC_AUTO, st);
    SYMTAB* v = sym("v", SC_LOCAL_22, vol);
    SYMTAB* j = sym("j", SC_LOCAL_4);
    SYMTAB* off = sym("off", SC_OFF_LIST);
    // Built as the reader would: newest first.
    for (SYMTAB* x : {off, j, v, s, i, r, p}) {
        x->next = currfuninfo->symbols;
        currfuninfo->symbols = x;
    }
    sym_temp('T', -1, int_type(), nullptr);
    sym_temp('S', -1, st, nullptr);
    sym_split(currfuninfo);
    EXPECT_EQ(currfuninfo->symbols, nullptr);
    EXPECT_EQ(currfuninfo->temps, nullptr);
    EXPECT_EQ(names(currfuninfo->regs), (std::vector<std::string>{"$O$T1", "j", "i"}));
    EXPECT_EQ(names(currfuninfo->autos), (std::vector<std::string>{"$O$S2", "v", "s", "r", "p"}));
    EXPECT_EQ(v->sclass, SC_AUTO);
    EXPECT_EQ(j->sclass, SC_AUTO);
    EXPECT_EQ(off->next, nullptr);

    // A second call finds nothing to move.
    sym_split(currfuninfo);
    EXPECT_EQ(names(currfuninfo->regs), (std::vector<std::string>{"$O$T1", "j", "i"}));
    EXPECT_EQ(names(currfuninfo->autos), (std::vector<std::string>{"$O$S2", "v", "s", "r", "p"}));
}

TEST_F(SymtabLists, SplitRejectsAFileLevelClass) {
    currfuninfo->symbols = sym("g", SC_GLOBAL_DEF);
    EXPECT_EXIT(sym_split(currfuninfo), ExitedWithCode(1), "");
}

using SymtabNames = SymtabTest;

TEST_F(SymtabNames, PrefixUnderBothAbis) {
    EXPECT_STREQ(skip_name_prefix("_x"), "x");
    EXPECT_STREQ(skip_name_prefix(".x"), "x");
    EXPECT_STREQ(skip_name_prefix("__x"), "_x");
    EXPECT_STREQ(skip_name_prefix("x"), "x");
    EXPECT_STREQ(skip_name_prefix(""), "");
    EXPECT_TRUE(name_has_prefix("_x"));
    EXPECT_FALSE(name_has_prefix("x"));
    TYPE_PKG::abi = 1;
    EXPECT_STREQ(skip_name_prefix("_x"), "_x");
    EXPECT_STREQ(skip_name_prefix(".x"), ".x");
    EXPECT_FALSE(name_has_prefix("_x"));
}

TEST_F(SymtabNames, TemporariesAreNumberedPerFunction) {
    SYMTAB* a = sym_temp('T', -1, int_type(), nullptr);
    SYMTAB* b = sym_temp('S', -1, int_type(), nullptr);
    SYMTAB* c = sym_temp('R', 12, int_type(), nullptr);
    EXPECT_STREQ(a->name, "$O$T1");
    EXPECT_STREQ(b->name, "$O$S2");
    EXPECT_STREQ(c->name, "$O$R12");
    EXPECT_STREQ(sym_temp('T', -1, int_type(), nullptr)->name, "$O$T3");
    EXPECT_EQ(names(currfuninfo->temps),
              (std::vector<std::string>{"$O$T3", "$O$R12", "$O$S2", "$O$T1"}));
    EXPECT_EQ(a->sclass, SC_AUTO);
    EXPECT_EQ(a->lex, 2);
    EXPECT_EQ(a->order, 0u);
    EXPECT_EQ(a->size, 4u);
    EXPECT_EQ(a->align, 32u);
    EXPECT_EQ(a->state & (SYM_ADDRESS_TAKEN | SYM_STATE_1), 0);
    EXPECT_TRUE(a->state & SYM_STATE_NEW);

    currfuninfo = make_FUNINFO("g");
    EXPECT_STREQ(sym_temp('T', -1, int_type(), nullptr)->name, "$O$T1");
}

TEST_F(SymtabNames, TemporaryTypes) {
    TYPE* e = tp->mk_enum("E");
    SYMTAB* t = sym_temp('T', -1, e, nullptr);
    EXPECT_TRUE(t->type->is_int());
    EXPECT_EQ(t->type->kind, TYPE::tpk_int);

    TYPE* carr = tp->mk_array(tp->mk_qual(int_type(), TQ_CONST), false, 4);
    SYMTAB* a = sym_temp('A', -1, carr, nullptr);
    EXPECT_EQ(a->type->elem_type()->qual_kind(), 0);
    EXPECT_EQ(a->size, 16u);

    SYMTAB* n = gen_operator_new_temp(tp->mk_qual(tp->mk_ptr(int_type()), TQ_VOLATILE));
    SYMTAB* n2 = gen_operator_new_temp(tp->mk_ptr(int_type()));
    EXPECT_EQ(n->type->qual_kind(), TQ_RESTRICT);
    EXPECT_TRUE(is_optimizer_temp(n->name, 'n', 'n'));
    EXPECT_STRNE(n->name, n2->name);
}

TEST_F(SymtabNames, InternalAndTemporaryNames) {
    EXPECT_TRUE(is_internal_name("$O$T12"));
    EXPECT_TRUE(is_internal_name("$Ox"));
    EXPECT_FALSE(is_internal_name("$T12"));
    EXPECT_FALSE(is_internal_name("O$T12"));
    EXPECT_TRUE(is_internal_symbol(sym_temp('T', -1, int_type(), nullptr)));
    EXPECT_TRUE(is_optimizer_temp("$O$T12", 'T', 'S'));
    EXPECT_TRUE(is_optimizer_temp("$O$S", 'T', 'S'));
    EXPECT_FALSE(is_optimizer_temp("$O$A1", 'T', 'S'));
    EXPECT_FALSE(is_optimizer_temp("$O$T1x", 'T', 'S'));
    EXPECT_FALSE(is_optimizer_temp("$O$", 'T', 'S'));
    EXPECT_FALSE(is_optimizer_temp("$O$CSU$s$a", 'C', 'C'));
}

TEST_F(SymtabNames, OperatorNewSymbol) {
    EXPECT_TRUE(is_operator_new_symbol(sym("___nw__FUi", SC_EXTERN_DECL, func_type(), 0)));
    EXPECT_FALSE(is_operator_new_symbol(sym("___nwa__FUi", SC_EXTERN_DECL, func_type(), 0)));
    EXPECT_FALSE(is_operator_new_symbol(sym("___nw__FUi", SC_EXTERN_DECL, nullptr, 0)));
}

TEST_F(SymtabNames, DefinitionForADeclaration) {
    TYPE* f = func_type();
    SYMTAB* decl = sym("_h", SC_EXTERN_DECL, f, 0);
    SYMTAB* other = sym("_h", SC_GLOBAL_DEF, tp->mk_ptr(int_type()), 0);
    SYMTAB* near = sym("_hh", SC_GLOBAL_DEF, f, 0);
    SYMTAB* stat = sym("_h", SC_STATIC, f, 0);
    for (SYMTAB* s : {decl, other, near, stat})
        sym_def(s);
    EXPECT_EQ(get_sym_def_for_decl(decl), decl);
    SYMTAB* def = sym("_h", SC_GLOBAL_DEF, f, 0);
    sym_def(def);
    EXPECT_EQ(get_sym_def_for_decl(decl), def);
    EXPECT_EQ(get_sym_def_for_decl(def), def);
    // Only a file-level declaration is replaced.
    SYMTAB* local = sym("_h", SC_EXTERN_DECL, f, 2);
    EXPECT_EQ(get_sym_def_for_decl(local), local);
}

using SymtabIntern = SymtabTest;

TEST_F(SymtabIntern, OneCopyPerFunctionAndSymbol) {
    SYMTAB* g = sym("_g", SC_GLOBAL_DEF, nullptr, 0);
    EXPECT_EQ(intern_symbol(g, currfuninfo), g);

    SYMTAB* x = sym("x", SC_AUTO);
    x->file_index = 3;
    x->next = g;
    SYMTAB* c = intern_symbol(x, currfuninfo);
    EXPECT_NE(c, x);
    EXPECT_STREQ(c->name, "x");
    EXPECT_EQ(c->next, nullptr);
    EXPECT_EQ(intern_symbol(x, currfuninfo), c);
    EXPECT_EQ(find_interned_symbol(x), c);

    // Another record of the same name, index and type is the same symbol.
    SYMTAB* twin = sym("x", SC_AUTO);
    twin->file_index = 3;
    EXPECT_EQ(intern_symbol(twin, currfuninfo), c);

    SYMTAB* other_index = sym("x", SC_AUTO);
    other_index->file_index = 4;
    SYMTAB* other_type = sym("x", SC_AUTO, tp->mk_int(TYPE::ik_llong));
    other_type->file_index = 3;
    EXPECT_NE(intern_symbol(other_index, currfuninfo), c);
    EXPECT_NE(intern_symbol(other_type, currfuninfo), c);
    FUNINFO* g_info = make_FUNINFO("g");
    SYMTAB* in_g = intern_symbol(x, g_info);
    EXPECT_NE(in_g, c);
    intern_symbol(x, nullptr);

    static int count;
    count = 0;
    map_over_interned_symbols([](SYMTAB*, FUNINFO*) { count++; });
    EXPECT_EQ(count, 5);

    start_log();
    interned_stats();
    const std::string text = log_text();
    EXPECT_EQ(text.rfind("\n5 interned symbols;  load factor ", 0), 0u) << text;
    EXPECT_NE(text.find(", max load factor 1.00, 1 with NULL funinfo.\n"), std::string::npos)
        << text;
}

// struct { int a; int b; } s; in the current function, with one block of
// statements given newest first.
struct ExplodeFixture : SymtabTest {
    TYPE* st = nullptr;
    fkMDATA* ma = nullptr;
    fkMDATA* mb = nullptr;
    SYMTAB* s = nullptr;
    SYMTAB* x = nullptr;
    BBLK* block = nullptr;

    void SetUp() override {
        SymtabTest::SetUp();
        st = tp->mk_struct("S");
        ma = st->add_mdata(new fkMDATA("a", int_type(), 0, 0, 0, 0, false, false, false));
        mb = st->add_mdata(new fkMDATA("b", int_type(), 0, 0, 0, 0, false, false, false));
        tp->layout_csu(st);
        tp->type_frozen(st);
        s = sym("s", SC_AUTO, st);
        x = sym("x", SC_AUTO);
        s->next = x;
        currfuninfo->symbols = s;
        block = new BBLK(currfuninfo);
        currfuninfo->bb_list = block;
    }
    void TearDown() override {
        erase_tree_list(block->statements);
        delete block;
        currfuninfo->bb_list = nullptr;
        SymtabTest::TearDown();
    }
    NODE* member(SYMTAB* whole, fkMDATA* m) {
        NODE* field = new_node(FIELD, m->type);
        field->mk_field(1, m, whole->type);
        return maketree(STDOT, mk_NAME(whole, nullptr), field, m->type, nullptr);
    }
    void add(NODE* t) { block->statements = mkelist(t, block->statements, nullptr); }
    static bool keep_none(SYMTAB*) { return false; }
    static bool keep_all(SYMTAB*) { return true; }
    std::string shape(const NODE* t) {
        if (!t)
            return "";
        std::string out = node_operator_name[t->op];
        if (t->op == NAME)
            out += std::string(":") + t->name_symbol()->name;
        if (t->left || t->right)
            out += "(" + shape(t->left) + "," + shape(t->right) + ")";
        return out;
    }
    std::vector<std::string> statements() {
        std::vector<std::string> v;
        for (LIST* l = block->statements; l; l = l->next)
            v.push_back(shape(l->tree));
        return v;
    }
};

using SymtabExplosion = ExplodeFixture;

TEST_F(SymtabExplosion, MemberUsesBecomeVariables) {
    add(mk_ASG(mk_NAME(x, nullptr), member(s, mb)));
    add(mk_ASG(member(s, ma), mk_NAME(x, nullptr)));
    start_log();
    explode_auto_struct_vars_of(currfuninfo, keep_none);
    EXPECT_EQ(statements(), (std::vector<std::string>{"ASG(NAME:$O$CSU$s$a,NAME:x)",
                                                      "ASG(NAME:x,NAME:$O$CSU$s$b)"}));
    EXPECT_EQ(names(currfuninfo->temps), (std::vector<std::string>{"$O$CSU$s$b", "$O$CSU$s$a"}));
    const SYMTAB* va = currfuninfo->temps;
    EXPECT_EQ(va->sclass, SC_AUTO);
    EXPECT_TRUE(va->type->is_int());
    EXPECT_EQ(va->state & SYM_ADDRESS_TAKEN, 0);
    EXPECT_EQ(log_text(), "Exploding s\tinto $O$CSU$s$a.\nExploding s\tinto $O$CSU$s$b.\n");
}

TEST_F(SymtabExplosion, WholeUseOrExceptionTableKeepsTheStruct) {
    add(mk_ASG(member(s, ma), mk_NAME(x, nullptr)));
    explode_auto_struct_vars_of(currfuninfo, keep_all);
    EXPECT_EQ(currfuninfo->temps, nullptr);
    // While the function has an exception table, a handler may read any
    // local: every struct stays whole.
    function_eht(currfuninfo).push_back(EHT_ENTRY{});
    explode_auto_struct_vars();
    function_eht(currfuninfo).clear();
    EXPECT_EQ(currfuninfo->temps, nullptr);

    add(maketree(UAND, mk_NAME(s, nullptr), nullptr, tp->mk_ptr(st), nullptr));
    explode_auto_struct_vars_of(currfuninfo, keep_none);
    EXPECT_EQ(currfuninfo->temps, nullptr);
    EXPECT_EQ(statements()[1], "ASG(STDOT(NAME:s,FIELD),NAME:x)");
}

TEST_F(SymtabExplosion, MemberAddressKeepsTheStruct) {
    add(maketree(UAND, member(s, ma), nullptr, tp->mk_ptr(int_type()), nullptr));
    explode_auto_struct_vars_of(currfuninfo, keep_none);
    EXPECT_EQ(currfuninfo->temps, nullptr);
}

TEST_F(SymtabExplosion, ArgumentPrologIsCopiedMemberWise) {
    SYMTAB* param = sym("s", SC_PARAM, st, 1);
    add(mk_ASG(mk_NAME(x, nullptr), member(s, mb)));
    add(mk_ASG(mk_NAME(s, nullptr), mk_NAME(param, nullptr)));
    explode_auto_struct_vars_of(currfuninfo, keep_none);
    EXPECT_EQ(statements(), (std::vector<std::string>{"STASG(NAME:s,NAME:s)",
                                                      "ASG(NAME:$O$CSU$s$b,STDOT(NAME:s,FIELD))",
                                                      "ASG(NAME:x,NAME:$O$CSU$s$b)"}));
}

using SymtabStackSharing = SymtabTest;

TEST_F(SymtabStackSharing, ScopeTreeKeepsOnlyNonScalarsOfInnerScopes) {
    TYPE* arr = tp->mk_array(int_type(), false, 8);
    SYMTAB* a = sym("a", SC_AUTO, arr);
    SYMTAB* b = sym("b", SC_AUTO, arr);
    SYMTAB* i = sym("i", SC_AUTO);
    init_stack_sharing();
    STACK_SHARING_SCOPE* root = currfuninfo->overlaps;
    ASSERT_NE(root, nullptr);
    EXPECT_EQ(root->level, 2);
    add_stack_sharing_variable(a); // level 2 holds no variables
    EXPECT_EQ(root->vars, nullptr);

    begin_stack_sharing_scope(3);
    add_stack_sharing_variable(a);
    add_stack_sharing_variable(i);
    end_stack_sharing_scope();
    begin_stack_sharing_scope(3);
    add_stack_sharing_variable(i);
    end_stack_sharing_scope(); // empty: dropped
    begin_stack_sharing_scope(3);
    add_stack_sharing_variable(b);
    end_stack_sharing_scope();
    EXPECT_EQ(currfuninfo->overlaps_current, root);
    ASSERT_NE(root->child, nullptr);
    EXPECT_EQ(root->child->vars->sym, a);
    EXPECT_EQ(root->child->vars->next, nullptr);
    ASSERT_NE(root->child->sibling, nullptr);
    EXPECT_EQ(root->child->sibling->vars->sym, b);
    EXPECT_EQ(root->child->sibling->sibling, nullptr);

    delete_stack_sharing_variable(b);
    EXPECT_EQ(root->child->sibling->vars, nullptr);

    build_stack_sharing_type();
    EXPECT_EQ(currfuninfo->overlaps, nullptr);
    build_stack_sharing_type(); // nothing recorded: nothing to do
}

TEST_F(SymtabStackSharing, RootMustBeTheEmptyLevelTwoRecord) {
    init_stack_sharing();
    currfuninfo->overlaps->level = 3;
    EXPECT_EXIT(build_stack_sharing_type(), ExitedWithCode(1), "");
}

} // namespace
