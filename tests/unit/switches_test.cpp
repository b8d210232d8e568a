#include <gtest/gtest.h>

#include "driver/passes.h"

TEST(Switches, ValuesParseLikeStrtolBaseZero) {
    process_debug_option("debug", "sw_hex=0x10,sw_oct=010,sw_plain,sw_zero=0");
    EXPECT_EQ(pass_debug("sw_hex"), 16);
    EXPECT_EQ(pass_debug("sw_oct"), 8);
    EXPECT_EQ(pass_debug("sw_plain"), 1);
    EXPECT_EQ(pass_debug("sw_zero"), 0);
    EXPECT_EQ(pass_debug("sw_absent"), 0);
}

TEST(Switches, KindsAreSeparateNamespaces) {
    process_debug_option("enable", "sw_kind");
    EXPECT_EQ(pass_enable("sw_kind"), 1);
    EXPECT_EQ(pass_debug("sw_kind"), 0);
    EXPECT_FALSE(pass_disable("sw_kind"));
}

TEST(Switches, LastMentionWins) {
    process_debug_option("debug", "sw_twice=3,sw_twice=5");
    EXPECT_EQ(pass_debug("sw_twice"), 5);
    process_debug_option("debug", "sw_twice=7");
    EXPECT_EQ(pass_debug("sw_twice"), 7);
}

TEST(Switches, DisableIsTheWholeValueNotItsLowByte) {
    process_debug_option("disable", "sw_256=256");
    EXPECT_TRUE(pass_disable("sw_256"));
}

TEST(Switches, EmptyNameBeforeEqualsIsHarmless) {
    process_debug_option("debug", "=4,sw_after");
    EXPECT_EQ(pass_debug(""), 4);
    EXPECT_EQ(pass_debug("sw_after"), 1);
}

TEST(Switches, TableStaysSortedAcrossGrowth) {
    // Past several growth steps, inserted in an order that forces re-sorting.
    for (int i = 249; i >= 0; i--) {
        char spec[64];
        snprintf(spec, sizeof spec, "grow_%03d=%d", i, i + 1);
        process_debug_option("debug", spec);
    }
    for (int i = 0; i < 250; i++) {
        char name[32];
        snprintf(name, sizeof name, "grow_%03d", i);
        ASSERT_EQ(pass_debug(name), i + 1) << name;
    }
}

TEST(Switches, OverlongNameFallsBackToThePrefix) {
    std::string name(600, 'x');
    process_debug_option("enable", name.c_str());
    EXPECT_EQ(pass_enable(""), 1);
}

TEST(Switches, CatalogueObjectsReadTheTable) {
    EXPECT_TRUE(register_option::is_registered("debug:split_odb"));
    EXPECT_TRUE(register_option::is_registered("disable:newinline"));
    EXPECT_TRUE(register_option::is_registered("interference_graph_phi_node_instantiation"));
    EXPECT_FALSE(register_option::is_registered("debug:not_a_switch"));

    register_option opt("debug:catalogue_probe");
    EXPECT_EQ(int(opt), 0);
    opt = 12;
    EXPECT_EQ(pass_debug("catalogue_probe"), 12);
    EXPECT_TRUE(bool(opt));

    // The bare name never matches what the command line writes.
    process_debug_option("enable", "interference_graph_phi_node_instantiation");
    register_option bare("interference_graph_phi_node_instantiation");
    EXPECT_EQ(int(bare), 0);
    EXPECT_EQ(pass_enable("interference_graph_phi_node_instantiation"), 1);
}

TEST(Switches, DuplicateCatalogueNamesShareOneString) {
    const int before = register_option::num;
    register_option a("debug:unroll");
    register_option b("debug:unroll");
    EXPECT_EQ(register_option::num, before);
}
