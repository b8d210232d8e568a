// The operator tables read against each other, and trees built, copied,
// compared and erased.
#include <gtest/gtest.h>

#include <cstring>
#include <deque>

#include "driver/driver.h"
#include "driver/options.h"
#include "ir/bblk.h"
#include "ir/ir.h"
#include "ir/node.h"
#include "ir/symtab.h"
#include "ir/types.h"

TEST(OperatorTables, AssigningOperatorsMatchTheirBase) {
    int count = 0;
    for (int op = 0; op < number_of_opcodes; op++) {
        const int base = op_of_opASG[op];
        if (base == NONE)
            continue;
        count++;
        EXPECT_TRUE(opcode_is_ASG(op)) << node_operator_name[op];
        EXPECT_EQ(number_of_operands[op], number_of_operands[base]) << node_operator_name[op];
        EXPECT_EQ(side_effects[op], SE_ASSIGNS) << node_operator_name[op];
        EXPECT_EQ(side_effects[base], SE_NONE) << node_operator_name[base];
        EXPECT_EQ(op_of_opASG[base], NONE) << node_operator_name[base];
    }
    // Every assigning operator but plain ASG has a base.
    int assigning = 0;
    for (int op = 0; op < 256; op++)
        assigning += opcode_is_ASG(op);
    EXPECT_EQ(count, assigning - 1);
    EXPECT_FALSE(opcode_is_ASG(STASG));
    EXPECT_FALSE(opcode_is_ASG(ARASG));
}

TEST(OperatorTables, RelationsInvertAndCommuteBack) {
    int relations = 0;
    for (int op = 0; op < number_of_opcodes; op++) {
        const int inv = boolean_inv[op];
        if (inv == NONE)
            continue;
        relations++;
        EXPECT_TRUE(boolean_result[op]) << node_operator_name[op];
        EXPECT_EQ(boolean_inv[inv], op) << node_operator_name[op];
        EXPECT_NE(inv, op);
        const int mirrored = commute_inv[op];
        ASSERT_NE(mirrored, NONE) << node_operator_name[op];
        EXPECT_EQ(commute_inv[mirrored], op) << node_operator_name[op];
        // Negating then mirroring equals mirroring then negating.
        EXPECT_EQ(commute_inv[inv], boolean_inv[mirrored]) << node_operator_name[op];
        EXPECT_EQ(number_of_operands[op], 2);
    }
    EXPECT_EQ(relations, 10);
}

TEST(OperatorTables, CommutingOperatorsAreBinaryAndFree) {
    for (int op = 0; op < number_of_opcodes; op++) {
        const int c = commute_inv[op];
        if (c == NONE)
            continue;
        EXPECT_EQ(number_of_operands[op], 2) << node_operator_name[op];
        EXPECT_EQ(side_effects[op], SE_NONE) << node_operator_name[op];
        if (boolean_inv[op] == NONE) {
            EXPECT_EQ(c, op) << node_operator_name[op] << " commutes into itself";
        }
    }
}

TEST(OperatorTables, LeavesAndUnusedNumbers) {
    int named = 0;
    for (int op = 0; op < 256; op++) {
        if (!node_operator_name[op]) {
            EXPECT_EQ(side_effects[op], SE_ALWAYS) << op;
            continue;
        }
        named++;
        EXPECT_LT(op, number_of_opcodes);
        if (precedence[op] == 99) {
            EXPECT_EQ(number_of_operands[op], 0) << node_operator_name[op];
        }
    }
    EXPECT_EQ(named, 127);
    // Unnamed numbers that keep entries.
    EXPECT_EQ(number_of_operands[100], 2);
    EXPECT_EQ(number_of_operands[117], 0);
    EXPECT_EQ(number_of_operands[101], NONE);
}

TEST(OperatorTables, FileRecordsAgreeAfterValidation) {
    init_opcode_tables();
    for (int op = 0; op < number_of_opcodes; op++) {
        if (!node_operator_name[op])
            continue;
        EXPECT_EQ(if_node_info[op].op, op);
        EXPECT_STREQ(if_node_info[op].name, node_operator_name[op]);
        EXPECT_EQ(if_node_info[op].nops, number_of_operands[op]);
    }
    EXPECT_STREQ(if_node_info[110].name, "EPVAL");
    EXPECT_STREQ(if_node_info[163].name, "OUIALIGN");
}

TEST(OperatorTables, AMismatchedTableEndsTheRun) {
    EXPECT_EXIT(
        {
            number_of_operands[PLUS] = 1;
            init_opcode_tables();
        },
        ::testing::ExitedWithCode(1), "terminated abnormally");
    EXPECT_EXIT({ if_enter_node(201, "TOO_BIG", 0); }, ::testing::ExitedWithCode(1), "");
}

namespace {

TYPE* int_type() {
    if (!tp) {
        tp = new TYPE_PKG;
        init_types();
    }
    return tp->mk_int(TYPE::ik_int);
}

// Symbols outlive the trees that name them; the tests keep them all.
SYMTAB* symbol(const char* name) {
    static auto* symbols = new std::deque<SYMTAB>;
    SYMTAB* s = &symbols->emplace_back();
    s->name = strdup(name);
    s->type = int_type();
    return s;
}

// (a + 3) * b, with b's name node carrying a scope marker.
NODE* sample_tree(SYMTAB* a, SYMTAB* b) {
    NODE* sum =
        maketree(PLUS, mk_NAME(a, nullptr),
                 mktree(ICON, nullptr, nullptr, nullptr, nullptr, INT65(3)), nullptr, nullptr);
    return maketree(MULT, sum, mk_NAME(b, nullptr), nullptr, nullptr);
}

} // namespace

TEST(Trees, NewNodesHaveTheirInitialValues) {
    NODE* n = new_node(PLUS, nullptr);
    EXPECT_EQ(n->edge_profile, 0xFFFFFFFFu);
    EXPECT_EQ(n->weight, -1.0);
    EXPECT_EQ(n->left, nullptr);
    EXPECT_TRUE(n->value.is_zero());
    erase_tree(n);
}

TEST(Trees, CopyIsDeepAndCongruent) {
    SYMTAB* a = symbol("a");
    SYMTAB* b = symbol("b");
    NODE* t = sample_tree(a, b);
    t->ptenv = nullptr;
    t->work1 = 7;
    t->flags = 0x3;
    NODE* c = copy_tree(t, false);
    EXPECT_NE(c, t);
    EXPECT_NE(c->left, t->left);
    EXPECT_NE(c->left->right, t->left->right);
    EXPECT_EQ(c->left->right->value, INT65(3));
    EXPECT_EQ(c->work1, 0);
    EXPECT_EQ(c->flags, 1);
    EXPECT_TRUE(trees_are_congruent(t, c, 0));
    c->left->right->value = INT65(4);
    EXPECT_FALSE(trees_are_congruent(t, c, 0));
    EXPECT_EQ(erase_tree(t), nullptr);
    erase_tree(c);
}

TEST(Trees, CommutedOperandsAreCongruent) {
    SYMTAB* a = symbol("a");
    SYMTAB* b = symbol("b");
    NODE* ab = maketree(PLUS, mk_NAME(a, nullptr), mk_NAME(b, nullptr), nullptr, nullptr);
    NODE* ba = maketree(PLUS, mk_NAME(b, nullptr), mk_NAME(a, nullptr), nullptr, nullptr);
    NODE* a_minus_b = maketree(MINUS, mk_NAME(a, nullptr), mk_NAME(b, nullptr), nullptr, nullptr);
    NODE* b_minus_a = maketree(MINUS, mk_NAME(b, nullptr), mk_NAME(a, nullptr), nullptr, nullptr);
    EXPECT_TRUE(trees_are_congruent(ab, ba, 0));
    EXPECT_FALSE(trees_are_congruent(a_minus_b, b_minus_a, 0));
    NODE* lt = maketree(LT, mk_NAME(a, nullptr), mk_NAME(b, nullptr), nullptr, nullptr);
    NODE* gt = maketree(GT, mk_NAME(b, nullptr), mk_NAME(a, nullptr), nullptr, nullptr);
    EXPECT_TRUE(trees_are_congruent(lt, gt, 0));
    for (NODE* t : {ab, ba, a_minus_b, b_minus_a, lt, gt})
        erase_tree(t);
}

TEST(Trees, SideEffectsMakeTreesUnequalUnlessAllowed) {
    SYMTAB* a = symbol("a");
    NODE* x =
        maketree(PLUSPLUS, mk_NAME(a, nullptr), mk_ICON(INT65(1), int_type()), nullptr, nullptr);
    NODE* y = copy_tree(x, false);
    EXPECT_FALSE(trees_are_congruent(x, y, 0));
    EXPECT_TRUE(trees_are_congruent(x, y, 1));
    // The same node is congruent with itself before effects are looked at.
    EXPECT_TRUE(trees_are_congruent(x, x, 0));
    erase_tree(x);
    erase_tree(y);
}

TEST(Trees, CseDupesCompareTheirRightSidesAndAreErasedAlone) {
    SYMTAB* a = symbol("a");
    NODE* value = maketree(UMINUS, mk_NAME(a, nullptr), nullptr, nullptr, nullptr);
    NODE* orig = maketree(CSE_ORIG, mk_NAME(symbol("t"), nullptr), value, nullptr, nullptr);
    NODE* dupe = maketree(CSE_DUPE, orig->left, value, nullptr, nullptr);
    NODE* plain = maketree(UMINUS, mk_NAME(a, nullptr), nullptr, nullptr, nullptr);
    EXPECT_TRUE(trees_are_congruent(dupe, plain, 0));
    EXPECT_TRUE(trees_are_congruent(plain, orig, 0));
    // The dupe goes first, without touching what the original owns.
    erase_tree(dupe);
    erase_tree(orig);
    erase_tree(plain);
}

TEST(Trees, ErasingTwiceIsCaught) {
    EXPECT_EXIT(
        {
            NODE* n = new_node(NAME, nullptr);
            n->op = ERASED_OP;
            erase_tree(n);
        },
        ::testing::ExitedWithCode(1), "ERROR IN 'erase_node' 0x");
}

TEST(Trees, CommaOpOfNothingIsTheSecondTree) {
    NODE* b = mk_ICON(INT65(1), int_type());
    EXPECT_EQ(mk_COMMAOP(nullptr, b), b);
    NODE* both = mk_COMMAOP(mk_ICON(INT65(2), int_type()), b);
    EXPECT_EQ(both->op, COMMAOP);
    EXPECT_EQ(both->right, b);
    erase_tree(both);
}

TEST(Trees, ArgumentListsLeanLeft) {
    // f(x0, x1, x2): COMMA(COMMA(x0, x1), x2).
    NODE* x0 = mk_ICON(INT65(10), int_type());
    NODE* x1 = mk_ICON(INT65(11), int_type());
    NODE* x2 = mk_ICON(INT65(12), int_type());
    NODE* args = maketree(COMMA, maketree(COMMA, x0, x1, nullptr, nullptr), x2, nullptr, nullptr);
    EXPECT_EQ(arg_list_count(args), 3);
    EXPECT_EQ(arg_list_lookup(args, 0), x0);
    EXPECT_EQ(arg_list_lookup(args, 1), x1);
    EXPECT_EQ(arg_list_lookup(args, 2), x2);
    EXPECT_EQ(arg_list_lookup(args, 3), nullptr);
    EXPECT_EQ(arg_list_count(nullptr), 0);
    EXPECT_EQ(arg_list_count(x0), 1);
    erase_tree(args);
}

TEST(Trees, CalleeOfADirectCall) {
    SYMTAB* f = symbol("f");
    NODE* call = maketree(UCALL, maketree(UAND, mk_NAME(f, nullptr), nullptr, nullptr, nullptr),
                          nullptr, nullptr, nullptr);
    EXPECT_EQ(get_callee_for_call(call), f);
    EXPECT_EQ(count_calls_in_tree(call), 1);
    EXPECT_TRUE(sym_appears_in_tree(f, call));
    erase_tree(call);
}

TEST(Trees, PayloadsAreCopiedNotShared) {
    NODE* icall = mk_ICALL("__builtin_clz", mk_ICON(INT65(1), int_type()), nullptr);
    NODE* copy = copy_tree(icall, false);
    EXPECT_NE(copy->sym, icall->sym);
    EXPECT_STREQ(copy->icall_name(), "__builtin_clz");
    NODE* no_args = mk_ICALL("g", nullptr, nullptr);
    EXPECT_EQ(no_args->op, UICALL);
    erase_tree(no_args);
    erase_tree(icall);
    erase_tree(copy);
}

TEST(Lists, BuildersPutCellsInFront) {
    LIST* l = mkelist(mk_ICON(INT65(2), int_type()), nullptr, nullptr);
    l = mkelist(mk_ICON(INT65(1), int_type()), l, nullptr);
    EXPECT_EQ(l->tree->value, INT65(1));
    EXPECT_EQ(l->next->tree->value, INT65(2));
    l = append_node_to_list(mk_ICON(INT65(3), int_type()), l, nullptr);
    EXPECT_EQ(l->next->next->tree->value, INT65(3));
    while (l) {
        LIST* next = l->next;
        erase_tree(l->tree);
        delete l;
        l = next;
    }
}

TEST(TypedTrees, BuildersFollowTheTypeRules) {
    TYPE* i = int_type();
    TYPE* pchar = tp->mk_ptr(tp->mk_int(TYPE::ik_char));
    NODE* icon = mk_ICON(INT65(-1), tp->mk_ptr(i));
    EXPECT_TRUE(icon->type->is_integral());
    EXPECT_EQ(icon->type->size(), 32u);
    // Truncated to the unsigned pointer-sized integer.
    EXPECT_EQ(icon->value, INT65(0, 0xFFFFFFFFll));
    erase_tree(icon);

    NODE* small = mk_ICON(INT65(300), tp->mk_int(TYPE::ik_char));
    EXPECT_EQ(small->value, INT65(44));
    erase_tree(small);

    chars_alias_other_types = 1;
    NODE* conv = maketree(PCONV, nullptr, nullptr, pchar, nullptr);
    EXPECT_EQ(conv->op, ISP2CHAR);
    erase_tree(conv);
    NODE* to_int_ptr = maketree(PCONV, nullptr, nullptr, tp->mk_ptr(i), nullptr);
    EXPECT_EQ(to_int_ptr->op, PCONV);
    erase_tree(to_int_ptr);

    // Conversions lose the qualifiers of their type.
    NODE* sconv = maketree(SCONV, nullptr, nullptr, tp->mk_qual(i, 1), nullptr);
    EXPECT_EQ(sconv->type, i);
    erase_tree(sconv);
}

TEST(TypedTrees, AssignmentsByTheKindOfTheTarget) {
    SYMTAB* x = symbol("x");
    NODE* scalar = mk_ASG(mk_NAME(x, nullptr), mk_ICON(INT65(1), int_type()));
    EXPECT_EQ(scalar->op, ASG);
    erase_tree(scalar);

    SYMTAB* arr = symbol("arr");
    arr->type = tp->mk_array(int_type(), false, 4);
    NODE* array = mk_ASG(mk_NAME(arr, nullptr), mk_NAME(arr, nullptr));
    EXPECT_EQ(array->op, ARASG);
    erase_tree(array);

    SYMTAB* vec = symbol("vec");
    vec->type = tp->mk_vector(int_type(), false, 4);
    NODE* vector = mk_ASG(mk_NAME(vec, nullptr), mk_NAME(vec, nullptr));
    EXPECT_EQ(vector->op, ASG);
    erase_tree(vector);
}

TEST(TypedTrees, FloatingRelationsAreNotInverted) {
    SYMTAB* f = symbol("f");
    f->type = tp->mk_fltpt(TYPE::fk_double);
    SYMTAB* i = symbol("i");
    NODE* flt = maketree(LT, mk_NAME(f, nullptr), mk_NAME(f, nullptr), int_type(), nullptr);
    NODE* eq = maketree(EQ, mk_NAME(f, nullptr), mk_NAME(f, nullptr), int_type(), nullptr);
    NODE* integer = maketree(LT, mk_NAME(i, nullptr), mk_NAME(i, nullptr), int_type(), nullptr);
    EXPECT_FALSE(tree_is_trivially_invertible(flt));
    EXPECT_TRUE(tree_is_trivially_invertible(eq));
    EXPECT_TRUE(tree_is_trivially_invertible(integer));
    for (NODE* t : {flt, eq, integer})
        erase_tree(t);
}

TEST(TypedTrees, VolatileNamesAreSideEffects) {
    SYMTAB* v = symbol("v");
    v->type = tp->mk_qual(int_type(), 2);
    NODE* name = mk_NAME(v, nullptr);
    NODE* other = mk_NAME(v, nullptr);
    EXPECT_TRUE(tree_has_side_effects(name));
    // Identity is tested before side effects; a second read is another access.
    EXPECT_TRUE(trees_are_congruent(name, name, 0));
    NODE* sum = maketree(PLUS, name, mk_ICON(INT65(1), int_type()), int_type(), nullptr);
    EXPECT_TRUE(tree_has_side_effects(sum));
    erase_tree(sum);
    erase_tree(other);
}

TEST(TypedTrees, ParameterPrologs) {
    SYMTAB* param = symbol("p");
    param->lex = 1;
    SYMTAB* local = symbol("p");
    local->lex = 2;
    NODE* prolog = mk_ASG(mk_NAME(local, nullptr), mk_NAME(param, nullptr));
    EXPECT_TRUE(tree_is_arg_prolog(prolog));
    SYMTAB* other = symbol("q");
    other->lex = 2;
    NODE* not_prolog = mk_ASG(mk_NAME(other, nullptr), mk_NAME(param, nullptr));
    EXPECT_FALSE(tree_is_arg_prolog(not_prolog));
    erase_tree(prolog);
    erase_tree(not_prolog);
}

TEST(TypedTrees, AssigningOperatorsConvertBothWays) {
    SYMTAB* x = symbol("x");
    SYMTAB* y = symbol("y");
    // x = x - y  <->  x -= y
    NODE* t = mk_ASG(mk_NAME(x, nullptr), maketree(MINUS, mk_NAME(x, nullptr), mk_NAME(y, nullptr),
                                                   int_type(), nullptr));
    t = ASG_to_opASG(t);
    EXPECT_EQ(t->op, MINUSASG);
    EXPECT_EQ(t->right->op, NAME);
    EXPECT_EQ(t->right->sym, y);
    t = opASG_to_ASG(t);
    EXPECT_EQ(t->op, ASG);
    ASSERT_EQ(t->right->op, MINUS);
    EXPECT_EQ(t->right->left->sym, x);
    EXPECT_EQ(t->right->right->sym, y);
    erase_tree(t);

    // x = y + x: PLUS commutes, so the operands are swapped first.
    NODE* c = mk_ASG(mk_NAME(x, nullptr),
                     maketree(PLUS, mk_NAME(y, nullptr), mk_NAME(x, nullptr), int_type(), nullptr));
    c = ASG_to_opASG(c);
    EXPECT_EQ(c->op, PLUSASG);
    EXPECT_EQ(c->right->sym, y);
    erase_tree(c);

    // x = y - x does not commute.
    NODE* n = mk_ASG(mk_NAME(x, nullptr), maketree(MINUS, mk_NAME(y, nullptr), mk_NAME(x, nullptr),
                                                   int_type(), nullptr));
    EXPECT_EQ(ASG_to_opASG(n)->op, ASG);
    erase_tree(n);
}

TEST(TypedTrees, AssigningThroughASideEffectStaysAsItIs) {
    SYMTAB* p = symbol("p");
    p->type = tp->mk_ptr(int_type());
    // *p++ += 1 would evaluate p++ twice.
    NODE* target = maketree(
        UMULT,
        maketree(PLUSPLUS, mk_NAME(p, nullptr), mk_ICON(INT65(4), int_type()), p->type, nullptr),
        nullptr, int_type(), nullptr);
    NODE* t = maketree(PLUSASG, target, mk_ICON(INT65(1), int_type()), int_type(), nullptr);
    EXPECT_EQ(opASG_to_ASG(t)->op, PLUSASG);
    erase_tree(t);
}

TEST(TypedTrees, TextConstantsKeepTheirValues) {
    NODE* big = new_node(LCON, tp->mk_int(TYPE::ik_llong));
    big->mk_lcon("-9223372036854775808");
    EXPECT_EQ(big->value, INT65(static_cast<long long>(INT64_MIN)));
    EXPECT_EQ(big->lcon_value(), "-9223372036854775808");
    NODE* ubig = new_node(LCON, tp->mk_int(TYPE::ik_ullong));
    ubig->mk_lcon("18446744073709551615");
    EXPECT_EQ(ubig->value, INT65::from_unsigned(UINT64_MAX));
    EXPECT_EQ(ubig->lcon_value(), "18446744073709551615");
    NODE* none = new_node(LCON, tp->mk_int(TYPE::ik_llong));
    none->mk_lcon("x");
    EXPECT_TRUE(none->value.is_zero());

    NODE* scon = new_node(SCON, nullptr);
    scon->mk_scon("a\0b", 3);
    NODE* copy = copy_tree(scon, false);
    EXPECT_EQ(copy->scon_length(), 3u);
    EXPECT_EQ(memcmp(copy->scon_value(), "a\0b", 3), 0);
    EXPECT_TRUE(trees_are_congruent(scon, copy, 0));
    copy->text[2] = 'c';
    EXPECT_FALSE(trees_are_congruent(scon, copy, 0));
    NODE* empty = new_node(SCON, nullptr);
    empty->mk_scon("", 0);
    EXPECT_NE(empty->scon_value(), nullptr);
    for (NODE* n : {big, ubig, none, scon, copy, empty})
        erase_tree(n);
}

TEST(TypedTrees, IconValuesFollowTheSignOfTheirType) {
    NODE* s = new_node(ICON, int_type());
    s->mk_icon(-1);
    EXPECT_EQ(s->value, INT65(-1));
    NODE* u = new_node(ICON, tp->mk_int(TYPE::ik_uint));
    u->mk_icon(0xFFFFFFFFll);
    EXPECT_EQ(u->value, INT65(0, 0xFFFFFFFFll));
    EXPECT_EQ(u->icon_uvalue(), 0xFFFFFFFFu);
    erase_tree(s);
    erase_tree(u);
}

TEST(TypedTrees, AddressConstants) {
    SYMTAB* g = symbol("g");
    g->sclass = 2;
    SYMTAB* local = symbol("l");
    local->sclass = 1;
    TYPE* p = tp->mk_ptr(int_type());
    // (&g + 8) - 4
    NODE* adcon = maketree(MINUS,
                           maketree(PLUS, maketree(UAND, mk_NAME(g, nullptr), nullptr, p, nullptr),
                                    mk_ICON(INT65(8), int_type()), p, nullptr),
                           mk_ICON(INT65(4), int_type()), p, nullptr);
    EXPECT_TRUE(pointer_is_an_adcon(adcon));
    EXPECT_EQ(total_pointer_offset_value(adcon), INT65(4));
    EXPECT_TRUE(expr_is_globally_evaluable(adcon));
    NODE* of_local = maketree(UAND, mk_NAME(local, nullptr), nullptr, p, nullptr);
    EXPECT_FALSE(pointer_is_an_adcon(of_local));
    EXPECT_FALSE(expr_is_globally_evaluable(of_local));
    NODE* read =
        maketree(PLUS, mk_NAME(g, nullptr), mk_ICON(INT65(1), int_type()), int_type(), nullptr);
    EXPECT_FALSE(expr_is_globally_evaluable(read));
    for (NODE* t : {adcon, of_local, read})
        erase_tree(t);
}

TEST(TypedTrees, TwoIfsAgreeWhenTheyTestTheSameOrTheInverseWithSwappedArms) {
    SYMTAB* a = symbol("a");
    SYMTAB* b = symbol("b");
    SYMTAB* f = symbol("f");
    f->type = tp->mk_fltpt(TYPE::fk_double);
    const auto label = [](int n) {
        NODE* l = new_node(LABEL, nullptr);
        l->mk_label(static_cast<unsigned>(n));
        return l;
    };
    const auto mk_if = [&](NODE* test, int taken, int not_taken) {
        return maketree(IF, test, maketree(COLON, label(taken), label(not_taken), nullptr, nullptr),
                        nullptr, nullptr);
    };
    const auto rel = [&](int op, SYMTAB* x, SYMTAB* y) {
        return maketree(op, mk_NAME(x, nullptr), mk_NAME(y, nullptr), int_type(), nullptr);
    };
    NODE* lt = mk_if(rel(LT, a, b), 1, 2);
    NODE* same = mk_if(rel(LT, a, b), 1, 2);
    NODE* inverse = mk_if(rel(GE, a, b), 2, 1);
    NODE* inverse_same_arms = mk_if(rel(GE, a, b), 1, 2);
    NODE* negated = mk_if(mk_EXCLAIM(rel(LT, a, b)), 2, 1);
    NODE* other = mk_if(rel(LT, b, a), 1, 2);
    EXPECT_TRUE(bools_are_congruent(lt, same));
    EXPECT_TRUE(bools_are_congruent(lt, inverse));
    EXPECT_FALSE(bools_are_congruent(lt, inverse_same_arms));
    EXPECT_TRUE(bools_are_congruent(lt, negated));
    EXPECT_FALSE(bools_are_congruent(lt, other));
    // f < f and f >= f are both false for a NaN: not inverses.
    NODE* flt = mk_if(rel(LT, f, f), 1, 2);
    NODE* fge = mk_if(rel(GE, f, f), 2, 1);
    EXPECT_FALSE(bools_are_congruent(flt, fge));
    for (NODE* t : {lt, same, inverse, inverse_same_arms, negated, other, flt, fge})
        erase_tree(t);
}
