// Reads of const objects of the file with a known initial value.
#include <gtest/gtest.h>
#include <cstring>
#include <deque>
#include <string>
#include <vector>
#include "driver/driver.h"
#include "driver/options.h"
#include "ir/bblk.h"
#include "ir/infix.h"
#include "ir/node.h"
#include "ir/symtab.h"
#include "ir/types.h"
#include "scalar/scalar.h"
#include "simplify/simplify.h"

namespace {

struct GlobalConstants : ::testing::Test {
    std::vector<option_obj*> saved_sets;
    option_obj* saved_file = nullptr;
    SYMTAB* saved_globals = nullptr;
    std::deque<SYMTAB> symbols;

    void SetUp() override {
        if (!tp) {
            tp = new TYPE_PKG;
            init_types();
        }
        saved_sets = all_option_sets;
        saved_file = file_options;
        saved_globals = global_symbols;
        global_symbols = nullptr;
    }
    void TearDown() override {
        all_option_sets = saved_sets;
        file_options = saved_file;
        global_symbols = saved_globals;
        for (SYMTAB& s : symbols)
            s.known_value = erase_tree(s.known_value);
    }
    void level(const char* l) {
        static option_obj opts;
        opts.clearopt(OPT_OPT_LEVEL);
        ASSERT_TRUE(opts.process_option((std::string("-opt_level=") + l).c_str(), false));
        all_option_sets.assign(1, &opts);
        file_options = &opts;
    }
    TYPE* integer() { return tp->mk_int(TYPE::ik_int); }
    SYMTAB* global(const char* name, unsigned char qual, long long value) {
        SYMTAB* s = &symbols.emplace_back();
        s->name = strdup(name);
        s->type = qual ? tp->mk_qual(integer(), qual) : integer();
        s->sclass = SC_GLOBAL_DEF;
        s->known_value = mk_ICON(INT65(value), integer());
        s->next = global_symbols;
        global_symbols = s;
        return s;
    }
    SYMTAB* local(const char* name) {
        SYMTAB* s = &symbols.emplace_back();
        s->name = strdup(name);
        s->type = integer();
        s->sclass = SC_AUTO;
        s->lex = 2;
        return s;
    }
    // x = a + b + c as a one-statement list, propagated, as text.
    std::string propagate(SYMTAB* x, SYMTAB* a, SYMTAB* b, SYMTAB* c) {
        NODE* sum = maketree(PLUS, mk_NAME(a, nullptr), mk_NAME(b, nullptr), integer(), nullptr);
        sum = maketree(PLUS, sum, mk_NAME(c, nullptr), integer(), nullptr);
        LIST* list = mkelist(mk_ASG(mk_NAME(x, nullptr), sum), nullptr, nullptr);
        propagate_global_constants(list);
        std::string text = stmt2infix(list->tree);
        erase_tree_list(list);
        return text;
    }
};

} // namespace

TEST_F(GlobalConstants, OnlyConstObjectsGiveTheirValueFromO2On) {
    SYMTAB* k = global("k", TQ_CONST, 42);
    SYMTAB* plain = global("plain", 0, 7);
    SYMTAB* cv = global("cv", TQ_CONST | TQ_VOLATILE, 9);
    SYMTAB* x = local("x");
    level("2");
    EXPECT_EQ(propagate(x, k, plain, cv), "x = 42 + plain + cv");
    // The target is never replaced, even by a value of its own.
    EXPECT_EQ(propagate(x, x, k, k), "x = x + 42 + 42");
    level("1");
    EXPECT_EQ(propagate(x, k, plain, cv), "x = k + plain + cv");
}
