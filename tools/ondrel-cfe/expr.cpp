// Expressions: trees of the file's operators. Lvalues are NAME, UMULT, STDOT
// and STREF trees, read where a value is wanted; pointer arithmetic counts
// bytes; conversions are explicit nodes.
#include <clang/AST/Attr.h>
#include <clang/Basic/Builtins.h>

#include <cmath>
#include <cstring>

#include "fn.h"

using namespace clang;

namespace cfe {

// ---- Nodes -----------------------------------------------------------------

NODE* UNIT::node(int op, TYPE* type, NODE* left, NODE* right) {
    NODE* n = new_node(op, type);
    // new_node may change the operator or type for memory; the file gets ours.
    n->op = op;
    n->type = n->orig_type = type;
    n->left = left;
    n->right = right;
    return n;
}

NODE* UNIT::icon(long long value, TYPE* type) {
    NODE* n = node(ICON, type);
    n->mk_icon(value);
    return n;
}

NODE* UNIT::int_const(const llvm::APSInt& v, TYPE* type) {
    const bool is_signed = type->is_signed();
    llvm::APSInt w = v.extOrTrunc(64);
    const uint64_t bits = w.getZExtValue();
    const unsigned size = static_cast<unsigned>(type->size());
    uint64_t value = size >= 64 ? bits : bits & ((uint64_t(1) << size) - 1);
    if (is_signed && size < 64 && (value >> (size - 1)) & 1)
        value |= ~((uint64_t(1) << size) - 1);
    const int64_t as_signed = static_cast<int64_t>(value);
    // Constants of more than 32 bits go as decimal text.
    const bool fits =
        is_signed ? as_signed >= INT32_MIN && as_signed <= INT32_MAX : value <= UINT32_MAX;
    if (fits || size <= 32)
        return icon(is_signed ? as_signed : static_cast<long long>(value), type);
    NODE* n = node(LCON, type);
    const std::string text = is_signed ? std::to_string(as_signed) : std::to_string(value);
    n->mk_lcon(text.c_str());
    return n;
}

NODE* UNIT::fcon(double v, TYPE* type) {
    char text[64];
    if (std::isnan(v))
        snprintf(text, sizeof text, "%snan", std::signbit(v) ? "-" : "");
    else if (std::isinf(v))
        snprintf(text, sizeof text, "%sinf", v < 0 ? "-" : "");
    else
        snprintf(text, sizeof text, "%a", v);
    NODE* n = node(FCON, type);
    // The exact hexadecimal form is the text the writer puts out.
    n->text = strdup(text);
    return n;
}

NODE* UNIT::fcon(const llvm::APFloat& v, TYPE* type) {
    llvm::APFloat d = v;
    bool loses;
    d.convert(llvm::APFloat::IEEEdouble(), llvm::APFloat::rmNearestTiesToEven, &loses);
    return fcon(d.convertToDouble(), type);
}

NODE* UNIT::name(SYMTAB* sym) {
    NODE* n = node(NAME, sym->type);
    n->sym = sym;
    return n;
}

namespace {

bool is_lvalue(const NODE* n) {
    return n->op == NAME || n->op == UMULT || n->op == STDOT || n->op == STREF;
}

bool is_int(const TYPE* t) { return t->is_integral() || t->is_enum(); }

bool is_assignment(int op) {
    switch (op) {
    case ASG:
    case STASG:
    case ARASG:
    case PLUSASG:
    case MINUSASG:
    case MULTASG:
    case DIVASG:
    case MODASG:
    case ANDBASG:
    case ORBASG:
    case XORBASG:
    case SLLASG:
    case SRLASG:
    case PLUSPLUS:
    case MINMIN:
        return true;
    default:
        return false;
    }
}

// Whether evaluating the tree twice could differ from evaluating it once.
bool has_effects(const NODE* t) {
    if (!t)
        return false;
    if (is_assignment(t->op) || t->op == CALL || t->op == UCALL)
        return true;
    if (is_lvalue(t) && t->type && (t->type->qual_kind() & TQ_VOLATILE))
        return true;
    return has_effects(t->left) || has_effects(t->right);
}

int relation_op(BinaryOperatorKind op, bool is_unsigned) {
    switch (op) {
    case BO_EQ:
        return EQ;
    case BO_NE:
        return NEQ;
    case BO_LT:
        return is_unsigned ? ULT : LT;
    case BO_LE:
        return is_unsigned ? ULE : LE;
    case BO_GT:
        return is_unsigned ? UGT : GT;
    default:
        return is_unsigned ? UGE : GE;
    }
}

int inverse_relation(int op) {
    switch (op) {
    case EQ:
        return NEQ;
    case NEQ:
        return EQ;
    case LT:
        return GE;
    case GE:
        return LT;
    case LE:
        return GT;
    case GT:
        return LE;
    case ULT:
        return UGE;
    case UGE:
        return ULT;
    case ULE:
        return UGT;
    default:
        return ULE;
    }
}

int arith_op(BinaryOperatorKind op) {
    switch (op) {
    case BO_Mul:
    case BO_MulAssign:
        return MULT;
    case BO_Div:
    case BO_DivAssign:
        return DIV;
    case BO_Rem:
    case BO_RemAssign:
        return MOD;
    case BO_Add:
    case BO_AddAssign:
        return PLUS;
    case BO_Sub:
    case BO_SubAssign:
        return MINUS;
    case BO_Shl:
    case BO_ShlAssign:
        return SLL;
    case BO_Shr:
    case BO_ShrAssign:
        return SRL;
    case BO_And:
    case BO_AndAssign:
        return ANDB;
    case BO_Xor:
    case BO_XorAssign:
        return XORB;
    case BO_Or:
    case BO_OrAssign:
        return ORB;
    default:
        return NOP;
    }
}

int assigning_op(int op) {
    switch (op) {
    case MULT:
        return MULTASG;
    case DIV:
        return DIVASG;
    case MOD:
        return MODASG;
    case PLUS:
        return PLUSASG;
    case MINUS:
        return MINUSASG;
    case SLL:
        return SLLASG;
    case SRL:
        return SRLASG;
    case ANDB:
        return ANDBASG;
    case XORB:
        return XORBASG;
    default:
        return ORBASG;
    }
}

bool is_relation(int op) { return op >= EQ && op <= UGT; }

// The functions that return twice.
bool is_setjmp(const FunctionDecl* fd) {
    if (fd->hasAttr<ReturnsTwiceAttr>())
        return true;
    const StringRef n = fd->getName();
    return n == "setjmp" || n == "_setjmp" || n == "__setjmp" || n == "sigsetjmp" ||
           n == "__sigsetjmp";
}

} // namespace

// ---- Conversions -----------------------------------------------------------

NODE* FN::zero_of(TYPE* t) {
    if (t->is_fltpt())
        return u.fcon(0.0, t);
    if (is_int(t) || t->is_pointer())
        return u.icon(0, t);
    u.unsupported(u.cur_loc, "a zero value of this type");
    return u.icon(0, u.int_type());
}

NODE* FN::to_bool(NODE* n) {
    TYPE* from = n->type->type_qualified();
    if (from->is_bool())
        return n;
    // A conversion to _Bool is a test against zero, not a truncation.
    return u.node(NEQ, tp->mk_int(TYPE::ik_bool), n, zero_of(from));
}

NODE* FN::retype(NODE* p, TYPE* to) {
    TYPE* from = p->type->type_qualified();
    if (from == to)
        return p;
    // An integer constant becomes an address constant of the pointer type.
    if (p->op == ICON && to->is_pointer() && (is_int(from) || from->is_pointer()) &&
        from->size() == 32) {
        const long long v = from->is_signed() ? p->icon_svalue() : p->icon_uvalue();
        p->type = p->orig_type = to;
        p->mk_icon(v);
        return p;
    }
    return u.node(PCONV, to, p);
}

NODE* FN::convert(NODE* n, TYPE* to) {
    TYPE* from = n->type->type_qualified();
    if (from == to || to->is_void())
        return n;
    if (to->is_bool())
        return to_bool(n);
    if (to->is_pointer() || from->is_pointer())
        return retype(n, to);
    // Integer constants are converted here, as C does it.
    if ((n->op == ICON || n->op == LCON) && is_int(from) && is_int(to)) {
        llvm::APSInt v(llvm::APInt(64, n->value.bits(), from->is_signed()), !from->is_signed());
        erase_tree(n);
        return u.int_const(v, to);
    }
    return u.node(SCONV, to, n);
}

NODE* FN::to_int(NODE* n) { return convert(n, u.int_type()); }

NODE* FN::decay(NODE* lv, TYPE* to) {
    if (lv->op == UMULT) {
        NODE* p = lv->left;
        lv->left = nullptr;
        erase_node(lv);
        return retype(p, to);
    }
    // The address of the array is that of its first element.
    return u.node(UAND, to, lv);
}

NODE* FN::address_of(NODE* lv, TYPE* ptr) { return decay(lv, ptr); }

NODE* FN::test(const Expr* e) {
    NODE* n = ex(e);
    if (e->getType()->isIntegerType())
        return n;
    return u.node(NEQ, u.int_type(), n, zero_of(n->type->type_qualified()));
}

NODE* FN::invert(NODE* t) {
    if (is_relation(t->op)) {
        // Only == and != turn round for floating point, because of NaN.
        const bool fp = t->left->type && t->left->type->is_fltpt();
        if (!fp || t->op == EQ || t->op == NEQ) {
            t->op = inverse_relation(t->op);
            return t;
        }
    }
    if (t->op == ICON) {
        const bool zero = t->value.is_zero();
        erase_tree(t);
        return u.icon(zero, u.int_type());
    }
    return u.node(EXCLAIM, u.int_type(), t);
}

// index * size in bytes as an int, or null for a constant 0.
NODE* FN::scaled(const Expr* index, uint64_t size) {
    Expr::EvalResult r;
    if (!index->HasSideEffects(u.ctx) && index->EvaluateAsInt(r, u.ctx)) {
        const int64_t v = r.Val.getInt().extOrTrunc(64).getSExtValue() * static_cast<int64_t>(size);
        if (v == 0)
            return nullptr;
        return u.icon(static_cast<int32_t>(v), u.int_type());
    }
    NODE* n = to_int(ex(index));
    if (size == 1)
        return n;
    return u.node(MULT, u.int_type(), n, u.icon(static_cast<long long>(size), u.int_type()));
}

NODE* FN::materialize(NODE* value, TYPE* type) {
    SYMTAB* tmp = temp(type);
    TYPE* ptr = tp->mk_ptr(type);
    NODE* set = u.node(type->is_csu() ? STASG : ASG, type, u.name(tmp), value);
    NODE* addr = u.node(UAND, ptr, u.name(tmp));
    return u.node(UMULT, type, u.node(COMMAOP, ptr, set, addr));
}

NODE* FN::stabilize(NODE* lv, NODE*& setup) {
    auto once = [&](NODE*& p) {
        if (!has_effects(p))
            return;
        TYPE* t = p->type->type_qualified();
        SYMTAB* tmp = temp(t);
        NODE* set = u.node(ASG, t, u.name(tmp), p);
        setup = setup ? u.node(COMMAOP, t, setup, set) : set;
        p = u.name(tmp);
    };
    switch (lv->op) {
    case UMULT:
    case STREF:
        once(lv->left);
        break;
    case STDOT:
        lv->left = stabilize(lv->left, setup);
        break;
    default:
        break;
    }
    return lv;
}

NODE* FN::seq(const std::vector<NODE*>& trees, NODE* last) {
    NODE* n = last;
    for (auto it = trees.rbegin(); it != trees.rend(); ++it)
        n = u.node(COMMAOP, last->type, *it, n);
    return n;
}

NODE* FN::call_node(NODE* callee, const std::vector<NODE*>& args, TYPE* ret) {
    if (args.empty())
        return u.node(UCALL, ret, callee);
    NODE* chain = args[0];
    for (size_t i = 1; i < args.size(); i++)
        chain = u.node(COMMA, u.void_type(), chain, args[i]);
    NODE* n = u.node(CALL, ret, callee, chain);
    n->mk_call(static_cast<int>(++calls), 0);
    return n;
}

NODE* FN::helper_call(const char* name, TYPE* ret, std::vector<NODE*> args,
                      std::vector<TYPE*> params) {
    TYPE* ft = tp->mk_func(ret, false, true, false);
    for (TYPE* p : params)
        ft->add_param(p);
    tp->type_frozen(ft);
    SYMTAB* sym = u.external_function(name, ft);
    NODE* callee = u.node(UAND, tp->mk_ptr(sym->type), u.name(sym));
    return call_node(callee, args, ret);
}

// ---- Expressions -----------------------------------------------------------

NODE* FN::ex(const Expr* e) {
    switch (e->getStmtClass()) {
    case Stmt::ParenExprClass:
        return ex(cast<ParenExpr>(e)->getSubExpr());
    case Stmt::ConstantExprClass: {
        const auto* c = cast<ConstantExpr>(e);
        if (c->hasAPValueResult() && c->getAPValueResult().isInt())
            return u.int_const(c->getResultAsAPSInt(), u.unqualified(e->getType()));
        return ex(c->getSubExpr());
    }
    case Stmt::ExprWithCleanupsClass:
        return ex(cast<FullExpr>(e)->getSubExpr());
    case Stmt::IntegerLiteralClass:
        return u.int_const(
            llvm::APSInt(cast<IntegerLiteral>(e)->getValue(), !e->getType()->isSignedIntegerType()),
            u.unqualified(e->getType()));
    case Stmt::CharacterLiteralClass:
    case Stmt::UnaryExprOrTypeTraitExprClass:
    case Stmt::OffsetOfExprClass: {
        Expr::EvalResult r;
        if (e->EvaluateAsInt(r, u.ctx))
            return u.int_const(r.Val.getInt(), u.unqualified(e->getType()));
        // Only the size of a variable-length array is not a constant here.
        u.unsupported(e->getBeginLoc(), "variable-length array");
        break;
    }
    case Stmt::FloatingLiteralClass:
        return u.fcon(cast<FloatingLiteral>(e)->getValue(), u.unqualified(e->getType()));
    case Stmt::StringLiteralClass:
        return u.name(u.string_symbol(cast<StringLiteral>(e)));
    case Stmt::PredefinedExprClass:
        return u.name(u.string_symbol(cast<PredefinedExpr>(e)->getFunctionName()));
    case Stmt::DeclRefExprClass: {
        const ValueDecl* d = cast<DeclRefExpr>(e)->getDecl();
        if (const auto* ec = dyn_cast<EnumConstantDecl>(d))
            return u.int_const(ec->getInitVal(), u.unqualified(e->getType()));
        if (const auto* vd = dyn_cast<VarDecl>(d)) {
            if (vd->hasLocalStorage())
                return u.name(local(vd, 2));
            return u.name(u.global(vd));
        }
        if (const auto* f = dyn_cast<FunctionDecl>(d))
            return u.name(u.global(f));
        u.unsupported(e->getBeginLoc(), "a reference to this kind of declaration");
        break;
    }
    case Stmt::ImplicitCastExprClass:
    case Stmt::CStyleCastExprClass:
        return conversion(cast<CastExpr>(e));
    case Stmt::UnaryOperatorClass:
        return unary(cast<UnaryOperator>(e));
    case Stmt::BinaryOperatorClass:
        return binary(cast<BinaryOperator>(e));
    case Stmt::CompoundAssignOperatorClass:
        return compound_assign(cast<CompoundAssignOperator>(e));
    case Stmt::ConditionalOperatorClass: {
        const auto* co = cast<ConditionalOperator>(e);
        TYPE* t = u.unqualified(e->getType());
        NODE* c = test(co->getCond());
        NODE* a = ex(co->getTrueExpr());
        NODE* b = ex(co->getFalseExpr());
        return u.node(QUEST, t, c, u.node(COLON, t, a, b));
    }
    case Stmt::BinaryConditionalOperatorClass: {
        // a ?: b evaluates a once: into a temporary the test and value share.
        const auto* bc = cast<BinaryConditionalOperator>(e);
        TYPE* t = u.unqualified(e->getType());
        NODE* common = ex(bc->getCommon());
        TYPE* ct = common->type->type_qualified();
        SYMTAB* tmp = temp(ct);
        NODE* set = u.node(ASG, ct, u.name(tmp), common);
        opaque[bc->getOpaqueValue()] = u.name(tmp);
        NODE* c = test(bc->getCond());
        NODE* a = ex(bc->getTrueExpr());
        NODE* b = ex(bc->getFalseExpr());
        return u.node(COMMAOP, t, set, u.node(QUEST, t, c, u.node(COLON, t, a, b)));
    }
    case Stmt::OpaqueValueExprClass: {
        const auto* ov = cast<OpaqueValueExpr>(e);
        auto found = opaque.find(ov);
        if (found != opaque.end())
            return copy(found->second);
        return ex(ov->getSourceExpr());
    }
    case Stmt::CallExprClass:
        return call(cast<CallExpr>(e));
    case Stmt::MemberExprClass:
        return member(cast<MemberExpr>(e));
    case Stmt::ArraySubscriptExprClass: {
        const auto* as = cast<ArraySubscriptExpr>(e);
        NODE* base = ex(as->getBase());
        NODE* off = scaled(as->getIdx(), u.size_in_bytes(as->getType()));
        NODE* addr = off ? u.node(PLUS, base->type->type_qualified(), base, off) : base;
        return u.node(UMULT, u.type_of(as->getType()), addr);
    }
    case Stmt::CompoundLiteralExprClass:
        return compound_literal(cast<CompoundLiteralExpr>(e));
    case Stmt::ImplicitValueInitExprClass:
        return zero_of(u.unqualified(e->getType()));
    case Stmt::VAArgExprClass: {
        // va_arg(ap, T) is *(T*)__ondrel_va_arg(&ap, sizeof(T), _Alignof(T)).
        const auto* va = cast<VAArgExpr>(e);
        QualType t = va->getType();
        TYPE* tt = u.unqualified(t);
        TYPE* uint = tp->mk_int(TYPE::ik_uint);
        NODE* ap = ex(va->getSubExpr());
        ap = ap->type->is_pointer() ? retype(ap, u.ptr_to_void()) : address_of(ap, u.ptr_to_void());
        NODE* c = helper_call(va_arg_helper, u.ptr_to_void(),
                              {ap, u.icon(static_cast<long long>(u.size_in_bytes(t)), uint),
                               u.icon(u.ctx.getTypeAlignInChars(t).getQuantity(), uint)},
                              {u.ptr_to_void(), uint, uint});
        return u.node(UMULT, tt, retype(c, tp->mk_ptr(tt)));
    }
    case Stmt::ChooseExprClass:
        return ex(cast<ChooseExpr>(e)->getChosenSubExpr());
    case Stmt::GenericSelectionExprClass:
        return ex(cast<GenericSelectionExpr>(e)->getResultExpr());
    case Stmt::InitListExprClass: {
        const auto* il = cast<InitListExpr>(e);
        if (il->getNumInits() == 1 && !e->getType()->isAggregateType())
            return ex(il->getInit(0));
        u.unsupported(e->getBeginLoc(), "an initializer list in this place");
        break;
    }
    case Stmt::StmtExprClass:
        u.unsupported(e->getBeginLoc(), "statement expression");
        break;
    case Stmt::AddrLabelExprClass:
        u.unsupported(e->getBeginLoc(), "computed goto");
        break;
    case Stmt::ImaginaryLiteralClass:
        u.unsupported(e->getBeginLoc(), "_Complex");
        break;
    case Stmt::AtomicExprClass:
        u.unsupported(e->getBeginLoc(), "atomic builtin");
        break;
    default:
        u.unsupported(e->getBeginLoc(), std::string("expression '") + e->getStmtClassName() + "'");
        break;
    }
    return u.icon(0, u.int_type());
}

NODE* FN::conversion(const CastExpr* ce) {
    const Expr* sub = ce->getSubExpr();
    TYPE* to = u.unqualified(ce->getType());
    switch (ce->getCastKind()) {
    case CK_LValueToRValue:
    case CK_NoOp:
    case CK_ToVoid:
        return ex(sub);
    case CK_ArrayToPointerDecay:
        return decay(ex(sub), to);
    case CK_FunctionToPointerDecay:
    case CK_BuiltinFnToFnPtr:
        return decay(ex(sub), to);
    case CK_NullToPointer: {
        NODE* n = ex(sub);
        if (n->op == ICON)
            return retype(n, to);
        return u.node(PCONV, to, n);
    }
    case CK_BitCast:
    case CK_IntegralToPointer:
    case CK_PointerToIntegral:
        return retype(ex(sub), to);
    case CK_FloatingCast:
    case CK_IntegralToFloating: {
        // A literal becomes a constant of the new type, rounded as C does.
        const Expr* lit = sub->IgnoreParenImpCasts();
        if (const auto* m = dyn_cast<UnaryOperator>(lit); m && m->getOpcode() == UO_Minus)
            lit = m->getSubExpr()->IgnoreParenImpCasts();
        Expr::EvalResult r;
        if ((isa<IntegerLiteral>(lit) || isa<FloatingLiteral>(lit) || isa<CharacterLiteral>(lit)) &&
            ce->EvaluateAsRValue(r, u.ctx) && r.Val.isFloat())
            return u.fcon(r.Val.getFloat(), to);
        return convert(ex(sub), to);
    }
    case CK_IntegralCast:
    case CK_FloatingToIntegral:
        return convert(ex(sub), to);
    case CK_IntegralToBoolean:
    case CK_FloatingToBoolean:
    case CK_PointerToBoolean:
        return to_bool(ex(sub));
    case CK_IntegralComplexCast:
    case CK_IntegralComplexToBoolean:
    case CK_IntegralComplexToFloatingComplex:
    case CK_IntegralComplexToReal:
    case CK_IntegralRealToComplex:
    case CK_FloatingComplexCast:
    case CK_FloatingComplexToBoolean:
    case CK_FloatingComplexToIntegralComplex:
    case CK_FloatingComplexToReal:
    case CK_FloatingRealToComplex:
        u.unsupported(ce->getBeginLoc(), "_Complex");
        break;
    case CK_AtomicToNonAtomic:
    case CK_NonAtomicToAtomic:
        u.unsupported(ce->getBeginLoc(), "_Atomic");
        break;
    default:
        u.unsupported(ce->getBeginLoc(), std::string("conversion '") + ce->getCastKindName() + "'");
        break;
    }
    return u.icon(0, u.int_type());
}

NODE* FN::unary(const UnaryOperator* uo) {
    const Expr* sub = uo->getSubExpr();
    TYPE* to = u.unqualified(uo->getType());
    switch (uo->getOpcode()) {
    case UO_AddrOf:
        return address_of(ex(sub), to);
    case UO_Deref:
        return u.node(UMULT, u.type_of(uo->getType()), ex(sub));
    case UO_Plus:
    case UO_Extension:
        return ex(sub);
    case UO_Minus: {
        // A negative literal is one constant.
        const Expr* lit = sub->IgnoreParenImpCasts();
        Expr::EvalResult r;
        if ((isa<IntegerLiteral>(lit) || isa<FloatingLiteral>(lit) || isa<CharacterLiteral>(lit)) &&
            uo->EvaluateAsRValue(r, u.ctx)) {
            if (r.Val.isInt())
                return u.int_const(r.Val.getInt(), to);
            if (r.Val.isFloat())
                return u.fcon(r.Val.getFloat(), to);
        }
        return u.node(UMINUS, to, ex(sub));
    }
    case UO_Not:
        return u.node(NOTB, to, ex(sub));
    case UO_LNot: {
        NODE* t = test(sub);
        // The value is 0 or 1: only a relation may be turned round.
        if (is_relation(t->op) && !(t->left->type && t->left->type->is_fltpt())) {
            t->op = inverse_relation(t->op);
            return t;
        }
        return u.node(EXCLAIM, to, t);
    }
    case UO_PreInc:
    case UO_PreDec:
    case UO_PostInc:
    case UO_PostDec: {
        NODE* lv = ex(sub);
        TYPE* t = lv->type->type_qualified();
        NODE* amount;
        if (t->is_pointer())
            amount =
                u.icon(static_cast<long long>(u.size_in_bytes(sub->getType()->getPointeeType())),
                       u.int_type());
        else if (t->is_fltpt())
            amount = u.fcon(1.0, t);
        else
            amount = u.icon(1, t);
        const bool inc = uo->isIncrementOp();
        const int op = uo->isPostfix() ? (inc ? PLUSPLUS : MINMIN) : (inc ? PLUSASG : MINUSASG);
        return u.node(op, t, lv, amount);
    }
    default:
        u.unsupported(uo->getBeginLoc(), "_Complex");
        return u.icon(0, u.int_type());
    }
}

NODE* FN::binary(const BinaryOperator* bo) {
    const BinaryOperatorKind op = bo->getOpcode();
    const Expr* l = bo->getLHS();
    const Expr* r = bo->getRHS();
    TYPE* to = u.unqualified(bo->getType());
    switch (op) {
    case BO_Comma: {
        NODE* a = ex(l);
        NODE* b = ex(r);
        return u.node(COMMAOP, to, a, b);
    }
    case BO_Assign: {
        NODE* lv = ex(l);
        NODE* rv = ex(r);
        TYPE* t = lv->type->type_qualified();
        return u.node(t->is_csu() ? STASG : ASG, t, lv, rv);
    }
    case BO_LAnd:
    case BO_LOr: {
        NODE* a = test(l);
        NODE* b = test(r);
        return u.node(op == BO_LAnd ? ANDAND : OROR, to, a, b);
    }
    case BO_EQ:
    case BO_NE:
    case BO_LT:
    case BO_LE:
    case BO_GT:
    case BO_GE: {
        QualType lt = l->getType();
        const bool uns = lt->isUnsignedIntegerType() || lt->isPointerType();
        NODE* a = ex(l);
        NODE* b = ex(r);
        return u.node(relation_op(op, uns), to, a, b);
    }
    case BO_Add:
    case BO_Sub: {
        const bool lp = l->getType()->isPointerType();
        const bool rp = r->getType()->isPointerType();
        if (lp && rp) {
            // The difference of two addresses in bytes, then in elements.
            NODE* a = ex(l);
            NODE* d = u.node(MINUS, to, a, ex(r));
            const uint64_t size = u.size_in_bytes(l->getType()->getPointeeType());
            if (size <= 1)
                return d;
            return u.node(DIV, to, d, u.icon(static_cast<long long>(size), to));
        }
        if (lp || rp) {
            const Expr* p = lp ? l : r;
            const uint64_t size = u.size_in_bytes(p->getType()->getPointeeType());
            NODE* base = lp ? ex(p) : nullptr;
            NODE* off = scaled(lp ? r : l, size);
            if (!base)
                base = ex(p);
            if (!off)
                return retype(base, to);
            return u.node(op == BO_Add ? PLUS : MINUS, to, base, off);
        }
        NODE* a = ex(l);
        return u.node(op == BO_Add ? PLUS : MINUS, to, a, ex(r));
    }
    case BO_Mul:
    case BO_Div:
    case BO_Rem:
    case BO_And:
    case BO_Xor:
    case BO_Or: {
        // Operands in source order: calls are numbered and temporaries made
        // as they are met.
        NODE* a = ex(l);
        return u.node(arith_op(op), to, a, ex(r));
    }
    case BO_Shl:
    case BO_Shr: {
        NODE* a = ex(l);
        return u.node(arith_op(op), to, a, to_int(ex(r)));
    }
    default:
        u.unsupported(bo->getOperatorLoc(),
                      std::string("operator '") + bo->getOpcodeStr().str() + "'");
        return u.icon(0, u.int_type());
    }
}

NODE* FN::compound_assign(const CompoundAssignOperator* co) {
    const BinaryOperatorKind op = co->getOpcode();
    const int base = arith_op(op);
    const int assigning = assigning_op(base);
    NODE* lv = ex(co->getLHS());
    TYPE* lt = lv->type->type_qualified();
    if (lt->is_pointer()) {
        NODE* off =
            scaled(co->getRHS(), u.size_in_bytes(co->getLHS()->getType()->getPointeeType()));
        return u.node(assigning, lt, lv, off ? off : u.icon(0, u.int_type()));
    }
    TYPE* ct = u.unqualified(co->getComputationLHSType());
    TYPE* rt = u.unqualified(co->getComputationResultType());
    const bool shift = base == SLL || base == SRL;
    NODE* rv = ex(co->getRHS());
    // x op= y stays one node when computing in x's own type gives C's result:
    // when that is the computation type, and for the operators whose low bits
    // do not depend on the width they are computed in.
    const bool wraps = (base == PLUS || base == MINUS || base == MULT || base == ANDB ||
                        base == ORB || base == XORB) &&
                       is_int(lt) && is_int(ct);
    if (!lt->is_bool() && (ct == lt || wraps))
        return u.node(assigning, lt, lv, shift ? to_int(rv) : convert(rv, lt));
    // Otherwise x = (T)((CT)x op y), with x's address computed once.
    NODE* setup = nullptr;
    NODE* target = stabilize(lv, setup);
    NODE* value = convert(copy(target), ct);
    NODE* result = u.node(base, rt, value, shift ? to_int(rv) : convert(rv, rt));
    NODE* store = u.node(ASG, lt, target, convert(result, lt));
    return setup ? u.node(COMMAOP, lt, setup, store) : store;
}

NODE* FN::builtin_call(const CallExpr* ce, const FunctionDecl* callee, unsigned id, bool& handled) {
    handled = true;
    auto va_list_address = [&](const Expr* e) {
        NODE* n = ex(e);
        return n->type->is_pointer() ? retype(n, u.ptr_to_void()) : address_of(n, u.ptr_to_void());
    };
    TYPE* vp = u.ptr_to_void();
    switch (id) {
    case Builtin::BI__builtin_va_start:
    case Builtin::BI__builtin_stdarg_start:
        return helper_call(va_start_helper, u.void_type(), {va_list_address(ce->getArg(0))}, {vp});
    case Builtin::BI__builtin_va_end:
        return helper_call(va_end_helper, u.void_type(), {va_list_address(ce->getArg(0))}, {vp});
    case Builtin::BI__builtin_va_copy:
        return helper_call(va_copy_helper, u.void_type(),
                           {va_list_address(ce->getArg(0)), va_list_address(ce->getArg(1))},
                           {vp, vp});
    case Builtin::BI__builtin_expect:
    case Builtin::BI__builtin_expect_with_probability:
        return convert(ex(ce->getArg(0)), u.unqualified(ce->getType()));
    case Builtin::BI__builtin_unreachable:
    case Builtin::BI__builtin_prefetch:
    case Builtin::BI__builtin_assume:
        return u.icon(0, u.int_type());
    case Builtin::BI__builtin_constant_p:
        return u.icon(ce->getArg(0)->isEvaluatable(u.ctx) ? 1 : 0, u.unqualified(ce->getType()));
    case Builtin::BI__builtin_trap:
        return helper_call("abort", u.void_type(), {}, {});
    case Builtin::BI__builtin_alloca:
    case Builtin::BI__builtin_alloca_uninitialized:
    case Builtin::BI__builtin_alloca_with_align:
    case Builtin::BI__builtin_alloca_with_align_uninitialized:
    case Builtin::BIalloca:
        u.unsupported(ce->getBeginLoc(), "alloca");
        return u.icon(0, u.int_type());
    case Builtin::BI__builtin_setjmp:
    case Builtin::BI__builtin_longjmp:
    case Builtin::BIsetjmp:
    case Builtin::BI_setjmp:
    case Builtin::BIsigsetjmp:
    case Builtin::BI__sigsetjmp:
        u.unsupported(ce->getBeginLoc(), "setjmp");
        return u.icon(0, u.int_type());
    case Builtin::BI__builtin_return_address:
    case Builtin::BI__builtin_frame_address:
        u.unsupported(ce->getBeginLoc(), "the builtin '" + callee->getName().str() + "'");
        return u.icon(0, u.int_type());
    default:
        break;
    }
    // A library function declared as such is an ordinary call.
    if (u.ctx.BuiltinInfo.isPredefinedLibFunction(id)) {
        handled = false;
        return nullptr;
    }
    Expr::EvalResult r;
    if (!ce->HasSideEffects(u.ctx) && ce->EvaluateAsRValue(r, u.ctx)) {
        if (r.Val.isInt())
            return u.int_const(r.Val.getInt(), u.unqualified(ce->getType()));
        if (r.Val.isFloat())
            return u.fcon(r.Val.getFloat(), u.unqualified(ce->getType()));
    }
    std::string name = callee->getName().str();
    if (name.rfind("__sync_", 0) == 0 || name.rfind("__atomic_", 0) == 0 ||
        name.rfind("__c11_atomic_", 0) == 0) {
        u.unsupported(ce->getBeginLoc(), "atomic builtin");
        return u.icon(0, u.int_type());
    }
    // __builtin_memcpy is memcpy; any other builtin is a call of a function
    // of its own name.
    if (u.ctx.BuiltinInfo.isLibFunction(id))
        name = name.substr(strlen("__builtin_"));
    SYMTAB* sym = u.external_function(name, u.type_of(callee->getType()));
    NODE* fn = u.node(UAND, tp->mk_ptr(sym->type), u.name(sym));
    std::vector<NODE*> args;
    for (const Expr* a : ce->arguments())
        args.push_back(ex(a));
    return call_node(fn, args, u.unqualified(ce->getType()));
}

NODE* FN::call(const CallExpr* ce) {
    if (const FunctionDecl* callee = ce->getDirectCallee()) {
        if (is_setjmp(callee)) {
            u.unsupported(ce->getBeginLoc(), "setjmp");
            return u.icon(0, u.int_type());
        }
        if (const unsigned id = callee->getBuiltinID()) {
            bool handled;
            NODE* n = builtin_call(ce, callee, id, handled);
            if (handled)
                return n;
        }
    }
    NODE* fn = ex(ce->getCallee());
    std::vector<NODE*> args;
    for (const Expr* a : ce->arguments())
        args.push_back(ex(a));
    return call_node(fn, args, u.unqualified(ce->getType()));
}

NODE* FN::member(const MemberExpr* me) {
    const auto* field = dyn_cast<FieldDecl>(me->getMemberDecl());
    if (!field) {
        u.unsupported(me->getBeginLoc(), "this member");
        return u.icon(0, u.int_type());
    }
    fkMDATA* m = u.member_of(field);
    TYPE* csu = u.unqualified(u.ctx.getRecordType(field->getParent()));
    NODE* f = u.node(FIELD, m->type);
    f->sym = csu;
    f->mval = m;
    NODE* base = ex(me->getBase());
    TYPE* t = u.type_of(me->getType());
    if (me->isArrow())
        return u.node(STREF, t, base, f);
    if (!is_lvalue(base))
        base = materialize(base, base->type->type_qualified());
    return u.node(STDOT, t, base, f);
}

NODE* FN::compound_literal(const CompoundLiteralExpr* cl) {
    TYPE* t = u.unqualified(cl->getType());
    SYMTAB* tmp = temp(t);
    std::vector<NODE*> init;
    init_trees(u.name(tmp), cl->getType(), cl->getInitializer(), init);
    TYPE* ptr = tp->mk_ptr(t);
    return u.node(UMULT, t, seq(init, u.node(UAND, ptr, u.name(tmp))));
}

// ---- Initialization of automatic objects -------------------------------------

NODE* FN::element(NODE* array_lv, QualType elem, uint64_t index) {
    TYPE* et = u.type_of(elem);
    TYPE* ptr = tp->mk_ptr(et);
    NODE* addr = decay(array_lv, ptr);
    const uint64_t off = index * u.size_in_bytes(elem);
    if (off)
        addr = u.node(PLUS, ptr, addr, u.icon(static_cast<long long>(off), u.int_type()));
    return u.node(UMULT, et, addr);
}

NODE* FN::field_of(NODE* record_lv, const FieldDecl* fd) {
    fkMDATA* m = u.member_of(fd);
    NODE* f = u.node(FIELD, m->type);
    f->sym = u.unqualified(u.ctx.getRecordType(fd->getParent()));
    f->mval = m;
    return u.node(STDOT, u.type_of(fd->getType()), record_lv, f);
}

bool FN::covers_all(QualType t, const Expr* init) {
    QualType ct = t.getCanonicalType();
    if (isa<ImplicitValueInitExpr>(init))
        return false;
    if (const auto* sl = dyn_cast<StringLiteral>(init)) {
        const auto* at = dyn_cast<ConstantArrayType>(u.ctx.getAsArrayType(ct));
        return at && sl->getLength() + 1 >= at->getSize().getZExtValue();
    }
    const auto* il = dyn_cast<InitListExpr>(init);
    if (!il)
        return true;
    if (const auto* at = dyn_cast_or_null<ConstantArrayType>(u.ctx.getAsArrayType(ct))) {
        if (il->getNumInits() < at->getSize().getZExtValue())
            return false;
        for (const Expr* i : il->inits())
            if (!covers_all(at->getElementType(), i))
                return false;
        return true;
    }
    if (const auto* rt = ct->getAs<RecordType>()) {
        const RecordDecl* rd = cast<RecordDecl>(rt->getDecl()->getDefinition());
        if (rd->isUnion()) {
            const FieldDecl* fd = il->getInitializedFieldInUnion();
            return fd && il->getNumInits() == 1 &&
                   u.size_in_bytes(fd->getType()) == u.size_in_bytes(ct) &&
                   covers_all(fd->getType(), il->getInit(0));
        }
        unsigned i = 0;
        for (const FieldDecl* fd : rd->fields()) {
            if (fd->isUnnamedBitfield())
                continue;
            if (i >= il->getNumInits() || !covers_all(fd->getType(), il->getInit(i++)))
                return false;
        }
        return true;
    }
    return true;
}

void FN::init_leaves(NODE* lv, QualType t, const Expr* init, std::vector<NODE*>& out) {
    QualType ct = t.getCanonicalType();
    if (isa<ImplicitValueInitExpr>(init)) {
        erase_tree(lv);
        return; // cleared before
    }
    if (const auto* il = dyn_cast<InitListExpr>(init)) {
        if (const auto* at = dyn_cast_or_null<ConstantArrayType>(u.ctx.getAsArrayType(ct))) {
            QualType et = at->getElementType();
            const uint64_t count = at->getSize().getZExtValue();
            const unsigned n = il->getNumInits();
            for (unsigned i = 0; i < n && i < count; i++)
                init_leaves(element(copy(lv), et, i), et, il->getInit(i), out);
            if (il->hasArrayFiller() && !all_zero(il->getArrayFiller(), u.ctx))
                for (uint64_t i = n; i < count; i++)
                    init_leaves(element(copy(lv), et, i), et, il->getArrayFiller(), out);
        } else if (const auto* rt = ct->getAs<RecordType>()) {
            const RecordDecl* rd = cast<RecordDecl>(rt->getDecl()->getDefinition());
            if (rd->isUnion()) {
                if (const FieldDecl* fd = il->getInitializedFieldInUnion(); fd && il->getNumInits())
                    init_leaves(field_of(copy(lv), fd), fd->getType(), il->getInit(0), out);
            } else {
                unsigned i = 0;
                for (const FieldDecl* fd : rd->fields()) {
                    if (fd->isUnnamedBitfield())
                        continue;
                    if (i >= il->getNumInits())
                        break;
                    init_leaves(field_of(copy(lv), fd), fd->getType(), il->getInit(i++), out);
                }
            }
        } else if (il->getNumInits()) {
            init_leaves(copy(lv), t, il->getInit(0), out);
        }
        erase_tree(lv);
        return;
    }
    if (const auto* sl = dyn_cast<StringLiteral>(init); sl && ct->isArrayType()) {
        const auto* at = cast<ConstantArrayType>(u.ctx.getAsArrayType(ct));
        QualType et = at->getElementType();
        const uint64_t count = at->getSize().getZExtValue();
        TYPE* ut = u.unqualified(et);
        for (uint64_t i = 0; i < count && i <= sl->getLength(); i++) {
            const uint32_t unit = i < sl->getLength() ? sl->getCodeUnit(i) : 0;
            // The code unit as a value of the element type: "\xff" in a
            // signed char is -1.
            const llvm::APSInt v(llvm::APInt(32, unit), true);
            out.push_back(u.node(ASG, ut, element(copy(lv), et, i), u.int_const(v, ut)));
        }
        erase_tree(lv);
        return;
    }
    TYPE* type = lv->type->type_qualified();
    out.push_back(u.node(type->is_csu() ? STASG : ASG, type, lv, convert(ex(init), type)));
}

void FN::init_trees(NODE* lv, QualType t, const Expr* init, std::vector<NODE*>& out) {
    QualType ct = t.getCanonicalType();
    TYPE* type = u.unqualified(t);
    if (!ct->isArrayType() && !ct->isRecordType()) {
        init_leaves(lv, t, init, out);
        return;
    }
    const int copy_op = ct->isArrayType() ? ARASG : STASG;
    if (isa<InitListExpr>(init) && all_zero(init, u.ctx)) {
        out.push_back(u.node(copy_op, type, lv, u.name(u.zero_object(type, cur_psn))));
        return;
    }
    if (isa<InitListExpr>(init) || isa<StringLiteral>(init)) {
        // A constant aggregate is copied from an image of it in static data.
        std::vector<NODE*> items;
        bool image = false;
        if (const auto* sl = dyn_cast<StringLiteral>(init)) {
            const uint64_t size = u.size_in_bytes(t);
            std::string bytes = sl->getBytes().str();
            bytes.append(sl->getCharByteWidth(), '\0');
            if (bytes.size() > size)
                bytes.resize(size);
            NODE* s = u.node(SCON, type);
            s->mk_scon(bytes.data(), static_cast<uint32_t>(bytes.size()));
            items.push_back(s);
            if (bytes.size() < size) {
                NODE* k = u.node(SKIP, u.void_type());
                k->mk_skip(static_cast<int>(size - bytes.size()));
                items.push_back(k);
            }
            image = true;
        } else if (!init->HasSideEffects(u.ctx) && init->isConstantInitializer(u.ctx, false)) {
            image = u.data_of(init, t, items, init->getBeginLoc());
        }
        if (image) {
            SYMTAB* img = u.hidden_object("$init", tp->mk_qual(type, TQ_CONST), cur_psn);
            u.data.push_back({img, items});
            out.push_back(u.node(copy_op, type, lv, u.name(img)));
            return;
        }
        if (!covers_all(t, init))
            out.push_back(u.node(copy_op, type, copy(lv), u.name(u.zero_object(type, cur_psn))));
        init_leaves(lv, t, init, out);
        return;
    }
    out.push_back(u.node(STASG, type, lv, ex(init)));
}

} // namespace cfe
