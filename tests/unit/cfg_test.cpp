// Blocks built from statement lists, kept in reverse postorder, and cleaned.
#include <gtest/gtest.h>

#include <cstring>
#include <deque>
#include <initializer_list>
#include <map>
#include <string>
#include <vector>

#include "driver/driver.h"
#include "driver/options.h"
#include "inline/funinfo.h"
#include "ir/bblk.h"
#include "ir/ir.h"
#include "ir/node.h"
#include "simplify/simplify.h"
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

SYMTAB* symbol(const char* name, int lex = 2) {
    static auto* symbols = new std::deque<SYMTAB>;
    SYMTAB* s = &symbols->emplace_back();
    s->name = strdup(name);
    s->type = int_type();
    s->lex = lex;
    return s;
}

NODE* icon(long long v) { return mk_ICON(INT65(v), int_type()); }
NODE* label(int n) {
    NODE* t = maketree(LABELDEF, nullptr, nullptr, tp->mk_void(), nullptr);
    t->mk_label(n);
    return t;
}
NODE* go(int n) {
    return maketree(BRANCH, mk_LABELREF(n, nullptr), nullptr, tp->mk_void(), nullptr);
}
NODE* iff(NODE* cond, int taken, int not_taken) {
    return mk_IF(cond, mk_LABELREF(taken, nullptr), mk_LABELREF(not_taken, nullptr), nullptr);
}
// SWITCH(value, cases): the cases lean left, DEFAULT last when given (0: none).
NODE* sw(NODE* value, std::initializer_list<std::pair<int, int>> cases, int default_label) {
    NODE* chain = nullptr;
    for (auto [v, l] : cases) {
        NODE* c = maketree(CASE, icon(v), mk_LABELREF(l, nullptr), tp->mk_void(), nullptr);
        chain = chain ? maketree(COMMA, chain, c, tp->mk_void(), nullptr) : c;
    }
    if (default_label) {
        NODE* d =
            maketree(DEFAULT, mk_LABELREF(default_label, nullptr), nullptr, tp->mk_void(), nullptr);
        chain = chain ? maketree(COMMA, chain, d, tp->mk_void(), nullptr) : d;
    }
    return maketree(SWITCH, value, chain, tp->mk_void(), nullptr);
}

struct Cfg : ::testing::Test {
    SYMTAB* fn = nullptr;
    SYMTAB* x = nullptr;
    SYMTAB* c = nullptr;
    FUNINFO* f = nullptr;
    // Without any, the run is at level 1 with speed goal 4.
    option_obj options;

    void SetUp() override {
        int_type();
        fn = symbol("f", 0);
        x = symbol("x");
        c = symbol("c");
        f = new FUNINFO;
        f->symbol = fn;
        currfuninfo = f;
    }
    void TearDown() override {
        file_options = nullptr;
        erase_bblocks(f);
        currfuninfo = nullptr;
        delete f;
    }

    // A goal of size over speed: no block is duplicated into its predecessors.
    void favour_size() {
        ASSERT_TRUE(options.process_option("-opt_for_speed=2", false));
        file_options = &options;
    }

    // x = k: the marker by which tests find blocks.
    NODE* mark(long long k) { return mk_ASG(mk_NAME(x, nullptr), icon(k)); }
    NODE* cond() { return mk_NAME(c, nullptr); }
    NODE* ret() {
        return maketree(RETURN, mk_NAME(fn, nullptr), mk_NAME(x, nullptr), int_type(), nullptr);
    }
    NODE* ureturn() {
        return maketree(URETURN, mk_NAME(fn, nullptr), nullptr, tp->mk_void(), nullptr);
    }

    // Statements in source order; the reader's list is the reverse.
    void build(std::initializer_list<NODE*> stmts) {
        LIST* l = nullptr;
        for (NODE* t : stmts)
            l = mkelist(t, l, nullptr);
        f->stmts = l;
        buildcfg();
        check();
    }
    void simp() {
        simpcfg(false, false);
        check();
    }

    std::vector<BBLK*> blocks() {
        std::vector<BBLK*> out;
        for (BBLK* b = f->bb_list; b; b = b->next)
            out.push_back(b);
        return out;
    }
    BBLK* block_with(long long k) {
        for (BBLK* b = f->bb_list; b; b = b->next)
            for (LIST* s = b->statements; s; s = s->next)
                if (s->tree->op == ASG && s->tree->right->op == ICON &&
                    s->tree->right->value == INT65(k))
                    return b;
        return nullptr;
    }
    std::vector<BBLK*> targets(BBLK* b) {
        std::vector<NODE*> labels;
        collect_label_operands(last_stmt(b), labels);
        std::vector<BBLK*> out;
        for (NODE* l : labels)
            out.push_back(label_target(l));
        return out;
    }
    int count_stmts(BBLK* b) {
        int n = 0;
        for (LIST* s = b->statements; s; s = s->next)
            n++;
        return n;
    }

    // What every pass may rely on after buildcfg, rebuildcfg and simpcfg.
    void check() {
        std::vector<BBLK*> list = blocks();
        ASSERT_FALSE(list.empty());
        EXPECT_EQ(f->bb_count, int(list.size()));
        EXPECT_EQ(list.front()->prev, list.back());
        std::map<LBL*, int> uses;
        int created = 0;
        for (BBLK* b = f->bb_created; b; b = b->next_created)
            created++;
        EXPECT_EQ(created, int(list.size())) << "unreachable blocks left in creation order";
        for (size_t i = 0; i < list.size(); i++) {
            BBLK* b = list[i];
            EXPECT_EQ(b->dfn, int(i + 1));
            if (i > 0) {
                EXPECT_EQ(b->prev, list[i - 1]);
            }
            NODE* t = last_stmt(b);
            ASSERT_NE(t, nullptr);
            EXPECT_TRUE(t->op == BRANCH || t->op == IF || t->op == SWITCH || t->op == RETURN ||
                        t->op == URETURN)
                << node_operator_name[t->op];
            std::vector<NODE*> labels;
            collect_label_operands(t, labels);
            for (NODE* l : labels) {
                ASSERT_NE(l->label_rec, nullptr);
                EXPECT_EQ(l->label_value(), l->label_rec->number);
                uses[l->label_rec]++;
                EXPECT_TRUE(edge_memberp(l->label_rec->bb, b->succs));
            }
            for (EDGE* e = b->succs; e; e = e->next) {
                EXPECT_TRUE(edge_memberp(b, e->bb->preds));
                bool named = false;
                for (NODE* l : labels)
                    named |= l->label_rec->bb == e->bb;
                EXPECT_TRUE(named) << "an edge the terminator does not name";
            }
            for (EDGE* e = b->preds; e; e = e->next)
                EXPECT_TRUE(edge_memberp(b, e->bb->succs));
        }
        for (BBLK* b : list)
            for (LBL* l = b->labels; l; l = l->next) {
                EXPECT_EQ(l->bb, b);
                EXPECT_EQ(l->uses, uses[l]) << "label " << l->number;
            }
    }
};

} // namespace

TEST_F(Cfg, SingleReturnGivesEntryAndExitAndMerges) {
    build({ureturn()});
    ASSERT_EQ(blocks().size(), 2u);
    BBLK* entry = f->bb_list;
    EXPECT_EQ(last_stmt(entry)->op, BRANCH);
    EXPECT_EQ(targets(entry)[0], entry->next);
    EXPECT_EQ(last_stmt(entry->next)->op, URETURN);
    EXPECT_EQ(last_stmt(entry->next)->left->name_symbol(), fn);
    simp();
    ASSERT_EQ(blocks().size(), 1u);
    EXPECT_EQ(count_stmts(f->bb_list), 1);
    EXPECT_EQ(last_stmt(f->bb_list)->op, URETURN);
}

TEST_F(Cfg, EntryWithPrologIsNotMergedAndKeepsItsPragmaBehind) {
    SYMTAB* param = symbol("p", 1);
    SYMTAB* local = symbol("p", 2);
    NODE* pragma = maketree(PPRAGMA, nullptr, nullptr, tp->mk_void(), nullptr);
    build({pragma, mk_ASG(mk_NAME(local, nullptr), mk_NAME(param, nullptr)), ureturn()});
    LIST* s = f->bb_list->statements;
    EXPECT_TRUE(tree_is_arg_prolog(s->tree));
    EXPECT_EQ(s->next->tree->op, PPRAGMA);
    ASSERT_NE(f->arg_prolog, nullptr);
    EXPECT_TRUE(trees_are_congruent(f->arg_prolog, s->tree, 1));
    EXPECT_NE(f->arg_prolog, s->tree);
    simp();
    EXPECT_EQ(blocks().size(), 2u);
}

TEST_F(Cfg, FallThroughIntoALabelGetsABranchAndAMissingReturnIsAdded) {
    // x=1; L5: L6: x=2; if (c) goto L5 else L7; L7: x=3
    build({mark(1), label(5), label(6), mark(2), iff(cond(), 5, 7), label(7), mark(3)});
    BBLK* a = block_with(1);
    BBLK* loop = block_with(2);
    BBLK* after = block_with(3);
    ASSERT_TRUE(a && loop && after);
    EXPECT_EQ(a, f->bb_list);
    EXPECT_EQ(last_stmt(a)->op, BRANCH);
    EXPECT_EQ(targets(a)[0], loop);
    // Both labels name the loop block; only the used one counts.
    ASSERT_NE(loop->labels, nullptr);
    ASSERT_NE(loop->labels->next, nullptr);
    EXPECT_EQ(edge_length(loop->preds), 2);
    EXPECT_EQ(targets(loop), (std::vector<BBLK*>{loop, after}));
    // The function's end falls into the exit block.
    ASSERT_EQ(after->succs ? edge_length(after->succs) : 0, 1);
    EXPECT_EQ(last_stmt(after->succs->bb)->op, URETURN);
    EXPECT_EQ(blocks().back(), after->succs->bb);
}

TEST_F(Cfg, DeadStatementsAfterAJumpVanishAndUnreachableBlocksAreLogged) {
    FILE* log = tmpfile();
    FILE* saved = fdebug;
    fdebug = log;
    print_debug = 1;
    // x=1; return; x=2; L3: x=3; goto L4; x=4; L4: x=5; return
    build({mark(1), ret(), mark(2), label(3), mark(3), go(4), mark(4), label(4), mark(5), ret()});
    print_debug = 0;
    fdebug = saved;
    EXPECT_EQ(block_with(2), nullptr);
    EXPECT_EQ(block_with(3), nullptr) << "L3 is never named";
    EXPECT_EQ(block_with(4), nullptr);
    EXPECT_EQ(block_with(5), nullptr);
    ASSERT_EQ(blocks().size(), 1u) << "the exit block is unreachable too";
    EXPECT_EQ(last_stmt(f->bb_list)->op, RETURN);
    EXPECT_EQ(f->bb_list->succs, nullptr);
    rewind(log);
    char text[2048] = {};
    fread(text, 1, sizeof text - 1, log);
    fclose(log);
    EXPECT_NE(strstr(text, "\nUNREACHABLE BASIC BLOCK: UON==2\n"), nullptr) << text;
}

TEST_F(Cfg, DiamondIsInReversePostorder) {
    // if (c) goto 1 else 2; L1: x=1; goto 3; L2: x=2; L3: x=3; switch ... ; return
    build({iff(cond(), 1, 2), label(1), mark(1), go(3), label(2), mark(2), label(3), mark(3),
           sw(mk_NAME(x, nullptr), {{1, 4}, {2, 5}}, 6), label(4), mark(4), go(6), label(5),
           mark(5), label(6), mark(6), ret()});
    std::vector<BBLK*> list = blocks();
    ASSERT_EQ(list.size(), 7u);
    for (BBLK* b : list)
        for (EDGE* e = b->succs; e; e = e->next)
            EXPECT_LT(b->dfn, e->bb->dfn) << "an acyclic graph has only forward edges";
    EXPECT_EQ(edge_length(block_with(3)->preds), 2);
    EXPECT_EQ(edge_length(block_with(3)->succs), 3);
    EXPECT_EQ(edge_length(block_with(6)->preds), 3);
    // Reordering and rebuilding keeps the order valid and the counts.
    rebuildcfg();
    check();
    EXPECT_EQ(blocks().size(), 7u);
}

// The writer lays blocks out in list order, so the order must follow from the
// graph alone: a file read back is built once, the function that wrote it may
// have been rebuilt many times.
TEST_F(Cfg, RebuildingAgainKeepsTheLayout) {
    // if (c) goto 1 else 2; L1: x=1; return; L2: x=2; if (c) goto 3 else 4;
    // L3: x=3; return; L4: x=4; return
    build({iff(cond(), 1, 2), label(1), mark(1), ret(), label(2), mark(2), iff(cond(), 3, 4),
           label(3), mark(3), ret(), label(4), mark(4), ret()});
    const std::vector<BBLK*> once = blocks();
    ASSERT_EQ(once.size(), 5u);
    for (int i = 0; i < 3; i++) {
        rebuildcfg();
        check();
        EXPECT_EQ(blocks(), once) << "rebuild " << i + 2;
    }
}

// Unreachable blocks that jump to each other go together; the jumps give up
// their labels before any label is freed (the memory check sees the order).
TEST_F(Cfg, UnreachableBlocksJumpingToEachOtherGo) {
    // x=1; return; L1: x=2; goto 2; L2: x=3; goto 1
    build({mark(1), ret(), label(1), mark(2), go(2), label(2), mark(3), go(1)});
    rebuildcfg();
    check();
    EXPECT_EQ(blocks().size(), 1u);
    EXPECT_EQ(block_with(2), nullptr);
    EXPECT_EQ(block_with(3), nullptr);
}

TEST_F(Cfg, SwitchWithoutDefaultGoesWhereItFallsThrough) {
    // switch (x) { case 1: goto 1 } x=7; L1: x=1; return
    build({sw(mk_NAME(x, nullptr), {{1, 1}}, 0), mark(7), label(1), mark(1), ret()});
    BBLK* entry = f->bb_list;
    NODE* t = last_stmt(entry);
    ASSERT_EQ(t->op, SWITCH);
    ASSERT_EQ(t->right->op, COMMA);
    EXPECT_EQ(t->right->left->op, CASE);
    EXPECT_EQ(t->right->right->op, DEFAULT);
    EXPECT_EQ(targets(entry), (std::vector<BBLK*>{block_with(1), block_with(7)}));
}

TEST_F(Cfg, EmptySwitchGetsADefaultAndBecomesABranch) {
    // switch (x) {} L1: x=1; return
    build({sw(mk_NAME(x, nullptr), {}, 0), label(1), mark(1), ret()});
    NODE* t = last_stmt(f->bb_list);
    ASSERT_EQ(t->op, SWITCH);
    EXPECT_EQ(t->right->op, DEFAULT);
    simp();
    ASSERT_EQ(blocks().size(), 1u);
    EXPECT_EQ(f->bb_list->statements->tree->op, ASG);
    EXPECT_EQ(last_stmt(f->bb_list)->op, RETURN);
}

TEST_F(Cfg, DeathOnAMissingLabel) {
    EXPECT_EXIT({ find_label(77); }, ::testing::ExitedWithCode(1),
                "\n!!! COMPILER \\(OPTIMIZER\\) ERROR IN 'find_label', INDEX=77 !!!\n");
    EXPECT_EXIT(
        {
            build({go(9), label(8), ret()});
        },
        ::testing::ExitedWithCode(1), "ERROR IN 'find_label', INDEX=9 ");
}

TEST_F(Cfg, GeneratedLabelsCountDownAndWrap) {
    build({ret()});
    f->last_label = 0;
    LBL* a = mklabel(0, nullptr, f->bb_list);
    LBL* b = mklabel(-7, a, f->bb_list);
    EXPECT_EQ(a->number, -1);
    EXPECT_EQ(b->number, -2);
    EXPECT_EQ(b->next, a);
    LBL* parser = mklabel(12, nullptr, nullptr);
    EXPECT_EQ(parser->number, 12);
    f->last_label = -30000;
    LBL* wrapped = mklabel(0, nullptr, nullptr);
    EXPECT_EQ(wrapped->number, -1);
    for (LBL* l : {b, a, parser, wrapped})
        delete l;
}

TEST_F(Cfg, EdgeListsHaveNoParallelEdgesAndSortByDfn) {
    build({iff(cond(), 1, 2), label(1), mark(1), ret(), label(2), mark(2), ret()});
    std::vector<BBLK*> bbs = blocks();
    ASSERT_EQ(bbs.size(), 3u);
    EDGE* l = add_edge(bbs[1], nullptr, 0.5);
    l = add_edge(bbs[2], l, -1.0);
    EXPECT_EQ(add_edge(bbs[1], l, 2.0), l);
    EXPECT_EQ(edge_length(l), 2);
    l = mkedge(bbs[0], l);
    EXPECT_EQ(l->edge, -1.0);
    EDGE* head = l;
    EDGE* copy = copy_edge_list(l);
    l = sort_edge_list(l);
    EXPECT_EQ(l, head) << "the head cell stays the head";
    EXPECT_EQ(l->bb, bbs[0]);
    EXPECT_EQ(l->next->bb, bbs[1]);
    EXPECT_EQ(l->next->edge, 0.5) << "weights travel with their targets";
    EXPECT_EQ(l->next->next->bb, bbs[2]);
    copy = rev_edge_list(copy);
    EXPECT_EQ(copy->bb, bbs[1]);
    copy = fast_sort_edge_list(copy);
    for (EDGE *a = l, *b = copy; a || b; a = a->next, b = b->next) {
        ASSERT_TRUE(a && b);
        EXPECT_EQ(a->bb, b->bb);
        EXPECT_EQ(a->edge, b->edge);
    }
    l = remove_edge(bbs[1], l);
    EXPECT_FALSE(edge_memberp(bbs[1], l));
    EXPECT_EQ(edge_length(l), 2);
    erase_edge_list(l);
    erase_edge_list(copy);
}

TEST_F(Cfg, SplitBlockHandsTheSuccessorsToTheTail) {
    build(
        {mark(1), mark(2), iff(cond(), 1, 2), label(1), mark(3), ret(), label(2), mark(4), ret()});
    BBLK* entry = f->bb_list;
    BBLK* yes = block_with(3);
    BBLK* no = block_with(4);
    LIST* at = entry->statements->next;
    BBLK* tail = split_block(entry, at, false);
    ASSERT_NE(tail, entry);
    EXPECT_EQ(entry->next, tail);
    EXPECT_EQ(count_stmts(entry), 2);
    EXPECT_EQ(last_stmt(entry)->op, BRANCH);
    EXPECT_EQ(last_stmt(entry)->weight, 1.0);
    EXPECT_EQ(targets(entry)[0], tail);
    EXPECT_EQ(tail->statements, at);
    EXPECT_EQ(tail->uon, -1);
    EXPECT_EQ(targets(tail), (std::vector<BBLK*>{yes, no}));
    EXPECT_TRUE(edge_memberp(tail, yes->preds));
    EXPECT_FALSE(edge_memberp(entry, yes->preds));
    EXPECT_EQ(tail->preds->bb, entry);
    // At the head of a block that is not the entry, nothing happens unless asked.
    EXPECT_EQ(split_block(tail, tail->statements, false), tail);
    BBLK* again = split_block(tail, tail->statements, true);
    EXPECT_NE(again, tail);
    EXPECT_EQ(count_stmts(tail), 1);
    renumber_bblocks();
    check();
    // Used labels are numbered from 1 in list order.
    int expect = 1;
    for (BBLK* b = f->bb_list; b; b = b->next)
        if (b->labels && b->labels->uses) {
            EXPECT_EQ(b->labels->number, expect++);
        }
    EXPECT_TRUE(f->blocks_changed);
}

TEST_F(Cfg, NewBlockAfterTheLastTakesTheLastPlace) {
    build({iff(cond(), 1, 2), label(1), mark(1), ret(), label(2), mark(2), ret()});
    BBLK* last = f->bb_list->prev;
    BBLK* added = insert_new_bb(9, last, mkelist(ret(), nullptr, nullptr));
    EXPECT_EQ(last->next, added);
    EXPECT_EQ(added->next, nullptr);
    EXPECT_EQ(f->bb_list->prev, added);
    EXPECT_EQ(added->dfn, 9);
    ASSERT_NE(added->labels, nullptr);
    EXPECT_LT(added->labels->number, 0);
    EXPECT_EQ(last->next_created, added);
    delink_old_bb(added);
    EXPECT_EQ(f->bb_list->prev, last);
    EXPECT_EQ(last->next, nullptr);
    check();
}

TEST_F(Cfg, ChainsOfJumpsAreThreaded) {
    // if (c) goto 1 else 2; L1: goto 3; L3: goto 4; L4: x=1; return; L2: x=2; goto 3
    build({iff(cond(), 1, 2), label(1), go(3), label(3), go(4), label(4), mark(1), ret(), label(2),
           mark(2), go(3)});
    favour_size();
    simp();
    EXPECT_EQ(blocks().size(), 3u);
    EXPECT_EQ(targets(f->bb_list)[0], block_with(1));
    EXPECT_EQ(targets(block_with(2))[0], block_with(1));
}

TEST_F(Cfg, ARingOfJumpsIsLeftAlone) {
    // if (c) goto 1 else 4; L1: goto 2; L2: goto 3; L3: goto 1; L4: x=4; return
    build({iff(cond(), 1, 4), label(1), go(2), label(2), go(3), label(3), go(1), label(4), mark(4),
           ret()});
    simp();
    BBLK* ring = targets(f->bb_list)[0];
    ASSERT_NE(ring, block_with(4));
    // Three BRANCH-only blocks merge into one that jumps to itself.
    EXPECT_EQ(targets(ring)[0], ring);
    EXPECT_EQ(blocks().size(), 3u);
}

TEST_F(Cfg, ThreadingIntoARingEnds) {
    // Each ring member has a second predecessor, so the ring cannot merge away.
    build({sw(mk_NAME(x, nullptr), {{1, 1}, {2, 2}, {3, 3}}, 4), label(1), go(2), label(2), go(3),
           label(3), go(1), label(4), mark(4), ret()});
    simp();
    const std::vector<BBLK*> cases = targets(f->bb_list);
    ASSERT_EQ(cases.size(), 4u);
    EXPECT_EQ(cases[3], block_with(4));
    // Every case still enters a ring of jumps, which the cleaning kept.
    for (int i = 0; i < 3; i++) {
        BBLK* b = cases[i];
        bool back = false;
        for (int hop = 0; hop < 3 && !back; hop++) {
            ASSERT_EQ(count_stmts(b), 1);
            ASSERT_EQ(last_stmt(b)->op, BRANCH);
            b = targets(b)[0];
            back = b == cases[i];
        }
        EXPECT_TRUE(back);
    }
}

TEST_F(Cfg, IfWithOneTargetTwiceBecomesABranchKeepingEffects) {
    // if (x = 5) goto 1 else 1; L1: x=1; return
    NODE* effect = mk_ASG(mk_NAME(x, nullptr), icon(5));
    build({mark(0), iff(effect, 1, 1), label(1), mark(1), ret()});
    EXPECT_EQ(edge_length(f->bb_list->succs), 1);
    simp();
    ASSERT_EQ(blocks().size(), 1u);
    // x=0; x=5; x=1; return
    EXPECT_EQ(count_stmts(f->bb_list), 4);
    EXPECT_EQ(f->bb_list->statements->next->tree->right->value, INT65(5));
}

TEST_F(Cfg, EmptyThenArmIsThreadedAway) {
    // if (c) goto 1 else 2; L1: goto 2; L2: x=2; return
    build({mark(0), iff(cond(), 1, 2), label(1), go(2), label(2), mark(2), ret()});
    EXPECT_EQ(blocks().size(), 3u);
    simp();
    // The condition has no effect, so it goes too.
    ASSERT_EQ(blocks().size(), 1u);
    EXPECT_EQ(count_stmts(f->bb_list), 3);
}

TEST_F(Cfg, ConstantConditionsPickTheirArm) {
    // if (0) goto 1 else 2; L1: x=1; goto 3; L3: x=3; return; L2: x=2; return
    build({iff(icon(0), 1, 2), label(1), mark(1), go(3), label(3), mark(3), ret(), label(2),
           mark(2), ret()});
    simp();
    EXPECT_EQ(block_with(1), nullptr);
    EXPECT_EQ(block_with(3), nullptr);
    ASSERT_EQ(blocks().size(), 1u);
    EXPECT_NE(block_with(2), nullptr);

    erase_bblocks(f);
    build({sw(icon(2), {{1, 1}, {2, 2}}, 3), label(1), mark(1), ret(), label(2), mark(2), ret(),
           label(3), mark(3), ret()});
    simp();
    ASSERT_EQ(blocks().size(), 1u);
    EXPECT_NE(block_with(2), nullptr);
}

TEST_F(Cfg, SwitchCasesThatGoToTheDefaultAreDropped) {
    // switch (x) { case 1: L1; case 2: L3; case 3: L2; default: L3 }
    build({mark(0), sw(mk_NAME(x, nullptr), {{1, 1}, {2, 3}, {3, 2}}, 3), label(1), mark(1), ret(),
           label(2), mark(2), ret(), label(3), mark(3), ret()});
    simp();
    NODE* t = last_stmt(f->bb_list);
    ASSERT_EQ(t->op, SWITCH);
    // COMMA(COMMA(CASE 1, CASE 3), DEFAULT)
    ASSERT_EQ(t->right->op, COMMA);
    ASSERT_EQ(t->right->left->op, COMMA);
    EXPECT_EQ(t->right->left->left->left->value, INT65(1));
    EXPECT_EQ(t->right->left->right->left->value, INT65(3));
    EXPECT_EQ(targets(f->bb_list),
              (std::vector<BBLK*>{block_with(1), block_with(2), block_with(3)}));

    erase_bblocks(f);
    build({sw(mk_NAME(x, nullptr), {{1, 3}, {2, 3}}, 3), label(3), mark(3), ret()});
    simp();
    ASSERT_EQ(blocks().size(), 1u);
    EXPECT_EQ(f->bb_list->statements->tree->op, ASG);
}

TEST_F(Cfg, LoopWhoseOnlyExitIsAReturnStays) {
    // x=0; L1: x=1; if (c) goto 2 else 3; L2: return x; L3: x=3; goto 1
    build(
        {mark(0), label(1), mark(1), iff(cond(), 2, 3), label(2), ret(), label(3), mark(3), go(1)});
    favour_size();
    simp();
    BBLK* head = block_with(1);
    ASSERT_NE(head, nullptr);
    EXPECT_NE(head, f->bb_list) << "a join of two edges is never merged upward";
    EXPECT_EQ(block_with(0), f->bb_list);
    EXPECT_EQ(last_stmt(head)->op, IF);
    BBLK* body = block_with(3);
    ASSERT_NE(body, nullptr);
    EXPECT_EQ(targets(body)[0], head);
    EXPECT_GT(body->dfn, head->dfn) << "the back edge is the only one that goes up";
    for (BBLK* b : blocks())
        EXPECT_NE(last_stmt(b)->op, URETURN) << "nothing reaches the exit block";
    EXPECT_EQ(blocks().size(), 4u);
}

TEST_F(Cfg, RepeatedTestOfThePredecessorIsDecidedAndLogged) {
    FILE* log = tmpfile();
    FILE* saved = fdebug;
    fdebug = log;
    print_debug = 1;
    // if (c) goto 1 else 2; L1: if (c) goto 3 else 4; L2: x=2; ...
    build({mark(0), iff(cond(), 1, 2), label(1), iff(cond(), 3, 4), label(2), mark(2), ret(),
           label(3), mark(3), ret(), label(4), mark(4), ret()});
    const int test_dfn = targets(f->bb_list)[0]->dfn;
    simpcfg(true, false);
    print_debug = 0;
    fdebug = saved;
    check();
    EXPECT_EQ(block_with(4), nullptr) << "c held on the only way in";
    ASSERT_NE(block_with(3), nullptr);
    EXPECT_EQ(targets(f->bb_list), (std::vector<BBLK*>{block_with(3), block_with(2)}));
    EXPECT_EQ(blocks().size(), 3u);
    rewind(log);
    char text[2048] = {};
    fread(text, 1, sizeof text - 1, log);
    fclose(log);
    const std::string line = "\n\tIF in bb " + std::to_string(test_dfn) +
                             " is redundant with bb 1:\n\t\tIF(NAME c, COLON(LABEL ";
    EXPECT_NE(strstr(text, line.c_str()), nullptr) << text;
}

TEST_F(Cfg, RepeatedTestIsKeptWhenTheWaysInDisagree) {
    // Reached once with c true and once with c false: the test decides.
    // if (c) goto 1 else 5; L5: x=5; if (c) goto 6 else 1; L1: if (c) goto 3 else 4; ...
    build({iff(cond(), 1, 5), label(5), mark(5), iff(cond(), 6, 1), label(6), mark(6), ret(),
           label(1), iff(cond(), 3, 4), label(3), mark(3), ret(), label(4), mark(4), ret()});
    simpcfg(true, false);
    check();
    ASSERT_NE(block_with(3), nullptr);
    ASSERT_NE(block_with(4), nullptr);
    BBLK* test = targets(f->bb_list)[0];
    ASSERT_EQ(last_stmt(test)->op, IF);
    EXPECT_EQ(targets(test), (std::vector<BBLK*>{block_with(3), block_with(4)}));
}

TEST_F(Cfg, RepeatedVolatileTestIsKept) {
    // Each read of a volatile is an access of its own and may see a new value.
    SYMTAB* v = symbol("v");
    v->type = tp->mk_qual(int_type(), 2);
    build({iff(mk_NAME(v, nullptr), 1, 2), label(1), iff(mk_NAME(v, nullptr), 3, 4), label(2),
           mark(2), ret(), label(3), mark(3), ret(), label(4), mark(4), ret()});
    simpcfg(true, false);
    check();
    ASSERT_NE(block_with(4), nullptr);
    BBLK* test = targets(f->bb_list)[0];
    ASSERT_EQ(last_stmt(test)->op, IF);
    EXPECT_EQ(last_stmt(test)->left->name_symbol(), v);
}

TEST_F(Cfg, TwoTestsWithOneTargetJoinToAnOr) {
    SYMTAB* d = symbol("d");
    // if (c) goto 1 else 2; L2: if (d) goto 1 else 3; L1: x=1; return; L3: x=3; return
    build({iff(cond(), 1, 2), label(2), iff(mk_NAME(d, nullptr), 1, 3), label(1), mark(1), ret(),
           label(3), mark(3), ret()});
    simp();
    EXPECT_EQ(blocks().size(), 4u) << "only in full mode";
    simpcfg(true, false);
    check();
    ASSERT_EQ(blocks().size(), 3u);
    NODE* t = last_stmt(f->bb_list);
    ASSERT_EQ(t->op, IF);
    // c || d, which the simplifier makes (c | d) != 0 or c | d.
    const int op = t->left->op;
    EXPECT_TRUE(op == OROR || op == NEQ || op == ORB) << node_operator_name[op];
    EXPECT_TRUE(sym_appears_in_tree(c, t->left));
    EXPECT_TRUE(sym_appears_in_tree(d, t->left));
    EXPECT_EQ(targets(f->bb_list), (std::vector<BBLK*>{block_with(1), block_with(3)}));

    // Arms the other way round: if (!c || !d) goto 1 else 3.
    erase_bblocks(f);
    build({iff(cond(), 2, 1), label(2), iff(mk_NAME(d, nullptr), 3, 1), label(1), mark(1), ret(),
           label(3), mark(3), ret()});
    simpcfg(true, false);
    check();
    t = last_stmt(f->bb_list);
    ASSERT_EQ(t->left->op, OROR);
    // Each negation in the simplifier's form.
    NODE* not_c = simp_tree(mk_EXCLAIM(cond()), nullptr, nullptr);
    NODE* not_d = simp_tree(mk_EXCLAIM(mk_NAME(d, nullptr)), nullptr, nullptr);
    EXPECT_TRUE(trees_are_congruent(t->left->left, not_c, 0));
    EXPECT_TRUE(trees_are_congruent(t->left->right, not_d, 0));
    erase_tree(not_c);
    erase_tree(not_d);
    EXPECT_EQ(targets(f->bb_list), (std::vector<BBLK*>{block_with(1), block_with(3)}));
}

TEST_F(Cfg, SecondTestWithWorkBeforeItIsNotJoined) {
    SYMTAB* d = symbol("d");
    // x=2 runs only when c fails; joining would skip it.
    build({iff(cond(), 1, 2), label(2), mark(2), iff(mk_NAME(d, nullptr), 1, 3), label(1), mark(1),
           ret(), label(3), mark(3), ret()});
    simpcfg(true, false);
    check();
    NODE* t = last_stmt(f->bb_list);
    ASSERT_EQ(t->op, IF);
    EXPECT_EQ(t->left->name_symbol(), c);
    EXPECT_EQ(targets(f->bb_list)[1], block_with(2));
}

TEST_F(Cfg, TestsWithEffectsAreNotJoined) {
    SYMTAB* v = symbol("v");
    v->type = tp->mk_qual(int_type(), 2);
    build({iff(cond(), 1, 2), label(2), iff(mk_NAME(v, nullptr), 1, 3), label(1), mark(1), ret(),
           label(3), mark(3), ret()});
    simpcfg(true, false);
    check();
    EXPECT_EQ(last_stmt(f->bb_list)->left->op, NAME);
    EXPECT_EQ(blocks().size(), 4u);
}
