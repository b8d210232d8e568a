// The operator tables, node builders, copy, congruence and erasure.
#include "ir/node.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "driver/diag.h"
#include "driver/driver.h"
#include "ir/bblk.h"
#include "ir/symtab.h"

unsigned char number_of_operands[256];
unsigned char side_effects[256];
unsigned char precedence[256];
unsigned char op_OK_for_SP[256];
unsigned char op_of_opASG[256];
unsigned char boolean_inv[256];
unsigned char boolean_result[256];
unsigned char commute_inv[256];
const char* node_operator_name[256];

namespace {

struct op_row {
    int op;
    const char* name;
    unsigned char operands, effect, prec, sp, base, inv, boolean, commuted;
};

constexpr op_row op_rows[] = {
    // number, name, operands, effect, precedence, SP, base, inverse, boolean, commuted
    {NOP, "NOP", 0, 255, 0, 0, NONE, NONE, 0, NONE},
    {LABEL, "LABEL", 0, 0, 99, 1, NONE, NONE, 0, NONE},
    {NAME, "NAME", 0, 0, 99, 1, NONE, NONE, 0, NONE},
    {SCON, "SCON", 0, 0, 99, 1, NONE, NONE, 0, NONE},
    {ICON, "ICON", 0, 0, 99, 1, NONE, NONE, 0, NONE},
    {FCON, "FCON", 0, 0, 99, 1, NONE, NONE, 0, NONE},
    {PLUS, "PLUS", 2, 0, 12, 1, NONE, NONE, 0, PLUS},
    {PLUSASG, "PLUSASG", 2, 1, 2, 1, PLUS, NONE, 0, NONE},
    {MINUS, "MINUS", 2, 0, 12, 1, NONE, NONE, 0, NONE},
    {MINUSASG, "MINUSASG", 2, 1, 2, 1, MINUS, NONE, 0, NONE},
    {UMINUS, "UMINUS", 1, 0, 14, 1, NONE, NONE, 0, NONE},
    {MULT, "MULT", 2, 0, 13, 1, NONE, NONE, 0, MULT},
    {MULTASG, "MULTASG", 2, 1, 2, 1, MULT, NONE, 0, NONE},
    {UMULT, "UMULT", 1, 0, 14, 1, NONE, NONE, 0, NONE},
    {ANDB, "ANDB", 2, 0, 8, 1, NONE, NONE, 0, ANDB},
    {ANDBASG, "ANDBASG", 2, 1, 2, 1, ANDB, NONE, 0, NONE},
    {UAND, "UAND", 1, 0, 14, 1, NONE, NONE, 0, NONE},
    {ORB, "ORB", 2, 0, 6, 1, NONE, NONE, 0, ORB},
    {ORBASG, "ORBASG", 2, 1, 2, 1, ORB, NONE, 0, NONE},
    {XORB, "XORB", 2, 0, 7, 1, NONE, NONE, 0, XORB},
    {XORBASG, "XORBASG", 2, 1, 2, 1, XORB, NONE, 0, NONE},
    {QUEST, "QUEST", 2, 0, 3, 1, NONE, NONE, 0, NONE},
    {COLON, "COLON", 2, 0, 3, 1, NONE, NONE, 0, NONE},
    {ANDAND, "ANDAND", 2, 0, 5, 0, NONE, NONE, 1, NONE},
    {OROR, "OROR", 2, 0, 4, 0, NONE, NONE, 1, NONE},
    {LCON, "LCON", 0, 0, 99, 1, NONE, NONE, 0, NONE},
    {FIELD, "FIELD", 0, 0, 99, 1, NONE, NONE, 0, NONE},
    {ABS, "ABS", 1, 0, 15, 1, NONE, NONE, 0, NONE},
    {RETURN, "RETURN", 2, 2, 0, 0, NONE, NONE, 0, NONE},
    {SWITCH, "SWITCH", 2, 2, 0, 0, NONE, NONE, 0, NONE},
    {DEFAULT, "DEFAULT", 1, 0, 0, 0, NONE, NONE, 0, NONE},
    {CASE, "CASE", 2, 0, 0, 0, NONE, NONE, 0, NONE},
    {COMMA, "COMMA", 2, 0, 1, 1, NONE, NONE, 0, NONE},
    {PCOMMA, "PCOMMA", 2, 255, 1, 1, NONE, NONE, 0, NONE},
    {ASG, "ASG", 2, 1, 2, 1, NONE, NONE, 0, NONE},
    {COMMAOP, "COMMAOP", 2, 255, 1, 1, NONE, NONE, 0, NONE},
    {DIV, "DIV", 2, 0, 13, 0, NONE, NONE, 0, NONE},
    {DIVASG, "DIVASG", 2, 1, 2, 0, DIV, NONE, 0, NONE},
    {MOD, "MOD", 2, 0, 13, 0, NONE, NONE, 0, NONE},
    {MODASG, "MODASG", 2, 1, 2, 0, MOD, NONE, 0, NONE},
    {SLL, "SLL", 2, 0, 11, 1, NONE, NONE, 0, NONE},
    {SLLASG, "SLLASG", 2, 1, 2, 1, SLL, NONE, 0, NONE},
    {SRL, "SRL", 2, 0, 11, 1, NONE, NONE, 0, NONE},
    {SRLASG, "SRLASG", 2, 1, 2, 1, SRL, NONE, 0, NONE},
    {STDOT, "STDOT", 2, 0, 15, 1, NONE, NONE, 0, NONE},
    {STREF, "STREF", 2, 0, 15, 1, NONE, NONE, 0, NONE},
    {CALL, "CALL", 2, 255, 15, 0, NONE, NONE, 0, NONE},
    {UCALL, "UCALL", 1, 255, 15, 0, NONE, NONE, 0, NONE},
    {LOOP_OP, "LOOP", 2, 255, 0, 1, NONE, NONE, 0, NONE},
    {ENDLOOP, "ENDLOOP", 2, 255, 0, 1, NONE, NONE, 0, NONE},
    {EXCLAIM, "EXCLAIM", 1, 0, 14, 1, NONE, NONE, 1, NONE},
    {NOTB, "NOTB", 1, 0, 14, 1, NONE, NONE, 0, NONE},
    {PLUSPLUS, "PLUSPLUS", 2, 1, 14, 1, NONE, NONE, 0, NONE},
    {MINMIN, "MINMIN", 2, 1, 14, 1, NONE, NONE, 0, NONE},
    {EQ, "EQ", 2, 0, 9, 1, NONE, NEQ, 1, EQ},
    {NEQ, "NEQ", 2, 0, 9, 1, NONE, EQ, 1, NEQ},
    {LE, "LE", 2, 0, 10, 1, NONE, GT, 1, GE},
    {LT, "LT", 2, 0, 10, 1, NONE, GE, 1, GT},
    {GE, "GE", 2, 0, 10, 1, NONE, LT, 1, LE},
    {GT, "GT", 2, 0, 10, 1, NONE, LE, 1, LT},
    {ULE, "ULE", 2, 0, 10, 1, NONE, UGT, 1, UGE},
    {ULT, "ULT", 2, 0, 10, 1, NONE, UGE, 1, UGT},
    {UGE, "UGE", 2, 0, 10, 1, NONE, ULT, 1, ULE},
    {UGT, "UGT", 2, 0, 10, 1, NONE, ULE, 1, ULT},
    {STFIELD, "STFIELD", 2, 0, 14, 1, NONE, NONE, 0, NONE},
    {ARGREF, "ARGREF", 1, 0, 14, 1, NONE, NONE, 0, NONE},
    {STASG, "STASG", 2, 1, 2, 1, NONE, NONE, 0, NONE},
    {STARG, "STARG", 1, 0, 0, 1, NONE, NONE, 0, NONE},
    {ARASG, "ARASG", 2, 255, 2, 1, NONE, NONE, 0, NONE},
    {SCONV, "SCONV", 1, 0, 14, 1, NONE, NONE, 0, NONE},
    {PCONV, "PCONV", 1, 0, 14, 1, NONE, NONE, 0, NONE},
    {PMCONV, "PMCONV", 2, 0, 13, 1, NONE, NONE, 0, NONE},
    {PVCONV, "PVCONV", 2, 0, 13, 1, NONE, NONE, 0, NONE},
    {ACONV, "ACONV", 1, 0, 14, 1, NONE, NONE, 0, NONE},
    {CBRANCH, "CBRANCH", 2, 2, 0, 1, NONE, NONE, 0, NONE},
    {ENDINIT, "ENDINIT", 0, 0, 0, 0, NONE, NONE, 0, NONE},
    {BRANCH, "BRANCH", 1, 2, 0, 1, NONE, NONE, 0, NONE},
    {SKIP, "SKIP", 1, 0, 0, 0, NONE, NONE, 0, NONE},
    {URETURN, "URETURN", 1, 2, 0, 0, NONE, NONE, 0, NONE},
    {DDNODE, "DDNODE", 1, 255, 0, 1, NONE, NONE, 0, NONE},
    {SQRT, "SQRT", 1, 0, 15, 1, NONE, NONE, 0, NONE},
    {SQR, "SQR", 1, 0, 15, 1, NONE, NONE, 0, NONE},
    {NASSERT, "NASSERT", 1, 255, 15, 1, NONE, NONE, 0, NONE},
    {ASSERT, "ASSERT", 1, 255, 15, 0, NONE, NONE, 0, NONE},
    {MEMCPY, "MEMCPY", 1, 255, 15, 1, NONE, NONE, 0, NONE},
    {TOIEEE, "TOIEEE", 1, 0, 15, 1, NONE, NONE, 0, NONE},
    {FRIEEE, "FRIEEE", 1, 0, 15, 1, NONE, NONE, 0, NONE},
    {ICALL, "ICALL", 1, 0, 15, 1, NONE, NONE, 0, NONE},
    {UICALL, "UICALL", 0, 0, 15, 1, NONE, NONE, 0, NONE},
    {RECIP, "RECIP", 1, 0, 13, 1, NONE, NONE, 0, NONE},
    {MCALL, "MCALL", 1, 255, 15, 1, NONE, NONE, 0, NONE},
    {UMCALL, "UMCALL", 0, 255, 15, 1, NONE, NONE, 0, NONE},
    {VPACK, "VPACK", 1, 0, 15, 1, NONE, NONE, 0, NONE},
    {VPACKM, "VPACKM", 1, 0, 15, 1, NONE, NONE, 0, NONE},
    {VPACK1P, "VPACK1P", 2, 0, 15, 1, NONE, NONE, 0, NONE},
    {VFIELD, "VFIELD", 2, 0, 14, 1, NONE, NONE, 0, NONE},
    {VRCONV, "VRCONV", 1, 0, 14, 1, NONE, NONE, 0, NONE},
    {COMPLEX, "COMPLEX", 2, 0, 0, 1, NONE, NONE, 0, NONE},
    {REAL, "REAL", 1, 0, 0, 1, NONE, NONE, 0, NONE},
    {IMAG, "IMAG", 1, 0, 0, 1, NONE, NONE, 0, NONE},
    {OUIALIGN, "OUIALIGN", 1, 0, 0, 1, NONE, NONE, 0, NONE},
    {NONALIGN, "NONALIGN", 1, 0, 0, 1, NONE, NONE, 0, NONE},
    {SIMDHI, "SIMDHI", 1, 0, 15, 0, NONE, NONE, 0, NONE},
    {SIMDLO, "SIMDLO", 1, 0, 15, 0, NONE, NONE, 0, NONE},
    {PPRAGMA, "PPRAGMA", 0, 255, 0, 1, NONE, NONE, 0, NONE},
    {VSCONV, "VSCONV", 1, 0, 13, 1, NONE, NONE, 0, NONE},
    {EXPT, "EXPT", 2, 0, 88, 0, NONE, NONE, 0, NONE},
    {EXPRSTUB, "EXPRSTUB", 0, 0, 99, 0, NONE, NONE, 0, NONE},
    {CSE_DUPE, "CSE_DUPE", 2, 0, 0, 1, NONE, NONE, 0, NONE},
    {CSE_ORIG, "CSE_ORIG", 2, 0, 0, 1, NONE, NONE, 0, NONE},
    {ASM, "ASM", 0, 255, 0, 0, NONE, NONE, 0, NONE},
    {IF, "IF", 2, 2, 0, 1, NONE, NONE, 0, NONE},
    {LABELDEF, "LABELDEF", 0, 2, 0, 0, NONE, NONE, 0, NONE},
    {INITLOOP, "INITLOOP", 2, 255, 0, 1, NONE, NONE, 0, NONE},
    {IDENTITY, "IDENTITY", 1, 0, 14, 1, NONE, NONE, 0, NONE},
    {ISP2CHAR, "ISP2CHAR", 1, 0, 14, 1, NONE, NONE, 0, NONE},
    {MIXVALUE, "MIXVALUE", 0, 0, 99, 0, NONE, NONE, 0, NONE},
    {MIX_CONJ, "MIX_CONJ", 2, 0, 5, 0, NONE, NONE, 1, MIX_CONJ},
    {MIX_DISJ, "MIX_DISJ", 2, 0, 4, 0, NONE, NONE, 1, MIX_DISJ},
    {MIX_SET, "MIX_SET", 1, 0, 15, 0, NONE, NONE, 0, NONE},
    {BGNBLOCK, "BGNBLOCK", 0, 255, 0, 0, NONE, NONE, 0, NONE},
    {ENDBLOCK, "ENDBLOCK", 0, 255, 0, 0, NONE, NONE, 0, NONE},
    {SSA_PHI, "SSA_PHI", 0, 1, 15, 0, NONE, NONE, 0, NONE},
    {SSA_USE, "SSA_USE", 1, 0, 15, 0, NONE, NONE, 0, NONE},
    {SSA_DEF, "SSA_DEF", 1, 1, 15, 0, NONE, NONE, 0, NONE},
    {SSA_MU, "SSA_MU", 1, 0, 15, 0, NONE, NONE, 0, NONE},
    {SSA_CHI, "SSA_CHI", 1, 1, 15, 0, NONE, NONE, 0, NONE},
};

// Numbers with no name that keep table entries all the same.
struct unnamed_row {
    int op;
    unsigned char operands;
};
constexpr unnamed_row unnamed_rows[] = {{100, 2}, {102, 1}, {116, 1}, {117, 0}, {137, 2}};

struct op_tables_init {
    op_tables_init() {
        for (int i = 0; i < 256; i++) {
            number_of_operands[i] = NONE;
            side_effects[i] = SE_ALWAYS;
            precedence[i] = 0;
            op_OK_for_SP[i] = 0;
            op_of_opASG[i] = boolean_inv[i] = commute_inv[i] = NONE;
            boolean_result[i] = 0;
            node_operator_name[i] = nullptr;
        }
        for (const unnamed_row& r : unnamed_rows) {
            number_of_operands[r.op] = r.operands;
            precedence[r.op] = 15;
        }
        for (const op_row& r : op_rows) {
            number_of_operands[r.op] = r.operands;
            side_effects[r.op] = r.effect;
            precedence[r.op] = r.prec;
            op_OK_for_SP[r.op] = r.sp;
            op_of_opASG[r.op] = r.base;
            boolean_inv[r.op] = r.inv;
            boolean_result[r.op] = r.boolean;
            commute_inv[r.op] = r.commuted;
            node_operator_name[r.op] = r.name;
        }
    }
} op_tables;

} // namespace

// The file format's operator records.

IF_NODE_INFO if_node_info[201];

void if_enter_node(int op, const char* name, int nops) {
    if (op < 0 || op > 200) {
        printf("\nINTERNAL ERROR: Invalid opcode, aborting\n");
        opt_exit(1);
    }
    if_node_info[op] = {op, name, nops};
}

void if_node_table_init() {
    static bool done;
    if (done)
        return;
    done = true;
    for (int op = 0; op < 163; op++)
        if (node_operator_name[op])
            if_enter_node(op, node_operator_name[op], number_of_operands[op]);
    if_enter_node(110, "EPVAL", 1);
    if_enter_node(163, "VREG", 0);
}

void init_opcode_tables() {
    dprintf(" *** VALIDATING OPCODE TABLES\n");
    if_node_table_init();
    const IF_NODE_INFO& name = if_node_info[NAME];
    const IF_NODE_INFO& uminus = if_node_info[UMINUS];
    const IF_NODE_INFO& call = if_node_info[CALL];
    const auto is = [](const IF_NODE_INFO& r, int op, const char* text, int nops) {
        return r.op == op && r.name && strcmp(r.name, text) == 0 && r.nops == nops;
    };
    if (!is(name, NAME, "NAME", 0) || !is(uminus, UMINUS, "UMINUS", 1) ||
        !is(call, CALL, "CALL", 2)) {
        fprintf(stderr, "INTERNAL ERROR: if_node_info[] mismatch\n");
        abort_optimizer();
    }
    // The optimizer's private operators take the numbers from 163 on.
    for (int op = OUIALIGN; op < number_of_opcodes; op++)
        if (node_operator_name[op])
            if_enter_node(op, node_operator_name[op], number_of_operands[op]);
    bool ok = true;
    for (int op = 0; op < number_of_opcodes; op++) {
        if (!node_operator_name[op])
            continue;
        const IF_NODE_INFO& r = if_node_info[op];
        if (r.op == op && r.nops == number_of_operands[op] && r.name &&
            strcmp(r.name, node_operator_name[op]) == 0)
            continue;
        dprintf("OP#%d: %d || %d || (%d != %d) <<%s>> <<%s>>\n", op, r.op, op, r.nops,
                number_of_operands[op], r.name ? r.name : "", node_operator_name[op]);
        dprintf("\tNo match for %s\n", node_operator_name[op]);
        ok = false;
    }
    if (!ok)
        abort_optimizer();
    dprintf(" *** OPCODE TABLES ARE OK\n\n");
}
