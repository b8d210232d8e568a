// Basic blocks, their edges and labels, and statement lists.
#pragma once

#include <cstdint>
#include <vector>

#include "driver/passes.h"

struct NODE;
struct PSN;
struct LOOP;
struct FUNINFO;
struct LS;
struct TRACE;
struct BBLK;

// A statement cell.
struct LIST {
    NODE* tree;
    PSN* psn;
    int16_t a;
    int16_t b;
    LIST* next;
};

// A cell of a block's predecessor or successor list. Lists are short and
// singly linked; there is never more than one edge to the same block.
struct EDGE {
    BBLK* bb;
    // Weight or probability; -1.0 is unknown.
    double edge;
    EDGE* next;
};

// A label of a block. Numbers above 0 come from the parser, generated ones are
// negative. `uses` counts the LABEL operands that name it.
struct LBL {
    LBL* next;
    BBLK* bb;
    int number;
    int uses;
};

struct BBLK : serial_object<BBLK, FUNINFO> {
    explicit BBLK(FUNINFO* owner);
    ~BBLK() override = default;

    // The bb_list: reverse postorder after rebuildcfg. The first block's prev
    // is the last block; the last block's next is null.
    BBLK* next = nullptr;
    BBLK* prev = nullptr;
    // Source order; holds every block, reachable or not.
    BBLK* next_created = nullptr;
    // In execution order; the last statement is the terminator.
    LIST* statements = nullptr;
    EDGE* preds = nullptr;
    EDGE* succs = nullptr;
    // Scratch cursor of the depth-first walk.
    EDGE* cursor = nullptr;
    LBL* labels = nullptr;
    // Innermost loop holding the block; null outside loops or before the
    // hierarchy exists.
    LOOP* loop = nullptr;
    PSN* first_psn = nullptr;
    PSN* last_psn = nullptr;
    double dFreqIn = -1.0;
    TRACE* trace = nullptr;
    // Serial number by source order; -1 for a block made after buildcfg.
    int uon = -1;
    // Position in the bb_list, from 1.
    int dfn = 0;
    uint8_t flags = 0;
    uint8_t visited = 0;
};

// Bit 0 of BBLK::flags: a loop-rotated duplicate test that must stay.
constexpr uint8_t BB_KEEP_DUPLICATE_TEST = 0x01;

EDGE* mkedge(BBLK* bb, EDGE* list);
EDGE* add_edge(BBLK* bb, EDGE* list, double weight);
EDGE* remove_edge(BBLK* bb, EDGE* list);
bool edge_memberp(const BBLK* bb, const EDGE* list);
int edge_length(const EDGE* list);
EDGE* rev_edge_list(EDGE* list);
EDGE* erase_edge_list(EDGE* list);
EDGE* copy_edge_list(const EDGE* list);
EDGE* sort_edge_list(EDGE* list);
EDGE* fast_sort_edge_list(EDGE* list);

BBLK* mkbblock(LIST* statements, BBLK* next, FUNINFO* owner);
BBLK* insert_new_bb(int dfn, BBLK* after, LIST* statements);
void delink_old_bb(BBLK* bb);
void insert_stmt_before_stmt_in_bb(NODE* tree, LIST* before, BBLK* bb);
BBLK* split_block(BBLK* bb, LIST* at, bool even_at_head);
void clear_visited();
void remap_labelrefs(NODE* terminator, BBLK* to, BBLK* from);
void subst_bb_for_bb_in_stmts(BBLK* to, BBLK* from, LIST* statements);
void fixup_edge_lists(BBLK* bb, NODE* terminator);
EDGE* list_branch_targets(NODE* terminator, EDGE* list);

LBL* mklabel(int number, LBL* next, BBLK* bb);
LBL* find_label(int number);
// The block's label, made if it has none.
LBL* label_of_bb(BBLK* bb);

// The last cell of a block's statements, or null.
LIST* last_stmt_cell(const BBLK* bb);
NODE* last_stmt(const BBLK* bb);

// Frees every block of the function, with its statements, edges and labels.
void erase_bblocks(FUNINFO* f);

// The LABEL operands of a terminator: BRANCH's, IF's two, SWITCH's cases and
// default, in that order.
void collect_label_operands(NODE* terminator, std::vector<NODE*>& out);
// The block a LABEL operand names, or null while it is unresolved.
BBLK* label_target(const NODE* label);
// Points a LABEL operand at the block, keeping label use counts right.
void set_label_operand(NODE* label, BBLK* bb);
// Gives up the label uses of a terminator that is about to be erased.
void drop_label_uses(NODE* terminator);
// Brings the numbers in LABEL operands up to date with their label records.
void refresh_label_operands();
// Erases the block's statements, giving up their label uses.
void erase_bb_statements(BBLK* bb);
// Removes the block from its neighbours' edge lists and drops its own.
void unlink_bb_edges(BBLK* bb);
