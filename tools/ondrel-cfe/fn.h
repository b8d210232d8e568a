// The translation of one function body: statements (stmt.cpp) and
// expressions (expr.cpp) into the items of a FUNC.
#pragma once

#include "cfe.h"

namespace cfe {

class FN {
public:
    FN(UNIT& u, FUNC& f, const clang::FunctionDecl* fd) : u(u), f(f), fd(fd) {}

    void body();

private:
    // ---- Statements ----
    void stmt(const clang::Stmt* s);
    void compound(const clang::CompoundStmt* cs, bool outermost);
    void decl(const clang::VarDecl* vd);
    void emit(NODE* tree);
    void label(unsigned n);
    unsigned new_label();
    NODE* label_ref(unsigned n);
    void branch(unsigned n);
    // Jumps to `target` when the condition's truth is `when`; falls through otherwise.
    void cond_jump(const clang::Expr* e, unsigned target, bool when);
    void switch_stmt(const clang::SwitchStmt* s);
    void collect_cases(const clang::Stmt* s, std::vector<const clang::SwitchCase*>& out);
    void open_scope(const std::vector<const clang::VarDecl*>& vars, clang::SourceLocation at);
    void close_scope(clang::SourceLocation at);
    std::vector<const clang::VarDecl*> scope_vars(const clang::Stmt* s);
    SYMTAB* local(const clang::VarDecl* vd, int level);
    std::string unique_local_name(const std::string& base);

    // ---- Expressions ----
    NODE* ex(const clang::Expr* e);
    NODE* conversion(const clang::CastExpr* ce);
    NODE* unary(const clang::UnaryOperator* uo);
    NODE* binary(const clang::BinaryOperator* bo);
    NODE* compound_assign(const clang::CompoundAssignOperator* co);
    NODE* call(const clang::CallExpr* ce);
    NODE* builtin_call(const clang::CallExpr* ce, const clang::FunctionDecl* callee, unsigned id,
                       bool& handled);
    NODE* helper_call(const char* name, TYPE* ret, std::vector<NODE*> args,
                      std::vector<TYPE*> params);
    NODE* member(const clang::MemberExpr* me);
    NODE* compound_literal(const clang::CompoundLiteralExpr* cl);
    // A scalar test: an integer-typed tree that is non-zero for true.
    NODE* test(const clang::Expr* e);
    NODE* invert(NODE* t);
    NODE* to_bool(NODE* n);
    NODE* convert(NODE* n, TYPE* to);
    NODE* to_int(NODE* n);
    NODE* decay(NODE* lv, TYPE* to);
    NODE* retype(NODE* p, TYPE* to);
    NODE* zero_of(TYPE* t);
    NODE* scaled(const clang::Expr* index, uint64_t size);
    NODE* address_of(NODE* lv, TYPE* ptr);
    // A struct value as an lvalue, through a temporary.
    NODE* materialize(NODE* value, TYPE* type);
    // An lvalue whose operands may be evaluated twice; setup holds what must
    // run once first (null when nothing).
    NODE* stabilize(NODE* lv, NODE*& setup);
    NODE* call_node(NODE* callee, const std::vector<NODE*>& args, TYPE* ret);
    NODE* seq(const std::vector<NODE*>& trees, NODE* last);
    SYMTAB* temp(TYPE* t);

    // ---- Initialization of automatic objects ----
    void init_trees(NODE* lv, clang::QualType t, const clang::Expr* init, std::vector<NODE*>& out);
    void init_leaves(NODE* lv, clang::QualType t, const clang::Expr* init, std::vector<NODE*>& out);
    bool covers_all(clang::QualType t, const clang::Expr* init);
    NODE* element(NODE* array_lv, clang::QualType elem, uint64_t index);
    NODE* field_of(NODE* record_lv, const clang::FieldDecl* fd);
    NODE* copy(NODE* t) { return copy_tree(t, false); }

    UNIT& u;
    FUNC& f;
    const clang::FunctionDecl* fd;
    PSN* cur_psn = nullptr;
    int level = 2; // lexical level of the declarations being made
    unsigned labels = 0;
    unsigned calls = 0;
    unsigned temps = 0;
    std::set<std::string> names;
    std::unordered_map<const clang::VarDecl*, SYMTAB*> vars;
    std::map<const clang::LabelDecl*, unsigned> user_labels;
    std::vector<unsigned> break_labels;
    std::vector<unsigned> continue_labels;
    std::map<const clang::SwitchCase*, unsigned> case_labels;
    std::map<const clang::OpaqueValueExpr*, NODE*> opaque;
};

} // namespace cfe
