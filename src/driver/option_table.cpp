// The option library: a table of options known by numeric ids, parsed from the
// command line and from the option sets that the parser stored in the input.
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <string>

#include "driver/diag.h"
#include "driver/driver.h"
#include "driver/options.h"

namespace {

enum class arg_kind { flag, number, string, list, choice };

struct choice {
    const char* text;
    int value_id;
};

struct option_def {
    int id;
    const char* name;
    arg_kind kind;
    const choice* choices; // null-terminated, for arg_kind::choice
    const char* help;
};

constexpr choice opt_level_choices[] = {{"0", VAL_OPT_0}, {"1", VAL_OPT_1}, {"2", VAL_OPT_2},
                                        {"3", VAL_OPT_3}, {"4", VAL_OPT_4}, {"off", VAL_OPT_OFF},
                                        {nullptr, 0}};
constexpr choice speed_choices[] = {{"0", VAL_SPEED_0}, {"1", VAL_SPEED_1}, {"2", VAL_SPEED_2},
                                    {"3", VAL_SPEED_3}, {"4", VAL_SPEED_4}, {"5", VAL_SPEED_5},
                                    {nullptr, 0}};
constexpr choice code_state_choices[] = {
    {"32", VAL_CODE_STATE_32}, {"16", VAL_CODE_STATE_16}, {nullptr, 0}};
constexpr choice endian_choices[] = {
    {"big", VAL_BIG_ENDIAN}, {"little", VAL_LITTLE_ENDIAN}, {nullptr, 0}};
constexpr choice float_choices[] = {
    {"none", VAL_FLOAT_NONE},          {"vfpv2", VAL_FLOAT_VFPV2},     {"vfpv3", VAL_FLOAT_VFPV3},
    {"vfpv3d16", VAL_FLOAT_VFPV3_D16}, {"default", VAL_FLOAT_DEFAULT}, {nullptr, 0}};
constexpr choice on_off_strict_fp[] = {
    {"on", VAL_STRICT_FP_ON}, {"off", VAL_STRICT_FP_OFF}, {nullptr, 0}};
constexpr choice fp_mode_choices[] = {
    {"strict", VAL_FP_STRICT}, {"relaxed", VAL_FP_RELAXED}, {nullptr, 0}};
constexpr choice saturating_choices[] = {
    {"strict", VAL_SAT_STRICT}, {"associative", VAL_SAT_ASSOCIATIVE}, {nullptr, 0}};
constexpr choice cpu_choices[] = {
    {"v4", VAL_CPU_V4},   {"v5", VAL_CPU_V5},     {"v6", VAL_CPU_V6},
    {"v6k", VAL_CPU_V6K}, {"v6t2", VAL_CPU_V6T2}, {"v7a", VAL_CPU_V7A},
    {"v7r", VAL_CPU_V7R}, {"v7m", VAL_CPU_V7M},   {nullptr, 0}};
constexpr choice vectorize_choices[] = {
    {"on", VAL_VECTORIZE_ON}, {"off", VAL_VECTORIZE_OFF}, {nullptr, 0}};

constexpr option_def option_defs[] = {
    {OPT_OPT_LEVEL, "opt_level", arg_kind::choice, opt_level_choices,
     "optimization level: 0 to 4, or off (-O0 to -O3 are short forms)"},
    {OPT_SIZE_SPEED, "opt_for_speed", arg_kind::choice, speed_choices,
     "goal between code size (0) and speed (5); 4 by default"},
    {OPT_DEBUG_SWITCHES, "debug", arg_kind::list, nullptr,
     "debug switches: NAME[=VALUE],... (repeatable)"},
    {OPT_ENABLE_SWITCHES, "enable", arg_kind::list, nullptr,
     "enable switches: NAME[=VALUE],... (repeatable)"},
    {OPT_DISABLE_SWITCHES, "disable", arg_kind::list, nullptr,
     "disable switches: NAME[=VALUE],... (repeatable)"},
    {OPT_DEBUG_LEVEL, "debug_level", arg_kind::number, nullptr,
     "write the log (.odb) at this level of detail"},
    {OPT_INFO_LEVEL, "info_level", arg_kind::number, nullptr,
     "write the information file (.nfo) at this level; needs -O3 or a log"},
    {OPT_INFO_FILE, "info_file", arg_kind::string, nullptr, "name of the information file"},
    {OPT_AUTO_INLINE, "auto_inline", arg_kind::number, nullptr, "size limit of automatic inlining"},
    {OPT_CPU, "cpu", arg_kind::choice, cpu_choices,
     "target processor: v4, v5, v6, v6k, v6t2, v7a, v7r, v7m"},
    {OPT_CODE_STATE, "code_state", arg_kind::choice, code_state_choices,
     "instruction set: 32 (ARM) or 16 (Thumb)"},
    {OPT_NEON, "neon", arg_kind::flag, nullptr, "the target has NEON"},
    {OPT_FLOAT_SUPPORT, "float_support", arg_kind::choice, float_choices,
     "floating-point unit: none, vfpv2, vfpv3, vfpv3d16, default"},
    {OPT_FP_MODE, "fp_mode", arg_kind::choice, fp_mode_choices,
     "strict: floating-point addition is not reassociated; relaxed: it may be"},
    {OPT_STRICT_FP, "strict_fp", arg_kind::choice, on_off_strict_fp,
     "strict floating-point semantics: on or off"},
    {OPT_SATURATING_ADD, "saturating_add", arg_kind::choice, saturating_choices,
     "saturating addition: strict or associative"},
    {OPT_VECTORIZE, "vectorize", arg_kind::choice, vectorize_choices,
     "rule-driven vectorization: on or off"},
    {OPT_PROGRAM_MODE, "program_mode", arg_kind::number, nullptr,
     "whole-program assumptions at -O3: 0 none, 1 no outside callers, 3 no outside "
     "writers, other both"},
    {OPT_ABI, "abi", arg_kind::number, nullptr, "ABI of the input (1: 64-bit aligned long long)"},
    {OPT_IGNORE_FILE_OPTIONS, "ignore_file_options", arg_kind::flag, nullptr,
     "ignore the option sets stored in the input"},
    {OPT_ALIAS_VARS, "alias_vars", arg_kind::flag, nullptr, "assume any variable may be aliased"},
    {OPT_AUX, "aux", arg_kind::list, nullptr, "auxiliary debug flags (digits)"},
    {OPT_BIG_ENDIAN, "big_endian", arg_kind::flag, nullptr, "memory is big-endian"},
    {OPT_ENDIAN, "endian", arg_kind::choice, endian_choices, "memory byte order: big or little"},
    {OPT_GDL, "gdl", arg_kind::flag, nullptr, "dump graphs in GDL form"},
    {OPT_DUMP_OPTIONS, "dump_options", arg_kind::flag, nullptr,
     "print the file-level options and stop"},
    {OPT_DWIM, "dwim", arg_kind::flag, nullptr,
     "assume pointer arguments are disjoint and loop increments non-zero"},
    {OPT_DWIM_LOOPS, "dwim_loops", arg_kind::flag, nullptr, "assume loop increments are non-zero"},
    {OPT_FAR_EXTERNS, "far_externs", arg_kind::flag, nullptr, "external data is far"},
    {OPT_INTERRUPT_THRESHOLD, "interrupt_threshold", arg_kind::number, nullptr,
     "interrupt threshold in cycles"},
    {OPT_KR, "kr", arg_kind::flag, nullptr, "the source is K&R C"},
    {OPT_MAX_UNROLL, "max_unroll", arg_kind::number, nullptr,
     "largest size of an unrolled loop (195 by default)"},
    {OPT_NOT_REENTRANT, "not_reentrant", arg_kind::flag, nullptr, "code need not be reentrant"},
    {OPT_SOURCE_INTERLIST, "source_interlist", arg_kind::flag, nullptr,
     "interlist source with the output"},
    {OPT_ARGS_IN_REGS, "args_in_regs", arg_kind::flag, nullptr, "pass arguments in registers"},
    {OPT_REMOVE_HOOKS, "remove_hooks", arg_kind::flag, nullptr,
     "remove entry and exit hooks of inlined functions"},
    {OPT_INLINE_SINGLE, "inline_single", arg_kind::flag, nullptr, "inline functions called once"},
    {OPT_SYS_FUNINFO_MIN, "sys_funinfo_min", arg_kind::flag, nullptr,
     "keep only the basic facts of system functions"},
    {OPT_SYS_FUNINFO, "sys_funinfo", arg_kind::flag, nullptr,
     "keep all facts of system functions (default)"},
    {OPT_NO_SYS_FUNINFO, "no_sys_funinfo", arg_kind::flag, nullptr,
     "keep no facts of system functions"},
    {OPT_UNSIGNED_OK_FOR_RPTB, "unsigned_loop_counters", arg_kind::flag, nullptr,
     "unsigned counters may control hardware loops"},
    {OPT_OLD_CONST_POINTER, "old_const_pointer", arg_kind::flag, nullptr,
     "the older treatment of pointers to const"},
    {OPT_G2, "g2", arg_kind::flag, nullptr, "use the second code generator interface"},
    {OPT_NO_G2, "no_g2", arg_kind::flag, nullptr, "do not use the second code generator interface"},
    {OPT_USE_LLVM, "use_llvm", arg_kind::flag, nullptr,
     "round-trip every function through the low-level form"},
    {OPT_VOLATILE_VARS, "volatile_vars", arg_kind::flag, nullptr,
     "treat every non-auto lvalue as volatile"},
};

const option_def* find_def(const std::string& name) {
    for (const option_def& d : option_defs)
        if (name == d.name)
            return &d;
    return nullptr;
}

const option_def* find_def(int id) {
    for (const option_def& d : option_defs)
        if (d.id == id)
            return &d;
    return nullptr;
}

[[noreturn]] void bad_value(const option_def& d, const std::string& value) {
    fprintf(stderr, "--%s given invalid value: %s\n", d.name, value.c_str());
    abort_optimizer();
}

bool parse_number(const std::string& text, long& out) {
    if (text.empty())
        return false;
    char* end = nullptr;
    errno = 0;
    out = strtol(text.c_str(), &end, 0);
    return errno == 0 && *end == '\0';
}

} // namespace

const char* option_obj::executable_name = "ondrel-opt";
const char* (*option_obj::next_arg)() = nullptr;

bool option_obj::process_option(const char* text, bool from_command_line) {
    std::string arg = text;
    // Short forms first: -O0 to -O3.
    if (arg.size() == 2 && arg[0] == 'O' && arg[1] >= '0' && arg[1] <= '3')
        return apply(OPT_OPT_LEVEL, arg.substr(1), "-opt_level=" + arg.substr(1));
    if (arg.empty() || arg[0] != '-')
        return false;
    arg.erase(0, 1);

    if (arg == "help") {
        print_option_help(stdout);
        exit(0);
    }
    if (arg == "version") {
        printf("%s, version %s\n", optimizer_banner, ONDREL_VERSION);
        exit(0);
    }

    std::string name = arg, value;
    const size_t eq = arg.find('=');
    const bool has_value = eq != std::string::npos;
    if (has_value) {
        name = arg.substr(0, eq);
        value = arg.substr(eq + 1);
    }
    const option_def* d = find_def(name);
    if (!d)
        return false;
    if (d->kind == arg_kind::flag) {
        if (has_value)
            bad_value(*d, value);
        return apply(d->id, "", "-" + name);
    }
    if (!has_value) {
        const char* next = from_command_line && next_arg ? next_arg() : nullptr;
        if (!next) {
            fprintf(stderr, "%s: option --%s needs a value\n", executable_name, d->name);
            opt_exit(1);
        }
        value = next;
    }
    return apply(d->id, value, "-" + name + "=" + value);
}

bool option_obj::apply(int id, const std::string& value, const std::string& spelling) {
    const option_def* d = find_def(id);
    VALUE& v = values[id];
    switch (d->kind) {
    case arg_kind::flag:
        v.num = 1;
        break;
    case arg_kind::number:
        if (!parse_number(value, v.num))
            bad_value(*d, value);
        break;
    case arg_kind::string:
        v.strings.assign(1, value);
        break;
    case arg_kind::list:
        v.strings.push_back(value);
        break;
    case arg_kind::choice: {
        const choice* c = d->choices;
        while (c->text && value != c->text)
            c++;
        if (!c->text)
            bad_value(*d, value);
        v.num = c->value_id;
        break;
    }
    }
    v.set = true;
    order.emplace_back(id, spelling);
    return true;
}

long option_obj::getnumarg(int id, int) const { return values[id].num; }

const char* option_obj::getstrarg(int id, int n) const {
    const VALUE& v = values[id];
    return n < int(v.strings.size()) ? v.strings[n].c_str() : nullptr;
}

int option_obj::getargcount(int id) const {
    const VALUE& v = values[id];
    if (!v.set)
        return 0;
    return v.strings.empty() ? 1 : int(v.strings.size());
}

bool option_obj::is_set(int id) const { return id >= 0 && id < 80 && values[id].set; }

void option_obj::setopt(int id, long value) {
    values[id].set = true;
    values[id].num = value;
}

void option_obj::clearopt(int id) { values[id] = VALUE{}; }

void option_obj::export_option_pairs(std::vector<std::pair<int, std::string>>& out) const {
    out.insert(out.end(), order.begin(), order.end());
}

void option_obj::apply_pairs(const std::vector<std::pair<int, std::string>>& pairs) {
    for (const auto& [id, text] : pairs) {
        const option_def* d = find_def(id);
        // A list option from another set adds to this one's list; any other replaces it.
        if (d && d->kind != arg_kind::list)
            values[id] = VALUE{};
        process_option(text.c_str(), false);
    }
}

std::vector<int> option_obj::set_ids() const {
    std::vector<int> ids;
    for (int id = 0; id < 80; id++)
        if (values[id].set)
            ids.push_back(id);
    return ids;
}

void option_obj::dump(FILE* out) const {
    for (int id : set_ids()) {
        const option_def* d = find_def(id);
        const VALUE& v = values[id];
        if (!d) {
            fprintf(out, "option %d = %ld\n", id, v.num);
            continue;
        }
        switch (d->kind) {
        case arg_kind::flag:
            fprintf(out, "--%s\n", d->name);
            break;
        case arg_kind::number:
            fprintf(out, "--%s=%ld\n", d->name, v.num);
            break;
        case arg_kind::string:
        case arg_kind::list:
            for (const std::string& s : v.strings)
                fprintf(out, "--%s=%s\n", d->name, s.c_str());
            break;
        case arg_kind::choice: {
            const choice* c = d->choices;
            while (c->text && c->value_id != v.num)
                c++;
            fprintf(out, "--%s=%s\n", d->name, c->text ? c->text : "?");
            break;
        }
        }
    }
}

void print_option_help(FILE* out) {
    fprintf(out, "%s\n\nUsage: %s [-options] input [output]\n\n", optimizer_banner,
            option_obj::executable_name);
    fprintf(out, "  %-28s %s\n", "-O0 ... -O3", "optimization level (short form of --opt_level)");
    for (const option_def& d : option_defs) {
        std::string spelling = std::string("--") + d.name;
        if (d.kind != arg_kind::flag)
            spelling += d.kind == arg_kind::choice ? "=VALUE" : "=N";
        if (d.kind == arg_kind::string || d.kind == arg_kind::list)
            spelling.replace(spelling.size() - 1, 1, "TEXT");
        fprintf(out, "  %-28s %s\n", spelling.c_str(), d.help);
    }
    fprintf(out, "  %-28s %s\n", "--help", "print this list and stop");
    fprintf(out, "  %-28s %s\n", "--version", "print the version and stop");
    fprintf(out, "\nThe output is input.opt unless named. Exit status: 0 success, 1 error, "
                 "2 internal fault or signal.\n");
}
