// Evaluation of translated trees and the running of functions.
#include <cstdarg>
#include <cstring>

#include "ifile/ifile.h"
#include "ir/node.h"
#include "run.h"
#include "target_arith.h"

namespace run {

Machine* machine;

namespace {

uint64_t low_mask(unsigned bits) { return bits >= 64 ? ~0ull : (1ull << bits) - 1; }

} // namespace

uint64_t canon(uint64_t v, const VT& t) {
    switch (t.k) {
    case VK::Int:
        if (t.boolean)
            return v != 0;
        if (t.bits >= 64)
            return v;
        v &= low_mask(t.bits);
        if (t.sign && (v >> (t.bits - 1)) & 1)
            v |= ~low_mask(t.bits);
        return v;
    case VK::Ptr:
    case VK::F32:
        return v & 0xffffffffull;
    default:
        return v;
    }
}

bool truth(uint64_t v, const VT& t) {
    switch (t.k) {
    case VK::F32:
        return as_f32(v) != 0.0f;
    case VK::F64:
        return as_f64(v) != 0.0;
    default:
        return v != 0;
    }
}

uint64_t convert(uint64_t v, const VT& from, const VT& to) {
    if (to.k == VK::Int && to.boolean)
        return truth(v, from);
    const bool from_float = from.k == VK::F32 || from.k == VK::F64;
    const double d = from.k == VK::F32 ? static_cast<double>(target::f2d(as_f32(v))) : as_f64(v);
    switch (to.k) {
    case VK::Int:
    case VK::Ptr: {
        if (from_float) {
            const unsigned bits = to.k == VK::Ptr ? 32 : to.bits;
            return canon(target::float_to_int(d, bits, to.k == VK::Int && to.sign), to);
        }
        return canon(v, to);
    }
    case VK::F32:
        if (from.k == VK::F32)
            return v;
        if (from.k == VK::F64)
            return bits_of(target::d2f(as_f64(v)));
        if (from.k == VK::Int && from.sign)
            return bits_of(static_cast<float>(static_cast<int64_t>(v)));
        return bits_of(static_cast<float>(v));
    case VK::F64:
        if (from.k == VK::F64)
            return v;
        if (from.k == VK::F32)
            return bits_of(target::f2d(as_f32(v)));
        if (from.k == VK::Int && from.sign)
            return bits_of(static_cast<double>(static_cast<int64_t>(v)));
        return bits_of(static_cast<double>(v));
    default:
        return v;
    }
}

namespace {

Frame& top() { return *machine->frames.back(); }

void count(int op) {
    machine->op_count[op]++;
    if (++machine->steps > machine->max_steps)
        fault("the step budget of %llu operations is exhausted",
              static_cast<unsigned long long>(machine->max_steps));
}

uint32_t name_address(const XN* x) {
    if (!x->local)
        return static_cast<uint32_t>(x->imm);
    return top().object_base[x->imm];
}

// The address of an lvalue, or of the bytes of an aggregate value.
uint32_t address_of(XN* x) {
    switch (x->op) {
    case NAME:
        return name_address(x);
    case UMULT:
        return static_cast<uint32_t>(eval(x->a));
    case STDOT:
        return static_cast<uint32_t>(address_of(x->a) + x->imm);
    case STREF:
        return static_cast<uint32_t>(eval(x->a) + x->imm);
    default:
        if (x->t.k == VK::Agg)
            return static_cast<uint32_t>(eval(x));
        fault("internal: no address for operator %d", x->op);
    }
}

// The bytes of a NAME that is read or written whole.
uint8_t* direct_host(const XN* lv, uint32_t addr) {
    return lv->local ? machine->mem.stack_host(addr) : lv->host;
}

uint64_t load_at(uint32_t addr, const XN* lv) {
    machine->stat[ST_LOADS]++;
    const VT& t = lv->t;
    if (t.k == VK::Agg)
        return addr;
    if (lv->direct)
        return canon(Memory::read_host(direct_host(lv, addr), t.size), t);
    if (lv->bitfield) {
        const uint32_t first = lv->bit_offset / 8, shift = lv->bit_offset % 8;
        const uint32_t n = (shift + lv->bit_width + 7) / 8;
        uint64_t raw = 0;
        const uint8_t* p = machine->mem.at(addr + first, n, false);
        for (uint32_t i = 0; i < n && i < 8; i++)
            raw |= uint64_t(p[i]) << (8 * i);
        if (n > 8)
            raw = (raw >> shift) | (uint64_t(p[8]) << (64 - shift));
        else
            raw >>= shift;
        raw &= low_mask(lv->bit_width);
        if (t.sign && lv->bit_width < 64 && (raw >> (lv->bit_width - 1)) & 1)
            raw |= ~low_mask(lv->bit_width);
        return canon(raw, t);
    }
    return canon(machine->mem.load(addr, t.size), t);
}

// Stores v (of the lvalue's type) and returns the value the lvalue now holds.
uint64_t store_at(uint32_t addr, const XN* lv, uint64_t v) {
    machine->stat[ST_STORES]++;
    const VT& t = lv->t;
    if (t.k == VK::Agg) {
        machine->mem.copy(addr, static_cast<uint32_t>(v), t.size);
        return addr;
    }
    if (lv->bitfield) {
        const uint32_t first = lv->bit_offset / 8, shift = lv->bit_offset % 8;
        const uint32_t n = (shift + lv->bit_width + 7) / 8;
        uint8_t* p = machine->mem.at(addr + first, n, true);
        const uint64_t field = v & low_mask(lv->bit_width);
        for (uint32_t bit = 0; bit < lv->bit_width; bit++) {
            const uint32_t at = shift + bit;
            const uint8_t mask = static_cast<uint8_t>(1u << (at % 8));
            if ((field >> bit) & 1)
                p[at / 8] |= mask;
            else
                p[at / 8] &= static_cast<uint8_t>(~mask);
        }
        uint64_t back = field;
        if (t.sign && lv->bit_width < 64 && (back >> (lv->bit_width - 1)) & 1)
            back |= ~low_mask(lv->bit_width);
        return canon(back, t);
    }
    v = canon(v, t);
    if (lv->direct_write)
        Memory::write_host(direct_host(lv, addr), t.size, v);
    else
        machine->mem.store(addr, t.size, v);
    return v;
}

[[noreturn]] void divide_by_zero() { fault("integer division by zero"); }

// Integer arithmetic of op in type t on two canonical operands.
uint64_t int_arith(int op, const VT& t, uint64_t a, uint64_t b) {
    const bool wide = t.k == VK::Int && t.bits > 32;
    const bool sign = t.k == VK::Int && t.sign;
    switch (op) {
    case PLUS:
        return canon(a + b, t);
    case MINUS:
        return canon(a - b, t);
    case MULT:
        return canon(a * b, t);
    case ANDB:
        return canon(a & b, t);
    case ORB:
        return canon(a | b, t);
    case XORB:
        return canon(a ^ b, t);
    case DIV:
    case MOD: {
        if (b == 0)
            divide_by_zero();
        uint64_t r;
        if (wide)
            r = op == DIV ? (sign ? uint64_t(target::sdiv64(int64_t(a), int64_t(b)))
                                  : target::udiv64(a, b))
                          : (sign ? uint64_t(target::srem64(int64_t(a), int64_t(b)))
                                  : target::urem64(a, b));
        else
            r = op == DIV ? (sign ? uint64_t(int64_t(target::sdiv32(int32_t(a), int32_t(b))))
                                  : target::udiv32(uint32_t(a), uint32_t(b)))
                          : (sign ? uint64_t(int64_t(target::srem32(int32_t(a), int32_t(b))))
                                  : target::urem32(uint32_t(a), uint32_t(b)));
        return canon(r, t);
    }
    case SLL:
        return canon(wide ? target::shl64(a, uint32_t(b)) : target::shl32(uint32_t(a), uint32_t(b)),
                     t);
    case SRL:
        if (wide)
            return canon(sign ? uint64_t(target::asr64(int64_t(a), uint32_t(b)))
                              : target::lsr64(a, uint32_t(b)),
                         t);
        return canon(sign ? uint64_t(int64_t(target::asr32(int32_t(a), uint32_t(b))))
                          : target::lsr32(uint32_t(a), uint32_t(b)),
                     t);
    default:
        fault("internal: integer operator %d", op);
    }
}

uint64_t float_arith(int op, const VT& t, uint64_t a, uint64_t b) {
    if (t.k == VK::F32) {
        const float x = as_f32(a), y = as_f32(b);
        switch (op) {
        case PLUS:
            return bits_of(target::fadd(x, y));
        case MINUS:
            return bits_of(target::fsub(x, y));
        case MULT:
            return bits_of(target::fmul(x, y));
        case DIV:
            return bits_of(target::fdiv(x, y));
        default:
            break;
        }
    } else {
        const double x = as_f64(a), y = as_f64(b);
        switch (op) {
        case PLUS:
            return bits_of(target::dadd(x, y));
        case MINUS:
            return bits_of(target::dsub(x, y));
        case MULT:
            return bits_of(target::dmul(x, y));
        case DIV:
            return bits_of(target::ddiv(x, y));
        default:
            break;
        }
    }
    fault("internal: floating operator %d", op);
}

uint64_t arith(int op, const VT& t, uint64_t a, uint64_t b) {
    if (t.k == VK::F32 || t.k == VK::F64)
        return float_arith(op, t, a, b);
    return int_arith(op, t, a, b);
}

// A relation of two operands of the types given.
bool relation(int op, const VT& ta, uint64_t a, const VT& tb, uint64_t b) {
    if (ta.k == VK::F32 || ta.k == VK::F64) {
        const double x = ta.k == VK::F32 ? as_f32(a) : as_f64(a);
        const double y = tb.k == VK::F32   ? as_f32(b)
                         : tb.k == VK::F64 ? as_f64(b)
                                           : double(int64_t(b));
        switch (op) {
        case EQ:
            return x == y;
        case NEQ:
            return x != y;
        case LT:
            return x < y;
        case LE:
            return x <= y;
        case GT:
            return x > y;
        default:
            return x >= y;
        }
    }
    // Each operand is read at its own width, signed or unsigned as the
    // operator says.
    const auto widen = [](uint64_t v, const VT& t, bool as_signed) {
        const unsigned bits = t.k == VK::Int ? t.bits : 32;
        if (bits >= 64)
            return v;
        v &= low_mask(bits);
        if (as_signed && (v >> (bits - 1)) & 1)
            v |= ~low_mask(bits);
        return v;
    };
    switch (op) {
    case EQ:
    case NEQ: {
        const bool s = ta.k == VK::Int && ta.sign;
        return (widen(a, ta, s) == widen(b, tb, s)) == (op == EQ);
    }
    case LT:
    case LE:
    case GT:
    case GE: {
        const int64_t x = int64_t(widen(a, ta, true)), y = int64_t(widen(b, tb, true));
        return op == LT ? x < y : op == LE ? x <= y : op == GT ? x > y : x >= y;
    }
    default: {
        const uint64_t x = widen(a, ta, false), y = widen(b, tb, false);
        return op == ULT ? x < y : op == ULE ? x <= y : op == UGT ? x > y : x >= y;
    }
    }
}

int op_of_assign(int op) {
    switch (op) {
    case PLUSASG:
    case PLUSPLUS:
        return PLUS;
    case MINUSASG:
    case MINMIN:
        return MINUS;
    case MULTASG:
        return MULT;
    case DIVASG:
        return DIV;
    case MODASG:
        return MOD;
    case ANDBASG:
        return ANDB;
    case ORBASG:
        return ORB;
    case XORBASG:
        return XORB;
    case SLLASG:
        return SLL;
    default:
        return SRL;
    }
}

// x op= y, x++ and x--: x evaluated once; the value is the new x, or the
// old one for the postfix forms.
uint64_t eval_update(XN* x) {
    const uint32_t addr = address_of(x->a);
    const uint64_t old = load_at(addr, x->a);
    const VT& t = x->a->t;
    const int op = op_of_assign(x->op);
    uint64_t y = eval(x->b);
    // A _Bool is updated in int and then tested against zero.
    const VT work = t.boolean ? VT{VK::Int, 32, true, false, 4} : t;
    // A pointer moves by a byte count of an integer type; a shift count
    // keeps its own type.
    if (op != SLL && op != SRL && t.k != VK::Ptr)
        y = convert(y, x->b->t, work);
    const uint64_t result = arith(op, work, old, y);
    const uint64_t now = store_at(addr, x->a, convert(result, work, t));
    return x->op == PLUSPLUS || x->op == MINMIN ? old : now;
}

void collect_var_args(XFunc* fn, const std::vector<uint64_t>& args, const std::vector<VT>& types,
                      uint32_t& area);

uint64_t eval_call(XN* x) {
    count(x->op);
    machine->stat[ST_CALLS]++;
    XFunc* fn = x->callee;
    if (!fn) {
        const uint32_t target = static_cast<uint32_t>(eval(x->a));
        fn = machine->function_at(target);
        if (!fn)
            fault("call through a pointer to 0x%08x, which is no function", target);
    }
    std::vector<uint64_t> values;
    std::vector<VT> types;
    values.reserve(x->args.size());
    for (XN* a : x->args) {
        values.push_back(eval(a));
        types.push_back(a->t);
    }
    const uint64_t r = machine->call(fn, values, types);
    if (x->t.k == VK::Void || x->t.k == VK::Agg)
        return r;
    return convert(r, fn->result, x->t);
}

} // namespace

uint64_t eval(XN* x) {
    switch (x->op) {
    case ICON:
    case LCON:
    case FCON:
        count(x->op);
        return x->imm;
    case NAME:
    case UMULT:
    case STDOT:
    case STREF: {
        count(x->op);
        if (x->t.k == VK::Agg || x->t.k == VK::Void)
            return address_of(x);
        return load_at(address_of(x), x);
    }
    case UAND:
        count(x->op);
        if (x->callee)
            return x->callee->address;
        return address_of(x->a);
    case PLUS:
    case MINUS:
    case MULT:
    case DIV:
    case MOD:
    case ANDB:
    case ORB:
    case XORB: {
        count(x->op);
        const uint64_t a = eval(x->a), b = eval(x->b);
        if (x->t.k == VK::F32 || x->t.k == VK::F64)
            return float_arith(x->op, x->t, convert(a, x->a->t, x->t), convert(b, x->b->t, x->t));
        // Pointer arithmetic and mixed widths: both operands as 64-bit
        // canonical values, the result in the node's type.
        const uint64_t ca =
            x->a->t.k == VK::Ptr || x->t.k == VK::Ptr ? a : convert(a, x->a->t, x->t);
        const uint64_t cb =
            x->b->t.k == VK::Ptr || x->t.k == VK::Ptr ? b : convert(b, x->b->t, x->t);
        return int_arith(x->op, x->t, ca, cb);
    }
    case SLL:
    case SRL: {
        count(x->op);
        const uint64_t a = convert(eval(x->a), x->a->t, x->t);
        const uint64_t b = eval(x->b);
        // A count wider than 32 bits is read by its low word, as a register.
        return int_arith(x->op, x->t, a, b & 0xffffffffull);
    }
    case UMINUS: {
        count(x->op);
        const uint64_t a = convert(eval(x->a), x->a->t, x->t);
        if (x->t.k == VK::F32)
            return a ^ 0x80000000ull;
        if (x->t.k == VK::F64)
            return a ^ 0x8000000000000000ull;
        return canon(0 - a, x->t);
    }
    case NOTB:
        count(x->op);
        return canon(~convert(eval(x->a), x->a->t, x->t), x->t);
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
        count(x->op);
        const uint64_t a = eval(x->a), b = eval(x->b);
        return canon(relation(x->op, x->a->t, a, x->b->t, b), x->t);
    }
    case EXCLAIM:
        count(x->op);
        return canon(!truth(eval(x->a), x->a->t), x->t);
    case ANDAND:
        count(x->op);
        return canon(truth(eval(x->a), x->a->t) && truth(eval(x->b), x->b->t), x->t);
    case OROR:
        count(x->op);
        return canon(truth(eval(x->a), x->a->t) || truth(eval(x->b), x->b->t), x->t);
    case QUEST: {
        count(x->op);
        XN* arm = truth(eval(x->a), x->a->t) ? x->b->a : x->b->b;
        const uint64_t v = eval(arm);
        if (x->t.k == VK::Void || x->t.k == VK::Agg)
            return v;
        return convert(v, arm->t, x->t);
    }
    case COMMAOP:
        count(x->op);
        eval(x->a);
        return eval(x->b);
    case SCONV:
    case ACONV:
    case PCONV:
    case ISP2CHAR:
        count(x->op);
        return convert(eval(x->a), x->a->t, x->t);
    case ASG:
    case STASG:
    case ARASG: {
        count(x->op);
        const uint64_t v = eval(x->b);
        const uint32_t addr = address_of(x->a);
        if (x->op == ARASG) {
            machine->stat[ST_STORES]++;
            machine->mem.copy(addr, static_cast<uint32_t>(v), x->a->t.size);
            return addr;
        }
        return store_at(addr, x->a, x->a->t.k == VK::Agg ? v : convert(v, x->b->t, x->a->t));
    }
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
        count(x->op);
        return eval_update(x);
    case CALL:
    case UCALL:
        return eval_call(x);
    case MEMCPY: {
        count(x->op);
        const uint32_t to = static_cast<uint32_t>(eval(x->args[0]));
        const uint32_t from = static_cast<uint32_t>(eval(x->args[1]));
        const uint32_t size = static_cast<uint32_t>(eval(x->args[2]));
        machine->mem.copy(to, from, size);
        return to;
    }
    case NOP:
        count(x->op);
        return 0;
    default:
        fault("internal: operator %d cannot be evaluated", x->op);
    }
}

XFunc* Machine::function_at(uint32_t addr) const {
    auto it = by_address.find(addr);
    return it == by_address.end() ? nullptr : it->second;
}

namespace {

uint32_t align_up(uint32_t v, uint32_t a) { return (v + a - 1) / a * a; }

// The variable arguments of a call, laid out as the target's stack holds
// them: each at a multiple of 4 bytes, or of 8 for a type aligned to 8
// (structs too), sizes rounded up to 4. __ondrel_va_arg and the library read them back.
void collect_var_args(XFunc* fn, const std::vector<uint64_t>& args, const std::vector<VT>& types,
                      uint32_t& area) {
    area = 0;
    if (!fn->vararg || args.size() <= fn->fixed_params)
        return;
    uint32_t size = 0;
    std::vector<uint32_t> offsets;
    for (size_t i = fn->fixed_params; i < args.size(); i++) {
        const uint32_t align = types[i].align >= 8 ? 8 : 4;
        size = align_up(size, align);
        offsets.push_back(size);
        size += align_up(types[i].size, 4);
    }
    area = machine->mem.push(size, 8);
    for (size_t i = fn->fixed_params; i < args.size(); i++) {
        const uint32_t at = area + offsets[i - fn->fixed_params];
        if (types[i].k == VK::Agg)
            machine->mem.copy(at, static_cast<uint32_t>(args[i]), types[i].size);
        else
            machine->mem.store(at, types[i].size, args[i]);
    }
}

struct FrameGuard {
    Frame frame;
    size_t mark;
    explicit FrameGuard(size_t m) : mark(m) {}
    ~FrameGuard() {
        machine->frames.pop_back();
        machine->mem.pop_to(mark);
    }
};

uint64_t run_body(XFunc* fn) {
    Frame& f = top();
    XBlock* b = fn->entry;
    while (b) {
        XBlock* next = b->fall;
        for (const XStmt& s : b->stmts) {
            f.psn = s.psn;
            XN* x = s.tree;
            switch (x->op) {
            case IF:
                count(IF);
                machine->stat[ST_BRANCHES]++;
                next = x->targets[truth(eval(x->a), x->a->t) ? 0 : 1];
                break;
            case BRANCH:
                count(BRANCH);
                machine->stat[ST_BRANCHES]++;
                next = x->targets[0];
                break;
            case SWITCH: {
                count(SWITCH);
                machine->stat[ST_BRANCHES]++;
                const uint64_t v = eval(x->a);
                next = x->targets.back();
                for (size_t i = 0; i < x->cases.size(); i++)
                    if (x->cases[i] == v) {
                        next = x->targets[i];
                        break;
                    }
                break;
            }
            case RETURN: {
                count(RETURN);
                const uint64_t v = eval(x->b);
                if (fn->result.k == VK::Agg) {
                    machine->mem.copy(f.ret_slot, static_cast<uint32_t>(v), fn->result.size);
                    return f.ret_slot;
                }
                return convert(v, x->b->t, fn->result);
            }
            case URETURN:
                count(URETURN);
                return 0;
            default: {
                // Temporaries of a statement live until its end.
                const size_t mark = machine->mem.stack_mark();
                eval(x);
                machine->mem.pop_to(mark);
            }
            }
        }
        b = next;
    }
    return 0;
}

} // namespace

uint64_t Machine::call(XFunc* fn, const std::vector<uint64_t>& args, const std::vector<VT>& types) {
    if (frames.size() > 100000)
        fault("calls nested more than 100000 deep");
    // A struct result outlives the callee's frame: the caller's statement
    // reads it.
    const uint32_t ret_slot = fn->result.k == VK::Agg ? mem.push(fn->result.size, 8) : 0;
    FrameGuard guard(mem.stack_mark());
    Frame& f = guard.frame;
    f.fn = fn;
    f.psn = nullptr;
    f.ret_slot = ret_slot;
    collect_var_args(fn, args, types, f.va_area);
    frames.push_back(&f);
    if (fn->lib) {
        std::vector<uint64_t> fixed(
            args.begin(),
            args.begin() + std::min(args.size(), fn->vararg ? fn->fixed_params : args.size()));
        // The library reads its fixed arguments by number; a declaration
        // with fewer would have it read past them.
        if (fixed.size() < fn->lib_args)
            fault("a call of %s with %zu of its %zu fixed arguments", fn->name.c_str(),
                  fixed.size(), fn->lib_args);
        return fn->lib(*this, fixed, f.va_area);
    }
    f.object_base.reserve(fn->frame_objects.size());
    for (const auto& [align, size] : fn->frame_objects)
        f.object_base.push_back(mem.push(size, align));
    for (size_t i = 0; i < fn->param_slots.size() && i < args.size(); i++) {
        const uint32_t addr = f.object_base[fn->param_slots[i]];
        const VT& pt = fn->param_types[i];
        if (pt.k == VK::Agg)
            mem.copy(addr, static_cast<uint32_t>(args[i]), pt.size);
        else
            mem.store(addr, pt.size, convert(args[i], types[i], pt));
    }
    return run_body(fn);
}

} // namespace run
