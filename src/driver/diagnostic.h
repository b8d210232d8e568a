// The message library shared by the tools of the chain: numbered messages with
// a severity, an optional source position, and class-wide display settings.
#pragma once

#include <cstdarg>
#include <cstdio>
#include <string>

enum DIAG_SEVERITY : unsigned char {
    DIAG_SUPPRESSED = 0,
    DIAG_NO_ERROR = 1,
    DIAG_ADVICE = 2,
    DIAG_DEBUG = 3,
    DIAG_REMARK = 4,
    DIAG_WARNING = 5,
    DIAG_ERROR = 6,
    DIAG_FATAL = 7,
};

// Flag bits of a table entry.
enum : unsigned char {
    DIAG_DISCRETIONARY = 0x01, // the user may change its severity
    DIAG_INTERNAL = 0x02,      // a fault of the tool, not of its input
};

// Codes of the table entries.
enum : unsigned {
    DIAG_CODE_DEBUG = 6000,
    DIAG_CODE_REMARK = 6001,
    DIAG_CODE_ADVICE = 6002,
    DIAG_CODE_WARNING = 6003,
    DIAG_CODE_ERROR = 6004,
    DIAG_CODE_APPERROR = 6005,
    DIAG_CODE_FATAL = 6006,
    DIAG_CODE_DIE = 6007,
    DIAG_CODE_MAX_ERRORS = 6008,
    DIAG_CODE_NOT_VECTORIZED = 6009,
    DIAG_CODE_NOT_INLINED = 6010,
};

struct DIAG_INFO {
    unsigned code;
    const char* text; // the printf format of the message
    const char* word; // a name for the code, accepted where a code is
    unsigned char severity;
    unsigned char flags;
};

extern DIAG_INFO DIAG_INFO_ENTRY[];
extern const unsigned DIAG_INFO_COUNT;

// A position in the tool's input.
class DIAG_SRCINFO {
public:
    virtual ~DIAG_SRCINFO() = default;
    virtual const char* file() const = 0;
    virtual unsigned line() const = 0;
    virtual unsigned column() const = 0;
    virtual bool approx() const = 0;
    virtual bool is_equal(const DIAG_SRCINFO& other) const;
};

class DIAG_SRCINFO_DATA : public DIAG_SRCINFO {
public:
    DIAG_SRCINFO_DATA() = default;
    DIAG_SRCINFO_DATA(std::string file, unsigned line, unsigned column = 0, bool approx = false)
        : file_(std::move(file)), line_(line), column_(column), approx_(approx) {}
    explicit DIAG_SRCINFO_DATA(const DIAG_SRCINFO& other)
        : DIAG_SRCINFO_DATA(other.file() ? other.file() : "", other.line(), other.column(),
                            other.approx()) {}
    const char* file() const override { return file_.c_str(); }
    unsigned line() const override { return line_; }
    unsigned column() const override { return column_; }
    bool approx() const override { return approx_; }

private:
    std::string file_;
    unsigned line_ = 0;
    unsigned column_ = 0;
    bool approx_ = false;
};

class DIAGNOSTIC {
public:
    // file and line are the place in the tool's own source that raised it.
    DIAGNOSTIC(DIAG_INFO* info, const char* file, unsigned line);
    virtual ~DIAGNOSTIC() = default;

    // A copy on the heap, for callers that keep messages to sort or merge them.
    virtual DIAGNOSTIC* alloc() const = 0;
    // Prints the message if its severity is shown, and counts errors.
    virtual void report();
    // The text of the source position, empty without one.
    virtual const char* get_sp_buffer() const;
    virtual bool is_equal(const DIAGNOSTIC& other) const;
    virtual void free_mem();
    virtual void dump(FILE* out) const;

    DIAGNOSTIC& set_text(std::string text);
    DIAGNOSTIC& set_verbose(std::string text);
    DIAGNOSTIC& set_srcinfo(const DIAG_SRCINFO* where);

    unsigned code() const { return info_->code; }
    // The shown severity: the table's, after overrides and warnings-as-errors.
    unsigned severity() const;
    bool is_internal() const { return info_->flags & DIAG_INTERNAL; }
    bool is_discretionary() const { return info_->flags & DIAG_DISCRETIONARY; }
    FILE* fp() const;

    static const char* sev_str(unsigned severity);
    static DIAG_INFO* get_info(unsigned code);
    static DIAG_INFO* get_info(const char* code_or_word);
    static bool is_discretionary(unsigned code);
    // Changes the severity of discretionary codes; false when nothing changed.
    static bool override_severity(unsigned code, unsigned severity);
    static bool override_severity(const char* code_or_word, unsigned severity);
    static bool override_all_of_severity(unsigned from, unsigned to);
    static bool suppress(unsigned code);
    // "<file>, line <n> (approximate)", the form of a position in the header.
    static std::string srcinfo_str(const DIAG_SRCINFO& where);
    // Back to the table as built, with all overrides undone.
    static void reset_table();

    // The line of source and a caret under the column, counted from 1.
    void show_annotated_source(const char* source_line, unsigned column);

    // Class-wide settings.
    static unsigned indent_m;
    static bool wrap_enabled_m;
    static bool wrap_headers_m;
    static bool display_ipos_m;
    static bool display_code_m;
    static bool advice_m;
    static bool debug_m;
    static bool remarks_m;
    static bool warnings_m;
    static bool warnings_as_errors_m;
    static unsigned max_errors_m; // 0: no limit
    static unsigned error_count_m;
    static FILE* fp_m; // null: by severity
    static unsigned cols_m;

protected:
    // Returns false, printing nothing, when the severity is not shown.
    bool print_header();
    void print(const char* format, ...) __attribute__((format(printf, 2, 3)));
    // Prints the text and a newline, wrapped at cols_m when wrapping is on;
    // continuation lines start at indent_m + wrap_indent.
    void print_formatted(const char* text, unsigned wrap_indent);
    void put_words(FILE* out, const char* text, unsigned wrap_indent);
    void flush();
    // The common body of report: header, text, flush.
    bool emit();

    DIAG_INFO* info_;
    const char* file_;
    unsigned line_;
    std::string text_;
    std::string verbose_;
    bool has_where_ = false;
    DIAG_SRCINFO_DATA where_;
    std::string sp_buffer_;
};

namespace DIAG {

#define ONDREL_DIAG_CLASS(NAME, CODE)                                                              \
    class NAME : public DIAGNOSTIC {                                                               \
    public:                                                                                        \
        NAME(const char* file, unsigned line, DIAG_INFO* info = get_info(CODE))                    \
            : DIAGNOSTIC(info, file, line) {}                                                      \
        DIAGNOSTIC* alloc() const override { return new NAME(*this); }                             \
        void report() override;                                                                    \
    };

ONDREL_DIAG_CLASS(gdebug, DIAG_CODE_DEBUG)
ONDREL_DIAG_CLASS(gremark, DIAG_CODE_REMARK)
ONDREL_DIAG_CLASS(gadvice, DIAG_CODE_ADVICE)
ONDREL_DIAG_CLASS(gwarning, DIAG_CODE_WARNING)
ONDREL_DIAG_CLASS(gerror, DIAG_CODE_ERROR)
ONDREL_DIAG_CLASS(gapperror, DIAG_CODE_APPERROR)
ONDREL_DIAG_CLASS(gfatal, DIAG_CODE_FATAL)
ONDREL_DIAG_CLASS(gdie, DIAG_CODE_DIE)
ONDREL_DIAG_CLASS(max_errors, DIAG_CODE_MAX_ERRORS)

#undef ONDREL_DIAG_CLASS

} // namespace DIAG

// The tools' entry to the library. Stateless: all state is class-wide in
// DIAGNOSTIC.
class USER_MSG {
public:
    void debug(const char* format, ...) __attribute__((format(printf, 2, 3)));
    void debug(const DIAG_SRCINFO* where, const char* format, ...)
        __attribute__((format(printf, 3, 4)));
    void remark(const char* format, ...) __attribute__((format(printf, 2, 3)));
    void remark(const DIAG_SRCINFO* where, const char* format, ...)
        __attribute__((format(printf, 3, 4)));
    void advice(const char* format, ...) __attribute__((format(printf, 2, 3)));
    void advice(const DIAG_SRCINFO* where, const char* format, ...)
        __attribute__((format(printf, 3, 4)));
    void error(const char* format, ...) __attribute__((format(printf, 2, 3)));
    void error(const DIAG_SRCINFO* where, const char* format, ...)
        __attribute__((format(printf, 3, 4)));
    // The code's table text is the format of the arguments.
    void warning(unsigned code, ...);
    void warning(const DIAG_SRCINFO* where, unsigned code, ...);
    void apperror(const char* format, ...) __attribute__((format(printf, 2, 3)));
    [[noreturn]] void fatal(const char* format, ...) __attribute__((format(printf, 2, 3)));
    [[noreturn]] void fatal(const DIAG_SRCINFO* where, const char* format, ...)
        __attribute__((format(printf, 3, 4)));
    [[noreturn]] void die(const char* tool, const char* format, ...)
        __attribute__((format(printf, 3, 4)));
    void emit_warnings_as_errors(bool on = true);
    unsigned get_error_count() const;

    static std::string make_msg_str(const char* format, va_list args);
};

USER_MSG& get_umsg_obj();
