// Function bodies: parameters and their prolog, locals and block scopes,
// statements as expression, label and block records.
#include <clang/AST/StmtVisitor.h>

#include <cstring>

#include "fn.h"

using namespace clang;

namespace cfe {

void UNIT::translate_function(const FunctionDecl* fd) {
    auto* f = new FUNC;
    f->sym = global(fd);
    f->psn = psn(fd->getLocation());
    const auto* body = dyn_cast<CompoundStmt>(fd->getBody());
    if (!body) {
        unsupported(fd->getLocation(), "a function body that is not a block");
        return;
    }
    f->body_psn = psn(body->getLBracLoc());
    f->end_psn = psn(body->getRBracLoc());
    FN fn(*this, *f, fd);
    fn.body();
    funcs.push_back(f);
}

std::string FN::unique_local_name(const std::string& base) {
    std::string name = base.empty() ? "$anon" : base;
    for (unsigned n = 1; names.count(name); n++)
        name = base + "$" + std::to_string(n);
    names.insert(name);
    return name;
}

SYMTAB* FN::local(const VarDecl* vd, int at_level) {
    auto found = vars.find(vd);
    if (found != vars.end())
        return found->second;
    u.check_type(vd->getType(), vd->getLocation());
    u.cur_loc = vd->getLocation();
    TYPE* t = u.type_of(vd->getType());
    auto* s = new SYMTAB;
    s->name = strdup(unique_local_name(vd->getName().str()).c_str());
    s->size = static_cast<uint32_t>(t->size_in_bytes());
    s->sclass = s->oclass = SC_AUTO;
    s->type = s->otype = t;
    s->align = static_cast<uint32_t>(u.ctx.toBits(u.ctx.getDeclAlign(vd)));
    s->psn = u.psn(vd->getLocation());
    s->lex = static_cast<uint8_t>(at_level);
    if (vd->getStorageClass() == SC_Register)
        s->qual |= SQ_REGISTER;
    vars[vd] = s;
    if (at_level == 2)
        f.locals.push_back(s);
    return s;
}

SYMTAB* FN::temp(TYPE* t) {
    std::string name;
    do
        name = "$T" + std::to_string(++temps);
    while (names.count(name));
    names.insert(name);
    auto* s = new SYMTAB;
    s->name = strdup(name.c_str());
    s->size = static_cast<uint32_t>(t->size_in_bytes());
    s->sclass = s->oclass = SC_AUTO;
    s->type = s->otype = t;
    s->align = t->align();
    s->psn = cur_psn;
    s->lex = 2;
    f.locals.push_back(s);
    return s;
}

void FN::emit(NODE* tree) {
    if (!tree)
        return;
    ITEM item(ITEM::STMT);
    item.tree = tree;
    item.psn = cur_psn;
    f.items.push_back(item);
}

unsigned FN::new_label() {
    f.label_uses.push_back(0);
    if (f.label_uses.size() == 1)
        f.label_uses.push_back(0); // numbers start at 1
    return ++labels;
}

void FN::label(unsigned n) {
    ITEM item(ITEM::LABEL);
    item.label = n;
    f.items.push_back(item);
}

NODE* FN::label_ref(unsigned n) {
    NODE* l = u.node(LABEL, u.void_type());
    l->mk_label(n);
    f.label_uses[n]++;
    return l;
}

void FN::branch(unsigned n) { emit(u.node(BRANCH, u.void_type(), label_ref(n))); }

void FN::body() {
    const bool proto = fd->hasPrototype();
    cur_psn = f.psn;
    unsigned index = 0;
    std::vector<NODE*> prolog;
    for (const ParmVarDecl* p : fd->parameters()) {
        u.check_type(p->getType(), p->getLocation());
        u.cur_loc = p->getLocation();
        // The argument arrives in the type of the call: promoted when the
        // definition has no prototype.
        QualType arrives = p->getType().getUnqualifiedType();
        if (!proto) {
            if (arrives->isPromotableIntegerType())
                arrives = u.ctx.getPromotedIntegerType(arrives);
            else if (arrives->isSpecificBuiltinType(BuiltinType::Float))
                arrives = u.ctx.DoubleTy;
        }
        TYPE* at = u.type_of(arrives);
        std::string pname = p->getName().str();
        if (pname.empty())
            pname = "$arg" + std::to_string(index + 1);
        auto* ps = new SYMTAB;
        ps->name = strdup(pname.c_str());
        ps->size = static_cast<uint32_t>(at->size_in_bytes());
        ps->sclass = ps->oclass = SC_PARAM;
        ps->type = ps->otype = at;
        ps->align = at->align();
        ps->psn = u.psn(p->getLocation());
        ps->lex = 1;
        ps->extra = index++;
        if (p->getStorageClass() == SC_Register)
            ps->qual |= SQ_REGISTER;
        f.params.push_back(ps);
        if (p->getName().empty())
            continue;
        // The body works on a local of the same name, set from the parameter
        // by the argument prolog.
        SYMTAB* ls = local(p, 2);
        NODE* value = convert(u.name(ps), ls->type->type_qualified());
        TYPE* lt = ls->type->type_qualified();
        prolog.push_back(u.node(lt->is_csu() ? STASG : ASG, lt, u.name(ls), value));
    }
    for (NODE* t : prolog)
        emit(t);
    compound(cast<CompoundStmt>(fd->getBody()), true);
    // Falling off the end of main returns 0.
    if (fd->isMain()) {
        const bool returns =
            !f.items.empty() && f.items.back().kind == ITEM::STMT &&
            (f.items.back().tree->op == RETURN || f.items.back().tree->op == URETURN);
        if (!returns) {
            cur_psn = f.end_psn;
            TYPE* rt = u.unqualified(fd->getReturnType());
            emit(u.node(RETURN, rt, u.name(f.sym), u.icon(0, rt)));
        }
    }
}

// The automatic variables a statement declares in its own scope: the
// declarations among its statements, looking through labels.
std::vector<const VarDecl*> FN::scope_vars(const Stmt* s) {
    std::vector<const VarDecl*> out;
    auto take = [&](const Stmt* c) {
        for (;;) {
            if (const auto* l = dyn_cast<LabelStmt>(c))
                c = l->getSubStmt();
            else if (const auto* sc = dyn_cast<SwitchCase>(c))
                c = sc->getSubStmt();
            else if (const auto* a = dyn_cast<AttributedStmt>(c))
                c = a->getSubStmt();
            else
                break;
        }
        if (const auto* ds = dyn_cast<DeclStmt>(c))
            for (const Decl* d : ds->decls())
                if (const auto* vd = dyn_cast<VarDecl>(d); vd && vd->hasLocalStorage())
                    out.push_back(vd);
    };
    if (const auto* cs = dyn_cast<CompoundStmt>(s)) {
        for (const Stmt* c : cs->body())
            take(c);
    } else if (const auto* fs = dyn_cast<ForStmt>(s)) {
        if (fs->getInit())
            take(fs->getInit());
    }
    return out;
}

void FN::open_scope(const std::vector<const VarDecl*>& list, SourceLocation at) {
    level++;
    ITEM item(ITEM::BEGIN_BLOCK);
    item.psn = u.psn(at);
    for (const VarDecl* vd : list)
        item.decls.push_back(local(vd, level));
    f.items.push_back(item);
}

void FN::close_scope(SourceLocation at) {
    ITEM item(ITEM::END_BLOCK);
    item.psn = u.psn(at);
    f.items.push_back(item);
    level--;
}

void FN::compound(const CompoundStmt* cs, bool outermost) {
    const std::vector<const VarDecl*> list = scope_vars(cs);
    const bool block = !outermost && !list.empty();
    if (block)
        open_scope(list, cs->getLBracLoc());
    else
        for (const VarDecl* vd : list)
            local(vd, 2);
    for (const Stmt* s : cs->body())
        stmt(s);
    if (block)
        close_scope(cs->getRBracLoc());
}

void FN::decl(const VarDecl* vd) {
    if (vd->isStaticLocal()) {
        u.global(vd);
        return;
    }
    if (!vd->hasLocalStorage())
        return; // a block-scope extern names the file-level object
    // A declaration outside the scopes collected is a local of the function.
    SYMTAB* s = local(vd, vars.count(vd) ? level : 2);
    const Expr* init = vd->getInit();
    if (!init || vd->getType()->isVariablyModifiedType())
        return;
    cur_psn = u.psn(vd->getLocation());
    std::vector<NODE*> trees;
    init_trees(u.name(s), vd->getType(), init, trees);
    for (NODE* t : trees)
        emit(t);
}

void FN::collect_cases(const Stmt* s, std::vector<const SwitchCase*>& out) {
    if (!s || isa<SwitchStmt>(s))
        return;
    if (const auto* sc = dyn_cast<SwitchCase>(s))
        out.push_back(sc);
    for (const Stmt* c : s->children())
        collect_cases(c, out);
}

void FN::switch_stmt(const SwitchStmt* ss) {
    NODE* value = ex(ss->getCond());
    TYPE* vt = value->type->type_qualified();
    std::vector<const SwitchCase*> cases;
    collect_cases(ss->getBody(), cases);
    for (const SwitchCase* sc : cases)
        case_labels[sc] = new_label();
    const unsigned done = new_label();
    NODE* chain = nullptr;
    unsigned count = 0;
    const SwitchCase* dflt = nullptr;
    auto append = [&](NODE* c) { chain = chain ? u.node(COMMA, u.void_type(), chain, c) : c; };
    const unsigned width = static_cast<unsigned>(vt->size());
    for (const SwitchCase* sc : cases) {
        const auto* cs = dyn_cast<CaseStmt>(sc);
        if (!cs) {
            dflt = sc;
            continue;
        }
        llvm::APSInt lo = cs->getLHS()->EvaluateKnownConstInt(u.ctx);
        llvm::APSInt hi = cs->getRHS() ? cs->getRHS()->EvaluateKnownConstInt(u.ctx) : lo;
        lo = lo.extOrTrunc(64);
        hi = hi.extOrTrunc(64);
        lo.setIsUnsigned(!vt->is_signed());
        hi.setIsUnsigned(!vt->is_signed());
        if (hi < lo)
            continue; // an empty range
        // Counted from lo, so that a case at the type's maximum ends the loop.
        const uint64_t span = (hi - lo).getZExtValue();
        if (span >= 1024) {
            u.unsupported(cs->getBeginLoc(), "a case range of more than 1024 values");
            continue;
        }
        for (uint64_t i = 0; i <= span; i++) {
            llvm::APSInt c(lo + llvm::APInt(64, i), false);
            c = c.extOrTrunc(width);
            c.setIsUnsigned(!vt->is_signed());
            append(u.node(CASE, u.void_type(), u.int_const(c, vt), label_ref(case_labels[sc])));
            count++;
        }
    }
    append(u.node(DEFAULT, u.void_type(), label_ref(dflt ? case_labels[dflt] : done)));
    NODE* sw = u.node(SWITCH, u.void_type(), value, chain);
    sw->mk_switch(count);
    emit(sw);
    break_labels.push_back(done);
    stmt(ss->getBody());
    break_labels.pop_back();
    label(done);
}

void FN::cond_jump(const Expr* e, unsigned target, bool when) {
    e = e->IgnoreParens();
    if (const auto* bo = dyn_cast<BinaryOperator>(e)) {
        if (bo->getOpcode() == BO_LAnd || bo->getOpcode() == BO_LOr) {
            // a && b is false as soon as a is; a || b true as soon as a is.
            const bool decides = bo->getOpcode() == BO_LOr;
            if (when == decides) {
                cond_jump(bo->getLHS(), target, when);
                cond_jump(bo->getRHS(), target, when);
            } else {
                const unsigned skip = new_label();
                cond_jump(bo->getLHS(), skip, decides);
                cond_jump(bo->getRHS(), target, when);
                label(skip);
            }
            return;
        }
    }
    if (const auto* uo = dyn_cast<UnaryOperator>(e); uo && uo->getOpcode() == UO_LNot) {
        cond_jump(uo->getSubExpr(), target, !when);
        return;
    }
    bool value;
    if (!e->HasSideEffects(u.ctx) && e->EvaluateAsBooleanCondition(value, u.ctx)) {
        if (value == when)
            branch(target);
        return;
    }
    NODE* t = test(e);
    if (!when)
        t = invert(t);
    emit(u.node(CBRANCH, u.void_type(), t, label_ref(target)));
}

void FN::stmt(const Stmt* s) {
    if (!s)
        return;
    cur_psn = u.psn(s->getBeginLoc());
    u.cur_loc = s->getBeginLoc();
    switch (s->getStmtClass()) {
    case Stmt::CompoundStmtClass:
        compound(cast<CompoundStmt>(s), false);
        return;
    case Stmt::DeclStmtClass:
        for (const Decl* d : cast<DeclStmt>(s)->decls())
            if (const auto* vd = dyn_cast<VarDecl>(d))
                decl(vd);
        return;
    case Stmt::NullStmtClass:
        return;
    case Stmt::IfStmtClass: {
        const auto* is = cast<IfStmt>(s);
        const unsigned skip = new_label();
        cond_jump(is->getCond(), skip, false);
        stmt(is->getThen());
        if (const Stmt* other = is->getElse()) {
            const unsigned done = new_label();
            branch(done);
            label(skip);
            stmt(other);
            label(done);
        } else {
            label(skip);
        }
        return;
    }
    case Stmt::WhileStmtClass: {
        const auto* ws = cast<WhileStmt>(s);
        const unsigned top = new_label(), done = new_label();
        label(top);
        cond_jump(ws->getCond(), done, false);
        break_labels.push_back(done);
        continue_labels.push_back(top);
        stmt(ws->getBody());
        break_labels.pop_back();
        continue_labels.pop_back();
        cur_psn = u.psn(ws->getCond()->getBeginLoc());
        branch(top);
        label(done);
        return;
    }
    case Stmt::DoStmtClass: {
        const auto* ds = cast<DoStmt>(s);
        const unsigned top = new_label(), next = new_label(), done = new_label();
        label(top);
        break_labels.push_back(done);
        continue_labels.push_back(next);
        stmt(ds->getBody());
        break_labels.pop_back();
        continue_labels.pop_back();
        label(next);
        cur_psn = u.psn(ds->getCond()->getBeginLoc());
        cond_jump(ds->getCond(), top, true);
        label(done);
        return;
    }
    case Stmt::ForStmtClass: {
        const auto* fs = cast<ForStmt>(s);
        const std::vector<const VarDecl*> list = scope_vars(fs);
        if (!list.empty())
            open_scope(list, fs->getBeginLoc());
        stmt(fs->getInit());
        const unsigned top = new_label(), next = new_label(), done = new_label();
        label(top);
        if (fs->getCond()) {
            cur_psn = u.psn(fs->getCond()->getBeginLoc());
            cond_jump(fs->getCond(), done, false);
        }
        break_labels.push_back(done);
        continue_labels.push_back(next);
        stmt(fs->getBody());
        break_labels.pop_back();
        continue_labels.pop_back();
        label(next);
        if (const Expr* inc = fs->getInc()) {
            cur_psn = u.psn(inc->getBeginLoc());
            emit(ex(inc));
        }
        branch(top);
        label(done);
        if (!list.empty())
            close_scope(fs->getEndLoc());
        return;
    }
    case Stmt::SwitchStmtClass:
        switch_stmt(cast<SwitchStmt>(s));
        return;
    case Stmt::CaseStmtClass:
    case Stmt::DefaultStmtClass: {
        const auto* sc = cast<SwitchCase>(s);
        label(case_labels[sc]);
        stmt(sc->getSubStmt());
        return;
    }
    case Stmt::BreakStmtClass:
        branch(break_labels.back());
        return;
    case Stmt::ContinueStmtClass:
        branch(continue_labels.back());
        return;
    case Stmt::ReturnStmtClass: {
        const Expr* rv = cast<ReturnStmt>(s)->getRetValue();
        if (rv && !rv->getType()->isVoidType()) {
            NODE* v = ex(rv);
            emit(u.node(RETURN, u.unqualified(fd->getReturnType()), u.name(f.sym), v));
            return;
        }
        if (rv)
            emit(ex(rv));
        emit(u.node(URETURN, u.void_type(), u.name(f.sym)));
        return;
    }
    case Stmt::LabelStmtClass: {
        const auto* ls = cast<LabelStmt>(s);
        unsigned& n = user_labels[ls->getDecl()];
        if (!n)
            n = new_label();
        label(n);
        stmt(ls->getSubStmt());
        return;
    }
    case Stmt::GotoStmtClass: {
        unsigned& n = user_labels[cast<GotoStmt>(s)->getLabel()];
        if (!n)
            n = new_label();
        branch(n);
        return;
    }
    case Stmt::AttributedStmtClass:
        stmt(cast<AttributedStmt>(s)->getSubStmt());
        return;
    case Stmt::IndirectGotoStmtClass:
        u.unsupported(s->getBeginLoc(), "computed goto");
        return;
    case Stmt::GCCAsmStmtClass: {
        const auto* as = cast<GCCAsmStmt>(s);
        if (as->getNumOutputs() || as->getNumInputs() || as->getNumClobbers() || as->isAsmGoto()) {
            u.unsupported(s->getBeginLoc(), "inline assembly with operands");
            return;
        }
        ITEM item(ITEM::ASSEMBLY);
        item.text = as->getAsmString()->getString().str();
        item.psn = cur_psn;
        f.items.push_back(item);
        return;
    }
    default:
        if (const auto* e = dyn_cast<Expr>(s)) {
            NODE* t = ex(e);
            // A constant alone does nothing.
            if (t->op == ICON || t->op == FCON || t->op == LCON)
                erase_tree(t);
            else
                emit(t);
            return;
        }
        u.unsupported(s->getBeginLoc(), std::string("statement '") + s->getStmtClassName() + "'");
        return;
    }
}

} // namespace cfe
