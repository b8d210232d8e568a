// Expression records: trees written by the writer come back the same, node
// for node, and damaged records end the run.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <unistd.h>

#include "driver/options.h"
#include "ifile/ifile.h"
#include "ir/node.h"
#include "ir/symtab.h"
#include "ir/types.h"

namespace {

struct ExprRecords : ::testing::Test {
    std::string path;
    IF_CLIENT client;
    TYPE_PKG* saved = nullptr;
    SYMTAB global;

    void SetUp() override {
        char pattern[] = "/tmp/expr-test-XXXXXX";
        const int fd = mkstemp(pattern);
        ASSERT_GE(fd, 0);
        close(fd);
        path = pattern;
        saved = tp;
        tp = new TYPE_PKG;
        init_types();
        if_node_table_init();
        global.name = strdup("g");
        global.file_level = 0;
        global.file_index = 0;
        global.type = tp->mk_int(TYPE::ik_int);
    }
    void TearDown() override {
        remove(path.c_str());
        tp = saved;
    }

    TYPE* i32() { return tp->mk_int(TYPE::ik_int); }
    TYPE* u32() { return tp->mk_int(TYPE::ik_uint); }

    void write(const std::vector<NODE*>& statements) {
        FILE* f = fopen(path.c_str(), "w+b");
        I_FILE* w = I_FILE::if_create(f, tp, "test");
        for (NODE* s : statements)
            w->if_write_expr(s, nullptr);
        ASSERT_EQ(w->if_close(true, false), 0);
    }

    // Reads the statements back into a fresh package, as the optimizer would.
    std::vector<NODE*> read(size_t count) {
        tp = new TYPE_PKG;
        init_types();
        FILE* f = fopen(path.c_str(), "rb");
        I_FILE* r = I_FILE::if_open(f, &client);
        EXPECT_NE(r, nullptr);
        if_type_init(tp, r);
        r->if_read_type_defs();
        static SYMTAB* table[1];
        table[0] = &global;
        r->globals = table;
        r->global_count = 1;
        std::vector<NODE*> trees;
        for (size_t i = 0; i < count; i++) {
            int kind;
            uint32_t size;
            EXPECT_TRUE(r->i_read_header(kind, size));
            EXPECT_EQ(kind, IF_EXPR_STMT);
            EXPECT_EQ(r->i_read_psn(), nullptr);
            r->i_end_record();
            trees.push_back(r->if_read_expr_node(true));
        }
        r->globals = nullptr;
        r->global_count = 0;
        r->if_close(false, false);
        return trees;
    }
};

// Equal shape, operators, values, texts and types (by layout and sign).
void expect_same(const NODE* a, const NODE* b) {
    ASSERT_EQ(a == nullptr, b == nullptr);
    if (!a)
        return;
    // An integer LCON comes back as the ICON of the same value.
    const bool integer_lcon = a->op == LCON && a->type && TYPE_IS_INT(a->type);
    ASSERT_EQ(integer_lcon ? ICON : a->op, b->op) << node_operator_name[a->op];
    EXPECT_EQ(a->value, b->value) << node_operator_name[a->op];
    EXPECT_EQ(a->sym == nullptr, b->sym == nullptr);
    if (a->op == NAME) {
        EXPECT_EQ(a->sym, b->sym);
    } else if (a->op == ICALL || a->op == UICALL) {
        EXPECT_STREQ(a->icall_name(), b->icall_name());
    } else if (a->op == SCON) {
        EXPECT_EQ(memcmp(a->text, b->text, a->scon_length()), 0);
    } else if (a->op == FCON) {
        EXPECT_STREQ(a->fcon_value(), b->fcon_value());
    }
    EXPECT_EQ(a->call_id, b->call_id);
    ASSERT_EQ(a->type == nullptr, b->type == nullptr);
    if (a->type) {
        EXPECT_EQ(a->type->size(), b->type->size());
        EXPECT_EQ(a->type->is_signed(), b->type->is_signed());
        EXPECT_EQ(a->type->is_pointer(), b->type->is_pointer());
    }
    expect_same(a->left, b->left);
    expect_same(a->right, b->right);
}

} // namespace

TEST_F(ExprRecords, TreesComeBackNodeForNode) {
    NODE* sum = maketree(PLUS, mk_ICON(INT65(-5), i32()), mk_ICON(INT65(0, 0xFFFFFFFFll), u32()),
                         u32(), nullptr);
    NODE* asg = maketree(ASG, mk_NAME(&global, nullptr), sum, i32(), nullptr);

    NODE* scon = new_node(SCON, nullptr);
    scon->mk_scon("a\0b", 3);
    NODE* empty = new_node(SCON, nullptr);
    empty->mk_scon("", 0);
    NODE* lcon = new_node(LCON, tp->mk_int(TYPE::ik_llong));
    lcon->mk_lcon("-9223372036854775807");
    NODE* fcon = new_node(FCON, tp->mk_fltpt(TYPE::fk_double));
    fcon->mk_fcon("0x1.8p+1");
    NODE* nameless = new_node(NAME, i32());
    NODE* label = new_node(LABEL, nullptr);
    label->mk_label(7);
    NODE* args =
        maketree(COMMA, maketree(COMMA, scon, empty, nullptr, nullptr), lcon, nullptr, nullptr);
    NODE* call = maketree(CALL, mk_ICALL("abs", fcon, i32()), args, i32(), nullptr);
    call->mk_call(3, 2);
    NODE* uses = maketree(COMMAOP, call, maketree(COMMAOP, nameless, label, nullptr, nullptr),
                          nullptr, nullptr);

    write({asg, uses});
    std::vector<NODE*> back = read(2);
    expect_same(asg, back[0]);
    expect_same(uses, back[1]);
    EXPECT_EQ(back[0]->right->right->value, INT65(0, 0xFFFFFFFFll));
    EXPECT_EQ(back[1]->right->left->sym, nullptr);
    for (NODE* t : {asg, uses, back[0], back[1]})
        erase_tree(t);
}

// A folded constant may hold 64 bits, which an ICON record cannot: it goes to
// the file as an LCON with the same value, at both limits of 32 bits, and
// comes back an ICON.
TEST_F(ExprRecords, WideIntegerConstantsKeepTheirValue) {
    TYPE* ll = tp->mk_int(TYPE::ik_llong);
    TYPE* ull = tp->mk_int(TYPE::ik_ullong);
    const std::vector<std::pair<INT65, TYPE*>> cases = {
        {INT65::from_unsigned(1ull << 63), ull}, {INT65(-2147483649ll), ll},
        {INT65(2147483648ll), ll},               {INT65(-2147483648ll), ll},
        {INT65::from_unsigned(0xFFFFFFFFull), ull}, {INT65::from_unsigned(1ull << 32), ull}};
    std::vector<NODE*> trees;
    for (const auto& [v, t] : cases)
        trees.push_back(mk_ICON(v, t));
    write(trees);
    std::vector<NODE*> back = read(trees.size());
    for (size_t i = 0; i < cases.size(); i++) {
        EXPECT_EQ(back[i]->value, trees[i]->value) << i;
        EXPECT_EQ(back[i]->type->is_signed(), cases[i].second->is_signed()) << i;
        EXPECT_EQ(back[i]->op, ICON) << i;
    }
    for (NODE* t : trees)
        erase_tree(t);
    for (NODE* t : back)
        erase_tree(t);
}

TEST_F(ExprRecords, ConversionsToCharPointersArriveAsTheirMemoryForm) {
    chars_alias_other_types = 1;
    TYPE* pchar = tp->mk_ptr(tp->mk_int(TYPE::ik_char));
    NODE* conv = maketree(PCONV, mk_NAME(&global, nullptr), nullptr, pchar, nullptr);
    // ISP2CHAR is what the reader makes of it; the file still says PCONV.
    ASSERT_EQ(conv->op, ISP2CHAR);
    conv->op = PCONV;
    write({conv});
    std::vector<NODE*> back = read(1);
    EXPECT_EQ(back[0]->op, ISP2CHAR);
    EXPECT_EQ(back[0]->left->sym, &global);
    erase_tree(conv);
    erase_tree(back[0]);
}

TEST_F(ExprRecords, DamagedRecordsEndTheRun) {
    NODE* name = mk_NAME(&global, nullptr);
    write({name});
    erase_tree(name);
    // The global index points past the table the reader has.
    global.file_index = 0;
    EXPECT_EXIT(
        {
            fflush(stdout);
            dup2(STDERR_FILENO, STDOUT_FILENO);
            tp = new TYPE_PKG;
            init_types();
            FILE* f = fopen(path.c_str(), "rb");
            I_FILE* r = I_FILE::if_open(f, &client);
            r->if_read_type_defs();
            int kind;
            uint32_t size;
            r->i_read_header(kind, size);
            r->i_read_psn();
            r->i_end_record();
            r->if_read_expr_node(true);
            exit(0);
        },
        ::testing::ExitedWithCode(1), "Invalid I-code record");
}
