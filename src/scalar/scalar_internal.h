// What the scalar passes share: which variables they may reason about by
// name, and the reads and writes of a statement in the order they happen.
#pragma once
#include <functional>
#include <unordered_map>
#include <unordered_set>

struct NODE;
struct SYMTAB;
struct LIST;
struct BBLK;
struct TYPE;

// A local of the current function that is not volatile, whose address is
// never taken and whose type is a scalar: only statements that name it read
// or write it. Valid after mark_address_taken_locals.
bool is_tracked_scalar(const SYMTAB* s);
// A local of the current function (not static, not a file-level symbol).
bool is_local_symbol(const SYMTAB* s);
// Recomputes the "aliased" mark of the current function's locals from the
// statements: a local is aliased when some UAND takes its address.
void mark_address_taken_locals();

// One read or write of a statement. Events come in the order the statement
// runs them: an assignment's value before its target, an operator-assignment's
// old value before its operand, a call's arguments before the call.
struct SCALAR_REF {
    enum kind_t {
        USE,    // a NAME read for its value
        DEF,    // a NAME written: `node` is the assigning node
        STORE,  // memory written through an address, or by a block copy
        LOAD,   // memory read through an address or a member access
        CALL,   // a call, inline assembly or anything else that may do anything
        ESCAPE, // the address of a NAME is taken
    } kind;
    NODE* node;
    SYMTAB* sym; // for USE, DEF and ESCAPE
    // Under the part of &&, || or ?: that may not run.
    bool conditional;
    // A DEF that also reads the old value (x op= e, ++x, --x).
    bool update;
};
using REF_VISITOR = std::function<void(const SCALAR_REF&)>;
void walk_statement_refs(NODE* stmt, const REF_VISITOR& visit);

// Walks the tree counting NAME reads and writes of one symbol.
bool tree_defines_symbol(NODE* t, const SYMTAB* s);
bool tree_uses_symbol(NODE* t, const SYMTAB* s);
// Whether some memory write or call happens in the tree.
bool tree_writes_memory(NODE* t);

// A COMMAOP statement becomes one statement per part, in place in the list;
// parts without an effect go. Returns the list's new head.
LIST* flatten_statement_sequences(LIST* stmts);

// The propagation passes' common steps: the map's values put for their
// symbols' reads in one statement (true when it changed); the statement
// simplified again, what has no effect dropped (true when a test became
// decided); a block's statements flattened, emptied cells dropped.
// Whether a value is the same wherever and whenever the function evaluates
// it: constants, addresses of named objects, const objects of the file, and
// the locals in `invariant` (those only the argument prolog assigns).
bool value_is_function_invariant(const NODE* t, const std::unordered_set<const SYMTAB*>& invariant);
bool substitute_values(LIST* cell, const std::unordered_map<const SYMTAB*, NODE*>& values);
bool resimplify_statement(LIST* cell);
void drop_empty_statements(BBLK* b);

// Whether two lvalues may name overlapping storage (the answer of the alias
// analysis where it exists, "may" otherwise).
bool lvalues_may_alias(const NODE* a, const NODE* b);

// Local common subexpressions. A first evaluation that is reused is wrapped
// in CSE_ORIG, each reuse is a CSE_DUPE whose right side is the first
// evaluation's tree; lcse resolves both before it returns.
// The tree that a marked tree stands for: the marks looked through.
NODE* skip_dupes(NODE* t);
// A copy with every mark replaced by the tree it stands for.
NODE* copy_tree_without_dupes(NODE* t);
// Whether the tree is a pure value worth computing once: no leaf, a scalar,
// nothing with an effect. With `for_value` clear the tree is an object in
// an lvalue position, which is no value to share.
bool good_CSE_tree(NODE* t, bool for_value);
// A tracked local: one that will likely live in a register.
bool is_likely_register(NODE* t);
// Brings the pointer sums of an owned tree to base + index + constant form,
// so that addresses a constant apart share their variable part; `ptr_type`
// is the type of the root.
NODE* normalize_ptr_for_indexing(NODE* t, TYPE* ptr_type);

// What find_live_variables found, until lva_cleanup: the number of
// candidates, a symbol's number (-1 for none), and whether it is live on
// entry to or exit from a block (always, for a symbol that is no candidate).
int lva_candidate_count();
int lva_candidate_number(const SYMTAB* s);
bool lva_live_in(const BBLK* b, const SYMTAB* s);
bool lva_live_out(const BBLK* b, const SYMTAB* s);
