// The step list, the round walk with its barriers, the call-graph order and
// the placeholders that must not be empty.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "alias/alias.h"
#include "driver/driver.h"
#include "driver/options.h"
#include "driver/passes.h"
#include "inline/funinfo.h"
#include "ir/bblk.h"
#include "ir/symtab.h"
#include "md/md.h"
#include "simplify/simplify.h"

namespace {

const std::vector<pass*>& the_step_list() {
    static bool built = false;
    if (!built) {
        build_step_list();
        built = true;
    }
    return step_list;
}

SYMTAB* make_function(const char* name, unsigned order) {
    SYMTAB* s = new SYMTAB;
    s->name = strdup(name);
    s->order = order;
    make_FUNINFO(skip_name_prefix(name))->symbol = s;
    return s;
}

struct DriverState : ::testing::Test {
    void SetUp() override {
        functions.clear();
        steps_table.clear();
        clear_FUNINFO_table();
        currfunc = nullptr;
        currfuninfo = nullptr;
        fileinfo = FILEINFO{};
        static option_obj defaults;
        all_option_sets.assign(1, &defaults);
        file_options = &defaults;
    }
    void TearDown() override {
        functions.clear();
        steps_table.clear();
        clear_FUNINFO_table();
    }
    void set_opt_level(const char* level) {
        static option_obj opts;
        opts.clearopt(OPT_OPT_LEVEL);
        ASSERT_TRUE(opts.process_option((std::string("-opt_level=") + level).c_str(), false));
        all_option_sets.assign(1, &opts);
        file_options = &opts;
    }
};

} // namespace

TEST(StepList, HasTheFixedNamesKindsAndSerials) {
    const std::vector<pass*>& steps = the_step_list();
    const char* const names[] = {"pass 1",
                                 "intermission",
                                 "pass 2 header",
                                 "set call-graph order",
                                 "pass 2 inits",
                                 "CPS",
                                 "early LIR",
                                 "early fast_CP(4,1)",
                                 "MVP global assertions",
                                 "intraprocedural MVP",
                                 "value propagation for SIMD",
                                 "explode auto structs",
                                 "non-DD clone SSA NASSERTs",
                                 "non-DD SSA CP",
                                 "non-DD SSA EDA",
                                 "SSA RP with benign loads",
                                 "expand bitfields",
                                 "fast_CP(0,1)",
                                 "add profile loop annotations",
                                 "CD vectorizations",
                                 "forward_substitution",
                                 "SSA_hoist",
                                 "SSA_NASSERTs",
                                 "SSA_propagate",
                                 "SSA_deadasg",
                                 "SSA_reg_promote",
                                 "loop_assertions",
                                 "undeltafy",
                                 "add_downcounters",
                                 "collapse_loops",
                                 "circular_addressing",
                                 "loop_if_interchange",
                                 "cd_unroll_by_request",
                                 "cd_unroll_completely_for_speed",
                                 "unroll_and_jam",
                                 "cd_unroll_for_speed",
                                 "unroll_completely_for_SP",
                                 "PT_info",
                                 "old_SIMD",
                                 "explode_arrays",
                                 "unroll_for_SP",
                                 "alias_advice",
                                 "reduction_interleaving",
                                 "value_propagation",
                                 "DIVs_by_ICONs",
                                 "SSA_propagate_vector",
                                 "SSA_deadasg",
                                 "SSA_reg_promote_with_simpcfg",
                                 "CD ILP",
                                 "late fast_CP(4,1)",
                                 "global opts",
                                 "expand cluster refs",
                                 "local opts",
                                 "late LIR"};
    ASSERT_EQ(steps.size(), std::size(names));
    const int first_serial = steps.front()->serial();
    for (size_t i = 0; i < steps.size(); i++) {
        EXPECT_EQ(steps[i]->name, names[i]) << i;
        EXPECT_EQ(steps[i]->serial(), first_serial + int(i)) << names[i];
        EXPECT_EQ(steps[i]->is_barrier(), i >= 1 && i <= 3) << names[i];
        EXPECT_NE(steps[i]->callback, nullptr) << names[i];
    }
    // The two "SSA_deadasg" steps share one callback.
    EXPECT_EQ(steps[24]->callback, steps[46]->callback);
    EXPECT_NE(steps[24], steps[46]);
}

namespace {

std::vector<std::string> trace;
void record(const char* what) {
    trace.push_back(std::string(what) + (currfunc ? std::string("(") + currfunc->name + ")" : ""));
}

} // namespace

TEST_F(DriverState, RoundsStopAtBarriersWhichRunOnceWithoutAFunction) {
    std::vector<pass*> list = {
        new pass("A", [] { record("A"); }),         new barrier_pass("B", [] { record("B"); }),
        new pass("C", [] { record("C"); }),         new pass("D", [] { record("D"); }),
        new barrier_pass("E", [] { record("E"); }), new pass("F", [] { record("F"); }),
    };
    SYMTAB* f = make_function("f", 0);
    SYMTAB* g = make_function("g", 1);
    functions = {f, g};
    for (SYMTAB* fn : functions)
        steps_table[fn].assign(list.begin(), list.end());

    trace.clear();
    run_step_rounds();
    const std::vector<std::string> expected = {"A(f)", "A(g)", "B", "C(f)", "D(f)",
                                               "C(g)", "D(g)", "E", "F(f)", "F(g)"};
    EXPECT_EQ(trace, expected);
    EXPECT_TRUE(steps_table[f].empty());
    EXPECT_TRUE(steps_table[g].empty());
    EXPECT_EQ(currfunc, nullptr);
    EXPECT_EQ(currfuninfo, nullptr);
}

TEST_F(DriverState, ARecordNamingAnotherSymbolThanTheDefinitionIsFatal) {
    SYMTAB* decl = make_function("h", 0);
    SYMTAB* def = new SYMTAB(*decl);
    functions = {def};
    steps_table[def] = {new pass("X", [] {})};
    EXPECT_EXIT(run_step_rounds(), ::testing::ExitedWithCode(1), "terminated abnormally");
}

TEST_F(DriverState, DifferentBarriersAtOneRoundAreAFatalError) {
    SYMTAB* f = make_function("f", 0);
    SYMTAB* g = make_function("g", 1);
    functions = {f, g};
    steps_table[f] = {new barrier_pass("B1", [] {})};
    steps_table[g] = {new barrier_pass("B2", [] {})};
    EXPECT_EXIT(run_step_rounds(), ::testing::ExitedWithCode(1), "terminated abnormally");
}

TEST_F(DriverState, FunctionsAddedDuringARoundWithNoStepsAreHarmless) {
    SYMTAB* f = make_function("f", 0);
    static SYMTAB* late;
    late = make_function("late", 1);
    functions = {f};
    steps_table[f] = {new pass("grow", [] { functions.push_back(late); }),
                      new barrier_pass("B", [] { record("B"); })};
    trace.clear();
    run_step_rounds();
    EXPECT_EQ(trace, std::vector<std::string>{"B"});
}

namespace {

// Builds the call-graph result from functions given in its list order.
void set_call_graph(std::initializer_list<SYMTAB*> order) {
    static CALL_GRAPH cg;
    FUNLIST* list = nullptr;
    std::vector<SYMTAB*> v(order);
    for (auto it = v.rbegin(); it != v.rend(); ++it)
        list = mkFUNLIST(find_FUNINFO(skip_name_prefix((*it)->name)), list);
    cg.functions = list;
    fileinfo.call_graph = &cg;
}

std::vector<std::string> function_names() {
    std::vector<std::string> names;
    for (SYMTAB* s : functions)
        names.emplace_back(s->name);
    return names;
}

} // namespace

TEST_F(DriverState, CallGraphOrderBelowLevelTwoIsSourceOrder) {
    set_opt_level("1");
    SYMTAB* a = make_function("a", 3);
    SYMTAB* b = make_function("b", 1);
    SYMTAB* c = make_function("c", 2);
    SYMTAB* d = make_function("d", 1);
    set_call_graph({a, b, c, d});
    step_set_call_graph_order();
    // Equal ordinals keep their list order.
    EXPECT_EQ(function_names(), (std::vector<std::string>{"b", "d", "c", "a"}));
}

TEST_F(DriverState, CallGraphOrderFromLevelTwoIsTheReversedList) {
    set_opt_level("2");
    SYMTAB* a = make_function("a", 0);
    SYMTAB* b = make_function("b", 1);
    SYMTAB* c = make_function("c", 2);
    set_call_graph({a, b, c});
    step_set_call_graph_order();
    EXPECT_EQ(function_names(), (std::vector<std::string>{"c", "b", "a"}));
}

TEST_F(DriverState, CallGraphOrderDropsFunctionsThatAreNotWritten) {
    set_opt_level("2");
    SYMTAB* a = make_function("a", 0);
    SYMTAB* b = make_function("b", 1);
    SYMTAB* c = make_function("c", 2);
    SYMTAB* d = make_function("d", 3);
    find_FUNINFO("b")->flags = FUN_DROPPED;
    find_FUNINFO("c")->flags = FUN_NOT_WRITTEN;
    find_FUNINFO("d")->flags = FUN_NOT_WRITTEN | FUN_NOT_WRITTEN_WITH_0X40;
    set_call_graph({a, b, c, d});
    step_set_call_graph_order();
    EXPECT_EQ(function_names(), (std::vector<std::string>{"d", "a"}));
}

TEST_F(DriverState, NoCallGraphResultMeansNoFunctions) {
    functions = {make_function("a", 0)};
    step_set_call_graph_order();
    EXPECT_TRUE(functions.empty());
}

// The placeholders below stand for analyses not built yet. Each must still
// give the answer the rest of the driver depends on.

TEST_F(DriverState, CallGraphPlaceholderListsEveryFunctionInFileOrder) {
    set_opt_level("1");
    SYMTAB* a = make_function("a", 0);
    SYMTAB* b = make_function("b", 1);
    SYMTAB* c = make_function("c", 2);
    functions = {a, b, c, b};
    step_intermission();
    ASSERT_NE(fileinfo.call_graph, nullptr);
    std::vector<std::string> names;
    for (FUNLIST* l = fileinfo.call_graph->functions; l; l = l->next)
        names.emplace_back(l->fun->symbol->name);
    EXPECT_EQ(names, (std::vector<std::string>{"a", "b", "c"}));
    step_set_call_graph_order();
    EXPECT_EQ(function_names(), (std::vector<std::string>{"a", "b", "c"}));
}

TEST_F(DriverState, AliasMarkingPlaceholderMarksEveryAddressTakenSymbol) {
    SYMTAB global, local, plain;
    global.state = SYM_ADDRESS_TAKEN;
    local.state = SYM_ADDRESS_TAKEN;
    global_symbols = &global;
    currfuninfo = make_FUNINFO("fn");
    currfuninfo->symbols = &local;
    local.next = &plain;
    mark_aliased_vector_and_complex_symbols(0, 1);
    EXPECT_TRUE(global.aliased);
    EXPECT_TRUE(local.aliased);
    EXPECT_FALSE(plain.aliased);
    global_symbols = nullptr;
}

TEST(Placeholders, NoBuiltinHasADescriptor) {
    EXPECT_EQ(find_BIF_descriptor("__builtin_expect"), nullptr);
}

namespace {

std::string read_file(const std::string& path) {
    std::string text;
    if (FILE* f = fopen(path.c_str(), "r")) {
        char buf[4096];
        size_t n;
        while ((n = fread(buf, 1, sizeof buf, f)) > 0)
            text.append(buf, n);
        fclose(f);
    }
    return text;
}

} // namespace

TEST_F(DriverState, EveryStepIsBracketedAndMeasuredInTheLog) {
    const std::string dir = ::testing::TempDir();
    const std::string log = dir + "steps.odb";
    fdebug = fopen(log.c_str(), "w");
    print_debug = 1;
    pass* p = new pass("measured", [] { static std::vector<char> keep(1 << 16); });
    p->run();
    fclose(fdebug);
    fdebug = nullptr;
    print_debug = 0;

    const std::string text = read_file(log);
    const std::string n = std::to_string(p->serial());
    EXPECT_NE(text.find("\n\n\t\t\t---------- ENTERING step " + n + " 'measured' ----------\n"),
              std::string::npos)
        << text;
    EXPECT_NE(text.find("sec for pass.)\n"), std::string::npos) << text;
    EXPECT_NE(text.find(" net bytes allocated.)\n"), std::string::npos) << text;
    EXPECT_NE(text.find("\n\n\n\t\t\t---------- EXITING step " + n + " 'measured' ----------\n"),
              std::string::npos)
        << text;
}

TEST_F(DriverState, SplitLogsGiveEachFunctionItsOwnFileUntilItsTrailer) {
    const std::string dir = ::testing::TempDir();
    snprintf(i_file_name, sizeof i_file_name, "%sunit.if", dir.c_str());
    const std::string main_log = dir + "unit.odb";
    fdebug = fopen(main_log.c_str(), "w");
    print_debug = 1;
    process_debug_option("debug", "split_odb");

    SYMTAB* f = make_function("split_fn", 0);
    functions = {f};
    steps_table[f] = {new pass("in own log", [] {}), new pass("trailer", step_pass_2_trailer)};
    FILE* before = fdebug;
    run_step_rounds();
    EXPECT_EQ(fdebug, before);

    process_debug_option("debug", "split_odb=0");
    fclose(fdebug);
    fdebug = nullptr;
    print_debug = 0;

    const std::string own = read_file(dir + "unit.split_fn.odb");
    EXPECT_NE(own.find("'in own log'"), std::string::npos) << own;
    const std::string main_text = read_file(main_log);
    EXPECT_NE(main_text.find(">>>> SWITCHING LOG TO " + dir + "unit.split_fn.odb\n"),
              std::string::npos)
        << main_text;
    EXPECT_EQ(main_text.find("'in own log'"), std::string::npos) << main_text;
}
