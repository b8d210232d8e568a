// Folding of floating constants in the target's formats. Every value is
// computed by the simulation, rounded once to the node's format, so that the
// folded constant is the one the target would compute at run time.
#include <string>

#include "ir/node.h"
#include "ir/types.h"
#include "simplify/fold.h"
#include "support/simfloat.h"

namespace {

enum { NO_FORMAT = -1, SINGLE = 0, DOUBLE = 1 };

// The target's format of a floating type: long double is the double.
int float_format(const TYPE* t) {
    if (!t || !t->is_fltpt())
        return NO_FORMAT;
    switch (t->resolved->size()) {
    case 32:
        return SINGLE;
    case 64:
        return DOUBLE;
    default:
        return NO_FORMAT;
    }
}

int to_format(simul_fval* v, int format) {
    return format == DOUBLE ? get_ieee_dbl_fmt(v) : get_ieee_flt_fmt(v);
}

// The value of an FCON operand in `format`, which must be its own: a tree
// that mixes formats without a conversion is left for the code generator to
// read as it will.
bool fcon_operand(const NODE* x, int format, simul_fval* v) {
    if (format == NO_FORMAT || !x || x->op != FCON || !x->fval() || float_format(x->type) != format)
        return false;
    *v = *x->fval();
    to_format(v, format);
    return true;
}

NODE* mk_FCON(const simul_fval& v, TYPE* type) {
    NODE* n = new_node(FCON, type);
    n->sym = copy_fval(&v);
    return n;
}

NODE* replace(NODE* t, NODE* by) {
    erase_tree(t);
    return by;
}

std::string int_text(INT65 v) {
    char digits[24];
    const uint64_t bits = v.bits();
    f_utoa(digits, v.is_negative() ? 0 - bits : bits);
    return (v.is_negative() ? "-" : "") + std::string(digits);
}

NODE* fold_arithmetic(NODE* t) {
    const int format = float_format(t->type);
    simul_fval a, b, r;
    if (!fcon_operand(t->left, format, &a))
        return t;
    if (t->op == UMINUS) {
        f_neg(&a, &r); // a sign flip, for NaNs too, as the target's negation
        return replace(t, mk_FCON(r, t->type));
    }
    if (!fcon_operand(t->right, format, &b))
        return t;
    fp_error = 0;
    switch (t->op) {
    case PLUS:
        f_add(&a, &b, &r);
        break;
    case MINUS:
        f_sub(&a, &b, &r);
        break;
    case MULT:
        f_mul(&a, &b, &r);
        break;
    default:
        f_div(&a, &b, &r);
        break;
    }
    // An invalid operation stays for run time; an overflow to infinity or an
    // underflow to zero is the target's result too.
    if (fp_error & FP_INVALID)
        return t;
    truncate_fval_to_target(&r, t->type);
    return replace(t, mk_FCON(r, t->type));
}

NODE* fold_comparison(NODE* t) {
    simul_fval a, b;
    const int format = t->left ? float_format(t->left->type) : NO_FORMAT;
    if (!t->type || !TYPE_IS_INT(t->type) || !fcon_operand(t->left, format, &a) ||
        !fcon_operand(t->right, format, &b))
        return t;
    bool truth;
    switch (t->op) {
    case EQ:
        truth = f_eq(&a, &b);
        break;
    case NEQ:
        truth = f_ne(&a, &b);
        break;
    case LT:
        truth = f_lt(&a, &b);
        break;
    case LE:
        truth = f_le(&a, &b);
        break;
    case GT:
        truth = f_gt(&a, &b);
        break;
    case GE:
        truth = f_ge(&a, &b);
        break;
    default:
        // The unsigned relations have no meaning on floats here.
        return t;
    }
    return replace(t, mk_ICON(INT65(truth ? 1 : 0), t->type));
}

NODE* fold_conversion(NODE* t) {
    NODE* x = t->left;
    const int to = float_format(t->type);
    if (!x || !t->type)
        return t;
    if (x->op == ICON && to != NO_FORMAT && x->type && TYPE_IS_INT(x->type)) {
        // Through text, as an integer constant written with a point.
        const std::string text = int_text(truncate_to_type(x->value, x->type)) + ".0";
        NODE* n = new_node(FCON, t->type);
        n->mk_fcon(normalize_fcon(text.c_str(), to).c_str());
        return replace(t, n);
    }
    const int from = x->op == FCON ? float_format(x->type) : NO_FORMAT;
    simul_fval v;
    if (!fcon_operand(x, from, &v))
        return t;
    if (to != NO_FORMAT) {
        truncate_fval_to_target(&v, t->type);
        return replace(t, mk_FCON(v, t->type));
    }
    if (!TYPE_IS_INT(t->type))
        return t;
    if (t->type->is_bool()) {
        // Not a truncation: any value but zero, a NaN too, is true.
        return replace(t, mk_ICON(INT65(f_is_zero(&v) ? 0 : 1), t->type));
    }
    // Toward zero, and only a value that fits: the others are undefined in
    // C, and the target saturates them, which nothing should come to rely on.
    fp_error = 0;
    INT65 value;
    if (t->type->is_signed()) {
        long long i = 0;
        if (f_ftoi(&v, &i) != 0)
            return t;
        value = INT65(i);
    } else {
        unsigned long long u = 0;
        if (f_ftou(&v, &u) != 0)
            return t;
        value = INT65::from_unsigned(u);
    }
    if (value < int_type_min(t->type) || value > int_type_max(t->type))
        return t;
    return replace(t, mk_ICON(value, t->type));
}

} // namespace

std::string normalize_fcon(const char* text, int is_double) {
    simul_fval v;
    const int saved = fp_error;
    f_atof(text, &v);
    to_format(&v, is_double ? DOUBLE : SINGLE);
    fp_error = saved;
    char buf[F_FTOA_BUFSIZE];
    f_ftoa(buf, "%a", &v);
    return buf;
}

int truncate_fval_to_target(simul_fval* v, TYPE* t) {
    const int format = float_format(t);
    return format == NO_FORMAT ? 0 : to_format(v, format);
}

NODE* fold_float_node(NODE* t) {
    if (!t)
        return t;
    switch (t->op) {
    case PLUS:
    case MINUS:
    case MULT:
    case DIV:
    case UMINUS:
        return float_format(t->type) == NO_FORMAT ? t : fold_arithmetic(t);
    case EQ:
    case NEQ:
    case LE:
    case LT:
    case GE:
    case GT:
    case ULE:
    case ULT:
    case UGE:
    case UGT:
        return fold_comparison(t);
    case SCONV:
        return fold_conversion(t);
    default:
        return t;
    }
}
