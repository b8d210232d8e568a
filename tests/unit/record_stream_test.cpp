// The record stream: every record kind read with its layout, the order of the
// callbacks, the symbol tables' numbering, and the fatal paths of damage.
#include <gtest/gtest.h>

#include <fcntl.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

#include "driver/client.h"
#include "driver/driver.h"
#include "driver/options.h"
#include "ifile/ifile.h"
#include "inline/funinfo.h"
#include "ir/bblk.h"
#include "ir/ir.h"
#include "ir/node.h"
#include "ir/symtab.h"
#include "ir/types.h"
#include "record_builder.h"

namespace {

using namespace record_builder;

std::vector<std::string> calls;
void record_call(const char* call) { calls.push_back(call); }
void print_call(const char* call) { printf("%s\n", call); }

// The first word of each call: the callback's name.
std::vector<std::string> names_of(const std::vector<std::string>& all) {
    std::vector<std::string> names;
    for (const std::string& c : all)
        names.push_back(c.substr(0, c.find(' ')));
    return names;
}

constexpr int ASG_OP = 58;
constexpr int UCALL_OP = 72;
constexpr int BRANCH_OP = 114;

struct RecordStream : ::testing::Test {
    IF_CLIENT client;
    I_FILE* reader = nullptr;
    std::string path;
    TYPE_PKG* saved = nullptr;

    void SetUp() override {
        char pattern[] = "/tmp/record-stream-XXXXXX";
        const int fd = mkstemp(pattern);
        ASSERT_GE(fd, 0);
        close(fd);
        path = pattern;
        saved = tp;
        tp = new TYPE_PKG;
        init_types();
        init_opcode_tables();
        if_node_table_init();
        init_symbols();
        clear_FUNINFO_table();
        functions.clear();
        currfunc = nullptr;
        currfuninfo = nullptr;
        calls.clear();
    }
    void TearDown() override {
        if (reader)
            reader->if_close(false, false);
        remove(path.c_str());
        functions.clear();
        currfunc = nullptr;
        currfuninfo = nullptr;
        tp = saved;
    }

    // Opens the file; the walk is the test's.
    I_FILE* open_image(const FILE_IMAGE& image) {
        const Bytes bytes = image.build();
        FILE* f = fopen(path.c_str(), "w+b");
        fwrite(bytes.data(), 1, bytes.size(), f);
        fflush(f);
        rewind(f);
        reader = I_FILE::if_open(f, &client);
        EXPECT_NE(reader, nullptr);
        if_type_init(tp, reader);
        reader->trace = record_call;
        return reader;
    }

    // Opens the file and reads the sections before the main stream.
    I_FILE* open_at_stream(const FILE_IMAGE& image) {
        I_FILE* r = open_image(image);
        r->if_read_file_names();
        r->if_read_type_defs();
        r->if_read_globals();
        r->if_read_all_init();
        return r;
    }

    I_FILE* read_all(const FILE_IMAGE& image) {
        I_FILE* r = open_image(image);
        r->if_read_file();
        return r;
    }

    // Runs the whole walk in a child; its exit status and standard output,
    // where the trace goes too.
    std::pair<int, std::string> read_in_child(const FILE_IMAGE& image) {
        const Bytes bytes = image.build();
        FILE* f = fopen(path.c_str(), "wb");
        fwrite(bytes.data(), 1, bytes.size(), f);
        fclose(f);
        const std::string out = path + ".out";
        fflush(stdout);
        pid_t pid = fork();
        if (pid == 0) {
            alarm(10);
            int fd = open(out.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
            dup2(fd, STDOUT_FILENO);
            I_FILE* r = I_FILE::if_open(fopen(path.c_str(), "rb"), &client);
            if (!r)
                _exit(3);
            if_type_init(tp, r);
            r->trace = print_call;
            r->if_read_file();
            fflush(stdout);
            _exit(0);
        }
        int status = 0;
        waitpid(pid, &status, 0);
        FILE* o = fopen(out.c_str(), "rb");
        std::string text;
        for (int c; o && (c = getc(o)) != EOF;)
            text.push_back(static_cast<char>(c));
        if (o)
            fclose(o);
        remove(out.c_str());
        return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, text};
    }
};

// A function symbol, and a plain int, as globals of the file.
Bytes func_symbol(const char* name, int pragmas = 0) {
    SYM s;
    s.pragmas = pragmas;
    s.name = name;
    s.size = 0;
    s.sclass = SC_GLOBAL_DEF;
    s.type = FUNC_ID;
    return symbol(s);
}
Bytes int_symbol(const char* name, int sclass, int pragmas = 0) {
    SYM s;
    s.name = name;
    s.sclass = sclass;
    s.type = INT_ID;
    s.pragmas = pragmas;
    return symbol(s);
}
// local = 1
Bytes assign_local(uint32_t index, int value) {
    return stmt(cat({node(ASG_OP, INT_ID), name(INT_ID, 2, index), icon(INT_ID, value)}));
}

TEST_F(RecordStream, SmallFileCallsInFileOrderAndNumbersSymbols) {
    FILE_IMAGE image;
    image.file_names = {"a.c"};
    image.globals = cat({func_symbol("f"), int_symbol("g", SC_GLOBAL_DEF)});
    image.inits = init(1, {icon(INT_ID, 7), endinit()});
    image.stream =
        cat({comment("hello"), begin_func(0, Body().psn(1, 3, 1)), int_symbol("p", SC_PARAM),
             end_args(), int_symbol("l", SC_AUTO), end_locals(), assign_local(1, 1), label(5),
             begin_block(), int_symbol("b", SC_AUTO), assign_local(2, 2), end_block(),
             end_func(Body().psn(1, 9, 1))});
    I_FILE* r = read_all(image);

    const std::vector<std::string> expected = {
        "cl_symbol_create", "cl_symbol_def", "cl_symbol_create", "cl_symbol_def",
        "cl_symbol_init",   "cl_comment",    "cl_begin_func",    "cl_symbol_create",
        "cl_symbol_def",    "cl_end_args",   "cl_symbol_create", "cl_symbol_def",
        "cl_end_locals",    "cl_expr",       "cl_label",         "cl_begin_block",
        "cl_symbol_create", "cl_symbol_def", "cl_expr",          "cl_end_block",
        "cl_end_func"};
    EXPECT_EQ(names_of(calls), expected);
    EXPECT_EQ(calls[4], "cl_symbol_init g");
    EXPECT_EQ(calls[6], "cl_begin_func f");
    EXPECT_EQ(calls[15], "cl_begin_block 3");

    // Globals by record order with scope 0; locals by order within the
    // function, with the level at which they were declared.
    ASSERT_EQ(r->global_count, 2u);
    EXPECT_STREQ(r->globals[1]->name, "g");
    EXPECT_EQ(r->globals[1]->file_level, 0u);
    EXPECT_EQ(r->globals[1]->file_index, 1u);
    ASSERT_EQ(r->local_count, 3u);
    const char* names[] = {"p", "l", "b"};
    for (unsigned i = 0; i < 3; i++) {
        EXPECT_STREQ(r->locals[i]->name, names[i]);
        EXPECT_EQ(r->locals[i]->file_level, i + 1);
        EXPECT_EQ(r->locals[i]->file_index, i);
    }
    EXPECT_EQ(r->lex_level, 0);

    // The file's sizes are bits; the symbol table's are bytes.
    SYMTAB* g = r->globals[1];
    EXPECT_EQ(g->size, 4u);
    EXPECT_EQ(g->align, 32u);
    EXPECT_TRUE(g->state & SYM_HAS_INIT);
    ASSERT_NE(g->init, nullptr);
    EXPECT_EQ(g->init->tree->op, ICON);
    ASSERT_NE(g->init->next, nullptr);
    EXPECT_EQ(g->init->next->tree->op, ENDINIT);
    EXPECT_EQ(g->init->next->next, nullptr);
    // Below level 3 a changeable global is pinned.
    EXPECT_EQ(g->qual & SQ_PINNED, SQ_PINNED);

    ASSERT_EQ(functions.size(), 1u);
    EXPECT_EQ(functions.front(), r->globals[0]);
    FUNINFO* f = find_FUNINFO("f");
    ASSERT_NE(f, nullptr);
    EXPECT_TRUE(f->defined);
    EXPECT_STREQ(curr_file, "a.c");
}

TEST_F(RecordStream, LocalNumberingRestartsInEachFunctionAndTablesGrow) {
    FILE_IMAGE image;
    Bytes globals = cat({func_symbol("f1"), func_symbol("f2")});
    for (int i = 0; i < 30; i++)
        globals = cat({globals, int_symbol(("g" + std::to_string(i)).c_str(), SC_GLOBAL_DEF)});
    image.globals = globals;
    Bytes first = cat({begin_func(0), end_args()});
    for (int i = 0; i < 45; i++)
        first = cat({first, int_symbol(("a" + std::to_string(i)).c_str(), SC_AUTO)});
    image.stream = cat({first, end_locals(), end_func(), begin_func(1), end_args(),
                        int_symbol("only", SC_AUTO), end_locals(), assign_local(0, 3)});
    I_FILE* r = open_at_stream(image);
    ASSERT_EQ(r->global_count, 32u);
    EXPECT_GE(r->global_capacity, 32u);
    EXPECT_EQ(r->globals[31]->file_index, 31u);
    while (r->if_read_record() != IF_END_FUNC) {
    }
    EXPECT_EQ(r->local_count, 45u);
    EXPECT_EQ(r->locals[44]->file_index, 44u);
    EXPECT_STREQ(r->locals[44]->name, "a44");
    for (int i = 0; i < 5; i++)
        r->if_read_record();
    // The second function's statement names its own local 0.
    ASSERT_EQ(r->local_count, 1u);
    EXPECT_STREQ(r->locals[0]->name, "only");
    ASSERT_NE(currfuninfo->stmts, nullptr);
    NODE* asg = currfuninfo->stmts->tree;
    ASSERT_EQ(asg->op, ASG_OP);
    EXPECT_EQ(asg->left->name_symbol(), r->locals[0]);
}

TEST_F(RecordStream, LexicalLevelFollowsFunctionAndBlockRecords) {
    FILE_IMAGE image;
    image.globals = func_symbol("f");
    image.stream = cat({begin_func(0), end_args(), end_locals(), begin_block(), begin_block(),
                        end_block(), end_block(), end_func()});
    I_FILE* r = open_at_stream(image);
    const int levels[] = {1, 2, 2, 3, 4, 3, 2, 0};
    for (int expected : levels) {
        r->if_read_record();
        EXPECT_EQ(r->lex_level, expected) << calls.back();
    }
    EXPECT_EQ(r->if_read_record(), if_end_kind);
}

// Each record that the optimizer drops is still read field by field: values
// of several LEB128 bytes, and signed fields, come through unchanged.
TEST_F(RecordStream, DroppedRecordsAreReadWithTheirLayout) {
    FILE_IMAGE image;
    image.file_names = {"a.c"};
    image.globals = cat({func_symbol("f"), int_symbol("g", SC_GLOBAL_DEF)});
    image.stream =
        cat({begin_func(0), end_args(), end_locals(), loop(1, 300, 3, 70000, 5, 0xFFFF),
             in_loop(200, -1, -2, 9), dep_vector(129, 1, {{2, 3}, {4, -4}}), dep_edge(1000, 2, 3),
             mbank(1, 2, 3, 4, 200000), ldspec_induct(7, 300, -5, INT_ID, 0, 1),
             ldspec_rand(8, 1, 2, INT_ID, -1, 0), ldspec_region(9, 400), func_info(-3),
             ir_begin(1, -200, -1, 4, Body().psn(1, 2, 3)), ir_ins({1, 2, 3, 4}, Body().no_psn()),
             ir_end(), end_func()});
    read_all(image);
    const std::vector<std::string> dropped(calls.begin() + 7, calls.end() - 1);
    const std::vector<std::string> expected = {"cl_loop_def 1 300 3 70000 5 65535",
                                               "cl_loop_header 200 -1 -2 9",
                                               "cl_dd_vector 129 1 2 2 -4",
                                               "cl_dd_edge 1000 2 3",
                                               "cl_mbank 1 2 3 4 200000",
                                               "cl_ldspec_induct 7 300 -5 g",
                                               "cl_ldspec_rand 8 1 2 -",
                                               "cl_ldspec_region 9 400",
                                               "cl_func_info -3",
                                               "cl_ir_begin_func 1 -200 -1 4",
                                               "cl_ir_ins 4",
                                               "cl_ir_end_func"};
    EXPECT_EQ(dropped, expected);
    EXPECT_EQ(calls.back(), "cl_end_func");
}

TEST_F(RecordStream, PragmasOptionsSourcesAndBareTrees) {
    FILE_IMAGE image;
    image.globals = cat({int_symbol("g", SC_GLOBAL_DEF, 2), pragma(95, {}),
                         pragma(PRAGMA_SYM_IS_REFERENCED, {"x", "y"})});
    image.stream = cat({pragma(40, {"file"}), source("m.c"), icon(INT_ID, 1),
                        record(IF_OPTION_SET, Body().u(3).u(1).str("-O2")), comment("; gone"),
                        comment("kept")});
    I_FILE* r = read_all(image);
    const std::vector<std::string> expected = {"cl_symbol_create g size=32 align=32 offset=0 "
                                               "class=2 qual=0x0 file_offset=0 extra=0 line=0",
                                               "cl_pragma g 95 0",
                                               "cl_pragma g 52 2 x",
                                               "cl_symbol_def g",
                                               "cl_pragma - 40 1 file",
                                               "cl_source m.c",
                                               "cl_comment ; gone",
                                               "cl_comment kept"};
    EXPECT_EQ(calls, expected);
    // The last pragma read heads the symbol's list.
    SYMTAB* g = r->globals[0];
    ASSERT_NE(g->pragmas, nullptr);
    EXPECT_EQ(g->pragmas->kind, PRAGMA_SYM_IS_REFERENCED);
    ASSERT_EQ(g->pragmas->nargs, 2);
    EXPECT_STREQ(g->pragmas->args[1], "y");
    ASSERT_NE(g->pragmas->next, nullptr);
    EXPECT_EQ(g->pragmas->next->kind, 95);
}

// What the optimizer makes of a function's records before its blocks are built.
TEST_F(RecordStream, ClientStatementsOfAFunctionBody) {
    FILE_IMAGE image;
    image.file_names = {"a.c"};
    image.globals = func_symbol("f");
    SYM p27;
    p27.name = "p";
    p27.sclass = SC_PARAM_27;
    p27.type = INT_ID;
    image.stream =
        cat({begin_func(0), symbol(p27), end_args(), int_symbol("i", SC_AUTO), end_locals(),
             comment("; gone"), comment("kept"), assembly("nop", Body().psn(1, 4, 2)),
             pragma(40, {"here"}), stmt(cat({node(110, INT_ID, Body().u(77)), icon(INT_ID, 5)})),
             stmt(cat({node(ENDLOOP, 0), name(INT_ID, 2, 1), lbl(3)})),
             stmt(cat({node(LOOP_OP, 0), lbl(9), icon(INT_ID, 0)})),
             stmt(cat({node(NASSERT, INT_ID), node(ASG_OP, INT_ID), name(INT_ID, 2, 1),
                       icon(INT_ID, 1)})),
             stmt(cat({node(NASSERT, INT_ID), name(INT_ID, 2, 1)}))});
    I_FILE* r = open_at_stream(image);
    for (int i = 0; i < 14; i++)
        r->if_read_record();
    EXPECT_EQ(r->locals[0]->sclass, SC_PARAM);
    EXPECT_EQ(currfuninfo->flags & 0x40022u, 0x40022u);

    std::vector<NODE*> body; // in source order
    for (LIST* l = currfuninfo->stmts; l; l = l->next)
        body.insert(body.begin(), l->tree);
    ASSERT_EQ(body.size(), 8u);
    EXPECT_EQ(body[0]->op, ASM);
    EXPECT_STREQ(body[0]->text, "kept");
    EXPECT_EQ(body[0]->value, INT65(47));
    EXPECT_EQ(body[1]->op, ASM);
    EXPECT_STREQ(body[1]->text, "nop");
    EXPECT_EQ(body[1]->value, INT65(36));
    EXPECT_EQ(currfuninfo->stmts->next->next->next->next->next->next->psn->line, 4u);
    ASSERT_EQ(body[2]->op, PPRAGMA);
    EXPECT_EQ(body[2]->pragma->kind, 40);
    // The profile count moves to the child, and the count node goes.
    EXPECT_EQ(body[3]->op, ICON);
    EXPECT_EQ(body[3]->get_edge_profile_value(), 77u);
    // ENDLOOP: branch back while the decremented counter is not below 0.
    ASSERT_EQ(body[4]->op, CBRANCH);
    ASSERT_EQ(body[4]->left->op, LT);
    ASSERT_EQ(body[4]->left->left->op, MINUSASG);
    EXPECT_EQ(body[4]->left->left->left->name_symbol(), r->locals[1]);
    EXPECT_EQ(body[4]->left->left->right->value, INT65(1));
    EXPECT_EQ(body[4]->left->right->value, INT65(0));
    EXPECT_EQ(body[4]->right->label_value(), 3);
    EXPECT_EQ(body[5]->op, LABELDEF);
    EXPECT_EQ(body[5]->label_value(), 9);
    // An assertion with an effect of its own is dropped; a plain one stays.
    EXPECT_EQ(body[6]->op, ICON);
    EXPECT_EQ(body[6]->value, INT65(0));
    EXPECT_EQ(body[7]->op, NASSERT);
}

TEST_F(RecordStream, PragmasOfSymbolsSetFlagsAndPins) {
    FILE_IMAGE image;
    image.globals = cat({func_symbol("f", 1), pragma(4, {}), func_symbol("h", 1),
                         pragma(PRAGMA_FUNC_ESPEC, {"a", "0"}), int_symbol("d", SC_EXTERN_DECL, 1),
                         pragma(PRAGMA_SYM_VISIBILITY, {"protected"})});
    image.stream = cat({begin_func(0), end_args(), int_symbol("l", SC_AUTO, 1),
                        pragma(PRAGMA_SYM_IS_REFERENCED, {}), end_locals()});
    no_outside_writers = 1;
    I_FILE* r = open_at_stream(image);
    EXPECT_EQ(find_FUNINFO("f")->flags & 0x222u, 0x222u);
    // A throw clause whose second argument is "0" changes nothing.
    EXPECT_EQ(find_FUNINFO("h")->flags & 0x222u, 0u);
    EXPECT_EQ(no_outside_writers, 0);
    for (int i = 0; i < 4; i++)
        r->if_read_record();
    // A local is not pinned by its level, only by the pragma.
    EXPECT_EQ(r->locals[0]->qual & SQ_PINNED, SQ_PINNED);
}

TEST_F(RecordStream, ExceptionTableIsSortedAndRenumbered) {
    FILE_IMAGE image;
    image.globals = cat({func_symbol("f"), func_symbol("h")});
    // Entries 10, 5 and 7 take places 3, 1 and 2 behind the zero entry.
    image.stream = cat({begin_func(0), end_args(), end_locals(),
                        stmt(cat({node(UCALL_OP, INT_ID, Body().u(7)), name(FUNC_ID, 0, 1)})),
                        eht(3), eht_entry(10, 0, 5, 7), eht_entry(5, 2, 10, 2),
                        eht_catch({{"int", 1, true}, {"char", 300, false}}), eht_entry(7, 1, 0, 5),
                        stmt(icon(INT_ID, 42)), end_func()});
    I_FILE* r = open_at_stream(image);
    for (int i = 0; i < 5; i++)
        r->if_read_record();
    EXPECT_EQ(calls.back(), "cl_func_eht 3");

    const std::vector<EHT_ENTRY>& table = function_eht(currfuninfo);
    ASSERT_EQ(table.size(), 4u);
    EXPECT_EQ(table[0].first, 0u);
    EXPECT_EQ(table[1].first, 5u);
    EXPECT_EQ(table[2].first, 7u);
    EXPECT_EQ(table[3].first, 10u);
    EXPECT_EQ(table[3].second, 1u);
    EXPECT_EQ(table[3].third, 2u);
    // A catch entry's third number counts its clauses and stays.
    EXPECT_EQ(table[1].second, 3u);
    EXPECT_EQ(table[1].third, 2u);
    ASSERT_NE(table[1].catches, nullptr);
    EXPECT_STREQ(table[1].catches[1].type_name, "char");
    EXPECT_EQ(table[1].catches[1].value, 300u);
    EXPECT_FALSE(table[1].catches[1].flag);
    EXPECT_TRUE(table[1].catches[0].flag);
    ASSERT_NE(table[2].expr, nullptr);
    EXPECT_EQ(table[2].expr->op, ICON);
    EXPECT_EQ(table[2].third, 1u);
    // The call's id follows its entry.
    EXPECT_EQ(currfuninfo->stmts->tree->call_id, 2);
}

TEST_F(RecordStream, BranchToTheFirstLabelLeavesAnEmptyBody) {
    FILE_IMAGE image;
    image.globals = func_symbol("f");
    image.stream = cat({begin_func(0), end_args(), end_locals(),
                        stmt(cat({node(BRANCH_OP, 0), lbl(4)})), label(4), label(6), end_func()});
    I_FILE* r = open_at_stream(image);
    for (int i = 0; i < 5; i++)
        r->if_read_record();
    EXPECT_EQ(currfuninfo->stmts, nullptr);
    r->if_read_record();
    ASSERT_NE(currfuninfo->stmts, nullptr);
    EXPECT_EQ(currfuninfo->stmts->tree->op, LABELDEF);
    EXPECT_EQ(currfuninfo->stmts->tree->label_value(), 6);
}

TEST_F(RecordStream, FunctionsAreReadAgainBySeekingAndSkipped) {
    FILE_IMAGE image;
    image.globals = cat({func_symbol("f")});
    const Bytes body = cat({begin_func(0), end_args(), end_locals(), label(8), end_func()});
    image.stream = cat({body, comment("after")});
    I_FILE* r = open_at_stream(image);
    const long start = r->if_tell();
    r->if_read_func(0);
    EXPECT_EQ(calls.back(), "cl_end_func");
    EXPECT_EQ(r->if_tell(), start + static_cast<long>(body.size()));

    calls.clear();
    r->if_seek(start);
    r->if_read_record();
    r->if_skip_func();
    EXPECT_EQ(r->lex_level, 0);
    EXPECT_EQ(r->if_read_record(), IF_COMMENT);
    EXPECT_EQ(names_of(calls), (std::vector<std::string>{"cl_begin_func", "cl_comment"}));

    calls.clear();
    r->if_read_func(start);
    EXPECT_EQ(names_of(calls),
              (std::vector<std::string>{"cl_begin_func", "cl_end_args", "cl_end_locals", "cl_label",
                                        "cl_end_func"}));
}

TEST_F(RecordStream, UnknownKindIsReportedAndTheWalkGoesOn) {
    FILE_IMAGE image;
    image.stream = cat({comment("before"), record(7, Body().u(1).u(2)), comment("after")});
    // The unknown record starts behind the header and the first comment.
    uint32_t offsets[5] = {0, 0, 0, 0, 0};
    const size_t offset = image.header(offsets).size() + comment("before").size();
    auto [status, out] = read_in_child(image);
    EXPECT_EQ(status, 0);
    char line[64];
    snprintf(line, sizeof line, "\n///ERROR @0x%zx\n\n", offset);
    EXPECT_EQ(out, "cl_comment before\n" + std::string(line) + "cl_comment after\n");
}

TEST_F(RecordStream, WrongExceptionTableFollowersEndTheRun) {
    const std::vector<Bytes> bad = {
        cat({eht(1), label(3)}),                        // not an entry
        cat({eht(1), eht_entry(1, 1, 0, 0), label(3)}), // kind 1 without its 46
        cat({eht(1), eht_entry(1, 1, 0, 0), stmt(icon(INT_ID, 1), Body().psn(1, 1, 1))}),
        cat({eht(1), eht_entry(1, 2, 0, 1), eht_entry(2, 0, 0, 0)}), // kind 2 without 63
        eht_entry(1, 0, 0, 0),                                       // outside a table
    };
    for (const Bytes& records : bad) {
        FILE_IMAGE image;
        image.file_names = {"a.c"};
        image.globals = func_symbol("f");
        image.stream = cat({begin_func(0), end_args(), end_locals(), records, end_func()});
        auto [status, out] = read_in_child(image);
        EXPECT_EQ(status, 1);
        EXPECT_NE(out.find("\nINTERNAL ERROR: Invalid EHT record in I-code, aborting\n"),
                  std::string::npos)
            << out;
        EXPECT_EQ(out.find("cl_end_func"), std::string::npos);
    }
}

TEST_F(RecordStream, IndexesOutOfRangeAndOverrunsEndTheRun) {
    const std::vector<Bytes> bad = {
        begin_func(1),                                        // global past the table
        cat({begin_func(0), end_args(), assign_local(0, 1)}), // local past the table
        cat({begin_func(0, Body().psn(2, 1, 1))}),            // file name past the table
        cat({int_symbol("p", SC_PARAM, 1), label(1)}),        // a pragma missing
        record(IF_LABEL, Body().b(0x80)),                     // number cut by its frame
        record(IF_COMMENT, Body().b('a')),                    // string cut by its frame
        Bytes(),                                              // initializer of no global
    };
    for (size_t i = 0; i < bad.size(); i++) {
        FILE_IMAGE image;
        image.file_names = {"a.c"};
        image.globals = func_symbol("f");
        image.stream = cat({bad[i], comment("not reached")});
        if (bad[i].empty())
            image.inits = init(1, {icon(INT_ID, 1), endinit()});
        auto [status, out] = read_in_child(image);
        EXPECT_EQ(status, 1) << i;
        EXPECT_NE(out.find("\nINTERNAL ERROR: Invalid I-code record, aborting\n"),
                  std::string::npos)
            << i << out;
        EXPECT_EQ(out.find("not reached"), std::string::npos) << i;
    }
}

} // namespace
