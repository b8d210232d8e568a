// TYPE_PKG: the basic types of the target, registration (interning) of
// types, the mk_* constructors, freezing, normalization and deletion.
#include <cstdarg>
#include <cstring>

#include "driver/diag.h"
#include "ir/types.h"

TYPE* TYPE_PKG::root_type;
int TYPE_PKG::tp_count;
int TYPE_PKG::abi;
unsigned TYPE_PKG::wchar_t_size_in_bits = 32;
bool TYPE_PKG::seen_bitfield;
bool TYPE_PKG::seen_enum_type;
bool TYPE_PKG::seen_small_enums;
int TYPE_PKG::cpu_version = 7;
int TYPE_PKG::large_code_model;
int TYPE_PKG::byte_mode;
int TYPE_PKG::flat_memory_model;
unsigned TYPE_PKG::tot_types, TYPE_PKG::tot_basics, TYPE_PKG::tot_complexes, TYPE_PKG::tot_ptrs,
    TYPE_PKG::tot_quals, TYPE_PKG::tot_tdefs, TYPE_PKG::tot_arrays, TYPE_PKG::tot_vectors,
    TYPE_PKG::tot_funcs, TYPE_PKG::tot_enums, TYPE_PKG::tot_structs;

namespace {

constexpr unsigned long max_object_bytes = 536870911; // 0x1fffffff

// Size and alignment of basic type i (an IKIND, or 12 to 14 for the floats)
// on the 32-bit ARM target.
void basic_layout(int i, uint64_t& size, unsigned& align) {
    const bool aligned64 = TYPE_PKG::abi == 1;
    switch (i) {
    case TYPE::ik_bool:
    case TYPE::ik_char:
    case TYPE::ik_uchar:
        size = align = 8;
        break;
    case TYPE::ik_wchar:
        size = TYPE_PKG::wchar_t_size_in_bits;
        align = size == 16 ? 16 : 32;
        break;
    case TYPE::ik_short:
    case TYPE::ik_ushort:
        size = align = 16;
        break;
    case TYPE::ik_llong:
    case TYPE::ik_ullong:
    case TYPE_PKG::bt_double:
    case TYPE_PKG::bt_ldouble:
        size = 64;
        align = aligned64 ? 64 : 32;
        break;
    default: // int, unsigned, long, unsigned long, float
        size = align = 32;
        break;
    }
}

uint64_t round_up(uint64_t v, uint64_t a) { return a ? (v + a - 1) / a * a : v; }

char* copy_name(const char* s) {
    size_t n = strlen(s) + 1;
    char* p = static_cast<char*>(tp_alloc(n));
    memcpy(p, s, n);
    return p;
}

} // namespace

TYPE_PKG::TYPE_PKG() {
    tp_count++;
    root = new TYPE(TYPE::tpk_void);
    root->owner = this;
    members.insert(root);
    root->frozen = true;
    root->uid = next_uid++;
    if (!root_type)
        root_type = root;

    void_type = enter(create_type(TYPE::tpk_void, 0, 0), root);
    ptr_to_void = mk_ptr(void_type, 32, 32);
    for (int i = 0; i < basic_count; i++) {
        uint64_t size;
        unsigned align;
        basic_layout(i, size, align);
        basic[i] = i < bt_float
                       ? mk_int(static_cast<TYPE::IKIND>(i), false, size, align, false, false)
                       : mk_fltpt(static_cast<TYPE::FKIND>(i - bt_float), size, align);
    }
    normalize_basic_types();
}

TYPE_PKG::~TYPE_PKG() { delete_type_tree(); }

void TYPE_PKG::update_basic_types() {
    for (int i = 0; i < basic_count; i++) {
        uint64_t size;
        unsigned align;
        basic_layout(i, size, align);
        basic[i]->size_in_bits = size;
        basic[i]->align_in_bits = align;
    }
    normalize_basic_types();
    for (TYPE* t : members)
        t->normal = nullptr;
}

// Types that mean the same for the machine share one representative, so that
// on this target long and int are one type after normalization.
void TYPE_PKG::normalize_basic_types() {
    int* n = normal_basic;
    for (int i = 0; i < basic_count; i++)
        n[i] = i;
    auto same = [this](int a, int b) { return basic[a]->size() == basic[b]->size(); };
    using T = TYPE;
    if (same(T::ik_llong, T::ik_int))
        n[T::ik_llong] = T::ik_int, n[T::ik_ullong] = T::ik_uint;
    if (same(T::ik_long, T::ik_int))
        n[T::ik_long] = T::ik_int, n[T::ik_ulong] = T::ik_uint;
    if (same(T::ik_short, T::ik_int))
        n[T::ik_short] = T::ik_int, n[T::ik_ushort] = T::ik_uint;
    else if (same(T::ik_short, T::ik_char))
        n[T::ik_short] = T::ik_char, n[T::ik_ushort] = T::ik_uchar;
    if (same(T::ik_char, T::ik_int))
        n[T::ik_char] = T::ik_int, n[T::ik_uchar] = T::ik_uint;
    if (same(T::ik_wchar, T::ik_short))
        n[T::ik_wchar] = n[T::ik_short];
    if (same(bt_ldouble, bt_double))
        n[bt_ldouble] = bt_double;
    if (same(bt_ldouble, bt_float))
        n[bt_ldouble] = bt_float;
    if (same(bt_double, bt_float))
        n[bt_double] = bt_float;
}

const char* TYPE_PKG::intern_file_name(const char* name) {
    if (!name)
        return nullptr;
    return file_names.insert(name).first->c_str();
}

// ---- Creation and registration -------------------------------------------

TYPE* TYPE_PKG::create_type(TYPE::KIND k, unsigned long long size, unsigned align) {
    TYPE* t = new TYPE(k);
    t->owner = this;
    members.insert(t);
    t->size_in_bits = size;
    t->align_in_bits = align;
    if (size >> 32)
        set_error(TP_OBJECT_SIZE,
                  "Object size %llu bytes is greater than maximum supported size %lu bytes",
                  size / 8, max_object_bytes);
    return t;
}

TYPE* TYPE_PKG::enter(TYPE* t, TYPE* base) {
    t->frozen = true;
    return register_type(t, base);
}

TYPE* TYPE_PKG::register_type(TYPE* t, TYPE* base) {
    t->tu = tu;
    if (!t->frozen || t->uid)
        return t;
    if (!t->owner) {
        t->owner = this;
        members.insert(t);
    }
    // Only the tag declarations themselves stay apart; a qualified or named
    // tag is shared like any other derived type.
    const std::string& name = t->map_name();
    if (t->kind < TYPE::tpk_enum && base->based) {
        auto list = base->based->find(name);
        if (list != base->based->end())
            for (TYPE* e : list->second)
                if (e != t && e->owner == this && exact_types(t, e)) {
                    // A twin that something is already based on must stay.
                    if (t->based && !t->based->empty())
                        break;
                    delete t;
                    return e;
                }
    }
    t->uid = next_uid++;
    if (t->csu) {
        unsigned n = 0;
        for (fkMDATA* m = t->csu->mdata; m; m = m->next)
            m->number = ++n;
    }
    db_stats(t);
    if (!base->based)
        base->based = new TYPE::BASED_TYPE_CONTAINER;
    (*base->based)[name].push_back(t);
    return t;
}

void TYPE_PKG::db_stats(TYPE* t) {
    tot_types++;
    switch (t->kind) {
    case TYPE::tpk_void:
    case TYPE::tpk_int:
    case TYPE::tpk_fltpt:
    case TYPE::tpk_fxtpt:
        tot_basics++;
        break;
    case TYPE::tpk_complex:
        tot_basics++;
        tot_complexes++;
        break;
    case TYPE::tpk_pointer:
    case TYPE::tpk_ref:
    case TYPE::tpk_ptm:
        tot_ptrs++;
        break;
    case TYPE::tpk_qual:
        tot_quals++;
        break;
    case TYPE::tpk_typedef:
        tot_tdefs++;
        break;
    case TYPE::tpk_array:
        tot_arrays++;
        if (t->ar->vector)
            tot_vectors++;
        break;
    case TYPE::tpk_func:
        tot_funcs++;
        break;
    case TYPE::tpk_enum:
        tot_enums++;
        break;
    case TYPE::tpk_class:
    case TYPE::tpk_struct:
    case TYPE::tpk_union:
        tot_structs++;
        break;
    default:
        tp_die("bad type: TYPE_PKG::db_stats()");
    }
}

void TYPE_PKG::type_frozen(TYPE*& t) {
    if (t->frozen && t->uid)
        return;
    t->frozen = true;
    if (t->kind > TYPE::tpk_union)
        tp_die("bad kind: type_frozen()");
    t = register_type(t, base_type(t));
}

TYPE* TYPE_PKG::base_type(const TYPE* t) {
    switch (t->kind) {
    case TYPE::tpk_void:
    case TYPE::tpk_int:
    case TYPE::tpk_fltpt:
    case TYPE::tpk_fxtpt:
    case TYPE::tpk_complex:
    case TYPE::tpk_enum:
    case TYPE::tpk_class:
    case TYPE::tpk_struct:
    case TYPE::tpk_union:
        return root;
    case TYPE::tpk_pointer:
    case TYPE::tpk_ptm:
    case TYPE::tpk_ref:
    case TYPE::tpk_qual:
        return t->target;
    case TYPE::tpk_typedef:
        return t->td->type_named;
    case TYPE::tpk_array:
        return t->ar->elem;
    case TYPE::tpk_func:
        return t->fn->ret;
    default:
        tp_die("bad kind:  TYPE_PKG::base_type()");
    }
}

// ---- Constructors --------------------------------------------------------

TYPE* TYPE_PKG::mk_int(TYPE::IKIND k, bool explicit_sign) {
    if (k > TYPE::ik_ullong)
        tp_die("Bad kind: TYPE_PKG::mk_int");
    TYPE* b = basic[k];
    if (!explicit_sign)
        return b;
    return mk_int(k, true, b->size(), b->align(), false, false);
}

TYPE* TYPE_PKG::mk_int(TYPE::IKIND k, bool explicit_sign, unsigned long long size, unsigned align,
                       bool boolean, bool ptm) {
    if (k > TYPE::ik_ullong)
        tp_die("Bad kind: TYPE_PKG::mk_int");
    TYPE* t = create_type(TYPE::tpk_int, size, align);
    t->ikind = k;
    t->expl_sign = explicit_sign;
    t->boolean = boolean;
    t->ptm_int = ptm;
    return enter(t, root);
}

TYPE* TYPE_PKG::mk_boolean_int(TYPE* t) {
    TYPE* r = t->resolved;
    return mk_int(r->ikind, r->expl_sign, r->size(), r->align(), true, false);
}

TYPE* TYPE_PKG::mk_ptm_int(TYPE* t) {
    TYPE* r = t->resolved;
    return mk_int(r->ikind, r->expl_sign, r->size(), r->align(), false, true);
}

TYPE* TYPE_PKG::mk_fltpt(TYPE::FKIND k) {
    if (k > TYPE::fk_ldouble)
        tp_die("Bad fltpt_kind: TYPE_PKG::mk_fltpt");
    return basic[bt_float + k];
}

TYPE* TYPE_PKG::mk_fltpt(TYPE::FKIND k, unsigned long long size, unsigned align) {
    if (k > TYPE::fk_ldouble)
        tp_die("Bad fltpt_kind: TYPE_PKG::mk_fltpt");
    TYPE* t = create_type(TYPE::tpk_fltpt, size, align);
    t->fkind = k;
    return enter(t, root);
}

TYPE* TYPE_PKG::mk_fxtpt(TYPE* underlying, int binpt) {
    return mk_fxtpt(underlying, binpt, underlying->size(), underlying->align());
}

TYPE* TYPE_PKG::mk_fxtpt(TYPE* underlying, int binpt, unsigned long long size, unsigned align) {
    TYPE* t = create_type(TYPE::tpk_fxtpt, size, align);
    t->target = underlying;
    t->binpt = static_cast<unsigned char>(binpt);
    return enter(t, root);
}

TYPE* TYPE_PKG::mk_complex(TYPE* part) {
    auto found = complexes.find(part->uid);
    if (part->uid && found != complexes.end())
        return found->second;
    TYPE* t = mk_complex(part, 2 * part->size(), part->align());
    if (part->uid)
        complexes[part->uid] = t;
    return t;
}

TYPE* TYPE_PKG::mk_complex(TYPE* part, unsigned long long size, unsigned align) {
    if (!part->is_signed())
        tp_die("Bad complex part_type: TYPE::TYPE(TYPE *i_part_type)");
    TYPE* t = create_type(TYPE::tpk_complex, size, align);
    t->target = part;
    return enter(t, root);
}

TYPE* TYPE_PKG::mk_ptr(TYPE* t) { return mk_ptr(t, 32, 32); }

TYPE* TYPE_PKG::mk_ptr(TYPE* target, unsigned long long size, unsigned align) {
    TYPE* t = create_type(TYPE::tpk_pointer, size, align);
    t->target = target;
    return enter(t, target);
}

TYPE* TYPE_PKG::mk_ref(TYPE* t) { return mk_ref(t, 32, 32); }

TYPE* TYPE_PKG::mk_ref(TYPE* target, unsigned long long size, unsigned align) {
    TYPE* t = create_type(TYPE::tpk_ref, size, align);
    t->target = target;
    return enter(t, target);
}

TYPE* TYPE_PKG::mk_ptm(TYPE* pointed, TYPE* cls, unsigned long long size, unsigned align) {
    TYPE* t = create_type(TYPE::tpk_ptm, size, align);
    t->target = pointed;
    t->ptm_class = cls;
    return enter(t, pointed);
}

TYPE* TYPE_PKG::mk_qual(TYPE* t, unsigned char q) {
    unsigned char all = q;
    for (TYPE* s = t; s->kind == TYPE::tpk_qual; s = s->target)
        all |= s->quals;
    return mk_qual(t, q, t->size(), all & TQ_PACKED ? 8 : t->align());
}

// Qualified types are always built on the unqualified type below a chain of
// qualifier wrappers, so that each set of bits on a type has one object.
TYPE* TYPE_PKG::mk_qual(TYPE* t, unsigned char q, unsigned long long size, unsigned align) {
    if ((t->qual_kind(true) & q) == q)
        return t;
    TYPE* inner = t;
    while (inner->kind == TYPE::tpk_qual) {
        q |= inner->quals;
        inner = inner->target;
    }
    TYPE* w = create_type(TYPE::tpk_qual, size, align);
    w->target = inner;
    w->quals = q;
    w->resolved = inner->resolved;
    return enter(w, inner);
}

TYPE* TYPE_PKG::mk_typedef(const char* name, bool cpp, TYPE* t, bool lowered) {
    return mk_typedef(name, cpp, t, lowered, t->size(), t->align());
}

TYPE* TYPE_PKG::mk_typedef(const char* name, bool cpp, TYPE* target, bool lowered,
                           unsigned long long size, unsigned align) {
    char fake[32];
    if (!name || !*name) {
        snprintf(fake, sizeof fake, "$$fake%u", ++fake_counter[0]);
        name = fake;
    }
    TYPE* t = create_type(TYPE::tpk_typedef, size, align);
    t->td->type_named = target;
    t->td->name = copy_name(name);
    t->td->name_len = static_cast<unsigned>(strlen(name));
    t->td->lowered = lowered;
    t->cpp = cpp;
    t->resolved = target->resolved;
    return enter(t, target);
}

TYPE* TYPE_PKG::mk_array(TYPE* elem, bool cpp, uint32_t count) {
    return mk_array(elem, cpp, count, count * type_stride(elem), elem->align(), true);
}

TYPE* TYPE_PKG::mk_array(TYPE* elem, bool cpp) { return mk_array(elem, cpp, 0, 0, 0, false); }

TYPE* TYPE_PKG::mk_array(TYPE* elem, bool cpp, uint32_t count, unsigned long long size,
                         unsigned align, bool complete) {
    TYPE* t = create_type(TYPE::tpk_array, size, align);
    t->ar->elem = elem;
    t->ar->count = count;
    t->ar->complete = complete;
    t->cpp = cpp;
    type_frozen(t);
    return t;
}

// NEON keeps 64- and 128-bit vectors 64-bit aligned; smaller ones are
// aligned to their size.
TYPE* TYPE_PKG::mk_vector(TYPE* elem, bool cpp, uint32_t count) {
    uint64_t size = count * type_stride(elem);
    unsigned align = elem->align();
    if (size && (size & (size - 1)) == 0) {
        unsigned natural = size < 64 ? static_cast<unsigned>(size) : 64;
        if (natural > align)
            align = natural;
    }
    return mk_vector(elem, cpp, count, size, align);
}

TYPE* TYPE_PKG::mk_vector(TYPE* elem, bool cpp, uint32_t count, unsigned long long size,
                          unsigned align) {
    TYPE* t = create_type(TYPE::tpk_array, size, align);
    t->ar->elem = elem;
    t->ar->count = count;
    t->ar->complete = true;
    t->ar->vector = true;
    t->cpp = cpp;
    type_frozen(t);
    return t;
}

TYPE* TYPE_PKG::mk_func(TYPE* ret, bool cpp, bool proto, bool vararg, TYPE::CC_KIND cc,
                        unsigned long long size, unsigned align) {
    TYPE* t = create_type(TYPE::tpk_func, size, align);
    t->fn->ret = ret;
    t->fn->proto = proto;
    t->fn->vararg = vararg;
    t->fn->cc = cc;
    t->cpp = cpp;
    return t;
}

TYPE* TYPE_PKG::mk_tagged(TYPE::KIND k, const char* name, bool cpp, bool complete,
                          unsigned long long size, unsigned align) {
    char fake[32];
    if (!name || !*name) {
        // One counter per kind group, so that names stay short and stable.
        int group = k == TYPE::tpk_enum ? 1 : k == TYPE::tpk_union ? 3 : 2;
        snprintf(fake, sizeof fake, "$$fake%u", ++fake_counter[group]);
        name = fake;
    }
    TYPE* t = create_type(k, size, align);
    t->cpp = cpp;
    char* copy = copy_name(name);
    unsigned len = static_cast<unsigned>(strlen(name));
    if (t->en) {
        t->en->name = copy, t->en->name_len = len, t->en->complete = complete;
        seen_enum_type = true;
    } else {
        t->csu->name = copy, t->csu->name_len = len, t->csu->complete = complete;
    }
    return t;
}

TYPE* TYPE_PKG::mk_enum(const char* name) {
    TYPE* t = mk_tagged(TYPE::tpk_enum, name, false, false, basic[TYPE::ik_int]->size(),
                        basic[TYPE::ik_int]->align());
    t->en->underlying = basic[TYPE::ik_int];
    return t;
}

TYPE* TYPE_PKG::mk_enum(const char* name, bool cpp, TYPE* underlying, unsigned long long size,
                        unsigned align) {
    TYPE* t = mk_tagged(TYPE::tpk_enum, name, cpp, false, size, align);
    t->en->underlying = underlying;
    if (size < basic[TYPE::ik_int]->size())
        seen_small_enums = true;
    return t;
}

TYPE* TYPE_PKG::mk_struct(const char* name) { return mk_struct(name, false, false, 0, 0); }
TYPE* TYPE_PKG::mk_struct(const char* name, bool cpp, bool complete, unsigned long long size,
                          unsigned align) {
    return mk_tagged(TYPE::tpk_struct, name, cpp, complete, size, align);
}
TYPE* TYPE_PKG::mk_class(const char* name) { return mk_class(name, true, false, 0, 0); }
TYPE* TYPE_PKG::mk_class(const char* name, bool cpp, bool complete, unsigned long long size,
                         unsigned align) {
    return mk_tagged(TYPE::tpk_class, name, cpp, complete, size, align);
}
TYPE* TYPE_PKG::mk_union(const char* name) { return mk_union(name, false, false, 0, 0); }
TYPE* TYPE_PKG::mk_union(const char* name, bool cpp, bool complete, unsigned long long size,
                         unsigned align) {
    return mk_tagged(TYPE::tpk_union, name, cpp, complete, size, align);
}

namespace {

// The partner kind of an integer kind: for_unsigned picks the unsigned
// partner, else the signed one. Bool and wchar_t have none.
int partner_ikind(int k, bool for_unsigned) {
    static const int to_unsigned[] = {0, 2, 2, 3, 5, 5, 7, 7, 9, 9, 11, 11};
    static const int to_signed[] = {0, 1, 1, 3, 4, 4, 6, 6, 8, 8, 10, 10};
    return for_unsigned ? to_unsigned[k] : to_signed[k];
}

} // namespace

static TYPE* mk_sign_partner(TYPE_PKG* pkg, TYPE* t, bool for_unsigned) {
    unsigned char q = t->qual_kind(false);
    TYPE* r = t->resolved;
    if (r->kind == TYPE::tpk_enum)
        r = r->en->underlying->resolved;
    TYPE* result;
    if (r->kind == TYPE::tpk_array && r->ar->vector) {
        TYPE* elem = mk_sign_partner(pkg, r->ar->elem, for_unsigned);
        if (elem == r->ar->elem && r == t->resolved)
            return t;
        result = elem == r->ar->elem
                     ? r
                     : pkg->mk_vector(elem, r->cpp, r->ar->count, r->size(), r->align());
    } else if (r->kind == TYPE::tpk_int) {
        if (r->ikind > TYPE::ik_ullong)
            tp_die(for_unsigned ? "Bad kind: TYPE_PKG::mk_unsigned()"
                                : "Bad kind: TYPE_PKG::mk_signed()");
        int k = partner_ikind(r->ikind, for_unsigned);
        if (k == r->ikind && r == t->resolved)
            return t;
        result = k == r->ikind ? r
                               : pkg->mk_int(static_cast<TYPE::IKIND>(k), r->expl_sign, r->size(),
                                             r->align(), r->boolean, r->ptm_int);
    } else {
        return t;
    }
    return q ? pkg->mk_qual(result, q) : result;
}

TYPE* TYPE_PKG::mk_unsigned(TYPE* t) { return mk_sign_partner(this, t, true); }
TYPE* TYPE_PKG::mk_signed(TYPE* t) { return mk_sign_partner(this, t, false); }

TYPE* TYPE_PKG::mk_vpred(TYPE* vector) {
    std::string name = std::string("__ondrel_vpred_tp") + vector->resolved->ar->elem->printstr();
    auto found = vpreds.find(name);
    if (found != vpreds.end())
        return found->second;
    TYPE* s = mk_struct(name.c_str(), false, true, 64, 64);
    TYPE* field = mk_array(basic[TYPE::ik_ullong], false, 1);
    s->add_mdata(new fkMDATA("__vpred_field", field, 0, 0, 0, 0, false, false, false));
    s->csu->is_struct_vector = true;
    type_frozen(s);
    vpreds[name] = s;
    return s;
}

TYPE* TYPE_PKG::remove_known_qual(TYPE* t, unsigned char q) {
    switch (t->kind) {
    case TYPE::tpk_qual: {
        TYPE* inner = remove_known_qual(t->target, q);
        unsigned char keep = t->quals & ~q;
        return keep ? mk_qual(inner, keep) : inner;
    }
    case TYPE::tpk_typedef:
        // The name must go when the bits to remove are inside it.
        return t->qual_kind(true) & q ? remove_known_qual(t->td->type_named, q) : t;
    case TYPE::tpk_array: {
        TYPE* elem = remove_known_qual(t->ar->elem, q);
        return elem == t->ar->elem ? t : replace_array_elem(t, t->ar->elem, elem);
    }
    default:
        return t;
    }
}

TYPE* TYPE_PKG::replace_array_elem(TYPE* array, const TYPE* old_elem, TYPE* new_elem) {
    if (array->kind != TYPE::tpk_array)
        tp_die("replace_array_elem:  can't find element");
    TYPE* elem = array->ar->elem == old_elem
                     ? new_elem
                     : replace_array_elem(array->ar->elem, old_elem, new_elem);
    if (array->ar->vector)
        return mk_vector(elem, array->cpp, array->ar->count, array->size(), array->align());
    return mk_array(elem, array->cpp, array->ar->count, array->size(), array->align(),
                    array->ar->complete);
}

// ---- Normalization -------------------------------------------------------

TYPE* TYPE_PKG::normalized_type_uncached(TYPE* t) {
    switch (t->kind) {
    case TYPE::tpk_void:
    case TYPE::tpk_fxtpt:
    case TYPE::tpk_ptm:
    case TYPE::tpk_enum:
    case TYPE::tpk_class:
    case TYPE::tpk_struct:
    case TYPE::tpk_union:
        return t;
    case TYPE::tpk_int:
    case TYPE::tpk_fltpt: {
        int i = t->kind == TYPE::tpk_int ? t->ikind : bt_float + t->fkind;
        if (i >= basic_count || (t->kind == TYPE::tpk_int && t->ikind > TYPE::ik_ullong))
            return t;
        // A type of another layout than the basic one of its kind stays apart.
        if (t->size() != basic[i]->size() || t->align() != basic[i]->align())
            return t;
        return basic[normal_basic[i]];
    }
    case TYPE::tpk_complex: {
        TYPE* p = t->target->normalized();
        return p == t->target ? t : mk_complex(p);
    }
    case TYPE::tpk_pointer: {
        TYPE* n = t->target->normalized();
        return n == t->target ? t : mk_ptr(n, t->size(), t->align());
    }
    case TYPE::tpk_ref: {
        TYPE* n = t->target->normalized();
        return n == t->target ? t : mk_ref(n, t->size(), t->align());
    }
    case TYPE::tpk_qual: {
        TYPE* n = t->target->normalized();
        return n == t->target ? t : mk_qual(n, t->quals, t->size(), t->align());
    }
    case TYPE::tpk_array: {
        TYPE* n = t->ar->elem->normalized();
        if (n == t->ar->elem)
            return t;
        if (t->ar->vector)
            return mk_vector(n, t->cpp, t->ar->count, t->size(), t->align());
        return mk_array(n, t->cpp, t->ar->count, t->size(), t->align(), t->ar->complete);
    }
    case TYPE::tpk_func: {
        TYPE* ret = t->fn->ret->normalized();
        bool changed = ret != t->fn->ret;
        for (fkPARAM* p = t->fn->params; p; p = p->next)
            changed |= p->type->normalized() != p->type;
        if (!changed)
            return t;
        TYPE* f =
            mk_func(ret, t->cpp, t->fn->proto, t->fn->vararg, t->fn->cc, t->size(), t->align());
        for (fkPARAM* p = t->fn->params; p; p = p->next) {
            fkPARAM* copy = f->add_param(p->type->normalized());
            copy->flag = p->flag;
            copy->word = p->word;
            if (p->name)
                copy->name = copy_name(p->name);
        }
        type_frozen(f);
        return f;
    }
    case TYPE::tpk_typedef:
        return t->td->type_named->normalized();
    default:
        tp_die("Tried to normalize unknown type kind");
    }
}

// ---- Layout --------------------------------------------------------------

// Plain members go at the next multiple of their alignment. A bit field
// stays at the next free bit when it fits in a container of its declared
// type aligned as that type, and otherwise starts the next such container; a
// zero-width one only moves to the next container. Unnamed bit fields leave
// the class's alignment alone, as the ARM procedure call standard says.
void TYPE_PKG::layout_csu(TYPE* t, bool packed) {
    TYPE::CSU_PART* c = t->get_csu();
    t->check_nfrozen();
    const bool is_union = t->kind == TYPE::tpk_union;
    uint64_t next = 0, size = 0;
    unsigned align = 8;
    for (fkMDATA* m = c->mdata; m; m = m->next) {
        TYPE* mt = m->type;
        unsigned a = packed || mt->align() < 8 ? 8 : mt->align();
        uint64_t offset, end;
        if (m->is_bitfield) {
            uint64_t width = m->width;
            uint64_t container = mt->size();
            if (is_union)
                offset = 0;
            else if (packed)
                offset = next;
            else if (width == 0)
                offset = round_up(next, a);
            else
                offset = next % a + width <= container ? next : round_up(next, a);
            end = offset + width;
            if (m->name && *m->name && width)
                align = a > align ? a : align;
        } else {
            offset = is_union ? 0 : round_up(next, a);
            end = offset + mt->size();
            align = a > align ? a : align;
        }
        m->offset = static_cast<uint32_t>(offset);
        if (!is_union)
            next = end;
        if (end > size)
            size = end;
    }
    t->size_in_bits = round_up(size, align);
    t->align_in_bits = align;
    c->complete = true;
}

bool TYPE_PKG::get_container_offset_for_field(unsigned container_size, unsigned alignment,
                                              unsigned field_offset, unsigned field_width,
                                              unsigned* out) {
    uint64_t end = round_up(uint64_t(field_offset) + field_width, alignment);
    uint64_t offset = end > container_size ? end - container_size : 0;
    *out = static_cast<unsigned>(offset);
    return offset <= field_offset;
}

bool TYPE_PKG::is_legal_container_for_field(TYPE* candidate, TYPE* aggregate, unsigned field_offset,
                                            unsigned field_width, bool allow_overhang,
                                            unsigned* out) {
    if (candidate->storage_size() != candidate->size())
        return false;
    unsigned offset;
    if (!get_container_offset_for_field(static_cast<unsigned>(candidate->size()),
                                        candidate->align(), field_offset, field_width, &offset))
        return false;
    if (candidate->align() > aggregate->align())
        return false;
    if (!allow_overhang && offset + candidate->size() > aggregate->size())
        return false;
    *out = offset;
    return true;
}

// ---- Promotions ----------------------------------------------------------

TYPE* TYPE_PKG::c_integral_promotions(TYPE* t) {
    TYPE* r = t->resolved;
    if (r->kind == TYPE::tpk_enum)
        return r->en->underlying;
    if (r->kind != TYPE::tpk_int)
        return t;
    TYPE* i = basic[TYPE::ik_int];
    switch (r->ikind) {
    case TYPE::ik_uchar:
    case TYPE::ik_ushort:
    case TYPE::ik_uint:
        return r->size() == i->size() ? basic[TYPE::ik_uint] : i;
    case TYPE::ik_char:
    case TYPE::ik_wchar:
    case TYPE::ik_short:
    case TYPE::ik_int:
        return i;
    default:
        return t;
    }
}

TYPE* TYPE_PKG::c_usual_arith_conv(TYPE* a, TYPE* b) {
    a = c_integral_promotions(a);
    b = c_integral_promotions(b);
    if (a->is_pointer())
        return a;
    if (b->is_pointer())
        return b;
    if (a->is_integral() && b->is_integral()) {
        TYPE* pick = a->rank() >= b->rank() ? a : b;
        if (a->size() == b->size() && a->is_unsigned() != b->is_unsigned())
            return mk_unsigned(pick);
        return pick;
    }
    for (TYPE::FKIND k : {TYPE::fk_ldouble, TYPE::fk_double, TYPE::fk_float})
        if ((a->is_fltpt() && a->resolved->fkind == k) ||
            (b->is_fltpt() && b->resolved->fkind == k))
            return a->is_fltpt() && a->resolved->fkind == k ? a : b;
    tp_die("Bad type:  c_usual_arith_conv()");
}

TYPE* c_integral_promotions(TYPE* t) {
    if (!t->resolved->owner)
        tp_die("Unregistered type:  c_integral_promotions()");
    return t->resolved->owner->c_integral_promotions(t);
}

TYPE* c_usual_arith_conv(TYPE* a, TYPE* b) {
    if (!a->resolved->owner)
        tp_die("Unregistered type:  c_usual_arith_conv()");
    return a->resolved->owner->c_usual_arith_conv(a, b);
}

// ---- Errors, statistics, deletion ----------------------------------------

const char* error_code_name(TP_ERROR_CODE code) {
    switch (code) {
    case TP_NO_ERROR:
        return "no error";
    case TP_OBJECT_SIZE:
        return "object size not supported";
    default:
        return "unknown error";
    }
}

void TYPE_PKG::set_error(TP_ERROR_CODE code, const char* format, ...) {
    if (error_code != TP_NO_ERROR && error_callback)
        error_callback(this);
    if (error_code != TP_NO_ERROR)
        return;
    va_list args;
    va_start(args, format);
    vsnprintf(error_text, sizeof error_text, format, args);
    va_end(args);
    error_code = code;
    if (error_callback)
        error_callback(this);
}

void TYPE_PKG::print_stats(FILE* f) {
    fprintf(f, "***********TYPE PACKAGE STATISTICS************\n");
    fprintf(f, "** Types created            :  %d\n", tot_types);
    fprintf(f, "** Basic types created      :  %d\n", tot_basics);
    fprintf(f, "** of which are Complex     :  %d\n", tot_complexes);
    fprintf(f, "** Pointer types created    :  %d\n", tot_ptrs);
    fprintf(f, "** Qualifiers created       :  %d\n", tot_quals);
    fprintf(f, "** Typedef types created    :  %d\n", tot_tdefs);
    fprintf(f, "** Array types created      :  %d\n", tot_arrays);
    fprintf(f, "** of which are Vector types:  %d\n", tot_vectors);
    fprintf(f, "** Function types created   :  %d\n", tot_funcs);
    fprintf(f, "** Enumeration types created:  %d\n", tot_enums);
    fprintf(f, "** Class types created      :  %d\n", tot_structs);
    fprintf(f, "** Memory used              :  %d bytes\n", static_cast<int>(tp_bytes_in_use()));
    fprintf(f, "***********TYPE PACKAGE STATISTICS************\n");
}

void TYPE_PKG::dump_all() {
    for (TYPE::TYPE_TREE_ITERATOR it(root), end; it != end; ++it)
        (*it)->dump();
}

void TYPE_PKG::delete_type_tree() {
    if (root_type == root)
        root_type = nullptr;
    // Destructors take each type out of members; work on a copy.
    std::vector<TYPE*> all(members.begin(), members.end());
    members.clear();
    for (TYPE* t : all) {
        t->owner = nullptr;
        delete t;
    }
    root = nullptr;
    void_type = ptr_to_void = nullptr;
    for (TYPE*& b : basic)
        b = nullptr;
    vpreds.clear();
    complexes.clear();
}

void TYPE_PKG::delete_type_tree(TYPE* t, bool recursive, bool must_delete) {
    if (t->based) {
        bool empty = true;
        for (auto& entry : *t->based)
            empty &= entry.second.empty();
        if (!empty) {
            if (!recursive) {
                if (must_delete)
                    tp_die("Nonrecusive type tree delete with nonempty based list:  "
                           "TYPE_PKG::delete_type_tree");
                return;
            }
            // Each deletion takes its type out of this container, and may
            // erase the list it stood in: collect them all first.
            std::vector<TYPE*> based_types;
            for (auto& entry : *t->based)
                based_types.insert(based_types.end(), entry.second.begin(), entry.second.end());
            for (TYPE* b : based_types)
                delete_type_tree(b, true, true);
        }
    }
    if (t == root)
        tp_die("bad kind:  TYPE_PKG::delete_type_tree");
    if (t->uid) {
        TYPE* base = base_type(t);
        if (base && base->based) {
            auto list = base->based->find(t->map_name());
            if (list != base->based->end()) {
                std::erase(list->second, t);
                if (list->second.empty())
                    base->based->erase(list);
            }
        }
    }
    std::erase_if(complexes, [t](const auto& entry) { return entry.second == t; });
    std::erase_if(vpreds, [t](const auto& entry) { return entry.second == t; });
    delete t;
}
