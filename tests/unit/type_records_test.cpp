// Type records of the intermediate file: a package written and read back,
// files of each format version built byte by byte, merging of ids, and the
// fatal paths of damaged type sections.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <set>
#include <string>
#include <unistd.h>
#include <vector>

#include "file_bytes.h"
#include "ifile/ifile.h"
#include "ir/types.h"

namespace {

using testing::ExitedWithCode;

// ---- Building files by hand ----------------------------------------------

using namespace file_bytes;

// One type record's body, field by field.
struct REC {
    Bytes body;
    REC(uint32_t id, int code) {
        put_uleb(body, id);
        body.push_back(static_cast<uint8_t>(code));
    }
    REC& u(uint32_t v) { return put_uleb(body, v), *this; }
    REC& s(int32_t v) { return put_sleb(body, v), *this; }
    REC& b(int v) { return body.push_back(static_cast<uint8_t>(v)), *this; }
    REC& str(const char* t) { return put_str(body, t), *this; }
    REC& no_psn() { return b(0); }
};

// A whole file of the given version whose type section holds these records.
Bytes file_with_types(int version, const std::vector<REC>& records) {
    Bytes section;
    for (const REC& r : records) {
        section.push_back(116);
        put_uleb(section, static_cast<uint32_t>(r.body.size()));
        section.insert(section.end(), r.body.begin(), r.body.end());
    }
    section.push_back(255);

    auto header = [&](uint32_t type_offset) {
        Bytes body;
        put_str(body, "!<icode>\n");
        put_u16(body, version & 0xFFFF);
        put_u16(body, 400);
        for (uint32_t offset : {0u, 0u, type_offset, 0u, 0u})
            put_u32(body, offset);
        put_str(body, "parser");
        if (version >= -83)
            put_u32(body, 0);
        Bytes h{8};
        put_uleb(h, static_cast<uint32_t>(body.size()));
        h.insert(h.end(), body.begin(), body.end());
        return h;
    };
    Bytes file = header(0);
    uint32_t type_offset = static_cast<uint32_t>(file.size()) + 1; // behind the main stream's 255
    file = header(type_offset);
    file.push_back(255);
    file.insert(file.end(), section.begin(), section.end());
    return file;
}

// Records that close a list, and a plain int for elements to refer to.
REC list_header(uint32_t id, int list) { return REC(id, 254).b(list); }
REC list_trailer(uint32_t id, int list) { return REC(id, 255).b(list); }
REC int_record(uint32_t id) { return REC(id, 6).b(0).u(32).u(32).b(0).b(0); }

// ---- Describing a package ------------------------------------------------

std::string id(const TYPE* t) {
    return t ? std::to_string(find_type(const_cast<TYPE*>(t))->uid) : "-";
}

std::string pos(const TPSN& p) {
    return p.file
               ? std::string(p.file) + ":" + std::to_string(p.line) + ":" + std::to_string(p.column)
               : "nopos";
}

std::string text(const char* s) { return s ? s : "(null)"; }

// Everything of a type that a file carries, naming other types by id.
std::string describe(const TYPE* t) {
    std::string d = "#" + id(t) + " k" + std::to_string(t->kind) + " " + std::to_string(t->size()) +
                    "/" + std::to_string(t->align()) + (t->cpp ? " cpp" : "") +
                    (t->frozen ? " frozen" : "") + " " + pos(t->psn);
    auto add = [&d](const std::string& s) { d += " " + s; };
    switch (t->kind) {
    case TYPE::tpk_int:
        add("ik" + std::to_string(t->ikind) + (t->expl_sign ? "x" : "") + (t->boolean ? "b" : "") +
            (t->ptm_int ? "p" : ""));
        break;
    case TYPE::tpk_fltpt:
        add("fk" + std::to_string(t->fkind));
        break;
    case TYPE::tpk_fxtpt:
        add("fx" + id(t->target) + "." + std::to_string(t->binpt));
        break;
    case TYPE::tpk_complex:
    case TYPE::tpk_pointer:
    case TYPE::tpk_ref:
        add("to" + id(t->target));
        break;
    case TYPE::tpk_qual:
        add("q" + std::to_string(t->quals) + id(t->target));
        break;
    case TYPE::tpk_ptm:
        add("ptm" + id(t->target) + "::" + id(t->ptm_class));
        break;
    case TYPE::tpk_typedef:
        add(text(t->td->name) + "=" + id(t->td->type_named) + (t->td->lowered ? " low" : ""));
        break;
    case TYPE::tpk_array:
        add("of" + id(t->ar->elem) + "x" + std::to_string(t->ar->count) +
            (t->ar->complete ? " complete" : "") + (t->ar->vector ? " vector" : ""));
        break;
    case TYPE::tpk_func:
        add("ret" + id(t->fn->ret) + " cc" + std::to_string(t->fn->cc) +
            (t->fn->proto ? " proto" : "") + (t->fn->vararg ? " vararg" : ""));
        for (const fkPARAM* p = t->fn->params; p; p = p->next)
            add("(" + id(p->type) + " " + std::to_string(p->flag) + " " + std::to_string(p->word) +
                " " + text(p->name) + ")");
        break;
    case TYPE::tpk_enum:
        add(text(t->en->name) + " under" + id(t->en->underlying) +
            (t->en->complete ? " complete" : ""));
        for (const fkETOR* e = t->en->etors; e; e = e->next)
            add(text(e->name) + "=" + std::to_string(e->value) + "@" + pos(e->psn));
        break;
    case TYPE::tpk_class:
    case TYPE::tpk_struct:
    case TYPE::tpk_union: {
        const TYPE::CSU_PART* c = t->csu;
        add(text(c->name) + (c->complete ? " complete" : "") + (c->low ? " low" : "") +
            (c->is_struct_vector ? " svec" : "") + " w" + std::to_string(c->third_word) + " lc" +
            std::to_string(c->layout_check));
        for (const fkPARAM* p = c->tparams; p; p = p->next)
            add("tparam " + id(p->type));
        for (const fkBCLASS* b = c->bclasses; b; b = b->next)
            add("base " + id(b->type) + " " + std::to_string(b->offset) + " " +
                std::to_string(b->access) + " " + std::to_string(b->is_virtual));
        for (const fkADECL* a = c->adecls; a; a = a->next)
            add("adecl " + std::to_string(a->access) + " " + std::to_string(a->word));
        for (const fkFFRIEND* f = c->ffriends; f; f = f->next)
            add("ffriend " + text(f->name) + " " + id(f->type));
        for (const fkTYPE_ELEM* e = c->cfriends; e; e = e->next)
            add("cfriend " + id(e->type));
        for (const fkTYPE_ELEM* e = c->ntypes; e; e = e->next)
            add("ntype " + id(e->type));
        for (const fkMDATA* m = c->mdata; m; m = m->next)
            add("member" + std::to_string(m->number) + " " + text(m->name) + " " + id(m->type) +
                " off" + std::to_string(m->offset) + " acc" + std::to_string(m->access) + " fl" +
                std::to_string(m->flags) + (m->is_bitfield ? " bits" : "") + " w" +
                std::to_string(m->width) + (m->flag_a ? " A" : "") + (m->flag_b ? " B" : "") +
                " tag" + text(m->tag) + " " + pos(m->psn));
        for (const fkSDATA* s = c->sdata; s; s = s->next)
            add("static " + text(s->name) + " " + id(s->type) + " " + std::to_string(s->access));
        for (const fkMFUNC* m = c->mfuncs; m; m = m->next)
            add("method " + text(m->name) + " " + id(m->type) + " " + std::to_string(m->access) +
                " " + std::to_string(m->index) + " " + std::to_string(m->flags[0]) +
                std::to_string(m->flags[1]) + std::to_string(m->flags[2]) +
                std::to_string(m->flags[3]));
        break;
    }
    default:
        break;
    }
    return d;
}

// The package as text, one line per registered type in id order.
std::string describe_package(TYPE_PKG* pkg) {
    std::map<uint32_t, std::string> lines;
    for (TYPE::TYPE_TREE_ITERATOR it(pkg->root), end; it != end; ++it)
        if (!(*it)->equiv)
            lines[(*it)->uid] = describe(*it);
    std::string all;
    for (const auto& [uid, line] : lines)
        all += line + "\n";
    return all;
}

// ---- Fixture -------------------------------------------------------------

struct TypeRecords : testing::Test {
    std::string dir;
    int serial = 0;
    IF_CLIENT client;
    TYPE_PKG* saved_tp = nullptr;
    int saved_abi = 0;
    std::vector<TYPE_PKG*> packages;

    void SetUp() override {
        char pattern[] = "/tmp/type-records-XXXXXX";
        ASSERT_NE(mkdtemp(pattern), nullptr);
        dir = pattern;
        saved_tp = tp;
        saved_abi = TYPE_PKG::abi;
        TYPE_PKG::abi = 0;
    }
    void TearDown() override {
        for (TYPE_PKG* p : packages)
            delete p;
        tp = saved_tp;
        TYPE_PKG::abi = saved_abi;
        std::string command = "rm -rf '" + dir + "'";
        ASSERT_EQ(system(command.c_str()), 0);
    }

    // A package set up as the driver does before it reads a file.
    TYPE_PKG* new_package() {
        TYPE_PKG* p = tp = new TYPE_PKG;
        packages.push_back(p);
        init_types();
        return p;
    }
    void drop_package(TYPE_PKG* p) {
        std::erase(packages, p);
        delete p;
        tp = nullptr;
    }

    std::string new_path() { return dir + "/f" + std::to_string(serial++); }

    std::string write_bytes(const Bytes& b) {
        std::string path = new_path();
        write_bytes_to(path, b);
        return path;
    }

    static Bytes read_bytes(const std::string& path) { return read_bytes_from(path); }

    // Writes the package's types (all named ones and what they refer to).
    Bytes write_package(TYPE_PKG* pkg) {
        std::string path = new_path();
        FILE* f = fopen(path.c_str(), "w+b");
        I_FILE* w = I_FILE::if_create(f, pkg, "parser");
        EXPECT_EQ(w->if_close(true, false), 0);
        return read_bytes(path);
    }

    // Opens the bytes and reads the whole file into the package; the reader
    // stays open for lookups.
    I_FILE* read_into(TYPE_PKG* pkg, const Bytes& b) {
        FILE* f = fopen(write_bytes(b).c_str(), "rb");
        I_FILE* r = I_FILE::if_open(f, &client);
        EXPECT_NE(r, nullptr);
        if (!r)
            return nullptr;
        if_type_init(pkg, r);
        r->if_read_file();
        return r;
    }

    // Reads a file in a fresh package, in a process of its own that ends with
    // the reader's verdict on standard error.
    void read_and_die(const Bytes& b) {
        fflush(stdout);
        dup2(STDERR_FILENO, STDOUT_FILENO); // the record messages go to standard output
        TYPE_PKG* p = new_package();
        I_FILE* r = read_into(p, b);
        r->if_close(false, false);
        exit(0);
    }
};

// ---- Round trip of every kind of record ----------------------------------

// The reader's package gives ids in the order in which it registers types:
// classes without lists at their record, every other type in record order,
// and a type with lists when its last list ends. The package below is made in
// that order, so that its ids survive the trip and the two files are equal.
TYPE_PKG* build_every_kind(TYPE_PKG* pkg) {
    TYPE* i = pkg->mk_int(TYPE::ik_int);
    TYPE* u = pkg->mk_int(TYPE::ik_uint);
    TYPE* flt = pkg->mk_fltpt(TYPE::fk_float);
    const char* file = pkg->intern_file_name("shape.h");
    auto member = [](TYPE* s, const char* name, TYPE* t) {
        return s->add_mdata(new fkMDATA(name, t, 0, 0, 0, 0, false, false, false));
    };

    TYPE* fwd = pkg->mk_struct("Fwd");
    pkg->type_frozen(fwd);
    TYPE* empty = pkg->mk_class("Empty", true, true, 8, 8);
    empty->psn = TPSN{file, 3, 1};
    pkg->type_frozen(empty);

    TYPE* base = pkg->mk_struct("Base");
    member(base, "b", i);
    pkg->layout_csu(base);
    pkg->type_frozen(base);

    TYPE* fx = pkg->mk_fxtpt(pkg->mk_int(TYPE::ik_short), 15);
    TYPE* cf = pkg->mk_complex(flt);
    TYPE* schar = pkg->mk_int(TYPE::ik_char, true);
    TYPE* bint = pkg->mk_boolean_int(i);
    TYPE* pint = pkg->mk_ptm_int(i);
    TYPE* ints = pkg->mk_struct("Ints");
    for (int k = 0; k < TYPE_PKG::basic_count; k++)
        member(ints, ("m" + std::to_string(k)).c_str(), pkg->basic[k]);
    for (TYPE* t : {fx, cf, schar, bint, pint})
        member(ints, "x", t);
    pkg->layout_csu(ints);
    pkg->type_frozen(ints);

    TYPE* cvi = pkg->mk_qual(i, TQ_CONST | TQ_VOLATILE);
    TYPE* td = pkg->mk_typedef("myint", false, cvi);
    td->psn = TPSN{file, 10, 4};
    pkg->mk_typedef("VP", true, pkg->ptr_to_void, true);
    TYPE* pi = pkg->mk_ptr(i);
    TYPE* ri = pkg->mk_ref(i);
    TYPE* arr = pkg->mk_array(pkg->mk_int(TYPE::ik_short), false, 5);
    TYPE* inc = pkg->mk_array(i, false);
    TYPE* vec = pkg->mk_vector(flt, false, 4);

    TYPE* shape = pkg->mk_class("Shape", true, true, 0, 0);
    shape->psn = TPSN{file, 20, 7};
    TYPE* pshape = pkg->mk_ptr(shape);
    TYPE* ptm = pkg->mk_ptm(i, shape, 32, 32);
    TYPE* f1 = pkg->mk_func(i, false, true, true);
    f1->add_param(i);
    fkPARAM* named = f1->add_param(pi);
    named->flag = true;
    named->word = 3;
    named->name = static_cast<char*>(tp_alloc(4));
    memcpy(named->name, "ptr", 4);
    pkg->type_frozen(f1);
    TYPE* f0 = pkg->mk_func(pkg->void_type, false, false, false);
    pkg->type_frozen(f0);
    TYPE* pf1 = pkg->mk_ptr(f1);

    TYPE* color = pkg->mk_enum("Color", false, i, 32, 32);
    color->psn = TPSN{file, 30, 1};
    color->add_etor("RED", -1)->psn = TPSN{file, 31, 5};
    color->add_etor("BLUE", 7);
    color->set_is_complete(true);
    pkg->type_frozen(color);
    TYPE* big = pkg->mk_enum("Big", false, u, 32, 32);
    big->add_etor("HUGE", 0xF0000000ll);
    big->set_is_complete(true);
    pkg->type_frozen(big);
    TYPE* opaque = pkg->mk_enum("Opaque", true, i, 0, 0);
    pkg->type_frozen(opaque);

    TYPE* un = pkg->mk_union("U");
    member(un, "i", i);
    member(un, "f", flt);
    pkg->layout_csu(un);
    pkg->type_frozen(un);

    shape->add_tparam(i);
    shape->add_bclass(base, 0, 1, true);
    shape->add_adecl(2, 9);
    shape->add_ffriend("op", f1);
    shape->add_cfriend(fwd);
    shape->add_ntype(color);
    member(shape, "a", i);
    fkMDATA* bits = shape->add_mdata(new fkMDATA("bits", u, 1, 0, 3, 2, true, true, false));
    bits->tag = static_cast<char*>(tp_alloc(7));
    memcpy(bits->tag, "fti:2a", 7);
    bits->psn = TPSN{file, 22, 9};
    member(shape, "next", pshape);
    member(shape, "arr", arr);
    shape->add_sdata("count", i, 2);
    const bool flags[4] = {true, false, true, false};
    shape->add_mfunc("area", f1, 0, -2, flags);
    pkg->layout_csu(shape);
    shape->csu->third_word = 77;
    shape->csu->low = true;
    pkg->type_frozen(shape);

    TYPE* all = pkg->mk_struct("All");
    for (TYPE* t : {pkg->mk_qual(shape, TQ_CONST), td, ri, inc, vec, ptm, pf1, pkg->mk_ptr(f0),
                    pkg->mk_ptr(big), pkg->mk_ptr(opaque), pkg->mk_ptr(un), pkg->mk_ptr(empty)})
        member(all, "x", t);
    pkg->layout_csu(all);
    pkg->type_frozen(all);
    return pkg;
}

TEST_F(TypeRecords, EveryKindRoundTripsByteForByte) {
    TYPE_PKG* first = build_every_kind(new_package());
    std::string graph = describe_package(first);
    Bytes a = write_package(first);
    drop_package(first);

    // Every record code of the format is in the file.
    TYPE_PKG* second = new_package();
    I_FILE* r = read_into(second, a);
    ASSERT_NE(r, nullptr);
    std::set<int> codes;
    {
        long saved = r->if_tell();
        r->if_seek(r->type_offset);
        int kind;
        uint32_t size;
        while (r->i_read_header(kind, size)) {
            r->i_read_uint();
            codes.insert(static_cast<int>(r->i_read_u8()));
            r->i_read_skip(size - 2);
        }
        r->if_seek(saved);
    }
    for (int code :
         {0,  1,  2,  3,  4,  5,  6,  7,  8,  9,  50, 51, 10, 11, 12, 13, 14, 15, 16,  17,
          18, 19, 20, 21, 22, 23, 24, 25, 28, 29, 30, 31, 32, 33, 34, 35, 36, 49, 254, 255})
        EXPECT_TRUE(codes.count(code)) << "record code " << code;
    EXPECT_EQ(r->if_close(false, false), 0);

    EXPECT_EQ(describe_package(second), graph);
    Bytes b = write_package(second);
    EXPECT_EQ(b, a);
}

TEST_F(TypeRecords, OnlyReferencedTypesAreWritten) {
    TYPE_PKG* p = new_package();
    TYPE* s = p->mk_struct("Lone");
    p->type_frozen(s);
    p->mk_ptr(p->mk_int(TYPE::ik_short)); // refers to nothing named
    Bytes all = write_package(p);
    TYPE_PKG* q = new_package();
    I_FILE* r = read_into(q, all);
    EXPECT_STREQ(r->find_typeref(s->uid)->name(), "Lone");
    EXPECT_EXIT(r->find_typeref(s->uid + 1), ExitedWithCode(1), "invalid forward reference");
    EXPECT_EQ(r->find_typeref(0), nullptr); // no type, as in a symbol without a second type
    r->if_close(false, false);
}

// ---- Ids that merge ------------------------------------------------------

TEST_F(TypeRecords, EqualFunctionTypesMergeToOneId) {
    std::vector<REC> recs = {int_record(5)};
    for (uint32_t f : {200u, 201u}) {
        recs.push_back(REC(f, 20).u(5).b(0).b(1).b(0).b(0));
        recs.push_back(list_header(f, 0));
        recs.push_back(REC(f, 21).u(5).b(0).u(0).str(""));
        recs.push_back(list_trailer(f, 0));
    }
    recs.push_back(REC(202, 15).u(201).u(32).u(32));
    recs.push_back(REC(203, 14).str("FP").u(202).u(32).u(32).b(0).b(0).no_psn());

    TYPE_PKG* p = new_package();
    I_FILE* r = read_into(p, file_with_types(-73, recs));
    TYPE* f200 = r->find_typeref(200);
    TYPE* f201 = r->find_typeref(201);
    EXPECT_EQ(f200, f201);
    EXPECT_TRUE(f200->is_func());
    EXPECT_EQ(r->find_typeref(202)->target, f200);
    r->if_close(false, false);

    Bytes out = write_package(p);
    TYPE_PKG* q = new_package();
    I_FILE* again = read_into(q, out);
    int functions = 0;
    long saved = again->if_tell();
    again->if_seek(again->type_offset);
    int kind;
    uint32_t size;
    while (again->i_read_header(kind, size)) {
        again->i_read_uint();
        functions += again->i_read_u8() == 20;
        again->i_read_skip(size - 2);
    }
    again->if_seek(saved);
    EXPECT_EQ(functions, 1);
    again->if_close(false, false);
}

TEST_F(TypeRecords, ClassWithoutListsIsFrozenAtItsRecord) {
    TYPE_PKG* p = new_package();
    I_FILE* r = read_into(
        p,
        file_with_types(-73, {REC(7, 24).b(0).str("S").b(0).b(0).u(0).u(0).b(0).b(0).b(0).no_psn(),
                              REC(8, 25)
                                  .b(2)
                                  .str("C")
                                  .b(1)
                                  .b(0)
                                  .u(32)
                                  .u(32)
                                  .u(0)
                                  .b(0)
                                  .b(0)
                                  .b(0)
                                  .b(0)
                                  .b(0)
                                  .b(0)
                                  .b(1)
                                  .b(0)
                                  .b(0)
                                  .b(0)
                                  .b(1)
                                  .no_psn()}));
    TYPE* s = r->find_typeref(7);
    EXPECT_TRUE(s->frozen);
    EXPECT_NE(s->uid, 0u);
    EXPECT_FALSE(s->is_complete());
    // The long record announced its data members; they never came.
    TYPE* c = r->find_typeref(8);
    EXPECT_FALSE(c->frozen);
    EXPECT_EQ(c->uid, 0u);
    EXPECT_TRUE(c->is_class());
    EXPECT_TRUE(c->cpp);
    r->if_close(false, false);
}

// ---- Versions ------------------------------------------------------------

// One file per version, with every record whose layout depends on it. The
// pointer record at the end is read only if everything before kept in step.
std::vector<REC> versioned_records(int v) {
    std::vector<REC> recs = {int_record(101)};
    REC un(102, 24);
    un.b(1).str("U").b(1).b(0).u(32).u(32).b(1);
    if (v >= -84)
        un.b(0);
    if (v >= -81)
        un.b(1);
    recs.push_back(un.no_psn());
    recs.push_back(list_header(102, 7));
    REC m(102, 28);
    m.u(101).str("m").u(0).b(2).s(0);
    if (v >= -74)
        m.b(0x2a);
    if (v < -85)
        m.b(1).u(5).b(1);
    else
        m.u(5).b(1).b(1).b(1);
    recs.push_back(m.no_psn());
    recs.push_back(list_trailer(102, 7));

    REC st(103, 24);
    st.b(0).str("_Q2_5Outer5Inner").b(1).b(0).u(8).u(8).b(0);
    if (v >= -84)
        st.b(1);
    if (v >= -81)
        st.b(0);
    recs.push_back(st.no_psn());

    REC arr(104, 18);
    arr.u(101).u(4).u(128).u(32).b(1).b(0);
    if (v >= -76)
        arr.b(1);
    if (v == -75 || v == -74)
        arr.b(1);
    recs.push_back(arr);

    REC en(105, 22);
    en.str("E").u(101).u(32).u(32);
    if (v >= -81)
        en.b(1);
    recs.push_back(en.no_psn());
    recs.push_back(list_header(105, 1));
    recs.push_back(REC(105, 23).str("NEG").s(-5).no_psn());
    recs.push_back(list_trailer(105, 1));
    recs.push_back(REC(106, 15).u(104).u(32).u(32));
    return recs;
}

TEST_F(TypeRecords, VersionDependentFields) {
    for (int v : {-86, -84, -81, -80, -76, -75, -74, -73}) {
        SCOPED_TRACE("version " + std::to_string(v));
        TYPE_PKG* p = new_package();
        I_FILE* r = read_into(p, file_with_types(v, versioned_records(v)));
        ASSERT_NE(r, nullptr);

        TYPE* un = r->find_typeref(102);
        EXPECT_EQ(un->csu->layout_check != 0, v < -80);
        EXPECT_EQ(un->cpp, v >= -81); // the byte says so; the name "U" is not mangled
        const fkMDATA* m = un->members();
        ASSERT_NE(m, nullptr);
        EXPECT_TRUE(m->is_bitfield);
        EXPECT_EQ(m->width, 5u);
        EXPECT_EQ(m->access, 2);
        EXPECT_TRUE(m->flag_a);
        EXPECT_EQ(m->flag_b, v >= -85);
        EXPECT_EQ(text(m->tag), v >= -74 ? "fti:2a" : "(null)");
        EXPECT_TRUE(un->frozen);

        TYPE* st = r->find_typeref(103);
        // Before the C++ byte, a mangled name makes a C++ type.
        EXPECT_EQ(st->cpp, v < -81);
        EXPECT_EQ(st->csu->is_struct_vector, v >= -84);
        EXPECT_EQ(st->size(), 8u);

        TYPE* arr = r->find_typeref(104);
        EXPECT_EQ(arr->ar->vector, v >= -76);
        EXPECT_EQ(arr->ar->count, 4u);
        EXPECT_EQ(arr->size(), 128u);

        TYPE* en = r->find_typeref(105);
        EXPECT_EQ(en->cpp, v >= -81);
        ASSERT_NE(en->etors(), nullptr);
        EXPECT_EQ(en->etors()->value, -5);
        EXPECT_TRUE(en->is_complete());

        EXPECT_EQ(r->find_typeref(106)->target, arr);
        EXPECT_EQ(r->if_close(false, false), 0);
        drop_package(p);
    }
}

TEST_F(TypeRecords, UnsignedEnumeratorsAndCodesOfOtherVersions) {
    TYPE_PKG* p = new_package();
    I_FILE* r = read_into(
        p,
        file_with_types(-73, {REC(1, 7).b(0).u(32).u(32).b(0).b(0),
                              REC(2, 22).str("U").u(1).u(32).u(32).b(0).no_psn(), list_header(2, 1),
                              REC(2, 23).str("TOP").u(0xF0000000u).no_psn(), list_trailer(2, 1),
                              REC(3, 40).u(1).u(2).u(3), // a code this version does not use
                              REC(4, 12).u(64).u(64)}));
    EXPECT_EQ(r->find_typeref(2)->etors()->value, 0xF0000000ll);
    EXPECT_EXIT(r->find_typeref(3), ExitedWithCode(1), "invalid forward reference");
    EXPECT_TRUE(r->find_typeref(4)->is_ldouble());
    EXPECT_EQ(r->find_typeref(4)->align(), 64u);
    r->if_close(false, false);
}

// ---- Damage --------------------------------------------------------------

TEST_F(TypeRecords, UnknownIdIsFatal) {
    Bytes b = file_with_types(-73, {int_record(1), REC(2, 15).u(999).u(32).u(32)});
    EXPECT_EXIT(read_and_die(b), ExitedWithCode(1), "invalid forward reference");
    // A member may not name a type that comes later either.
    Bytes later = file_with_types(
        -73,
        {REC(3, 24).b(0).str("S").b(1).b(0).u(32).u(32).b(1).b(0).b(0).no_psn(), list_header(3, 7),
         REC(3, 28).u(4).str("m").u(0).b(0).s(0).b(0).u(0).b(0).b(0).b(0).no_psn(),
         list_trailer(3, 7), int_record(4)});
    EXPECT_EXIT(read_and_die(later), ExitedWithCode(1), "invalid forward reference");
    // An element for an id that was never entered.
    Bytes stray = file_with_types(-73, {list_header(9, 7)});
    EXPECT_EXIT(read_and_die(stray), ExitedWithCode(1), "invalid forward reference");
}

TEST_F(TypeRecords, CutShortRecordIsFatal) {
    const char* message = "INTERNAL ERROR: Invalid I-code record, aborting";
    // An array record without its last fields runs into the next record.
    REC cut(2, 18);
    cut.u(1).u(4).u(128);
    Bytes b = file_with_types(-73, {int_record(1), cut, int_record(3)});
    EXPECT_EXIT(read_and_die(b), ExitedWithCode(1), message);
    // The same as the section's last record: it runs into the end marker.
    Bytes last = file_with_types(-73, {int_record(1), cut});
    EXPECT_EXIT(read_and_die(last), ExitedWithCode(1), message);
    // A member record of the old layout read as a new one is one byte short.
    REC old_member(3, 28);
    old_member.u(1).str("m").u(0).b(0).s(0).b(0).u(1).b(0);
    Bytes member = file_with_types(
        -84, {int_record(1), REC(3, 24).b(0).str("S").b(1).b(0).u(32).u(32).b(1).b(0).no_psn(),
              list_header(3, 7), old_member.no_psn(), list_trailer(3, 7)});
    EXPECT_EXIT(read_and_die(member), ExitedWithCode(1), message);
    // The same bytes are a good record in a file of version -86.
    TYPE_PKG* p = new_package();
    Bytes good = file_with_types(-86, {int_record(1),
                                       REC(3, 24).b(0).str("S").b(1).b(0).u(32).u(32).b(1).no_psn(),
                                       list_header(3, 7), old_member.no_psn(), list_trailer(3, 7)});
    I_FILE* r = read_into(p, good);
    EXPECT_EQ(r->find_typeref(3)->members()->width, 1u);
    r->if_close(false, false);
}

TEST_F(TypeRecords, ListProtocolViolationsAreFatal) {
    REC long_class(4, 25);
    long_class.b(0).str("L").b(1).b(0).u(32).u(32).u(0);
    for (int l = 0; l < 9; l++)
        long_class.b(l == 6 || l == 2); // data members and access declarations
    long_class.b(0).b(0).no_psn();
    // A list the record did not announce.
    EXPECT_EXIT(read_and_die(file_with_types(-73, {int_record(1), long_class, list_header(4, 5)})),
                ExitedWithCode(1), "Unexpected type attribute");
    // An element of another list than the open one.
    EXPECT_EXIT(read_and_die(file_with_types(
                    -73, {int_record(1), long_class, list_header(4, 7), REC(4, 30).u(0).b(1)})),
                ExitedWithCode(1), "Unexpected type attribute");
    // A list inside another list of the same type.
    EXPECT_EXIT(read_and_die(file_with_types(
                    -73, {int_record(1), long_class, list_header(4, 7), list_header(4, 3)})),
                ExitedWithCode(1), "Unexpected type attribute");
    // A trailer of a list that is not open.
    EXPECT_EXIT(read_and_die(file_with_types(-73, {int_record(1), long_class, list_trailer(4, 7)})),
                ExitedWithCode(1), "Unexpected type attribute");
    // Any list of a type that has none, or has closed them all.
    EXPECT_EXIT(read_and_die(file_with_types(-73, {int_record(1), list_header(1, 7)})),
                ExitedWithCode(1), "Unexpected type attribute");
    REC en(6, 22);
    en.str("E").u(1).u(32).u(32).b(0).no_psn();
    EXPECT_EXIT(read_and_die(file_with_types(-73, {int_record(1), en, list_header(6, 1),
                                                   list_trailer(6, 1), list_header(6, 1)})),
                ExitedWithCode(1), "Unexpected type attribute");
    EXPECT_EXIT(read_and_die(file_with_types(-73, {int_record(1), int_record(1)})),
                ExitedWithCode(1), "read type twice");
}

TEST_F(TypeRecords, DuplicateListsNameTheirKind) {
    REC long_class(4, 25);
    long_class.b(0).str("L").b(1).b(0).u(32).u(32).u(0);
    for (int l = 0; l < 9; l++)
        long_class.b(l == 6 || l == 8); // data members and static members
    long_class.b(0).b(0).no_psn();
    EXPECT_EXIT(read_and_die(file_with_types(-73, {int_record(1), long_class, list_header(4, 7),
                                                   list_trailer(4, 7), list_header(4, 7)})),
                ExitedWithCode(1), "Duplicate CSU attributes");
    REC fn(5, 20);
    fn.u(1).b(0).b(1).b(0).b(0);
    EXPECT_EXIT(read_and_die(file_with_types(
                    -73, {int_record(1), fn, list_header(5, 0), list_header(5, 0)})),
                ExitedWithCode(1), "Duplicate function parameters");
    REC en(6, 22);
    en.str("E").u(1).u(32).u(32).b(0).no_psn();
    EXPECT_EXIT(read_and_die(file_with_types(
                    -73, {int_record(1), en, list_header(6, 1), list_header(6, 1)})),
                ExitedWithCode(1), "Duplicate enumerator attributes");
}

} // namespace
