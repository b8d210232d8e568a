// Conversions of simulated values: integers, text in, text out. Text goes
// both ways exactly, through integers of any size: decimal input is rounded
// once, however many digits it has, and printed digits are the value's own.
#include <algorithm>
#include <cctype>
#include <climits>
#include <cstring>
#include <string>

#include "support/simfloat_impl.h"

using namespace simfloat_impl;

void f_itof(long long v, simul_fval* r) {
    const bool neg = v < 0;
    const uint64_t magnitude = neg ? 0 - static_cast<uint64_t>(v) : static_cast<uint64_t>(v);
    pack(neg, magnitude, 0, false, r);
}

void f_utof(unsigned long long v, simul_fval* r) { pack(false, v, 0, false, r); }

namespace {

// |v| truncated toward zero, when that is below 2^65; false when it is larger
// or not finite.
bool truncated_magnitude(const Parts& p, u128* out) {
    if (p.kind == Parts::ZERO) {
        *out = 0;
        return true;
    }
    if (p.kind != Parts::FINITE)
        return false;
    if (p.e >= 0) {
        if (bitlen128(p.m) + p.e > 65)
            return false;
        *out = p.m << p.e;
        return true;
    }
    *out = -p.e >= 128 ? 0 : p.m >> -p.e;
    return true;
}

} // namespace

int f_ftoi(const simul_fval* v, long long* out) {
    const Parts p = unpack(v);
    u128 magnitude = 0;
    const u128 limit = (u128(1) << 63) - (p.neg ? 0 : 1);
    if (p.kind == Parts::NAN_ || !truncated_magnitude(p, &magnitude) || magnitude > limit) {
        *out = p.kind == Parts::NAN_ ? 0 : p.neg ? LLONG_MIN : LLONG_MAX;
        fp_error |= FP_INVALID;
        return -1;
    }
    const uint64_t bits = static_cast<uint64_t>(magnitude);
    *out = static_cast<long long>(p.neg ? 0 - bits : bits);
    return 0;
}

int f_ftou(const simul_fval* v, unsigned long long* out) {
    const Parts p = unpack(v);
    u128 magnitude = 0;
    if (p.kind == Parts::NAN_ || !truncated_magnitude(p, &magnitude) || magnitude >> 64 ||
        (p.neg && magnitude)) {
        *out = p.kind == Parts::NAN_ || p.neg ? 0 : ULLONG_MAX;
        fp_error |= FP_INVALID;
        return -1;
    }
    *out = static_cast<unsigned long long>(magnitude);
    return 0;
}

namespace {

bool starts_with_nocase(const char* p, const char* word) {
    return strncasecmp(p, word, strlen(word)) == 0;
}

int digit_value(char c) {
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return 99;
}

// Significant digits kept from decimal text. The others only say whether
// they were all zero: every value and every halfway point of the target's
// formats has fewer significant digits than this, so none can lie between
// the kept digits and the text's value.
constexpr int kept_decimal_digits = 1000;
// Hexadecimal digits kept: 160 bits, of which the rounding needs 96.
constexpr int kept_hex_digits = 40;
// A decimal exponent beyond these is out of the simulated range whatever the
// digits (2^32752 is about 10^9859).
constexpr long long decimal_range = 9870;

// digits * 10^exponent, where digits has `count` decimal digits.
int decimal_value(bool neg, BigNat digits, int count, long long exponent, simul_fval* r) {
    const long long magnitude = exponent + count;
    if (magnitude > decimal_range) {
        set_inf(neg, r);
        fp_error |= FP_OVERFLOW;
        return 1;
    }
    if (magnitude < -decimal_range) {
        set_zero(neg, r);
        fp_error |= FP_UNDERFLOW;
        return 1;
    }
    if (exponent >= 0)
        return pack_big(neg, BigNat::mul(digits, BigNat::pow_small(10, int(exponent))), 0, false,
                        r);
    const BigNat den = BigNat::pow_small(10, int(-exponent));
    // Enough quotient bits that the remainder only needs to say "more".
    const int shift = std::max(0, den.bitlen() - digits.bitlen() + 100);
    digits.shl(shift);
    BigNat rem;
    BigNat q = BigNat::divmod(digits, den, &rem);
    return pack_big(neg, q, -shift, !rem.is_zero(), r);
}

} // namespace

int f_atof(const char* text, simul_fval* r) {
    const char* p = text;
    while (isspace(static_cast<unsigned char>(*p)))
        p++;
    bool neg = false;
    if (*p == '+' || *p == '-')
        neg = *p++ == '-';
    auto rest_is_blank = [&p]() {
        while (isspace(static_cast<unsigned char>(*p)))
            p++;
        return *p == 0 ? 0 : 1;
    };
    if (starts_with_nocase(p, "inf")) {
        p += starts_with_nocase(p, "infinity") ? 8 : 3;
        set_inf(neg, r);
        return rest_is_blank();
    }
    if (starts_with_nocase(p, "nan")) {
        p += 3;
        if (*p == '(' && strchr(p, ')'))
            p = strchr(p, ')') + 1;
        set_nan(neg, r);
        return rest_is_blank();
    }
    const bool hex = p[0] == '0' && (p[1] == 'x' || p[1] == 'X') &&
                     (isxdigit(static_cast<unsigned char>(p[2])) ||
                      (p[2] == '.' && isxdigit(static_cast<unsigned char>(p[3]))));
    if (hex)
        p += 2;
    const int base = hex ? 16 : 10;
    const int limit = hex ? kept_hex_digits : kept_decimal_digits;

    // value = digits * base^scale, and more when a dropped digit was not 0.
    BigNat digits;
    long long scale = 0;
    int kept = 0;
    bool dropped = false;
    bool any = false;
    bool point = false;
    for (;; p++) {
        if (*p == '.' && !point) {
            point = true;
            continue;
        }
        const int d = digit_value(*p);
        if (d >= base)
            break;
        any = true;
        if (kept == 0 && d == 0) {
            scale -= point;
        } else if (kept < limit) {
            digits.mul_small(static_cast<uint32_t>(base), static_cast<uint32_t>(d));
            kept++;
            scale -= point;
        } else {
            dropped |= d != 0;
            scale += !point;
        }
    }
    if (!any) {
        set_zero(false, r);
        return 1;
    }
    long long exponent = 0;
    if (hex ? (*p == 'p' || *p == 'P') : (*p == 'e' || *p == 'E')) {
        const char* q = p + 1;
        bool exp_neg = false;
        if (*q == '+' || *q == '-')
            exp_neg = *q++ == '-';
        if (isdigit(static_cast<unsigned char>(*q))) {
            for (; isdigit(static_cast<unsigned char>(*q)); q++)
                exponent = std::min(exponent * 10 + (*q - '0'), 1000000000LL);
            if (exp_neg)
                exponent = -exponent;
            p = q;
        }
    }
    if (*p && strchr("fFlL", *p))
        p++;
    const int ok = rest_is_blank();

    if (digits.is_zero()) {
        set_zero(neg, r);
        return ok;
    }
    if (hex) {
        const long long e = std::clamp(4 * scale + exponent, -1000000LL, 1000000LL);
        pack_big(neg, digits, static_cast<int>(e), dropped, r);
        return ok;
    }
    if (dropped) {
        // A digit 1 below the kept ones stands for what was dropped.
        digits.mul_small(10, 1);
        scale--;
        kept++;
    }
    decimal_value(neg, digits, kept, scale + exponent, r);
    return ok;
}

simul_fval simfloat_impl::from_text(const char* text) {
    simul_fval v;
    f_atof(text, &v);
    return v;
}

namespace {

// Rounds a digit string to n digits, to nearest even, with what follows
// exactly known; a carry out of the top moves the point.
std::string round_digits(const std::string& all, int n, int base, int* point) {
    if (n < 0)
        return "";
    if (static_cast<int>(all.size()) <= n)
        return all + std::string(n - all.size(), '0');
    std::string kept = all.substr(0, n);
    const int next = digit_value(all[n]);
    const bool more = all.find_first_not_of('0', n + 1) != std::string::npos;
    const int half = base / 2;
    const bool odd = n > 0 && digit_value(kept.back()) % 2 == 1;
    if (next > half || (next == half && (more || odd))) {
        static const char digit_chars[] = "0123456789abcdef";
        int i = n - 1;
        for (; i >= 0; i--) {
            const int d = digit_value(kept[i]) + 1;
            if (d < base) {
                kept[i] = digit_chars[d];
                break;
            }
            kept[i] = '0';
        }
        if (i < 0) {
            kept.insert(kept.begin(), '1');
            kept.pop_back();
            (*point)++;
            if (n == 0)
                kept = "1";
        }
    }
    return kept;
}

// All decimal digits of |v|, finite and non-zero: |v| = 0.digits * 10^*point.
std::string exact_decimal(const Parts& p, int* point) {
    std::string digits;
    if (p.e >= 0) {
        BigNat n(p.m);
        n.shl(p.e);
        digits = n.to_decimal();
        *point = static_cast<int>(digits.size());
    } else {
        // m / 2^k = m * 5^k / 10^k
        digits = BigNat::mul(BigNat(p.m), BigNat::pow_small(5, -p.e)).to_decimal();
        *point = static_cast<int>(digits.size()) + p.e;
    }
    const size_t last = digits.find_last_not_of('0');
    digits.resize(last + 1);
    return digits;
}

int special_digits(const Parts& p, int* sign, char* buf, int size) {
    *sign = p.neg;
    snprintf(buf, size, "%s", p.kind == Parts::NAN_ ? "nan" : "inf");
    return -1;
}

int put_digits(const std::string& digits, char* buf, int size) {
    snprintf(buf, size, "%s", digits.c_str());
    return 0;
}

} // namespace

int f_ecvt(const simul_fval* v, int ndigits, int* decpt, int* sign, char* buf, int size) {
    const Parts p = unpack(v);
    if (p.kind == Parts::NAN_ || p.kind == Parts::INF)
        return special_digits(p, sign, buf, size);
    *sign = p.neg;
    ndigits = std::clamp(ndigits, 1, size - 1);
    if (p.kind == Parts::ZERO) {
        *decpt = 1;
        return put_digits(std::string(ndigits, '0'), buf, size);
    }
    const std::string all = exact_decimal(p, decpt);
    return put_digits(round_digits(all, ndigits, 10, decpt), buf, size);
}

int f_fcvt(const simul_fval* v, int ndigits, int* decpt, int* sign, char* buf, int size) {
    const Parts p = unpack(v);
    if (p.kind == Parts::NAN_ || p.kind == Parts::INF)
        return special_digits(p, sign, buf, size);
    *sign = p.neg;
    if (p.kind == Parts::ZERO) {
        *decpt = 0;
        return put_digits("", buf, size);
    }
    const std::string all = exact_decimal(p, decpt);
    const int n = std::min(*decpt + ndigits, size - 1);
    if (n < 0) {
        *decpt = -ndigits;
        return put_digits("", buf, size);
    }
    return put_digits(round_digits(all, n, 10, decpt), buf, size);
}

int f_acvt(const simul_fval* v, int ndigits, int* binexp, int* sign, char* buf, int size) {
    const Parts p = unpack(v);
    if (p.kind == Parts::NAN_ || p.kind == Parts::INF)
        return special_digits(p, sign, buf, size);
    *sign = p.neg;
    if (p.kind == Parts::ZERO) {
        *binexp = 0;
        return put_digits("0" + std::string(std::max(ndigits, 0), '0'), buf, size);
    }
    // The bits after the leading one, in hexadecimal digits.
    const int bits = bitlen128(p.m) - 1;
    *binexp = bits + p.e;
    const int count = (bits + 3) / 4;
    const u128 fraction = (p.m - (u128(1) << bits)) << (4 * count - bits);
    std::string all = "1";
    for (int i = count - 1; i >= 0; i--)
        all.push_back("0123456789abcdef"[static_cast<int>(fraction >> (4 * i)) & 15]);
    if (ndigits < 0) {
        all.resize(all.find_last_not_of('0') + 1);
        return put_digits(all, buf, size);
    }
    ndigits = std::min(ndigits, size - 2);
    // A carry makes the leading digit 2, which stays, as C's %a has it.
    int point = 0;
    return put_digits(round_digits(all, ndigits + 1, 16, &point), buf, size);
}

namespace {

constexpr int max_precision = 400;

std::string format_special(const Parts& p) {
    return std::string(p.neg ? "-" : "") + (p.kind == Parts::NAN_ ? "nan" : "inf");
}

std::string format_a(const simul_fval* v, int precision) {
    char digits[F_FTOA_BUFSIZE];
    int binexp = 0, sign = 0;
    f_acvt(v, precision, &binexp, &sign, digits, sizeof digits);
    std::string out = sign ? "-0x" : "0x";
    out += digits[0];
    if (digits[1]) {
        out += '.';
        out += digits + 1;
    }
    char exp[32];
    snprintf(exp, sizeof exp, "p%+ld", static_cast<long>(binexp));
    return out + exp;
}

std::string format_e(const simul_fval* v, int precision) {
    char digits[F_FTOA_BUFSIZE];
    int decpt = 0, sign = 0;
    f_ecvt(v, precision + 1, &decpt, &sign, digits, sizeof digits);
    std::string out = sign ? "-" : "";
    out += digits[0];
    if (precision > 0) {
        out += '.';
        out += digits + 1;
    }
    char exp[32];
    snprintf(exp, sizeof exp, "e%+.2ld", static_cast<long>(f_is_zero(v) ? 0 : decpt - 1));
    return out + exp;
}

std::string format_f(const simul_fval* v, int precision) {
    char digits[F_FTOA_BUFSIZE];
    int decpt = 0, sign = 0;
    f_fcvt(v, precision, &decpt, &sign, digits, sizeof digits);
    const std::string d = digits;
    std::string whole, frac;
    for (int i = 0; i < decpt; i++)
        whole += i < static_cast<int>(d.size()) ? d[i] : '0';
    if (whole.empty())
        whole = "0";
    for (int i = decpt; i < decpt + precision; i++)
        frac += i >= 0 && i < static_cast<int>(d.size()) ? d[i] : '0';
    std::string out = (sign ? "-" : "") + whole;
    if (precision > 0)
        out += "." + frac;
    return out;
}

std::string format_g(const simul_fval* v, int precision) {
    if (precision == 0)
        precision = 1;
    char digits[F_FTOA_BUFSIZE];
    int decpt = 0, sign = 0;
    f_ecvt(v, precision, &decpt, &sign, digits, sizeof digits);
    const int x = f_is_zero(v) ? 0 : decpt - 1;
    std::string out =
        precision > x && x >= -4 ? format_f(v, precision - 1 - x) : format_e(v, precision - 1);
    // Trailing zeros of the fraction go, and then a bare point.
    const size_t e = out.find('e');
    std::string mantissa = out.substr(0, e);
    const std::string exponent = e == std::string::npos ? "" : out.substr(e);
    if (mantissa.find('.') != std::string::npos) {
        mantissa.resize(mantissa.find_last_not_of('0') + 1);
        if (mantissa.back() == '.')
            mantissa.pop_back();
    }
    return mantissa + exponent;
}

} // namespace

int f_f2ascii(char* buf, int width, int precision, char conversion, const simul_fval* v) {
    const Parts p = unpack(v);
    const char lower = static_cast<char>(tolower(static_cast<unsigned char>(conversion)));
    if (precision > max_precision)
        precision = max_precision;
    if (precision < 0 && lower != 'a')
        precision = 6;
    std::string out;
    if (p.kind == Parts::NAN_ || p.kind == Parts::INF) {
        out = format_special(p);
    } else if (lower == 'a') {
        out = format_a(v, precision);
    } else if (lower == 'e') {
        out = format_e(v, precision);
    } else if (lower == 'g') {
        out = format_g(v, precision);
    } else {
        // 2^1329 is about 10^400.
        out = f_findexp(v) > 1329 ? format_e(v, precision) : format_f(v, precision);
    }
    if (isupper(static_cast<unsigned char>(conversion)))
        std::transform(out.begin(), out.end(), out.begin(),
                       [](char c) { return static_cast<char>(toupper(c)); });
    const size_t padded = static_cast<size_t>(std::clamp(width, 0, F_FTOA_BUFSIZE - 1));
    if (out.size() < padded)
        out.insert(0, padded - out.size(), ' ');
    out.resize(std::min<size_t>(out.size(), F_FTOA_BUFSIZE - 1));
    memcpy(buf, out.c_str(), out.size() + 1);
    return static_cast<int>(out.size());
}

int f_ftoa(char* buf, const char* format, const simul_fval* v) {
    std::string out;
    const char* p = format;
    for (; *p && *p != '%'; p++)
        out += *p;
    if (*p == '%') {
        p++;
        while (*p && strchr("-+ #0", *p))
            p++;
        int width = 0, precision = -1;
        for (; isdigit(static_cast<unsigned char>(*p)); p++)
            width = std::min(width * 10 + (*p - '0'), F_FTOA_BUFSIZE);
        if (*p == '.') {
            precision = 0;
            for (p++; isdigit(static_cast<unsigned char>(*p)); p++)
                precision = std::min(precision * 10 + (*p - '0'), F_FTOA_BUFSIZE);
        }
        while (*p && strchr("lLhq", *p))
            p++;
        if (*p) {
            char conv[F_FTOA_BUFSIZE];
            f_f2ascii(conv, width, precision, *p++, v);
            out += conv;
        }
    }
    out += p;
    out.resize(std::min<size_t>(out.size(), F_FTOA_BUFSIZE - 1));
    memcpy(buf, out.c_str(), out.size() + 1);
    return static_cast<int>(out.size());
}

char* f_utoa(char* buf, unsigned long long v) {
    const std::string digits = BigNat(v).to_decimal();
    memcpy(buf, digits.c_str(), digits.size() + 1);
    return buf;
}

void f_ftoh(const simul_fval* v, double* out) {
    const int saved = fp_error;
    unsigned high = 0, low = 0;
    ieee_cvt_stod(v, &high, &low);
    fp_error = saved;
    const uint64_t bits = static_cast<uint64_t>(high) << 32 | low;
    memcpy(out, &bits, sizeof bits);
}

void f_dbg(FILE* f, const simul_fval* v) {
    fprintf(f, " mant:");
    for (unsigned short word : v->mantissa)
        fprintf(f, " %04x", word);
    fprintf(f, " exp:  %d, sign: %d\n", v->exponent, v->sign);
}

void f_print(FILE* f, const simul_fval* v) {
    if (f_is_nan(v)) {
        fputs("NaN", f);
        return;
    }
    if (f_is_inf(v)) {
        fputs(v->sign ? "-Inf" : "Inf", f);
        return;
    }
    char buf[F_FTOA_BUFSIZE];
    f_ftoa(buf, "%.21g", v);
    fputs(buf, f);
}
