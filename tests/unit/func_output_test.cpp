// Function output: the blocks of a function written back as records, with
// the in-memory IF turned into the file's CBRANCH and BRANCH.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <deque>
#include <string>
#include <unistd.h>
#include <vector>

#include "driver/client.h"
#include "driver/driver.h"
#include "file_bytes.h"
#include "ifile/ifile.h"
#include "ifile/write.h"
#include "inline/funinfo.h"
#include "ir/bblk.h"
#include "ir/ir.h"
#include "ir/node.h"
#include "ir/symtab.h"
#include "ir/types.h"

namespace {

using file_bytes::Bytes;

struct RECORD {
    int kind;
    Bytes body;
};

uint32_t get_uleb(const Bytes& b, size_t& at) {
    uint32_t v = 0;
    for (int shift = 0;; shift += 7) {
        const uint8_t c = b.at(at++);
        v |= static_cast<uint32_t>(c & 0x7F) << shift;
        if (!(c & 0x80))
            return v;
    }
}

// The records of the main stream, header left out, up to its end marker.
std::vector<RECORD> main_stream(const Bytes& file) {
    std::vector<RECORD> out;
    size_t at = 0;
    bool header = true;
    while (at < file.size() && file[at] != 0xFF) {
        const int kind = file[at++];
        const uint32_t size = get_uleb(file, at);
        Bytes body(file.begin() + static_cast<long>(at),
                   file.begin() + static_cast<long>(at + size));
        at += size;
        if (!header)
            out.push_back({kind, body});
        header = false;
    }
    return out;
}

struct FuncOutput : ::testing::Test {
    std::deque<SYMTAB> symbols;
    SYMTAB* fn = nullptr;
    SYMTAB* x = nullptr;
    SYMTAB* c = nullptr;
    FUNINFO* f = nullptr;
    TYPE_PKG* saved_tp = nullptr;
    I_FILE* saved_o_file = nullptr;
    std::string path;

    SYMTAB* symbol(const char* name, int lex, TYPE* type) {
        SYMTAB* s = &symbols.emplace_back();
        s->name = strdup(name);
        s->type = s->otype = type;
        s->size = 4;
        s->align = 32;
        s->sclass = lex ? SC_AUTO : SC_GLOBAL_DEF;
        s->lex = static_cast<uint8_t>(lex);
        return s;
    }

    void SetUp() override {
        char pattern[] = "/tmp/func-output-XXXXXX";
        const int fd = mkstemp(pattern);
        ASSERT_GE(fd, 0);
        close(fd);
        path = pattern;
        saved_tp = tp;
        saved_o_file = o_file;
        tp = new TYPE_PKG;
        init_types();
        init_opcode_tables();
        if_node_table_init();
        TYPE* int_type = tp->mk_int(TYPE::ik_int);
        fn = symbol("f", 0, int_type);
        x = symbol("x", 2, int_type);
        c = symbol("c", 2, int_type);
        x->next = c;
        f = new FUNINFO;
        f->symbol = fn;
        f->regs = x;
        currfuninfo = f;
        currfunc = fn;
        o_file = I_FILE::if_create(fopen(path.c_str(), "w+b"), tp, "test");
        o_file->if_enter_global(fn);
    }
    void TearDown() override {
        erase_bblocks(f);
        delete f;
        currfuninfo = nullptr;
        currfunc = nullptr;
        o_file = saved_o_file;
        tp = saved_tp;
        remove(path.c_str());
    }

    NODE* assign(long long k) {
        return mk_ASG(mk_NAME(x, nullptr), mk_ICON(INT65(k), tp->mk_int(TYPE::ik_int)));
    }
    NODE* labeldef(int n) {
        NODE* t = maketree(LABELDEF, nullptr, nullptr, tp->mk_void(), nullptr);
        t->mk_label(static_cast<unsigned>(n));
        return t;
    }
    NODE* ureturn() {
        return maketree(URETURN, mk_NAME(fn, nullptr), nullptr, tp->mk_void(), nullptr);
    }

    // if (c) goto 1 else goto 2; 2: x = 2; return; 1: x = 1; return. The
    // block of label 2 is the one written right behind the test; with `swap`
    // the arms of the built IF are exchanged, so that the taken one follows.
    std::vector<RECORD> write(bool swap) {
        NODE* test = mk_NAME(c, nullptr);
        NODE* cond = mk_IF(test, mk_LABELREF(1, nullptr), mk_LABELREF(2, nullptr), nullptr);
        LIST* l = nullptr;
        for (NODE* t : {cond, labeldef(2), assign(2), ureturn(), labeldef(1), assign(1), ureturn()})
            l = mkelist(t, l, nullptr);
        f->stmts = l;
        buildcfg();
        NODE* last = last_stmt(f->bb_list);
        EXPECT_EQ(last->op, IF);
        if (swap)
            std::swap(last->right->left, last->right->right);
        // The precondition of the test: label 2's block follows the test.
        EXPECT_EQ(label_target(last->right->right) == f->bb_list->next, !swap);
        EXPECT_EQ(label_target(last->right->left) == f->bb_list->next, swap);
        write_func_header();
        write_func_body();
        EXPECT_EQ(o_file->if_close(false, false), 0);
        return main_stream(file_bytes::read_bytes_from(path));
    }

    // The operators of the statement roots, and "L" for a label, in file order.
    static std::vector<std::string> shape(const std::vector<RECORD>& records) {
        std::vector<std::string> out;
        for (size_t i = 0; i < records.size(); i++) {
            if (records[i].kind == IF_LABEL)
                out.push_back("L");
            if (records[i].kind == IF_EXPR_STMT && i + 1 < records.size() &&
                records[i + 1].kind == IF_EXPR_NODE)
                out.push_back(node_operator_name[records[i + 1].body.at(0)]);
        }
        return out;
    }
};

TEST_F(FuncOutput, IfWhoseNotTakenBlockFollowsWritesNoBranch) {
    const std::vector<RECORD> records = write(false);
    ASSERT_FALSE(records.empty());
    EXPECT_EQ(records.front().kind, IF_BEGIN_FUNC);
    EXPECT_EQ(records.back().kind, IF_END_FUNC);
    const std::vector<std::string> s = shape(records);
    ASSERT_GE(s.size(), 2u);
    EXPECT_EQ(s[0], "CBRANCH");
    // The not-taken block comes next with nothing between.
    EXPECT_NE(s[1], "BRANCH");
    EXPECT_EQ(std::count(s.begin(), s.end(), "BRANCH") + std::count(s.begin(), s.end(), "CBRANCH"),
              std::count(s.begin(), s.end(), "L"));
}

TEST_F(FuncOutput, IfWhoseTakenBlockFollowsBranchesToTheOther) {
    const std::vector<std::string> s = shape(write(true));
    ASSERT_GE(s.size(), 2u);
    EXPECT_EQ(s[0], "CBRANCH");
    EXPECT_EQ(s[1], "BRANCH");
}

TEST_F(FuncOutput, SymbolsAndControlRecordsInFileOrder) {
    const std::vector<RECORD> records = write(false);
    std::vector<int> kinds;
    for (const RECORD& r : records)
        if (r.kind != IF_EXPR_STMT && r.kind != IF_EXPR_NODE && r.kind != IF_LABEL)
            kinds.push_back(r.kind);
    EXPECT_EQ(kinds, (std::vector<int>{IF_BEGIN_FUNC, IF_END_ARGS, IF_SYMBOL, IF_SYMBOL,
                                       IF_END_LOCALS, IF_FUNC_INFO, IF_END_FUNC}));
    // Locals are numbered in the order written: x is index 0 at scope 2,
    // and its NAME in "x = 2" says so.
    EXPECT_EQ(x->file_level, 2u);
    EXPECT_EQ(x->file_index, 0u);
    EXPECT_EQ(c->file_index, 1u);
    // Sizes go out in bits: "x", 32.
    const Bytes& sym = records[2].body;
    EXPECT_EQ(sym.at(2), 32);
}

} // namespace

namespace {

// Exception tables: entries no call names are dropped, the rest renumbered
// so that the written numbers, links and call ids agree again on reading.
struct EhtOutput : FuncOutput {
    static EHT_ENTRY entry(uint32_t first, uint32_t kind, uint32_t second, uint32_t third) {
        EHT_ENTRY e{};
        e.first = first;
        e.kind = kind;
        e.second = second;
        e.third = third;
        return e;
    }
    static std::vector<uint32_t> uints(const Bytes& b) {
        std::vector<uint32_t> out;
        for (size_t at = 0; at < b.size();)
            out.push_back(get_uleb(b, at));
        return out;
    }
};

TEST_F(EhtOutput, UnnamedEntriesGoAndTheRestAreRenumbered) {
    // Places 0..4 as the reader leaves them; the call names place 3, whose
    // entry links to place 2: both stay. Place 4 is named by nothing.
    std::vector<EHT_ENTRY>& eht = function_eht(f);
    eht = {entry(0, 0, 0, 0), entry(7, 0, 0, 0), entry(8, 0, 1, 1), entry(9, 0, 2, 1),
           entry(12, 0, 1, 1)};
    NODE* call = maketree(UCALL, mk_NAME(fn, nullptr), nullptr, tp->mk_int(TYPE::ik_int), nullptr);
    call->call_id = 3;
    f->stmts = mkelist(ureturn(), mkelist(call, nullptr, nullptr), nullptr);
    buildcfg();
    write_func_header();
    write_func_body();
    ASSERT_EQ(o_file->if_close(false, false), 0);
    const std::vector<RECORD> records = main_stream(file_bytes::read_bytes_from(path));

    std::vector<std::vector<uint32_t>> entries;
    uint32_t count = 0;
    int call_id = -1;
    for (size_t i = 0; i < records.size(); i++) {
        if (records[i].kind == IF_EHT)
            count = uints(records[i].body).at(0);
        if (records[i].kind == IF_EHT_ENTRY)
            entries.push_back(uints(records[i].body));
        // UCALL: operator, type, then the call id.
        if (records[i].kind == IF_EXPR_NODE && records[i].body.at(0) == UCALL) {
            size_t at = 1;
            get_uleb(records[i].body, at);
            call_id = static_cast<int>(get_uleb(records[i].body, at));
        }
    }
    EXPECT_EQ(count, 3u);
    EXPECT_EQ(entries, (std::vector<std::vector<uint32_t>>{{1, 0, 0, 0}, {2, 0, 1, 1}, {3, 0, 2, 1}}));
    EXPECT_EQ(call_id, 3);
    EXPECT_EQ(function_eht(f).size(), 4u);
    function_eht(f).clear();
}

} // namespace
