// Comparing types at three strengths (exact, C-compatible, equivalent for
// the machine), type names, and the merging of types across translation units.
#include <cstring>

#include "driver/diag.h"
#include "ir/types.h"

namespace {

bool is_csu_kind(TYPE::KIND k) { return k >= TYPE::tpk_class; }

// The kind test shared by the comparisons: equal kinds, where the class kinds
// match each other unless exactly one is a union.
bool same_kind_group(TYPE::KIND a, TYPE::KIND b) {
    if (a == b)
        return true;
    return is_csu_kind(a) && is_csu_kind(b) && (a == TYPE::tpk_union) == (b == TYPE::tpk_union);
}

bool same_text(const char* a, const char* b) { return a == b || (a && b && strcmp(a, b) == 0); }

} // namespace

// ---- Exact ---------------------------------------------------------------

bool exact_types(const TYPE* a, const TYPE* b) {
    if (a == b)
        return true;
    if (!a || !b || a->frozen != b->frozen || a->kind != b->kind || a->size() != b->size() ||
        a->align() != b->align() || a->cpp != b->cpp)
        return false;
    switch (a->kind) {
    case TYPE::tpk_void:
        return true;
    case TYPE::tpk_int:
        return a->ikind == b->ikind && a->expl_sign == b->expl_sign && a->boolean == b->boolean &&
               a->ptm_int == b->ptm_int;
    case TYPE::tpk_fltpt:
        return a->fkind == b->fkind;
    case TYPE::tpk_fxtpt:
        return a->binpt == b->binpt && exact_types(a->target, b->target);
    case TYPE::tpk_complex:
    case TYPE::tpk_pointer:
    case TYPE::tpk_ref:
        return exact_types(a->target, b->target);
    case TYPE::tpk_qual:
        return a->quals == b->quals && exact_types(a->target, b->target);
    case TYPE::tpk_typedef:
        return a->td->lowered == b->td->lowered && same_text(a->td->name, b->td->name) &&
               exact_types(a->td->type_named, b->td->type_named);
    case TYPE::tpk_array:
        return a->ar->vector == b->ar->vector && a->ar->complete == b->ar->complete &&
               a->ar->count == b->ar->count && exact_types(a->ar->elem, b->ar->elem);
    case TYPE::tpk_ptm:
        return exact_types(a->target, b->target) && exact_types(a->ptm_class, b->ptm_class);
    case TYPE::tpk_func:
        return a->fn->cc == b->fn->cc && a->fn->vararg == b->fn->vararg &&
               a->fn->proto == b->fn->proto && exact_types(a->fn->ret, b->fn->ret) &&
               equal_params(a->fn->params, b->fn->params);
    case TYPE::tpk_enum:
    case TYPE::tpk_class:
    case TYPE::tpk_struct:
    case TYPE::tpk_union:
        return false; // every tag declaration is its own type
    default:
        tp_die("unhandled type kind: exact_types()");
    }
}

bool equal_params(const fkPARAM* a, const fkPARAM* b) {
    for (; a && b; a = a->next, b = b->next)
        if (!exact_types(a->type, b->type))
            return false;
    return !a && !b;
}

bool equal_etors(const fkETOR* a, const fkETOR* b) {
    for (; a && b; a = a->next, b = b->next)
        if (a->value != b->value || !same_text(a->name, b->name))
            return false;
    return !a && !b;
}

bool is_same_sign(const TYPE* a, const TYPE* b) {
    return a->is_signed() == b->is_signed() && a->is_unsigned() == b->is_unsigned();
}

// ---- Compatible ----------------------------------------------------------

namespace {

bool params_compatible(const fkPARAM* a, const fkPARAM* b, bool strict) {
    for (; a && b; a = a->next, b = b->next)
        if (!compatible_types(a->type, b->type, strict))
            return false;
    return !a && !b;
}

// A prototype matches an old-style declaration only when its parameters
// survive the default promotions unchanged.
bool proto_matches_old_style(TYPE* proto) {
    if (proto->fn->vararg)
        return false;
    for (const fkPARAM* p = proto->fn->params; p; p = p->next)
        if (!compatible_types(p->type, c_integral_promotions(p->type), false))
            return false;
    return true;
}

} // namespace

bool compatible_types(TYPE* a, TYPE* b, bool strict) {
    if (a == b)
        return true;
    if (!a || !b || !a->frozen || !b->frozen)
        return false;
    if (a->kind == TYPE::tpk_typedef || b->kind == TYPE::tpk_typedef)
        return compatible_types(a->stds(), b->stds(), strict);
    if (a->kind != b->kind)
        return false;
    if (a->is_complete() && b->is_complete() &&
        (a->size() != b->size() || a->align() != b->align()))
        return false;
    switch (a->kind) {
    case TYPE::tpk_void:
        return true;
    case TYPE::tpk_int:
        if (a->ikind != b->ikind)
            return false;
        return (a->ikind != TYPE::ik_char && a->ikind != TYPE::ik_uchar) ||
               a->expl_sign == b->expl_sign;
    case TYPE::tpk_fltpt:
        return a->fkind == b->fkind;
    case TYPE::tpk_fxtpt:
        return a->binpt == b->binpt && exact_types(a->target, b->target);
    case TYPE::tpk_complex:
    case TYPE::tpk_pointer:
    case TYPE::tpk_ref:
        return compatible_types(a->target, b->target, strict);
    case TYPE::tpk_ptm:
        return compatible_types(a->target, b->target, strict) &&
               compatible_types(a->ptm_class, b->ptm_class, strict);
    case TYPE::tpk_qual:
        return a->quals == b->quals && compatible_types(a->stqs(), b->stqs(), strict);
    case TYPE::tpk_array:
        if (a->ar->vector != b->ar->vector || !compatible_types(a->ar->elem, b->ar->elem, strict))
            return false;
        return !a->ar->complete || !b->ar->complete || a->ar->count == b->ar->count;
    case TYPE::tpk_func:
        if (a->fn->cc != b->fn->cc || !compatible_types(a->fn->ret, b->fn->ret, strict))
            return false;
        if (!strict && a->fn->proto != b->fn->proto)
            return proto_matches_old_style(a->fn->proto ? a : b);
        if (!strict && !a->fn->proto)
            return true;
        return a->fn->vararg == b->fn->vararg &&
               params_compatible(a->fn->params, b->fn->params, strict);
    case TYPE::tpk_enum:
    case TYPE::tpk_class:
    case TYPE::tpk_struct:
    case TYPE::tpk_union:
        return compare_type_names(a->name(), a->cpp, b->name(), b->cpp);
    default:
        tp_die("unhandled type: compatible_types()");
    }
}

// ---- Equivalent for the machine ------------------------------------------

namespace {

TYPE* machine_view(TYPE* t) {
    TYPE* r = t->resolved;
    while (r->kind == TYPE::tpk_enum && r->en->underlying)
        r = r->en->underlying->resolved;
    return r;
}

bool points_to_function(TYPE* t) { return t->target && t->target->is_func(); }

} // namespace

bool equiv_mtypes(TYPE* a, TYPE* b) {
    if (a == b)
        return true;
    if (!a || !b || !a->frozen || !b->frozen)
        return false;
    a = machine_view(a);
    b = machine_view(b);
    if (a == b)
        return true;
    if (a->size() != b->size() || a->align() != b->align() || !same_kind_group(a->kind, b->kind))
        return false;
    switch (a->kind) {
    case TYPE::tpk_void:
        return true;
    case TYPE::tpk_int: {
        unsigned ka = a->ikind, kb = b->ikind;
        if (ka == TYPE::ik_bool || ka == TYPE::ik_wchar || kb == TYPE::ik_bool ||
            kb == TYPE::ik_wchar)
            return true;
        if (0xaa4u >> ka & 1)
            return 0xaadu >> kb & 1;
        return 0x55bu >> kb & 1;
    }
    case TYPE::tpk_fltpt:
        return a->fkind == b->fkind;
    case TYPE::tpk_fxtpt:
        return a->binpt == b->binpt && equiv_mtypes(a->target, b->target);
    case TYPE::tpk_complex:
        return equiv_mtypes(a->target, b->target);
    case TYPE::tpk_pointer:
    case TYPE::tpk_ref:
        return points_to_function(a) == points_to_function(b);
    case TYPE::tpk_ptm:
        return points_to_function(a) == points_to_function(b) &&
               compatible_types(a->ptm_class, b->ptm_class, false);
    case TYPE::tpk_array:
        return a->ar->count == b->ar->count && equiv_mtypes(a->ar->elem, b->ar->elem);
    case TYPE::tpk_func: {
        if (a->fn->cc != b->fn->cc || a->fn->vararg != b->fn->vararg ||
            !equiv_mtypes(a->fn->ret, b->fn->ret))
            return false;
        const fkPARAM *p = a->fn->params, *q = b->fn->params;
        for (; p && q; p = p->next, q = q->next)
            if (!equiv_mtypes(p->type, q->type))
                return false;
        return !p && !q;
    }
    case TYPE::tpk_class:
    case TYPE::tpk_struct:
    case TYPE::tpk_union: {
        const fkMDATA *m = a->csu->mdata, *n = b->csu->mdata;
        for (; m && n; m = m->next, n = n->next) {
            if (m->offset != n->offset || m->is_bitfield != n->is_bitfield ||
                m->flag_a != n->flag_a || m->flag_b != n->flag_b)
                return false;
            if (m->is_bitfield ? m->width != n->width : !equiv_mtypes(m->type, n->type))
                return false;
        }
        return !m && !n;
    }
    default:
        tp_die("unhandled type kind: equiv_mtypes()");
    }
}

// ---- Names ---------------------------------------------------------------

std::string decode_id(const char* name) {
    const char* p = name;
    if (p[0] != 'Q' || p[1] < '1' || p[1] > '9')
        return name;
    p++;
    int parts = 0;
    while (*p >= '0' && *p <= '9')
        parts = parts * 10 + (*p++ - '0');
    if (*p++ != '_')
        return name;
    std::string out;
    for (int i = 0; i < parts; i++) {
        size_t len = 0;
        if (*p < '1' || *p > '9')
            return name;
        while (*p >= '0' && *p <= '9')
            len = len * 10 + static_cast<size_t>(*p++ - '0');
        if (strnlen(p, len) < len)
            return name;
        if (i)
            out += "::";
        out.append(p, len);
        p += len;
    }
    return *p ? std::string(name) : out;
}

std::string demangle_type_name(const char* name, bool strip_scope, bool* was_mangled) {
    if (!name)
        name = "";
    if (TYPE_PKG::abi != 1 && *name)
        name++;
    std::string decoded = decode_id(name);
    bool mangled = decoded != name;
    if (mangled && strip_scope) {
        size_t colon = decoded.find("::");
        if (colon != std::string::npos)
            decoded = decoded.substr(colon + 2);
    }
    if (was_mangled)
        *was_mangled = mangled;
    return decoded;
}

bool compare_type_names(const char* a, bool a_cpp, const char* b, bool b_cpp) {
    if (a_cpp == b_cpp)
        return same_text(a, b);
    return demangle_type_name(a, true, nullptr) == demangle_type_name(b, true, nullptr);
}

std::string mangle_overloaded_builtin_function_argtypes(TYPE* func) {
    static const char* const codes = "bchwstijlmxyfde";
    std::string out;
    for (const fkPARAM* p = func->params(); p; p = p->next) {
        const TYPE* t = p->type->resolved;
        while (t->kind == TYPE::tpk_pointer || t->is_vector()) {
            if (t->kind == TYPE::tpk_pointer) {
                out += 'P';
                t = t->target->resolved;
            } else {
                out += "Dv" + std::to_string(t->ar->count) + "_";
                t = t->ar->elem->resolved;
            }
        }
        int k = t->kind == TYPE::tpk_enum ? TYPE::ik_int : t->ekind();
        out += k < 15 ? std::string(1, codes[k]) : "v";
    }
    return out;
}

// ---- Merging across translation units ------------------------------------

TYPE* find_type(TYPE* t) {
    while (t && t->equiv)
        t = t->equiv;
    return t;
}

void TYPE::set_equiv(TYPE* other) {
    TYPE* a = find_type(this);
    TYPE* b = find_type(other);
    if (a == b)
        return;
    // The older type stays the representative, unless the newer one already
    // went to the output file under its id.
    TYPE* keep = a->tu <= b->tu ? a : b;
    TYPE* gone = keep == a ? b : a;
    if (keep->writ && !gone->writ)
        std::swap(keep, gone);
    TYPE_PKG* pkg = gone->owner;
    if (pkg && gone->uid && gone->kind != tpk_void) {
        TYPE* base = pkg->base_type(gone);
        if (base->based) {
            auto list = base->based->find(gone->map_name());
            if (list != base->based->end()) {
                std::erase(list->second, gone);
                if (list->second.empty())
                    base->based->erase(list);
            }
        }
        TYPE* new_base =
            keep->kind != tpk_void && keep->owner ? keep->owner->base_type(keep) : pkg->root;
        if (!new_base->based)
            new_base->based = new BASED_TYPE_CONTAINER;
        (*new_base->based)["__merged"].push_back(gone);
    }
    gone->merg = true;
    gone->equiv = keep;
}

namespace {

uint32_t merge_counter;

bool link(TYPE* a, TYPE* b) {
    a->set_equiv(b);
    return true;
}

bool is_padding_name(const char* n) {
    if (!n)
        return false;
    if (TYPE_PKG::abi != 1 && *n)
        n++;
    return strncmp(n, "$P$T", 4) == 0;
}

bool merge_params(const fkPARAM* p, const fkPARAM* q) {
    for (; p && q; p = p->next, q = q->next) {
        TYPE* a = p->type;
        TYPE* b = q->type;
        // A parameter declared const on one side only is the same parameter.
        if ((a->qual_kind(false) & TQ_CONST) != (b->qual_kind(false) & TQ_CONST)) {
            a = a->stqs();
            b = b->stqs();
        }
        if (!merge_types(a, b))
            return false;
    }
    return !p && !q;
}

bool merge_csu_lists(TYPE* a, TYPE* b) {
    const TYPE::CSU_PART* x = a->csu;
    const TYPE::CSU_PART* y = b->csu;
    {
        const fkBCLASS *p = x->bclasses, *q = y->bclasses;
        for (; p && q; p = p->next, q = q->next)
            if (p->access != q->access || p->offset != q->offset || !merge_types(p->type, q->type))
                return false;
        if (p || q)
            return false;
    }
    {
        const fkFFRIEND *p = x->ffriends, *q = y->ffriends;
        for (; p && q; p = p->next, q = q->next)
            if (!same_text(p->name, q->name))
                return false;
        if (p || q)
            return false;
    }
    for (auto lists :
         {std::make_pair(x->cfriends, y->cfriends), std::make_pair(x->ntypes, y->ntypes)}) {
        const fkTYPE_ELEM *p = lists.first, *q = lists.second;
        for (; p && q; p = p->next, q = q->next)
            if (!merge_types(p->type, q->type))
                return false;
        if (p || q)
            return false;
    }
    {
        const fkMFUNC *p = x->mfuncs, *q = y->mfuncs;
        for (; p && q; p = p->next, q = q->next) {
            if (!same_text(p->name, q->name) || p->access != q->access)
                return false;
            for (int i = 0; i < 4; i++)
                if (p->flags[i] != q->flags[i])
                    return false;
            if (!merge_types(p->type, q->type))
                return false;
        }
        if (p || q)
            return false;
    }
    if (a->kind == TYPE::tpk_union && !x->layout_check && !y->layout_check) {
        unsigned na = 0, nb = 0;
        for (fkMDATA* m = x->mdata; m; m = m->next)
            na++;
        for (fkMDATA* m = y->mdata; m; m = m->next)
            nb++;
        if (na != nb)
            return false;
        for (fkMDATA* m = x->mdata; m; m = m->next) {
            bool found = false;
            for (fkMDATA* n = y->mdata; n && !found; n = n->next)
                found = mdata_equal(m, n);
            if (!found)
                return false;
        }
    } else {
        fkMDATA *m = x->mdata, *n = y->mdata;
        for (; m && n; m = m->next, n = n->next)
            if (!mdata_equal(m, n))
                return false;
        if (m || n)
            return false;
    }
    const fkSDATA *p = x->sdata, *q = y->sdata;
    for (; p && q; p = p->next, q = q->next)
        if (!same_text(p->name, q->name) || p->access != q->access ||
            !merge_types(p->type, q->type))
            return false;
    return !p && !q;
}

bool merge_csu(TYPE* a, TYPE* b) {
    if (a->merge_mark && a->merge_mark == b->merge_mark)
        return true; // the pair is being compared further up
    if (a->merge_mark || b->merge_mark)
        return false;
    a->merge_mark = b->merge_mark = ++merge_counter;
    struct CLEAR {
        TYPE *a, *b;
        ~CLEAR() { a->merge_mark = b->merge_mark = 0; }
    } clear{a, b};

    bool tagless = type_is_tagless(a) || type_is_tagless(b);
    if (!tagless && !compare_type_names(a->name(), a->cpp, b->name(), b->cpp))
        return false;
    bool ca = a->is_complete(), cb = b->is_complete();
    if (!ca || !cb) {
        if (tagless)
            return false;
        if (ca != cb)
            return true; // a declaration and its definition: nothing to link
        return link(a, b);
    }
    if (!merge_csu_lists(a, b))
        return false;
    return link(a, b);
}

} // namespace

bool mdata_equal(fkMDATA* a, fkMDATA* b) {
    if (!(is_padding_name(a->name) && is_padding_name(b->name)) && !same_text(a->name, b->name))
        return false;
    if (a->offset != b->offset || a->access != b->access || a->flag_a != b->flag_a ||
        a->flag_b != b->flag_b || a->is_bitfield != b->is_bitfield ||
        (a->is_bitfield && a->width != b->width))
        return false;
    return merge_types(a->type, b->type);
}

bool merge_types(TYPE* a, TYPE* b) {
    a = find_type(a);
    b = find_type(b);
    if (!a || !b)
        return a == b;
    if (a->tu < b->tu)
        std::swap(a, b);
    if (a == b)
        return true;

    if (a->kind == TYPE::tpk_typedef || b->kind == TYPE::tpk_typedef) {
        bool ta = a->kind == TYPE::tpk_typedef, tb = b->kind == TYPE::tpk_typedef;
        if (ta && tb && a->cpp && b->cpp) {
            if (!same_text(a->td->name, b->td->name) || a->td->lowered != b->td->lowered ||
                !merge_types(a->td->type_named, b->td->type_named))
                return false;
            return link(a, b);
        }
        if (ta && tb && a->cpp != b->cpp) {
            TYPE* c_side = a->cpp ? b : a;
            if (!c_side->td->lowered)
                return false;
        }
        return merge_types(a->stds(), b->stds());
    }

    if (!same_kind_group(a->kind, b->kind))
        return false;
    if (a->is_complete() && b->is_complete() &&
        (a->size() != b->size() || a->align() != b->align()))
        return false;

    switch (a->kind) {
    case TYPE::tpk_void:
        return link(a, b);
    case TYPE::tpk_int:
        if (a->ikind != b->ikind || a->expl_sign != b->expl_sign ||
            (a->ikind != TYPE::ik_bool && a->boolean != b->boolean))
            return false;
        return link(a, b);
    case TYPE::tpk_fltpt:
        return a->fkind == b->fkind && link(a, b);
    case TYPE::tpk_fxtpt:
        return a->binpt == b->binpt && merge_types(a->target, b->target) && link(a, b);
    case TYPE::tpk_complex:
        return find_type(a->target) == find_type(b->target) && link(a, b);
    case TYPE::tpk_pointer:
    case TYPE::tpk_ref:
        return merge_types(a->target, b->target) && link(a, b);
    case TYPE::tpk_qual:
        return a->quals == b->quals && merge_types(a->target, b->target) && link(a, b);
    case TYPE::tpk_ptm:
        return merge_types(a->target, b->target) && merge_types(a->ptm_class, b->ptm_class) &&
               link(a, b);
    case TYPE::tpk_array:
        if (!merge_types(a->ar->elem, b->ar->elem) || a->ar->vector != b->ar->vector)
            return false;
        if (!a->ar->complete || !b->ar->complete || a->ar->count != b->ar->count)
            return true;
        return link(a, b);
    case TYPE::tpk_func:
        if (a->fn->cc != b->fn->cc || !merge_types(a->fn->ret, b->fn->ret))
            return false;
        if (a->fn->proto && b->fn->proto) {
            if (a->fn->vararg != b->fn->vararg || !merge_params(a->fn->params, b->fn->params))
                return false;
        } else if (a->fn->vararg || b->fn->vararg) {
            return false;
        }
        return link(a, b);
    case TYPE::tpk_enum:
        if (!type_is_tagless(a) && !type_is_tagless(b) &&
            !compare_type_names(a->name(), a->cpp, b->name(), b->cpp))
            return false;
        return link(a, b);
    case TYPE::tpk_class:
    case TYPE::tpk_struct:
    case TYPE::tpk_union:
        return merge_csu(a, b);
    default:
        return false;
    }
}

int find_equivalent_type(TYPE* t) {
    if (t->merg || t->kind == TYPE::tpk_void)
        return 1;
    if (!t->uid || !t->owner || find_type(t)->refd)
        return 0;
    TYPE* base = t->owner->base_type(t);
    if (!base->based)
        return 0;
    auto list = base->based->find(t->map_name());
    if (list == base->based->end())
        return 0;
    std::vector<TYPE*> candidates = list->second;
    for (TYPE* e : candidates)
        if (e != t && !e->merg && merge_types(t, e))
            return 1;
    return 0;
}
