// File-level symbols, their attributes and initial data, and the order in
// which a translation unit goes to the file.
#include <clang/AST/Attr.h>
#include <clang/AST/RecordLayout.h>
#include <clang/Basic/SourceManager.h>

#include <cstring>

#include "cfe.h"

using namespace clang;

namespace cfe {

namespace {

// Storage classes as the optimizer reads them.
constexpr uint8_t class_extern_def = SC_GLOBAL_DEF;   // defined here, visible outside
constexpr uint8_t class_static = SC_STATIC;           // defined here, file scope only
constexpr uint8_t class_extern_decl = SC_EXTERN_DECL; // declared only

// Pragma kinds the front end writes for attributes.
enum : int {
    PRAGMA_DATA_SECTION = 2,
    PRAGMA_FUNC_NEVER_RETURNS = 3,
    PRAGMA_FUNC_CANNOT_INLINE = 4,
    PRAGMA_CODE_SECTION = 27,
    PRAGMA_WEAK = 83,
    PRAGMA_RETAIN = 95,
};

// Initial data of one object, by byte offset; bit fields are gathered by byte.
class DATA_BUILDER {
public:
    DATA_BUILDER(UNIT& u, SourceLocation loc) : u(u), loc(loc) {}

    // An initializer expression: aggregates by their structure, scalars by
    // their constant value (Clang evaluates no aggregate of C).
    void add_init(const Expr* init, QualType t, uint64_t offset);
    void add(const APValue& v, QualType t, uint64_t offset);
    std::vector<NODE*> finish(uint64_t total);
    bool ok = true;

private:
    void add_scalar(NODE* n, uint64_t offset, uint64_t size) { items[offset] = {n, size}; }
    void add_bits(const llvm::APSInt& value, uint64_t bit_offset, unsigned width);
    NODE* address(const APValue& v, QualType t);

    void fail(const Expr* e) {
        u.unsupported(e->getBeginLoc(),
                      "an initializer that is not a constant known before run time");
        ok = false;
    }

    UNIT& u;
    SourceLocation loc;
    std::map<uint64_t, std::pair<NODE*, uint64_t>> items;
    std::map<uint64_t, uint8_t> bit_bytes;
};

void DATA_BUILDER::add_bits(const llvm::APSInt& value, uint64_t bit_offset, unsigned width) {
    for (unsigned i = 0; i < width; i++) {
        const uint64_t at = bit_offset + i;
        const bool bit = i < value.getBitWidth() ? value[i] : value.isNegative();
        if (bit)
            bit_bytes[at / 8] |= static_cast<uint8_t>(1u << (at % 8));
    }
}

} // namespace

// Whether an initializer leaves every byte of its object zero.
bool all_zero(const Expr* e, ASTContext& ctx) {
    if (isa<ImplicitValueInitExpr>(e))
        return true;
    if (const auto* il = dyn_cast<InitListExpr>(e)) {
        for (const Expr* i : il->inits())
            if (!all_zero(i, ctx))
                return false;
        return !il->hasArrayFiller() || all_zero(il->getArrayFiller(), ctx);
    }
    Expr::EvalResult r;
    if (e->HasSideEffects(ctx) || !e->EvaluateAsRValue(r, ctx))
        return false;
    if (r.Val.isInt())
        return r.Val.getInt() == 0;
    if (r.Val.isFloat())
        return r.Val.getFloat().isPosZero();
    return r.Val.isLValue() && r.Val.isNullPointer();
}

namespace {

void DATA_BUILDER::add_init(const Expr* init, QualType t, uint64_t offset) {
    QualType ct = t.getCanonicalType();
    init = init->IgnoreParens();
    if (isa<ImplicitValueInitExpr>(init))
        return;
    if (const auto* il = dyn_cast<InitListExpr>(init)) {
        if (const auto* at = dyn_cast_or_null<ConstantArrayType>(u.ctx.getAsArrayType(ct))) {
            QualType et = at->getElementType();
            const uint64_t stride = u.size_in_bytes(et);
            const uint64_t count = at->getSize().getZExtValue();
            const unsigned n = il->getNumInits();
            for (unsigned i = 0; i < n && i < count; i++)
                add_init(il->getInit(i), et, offset + i * stride);
            if (il->hasArrayFiller() && !all_zero(il->getArrayFiller(), u.ctx))
                for (uint64_t i = n; i < count; i++)
                    add_init(il->getArrayFiller(), et, offset + i * stride);
            return;
        }
        if (const auto* rt = ct->getAs<RecordType>()) {
            const auto* rd = cast<RecordDecl>(rt->getDecl()->getDefinition());
            const ASTRecordLayout& layout = u.ctx.getASTRecordLayout(rd);
            auto put = [&](const FieldDecl* fd, const Expr* e) {
                const uint64_t bits = layout.getFieldOffset(fd->getFieldIndex());
                if (!fd->isBitField()) {
                    add_init(e, fd->getType(), offset + bits / 8);
                    return;
                }
                Expr::EvalResult r;
                if (e->EvaluateAsInt(r, u.ctx))
                    add_bits(r.Val.getInt(), offset * 8 + bits, fd->getBitWidthValue(u.ctx));
                else if (!isa<ImplicitValueInitExpr>(e))
                    fail(e);
            };
            if (rd->isUnion()) {
                if (const FieldDecl* fd = il->getInitializedFieldInUnion(); fd && il->getNumInits())
                    put(fd, il->getInit(0));
                return;
            }
            unsigned i = 0;
            for (const FieldDecl* fd : rd->fields()) {
                if (fd->isUnnamedBitfield())
                    continue;
                if (i >= il->getNumInits())
                    break;
                put(fd, il->getInit(i++));
            }
            return;
        }
        if (il->getNumInits())
            add_init(il->getInit(0), t, offset);
        return;
    }
    if (const auto* sl = dyn_cast<StringLiteral>(init); sl && ct->isArrayType()) {
        // As many bytes of the string as the array holds, its NUL included.
        std::string bytes = sl->getBytes().str();
        bytes.append(sl->getCharByteWidth(), '\0');
        const uint64_t size = u.size_in_bytes(t);
        if (size && bytes.size() > size)
            bytes.resize(size);
        NODE* n = u.node(SCON, u.unqualified(t));
        n->mk_scon(bytes.data(), static_cast<uint32_t>(bytes.size()));
        add_scalar(n, offset, bytes.size());
        return;
    }
    if (const auto* cl = dyn_cast<CompoundLiteralExpr>(init);
        cl && (ct->isArrayType() || ct->isRecordType())) {
        add_init(cl->getInitializer(), t, offset);
        return;
    }
    if (const auto* ic = dyn_cast<ImplicitCastExpr>(init);
        ic && ic->getCastKind() == CK_NoOp && (ct->isArrayType() || ct->isRecordType())) {
        add_init(ic->getSubExpr(), t, offset);
        return;
    }
    Expr::EvalResult r;
    if (ct->isArrayType() || ct->isRecordType() || !init->EvaluateAsRValue(r, u.ctx, true)) {
        fail(init);
        return;
    }
    add(r.Val, t, offset);
}

void DATA_BUILDER::add(const APValue& v, QualType t, uint64_t offset) {
    const uint64_t size = u.size_in_bytes(t);
    switch (v.getKind()) {
    case APValue::None:
    case APValue::Indeterminate:
        return;
    case APValue::Int:
        add_scalar(u.int_const(v.getInt(), u.unqualified(t)), offset, size);
        return;
    case APValue::Float:
        add_scalar(u.fcon(v.getFloat(), u.unqualified(t)), offset, size);
        return;
    case APValue::LValue:
        add_scalar(address(v, t), offset, size);
        return;
    case APValue::ComplexInt:
    case APValue::ComplexFloat:
        u.unsupported(loc, "_Complex");
        ok = false;
        return;
    case APValue::Vector:
        u.unsupported(loc, "vector type");
        ok = false;
        return;
    case APValue::AddrLabelDiff:
        u.unsupported(loc, "computed goto");
        ok = false;
        return;
    default:
        u.unsupported(loc, "this kind of constant initializer");
        ok = false;
        return;
    }
}

NODE* DATA_BUILDER::address(const APValue& v, QualType t) {
    TYPE* type = u.unqualified(t);
    const APValue::LValueBase base = v.getLValueBase();
    const long long offset = v.getLValueOffset().getQuantity();
    if (!base)
        return u.icon(v.isNullPointer() ? 0 : offset, type);
    SYMTAB* sym = nullptr;
    if (const ValueDecl* d = base.dyn_cast<const ValueDecl*>()) {
        sym = u.global(d);
    } else if (const Expr* e = base.dyn_cast<const Expr*>()) {
        e = e->IgnoreParens();
        if (const auto* sl = dyn_cast<StringLiteral>(e)) {
            sym = u.string_symbol(sl);
        } else if (const auto* pe = dyn_cast<PredefinedExpr>(e)) {
            sym = u.string_symbol(pe->getFunctionName());
        } else if (isa<AddrLabelExpr>(e)) {
            u.unsupported(loc, "computed goto");
            ok = false;
            return u.icon(0, u.int_type());
        } else if (const auto* cl = dyn_cast<CompoundLiteralExpr>(e)) {
            // A compound literal at file scope is an object of its own.
            TYPE* lt = u.type_of(cl->getType());
            sym = u.hidden_object("$lit", lt, u.psn(cl->getBeginLoc()));
            std::vector<NODE*> data;
            if (u.data_of(cl->getInitializer(), cl->getType(), data, cl->getBeginLoc()))
                u.data.push_back({sym, data});
        }
    }
    if (!sym) {
        u.unsupported(loc, "this address constant");
        ok = false;
        return u.icon(0, u.int_type());
    }
    TYPE* ptype = type->is_pointer() ? type : u.ptr_to_void();
    NODE* a = u.node(UAND, ptype, u.name(sym));
    if (offset)
        a = u.node(PLUS, ptype, a, u.icon(offset, u.int_type()));
    if (!type->is_pointer())
        a = u.node(PCONV, type, a);
    return a;
}

std::vector<NODE*> DATA_BUILDER::finish(uint64_t total) {
    for (const auto& [at, byte] : bit_bytes)
        if (!items.count(at))
            items[at] = {u.icon(byte, tp->mk_int(TYPE::ik_uchar, true)), 1};
    std::vector<NODE*> out;
    uint64_t cur = 0;
    auto skip = [&](uint64_t n) {
        NODE* s = u.node(SKIP, u.void_type());
        s->mk_skip(static_cast<int>(n));
        out.push_back(s);
    };
    for (const auto& [at, item] : items) {
        if (at < cur)
            continue; // cannot happen for a well-formed constant
        if (at > cur)
            skip(at - cur);
        out.push_back(item.first);
        cur = at + item.second;
    }
    if (cur < total)
        skip(total - cur);
    return out;
}

} // namespace

UNIT::UNIT(ASTContext& ctx, DiagnosticsEngine& diags)
    : ctx(ctx), sm(ctx.getSourceManager()), diags(diags) {
    diag_unsupported = diags.getCustomDiagID(DiagnosticsEngine::Error, "%0 is not supported");
}

void UNIT::unsupported(SourceLocation loc, const std::string& what) {
    // Once a line: a declaration and its initializer are one construct.
    const SourceLocation at = sm.getExpansionLoc(loc);
    const std::string key = std::to_string(sm.getFileID(at).getHashValue()) + ":" +
                            std::to_string(sm.getExpansionLineNumber(at)) + ":" + what;
    if (!reported.insert(key).second)
        return;
    errors++;
    diags.Report(loc, diag_unsupported) << what;
}

PSN* UNIT::psn(SourceLocation loc) {
    if (loc.isInvalid())
        return nullptr;
    PresumedLoc p = sm.getPresumedLoc(sm.getExpansionLoc(loc));
    if (p.isInvalid())
        return nullptr;
    const char*& name = file_names[p.getFilename()];
    if (!name)
        name = strdup(p.getFilename());
    return new PSN{name, p.getLine(), p.getColumn()};
}

TPSN UNIT::tpsn(SourceLocation loc) {
    TPSN t;
    if (PSN* p = psn(loc)) {
        t.file = tp->intern_file_name(p->file);
        t.line = p->line;
        t.column = p->column;
        delete p;
    }
    return t;
}

std::string UNIT::unique_global_name(const std::string& base) {
    std::string name = base;
    for (unsigned n = 1; global_names.count(name); n++)
        name = base + "$" + std::to_string(n);
    global_names.insert(name);
    return name;
}

SYMTAB* UNIT::new_global(const char* name, uint8_t sclass, TYPE* type, uint32_t align, PSN* psn) {
    auto* s = new SYMTAB;
    s->name = strdup(name);
    s->size = type->is_func() ? 0 : static_cast<uint32_t>(type->size_in_bytes());
    s->sclass = s->oclass = sclass;
    s->type = s->otype = type;
    s->align = align;
    s->psn = psn;
    global_names.insert(name);
    globals.push_back(s);
    return s;
}

void UNIT::add_attributes(SYMTAB* sym, const Decl* d) {
    std::vector<PRAGMA*> list;
    auto add = [&](int kind, const char* arg) {
        char** args = nullptr;
        if (arg) {
            args = new char*[1];
            args[0] = strdup(arg);
        }
        list.push_back(mk_pragma(kind, arg ? 1 : 0, args, nullptr));
    };
    const bool is_func = isa<FunctionDecl>(d);
    if (d->hasAttr<AlwaysInlineAttr>())
        add(PRAGMA_FUNC_ALWAYS_INLINE, nullptr);
    if (d->hasAttr<NoInlineAttr>())
        add(PRAGMA_FUNC_CANNOT_INLINE, nullptr);
    if (const auto* fd = dyn_cast<FunctionDecl>(d); fd && fd->isNoReturn())
        add(PRAGMA_FUNC_NEVER_RETURNS, nullptr);
    if (const auto* a = d->getAttr<SectionAttr>())
        add(is_func ? PRAGMA_CODE_SECTION : PRAGMA_DATA_SECTION, a->getName().str().c_str());
    if (d->hasAttr<UsedAttr>())
        add(PRAGMA_RETAIN, nullptr);
    if (d->hasAttr<WeakAttr>())
        add(PRAGMA_WEAK, nullptr);
    if (const auto* a = d->getAttr<VisibilityAttr>()) {
        const char* v = a->getVisibility() == VisibilityAttr::Hidden      ? "hidden"
                        : a->getVisibility() == VisibilityAttr::Protected ? "protected"
                                                                          : "default";
        add(PRAGMA_SYM_VISIBILITY, v);
    }
    // The writer walks the list from its end: newest first keeps our order.
    for (PRAGMA* p : list) {
        p->next = sym->pragmas;
        sym->pragmas = p;
    }
}

SYMTAB* UNIT::global(const ValueDecl* d) {
    const Decl* key = d->getCanonicalDecl();
    auto found = symbols.find(key);
    if (found != symbols.end())
        return found->second;
    SYMTAB* sym = nullptr;
    if (const auto* fd = dyn_cast<FunctionDecl>(d)) {
        const FunctionDecl* def = fd->getDefinition();
        const FunctionDecl* take = def ? def : fd->getMostRecentDecl();
        check_type(take->getType(), take->getLocation());
        const uint8_t sclass = !def                          ? class_extern_decl
                               : take->isExternallyVisible() ? class_extern_def
                                                             : class_static;
        const std::string name = take->getName().str();
        auto made = externals.find(name);
        if (made != externals.end()) {
            // A builtin already called it: one symbol for one name.
            sym = made->second;
            sym->sclass = sym->oclass = sclass;
            sym->type = sym->otype = type_of(take->getType());
            sym->psn = psn(take->getLocation());
        } else {
            sym = new_global(name.c_str(), sclass, type_of(take->getType()), 32,
                             psn(take->getLocation()));
        }
        if (take->isInlined())
            sym->qual |= SQ_INLINE;
        symbols[key] = sym;
        add_attributes(sym, fd->getMostRecentDecl());
        return sym;
    }
    const auto* vd = cast<VarDecl>(d);
    const VarDecl* def = vd->getDefinition();
    if (!def)
        def = vd->getActingDefinition();
    const VarDecl* take = def ? def : vd->getMostRecentDecl();
    check_type(take->getType(), take->getLocation());
    if (take->getTLSKind() != VarDecl::TLS_None)
        unsupported(take->getLocation(), "thread-local storage");
    std::string name = take->getName().str();
    uint8_t sclass;
    if (vd->isStaticLocal()) {
        // A local static is a file-level object under a name of its own.
        std::string func = "static";
        if (const auto* parent = dyn_cast_or_null<NamedDecl>(
                dyn_cast_or_null<Decl>(take->getParentFunctionOrMethod())))
            func = parent->getName().str();
        name = unique_global_name(func + "$" + name);
        sclass = class_static;
    } else {
        sclass = !def                          ? class_extern_decl
                 : take->isExternallyVisible() ? class_extern_def
                                               : class_static;
    }
    const SourceLocation saved = cur_loc;
    cur_loc = take->getLocation();
    TYPE* type = type_of(take->getType());
    const uint32_t align = static_cast<uint32_t>(ctx.toBits(ctx.getDeclAlign(take)));
    sym = new_global(name.c_str(), sclass, type, align, psn(take->getLocation()));
    symbols[key] = sym;
    add_attributes(sym, vd->getMostRecentDecl());
    if (def)
        add_data(sym, def);
    cur_loc = saved;
    return sym;
}

void UNIT::add_data(SYMTAB* sym, const VarDecl* def) {
    const VarDecl* init_decl = nullptr;
    const Expr* init = def->getAnyInitializer(init_decl);
    if (!init)
        return; // zero, as every object of static storage without initializer
    std::vector<NODE*> items;
    if (data_of(init, init_decl->getType(), items, init_decl->getLocation()))
        data.push_back({sym, items});
}

bool UNIT::data_of(const Expr* init, QualType qt, std::vector<NODE*>& items, SourceLocation loc) {
    DATA_BUILDER b(*this, loc);
    b.add_init(init, qt, 0);
    items = b.finish(size_in_bytes(qt));
    return b.ok;
}

SYMTAB* UNIT::string_symbol(const StringLiteral* sl) {
    std::string bytes = sl->getBytes().str();
    bytes.append(sl->getCharByteWidth(), '\0');
    auto key = std::make_pair(bytes, sl->getCharByteWidth());
    auto found = strings.find(key);
    if (found != strings.end())
        return found->second;
    // The array of the literal, const: a program may not write to it.
    QualType elem = ctx.getAsArrayType(sl->getType())->getElementType();
    TYPE* et = tp->mk_qual(type_of(elem), TQ_CONST);
    const uint32_t count = static_cast<uint32_t>(bytes.size() / sl->getCharByteWidth());
    TYPE* type = tp->mk_array(et, false, count);
    SYMTAB* sym = hidden_object("$str", type, psn(sl->getBeginLoc()));
    NODE* s = node(SCON, type);
    s->mk_scon(bytes.data(), static_cast<uint32_t>(bytes.size()));
    data.push_back({sym, {s}});
    strings[key] = sym;
    return sym;
}

SYMTAB* UNIT::hidden_object(const char* prefix, TYPE* type, PSN* where) {
    unsigned& n = hidden_counts[prefix];
    std::string name;
    do
        name = std::string(prefix) + std::to_string(++n);
    while (global_names.count(name));
    return new_global(name.c_str(), class_static, type, type->align(), where);
}

SYMTAB* UNIT::zero_object(TYPE* type, PSN* where) {
    SYMTAB*& sym = zeros[type];
    if (!sym)
        sym = hidden_object("$zero", tp->mk_qual(type, TQ_CONST), where);
    return sym;
}

SYMTAB* UNIT::external_function(const std::string& name, TYPE* type) {
    SYMTAB*& sym = externals[name];
    if (!sym) {
        // A function the program declares itself is that symbol.
        for (SYMTAB* g : globals)
            if (strcmp(g->name, name.c_str()) == 0 && g->type->is_func())
                sym = g;
        if (!sym)
            sym = new_global(name.c_str(), class_extern_decl, type, 32, nullptr);
    }
    return sym;
}

void UNIT::translate() {
    for (const Decl* d : ctx.getTranslationUnitDecl()->decls()) {
        cur_loc = d->getLocation();
        const bool in_system = sm.isInSystemHeader(sm.getExpansionLoc(d->getLocation()));
        if (const auto* fd = dyn_cast<FunctionDecl>(d)) {
            // Bodies from the system's headers only when this file uses them.
            if (fd->doesThisDeclarationHaveABody() && (!in_system || fd->isUsed()))
                translate_function(fd);
        } else if (const auto* vd = dyn_cast<VarDecl>(d)) {
            if (vd->isThisDeclarationADefinition() != VarDecl::DeclarationOnly &&
                (!in_system || vd->isUsed()))
                global(vd);
        } else if (const auto* a = dyn_cast<FileScopeAsmDecl>(d)) {
            file_asm.emplace_back(a->getAsmString()->getString().str(), psn(a->getBeginLoc()));
        }
    }
}

void UNIT::write(I_FILE* out) {
    for (SYMTAB* s : globals)
        out->if_enter_global(s);
    for (auto& [text, where] : file_asm)
        out->if_write_assembly(text.c_str(), where);
    for (FUNC* f : funcs) {
        out->if_write_begin_func(f->sym, f->psn);
        for (SYMTAB* p : f->params) {
            out->if_enter_local(p);
            out->if_write_symbol(p);
        }
        out->if_write_control(IF_END_ARGS, f->body_psn);
        for (SYMTAB* l : f->locals) {
            out->if_enter_local(l);
            out->if_write_symbol(l);
        }
        out->if_write_control(IF_END_LOCALS, f->body_psn);
        for (ITEM& item : f->items) {
            switch (item.kind) {
            case ITEM::STMT:
                out->if_write_expr(item.tree, item.psn);
                break;
            case ITEM::LABEL:
                // A label no statement names would only split a block.
                if (f->label_uses[item.label])
                    out->if_write_label(item.label);
                break;
            case ITEM::BEGIN_BLOCK:
                out->if_write_control(IF_BEGIN_BLOCK, item.psn);
                for (SYMTAB* s : item.decls) {
                    out->if_enter_local(s);
                    out->if_write_symbol(s);
                }
                break;
            case ITEM::END_BLOCK:
                out->if_write_control(IF_END_BLOCK, item.psn);
                break;
            case ITEM::ASSEMBLY:
                out->if_write_assembly(item.text.c_str(), item.psn);
                break;
            }
        }
        out->if_write_control(IF_END_FUNC, f->end_psn);
    }
    // The initializer section starts right behind the main stream's end marker.
    bool first = true;
    for (DATA& d : data) {
        if (first) {
            out->i_write_eof();
            out->init_offset = static_cast<uint32_t>(out->if_tell());
            first = false;
        }
        out->i_write_uint(d.sym->file_index);
        out->i_flush(IF_INIT);
        for (NODE* n : d.items)
            out->if_write_expr_node(n);
        NODE* end = node(ENDINIT, void_type());
        out->if_write_expr_node(end);
    }
}

} // namespace cfe
