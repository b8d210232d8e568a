// What the parts of the CFG simplifier share: simpcfg.cpp, simpcfg_ifconv.cpp,
// simpcfg_thread.cpp, crossjump.cpp and switchcases.cpp. Nothing outside them
// includes it.
#pragma once

#include <string>
#include <vector>

struct NODE;
struct BBLK;
struct LIST;

namespace simpcfg_impl {

BBLK* entry_bb();
bool is_branch_only(const BBLK* b);
// Drops the block's out-edges and adds them again from its terminator.
void reset_successors(BBLK* b);
// Replaces the terminator by a BRANCH to `to`; what must still run of
// `effects` goes in front of it.
void make_branch(BBLK* b, BBLK* to, NODE* effects);
// Nothing observable happens when the tree is evaluated: no effect, no
// volatile access, no dependence node.
bool condition_is_pure(const NODE* c);
// `t` as it must hold for control to go the chosen way.
NODE* as_tested(NODE* t, bool positive);
// The two blocks an IF goes to, null while a label is unresolved.
BBLK* taken_target(const NODE* t);
BBLK* not_taken_target(const NODE* t);
// The only predecessor of the block, or null.
BBLK* sole_predecessor(const BBLK* b);
int statement_count(const BBLK* b);

// A short prefix form of a tree, for the log.
std::string tree_text(const NODE* t);

// The items of a SWITCH in order, DEFAULT last; and the freeing of the COMMA
// spine alone, the items being kept or erased by the caller.
std::vector<NODE*> switch_items(NODE* t);
void free_switch_spine(NODE* n);
// A COMMA chain of the items, which must end with DEFAULT.
NODE* switch_chain(const std::vector<NODE*>& items, const NODE* like);

// Two statements that do the same when run in the same state.
bool statements_are_congruent(const NODE* a, const NODE* b);
bool tree_lists_are_congruent(const LIST* a, const LIST* b);

// The successor duplication test of the block merging step.
bool block_may_be_duplicated(const BBLK* s);

// A local scalar that only the statements naming it can read or write: not
// volatile, not global or static, its address never taken, not aliased.
bool tree_is_private_scalar(const NODE* t);

// If-conversion of IF terminators (simpcfg_ifconv.cpp). Each rewrites the
// block's terminator and returns true, or leaves everything as it was.
bool fold_increment_diamond(BBLK* b, NODE* t);
bool merge_two_armed_assignment(BBLK* b, NODE* t, bool full, bool may_speculate);
bool fuse_loop_exit_test(BBLK* b, NODE* t);

// Value-driven threading (simpcfg_thread.cpp): where a BRANCH from `from` to
// `target` really lands when `target` holds only an IF that the constant
// `from` last assigned decides; `target` itself when nothing is known.
BBLK* thread_by_value(BBLK* from, BBLK* target);

// Cross jumping (crossjump.cpp); true when the graph changed. The dfn of
// blocks it makes is stale until the caller renumbers.
bool cross_jump();

} // namespace simpcfg_impl
