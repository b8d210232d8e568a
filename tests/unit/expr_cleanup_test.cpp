// The read-time rewrites of statements.
#include <gtest/gtest.h>

#include <cstring>
#include <deque>
#include <vector>

#include "driver/client.h"
#include "driver/driver.h"
#include "inline/funinfo.h"
#include "ir/bblk.h"
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
        for (SYMTAB& s : symbols)
            free(s.name);
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

// Initial data: a scalar's single constant is kept as its known value, unless
// the value may change where the program cannot see it.
TEST_F(ExprCleanup, ScalarInitialConstantsBecomeKnownValues) {
    const auto init = [&](SYMTAB* s, std::vector<NODE*> items) {
        EXPR_LIST* list = nullptr;
        items.push_back(new_node(ENDINIT, tp->mk_void()));
        for (auto it = items.rbegin(); it != items.rend(); ++it)
            list = new EXPR_LIST{*it, list};
        opt_symbol_init(s, list);
        for (EXPR_LIST* l = list; l;) {
            EXPR_LIST* next = l->next;
            erase_tree(l->tree);
            delete l;
            l = next;
        }
    };
    SYMTAB* plain = symbol("plain", i32(), 3);
    init(plain, {mk_ICON(INT65(42), i32())});
    ASSERT_NE(plain->known_value, nullptr);
    EXPECT_EQ(plain->known_value->op, ICON);
    EXPECT_EQ(plain->known_value->value, INT65(42));
    EXPECT_NE(plain->state & SYM_HAS_INIT, 0);

    SYMTAB* target = symbol("target", i32(), 3);
    SYMTAB* address = symbol("address", tp->mk_ptr(i32()), 3);
    init(address, {maketree(UAND, mk_NAME(target, nullptr), nullptr, tp->mk_ptr(i32()), nullptr)});
    ASSERT_NE(address->known_value, nullptr);
    EXPECT_EQ(address->known_value->op, UAND);

    // Pinned (written from outside), volatile, an aggregate, two items.
    SYMTAB* pinned = symbol("pinned", i32(), 2);
    pinned->qual = SQ_PINNED;
    init(pinned, {mk_ICON(INT65(1), i32())});
    SYMTAB* vol = symbol("vol", tp->mk_qual(i32(), TQ_VOLATILE), 3);
    init(vol, {mk_ICON(INT65(1), i32())});
    SYMTAB* array = symbol("array", tp->mk_array(i32(), false, 2), 3);
    init(array, {mk_ICON(INT65(1), i32()), mk_ICON(INT65(2), i32())});
    SYMTAB* half = symbol("half", tp->mk_int(TYPE::ik_llong), 3);
    init(half, {mk_ICON(INT65(1), i32())});
    for (SYMTAB* s : {pinned, vol, array, half})
        EXPECT_EQ(s->known_value, nullptr) << s->name;

    for (SYMTAB* s : {plain, address}) {
        erase_tree(s->known_value);
        s->known_value = nullptr;
    }
}

// A function returning a class through its copy constructor ends with
// "result = result" from the parameter to the local of that name.
TEST_F(ExprCleanup, ReturnByCopyConstructorIsNoted) {
    TYPE* cls = tp->mk_struct("C");
    TYPE* ptr = tp->mk_ptr(cls);
    SYMTAB* fn = symbol("make", tp->mk_func(cls, false, true, false), 2);
    SYMTAB* param = symbol("result", ptr, 9);
    param->lex = 1;
    SYMTAB* local = symbol("result", ptr, 1);
    local->lex = 2;
    const auto run = [&](bool with_pragma, NODE* last) {
        currfunc = fn;
        fn->pragmas =
            with_pragma ? mk_pragma(PRAGMA_FUNC_RET_BY_CCTOR, 0, nullptr, nullptr) : nullptr;
        currfuninfo->result_type = cls;
        currfuninfo->result_by_cctor = nullptr;
        currfuninfo->stmts =
            mkelist(last, mkelist(mk_ICON(INT65(1), i32()), nullptr, nullptr), nullptr);
    };
    const auto clean = [&]() {
        currfuninfo->stmts = erase_tree_list(currfuninfo->stmts);
        erase_pragma_list(fn->pragmas);
        fn->pragmas = nullptr;
        currfunc = nullptr;
        local->type = param->type = ptr;
    };

    run(true, mk_ASG(mk_NAME(local, nullptr), mk_NAME(param, nullptr)));
    note_return_by_copy_constructor();
    EXPECT_EQ(currfuninfo->result_by_cctor, local);
    EXPECT_NE(local->type->qual_kind() & TQ_CONST, 0);
    EXPECT_NE(param->type->qual_kind() & TQ_CONST, 0);
    // The assertion stands just before the last statement.
    const NODE* check = currfuninfo->stmts->next->tree;
    ASSERT_EQ(check->op, NASSERT);
    EXPECT_EQ(check->left->op, NEQ);
    EXPECT_EQ(check->left->left->name_symbol(), local);
    clean();

    // Without the pragma, or copying another way round, nothing changes.
    run(false, mk_ASG(mk_NAME(local, nullptr), mk_NAME(param, nullptr)));
    note_return_by_copy_constructor();
    EXPECT_EQ(currfuninfo->result_by_cctor, nullptr);
    EXPECT_EQ(currfuninfo->stmts->next->tree->op, ICON);
    clean();
    run(true, mk_ASG(mk_NAME(param, nullptr), mk_NAME(local, nullptr)));
    note_return_by_copy_constructor();
    EXPECT_EQ(currfuninfo->result_by_cctor, nullptr);
    EXPECT_EQ(local->type, ptr);
    clean();
}
