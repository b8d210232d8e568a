// Option parsing, the accessors' value rules and the global flags.
#include <gtest/gtest.h>

#include <cstring>

#include "driver/driver.h"
#include "driver/options.h"
#include "driver/passes.h"
#include "ir/symtab.h"

namespace {

struct Options : ::testing::Test {
    option_obj file, function_set;
    SYMTAB fn;

    void SetUp() override {
        all_option_sets = {&file, nullptr, &function_set};
        file_options = &file;
        currfunc = nullptr;
        cpu_version = 7;
    }
    void TearDown() override {
        currfunc = nullptr;
        all_option_sets.clear();
        file_options = nullptr;
    }
    static void parse(option_obj& o, const char* text) {
        ASSERT_TRUE(o.process_option(text, false)) << text;
    }
};

} // namespace

TEST_F(Options, DefaultsWhenNothingIsSet) {
    EXPECT_EQ(opt_level(), 1);
    EXPECT_EQ(size_speed_goal(), 4);
    EXPECT_FALSE(code_state());
    EXPECT_FALSE(thumb_2_mode());
    EXPECT_TRUE(fp_add_is_associative());
    EXPECT_FALSE(saturating_add_is_associative());
    EXPECT_EQ(interrupt_threshold(), 0);
    EXPECT_FALSE(use_llvm());
}

TEST_F(Options, OptLevelValues) {
    const std::pair<const char*, int> cases[] = {
        {"O0", 0}, {"O1", 1}, {"O2", 2}, {"O3", 3}, {"-opt_level=4", 4}, {"-opt_level=off", 0}};
    for (auto [text, level] : cases) {
        file.clearopt(OPT_OPT_LEVEL);
        parse(file, text);
        EXPECT_EQ(opt_level(), level) << text;
    }
}

TEST_F(Options, SpeedGoalValuesRoundTrip) {
    for (int goal = 0; goal <= 5; goal++) {
        file.clearopt(OPT_SIZE_SPEED);
        parse(file, ("-opt_for_speed=" + std::to_string(goal)).c_str());
        EXPECT_EQ(size_speed_goal(), goal);
    }
}

TEST_F(Options, AutoInlineFollowsTheOptLevelUnlessGiven) {
    default_o3_auto_inline = 2000;
    EXPECT_EQ(auto_inline(), 0);
    parse(file, "O2");
    EXPECT_EQ(auto_inline(), 20);
    file.clearopt(OPT_OPT_LEVEL);
    parse(file, "O3");
    EXPECT_EQ(auto_inline(), 2000);
    parse(file, "-auto_inline=77");
    EXPECT_EQ(auto_inline(), 77);
}

TEST_F(Options, AFunctionSeesItsOwnOptionSet) {
    parse(file, "O3");
    parse(function_set, "O1");
    fn.extra = 2;
    currfunc = &fn;
    EXPECT_EQ(opt_level(), 1);
    // An absent set falls back to the file's options.
    fn.extra = 1;
    EXPECT_EQ(opt_level(), 3);
    fn.extra = 99;
    EXPECT_EQ(opt_level(), 3);
}

TEST_F(Options, CodeStatePragmaOverridesTheOption) {
    parse(file, "-code_state=16");
    EXPECT_TRUE(code_state());
    static char thirty_two[] = "32";
    static char* args[] = {thirty_two};
    PRAGMA p{PRAGMA_CODE_STATE, 1, args, nullptr};
    fn.pragmas = &p;
    currfunc = &fn;
    EXPECT_FALSE(code_state());
}

TEST_F(Options, ThumbTwoNeedsAThumbTwoProcessor) {
    parse(file, "-code_state=16");
    for (int v : {0, 5, 6, 7}) {
        cpu_version = v;
        EXPECT_FALSE(thumb_2_mode()) << v;
    }
    for (int v : {78, 734, 73, 74}) {
        cpu_version = v;
        EXPECT_TRUE(thumb_2_mode()) << v;
    }
}

TEST_F(Options, FloatingPointModes) {
    parse(file, "-fp_mode=strict");
    EXPECT_FALSE(fp_add_is_associative());
    file.clearopt(OPT_FP_MODE);
    parse(file, "-fp_mode=relaxed");
    EXPECT_TRUE(fp_add_is_associative());
    parse(file, "-saturating_add=associative");
    EXPECT_TRUE(saturating_add_is_associative());
}

TEST_F(Options, UnknownOptionsAreRefused) {
    EXPECT_FALSE(file.process_option("-no_such_thing", false));
    EXPECT_FALSE(file.process_option("O9", false));
    EXPECT_FALSE(file.process_option("x", false));
}

TEST_F(Options, BadValuesEndTheRun) {
    EXPECT_EXIT(file.process_option("-opt_level=7", false), ::testing::ExitedWithCode(1),
                "--opt_level given invalid value: 7");
    EXPECT_EXIT(file.process_option("-max_unroll=1x", false), ::testing::ExitedWithCode(1),
                "--max_unroll given invalid value: 1x");
    EXPECT_EXIT(file.process_option("-neon=yes", false), ::testing::ExitedWithCode(1),
                "--neon given invalid value: yes");
}

TEST_F(Options, InvalidIdsInASetAreCaughtByTheFlags) {
    file.setopt(OPT_OPT_LEVEL, 12);
    EXPECT_EXIT(set_global_flags(&file), ::testing::ExitedWithCode(1),
                "--opt_level given invalid value: 12");
    file.clearopt(OPT_OPT_LEVEL);
    file.setopt(OPT_SIZE_SPEED, 3);
    EXPECT_EXIT(set_global_flags(&file), ::testing::ExitedWithCode(1),
                "--size_speed_goal given invalid value:  3");
}

TEST_F(Options, CommandLinePairsOverrideAndListsAccumulate) {
    parse(file, "O3");
    parse(file, "-debug=a=1");
    option_obj cmd;
    parse(cmd, "O0");
    parse(cmd, "-debug=b");
    std::vector<std::pair<int, std::string>> pairs;
    cmd.export_option_pairs(pairs);
    file.apply_pairs(pairs);
    EXPECT_EQ(opt_level(), 0);
    ASSERT_EQ(file.getargcount(OPT_DEBUG_SWITCHES), 2);
    EXPECT_STREQ(file.getstrarg(OPT_DEBUG_SWITCHES, 0), "a=1");
    EXPECT_STREQ(file.getstrarg(OPT_DEBUG_SWITCHES, 1), "b");
}

TEST_F(Options, GlobalFlagsAndTheirDerivedRules) {
    reset_global_flags();
    EXPECT_EQ(program_mode, -1);
    EXPECT_EQ(max_unrolled_loop_size, 195);
    EXPECT_EQ(cache_sys_funinfo, 2);
    EXPECT_EQ(strict_fp, 1);

    parse(file, "-dwim");
    parse(file, "-alias_vars");
    parse(file, "-cpu=v7a");
    parse(file, "-max_unroll=0x40");
    parse(file, "-no_sys_funinfo");
    parse(file, "-enable=from_flags=3");
    set_global_flags(&file);
    // dwim clears alias_vars although the option set it.
    EXPECT_EQ(alias_vars, 0);
    EXPECT_EQ(pointer_args_are_disjoint, 1);
    EXPECT_EQ(loop_increments_are_not_zero, 1);
    EXPECT_EQ(cpu_version, 73);
    EXPECT_EQ(max_unrolled_loop_size, 64);
    EXPECT_EQ(cache_sys_funinfo, 0);
    EXPECT_EQ(pass_enable("from_flags"), 3);

    option_obj o0;
    parse(o0, "O0");
    reset_global_flags();
    set_global_flags(&o0);
    EXPECT_EQ(alias_vars, 1);
}

TEST_F(Options, AuxFlagsNeedTheDebugLevel) {
    reset_global_flags();
    parse(file, "-aux=3");
    set_global_flags(&file);
    EXPECT_EQ(aux_cmd_flag[3], 0);
    parse(file, "-debug_level=1");
    set_global_flags(&file);
    EXPECT_EQ(aux_cmd_flag[3], 1);
}
