// C types as the type package holds them: canonical types only (typedefs are
// looked through), laid out by Clang for the target.
#include <clang/AST/RecordLayout.h>

#include "cfe.h"

using namespace clang;

namespace cfe {

namespace {

unsigned char quals_of(QualType c) {
    unsigned char q = 0;
    if (c.isConstQualified())
        q |= TQ_CONST;
    if (c.isVolatileQualified())
        q |= TQ_VOLATILE;
    if (c.isRestrictQualified())
        q |= TQ_RESTRICT;
    return q;
}

// What of a type we do not translate, or null.
const char* unsupported_kind(const Type* t) {
    if (isa<VariableArrayType>(t))
        return "variable-length array";
    if (isa<ComplexType>(t))
        return "_Complex";
    if (isa<VectorType>(t))
        return "vector type";
    if (isa<AtomicType>(t))
        return "_Atomic";
    if (isa<BlockPointerType>(t))
        return "block pointer";
    if (const auto* b = dyn_cast<BuiltinType>(t)) {
        switch (b->getKind()) {
        case BuiltinType::Int128:
        case BuiltinType::UInt128:
            return "__int128";
        case BuiltinType::Half:
        case BuiltinType::Float16:
        case BuiltinType::BFloat16:
            return "half-precision floating type";
        case BuiltinType::Float128:
        case BuiltinType::Ibm128:
            return "__float128";
        default:
            break;
        }
    }
    return nullptr;
}

} // namespace

uint64_t UNIT::size_in_bytes(QualType qt) {
    if (qt->isVoidType() || qt->isFunctionType())
        return 1;
    if (qt->isIncompleteType())
        return 0;
    return static_cast<uint64_t>(ctx.getTypeSizeInChars(qt).getQuantity());
}

bool UNIT::check_type(QualType qt, SourceLocation loc) {
    // Walks pointers, arrays and function types; a struct's members are checked
    // when the struct itself is translated.
    for (QualType t = qt.getCanonicalType();;) {
        if (const char* what = unsupported_kind(t.getTypePtr())) {
            unsupported(loc, what);
            return false;
        }
        if (const auto* p = dyn_cast<PointerType>(t)) {
            t = p->getPointeeType().getCanonicalType();
        } else if (const auto* a = dyn_cast<ArrayType>(t)) {
            t = a->getElementType().getCanonicalType();
        } else if (const auto* f = dyn_cast<FunctionProtoType>(t)) {
            for (QualType p : f->param_types())
                if (!check_type(p, loc))
                    return false;
            t = f->getReturnType().getCanonicalType();
        } else if (const auto* f = dyn_cast<FunctionType>(t)) {
            t = f->getReturnType().getCanonicalType();
        } else {
            return true;
        }
    }
}

TYPE* UNIT::type_of(QualType qt) {
    QualType c = qt.getCanonicalType();
    TYPE* t = bare_type(c.getTypePtr());
    const unsigned char q = quals_of(c);
    return q ? tp->mk_qual(t, q) : t;
}

TYPE* UNIT::bare_type(const Type* t) {
    auto found = types.find(t);
    if (found != types.end())
        return found->second;
    TYPE* r = nullptr;
    if (const char* what = unsupported_kind(t)) {
        unsupported(cur_loc, what);
        r = int_type();
    } else if (const auto* b = dyn_cast<BuiltinType>(t)) {
        using T = TYPE;
        switch (b->getKind()) {
        case BuiltinType::Void:
            r = tp->mk_void();
            break;
        case BuiltinType::Bool:
            r = tp->mk_int(T::ik_bool);
            break;
        // Plain char is a char without explicit sign: unsigned on this target.
        case BuiltinType::Char_U:
            r = tp->mk_int(T::ik_uchar);
            break;
        case BuiltinType::Char_S:
            r = tp->mk_int(T::ik_char);
            break;
        case BuiltinType::SChar:
            r = tp->mk_int(T::ik_char, true);
            break;
        case BuiltinType::UChar:
            r = tp->mk_int(T::ik_uchar, true);
            break;
        case BuiltinType::WChar_U:
        case BuiltinType::WChar_S:
            r = tp->mk_int(T::ik_wchar);
            break;
        case BuiltinType::Char16:
        case BuiltinType::Short:
            r = tp->mk_int(T::ik_short);
            break;
        case BuiltinType::UShort:
            r = tp->mk_int(T::ik_ushort);
            break;
        case BuiltinType::Int:
            r = tp->mk_int(T::ik_int);
            break;
        case BuiltinType::Char32:
        case BuiltinType::UInt:
            r = tp->mk_int(T::ik_uint);
            break;
        case BuiltinType::Long:
            r = tp->mk_int(T::ik_long);
            break;
        case BuiltinType::ULong:
            r = tp->mk_int(T::ik_ulong);
            break;
        case BuiltinType::LongLong:
            r = tp->mk_int(T::ik_llong);
            break;
        case BuiltinType::ULongLong:
            r = tp->mk_int(T::ik_ullong);
            break;
        case BuiltinType::Float:
            r = tp->mk_fltpt(T::fk_float);
            break;
        // long double is double on this target.
        case BuiltinType::Double:
        case BuiltinType::LongDouble:
            r = tp->mk_fltpt(T::fk_double);
            break;
        default:
            unsupported(cur_loc,
                        std::string("type '") + b->getName(ctx.getPrintingPolicy()).str() + "'");
            r = int_type();
            break;
        }
    } else if (const auto* p = dyn_cast<PointerType>(t)) {
        r = tp->mk_ptr(type_of(p->getPointeeType()));
    } else if (const auto* a = dyn_cast<ConstantArrayType>(t)) {
        r = tp->mk_array(type_of(a->getElementType()), false,
                         static_cast<uint32_t>(a->getSize().getZExtValue()));
    } else if (const auto* a = dyn_cast<IncompleteArrayType>(t)) {
        r = tp->mk_array(type_of(a->getElementType()), false);
    } else if (const auto* f = dyn_cast<FunctionProtoType>(t)) {
        TYPE* ft = tp->mk_func(type_of(f->getReturnType()), false, true, f->isVariadic());
        for (QualType p : f->param_types())
            ft->add_param(type_of(p));
        tp->type_frozen(ft);
        r = ft;
    } else if (const auto* f = dyn_cast<FunctionNoProtoType>(t)) {
        TYPE* ft = tp->mk_func(type_of(f->getReturnType()), false, false, false);
        tp->type_frozen(ft);
        r = ft;
    } else if (const auto* rt = dyn_cast<RecordType>(t)) {
        r = record_type(rt->getDecl());
    } else if (const auto* et = dyn_cast<EnumType>(t)) {
        r = enum_type(et->getDecl());
    } else {
        unsupported(cur_loc, std::string("type '") + QualType(t, 0).getAsString() + "'");
        r = int_type();
    }
    types[t] = r;
    return r;
}

TYPE* UNIT::record_type(const RecordDecl* rd) {
    const Decl* key = rd->getCanonicalDecl();
    auto found = tags.find(key);
    if (found != tags.end())
        return found->second;
    const auto* def = cast_or_null<RecordDecl>(rd->getDefinition());
    const std::string tag = rd->getName().str();
    const char* name = tag.empty() ? nullptr : tag.c_str();
    const bool is_union = rd->isUnion();
    if (!def) {
        TYPE* t = is_union ? tp->mk_union(name, false, false, 0, 0)
                           : tp->mk_struct(name, false, false, 0, 0);
        t->psn = tpsn(rd->getLocation());
        tp->type_frozen(t);
        tags[key] = t;
        return t;
    }
    const ASTRecordLayout& layout = ctx.getASTRecordLayout(def);
    const uint64_t size = static_cast<uint64_t>(ctx.toBits(layout.getSize()));
    const unsigned align = static_cast<unsigned>(ctx.toBits(layout.getAlignment()));
    TYPE* t = is_union ? tp->mk_union(name, false, true, size, align)
                       : tp->mk_struct(name, false, true, size, align);
    t->psn = tpsn(def->getLocation());
    // Entered before the members, which may point back at it.
    tags[key] = t;
    const SourceLocation saved = cur_loc;
    for (const FieldDecl* fd : def->fields()) {
        cur_loc = fd->getLocation();
        check_type(fd->getType(), fd->getLocation());
        TYPE* ft;
        QualType qt = fd->getType();
        if (const auto* flex = ctx.getAsIncompleteArrayType(qt)) {
            // A flexible array member: complete, with no element.
            TYPE* elem = type_of(flex->getElementType());
            ft = tp->mk_array(elem, false, 0, 0, elem->align(), true);
        } else {
            ft = type_of(qt);
        }
        const bool bitfield = fd->isBitField();
        const unsigned width = bitfield ? fd->getBitWidthValue(ctx) : 0;
        const std::string member = fd->getName().str();
        auto* m = new fkMDATA(
            member.empty() ? nullptr : member.c_str(), ft, 0,
            static_cast<int>(layout.getFieldOffset(fd->getFieldIndex())), static_cast<int>(width),
            quals_of(qt.getCanonicalType()) & (TQ_CONST | TQ_VOLATILE), bitfield, false, false);
        m->psn = tpsn(fd->getLocation());
        t->add_mdata(m);
        members[fd->getCanonicalDecl()] = m;
    }
    cur_loc = saved;
    tp->type_frozen(t);
    return t;
}

fkMDATA* UNIT::member_of(const FieldDecl* fd) {
    record_type(fd->getParent());
    return members[fd->getCanonicalDecl()];
}

TYPE* UNIT::enum_type(const EnumDecl* ed) {
    const Decl* key = ed->getCanonicalDecl();
    auto found = tags.find(key);
    if (found != tags.end())
        return found->second;
    const auto* def = cast_or_null<EnumDecl>(ed->getDefinition());
    if (!def) {
        // A forward-declared enum, as GNU C allows: its values are ints.
        TYPE* t = int_type();
        tags[key] = t;
        return t;
    }
    const std::string tag = def->getName().str();
    QualType it = def->getIntegerType();
    TYPE* underlying = type_of(it);
    const QualType et = ctx.getEnumType(def);
    TYPE* t = tp->mk_enum(tag.empty() ? nullptr : tag.c_str(), false, underlying,
                          ctx.getTypeSize(et), ctx.getTypeAlign(et));
    t->psn = tpsn(def->getLocation());
    for (const EnumConstantDecl* c : def->enumerators()) {
        fkETOR* e = t->add_etor(c->getName().str().c_str(), c->getInitVal().getExtValue());
        e->psn = tpsn(c->getLocation());
    }
    t->set_is_complete(true);
    tp->type_frozen(t);
    tags[key] = t;
    return t;
}

} // namespace cfe
