// Local common subexpressions: the plain view of marked trees, which trees
// are worth sharing, and what the pass does to one block.
#include <gtest/gtest.h>

#include <cstring>
#include <deque>
#include <string>
#include <vector>

#include "driver/driver.h"
#include "driver/options.h"
#include "driver/passes.h"
#include "inline/funinfo.h"
#include "ir/bblk.h"
#include "ir/infix.h"
#include "ir/ir.h"
#include "ir/node.h"
#include "ir/symtab.h"
#include "ir/types.h"
#include "scalar/scalar.h"
#include "scalar/scalar_internal.h"

namespace {

TYPE* int_type() {
    if (!tp) {
        tp = new TYPE_PKG;
        init_types();
    }
    return tp->mk_int(TYPE::ik_int);
}

SYMTAB* symbol(const char* name, TYPE* type, int lex, uint8_t sclass) {
    static auto* symbols = new std::deque<SYMTAB>;
    SYMTAB* s = &symbols->emplace_back();
    s->name = strdup(name);
    s->type = type;
    s->lex = static_cast<uint8_t>(lex);
    s->sclass = sclass;
    return s;
}

NODE* N(SYMTAB* s) { return mk_NAME(s, nullptr); }
NODE* I(long long v) { return mk_ICON(INT65(v), int_type()); }
NODE* op(int o, NODE* a, NODE* b) { return maketree(o, a, b, a->type, nullptr); }
NODE* load(NODE* address) {
    return maketree(UMULT, address, nullptr, address->type->resolved->target, nullptr);
}

int count_op(const NODE* t, int o) {
    int n = 0;
    for (; t; t = t->left) {
        n += t->op == o;
        n += count_op(t->right, o);
    }
    return n;
}

bool has_marks(const NODE* t) { return count_op(t, CSE_ORIG) + count_op(t, CSE_DUPE) > 0; }

struct CseMarks : ::testing::Test {
    SYMTAB* a = symbol("a", int_type(), 2, SC_AUTO);
    SYMTAB* b = symbol("b", int_type(), 2, SC_AUTO);
    SYMTAB* p = symbol("p", tp->mk_ptr(int_type()), 2, SC_AUTO);

    // a * b as a first evaluation, and a reuse of it.
    NODE* orig(NODE* value) {
        NODE* o = new_node(CSE_ORIG, value->type);
        o->right = value;
        return o;
    }
    NODE* dupe(NODE* o) {
        NODE* d = new_node(CSE_DUPE, o->right->type);
        d->left = o->left;
        d->right = o->right;
        return d;
    }
};

TEST_F(CseMarks, SkipDupesLooksThroughBothMarks) {
    NODE* value = op(MULT, N(a), N(b));
    NODE* o = orig(value);
    NODE* d = dupe(o);
    EXPECT_EQ(skip_dupes(o), value);
    EXPECT_EQ(skip_dupes(d), value);
    EXPECT_EQ(skip_dupes(value), value) << "a plain tree is its own view";
    EXPECT_EQ(skip_dupes(nullptr), nullptr);
    // A mark whose tree is marked again, as a value shared inside a larger one.
    NODE* outer = orig(o);
    EXPECT_EQ(skip_dupes(outer), value);
    outer->right = nullptr;
    erase_node(outer);
    erase_tree(d);
    erase_tree(o);
}

TEST_F(CseMarks, CopyWithoutDupesIsPlainAndOwnsEveryNode) {
    NODE* o = orig(op(MULT, N(a), N(b)));
    NODE* sum = op(PLUS, o, dupe(o));
    NODE* copy = copy_tree_without_dupes(sum);
    ASSERT_NE(copy, nullptr);
    EXPECT_FALSE(has_marks(copy));
    EXPECT_EQ(stmt2infix(copy), "a * b + a * b");
    EXPECT_EQ(count_op(copy, MULT), 2);
    EXPECT_TRUE(trees_are_congruent(copy, sum, 0));
    // Both multiplications are new nodes: none is shared with the original
    // or between the two sides.
    EXPECT_NE(copy->left, o->right);
    EXPECT_NE(copy->right, o->right);
    EXPECT_NE(copy->left, copy->right);
    EXPECT_EQ(dupchk(copy), 0);
    // Changing the copy leaves the marked tree alone.
    copy->left->op = MINUS;
    EXPECT_EQ(o->right->op, MULT);
    erase_tree(copy);
    erase_tree(sum);
    EXPECT_EQ(copy_tree_without_dupes(nullptr), nullptr);
}

TEST_F(CseMarks, CopyOfAMarkItselfIsItsValue) {
    NODE* o = orig(load(op(PLUS, N(p), I(4))));
    NODE* copy = copy_tree_without_dupes(o);
    EXPECT_EQ(copy->op, UMULT);
    EXPECT_EQ(stmt2infix(copy), "*(p + 4)");
    erase_tree(copy);
    erase_tree(o);
}

struct GoodCse : CseMarks {
    SYMTAB* g = symbol("g", int_type(), 0, SC_GLOBAL_DEF);
    SYMTAB* v = symbol("v", tp->mk_qual(int_type(), TQ_VOLATILE), 2, SC_AUTO);
    SYMTAB* c = symbol("c", tp->mk_int(TYPE::ik_uchar), 2, SC_AUTO);

    bool good(NODE* t, bool for_value = true) {
        const bool r = good_CSE_tree(t, for_value);
        erase_tree(t);
        return r;
    }
};

TEST_F(GoodCse, LeavesAreNotWorthSharing) {
    EXPECT_FALSE(good(N(a)));
    EXPECT_FALSE(good(I(3)));
    EXPECT_FALSE(good_CSE_tree(nullptr, true));
}

TEST_F(GoodCse, ArithmeticAndLoadsAre) {
    EXPECT_TRUE(good(op(MULT, N(a), N(b))));
    EXPECT_TRUE(good(op(PLUS, N(a), I(1))));
    EXPECT_TRUE(good(load(N(p))));
    EXPECT_TRUE(good(op(PLUS, N(g), N(a))));
}

TEST_F(GoodCse, AnObjectIsNoValue) { EXPECT_FALSE(good(load(N(p)), false)); }

TEST_F(GoodCse, NothingWithAnEffect) {
    EXPECT_FALSE(good(op(PLUS, N(v), I(1)))) << "a volatile read happens every time";
    EXPECT_FALSE(good(load(maketree(PCONV, N(p), nullptr,
                                    tp->mk_ptr(tp->mk_qual(int_type(), TQ_VOLATILE)), nullptr))));
    EXPECT_FALSE(good(op(PLUS, mk_ASG(N(a), I(1)), N(b)))) << "an assignment inside";
    EXPECT_FALSE(good(op(PLUS, op(PLUSPLUS, N(a), I(1)), N(b))));
    SYMTAB* f = symbol("f", tp->mk_func(int_type(), false, true, false), 0, SC_GLOBAL_DEF);
    NODE* call = maketree(UCALL, maketree(UAND, N(f), nullptr, tp->mk_ptr(f->type), nullptr),
                          nullptr, int_type(), nullptr);
    EXPECT_FALSE(good(op(PLUS, call, I(1)))) << "a call inside";
}

TEST_F(GoodCse, AConversionIsWorthWhatItConverts) {
    EXPECT_FALSE(good(maketree(SCONV, N(c), nullptr, int_type(), nullptr)));
    EXPECT_TRUE(
        good(maketree(SCONV, op(MULT, N(a), N(b)), nullptr, tp->mk_int(TYPE::ik_short), nullptr)));
    EXPECT_TRUE(good(maketree(SCONV, load(N(p)), nullptr, tp->mk_int(TYPE::ik_uint), nullptr)));
}

TEST_F(GoodCse, AddressConstantsAndAggregatesAreNot) {
    TYPE* pi = tp->mk_ptr(int_type());
    NODE* adcon = maketree(PLUS, maketree(UAND, N(g), nullptr, pi, nullptr), I(4), pi, nullptr);
    EXPECT_FALSE(good(adcon));
    TYPE* pair = tp->mk_struct("lcse_pair");
    pair->add_mdata(new fkMDATA("lo", int_type(), 0, 0, 0, 0, false, false, false));
    tp->layout_csu(pair);
    tp->type_frozen(pair);
    SYMTAB* sp = symbol("sp", tp->mk_ptr(pair), 2, SC_AUTO);
    EXPECT_FALSE(good(load(N(sp)))) << "a whole structure";
}

TEST_F(GoodCse, MarksAreLookedThrough) {
    NODE* o = orig(op(MULT, N(a), N(b)));
    NODE* d = dupe(o);
    EXPECT_TRUE(good_CSE_tree(d, true));
    EXPECT_TRUE(good_CSE_tree(o, true));
    erase_tree(d);
    erase_tree(o);
}

TEST_F(GoodCse, PointerSumsMeetInBaseIndexForm) {
    TYPE* pi = tp->mk_ptr(int_type());
    // (p + 4) + a and p + (a + 4) both become (p + a) + 4.
    NODE* x = normalize_ptr_for_indexing(
        maketree(PLUS, maketree(PLUS, N(p), I(4), pi, nullptr), N(a), pi, nullptr), pi);
    NODE* y =
        normalize_ptr_for_indexing(maketree(PLUS, N(p), op(PLUS, N(a), I(4)), pi, nullptr), pi);
    EXPECT_EQ(stmt2infix(x), "p + a + 4");
    EXPECT_EQ(stmt2infix(y), "p + a + 4");
    EXPECT_TRUE(trees_are_congruent(x, y, 0));
    EXPECT_EQ(x->left->type, pi);
    EXPECT_EQ(y->left->type, pi);
    // An integer sum is left as it is.
    NODE* z = normalize_ptr_for_indexing(op(PLUS, op(PLUS, N(a), I(4)), N(b)), int_type());
    EXPECT_EQ(stmt2infix(z), "a + 4 + b");
    erase_tree(x);
    erase_tree(y);
    erase_tree(z);
}

// The pass on one block: statements in, the block's statements out.
struct LcseBlock : ::testing::Test {
    FUNINFO* f = nullptr;
    SYMTAB* fn = nullptr;
    SYMTAB *a, *b, *x, *y, *p, *q, *g;

    void SetUp() override {
        int_type();
        static option_obj opts;
        opts.clearopt(OPT_OPT_LEVEL);
        ASSERT_TRUE(opts.process_option("-opt_level=1", false));
        all_option_sets.assign(1, &opts);
        file_options = &opts;
        f = new FUNINFO;
        currfuninfo = f;
        TYPE* ft = tp->mk_func(int_type(), false, true, false);
        tp->type_frozen(ft);
        fn = symbol("fn", ft, 0, SC_GLOBAL_DEF);
        f->symbol = fn;
        f->result_type = int_type();
        a = local("a");
        b = local("b");
        x = local("x");
        y = local("y");
        p = local("p", tp->mk_ptr(int_type()));
        q = local("q", tp->mk_ptr(int_type()));
        g = symbol("g", int_type(), 0, SC_GLOBAL_DEF);
    }
    void TearDown() override {
        erase_bblocks(f);
        while (SYMTAB* t = f->temps) {
            f->temps = t->next;
            erase_symbol(t);
        }
        currfuninfo = nullptr;
        delete f;
        all_option_sets.clear();
        file_options = nullptr;
    }
    SYMTAB* local(const char* name, TYPE* type = nullptr) {
        SYMTAB* s = symbol(name, type ? type : int_type(), 2, SC_AUTO);
        s->next = f->symbols;
        f->symbols = s;
        return s;
    }
    NODE* ret(NODE* v) { return maketree(RETURN, N(fn), v, int_type(), nullptr); }

    // Runs the pass on the statements, a return of x + y last; the block's
    // statements as text, one a line.
    std::string run(std::vector<NODE*> body) {
        body.push_back(ret(op(PLUS, N(x), N(y))));
        LIST* l = nullptr;
        for (NODE* t : body)
            l = mkelist(t, l, nullptr);
        f->stmts = l;
        buildcfg();
        lcse();
        std::string out;
        for (BBLK* bb = f->bb_list; bb; bb = bb->next)
            for (LIST* s = bb->statements; s; s = s->next) {
                EXPECT_FALSE(has_marks(s->tree)) << "a mark left behind";
                out += stmt2infix(s->tree) + "\n";
            }
        return out;
    }
    int count(int o) {
        int n = 0;
        for (BBLK* bb = f->bb_list; bb; bb = bb->next)
            for (LIST* s = bb->statements; s; s = s->next)
                n += count_op(s->tree, o);
        return n;
    }
    int temps() {
        int n = 0;
        for (SYMTAB* t = f->temps; t; t = t->next)
            n++;
        return n;
    }
};

TEST_F(LcseBlock, ARepeatedProductIsComputedOnce) {
    const std::string out = run({mk_ASG(N(x), op(PLUS, op(MULT, N(a), N(b)), N(g))),
                                 mk_ASG(N(y), op(XORB, op(MULT, N(a), N(b)), N(g)))});
    EXPECT_EQ(count(MULT), 1) << out;
    EXPECT_EQ(temps(), 1) << out;
    EXPECT_NE(out.find("$O$c1 = a * b\n"), std::string::npos) << out;
}

TEST_F(LcseBlock, ARedefinedOperandEndsTheSharing) {
    const std::string out =
        run({mk_ASG(N(x), op(PLUS, op(MULT, N(a), N(b)), N(g))), mk_ASG(N(a), I(3)),
             mk_ASG(N(y), op(XORB, op(MULT, N(a), N(b)), N(g)))});
    EXPECT_EQ(count(MULT), 2) << out;
    EXPECT_EQ(temps(), 0) << out;
}

TEST_F(LcseBlock, AStoreThatMayAliasEndsASharedLoad) {
    const auto body = [&](bool store) {
        std::vector<NODE*> s{mk_ASG(N(x), op(MULT, load(N(p)), N(a)))};
        if (store)
            s.push_back(mk_ASG(load(N(q)), I(2)));
        s.push_back(mk_ASG(N(y), op(MULT, load(N(p)), N(b))));
        return s;
    };
    std::string out = run(body(false));
    EXPECT_EQ(count(UMULT), 1) << out;
    TearDown();
    SetUp();
    out = run(body(true));
    EXPECT_EQ(count(UMULT), 3) << out << "both loads of p and the store through q stay";
}

TEST_F(LcseBlock, AGlobalReadEndsAtAStoreAndAtACall) {
    SYMTAB* h = symbol("h", tp->mk_func(int_type(), false, true, false), 0, SC_GLOBAL_DEF);
    // x = g * a; <between>; y = g * a + 1.
    const auto body = [&](NODE* between) {
        std::vector<NODE*> s{mk_ASG(N(x), op(MULT, N(g), N(a)))};
        if (between)
            s.push_back(between);
        s.push_back(mk_ASG(N(y), op(PLUS, op(MULT, N(g), N(a)), I(1))));
        return s;
    };
    std::string out = run(body(mk_ASG(N(b), I(2))));
    EXPECT_EQ(count(MULT), 1) << out << "a tracked local is no memory";
    TearDown();
    SetUp();
    out = run(body(mk_ASG(load(N(q)), I(2))));
    EXPECT_EQ(count(MULT), 2) << out << "q may point at g";
    TearDown();
    SetUp();
    out = run(body(maketree(UCALL, maketree(UAND, N(h), nullptr, tp->mk_ptr(h->type), nullptr),
                            nullptr, int_type(), nullptr)));
    EXPECT_EQ(count(MULT), 2) << out << "the call may change g";
}

TEST_F(LcseBlock, AConditionalFirstEvaluationIsNotReused) {
    // x = b && a * a; y = a * a + 1: the first product may not run.
    const std::string out = run({mk_ASG(N(x), op(ANDAND, N(b), op(MULT, N(a), N(a)))),
                                 mk_ASG(N(y), op(PLUS, op(MULT, N(a), N(a)), I(1)))});
    EXPECT_EQ(count(MULT), 2) << out;
    EXPECT_EQ(temps(), 0) << out;
}

TEST_F(LcseBlock, AnAssignmentOfTheValueHeldGoes) {
    const std::string out = run({mk_ASG(N(x), op(MULT, N(a), N(b))), mk_ASG(N(y), N(g)),
                                 mk_ASG(N(x), op(MULT, N(a), N(b)))});
    EXPECT_EQ(count(MULT), 1) << out;
    EXPECT_EQ(count(ASG), 2) << out;
}

TEST_F(LcseBlock, AnAssignmentAfterAChangeStays) {
    const std::string out = run({mk_ASG(N(x), op(MULT, N(a), N(b))), mk_ASG(N(b), N(g)),
                                 mk_ASG(N(x), op(MULT, N(a), N(b)))});
    EXPECT_EQ(count(MULT), 2) << out;
}

} // namespace
