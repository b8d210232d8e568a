// TYPE: construction of single types, accessors, kind predicates, printing
// and the walk over the tree of based types.
#include "ir/types.h"

#include <cstdlib>
#include <cstring>

#include "driver/diag.h"

TYPE_PKG* tp;

namespace {

size_t bytes_in_use;

char* copy_name(const char* s) {
    if (!s)
        return nullptr;
    size_t n = strlen(s) + 1;
    char* p = static_cast<char*>(tp_alloc(n));
    memcpy(p, s, n);
    return p;
}

void free_name(char* s) {
    if (s)
        tp_free(s, strlen(s) + 1);
}

template <class T> T* append(T*& head, T* e) {
    T** p = &head;
    while (*p)
        p = &(*p)->next;
    *p = e;
    return e;
}

template <class T> void free_list(T*& head) {
    while (head) {
        T* next = head->next;
        delete head;
        head = next;
    }
}

} // namespace

void* tp_alloc(size_t n) {
    void* p = calloc(1, n ? n : 1);
    if (!p)
        tp_die("Out of memory: tp_alloc()");
    bytes_in_use += n;
    return p;
}

void tp_free(void* p, size_t n) {
    if (!p)
        return;
    bytes_in_use -= n;
    free(p);
}

size_t tp_bytes_in_use() { return bytes_in_use; }

fkPARAM::fkPARAM(TYPE* t, bool f, uint32_t w, const char* n)
    : type(t), flag(f), word(w), name(copy_name(n)) {}
fkPARAM::~fkPARAM() { free_name(name); }

fkETOR::fkETOR(const char* n, long long v) : value(v), name(copy_name(n)) {}
fkETOR::~fkETOR() { free_name(name); }

fkMDATA::fkMDATA(const char* n, TYPE* t, int acc, int off, int w, unsigned char f, bool bitfield,
                 bool a, bool b)
    : type(t), name(copy_name(n)), name_len(n ? static_cast<unsigned>(strlen(n)) : 0), access(acc),
      offset(static_cast<uint32_t>(off)), width(static_cast<uint32_t>(w)), flags(f),
      is_bitfield(bitfield), flag_a(a), flag_b(b) {
    if (bitfield)
        TYPE_PKG::seen_bitfield = true;
}
fkMDATA::~fkMDATA() {
    free_name(name);
    free_name(tag);
}

fkMFUNC::~fkMFUNC() { free_name(name); }
fkSDATA::~fkSDATA() { free_name(name); }
fkFFRIEND::~fkFFRIEND() { free_name(name); }

// ---- Construction --------------------------------------------------------

void TYPE::init_common(KIND k) {
    if (k > tpk_union)
        tp_die("Bad type kind:  TYPE::TYPE(KIND)");
    kind = k;
    resolved = this;
    switch (k) {
    case tpk_typedef:
        td = new TYPEDEF_PART;
        break;
    case tpk_array:
        ar = new ARRAY_PART;
        break;
    case tpk_func:
        fn = new FUNC_PART;
        break;
    case tpk_enum:
        en = new ENUM_PART;
        break;
    case tpk_class:
    case tpk_struct:
    case tpk_union:
        csu = new CSU_PART;
        break;
    default:
        break;
    }
}

TYPE::TYPE(KIND k) { init_common(k); }

TYPE::TYPE(KIND k, TYPE* t, unsigned long long size, unsigned align) {
    if (k != tpk_pointer && k != tpk_ref && k != tpk_qual && k != tpk_fxtpt)
        tp_die("Bad type kind:  TYPE::TYPE(KIND)");
    init_common(k);
    target = t;
    size_in_bits = size;
    align_in_bits = align;
    if (k == tpk_qual)
        resolved = t->resolved;
}

TYPE::TYPE(TYPE* part) {
    init_common(tpk_complex);
    if (!part->is_signed())
        tp_die("Bad complex part_type: TYPE::TYPE(TYPE *i_part_type)");
    target = part;
    size_in_bits = 2 * part->size();
    align_in_bits = part->align();
}

TYPE::TYPE(FKIND k, unsigned long long size, unsigned align) {
    init_common(tpk_fltpt);
    fkind = k;
    size_in_bits = size;
    align_in_bits = align;
}

TYPE::TYPE(IKIND k, unsigned long long size, unsigned align, bool explicit_sign, bool bool_flag,
           bool ptm) {
    init_common(tpk_int);
    ikind = k;
    size_in_bits = size;
    align_in_bits = align;
    expl_sign = explicit_sign;
    boolean = bool_flag;
    ptm_int = ptm;
}

TYPE::TYPE(KIND k, const char* n, int size, int align) {
    if (k != tpk_typedef && k < tpk_enum)
        tp_die("Bad type kind:  TYPE::TYPE(KIND, const char *, int, int)");
    init_common(k);
    size_in_bits = static_cast<uint64_t>(size);
    align_in_bits = static_cast<uint32_t>(align);
    char* copy = copy_name(n ? n : "");
    unsigned len = static_cast<unsigned>(strlen(copy));
    if (td)
        td->name = copy, td->name_len = len;
    else if (en)
        en->name = copy, en->name_len = len;
    else
        csu->name = copy, csu->name_len = len;
}

TYPE::~TYPE() {
    if (owner)
        owner->members.erase(this);
    if (td) {
        free_name(td->name);
        delete td;
    }
    delete ar;
    if (fn) {
        free_list(fn->params);
        delete fn;
    }
    if (en) {
        free_name(en->name);
        free_list(en->etors);
        delete en;
    }
    if (csu) {
        free_name(csu->name);
        free_list(csu->bclasses);
        free_list(csu->adecls);
        free_list(csu->ffriends);
        free_list(csu->cfriends);
        free_list(csu->ntypes);
        free_list(csu->mdata);
        free_list(csu->sdata);
        free_list(csu->mfuncs);
        free_list(csu->tparams);
        delete csu;
    }
    delete based;
}

// ---- Accessors -----------------------------------------------------------

uint64_t TYPE::storage_size() const {
    if (!is_scalar())
        return size_in_bits;
    uint64_t s = 1;
    while (s < size_in_bits)
        s <<= 1;
    return s;
}

const char* TYPE::name() const {
    const TYPE* t = stqs();
    if (t->td)
        return t->td->name;
    if (t->en)
        return t->en->name;
    if (t->csu)
        return t->csu->name;
    tp_die("Bad kind:  TYPE::name");
}

TYPE* TYPE::type_pointed_to() const {
    if (resolved->kind != tpk_pointer && resolved->kind != tpk_ptm)
        tp_die("Bad kind:  TYPE::type_pointed_to");
    return resolved->target;
}

TYPE* TYPE::underlying_type() const {
    if (resolved->kind == tpk_fxtpt)
        return resolved->target;
    if (resolved->kind == tpk_enum)
        return resolved->en->underlying;
    tp_die("Bad kind:  TYPE::underlying_type");
}

TYPE* TYPE::part_type() const {
    if (resolved->kind != tpk_complex)
        tp_die("Bad kind:  TYPE::part_type()");
    return resolved->target;
}

TYPE* TYPE::elem_type() const {
    if (resolved->kind != tpk_array)
        tp_die("Bad kind:  TYPE::elem_type()");
    TYPE* elem = resolved->ar->elem;
    unsigned char q = qual_kind(false);
    if (!q)
        return elem;
    TYPE_PKG* pkg = owner ? owner : resolved->owner;
    if (!pkg)
        tp_die("orphan type:  TYPE::elem_type()");
    return pkg->mk_qual(elem, q);
}

TYPE::CSU_PART* TYPE::get_csu() const {
    if (!csu)
        tp_die("Bad kind:  TYPE::get_csu()");
    return csu;
}

TYPE* TYPE::getd(KIND k) const {
    TYPE* t = stds();
    if (t->kind != k)
        tp_die("Bad kind:  TYPE::getd()");
    return t;
}

TYPE* TYPE::getr(KIND k) const {
    if (resolved->kind != k)
        tp_die("Bad kind:  TYPE::getr()");
    return resolved;
}

TYPE::CSU_PART* TYPE::getr_csu() const {
    if (!resolved->csu)
        tp_die("Bad kind:  TYPE::getr_csu()");
    return resolved->csu;
}

TYPE* TYPE::stds() const {
    const TYPE* t = this;
    while (t->kind == tpk_typedef)
        t = t->td->type_named;
    return const_cast<TYPE*>(t);
}

TYPE* TYPE::stqs() const {
    const TYPE* t = this;
    while (t->kind == tpk_qual)
        t = t->target;
    return const_cast<TYPE*>(t);
}

TYPE* TYPE::type_qualified() const {
    TYPE* self = const_cast<TYPE*>(this);
    TYPE_PKG* pkg = owner ? owner : resolved->owner;
    return pkg ? pkg->remove_known_qual(self, 0xFF) : stqs();
}

unsigned char TYPE::qual_kind(bool through_arrays) const {
    unsigned char q = 0;
    for (const TYPE* t = this;;) {
        if (t->kind == tpk_qual) {
            q |= t->quals;
            t = t->target;
        } else if (t->kind == tpk_typedef) {
            t = t->td->type_named;
        } else if (through_arrays && t->kind == tpk_array) {
            t = t->ar->elem;
        } else {
            return q;
        }
    }
}

bool TYPE::is_complete() const {
    const TYPE* r = resolved;
    if (r->ar)
        return r->ar->complete;
    if (r->en)
        return r->en->complete;
    if (r->csu)
        return r->csu->complete;
    return r->kind != tpk_void;
}

void TYPE::check_nfrozen() const {
    if (frozen)
        tp_die("Modifying frozen type:  TYPE::check_nfrozen");
}

void TYPE::set_is_complete(bool complete) {
    check_nfrozen();
    if (ar)
        ar->complete = complete;
    else if (en)
        en->complete = complete;
    else if (csu)
        csu->complete = complete;
    else
        tp_die("Bad kind:  TYPE::set_is_complete");
}

bool TYPE::is_lowered() const {
    if (td)
        return td->lowered;
    if (csu)
        return csu->low;
    return false;
}

void TYPE::set_is_lowered(bool lowered) {
    check_nfrozen();
    if (td)
        td->lowered = lowered;
    else if (csu)
        csu->low = lowered;
}

// ---- Kind predicates -----------------------------------------------------

namespace {

// Enums by their underlying type, vectors by their element.
const TYPE* sign_carrier(const TYPE* t) {
    const TYPE* r = t->resolved;
    for (;;) {
        if (r->kind == TYPE::tpk_enum && r->en->underlying)
            r = r->en->underlying->resolved;
        else if (r->kind == TYPE::tpk_array && r->ar->vector)
            r = r->ar->elem->resolved;
        else
            return r;
    }
}

constexpr unsigned unsigned_ikinds = 2724; // 2, 5, 7, 9, 11
constexpr unsigned signed_ikinds = 1362;   // 1, 4, 6, 8, 10

} // namespace

bool TYPE::is_arithmetic() const {
    KIND k = resolved->kind;
    return (k >= tpk_int && k <= tpk_complex) || k == tpk_ptm || k == tpk_enum;
}

bool TYPE::is_scalar() const {
    KIND k = resolved->kind;
    return (k >= tpk_int && k <= tpk_ref) || k == tpk_ptm || k == tpk_enum;
}

bool TYPE::is_unsigned() const {
    const TYPE* r = sign_carrier(this);
    return r->kind == tpk_int && (unsigned_ikinds >> r->ikind & 1);
}

bool TYPE::is_signed() const {
    const TYPE* r = sign_carrier(this);
    return (r->kind == tpk_int && (signed_ikinds >> r->ikind & 1)) || r->kind == tpk_fltpt;
}

bool TYPE::is_plain_char() const {
    return resolved->kind == tpk_int &&
           (resolved->ikind == ik_char || resolved->ikind == ik_uchar) && !resolved->expl_sign;
}

bool TYPE::is_complex_of(IKIND k) const {
    return resolved->kind == tpk_complex && resolved->target->is_ikind(k);
}

bool TYPE::is_cfloat() const {
    return resolved->kind == tpk_complex && resolved->target->is_float();
}

bool TYPE::is_cdouble() const {
    return resolved->kind == tpk_complex && resolved->target->is_double();
}

int TYPE::rank() const {
    const TYPE* r = resolved;
    if (r->kind == tpk_enum && r->en->underlying)
        r = r->en->underlying->resolved;
    if (r->kind != tpk_int || r->ikind > ik_ullong)
        tp_die("Bad type: TYPE::rank()");
    static const int ranks[] = {0, 1, 1, 1, 2, 2, 3, 3, 4, 4, 5, 5};
    return ranks[r->ikind];
}

int TYPE::ekind() const {
    const TYPE* r = resolved;
    switch (r->kind) {
    case tpk_int:
        if (r->ikind > ik_ullong)
            tp_die("Bad kind: TYPE::ekind()");
        return r->ikind;
    case tpk_fltpt:
        if (r->fkind > fk_ldouble)
            tp_die("Bad fkind: TYPE::ekind()");
        return 12 + r->fkind;
    case tpk_fxtpt:
        return 15;
    case tpk_complex:
        return 16;
    case tpk_pointer:
        return 17;
    case tpk_ref:
        return 18;
    case tpk_array:
        return 19;
    case tpk_ptm:
        return 20;
    case tpk_func:
        return 21;
    case tpk_enum:
        return 22;
    case tpk_class:
        return 23;
    case tpk_struct:
        return 24;
    case tpk_union:
        return 25;
    case tpk_void:
        return 26;
    default:
        tp_die("unhandled type kind: TYPE::ekind()");
    }
}

bool TYPE::has_flex_array_member(bool nested) const {
    const TYPE* r = resolved;
    if (!r->csu || r->cpp || !r->csu->mdata)
        return false;
    const fkMDATA* last = r->csu->mdata;
    while (last->next)
        last = last->next;
    const TYPE* m = last->type->resolved;
    if (m->kind == tpk_array)
        return m->ar->count == 0 && m->size_in_bits == 0;
    return nested && m->csu && m->has_flex_array_member(true);
}

TYPE* TYPE::normalized() {
    if (!normal) {
        TYPE_PKG* pkg = owner ? owner : tp;
        normal = pkg ? pkg->normalized_type_uncached(this) : this;
    }
    return normal;
}

const std::string& TYPE::map_name() {
    if (!map_name_cache.empty())
        return map_name_cache;
    const TYPE* t = stqs();
    if (t->td || t->en || t->csu) {
        if (type_is_tagless(t)) {
            const char* group = t->td                  ? "typedef"
                                : t->en                ? "enum"
                                : t->kind == tpk_union ? "union"
                                                       : "struct";
            map_name_cache = std::string("$$fake") + group;
        } else {
            map_name_cache = demangle_type_name(t->name(), true, nullptr);
            // A name that is all prefix stays as it is.
            if (map_name_cache.empty())
                map_name_cache = t->name();
        }
    }
    if (map_name_cache.empty())
        map_name_cache = "__builtin_type";
    return map_name_cache;
}

// ---- Element lists -------------------------------------------------------

fkPARAM* TYPE::add_param(TYPE* t) {
    check_nfrozen();
    if (!fn)
        tp_die("Bad kind:  TYPE::add_param");
    return append(fn->params, new fkPARAM(t));
}

fkETOR* TYPE::add_etor(const char* n, long long value) {
    check_nfrozen();
    if (!en)
        tp_die("Bad kind:  TYPE::add_etor");
    return append(en->etors, new fkETOR(n, value));
}

fkMDATA* TYPE::add_mdata(fkMDATA* m) {
    check_nfrozen();
    return append(get_csu()->mdata, m);
}

fkBCLASS* TYPE::add_bclass(TYPE* t, int offset, unsigned char access, bool is_virtual) {
    check_nfrozen();
    fkBCLASS* e = new fkBCLASS;
    e->type = t;
    e->offset = offset;
    e->access = access;
    e->is_virtual = is_virtual;
    return append(get_csu()->bclasses, e);
}

fkADECL* TYPE::add_adecl(unsigned char access, uint32_t word) {
    check_nfrozen();
    fkADECL* e = new fkADECL;
    e->access = access;
    e->word = word;
    return append(get_csu()->adecls, e);
}

fkFFRIEND* TYPE::add_ffriend(const char* n, TYPE* t) {
    check_nfrozen();
    fkFFRIEND* e = new fkFFRIEND;
    e->name = copy_name(n);
    e->type = t;
    return append(get_csu()->ffriends, e);
}

fkTYPE_ELEM* TYPE::add_cfriend(TYPE* t) {
    check_nfrozen();
    fkTYPE_ELEM* e = new fkTYPE_ELEM;
    e->type = t;
    return append(get_csu()->cfriends, e);
}

fkTYPE_ELEM* TYPE::add_ntype(TYPE* t) {
    check_nfrozen();
    fkTYPE_ELEM* e = new fkTYPE_ELEM;
    e->type = t;
    return append(get_csu()->ntypes, e);
}

fkSDATA* TYPE::add_sdata(const char* n, TYPE* t, unsigned char access) {
    check_nfrozen();
    fkSDATA* e = new fkSDATA;
    e->name = copy_name(n);
    e->type = t;
    e->access = access;
    return append(get_csu()->sdata, e);
}

fkMFUNC* TYPE::add_mfunc(const char* n, TYPE* t, unsigned char access, int index, const bool f[4]) {
    check_nfrozen();
    fkMFUNC* e = new fkMFUNC;
    e->name = copy_name(n);
    e->type = t;
    e->access = access;
    e->index = index;
    for (int i = 0; i < 4; i++)
        e->flags[i] = f[i];
    return append(get_csu()->mfuncs, e);
}

fkPARAM* TYPE::add_tparam(TYPE* t) {
    check_nfrozen();
    return append(get_csu()->tparams, new fkPARAM(t));
}

fkMDATA* find_mdataref(TYPE* t, unsigned n) {
    if (!t || !t->resolved->csu)
        return nullptr;
    for (fkMDATA* m = t->resolved->csu->mdata; m; m = m->next)
        if (m->number == n)
            return m;
    return nullptr;
}

bool type_is_function(const TYPE* t) { return t && t->is_func(); }

bool type_is_tagless(const TYPE* t) {
    t = t->stqs();
    if (!t->td && !t->en && !t->csu)
        return false;
    const char* n = t->name();
    return !n || !*n || strncmp(n, "$$fake", 6) == 0;
}

// ---- Printing ------------------------------------------------------------

namespace {

const char* const int_words[] = {
    "bool ", "char ",     "unsigned char ", "wchar_t ",       "short ",     "unsigned short ",
    "int ",  "unsigned ", "long ",          "unsigned long ", "long long ", "unsigned long long "};
const char* const float_words[] = {"float ", "double ", "long double "};

std::string qual_words(unsigned char q) {
    static const struct {
        unsigned char bit;
        const char* word;
    } words[] = {{TQ_CONST, "const "},   {TQ_VOLATILE, "volatile "}, {TQ_PACKED, "packed "},
                 {TQ_NEAR, "near "},     {TQ_FAR, "far "},           {TQ_RESTRICT, "restrict "},
                 {TQ_IOPORT, "ioport "}, {TQ_ONCHIP, "onchip "}};
    std::string s;
    for (const auto& w : words)
        if (q & w.bit)
            s += w.word;
    return s;
}

// Builds the declarator of t around `decl` (the part standing for the
// declared name): words before it go to pre, the rest around decl.
void print_decl(const TYPE* t, std::string& pre, std::string& decl, bool expand, bool markup,
                int depth);

std::string print_plain(const TYPE* t, int depth) {
    std::string pre, decl;
    print_decl(t, pre, decl, false, false, depth + 1);
    std::string s = pre + decl;
    while (!s.empty() && s.back() == ' ')
        s.pop_back();
    return s;
}

bool needs_parens(const TYPE* t) {
    const TYPE* s = t->stqs();
    return s->kind == TYPE::tpk_array || s->kind == TYPE::tpk_func;
}

void print_decl(const TYPE* t, std::string& pre, std::string& decl, bool expand, bool markup,
                int depth) {
    char buf[64];
    switch (t->kind) {
    case TYPE::tpk_void:
        pre = "void " + pre;
        break;
    case TYPE::tpk_int:
        if (t->ikind > TYPE::ik_ullong)
            tp_die("Bad kind: TYPE::print()");
        pre = std::string(int_words[t->ikind]) +
              (t->expl_sign && (t->ikind == TYPE::ik_char || t->ikind == TYPE::ik_uchar)
                   ? "[ExplSign] "
                   : "") +
              pre;
        break;
    case TYPE::tpk_fltpt:
        if (t->fkind > TYPE::fk_ldouble)
            tp_die("Bad fkind: TYPE::print()");
        pre = float_words[t->fkind] + pre;
        break;
    case TYPE::tpk_fxtpt:
        snprintf(buf, sizeof buf, " [FxtPt:%d] ", t->binpt);
        pre = print_plain(t->target, depth) + buf + pre;
        break;
    case TYPE::tpk_complex: {
        const TYPE* p = t->target->resolved;
        const char* w = p->is_schar()    ? "cchar "
                        : p->is_short()  ? "cshort "
                        : p->is_int()    ? "cint "
                        : p->is_long()   ? "clong "
                        : p->is_llong()  ? "cllong "
                        : p->is_float()  ? "cfloat "
                        : p->is_double() ? "cdouble "
                                         : nullptr;
        if (!w)
            tp_die("Bad parttype: TYPE::print()");
        pre = w + pre;
        break;
    }
    case TYPE::tpk_pointer:
    case TYPE::tpk_ref:
    case TYPE::tpk_ptm: {
        std::string mark;
        if (t->kind == TYPE::tpk_pointer) {
            mark = "*";
        } else if (t->kind == TYPE::tpk_ref) {
            snprintf(buf, sizeof buf, "&#x%x;", 38);
            mark = markup ? buf : "&";
        } else {
            const TYPE* c = t->ptm_class ? t->ptm_class->stqs() : nullptr;
            mark = std::string(c && (c->td || c->en || c->csu) ? c->name() : "") + "::*";
        }
        decl = mark + decl;
        if (needs_parens(t->target))
            decl = "(" + decl + ")";
        print_decl(t->target, pre, decl, false, markup, depth + 1);
        break;
    }
    case TYPE::tpk_qual: {
        const TYPE* s = t->target->stds();
        if (s->kind == TYPE::tpk_pointer || s->kind == TYPE::tpk_ref || s->kind == TYPE::tpk_ptm) {
            decl = qual_words(t->quals) + decl;
            print_decl(t->target, pre, decl, expand, markup, depth + 1);
        } else {
            // The words go in front of the base type's own.
            print_decl(t->target, pre, decl, expand, markup, depth + 1);
            pre = qual_words(t->quals) + pre;
        }
        break;
    }
    case TYPE::tpk_typedef:
        if (expand)
            pre = print_plain(t->td->type_named, depth) + " " + t->td->name + " " + pre;
        else
            pre = std::string(t->td->name) + " " + pre;
        break;
    case TYPE::tpk_array:
        if (t->ar->vector)
            snprintf(buf, sizeof buf, "<[%u]>", t->ar->count);
        else if (t->ar->complete)
            snprintf(buf, sizeof buf, "[%u]", t->ar->count);
        else
            snprintf(buf, sizeof buf, "[]");
        decl += buf;
        print_decl(t->ar->elem, pre, decl, false, markup, depth + 1);
        break;
    case TYPE::tpk_func: {
        std::string args = "(";
        for (const fkPARAM* p = t->fn->params; p; p = p->next) {
            if (p != t->fn->params)
                args += ", ";
            args += depth > 8 ? "..." : print_plain(p->type, depth);
        }
        if (t->fn->vararg)
            args += t->fn->params ? ", ..." : "...";
        args += ")";
        decl += args;
        print_decl(t->fn->ret, pre, decl, false, markup, depth + 1);
        break;
    }
    case TYPE::tpk_enum: {
        std::string s = std::string("enum ") + t->en->name + " ";
        if (expand)
            for (const fkETOR* e = t->en->etors; e; e = e->next) {
                snprintf(buf, sizeof buf, " = %lld", e->value);
                s += std::string("\n    ") + e->name + buf;
            }
        pre = s + pre;
        break;
    }
    case TYPE::tpk_class:
    case TYPE::tpk_struct:
    case TYPE::tpk_union: {
        const char* word = t->kind == TYPE::tpk_class    ? "class "
                           : t->kind == TYPE::tpk_struct ? "struct "
                                                         : "union ";
        std::string s = std::string(word) + t->csu->name + " ";
        if (expand)
            for (const fkMDATA* m = t->csu->mdata; m; m = m->next) {
                snprintf(buf, sizeof buf, "%-16s", m->name ? m->name : "");
                s += std::string("\n   ") + buf;
                snprintf(buf, sizeof buf, "off:%3d ", static_cast<int>(m->offset));
                s += buf;
                if (m->is_bitfield) {
                    snprintf(buf, sizeof buf, "bitfld(%2d) ", static_cast<int>(m->width));
                    s += buf;
                }
                s += print_plain(m->type, depth);
            }
        pre = s + pre;
        break;
    }
    default:
        tp_die("bad type kind: TYPE::print()");
    }
}

FILE* dump_stream() { return stdout; }

} // namespace

std::string TYPE::print(bool expand, bool markup) const {
    std::string pre, decl;
    print_decl(this, pre, decl, expand, markup, 0);
    while (!pre.empty() && pre.back() == ' ' && decl.empty())
        pre.pop_back();
    std::string s = pre + decl;
    while (!s.empty() && s.back() == ' ')
        s.pop_back();
    return s;
}

const char* TYPE::printstr(bool expand) const {
    static std::string text;
    text = print(expand, false);
    return text.c_str();
}

void TYPE::println() const { fprintf(dump_stream(), "%s\n", print(false, false).c_str()); }

void TYPE::dump() const {
    FILE* f = dump_stream();
    fprintf(f, "% 8d:%s\n", static_cast<int>(uid), print(false, false).c_str());
    TYPE_PKG* pkg = owner;
    const TYPE* base = pkg && kind != tpk_void ? pkg->base_type(this) : nullptr;
    fprintf(f, "   merg=%d refd=%d writ=%d cpp=%d complete=%d equiv=%d base=%d ", merg, refd, writ,
            cpp, is_complete(), equiv ? static_cast<int>(equiv->uid) : 0,
            base ? static_cast<int>(base->uid) : 0);
    switch (kind) {
    case tpk_int:
        fprintf(f, "kind=%d expl_sign=%d ", ikind, expl_sign);
        break;
    case tpk_fltpt:
        fprintf(f, "kind=%d ", fkind);
        break;
    case tpk_fxtpt:
        fprintf(f, "underlying_type=%d binpt=%d ", static_cast<int>(target->uid), binpt);
        break;
    case tpk_complex:
        fprintf(f, "part_type=%d", static_cast<int>(target->uid));
        break;
    case tpk_pointer:
        fprintf(f, "type_pointed_to=%d ", static_cast<int>(target->uid));
        break;
    case tpk_ref:
        fprintf(f, "type_refd=%d ", static_cast<int>(target->uid));
        break;
    case tpk_qual:
        fprintf(f, "qual_kind=%d type_qualified=%d ", quals, static_cast<int>(target->uid));
        break;
    case tpk_typedef:
        fprintf(f, "type_named=%d lowered=%d ", static_cast<int>(td->type_named->uid), td->lowered);
        break;
    case tpk_array:
        fprintf(f, "elem_type=%d ", static_cast<int>(ar->elem->uid));
        break;
    case tpk_ptm:
        fprintf(f, "ptm_class=%d ", ptm_class ? static_cast<int>(ptm_class->uid) : 0);
        break;
    case tpk_func: {
        fprintf(f, "return_type=%d vararg=%d proto=%d ", static_cast<int>(fn->ret->uid), fn->vararg,
                fn->proto);
        int n = 0;
        for (const fkPARAM* p = fn->params; p; p = p->next)
            fprintf(f, "arg%d=%d ", ++n, static_cast<int>(p->type->uid));
        break;
    }
    case tpk_class:
    case tpk_struct:
    case tpk_union:
        fprintf(f, "is_struct_vector=%d low=%d ", csu->is_struct_vector, csu->low);
        break;
    default:
        break;
    }
    fprintf(f, "tu=%d psn=%s:%lu\n", tu, psn.file ? psn.file : "NO_PSN_FILE",
            static_cast<unsigned long>(psn.line));
}

void TYPE::dump_based_list() const {
    FILE* f = dump_stream();
    if (!based)
        return;
    for (const auto& [name, list] : *based) {
        fprintf(f, "  %s:", name.c_str());
        for (const TYPE* t : list)
            fprintf(f, " %d", static_cast<int>(t->uid));
        fprintf(f, "\n");
    }
}

// ---- The tree of based types ---------------------------------------------

TYPE::TYPE_TREE_ITERATOR::TYPE_TREE_ITERATOR(TYPE* root) : current(root) {}

TYPE::TYPE_TREE_ITERATOR& TYPE::TYPE_TREE_ITERATOR::operator++() {
    auto settle = [](POSITION& p) {
        while (p.map_pos != p.type->based->end() && p.list_pos >= p.map_pos->second.size()) {
            ++p.map_pos;
            p.list_pos = 0;
        }
        return p.map_pos != p.type->based->end();
    };
    if (current && current->based) {
        POSITION p{current, current->based->begin(), 0};
        if (settle(p)) {
            stack.push_back(p);
            current = p.map_pos->second[p.list_pos];
            return *this;
        }
    }
    while (!stack.empty()) {
        POSITION& p = stack.back();
        ++p.list_pos;
        if (settle(p)) {
            current = p.map_pos->second[p.list_pos];
            return *this;
        }
        stack.pop_back();
    }
    current = nullptr;
    return *this;
}

namespace {

void mark_refed_recur(TYPE* t);

void mark_one(TYPE* t) {
    if (!t)
        return;
    t = find_type(t);
    if (t->refd)
        return;
    t->refd = true;
    mark_refed_recur(t);
}

void mark_refed_recur(TYPE* t) {
    mark_one(t->target);
    mark_one(t->ptm_class);
    if (t->td)
        mark_one(t->td->type_named);
    if (t->ar)
        mark_one(t->ar->elem);
    if (t->fn) {
        mark_one(t->fn->ret);
        for (fkPARAM* p = t->fn->params; p; p = p->next)
            mark_one(p->type);
    }
    if (t->en)
        mark_one(t->en->underlying);
    if (TYPE::CSU_PART* c = t->csu) {
        for (fkMDATA* m = c->mdata; m; m = m->next)
            mark_one(m->type);
        for (fkSDATA* s = c->sdata; s; s = s->next)
            mark_one(s->type);
        for (fkMFUNC* f = c->mfuncs; f; f = f->next)
            mark_one(f->type);
        for (fkBCLASS* b = c->bclasses; b; b = b->next)
            mark_one(b->type);
        for (fkFFRIEND* f = c->ffriends; f; f = f->next)
            mark_one(f->type);
        for (fkTYPE_ELEM* e = c->cfriends; e; e = e->next)
            mark_one(e->type);
        for (fkTYPE_ELEM* e = c->ntypes; e; e = e->next)
            mark_one(e->type);
        for (fkPARAM* p = c->tparams; p; p = p->next)
            mark_one(p->type);
    }
}

} // namespace

void TYPE::mark_refed_types(TYPE* root) {
    for (TYPE_TREE_ITERATOR it(root), end; it != end; ++it)
        if ((*it)->refd)
            mark_refed_recur(*it);
}

void TYPE::mark_named_types(TYPE* root, bool write_all) {
    if (!write_all)
        return;
    for (TYPE_TREE_ITERATOR it(root), end; it != end; ++it) {
        TYPE* t = *it;
        if (t->td || t->en || t->csu)
            mark_one(t);
    }
}
