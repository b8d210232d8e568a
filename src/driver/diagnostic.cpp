// The message library. Messages are formatted at once into owned strings, so
// a message may outlive the arguments and source position it was made from.
#include "driver/diagnostic.h"

#include <cstdlib>
#include <cstring>
#include <map>
#include <new>
#include <vector>

#include "driver/diag.h"

// The severity, flags and texts of every code this program can raise. The
// texts are printf formats for USER_MSG::warning and the generic classes.
DIAG_INFO DIAG_INFO_ENTRY[] = {
    {DIAG_CODE_DEBUG, "%s", "debug", DIAG_DEBUG, DIAG_DISCRETIONARY},
    {DIAG_CODE_REMARK, "%s", "remark", DIAG_REMARK, DIAG_DISCRETIONARY},
    {DIAG_CODE_ADVICE, "%s", "advice", DIAG_ADVICE, DIAG_DISCRETIONARY},
    {DIAG_CODE_WARNING, "%s", "warning", DIAG_WARNING, DIAG_DISCRETIONARY},
    {DIAG_CODE_ERROR, "%s", "error", DIAG_ERROR, 0},
    {DIAG_CODE_APPERROR, "%s", "apperror", DIAG_ERROR, DIAG_INTERNAL},
    {DIAG_CODE_FATAL, "%s", "fatal", DIAG_FATAL, 0},
    {DIAG_CODE_DIE, "%s", "die", DIAG_FATAL, DIAG_INTERNAL},
    {DIAG_CODE_MAX_ERRORS, "%u errors found; stopping", "max_errors", DIAG_FATAL, 0},
    {DIAG_CODE_NOT_VECTORIZED, "loop at line %u was not vectorized: %s", "not_vectorized",
     DIAG_ADVICE, DIAG_DISCRETIONARY},
    {DIAG_CODE_NOT_INLINED, "call to %s was not inlined: %s", "not_inlined", DIAG_REMARK,
     DIAG_DISCRETIONARY},
};
const unsigned DIAG_INFO_COUNT = sizeof DIAG_INFO_ENTRY / sizeof DIAG_INFO_ENTRY[0];

unsigned DIAGNOSTIC::indent_m = 0;
bool DIAGNOSTIC::wrap_enabled_m = true;
bool DIAGNOSTIC::wrap_headers_m = false;
bool DIAGNOSTIC::display_ipos_m = false;
bool DIAGNOSTIC::display_code_m = false;
bool DIAGNOSTIC::advice_m = false;
bool DIAGNOSTIC::debug_m = false;
bool DIAGNOSTIC::remarks_m = false;
bool DIAGNOSTIC::warnings_m = true;
bool DIAGNOSTIC::warnings_as_errors_m = false;
unsigned DIAGNOSTIC::max_errors_m = 0;
unsigned DIAGNOSTIC::error_count_m = 0;
FILE* DIAGNOSTIC::fp_m = nullptr;
unsigned DIAGNOSTIC::cols_m = 79;

namespace {

struct code_table {
    std::map<unsigned, DIAG_INFO*> by_code;
    std::vector<unsigned char> defaults;
    code_table() {
        for (unsigned i = 0; i < DIAG_INFO_COUNT; i++) {
            by_code[DIAG_INFO_ENTRY[i].code] = &DIAG_INFO_ENTRY[i];
            defaults.push_back(DIAG_INFO_ENTRY[i].severity);
        }
    }
};

// Built on first use, before any override, so that it records the severities
// as the table defines them.
code_table& table() {
    static code_table t;
    return t;
}

const char* const severity_words[] = {
    "(suppressed)", "(no error)", "advice", "debug", "remark", "warning", "error", "fatal error",
};

// The column of the current output line, for wrapping. Every message starts a
// new line.
unsigned column;
char last_char = '\n';

void put(FILE* out, const std::string& text) {
    if (text.empty())
        return;
    fputs(text.c_str(), out);
    last_char = text.back();
    const size_t newline = text.rfind('\n');
    column = newline == std::string::npos ? column + text.size() : text.size() - newline - 1;
}

std::string format_str(const char* format, ...) __attribute__((format(printf, 1, 2)));
std::string format_str(const char* format, ...) {
    va_list args;
    va_start(args, format);
    std::string text = USER_MSG::make_msg_str(format, args);
    va_end(args);
    return text;
}

} // namespace

bool DIAG_SRCINFO::is_equal(const DIAG_SRCINFO& other) const {
    const char* a = file() ? file() : "";
    const char* b = other.file() ? other.file() : "";
    return strcmp(a, b) == 0 && line() == other.line() && column() == other.column() &&
           approx() == other.approx();
}

DIAGNOSTIC::DIAGNOSTIC(DIAG_INFO* info, const char* file, unsigned line)
    : info_(info), file_(file), line_(line) {
    OPTASSERT(info != nullptr);
}

DIAGNOSTIC& DIAGNOSTIC::set_text(std::string text) {
    text_ = std::move(text);
    return *this;
}

DIAGNOSTIC& DIAGNOSTIC::set_verbose(std::string text) {
    verbose_ = std::move(text);
    return *this;
}

DIAGNOSTIC& DIAGNOSTIC::set_srcinfo(const DIAG_SRCINFO* where) {
    has_where_ = where != nullptr;
    where_ = where ? DIAG_SRCINFO_DATA(*where) : DIAG_SRCINFO_DATA();
    sp_buffer_ = where ? srcinfo_str(*where) : std::string();
    return *this;
}

unsigned DIAGNOSTIC::severity() const {
    if (warnings_as_errors_m && info_->severity == DIAG_WARNING)
        return DIAG_ERROR;
    return info_->severity;
}

FILE* DIAGNOSTIC::fp() const {
    if (fp_m)
        return fp_m;
    return severity() < DIAG_WARNING ? stdout : stderr;
}

const char* DIAGNOSTIC::sev_str(unsigned severity) {
    return severity <= DIAG_FATAL ? severity_words[severity] : "(unknown)";
}

DIAG_INFO* DIAGNOSTIC::get_info(unsigned code) {
    const auto& by_code = table().by_code;
    const auto it = by_code.find(code);
    return it == by_code.end() ? nullptr : it->second;
}

DIAG_INFO* DIAGNOSTIC::get_info(const char* code_or_word) {
    if (!code_or_word || !*code_or_word)
        return nullptr;
    char* end;
    const unsigned long code = strtoul(code_or_word, &end, 10);
    if (*end == '\0')
        return get_info(static_cast<unsigned>(code));
    for (auto& [number, info] : table().by_code)
        if (strcmp(info->word, code_or_word) == 0)
            return info;
    return nullptr;
}

bool DIAGNOSTIC::is_discretionary(unsigned code) {
    const DIAG_INFO* info = get_info(code);
    return info && (info->flags & DIAG_DISCRETIONARY);
}

bool DIAGNOSTIC::override_severity(unsigned code, unsigned severity) {
    DIAG_INFO* info = get_info(code);
    if (!info || !(info->flags & DIAG_DISCRETIONARY) || severity > DIAG_FATAL)
        return false;
    info->severity = static_cast<unsigned char>(severity);
    return true;
}

bool DIAGNOSTIC::override_severity(const char* code_or_word, unsigned severity) {
    const DIAG_INFO* info = get_info(code_or_word);
    return info && override_severity(info->code, severity);
}

bool DIAGNOSTIC::override_all_of_severity(unsigned from, unsigned to) {
    if (to > DIAG_FATAL)
        return false;
    bool changed = false;
    for (auto& [code, info] : table().by_code)
        if ((info->flags & DIAG_DISCRETIONARY) && info->severity == from) {
            info->severity = static_cast<unsigned char>(to);
            changed = true;
        }
    return changed;
}

bool DIAGNOSTIC::suppress(unsigned code) { return override_severity(code, DIAG_SUPPRESSED); }

void DIAGNOSTIC::reset_table() {
    code_table& t = table();
    for (unsigned i = 0; i < DIAG_INFO_COUNT; i++)
        DIAG_INFO_ENTRY[i].severity = t.defaults[i];
}

std::string DIAGNOSTIC::srcinfo_str(const DIAG_SRCINFO& where) {
    std::string text;
    if (where.file() && *where.file())
        text = format_str("\"%s\", ", where.file());
    text += format_str("line %u", where.line());
    if (where.approx())
        text += " (approximate)";
    return text;
}

bool DIAGNOSTIC::print_header() {
    const unsigned sev = severity();
    switch (sev) {
    case DIAG_SUPPRESSED:
        return false;
    case DIAG_ADVICE:
        if (!advice_m)
            return false;
        break;
    case DIAG_DEBUG:
        if (!debug_m)
            return false;
        break;
    case DIAG_REMARK:
        if (!remarks_m)
            return false;
        break;
    case DIAG_WARNING:
        if (!warnings_m)
            return false;
        break;
    default:
        break;
    }
    // The two standard streams may share a terminal: keep earlier output first.
    fflush(stdout);
    fflush(stderr);
    column = 0;
    last_char = '\n';

    std::string header(indent_m, ' ');
    if (display_ipos_m || is_internal())
        header += format_str("%s:%u:", file_, line_);
    if (has_where_)
        header += format_str("%s: ", sp_buffer_.c_str());
    if (display_code_m)
        header += format_str("%s%s #%u%s: ", is_internal() ? "internal " : "", sev_str(sev), code(),
                             is_discretionary() ? "-D" : "");
    else
        header += format_str("%s: ", sev_str(sev));

    // Unless asked to wrap, the header stays whole on its line however long it is.
    if (wrap_enabled_m && wrap_headers_m) {
        put(fp(), header.substr(0, indent_m));
        put_words(fp(), header.c_str() + indent_m, 0);
        // The text follows on the header's last line.
        put(fp(), " ");
        return true;
    }
    put(fp(), header);
    return true;
}

void DIAGNOSTIC::print(const char* format, ...) {
    va_list args;
    va_start(args, format);
    const std::string text = USER_MSG::make_msg_str(format, args);
    va_end(args);
    print_formatted(text.c_str(), 2);
}

void DIAGNOSTIC::print_formatted(const char* text, unsigned wrap_indent) {
    if (wrap_enabled_m) {
        put_words(fp(), text, wrap_indent);
    } else {
        put(fp(), text);
    }
    put(fp(), "\n");
}

void DIAGNOSTIC::put_words(FILE* out, const char* text, unsigned wrap_indent) {
    const unsigned diag_cols = cols_m;
    const unsigned indent = indent_m;
    OPTASSERT(diag_cols > (indent + wrap_indent));
    const std::string margin(indent + wrap_indent, ' ');

    // Breaks only between words; a word too long for any line overflows it.
    // The first word stays where the caller left off, next to the header.
    const char* p = text;
    bool first = true;
    while (*p) {
        if (*p == '\n') {
            put(out, "\n" + margin);
            p++;
            continue;
        }
        if (*p == ' ') {
            p++;
            continue;
        }
        const size_t length = strcspn(p, " \n");
        const std::string word(p, length);
        p += length;
        const size_t separator = column == 0 || last_char == ' ' ? 0 : 1;
        if (!first && column + separator + length > diag_cols && column > margin.size()) {
            put(out, "\n" + margin);
        } else if (separator) {
            put(out, " ");
        }
        put(out, word);
        first = false;
    }
}

void DIAGNOSTIC::show_annotated_source(const char* source_line, unsigned column_number) {
    FILE* out = fp();
    fprintf(out, "%s\n", source_line);
    fprintf(out, "%-*s^\n", static_cast<int>(column_number ? column_number - 1 : 0), "");
}

void DIAGNOSTIC::flush() { fflush(fp()); }

bool DIAGNOSTIC::emit() {
    if (!print_header())
        return false;
    print("(%s)", text_.c_str());
    flush();
    return true;
}

void DIAGNOSTIC::report() {
    emit();
    if (severity() >= DIAG_ERROR) {
        error_count_m++;
        if (max_errors_m && error_count_m >= max_errors_m) {
            DIAG::max_errors limit(__FILE__, __LINE__);
            limit.set_text(format_str(limit.info_->text, max_errors_m));
            limit.report();
        }
    }
}

const char* DIAGNOSTIC::get_sp_buffer() const { return sp_buffer_.c_str(); }

bool DIAGNOSTIC::is_equal(const DIAGNOSTIC& other) const {
    if (code() != other.code() || has_where_ != other.has_where_ || text_ != other.text_)
        return false;
    return !has_where_ || where_.is_equal(other.where_);
}

void DIAGNOSTIC::free_mem() {
    std::string().swap(text_);
    std::string().swap(verbose_);
    std::string().swap(sp_buffer_);
}

void DIAGNOSTIC::dump(FILE* out) const {
    fprintf(out, "Code : %d\n", static_cast<int>(code()));
    fprintf(out, "File : %s\n", has_where_ ? where_.file() : "(none)");
    fprintf(out, "Line : %d\n", has_where_ ? static_cast<int>(where_.line()) : 0);
    fprintf(out, "Column: %d\n", has_where_ ? static_cast<int>(where_.column()) : 0);
    fprintf(out, "std_msg : %s\n", text_.c_str());
    fprintf(out, "vrb_msg : %s\n", verbose_.c_str());
}

namespace DIAG {

void gdebug::report() { DIAGNOSTIC::report(); }
void gremark::report() { DIAGNOSTIC::report(); }
void gadvice::report() { DIAGNOSTIC::report(); }
void gwarning::report() { DIAGNOSTIC::report(); }
void gerror::report() { DIAGNOSTIC::report(); }
void gapperror::report() { DIAGNOSTIC::report(); }

void gfatal::report() {
    DIAGNOSTIC::report();
    opt_exit(1);
}

void gdie::report() {
    DIAGNOSTIC::report();
    opt_exit(1);
}

// Not counted itself: it is the end of the counting.
void max_errors::report() {
    emit();
    opt_exit(1);
}

} // namespace DIAG

std::string USER_MSG::make_msg_str(const char* format, va_list args) {
    va_list measure;
    va_copy(measure, args);
    const int length = vsnprintf(nullptr, 0, format, measure);
    va_end(measure);
    if (length <= 0)
        return std::string();
    try {
        std::string text(static_cast<size_t>(length), '\0');
        vsnprintf(text.data(), text.size() + 1, format, args);
        return text;
    } catch (const std::bad_alloc&) {
        fputs("OUT OF MEMORY - APPLICATION ABORTED\n", stderr);
        opt_exit(1);
    }
}

#define ONDREL_SEND(CLASS, WHERE, LAST)                                                            \
    do {                                                                                           \
        va_list args;                                                                              \
        va_start(args, LAST);                                                                      \
        CLASS msg(__FILE__, __LINE__);                                                             \
        msg.set_srcinfo(WHERE).set_text(make_msg_str(LAST, args));                                 \
        va_end(args);                                                                              \
        msg.report();                                                                              \
    } while (0)

void USER_MSG::debug(const char* format, ...) { ONDREL_SEND(DIAG::gdebug, nullptr, format); }
void USER_MSG::debug(const DIAG_SRCINFO* where, const char* format, ...) {
    ONDREL_SEND(DIAG::gdebug, where, format);
}
void USER_MSG::remark(const char* format, ...) { ONDREL_SEND(DIAG::gremark, nullptr, format); }
void USER_MSG::remark(const DIAG_SRCINFO* where, const char* format, ...) {
    ONDREL_SEND(DIAG::gremark, where, format);
}
void USER_MSG::advice(const char* format, ...) { ONDREL_SEND(DIAG::gadvice, nullptr, format); }
void USER_MSG::advice(const DIAG_SRCINFO* where, const char* format, ...) {
    ONDREL_SEND(DIAG::gadvice, where, format);
}
void USER_MSG::error(const char* format, ...) { ONDREL_SEND(DIAG::gerror, nullptr, format); }
void USER_MSG::error(const DIAG_SRCINFO* where, const char* format, ...) {
    ONDREL_SEND(DIAG::gerror, where, format);
}
void USER_MSG::apperror(const char* format, ...) { ONDREL_SEND(DIAG::gapperror, nullptr, format); }
void USER_MSG::fatal(const char* format, ...) {
    ONDREL_SEND(DIAG::gfatal, nullptr, format);
    opt_exit(1);
}
void USER_MSG::fatal(const DIAG_SRCINFO* where, const char* format, ...) {
    ONDREL_SEND(DIAG::gfatal, where, format);
    opt_exit(1);
}

#undef ONDREL_SEND

namespace {

void send_warning(const DIAG_SRCINFO* where, unsigned code, va_list args) {
    DIAG_INFO* info = DIAGNOSTIC::get_info(code);
    if (!info) {
        get_umsg_obj().apperror("unknown message code %u", code);
        return;
    }
    DIAG::gwarning msg(__FILE__, __LINE__, info);
    msg.set_srcinfo(where).set_text(USER_MSG::make_msg_str(info->text, args));
    msg.report();
}

} // namespace

void USER_MSG::warning(unsigned code, ...) {
    va_list args;
    va_start(args, code);
    send_warning(nullptr, code, args);
    va_end(args);
}

void USER_MSG::warning(const DIAG_SRCINFO* where, unsigned code, ...) {
    va_list args;
    va_start(args, code);
    send_warning(where, code, args);
    va_end(args);
}

void USER_MSG::die(const char* tool, const char* format, ...) {
    // The tool's name becomes part of the format: its own '%' must stay literal.
    std::string combined;
    for (const char* p = tool ? tool : "unknown"; *p; p++) {
        combined += *p;
        if (*p == '%')
            combined += '%';
    }
    combined += ": ";
    combined += format;

    va_list args;
    va_start(args, format);
    DIAG::gdie msg(__FILE__, __LINE__);
    msg.set_text(make_msg_str(combined.c_str(), args));
    va_end(args);
    msg.report();
    opt_exit(1);
}

void USER_MSG::emit_warnings_as_errors(bool on) { DIAGNOSTIC::warnings_as_errors_m = on; }

unsigned USER_MSG::get_error_count() const { return DIAGNOSTIC::error_count_m; }

USER_MSG& get_umsg_obj() {
    static USER_MSG object;
    return object;
}
