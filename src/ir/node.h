// Expression and statement trees: the node, the operator numbers of the file
// format and the tables indexed by them.
#pragma once

#include <cstdint>
#include <string>

#include "support/int65.h"

struct TYPE;
struct SYMTAB;
struct PRAGMA;
struct LS;
struct LBL;
struct PSN;
struct LIST;
struct fkMDATA;
struct simul_fval;
struct PTENV;
struct DD_INFO;

// Operator numbers. They are part of the intermediate file and never change;
// 163 to 189 exist in memory only. The loop statement is LOOP_OP, since LOOP
// names the loop record.
enum : int {
    NOP = 0,
    LABEL = 1,
    NAME = 2,
    SCON = 3,
    ICON = 4,
    FCON = 5,
    PLUS = 6,
    PLUSASG = 7,
    MINUS = 8,
    MINUSASG = 9,
    UMINUS = 10,
    MULT = 11,
    MULTASG = 12,
    UMULT = 13,
    ANDB = 14,
    ANDBASG = 15,
    UAND = 16,
    ORB = 17,
    ORBASG = 18,
    XORB = 19,
    XORBASG = 20,
    QUEST = 21,
    COLON = 22,
    ANDAND = 23,
    OROR = 24,
    LCON = 25,
    FIELD = 26,
    ABS = 27,
    RETURN = 36,
    SWITCH = 40,
    DEFAULT = 46,
    CASE = 47,
    COMMA = 56,
    PCOMMA = 57,
    ASG = 58,
    COMMAOP = 59,
    DIV = 60,
    DIVASG = 61,
    MOD = 62,
    MODASG = 63,
    SLL = 64,
    SLLASG = 65,
    SRL = 66,
    SRLASG = 67,
    STDOT = 68,
    STREF = 69,
    CALL = 70,
    UCALL = 72,
    LOOP_OP = 74,
    ENDLOOP = 75,
    EXCLAIM = 76,
    NOTB = 77,
    PLUSPLUS = 78,
    MINMIN = 79,
    EQ = 80,
    NEQ = 81,
    LE = 82,
    LT = 83,
    GE = 84,
    GT = 85,
    ULE = 86,
    ULT = 87,
    UGE = 88,
    UGT = 89,
    STFIELD = 96,
    ARGREF = 97,
    STASG = 98,
    STARG = 99,
    ARASG = 103,
    SCONV = 104,
    PCONV = 105,
    PMCONV = 106,
    PVCONV = 107,
    ACONV = 108,
    CBRANCH = 109,
    ENDINIT = 112,
    BRANCH = 114,
    SKIP = 115,
    URETURN = 118,
    DDNODE = 119,
    SQRT = 121,
    SQR = 122,
    NASSERT = 123,
    ASSERT = 124,
    MEMCPY = 125,
    TOIEEE = 127,
    FRIEEE = 128,
    ICALL = 129,
    UICALL = 130,
    RECIP = 131,
    MCALL = 132,
    UMCALL = 133,
    VPACK = 134,
    VPACKM = 135,
    VPACK1P = 136,
    VFIELD = 138,
    VRCONV = 139,
    COMPLEX = 140,
    REAL = 141,
    IMAG = 142,
    OUIALIGN = 163,
    NONALIGN = 164,
    SIMDHI = 165,
    SIMDLO = 166,
    PPRAGMA = 167,
    VSCONV = 168,
    EXPT = 169,
    EXPRSTUB = 170,
    CSE_DUPE = 171,
    CSE_ORIG = 172,
    ASM = 173,
    IF = 174,
    LABELDEF = 175,
    INITLOOP = 176,
    IDENTITY = 177,
    ISP2CHAR = 178,
    MIXVALUE = 179,
    MIX_CONJ = 180,
    MIX_DISJ = 181,
    MIX_SET = 182,
    BGNBLOCK = 183,
    ENDBLOCK = 184,
    SSA_PHI = 185,
    SSA_USE = 186,
    SSA_DEF = 187,
    SSA_MU = 188,
    SSA_CHI = 189,
    ERASED_OP = 255,
};

// Operators of the file format with no operator of their own in memory: the
// reader removes EPVAL, and 163 is VREG on file but OUIALIGN in memory.
constexpr int EPVAL = 110;
constexpr int VREG = 163;

constexpr int number_of_opcodes = 190;
// "None" in the operator tables.
constexpr unsigned char NONE = 255;

// The eight tables indexed by operator, 256 entries each.
extern unsigned char number_of_operands[256];
extern unsigned char side_effects[256];
extern unsigned char precedence[256];
extern unsigned char op_OK_for_SP[256];
extern unsigned char op_of_opASG[256];
extern unsigned char boolean_inv[256];
extern unsigned char boolean_result[256];
extern unsigned char commute_inv[256];
extern const char* node_operator_name[256];

// Values of `side_effects`.
enum : unsigned char { SE_NONE = 0, SE_ASSIGNS = 1, SE_CONTROL = 2, SE_ALWAYS = 255 };

struct NODE {
    int op;
    TYPE* type;
    NODE* left;
    NODE* right;
    // The constant of ICON; its low word is also the label number of LABEL and
    // LABELDEF and the count of SKIP.
    INT65 value;
    // SYMTAB* of NAME, simul_fval* of FCON, the name of the ICALL family, the
    // containing struct type of FIELD.
    void* sym;
    fkMDATA* mval;
    uintptr_t reserved1[3];
    LS* scope;
    uintptr_t reserved2[2];
    TYPE* orig_type;
    uint32_t edge_profile;
    double weight;
    DD_INFO* dd_info;
    LBL* label_rec;
    char* text;
    PRAGMA* pragma;
    PTENV* ptenv;
    uintptr_t dd_work[3];
    uint16_t work1;
    uint16_t work2;
    uint16_t work3;
    uint8_t flags;
    int32_t call_id;
    int32_t share_mark;

    SYMTAB* name_symbol() const { return static_cast<SYMTAB*>(sym); }
    simul_fval* fval() const { return static_cast<simul_fval*>(sym); }
    // The text form of an FCON: its value in exact hexadecimal, made when first
    // asked and cached in `text`, which a change of the value must clear.
    const char* fcon_value() const;
    const char* icall_name() const { return static_cast<const char*>(sym); }
    int label_value() const { return static_cast<int>(value.low); }
    int skip_value() const { return static_cast<int>(value.low); }
    int call_value() const { return static_cast<int>(value.low); }

    void mk_name(SYMTAB* s);
    void mk_label(unsigned n);
    void mk_skip(int n);
    void mk_icon(long long n);
    void mk_call(int index, int id);
    void mk_ucall(int id);
    void mk_icall(const char* name);
    void mk_field(int kind, fkMDATA* member, TYPE* csu);

    // The operator-specific fields of the file form.
    int field_kind() const { return 1; }
    fkMDATA* field_mval() const { return mval; }
    TYPE* field_csu() const { return static_cast<TYPE*>(sym); }
    uint32_t icon_uvalue() const { return value.low; }
    int32_t icon_svalue() const { return static_cast<int32_t>(value.low); }
    const char* scon_value() const { return text; }
    uint32_t scon_length() const { return value.low; }
    int vreg_id() const { return 0; }
    uint32_t switch_value() const { return value.low; }
    int eh_entry_id() const { return call_id; }
    uint32_t get_edge_profile_value() const { return edge_profile; }
    void set_edge_profile_value(uint32_t count) { edge_profile = count; }
    // The decimal text of an LCON, in long or unsigned long by the node's sign.
    std::string lcon_value() const;

    void mk_vreg(int) {}
    void mk_ddnode(unsigned, unsigned, int) {}
    void mk_switch(uint32_t n) { value = INT65::from_unsigned(n); }
    // Counted: embedded NULs survive.
    void mk_scon(const char* bytes, uint32_t length);
    void mk_lcon(const char* digits);
    void mk_fcon(const char* text);
};

// A node with every field at its initial value.
NODE* new_node(int op, TYPE* type);

NODE* maketree(int op, NODE* left, NODE* right, TYPE* type, LS* scope);
NODE* mktree(int op, NODE* left, NODE* right, TYPE* type, SYMTAB* sym, INT65 value);
NODE* mk_ASG(NODE* lhs, NODE* rhs);
NODE* mk_COMMAOP(NODE* a, NODE* b);
NODE* mk_EXCLAIM(NODE* t);
NODE* mk_ICON(INT65 value, TYPE* type);
NODE* mk_NAME(SYMTAB* sym, LS* scope);
NODE* mk_MINUS(NODE* a, NODE* b);
NODE* mk_ICALL(const char* name, NODE* args, TYPE* type);
NODE* mk_MCALL(const char* name, NODE* args, TYPE* type);

NODE* copy_tree(const NODE* t, bool keep_scope);
NODE* copy_node(const NODE* t, bool keep_scope);
// Frees the tree; always returns null so that callers assign it back.
NODE* erase_tree(NODE* t);
NODE* erase_node(NODE* t);

bool trees_are_congruent(const NODE* a, const NODE* b, int se_ok);
bool opcode_is_ASG(int op);
bool tree_has_side_effects(const NODE* t);
bool tree_is_trivially_invertible(const NODE* t);
int arg_list_count(const NODE* t);
NODE* arg_list_lookup(NODE* t, int n);
SYMTAB* get_callee_for_call(const NODE* t);
int count_nodes_in_tree(const NODE* t);
int count_calls_in_tree(const NODE* t);
bool sym_appears_in_tree(const SYMTAB* sym, const NODE* t);
bool tree_is_subtree_of_tree(const NODE* sub, const NODE* t);
void subst_sym_for_sym_in_tree(SYMTAB* to, SYMTAB* from, NODE* t);

// Statement cells. Both builders put the new cell in front of `next`.
LIST* mklist(NODE* tree, LIST* next, int a, int b);
LIST* mkelist(NODE* tree, LIST* next, PSN* psn);
LIST* append_node_to_list(NODE* tree, LIST* list, PSN* psn);

// The file format's operator records, and the check that both agree.
struct IF_NODE_INFO {
    int op;
    const char* name;
    int nops;
};
extern IF_NODE_INFO if_node_info[201];
void if_node_table_init();
void if_enter_node(int op, const char* name, int nops);

// Hooks to the owners of a node's attached records: the floating-point
// constant, the dependence record and the points-to environment.
simul_fval* copy_fval(const simul_fval* v);
void free_fval(simul_fval* v);
NODE* copy_dd_node(const NODE* t);
void release_dd_info(NODE* t);
void delete_PTENV(PTENV* env, int deep);

// What the trees ask of the types and symbols.
bool type_is_volatile(TYPE* t);
bool type_is_float(TYPE* t);
bool symbol_is_volatile(const SYMTAB* sym);
bool f_bit_eq(const simul_fval* a, const simul_fval* b);
bool bools_are_congruent(const NODE* a, const NODE* b);

// Type rules the builders apply.
void new_node_special_cases(NODE* n);
TYPE* strip_qualifiers(TYPE* t);

NODE* expunge_IDENTITY_ops_from_tree(NODE* t);
int count_lvalues_in_tree(const NODE* t);
bool tree_references_NAME(const NODE* t);
NODE* subst_tree_for_lvalue_in_tree(NODE* replacement, const NODE* lvalue, NODE* t);
bool expr_is_constant(const NODE* t);

// Debug checks that no node is reached twice; they report and count, and
// change nothing.
int dupchk(NODE* t);
int scan_for_sharing(struct BBLK* blocks);

LIST* erase_tree_list(LIST* l);
LIST* erase_tree_list_only(LIST* l);
// Erases up to `last`, and `last` too when `include`; returns what follows.
LIST* erase_tree_list_to_entry(LIST* l, LIST* last, bool include);

// Other plain cells of the tree code.
struct LLIST {
    LIST* list;
    LLIST* next;
};
struct NODELIST {
    NODE* node;
    NODELIST* next;
};
struct NODEPAIRLIST {
    NODE* left;
    NODE* right;
    NODEPAIRLIST* next;
};
LLIST* mklistlist(LIST* list, LLIST* next);
NODELIST* mk_nodelist(NODE* node, NODELIST* next);
NODEPAIRLIST* mk_nodepairlist(NODE* a, NODE* b, NODEPAIRLIST* next);
NODE* nl_left_child(const NODELIST* l);
NODE* list_left_child(const LIST* l);
NODE* pair_left_child(const NODEPAIRLIST* l);

// x = x op y becomes x op= y (also x = y op x for a commuting op); the old
// operator node is freed. opASG_to_ASG is the inverse; a target with side
// effects is left alone, since it would be evaluated twice.
NODE* ASG_to_opASG(NODE* t);
NODE* opASG_to_ASG(NODE* t);

// Address constants: the address of an object of static storage, converted or
// offset by constants; and the sum of those constant offsets.
bool pointer_is_an_adcon(const NODE* t);
INT65 total_pointer_offset_value(const NODE* t);
// Whether the value can be computed before the program runs.
bool expr_is_globally_evaluable(const NODE* t);
