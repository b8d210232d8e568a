// The type package: interning, qualifiers, normalization, comparison and
// merging, the ARM sizes and layouts, the type utilities and the overflow
// helpers of integer arithmetic.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <set>
#include <string>

#include "driver/options.h"
#include "ir/types.h"

namespace {

using testing::ExitedWithCode;

// Every test gets a fresh package as tp, on the default options, and leaves
// the process-wide settings as it found them.
struct TypeTest : testing::Test {
    TYPE_PKG* pkg = nullptr;
    TYPE_PKG* saved_tp = nullptr;
    int saved_abi = 0;
    unsigned saved_wchar = 32;
    int saved_kr = 0;
    int saved_old_const = 0;

    void SetUp() override {
        saved_tp = tp;
        saved_abi = TYPE_PKG::abi;
        saved_wchar = TYPE_PKG::wchar_t_size_in_bits;
        saved_kr = kr_flag;
        saved_old_const = old_const_pointer_behavior;
        TYPE_PKG::abi = 0;
        TYPE_PKG::wchar_t_size_in_bits = 32;
        kr_flag = 0;
        pkg = tp = new TYPE_PKG;
        init_types();
    }
    void TearDown() override {
        delete pkg;
        tp = saved_tp;
        TYPE_PKG::abi = saved_abi;
        TYPE_PKG::wchar_t_size_in_bits = saved_wchar;
        kr_flag = saved_kr;
        old_const_pointer_behavior = saved_old_const;
    }

    // Switches the options and re-derives the basic types, as the driver does
    // once the options are known.
    void use_options(int abi, unsigned wchar_bits) {
        TYPE_PKG::abi = abi;
        TYPE_PKG::wchar_t_size_in_bits = wchar_bits;
        init_types();
    }

    TYPE* I(TYPE::IKIND k) { return pkg->mk_int(k); }
    TYPE* F(TYPE::FKIND k) { return pkg->mk_fltpt(k); }
    TYPE* INT() { return I(TYPE::ik_int); }

    fkMDATA* member(TYPE* s, const char* name, TYPE* t) {
        return s->add_mdata(new fkMDATA(name, t, 0, 0, 0, 0, false, false, false));
    }
    fkMDATA* bitfield(TYPE* s, const char* name, TYPE* t, int width) {
        return s->add_mdata(new fkMDATA(name, t, 0, 0, width, 0, true, false, false));
    }
    // A struct (or union) laid out by the package and frozen.
    TYPE* laid_out(TYPE* s, bool packed = false) {
        pkg->layout_csu(s, packed);
        pkg->type_frozen(s);
        return s;
    }
    TYPE* func(TYPE* ret, std::initializer_list<TYPE*> params, bool proto = true,
               bool vararg = false) {
        TYPE* f = pkg->mk_func(ret, false, proto, vararg);
        for (TYPE* p : params)
            f->add_param(p);
        pkg->type_frozen(f);
        return f;
    }
};

// ---- Sizes and alignments of the ARM target ------------------------------

using TypeSizes = TypeTest;

TEST_F(TypeSizes, EveryBasicTypeForEachAbi) {
    struct ROW {
        int index;
        unsigned size, align0, align1;
    };
    const ROW rows[] = {
        {TYPE::ik_bool, 8, 8, 8},           {TYPE::ik_char, 8, 8, 8},
        {TYPE::ik_uchar, 8, 8, 8},          {TYPE::ik_wchar, 32, 32, 32},
        {TYPE::ik_short, 16, 16, 16},       {TYPE::ik_ushort, 16, 16, 16},
        {TYPE::ik_int, 32, 32, 32},         {TYPE::ik_uint, 32, 32, 32},
        {TYPE::ik_long, 32, 32, 32},        {TYPE::ik_ulong, 32, 32, 32},
        {TYPE::ik_llong, 64, 32, 64},       {TYPE::ik_ullong, 64, 32, 64},
        {TYPE_PKG::bt_float, 32, 32, 32},   {TYPE_PKG::bt_double, 64, 32, 64},
        {TYPE_PKG::bt_ldouble, 64, 32, 64},
    };
    for (int abi : {0, 1}) {
        use_options(abi, 32);
        for (const ROW& r : rows) {
            SCOPED_TRACE("abi " + std::to_string(abi) + " basic " + std::to_string(r.index));
            EXPECT_EQ(pkg->basic[r.index]->size(), r.size);
            EXPECT_EQ(pkg->basic[r.index]->align(), abi ? r.align1 : r.align0);
        }
        EXPECT_EQ(pkg->ptr_to_void->size(), 32u);
        EXPECT_EQ(pkg->ptr_to_void->align(), 32u);
        EXPECT_EQ(pkg->mk_ptr(pkg->basic[TYPE::ik_llong])->size(), 32u);
        EXPECT_EQ(max_scalar_alignment, abi ? 64u : 32u);
    }
    use_options(0, 16);
    EXPECT_EQ(I(TYPE::ik_wchar)->size(), 16u);
    EXPECT_EQ(I(TYPE::ik_wchar)->align(), 16u);
}

TEST_F(TypeSizes, StructsFollowTheArmRules) {
    TYPE* c = I(TYPE::ik_char);
    for (int abi : {0, 1}) {
        use_options(abi, 32);
        SCOPED_TRACE("abi " + std::to_string(abi));
        TYPE* s = pkg->mk_struct("CD");
        member(s, "c", c);
        fkMDATA* d = member(s, "d", F(TYPE::fk_double));
        laid_out(s);
        EXPECT_EQ(d->offset, abi ? 64u : 32u);
        EXPECT_EQ(s->size(), abi ? 128u : 96u);
        EXPECT_EQ(s->align(), abi ? 64u : 32u);

        TYPE* l = pkg->mk_struct("SLL");
        member(l, "s", I(TYPE::ik_short));
        fkMDATA* ll = member(l, "ll", I(TYPE::ik_llong));
        laid_out(l);
        EXPECT_EQ(ll->offset, abi ? 64u : 32u);
        EXPECT_EQ(l->size(), abi ? 128u : 96u);
    }
    use_options(0, 32);

    TYPE* s = pkg->mk_struct("CSI");
    member(s, "c", c);
    fkMDATA* sh = member(s, "s", I(TYPE::ik_short));
    fkMDATA* i = member(s, "i", INT());
    member(s, "c2", c);
    laid_out(s);
    EXPECT_EQ(sh->offset, 16u);
    EXPECT_EQ(i->offset, 32u);
    EXPECT_EQ(s->size(), 96u); // tail padding to the int alignment
    EXPECT_EQ(s->align(), 32u);
    EXPECT_TRUE(s->is_complete());

    TYPE* empty = laid_out(pkg->mk_struct("E"));
    EXPECT_EQ(empty->size(), 0u);
    EXPECT_EQ(empty->align(), 8u);

    TYPE* p = pkg->mk_struct("P");
    member(p, "c", c);
    fkMDATA* pi = member(p, "i", INT());
    laid_out(p, true);
    EXPECT_EQ(pi->offset, 8u);
    EXPECT_EQ(p->size(), 40u);
    EXPECT_EQ(p->align(), 8u);

    TYPE* u = pkg->mk_union("U");
    member(u, "c", c);
    fkMDATA* ud = member(u, "d", F(TYPE::fk_double));
    member(u, "a", pkg->mk_array(c, false, 9));
    laid_out(u);
    EXPECT_EQ(ud->offset, 0u);
    EXPECT_EQ(u->size(), 96u); // 72 bits rounded to the 32-bit alignment of abi 0
    EXPECT_EQ(u->align(), 32u);
}

TEST_F(TypeSizes, BitFieldsUseContainersOfTheirDeclaredType) {
    TYPE* c = I(TYPE::ik_char);
    TYPE* s = pkg->mk_struct("B1");
    member(s, "c", c);
    fkMDATA* x = bitfield(s, "x", INT(), 4);
    laid_out(s);
    EXPECT_EQ(x->offset, 8u); // fits in the int container at 0
    EXPECT_EQ(s->size(), 32u);
    EXPECT_EQ(s->align(), 32u);

    TYPE* t = pkg->mk_struct("B2");
    bitfield(t, "a", INT(), 30);
    fkMDATA* b = bitfield(t, "b", INT(), 4);
    laid_out(t);
    EXPECT_EQ(b->offset, 32u); // would straddle: next container
    EXPECT_EQ(t->size(), 64u);

    TYPE* v = pkg->mk_struct("B3");
    bitfield(v, "a", c, 7);
    fkMDATA* vb = bitfield(v, "b", c, 2);
    laid_out(v);
    EXPECT_EQ(vb->offset, 8u);
    EXPECT_EQ(v->size(), 16u);
    EXPECT_EQ(v->align(), 8u);

    TYPE* z = pkg->mk_struct("B4");
    member(z, "a", c);
    bitfield(z, nullptr, INT(), 0);
    fkMDATA* zb = member(z, "b", c);
    laid_out(z);
    EXPECT_EQ(zb->offset, 32u); // a zero-width field closes the int container

    // An unnamed bit field does not raise the alignment of its struct.
    TYPE* w = pkg->mk_struct("B5");
    member(w, "a", c);
    bitfield(w, nullptr, INT(), 3);
    laid_out(w);
    EXPECT_EQ(w->align(), 8u);
    EXPECT_EQ(w->size(), 16u);

    use_options(1, 32);
    TYPE* l = pkg->mk_struct("B6");
    member(l, "s", I(TYPE::ik_short));
    fkMDATA* ll = bitfield(l, "ll", I(TYPE::ik_llong), 40);
    laid_out(l);
    EXPECT_EQ(ll->offset, 16u);
    EXPECT_EQ(l->size(), 64u);
    EXPECT_EQ(l->align(), 64u);

    TYPE* u = pkg->mk_union("BU");
    bitfield(u, "a", INT(), 3);
    laid_out(u);
    EXPECT_EQ(u->size(), 32u);
    EXPECT_TRUE(TYPE_PKG::seen_bitfield);
}

TEST_F(TypeSizes, ArraysVectorsAndFlexibleMembers) {
    TYPE* arr = pkg->mk_array(INT(), false, 10);
    EXPECT_EQ(arr->size(), 320u);
    EXPECT_EQ(arr->align(), 32u);
    EXPECT_TRUE(arr->is_complete());

    TYPE* s = pkg->mk_struct("CI");
    member(s, "c", I(TYPE::ik_char));
    member(s, "i", INT());
    member(s, "c2", I(TYPE::ik_char));
    laid_out(s);
    EXPECT_EQ(pkg->mk_array(s, false, 3)->size(), 3 * 96u);
    EXPECT_EQ(type_stride(s), 96u);

    TYPE* incomplete = pkg->mk_array(INT(), false);
    EXPECT_FALSE(incomplete->is_complete());
    EXPECT_EQ(incomplete->size(), 0u);

    TYPE* v = pkg->mk_vector(I(TYPE::ik_short), false, 8);
    EXPECT_TRUE(v->is_vector());
    EXPECT_EQ(v->size(), 128u);
    EXPECT_EQ(v->align(), 64u);
    EXPECT_EQ(pkg->mk_vector(I(TYPE::ik_char), false, 4)->align(), 32u);

    TYPE* flex = pkg->mk_struct("FLEX");
    member(flex, "n", INT());
    member(flex, "d", pkg->mk_array(INT(), false, 0, 0, 32, true));
    laid_out(flex);
    EXPECT_TRUE(flex->has_flex_array_member(false));
    EXPECT_EQ(flex->size(), 32u);
    TYPE* outer = pkg->mk_struct("OUTER");
    member(outer, "f", flex);
    laid_out(outer);
    EXPECT_FALSE(outer->has_flex_array_member(false));
    EXPECT_TRUE(outer->has_flex_array_member(true));

    TYPE* cpp = pkg->mk_struct("CPPFLEX", true, false, 0, 0);
    member(cpp, "n", INT());
    member(cpp, "d", pkg->mk_array(INT(), true, 0, 0, 32, true));
    laid_out(cpp);
    EXPECT_FALSE(cpp->has_flex_array_member(true));
    EXPECT_FALSE(s->has_flex_array_member(true));
}

TEST_F(TypeSizes, StorageSizeStrideAndFieldContainers) {
    TYPE* odd = pkg->mk_int(TYPE::ik_int, false, 24, 8, false, false);
    EXPECT_EQ(odd->storage_size(), 32u);
    EXPECT_EQ(pkg->mk_int(TYPE::ik_bool, false, 1, 8, false, false)->storage_size(), 1u);
    TYPE* s = pkg->mk_struct("S24", false, true, 24, 8);
    pkg->type_frozen(s);
    EXPECT_EQ(s->storage_size(), 24u); // only scalars round up
    EXPECT_EQ(type_stride(pkg->mk_array(I(TYPE::ik_char), false, 3, 24, 0, true)), 24u);

    unsigned offset = 99;
    // A 4-bit field at bit 30 ends at 34: an int container ending at 64 starts at 32.
    EXPECT_FALSE(TYPE_PKG::get_container_offset_for_field(32, 32, 30, 4, &offset));
    EXPECT_EQ(offset, 32u);
    EXPECT_TRUE(TYPE_PKG::get_container_offset_for_field(32, 32, 33, 4, &offset));
    EXPECT_EQ(offset, 32u);
    EXPECT_TRUE(TYPE_PKG::get_container_offset_for_field(64, 32, 3, 4, &offset));
    EXPECT_EQ(offset, 0u); // clamped at 0

    TYPE* agg = pkg->mk_struct("AGG", false, true, 48, 16);
    pkg->type_frozen(agg);
    EXPECT_TRUE(
        TYPE_PKG::is_legal_container_for_field(I(TYPE::ik_short), agg, 20, 4, false, &offset));
    EXPECT_EQ(offset, 16u);
    EXPECT_FALSE(TYPE_PKG::is_legal_container_for_field(INT(), agg, 20, 4, false, &offset));
    EXPECT_FALSE(TYPE_PKG::is_legal_container_for_field(odd, agg, 0, 4, true, &offset));
    TYPE* agg32 = pkg->mk_struct("AGG32", false, true, 48, 32);
    pkg->type_frozen(agg32);
    EXPECT_FALSE(TYPE_PKG::is_legal_container_for_field(INT(), agg32, 36, 4, false, &offset));
    EXPECT_TRUE(TYPE_PKG::is_legal_container_for_field(INT(), agg32, 36, 4, true, &offset));
}

// ---- Interning -----------------------------------------------------------

using TypeInterning = TypeTest;

TEST_F(TypeInterning, DerivedTypesAreShared) {
    TYPE* p = pkg->mk_ptr(INT());
    EXPECT_EQ(pkg->mk_ptr(INT()), p);
    EXPECT_NE(pkg->mk_ptr(I(TYPE::ik_long)), p);
    EXPECT_NE(pkg->mk_ptr(INT(), 64, 64), p);
    EXPECT_EQ(pkg->mk_ref(INT()), pkg->mk_ref(INT()));
    EXPECT_NE(pkg->mk_ref(INT()), p);
    EXPECT_EQ(pkg->mk_array(INT(), false, 4), pkg->mk_array(INT(), false, 4));
    EXPECT_NE(pkg->mk_array(INT(), false, 4), pkg->mk_array(INT(), false, 5));
    EXPECT_NE(pkg->mk_array(INT(), false, 4), pkg->mk_vector(INT(), false, 4));
    EXPECT_NE(pkg->mk_array(INT(), false, 4), pkg->mk_array(INT(), true, 4));
    EXPECT_EQ(pkg->mk_qual(INT(), TQ_CONST), pkg->mk_qual(INT(), TQ_CONST));
    EXPECT_EQ(pkg->mk_typedef("T", false, INT()), pkg->mk_typedef("T", false, INT()));
    EXPECT_NE(pkg->mk_typedef("T", false, INT()), pkg->mk_typedef("U", false, INT()));
    EXPECT_EQ(pkg->mk_complex(F(TYPE::fk_float)), pkg->mk_complex(F(TYPE::fk_float)));
    EXPECT_EQ(pkg->mk_complex(F(TYPE::fk_float))->size(), 64u);
    EXPECT_EQ(pkg->mk_fxtpt(I(TYPE::ik_short), 15), pkg->mk_fxtpt(I(TYPE::ik_short), 15));
    EXPECT_NE(pkg->mk_fxtpt(I(TYPE::ik_short), 15), pkg->mk_fxtpt(I(TYPE::ik_short), 7));

    // The basic types come back for their own layout.
    EXPECT_EQ(pkg->mk_int(TYPE::ik_int, false, 32, 32, false, false), INT());
    EXPECT_EQ(pkg->mk_fltpt(TYPE::fk_double, 64, 32), F(TYPE::fk_double));
    EXPECT_NE(pkg->mk_int(TYPE::ik_char, true), I(TYPE::ik_char));
    EXPECT_EQ(pkg->mk_int(TYPE::ik_char, true), pkg->mk_int(TYPE::ik_char, true));
    EXPECT_NE(pkg->mk_boolean_int(INT()), INT());
    EXPECT_TRUE(pkg->mk_boolean_int(INT())->boolean);
    EXPECT_TRUE(pkg->mk_ptm_int(pkg->mk_boolean_int(INT()))->ptm_int);
    EXPECT_FALSE(pkg->mk_ptm_int(pkg->mk_boolean_int(INT()))->boolean);

    TYPE* f1 = func(INT(), {INT(), pkg->mk_ptr(I(TYPE::ik_char))});
    TYPE* f2 = func(INT(), {INT(), pkg->mk_ptr(I(TYPE::ik_char))});
    EXPECT_EQ(f1, f2);
    EXPECT_NE(func(INT(), {INT()}), f1);
    EXPECT_NE(func(INT(), {INT(), pkg->mk_ptr(I(TYPE::ik_char))}, true, true), f1);
    EXPECT_EQ(type_of_nth_parameter(pkg->mk_ptr(f1), 2), pkg->mk_ptr(I(TYPE::ik_char)));
    EXPECT_EQ(type_of_nth_parameter(f1, 3), nullptr);
}

TEST_F(TypeInterning, TaggedTypesAreNeverUnified) {
    TYPE* a = pkg->mk_struct("S", false, true, 32, 32);
    TYPE* b = pkg->mk_struct("S", false, true, 32, 32);
    pkg->type_frozen(a);
    pkg->type_frozen(b);
    EXPECT_NE(a, b);
    EXPECT_NE(a->uid, b->uid);
    TYPE* e1 = pkg->mk_enum("E");
    TYPE* e2 = pkg->mk_enum("E");
    pkg->type_frozen(e1);
    pkg->type_frozen(e2);
    EXPECT_NE(e1, e2);

    TYPE* anon = pkg->mk_struct(nullptr);
    pkg->type_frozen(anon);
    EXPECT_EQ(strncmp(anon->name(), "$$fake", 6), 0);
    EXPECT_TRUE(type_is_tagless(anon));
    EXPECT_FALSE(type_is_tagless(a));
    EXPECT_EQ(anon->map_name(), "$$fakestruct");
    TYPE* anon_union = pkg->mk_union("");
    EXPECT_EQ(anon_union->map_name(), "$$fakeunion");
    EXPECT_EQ(a->map_name(), "S");
    // Names of other ABIs than 1 carry a leading character that map names drop.
    TYPE* prefixed = pkg->mk_struct("_Q2_5Outer1S");
    EXPECT_EQ(prefixed->map_name(), "S");
    EXPECT_EQ(INT()->map_name(), "__builtin_type");

    // Member numbers come with registration, 1-based in list order.
    TYPE* s = pkg->mk_struct("M");
    member(s, "x", INT());
    member(s, "y", INT());
    EXPECT_EQ(find_mdataref(s, 1), nullptr);
    laid_out(s);
    ASSERT_NE(find_mdataref(s, 2), nullptr);
    EXPECT_STREQ(find_mdataref(s, 2)->name, "y");
    EXPECT_STREQ(find_mdataref(pkg->mk_qual(s, TQ_CONST), 1)->name, "x");
    EXPECT_EQ(find_mdataref(s, 3), nullptr);
}

TEST_F(TypeInterning, TreeWalkVisitsEachRegisteredTypeOnceBaseFirst) {
    TYPE* s = pkg->mk_struct("W");
    TYPE* ps = pkg->mk_ptr(s);
    member(s, "next", ps);
    laid_out(s);
    TYPE* cps = pkg->mk_qual(ps, TQ_CONST);
    TYPE* arr = pkg->mk_array(cps, false, 2);
    std::vector<TYPE*> order;
    for (TYPE::TYPE_TREE_ITERATOR it(pkg->root), end; it != end; ++it)
        order.push_back(*it);
    ASSERT_FALSE(order.empty());
    EXPECT_EQ(order.front(), pkg->root);
    std::set<TYPE*> unique(order.begin(), order.end());
    EXPECT_EQ(unique.size(), order.size());
    auto at = [&](TYPE* t) { return std::find(order.begin(), order.end(), t) - order.begin(); };
    for (TYPE* t : {s, ps, cps, arr, INT(), pkg->ptr_to_void})
        EXPECT_LT(static_cast<size_t>(at(t)), order.size());
    EXPECT_LT(at(s), at(ps));
    EXPECT_LT(at(ps), at(cps));
    EXPECT_LT(at(cps), at(arr));
    EXPECT_LT(at(pkg->void_type), at(pkg->ptr_to_void));
}

TEST_F(TypeInterning, DeletingTypes) {
    TYPE* p = pkg->mk_ptr(I(TYPE::ik_short));
    TYPE* pp = pkg->mk_ptr(p);
    pkg->delete_type_tree(p, false);
    EXPECT_EQ(pkg->mk_ptr(I(TYPE::ik_short)), p); // kept: something is based on it
    EXPECT_EXIT(pkg->delete_type_tree(p, false, true), ExitedWithCode(1),
                "Nonrecusive type tree delete with nonempty based list:  "
                "TYPE_PKG::delete_type_tree");
    uint32_t old_uid = pp->uid;
    pkg->delete_type_tree(p, true);
    TYPE* again = pkg->mk_ptr(pkg->mk_ptr(I(TYPE::ik_short)));
    EXPECT_NE(again->uid, old_uid); // made anew, not found
}

TEST_F(TypeInterning, FrozenTypesCannotChange) {
    TYPE* s = pkg->mk_struct("F");
    laid_out(s);
    EXPECT_EXIT(member(s, "late", INT()), ExitedWithCode(1),
                "Modifying frozen type:  TYPE::check_nfrozen");
    EXPECT_EXIT(INT()->getr(TYPE::tpk_pointer), ExitedWithCode(1), "Bad kind:  TYPE::getr\\(\\)");
    EXPECT_EXIT(pkg->mk_int(static_cast<TYPE::IKIND>(12)), ExitedWithCode(1),
                "Bad kind: TYPE_PKG::mk_int");
}

TEST_F(TypeInterning, OversizedObjectsAreReportedAndStillMade) {
    static std::string seen;
    seen.clear();
    pkg->error_callback = [](TYPE_PKG* p) { seen = p->error_text; };
    TYPE* big = pkg->mk_array(I(TYPE::ik_char), false, 0x20000000u);
    EXPECT_EQ(big->size(), 0x100000000ull);
    EXPECT_EQ(pkg->error_code, TP_OBJECT_SIZE);
    EXPECT_EQ(seen, "Object size 536870912 bytes is greater than maximum supported size "
                    "536870911 bytes");
    EXPECT_STREQ(error_code_name(TP_OBJECT_SIZE), "object size not supported");
    EXPECT_STREQ(error_code_name(static_cast<TP_ERROR_CODE>(7)), "unknown error");
    // A pending error that the callback leaves pending keeps the new one out.
    std::string first = seen;
    pkg->mk_array(I(TYPE::ik_short), false, 0x20000000u);
    EXPECT_EQ(seen, first);
    EXPECT_STREQ(pkg->error_text, first.c_str());
    EXPECT_EQ(pkg->mk_array(I(TYPE::ik_char), false, 0x1FFFFFFFu)->size(), 0xFFFFFFF8ull);
}

// ---- Qualifiers ----------------------------------------------------------

using TypeQualifiers = TypeTest;

TEST_F(TypeQualifiers, ChainsFoldOntoTheUnqualifiedType) {
    TYPE* ci = pkg->mk_qual(INT(), TQ_CONST);
    EXPECT_EQ(pkg->mk_qual(ci, TQ_CONST), ci);
    TYPE* vi = pkg->mk_qual(INT(), TQ_VOLATILE);
    TYPE* cvi = pkg->mk_qual(vi, TQ_CONST);
    EXPECT_EQ(cvi->kind, TYPE::tpk_qual);
    EXPECT_EQ(cvi->target, INT());
    EXPECT_EQ(cvi->quals, TQ_CONST | TQ_VOLATILE);
    EXPECT_EQ(pkg->mk_qual(ci, TQ_VOLATILE), cvi);
    EXPECT_EQ(cvi->resolved, INT());
    EXPECT_TRUE(cvi->is_int());

    TYPE* packed = pkg->mk_qual(INT(), TQ_PACKED);
    EXPECT_EQ(packed->align(), 8u);
    EXPECT_EQ(packed->size(), 32u);
    EXPECT_EQ(pkg->mk_qual(packed, TQ_CONST)->align(), 8u);

    // Qualifiers are seen through typedefs, and through arrays when asked.
    TYPE* td = pkg->mk_typedef("CI", false, ci);
    EXPECT_EQ(pkg->mk_qual(td, TQ_CONST), td);
    EXPECT_EQ(td->qual_kind(false), TQ_CONST);
    TYPE* arr = pkg->mk_array(ci, false, 3);
    EXPECT_EQ(arr->qual_kind(false), 0);
    EXPECT_EQ(arr->qual_kind(true), TQ_CONST);
    EXPECT_EQ(pkg->mk_qual(arr, TQ_CONST), arr);
}

TEST_F(TypeQualifiers, RemovingQualifiers) {
    TYPE* cvi = pkg->mk_qual(INT(), TQ_CONST | TQ_VOLATILE);
    EXPECT_EQ(pkg->remove_known_qual(cvi, TQ_CONST), pkg->mk_qual(INT(), TQ_VOLATILE));
    EXPECT_EQ(cvi->type_qualified(), INT());
    EXPECT_EQ(cvi->stqs(), INT());

    TYPE* arr = pkg->mk_array(pkg->mk_array(cvi, false, 2), false, 3);
    TYPE* plain = arr->type_qualified();
    EXPECT_EQ(plain, pkg->mk_array(pkg->mk_array(INT(), false, 2), false, 3));
    EXPECT_EQ(plain->size(), arr->size());

    TYPE* td = pkg->mk_typedef("CVI", false, cvi);
    EXPECT_EQ(pkg->remove_known_qual(td, TQ_VOLATILE), pkg->mk_qual(INT(), TQ_CONST));
    TYPE* plain_td = pkg->mk_typedef("PI", false, INT());
    EXPECT_EQ(pkg->remove_known_qual(plain_td, TQ_CONST), plain_td);

    // The element of a qualified array carries the array's qualifiers.
    TYPE* carr = pkg->mk_qual(pkg->mk_array(I(TYPE::ik_short), false, 4), TQ_CONST);
    EXPECT_EQ(carr->elem_type(), pkg->mk_qual(I(TYPE::ik_short), TQ_CONST));
    EXPECT_EQ(pkg->replace_array_elem(pkg->mk_array(pkg->mk_array(INT(), false, 2), false, 3),
                                      INT(), I(TYPE::ik_char))
                  ->ar->elem,
              pkg->mk_array(I(TYPE::ik_char), false, 2, 64, 32, true));
    EXPECT_EXIT(pkg->replace_array_elem(pkg->mk_array(INT(), false, 2), I(TYPE::ik_char), INT()),
                ExitedWithCode(1), "replace_array_elem:  can't find element");
}

// ---- Normalization -------------------------------------------------------

using TypeNormalization = TypeTest;

TEST_F(TypeNormalization, TypesOfOneMachineMeaningShareARepresentative) {
    EXPECT_EQ(I(TYPE::ik_long)->normalized(), INT());
    EXPECT_EQ(I(TYPE::ik_ulong)->normalized(), I(TYPE::ik_uint));
    EXPECT_EQ(I(TYPE::ik_llong)->normalized(), I(TYPE::ik_llong));
    EXPECT_EQ(I(TYPE::ik_short)->normalized(), I(TYPE::ik_short));
    EXPECT_EQ(I(TYPE::ik_wchar)->normalized(), I(TYPE::ik_wchar));
    EXPECT_EQ(F(TYPE::fk_ldouble)->normalized(), F(TYPE::fk_double));
    EXPECT_EQ(F(TYPE::fk_double)->normalized(), F(TYPE::fk_double));
    EXPECT_EQ(pkg->mk_int(TYPE::ik_char, true)->normalized(), I(TYPE::ik_char));
    TYPE* odd = pkg->mk_int(TYPE::ik_long, false, 24, 8, false, false);
    EXPECT_EQ(odd->normalized(), odd);

    EXPECT_EQ(pkg->mk_ptr(I(TYPE::ik_long))->normalized(), pkg->mk_ptr(INT()));
    EXPECT_EQ(pkg->mk_qual(I(TYPE::ik_ulong), TQ_CONST)->normalized(),
              pkg->mk_qual(I(TYPE::ik_uint), TQ_CONST));
    EXPECT_EQ(pkg->mk_typedef("L", false, I(TYPE::ik_long))->normalized(), INT());
    EXPECT_EQ(pkg->mk_array(I(TYPE::ik_long), false, 3)->normalized(),
              pkg->mk_array(INT(), false, 3));
    EXPECT_EQ(pkg->mk_vector(I(TYPE::ik_long), false, 2)->normalized(),
              pkg->mk_vector(INT(), false, 2));
    EXPECT_EQ(func(I(TYPE::ik_long), {I(TYPE::ik_ulong), F(TYPE::fk_float)})->normalized(),
              func(INT(), {I(TYPE::ik_uint), F(TYPE::fk_float)}));
    TYPE* unchanged = func(INT(), {INT()});
    EXPECT_EQ(unchanged->normalized(), unchanged);
    EXPECT_EQ(pkg->mk_complex(I(TYPE::ik_long))->normalized(), pkg->mk_complex(INT()));
    TYPE* e = pkg->mk_enum("NE");
    pkg->type_frozen(e);
    EXPECT_EQ(e->normalized(), e);
    EXPECT_EQ(normalized_underlying_type(e), INT());
}

TEST_F(TypeNormalization, SixteenBitWcharBecomesShort) {
    use_options(0, 16);
    EXPECT_EQ(I(TYPE::ik_wchar)->normalized(), I(TYPE::ik_short));
    use_options(1, 32);
    EXPECT_EQ(I(TYPE::ik_wchar)->normalized(), I(TYPE::ik_wchar));
    EXPECT_EQ(F(TYPE::fk_ldouble)->normalized(), F(TYPE::fk_double));
}

// ---- Kind predicates and sign ----------------------------------------------

using TypePredicates = TypeTest;

TEST_F(TypePredicates, SignRankAndKind) {
    TYPE* b = I(TYPE::ik_bool);
    EXPECT_FALSE(b->is_signed());
    EXPECT_FALSE(b->is_unsigned());
    EXPECT_FALSE(I(TYPE::ik_wchar)->is_signed());
    EXPECT_FALSE(I(TYPE::ik_wchar)->is_unsigned());
    EXPECT_EQ(pkg->mk_unsigned(b), b);
    EXPECT_EQ(pkg->mk_signed(b), b);
    for (int k = TYPE::ik_char; k <= TYPE::ik_ullong; k++) {
        if (k == TYPE::ik_wchar)
            continue;
        bool is_unsigned = k == TYPE::ik_uchar || k == TYPE::ik_ushort || k == TYPE::ik_uint ||
                           k == TYPE::ik_ulong || k == TYPE::ik_ullong;
        SCOPED_TRACE(k);
        TYPE* t = I(static_cast<TYPE::IKIND>(k));
        EXPECT_EQ(t->is_unsigned(), is_unsigned);
        EXPECT_EQ(t->is_signed(), !is_unsigned);
        EXPECT_TRUE(pkg->mk_unsigned(t)->is_unsigned());
        EXPECT_TRUE(pkg->mk_signed(t)->is_signed());
        EXPECT_EQ(pkg->mk_unsigned(t)->size(), t->size());
        EXPECT_EQ(t->ekind(), k);
    }
    EXPECT_EQ(pkg->mk_unsigned(INT()), I(TYPE::ik_uint));
    EXPECT_EQ(pkg->mk_signed(I(TYPE::ik_uchar)), I(TYPE::ik_char));
    EXPECT_EQ(pkg->mk_unsigned(pkg->mk_qual(INT(), TQ_CONST)),
              pkg->mk_qual(I(TYPE::ik_uint), TQ_CONST));
    TYPE* td = pkg->mk_typedef("U", false, I(TYPE::ik_uint));
    EXPECT_EQ(pkg->mk_unsigned(td), td);
    EXPECT_EQ(pkg->mk_unsigned(pkg->mk_vector(INT(), false, 4)),
              pkg->mk_vector(I(TYPE::ik_uint), false, 4));
    EXPECT_EQ(pkg->mk_unsigned(F(TYPE::fk_float)), F(TYPE::fk_float));
    TYPE* e = pkg->mk_enum("SE", false, I(TYPE::ik_uchar), 8, 8);
    pkg->type_frozen(e);
    EXPECT_TRUE(e->is_unsigned());
    EXPECT_EQ(pkg->mk_signed(e), I(TYPE::ik_char));
    EXPECT_EQ(e->rank(), 1);
    EXPECT_TRUE(TYPE_PKG::seen_small_enums);

    EXPECT_EQ(b->rank(), 0);
    EXPECT_EQ(I(TYPE::ik_wchar)->rank(), 1);
    EXPECT_EQ(I(TYPE::ik_ushort)->rank(), 2);
    EXPECT_EQ(I(TYPE::ik_uint)->rank(), 3);
    EXPECT_EQ(I(TYPE::ik_long)->rank(), 4);
    EXPECT_EQ(I(TYPE::ik_ullong)->rank(), 5);
    EXPECT_EXIT(F(TYPE::fk_float)->rank(), ExitedWithCode(1), "Bad type: TYPE::rank\\(\\)");

    TYPE* s = laid_out(pkg->mk_struct("K"));
    TYPE* ptm = pkg->mk_ptm(INT(), s, 32, 32);
    EXPECT_TRUE(ptm->is_arithmetic()); // deliberately
    EXPECT_TRUE(ptm->is_scalar());
    EXPECT_TRUE(pkg->mk_ptr(INT())->is_scalar());
    EXPECT_FALSE(pkg->mk_ptr(INT())->is_arithmetic());
    EXPECT_FALSE(s->is_scalar());
    EXPECT_TRUE(s->is_udt());
    EXPECT_TRUE(e->is_udt() && e->is_scalar() && e->is_arithmetic());
    EXPECT_EQ(F(TYPE::fk_ldouble)->ekind(), 14);
    EXPECT_EQ(pkg->mk_complex(INT())->ekind(), 16);
    EXPECT_EQ(pkg->mk_typedef("PS", false, pkg->mk_qual(s, TQ_CONST))->ekind(), 24);
    EXPECT_EQ(pkg->void_type->ekind(), 26);
    EXPECT_TRUE(pkg->mk_typedef("CS", false, pkg->mk_qual(s, TQ_CONST))->is_struct());
    EXPECT_TRUE(pkg->mk_complex(I(TYPE::ik_short))->is_cshort());
    EXPECT_TRUE(pkg->mk_complex(F(TYPE::fk_double))->is_cdouble());
    EXPECT_EXIT(pkg->mk_complex(I(TYPE::ik_uint)), ExitedWithCode(1),
                "Bad complex part_type: TYPE::TYPE\\(TYPE \\*i_part_type\\)");
    EXPECT_TRUE(I(TYPE::ik_uchar)->is_plain_char());
    EXPECT_FALSE(pkg->mk_int(TYPE::ik_char, true)->is_plain_char());
}

TEST_F(TypePredicates, PrintedDeclarators) {
    TYPE* c = I(TYPE::ik_char);
    EXPECT_EQ(pkg->mk_ptr(INT())->print(), "int *");
    EXPECT_EQ(pkg->mk_qual(INT(), TQ_CONST | TQ_VOLATILE)->print(), "const volatile int");
    EXPECT_EQ(pkg->mk_qual(pkg->mk_ptr(INT()), TQ_CONST)->print(), "int *const");
    EXPECT_EQ(pkg->mk_array(INT(), false, 10)->print(), "int [10]");
    EXPECT_EQ(pkg->mk_array(INT(), false)->print(), "int []");
    EXPECT_EQ(pkg->mk_ptr(pkg->mk_array(c, false, 4))->print(), "char (*)[4]");
    EXPECT_EQ(pkg->mk_ptr(func(INT(), {INT(), c}))->print(), "int (*)(int, char)");
    EXPECT_EQ(func(pkg->void_type, {INT()}, true, true)->print(), "void (int, ...)");
    EXPECT_EQ(pkg->mk_vector(F(TYPE::fk_float), false, 4)->print(), "float <[4]>");
    EXPECT_EQ(pkg->mk_int(TYPE::ik_char, true)->print(), "char [ExplSign]");
    EXPECT_EQ(pkg->mk_complex(INT())->print(), "cint");
    EXPECT_EQ(pkg->mk_ref(INT())->print(false, true), "int &#x26;");
    TYPE* s = pkg->mk_struct("PT");
    member(s, "x", INT());
    bitfield(s, "f", I(TYPE::ik_uint), 3);
    laid_out(s);
    EXPECT_EQ(s->print(), "struct PT");
    EXPECT_EQ(s->print(true), "struct PT \n   x               off:  0 int\n   f               "
                              "off: 32 bitfld( 3) unsigned");
    TYPE* e = pkg->mk_enum("Color");
    e->add_etor("RED", 0);
    e->add_etor("BLUE", 4);
    e->set_is_complete(true);
    pkg->type_frozen(e);
    EXPECT_EQ(e->print(true), "enum Color \n    RED = 0\n    BLUE = 4");
    EXPECT_STREQ(pkg->mk_typedef("size_t", false, I(TYPE::ik_uint))->printstr(), "size_t");

    TYPE* vp = pkg->mk_vpred(pkg->mk_vector(I(TYPE::ik_short), false, 4));
    EXPECT_STREQ(vp->name(), "__ondrel_vpred_tpshort");
    EXPECT_TRUE(vp->is_vpred());
    EXPECT_EQ(vp->size(), 64u);
    EXPECT_EQ(vp->align(), 64u);
    EXPECT_STREQ(vp->members()->name, "__vpred_field");
    EXPECT_TRUE(vp->members()->type->resolved->ar->elem->is_ullong());
    EXPECT_EQ(pkg->mk_vpred(pkg->mk_vector(I(TYPE::ik_short), false, 8)), vp);
}

// ---- Comparison ----------------------------------------------------------

using TypeCompatibility = TypeTest;

TEST_F(TypeCompatibility, CompatibleTypesIsTheCNotion) {
    TYPE* l = I(TYPE::ik_long);
    EXPECT_FALSE(compatible_types(INT(), l, false)); // same layout, other kind
    EXPECT_TRUE(compatible_types(pkg->mk_typedef("T", false, INT()), INT(), true));
    EXPECT_FALSE(compatible_types(pkg->mk_qual(INT(), TQ_CONST), INT(), false));
    EXPECT_TRUE(compatible_types(pkg->mk_qual(INT(), TQ_CONST),
                                 pkg->mk_qual(pkg->mk_typedef("T", false, INT()), TQ_CONST),
                                 false));
    EXPECT_FALSE(compatible_types(pkg->mk_int(TYPE::ik_char, true), I(TYPE::ik_char), false));
    EXPECT_TRUE(
        compatible_types(pkg->mk_array(INT(), false), pkg->mk_array(INT(), false, 3), false));
    EXPECT_FALSE(
        compatible_types(pkg->mk_array(INT(), false, 4), pkg->mk_array(INT(), false, 3), false));
    EXPECT_FALSE(
        compatible_types(pkg->mk_array(INT(), false, 4), pkg->mk_vector(INT(), false, 4), false));
    EXPECT_TRUE(compatible_types(pkg->mk_ptr(INT()),
                                 pkg->mk_ptr(pkg->mk_typedef("T", false, INT())), false));

    TYPE* old_style = func(INT(), {}, false);
    EXPECT_TRUE(compatible_types(func(INT(), {INT(), pkg->mk_ptr(INT())}), old_style, false));
    EXPECT_FALSE(compatible_types(func(INT(), {I(TYPE::ik_char)}), old_style, false));
    EXPECT_FALSE(compatible_types(old_style, func(INT(), {INT()}, true, true), false));
    EXPECT_FALSE(compatible_types(func(INT(), {INT()}), old_style, true));
    EXPECT_FALSE(compatible_types(func(INT(), {INT()}), func(INT(), {INT(), INT()}), false));
    EXPECT_FALSE(compatible_types(func(INT(), {INT()}), func(l, {INT()}), false));

    TYPE* s1 = laid_out(pkg->mk_struct("S"));
    TYPE* s2 = pkg->mk_struct("S");
    pkg->type_frozen(s2);
    EXPECT_TRUE(compatible_types(s1, s2, true)); // by name; one of them incomplete
    TYPE* t = laid_out(pkg->mk_struct("T"));
    EXPECT_FALSE(compatible_types(s1, t, false));
    TYPE* unfrozen = pkg->mk_struct("S");
    EXPECT_FALSE(compatible_types(s1, unfrozen, false));
}

TEST_F(TypeCompatibility, ExactAndMachineEquivalence) {
    TYPE* l = I(TYPE::ik_long);
    EXPECT_TRUE(equiv_mtypes(INT(), l));
    EXPECT_TRUE(equiv_mtypes(I(TYPE::ik_uint), I(TYPE::ik_ulong)));
    EXPECT_FALSE(equiv_mtypes(INT(), I(TYPE::ik_uint)));
    EXPECT_FALSE(equiv_mtypes(I(TYPE::ik_uint), INT()));
    EXPECT_TRUE(equiv_mtypes(I(TYPE::ik_bool), I(TYPE::ik_uchar)));
    EXPECT_TRUE(equiv_mtypes(I(TYPE::ik_char), I(TYPE::ik_bool)));
    EXPECT_TRUE(equiv_mtypes(I(TYPE::ik_wchar), INT()));
    EXPECT_FALSE(equiv_mtypes(INT(), I(TYPE::ik_short)));
    EXPECT_FALSE(equiv_mtypes(INT(), F(TYPE::fk_float)));
    EXPECT_TRUE(equiv_mtypes(pkg->mk_qual(INT(), TQ_VOLATILE), pkg->mk_typedef("L", false, l)));
    EXPECT_TRUE(equiv_mtypes(pkg->mk_ptr(INT()), pkg->mk_ptr(F(TYPE::fk_float))));
    EXPECT_FALSE(equiv_mtypes(pkg->mk_ptr(INT()), pkg->mk_ptr(func(INT(), {}))));
    EXPECT_TRUE(equiv_mtypes(pkg->mk_array(INT(), false, 2), pkg->mk_array(l, false, 2)));
    EXPECT_FALSE(equiv_mtypes(pkg->mk_array(INT(), false, 2), pkg->mk_array(l, false, 3)));

    auto pair = [&](const char* name, TYPE* second, bool is_union) {
        TYPE* s = is_union ? pkg->mk_union(name) : pkg->mk_struct(name);
        member(s, "a", INT());
        member(s, "b", second);
        return laid_out(s);
    };
    TYPE* a = pair("A", INT(), false);
    EXPECT_TRUE(equiv_mtypes(a, pair("B", l, false)));
    EXPECT_FALSE(equiv_mtypes(a, pair("C", F(TYPE::fk_float), false)));
    EXPECT_FALSE(equiv_mtypes(a, pair("D", INT(), true)));

    EXPECT_TRUE(exact_types(INT(), INT()));
    EXPECT_FALSE(exact_types(INT(), l));
    EXPECT_FALSE(exact_types(a, pair("A", INT(), false)));
    EXPECT_FALSE(is_same_sign(INT(), I(TYPE::ik_uint)));
    EXPECT_TRUE(is_same_sign(INT(), F(TYPE::fk_float)));
}

TEST_F(TypeCompatibility, NamesDemangleToTheirBareTag) {
    EXPECT_EQ(decode_id("Q2_5Outer5Inner"), "Outer::Inner");
    EXPECT_EQ(decode_id("Q2_5Outer9Inner"), "Q2_5Outer9Inner"); // a part runs past the end
    EXPECT_EQ(decode_id("Plain"), "Plain");
    bool mangled = false;
    TYPE_PKG::abi = 1;
    EXPECT_EQ(demangle_type_name("Q2_5Outer5Inner", true, &mangled), "Inner");
    EXPECT_TRUE(mangled);
    EXPECT_EQ(demangle_type_name("Inner", true, &mangled), "Inner");
    EXPECT_FALSE(mangled);
    EXPECT_TRUE(compare_type_names("Q2_5Outer5Inner", true, "Inner", false));
    EXPECT_FALSE(compare_type_names("Q2_5Outer5Inner", true, "Inner", true));
    // Other ABIs prefix every name with one character.
    TYPE_PKG::abi = 0;
    EXPECT_EQ(demangle_type_name("_Q2_1A1B", true, &mangled), "B");
    EXPECT_TRUE(mangled);
    EXPECT_EQ(demangle_type_name("_S", false, &mangled), "S");
}

TEST_F(TypeCompatibility, MergingAcrossTranslationUnits) {
    // A complete struct and its incomplete twin merge, but nothing is linked.
    TYPE* full = pkg->mk_struct("M");
    member(full, "x", INT());
    laid_out(full);
    pkg->tu = 1;
    TYPE* decl = pkg->mk_struct("M");
    pkg->type_frozen(decl);
    EXPECT_TRUE(merge_types(full, decl));
    EXPECT_EQ(find_type(full), full);
    EXPECT_EQ(find_type(decl), decl);

    // Mutually recursive structs end through the marks, and merge.
    auto make_pair = [&](int unit, TYPE*& a, TYPE*& b) {
        pkg->tu = unit;
        a = pkg->mk_struct("RA");
        b = pkg->mk_struct("RB");
        member(a, "b", pkg->mk_ptr(b));
        member(b, "a", pkg->mk_ptr(a));
        laid_out(a);
        laid_out(b);
    };
    TYPE *a0, *b0, *a1, *b1;
    make_pair(2, a0, b0);
    make_pair(3, a1, b1);
    EXPECT_TRUE(merge_types(a1, a0));
    EXPECT_EQ(find_type(a1), a0); // the older unit stays
    EXPECT_EQ(find_type(b1), b0);
    EXPECT_TRUE(a1->merg);
    EXPECT_EQ(a0->merge_mark, 0u);
    EXPECT_EQ(find_type(a1->members()->type), a0->members()->type);

    // Differing members keep two types apart.
    pkg->tu = 4;
    TYPE* other = pkg->mk_struct("M");
    member(other, "y", INT());
    laid_out(other);
    EXPECT_FALSE(merge_types(other, full));
    EXPECT_EQ(find_type(other), other);

    // Padding members made by the compiler match by their prefix.
    pkg->tu = 5;
    TYPE_PKG::abi = 1;
    TYPE* p1 = pkg->mk_struct("PAD");
    member(p1, "$P$T1", INT());
    laid_out(p1);
    pkg->tu = 6;
    TYPE* p2 = pkg->mk_struct("PAD");
    member(p2, "$P$T7", INT());
    laid_out(p2);
    EXPECT_TRUE(merge_types(p2, p1));

    // The search among the types of one base and name finds the twin.
    pkg->tu = 7;
    TYPE* e1 = pkg->mk_enum("Twin");
    pkg->type_frozen(e1);
    pkg->tu = 8;
    TYPE* e2 = pkg->mk_enum("Twin");
    pkg->type_frozen(e2);
    TYPE* e3 = pkg->mk_enum("Other");
    pkg->type_frozen(e3);
    EXPECT_EQ(find_equivalent_type(e3), 0);
    EXPECT_EQ(find_equivalent_type(e2), 1);
    EXPECT_EQ(find_type(e2), e1);
    EXPECT_EQ(find_equivalent_type(e2), 1); // already merged
    e3->refd = true;
    EXPECT_EQ(find_equivalent_type(e3), 0);

    // A C++ typedef never merges with a C typedef that is not lowered.
    TYPE* cpp_td = pkg->mk_typedef("TD", true, INT());
    TYPE* c_td = pkg->mk_typedef("TD", false, INT());
    EXPECT_FALSE(merge_types(cpp_td, c_td));
    EXPECT_TRUE(merge_types(cpp_td, pkg->mk_typedef("TD", false, INT(), true)));
}

// ---- Utilities -----------------------------------------------------------

using TypeUtilities = TypeTest;

TEST_F(TypeUtilities, PromotionsAndCombinations) {
    TYPE* u = I(TYPE::ik_uint);
    EXPECT_EQ(c_integral_promotions(I(TYPE::ik_uchar)), INT());
    EXPECT_EQ(c_integral_promotions(I(TYPE::ik_ushort)), INT());
    EXPECT_EQ(c_integral_promotions(u), u);
    EXPECT_EQ(c_integral_promotions(I(TYPE::ik_short)), INT());
    EXPECT_EQ(c_integral_promotions(I(TYPE::ik_bool)), I(TYPE::ik_bool));
    TYPE* e = pkg->mk_enum("P", false, I(TYPE::ik_short), 16, 16);
    pkg->type_frozen(e);
    EXPECT_EQ(c_integral_promotions(e), I(TYPE::ik_short));

    EXPECT_EQ(c_usual_arith_conv(I(TYPE::ik_long), u), I(TYPE::ik_ulong));
    EXPECT_EQ(c_usual_arith_conv(INT(), u), u);
    EXPECT_EQ(c_usual_arith_conv(u, INT()), u);
    EXPECT_EQ(c_usual_arith_conv(I(TYPE::ik_char), I(TYPE::ik_short)), INT());
    EXPECT_EQ(c_usual_arith_conv(I(TYPE::ik_llong), u), I(TYPE::ik_llong));
    EXPECT_EQ(c_usual_arith_conv(INT(), F(TYPE::fk_float)), F(TYPE::fk_float));
    EXPECT_EQ(c_usual_arith_conv(F(TYPE::fk_double), F(TYPE::fk_ldouble)), F(TYPE::fk_ldouble));
    TYPE* p = pkg->mk_ptr(INT());
    EXPECT_EQ(c_usual_arith_conv(INT(), p), p);

    EXPECT_EQ(promoted_type(I(TYPE::ik_bool)), INT());
    EXPECT_EQ(promoted_type(I(TYPE::ik_ushort)), INT());
    EXPECT_EQ(promoted_type(I(TYPE::ik_ullong)), I(TYPE::ik_ullong));
    EXPECT_EQ(promoted_type(e), INT());
    EXPECT_EQ(promoted_type(F(TYPE::fk_float)), F(TYPE::fk_float));
    kr_flag = 1;
    EXPECT_EQ(promoted_type(I(TYPE::ik_ushort)), u); // unsigned-preserving old C
    EXPECT_EQ(combined_type_for_types(I(TYPE::ik_long), u), I(TYPE::ik_ulong));
    kr_flag = 0;
    // long and unsigned int have one size here, so their sum is unsigned long.
    EXPECT_EQ(combined_type_for_types(I(TYPE::ik_long), u), I(TYPE::ik_ulong));
    EXPECT_EQ(combined_type_for_types(I(TYPE::ik_char), I(TYPE::ik_short)), INT());
    EXPECT_EQ(combined_type_for_types(u, I(TYPE::ik_char)), u);
    EXPECT_EQ(combined_type_for_types(I(TYPE::ik_llong), I(TYPE::ik_ulong)), I(TYPE::ik_llong));
    EXPECT_EQ(combined_type_for_types(I(TYPE::ik_ullong), F(TYPE::fk_float)), F(TYPE::fk_float));
    EXPECT_EQ(combined_type_for_types(p, INT()), p);
    EXPECT_EQ(combined_type_for_types(INT(), p), p);
    EXPECT_EQ(operator_type_for_operand_types(8, p, p), INT());
    EXPECT_EQ(operator_type_for_operand_types(6, INT(), p), p);
    EXPECT_EQ(operator_type_for_operand_types(83, F(TYPE::fk_double), INT()), INT());
    EXPECT_EQ(operator_type_for_operand_types(11, I(TYPE::ik_short), F(TYPE::fk_double)),
              F(TYPE::fk_double));

    EXPECT_EQ(next_wider_type(I(TYPE::ik_char)), I(TYPE::ik_short));
    EXPECT_EQ(next_wider_type(I(TYPE::ik_uchar)), I(TYPE::ik_short));
    EXPECT_EQ(next_wider_type(INT()), I(TYPE::ik_llong));
    EXPECT_EQ(next_wider_type(I(TYPE::ik_ullong)), I(TYPE::ik_ullong));
    EXPECT_EQ(next_wider_type(F(TYPE::fk_float)), F(TYPE::fk_double));
    EXPECT_EQ(type_for_PMCONV(I(TYPE::ik_ushort)), INT());
    EXPECT_EQ(type_for_PMCONV(u), INT()); // long long is wider than int
    EXPECT_EQ(type_for_PMCONV(I(TYPE::ik_short)), INT());
    EXPECT_EQ(essential_type(u), INT());
    EXPECT_EQ(essential_type(e), I(TYPE::ik_short));
    EXPECT_EQ(get_complex_type(I(TYPE::ik_long)), pkg->mk_complex(I(TYPE::ik_long)));
    EXPECT_EQ(get_complex_type(F(TYPE::fk_double)), pkg->mk_complex(F(TYPE::fk_double)));
    EXPECT_EXIT(get_complex_type(u), ExitedWithCode(1), "");
}

TEST_F(TypeUtilities, RangesAndMasks) {
    TYPE* sc = pkg->mk_int(TYPE::ik_char, true);
    EXPECT_EQ(int_type_max(sc), INT65(127));
    EXPECT_EQ(int_type_min(sc), INT65(-128));
    EXPECT_EQ(int_type_max(I(TYPE::ik_ushort)), INT65(65535));
    EXPECT_EQ(int_type_min(I(TYPE::ik_ushort)), INT65(0));
    EXPECT_EQ(type_mask(I(TYPE::ik_ullong)), INT65::from_unsigned(~0ull));
    EXPECT_FALSE(type_mask(I(TYPE::ik_ullong)).is_negative());
    EXPECT_EQ(int_type_max(I(TYPE::ik_llong)), INT65(0x7fffffffffffffffll));
    EXPECT_EQ(int_type_min(I(TYPE::ik_llong)), INT65(-0x7fffffffffffffffll - 1));
    TYPE* big = laid_out(pkg->mk_struct("BIG"));
    EXPECT_EQ(type_mask(big), INT65::from_unsigned(~0ull)); // size 0: the 64-bit mask
    EXPECT_EQ(int_type_min(I(TYPE::ik_bool)), INT65(0));

    EXPECT_EQ(wide_enough_int_type(INT65(-1)), INT());
    EXPECT_EQ(wide_enough_int_type(INT65(0x7fffffffll)), INT());
    EXPECT_EQ(wide_enough_int_type(INT65(0x80000000ll)), I(TYPE::ik_uint));
    EXPECT_EQ(wide_enough_int_type(INT65(0x10000000000ll)), I(TYPE::ik_llong));
    EXPECT_EQ(wide_enough_int_type(INT65::from_unsigned(~0ull)), I(TYPE::ik_ullong));
    EXPECT_EQ(wide_enough_int_type(INT65(1, 0)), I(TYPE::ik_ullong)); // beyond 64 bits
}

TEST_F(TypeUtilities, ContainmentAliasingAndImmutability) {
    TYPE* inner = pkg->mk_struct("IN");
    member(inner, "s", I(TYPE::ik_short));
    laid_out(inner);
    TYPE* outer = pkg->mk_struct("OUT");
    member(outer, "i", INT());
    fkMDATA* in_field = member(outer, "in", pkg->mk_array(inner, false, 2));
    laid_out(outer);
    TYPE* u = pkg->mk_union("UN");
    member(u, "f", F(TYPE::fk_float));
    member(u, "i", INT());
    laid_out(u);

    EXPECT_TRUE(is_type_component_of_type(I(TYPE::ik_short), outer));
    EXPECT_TRUE(is_type_component_of_type(inner, outer));
    EXPECT_FALSE(is_type_component_of_type(F(TYPE::fk_float), outer));
    EXPECT_TRUE(type_is_contained_in_type(inner, outer));
    EXPECT_FALSE(type_is_contained_in_type(outer, outer));
    EXPECT_TRUE(is_field_member_of_type(inner->members(), outer));
    EXPECT_TRUE(is_field_member_of_type(in_field, outer));
    EXPECT_FALSE(is_field_member_of_type(u->members(), outer));
    EXPECT_TRUE(types_contained_in_union(F(TYPE::fk_float), u));
    EXPECT_FALSE(types_contained_in_union(I(TYPE::ik_short), u));

    EXPECT_TRUE(type_may_alias_type(INT(), pkg->mk_qual(INT(), TQ_CONST)));
    EXPECT_TRUE(type_may_alias_type(I(TYPE::ik_short), outer));
    EXPECT_TRUE(type_may_alias_type(F(TYPE::fk_float), INT())); // both in the union
    EXPECT_FALSE(type_may_alias_type(F(TYPE::fk_double), I(TYPE::ik_short)));

    EXPECT_FALSE(type_may_contain_volatile(outer));
    TYPE* vs = pkg->mk_struct("VS");
    member(vs, "v", pkg->mk_qual(INT(), TQ_VOLATILE));
    laid_out(vs);
    EXPECT_TRUE(type_may_contain_volatile(pkg->mk_array(vs, false, 2)));
    EXPECT_TRUE(csu_type_has_only_simple_scalar_members(inner));
    EXPECT_FALSE(csu_type_has_only_simple_scalar_members(outer));
    EXPECT_FALSE(csu_type_has_only_simple_scalar_members(vs));

    TYPE* ci = pkg->mk_qual(INT(), TQ_CONST);
    EXPECT_TRUE(bits_of_var_are_immutable(pkg->mk_array(ci, false, 4), 64, 8, 0));
    EXPECT_FALSE(bits_of_var_are_immutable(pkg->mk_qual(INT(), TQ_CONST | TQ_VOLATILE), 0, 8, 0));
    TYPE* mixed = pkg->mk_struct("MIX");
    member(mixed, "c", ci);
    member(mixed, "m", INT());
    laid_out(mixed);
    EXPECT_TRUE(bits_of_var_are_immutable(mixed, 0, 32, 0));
    EXPECT_FALSE(bits_of_var_are_immutable(mixed, 32, 32, 0));
    EXPECT_FALSE(bits_of_var_are_immutable(mixed, 0, 64, 0));
    EXPECT_TRUE(bits_of_var_are_immutable(mixed, 32, 32, TQ_CONST));
}

// ---- Overflow of integer arithmetic --------------------------------------

using TypeOverflow = TypeTest;

TEST_F(TypeOverflow, Sums) {
    TYPE* sc = pkg->mk_int(TYPE::ik_char, true);
    TYPE* uc = I(TYPE::ik_uchar);
    EXPECT_TRUE(sum_may_overflow(INT65(127), INT65(1), sc));
    EXPECT_FALSE(sum_may_overflow(INT65(-1), INT65(1), sc));
    EXPECT_FALSE(sum_may_overflow(INT65(-128), INT65(127), sc));
    EXPECT_TRUE(sum_may_overflow(INT65(-128), INT65(-1), sc));
    EXPECT_FALSE(sum_may_overflow(INT65(-100), INT65(-28), sc));
    EXPECT_TRUE(sum_may_overflow(INT65(200), INT65(0), sc)); // an operand that does not fit
    EXPECT_TRUE(sum_may_overflow(INT65(255), INT65(1), uc));
    EXPECT_FALSE(sum_may_overflow(INT65(254), INT65(1), uc));
    EXPECT_TRUE(sum_may_overflow(INT65(-1), INT65(0), uc));
    EXPECT_TRUE(sum_may_overflow(INT65::from_unsigned(0xFFFFFFFF), INT65(1), I(TYPE::ik_uint)));
    EXPECT_FALSE(sum_may_overflow(INT65(0x7FFFFFFF), INT65(0), INT()));
    EXPECT_TRUE(sum_may_overflow(INT65(0x7FFFFFFF), INT65(1), INT()));
    TYPE* ll = I(TYPE::ik_llong);
    EXPECT_TRUE(sum_may_overflow(int_type_max(ll), INT65(1), ll));
    EXPECT_TRUE(sum_may_overflow(int_type_min(ll), INT65(-1), ll));
    TYPE* ull = I(TYPE::ik_ullong);
    EXPECT_TRUE(sum_may_overflow(int_type_max(ull), INT65(1), ull));
    EXPECT_FALSE(sum_may_overflow(int_type_max(ull), INT65(0), ull));
}

TEST_F(TypeOverflow, ProductsAndComparisons) {
    TYPE* sc = pkg->mk_int(TYPE::ik_char, true);
    EXPECT_TRUE(prod_may_overflow(INT65(16), INT65(8), sc));
    EXPECT_FALSE(prod_may_overflow(INT65(-16), INT65(8), sc));
    EXPECT_FALSE(prod_may_overflow(INT65(0), INT65(127), sc));
    EXPECT_TRUE(prod_may_overflow(INT65(0), INT65(128), sc)); // the operand itself
    EXPECT_FALSE(prod_may_overflow(INT65(-1), INT65(-127), sc));
    EXPECT_TRUE(prod_may_overflow(INT65(-1), INT65(-128), sc));
    TYPE* ull = I(TYPE::ik_ullong);
    EXPECT_TRUE(prod_may_overflow(INT65(1ll << 32), INT65(1ll << 32), ull));
    EXPECT_FALSE(prod_may_overflow(INT65(1ll << 31), INT65(1ll << 32), ull));
    TYPE* ll = I(TYPE::ik_llong);
    EXPECT_TRUE(prod_may_overflow(INT65(1ll << 32), INT65(1ll << 31), ll));
    EXPECT_FALSE(prod_may_overflow(INT65(-(1ll << 32)), INT65(1ll << 31), ll));
    EXPECT_TRUE(prod_may_overflow(INT65(3037000500ll), INT65(3037000500ll), ll));

    EXPECT_EQ(compare_SLLONG_values(INT65(5), INT65(5), INT()), 0);
    EXPECT_EQ(compare_SLLONG_values(INT65(-5), INT65(5), INT()), -1);
    EXPECT_EQ(compare_SLLONG_values(INT65(5), INT65(-5), INT()), 1);
    // 65-bit: all ones as unsigned is above -1.
    EXPECT_EQ(compare_SLLONG_values(INT65(-1), INT65::from_unsigned(~0ull), ull), -1);
    EXPECT_EQ(
        compare_SLLONG_values(INT65::from_unsigned(1ull << 63), INT65(0x7fffffffffffffffll), ull),
        1);
}

} // namespace
