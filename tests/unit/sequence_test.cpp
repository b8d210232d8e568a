// Pieces of statement sequencing that no step of ours reaches on its own: a
// structure copy split member by member, what is left of a tree promoted to a
// statement, and whether both arms of a ?: may run whatever the test.
#include <gtest/gtest.h>

#include <cstring>
#include <deque>
#include <string>

#include "driver/driver.h"
#include "ir/bblk.h"
#include "ir/infix.h"
#include "ir/ir.h"
#include "ir/node.h"
#include "ir/symtab.h"
#include "ir/types.h"
#include "simplify/simplify.h"

namespace {

TYPE* int_type() {
    if (!tp) {
        tp = new TYPE_PKG;
        init_types();
    }
    return tp->mk_int(TYPE::ik_int);
}

struct Sequence : ::testing::Test {
    TYPE* pair = nullptr;
    TYPE* outer = nullptr;
    TYPE* either = nullptr;
    SYMTAB *a, *b, *x, *y, *u, *v, *p, *f;

    void SetUp() override {
        int_type();
        pair = tp->mk_struct("pair");
        pair->add_mdata(new fkMDATA("lo", int_type(), 0, 0, 0, 0, false, false, false));
        pair->add_mdata(new fkMDATA("bits", int_type(), 0, 0, 3, 0, true, false, false));
        pair->add_mdata(new fkMDATA("", int_type(), 0, 0, 0, 0, true, false, false));
        tp->layout_csu(pair);
        tp->type_frozen(pair);
        outer = tp->mk_struct("outer");
        outer->add_mdata(new fkMDATA("in", pair, 0, 0, 0, 0, false, false, false));
        outer->add_mdata(new fkMDATA("n", int_type(), 0, 0, 0, 0, false, false, false));
        tp->layout_csu(outer);
        tp->type_frozen(outer);
        either = tp->mk_union("either");
        either->add_mdata(new fkMDATA("i", int_type(), 0, 0, 0, 0, false, false, false));
        tp->layout_csu(either);
        tp->type_frozen(either);
        a = symbol("a", pair);
        b = symbol("b", pair);
        x = symbol("x", outer);
        y = symbol("y", outer);
        u = symbol("u", either);
        v = symbol("v", either);
        p = symbol("p", tp->mk_ptr(int_type()));
        TYPE* fn = tp->mk_func(pair, false, true, false);
        tp->type_frozen(fn);
        f = symbol("f", fn);
    }

    static SYMTAB* symbol(const char* name, TYPE* type) {
        static auto* symbols = new std::deque<SYMTAB>;
        SYMTAB* s = &symbols->emplace_back();
        s->name = strdup(name);
        s->type = type;
        s->lex = 2;
        return s;
    }

    NODE* n(SYMTAB* s) { return mk_NAME(s, nullptr); }
    NODE* stasg(NODE* to, NODE* from) { return maketree(STASG, to, from, to->type, nullptr); }

    std::string text(NODE* t) {
        std::string s = stmt2infix(t);
        erase_tree(t);
        return s;
    }
};

} // namespace

TEST_F(Sequence, AStructCopySplitsIntoItsMembersNestedOnesToo) {
    EXPECT_EQ(text(convert_STASG_to_asgs(stasg(n(a), n(b)), 0)), "a.lo = b.lo, a.bits = b.bits");
    EXPECT_EQ(text(convert_STASG_to_asgs(stasg(n(x), n(y)), 0)),
              "x.in.lo = y.in.lo, x.in.bits = y.in.bits, x.n = y.n");
    NODE* list = convert_STASG_to_asgs(stasg(n(a), n(b)), 1);
    EXPECT_EQ(list->op, COMMA);
    erase_tree(list);
}

TEST_F(Sequence, CopiesThatCannotBeSplitStayWhole) {
    // A union's members overlap; a call must run once; a volatile copy keeps
    // its one access.
    NODE* t = stasg(n(u), n(v));
    EXPECT_EQ(convert_STASG_to_asgs(t, 0), t);
    erase_tree(t);
    t = stasg(n(a), maketree(UCALL, maketree(UAND, n(f), nullptr, tp->mk_ptr(f->type), nullptr),
                             nullptr, pair, nullptr));
    EXPECT_EQ(convert_STASG_to_asgs(t, 0), t);
    erase_tree(t);
    SYMTAB* w = symbol("w", tp->mk_qual(pair, TQ_VOLATILE));
    t = stasg(n(w), n(b));
    EXPECT_EQ(convert_STASG_to_asgs(t, 0), t);
    erase_tree(t);
}

TEST_F(Sequence, PromotionKeepsOnlyWhatHasAnEffect) {
    LIST* cell = mkelist(n(p), nullptr, nullptr);
    NODE* store = maketree(ASG, maketree(UMULT, n(p), nullptr, int_type(), nullptr),
                           mk_ICON(INT65(1), int_type()), int_type(), nullptr);
    promote_tree(maketree(PLUS, store, n(p), int_type(), nullptr), cell);
    ASSERT_NE(cell->next, nullptr);
    EXPECT_EQ(stmt2infix(cell->next->tree), "*p = 1");
    promote_tree(maketree(PLUS, n(p), mk_ICON(INT65(4), int_type()), int_type(), nullptr), cell);
    EXPECT_EQ(stmt2infix(cell->next->tree), "*p = 1") << "a pure tree adds no statement";
    erase_tree_list(cell);
}

TEST_F(Sequence, BothArmsRunUnconditionallyOnlyWhenNeitherCanFault) {
    const auto strict = [&](NODE* yes, NODE* no) {
        NODE* colon = maketree(COLON, yes, no, int_type(), nullptr);
        NODE* quest = maketree(QUEST, n(p), colon, int_type(), nullptr);
        const bool r = quest_colon_is_strict(quest, colon);
        erase_tree(quest);
        return r;
    };
    SYMTAB* i = symbol("i", int_type());
    EXPECT_TRUE(strict(n(i), mk_ICON(INT65(0), int_type())));
    EXPECT_TRUE(strict(maketree(PLUS, n(i), n(i), int_type(), nullptr), n(i)));
    EXPECT_FALSE(strict(maketree(UMULT, n(p), nullptr, int_type(), nullptr), n(i)));
    EXPECT_FALSE(strict(n(i), maketree(DIV, n(i), n(i), int_type(), nullptr)));
}
