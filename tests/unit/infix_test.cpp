// The text form of the log and of ondrel-dump: parentheses where C and the
// reader need them, constants that show their type, declarators, and blocks.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <initializer_list>
#include <string>

#include "driver/driver.h"
#include "ifile/ifile.h"
#include "inline/funinfo.h"
#include "ir/bblk.h"
#include "ir/infix.h"
#include "ir/ir.h"
#include "ir/node.h"
#include "ir/symtab.h"
#include "ir/types.h"

namespace {

TYPE* int_type() {
    if (!tp) {
        tp = new TYPE_PKG;
        init_types();
    }
    return tp->mk_int(TYPE::ik_int);
}
TYPE* ikind(TYPE::IKIND k) {
    int_type();
    return tp->mk_int(k);
}
TYPE* ptr(TYPE* t) { return tp->mk_ptr(t); }
TYPE* func(TYPE* ret, std::initializer_list<TYPE*> params, bool proto = true, bool vararg = false) {
    TYPE* f = tp->mk_func(ret, false, proto, vararg);
    for (TYPE* p : params)
        f->add_param(p);
    tp->type_frozen(f);
    return f;
}

struct Infix : ::testing::Test {
    SYMTAB *a, *b, *c, *d, *e, *p, *f, *fp;

    void SetUp() override {
        int_type();
        a = symbol("a");
        b = symbol("b");
        c = symbol("c");
        d = symbol("d");
        e = symbol("e");
        p = symbol("p", ptr(int_type()));
        f = symbol("f", func(int_type(), {int_type(), int_type()}));
        fp = symbol("fp", ptr(func(int_type(), {int_type()})));
    }

    static SYMTAB* symbol(const char* name, TYPE* type = nullptr) {
        static auto* symbols = new std::deque<SYMTAB>;
        SYMTAB* s = &symbols->emplace_back();
        s->name = strdup(name);
        s->type = type ? type : int_type();
        s->lex = 2;
        return s;
    }

    NODE* n(SYMTAB* s) { return mk_NAME(s, nullptr); }
    NODE* k(long long v, TYPE* t = nullptr) { return mk_ICON(INT65(v), t ? t : int_type()); }
    NODE* op(int o, NODE* l, NODE* r = nullptr, TYPE* t = nullptr) {
        return maketree(o, l, r, t ? t : int_type(), nullptr);
    }
    NODE* quest(NODE* cond, NODE* x, NODE* y) { return op(QUEST, cond, op(COLON, x, y)); }

    // Prints the tree and frees it.
    std::string text(NODE* t) {
        std::string s = stmt2infix(t);
        erase_tree(t);
        return s;
    }
};

} // namespace

TEST_F(Infix, ParenthesesFollowPrecedenceAndGrouping) {
    EXPECT_EQ(text(op(MULT, op(PLUS, n(a), n(b)), n(c))), "(a + b) * c");
    EXPECT_EQ(text(op(PLUS, n(a), op(MULT, n(b), n(c)))), "a + b * c");
    EXPECT_EQ(text(op(MINUS, n(a), op(MINUS, n(b), n(c)))), "a - (b - c)");
    EXPECT_EQ(text(op(MINUS, op(MINUS, n(a), n(b)), n(c))), "a - b - c");
    EXPECT_EQ(text(op(DIV, n(a), op(MULT, n(b), n(c)))), "a / (b * c)");
    // Assignments group to the right.
    EXPECT_EQ(text(op(ASG, n(a), op(ASG, n(b), n(c)))), "a = b = c");
    EXPECT_EQ(text(op(PLUS, op(ASG, n(a), n(b)), n(c))), "(a = b) + c");
    EXPECT_EQ(text(op(PLUSASG, n(a), op(SLL, n(b), k(2)))), "a += b << 2");
    EXPECT_EQ(text(op(COMMAOP, op(ASG, n(a), k(1)), n(b))), "a = 1, b");
    EXPECT_EQ(text(op(MULT, op(COMMAOP, n(a), n(b)), n(c))), "(a, b) * c");
}

TEST_F(Infix, UnaryMinusNeverGluesToAMinus) {
    EXPECT_EQ(text(op(UMINUS, k(-5))), "-(-5)");
    EXPECT_EQ(text(op(UMINUS, op(UMINUS, n(a)))), "-(-a)");
    EXPECT_EQ(text(op(MINUS, n(a), k(-5))), "a - -5");
    EXPECT_EQ(text(op(UMINUS, op(PLUS, n(a), n(b)))), "-(a + b)");
    EXPECT_EQ(text(op(MULT, op(UMINUS, n(a)), n(b))), "-a * b");
    EXPECT_EQ(text(op(NOTB, op(EXCLAIM, n(a)))), "~!a");
}

TEST_F(Infix, NestedConditionals) {
    EXPECT_EQ(text(quest(n(c), n(a), quest(n(d), n(b), n(e)))), "c ? a : d ? b : e");
    EXPECT_EQ(text(quest(quest(n(c), n(a), n(b)), n(d), n(e))), "(c ? a : b) ? d : e");
    EXPECT_EQ(text(quest(n(c), quest(n(d), n(a), n(b)), n(e))), "c ? (d ? a : b) : e");
    EXPECT_EQ(text(op(ASG, n(a), quest(n(c), n(a), n(b)))), "a = c ? a : b");
    EXPECT_EQ(text(quest(op(ASG, n(a), n(b)), n(c), op(ASG, n(d), n(e)))), "(a = b) ? c : (d = e)");
    EXPECT_EQ(text(op(PLUS, quest(n(c), n(a), n(b)), k(1))), "(c ? a : b) + 1");
    // A QUEST whose arms are not a COLON keeps its operands in the generic form.
    EXPECT_EQ(text(op(QUEST, n(c), n(a))), "QUEST(c, a)");
}

TEST_F(Infix, ParenthesesForTheReaderWhereCNeedsNone) {
    EXPECT_EQ(text(op(ANDB, n(a), op(EQ, n(b), n(c)))), "a & (b == c)");
    EXPECT_EQ(text(op(ORB, op(ANDB, n(a), n(b)), n(c))), "(a & b) | c");
    EXPECT_EQ(text(op(SLL, n(a), op(PLUS, n(b), k(1)))), "a << (b + 1)");
    EXPECT_EQ(text(op(EQ, op(LT, n(a), n(b)), n(c))), "(a < b) == c");
    EXPECT_EQ(text(op(LT, op(LT, n(a), n(b)), n(c))), "(a < b) < c");
    EXPECT_EQ(text(op(OROR, n(a), op(ANDAND, n(b), n(c)))), "a || (b && c)");
    // The common shapes stay bare.
    EXPECT_EQ(text(op(EQ, op(PLUS, n(a), n(b)), n(c))), "a + b == c");
    EXPECT_EQ(text(op(ANDAND, op(LT, n(a), n(b)), op(ULT, n(c), n(d)))), "a < b && c <u d");
    EXPECT_EQ(text(op(ANDB, op(ANDB, n(a), n(b)), n(c))), "a & b & c");
}

TEST_F(Infix, CastsAndLoadsShowTheirTypes) {
    TYPE* shrt = ikind(TYPE::ik_short);
    TYPE* chr = ikind(TYPE::ik_char);
    EXPECT_EQ(text(op(SCONV, op(PLUS, n(a), n(b)), nullptr, shrt)), "(short)(a + b)");
    EXPECT_EQ(text(op(PLUS, op(SCONV, n(a), nullptr, shrt), n(b))), "(short)a + b");
    EXPECT_EQ(text(op(SCONV, op(SCONV, n(a), nullptr, shrt), nullptr, chr)), "(char)(short)a");
    EXPECT_EQ(text(op(ACONV, n(a))), "(arg int)a");
    EXPECT_EQ(text(op(UMULT, n(p))), "*p");
    // A load of another type than the pointer's names its own.
    EXPECT_EQ(text(op(UMULT, n(p), nullptr, shrt)), "*(short*)p");
    EXPECT_EQ(text(op(UMULT, op(PLUS, n(p), k(4), ptr(int_type())))), "*(p + 4)");
    EXPECT_EQ(text(op(ASG, op(UMULT, op(PCONV, n(a), nullptr, ptr(chr)), nullptr, chr), k(0, chr))),
              "*(char*)a = char(0)");
    EXPECT_EQ(text(op(UMULT, n(p), nullptr, tp->mk_array(int_type(), false, 3))), "*(int (*)[3])p");
    EXPECT_EQ(text(op(UAND, op(UMULT, n(p)), nullptr, ptr(int_type()))), "&*p");
}

TEST_F(Infix, ConstantsShowTheirType) {
    EXPECT_EQ(text(k(5)), "5");
    EXPECT_EQ(text(k(-1)), "-1");
    EXPECT_EQ(text(k(5, ikind(TYPE::ik_uint))), "5u");
    EXPECT_EQ(text(k(-1, ikind(TYPE::ik_uint))), "4294967295u");
    EXPECT_EQ(text(k(5, ikind(TYPE::ik_long))), "5l");
    EXPECT_EQ(text(k(5, ikind(TYPE::ik_llong))), "5ll");
    EXPECT_EQ(text(k(-1, ikind(TYPE::ik_ullong))), "18446744073709551615ull");
    EXPECT_EQ(text(k(200, ikind(TYPE::ik_uchar))), "unsigned char(200)");
    EXPECT_EQ(text(k(-3, ikind(TYPE::ik_short))), "short(-3)");

    NODE* big = new_node(LCON, ikind(TYPE::ik_llong));
    big->mk_lcon("-9223372036854775807");
    EXPECT_EQ(text(big), "-9223372036854775807ll");

    NODE* s = new_node(SCON, tp->mk_array(ikind(TYPE::ik_char), false, 7));
    s->mk_scon("a\"b\\\n\0001", 7);
    EXPECT_EQ(text(s), "\"a\\\"b\\\\\\n\\0001\"");

    NODE* half = new_node(FCON, tp->mk_fltpt(TYPE::fk_double));
    half->mk_fcon("0x1.8p+0");
    EXPECT_EQ(text(half), "0x1.8p+0 /* 1.5 */");
    NODE* tenth = new_node(FCON, tp->mk_fltpt(TYPE::fk_float));
    tenth->mk_fcon("0x1.99999ap-4");
    EXPECT_EQ(text(tenth), "0x1.99999ap-4f /* 0.1 */");
}

TEST_F(Infix, CallsMembersAndBuiltins) {
    NODE* args = op(COMMA, n(a), op(PLUS, n(b), k(1)));
    EXPECT_EQ(text(op(CALL, op(UAND, n(f), nullptr, ptr(f->type)), args)), "f(a, b + 1)");
    NODE* three = op(COMMA, op(COMMA, op(COMMAOP, n(a), n(b)), n(c)), n(d));
    EXPECT_EQ(text(op(CALL, op(UAND, n(f), nullptr, ptr(f->type)), three)), "f((a, b), c, d)");
    EXPECT_EQ(text(op(UCALL, op(UAND, n(f), nullptr, ptr(f->type)))), "f()");
    EXPECT_EQ(text(op(CALL, n(fp), n(a))), "fp(a)");
    EXPECT_EQ(text(op(CALL, op(UMULT, n(fp), nullptr, fp->type->type_pointed_to()), n(a))),
              "(*fp)(a)");
    EXPECT_EQ(text(mk_ICALL("__s2v", op(COMMA, n(a), n(b)), int_type())), "__s2v(a, b)");
    EXPECT_EQ(text(mk_ICALL("__nop", nullptr, int_type())), "__nop()");

    TYPE* st = tp->mk_struct("S");
    fkMDATA* ma = st->add_mdata(new fkMDATA("a", int_type(), 0, 0, 0, 0, false, false, false));
    fkMDATA* mb = st->add_mdata(new fkMDATA("", int_type(), 0, 0, 3, 0, true, false, false));
    tp->layout_csu(st);
    tp->type_frozen(st);
    SYMTAB* s = symbol("s", st);
    SYMTAB* sp = symbol("sp", ptr(st));
    auto field = [](fkMDATA* m, TYPE* csu) {
        NODE* t = new_node(FIELD, m->type);
        t->mk_field(1, m, csu);
        return t;
    };
    EXPECT_EQ(text(op(STDOT, n(s), field(ma, st))), "s.a");
    EXPECT_EQ(text(op(STREF, n(sp), field(mb, st))), "sp->#2");
    EXPECT_EQ(text(op(STDOT, op(UMULT, n(sp), nullptr, st), field(ma, st))), "(*sp).a");
    EXPECT_EQ(text(op(UMULT, op(STREF, n(sp), field(ma, st), ptr(int_type())))), "*sp->a");
}

TEST_F(Infix, EveryOperatorPrintsAndUnknownOnesByTheirName) {
    for (int o = 0; o < 256; o++) {
        NODE* t = new_node(o, int_type());
        const int arity = number_of_operands[o] == NONE ? 0 : number_of_operands[o];
        if (arity >= 1)
            t->left = k(1);
        if (arity >= 2)
            t->right = k(2);
        const std::string s = stmt2infix(t);
        EXPECT_FALSE(s.empty()) << o;
        if (o == ERASED_OP) {
            EXPECT_EQ(s, "<erased>");
        } else if (!node_operator_name[o]) {
            EXPECT_EQ(s.rfind("op" + std::to_string(o), 0), 0u) << s;
        }
        // The shapes with no form of their own fall back to the table name.
        if (o == ABS || o == DDNODE || o == CSE_ORIG || o == MIX_CONJ || o == EXPT ||
            o == STFIELD || o == LOOP_OP || o == COMMA || o == CASE) {
            EXPECT_EQ(s.rfind(std::string(node_operator_name[o]) + "(", 0), 0u) << s;
        }
        t->op = PLUS; // erase_tree refuses erased nodes
        erase_tree(t);
    }
    // Missing operands and odd shapes print, never crash.
    EXPECT_EQ(text(op(PLUS, nullptr, n(a))), "<null> + a");
    EXPECT_EQ(text(op(IF, n(a), n(b))), "IF(a, b)");
    EXPECT_EQ(text(op(STDOT, n(a), n(b))), "STDOT(a, b)");
    EXPECT_EQ(text(op(PLUSPLUS, n(a), k(4))), "PLUSPLUS(a, 4)");
    EXPECT_EQ(text(op(PLUSPLUS, n(a), k(1))), "a++");
    EXPECT_EQ(text(op(ENDINIT, nullptr)), "ENDINIT");
    EXPECT_EQ(stmt2infix(nullptr), "<null>");
}

TEST_F(Infix, TypesReadAsCDeclarations) {
    TYPE* i = int_type();
    TYPE* chr = ikind(TYPE::ik_char);
    EXPECT_EQ(type2infix(ptr(i)), "int*");
    EXPECT_EQ(type2infix(ptr(ptr(chr))), "char**");
    EXPECT_EQ(type2infix(ptr(tp->mk_qual(chr, TQ_CONST))), "const char*");
    EXPECT_EQ(type2infix(tp->mk_qual(ptr(chr), TQ_CONST)), "char* const");
    EXPECT_EQ(type2infix(tp->mk_int(TYPE::ik_char, true)), "signed char");
    EXPECT_EQ(type2infix(ikind(TYPE::ik_uchar)), "unsigned char");
    EXPECT_EQ(type2infix(ikind(TYPE::ik_ullong)), "unsigned long long");
    EXPECT_EQ(type2infix(tp->mk_array(i, false, 3)), "int[3]");
    EXPECT_EQ(type2infix(tp->mk_array(ptr(i), false, 3)), "int*[3]");
    EXPECT_EQ(type2infix(ptr(tp->mk_array(i, false, 3))), "int (*)[3]");
    EXPECT_EQ(type2infix(tp->mk_array(i, false)), "int[]");
    EXPECT_EQ(type2infix(tp->mk_vector(i, false, 4)), "int<4>");
    EXPECT_EQ(type2infix(ptr(func(i, {i, ptr(chr)}))), "int (*)(int, char*)");
    EXPECT_EQ(type2infix(func(i, {})), "int(void)");
    EXPECT_EQ(type2infix(func(i, {}, false)), "int()");
    EXPECT_EQ(type2infix(func(tp->mk_void(), {i}, true, true)), "void(int, ...)");
    EXPECT_EQ(type2infix(func(ptr(i), {})), "int*(void)");
    EXPECT_EQ(type2infix(tp->mk_struct("S")), "struct S");
    TYPE* u = tp->mk_union("U");
    tp->type_frozen(u);
    EXPECT_EQ(type2infix(tp->mk_qual(u, TQ_CONST | TQ_VOLATILE)), "const volatile union U");
    EXPECT_EQ(decl2infix(ptr(func(i, {i})), "fp"), "int (*fp)(int)");
    EXPECT_EQ(decl2infix(tp->mk_array(chr, false, 4), "b"), "char b[4]");
    EXPECT_EQ(decl2infix(ptr(chr), "p"), "char* p");
    EXPECT_EQ(decl2infix(tp->mk_qual(ptr(chr), TQ_CONST), "p"), "char* const p");
}

TEST_F(Infix, NamedTypesAreDefinedOnOneLine) {
    TYPE* s = tp->mk_struct("Pair");
    s->add_mdata(new fkMDATA("a", int_type(), 0, 0, 0, 0, false, false, false));
    s->add_mdata(new fkMDATA("b", tp->mk_array(ikind(TYPE::ik_char), false, 4), 0, 0, 0, 0, false,
                             false, false));
    s->add_mdata(new fkMDATA("f", ikind(TYPE::ik_uint), 0, 0, 3, 0, true, false, false));
    s->add_mdata(new fkMDATA("", int_type(), 0, 0, 2, 0, true, false, false));
    tp->layout_csu(s);
    tp->type_frozen(s);
    EXPECT_EQ(typedef2infix(s),
              "struct Pair {int a; char b[4]; unsigned int f : 3; int : 2;}  ; size 12, align 4");
    EXPECT_EQ(typedef2infix(tp->mk_struct("Later")), "struct Later  ; incomplete");
    EXPECT_EQ(typedef2infix(tp->mk_typedef("PairP", false, ptr(s))), "typedef struct Pair* PairP");
    EXPECT_EQ(typedef2infix(int_type()), "");
}

TEST_F(Infix, SymbolsPragmasAndInitialData) {
    SYMTAB* g = symbol("g", tp->mk_array(int_type(), false, 3));
    g->lex = 0;
    g->sclass = SC_STATIC;
    g->qual = SQ_REGISTER | SQ_PINNED;
    g->align = 64;
    EXPECT_EQ(sym2infix(g), "static g: int[3] register align 8");
    SYMTAB* x = symbol("x");
    x->sclass = SC_AUTO;
    x->align = 32;
    EXPECT_EQ(sym2infix(x), "local x: int");
    SYMTAB* fn = symbol("main", func(int_type(), {}));
    fn->lex = 0;
    fn->sclass = SC_EXTERN_DECL;
    fn->extra = 2;
    EXPECT_EQ(sym2infix(fn), "extern main: int(void) options 2");

    char** args = new char* [2] { strdup("sec\"1"), strdup("") };
    PRAGMA* pr = mk_pragma(2, 2, args, nullptr);
    EXPECT_EQ(pragma2infix(pr), "#pragma DATA_SECTION(\"sec\\\"1\", \"\")");
    PRAGMA* bare = mk_pragma(59, 0, nullptr, nullptr);
    EXPECT_EQ(pragma2infix(bare), "#pragma SYM_IS_DEAD");
    PRAGMA* odd = mk_pragma(200, 0, nullptr, nullptr);
    EXPECT_EQ(pragma2infix(odd), "#pragma unknown_200");
    erase_pragma(pr);
    erase_pragma(bare);
    erase_pragma(odd);

    NODE* skip = new_node(SKIP, int_type());
    skip->mk_skip(4);
    EXPECT_EQ(init2infix(skip), "skip 4");
    erase_tree(skip);
    NODE* end = new_node(ENDINIT, int_type());
    EXPECT_EQ(init2infix(end), "");
    erase_tree(end);
    NODE* adr = op(PLUS, op(UAND, n(x), nullptr, ptr(int_type())), k(4), ptr(int_type()));
    EXPECT_EQ(init2infix(adr), "data &x + 4");
    erase_tree(adr);
}

namespace {

// Blocks built as the reader builds them, printed whole.
struct InfixBlocks : Infix {
    FUNINFO* fun = nullptr;
    SYMTAB* self = nullptr;

    void SetUp() override {
        Infix::SetUp();
        self = symbol("fun", func(int_type(), {}));
        self->lex = 0;
        fun = new FUNINFO;
        fun->symbol = self;
        currfuninfo = fun;
    }
    void TearDown() override {
        erase_bblocks(fun);
        currfuninfo = nullptr;
        delete fun;
    }
    NODE* labeldef(int l) {
        NODE* t = maketree(LABELDEF, nullptr, nullptr, tp->mk_void(), nullptr);
        t->mk_label(static_cast<unsigned>(l));
        return t;
    }
    NODE* go(int l) { return op(BRANCH, mk_LABELREF(l, nullptr), nullptr, tp->mk_void()); }
    void build(std::initializer_list<NODE*> stmts) {
        LIST* l = nullptr;
        for (NODE* t : stmts)
            l = mkelist(t, l, nullptr);
        fun->stmts = l;
        buildcfg();
    }
    std::string blocks() {
        char* buf = nullptr;
        size_t size = 0;
        FILE* out = open_memstream(&buf, &size);
        prbbinfix(out, fun->bb_list);
        fclose(out);
        std::string s(buf, size);
        free(buf);
        return s;
    }
};

} // namespace

TEST_F(InfixBlocks, BlocksShowTheirEdgesAndJumpsNameBlocks) {
    NODE* test =
        mk_IF(op(GT, n(a), k(10)), mk_LABELREF(7, nullptr), mk_LABELREF(8, nullptr), nullptr);
    NODE* cases = op(COMMA, op(CASE, k(1), mk_LABELREF(7, nullptr), tp->mk_void()),
                     op(DEFAULT, mk_LABELREF(9, nullptr), nullptr, tp->mk_void()), tp->mk_void());
    build({op(ASG, n(a), op(PLUS, n(b), n(c))), test, labeldef(8),
           op(SWITCH, n(b), cases, tp->mk_void()), labeldef(7), op(ASG, n(a), k(0)), go(9),
           labeldef(9), op(RETURN, n(self), n(a))});
    EXPECT_EQ(blocks(), "bb1:  ; preds: none  succs: bb2 bb3\n"
                        "  a = b + c\n"
                        "  if (a > 10) goto bb3 else goto bb2\n"
                        "bb2:  ; preds: bb1  succs: bb3 bb4\n"
                        "  switch (b) {case 1: bb3; default: bb4}\n"
                        "bb3:  ; preds: bb1 bb2  succs: bb4\n"
                        "  a = 0\n"
                        "  goto bb4\n"
                        "bb4:  ; preds: bb2 bb3  succs: none\n"
                        "  return a\n");
}

TEST_F(InfixBlocks, NamesArePositionsEvenWithStaleNumbers) {
    build({op(ASG, n(a), k(1)), go(4), labeldef(4), op(ASG, n(a), k(2))});
    const std::string fresh = blocks();
    BBLK* second = fun->bb_list->next;
    for (BBLK* bb = fun->bb_list; bb; bb = bb->next)
        bb->dfn += 40;
    EXPECT_EQ(blocks(), fresh);
    // On its own a statement can only go by the block's dfn.
    EXPECT_EQ(stmt2infix(last_stmt(fun->bb_list)), "goto bb" + std::to_string(second->dfn));
    EXPECT_EQ(label2infix(second->labels), "bb" + std::to_string(second->dfn) + ":");
    // A label of no block keeps its number.
    NODE* loose = mk_LABELREF(99, nullptr);
    EXPECT_EQ(text(op(BRANCH, loose, nullptr, tp->mk_void())), "goto L99");
    LBL lonely{nullptr, nullptr, -3, 0};
    EXPECT_EQ(label2infix(&lonely), "L-3:");
}
