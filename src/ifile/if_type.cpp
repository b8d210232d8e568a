// Type records (kind 116): the reader that turns each record of the type
// section into a TYPE of the package, and the writer of the output's type
// section. docs/intermediate-file.md has the field map of every record.
#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <set>
#include <string>
#include <vector>

#include "driver/diag.h"
#include "ifile/if_impl.h"
#include "ifile/ifile.h"
#include "ir/symtab.h"
#include "ir/types.h"

using namespace ifile_impl;

namespace {

// Record codes.
enum : int {
    TC_FLOAT = 10, // 10 to 12: float, double, long double
    TC_FIXED = 13,
    TC_TYPEDEF = 14,
    TC_ADDR = 15,
    TC_REF = 16,
    TC_QUAL = 17,
    TC_ARRAY = 18,
    TC_PTM = 19,
    TC_FUNC = 20,
    TC_PARAM = 21,
    TC_ENUM = 22,
    TC_ETOR = 23,
    TC_CSU_SHORT = 24,
    TC_CSU_LONG = 25,
    TC_MDATA = 28,
    TC_BCLASS = 29,
    TC_ADECL = 30,
    TC_FFRIEND = 31,
    TC_CFRIEND = 32,
    TC_NTYPE = 33,
    TC_SDATA = 34,
    TC_MFUNC = 35,
    TC_COMPLEX = 36,
    TC_NONE = 48, // what the writer gives a type it cannot encode
    TC_VOID = 49,
    TC_LLONG = 50, // 50, 51: long long, unsigned long long
    TC_LIST_HEADER = 254,
    TC_LIST_TRAILER = 255,
};

// List numbers.
enum : int {
    L_PARAMS = 0,
    L_ETORS = 1,
    L_BCLASSES = 2,
    L_ADECLS = 3,
    L_FFRIENDS = 4,
    L_CFRIENDS = 5,
    L_NTYPES = 6,
    L_MDATA = 7,
    L_SDATA = 8,
    L_MFUNCS = 9,
    list_count = 10,
};

// The class lists in the order of the nine bools of the long class record.
constexpr int class_lists[] = {L_PARAMS, L_BCLASSES, L_ADECLS, L_FFRIENDS, L_CFRIENDS,
                               L_NTYPES, L_MDATA,    L_SDATA,  L_MFUNCS};
// The order in which the writer puts out the lists of a class.
constexpr int class_list_order[] = {L_BCLASSES, L_ADECLS, L_FFRIENDS, L_CFRIENDS, L_NTYPES,
                                    L_MDATA,    L_SDATA,  L_MFUNCS,   L_PARAMS};

// Version tests of the format.
constexpr int old_member_flags_below = -85;
constexpr int struct_vector_from = -84;
constexpr int cpp_byte_from = -81;
constexpr int union_layout_check_below = -80;
constexpr int vector_flag_from = -76;
constexpr int member_tag_from = -74;

// The strings of a record are read into one shared buffer: keep a copy.
std::string take(const char* s) { return s ? s : ""; }

TPSN to_tpsn(TYPE_PKG* pkg, PSN* psn) {
    TPSN out;
    if (psn) {
        out.file = pkg->intern_file_name(psn->file ? psn->file : "NO_FILE");
        out.line = psn->line;
        out.column = psn->column;
        free(psn);
    }
    return out;
}

const char* or_null(const std::string& s) { return s.empty() ? nullptr : s.c_str(); }

} // namespace

// ---- Reading -------------------------------------------------------------

void if_type_init(TYPE_PKG* pkg, I_FILE* file) {
    if (file)
        file->types = pkg;
}

TYPE_PKG* I_FILE::type_package() {
    if (!types)
        types = tp;
    OPTASSERT(types);
    return types;
}

void I_FILE::if_read_type_defs() {
    if (type_offset == 0)
        return;
    long saved = if_tell();
    if_seek(type_offset);
    int kind;
    uint32_t size;
    while (i_read_header(kind, size)) {
        if (kind == IF_TYPE)
            if_read_type(size);
        i_end_record();
    }
    if_seek(saved);
}

// A record cut short would let its last field run on into the next record;
// nothing of it may reach the package before this check.
void I_FILE::i_check_type_record() {
    if (ftell(stream) > record_end)
        invalid_record();
}

TYPE* I_FILE::find_typeref(uint32_t id) {
    if (id == 0)
        return nullptr;
    auto it = type_map.find(id);
    if (it == type_map.end() || !it->second.type)
        tp_die("invalid forward reference");
    return it->second.type;
}

TYPE* I_FILE::i_read_typeref() { return find_typeref(i_read_uint()); }

TYPE_INFO& I_FILE::type_info_for(uint32_t id) {
    auto it = type_map.find(id);
    if (it == type_map.end() || !it->second.type)
        tp_die("invalid forward reference");
    return it->second;
}

// A type with lists is frozen when its last list ends; one without at once.
void I_FILE::enter_type(uint32_t id, TYPE* t, uint16_t lists) {
    auto it = type_map.find(id);
    if (it != type_map.end() && it->second.type && it->second.type->is_complete())
        tp_die("read type twice");
    TYPE_INFO& info = type_map[id];
    info = TYPE_INFO{};
    info.announced = lists;
    for (int l = 0; l < list_count; l++)
        info.open += lists >> l & 1;
    if (!info.open && !t->frozen)
        type_package()->type_frozen(t);
    info.type = t;
}

bool I_FILE::if_read_type_is_cpp(const char* name) {
    if (version >= cpp_byte_from)
        return i_read_bool();
    bool mangled;
    demangle_type_name(name, false, &mangled);
    return mangled;
}

void I_FILE::if_read_type(uint32_t) {
    uint32_t id = i_read_uint();
    int code = static_cast<int>(i_read_u8());
    if (code <= 9 || code == TC_LLONG || code == TC_LLONG + 1)
        return if_read_integral_type(id, code);
    switch (code) {
    case TC_FLOAT:
    case TC_FLOAT + 1:
    case TC_FLOAT + 2:
        return if_read_float_type(id, code);
    case TC_FIXED:
        return if_read_fixedpoint_type(id);
    case TC_TYPEDEF:
        return if_read_typedef(id);
    case TC_ADDR:
        return if_read_addr_type(id);
    case TC_REF:
        return if_read_ref_type(id);
    case TC_QUAL:
        return if_read_qual_type(id);
    case TC_ARRAY:
        return if_read_array_type(id);
    case TC_PTM:
        return if_read_ptm_type(id);
    case TC_FUNC:
        return if_read_func_type(id);
    case TC_PARAM:
        return if_read_param_elem(id);
    case TC_ENUM:
        return if_read_enum_type(id);
    case TC_ETOR:
        return if_read_etor_elem(id);
    case TC_CSU_SHORT:
        return if_read_csu_short(id, false);
    case TC_CSU_LONG:
        return if_read_csu_short(id, true);
    case TC_MDATA:
        return if_read_mdata_elem(id);
    case TC_BCLASS:
        return if_read_bclass_elem(id);
    case TC_ADECL:
        return if_read_adecl_elem(id);
    case TC_FFRIEND:
        return if_read_ffriend_elem(id);
    case TC_CFRIEND:
        return if_read_cfriend_elem(id);
    case TC_NTYPE:
        return if_read_ntype_elem(id);
    case TC_SDATA:
        return if_read_sdata_elem(id);
    case TC_MFUNC:
        return if_read_mfunc_elem(id);
    case TC_COMPLEX:
        return if_read_complex_type(id);
    case TC_VOID:
        return if_read_void_type(id);
    case TC_LIST_HEADER:
        return if_read_list_header(id);
    case TC_LIST_TRAILER:
        return if_read_list_trailer(id);
    default:
        return; // a code this format version does not use
    }
}

void I_FILE::if_read_void_type(uint32_t id) {
    i_check_type_record();
    enter_type(id, type_package()->mk_void(), 0);
}

void I_FILE::if_read_integral_type(uint32_t id, int code) {
    bool explicit_sign = i_read_bool();
    uint32_t size = i_read_uint();
    uint32_t align = i_read_uint();
    bool boolean = i_read_bool();
    bool ptm = i_read_bool();
    i_check_type_record();
    int ikind = code >= TC_LLONG ? code - TC_LLONG + TYPE::ik_llong : code;
    enter_type(id,
               type_package()->mk_int(static_cast<TYPE::IKIND>(ikind), explicit_sign, size, align,
                                      boolean, ptm),
               0);
}

void I_FILE::if_read_float_type(uint32_t id, int code) {
    uint32_t size = i_read_uint();
    uint32_t align = i_read_uint();
    i_check_type_record();
    enter_type(id, type_package()->mk_fltpt(static_cast<TYPE::FKIND>(code - TC_FLOAT), size, align),
               0);
}

void I_FILE::if_read_fixedpoint_type(uint32_t id) {
    int binpt = i_read_s8();
    i_read_u8(); // reserved
    uint32_t underlying = i_read_uint();
    uint32_t size = i_read_uint();
    uint32_t align = i_read_uint();
    i_check_type_record();
    TYPE* u = find_typeref(underlying);
    if (!u)
        tp_die("invalid forward reference");
    enter_type(id, type_package()->mk_fxtpt(u, binpt, size, align), 0);
}

void I_FILE::if_read_complex_type(uint32_t id) {
    uint32_t part = i_read_uint();
    uint32_t size = i_read_uint();
    uint32_t align = i_read_uint();
    i_check_type_record();
    TYPE* p = find_typeref(part);
    if (!p)
        tp_die("invalid forward reference");
    enter_type(id, type_package()->mk_complex(p, size, align), 0);
}

void I_FILE::if_read_typedef(uint32_t id) {
    std::string name = take(i_read_string(0));
    uint32_t base = i_read_uint();
    uint32_t size = i_read_uint();
    uint32_t align = i_read_uint();
    bool lowered = i_read_bool();
    bool cpp = i_read_bool();
    PSN* psn = i_read_psn();
    i_check_type_record();
    TYPE_PKG* pkg = type_package();
    TYPE* target = find_typeref(base);
    if (!target)
        tp_die("invalid forward reference");
    TYPE* t = pkg->mk_typedef(name.c_str(), cpp, target, lowered, size, align);
    TPSN pos = to_tpsn(pkg, psn);
    if (!t->psn.file)
        t->psn = pos;
    enter_type(id, t, 0);
}

void I_FILE::if_read_addr_type(uint32_t id) {
    uint32_t target = i_read_uint();
    uint32_t size = i_read_uint();
    uint32_t align = i_read_uint();
    i_check_type_record();
    TYPE* t = find_typeref(target);
    if (!t)
        tp_die("invalid forward reference");
    enter_type(id, type_package()->mk_ptr(t, size, align), 0);
}

void I_FILE::if_read_ref_type(uint32_t id) {
    uint32_t target = i_read_uint();
    uint32_t size = i_read_uint();
    uint32_t align = i_read_uint();
    i_check_type_record();
    TYPE* t = find_typeref(target);
    if (!t)
        tp_die("invalid forward reference");
    enter_type(id, type_package()->mk_ref(t, size, align), 0);
}

void I_FILE::if_read_qual_type(uint32_t id) {
    uint32_t base = i_read_uint();
    uint32_t quals = i_read_uint();
    uint32_t size = i_read_uint();
    uint32_t align = i_read_uint();
    i_check_type_record();
    TYPE* t = find_typeref(base);
    if (!t)
        tp_die("invalid forward reference");
    enter_type(id, type_package()->mk_qual(t, static_cast<unsigned char>(quals), size, align), 0);
}

void I_FILE::if_read_array_type(uint32_t id) {
    uint32_t elem = i_read_uint();
    uint32_t count = i_read_uint();
    uint32_t size = i_read_uint();
    uint32_t align = i_read_uint();
    bool complete = i_read_bool();
    bool cpp = i_read_bool();
    bool vector = version >= vector_flag_from && i_read_bool();
    if (version == -75 || version == -74)
        i_read_bool(); // a flag of those two versions only, without meaning here
    i_check_type_record();
    TYPE* e = find_typeref(elem);
    if (!e)
        tp_die("invalid forward reference");
    TYPE_PKG* pkg = type_package();
    enter_type(id,
               vector ? pkg->mk_vector(e, cpp, count, size, align)
                      : pkg->mk_array(e, cpp, count, size, align, complete),
               0);
}

void I_FILE::if_read_ptm_type(uint32_t id) {
    uint32_t pointed = i_read_uint();
    uint32_t cls = i_read_uint();
    uint32_t size = i_read_uint();
    uint32_t align = i_read_uint();
    i_check_type_record();
    TYPE* p = find_typeref(pointed);
    TYPE* c = find_typeref(cls);
    if (!p)
        tp_die("invalid forward reference");
    enter_type(id, type_package()->mk_ptm(p, c, size, align), 0);
}

void I_FILE::if_read_func_type(uint32_t id) {
    uint32_t result = i_read_uint();
    bool cpp = i_read_bool();
    bool proto = i_read_bool();
    unsigned cc = i_read_u8();
    bool vararg = i_read_bool();
    i_check_type_record();
    TYPE* ret = find_typeref(result);
    if (!ret)
        tp_die("invalid forward reference");
    TYPE* f = type_package()->mk_func(ret, cpp, proto, vararg, static_cast<TYPE::CC_KIND>(cc));
    enter_type(id, f, 1 << L_PARAMS);
}

void I_FILE::if_read_enum_type(uint32_t id) {
    std::string name = take(i_read_string(0));
    uint32_t underlying = i_read_uint();
    uint32_t size = i_read_uint();
    uint32_t align = i_read_uint();
    bool cpp = if_read_type_is_cpp(name.c_str());
    PSN* psn = i_read_psn();
    i_check_type_record();
    TYPE_PKG* pkg = type_package();
    TYPE* u = find_typeref(underlying);
    if (!u)
        tp_die("invalid forward reference");
    TYPE* t = pkg->mk_enum(name.c_str(), cpp, u, size, align);
    t->psn = to_tpsn(pkg, psn);
    // An enum of size 0 is declared only; it has no enumerators to come.
    enter_type(id, t, size ? 1 << L_ETORS : 0);
}

void I_FILE::if_read_csu_short(uint32_t id, bool long_form) {
    unsigned class_kind = i_read_u8();
    std::string name = take(i_read_string(0));
    bool complete = i_read_bool();
    bool lowered = i_read_bool();
    uint32_t size = i_read_uint();
    uint32_t align = i_read_uint();
    uint32_t third_word = 0;
    uint16_t lists = 0;
    if (long_form) {
        third_word = i_read_uint();
        for (int l : class_lists)
            if (i_read_bool())
                lists |= 1 << l;
    } else if (i_read_bool()) {
        lists = 1 << L_MDATA;
    }
    bool struct_vector = version >= struct_vector_from && i_read_bool();
    bool cpp = if_read_type_is_cpp(name.c_str());
    PSN* psn = i_read_psn();
    i_check_type_record();

    TYPE_PKG* pkg = type_package();
    TYPE* t = class_kind == 1   ? pkg->mk_union(name.c_str(), cpp, complete, size, align)
              : class_kind == 2 ? pkg->mk_class(name.c_str(), cpp, complete, size, align)
                                : pkg->mk_struct(name.c_str(), cpp, complete, size, align);
    t->csu->low = lowered;
    t->csu->is_struct_vector = struct_vector;
    t->csu->third_word = third_word;
    if (t->kind == TYPE::tpk_union && version < union_layout_check_below)
        t->csu->layout_check = 1;
    t->psn = to_tpsn(pkg, psn);
    enter_type(id, t, lists);
}

void I_FILE::if_read_list_header(uint32_t id) {
    int list = i_read_s8();
    i_check_type_record();
    TYPE_INFO& info = type_info_for(id);
    if (!info.open || list < 0 || list >= list_count || !(info.announced >> list & 1))
        tp_die("Unexpected type attribute");
    if (info.seen >> list & 1) {
        if (info.type->kind == TYPE::tpk_func)
            tp_die("Duplicate function parameters");
        if (info.type->kind == TYPE::tpk_enum)
            tp_die("Duplicate enumerator attributes");
        tp_die("Duplicate CSU attributes");
    }
    if (info.current >= 0)
        tp_die("Unexpected type attribute"); // lists of one type do not nest
    info.seen |= 1 << list;
    info.current = static_cast<signed char>(list);
}

void I_FILE::if_read_list_trailer(uint32_t id) {
    int list = i_read_s8();
    i_check_type_record();
    TYPE_INFO& info = type_info_for(id);
    if (info.current != list)
        tp_die("Unexpected type attribute");
    info.current = -1;
    if (--info.open)
        return;
    TYPE* t = info.type;
    if (t->kind == TYPE::tpk_enum)
        t->set_is_complete(true);
    // An equal function type met earlier takes this id's place: the merge.
    type_package()->type_frozen(t);
    info.type = t;
}

// The type whose list an element record of this id belongs to.
TYPE* I_FILE::i_elem_owner(uint32_t id, int list) {
    TYPE_INFO& info = type_info_for(id);
    if (info.current != list)
        tp_die("Unexpected type attribute");
    return info.type;
}

void I_FILE::if_read_param_elem(uint32_t id) {
    uint32_t type = i_read_uint();
    bool flag = i_read_bool();
    uint32_t word = i_read_uint();
    std::string name = take(i_read_string(0));
    i_check_type_record();
    TYPE* owner = i_elem_owner(id, L_PARAMS);
    fkPARAM* p = owner->kind == TYPE::tpk_func ? owner->add_param(find_typeref(type))
                                               : owner->add_tparam(find_typeref(type));
    p->flag = flag;
    p->word = word;
    if (!name.empty()) {
        p->name = static_cast<char*>(tp_alloc(name.size() + 1));
        memcpy(p->name, name.c_str(), name.size() + 1);
    }
}

void I_FILE::if_read_etor_elem(uint32_t id) {
    std::string name = take(i_read_string(0));
    // The value's encoding depends on the enum, so the owner is looked up first.
    TYPE* owner = i_elem_owner(id, L_ETORS);
    bool is_signed = owner->en->underlying->is_signed();
    long long value =
        is_signed ? static_cast<long long>(i_read_sint()) : static_cast<long long>(i_read_uint());
    PSN* psn = i_read_psn();
    i_check_type_record();
    owner->add_etor(name.c_str(), value)->psn = to_tpsn(type_package(), psn);
}

void I_FILE::if_read_mdata_elem(uint32_t id) {
    uint32_t type = i_read_uint();
    std::string name = take(i_read_string(0));
    uint32_t offset = i_read_uint();
    int access = static_cast<int>(i_read_u8());
    int32_t flags = i_read_sint();
    unsigned tag = version >= member_tag_from ? i_read_u8() : 0;
    uint32_t width;
    bool bitfield, flag_a, flag_b = false;
    if (version < old_member_flags_below) {
        bitfield = i_read_bool();
        width = i_read_uint();
        flag_a = i_read_bool();
    } else {
        width = i_read_uint();
        bitfield = i_read_bool();
        flag_a = i_read_bool();
        flag_b = i_read_bool();
    }
    PSN* psn = i_read_psn();
    i_check_type_record();
    TYPE* owner = i_elem_owner(id, L_MDATA);
    fkMDATA* m = new fkMDATA(or_null(name), find_typeref(type), access, static_cast<int>(offset),
                             static_cast<int>(width), static_cast<unsigned char>(flags), bitfield,
                             flag_a, flag_b);
    if (tag) {
        char text[16];
        snprintf(text, sizeof text, "fti:%x", tag);
        m->tag = static_cast<char*>(tp_alloc(strlen(text) + 1));
        memcpy(m->tag, text, strlen(text) + 1);
    }
    m->psn = to_tpsn(type_package(), psn);
    owner->add_mdata(m);
}

void I_FILE::if_read_bclass_elem(uint32_t id) {
    uint32_t type = i_read_uint();
    int32_t offset = i_read_sint();
    unsigned access = i_read_u8();
    bool is_virtual = i_read_bool();
    i_check_type_record();
    TYPE* owner = i_elem_owner(id, L_BCLASSES);
    owner->add_bclass(find_typeref(type), offset, static_cast<unsigned char>(access), is_virtual);
}

void I_FILE::if_read_adecl_elem(uint32_t id) {
    uint32_t word = i_read_uint();
    unsigned access = i_read_u8();
    i_check_type_record();
    i_elem_owner(id, L_ADECLS)->add_adecl(static_cast<unsigned char>(access), word);
}

void I_FILE::if_read_ffriend_elem(uint32_t id) {
    std::string name = take(i_read_string(0));
    uint32_t type = i_read_uint();
    i_check_type_record();
    TYPE* owner = i_elem_owner(id, L_FFRIENDS);
    owner->add_ffriend(name.c_str(), find_typeref(type));
}

void I_FILE::if_read_cfriend_elem(uint32_t id) {
    uint32_t type = i_read_uint();
    i_check_type_record();
    TYPE* owner = i_elem_owner(id, L_CFRIENDS);
    owner->add_cfriend(find_typeref(type));
}

void I_FILE::if_read_ntype_elem(uint32_t id) {
    uint32_t type = i_read_uint();
    i_check_type_record();
    TYPE* owner = i_elem_owner(id, L_NTYPES);
    owner->add_ntype(find_typeref(type));
}

void I_FILE::if_read_sdata_elem(uint32_t id) {
    std::string name = take(i_read_string(0));
    uint32_t type = i_read_uint();
    unsigned access = i_read_u8();
    i_check_type_record();
    TYPE* owner = i_elem_owner(id, L_SDATA);
    owner->add_sdata(name.c_str(), find_typeref(type), static_cast<unsigned char>(access));
}

void I_FILE::if_read_mfunc_elem(uint32_t id) {
    std::string name = take(i_read_string(0));
    uint32_t type = i_read_uint();
    unsigned access = i_read_u8();
    int32_t index = i_read_sint();
    bool flags[4];
    for (bool& f : flags)
        f = i_read_bool();
    i_check_type_record();
    TYPE* owner = i_elem_owner(id, L_MFUNCS);
    owner->add_mfunc(name.c_str(), find_typeref(type), static_cast<unsigned char>(access), index,
                     flags);
}

void I_FILE::if_merge_type_defs() {
    for (auto& [id, info] : type_map)
        if (info.type && info.type->uid)
            find_equivalent_type(info.type);
}

// ---- Writing -------------------------------------------------------------

void I_FILE::if_reference_type(TYPE* t) {
    t = find_type(t);
    if (t)
        t->refd = true;
}

void I_FILE::i_write_typeref(TYPE* t) {
    t = find_type(t);
    if (!t) {
        i_write_uint(0);
        return;
    }
    // A type that was never frozen has no id yet; freezing registers it.
    if (!t->uid)
        (t->owner ? t->owner : type_package())->type_frozen(t);
    t->refd = true;
    i_write_uint(t->uid);
}

void I_FILE::if_mark_global_types() {
    for (unsigned i = 0; i < global_count; i++)
        if (SYMTAB* sym = globals[i]) {
            if_reference_type(sym->type);
            if_reference_type(sym->stype);
        }
}

namespace {

bool has_list(const TYPE* t, int list) {
    const TYPE::CSU_PART* c = t->csu;
    switch (list) {
    case L_PARAMS:
        return t->fn || c->tparams;
    case L_ETORS:
        return t->en != nullptr;
    case L_BCLASSES:
        return c->bclasses;
    case L_ADECLS:
        return c->adecls;
    case L_FFRIENDS:
        return c->ffriends;
    case L_CFRIENDS:
        return c->cfriends;
    case L_NTYPES:
        return c->ntypes;
    case L_MDATA:
        return c->mdata;
    case L_SDATA:
        return c->sdata;
    case L_MFUNCS:
        return c->mfuncs;
    default:
        return false;
    }
}

bool csu_has_lists(const TYPE* t) {
    for (int l : class_lists)
        if (has_list(t, l))
            return true;
    return false;
}

// The writer of one type section. Class records come first, so that any
// record may name a class; every other record names only ids written before
// it. Types go in the order of their ids, which is the order in which a
// reader's package registers them again, so a file read and written back
// keeps its ids.
struct TYPE_WRITER {
    I_FILE& f;
    std::set<TYPE*> csu_records;

    void start(const TYPE* t, int code) {
        f.i_write_uint(t->uid);
        f.i_write_i8(code);
    }
    void finish() { f.i_flush(IF_TYPE); }
    void ref(TYPE* t) { f.i_write_typeref(t); }
    void psn(const TPSN& p) {
        if (!p.file) {
            f.i_write_psn(nullptr);
            return;
        }
        PSN pos{p.file, p.line, p.column};
        f.i_write_psn(&pos);
    }
    void write_list_header(const TYPE* t, int list) {
        start(t, TC_LIST_HEADER);
        f.i_write_i8(list);
        finish();
    }
    void write_list_trailer(const TYPE* t, int list) {
        start(t, TC_LIST_TRAILER);
        f.i_write_i8(list);
        finish();
    }

    static int scalar_code(const TYPE* t) {
        int k = t->ekind();
        if (k <= 9)
            return k;
        if (k <= 11)
            return k - TYPE::ik_llong + TC_LLONG;
        if (k <= 14)
            return k - 12 + TC_FLOAT;
        if (k == 16)
            return TC_COMPLEX;
        if (k == 26)
            return TC_VOID;
        return TC_NONE;
    }

    void write_void_type(TYPE* t) {
        start(t, TC_VOID);
        finish();
    }
    void write_integral_type(TYPE* t) {
        start(t, scalar_code(t));
        f.i_write_bool(t->expl_sign);
        f.i_write_uint(static_cast<uint32_t>(t->size()));
        f.i_write_uint(t->align());
        f.i_write_bool(t->boolean);
        f.i_write_bool(t->ptm_int);
        finish();
    }
    void write_float_type(TYPE* t) {
        start(t, scalar_code(t));
        f.i_write_uint(static_cast<uint32_t>(t->size()));
        f.i_write_uint(t->align());
        finish();
    }
    void write_fixedpoint_type(TYPE* t) {
        start(t, TC_FIXED);
        f.i_write_i8(static_cast<signed char>(t->binpt));
        f.i_write_i8(0);
        ref(t->target);
        f.i_write_uint(static_cast<uint32_t>(t->size()));
        f.i_write_uint(t->align());
        finish();
    }
    void write_complex_type(TYPE* t) {
        start(t, TC_COMPLEX);
        ref(t->target);
        f.i_write_uint(static_cast<uint32_t>(t->size()));
        f.i_write_uint(t->align());
        finish();
    }
    void write_typedef(TYPE* t) {
        start(t, TC_TYPEDEF);
        f.i_write_string(t->td->name, 0);
        ref(t->td->type_named);
        f.i_write_uint(static_cast<uint32_t>(t->size()));
        f.i_write_uint(t->align());
        f.i_write_bool(t->td->lowered);
        f.i_write_bool(t->cpp);
        psn(t->psn);
        finish();
    }
    void write_pointer(TYPE* t, int code) {
        start(t, code);
        ref(t->target);
        f.i_write_uint(static_cast<uint32_t>(t->size()));
        f.i_write_uint(t->align());
        finish();
    }
    void write_qual_type(TYPE* t) {
        start(t, TC_QUAL);
        ref(t->target);
        f.i_write_uint(t->quals);
        f.i_write_uint(static_cast<uint32_t>(t->size()));
        f.i_write_uint(t->align());
        finish();
    }
    void write_array_type(TYPE* t) {
        start(t, TC_ARRAY);
        ref(t->ar->elem);
        f.i_write_uint(t->ar->count);
        f.i_write_uint(static_cast<uint32_t>(t->size()));
        f.i_write_uint(t->align());
        f.i_write_bool(t->ar->complete);
        f.i_write_bool(t->cpp);
        f.i_write_bool(t->ar->vector);
        finish();
    }
    void write_ptm_type(TYPE* t) {
        start(t, TC_PTM);
        ref(t->target);
        ref(t->ptm_class);
        f.i_write_uint(static_cast<uint32_t>(t->size()));
        f.i_write_uint(t->align());
        finish();
    }
    void write_listof_params(TYPE* owner, const fkPARAM* p) {
        write_list_header(owner, L_PARAMS);
        for (; p; p = p->next) {
            start(owner, TC_PARAM);
            ref(p->type);
            f.i_write_bool(p->flag);
            f.i_write_uint(p->word);
            f.i_write_string(p->name ? p->name : "", 0);
            finish();
        }
        write_list_trailer(owner, L_PARAMS);
    }
    void write_func_type(TYPE* t) {
        start(t, TC_FUNC);
        ref(t->fn->ret);
        f.i_write_bool(t->cpp);
        f.i_write_bool(t->fn->proto);
        f.i_write_i8(t->fn->cc);
        f.i_write_bool(t->fn->vararg);
        finish();
        write_listof_params(t, t->fn->params);
    }
    void write_listof_etors(TYPE* t) {
        write_list_header(t, L_ETORS);
        bool is_signed = t->en->underlying->is_signed();
        for (const fkETOR* e = t->en->etors; e; e = e->next) {
            start(t, TC_ETOR);
            f.i_write_string(e->name, 0);
            if (is_signed)
                f.i_write_sint(static_cast<int32_t>(e->value));
            else
                f.i_write_uint(static_cast<uint32_t>(e->value));
            psn(e->psn);
            finish();
        }
        write_list_trailer(t, L_ETORS);
    }
    void write_enum_type(TYPE* t) {
        start(t, TC_ENUM);
        f.i_write_string(t->en->name, 0);
        ref(t->en->underlying);
        f.i_write_uint(static_cast<uint32_t>(t->size()));
        f.i_write_uint(t->align());
        f.i_write_bool(t->cpp);
        psn(t->psn);
        finish();
        if (t->size())
            write_listof_etors(t);
    }

    static int class_kind(const TYPE* t) {
        return t->kind == TYPE::tpk_union ? 1 : t->kind == TYPE::tpk_class ? 2 : 0;
    }
    void write_csu_short(TYPE* t) {
        start(t, TC_CSU_SHORT);
        f.i_write_i8(class_kind(t));
        f.i_write_string(t->csu->name, 0);
        f.i_write_bool(t->csu->complete);
        f.i_write_bool(t->csu->low);
        f.i_write_uint(static_cast<uint32_t>(t->size()));
        f.i_write_uint(t->align());
        f.i_write_bool(false);
        f.i_write_bool(t->csu->is_struct_vector);
        f.i_write_bool(t->cpp);
        psn(t->psn);
        finish();
    }
    void write_csu_long(TYPE* t) {
        start(t, TC_CSU_LONG);
        f.i_write_i8(class_kind(t));
        f.i_write_string(t->csu->name, 0);
        f.i_write_bool(t->csu->complete);
        f.i_write_bool(t->csu->low);
        f.i_write_uint(static_cast<uint32_t>(t->size()));
        f.i_write_uint(t->align());
        f.i_write_uint(t->csu->third_word);
        for (int l : class_lists)
            f.i_write_bool(has_list(t, l));
        f.i_write_bool(t->csu->is_struct_vector);
        f.i_write_bool(t->cpp);
        psn(t->psn);
        finish();
    }
    void write_csu_type(TYPE* t) {
        if (!csu_records.insert(t).second)
            return;
        if (csu_has_lists(t))
            write_csu_long(t);
        else
            write_csu_short(t);
    }

    // The types a list names must be known before its header.
    void write_list_types(TYPE* t, int list) {
        const TYPE::CSU_PART* c = t->csu;
        switch (list) {
        case L_PARAMS:
            for (const fkPARAM* p = c->tparams; p; p = p->next)
                write_type_deep(p->type);
            break;
        case L_BCLASSES:
            for (const fkBCLASS* b = c->bclasses; b; b = b->next)
                write_type_deep(b->type);
            break;
        case L_FFRIENDS:
            for (const fkFFRIEND* e = c->ffriends; e; e = e->next)
                write_type_deep(e->type);
            break;
        case L_CFRIENDS:
            for (const fkTYPE_ELEM* e = c->cfriends; e; e = e->next)
                write_type_deep(e->type);
            break;
        case L_NTYPES:
            for (const fkTYPE_ELEM* e = c->ntypes; e; e = e->next)
                write_type_deep(e->type);
            break;
        case L_MDATA:
            for (const fkMDATA* m = c->mdata; m; m = m->next)
                write_type_deep(m->type);
            break;
        case L_SDATA:
            for (const fkSDATA* s = c->sdata; s; s = s->next)
                write_type_deep(s->type);
            break;
        case L_MFUNCS:
            for (const fkMFUNC* m = c->mfuncs; m; m = m->next)
                write_type_deep(m->type);
            break;
        default:
            break;
        }
    }

    void write_csu_list(TYPE* t, int list) {
        const TYPE::CSU_PART* c = t->csu;
        if (list == L_PARAMS)
            return write_listof_params(t, c->tparams);
        write_list_header(t, list);
        switch (list) {
        case L_BCLASSES:
            for (const fkBCLASS* b = c->bclasses; b; b = b->next) {
                start(t, TC_BCLASS);
                ref(b->type);
                f.i_write_sint(b->offset);
                f.i_write_i8(b->access);
                f.i_write_bool(b->is_virtual);
                finish();
            }
            break;
        case L_ADECLS:
            for (const fkADECL* a = c->adecls; a; a = a->next) {
                start(t, TC_ADECL);
                f.i_write_uint(a->word);
                f.i_write_i8(a->access);
                finish();
            }
            break;
        case L_FFRIENDS:
            for (const fkFFRIEND* e = c->ffriends; e; e = e->next) {
                start(t, TC_FFRIEND);
                f.i_write_string(e->name, 0);
                ref(e->type);
                finish();
            }
            break;
        case L_CFRIENDS:
        case L_NTYPES:
            for (const fkTYPE_ELEM* e = list == L_CFRIENDS ? c->cfriends : c->ntypes; e;
                 e = e->next) {
                start(t, list == L_CFRIENDS ? TC_CFRIEND : TC_NTYPE);
                ref(e->type);
                finish();
            }
            break;
        case L_MDATA:
            for (const fkMDATA* m = c->mdata; m; m = m->next) {
                start(t, TC_MDATA);
                ref(m->type);
                f.i_write_string(m->name, 0);
                f.i_write_uint(m->offset);
                f.i_write_i8(m->access);
                f.i_write_sint(m->flags);
                f.i_write_i8(m->tag ? static_cast<int>(strtoul(m->tag + 4, nullptr, 16)) : 0);
                f.i_write_uint(m->width);
                f.i_write_bool(m->is_bitfield);
                f.i_write_bool(m->flag_a);
                f.i_write_bool(m->flag_b);
                psn(m->psn);
                finish();
            }
            break;
        case L_SDATA:
            for (const fkSDATA* s = c->sdata; s; s = s->next) {
                start(t, TC_SDATA);
                f.i_write_string(s->name, 0);
                ref(s->type);
                f.i_write_i8(s->access);
                finish();
            }
            break;
        case L_MFUNCS:
            for (const fkMFUNC* m = c->mfuncs; m; m = m->next) {
                start(t, TC_MFUNC);
                f.i_write_string(m->name, 0);
                ref(m->type);
                f.i_write_i8(m->access);
                f.i_write_sint(m->index);
                for (bool flag : m->flags)
                    f.i_write_bool(flag);
                finish();
            }
            break;
        default:
            break;
        }
        write_list_trailer(t, list);
    }

    void write_csu_type_lists(TYPE* t) {
        if (t->writ)
            return;
        t->writ = true;
        for (int l : class_list_order)
            if (has_list(t, l)) {
                write_list_types(t, l);
                write_csu_list(t, l);
            }
    }

    // Writes t after everything it names. Classes only need their record:
    // their lists come at their own turn.
    void write_type_deep(TYPE* t) {
        t = find_type(t);
        if (!t)
            return;
        // A type that was never frozen has no id yet; freezing registers it.
        if (!t->uid)
            (t->owner ? t->owner : tp)->type_frozen(t);
        if (t->csu) {
            write_csu_type(t);
            return;
        }
        if (t->writ)
            return;
        for (TYPE* dep : {t->target, t->ptm_class})
            write_type_deep(dep);
        if (t->td)
            write_type_deep(t->td->type_named);
        if (t->ar)
            write_type_deep(t->ar->elem);
        if (t->en)
            write_type_deep(t->en->underlying);
        if (t->fn) {
            write_type_deep(t->fn->ret);
            for (const fkPARAM* p = t->fn->params; p; p = p->next)
                write_type_deep(p->type);
        }
        write_type_tree(t);
    }

    void write_type_tree(TYPE* t) {
        t->writ = true;
        switch (t->kind) {
        case TYPE::tpk_void:
            return write_void_type(t);
        case TYPE::tpk_int:
            return write_integral_type(t);
        case TYPE::tpk_fltpt:
            return write_float_type(t);
        case TYPE::tpk_fxtpt:
            return write_fixedpoint_type(t);
        case TYPE::tpk_complex:
            return write_complex_type(t);
        case TYPE::tpk_pointer:
            return write_pointer(t, TC_ADDR);
        case TYPE::tpk_ref:
            return write_pointer(t, TC_REF);
        case TYPE::tpk_qual:
            return write_qual_type(t);
        case TYPE::tpk_typedef:
            return write_typedef(t);
        case TYPE::tpk_array:
            return write_array_type(t);
        case TYPE::tpk_ptm:
            return write_ptm_type(t);
        case TYPE::tpk_func:
            return write_func_type(t);
        case TYPE::tpk_enum:
            return write_enum_type(t);
        default:
            return;
        }
    }
};

} // namespace

void I_FILE::if_write_all_types(bool write_all) {
    TYPE_PKG* pkg = types;
    // A section with no record is left out: its offset stays 0.
    if (!pkg || !pkg->root)
        return;
    std::vector<TYPE*> all;
    for (TYPE::TYPE_TREE_ITERATOR it(pkg->root), end; it != end; ++it) {
        (*it)->writ = false;
        all.push_back(*it);
    }
    if_mark_global_types();
    TYPE::mark_named_types(pkg->root, write_all);
    TYPE::mark_refed_types(pkg->root);

    std::vector<TYPE*> marked;
    for (TYPE* t : all)
        if (t->refd && !t->equiv && t != pkg->root)
            marked.push_back(t);
    std::sort(marked.begin(), marked.end(), [](TYPE* a, TYPE* b) { return a->uid < b->uid; });

    long start = if_tell();
    TYPE_WRITER w{*this, {}};
    for (TYPE* t : marked)
        if (t->csu)
            w.write_csu_type(t);
    for (TYPE* t : marked) {
        if (t->csu)
            w.write_csu_type_lists(t);
        else
            w.write_type_deep(t);
    }
    if (if_tell() == start)
        return;
    type_offset = static_cast<uint32_t>(start);
    i_write_eof();
}
