// open_files, the option accessors and the global flags.
#include "driver/options.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <string>

#include "driver/diag.h"
#include "driver/driver.h"
#include "driver/passes.h"
#include "ifile/ifile.h"
#include "inline/inline.h"
#include "ir/symtab.h"
#include "ir/types.h"
#include "support/signalsupport.h"

option_obj* cmdline_options;
std::vector<option_obj*> all_option_sets;
option_obj* file_options;
std::vector<ICODE_OPTION_SET> icode_optionlist;

int alias_vars, inline_single, dump_ocg_in_GDL, dwim_aliases, dwim_loops, far_externs, kr_flag,
    memory_is_big_endian, memory_model, mini_mult, apply_symbolic_methods, pass_args_in_regs,
    source_interlist, unsigned_ok_for_RPTB, volit_vars, old_const_pointer_behavior,
    pointer_args_are_disjoint, loop_increments_are_not_zero, use_g2, arm_neon;
int cache_sys_funinfo, code_is_reentrant, unsigned_index_wraps, chars_alias_other_types, strict_fp,
    program_mode, max_unrolled_loop_size;
unsigned char aux_cmd_flag[10];
int float_support, cpu_version = 7, remove_hooks_when_inlining, decode_mangle_scheme,
                   inhibit_clustering, do_MDF_vectorization;
int no_outside_callers, no_outside_writers, default_o3_auto_inline;

namespace {

int saved_argc;
char** saved_argv;
int arg_index;

const option_obj& current_options() {
    static const option_obj none;
    if (currfunc && currfunc->extra < all_option_sets.size() && all_option_sets[currfunc->extra])
        return *all_option_sets[currfunc->extra];
    return file_options ? *file_options : none;
}

bool is_opt_level_0(long value) { return value == VAL_OPT_0 || value == VAL_OPT_OFF; }

// The input name with its extension (the part after the last dot of the last
// path component) replaced.
std::string replace_extension(const char* name, const char* ext) {
    std::string s = name;
    const size_t slash = s.rfind('/');
    const size_t dot = s.rfind('.');
    if (dot != std::string::npos && (slash == std::string::npos || dot > slash))
        s.erase(dot);
    return s + ext;
}

[[noreturn]] void cannot_open(const char* what, const char* name) {
    fprintf(stderr, "\n>> Cannot Open %s, %s : %s, Aborting\n", what, name, strerror(errno));
    opt_exit(1);
}

} // namespace

const char* next_arg() {
    if (arg_index >= saved_argc)
        return nullptr;
    return saved_argv[arg_index++];
}

void open_files(int argc, char** argv) {
    saved_argc = argc;
    saved_argv = argv;
    cmdline_options = new option_obj;
    if (argc > 0)
        option_obj::executable_name = argv[0];
    option_obj::next_arg = next_arg;

    install_common_handlers(opt_signal_handler, opt_signal_cleanup);

    // The output name becomes o_file_name only when the file is created: a
    // failure before that must not remove a file this run did not write.
    std::string out_name;
    int file_args = 0;
    arg_index = 1;
    while (const char* arg = next_arg()) {
        if (arg[0] == '-') {
            if (!cmdline_options->process_option(arg + 1, true)) {
                fprintf(stderr, "%s: unknown option '%s'\nTry '%s --help' for the options.\n",
                        option_obj::executable_name, arg, option_obj::executable_name);
                opt_exit(1);
            }
            continue;
        }
        file_args++;
        if (file_args == 1)
            snprintf(i_file_name, sizeof i_file_name, "%s", arg);
        else if (file_args == 2)
            out_name = arg;
        else if (file_args > 3)
            printf("\n>>>> OPTIMIZER ERROR: Unexpected options: %s %s %s\n", i_file_name,
                   out_name.c_str(), arg);
    }

    FILE* in = fopen(i_file_name, "rb");
    if (!in) {
        fprintf(stderr, "\n>> Cannot Open Input icode File, %s : %s, Aborting\n", i_file_name,
                strerror(errno));
        opt_exit(1);
    }
    static IF_CLIENT opt_client;
    i_file = I_FILE::if_open(in, &opt_client);
    if (!i_file) {
        fprintf(stderr, "\n>> Error when opening input icode file : %s, Aborting\n", i_file_name);
        fclose(in);
        opt_exit(1);
    }

    std::vector<std::pair<int, std::string>> command_line;
    cmdline_options->export_option_pairs(command_line);
    if (icode_optionlist.empty()) {
        all_option_sets.assign(1, new option_obj);
        all_option_sets[0]->apply_pairs(command_line);
    } else {
        unsigned highest = 0;
        for (const ICODE_OPTION_SET& set : icode_optionlist)
            highest = std::max(highest, set.set_number);
        all_option_sets.assign(highest + 1, nullptr);
        const bool ignore_file = cmdline_options->is_set(OPT_IGNORE_FILE_OPTIONS);
        for (const ICODE_OPTION_SET& set : icode_optionlist) {
            option_obj*& opts = all_option_sets[set.set_number];
            if (!opts)
                opts = new option_obj;
            // The file stores each option with its leading dash.
            for (unsigned i = 0; !ignore_file && i < set.count; i++)
                if (set.strings[i][0] && !opts->process_option(set.strings[i] + 1, false)) {
                    fprintf(stderr, "%s: unknown option '%s' in option set %u of %s\n",
                            option_obj::executable_name, set.strings[i], set.set_number,
                            i_file_name);
                    opt_exit(1);
                }
            opts->apply_pairs(command_line);
        }
        if (!all_option_sets[0]) {
            all_option_sets[0] = new option_obj;
            all_option_sets[0]->apply_pairs(command_line);
        }
    }
    file_options = all_option_sets[0];
    if (file_options->is_set(OPT_DUMP_OPTIONS)) {
        file_options->dump(stdout);
        exit(0);
    }

    reset_global_flags();
    set_global_flags(file_options);

    tp = new TYPE_PKG;
    if_type_init(tp, i_file);

    const bool debug_on = file_options->is_set(OPT_DEBUG_LEVEL);
    if (debug_on &&
        (!file_options->is_set(OPT_INFO_LEVEL) || file_options->getnumarg(OPT_INFO_LEVEL) == 0))
        file_options->setopt(OPT_INFO_LEVEL, 1);
    if (file_options->is_set(OPT_SIZE_SPEED)) {
        const long goal = file_options->getnumarg(OPT_SIZE_SPEED);
        if (goal == VAL_SPEED_0 || goal == VAL_SPEED_3 || goal == VAL_SPEED_2 ||
            goal == VAL_SPEED_1)
            fprintf(stderr, "\n\t*** Optimizing code size, not speed ***\n\n");
    }

    if (file_args == 1) {
        out_name = replace_extension(i_file_name, ".opt");
    } else if (file_args == 0) {
        fprintf(stderr, "Usage: %s [-options] filename\n", option_obj::executable_name);
        opt_exit(1);
    } else if (file_args > 2) {
        fprintf(stderr, "\n>>>> OPTIMIZER ERROR: Garbage on command line\n\n");
        opt_exit(1);
    }

    const long level =
        file_options->is_set(OPT_OPT_LEVEL) ? file_options->getnumarg(OPT_OPT_LEVEL) : 0;
    if (!(level == VAL_OPT_3 || level == VAL_OPT_4 || debug_on))
        file_options->clearopt(OPT_INFO_LEVEL);
    if (file_options->is_set(OPT_INFO_LEVEL) && file_options->getnumarg(OPT_INFO_LEVEL) != 0) {
        const std::string name = file_options->is_set(OPT_INFO_FILE)
                                     ? file_options->getstrarg(OPT_INFO_FILE)
                                     : replace_extension(i_file_name, ".nfo");
        finfo = fopen(name.c_str(), "w");
        if (!finfo)
            cannot_open("Info File", name.c_str());
        write_opt_info = int(file_options->getnumarg(OPT_INFO_LEVEL));
        fprintf(finfo, "Build Number %d\n", ONDREL_BUILD_NUMBER);
    }

    if (debug_on) {
        open_debug_file(1, nullptr);
        print_debug = int(file_options->getnumarg(OPT_DEBUG_LEVEL));
    }

    if (pass_debug("SIMD"))
        do_MDF_vectorization = 1;
    else
        do_MDF_vectorization = file_options->is_set(OPT_VECTORIZE) &&
                               file_options->getnumarg(OPT_VECTORIZE) == VAL_VECTORIZE_ON;

    init_proc_integration();

    FILE* out = fopen(out_name.c_str(), "wb");
    if (!out) {
        fprintf(stderr, "\n>> Cannot Open Output icode File, %s : %s, Aborting\n", out_name.c_str(),
                strerror(errno));
        opt_exit(1);
    }
    snprintf(o_file_name, sizeof o_file_name, "%s", out_name.c_str());
    o_file = I_FILE::if_create(out, tp, i_file->producer);
    // The header's last word is the parser's; it passes through unchanged.
    o_file->extra = i_file->extra;
    for (const ICODE_OPTION_SET& set : icode_optionlist)
        o_file->if_enter_option_set(set.set_number, set.count, set.strings);

    if (volit_vars) {
        dprintf("\n>>>> Warning: All non-auto lvalues are considered VOLATILE.\n\n");
        fprintf(stderr, "\n>>>> Warning: All non-auto lvalues are considered VOLATILE.\n\n");
    }
    emit_cmd_line_text();
}

void emit_cmd_line_text() {
    std::string text = ";\t";
    for (int i = 0; i < saved_argc; i++) {
        if (i)
            text += ' ';
        text += saved_argv[i];
    }
    o_file->i_write_string(text.c_str(), 0);
    o_file->i_flush(47);
    if (!print_debug)
        return;
    for (const ICODE_OPTION_SET& set : icode_optionlist) {
        dprintf("Option set %d%s:\n", int(set.set_number),
                set.set_number == 0 ? " (file-level options)" : "");
        for (unsigned i = 0; i < set.count; i++)
            dprintf("\t%s\n", set.strings[i]);
    }
}

void open_debug_file(int must_succeed, const char* name) {
    if (fdebug && !name)
        return;
    std::string path = replace_extension(i_file_name, "");
    if (name)
        path += std::string(".") + name;
    if (path.size() > 250)
        path.resize(250);
    path += ".odb";
    if (fdebug)
        fprintf(fdebug, ">>>> SWITCHING LOG TO %s\n", path.c_str());
    FILE* f = fopen(path.c_str(), "w");
    if (!f) {
        fprintf(stderr, "\n>> Cannot Open Debug File, %s : %s, Aborting\n", path.c_str(),
                strerror(errno));
        if (must_succeed)
            opt_exit(1);
        f = stderr;
    }
    fdebug = f;
}

void close_files() {
    // The output first: its global section carries positions that point at
    // the input's file names, which die with the input.
    if (o_file) {
        I_FILE* out = o_file;
        o_file = nullptr;
        if (out->if_close(true, false) != 0) {
            fprintf(stderr, "\n>> Error when writing output icode file : %s, Aborting\n",
                    o_file_name);
            opt_exit(1);
        }
    }
    if (i_file) {
        I_FILE* in = i_file;
        i_file = nullptr;
        in->if_close(true, false);
    }
    if (print_debug) {
        fprintf(fdebug, "\n== END OF DEBUG OUTPUT==\n");
        fclose(fdebug);
        fdebug = nullptr;
    }
    if (write_opt_info) {
        fprintf(finfo, "\n== END OF INFO OUTPUT==\n");
        fclose(finfo);
        finfo = nullptr;
    }
}

void reset_global_flags() {
    alias_vars = inline_single = dump_ocg_in_GDL = dwim_aliases = dwim_loops = far_externs =
        kr_flag = memory_is_big_endian = memory_model = mini_mult = apply_symbolic_methods =
            pass_args_in_regs = source_interlist = unsigned_ok_for_RPTB = volit_vars =
                old_const_pointer_behavior = pointer_args_are_disjoint =
                    loop_increments_are_not_zero = use_g2 = arm_neon = 0;
    cache_sys_funinfo = 2;
    code_is_reentrant = unsigned_index_wraps = chars_alias_other_types = strict_fp = 1;
    program_mode = -1;
    max_unrolled_loop_size = 195;
    memset(aux_cmd_flag, 0, sizeof aux_cmd_flag);
}

namespace {

int cpu_version_of(long value) {
    switch (value) {
    case VAL_CPU_V4:
        return 0;
    case VAL_CPU_V5:
        return 5;
    case VAL_CPU_V6:
    case VAL_CPU_V6K:
        return 6;
    case VAL_CPU_V6T2:
        return 78;
    case VAL_CPU_V7A:
        return 73;
    case VAL_CPU_V7R:
        return 734;
    case VAL_CPU_V7M:
        return 74;
    default:
        return 7;
    }
}

} // namespace

void set_global_flags(option_obj* options) {
    const bool debug_on = options->is_set(OPT_DEBUG_LEVEL);
    for (int id : options->set_ids()) {
        const long value = options->getnumarg(id);
        switch (id) {
        case OPT_ABI:
            if (value == 1) {
                TYPE_PKG::abi = 1;
                decode_mangle_scheme = 1;
            }
            break;
        case OPT_ALIAS_VARS:
            alias_vars = 1;
            break;
        case OPT_AUX:
            for (int i = 0; i < options->getargcount(id); i++) {
                const char* s = options->getstrarg(id, i);
                if (debug_on && s && s[0] >= '0' && s[0] <= '9')
                    aux_cmd_flag[s[0] - '0'] = 1;
            }
            break;
        case OPT_BIG_ENDIAN:
            memory_is_big_endian = 1;
            break;
        case OPT_PROGRAM_MODE:
            program_mode = int(value);
            break;
        case OPT_DEBUG_SWITCHES:
        case OPT_DISABLE_SWITCHES:
        case OPT_ENABLE_SWITCHES: {
            const char* kind = id == OPT_DEBUG_SWITCHES     ? "debug"
                               : id == OPT_DISABLE_SWITCHES ? "disable"
                                                            : "enable";
            for (int i = 0; i < options->getargcount(id); i++)
                process_debug_option(kind, options->getstrarg(id, i));
            break;
        }
        case OPT_GDL:
            dump_ocg_in_GDL = 1;
            break;
        case OPT_DWIM_LOOPS:
            dwim_loops = 1;
            break;
        case OPT_ENDIAN:
            memory_is_big_endian = value == VAL_BIG_ENDIAN;
            break;
        case OPT_FAR_EXTERNS:
            far_externs = 1;
            break;
        case OPT_FLOAT_SUPPORT:
            if (value != VAL_FLOAT_DEFAULT)
                float_support = int(value);
            break;
        case OPT_STRICT_FP:
            if (value == VAL_STRICT_FP_ON)
                strict_fp = 1;
            else if (value == VAL_STRICT_FP_OFF)
                strict_fp = 0;
            break;
        case OPT_KR:
            kr_flag = 1;
            break;
        case OPT_MAX_UNROLL:
            max_unrolled_loop_size = int(value);
            break;
        case OPT_NEON:
            arm_neon = 1;
            break;
        case OPT_DWIM:
            dwim_aliases = dwim_loops = 1;
            break;
        case OPT_NOT_REENTRANT:
            code_is_reentrant = 0;
            break;
        case OPT_OPT_LEVEL:
            if (value < VAL_OPT_0 || value > VAL_OPT_OFF) {
                fprintf(stderr, "--opt_level given invalid value: %ld\n", value);
                abort_optimizer();
            }
            break;
        case OPT_SOURCE_INTERLIST:
            source_interlist = 1;
            break;
        case OPT_ARGS_IN_REGS:
            pass_args_in_regs = 1;
            break;
        case OPT_REMOVE_HOOKS:
            remove_hooks_when_inlining = 1;
            break;
        case OPT_CPU:
            cpu_version = cpu_version_of(value);
            if (tp)
                tp->cpu_version = cpu_version;
            break;
        case OPT_INLINE_SINGLE:
            inline_single = 1;
            break;
        case OPT_SIZE_SPEED:
            if (value < VAL_SPEED_5 || value > VAL_SPEED_1) {
                fprintf(stderr, "--size_speed_goal given invalid value:  %ld\n", value);
                abort_optimizer();
            }
            break;
        case OPT_SYS_FUNINFO_MIN:
            cache_sys_funinfo = 1;
            break;
        case OPT_SYS_FUNINFO:
            cache_sys_funinfo = 2;
            break;
        case OPT_NO_SYS_FUNINFO:
            cache_sys_funinfo = 0;
            break;
        case OPT_UNSIGNED_OK_FOR_RPTB:
            unsigned_ok_for_RPTB = 1;
            break;
        case OPT_OLD_CONST_POINTER:
            old_const_pointer_behavior = 1;
            break;
        case OPT_G2:
            use_g2 = 1;
            break;
        case OPT_NO_G2:
            use_g2 = 0;
            break;
        case OPT_VOLATILE_VARS:
            volit_vars = 1;
            break;
        default:
            break;
        }
    }

    if (!(file_options && file_options->is_set(OPT_DEBUG_LEVEL)))
        memset(aux_cmd_flag, 0, sizeof aux_cmd_flag);
    if (dwim_aliases) {
        alias_vars = 0;
        chars_alias_other_types = 0;
        pointer_args_are_disjoint = 1;
    }
    if (dwim_loops)
        loop_increments_are_not_zero = 1;
    if (options->is_set(OPT_OPT_LEVEL) && is_opt_level_0(options->getnumarg(OPT_OPT_LEVEL)))
        alias_vars = 1;
    for (const option_obj* set : all_option_sets)
        if (set && set->is_set(OPT_OPT_LEVEL) && is_opt_level_0(set->getnumarg(OPT_OPT_LEVEL)))
            inhibit_clustering = 1;
}

void restore_global_flags() {
    if (!print_debug)
        return;
    dprintf("[Restoring options");
    dprintf(" --> -o%d -i%d", opt_level(), auto_inline());
    dprintf(" --opt_for_speed=%d", size_speed_goal());
    dprintf("]\n");
}

int opt_level() {
    const option_obj& o = current_options();
    if (!o.is_set(OPT_OPT_LEVEL))
        return 1;
    switch (o.getnumarg(OPT_OPT_LEVEL)) {
    case VAL_OPT_0:
    case VAL_OPT_OFF:
        return 0;
    case VAL_OPT_2:
        return 2;
    case VAL_OPT_3:
        return 3;
    case VAL_OPT_4:
        return 4;
    default:
        return 1;
    }
}

int size_speed_goal() {
    const option_obj& o = current_options();
    if (!o.is_set(OPT_SIZE_SPEED))
        return 4;
    switch (o.getnumarg(OPT_SIZE_SPEED)) {
    case VAL_SPEED_5:
        return 5;
    case VAL_SPEED_0:
        return 0;
    case VAL_SPEED_3:
        return 3;
    case VAL_SPEED_2:
        return 2;
    case VAL_SPEED_1:
        return 1;
    default:
        return 4;
    }
}

int auto_inline() {
    const option_obj& o = current_options();
    if (o.is_set(OPT_AUTO_INLINE))
        return int(o.getnumarg(OPT_AUTO_INLINE));
    if (pass_disable("newinline"))
        return 1;
    if (!o.is_set(OPT_OPT_LEVEL))
        return 0;
    switch (o.getnumarg(OPT_OPT_LEVEL)) {
    case VAL_OPT_2:
        return 20;
    case VAL_OPT_3:
    case VAL_OPT_4:
        return default_o3_auto_inline;
    default:
        return 0;
    }
}

bool code_state() {
    if (currfunc)
        for (const PRAGMA* p = currfunc->pragmas; p; p = p->next)
            if (p->kind == PRAGMA_CODE_STATE && p->nargs == 1) {
                if (strcmp(p->args[0], "16") == 0)
                    return true;
                if (strcmp(p->args[0], "32") == 0)
                    return false;
            }
    const option_obj& o = current_options();
    return o.is_set(OPT_CODE_STATE) && o.getnumarg(OPT_CODE_STATE) == VAL_CODE_STATE_16;
}

bool thumb_2_mode() {
    if (cpu_version != 78 && cpu_version != 734 && cpu_version != 73 && cpu_version != 74)
        return false;
    return code_state();
}

bool fp_add_is_associative() {
    const option_obj& o = current_options();
    return !o.is_set(OPT_FP_MODE) || o.getnumarg(OPT_FP_MODE) != VAL_FP_STRICT;
}

bool saturating_add_is_associative() {
    const option_obj& o = current_options();
    return o.is_set(OPT_SATURATING_ADD) && o.getnumarg(OPT_SATURATING_ADD) == VAL_SAT_ASSOCIATIVE;
}

int interrupt_threshold() {
    const option_obj& o = current_options();
    return o.is_set(OPT_INTERRUPT_THRESHOLD) ? int(o.getnumarg(OPT_INTERRUPT_THRESHOLD)) : 0;
}

bool use_llvm() { return current_options().is_set(OPT_USE_LLVM); }
