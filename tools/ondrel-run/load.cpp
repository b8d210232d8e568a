// Loading a program: global objects with their initial data, and every
// function's blocks translated into the interpreter's own trees. What cannot
// be run exactly is refused here, before anything runs.
#include <algorithm>
#include <cstdarg>
#include <cstring>
#include <deque>
#include <set>
#include <unordered_map>

#include "driver/driver.h"
#include "driver/options.h"
#include "ifile/ifile.h"
#include "inline/funinfo.h"
#include "ir/bblk.h"
#include "ir/node.h"
#include "ir/symtab.h"
#include "ir/types.h"
#include "run.h"
#include "support/simfloat.h"

namespace run {

VT value_type(TYPE* type) {
    VT v;
    if (!type)
        return v;
    const TYPE* t = type->resolved;
    if (t->kind == TYPE::tpk_enum && t->en && t->en->underlying)
        t = t->en->underlying->resolved;
    v.size = static_cast<uint32_t>(t->size_in_bits / 8);
    v.align = std::max<uint32_t>(t->align_in_bits / 8, 1);
    switch (t->kind) {
    case TYPE::tpk_int:
        v.k = VK::Int;
        v.bits = static_cast<uint8_t>(std::min<uint64_t>(t->size_in_bits, 64));
        v.boolean = t->ikind == TYPE::ik_bool;
        v.sign = type->is_signed();
        if (v.boolean)
            v.bits = 8;
        break;
    case TYPE::tpk_pointer:
    case TYPE::tpk_ref:
        v.k = VK::Ptr;
        v.bits = 32;
        break;
    case TYPE::tpk_fltpt:
        v.k = t->size_in_bits == 32 ? VK::F32 : VK::F64;
        break;
    case TYPE::tpk_array:
    case TYPE::tpk_class:
    case TYPE::tpk_struct:
    case TYPE::tpk_union:
        v.k = VK::Agg;
        break;
    default:
        v.k = VK::Void;
        break;
    }
    return v;
}

namespace {

std::deque<XN> node_store;

const char* op_name(int op) {
    const char* n = op >= 0 && op < 256 ? node_operator_name[op] : nullptr;
    return n ? n : "?";
}

class Loader {
public:
    explicit Loader(Machine& m) : m(m) {}
    bool load();

private:
    bool refuse(const char* fmt, ...) __attribute__((format(printf, 2, 3)));
    bool layout_globals();
    bool write_initial_data(SYMTAB* sym, uint32_t base);
    bool constant_value(const NODE* n, uint64_t& v);
    XFunc* function_named(const std::string& name);
    bool translate_function(XFunc* fn);
    XN* tr(NODE* n);
    XN* tr_lvalue(NODE* n);
    bool tr_terminator(NODE* n, XN* x, std::unordered_map<const BBLK*, XBlock*>& blocks);
    bool is_global_symbol(const SYMTAB* s) const;

    Machine& m;
    bool failed = false;
    XFunc* cur = nullptr;
    std::unordered_map<const SYMTAB*, uint32_t> local_slot;
    std::map<std::string, uint32_t> global_by_name;
    std::map<std::string, XFunc*> func_by_name;
    std::vector<uint32_t> read_only;
};

bool Loader::refuse(const char* fmt, ...) {
    if (failed)
        return false;
    failed = true;
    char text[1024];
    va_list ap;
    va_start(ap, fmt);
    vsnprintf(text, sizeof text, fmt, ap);
    va_end(ap);
    if (cur)
        fprintf(stderr, "ondrel-run: cannot run %s: %s, in function %s\n", i_file_name, text,
                cur->name.c_str());
    else
        fprintf(stderr, "ondrel-run: cannot run %s: %s\n", i_file_name, text);
    return false;
}

bool Loader::is_global_symbol(const SYMTAB* s) const {
    return s->sclass == SC_GLOBAL_DEF || s->sclass == SC_STATIC || s->sclass == SC_EXTERN_DECL;
}

XFunc* Loader::function_named(const std::string& name) {
    auto it = func_by_name.find(name);
    return it == func_by_name.end() ? nullptr : it->second;
}

bool Loader::layout_globals() {
    std::vector<SYMTAB*> globals;
    for (SYMTAB* s = global_symbols; s; s = s->next)
        globals.push_back(s);
    std::reverse(globals.begin(), globals.end());

    // Functions: the file's definitions, then what the library provides for
    // the others. A library function missing is refused only when named.
    for (SYMTAB* s : globals) {
        if (!s->type || !s->type->is_func() || !s->name)
            continue;
        const std::string name = skip_name_prefix(s->name);
        XFunc* fn = function_named(name);
        FUNINFO* info = find_FUNINFO(name.c_str());
        const bool defined = info && info->defined && info->bb_list;
        if (!fn) {
            m.funcs.push_back(std::make_unique<XFunc>());
            fn = m.funcs.back().get();
            fn->name = name;
            fn->address = Memory::code_base + 16 * static_cast<uint32_t>(m.funcs.size());
            m.by_address[fn->address] = fn;
            func_by_name[name] = fn;
        }
        if (defined)
            fn->info = info;
        TYPE* ft = s->type->resolved;
        if (ft->fn) {
            fn->result = value_type(ft->fn->ret);
            fn->vararg = ft->fn->vararg;
            size_t n = 0;
            for (fkPARAM* p = ft->fn->params; p; p = p->next)
                n++;
            fn->fixed_params = n;
        }
    }
    for (auto& fn : m.funcs)
        if (!fn->info) {
            const LibEntry e = find_library_function(fn->name);
            fn->lib = e.fn;
            fn->lib_args = e.args;
        }

    // The standard streams: FILE objects the library knows by address, and
    // the pointer variables by which the program names them.
    std::vector<std::pair<uint32_t, uint32_t>> streams;
    for (const char* name : {"stdin", "stdout", "stderr"}) {
        const uint32_t file = m.mem.add_global(16, 4, false);
        const uint32_t var = m.mem.add_global(4, 4, false);
        global_by_name[name] = var;
        streams.emplace_back(var, file);
        if (strcmp(name, "stdout") == 0)
            m.stdout_address = file;
        else if (strcmp(name, "stderr") == 0)
            m.stderr_address = file;
    }
    reserve_library_data(m);
    std::vector<std::pair<SYMTAB*, uint32_t>> with_data;
    for (SYMTAB* s : globals) {
        if (!s->type || s->type->is_func() || !s->name)
            continue;
        if (s->sclass != SC_GLOBAL_DEF && s->sclass != SC_STATIC)
            continue;
        const std::string name = skip_name_prefix(s->name);
        if (global_by_name.count(name))
            continue;
        const bool ro = (s->type->qual_kind(true) & TQ_CONST) != 0;
        const uint32_t addr = m.mem.add_global(s->size, std::max<uint32_t>(s->align / 8, 1), false);
        global_by_name[name] = addr;
        if (ro)
            read_only.push_back(addr);
        if (s->init)
            with_data.emplace_back(s, addr);
    }
    m.mem.seal_globals();
    write_library_data(m);
    for (auto [var, file] : streams)
        m.mem.store(var, 4, file);
    for (auto& [s, addr] : with_data)
        if (!write_initial_data(s, addr))
            return false;
    for (uint32_t addr : read_only)
        m.mem.set_read_only(addr, true);
    return true;
}

// The value of an item of initial data: a number, or an address with an
// offset.
bool Loader::constant_value(const NODE* n, uint64_t& v) {
    if (!n || !n->type)
        return refuse("a malformed item of initial data");
    const VT t = value_type(n->type);
    switch (n->op) {
    case ICON:
    case LCON:
        v = canon(n->value.bits(), t);
        return true;
    case FCON: {
        if (!n->fval())
            return refuse("a floating constant without a value");
        trg_fval bits{};
        f_cvt_stot(n->fval(), &bits, t.k == VK::F64);
        v = t.k == VK::F64 ? (uint64_t(bits.words[0]) << 32) | bits.words[1] : bits.words[0];
        return true;
    }
    case UAND: {
        const NODE* x = n->left;
        if (x && x->op == NAME && x->name_symbol()) {
            const SYMTAB* s = x->name_symbol();
            const std::string name = s->name ? skip_name_prefix(s->name) : "";
            if (s->type && s->type->is_func()) {
                XFunc* fn = function_named(name);
                if (!fn || (!fn->info && !fn->lib))
                    return refuse("the address of function %s, which is not defined", name.c_str());
                v = fn->address;
                return true;
            }
            auto it = global_by_name.find(name);
            if (it == global_by_name.end())
                return refuse("the address of %s, which is not defined", name.c_str());
            v = it->second;
            return true;
        }
        return refuse("an address in initial data that is not of a named object");
    }
    case PLUS:
    case MINUS: {
        uint64_t a, b;
        if (!constant_value(n->left, a) || !constant_value(n->right, b))
            return false;
        v = canon(n->op == PLUS ? a + b : a - b, t);
        return true;
    }
    case PCONV:
    case SCONV:
    case ISP2CHAR: {
        uint64_t a;
        if (!constant_value(n->left, a))
            return false;
        v = convert(a, value_type(n->left->type), t);
        return true;
    }
    default:
        return refuse("initial data of operator %s", op_name(n->op));
    }
}

bool Loader::write_initial_data(SYMTAB* sym, uint32_t base) {
    uint32_t at = 0;
    const char* name = sym->name ? sym->name : "?";
    for (EXPR_LIST* l = sym->init; l; l = l->next) {
        const NODE* n = l->tree;
        if (!n || n->op == ENDINIT)
            continue;
        uint32_t size;
        if (n->op == SKIP) {
            size = static_cast<uint32_t>(n->skip_value());
            if (size > sym->size - at)
                return refuse("initial data run past the end of %s", name);
        } else if (n->op == SCON) {
            size = n->scon_length();
            if (size > sym->size - at)
                return refuse("initial data run past the end of %s", name);
            if (size)
                memcpy(m.mem.at(base + at, size, true), n->scon_value(), size);
        } else {
            uint64_t v;
            if (!constant_value(n, v))
                return false;
            size = value_type(n->type).size;
            if (size == 0 || size > 8 || size > sym->size - at)
                return refuse("initial data run past the end of %s", name);
            m.mem.store(base + at, size, v);
        }
        at += size;
    }
    return true;
}

XN* new_x(int op, const VT& t, const NODE* src) {
    node_store.emplace_back();
    XN* x = &node_store.back();
    x->op = op;
    x->t = t;
    x->src = src;
    return x;
}

// The operators whose operands, types and meaning the interpreter knows.
enum Shape { LEAF, UNARY, BINARY };

bool Loader::tr_terminator(NODE* n, XN* x, std::unordered_map<const BBLK*, XBlock*>& blocks) {
    std::vector<NODE*> labels;
    collect_label_operands(n, labels);
    for (NODE* l : labels) {
        const BBLK* b = label_target(l);
        auto it = b ? blocks.find(b) : blocks.end();
        if (it == blocks.end())
            return refuse("a jump to label %d, which names no block", l->label_value());
        x->targets.push_back(it->second);
    }
    if (n->op == IF && x->targets.size() != 2)
        return refuse("an IF without two targets");
    if (n->op == BRANCH && x->targets.size() != 1)
        return refuse("a BRANCH without a target");
    if (n->op == SWITCH) {
        std::vector<const NODE*> items;
        const NODE* c = n->right;
        for (; c && c->op == COMMA; c = c->left)
            items.push_back(c->right);
        items.push_back(c);
        std::reverse(items.begin(), items.end());
        const VT vt = x->a->t;
        bool has_default = false;
        for (const NODE* item : items) {
            if (!item)
                return refuse("a SWITCH with an empty case");
            if (item->op == CASE) {
                if (!item->left || (item->left->op != ICON && item->left->op != LCON))
                    return refuse("a CASE whose value is not a constant");
                x->cases.push_back(
                    convert(canon(item->left->value.bits(), value_type(item->left->type)),
                            value_type(item->left->type), vt));
            } else if (item->op == DEFAULT) {
                has_default = true;
            } else {
                return refuse("a SWITCH case of operator %s", op_name(item->op));
            }
        }
        // Targets come in case order with the default last.
        if (!has_default || x->targets.size() != x->cases.size() + 1)
            return refuse("a SWITCH without exactly one DEFAULT, last");
    }
    return true;
}

XN* Loader::tr_lvalue(NODE* n) {
    XN* x = tr(n);
    if (!x)
        return nullptr;
    if (x->op != NAME && x->op != UMULT && x->op != STDOT && x->op != STREF) {
        refuse("operator %s where an object is needed", op_name(n->op));
        return nullptr;
    }
    if (x->op == NAME && x->callee) {
        refuse("an assignment to function %s", x->callee->name.c_str());
        return nullptr;
    }
    return x;
}

XN* Loader::tr(NODE* n) {
    if (failed)
        return nullptr;
    if (!n) {
        refuse("a tree with an operand missing");
        return nullptr;
    }
    if (!n->type) {
        refuse("operator %s without a type", op_name(n->op));
        return nullptr;
    }
    const VT t = value_type(n->type);
    const auto need = [&](Shape shape) {
        if ((shape != LEAF && !n->left) || (shape == BINARY && !n->right)) {
            refuse("operator %s with an operand missing", op_name(n->op));
            return false;
        }
        return true;
    };
    const auto scalar = [](const VT& v) {
        return v.k == VK::Int || v.k == VK::Ptr || v.k == VK::F32 || v.k == VK::F64;
    };
    const auto integer = [](const VT& v) { return v.k == VK::Int || v.k == VK::Ptr; };
    XN* x = new_x(n->op, t, n);
    switch (n->op) {
    case ICON:
    case LCON:
    case FCON:
        if (!scalar(t)) {
            refuse("a constant of a type that is not a number");
            return nullptr;
        }
        if (!constant_value(n, x->imm))
            return nullptr;
        return x;
    case NAME: {
        const SYMTAB* s = n->name_symbol();
        if (!s || !s->name) {
            refuse("a NAME without a symbol");
            return nullptr;
        }
        if (s->type && s->type->is_func()) {
            // A function used as a value is its address.
            x->op = UAND;
            x->callee = function_named(skip_name_prefix(s->name));
            if (!x->callee || (!x->callee->info && !x->callee->lib)) {
                refuse("function %s, which is neither defined nor in the library", s->name);
                return nullptr;
            }
            x->t = VT{VK::Ptr, 32, false, false, 4, 4};
            return x;
        }
        auto slot = local_slot.find(s);
        if (slot != local_slot.end()) {
            x->local = true;
            x->imm = slot->second;
            x->direct = x->direct_write =
                t.k != VK::Agg && t.size <= cur->frame_objects[slot->second].second;
            return x;
        }
        auto g = global_by_name.find(skip_name_prefix(s->name));
        if (!is_global_symbol(s) || g == global_by_name.end()) {
            refuse("%s, which is neither a local of the function nor defined", s->name);
            return nullptr;
        }
        x->imm = g->second;
        bool ro = false;
        if (t.k != VK::Agg && t.size && (x->host = m.mem.global_host(g->second, t.size, ro))) {
            x->direct = true;
            x->direct_write = !ro;
        }
        return x;
    }
    case UAND: {
        if (!need(UNARY))
            return nullptr;
        if (n->left->op == NAME && n->left->name_symbol() && n->left->name_symbol()->type &&
            n->left->name_symbol()->type->is_func()) {
            XN* f = tr(n->left);
            if (!f)
                return nullptr;
            f->t = t;
            return f;
        }
        if (!(x->a = tr_lvalue(n->left)))
            return nullptr;
        return x;
    }
    case UMULT:
        if (!need(UNARY) || !(x->a = tr(n->left)))
            return nullptr;
        if (!integer(x->a->t)) {
            refuse("UMULT of a value that is not an address");
            return nullptr;
        }
        if (t.k == VK::Void) {
            refuse("a load of type void");
            return nullptr;
        }
        return x;
    case STDOT:
    case STREF: {
        if (!need(BINARY))
            return nullptr;
        const NODE* field = n->right;
        if (field->op != FIELD || !field->field_mval()) {
            refuse("%s without a FIELD", op_name(n->op));
            return nullptr;
        }
        x->a = tr(n->left);
        if (!x->a)
            return nullptr;
        if (n->op == STDOT && x->a->t.k != VK::Agg) {
            refuse("STDOT of a value that is not a struct");
            return nullptr;
        }
        const fkMDATA* md = field->field_mval();
        if (md->is_bitfield) {
            if (md->width == 0 || md->width > 64 || t.k != VK::Int) {
                refuse("a bit field of width %u", md->width);
                return nullptr;
            }
            x->bitfield = true;
            x->bit_offset = md->offset;
            x->bit_width = md->width;
        } else {
            x->imm = md->offset / 8;
        }
        return x;
    }
    case PLUS:
    case MINUS:
    case MULT:
    case DIV:
        if (!need(BINARY) || !(x->a = tr(n->left)) || !(x->b = tr(n->right)))
            return nullptr;
        if (!scalar(t) || !scalar(x->a->t) || !scalar(x->b->t)) {
            refuse("%s of a value that is not a number", op_name(n->op));
            return nullptr;
        }
        if ((t.k == VK::Ptr && n->op != PLUS && n->op != MINUS) ||
            ((t.k == VK::F32 || t.k == VK::F64) &&
             (x->a->t.k == VK::Ptr || x->b->t.k == VK::Ptr))) {
            refuse("%s of pointers in a type it cannot compute in", op_name(n->op));
            return nullptr;
        }
        return x;
    case MOD:
    case ANDB:
    case ORB:
    case XORB:
    case SLL:
    case SRL:
        if (!need(BINARY) || !(x->a = tr(n->left)) || !(x->b = tr(n->right)))
            return nullptr;
        if (!integer(t) || !integer(x->a->t) || !integer(x->b->t)) {
            refuse("%s of a value that is not an integer", op_name(n->op));
            return nullptr;
        }
        return x;
    case UMINUS:
    case NOTB:
    case EXCLAIM:
        if (!need(UNARY) || !(x->a = tr(n->left)))
            return nullptr;
        if (!scalar(t) || !scalar(x->a->t) || (n->op == NOTB && !integer(t))) {
            refuse("%s of a value that is not a number", op_name(n->op));
            return nullptr;
        }
        return x;
    case EQ:
    case NEQ:
    case LT:
    case LE:
    case GT:
    case GE:
    case ULT:
    case ULE:
    case UGT:
    case UGE: {
        if (!need(BINARY) || !(x->a = tr(n->left)) || !(x->b = tr(n->right)))
            return nullptr;
        const bool fa = x->a->t.k == VK::F32 || x->a->t.k == VK::F64;
        const bool fb = x->b->t.k == VK::F32 || x->b->t.k == VK::F64;
        if (!scalar(x->a->t) || !scalar(x->b->t) || !integer(t) || fa != fb ||
            (fa && n->op >= ULE)) {
            refuse("%s of operands it cannot compare", op_name(n->op));
            return nullptr;
        }
        return x;
    }
    case ANDAND:
    case OROR:
        if (!need(BINARY) || !(x->a = tr(n->left)) || !(x->b = tr(n->right)))
            return nullptr;
        if (!scalar(x->a->t) || !scalar(x->b->t) || !integer(t)) {
            refuse("%s of operands that are not tests", op_name(n->op));
            return nullptr;
        }
        return x;
    case QUEST:
        if (!need(BINARY) || !(x->a = tr(n->left)))
            return nullptr;
        if (n->right->op != COLON || !n->right->left || !n->right->right) {
            refuse("QUEST without a COLON of two arms");
            return nullptr;
        }
        if (!scalar(x->a->t)) {
            refuse("QUEST of a test that is not a number");
            return nullptr;
        }
        x->b = new_x(COLON, t, n->right);
        if (!(x->b->a = tr(n->right->left)) || !(x->b->b = tr(n->right->right)))
            return nullptr;
        if (scalar(t) && (!scalar(x->b->a->t) || !scalar(x->b->b->t))) {
            refuse("QUEST whose arms are not numbers");
            return nullptr;
        }
        return x;
    case COMMAOP:
        if (!need(BINARY) || !(x->a = tr(n->left)) || !(x->b = tr(n->right)))
            return nullptr;
        return x;
    case SCONV:
    case ACONV:
    case PCONV:
    case ISP2CHAR:
        if (!need(UNARY) || !(x->a = tr(n->left)))
            return nullptr;
        if (t.k == VK::Agg || t.k == VK::Void || x->a->t.k == VK::Agg) {
            if (x->a->t.k == t.k && t.size == x->a->t.size)
                return x;
            refuse("%s between types it cannot convert", op_name(n->op));
            return nullptr;
        }
        return x;
    case ASG:
    case STASG:
    case ARASG:
        if (!need(BINARY) || !(x->b = tr(n->right)) || !(x->a = tr_lvalue(n->left)))
            return nullptr;
        if ((x->a->t.k == VK::Agg) != (x->b->t.k == VK::Agg) ||
            (x->a->t.k == VK::Agg && x->a->t.size != x->b->t.size) ||
            (x->a->t.k != VK::Agg && !scalar(x->a->t)) ||
            (x->a->t.k == VK::Agg && x->a->bitfield)) {
            refuse("%s of a value to an object of another kind", op_name(n->op));
            return nullptr;
        }
        return x;
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
    case MINMIN: {
        if (!need(BINARY) || !(x->b = tr(n->right)) || !(x->a = tr_lvalue(n->left)))
            return nullptr;
        const VT& lt = x->a->t;
        const bool float_op = lt.k == VK::F32 || lt.k == VK::F64;
        const bool int_only = n->op == MODASG || n->op == ANDBASG || n->op == ORBASG ||
                              n->op == XORBASG || n->op == SLLASG || n->op == SRLASG;
        const bool ptr_ok =
            n->op == PLUSASG || n->op == MINUSASG || n->op == PLUSPLUS || n->op == MINMIN;
        if (!scalar(lt) || !scalar(x->b->t) || (float_op && int_only) ||
            (lt.k == VK::Ptr && (!ptr_ok || x->b->t.k != VK::Int))) {
            refuse("%s of an object of a type it cannot update", op_name(n->op));
            return nullptr;
        }
        return x;
    }
    case CALL:
    case UCALL: {
        if (!need(UNARY))
            return nullptr;
        const NODE* callee = n->left;
        if (callee->op == UAND && callee->left && callee->left->op == NAME &&
            callee->left->name_symbol() && callee->left->name_symbol()->type &&
            callee->left->name_symbol()->type->is_func()) {
            XN* f = tr(callee->left);
            if (!f)
                return nullptr;
            x->callee = f->callee;
        } else if (!(x->a = tr(n->left))) {
            return nullptr;
        } else if (x->a->t.k != VK::Ptr) {
            refuse("a call through a value that is not a pointer");
            return nullptr;
        }
        if (n->op == CALL && n->right) {
            std::vector<NODE*> args;
            NODE* a = n->right;
            for (; a->op == COMMA; a = a->left) {
                if (!a->left || !a->right) {
                    refuse("an argument list with a hole");
                    return nullptr;
                }
                args.push_back(a->right);
            }
            args.push_back(a);
            std::reverse(args.begin(), args.end());
            for (NODE* arg : args) {
                XN* v = tr(arg);
                if (!v)
                    return nullptr;
                if (v->t.k == VK::Void) {
                    refuse("an argument of type void");
                    return nullptr;
                }
                x->args.push_back(v);
            }
        }
        if (XFunc* lib = x->callee && x->callee->lib ? x->callee : nullptr) {
            const size_t fixed =
                lib->vararg ? std::min(lib->fixed_params, x->args.size()) : x->args.size();
            if (fixed < lib->lib_args) {
                refuse("a call of %s with %zu of its %zu fixed arguments", lib->name.c_str(), fixed,
                       lib->lib_args);
                return nullptr;
            }
        }
        return x;
    }
    case MEMCPY: {
        // MEMCPY(COMMA(COMMA(to, from), size)): memcpy's arguments, its value
        // the destination.
        if (!need(UNARY))
            return nullptr;
        const NODE* list = n->left;
        if (list->op != COMMA || !list->right || !list->left || list->left->op != COMMA ||
            !list->left->left || !list->left->right) {
            refuse("a MEMCPY without its three operands");
            return nullptr;
        }
        for (NODE* arg : {list->left->left, list->left->right, list->right}) {
            XN* v = tr(arg);
            if (!v)
                return nullptr;
            x->args.push_back(v);
        }
        if (x->args[0]->t.k != VK::Ptr || x->args[1]->t.k != VK::Ptr ||
            x->args[2]->t.k != VK::Int) {
            refuse("a MEMCPY of operands other than two pointers and a size");
            return nullptr;
        }
        return x;
    }
    case NOP:
        return x;
    default:
        refuse("operator %s (%d), which the interpreter does not know", op_name(n->op), n->op);
        return nullptr;
    }
}

bool Loader::translate_function(XFunc* fn) {
    cur = fn;
    local_slot.clear();
    FUNINFO* f = fn->info;
    std::vector<SYMTAB*> symbols;
    std::set<const SYMTAB*> seen;
    for (SYMTAB* list : {f->symbols, f->temps, f->autos, f->regs})
        for (SYMTAB* s = list; s; s = s->next)
            if (seen.insert(s).second)
                symbols.push_back(s);
    std::stable_sort(symbols.begin(), symbols.end(), [](const SYMTAB* a, const SYMTAB* b) {
        const uint32_t ka = a->order ? a->order : UINT32_MAX;
        const uint32_t kb = b->order ? b->order : UINT32_MAX;
        return ka < kb;
    });
    for (SYMTAB* s : symbols) {
        if (is_global_symbol(s) || !s->type || s->type->is_func())
            continue;
        const uint32_t slot = static_cast<uint32_t>(fn->frame_objects.size());
        fn->frame_objects.emplace_back(std::max<uint32_t>(s->align / 8, 1), s->size);
        local_slot[s] = slot;
        if (s->lex == 1 && (s->sclass == SC_PARAM || s->sclass == SC_REG_PARAM)) {
            fn->param_slots.push_back(slot);
            fn->param_types.push_back(value_type(s->type));
        }
    }

    std::unordered_map<const BBLK*, XBlock*> blocks;
    for (BBLK* b = f->bb_list; b; b = b->next) {
        if (blocks.count(b))
            return refuse("a block list with a cycle");
        fn->blocks.push_back(std::make_unique<XBlock>());
        blocks[b] = fn->blocks.back().get();
    }
    fn->entry = fn->blocks.empty() ? nullptr : fn->blocks.front().get();
    for (BBLK* b = f->bb_list; b; b = b->next) {
        XBlock* xb = blocks[b];
        bool ended = false;
        for (LIST* l = b->statements; l; l = l->next) {
            NODE* t = l->tree;
            if (!t)
                continue;
            if (ended)
                return refuse("a statement after the end of a block");
            switch (t->op) {
            case PPRAGMA:
            case LABELDEF:
            case BGNBLOCK:
            case ENDBLOCK:
                continue;
            case ASM:
                if (t->value.low == 47) // a comment
                    continue;
                return refuse("assembly code");
            default:
                break;
            }
            XN* x = nullptr;
            switch (t->op) {
            case IF:
                x = new_x(IF, VT{}, t);
                if (!t->left || !(x->a = tr(t->left)))
                    return refuse("an IF without a test");
                if (!tr_terminator(t, x, blocks))
                    return false;
                ended = true;
                break;
            case BRANCH:
                x = new_x(BRANCH, VT{}, t);
                if (!tr_terminator(t, x, blocks))
                    return false;
                ended = true;
                break;
            case SWITCH:
                x = new_x(SWITCH, VT{}, t);
                if (!t->left || !(x->a = tr(t->left)) || x->a->t.k != VK::Int)
                    return refuse("a SWITCH on a value that is not an integer");
                if (!tr_terminator(t, x, blocks))
                    return false;
                ended = true;
                break;
            case RETURN:
                x = new_x(RETURN, VT{}, t);
                if (!t->right || !(x->b = tr(t->right)))
                    return refuse("a RETURN without a value");
                if (fn->result.k == VK::Void || (fn->result.k == VK::Agg) != (x->b->t.k == VK::Agg))
                    return refuse("a RETURN of a value the function's type does not return");
                ended = true;
                break;
            case URETURN:
                x = new_x(URETURN, VT{}, t);
                ended = true;
                break;
            default:
                if (!(x = tr(t)))
                    return false;
                break;
            }
            xb->stmts.push_back({x, l->psn});
        }
        if (!ended) {
            const int n = edge_length(b->succs);
            if (n > 1)
                return refuse("a block that ends without a jump but has %d successors", n);
            if (n == 1) {
                auto it = blocks.find(b->succs->bb);
                if (it == blocks.end())
                    return refuse("an edge to a block outside the function");
                xb->fall = it->second;
            }
        }
    }
    cur = nullptr;
    return true;
}

bool Loader::load() {
    if (!layout_globals())
        return false;
    for (auto& fn : m.funcs)
        if (fn->info && !translate_function(fn.get()))
            return false;
    return !failed;
}

} // namespace

bool load_program(Machine& m) {
    Loader loader(m);
    return loader.load();
}

} // namespace run
