// The small C library of the interpreter. Functions take their fixed
// arguments as values and their variable ones from the call's argument area,
// laid out as the target's stack holds them.
#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstring>
#include <string>
#include <unordered_map>

#include "run.h"
#include "target_arith.h"

namespace run {

namespace {

using Args = std::vector<uint64_t>;

uint32_t u32(uint64_t v) { return static_cast<uint32_t>(v); }
int32_t i32(uint64_t v) { return static_cast<int32_t>(v); }
uint64_t sx(int64_t v) { return static_cast<uint64_t>(v); }

// Variable arguments, read in order from the call's argument area.
struct VaReader {
    Machine& m;
    uint32_t p;
    uint32_t word() {
        const uint32_t v = u32(m.mem.load(p, 4));
        p += 4;
        return v;
    }
    uint64_t dword() {
        p = (p + 7) & ~7u;
        const uint64_t v = m.mem.load(p, 8);
        p += 8;
        return v;
    }
};

FILE* host_stream(Machine& m, uint32_t stream) {
    if (stream == m.stdout_address)
        return stdout;
    if (stream == m.stderr_address)
        return stderr;
    fault("output to a stream that is neither stdout nor stderr (0x%08x)", stream);
}

// One conversion by the host's snprintf; its length counts a NUL that %c
// may write.
template <typename T> void put(std::string& out, const std::string& spec, T v) {
    const int n = snprintf(nullptr, 0, spec.c_str(), v);
    if (n <= 0)
        return;
    std::string s(static_cast<size_t>(n) + 1, '\0');
    snprintf(s.data(), s.size(), spec.c_str(), v);
    out.append(s.data(), static_cast<size_t>(n));
}

// printf's formatting: each conversion is handed to the host's snprintf
// with its argument read at the target's width.
std::string format(Machine& m, uint32_t fmt_addr, VaReader& va) {
    const std::string fmt = m.mem.c_string(fmt_addr);
    std::string out;
    for (size_t i = 0; i < fmt.size(); i++) {
        if (fmt[i] != '%') {
            out.push_back(fmt[i]);
            continue;
        }
        std::string spec = "%";
        size_t j = i + 1;
        while (j < fmt.size() && strchr("-+ #0'", fmt[j]))
            spec.push_back(fmt[j++]);
        const auto number = [&](bool allow_star) -> std::string {
            if (allow_star && j < fmt.size() && fmt[j] == '*') {
                j++;
                return std::to_string(i32(va.word()));
            }
            std::string digits;
            while (j < fmt.size() && isdigit(static_cast<unsigned char>(fmt[j])))
                digits.push_back(fmt[j++]);
            return digits;
        };
        spec += number(true);
        int precision = -1;
        if (j < fmt.size() && fmt[j] == '.') {
            j++;
            const std::string p = number(true);
            precision = p.empty() ? 0 : std::max(atoi(p.c_str()), -1);
            if (precision >= 0)
                spec += "." + std::to_string(precision);
        }
        std::string length;
        while (j < fmt.size() && strchr("hlLqjzt", fmt[j]))
            length.push_back(fmt[j++]);
        if (j >= fmt.size()) {
            out += fmt.substr(i);
            break;
        }
        const char conv = fmt[j];
        const bool wide = length == "ll" || length == "q" || length == "j";
        switch (conv) {
        case 'd':
        case 'i': {
            int64_t v = wide ? static_cast<int64_t>(va.dword()) : i32(va.word());
            if (length == "hh")
                v = static_cast<signed char>(v);
            else if (length == "h")
                v = static_cast<short>(v);
            put(out, spec + "lld", static_cast<long long>(v));
            break;
        }
        case 'u':
        case 'o':
        case 'x':
        case 'X': {
            uint64_t v = wide ? va.dword() : va.word();
            if (length == "hh")
                v = static_cast<unsigned char>(v);
            else if (length == "h")
                v = static_cast<unsigned short>(v);
            put(out, spec + "ll" + conv, static_cast<unsigned long long>(v));
            break;
        }
        case 'c':
            put(out, spec + "c", static_cast<int>(static_cast<unsigned char>(va.word())));
            break;
        case 's': {
            const uint32_t p = va.word();
            std::string s = p ? m.mem.c_string(p, precision >= 0 ? precision : UINT32_MAX)
                              : (precision < 0 || precision >= 6 ? "(null)" : "");
            put(out, spec + "s", s.c_str());
            break;
        }
        case 'p': {
            const uint32_t p = va.word();
            if (p)
                put(out, spec + "#x", p);
            else
                put(out, spec + "s", "(nil)");
            break;
        }
        case 'f':
        case 'F':
        case 'e':
        case 'E':
        case 'g':
        case 'G':
        case 'a':
        case 'A':
            put(out, spec + conv, as_f64(va.dword()));
            break;
        case '%':
            out.push_back('%');
            break;
        case 'n':
            fault("printf's %%n is not supported");
        default:
            out += fmt.substr(i, j - i + 1);
            break;
        }
        i = j;
    }
    return out;
}

uint64_t write_host(FILE* f, const std::string& s) {
    fwrite(s.data(), 1, s.size(), f);
    if (f == stderr)
        fflush(stderr);
    return s.size();
}

// Writes s into the target buffer with at most n bytes, NUL included.
void write_buffer(Machine& m, uint32_t dst, const std::string& s, uint64_t n) {
    if (n == 0)
        return;
    const uint32_t len = static_cast<uint32_t>(std::min<uint64_t>(s.size(), n - 1));
    if (len)
        memcpy(m.mem.at(dst, len, true), s.data(), len);
    *m.mem.at(dst + len, 1, true) = 0;
}

uint32_t va_list_pointer(Machine& m, uint64_t va_list_value) {
    // A va_list is passed as a struct by value: its address, holding the pointer.
    return u32(m.mem.load(u32(va_list_value), 4));
}

uint64_t lib_printf(Machine& m, const Args& a, uint32_t va) {
    VaReader r{m, va};
    return write_host(stdout, format(m, u32(a.at(0)), r));
}
uint64_t lib_fprintf(Machine& m, const Args& a, uint32_t va) {
    FILE* f = host_stream(m, u32(a.at(0)));
    VaReader r{m, va};
    return write_host(f, format(m, u32(a.at(1)), r));
}
uint64_t lib_sprintf(Machine& m, const Args& a, uint32_t va) {
    VaReader r{m, va};
    const std::string s = format(m, u32(a.at(1)), r);
    write_buffer(m, u32(a.at(0)), s, UINT64_MAX);
    return s.size();
}
uint64_t lib_snprintf(Machine& m, const Args& a, uint32_t va) {
    VaReader r{m, va};
    const std::string s = format(m, u32(a.at(2)), r);
    write_buffer(m, u32(a.at(0)), s, u32(a.at(1)));
    return s.size();
}
uint64_t lib_vprintf(Machine& m, const Args& a, uint32_t) {
    VaReader r{m, va_list_pointer(m, a.at(1))};
    return write_host(stdout, format(m, u32(a.at(0)), r));
}
uint64_t lib_vfprintf(Machine& m, const Args& a, uint32_t) {
    FILE* f = host_stream(m, u32(a.at(0)));
    VaReader r{m, va_list_pointer(m, a.at(2))};
    return write_host(f, format(m, u32(a.at(1)), r));
}
uint64_t lib_vsprintf(Machine& m, const Args& a, uint32_t) {
    VaReader r{m, va_list_pointer(m, a.at(2))};
    const std::string s = format(m, u32(a.at(1)), r);
    write_buffer(m, u32(a.at(0)), s, UINT64_MAX);
    return s.size();
}
uint64_t lib_vsnprintf(Machine& m, const Args& a, uint32_t) {
    VaReader r{m, va_list_pointer(m, a.at(3))};
    const std::string s = format(m, u32(a.at(2)), r);
    write_buffer(m, u32(a.at(0)), s, u32(a.at(1)));
    return s.size();
}
uint64_t lib_puts(Machine& m, const Args& a, uint32_t) {
    return write_host(stdout, m.mem.c_string(u32(a.at(0))) + "\n");
}
uint64_t lib_fputs(Machine& m, const Args& a, uint32_t) {
    write_host(host_stream(m, u32(a.at(1))), m.mem.c_string(u32(a.at(0))));
    return 1;
}
uint64_t lib_putchar(Machine&, const Args& a, uint32_t) {
    const unsigned char c = static_cast<unsigned char>(a.at(0));
    fputc(c, stdout);
    return c;
}
uint64_t lib_fputc(Machine& m, const Args& a, uint32_t) {
    const unsigned char c = static_cast<unsigned char>(a.at(0));
    FILE* f = host_stream(m, u32(a.at(1)));
    fputc(c, f);
    return c;
}
uint64_t lib_fflush(Machine& m, const Args& a, uint32_t) {
    if (u32(a.at(0)))
        fflush(host_stream(m, u32(a.at(0))));
    else
        fflush(stdout);
    return 0;
}

uint64_t lib_memcpy(Machine& m, const Args& a, uint32_t) {
    m.mem.copy(u32(a.at(0)), u32(a.at(1)), u32(a.at(2)));
    return u32(a.at(0));
}
uint64_t lib_memset(Machine& m, const Args& a, uint32_t) {
    const uint32_t n = u32(a.at(2));
    if (n)
        memset(m.mem.at(u32(a.at(0)), n, true), static_cast<unsigned char>(a.at(1)), n);
    return u32(a.at(0));
}
uint64_t lib_memcmp(Machine& m, const Args& a, uint32_t) {
    const uint32_t n = u32(a.at(2));
    if (!n)
        return 0;
    const uint8_t* p = m.mem.at(u32(a.at(0)), n, false);
    const uint8_t* q = m.mem.at(u32(a.at(1)), n, false);
    for (uint32_t i = 0; i < n; i++)
        if (p[i] != q[i])
            return sx(p[i] < q[i] ? -1 : 1);
    return 0;
}
uint64_t lib_strlen(Machine& m, const Args& a, uint32_t) {
    return m.mem.c_string(u32(a.at(0))).size();
}
int compare_strings(Machine& m, uint32_t p, uint32_t q, uint32_t n) {
    for (uint32_t i = 0; i < n; i++) {
        const uint8_t x = *m.mem.at(p + i, 1, false), y = *m.mem.at(q + i, 1, false);
        if (x != y)
            return x < y ? -1 : 1;
        if (!x)
            return 0;
    }
    return 0;
}
uint64_t lib_strcmp(Machine& m, const Args& a, uint32_t) {
    return sx(compare_strings(m, u32(a.at(0)), u32(a.at(1)), UINT32_MAX));
}
uint64_t lib_strncmp(Machine& m, const Args& a, uint32_t) {
    return sx(compare_strings(m, u32(a.at(0)), u32(a.at(1)), u32(a.at(2))));
}
uint64_t lib_strcpy(Machine& m, const Args& a, uint32_t) {
    const std::string s = m.mem.c_string(u32(a.at(1)));
    memcpy(m.mem.at(u32(a.at(0)), static_cast<uint32_t>(s.size() + 1), true), s.c_str(),
           s.size() + 1);
    return u32(a.at(0));
}
uint64_t lib_strncpy(Machine& m, const Args& a, uint32_t) {
    const uint32_t n = u32(a.at(2));
    const std::string s = m.mem.c_string(u32(a.at(1)), n);
    if (n) {
        uint8_t* d = m.mem.at(u32(a.at(0)), n, true);
        memset(d, 0, n);
        memcpy(d, s.data(), s.size());
    }
    return u32(a.at(0));
}
uint64_t lib_strcat(Machine& m, const Args& a, uint32_t) {
    const uint32_t d = u32(a.at(0));
    const uint32_t end = d + static_cast<uint32_t>(m.mem.c_string(d).size());
    const std::string s = m.mem.c_string(u32(a.at(1)));
    memcpy(m.mem.at(end, static_cast<uint32_t>(s.size() + 1), true), s.c_str(), s.size() + 1);
    return d;
}
uint64_t lib_strchr(Machine& m, const Args& a, uint32_t) {
    const uint32_t p = u32(a.at(0));
    const char c = static_cast<char>(a.at(1));
    for (uint32_t i = 0;; i++) {
        const char x = static_cast<char>(*m.mem.at(p + i, 1, false));
        if (x == c)
            return p + i;
        if (!x)
            return 0;
    }
}
uint64_t lib_strrchr(Machine& m, const Args& a, uint32_t) {
    const uint32_t p = u32(a.at(0));
    const char c = static_cast<char>(a.at(1));
    uint32_t found = 0;
    for (uint32_t i = 0;; i++) {
        const char x = static_cast<char>(*m.mem.at(p + i, 1, false));
        if (x == c)
            found = p + i;
        if (!x)
            return found;
    }
}

uint64_t lib_malloc(Machine& m, const Args& a, uint32_t) { return m.mem.heap_alloc(u32(a.at(0))); }
uint64_t lib_calloc(Machine& m, const Args& a, uint32_t) {
    const uint64_t n = uint64_t(u32(a.at(0))) * u32(a.at(1));
    if (n > 0x7fffffff)
        return 0;
    const uint32_t p = m.mem.heap_alloc(static_cast<uint32_t>(n));
    if (p && n)
        memset(m.mem.at(p, static_cast<uint32_t>(n), true), 0, n);
    return p;
}
uint64_t lib_free(Machine& m, const Args& a, uint32_t) {
    const uint32_t p = u32(a.at(0));
    if (p && !m.mem.heap_free(p))
        fault("free(0x%08x) of memory that malloc did not return or that is already free", p);
    return 0;
}
uint64_t lib_realloc(Machine& m, const Args& a, uint32_t) {
    const uint32_t p = u32(a.at(0)), n = u32(a.at(1));
    if (!p)
        return m.mem.heap_alloc(n);
    const int64_t old = m.mem.heap_size(p);
    if (old < 0)
        fault("realloc(0x%08x) of memory that malloc did not return", p);
    const uint32_t q = m.mem.heap_alloc(n);
    if (!q)
        return 0;
    m.mem.copy(q, p, std::min<uint32_t>(n, static_cast<uint32_t>(old)));
    m.mem.heap_free(p);
    return q;
}

uint64_t lib_abs(Machine&, const Args& a, uint32_t) {
    const int32_t v = i32(a.at(0));
    return sx(v < 0 ? static_cast<int32_t>(0u - static_cast<uint32_t>(v)) : v);
}
uint64_t lib_llabs(Machine&, const Args& a, uint32_t) {
    const int64_t v = static_cast<int64_t>(a.at(0));
    return v < 0 ? 0 - a.at(0) : a.at(0);
}
uint64_t lib_exit(Machine&, const Args& a, uint32_t) { finish(i32(a.at(0)) & 0xff); }
uint64_t lib_abort(Machine&, const Args&, uint32_t) {
    fflush(stdout);
    fprintf(stderr, "ondrel-run: the program called abort()\n");
    finish(EXIT_ABORT);
}
uint64_t lib_atoi(Machine& m, const Args& a, uint32_t) {
    return sx(static_cast<int32_t>(strtol(m.mem.c_string(u32(a.at(0))).c_str(), nullptr, 10)));
}

// qsort: a stable merge sort, as the target's library sorts arrays of this
// size, so that equal elements keep their order.
uint64_t lib_qsort(Machine& m, const Args& a, uint32_t) {
    const uint32_t base = u32(a.at(0)), n = u32(a.at(1)), size = u32(a.at(2));
    XFunc* cmp = m.function_at(u32(a.at(3)));
    if (!cmp)
        fault("qsort with a comparison function pointer 0x%08x that names no function",
              u32(a.at(3)));
    if (n < 2 || size == 0)
        return 0;
    const VT ptr{VK::Ptr, 32, false, false, 4, 4};
    std::vector<uint32_t> order(n);
    for (uint32_t i = 0; i < n; i++)
        order[i] = i;
    std::vector<uint32_t> tmp(n);
    const auto less_or_equal = [&](uint32_t x, uint32_t y) {
        const uint64_t r = m.call(cmp, {base + x * size, base + y * size}, {ptr, ptr});
        return i32(r) <= 0;
    };
    for (uint32_t width = 1; width < n; width *= 2) {
        for (uint32_t lo = 0; lo < n; lo += 2 * width) {
            const uint32_t mid = std::min(lo + width, n), hi = std::min(lo + 2 * width, n);
            uint32_t i = lo, j = mid, k = lo;
            while (i < mid && j < hi)
                tmp[k++] = less_or_equal(order[i], order[j]) ? order[i++] : order[j++];
            while (i < mid)
                tmp[k++] = order[i++];
            while (j < hi)
                tmp[k++] = order[j++];
        }
        order.swap(tmp);
    }
    std::vector<uint8_t> sorted(size_t(n) * size);
    for (uint32_t i = 0; i < n; i++)
        memcpy(&sorted[size_t(i) * size], m.mem.at(base + order[i] * size, size, false), size);
    memcpy(m.mem.at(base, n * size, true), sorted.data(), sorted.size());
    return 0;
}

// The helpers of <stdarg.h>: a va_list holds the address of the next
// variable argument of the frame that called va_start.
uint64_t lib_va_start(Machine& m, const Args& a, uint32_t) {
    if (m.frames.size() < 2)
        fault("va_start outside a function");
    m.mem.store(u32(a.at(0)), 4, m.frames[m.frames.size() - 2]->va_area);
    return 0;
}
uint64_t lib_va_arg(Machine& m, const Args& a, uint32_t) {
    const uint32_t ap = u32(a.at(0)), size = u32(a.at(1)), align = u32(a.at(2));
    uint32_t p = u32(m.mem.load(ap, 4));
    if (!p)
        fault("va_arg past the variable arguments of the call");
    if (align > 4)
        p = (p + 7) & ~7u;
    m.mem.store(ap, 4, p + ((size + 3) & ~3u));
    return p;
}
uint64_t lib_va_end(Machine&, const Args&, uint32_t) { return 0; }
uint64_t lib_va_copy(Machine& m, const Args& a, uint32_t) {
    m.mem.store(u32(a.at(0)), 4, m.mem.load(u32(a.at(1)), 4));
    return 0;
}

template <double (*F)(double)> uint64_t math1(Machine&, const Args& a, uint32_t) {
    return bits_of(F(as_f64(a.at(0))));
}
template <double (*F)(double, double)> uint64_t math2(Machine&, const Args& a, uint32_t) {
    return bits_of(F(as_f64(a.at(0)), as_f64(a.at(1))));
}
template <float (*F)(float)> uint64_t math1f(Machine&, const Args& a, uint32_t) {
    return bits_of(F(as_f32(a.at(0))));
}
template <float (*F)(float, float)> uint64_t math2f(Machine&, const Args& a, uint32_t) {
    return bits_of(F(as_f32(a.at(0)), as_f32(a.at(1))));
}
uint64_t lib_sqrt(Machine&, const Args& a, uint32_t) {
    return bits_of(target::dsqrt(as_f64(a.at(0))));
}
uint64_t lib_sqrtf(Machine&, const Args& a, uint32_t) {
    return bits_of(target::fsqrt(as_f32(a.at(0))));
}
double host_fabs(double x) { return std::fabs(x); }
double host_floor(double x) { return std::floor(x); }
double host_ceil(double x) { return std::ceil(x); }
double host_trunc(double x) { return std::trunc(x); }
double host_round(double x) { return std::round(x); }
double host_sin(double x) { return std::sin(x); }
double host_cos(double x) { return std::cos(x); }
double host_tan(double x) { return std::tan(x); }
double host_atan(double x) { return std::atan(x); }
double host_exp(double x) { return std::exp(x); }
double host_log(double x) { return std::log(x); }
double host_log10(double x) { return std::log10(x); }
double host_fmod(double x, double y) { return std::fmod(x, y); }
double host_pow(double x, double y) { return std::pow(x, y); }
double host_atan2(double x, double y) { return std::atan2(x, y); }
float host_fabsf(float x) { return std::fabs(x); }
float host_floorf(float x) { return std::floor(x); }
float host_ceilf(float x) { return std::ceil(x); }
float host_sinf(float x) { return std::sin(x); }
float host_cosf(float x) { return std::cos(x); }
float host_expf(float x) { return std::exp(x); }
float host_logf(float x) { return std::log(x); }
float host_fmodf(float x, float y) { return std::fmod(x, y); }
float host_powf(float x, float y) { return std::pow(x, y); }

// Builtins that the front end leaves as calls of their own names.
uint64_t lib_clz(Machine&, const Args& a, uint32_t) {
    return u32(a.at(0)) ? __builtin_clz(u32(a.at(0))) : 32;
}
uint64_t lib_clzll(Machine&, const Args& a, uint32_t) {
    return a.at(0) ? __builtin_clzll(a.at(0)) : 64;
}
uint64_t lib_ctz(Machine&, const Args& a, uint32_t) {
    return u32(a.at(0)) ? __builtin_ctz(u32(a.at(0))) : 32;
}
uint64_t lib_ctzll(Machine&, const Args& a, uint32_t) {
    return a.at(0) ? __builtin_ctzll(a.at(0)) : 64;
}
uint64_t lib_popcount(Machine&, const Args& a, uint32_t) {
    return __builtin_popcount(u32(a.at(0)));
}
uint64_t lib_popcountll(Machine&, const Args& a, uint32_t) { return __builtin_popcountll(a.at(0)); }
uint64_t lib_bswap16(Machine&, const Args& a, uint32_t) {
    return __builtin_bswap16(static_cast<uint16_t>(a.at(0)));
}
uint64_t lib_bswap32(Machine&, const Args& a, uint32_t) { return __builtin_bswap32(u32(a.at(0))); }
uint64_t lib_bswap64(Machine&, const Args& a, uint32_t) { return __builtin_bswap64(a.at(0)); }

// The C locale's tables behind <ctype.h>: 384 entries from -128, reached
// through a pointer to a pointer to entry 0.
struct CtypeTables {
    uint32_t b_table, b_ptr, upper_table, upper_ptr, lower_table, lower_ptr;
} ctype;

uint16_t ctype_bits(int c) {
    const auto bit = [](int n) {
        return static_cast<uint16_t>(n < 8 ? (1 << n) << 8 : (1 << n) >> 8);
    };
    if (c < 0 || c > 127)
        return 0;
    uint16_t v = 0;
    if (isupper(c))
        v |= bit(0);
    if (islower(c))
        v |= bit(1);
    if (isalpha(c))
        v |= bit(2);
    if (isdigit(c))
        v |= bit(3);
    if (isxdigit(c))
        v |= bit(4);
    if (isspace(c))
        v |= bit(5);
    if (isprint(c))
        v |= bit(6);
    if (isgraph(c))
        v |= bit(7);
    if (c == ' ' || c == '\t')
        v |= bit(8);
    if (iscntrl(c))
        v |= bit(9);
    if (ispunct(c))
        v |= bit(10);
    if (isalnum(c))
        v |= bit(11);
    return v;
}

uint64_t lib_ctype_b_loc(Machine&, const Args&, uint32_t) { return ctype.b_ptr; }
uint64_t lib_ctype_toupper_loc(Machine&, const Args&, uint32_t) { return ctype.upper_ptr; }
uint64_t lib_ctype_tolower_loc(Machine&, const Args&, uint32_t) { return ctype.lower_ptr; }
uint64_t lib_toupper(Machine&, const Args& a, uint32_t) {
    const int32_t c = i32(a.at(0));
    return sx(c >= 'a' && c <= 'z' ? c - 32 : c);
}
uint64_t lib_tolower(Machine&, const Args& a, uint32_t) {
    const int32_t c = i32(a.at(0));
    return sx(c >= 'A' && c <= 'Z' ? c + 32 : c);
}
template <int (*F)(int)> uint64_t lib_is(Machine&, const Args& a, uint32_t) {
    const int32_t c = i32(a.at(0));
    return c >= 0 && c < 128 && F(c) ? 1 : 0;
}

const std::unordered_map<std::string, LibEntry>& library() {
    static const std::unordered_map<std::string, LibEntry> table = {
        {"printf", {lib_printf, 1}},
        {"fprintf", {lib_fprintf, 2}},
        {"sprintf", {lib_sprintf, 2}},
        {"snprintf", {lib_snprintf, 3}},
        {"vprintf", {lib_vprintf, 2}},
        {"vfprintf", {lib_vfprintf, 3}},
        {"vsprintf", {lib_vsprintf, 3}},
        {"vsnprintf", {lib_vsnprintf, 4}},
        {"puts", {lib_puts, 1}},
        {"fputs", {lib_fputs, 2}},
        {"putchar", {lib_putchar, 1}},
        {"fputc", {lib_fputc, 2}},
        {"putc", {lib_fputc, 2}},
        {"fflush", {lib_fflush, 1}},
        {"memcpy", {lib_memcpy, 3}},
        {"memmove", {lib_memcpy, 3}},
        {"memset", {lib_memset, 3}},
        {"memcmp", {lib_memcmp, 3}},
        {"strlen", {lib_strlen, 1}},
        {"strcmp", {lib_strcmp, 2}},
        {"strncmp", {lib_strncmp, 3}},
        {"strcpy", {lib_strcpy, 2}},
        {"strncpy", {lib_strncpy, 3}},
        {"strcat", {lib_strcat, 2}},
        {"strchr", {lib_strchr, 2}},
        {"strrchr", {lib_strrchr, 2}},
        {"malloc", {lib_malloc, 1}},
        {"calloc", {lib_calloc, 2}},
        {"realloc", {lib_realloc, 2}},
        {"free", {lib_free, 1}},
        {"abs", {lib_abs, 1}},
        {"labs", {lib_abs, 1}},
        {"llabs", {lib_llabs, 1}},
        {"abort", {lib_abort, 0}},
        {"exit", {lib_exit, 1}},
        {"atoi", {lib_atoi, 1}},
        {"atol", {lib_atoi, 1}},
        {"qsort", {lib_qsort, 4}},
        {"__ondrel_va_start", {lib_va_start, 1}},
        {"__ondrel_va_arg", {lib_va_arg, 3}},
        {"__ondrel_va_end", {lib_va_end, 1}},
        {"__ondrel_va_copy", {lib_va_copy, 2}},
        {"sqrt", {lib_sqrt, 1}},
        {"sqrtf", {lib_sqrtf, 1}},
        {"fabs", {math1<host_fabs>, 1}},
        {"floor", {math1<host_floor>, 1}},
        {"ceil", {math1<host_ceil>, 1}},
        {"trunc", {math1<host_trunc>, 1}},
        {"round", {math1<host_round>, 1}},
        {"sin", {math1<host_sin>, 1}},
        {"cos", {math1<host_cos>, 1}},
        {"tan", {math1<host_tan>, 1}},
        {"atan", {math1<host_atan>, 1}},
        {"exp", {math1<host_exp>, 1}},
        {"log", {math1<host_log>, 1}},
        {"log10", {math1<host_log10>, 1}},
        {"fmod", {math2<host_fmod>, 2}},
        {"pow", {math2<host_pow>, 2}},
        {"atan2", {math2<host_atan2>, 2}},
        {"fabsf", {math1f<host_fabsf>, 1}},
        {"floorf", {math1f<host_floorf>, 1}},
        {"ceilf", {math1f<host_ceilf>, 1}},
        {"sinf", {math1f<host_sinf>, 1}},
        {"cosf", {math1f<host_cosf>, 1}},
        {"expf", {math1f<host_expf>, 1}},
        {"logf", {math1f<host_logf>, 1}},
        {"fmodf", {math2f<host_fmodf>, 2}},
        {"powf", {math2f<host_powf>, 2}},
        {"__ctype_b_loc", {lib_ctype_b_loc, 0}},
        {"__ctype_toupper_loc", {lib_ctype_toupper_loc, 0}},
        {"__ctype_tolower_loc", {lib_ctype_tolower_loc, 0}},
        {"toupper", {lib_toupper, 1}},
        {"tolower", {lib_tolower, 1}},
        {"isdigit", {lib_is<isdigit>, 1}},
        {"isalpha", {lib_is<isalpha>, 1}},
        {"isalnum", {lib_is<isalnum>, 1}},
        {"isspace", {lib_is<isspace>, 1}},
        {"isupper", {lib_is<isupper>, 1}},
        {"islower", {lib_is<islower>, 1}},
        {"isxdigit", {lib_is<isxdigit>, 1}},
        {"ispunct", {lib_is<ispunct>, 1}},
        {"isprint", {lib_is<isprint>, 1}},
        {"__builtin_clz", {lib_clz, 1}},
        {"__builtin_clzl", {lib_clz, 1}},
        {"__builtin_clzll", {lib_clzll, 1}},
        {"__builtin_ctz", {lib_ctz, 1}},
        {"__builtin_ctzl", {lib_ctz, 1}},
        {"__builtin_ctzll", {lib_ctzll, 1}},
        {"__builtin_popcount", {lib_popcount, 1}},
        {"__builtin_popcountl", {lib_popcount, 1}},
        {"__builtin_popcountll", {lib_popcountll, 1}},
        {"__builtin_bswap16", {lib_bswap16, 1}},
        {"__builtin_bswap32", {lib_bswap32, 1}},
        {"__builtin_bswap64", {lib_bswap64, 1}},
    };
    return table;
}

} // namespace

void reserve_library_data(Machine& m) {
    ctype.b_table = m.mem.add_global(384 * 2, 4, false);
    ctype.b_ptr = m.mem.add_global(4, 4, false);
    ctype.upper_table = m.mem.add_global(384 * 4, 4, false);
    ctype.upper_ptr = m.mem.add_global(4, 4, false);
    ctype.lower_table = m.mem.add_global(384 * 4, 4, false);
    ctype.lower_ptr = m.mem.add_global(4, 4, false);
}

void write_library_data(Machine& m) {
    for (int c = -128; c < 256; c++) {
        const uint32_t i = static_cast<uint32_t>(c + 128);
        // Entries -128 to -1 are those of 128 to 255, as a signed char indexes them.
        const int u = c < 0 ? c + 256 : c;
        m.mem.store(ctype.b_table + 2 * i, 2, ctype_bits(u));
        m.mem.store(ctype.upper_table + 4 * i, 4,
                    static_cast<uint32_t>(u >= 'a' && u <= 'z' ? u - 32 : c));
        m.mem.store(ctype.lower_table + 4 * i, 4,
                    static_cast<uint32_t>(u >= 'A' && u <= 'Z' ? u + 32 : c));
    }
    m.mem.store(ctype.b_ptr, 4, ctype.b_table + 2 * 128);
    m.mem.store(ctype.upper_ptr, 4, ctype.upper_table + 4 * 128);
    m.mem.store(ctype.lower_ptr, 4, ctype.lower_table + 4 * 128);
    for (uint32_t a : {ctype.b_table, ctype.b_ptr, ctype.upper_table, ctype.upper_ptr,
                       ctype.lower_table, ctype.lower_ptr})
        m.mem.set_read_only(a, true);
}

LibEntry find_library_function(const std::string& name) {
    auto it = library().find(name);
    return it == library().end() ? LibEntry{} : it->second;
}

} // namespace run
