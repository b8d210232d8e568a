// The language rules the optimizer needs on top of the type package:
// promotion, combination, range limits, containment and aliasing of types.
// They all work on the global package tp.
#include <set>
#include <utility>

#include "driver/diag.h"
#include "driver/options.h"
#include "ir/types.h"

unsigned max_scalar_alignment;
uint64_t pointer_type_stride;
uint64_t widest_type_stride;

namespace {

TYPE* basic(int i) { return tp->basic[i]; }
TYPE* int_type() { return basic(TYPE::ik_int); }

// Types that contain each resolved type, and verdicts per pair; both are
// filled on first use and stay valid because types never change once frozen.
std::map<TYPE*, std::set<TYPE*>> containers_of;
std::map<std::pair<TYPE*, TYPE*>, bool> alias_verdicts;

} // namespace

void init_types() {
    tp->update_basic_types();
    max_scalar_alignment = tp->ptr_to_void->align();
    widest_type_stride = 0;
    for (TYPE* b : tp->basic) {
        if (b->align() > max_scalar_alignment)
            max_scalar_alignment = b->align();
        if (type_stride(b) > widest_type_stride)
            widest_type_stride = type_stride(b);
    }
    for (int part :
         {int(TYPE::ik_int), int(TYPE::ik_llong), TYPE_PKG::bt_float, TYPE_PKG::bt_double}) {
        TYPE* c = tp->mk_complex(basic(part));
        if (c->align() > max_scalar_alignment)
            max_scalar_alignment = c->align();
        if (type_stride(c) > widest_type_stride)
            widest_type_stride = type_stride(c);
    }
    pointer_type_stride = type_stride(tp->ptr_to_void);
    containers_of.clear();
    alias_verdicts.clear();
}

TYPE* normalized_underlying_type(TYPE* t) {
    if (t->is_enum())
        return t->resolved->en->underlying->normalized();
    return t->normalized();
}

TYPE* promoted_type(TYPE* t) {
    if (t->is_enum())
        t = normalized_underlying_type(t);
    if (!t->is_integral())
        return t;
    switch (t->resolved->ikind) {
    case TYPE::ik_bool:
    case TYPE::ik_char:
    case TYPE::ik_short:
    case TYPE::ik_int:
        return int_type();
    case TYPE::ik_uchar:
    case TYPE::ik_wchar:
    case TYPE::ik_ushort:
        // Old C keeps unsignedness through the promotion.
        return t->size() == int_type()->size() || kr_flag ? basic(TYPE::ik_uint) : int_type();
    default:
        return t;
    }
}

TYPE* combined_type_for_types(TYPE* a, TYPE* b) {
    a = promoted_type(a);
    b = promoted_type(b);
    if (!a->is_integral() && !a->is_fltpt())
        return a;
    if (!b->is_integral() && !b->is_fltpt())
        return b;
    auto either = [a, b](auto test) { return test(a) || test(b); };
    if (either([](TYPE* t) { return t->is_ldouble(); }))
        return basic(TYPE_PKG::bt_ldouble);
    if (either([](TYPE* t) { return t->is_double(); }))
        return basic(TYPE_PKG::bt_double);
    if (either([](TYPE* t) { return t->is_float(); }))
        return basic(TYPE_PKG::bt_float);
    if (either([](TYPE* t) { return t->is_ullong(); }))
        return basic(TYPE::ik_ullong);
    if (either([](TYPE* t) { return t->is_llong(); }))
        return basic(TYPE::ik_llong);
    if (either([](TYPE* t) { return t->is_ulong(); }))
        return basic(TYPE::ik_ulong);
    if ((a->is_long() && b->is_uint()) || (a->is_uint() && b->is_long()))
        return int_type()->size() == basic(TYPE::ik_long)->size() || kr_flag ? basic(TYPE::ik_ulong)
                                                                             : basic(TYPE::ik_long);
    if (either([](TYPE* t) { return t->is_long(); }))
        return basic(TYPE::ik_long);
    if (either([](TYPE* t) { return t->is_uint(); }))
        return basic(TYPE::ik_uint);
    return int_type();
}

TYPE* next_wider_type(TYPE* t) {
    if (t->is_enum())
        t = normalized_underlying_type(t);
    if (t->is_integral()) {
        // wchar_t is no step of the ladder of C integer types.
        for (int k = t->resolved->ikind + 1; k <= TYPE::ik_ullong; k++)
            if (k != TYPE::ik_wchar && basic(k)->size() > t->size())
                return tp->mk_signed(basic(k));
        return t;
    }
    if (t->is_double())
        return basic(TYPE_PKG::bt_ldouble);
    if (t->is_float())
        return basic(TYPE_PKG::bt_double);
    return t;
}

TYPE* type_for_PMCONV(TYPE* t) {
    TYPE* p = promoted_type(t);
    if (p->is_unsigned())
        p = tp->mk_signed(next_wider_type(p));
    return p->size() <= int_type()->size() ? p : int_type();
}

TYPE* essential_type(TYPE* t) {
    if (t->is_enum())
        t = normalized_underlying_type(t);
    return t->is_integral() ? tp->mk_signed(t) : t;
}

uint64_t type_stride(const TYPE* t) {
    uint64_t a = t->align();
    return a ? (t->size() + a - 1) / a * a : t->size();
}

INT65 type_mask(const TYPE* t) {
    uint64_t size = t->size();
    if (size < 1 || size > 64)
        size = 64;
    uint64_t mask = size == 64 ? ~uint64_t(0) : (uint64_t(1) << size) - 1;
    return INT65::from_unsigned(mask);
}

INT65 int_type_max(const TYPE* t) {
    INT65 mask = type_mask(t);
    return t->is_signed() ? mask >> 1 : mask;
}

INT65 int_type_min(const TYPE* t) { return t->is_signed() ? ~int_type_max(t) : INT65(0); }

// v as stored in an integer of t's size and sign.
INT65 truncate_to_type(INT65 v, const TYPE* t) {
    uint64_t size = t->is_pointer() ? int_type()->size() : t->size();
    if (size == 0 || size > 64)
        return v;
    uint64_t bits = v.bits();
    if (size < 64)
        bits &= (uint64_t(1) << size) - 1;
    bool negative = t->is_signed() && (bits >> (size - 1) & 1);
    if (!negative)
        return INT65::from_unsigned(bits);
    if (size < 64)
        bits |= ~uint64_t(0) << size;
    return INT65(static_cast<long long>(bits));
}

TYPE* wide_enough_int_type(INT65 v) {
    for (int k = TYPE::ik_int; k <= TYPE::ik_ullong; k++)
        if (truncate_to_type(v, basic(k)) == v)
            return basic(k);
    return basic(TYPE::ik_ullong);
}

TYPE* get_complex_type(TYPE* part) {
    TYPE* r = part->resolved;
    int index = -1;
    if (r->kind == TYPE::tpk_int) {
        switch (r->ikind) {
        case TYPE::ik_char:
        case TYPE::ik_short:
        case TYPE::ik_int:
        case TYPE::ik_long:
        case TYPE::ik_llong:
            index = r->ikind;
            break;
        default:
            break;
        }
    } else if (r->kind == TYPE::tpk_fltpt && r->fkind != TYPE::fk_ldouble) {
        index = TYPE_PKG::bt_float + r->fkind;
    }
    if (index < 0) {
        fputs("part_type is not valid\n", stdout);
        abort_optimizer();
    }
    return tp->mk_complex(basic(index));
}

TYPE* operator_type_for_operand_types(int op, TYPE* a, TYPE* b) {
    enum { PLUS = 6, MINUS = 8, EQ = 80, UGT = 89, ANDAND = 23, OROR = 24 };
    if ((op >= EQ && op <= UGT) || op == ANDAND || op == OROR)
        return int_type();
    if (op == MINUS && a->is_pointer() && b && b->is_pointer())
        return int_type(); // the difference of two pointers
    if ((op == PLUS || op == MINUS) && a->is_pointer())
        return a;
    if (op == PLUS && b && b->is_pointer())
        return b;
    return b ? combined_type_for_types(a, b) : promoted_type(a);
}

bool csu_type_has_only_simple_scalar_members(TYPE* t) {
    if (!t->is_csu() || !t->is_complete() || t->resolved->csu->bclasses)
        return false;
    for (const fkMDATA* m = t->members(); m; m = m->next)
        if (!m->type->is_scalar() || m->is_bitfield || (m->type->qual_kind(true) & TQ_VOLATILE))
            return false;
    return true;
}

TYPE* type_of_nth_parameter(TYPE* func, int n) {
    if (func->is_pointer())
        func = func->type_pointed_to();
    if (!func->is_func())
        return nullptr;
    int i = 0;
    for (const fkPARAM* p = func->params(); p; p = p->next)
        if (++i == n)
            return p->type;
    return nullptr;
}

bool bits_of_var_are_immutable(TYPE* t, uint64_t offset, uint64_t width, unsigned char inherited) {
    unsigned char q = inherited | t->qual_kind(false);
    TYPE* r = t->resolved;
    while (r->kind == TYPE::tpk_array) {
        uint64_t stride = type_stride(r->ar->elem);
        if (stride) {
            // Only the element that holds the range matters; one that spans two
            // elements is judged on the first.
            offset %= stride;
        }
        q |= r->ar->elem->qual_kind(false);
        r = r->ar->elem->resolved;
    }
    if ((q & TQ_CONST) && !(q & TQ_VOLATILE))
        return true;
    if (!r->csu || (q & TQ_VOLATILE))
        return false;
    bool any = false;
    for (fkMDATA* m = r->csu->mdata; m; m = m->next) {
        uint64_t start = m->offset;
        uint64_t size = m->is_bitfield ? m->width : m->type->size();
        if (start + size <= offset || start >= offset + width)
            continue;
        any = true;
        if (start > offset || start + size < offset + width) {
            // The range leaves this member.
            if (m->flags)
                return false;
        }
        uint64_t from = offset > start ? offset - start : 0;
        uint64_t to = offset + width < start + size ? offset + width - start : size;
        if (!bits_of_var_are_immutable(m->type, from, to - from, q | m->flags))
            return false;
    }
    return any;
}

bool is_field_member_of_type(const fkMDATA* field, TYPE* t) {
    TYPE* r = t->resolved;
    while (r->kind == TYPE::tpk_array)
        r = r->ar->elem->resolved;
    if (!r->csu)
        return false;
    for (const fkMDATA* m = r->csu->mdata; m; m = m->next)
        if (m == field || is_field_member_of_type(field, m->type))
            return true;
    for (const fkBCLASS* b = r->csu->bclasses; b; b = b->next)
        if (is_field_member_of_type(field, b->type))
            return true;
    return false;
}

bool is_type_component_of_type(TYPE* part, TYPE* whole) {
    TYPE* p = part->resolved;
    TYPE* w = whole->resolved;
    if (p == w || exact_types(p->stqs(), w->stqs()))
        return true;
    if (w->kind == TYPE::tpk_array)
        return is_type_component_of_type(part, w->ar->elem);
    if (w->kind == TYPE::tpk_complex)
        return is_type_component_of_type(part, w->target);
    if (!w->csu)
        return false;
    for (const fkMDATA* m = w->csu->mdata; m; m = m->next)
        if (is_type_component_of_type(part, m->type))
            return true;
    for (const fkBCLASS* b = w->csu->bclasses; b; b = b->next)
        if (is_type_component_of_type(part, b->type))
            return true;
    return false;
}

bool type_is_contained_in_type(TYPE* inner, TYPE* outer) {
    return inner->resolved != outer->resolved && is_type_component_of_type(inner, outer);
}

bool types_contained_in_union(TYPE* a, TYPE* b) {
    for (TYPE* u : {a->resolved, b->resolved})
        if (u->kind == TYPE::tpk_union)
            for (const fkMDATA* m = u->csu->mdata; m; m = m->next)
                if (is_type_component_of_type(a == u ? b : a, m->type))
                    return true;
    return false;
}

bool type_may_contain_volatile(TYPE* t) {
    if (t->qual_kind(true) & TQ_VOLATILE)
        return true;
    TYPE* r = t->resolved;
    while (r->kind == TYPE::tpk_array)
        r = r->ar->elem->resolved;
    if (!r->csu)
        return false;
    for (const fkMDATA* m = r->csu->mdata; m; m = m->next)
        if ((m->flags & TQ_VOLATILE) || type_may_contain_volatile(m->type))
            return true;
    for (const fkBCLASS* b = r->csu->bclasses; b; b = b->next)
        if (type_may_contain_volatile(b->type))
            return true;
    return false;
}

namespace {

// Every type of the package that has t as a component, t included.
const std::set<TYPE*>& containers_of_type(TYPE* t) {
    auto found = containers_of.find(t);
    if (found != containers_of.end())
        return found->second;
    std::set<TYPE*>& set = containers_of[t];
    set.insert(t);
    for (TYPE::TYPE_TREE_ITERATOR it(tp->root), end; it != end; ++it) {
        TYPE* r = (*it)->resolved;
        if ((r->csu || r->kind == TYPE::tpk_array) && is_type_component_of_type(t, r))
            set.insert(r);
    }
    return set;
}

} // namespace

bool type_may_alias_type(TYPE* a, TYPE* b) {
    TYPE* ra = a->resolved;
    TYPE* rb = b->resolved;
    if (ra == rb)
        return true;
    auto key = ra < rb ? std::make_pair(ra, rb) : std::make_pair(rb, ra);
    auto found = alias_verdicts.find(key);
    if (found != alias_verdicts.end())
        return found->second;
    const std::set<TYPE*>& sa = containers_of_type(ra);
    const std::set<TYPE*>& sb = containers_of_type(rb);
    bool verdict = sa.count(rb) || sb.count(ra);
    for (auto it = sa.begin(); !verdict && it != sa.end(); ++it)
        verdict = sb.count(*it) != 0;
    alias_verdicts[key] = verdict;
    return verdict;
}

// ---- Overflow of integer arithmetic --------------------------------------

bool sum_may_overflow(INT65 a, INT65 b, TYPE* t) {
    INT65 ta = truncate_to_type(a, t);
    INT65 tb = truncate_to_type(b, t);
    if (ta != a || tb != b)
        return true;
    INT65 sum = a + b;
    if (truncate_to_type(sum, t) != sum)
        return true;
    return t->is_signed() && a.is_negative() == b.is_negative() &&
           sum.is_negative() != a.is_negative();
}

bool prod_may_overflow(INT65 a, INT65 b, TYPE* t) {
    if (truncate_to_type(a, t) != a || truncate_to_type(b, t) != b)
        return true;
    if (a.is_zero() || b.is_zero())
        return false;
    INT65 product = a * b;
    if (truncate_to_type(product, t) != product)
        return true;
    // The 65-bit product drops what lies above 64 bits: dividing back on
    // magnitudes tells.
    INT65 ma = a.is_negative() ? -a : a;
    INT65 mb = b.is_negative() ? -b : b;
    INT65 mp = product.is_negative() ? -product : product;
    return mp / ma != mb;
}

int compare_SLLONG_values(INT65 a, INT65 b, TYPE*) {
    if (a == b)
        return 0;
    return a < b ? -1 : 1;
}
