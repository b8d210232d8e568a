// The read-time rewrites of statements.
#include <gtest/gtest.h>

#include <cstring>
#include <deque>

#include "driver/client.h"
#include "driver/driver.h"
#include "inline/funinfo.h"
#include "ir/node.h"
#include "ir/symtab.h"
#include "ir/types.h"

namespace {

struct ExprCleanup : ::testing::Test {
    TYPE_PKG* saved = nullptr;
    std::deque<SYMTAB> symbols;

    void SetUp() override {
        saved = tp;
        tp = new TYPE_PKG;
        init_types();
        currfuninfo = make_FUNINFO("cleanup_fn");
        currfuninfo->address_taken = false;
    }
    void TearDown() override {
        currfuninfo = nullptr;
        delete tp;
        tp = saved;
    }
    TYPE* i32() { return tp->mk_int(TYPE::ik_int); }
    SYMTAB* symbol(const char* name, TYPE* type, unsigned char sclass) {
        SYMTAB* s = &symbols.emplace_back();
        s->name = strdup(name);
        s->type = type;
        s->sclass = sclass;
        return s;
    }
};

} // namespace

TEST_F(ExprCleanup, IntegerArgumentsArePassedConverted) {
    SYMTAB* f = symbol("f", tp->mk_func(i32(), false, true, false), 5);
    SYMTAB* x = symbol("x", i32(), 1);
    SYMTAB* p = symbol("p", tp->mk_ptr(i32()), 1);
    // f(x, p, 3): COMMA(COMMA(x, p), 3)
    NODE* args =
        maketree(COMMA, maketree(COMMA, mk_NAME(x, nullptr), mk_NAME(p, nullptr), nullptr, nullptr),
                 mk_ICON(INT65(3), i32()), nullptr, nullptr);
    NODE* call =
        maketree(CALL, maketree(UAND, mk_NAME(f, nullptr), nullptr, tp->mk_ptr(f->type), nullptr),
                 args, i32(), nullptr);
    call = expr_cleanup(call);
    EXPECT_EQ(arg_list_lookup(call->right, 0)->op, ACONV);
    EXPECT_EQ(arg_list_lookup(call->right, 1)->op, NAME) << "pointers are passed as they are";
    EXPECT_EQ(arg_list_lookup(call->right, 2)->op, ACONV);
    // Running it again wraps nothing twice.
    call = expr_cleanup(call);
    EXPECT_EQ(arg_list_lookup(call->right, 0)->left->op, NAME);
    erase_tree(call);
}

TEST_F(ExprCleanup, ARedundantPointerConversionTakesItsOperandsType) {
    TYPE* pint = tp->mk_ptr(i32());
    TYPE* pconst = tp->mk_ptr(tp->mk_qual(i32(), 1));
    SYMTAB* q = symbol("q", pint, 1);
    SYMTAB* c = symbol("c", pconst, 1);
    SYMTAB* f = symbol("f", tp->mk_func(i32(), false, true, false), 5);
    NODE* same = maketree(PCONV, mk_NAME(q, nullptr), nullptr, pint, nullptr);
    NODE* call =
        maketree(CALL, maketree(UAND, mk_NAME(f, nullptr), nullptr, tp->mk_ptr(f->type), nullptr),
                 same, i32(), nullptr);
    call = expr_cleanup(call);
    EXPECT_EQ(call->right->type, pint);
    erase_tree(call);
    // Converting a pointer to const into a plain pointer keeps its type.
    NODE* drop_const = maketree(PCONV, mk_NAME(c, nullptr), nullptr, pint, nullptr);
    NODE* call2 =
        maketree(CALL, maketree(UAND, mk_NAME(f, nullptr), nullptr, tp->mk_ptr(f->type), nullptr),
                 drop_const, i32(), nullptr);
    call2 = expr_cleanup(call2);
    EXPECT_EQ(call2->right->type, pint);
    erase_tree(call2);
}

TEST_F(ExprCleanup, MemberPointerOffsetsBecomeByteMultiplies) {
    SYMTAB* i = symbol("i", i32(), 1);
    NODE* t = maketree(PMCONV, mk_NAME(i, nullptr), mk_ICON(INT65(-36), i32()), i32(), nullptr);
    t = expr_cleanup(t);
    EXPECT_EQ(t->op, MULT);
    // Bits to bytes, truncated toward zero.
    EXPECT_EQ(t->right->value, INT65(-4));
    erase_tree(t);
}

TEST_F(ExprCleanup, TakingAnAddressIsNoted) {
    SYMTAB* local = symbol("l", i32(), 1);
    NODE* t = maketree(UAND, mk_NAME(local, nullptr), nullptr, tp->mk_ptr(i32()), nullptr);
    t = expr_cleanup(t);
    EXPECT_TRUE(currfuninfo->address_taken);
    erase_tree(t);
}
