// The rewrites of the CFG simplifier that change what the statements compute:
// if-conversion, duplication of blocks, cross jumping and switch cases. Each
// is checked for meaning by running the function before and after on a small
// interpreter over every combination of a set of input values.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <deque>
#include <functional>
#include <initializer_list>
#include <map>
#include <string>
#include <vector>

#include "driver/driver.h"
#include "driver/options.h"
#include "driver/passes.h"
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
TYPE* ty(TYPE::IKIND k) {
    int_type();
    return tp->mk_int(k);
}

// C's conversion of an integer value to t.
INT65 conv(INT65 v, const TYPE* t) {
    if (t->is_bool())
        return INT65(v.is_zero() ? 0 : 1);
    return truncate_to_type(v, t);
}

using Env = std::map<const SYMTAB*, INT65>;

// Runs trees as C would, on values held in their types' ranges.
class Interpreter {
public:
    explicit Interpreter(Env& env) : env(env) {}

    INT65 eval(const NODE* n) {
        TYPE* t = n->type;
        switch (n->op) {
        case NAME:
            return conv(env[n->name_symbol()], t);
        case ICON:
            return conv(n->value, t);
        case SCONV:
            return conv(eval(n->left), t);
        case COMMAOP:
            eval(n->left);
            return eval(n->right);
        case CALL:
        case UCALL:
            // Calls are counted: how often they run is what a caller sees.
            env[nullptr] = env[nullptr] + INT65(1);
            return INT65(0);
        case PLUS:
        case MINUS:
        case MULT:
        case DIV:
        case MOD:
        case ANDB:
        case ORB:
        case XORB:
            return conv(arith(n->op, conv(eval(n->left), t), conv(eval(n->right), t), t), t);
        case SLL:
        case SRL:
            return conv(arith(n->op, conv(eval(n->left), t), eval(n->right), t), t);
        case UMINUS:
            return conv(-conv(eval(n->left), t), t);
        case NOTB:
            return conv(~conv(eval(n->left), t), t);
        case EXCLAIM:
            return INT65(eval(n->left).is_zero() ? 1 : 0);
        case ANDAND:
            return INT65(!eval(n->left).is_zero() && !eval(n->right).is_zero() ? 1 : 0);
        case OROR:
            return INT65(!eval(n->left).is_zero() || !eval(n->right).is_zero() ? 1 : 0);
        case QUEST:
            return conv(eval(n->left).is_zero() ? eval(n->right->right) : eval(n->right->left), t);
        case ASG:
            return store(n->left, conv(eval(n->right), n->left->type));
        case EQ:
        case NEQ:
        case LT:
        case LE:
        case GT:
        case GE:
        case ULT:
        case ULE:
        case UGT:
        case UGE:
            return INT65(compare(n) ? 1 : 0);
        default:
            if (op_of_opASG[n->op] != NONE) {
                TYPE* c = combined_type_for_types(n->left->type, n->right->type);
                const INT65 v =
                    arith(op_of_opASG[n->op], conv(eval(n->left), c), conv(eval(n->right), c), c);
                return store(n->left, conv(v, n->left->type));
            }
            ADD_FAILURE() << "no evaluation for " << node_operator_name[n->op];
            return INT65(0);
        }
    }

private:
    Env& env;

    INT65 store(const NODE* lhs, INT65 v) {
        EXPECT_EQ(lhs->op, NAME);
        env[lhs->name_symbol()] = v;
        return v;
    }

    static INT65 arith(int op, INT65 a, INT65 b, const TYPE* t) {
        const uint64_t mask = type_mask(t).bits();
        switch (op) {
        case PLUS:
            return a + b;
        case MINUS:
            return a - b;
        case MULT:
            return a * b;
        case DIV:
            return b.is_zero() ? INT65(0) : a / b;
        case MOD:
            return b.is_zero() ? INT65(0) : a % b;
        case ANDB:
            return INT65::from_unsigned(a.bits() & b.bits());
        case ORB:
            return INT65::from_unsigned(a.bits() | b.bits());
        case XORB:
            return INT65::from_unsigned(a.bits() ^ b.bits());
        case SLL:
            return INT65::from_unsigned(a.bits() << b.to_int64());
        case SRL:
            if (t->is_signed())
                return INT65(static_cast<long long>(a.to_int64() >> b.to_int64()));
            return INT65::from_unsigned((a.bits() & mask) >> b.to_int64());
        default:
            ADD_FAILURE() << "no arithmetic for " << node_operator_name[op];
            return INT65(0);
        }
    }

    bool compare(const NODE* n) {
        TYPE* c = combined_type_for_types(n->left->type, n->right->type);
        INT65 a = conv(eval(n->left), c);
        INT65 b = conv(eval(n->right), c);
        if (n->op >= ULE) {
            a = INT65::from_unsigned(a.bits() & type_mask(c).bits());
            b = INT65::from_unsigned(b.bits() & type_mask(c).bits());
        }
        switch (n->op) {
        case EQ:
            return a == b;
        case NEQ:
            return a != b;
        case LT:
        case ULT:
            return a < b;
        case LE:
        case ULE:
            return a <= b;
        case GT:
        case UGT:
            return a > b;
        default:
            return a >= b;
        }
    }
};

// What a run of the function shows: how it ended and the observed variables.
struct Outcome {
    bool ended = false;
    INT65 value;
    std::vector<INT65> vars;
    bool operator==(const Outcome& o) const {
        return ended == o.ended && value == o.value && vars == o.vars;
    }
};

std::string describe(const Outcome& o) {
    std::string s = o.ended ? "ends, value " + std::to_string(o.value.to_int64()) : "runs on";
    for (INT65 v : o.vars)
        s += " " + std::to_string(v.to_int64());
    return s;
}

struct CfgRewrite : ::testing::Test {
    SYMTAB* fn = nullptr;
    SYMTAB* x = nullptr;
    SYMTAB* y = nullptr;
    SYMTAB* c = nullptr;
    SYMTAB* d = nullptr;
    FUNINFO* f = nullptr;
    option_obj options;
    std::deque<SYMTAB>* symbols = new std::deque<SYMTAB>;

    void SetUp() override {
        int_type();
        fn = var("f", int_type(), 0);
        x = var("x");
        y = var("y");
        c = var("c");
        d = var("d");
        f = new FUNINFO;
        f->symbol = fn;
        currfuninfo = f;
    }
    void TearDown() override {
        file_options = nullptr;
        erase_bblocks(f);
        currfuninfo = nullptr;
        delete f;
        for (SYMTAB& s : *symbols)
            free(s.name);
        delete symbols;
    }

    SYMTAB* var(const char* name, TYPE* t = nullptr, int lex = 2) {
        SYMTAB* s = &symbols->emplace_back();
        s->name = strdup(name);
        s->type = t ? t : int_type();
        s->lex = lex;
        if (lex >= 2)
            s->sclass = SC_AUTO;
        return s;
    }
    void set_option(const char* text) {
        ASSERT_TRUE(options.process_option(text, false)) << text;
        file_options = &options;
    }

    // Trees.
    NODE* icon(long long v, TYPE* t = nullptr) { return mk_ICON(INT65(v), t ? t : int_type()); }
    NODE* nm(SYMTAB* s) { return mk_NAME(s, nullptr); }
    NODE* op(int o, NODE* l, NODE* r, TYPE* t = nullptr) {
        return maketree(o, l, r, t ? t : l->type, nullptr);
    }
    NODE* rel(int o, NODE* l, NODE* r) { return maketree(o, l, r, int_type(), nullptr); }
    NODE* asg(SYMTAB* s, NODE* rhs) { return mk_ASG(nm(s), rhs); }
    NODE* label(int n) {
        NODE* t = maketree(LABELDEF, nullptr, nullptr, tp->mk_void(), nullptr);
        t->mk_label(n);
        return t;
    }
    NODE* go(int n) {
        return maketree(BRANCH, mk_LABELREF(n, nullptr), nullptr, tp->mk_void(), nullptr);
    }
    NODE* iff(NODE* cond, int taken, int not_taken) {
        return mk_IF(cond, mk_LABELREF(taken, nullptr), mk_LABELREF(not_taken, nullptr), nullptr);
    }
    NODE* ret(NODE* v) { return maketree(RETURN, nm(fn), v, int_type(), nullptr); }
    NODE* call(SYMTAB* callee) {
        NODE* address = maketree(UAND, nm(callee), nullptr, tp->mk_ptr(callee->type), nullptr);
        return maketree(UCALL, address, nullptr, int_type(), nullptr);
    }
    NODE* comment(const char* text, long long kind = 47) {
        NODE* n = new_node(ASM, tp->mk_void());
        n->text = strdup(text);
        n->value = INT65(kind);
        return n;
    }
    NODE* sw(NODE* value, std::initializer_list<std::pair<long long, int>> cases, int def) {
        NODE* chain = nullptr;
        for (auto [v, l] : cases) {
            NODE* k = maketree(CASE, icon(v), mk_LABELREF(l, nullptr), tp->mk_void(), nullptr);
            chain = chain ? maketree(COMMA, chain, k, tp->mk_void(), nullptr) : k;
        }
        NODE* dn = maketree(DEFAULT, mk_LABELREF(def, nullptr), nullptr, tp->mk_void(), nullptr);
        chain = chain ? maketree(COMMA, chain, dn, tp->mk_void(), nullptr) : dn;
        return maketree(SWITCH, value, chain, tp->mk_void(), nullptr);
    }

    void build(std::initializer_list<NODE*> stmts) { build(std::vector<NODE*>(stmts)); }
    void build(const std::vector<NODE*>& stmts) {
        erase_bblocks(f);
        LIST* l = nullptr;
        for (NODE* t : stmts)
            l = mkelist(t, l, nullptr);
        f->stmts = l;
        buildcfg();
        check();
    }

    std::vector<BBLK*> blocks() {
        std::vector<BBLK*> out;
        for (BBLK* b = f->bb_list; b; b = b->next)
            out.push_back(b);
        return out;
    }
    int count_stmts() {
        int n = 0;
        for (BBLK* b = f->bb_list; b; b = b->next)
            for (LIST* s = b->statements; s; s = s->next)
                n++;
        return n;
    }
    static int count_in(const NODE* t, int o) {
        return t ? (t->op == o) + count_in(t->left, o) + count_in(t->right, o) : 0;
    }
    // Nodes of an operator in the whole function.
    int count(int o) {
        int n = 0;
        for (BBLK* b = f->bb_list; b; b = b->next)
            for (LIST* s = b->statements; s; s = s->next)
                n += count_in(s->tree, o);
        return n;
    }
    BBLK* block_with_value(long long k) {
        for (BBLK* b = f->bb_list; b; b = b->next)
            for (LIST* s = b->statements; s; s = s->next)
                if (s->tree->op == ASG && s->tree->right->op == ICON &&
                    s->tree->right->value == INT65(k))
                    return b;
        return nullptr;
    }
    // The first IF that control meets leaving b, following BRANCHes.
    const NODE* next_test(BBLK* b) {
        for (int hops = 0; b && hops < 8; hops++) {
            const NODE* t = last_stmt(b);
            if (t->op != BRANCH)
                return t->op == IF ? t : nullptr;
            b = label_target(t->left);
        }
        return nullptr;
    }
    std::vector<BBLK*> targets(BBLK* b) {
        std::vector<NODE*> labels;
        collect_label_operands(last_stmt(b), labels);
        std::vector<BBLK*> out;
        for (NODE* l : labels)
            out.push_back(label_target(l));
        return out;
    }

    // The graph invariants every pass relies on, label use counts included.
    void check() {
        std::vector<BBLK*> list = blocks();
        ASSERT_FALSE(list.empty());
        EXPECT_EQ(f->bb_count, int(list.size()));
        std::map<LBL*, int> uses;
        for (size_t i = 0; i < list.size(); i++) {
            BBLK* b = list[i];
            EXPECT_EQ(b->dfn, int(i + 1));
            NODE* t = last_stmt(b);
            ASSERT_NE(t, nullptr);
            std::vector<NODE*> labels;
            collect_label_operands(t, labels);
            for (NODE* l : labels) {
                ASSERT_NE(l->label_rec, nullptr);
                uses[l->label_rec]++;
                EXPECT_TRUE(edge_memberp(l->label_rec->bb, b->succs));
            }
            for (EDGE* e = b->succs; e; e = e->next)
                EXPECT_TRUE(edge_memberp(b, e->bb->preds));
            for (EDGE* e = b->preds; e; e = e->next)
                EXPECT_TRUE(edge_memberp(b, e->bb->succs));
            for (LIST* s = b->statements; s && s->next; s = s->next)
                EXPECT_TRUE(s->tree->op != IF && s->tree->op != BRANCH) << "a jump inside a block";
        }
        for (BBLK* b : list)
            for (LBL* l = b->labels; l; l = l->next)
                EXPECT_EQ(l->uses, uses[l]) << "label " << l->number;
        EXPECT_EQ(scan_for_sharing(f->bb_list), 0);
    }

    // Interprets the function from its entry.
    Outcome run(Env env, const std::vector<SYMTAB*>& observed) {
        Outcome o;
        Interpreter in(env);
        BBLK* b = f->bb_list;
        for (int steps = 0; b && steps < 1000; steps++) {
            BBLK* next = nullptr;
            for (LIST* s = b->statements; s && !next; s = s->next) {
                NODE* t = s->tree;
                switch (t->op) {
                case IF:
                    next =
                        label_target(in.eval(t->left).is_zero() ? t->right->right : t->right->left);
                    break;
                case BRANCH:
                    next = label_target(t->left);
                    break;
                case SWITCH: {
                    // Case labels compare in the promoted type of the value.
                    TYPE* promoted = promoted_type(t->left->type);
                    const INT65 v = conv(in.eval(t->left), promoted);
                    for (NODE* n = t->right; n; n = n->op == COMMA ? n->left : nullptr) {
                        NODE* item = n->op == COMMA ? n->right : n;
                        if (item->op == DEFAULT && !next)
                            next = label_target(item->left);
                        else if (item->op == CASE && conv(item->left->value, promoted) == v)
                            next = label_target(item->right);
                    }
                    break;
                }
                case RETURN:
                case URETURN:
                    o.ended = true;
                    if (t->right)
                        o.value = in.eval(t->right);
                    for (SYMTAB* s : observed)
                        o.vars.push_back(env[s]);
                    o.vars.push_back(env[nullptr]);
                    return o;
                case ASM:
                case PPRAGMA:
                    break;
                default:
                    in.eval(t);
                }
            }
            b = next;
        }
        for (SYMTAB* s : observed)
            o.vars.push_back(env[s]);
        return o;
    }

    // Every combination of the inputs' values, each converted to its type.
    std::vector<Env> inputs(const std::vector<std::pair<SYMTAB*, std::vector<long long>>>& domain) {
        std::vector<Env> all{Env{}};
        for (const auto& [s, values] : domain) {
            std::vector<Env> more;
            for (const Env& e : all)
                for (long long v : values) {
                    Env n = e;
                    n[s] = conv(INT65(v), s->type);
                    more.push_back(n);
                }
            all = more;
        }
        return all;
    }

    // Runs `change` and checks that every input still gives what it gave.
    void expect_same_meaning(const std::vector<std::pair<SYMTAB*, std::vector<long long>>>& domain,
                             const std::vector<SYMTAB*>& observed,
                             const std::function<void()>& change, const std::string& what) {
        const std::vector<Env> all = inputs(domain);
        std::vector<Outcome> before;
        for (const Env& e : all)
            before.push_back(run(e, observed));
        change();
        check();
        int wrong = 0;
        for (size_t i = 0; i < all.size() && wrong < 3; i++) {
            const Outcome after = run(all[i], observed);
            if (after == before[i])
                continue;
            wrong++;
            std::string in;
            for (const auto& [s, v] : all[i])
                in += std::string(" ") + s->name + "=" + std::to_string(v.to_int64());
            ADD_FAILURE() << what << ":" << in << ": before " << describe(before[i]) << ", after "
                          << describe(after);
        }
    }
    void simp(bool full = false, bool may_speculate = false) {
        simpcfg(full, may_speculate);
        check();
    }

    // Text the log got while `work` ran.
    std::string logged(const std::function<void()>& work) {
        FILE* log = tmpfile();
        FILE* saved = fdebug;
        fdebug = log;
        print_debug = 1;
        work();
        print_debug = 0;
        fdebug = saved;
        rewind(log);
        std::string text;
        char buffer[4096];
        for (size_t n; (n = fread(buffer, 1, sizeof buffer, log)) > 0;)
            text.append(buffer, n);
        fclose(log);
        return text;
    }
};

const std::vector<long long> small = {-3, -1, 0, 1, 2, 7};
const std::vector<long long> bytes = {-128, -127, -2, -1, 0, 1, 2, 126, 127, 128, 200, 254, 255};

} // namespace

// if (c) x = x + 1: only the constant becomes the test, so the value stored on
// the path that did not assign is x itself, in every type including _Bool and
// the wrapping ones.
TEST_F(CfgRewrite, IncrementDiamondComputesTheSame) {
    for (TYPE* t : {int_type(), ty(TYPE::ik_char), ty(TYPE::ik_uchar), ty(TYPE::ik_bool),
                    ty(TYPE::ik_llong)}) {
        SYMTAB* v = var("v", t);
        for (int o : {PLUS, MINUS, ORB, XORB})
            for (bool on_taken : {true, false})
                for (int cond_kind = 0; cond_kind < 2; cond_kind++) {
                    NODE* cond = cond_kind ? rel(LT, nm(c), nm(d)) : nm(c);
                    NODE* body = asg(v, op(o, nm(v), icon(1, t)));
                    build({iff(cond, on_taken ? 1 : 2, on_taken ? 2 : 1), label(1), body, go(2),
                           label(2), ret(nm(v))});
                    const std::string what = std::string(node_operator_name[o]) + " in " +
                                             t->print() + (on_taken ? " taken" : " not taken");
                    expect_same_meaning(
                        {{v, bytes}, {c, {-1, 0, 3}}, {d, {0, 2}}}, {v}, [&] { simp(); }, what);
                    EXPECT_EQ(count(IF), 0) << what;
                    EXPECT_EQ(blocks().size(), 1u) << what;
                }
    }
}

// The store on the path that did not assign must be invisible: not to other
// code through a global or an address, nor as a volatile access; and the test
// must be one that may move.
TEST_F(CfgRewrite, IncrementDiamondKeepsItsBranchWhenTheStoreOrTestCouldBeSeen) {
    SYMTAB* global = var("g", int_type(), 0);
    global->sclass = SC_GLOBAL_DEF;
    SYMTAB* file_static = var("s");
    file_static->sclass = SC_STATIC;
    SYMTAB* addressed = var("a");
    addressed->state |= SYM_ADDRESS_TAKEN;
    SYMTAB* vol = var("v", tp->mk_qual(int_type(), TQ_VOLATILE));
    SYMTAB* vol_test = var("w", tp->mk_qual(int_type(), TQ_VOLATILE));
    struct Variant {
        const char* what;
        SYMTAB* target;
        NODE* cond;
    };
    const Variant variants[] = {
        {"global", global, nm(c)},           {"static", file_static, nm(c)},
        {"address taken", addressed, nm(c)}, {"volatile target", vol, nm(c)},
        {"volatile test", x, nm(vol_test)},  {"test with an effect", x, asg(y, nm(c))},
    };
    for (const Variant& v : variants) {
        NODE* body = asg(v.target, op(PLUS, nm(v.target), icon(1)));
        build({iff(v.cond, 1, 2), label(1), body, go(2), label(2), ret(nm(x))});
        simp();
        EXPECT_EQ(count(IF), 1) << v.what;
    }
    // An arm that does more, or that is reached from elsewhere too.
    build({iff(nm(c), 1, 2), label(1), asg(x, op(PLUS, nm(x), icon(1))), asg(y, icon(3)), go(2),
           label(2), ret(nm(x))});
    simp();
    EXPECT_EQ(count(IF), 1) << "two statements";
    build({iff(nm(c), 1, 3), label(3), iff(nm(d), 1, 2), label(1), asg(x, op(PLUS, nm(x), icon(1))),
           label(2), ret(nm(x))});
    simp();
    EXPECT_EQ(count(IF), 2) << "a second way into the arm";
}

// A then-arm of comments: it goes, and so does the test, unless the test has
// an effect, which stays as a statement. Inline assembly is code.
TEST_F(CfgRewrite, EmptyThenArmOfCommentsGoes) {
    build({iff(nm(c), 1, 2), label(1), comment("just a note"), go(2), label(2), asg(x, icon(2)),
           ret(nm(x))});
    simp();
    EXPECT_EQ(count(IF), 0);
    EXPECT_EQ(count(ASM), 0);
    EXPECT_EQ(blocks().size(), 1u);

    build({iff(asg(y, nm(c)), 1, 2), label(1), comment("note"), go(2), label(2), ret(nm(y))});
    expect_same_meaning(
        {{c, small}}, {y}, [&] { simp(); }, "test with an effect");
    EXPECT_EQ(count(IF), 0);
    EXPECT_EQ(count(ASG), 1);

    build({iff(nm(c), 1, 2), label(1), comment("nop", 36), go(2), label(2), ret(nm(x))});
    simp();
    EXPECT_EQ(count(IF), 1);
    EXPECT_EQ(count(ASM), 1);
}

// if (c) x = k1; else x = k2; over pairs of constants in several types and
// tests, the bit tests among them: the branch-free formula must give k1 or k2
// exactly as the test says.
TEST_F(CfgRewrite, ConstantArmsBecomeFormulasThatComputeTheSame) {
    const long long ks[] = {0, 1, -1, 2, 5, 16, 0x40, 0x80, -128, 0x7fffffff};
    const std::vector<long long> tests = {
        0, 1, 4, 5, 0x80, 0x84, -1, -128, 0x7fffffff, -0x7fffffff - 1, 0x40000, 6};
    for (TYPE* t : {int_type(), ty(TYPE::ik_uchar), ty(TYPE::ik_char), ty(TYPE::ik_bool),
                    ty(TYPE::ik_uint), ty(TYPE::ik_short), ty(TYPE::ik_llong)}) {
        SYMTAB* v = var("v", t);
        for (int cond_kind = 0; cond_kind < 6; cond_kind++)
            for (long long k1 : ks)
                for (long long k2 : ks) {
                    if (t->is_bool() && (k1 < 0 || k1 > 1 || k2 < 0 || k2 > 1))
                        continue;
                    NODE* cond = nullptr;
                    switch (cond_kind) {
                    case 0:
                        cond = nm(c);
                        break;
                    case 1:
                        cond = rel(LT, nm(c), nm(d));
                        break;
                    case 2:
                        cond = op(ANDB, nm(c), icon(4));
                        break;
                    case 3:
                        cond = rel(NEQ, op(ANDB, nm(c), icon(0x80)), icon(0));
                        break;
                    case 4:
                        cond = rel(EQ, op(ANDB, nm(c), icon(-0x7fffffff - 1)), icon(0));
                        break;
                    default:
                        cond = op(ANDB, nm(c), icon(-0x7fffffff - 1));
                    }
                    build({iff(cond, 1, 2), label(1), asg(v, icon(k1, t)), go(3), label(2),
                           asg(v, icon(k2, t)), label(3), ret(nm(v))});
                    const std::string what = t->print() + " test " + std::to_string(cond_kind) +
                                             " ? " + std::to_string(k1) + " : " +
                                             std::to_string(k2);
                    expect_same_meaning(
                        {{c, tests}, {d, {0, 5}}}, {v}, [&] { simp(); }, what);
                    EXPECT_EQ(count(IF), 0) << what;
                }
    }
}

// The shapes the formulas take: a tested bit moved by a shift, taken unsigned
// so that a sign bit does not spread; masks otherwise.
TEST_F(CfgRewrite, BitTestsBecomeShiftsAndOtherTestsMasks) {
    build({iff(op(ANDB, nm(c), icon(4)), 1, 2), label(1), asg(x, icon(16)), go(3), label(2),
           asg(x, icon(0)), label(3), ret(nm(x))});
    simp();
    EXPECT_EQ(count(SLL), 1);
    EXPECT_EQ(count(UMINUS), 0);

    // 0x80000000 tested, 1 or 3 stored: bit 31 goes to bit 1, or-ed with 1.
    build({iff(op(ANDB, nm(c), icon(-0x7fffffff - 1)), 1, 2), label(1), asg(x, icon(3)), go(3),
           label(2), asg(x, icon(1)), label(3), ret(nm(x))});
    simp();
    EXPECT_EQ(count(SRL), 1);
    EXPECT_EQ(count(ORB), 1);
    EXPECT_EQ(count(UMINUS), 0);

    // Bit clear gives 6, bit set 2: the set case clears bit 2 of 6 by XORB.
    build({iff(op(ANDB, nm(c), icon(4)), 1, 2), label(1), asg(x, icon(2)), go(3), label(2),
           asg(x, icon(6)), label(3), ret(nm(x))});
    simp();
    EXPECT_EQ(count(XORB), 1);
    EXPECT_EQ(count(SLL) + count(SRL), 0);

    build({iff(nm(c), 1, 2), label(1), asg(x, icon(12)), go(3), label(2), asg(x, icon(0)), label(3),
           ret(nm(x))});
    simp();
    EXPECT_EQ(count(ANDB), 1);
    EXPECT_EQ(count(UMINUS), 1);
    EXPECT_EQ(count(QUEST), 0);
}

// Both arms as one assigning operator: the constants are merged the same way.
TEST_F(CfgRewrite, AssigningOperatorArmsMergeWhenTheyMatch) {
    build({iff(rel(GT, nm(c), nm(d)), 1, 2), label(1), op(PLUSASG, nm(x), icon(3)), go(3), label(2),
           op(PLUSASG, nm(x), icon(5)), label(3), ret(nm(x))});
    expect_same_meaning(
        {{c, small}, {d, small}, {x, small}}, {x}, [&] { simp(); }, "+=");
    EXPECT_EQ(count(IF), 0);
    EXPECT_EQ(count(PLUSASG), 1);

    build({iff(nm(c), 1, 2), label(1), op(PLUSASG, nm(x), icon(3)), go(3), label(2),
           op(MINUSASG, nm(x), icon(5)), label(3), ret(nm(x))});
    simp();
    EXPECT_EQ(count(IF), 1) << "different operators";

    // The same value on both arms needs no test at all.
    build({iff(nm(c), 1, 2), label(1), asg(x, op(PLUS, nm(y), nm(d))), go(3), label(2),
           asg(x, op(PLUS, nm(y), nm(d))), label(3), ret(nm(x))});
    expect_same_meaning(
        {{c, small}, {d, small}, {y, small}}, {x}, [&] { simp(); }, "same arms");
    EXPECT_EQ(count(IF), 0);
    EXPECT_EQ(count(QUEST), 0);
}

// Other arms become a QUEST in full mode or when speculation is allowed, with
// the branch probability in the QUEST and its complement in the COLON.
TEST_F(CfgRewrite, ArmsBecomeAQuestOnlyWhenAllowed) {
    const auto diamond = [&] {
        NODE* test = iff(rel(LT, nm(c), nm(d)), 1, 2);
        test->weight = 0.25;
        build({test, label(1), asg(x, op(PLUS, nm(y), icon(1))), go(3), label(2),
               asg(x, op(MULT, nm(y), nm(d))), label(3), ret(nm(x))});
    };
    diamond();
    simp();
    EXPECT_EQ(count(IF), 1) << "neither full nor speculating";

    for (bool full : {true, false}) {
        diamond();
        expect_same_meaning(
            {{c, small}, {d, small}, {y, small}}, {x}, [&] { simp(full, !full); },
            full ? "full" : "speculating");
        ASSERT_EQ(count(QUEST), 1);
        EXPECT_EQ(count(IF), 0);
        NODE* quest = f->bb_list->statements->tree->right;
        ASSERT_EQ(quest->op, QUEST);
        EXPECT_EQ(quest->weight, 0.25);
        EXPECT_EQ(quest->right->weight, 0.75);
    }
}

// A QUEST without side effects may end up computing both arms, so an arm
// that could fault or be seen where the program did not run it stays behind
// its branch: loads through pointers, calls, division by an unknown or -1,
// volatile reads, floating point.
TEST_F(CfgRewrite, ArmsThatMayFaultOrBeSeenAreNotMerged) {
    SYMTAB* p = var("p", tp->mk_ptr(int_type()));
    SYMTAB* vol = var("v", tp->mk_qual(int_type(), TQ_VOLATILE));
    SYMTAB* g = var("g", tp->mk_func(int_type(), false, false, false), 0);
    SYMTAB* fl = var("fl", tp->basic[TYPE_PKG::bt_float]);
    const std::function<NODE*()> unsafe[] = {
        [&] { return maketree(UMULT, nm(p), nullptr, int_type(), nullptr); },
        [&] { return op(DIV, nm(y), nm(d)); },
        [&] { return op(DIV, nm(y), icon(-1)); },
        [&] { return op(PLUS, nm(vol), icon(1), int_type()); },
        [&] { return call(g); },
        [&] { return maketree(SCONV, op(MULT, nm(fl), nm(fl)), nullptr, int_type(), nullptr); },
    };
    for (const auto& make : unsafe) {
        for (bool full : {true, false}) {
            build({iff(nm(c), 1, 2), label(1), asg(x, make()), go(3), label(2), asg(x, nm(y)),
                   label(3), ret(nm(x))});
            simp(full, !full);
            EXPECT_EQ(count(QUEST), 0);
            EXPECT_EQ(count(IF), 1);
        }
    }
    // Division by a constant that is neither 0 nor -1 cannot fault.
    build({iff(nm(c), 1, 2), label(1), asg(x, op(DIV, nm(y), icon(3))), go(3), label(2),
           asg(x, nm(y)), label(3), ret(nm(x))});
    expect_same_meaning(
        {{c, small}, {y, small}}, {x}, [&] { simp(true); }, "y / 3");
    EXPECT_EQ(count(QUEST), 1);
}

// Outside full mode the function must have no loop hierarchy once a diamond
// to merge is found; a marked entry stands for one.
TEST_F(CfgRewrite, QuestMergingWithALoopHierarchyOutsideFullModeIsAFaultDeath) {
    build({iff(nm(d), 4, 5), label(4), iff(nm(c), 1, 2), label(1), asg(x, icon(1)), go(3), label(2),
           asg(x, icon(2)), label(3), ret(nm(x)), label(5), ret(nm(y))});
    static int fake_loop;
    f->bb_list->loop = reinterpret_cast<LOOP*>(&fake_loop);
    EXPECT_EXIT(simpcfg(false, false), ::testing::ExitedWithCode(1), "");
    simpcfg(true, false);
    f->bb_list->loop = nullptr;
    check();
    EXPECT_EQ(count(IF), 1);
}

// if ((x = x + k) == c) ... with another test of x on an arm: the test moves
// ahead of the increment, which both arms then do first. Checked over the
// whole range of a wrapping type.
TEST_F(CfgRewrite, LoopExitTestMovesAheadOfTheIncrement) {
    for (TYPE* t : {ty(TYPE::ik_char), ty(TYPE::ik_uchar), int_type()})
        for (int o : {PLUS, MINUS})
            for (long long k : {1LL, 3LL, 200LL})
                for (long long limit : {0LL, 5LL, 127LL, -128LL}) {
                    SYMTAB* v = var("v", t);
                    NODE* step = asg(v, op(o, nm(v), icon(k, t)));
                    build({iff(rel(EQ, step, icon(limit)), 1, 2), label(1), ret(nm(v)), label(2),
                           iff(rel(NEQ, nm(v), icon(7)), 3, 4), label(3), asg(y, icon(3)),
                           ret(nm(v)), label(4), asg(y, icon(4)), ret(nm(y))});
                    std::vector<long long> all;
                    for (long long i = -130; i < 260; i++)
                        all.push_back(i);
                    const bool fits = truncate_to_type(INT65(limit), t) == INT65(limit);
                    const std::string what = t->print() + " " + node_operator_name[o] +
                                             std::to_string(k) + " == " + std::to_string(limit);
                    expect_same_meaning(
                        {{v, all}}, {v, y}, [&] { simp(); }, what);
                    // The increment may have become v += k.
                    EXPECT_EQ(count(ASG) + count(PLUSASG) + count(MINUSASG) - 2, fits ? 2 : 1)
                        << what;
                }
}

// Two tests of one condition both going to a block ahead of it: at level 2 the
// block is marked as a loop's duplicated test, and an inverted second test is
// put in the form of the first.
TEST_F(CfgRewrite, BlockReachedFromTwoEqualTestsIsMarkedAtLevelTwo) {
    const auto shape = [&](bool inverted) {
        build({iff(nm(d), 1, 2), label(1), asg(y, icon(1)), iff(rel(LT, nm(c), icon(5)), 3, 4),
               label(2), asg(y, icon(2)),
               inverted ? iff(rel(GE, nm(c), icon(5)), 4, 3) : iff(rel(LT, nm(c), icon(5)), 3, 4),
               label(3), asg(x, icon(3)), ret(nm(x)), label(4), asg(x, icon(4)), ret(nm(x))});
    };
    shape(false);
    simp();
    EXPECT_EQ(block_with_value(3)->flags & BB_KEEP_DUPLICATE_TEST, 0) << "level 1";

    set_option("-opt_level=2");
    for (bool inverted : {false, true}) {
        shape(inverted);
        expect_same_meaning(
            {{c, {0, 4, 5, 9}}, {d, {0, 1}}}, {x, y}, [&] { simp(); },
            inverted ? "inverted" : "same");
        EXPECT_NE(block_with_value(3)->flags & BB_KEEP_DUPLICATE_TEST, 0);
        EXPECT_NE(block_with_value(4)->flags & BB_KEEP_DUPLICATE_TEST, 0);
        const NODE* second = last_stmt(block_with_value(2));
        ASSERT_EQ(second->op, IF);
        EXPECT_EQ(targets(block_with_value(2)),
                  (std::vector<BBLK*>{block_with_value(3), block_with_value(4)}));
        EXPECT_EQ(second->left->op, LT);
    }

    // Tests of different conditions mark nothing.
    build({iff(nm(d), 1, 2), label(1), asg(y, icon(1)), iff(nm(c), 3, 4), label(2), asg(y, icon(2)),
           iff(nm(x), 3, 4), label(3), asg(x, icon(3)), ret(nm(x)), label(4), asg(x, icon(4)),
           ret(nm(x))});
    simp();
    EXPECT_EQ(block_with_value(3)->flags & BB_KEEP_DUPLICATE_TEST, 0);
}

// A loop whose test block is reached from the entry and from the body: the
// test is copied into both, which rotates the loop.
TEST_F(CfgRewrite, LoopTestIsDuplicatedIntoItsPredecessors) {
    const auto loop = [&] {
        build({asg(x, icon(0)), label(1), iff(rel(LT, nm(x), nm(d)), 2, 3), label(2),
               asg(x, op(PLUS, nm(x), nm(c))), go(1), label(3), ret(nm(x))});
    };
    loop();
    expect_same_meaning(
        {{c, {1, 2, 3}}, {d, small}}, {x}, [&] { simp(); }, "rotation");
    EXPECT_EQ(count(IF), 2);
    for (BBLK* b : blocks())
        EXPECT_FALSE(b->statements->tree->op == IF) << "the test stands alone nowhere";

    // Nothing is copied below level 1, for size, or when it is vetoed.
    const int stmts = [&] {
        loop();
        set_option("-opt_for_speed=2");
        simp();
        return count_stmts();
    }();
    EXPECT_EQ(count(IF), 1);
    options.clearopt(OPT_SIZE_SPEED);
    set_option("-opt_level=0");
    loop();
    simp();
    EXPECT_EQ(count(IF), 1);
    EXPECT_EQ(count_stmts(), stmts);
    options.clearopt(OPT_OPT_LEVEL);
    process_debug_option("disable", "tail_duplication");
    loop();
    simp();
    process_debug_option("disable", "tail_duplication=0");
    EXPECT_EQ(count(IF), 1);
}

// A return of a variable goes into each predecessor, unless both are copies
// of each other, which cross jumping would merge again.
TEST_F(CfgRewrite, ReturnBlocksAreDuplicatedUnlessTheyEndACongruentDiamond) {
    build({iff(nm(c), 1, 2), label(1), asg(x, op(PLUS, nm(y), icon(1))), go(3), label(2),
           asg(x, op(PLUS, nm(y), icon(2))), label(3), asg(y, nm(x)), ret(nm(y))});
    expect_same_meaning(
        {{c, small}, {y, small}}, {x, y}, [&] { simp(); }, "return");
    EXPECT_EQ(count(RETURN), 2);
    EXPECT_EQ(count(BRANCH), 0);

    // Arms of two statements each, so that no if-conversion takes them.
    build({iff(nm(c), 1, 2), label(1), asg(y, icon(1)), asg(x, icon(5)), go(3), label(2),
           asg(y, icon(1)), asg(x, icon(5)), label(3), ret(nm(x))});
    simp();
    EXPECT_EQ(count(RETURN), 1);
}

// What may not be copied: a return of an expression, a call, a test of many
// operators.
TEST_F(CfgRewrite, ExpensiveOrUniqueBlocksAreNotDuplicated) {
    SYMTAB* g = var("g", tp->mk_func(int_type(), false, false, false), 0);
    NODE* big = nm(c);
    for (int i = 0; i < 16; i++)
        big = op(PLUS, big, nm(d));
    const std::function<std::vector<NODE*>()> joins[] = {
        [&] { return std::vector<NODE*>{ret(op(PLUS, nm(x), nm(y)))}; },
        [&] {
            return std::vector<NODE*>{call(g), ret(nm(x))};
        },
        [&] {
            return std::vector<NODE*>{iff(rel(LT, big, nm(y)), 4, 5), label(4), ret(nm(x)),
                                      label(5), ret(nm(y))};
        },
    };
    for (const auto& join : joins) {
        // Arms no if-conversion takes outside full mode.
        std::vector<NODE*> stmts = {iff(nm(c), 1, 2),
                                    label(1),
                                    asg(x, op(PLUS, nm(y), icon(1))),
                                    go(3),
                                    label(2),
                                    asg(x, op(MULT, nm(y), icon(2))),
                                    go(3),
                                    label(3)};
        for (NODE* t : join())
            stmts.push_back(t);
        build(stmts);
        const int before = count_stmts();
        simp();
        EXPECT_EQ(count_stmts(), before) << "nothing copied";
    }
}

// Many ways into one cheap test: each gets a copy, once, and a second run of
// the simplifier finds nothing more to do.
TEST_F(CfgRewrite, DuplicationIsBoundedAndSettles) {
    std::vector<NODE*> stmts = {sw(nm(c), {{1, 1}, {2, 2}, {3, 3}, {4, 4}, {5, 5}}, 6)};
    for (int i = 1; i <= 6; i++) {
        stmts.push_back(label(i));
        stmts.push_back(asg(x, icon(10 * i)));
        stmts.push_back(go(7));
    }
    for (NODE* t : {label(7), iff(nm(d), 8, 9), label(8), asg(y, icon(8)), ret(nm(x)), label(9),
                    asg(y, icon(9)), ret(nm(x))})
        stmts.push_back(t);
    build(stmts);
    const int before = count_stmts();
    expect_same_meaning(
        {{c, {0, 1, 2, 3, 4, 5, 6}}, {d, {0, 1}}}, {x, y}, [&] { simp(); }, "fan-in");
    const int after = count_stmts();
    EXPECT_EQ(count(IF), 6);
    EXPECT_LE(after, before + 6);
    const size_t size = blocks().size();
    simp();
    EXPECT_EQ(count_stmts(), after);
    EXPECT_EQ(blocks().size(), size);
}

// Exits that are the same: the earlier one jumps to the later, and it says so.
TEST_F(CfgRewrite, CrossJumpingMergesEqualExits) {
    SYMTAB* g = var("g", tp->mk_func(int_type(), false, false, false), 0);
    const auto shape = [&] {
        build({iff(nm(c), 1, 2), label(1), asg(y, icon(1)), call(g), ret(nm(x)), label(2),
               asg(y, icon(1)), call(g), ret(nm(x))});
    };
    shape();
    simp();
    EXPECT_EQ(count(UCALL), 2) << "only in full mode";

    shape();
    const std::string log = logged([&] {
        expect_same_meaning(
            {{c, small}}, {x, y}, [&] { simp(true); }, "exits");
    });
    EXPECT_EQ(count(UCALL), 1);
    EXPECT_EQ(count(IF), 0) << "both ways now lead to one place";
    EXPECT_NE(log.find("\n\n\t\t\t---------- ENTERING 'cross_jump' ----------\n"),
              std::string::npos);
    EXPECT_NE(log.find("\n\tBB 2 is redundant with BB 3\n"), std::string::npos) << log;

    // The same as a step of its own.
    shape();
    do_early_cross_jumping();
    check();
    EXPECT_EQ(count(UCALL), 1);

    // Calls with their own exception-table entries stay apart.
    shape();
    for (BBLK* b : blocks())
        for (LIST* s = b->statements; s; s = s->next)
            if (s->tree->op == UCALL)
                s->tree->call_id = b->dfn;
    do_early_cross_jumping();
    EXPECT_EQ(count(UCALL), 2);
}

// Cheap equal exits are left to duplication when speed matters, and merged
// when size does.
TEST_F(CfgRewrite, CrossJumpingOfCheapExitsFollowsTheGoal) {
    const auto shape = [&] {
        build({iff(nm(c), 1, 2), label(1), asg(y, icon(1)), ret(nm(x)), label(2), asg(y, icon(1)),
               ret(nm(x))});
    };
    shape();
    do_early_cross_jumping();
    EXPECT_EQ(count(RETURN), 2);
    set_option("-opt_for_speed=1");
    shape();
    do_early_cross_jumping();
    check();
    EXPECT_EQ(count(RETURN), 1);
    set_option("-opt_level=0");
    shape();
    do_early_cross_jumping();
    EXPECT_EQ(count(RETURN), 2) << "not at level 0";
}

// Two ways into one block that end with the same statements: one copy of the
// tail is kept and the other way jumps to it.
TEST_F(CfgRewrite, CrossJumpingSharesCommonTails) {
    SYMTAB* g = var("g", tp->mk_func(int_type(), false, false, false), 0);
    build({iff(nm(c), 1, 2), label(1), asg(y, icon(1)), asg(x, op(PLUS, nm(x), nm(d))), call(g),
           go(3), label(2), asg(y, icon(2)), asg(x, op(PLUS, nm(x), nm(d))), call(g), label(3),
           asg(d, nm(x)), call(g), ret(nm(d))});
    const int before = count_stmts();
    expect_same_meaning(
        {{c, small}, {d, small}, {x, small}}, {x, y, d}, [&] { simp(true); }, "tails");
    EXPECT_EQ(count(UCALL), 2);
    EXPECT_LT(count_stmts(), before);
}

// Cases the value cannot take go; a value known to be one of the cases is
// divided by their common factor. The analyses say nothing yet, so the type's
// range and a default that never runs are the facts at hand.
TEST_F(CfgRewrite, SwitchCasesOutsideTheTypeGoAndAKnownMultipleIsDivided) {
    SYMTAB* u = var("u", ty(TYPE::ik_uchar));
    SYMTAB* never = var("_never_executed", tp->mk_func(int_type(), false, false, false), 0);
    const auto cases = [&](NODE* value, int def_stmts) {
        std::vector<NODE*> stmts = {sw(value, {{12, 1}, {0, 2}, {4, 3}, {300, 4}, {8, 4}}, 5),
                                    label(1),
                                    asg(x, icon(1)),
                                    ret(nm(x)),
                                    label(2),
                                    asg(x, icon(2)),
                                    ret(nm(x)),
                                    label(3),
                                    asg(x, icon(3)),
                                    ret(nm(x)),
                                    label(4),
                                    asg(x, icon(4)),
                                    ret(nm(x)),
                                    label(5)};
        if (def_stmts)
            stmts.push_back(call(never));
        stmts.push_back(asg(x, icon(5)));
        stmts.push_back(ret(nm(x)));
        build(stmts);
    };
    std::vector<long long> all;
    for (long long i = -4; i < 300; i++)
        all.push_back(i);

    // A default that runs: the value may be any byte, so only case 300 goes.
    cases(nm(u), 0);
    std::string log = logged([&] {
        expect_same_meaning(
            {{u, all}}, {x},
            [&] {
                optimize_SWITCH_cases();
                check();
            },
            "live default");
    });
    NODE* t = last_stmt(f->bb_list);
    ASSERT_EQ(t->op, SWITCH);
    EXPECT_EQ(t->left->op, NAME) << "no multiple known: no division";
    std::vector<long long> values;
    for (NODE* n = t->right; n; n = n->op == COMMA ? n->left : nullptr) {
        NODE* item = n->op == COMMA ? n->right : n;
        if (item->op == CASE)
            values.insert(values.begin(), item->left->value.to_int64());
    }
    EXPECT_EQ(values, (std::vector<long long>{0, 4, 8, 12})) << "sorted, 300 gone";
    EXPECT_NE(log.find("\n\n\t\t\t------ ENTERING 'optimize_SWITCH_cases' ----\n"),
              std::string::npos);
    EXPECT_NE(log.find("~~~#OSiBB#1 Total CASEs=6, explicit CASEs=5, f\n"), std::string::npos)
        << log;
    EXPECT_NE(log.find("\nConsidering: SWITCH(NAME u, "), std::string::npos) << log;

    // A default that never runs: the value is 0, 4, 8 or 12, so a shift.
    cases(nm(u), 1);
    log = logged([&] {
        expect_same_meaning(
            {{u, {0, 4, 8, 12}}}, {x},
            [&] {
                optimize_SWITCH_cases();
                check();
            },
            "dead default");
    });
    t = last_stmt(f->bb_list);
    ASSERT_EQ(t->left->op, SRL);
    EXPECT_EQ(t->left->right->value, INT65(2));
    EXPECT_NE(log.find("--> Simplified to switch(SRL(NAME u, ICON 2))...\n"), std::string::npos)
        << log;

    // A factor that is no power of two divides.
    build({sw(nm(c), {{3, 1}, {9, 2}, {-6, 3}}, 4), label(1), asg(x, icon(1)), ret(nm(x)), label(2),
           asg(x, icon(2)), ret(nm(x)), label(3), asg(x, icon(3)), ret(nm(x)), label(4),
           call(never), asg(x, icon(4)), ret(nm(x))});
    expect_same_meaning(
        {{c, {3, 9, -6}}}, {x},
        [&] {
            optimize_SWITCH_cases();
            check();
        },
        "div");
    EXPECT_EQ(last_stmt(f->bb_list)->left->op, DIV);

    // Too sparse even when divided.
    build({sw(nm(c), {{4, 1}, {8, 2}, {4004, 3}}, 4), label(1), asg(x, icon(1)), ret(nm(x)),
           label(2), asg(x, icon(2)), ret(nm(x)), label(3), asg(x, icon(3)), ret(nm(x)), label(4),
           call(never), asg(x, icon(4)), ret(nm(x))});
    log = logged([&] { optimize_SWITCH_cases(); });
    EXPECT_EQ(last_stmt(f->bb_list)->left->op, NAME);
    EXPECT_NE(log.find("--> Range is <= 0 or >= 500\n"), std::string::npos) << log;
}

// A BRANCH from a block that has just stored a constant into a block that only
// tests that variable goes where the test goes. The stored value is converted
// to the variable's type first, and the test is decided as the target
// computes it. The other way into the test keeps it.
TEST_F(CfgRewrite, BranchIntoATestOfAJustStoredConstantGoesWhereTheTestGoes) {
    SYMTAB* g = var("g", tp->mk_func(int_type(), false, false, false), 0);
    SYMTAB* ch = var("ch", ty(TYPE::ik_char));
    SYMTAB* uc = var("uc", ty(TYPE::ik_uchar));
    SYMTAB* b = var("b", ty(TYPE::ik_bool));
    const auto widened = [&](SYMTAB* v) {
        return maketree(SCONV, nm(v), nullptr, int_type(), nullptr);
    };
    // Each case is built once, so its trees are made here.
    struct Case {
        const char* what;
        SYMTAB* v;
        std::vector<NODE*> path;
        NODE* test;
        bool taken;
    };
    const Case cases[] = {
        {"x == 0", x, {asg(x, icon(0))}, rel(EQ, nm(x), icon(0)), true},
        {"x < 5 with 7", x, {asg(x, icon(7))}, rel(LT, nm(x), icon(5)), false},
        {"x with 0", x, {asg(x, icon(0))}, nm(x), false},
        {"!x with 0", x, {asg(x, icon(0))}, mk_EXCLAIM(nm(x)), true},
        {"char 200 < 0", ch, {asg(ch, icon(200))}, rel(LT, widened(ch), icon(0)), true},
        {"uchar 259 == 3", uc, {asg(uc, icon(259))}, rel(EQ, widened(uc), icon(3)), true},
        {"_Bool 2", b, {asg(b, icon(2))}, nm(b), true},
        {"_Bool 2 == 1", b, {asg(b, icon(2))}, rel(EQ, widened(b), icon(1)), true},
        {"last of two stores, read after",
         x,
         {asg(x, nm(d)), asg(x, icon(0)), asg(y, op(PLUS, nm(x), icon(1)))},
         rel(EQ, nm(x), icon(0)),
         true},
    };
    for (const Case& k : cases) {
        std::vector<NODE*> stmts = {iff(nm(c), 1, 2), label(1), asg(y, icon(1))};
        stmts.insert(stmts.end(), k.path.begin(), k.path.end());
        for (NODE* t : {go(3), label(2), asg(y, icon(2)), asg(k.v, nm(d)), label(3),
                        iff(k.test, 4, 5), label(4), call(g), asg(y, icon(40)), ret(nm(k.v)),
                        label(5), call(g), asg(y, icon(50)), ret(nm(k.v))})
            stmts.push_back(t);
        build(stmts);
        expect_same_meaning(
            {{c, {0, 1}}, {d, {-56, -1, 0, 1, 3, 7, 200, 259}}}, {k.v, y}, [&] { simp(); }, k.what);
        EXPECT_EQ(targets(block_with_value(1)),
                  std::vector<BBLK*>{block_with_value(k.taken ? 40 : 50)})
            << k.what;
        EXPECT_EQ(count(IF), 2) << k.what << ": the other way keeps its test";
    }
}

// Where the value at the jump is not certain, or the test block does more,
// the jump still meets the test: a variable others may see or change (global,
// address taken, volatile), a later change in the jumping block, a test of
// more than the variable, a statement ahead of the test, and level 0.
TEST_F(CfgRewrite, BranchKeepsItsTestWhenTheStoredValueIsNotCertain) {
    SYMTAB* g = var("g", tp->mk_func(int_type(), false, false, false), 0);
    SYMTAB* global = var("gl", int_type(), 0);
    global->sclass = SC_GLOBAL_DEF;
    SYMTAB* addr = var("a");
    addr->state |= SYM_ADDRESS_TAKEN;
    SYMTAB* vol = var("v", tp->mk_qual(int_type(), TQ_VOLATILE));
    const auto is_zero = [&](SYMTAB* v) { return rel(EQ, nm(v), icon(0)); };
    struct Case {
        const char* what;
        SYMTAB* v;
        std::vector<NODE*> path;
        NODE* test;
        NODE* ahead = nullptr;
    };
    const auto shape = [&](const Case& k) {
        std::vector<NODE*> stmts = {iff(nm(c), 1, 2), label(1), asg(y, icon(1))};
        stmts.insert(stmts.end(), k.path.begin(), k.path.end());
        for (NODE* t : {go(3), label(2), asg(y, icon(2)), asg(k.v, nm(d)), label(3)})
            stmts.push_back(t);
        if (k.ahead)
            stmts.push_back(k.ahead);
        for (NODE* t : {iff(k.test, 4, 5), label(4), call(g), asg(y, icon(40)), ret(nm(k.v)),
                        label(5), call(g), asg(y, icon(50)), ret(nm(k.v))})
            stmts.push_back(t);
        build(stmts);
    };
    const Case cases[] = {
        {"global", global, {asg(global, icon(0))}, is_zero(global), nullptr},
        {"address taken", addr, {asg(addr, icon(0))}, is_zero(addr), nullptr},
        {"volatile", vol, {asg(vol, icon(0))}, is_zero(vol), nullptr},
        {"x = x + d after", x, {asg(x, icon(0)), asg(x, op(PLUS, nm(x), nm(d)))}, is_zero(x)},
        {"x += d after", x, {asg(x, icon(0)), op(PLUSASG, nm(x), nm(d))}, is_zero(x)},
        {"y = (x = d) after", x, {asg(x, icon(0)), asg(y, asg(x, nm(d)))}, is_zero(x)},
        {"test of x and d", x, {asg(x, icon(0))}, rel(EQ, nm(x), nm(d))},
        {"statement ahead", x, {asg(x, icon(0))}, is_zero(x), asg(y, op(PLUS, nm(y), icon(1)))},
        {"level 0", x, {asg(x, icon(0))}, is_zero(x)},
    };
    for (const Case& k : cases) {
        if (k.what == std::string("level 0"))
            set_option("-opt_level=0");
        shape(k);
        expect_same_meaning(
            {{c, {0, 1}}, {d, {-1, 0, 3}}}, {k.v, y}, [&] { simp(); }, k.what);
        const NODE* test = next_test(block_with_value(1));
        EXPECT_TRUE(test && sym_appears_in_tree(k.v, test->left)) << k.what;
    }
}

// Full mode: an IF whose next block holds only the same test with the same
// targets becomes a jump to that block. A negated test with the arms swapped
// is the same test.
TEST_F(CfgRewrite, RepeatedTestOfTheNextBlockBecomesABranchInFullMode) {
    SYMTAB* g = var("g", tp->mk_func(int_type(), false, false, false), 0);
    SYMTAB* vol = var("v", tp->mk_qual(int_type(), TQ_VOLATILE));
    // entry: if (d) goto N else A;  A: y = 1; <first>;  N: <ahead> <second>
    const auto shape = [&](NODE* first, NODE* ahead, NODE* second) {
        std::vector<NODE*> stmts = {iff(nm(d), 2, 1), label(1), asg(y, icon(1)), first, label(2)};
        if (ahead)
            stmts.push_back(ahead);
        for (NODE* t : {second, label(3), call(g), asg(x, icon(3)), ret(nm(x)), label(4), call(g),
                        asg(x, icon(4)), ret(nm(x))})
            stmts.push_back(t);
        build(stmts);
    };
    const auto below5 = [&] { return rel(LT, nm(c), icon(5)); };
    const std::vector<std::pair<SYMTAB*, std::vector<long long>>> domain = {
        {c, {0, 4, 5, 9}}, {d, {0, 1}}, {y, {0, 6}}};
    for (bool swapped : {false, true}) {
        const char* what = swapped ? "negated, arms swapped" : "same";
        shape(swapped ? iff(rel(GE, nm(c), icon(5)), 4, 3) : iff(below5(), 3, 4), nullptr,
              iff(below5(), 3, 4));
        BBLK* a = block_with_value(1);
        BBLK* n = a->next;
        ASSERT_TRUE(n && n->statements && !n->statements->next && n->statements->tree->op == IF)
            << what << ": the shape puts the lone test next";
        // Copying the lone test back would hide a rewrite outside full mode.
        process_debug_option("disable", "tail_duplication");
        simp();
        process_debug_option("disable", "tail_duplication=0");
        EXPECT_EQ(last_stmt(a)->op, IF) << what << ": only in full mode";
        expect_same_meaning(
            domain, {x, y}, [&] { simp(true); }, what);
        EXPECT_EQ(targets(a), std::vector<BBLK*>{n}) << what;
        EXPECT_EQ(count(IF), 2) << what;
    }

    // The next block does more than test, or tests something else, or the
    // test reads a volatile or has an effect: the first test stays. Without a
    // second IF given, the next block tests a copy of the first one's test.
    struct Case {
        const char* what;
        NODE* test;
        NODE* ahead = nullptr;
        NODE* second = nullptr;
    };
    const Case cases[] = {
        {"writes what the test reads", below5(), asg(c, op(PLUS, nm(c), icon(1)))},
        {"writes something else", below5(), asg(y, icon(7))},
        {"another test", below5(), nullptr, iff(rel(LT, nm(c), icon(6)), 3, 4)},
        {"other targets", below5(), nullptr, iff(below5(), 4, 3)},
        {"volatile", rel(LT, nm(vol), icon(5))},
        {"an effect", rel(LT, asg(y, nm(c)), icon(5))},
    };
    for (const Case& k : cases) {
        shape(iff(k.test, 3, 4), k.ahead, k.second ? k.second : iff(copy_tree(k.test, true), 3, 4));
        BBLK* a = block_with_value(1);
        expect_same_meaning(
            domain, {x, y}, [&] { simp(true); }, k.what);
        EXPECT_EQ(last_stmt(a)->op, IF) << k.what;
    }
}
