// Expression records: one record of kind 101 per node, in prefix order.
#include <cstring>

#include "driver/diag.h"
#include "ifile/if_impl.h"
#include "ifile/ifile.h"
#include "ir/node.h"
#include "ir/symtab.h"
#include "ir/types.h"

using namespace ifile_impl;

namespace {

// Operators whose fields end the record: no children follow on file.
bool children_follow(int op) {
    switch (op) {
    case LABEL:
    case NAME:
    case SCON:
    case ICON:
    case FCON:
    case LCON:
    case FIELD:
    case SKIP:
    case VREG:
        return false;
    default:
        return true;
    }
}

bool is_icall_family(int op) { return op == ICALL || op == UICALL || op == MCALL || op == UMCALL; }

} // namespace

SYMTAB* I_FILE::if_symbol_at(uint32_t scope, uint32_t index) {
    if (scope == 0xFFFFFFFFu)
        return nullptr;
    if (scope == 0) {
        if (index >= global_count)
            invalid_record();
        return globals[index];
    }
    if (index >= local_count)
        invalid_record();
    return locals[index];
}

// Reads one node's fields; `file_op` is the operator as the file has it,
// which new_node may change (a PCONV to a char pointer becomes ISP2CHAR).
NODE* I_FILE::if_read_expr_header(int& file_op) {
    file_op = static_cast<int>(i_read_u8());
    if (file_op > VREG || !if_node_info[file_op].name)
        invalid_record();
    TYPE* type = find_typeref(i_read_uint());
    NODE* n = new_node(file_op, type);
    switch (file_op) {
    case LABEL:
        n->mk_label(i_read_uint());
        break;
    case NAME: {
        const uint32_t scope = i_read_uint();
        const uint32_t index = i_read_uint();
        if (SYMTAB* sym = if_symbol_at(scope, index))
            n->mk_name(sym);
        break;
    }
    case SCON: {
        const uint32_t length = i_read_uint();
        // A length of 0 has no bytes (a count of 0 would read to a NUL).
        n->mk_scon(length ? i_read_string(length) : "", length);
        break;
    }
    case ICON:
        if (type && type->is_signed())
            n->mk_icon(i_read_sint());
        else
            n->mk_icon(static_cast<long long>(i_read_uint()));
        break;
    case FCON:
        n->mk_fcon(i_read_string(0));
        break;
    case LCON:
        n->mk_lcon(i_read_string(0));
        // In memory every integer constant is an ICON, whatever its width:
        // folding, congruence and the rewrites know one kind of constant.
        // The writer gives a value beyond 32 bits its LCON back.
        if (type && TYPE_IS_INT(type))
            n->op = ICON;
        break;
    case FIELD: {
        const int kind = static_cast<int>(i_read_u8());
        const uint32_t member = i_read_uint();
        TYPE* csu = find_typeref(i_read_uint());
        if (kind != 1)
            abort_optimizer();
        n->mk_field(kind, csu ? find_mdataref(csu, member) : nullptr, csu);
        break;
    }
    case SWITCH:
        n->mk_switch(i_read_uint());
        break;
    case CALL: {
        const uint32_t index = i_read_uint();
        n->mk_call(static_cast<int>(index), static_cast<int>(i_read_uint()));
        break;
    }
    case UCALL:
        n->mk_ucall(static_cast<int>(i_read_uint()));
        break;
    case EPVAL:
        n->set_edge_profile_value(i_read_uint());
        break;
    case SKIP:
        n->mk_skip(static_cast<int>(i_read_uint()));
        break;
    case DDNODE: {
        const uint32_t a = i_read_uint();
        const uint32_t b = i_read_uint();
        n->mk_ddnode(a, b, static_cast<int>(i_read_u8()));
        break;
    }
    case VREG:
        n->mk_vreg(i_read_sint());
        break;
    default:
        if (is_icall_family(file_op))
            n->mk_icall(i_read_string(0));
        break;
    }
    return n;
}

NODE* I_FILE::if_read_expr_node(bool read_header) {
    if (read_header) {
        int kind;
        uint32_t size;
        if (!i_read_header(kind, size) || kind != IF_EXPR_NODE)
            invalid_record();
    }
    int file_op;
    NODE* n = if_read_expr_header(file_op);
    i_end_record();
    if (!children_follow(file_op))
        return n;
    const int arity = if_node_info[file_op].nops;
    if (arity >= 1)
        n->left = if_read_expr_node(true);
    if (arity >= 2)
        n->right = if_read_expr_node(true);
    return n;
}

void I_FILE::if_write_expr(NODE* tree, const PSN* psn) {
    i_write_psn(psn);
    i_flush(IF_EXPR_STMT);
    if (tree)
        if_write_expr_node(tree);
}

void I_FILE::if_write_expr_node(NODE* t) {
    for (; t; t = t->right) {
        int op = t->op;
        // An ICON holds 32 bits on file: a folded 64-bit value goes as an LCON.
        if (op == ICON) {
            const int64_t v = t->value.to_int64();
            const bool fits = t->type && t->type->is_signed() ? v >= INT32_MIN && v <= INT32_MAX
                                                              : t->value.to_uint64() <= UINT32_MAX;
            if (!fits)
                op = LCON;
        }
        // Operators of memory only must have been turned back before writing.
        OPTASSERT(op >= 0 && op <= VREG && if_node_info[op].name);
        i_write_i8(op);
        i_write_typeref(t->type);
        switch (op) {
        case LABEL:
            i_write_uint(t->value.low);
            break;
        case NAME: {
            const SYMTAB* sym = t->name_symbol();
            i_write_uint(sym ? sym->file_level : 0xFFFFFFFFu);
            i_write_uint(sym ? sym->file_index : 0xFFFFFFFFu);
            break;
        }
        case SCON:
            i_write_uint(t->scon_length());
            if (t->scon_length())
                i_write_string(t->scon_value(), t->scon_length());
            break;
        case ICON:
            if (t->type && t->type->is_signed())
                i_write_sint(t->icon_svalue());
            else
                i_write_uint(t->icon_uvalue());
            break;
        case FCON:
            i_write_string(t->fcon_value() ? t->fcon_value() : "0", 0);
            break;
        case LCON:
            i_write_string(t->lcon_value().c_str(), 0);
            break;
        case FIELD:
            i_write_i8(t->field_kind());
            i_write_uint(t->field_mval() ? t->field_mval()->number : 0);
            i_write_typeref(t->field_csu());
            break;
        case SWITCH:
            i_write_uint(t->switch_value());
            break;
        case CALL:
            i_write_uint(static_cast<uint32_t>(t->call_value()));
            i_write_uint(static_cast<uint32_t>(t->call_id));
            break;
        case UCALL:
            i_write_uint(static_cast<uint32_t>(t->call_id));
            break;
        case EPVAL:
            i_write_uint(t->get_edge_profile_value());
            break;
        case SKIP:
            i_write_uint(static_cast<uint32_t>(t->skip_value()));
            break;
        case DDNODE:
            // The dependence record is not written yet: no data.
            i_write_uint(0);
            i_write_uint(0);
            i_write_i8(0);
            break;
        case VREG:
            i_write_sint(t->vreg_id());
            break;
        default:
            if (is_icall_family(op))
                i_write_string(t->icall_name(), 0);
            break;
        }
        i_flush(IF_EXPR_NODE);
        if (!children_follow(op))
            return;
        const int arity = if_node_info[op].nops;
        if (arity >= 1)
            if_write_expr_node(t->left);
        if (arity < 2)
            return;
    }
}
