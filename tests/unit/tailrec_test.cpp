// Self-calls in tail position become jumps: the shape of the result, and that
// it computes what the recursive definition computes.
#include <gtest/gtest.h>

#include <cstring>
#include <deque>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "driver/driver.h"
#include "driver/options.h"
#include "driver/passes.h"
#include "ifile/ifile.h"
#include "inline/funinfo.h"
#include "ir/bblk.h"
#include "ir/ir.h"
#include "ir/node.h"
#include "ir/symtab.h"
#include "ir/types.h"

namespace {

TYPE* int_type() {
    if (!tp) {
        tp = new TYPE_PKG;
        init_types();
    }
    return tp->mk_int(TYPE::ik_int);
}

SYMTAB* symbol(const char* name, TYPE* type, int lex, uint8_t sclass) {
    static auto* symbols = new std::deque<SYMTAB>;
    SYMTAB* s = &symbols->emplace_back();
    s->name = strdup(name);
    s->type = type;
    s->lex = static_cast<uint8_t>(lex);
    s->sclass = sclass;
    return s;
}

NODE* N(SYMTAB* s) { return mk_NAME(s, nullptr); }
NODE* I(long long v) { return mk_ICON(INT65(v), int_type()); }
NODE* op(int o, NODE* a, NODE* b) { return maketree(o, a, b, int_type(), nullptr); }
NODE* label(int n) {
    NODE* t = maketree(LABELDEF, nullptr, nullptr, tp->mk_void(), nullptr);
    t->mk_label(n);
    return t;
}
NODE* iff(NODE* cond, int taken, int not_taken) {
    return mk_IF(cond, mk_LABELREF(taken, nullptr), mk_LABELREF(not_taken, nullptr), nullptr);
}

// The trees these tests build, run: one activation per call, arguments left
// to right, parameters bound to the level 1 symbols.
struct EVAL {
    FUNINFO* f;
    std::vector<SYMTAB*> params;
    std::map<const SYMTAB*, long long> globals;
    long steps = 0;

    long long call(const std::vector<long long>& args) {
        std::map<const SYMTAB*, long long> frame;
        for (size_t i = 0; i < params.size() && i < args.size(); i++)
            frame[params[i]] = args[i];
        BBLK* b = f->bb_list;
        LIST* s = b->statements;
        while (s && ++steps < 1000000) {
            NODE* t = s->tree;
            switch (t->op) {
            case RETURN:
                return value(t->right, frame);
            case URETURN:
                return 0;
            case BRANCH:
                b = label_target(t->left);
                s = b->statements;
                continue;
            case IF:
                b = label_target(value(t->left, frame) ? t->right->left : t->right->right);
                s = b->statements;
                continue;
            case ASM:
                break;
            default:
                value(t, frame);
            }
            s = s->next;
        }
        ADD_FAILURE() << "ran off a block or looped";
        return 0;
    }

    long long value(NODE* t, std::map<const SYMTAB*, long long>& frame) {
        switch (t->op) {
        case ICON:
            return t->value.low;
        case NAME: {
            const SYMTAB* s = t->name_symbol();
            if (s->lex == 0)
                return globals[s];
            auto it = frame.find(s);
            if (it == frame.end())
                ADD_FAILURE() << "read before written: " << s->name;
            return it == frame.end() ? 0 : it->second;
        }
        case ASG: {
            const long long v = value(t->right, frame);
            const SYMTAB* s = t->left->name_symbol();
            (s->lex == 0 ? globals : frame)[s] = v;
            return v;
        }
        case SCONV:
        case PCONV:
        case ACONV:
            return value(t->left, frame);
        case CALL:
        case UCALL: {
            std::vector<long long> args;
            NODE* list = t->op == CALL ? t->right : nullptr;
            for (int i = 0; i < arg_list_count(list); i++)
                args.push_back(value(arg_list_lookup(list, i), frame));
            return call(args);
        }
        default:
            break;
        }
        const long long a = value(t->left, frame), b = value(t->right, frame);
        switch (t->op) {
        case PLUS:
            return a + b;
        case MINUS:
            return a - b;
        case MULT:
            return a * b;
        case MOD:
            return a % b;
        case EQ:
            return a == b;
        case NEQ:
            return a != b;
        case LT:
            return a < b;
        case GT:
            return a > b;
        default:
            ADD_FAILURE() << "no rule for " << node_operator_name[t->op];
            return 0;
        }
    }
};

struct CfgTailRec : ::testing::Test {
    SYMTAB* fn = nullptr;
    SYMTAB* g = nullptr;
    FUNINFO* f = nullptr;
    // The incoming parameters and the locals the prolog copies them into.
    std::vector<SYMTAB*> in, p;
    int saved_program_mode = 0;

    void SetUp() override {
        int_type();
        g = symbol("g", int_type(), 0, SC_GLOBAL_DEF);
        f = new FUNINFO;
        currfuninfo = f;
        saved_program_mode = program_mode;
        settings(2, 2);
    }
    void TearDown() override {
        reset();
        currfuninfo = nullptr;
        delete f;
        process_debug_option("disable", "tail_recursion=0");
        program_mode = saved_program_mode;
        all_option_sets.clear();
        file_options = nullptr;
    }
    void reset() {
        erase_bblocks(f);
        while (SYMTAB* t = f->temps) {
            f->temps = t->next;
            erase_symbol(t);
        }
        f->temp_counter = 0;
    }

    void settings(int level, int mode) {
        static option_obj opts;
        opts.clearopt(OPT_OPT_LEVEL);
        ASSERT_TRUE(opts.process_option(("-opt_level=" + std::to_string(level)).c_str(), false));
        all_option_sets.assign(1, &opts);
        file_options = &opts;
        program_mode = mode;
    }

    // The function `fn(names...)`, every parameter an int unless types says.
    void declare(const char* name, TYPE* ret, std::vector<const char*> names,
                 std::vector<TYPE*> types = {}, bool vararg = false) {
        types.resize(names.size(), nullptr);
        TYPE* ft = tp->mk_func(ret, false, true, vararg);
        in.clear();
        p.clear();
        f->symbols = nullptr;
        for (size_t i = 0; i < names.size(); i++) {
            TYPE* t = types[i] ? types[i] : int_type();
            ft->add_param(t);
            in.push_back(symbol(names[i], t, 1, SC_PARAM));
            p.push_back(symbol(names[i], t, 2, SC_AUTO));
            in.back()->next = f->symbols;
            f->symbols = in.back();
        }
        tp->type_frozen(ft);
        fn = symbol(name, ft, 0, SC_GLOBAL_DEF);
        f->symbol = fn;
        f->result_type = ret;
    }
    SYMTAB* local(const char* name, TYPE* type = nullptr) {
        return symbol(name, type ? type : int_type(), 2, SC_AUTO);
    }

    NODE* self(std::vector<NODE*> args, bool convert = true) {
        NODE* list = nullptr;
        for (NODE* a : args) {
            if (convert && a->type->is_integral())
                a = maketree(ACONV, a, nullptr, a->type, nullptr);
            list = list ? maketree(COMMA, list, a, tp->mk_void(), nullptr) : a;
        }
        NODE* callee = maketree(UAND, N(fn), nullptr, tp->mk_ptr(fn->type), nullptr);
        return maketree(list ? CALL : UCALL, callee, list, f->result_type, nullptr);
    }
    NODE* ret(NODE* v) { return maketree(RETURN, N(fn), v, f->result_type, nullptr); }
    NODE* ureturn() { return maketree(URETURN, N(fn), nullptr, tp->mk_void(), nullptr); }

    // The prolog, then the body; statements in source order.
    void build(std::vector<NODE*> body, PSN* last_psn = nullptr) {
        std::vector<NODE*> all;
        for (size_t i = 0; i < in.size(); i++)
            all.push_back(mk_ASG(N(p[i]), N(in[i])));
        all.insert(all.end(), body.begin(), body.end());
        LIST* l = nullptr;
        for (size_t i = 0; i < all.size(); i++)
            l = mkelist(all[i], l, i + 1 == all.size() ? last_psn : nullptr);
        f->stmts = l;
        buildcfg();
        check();
    }

    // What buildcfg promises whether or not a call was removed: edges as the
    // terminators name them, both ways, and label use counts.
    void check() {
        std::map<LBL*, int> uses;
        int dfn = 0;
        for (BBLK* b : blocks()) {
            EXPECT_EQ(b->dfn, ++dfn);
            std::vector<NODE*> labels;
            collect_label_operands(last_stmt(b), labels);
            for (NODE* l : labels) {
                ASSERT_NE(l->label_rec, nullptr);
                uses[l->label_rec]++;
                EXPECT_TRUE(edge_memberp(l->label_rec->bb, b->succs));
                EXPECT_TRUE(edge_memberp(b, l->label_rec->bb->preds));
            }
            for (EDGE* e = b->succs; e; e = e->next) {
                bool named = false;
                for (NODE* l : labels)
                    named |= l->label_rec->bb == e->bb;
                EXPECT_TRUE(named) << "an edge the terminator does not name";
            }
        }
        EXPECT_EQ(dfn, f->bb_count);
        for (BBLK* b : blocks())
            for (LBL* l = b->labels; l; l = l->next)
                EXPECT_EQ(l->uses, uses[l]) << "label " << l->number;
    }

    std::vector<BBLK*> blocks() {
        std::vector<BBLK*> out;
        for (BBLK* b = f->bb_list; b; b = b->next)
            out.push_back(b);
        return out;
    }
    int calls() {
        int n = 0;
        for (BBLK* b : blocks())
            for (LIST* s = b->statements; s; s = s->next)
                n += count_calls_in_tree(s->tree);
        return n;
    }
    int temps() {
        int n = 0;
        for (SYMTAB* t = f->temps; t; t = t->next)
            n++;
        return n;
    }
    // The block the prolog leads into.
    BBLK* body() {
        LIST* s = f->bb_list->statements;
        while (s && tree_is_arg_prolog(s->tree))
            s = s->next;
        EXPECT_TRUE(s && s->tree->op == BRANCH && !s->next) << "the entry is the prolog alone";
        return s ? label_target(s->tree->left) : nullptr;
    }
    // The blocks that end in the jump that replaced a call.
    std::vector<BBLK*> loop_tails() {
        std::vector<BBLK*> out;
        for (BBLK* b : blocks()) {
            LIST* s = b->statements;
            while (s && s->next && s->next->next)
                s = s->next;
            if (s && s->next && s->tree->op == ASM &&
                strcmp(s->tree->text, "***\t; tail recursive call occurs here") == 0) {
                EXPECT_EQ(s->next->tree->op, BRANCH);
                EXPECT_EQ(label_target(s->next->tree->left), body());
                out.push_back(b);
            }
        }
        return out;
    }

    // Builds the function as written (level 1) and transformed, and checks
    // both against the definition. A void function is judged by `g`.
    void expect_meaning(const std::function<std::vector<NODE*>()>& body,
                        const std::function<long long(const std::vector<long long>&)>& reference,
                        const std::vector<std::vector<long long>>& inputs) {
        for (int level : {1, 2}) {
            reset();
            settings(level, 2);
            build(body());
            EXPECT_EQ(calls() == 0, level == 2) << "level " << level;
            EVAL e{f, in, {}, 0};
            for (const std::vector<long long>& args : inputs) {
                e.globals.clear();
                long long r = e.call(args);
                if (f->result_type->is_void())
                    r = e.globals[g];
                EXPECT_EQ(r, reference(args)) << "level " << level << ", args " << args[0] << ", "
                                              << args.at(1 % args.size());
            }
        }
    }

    // gcd(a, b) = b == 0 ? a : gcd(b, a % b), with the final return given.
    std::vector<NODE*> gcd_body(NODE* tail) {
        return {iff(op(EQ, N(p[1]), I(0)), 1, 2), label(1), ret(N(p[0])), label(2), tail};
    }
    NODE* gcd_call() { return self({N(p[1]), op(MOD, N(p[0]), N(p[1]))}); }
    NODE* gcd_tail() { return ret(gcd_call()); }
    void expect_kept(const char* why) {
        EXPECT_EQ(calls(), 1) << why;
        EXPECT_EQ(temps(), 0) << why;
    }
};

std::vector<std::vector<long long>> pairs(int lo, int hi) {
    std::vector<std::vector<long long>> out;
    for (int a = lo; a <= hi; a++)
        for (int b = lo; b <= hi; b++)
            out.push_back({a, b});
    return out;
}

} // namespace

TEST_F(CfgTailRec, GcdBecomesALoopBehindTheProlog) {
    declare("gcd", int_type(), {"a", "b"});
    expect_meaning([&] { return gcd_body(gcd_tail()); },
                   [](const std::vector<long long>& v) {
                       long long a = v[0], b = v[1];
                       while (b) {
                           long long r = a % b;
                           a = b;
                           b = r;
                       }
                       return a;
                   },
                   pairs(0, 13));
    ASSERT_EQ(loop_tails().size(), 1u);
    // a % b reads the old a, so the new a waits in a temporary.
    EXPECT_EQ(temps(), 1);
    EXPECT_EQ(last_stmt(body())->op, IF);
    EXPECT_TRUE(tree_is_arg_prolog(f->bb_list->statements->tree));
}

TEST_F(CfgTailRec, NewValuesComeFromTheOldOnes) {
    // sum(n, acc) = n == 0 ? acc : sum(n - 1, acc + n)
    declare("sum", int_type(), {"n", "acc"});
    expect_meaning(
        [&] {
            return std::vector<NODE*>{
                iff(op(EQ, N(p[0]), I(0)), 1, 2), label(1), ret(N(p[1])), label(2),
                ret(self({op(MINUS, N(p[0]), I(1)), op(PLUS, N(p[1]), N(p[0]))}))};
        },
        [](const std::vector<long long>& v) { return v[1] + v[0] * (v[0] + 1) / 2; },
        {{0, 0}, {1, 5}, {7, 0}, {30, 3}});

    // fib(n, a, b) = n == 0 ? a : fib(n - 1, b, a + b): a + b reads the old a.
    declare("fib", int_type(), {"n", "a", "b"});
    expect_meaning(
        [&] {
            return std::vector<NODE*>{
                iff(op(EQ, N(p[0]), I(0)), 1, 2), label(1), ret(N(p[1])), label(2),
                ret(self({op(MINUS, N(p[0]), I(1)), N(p[2]), op(PLUS, N(p[1]), N(p[2]))}))};
        },
        [](const std::vector<long long>& v) {
            long long a = v[1], b = v[2];
            for (long long i = 0; i < v[0]; i++) {
                const long long c = a + b;
                a = b;
                b = c;
            }
            return a;
        },
        {{0, 0, 1}, {1, 0, 1}, {10, 0, 1}, {20, 0, 1}, {5, 3, 4}});
}

TEST_F(CfgTailRec, TwoTailCallsJumpToOneBody) {
    // bits(n, acc) = n == 0 ? acc : n % 2 == 1 ? bits(n - 1, acc + 1) : bits(n - 2, acc + 10)
    declare("bits", int_type(), {"n", "acc"});
    expect_meaning(
        [&] {
            return std::vector<NODE*>{
                iff(op(EQ, N(p[0]), I(0)), 1, 2),
                label(1),
                ret(N(p[1])),
                label(2),
                iff(op(EQ, op(MOD, N(p[0]), I(2)), I(1)), 3, 4),
                label(3),
                ret(self({op(MINUS, N(p[0]), I(1)), op(PLUS, N(p[1]), I(1))})),
                label(4),
                ret(self({op(MINUS, N(p[0]), I(2)), op(PLUS, N(p[1]), I(10))}))};
        },
        [](const std::vector<long long>& v) {
            long long n = v[0], acc = v[1];
            while (n)
                if (n % 2) {
                    n--;
                    acc++;
                } else {
                    n -= 2;
                    acc += 10;
                }
            return acc;
        },
        {{0, 0}, {1, 0}, {2, 3}, {9, 0}, {16, 1}});
    EXPECT_EQ(loop_tails().size(), 2u);
    EXPECT_EQ(temps(), 0);
}

TEST_F(CfgTailRec, SwappedArgumentsGoThroughATemporary) {
    // swap(a, b, k) = k == 0 ? a - b : swap(b, a, k - 1)
    declare("swap", int_type(), {"a", "b", "k"});
    expect_meaning(
        [&] {
            return std::vector<NODE*>{iff(op(EQ, N(p[2]), I(0)), 1, 2), label(1),
                                      ret(op(MINUS, N(p[0]), N(p[1]))), label(2),
                                      ret(self({N(p[1]), N(p[0]), op(MINUS, N(p[2]), I(1))}))};
        },
        [](const std::vector<long long>& v) { return (v[2] % 2 ? -1 : 1) * (v[0] - v[1]); },
        {{7, 2, 0}, {7, 2, 1}, {7, 2, 2}, {-4, 9, 5}});
    ASSERT_EQ(loop_tails().size(), 1u);
    ASSERT_EQ(temps(), 1);
    SYMTAB* t = f->temps;
    // $T = b; b = a; k = k - 1; a = $T
    LIST* s = loop_tails()[0]->statements;
    ASSERT_EQ(s->tree->op, ASG);
    EXPECT_EQ(s->tree->left->name_symbol(), t);
    EXPECT_TRUE(sym_appears_in_tree(p[1], s->tree->right));
    for (; s && s->tree->op == ASG; s = s->next)
        if (s->tree->left->name_symbol() == p[0]) {
            EXPECT_TRUE(sym_appears_in_tree(t, s->tree->right));
        }
    ASSERT_NE(s, nullptr);
    EXPECT_EQ(s->tree->op, ASM);
}

TEST_F(CfgTailRec, CallBeforeTheReturnOfAVoidFunction) {
    // count(n) { if (n == 0) return; g = g + n; count(n - 1); }
    declare("count", tp->mk_void(), {"n"});
    expect_meaning(
        [&] {
            return std::vector<NODE*>{iff(op(EQ, N(p[0]), I(0)), 1, 2),
                                      label(1),
                                      ureturn(),
                                      label(2),
                                      mk_ASG(N(g), op(PLUS, N(g), N(p[0]))),
                                      self({op(MINUS, N(p[0]), I(1))})};
        },
        [](const std::vector<long long>& v) { return v[0] * (v[0] + 1) / 2; },
        {{0}, {1}, {4}, {25}});
    EXPECT_EQ(temps(), 0) << "one parameter conflicts with nothing";

    // Work after the call: not a tail call.
    reset();
    build({iff(op(EQ, N(p[0]), I(0)), 1, 2), label(1), ureturn(), label(2),
           self({op(MINUS, N(p[0]), I(1))}), mk_ASG(N(g), op(PLUS, N(g), N(p[0])))});
    expect_kept("the call is followed by work");
}

TEST_F(CfgTailRec, JumpTargetIsBehindThePrologWithOneSplitAtMost) {
    declare("gcd", int_type(), {"a", "b"});
    settings(1, 2);
    build(gcd_body(gcd_tail()));
    const size_t plain = blocks().size();
    reset();
    settings(2, 2);
    build(gcd_body(gcd_tail()));
    EXPECT_EQ(blocks().size(), plain + 1) << "the entry is split behind the prolog";
    ASSERT_EQ(loop_tails().size(), 1u);

    // A label right behind the prolog already ends the entry block.
    const auto labelled = [&] {
        std::vector<NODE*> b = gcd_body(gcd_tail());
        b.insert(b.begin(), label(9));
        return b;
    };
    reset();
    settings(1, 2);
    build(labelled());
    const size_t plain_labelled = blocks().size();
    reset();
    settings(2, 2);
    build(labelled());
    EXPECT_EQ(blocks().size(), plain_labelled);
    ASSERT_EQ(loop_tails().size(), 1u);
    EXPECT_EQ(last_stmt(body())->op, IF);
}

TEST_F(CfgTailRec, RemovalIsLoggedAndCommented) {
    declare("gcd", int_type(), {"a", "b"});
    PSN psn{"g.c", 42, 3};
    FILE* log = tmpfile();
    FILE* saved = fdebug;
    fdebug = log;
    print_debug = 1;
    source_interlist = 1;
    build(gcd_body(gcd_tail()), &psn);
    print_debug = 0;
    source_interlist = 0;
    fdebug = saved;
    rewind(log);
    char text[2048] = {};
    fread(text, 1, sizeof text - 1, log);
    fclose(log);
    EXPECT_NE(strstr(text, "\n  ===> Tail recursive self-call removed at line 42: return gcd("),
              nullptr)
        << text;
    ASSERT_EQ(loop_tails().size(), 1u);
    NODE* first = loop_tails()[0]->statements->tree;
    ASSERT_EQ(first->op, ASM);
    EXPECT_EQ(first->value, INT65(47));
    EXPECT_EQ(strncmp(first->text, "  return gcd(", 13), 0) << first->text;
}

TEST_F(CfgTailRec, SettingsThatKeepTheCall) {
    declare("gcd", int_type(), {"a", "b"});
    settings(1, 2);
    build(gcd_body(gcd_tail()));
    expect_kept("level 1");
    reset();
    settings(3, 1);
    build(gcd_body(gcd_tail()));
    expect_kept("not the whole-file mode 2");
    reset();
    settings(2, 2);
    process_debug_option("disable", "tail_recursion");
    build(gcd_body(gcd_tail()));
    expect_kept("switched off");
}

TEST_F(CfgTailRec, AddressesIntoTheFrameKeepTheCall) {
    TYPE* ip = tp->mk_ptr(int_type());
    declare("walk", int_type(), {"n", "q"}, {nullptr, ip});
    SYMTAB* xs = local("x");
    const auto walk = [&](NODE* second, NODE* before = nullptr) {
        reset();
        build({mk_ASG(N(xs), N(p[0])), before ? before : mk_ASG(N(g), I(0)),
               iff(op(EQ, N(p[0]), I(0)), 1, 2), label(1), ret(N(p[0])), label(2),
               ret(self({op(MINUS, N(p[0]), I(1)), second}))});
    };
    walk(maketree(UAND, N(xs), nullptr, ip, nullptr));
    expect_kept("&x reaches the next activation");
    walk(maketree(ARGREF, N(xs), nullptr, ip, nullptr));
    expect_kept("x passed by reference");
    SYMTAB* arr = local("arr", tp->mk_array(int_type(), false, 4));
    walk(maketree(PCONV, N(arr), nullptr, ip, nullptr));
    expect_kept("a local array is used through its address");
    walk(N(p[1]), mk_ASG(N(p[1]), maketree(UAND, N(xs), nullptr, ip, nullptr)));
    expect_kept("&x is taken before the call");
    walk(N(p[1]));
    EXPECT_EQ(calls(), 0) << "no address taken";
    // The address of a global is no pointer into the frame.
    walk(maketree(UAND, N(g), nullptr, ip, nullptr));
    EXPECT_EQ(calls(), 0);
    // Passing it by reference is passing its address.
    walk(maketree(ARGREF, N(g), nullptr, ip, nullptr));
    ASSERT_EQ(loop_tails().size(), 1u);
    int seen = 0;
    for (LIST* s = loop_tails()[0]->statements; s; s = s->next)
        if (s->tree->op == ASG && s->tree->left->name_symbol() == p[1]) {
            EXPECT_EQ(s->tree->right->op, UAND);
            seen++;
        }
    EXPECT_EQ(seen, 1);
}

TEST_F(CfgTailRec, ResultUsedOtherwiseKeepsTheCall) {
    declare("gcd", int_type(), {"a", "b"});
    TYPE* sh = tp->mk_int(TYPE::ik_short);
    build(gcd_body(ret(maketree(SCONV, gcd_call(), nullptr, sh, nullptr))));
    expect_kept("narrowed result");
    reset();
    build(gcd_body(ret(op(PLUS, gcd_call(), I(1)))));
    expect_kept("result plus one");
    reset();
    SYMTAB* r = local("r");
    build({iff(op(EQ, N(p[1]), I(0)), 1, 2), label(1), ret(N(p[0])), label(2),
           mk_ASG(N(r), gcd_call()), ret(N(r))});
    expect_kept("the value goes through a local");
    reset();
    build(gcd_body(ret(maketree(SCONV, gcd_call(), nullptr, int_type(), nullptr))));
    EXPECT_EQ(calls(), 0) << "a conversion to the same type changes nothing";
}

TEST_F(CfgTailRec, CallsThatDoNotMatchThePrologKeepTheCall) {
    declare("gcd", int_type(), {"a", "b"});
    build(gcd_body(ret(self({N(p[1])}))));
    expect_kept("one argument for two parameters");
    reset();
    SYMTAB* q = local("q", tp->mk_ptr(int_type()));
    build(gcd_body(ret(self({N(p[1]), N(q)}))));
    expect_kept("a pointer for an int");
    reset();
    NODE* call = gcd_tail();
    call->right->call_id = 3;
    build(gcd_body(call));
    expect_kept("the call has an exception-table entry");
    reset();
    call = gcd_tail();
    call->right->flags = 1;
    build(gcd_body(call));
    expect_kept("flagged call");
    reset();
    SYMTAB* other = symbol("other", fn->type, 0, SC_GLOBAL_DEF);
    call = gcd_tail();
    call->right->left->left->sym = other;
    build(gcd_body(call));
    expect_kept("another function");
    reset();
    // The body reads the incoming b, which the jump would leave stale.
    build({iff(op(EQ, N(in[1]), I(0)), 1, 2), label(1), ret(N(p[0])), label(2), gcd_tail()});
    expect_kept("incoming parameter read in the body");
}

TEST_F(CfgTailRec, FunctionsThatForbidItKeepTheCall) {
    TYPE* vi = tp->mk_qual(int_type(), TQ_VOLATILE);
    declare("gcd", int_type(), {"a", "b"}, {nullptr, vi});
    build(gcd_body(gcd_tail()));
    expect_kept("volatile parameter");
    reset();
    declare("gcd", int_type(), {"a", "b"}, {}, true);
    build(gcd_body(gcd_tail()));
    expect_kept("variadic");
    reset();
    declare("gcd", int_type(), {"a", "b"});
    f->address_taken = true;
    build(gcd_body(gcd_tail()));
    expect_kept("the reader saw an address taken");
    f->address_taken = false;
}
