// ondrel-cfe: a C front end on Clang's AST that writes our intermediate file.
//
// A translation unit is turned into symbols, trees and initial data in memory
// first (UNIT), and written only when that went without error, so that a
// construct we cannot translate leaves no output file behind.
#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

#include <clang/AST/ASTContext.h>
#include <clang/AST/Decl.h>
#include <clang/AST/Expr.h>
#include <clang/AST/Stmt.h>
#include <clang/Basic/Diagnostic.h>

#include "ifile/ifile.h"
#include "ir/node.h"
#include "ir/symtab.h"
#include "ir/types.h"

namespace cfe {

// Names of the helpers that stand for the variable-argument macros; the
// interpreter implements them.
constexpr const char* va_start_helper = "__ondrel_va_start";
constexpr const char* va_arg_helper = "__ondrel_va_arg";
constexpr const char* va_end_helper = "__ondrel_va_end";
constexpr const char* va_copy_helper = "__ondrel_va_copy";

// One record of a function body, kept until the function's locals are all known.
struct ITEM {
    enum KIND { STMT, LABEL, BEGIN_BLOCK, END_BLOCK, ASSEMBLY } kind;
    explicit ITEM(KIND k) : kind(k) {}
    NODE* tree = nullptr;
    PSN* psn = nullptr;
    unsigned label = 0;
    std::vector<SYMTAB*> decls; // of a BEGIN_BLOCK
    std::string text;           // of an ASSEMBLY
};

struct FUNC {
    SYMTAB* sym = nullptr;
    PSN* psn = nullptr;          // the declaration
    PSN* body_psn = nullptr;     // the opening brace: end args and end locals
    PSN* end_psn = nullptr;      // the closing brace
    std::vector<SYMTAB*> params; // level 1
    std::vector<SYMTAB*> locals; // level 2, temporaries included
    std::vector<ITEM> items;
    std::vector<unsigned> label_uses; // by label number
};

// The initial data of one file-level object: its items, ENDINIT added on writing.
struct DATA {
    SYMTAB* sym;
    std::vector<NODE*> items;
};

class UNIT {
public:
    UNIT(clang::ASTContext& ctx, clang::DiagnosticsEngine& diags);

    // The whole translation unit, into memory.
    void translate();
    // Into the file, in the order of the format: globals, functions, data.
    void write(I_FILE* out);

    clang::ASTContext& ctx;
    clang::SourceManager& sm;
    clang::DiagnosticsEngine& diags;

    // ---- Types (types.cpp) ----
    TYPE* type_of(clang::QualType qt);
    TYPE* unqualified(clang::QualType qt) { return type_of(qt)->type_qualified(); }
    // Reports what of a declared type we cannot translate, at the declaration.
    bool check_type(clang::QualType qt, clang::SourceLocation loc);
    fkMDATA* member_of(const clang::FieldDecl* fd);
    TYPE* int_type() { return tp->mk_int(TYPE::ik_int); }
    TYPE* void_type() { return tp->mk_void(); }
    TYPE* ptr_to_void() { return tp->mk_ptr(tp->mk_void()); }
    uint64_t size_in_bytes(clang::QualType qt);

    // ---- Symbols and data (globals.cpp) ----
    SYMTAB* global(const clang::ValueDecl* d);
    SYMTAB* string_symbol(const clang::StringLiteral* sl);
    // An external function of that name and type, made once.
    SYMTAB* external_function(const std::string& name, TYPE* type);
    // A file-level static without a declaration of its own: images of
    // initializers, zeros to clear locals with, file-scope compound literals.
    SYMTAB* hidden_object(const char* prefix, TYPE* type, PSN* psn);
    // The data items of an initializer of an object of type qt, or false when
    // it has a part we cannot write (reported).
    bool data_of(const clang::Expr* init, clang::QualType qt, std::vector<NODE*>& items,
                 clang::SourceLocation loc);
    SYMTAB* zero_object(TYPE* type, PSN* psn);
    PSN* psn(clang::SourceLocation loc);
    TPSN tpsn(clang::SourceLocation loc);

    // ---- Nodes (expr.cpp) ----
    NODE* node(int op, TYPE* type, NODE* left = nullptr, NODE* right = nullptr);
    NODE* icon(long long value, TYPE* type);
    NODE* int_const(const llvm::APSInt& v, TYPE* type);
    NODE* fcon(const llvm::APFloat& v, TYPE* type);
    NODE* fcon(double v, TYPE* type);
    NODE* name(SYMTAB* sym);

    // ---- Diagnostics ----
    void unsupported(clang::SourceLocation loc, const std::string& what);
    bool failed() const { return errors != 0; }
    // Where a type error is reported when the type has no declaration at hand.
    clang::SourceLocation cur_loc;

    std::vector<SYMTAB*> globals;
    std::vector<FUNC*> funcs;
    std::vector<DATA> data;
    std::vector<std::pair<std::string, PSN*>> file_asm;

private:
    friend class FN;
    TYPE* bare_type(const clang::Type* t);
    TYPE* record_type(const clang::RecordDecl* rd);
    TYPE* enum_type(const clang::EnumDecl* ed);
    SYMTAB* new_global(const char* name, uint8_t sclass, TYPE* type, uint32_t align, PSN* psn);
    std::string unique_global_name(const std::string& base);
    void add_data(SYMTAB* sym, const clang::VarDecl* def);
    void add_attributes(SYMTAB* sym, const clang::Decl* d);
    void translate_function(const clang::FunctionDecl* fd);

    unsigned diag_unsupported;
    unsigned errors = 0;
    std::set<std::string> reported;
    std::unordered_map<const clang::Type*, TYPE*> types;
    std::unordered_map<const clang::Decl*, TYPE*> tags;
    std::unordered_map<const clang::FieldDecl*, fkMDATA*> members;
    std::unordered_map<const clang::Decl*, SYMTAB*> symbols;
    std::map<std::pair<std::string, unsigned>, SYMTAB*> strings;
    std::map<std::string, SYMTAB*> externals;
    std::map<TYPE*, SYMTAB*> zeros;
    std::set<std::string> global_names;
    std::map<std::string, const char*> file_names;
    std::map<std::string, unsigned> hidden_counts;
};

// Whether an initializer leaves every byte of its object zero (globals.cpp).
bool all_zero(const clang::Expr* e, clang::ASTContext& ctx);

} // namespace cfe
