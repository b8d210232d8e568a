// The text form of trees, blocks, symbols and types (docs/text-form.md). It is
// what tests read with FileCheck, so it must stay stable: no addresses, no ids
// of the file, and no tree, however odd, may make it fail.
#include "ir/infix.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "driver/driver.h"
#include "ifile/ifile.h"
#include "inline/funinfo.h"
#include "ir/bblk.h"
#include "ir/ir.h"
#include "ir/node.h"
#include "ir/symtab.h"
#include "ir/types.h"

namespace {

// ---- Blocks by number ------------------------------------------------------

// While prbbinfix prints a function, blocks are numbered by their place in
// the list it walks, which stays right even where a pass left dfn stale.
struct BLOCK_NAMES {
    std::unordered_map<const BBLK*, int> number;
    std::unordered_map<int, const BBLK*> by_label;
};
const BLOCK_NAMES* block_names;

std::string block_name(const BBLK* bb) {
    if (block_names) {
        auto it = block_names->number.find(bb);
        if (it != block_names->number.end())
            return "bb" + std::to_string(it->second);
        return "";
    }
    return bb->dfn > 0 ? "bb" + std::to_string(bb->dfn) : "";
}

std::string label_text(const NODE* label) {
    if (const BBLK* bb = label_target(label)) {
        std::string name = block_name(bb);
        if (!name.empty())
            return name;
    } else if (block_names) {
        auto it = block_names->by_label.find(label->label_value());
        if (it != block_names->by_label.end())
            return block_name(it->second);
    }
    return "L" + std::to_string(label->label_value());
}

// ---- Strings ---------------------------------------------------------------

std::string quoted(const char* bytes, size_t length) {
    std::string s = "\"";
    for (size_t i = 0; i < length; i++) {
        const unsigned char c = static_cast<unsigned char>(bytes[i]);
        switch (c) {
        case '\n':
            s += "\\n";
            break;
        case '\t':
            s += "\\t";
            break;
        case '\r':
            s += "\\r";
            break;
        case '\\':
            s += "\\\\";
            break;
        case '"':
            s += "\\\"";
            break;
        default:
            if (c < 0x20 || c >= 0x7f) {
                // Three digits always, so that a digit behind never joins the escape.
                char octal[8];
                snprintf(octal, sizeof octal, "\\%03o", c);
                s += octal;
            } else {
                s += static_cast<char>(c);
            }
        }
    }
    return s + "\"";
}

std::string quoted(const char* text) { return text ? quoted(text, strlen(text)) : "\"\""; }

// ---- Types -----------------------------------------------------------------

std::string qual_words(unsigned char q) {
    static const struct {
        unsigned char bit;
        const char* word;
    } words[] = {{TQ_CONST, "const"},   {TQ_VOLATILE, "volatile"}, {TQ_PACKED, "packed"},
                 {TQ_NEAR, "near"},     {TQ_FAR, "far"},           {TQ_RESTRICT, "restrict"},
                 {TQ_IOPORT, "ioport"}, {TQ_ONCHIP, "onchip"}};
    std::string s;
    for (const auto& w : words)
        if (q & w.bit) {
            if (!s.empty())
                s += ' ';
            s += w.word;
        }
    return s;
}

const char* int_name(const TYPE* t) {
    switch (t->ikind) {
    case TYPE::ik_bool:
        return "bool";
    case TYPE::ik_char:
        return t->expl_sign ? "signed char" : "char";
    case TYPE::ik_uchar:
        return "unsigned char";
    case TYPE::ik_wchar:
        return "wchar_t";
    case TYPE::ik_short:
        return "short";
    case TYPE::ik_ushort:
        return "unsigned short";
    case TYPE::ik_int:
        return "int";
    case TYPE::ik_uint:
        return "unsigned int";
    case TYPE::ik_long:
        return "long";
    case TYPE::ik_ulong:
        return "unsigned long";
    case TYPE::ik_llong:
        return "long long";
    case TYPE::ik_ullong:
        return "unsigned long long";
    }
    return "<int?>";
}

const char* or_anon(const char* name) { return name && *name ? name : "<anon>"; }

std::string tag_name(const TYPE* t) {
    switch (t->kind) {
    case TYPE::tpk_enum:
        return std::string("enum ") + or_anon(t->en ? t->en->name : nullptr);
    case TYPE::tpk_struct:
        return std::string("struct ") + or_anon(t->csu ? t->csu->name : nullptr);
    case TYPE::tpk_union:
        return std::string("union ") + or_anon(t->csu ? t->csu->name : nullptr);
    case TYPE::tpk_class:
        return std::string("class ") + or_anon(t->csu ? t->csu->name : nullptr);
    default:
        return type2infix(t);
    }
}

// The specifier of a type that has no declarator part of its own.
std::string base_name(const TYPE* t) {
    switch (t->kind) {
    case TYPE::tpk_void:
        return "void";
    case TYPE::tpk_int:
        return int_name(t);
    case TYPE::tpk_fltpt:
        return t->fkind == TYPE::fk_float    ? "float"
               : t->fkind == TYPE::fk_double ? "double"
                                             : "long double";
    case TYPE::tpk_fxtpt:
        return "fixed(" + type2infix(t->target) + ", " + std::to_string(t->binpt) + ")";
    case TYPE::tpk_complex:
        return "_Complex " + type2infix(t->target);
    case TYPE::tpk_typedef:
        return or_anon(t->td ? t->td->name : nullptr);
    case TYPE::tpk_enum:
    case TYPE::tpk_struct:
    case TYPE::tpk_union:
    case TYPE::tpk_class:
        return tag_name(t);
    default:
        return "<type?>";
    }
}

bool starts_name(const std::string& s) {
    const unsigned char c = static_cast<unsigned char>(s[0]);
    return isalpha(c) || c == '_' || c == '$';
}

// Puts the specifier in front of a declarator: "int*", "int[3]", "int x",
// "int (*)(int)". `group` says that the declarator starts with parentheses
// around a pointer, not with a parameter list.
std::string attach(const std::string& spec, const std::string& inner, bool group) {
    if (inner.empty())
        return spec;
    if (group)
        return spec + " " + inner;
    return starts_name(inner) ? spec + " " + inner : spec + inner;
}

std::string params_text(const TYPE* f) {
    const TYPE::FUNC_PART* fn = f->fn;
    if (!fn)
        return "";
    std::string s;
    for (const fkPARAM* p = fn->params; p; p = p->next) {
        if (!s.empty())
            s += ", ";
        s += type2infix(p->type);
    }
    if (fn->vararg)
        s += s.empty() ? "..." : ", ...";
    if (s.empty() && fn->proto)
        s = "void";
    return s;
}

// The C declarator of `inner` as a t. Qualifiers of an array belong to its
// elements, so `quals` are carried down through arrays to the first pointer
// or to the specifier.
std::string declare(const TYPE* t, const std::string& inner, bool group, unsigned char quals) {
    if (!t)
        return attach("<notype>", inner, group);
    switch (t->kind) {
    case TYPE::tpk_qual:
        return declare(t->target, inner, group, quals | t->quals);
    case TYPE::tpk_pointer:
    case TYPE::tpk_ref:
    case TYPE::tpk_ptm: {
        std::string mark = t->kind == TYPE::tpk_pointer ? "*"
                           : t->kind == TYPE::tpk_ref   ? "&"
                                                        : tag_name(t->ptm_class) + "::*";
        if (t->kind == TYPE::tpk_ptm && !t->ptm_class)
            mark = "::*";
        const TYPE* pointee = t->target;
        const bool wrap =
            pointee && (pointee->kind == TYPE::tpk_array || pointee->kind == TYPE::tpk_func);
        std::string s = mark;
        if (quals)
            s += " " + qual_words(quals);
        if (!inner.empty())
            s += quals || (!wrap && starts_name(inner)) ? " " + inner : inner;
        if (wrap)
            return declare(pointee, "(" + s + ")", true, 0);
        return declare(pointee, s, false, 0);
    }
    case TYPE::tpk_array: {
        const TYPE::ARRAY_PART* ar = t->ar;
        std::string n;
        if (ar && ar->vector)
            n = "<" + std::to_string(ar->count) + ">";
        else if (ar && ar->complete)
            n = "[" + std::to_string(ar->count) + "]";
        else
            n = "[]";
        return declare(ar ? ar->elem : nullptr, inner + n, !inner.empty() && group, quals);
    }
    case TYPE::tpk_func:
        return declare(t->fn ? t->fn->ret : nullptr, inner + "(" + params_text(t) + ")",
                       !inner.empty() && group, 0);
    default: {
        std::string spec = base_name(t);
        if (quals)
            spec = qual_words(quals) + " " + spec;
        return attach(spec, inner, group);
    }
    }
}

// "T*" for a type T, without making the pointer type.
std::string pointer_to(const TYPE* t) {
    const bool wrap = t && (t->kind == TYPE::tpk_array || t->kind == TYPE::tpk_func);
    return wrap ? declare(t, "(*)", true, 0) : declare(t, "*", false, 0);
}

bool same_type(const TYPE* a, const TYPE* b) {
    return a == b || (a && b && a->resolved && a->resolved == b->resolved);
}

// ---- Constants -------------------------------------------------------------

std::string int_constant(INT65 v, const TYPE* t) {
    const std::string digits =
        v.is_negative() ? std::to_string(v.to_int64()) : std::to_string(v.to_uint64());
    const TYPE* r = t ? t->resolved : nullptr;
    if (!r)
        return digits;
    if (r->kind == TYPE::tpk_int && !r->boolean && !r->ptm_int) {
        switch (r->ikind) {
        case TYPE::ik_int:
            return digits;
        case TYPE::ik_uint:
            return digits + "u";
        case TYPE::ik_long:
            return digits + "l";
        case TYPE::ik_ulong:
            return digits + "ul";
        case TYPE::ik_llong:
            return digits + "ll";
        case TYPE::ik_ullong:
            return digits + "ull";
        default:
            break;
        }
    }
    return type2infix(t) + "(" + digits + ")";
}

bool is_hex_float(const char* s) {
    if (*s == '-' || *s == '+')
        s++;
    return s[0] == '0' && (s[1] == 'x' || s[1] == 'X') && strpbrk(s, "pP");
}

// The shortest decimal that reads back to the same value in the type.
std::string shortest_decimal(const char* text, bool is_float) {
    char* end = nullptr;
    const double d = is_float ? static_cast<double>(strtof(text, &end)) : strtod(text, &end);
    if (!end || *end)
        return "";
    char buf[64];
    for (int digits = 1; digits <= 17; digits++) {
        snprintf(buf, sizeof buf, "%.*g", digits, d);
        const double back =
            is_float ? static_cast<double>(strtof(buf, nullptr)) : strtod(buf, nullptr);
        if (back == d || (std::isnan(back) && std::isnan(d)))
            break;
    }
    return buf;
}

std::string float_constant(const NODE* t) {
    const char* text = t->fcon_value();
    if (!text || !*text)
        return "<fcon>";
    std::string s = text;
    const TYPE* r = t->type ? t->type->resolved : nullptr;
    const bool is_float = r && r->kind == TYPE::tpk_fltpt && r->fkind == TYPE::fk_float;
    const bool is_long = r && r->kind == TYPE::tpk_fltpt && r->fkind == TYPE::fk_ldouble;
    const char last = s.back();
    if ((isdigit(static_cast<unsigned char>(last)) || last == '.') && (is_float || is_long))
        s += is_float ? "f" : "L";
    if (is_hex_float(text)) {
        const std::string dec = shortest_decimal(text, is_float);
        if (!dec.empty())
            s += " /* " + dec + " */";
    }
    return s;
}

// ---- Expressions -----------------------------------------------------------

// A printed subtree and the precedence of its outermost operator.
struct TEXT {
    std::string s;
    int prec;
};

constexpr int PREC_COMMA = 1, PREC_ASSIGN = 2, PREC_QUEST = 3, PREC_UNARY = 14, PREC_POSTFIX = 15,
              PREC_LEAF = 99;

TEXT print(const NODE* t);

std::string wrap(const TEXT& t, bool paren) { return paren ? "(" + t.s + ")" : t.s; }

// Groups of binary operators for the parentheses added for clarity.
enum GROUP { G_NONE, G_ARITH, G_SHIFT, G_REL, G_BIT, G_LOGIC };

GROUP group_of(int op) {
    switch (op) {
    case PLUS:
    case MINUS:
    case MULT:
    case DIV:
    case MOD:
        return G_ARITH;
    case SLL:
    case SRL:
        return G_SHIFT;
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
        return G_REL;
    case ANDB:
    case ORB:
    case XORB:
        return G_BIT;
    case ANDAND:
    case OROR:
        return G_LOGIC;
    default:
        return G_NONE;
    }
}

const char* binary_symbol(int op) {
    switch (op) {
    case PLUS:
        return "+";
    case MINUS:
        return "-";
    case MULT:
        return "*";
    case DIV:
        return "/";
    case MOD:
        return "%";
    case SLL:
        return "<<";
    case SRL:
        return ">>";
    case ANDB:
        return "&";
    case ORB:
        return "|";
    case XORB:
        return "^";
    case ANDAND:
        return "&&";
    case OROR:
        return "||";
    case EQ:
        return "==";
    case NEQ:
        return "!=";
    case LT:
        return "<";
    case LE:
        return "<=";
    case GT:
        return ">";
    case GE:
        return ">=";
    case ULT:
        return "<u";
    case ULE:
        return "<=u";
    case UGT:
        return ">u";
    case UGE:
        return ">=u";
    default:
        return nullptr;
    }
}

const char* assign_symbol(int op) {
    switch (op) {
    case ASG:
    case STASG:
    case ARASG:
        return "=";
    case PLUSASG:
        return "+=";
    case MINUSASG:
        return "-=";
    case MULTASG:
        return "*=";
    case DIVASG:
        return "/=";
    case MODASG:
        return "%=";
    case ANDBASG:
        return "&=";
    case ORBASG:
        return "|=";
    case XORBASG:
        return "^=";
    case SLLASG:
        return "<<=";
    case SRLASG:
        return ">>=";
    default:
        return nullptr;
    }
}

// Parentheses that C does not need but a reader does: `a & (b == c)`,
// `a << (n + 1)`, `(a < b) == c`, `a || (b && c)`.
bool clarity_parens(const NODE* parent, const NODE* kid) {
    if (!kid || !binary_symbol(kid->op))
        return false;
    const GROUP k = group_of(kid->op);
    switch (group_of(parent->op)) {
    case G_SHIFT:
        return k == G_ARITH;
    case G_BIT:
        return k != G_LOGIC && kid->op != parent->op;
    case G_REL:
        return k == G_REL;
    case G_LOGIC:
        return k == G_LOGIC && kid->op != parent->op;
    default:
        return false;
    }
}

int binary_prec(int op) {
    // The operator table's precedence, which is C's.
    return precedence[op];
}

TEXT print_binary(const NODE* t, const char* symbol) {
    const int p = binary_prec(t->op);
    const TEXT l = print(t->left), r = print(t->right);
    const bool lp = l.prec < p || clarity_parens(t, t->left);
    const bool rp = r.prec <= p || clarity_parens(t, t->right);
    return {wrap(l, lp) + " " + symbol + " " + wrap(r, rp), p};
}

TEXT print_assign(const NODE* t, const char* symbol) {
    const TEXT l = print(t->left), r = print(t->right);
    return {wrap(l, l.prec <= PREC_ASSIGN) + " " + symbol + " " + wrap(r, r.prec < PREC_ASSIGN),
            PREC_ASSIGN};
}

TEXT print_prefix(const char* symbol, const NODE* operand) {
    const TEXT o = print(operand);
    // "-(-5)", never "--5", which reads as a decrement.
    const bool paren = o.prec < PREC_UNARY || (symbol[0] == '-' && o.s[0] == '-');
    return {symbol + wrap(o, paren), PREC_UNARY};
}

TEXT print_cast(const std::string& type, const NODE* operand) {
    const TEXT o = print(operand);
    return {"(" + type + ")" + wrap(o, o.prec < PREC_UNARY), PREC_UNARY};
}

// The arguments of a call: a COMMA chain that leans left, the first argument
// deepest.
void flatten_commas(const NODE* t, std::vector<const NODE*>& out) {
    if (t && t->op == COMMA) {
        flatten_commas(t->left, out);
        out.push_back(t->right);
        return;
    }
    if (t)
        out.push_back(t);
}

std::string argument_list(const NODE* args) {
    std::vector<const NODE*> list;
    flatten_commas(args, list);
    std::string s = "(";
    for (size_t i = 0; i < list.size(); i++) {
        if (i)
            s += ", ";
        const TEXT a = print(list[i]);
        s += wrap(a, a.prec <= PREC_COMMA);
    }
    return s + ")";
}

// The form of every operator without one of its own: the table name applied
// to the operands that are there.
TEXT print_generic(const NODE* t) {
    std::string name = t->op >= 0 && t->op < 256 && node_operator_name[t->op]
                           ? node_operator_name[t->op]
                           : "op" + std::to_string(t->op);
    if (!t->left && !t->right)
        return {name, PREC_POSTFIX};
    std::string s = name + "(";
    const TEXT l = print(t->left);
    s += wrap(l, l.prec <= PREC_COMMA);
    if (t->right) {
        const TEXT r = print(t->right);
        s += ", " + wrap(r, r.prec <= PREC_COMMA);
    }
    return {s + ")", PREC_POSTFIX};
}

std::string member_name(const NODE* field) {
    const fkMDATA* m = field->field_mval();
    if (!m)
        return "<field>";
    if (m->name && *m->name)
        return m->name;
    return "#" + std::to_string(m->number);
}

TEXT print_member(const NODE* t, const char* access) {
    if (!t->right || t->right->op != FIELD)
        return print_generic(t);
    const TEXT l = print(t->left);
    return {wrap(l, l.prec < PREC_POSTFIX) + access + member_name(t->right), PREC_POSTFIX};
}

TEXT print_load(const NODE* t) {
    const NODE* p = t->left;
    if (!p || t->right)
        return print_generic(t);
    const TYPE* pt = p->type ? p->type->resolved : nullptr;
    if (pt && pt->kind == TYPE::tpk_pointer && same_type(pt->target, t->type))
        return print_prefix("*", p);
    return print_prefix(("*(" + pointer_to(t->type) + ")").c_str(), p);
}

TEXT print_call(const NODE* t) {
    const NODE* callee = t->left;
    std::string f;
    if (callee && callee->op == UAND && callee->left && callee->left->op == NAME && !callee->right)
        f = print(callee->left).s;
    else {
        const TEXT c = print(callee);
        f = wrap(c, c.prec < PREC_POSTFIX);
    }
    return {f + argument_list(t->op == CALL ? t->right : nullptr), PREC_POSTFIX};
}

TEXT print_quest(const NODE* t) {
    const NODE* arms = t->right;
    if (!arms || arms->op != COLON)
        return print_generic(t);
    const TEXT c = print(t->left), a = print(arms->left), b = print(arms->right);
    return {wrap(c, c.prec <= PREC_QUEST) + " ? " + wrap(a, a.prec <= PREC_QUEST) + " : " +
                wrap(b, b.prec < PREC_QUEST),
            PREC_QUEST};
}

std::string goto_text(const NODE* target) {
    if (target && target->op == LABEL)
        return "goto " + label_text(target);
    return "goto " + print(target).s;
}

TEXT print_if(const NODE* t) {
    const NODE* arms = t->right;
    if (!arms || arms->op != COLON)
        return print_generic(t);
    return {"if (" + print(t->left).s + ") " + goto_text(arms->left) + " else " +
                goto_text(arms->right),
            0};
}

TEXT print_switch(const NODE* t) {
    std::vector<const NODE*> cases;
    flatten_commas(t->right, cases);
    std::string s = "switch (" + print(t->left).s + ") {";
    for (size_t i = 0; i < cases.size(); i++) {
        const NODE* c = cases[i];
        if (i)
            s += "; ";
        if (c && c->op == CASE && c->left && c->right && c->right->op == LABEL)
            s += "case " + print(c->left).s + ": " + label_text(c->right);
        else if (c && c->op == DEFAULT && c->left && c->left->op == LABEL && !c->right)
            s += "default: " + label_text(c->left);
        else
            s += print(c).s;
    }
    return {s + "}", 0};
}

TEXT print(const NODE* t) {
    if (!t)
        return {"<null>", PREC_LEAF};
    if (const char* symbol = binary_symbol(t->op))
        return print_binary(t, symbol);
    if (const char* symbol = assign_symbol(t->op))
        return print_assign(t, symbol);
    switch (t->op) {
    case ERASED_OP:
        return {"<erased>", PREC_LEAF};
    case NOP:
        if (!t->left && !t->right)
            return {"nop", PREC_LEAF};
        break;
    case LABEL:
        return {label_text(t), PREC_LEAF};
    case NAME: {
        const SYMTAB* s = t->name_symbol();
        return {s ? or_anon(s->name) : "<nosym>", PREC_LEAF};
    }
    case SCON:
        return {
            quoted(t->scon_value() ? t->scon_value() : "", t->scon_value() ? t->scon_length() : 0),
            PREC_LEAF};
    case ICON:
    case LCON:
        return {int_constant(t->value, t->type), PREC_LEAF};
    case FCON:
        return {float_constant(t), PREC_LEAF};
    case FIELD:
        return {"." + member_name(t), PREC_LEAF};
    case UMINUS:
        if (!t->right)
            return print_prefix("-", t->left);
        break;
    case NOTB:
        if (!t->right)
            return print_prefix("~", t->left);
        break;
    case EXCLAIM:
        if (!t->right)
            return print_prefix("!", t->left);
        break;
    case UAND:
        if (!t->right)
            return print_prefix("&", t->left);
        break;
    case UMULT:
        return print_load(t);
    case SCONV:
    case PCONV:
    case ISP2CHAR:
    case VSCONV:
        if (!t->right)
            return print_cast(type2infix(t->type), t->left);
        break;
    case ACONV:
        if (!t->right)
            return print_cast("arg " + type2infix(t->type), t->left);
        break;
    case QUEST:
        return print_quest(t);
    case COMMAOP: {
        const TEXT l = print(t->left), r = print(t->right);
        return {wrap(l, l.prec < PREC_COMMA) + ", " + wrap(r, r.prec <= PREC_COMMA), PREC_COMMA};
    }
    case STDOT:
        return print_member(t, ".");
    case STREF:
        return print_member(t, "->");
    case CALL:
    case UCALL:
        return print_call(t);
    case ICALL:
    case MCALL:
    case UICALL:
    case UMCALL: {
        const char* name = t->icall_name();
        const NODE* args = t->op == ICALL || t->op == MCALL ? t->left : nullptr;
        if (t->right || (!args && t->left))
            break;
        return {std::string(name ? name : "<builtin>") + argument_list(args), PREC_POSTFIX};
    }
    case MEMCPY:
        // The block copy memcpy becomes: its arguments as the call had them.
        if (t->right)
            break;
        return {"MEMCPY" + argument_list(t->left), PREC_POSTFIX};
    case PLUSPLUS:
    case MINMIN: {
        const NODE* k = t->right;
        if (k && !(k->op == ICON && k->value == INT65(1)))
            break;
        const TEXT l = print(t->left);
        return {wrap(l, l.prec < PREC_POSTFIX) + (t->op == PLUSPLUS ? "++" : "--"), PREC_POSTFIX};
    }
    case RETURN:
        return {t->right ? "return " + print(t->right).s : "return", 0};
    case URETURN:
        return {"return", 0};
    case BRANCH:
        if (!t->right)
            return {goto_text(t->left), 0};
        break;
    case CBRANCH:
        return {"if (" + print(t->left).s + ") " + goto_text(t->right), 0};
    case IF:
        return print_if(t);
    case SWITCH:
        return print_switch(t);
    case LABELDEF: {
        const LBL* l = t->label_rec;
        if (l && l->bb && !block_name(l->bb).empty())
            return {block_name(l->bb) + ":", 0};
        return {"L" + std::to_string(t->label_value()) + ":", 0};
    }
    case PPRAGMA:
        return {t->pragma ? pragma2infix(t->pragma) : "#pragma", 0};
    case ASM:
        return {
            std::string(t->value.low == static_cast<uint32_t>(IF_COMMENT) ? "comment(" : "asm(") +
                quoted(t->text) + ")",
            0};
    case SKIP:
        return {"skip " + std::to_string(t->skip_value()), 0};
    default:
        break;
    }
    return print_generic(t);
}

// ---- Symbols ---------------------------------------------------------------

std::string class_word(const SYMTAB* s) {
    switch (s->sclass) {
    case SC_GLOBAL_DEF:
        return s->lex == 0 ? "global" : "class 2";
    case SC_STATIC:
        return "static";
    case SC_EXTERN_DECL:
        return "extern";
    case SC_AUTO:
    case SC_LOCAL_4:
    case SC_LOCAL_22:
        return s->lex == 0 ? "class " + std::to_string(s->sclass) : "local";
    case SC_DELETED:
    case SC_DELETED_GLOBAL:
        return "deleted";
    default:
        return "class " + std::to_string(s->sclass);
    }
}

std::string symbol_attributes(const SYMTAB* s) {
    std::string a;
    if (s->qual & SQ_INLINE)
        a += " inline";
    if (s->qual & SQ_REGISTER)
        a += " register";
    if (s->qual & SQ_CREGISTER)
        a += " cregister";
    const bool is_function = s->type && s->type->is_func();
    if (!is_function && s->type && s->align != s->type->align())
        a += " align " + std::to_string(s->align / 8);
    if (s->offset)
        a += " offset " + std::to_string(s->offset);
    if (is_function && s->extra)
        a += " options " + std::to_string(s->extra);
    return a;
}

std::string position_text(const PSN* psn) {
    if (!psn || !psn->file)
        return "";
    return std::string(psn->file) + ":" + std::to_string(psn->line);
}

// The lists a function's symbols may be on: before sym_split the first two,
// after it the last two.
std::vector<const SYMTAB*> function_symbols(const FUNINFO* f) {
    std::vector<const SYMTAB*> all;
    for (const SYMTAB* list : {f->symbols, f->temps, f->autos, f->regs}) {
        std::vector<const SYMTAB*> one;
        for (const SYMTAB* s = list; s; s = s->next)
            one.push_back(s);
        // Lists grow at the front: reversed, they stand in creation order.
        all.insert(all.end(), one.rbegin(), one.rend());
    }
    std::vector<const SYMTAB*> unique;
    std::unordered_set<const SYMTAB*> seen;
    for (const SYMTAB* s : all)
        if (seen.insert(s).second)
            unique.push_back(s);
    // Temporaries have no ordinal; they go behind the symbols of the file.
    std::stable_sort(unique.begin(), unique.end(), [](const SYMTAB* a, const SYMTAB* b) {
        const uint32_t ka = a->order ? a->order : UINT32_MAX;
        const uint32_t kb = b->order ? b->order : UINT32_MAX;
        return ka < kb;
    });
    return unique;
}

void print_blocks(FILE* out, BBLK* first) {
    BLOCK_NAMES names;
    std::vector<BBLK*> blocks;
    for (BBLK* b = first; b && !names.number.count(b); b = b->next) {
        blocks.push_back(b);
        names.number[b] = static_cast<int>(blocks.size());
        for (const LBL* l = b->labels; l; l = l->next)
            names.by_label.emplace(l->number, b);
    }
    const BLOCK_NAMES* saved = block_names;
    block_names = &names;
    auto edge_text = [&](const EDGE* list) {
        std::vector<int> numbers;
        int unknown = 0;
        for (const EDGE* e = list; e; e = e->next) {
            auto it = names.number.find(e->bb);
            if (it != names.number.end())
                numbers.push_back(it->second);
            else
                unknown++;
        }
        std::sort(numbers.begin(), numbers.end());
        std::string s;
        for (int n : numbers)
            s += " bb" + std::to_string(n);
        for (int i = 0; i < unknown; i++)
            s += " ?";
        return s.empty() ? std::string(" none") : s;
    };
    for (BBLK* b : blocks) {
        fprintf(out, "bb%d:  ; preds:%s  succs:%s\n", names.number[b], edge_text(b->preds).c_str(),
                edge_text(b->succs).c_str());
        for (const LIST* l = b->statements; l; l = l->next)
            fprintf(out, "  %s\n", print(l->tree).s.c_str());
    }
    block_names = saved;
}

} // namespace

std::string stmt2infix(const NODE* t) { return print(t).s; }

std::string label2infix(const LBL* l) {
    if (!l)
        return "<nolabel>:";
    if (l->bb) {
        std::string name = block_name(l->bb);
        if (!name.empty())
            return name + ":";
    }
    return "L" + std::to_string(l->number) + ":";
}

void dump_tree_debug(const NODE* t) {
    if (print_debug && fdebug)
        fprintf(fdebug, "  %s\n", stmt2infix(t).c_str());
}

void prbbinfix(FILE* out, BBLK* first) {
    if (out)
        print_blocks(out, first);
}

std::string type2infix(const TYPE* t) { return declare(t, "", false, 0); }

std::string decl2infix(const TYPE* t, const std::string& name) {
    return declare(t, name, false, 0);
}

std::string typedef2infix(const TYPE* t) {
    if (!t)
        return "";
    if (t->kind == TYPE::tpk_typedef && t->td)
        return "typedef " + declare(t->td->type_named, or_anon(t->td->name), false, 0);
    if (t->kind == TYPE::tpk_enum && t->en) {
        std::string s = tag_name(t);
        if (!t->en->complete && t->size() == 0)
            return s + "  ; incomplete";
        if (t->en->underlying)
            s += " : " + type2infix(t->en->underlying);
        s += " {";
        for (const fkETOR* e = t->en->etors; e; e = e->next) {
            s += or_anon(e->name);
            s += " = " + std::to_string(e->value);
            if (e->next)
                s += ", ";
        }
        return s + "}";
    }
    if (!t->csu || t->kind < TYPE::tpk_class)
        return "";
    std::string s = tag_name(t);
    if (!t->csu->complete)
        return s + "  ; incomplete";
    for (const fkBCLASS* b = t->csu->bclasses; b; b = b->next) {
        s += b == t->csu->bclasses ? " : " : ", ";
        s += (b->is_virtual ? "virtual " : "") + tag_name(b->type);
    }
    s += " {";
    for (const fkMDATA* m = t->csu->mdata; m; m = m->next) {
        const char* name = m->name && *m->name ? m->name : "";
        s += declare(m->type, name, false, 0);
        if (m->is_bitfield)
            s += " : " + std::to_string(m->width);
        s += m->next ? "; " : ";";
    }
    s += "}  ; size " + std::to_string(t->size() / 8) + ", align " + std::to_string(t->align() / 8);
    return s;
}

std::string string2infix(const char* text) { return quoted(text); }

std::string pragma2infix(const PRAGMA* p) {
    if (!p)
        return "#pragma";
    std::string s = "#pragma ";
    if (p->kind <= maxpragma && pragma_names[p->kind])
        s += pragma_names[p->kind];
    else
        s += "unknown_" + std::to_string(p->kind);
    if (p->nargs <= 0 || !p->args)
        return s;
    s += "(";
    for (int i = 0; i < p->nargs; i++) {
        if (i)
            s += ", ";
        s += quoted(p->args[i]);
    }
    return s + ")";
}

std::string sym2infix(const SYMTAB* s) {
    if (!s)
        return "<nosym>";
    return class_word(s) + " " + or_anon(s->name) + ": " + type2infix(s->type) +
           symbol_attributes(s);
}

std::string init2infix(const NODE* t) {
    if (!t || t->op == ENDINIT)
        return "";
    if (t->op == SKIP)
        return stmt2infix(t);
    return "data " + stmt2infix(t);
}

void dump_symbol_infix(FILE* out, const SYMTAB* s) {
    fprintf(out, "%s\n", sym2infix(s).c_str());
    if (!s)
        return;
    // The symbol keeps its pragmas newest first.
    std::vector<const PRAGMA*> pragmas;
    for (const PRAGMA* p = s->pragmas; p; p = p->next)
        pragmas.push_back(p);
    for (auto it = pragmas.rbegin(); it != pragmas.rend(); ++it)
        fprintf(out, "  %s\n", pragma2infix(*it).c_str());
    for (const EXPR_LIST* l = s->init; l && l->tree; l = l->next) {
        const std::string item = init2infix(l->tree);
        if (!item.empty())
            fprintf(out, "  %s\n", item.c_str());
    }
}

void dump_function_infix(FILE* out, FUNINFO* f) {
    const SYMTAB* fs = f->symbol;
    const std::vector<const SYMTAB*> symbols = function_symbols(f);
    std::string params;
    for (const SYMTAB* s : symbols)
        if (s->lex == 1) {
            if (!params.empty())
                params += ", ";
            params += std::string(or_anon(s->name)) + ": " + type2infix(s->type);
        }
    const TYPE* ft = fs && fs->type ? fs->type->resolved : nullptr;
    if (ft && ft->kind == TYPE::tpk_func && ft->fn && ft->fn->vararg)
        params += params.empty() ? "..." : ", ...";
    std::string head =
        "func " + std::string(fs ? or_anon(fs->name) : or_anon(f->name)) + "(" + params + ")";
    if (ft && ft->kind == TYPE::tpk_func && ft->fn)
        head += " -> " + type2infix(ft->fn->ret);
    const std::string where = position_text(f->psn ? f->psn : fs ? fs->psn : nullptr);
    if (!where.empty())
        head += "  ; " + where;
    fprintf(out, "%s\n", head.c_str());
    for (const SYMTAB* s : symbols)
        if (s->lex > 1)
            fprintf(out, "  %s\n", sym2infix(s).c_str());
    prbbinfix(out, f->bb_list);
}
