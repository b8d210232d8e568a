// The command line, the option sets of the input and the global flags.
#pragma once

#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

// A table-driven set of options. An option is known by its numeric id; an
// enumerated option's value is a numeric value id.
class option_obj {
public:
    // Parses one option, given without its first dash. Options with a separate
    // argument take it from next_arg. Returns false for an unknown option.
    bool process_option(const char* text, bool from_command_line);
    long getnumarg(int id, int n = 0) const;
    const char* getstrarg(int id, int n = 0) const;
    int getargcount(int id) const;
    bool is_set(int id) const;
    void setopt(int id, long value);
    void clearopt(int id);
    // Applies the options set on `other` to this object, in their order.
    void export_option_pairs(std::vector<std::pair<int, std::string>>& out) const;
    void apply_pairs(const std::vector<std::pair<int, std::string>>& pairs);
    void dump(FILE* out) const;
    // The ids of the set options, in ascending order.
    std::vector<int> set_ids() const;

    static const char* executable_name;
    static const char* (*next_arg)();

private:
    struct VALUE {
        bool set = false;
        long num = 0;
        std::vector<std::string> strings;
    };
    VALUE values[80];
    std::vector<std::pair<int, std::string>> order;
    bool apply(int id, const std::string& value, const std::string& spelling);
};

void print_option_help(FILE* out);

// Option ids.
enum : int {
    OPT_ABI = 1,
    OPT_IGNORE_FILE_OPTIONS = 2,
    OPT_ALIAS_VARS = 3,
    OPT_AUTO_INLINE = 4,
    OPT_AUX = 5,
    OPT_BIG_ENDIAN = 6,
    OPT_PROGRAM_MODE = 8,
    OPT_CODE_STATE = 10,
    OPT_DEBUG_SWITCHES = 11,
    OPT_DISABLE_SWITCHES = 14,
    OPT_GDL = 16,
    OPT_DUMP_OPTIONS = 17,
    OPT_DWIM_LOOPS = 18,
    OPT_ENABLE_SWITCHES = 19,
    OPT_ENDIAN = 20,
    OPT_FAR_EXTERNS = 21,
    OPT_FLOAT_SUPPORT = 22,
    OPT_STRICT_FP = 23,
    OPT_FP_MODE = 24,
    OPT_INFO_LEVEL = 27,
    OPT_INTERRUPT_THRESHOLD = 31,
    OPT_KR = 33,
    OPT_MAX_UNROLL = 34,
    OPT_NEON = 37,
    OPT_DWIM = 38,
    OPT_NOT_REENTRANT = 39,
    OPT_INFO_FILE = 43,
    OPT_OPT_LEVEL = 44,
    OPT_SOURCE_INTERLIST = 45,
    OPT_ARGS_IN_REGS = 46,
    OPT_DEBUG_LEVEL = 47,
    OPT_REMOVE_HOOKS = 48,
    OPT_SATURATING_ADD = 49,
    OPT_CPU = 51,
    OPT_INLINE_SINGLE = 52,
    OPT_SIZE_SPEED = 53,
    OPT_SYS_FUNINFO_MIN = 54,
    OPT_SYS_FUNINFO = 55,
    OPT_NO_SYS_FUNINFO = 56,
    OPT_UNSIGNED_OK_FOR_RPTB = 59,
    OPT_OLD_CONST_POINTER = 61,
    OPT_G2 = 62,
    OPT_NO_G2 = 63,
    OPT_USE_LLVM = 64,
    OPT_VECTORIZE = 65,
    OPT_VOLATILE_VARS = 66,
};

// Value ids of the enumerated options.
enum : int {
    VAL_CODE_STATE_32 = 3,
    VAL_CODE_STATE_16 = 4,
    VAL_BIG_ENDIAN = 8,
    VAL_LITTLE_ENDIAN = 9,
    VAL_FLOAT_NONE = 11,
    VAL_FLOAT_VFPV2 = 12,
    VAL_FLOAT_VFPV3 = 13,
    VAL_FLOAT_VFPV3_D16 = 14,
    VAL_FLOAT_DEFAULT = 15,
    VAL_STRICT_FP_OFF = 16,
    VAL_STRICT_FP_ON = 17,
    VAL_FP_STRICT = 18,
    VAL_FP_RELAXED = 19,
    VAL_OPT_0 = 36,
    VAL_OPT_1 = 37,
    VAL_OPT_2 = 38,
    VAL_OPT_3 = 39,
    VAL_OPT_4 = 40,
    VAL_OPT_OFF = 41,
    VAL_SAT_STRICT = 42,
    VAL_SAT_ASSOCIATIVE = 43,
    VAL_CPU_V4 = 46,
    VAL_CPU_V5 = 47,
    VAL_CPU_V6 = 48,
    VAL_CPU_V6K = 49,
    VAL_CPU_V6T2 = 50,
    VAL_CPU_V7A = 51,
    VAL_CPU_V7R = 52,
    VAL_CPU_V7M = 53,
    VAL_SPEED_5 = 54,
    VAL_SPEED_0 = 55,
    VAL_SPEED_3 = 56,
    VAL_SPEED_2 = 57,
    VAL_SPEED_4 = 58,
    VAL_SPEED_1 = 59,
    VAL_VECTORIZE_OFF = 60,
    VAL_VECTORIZE_ON = 61,
};

extern char i_file_name[2048];
extern char o_file_name[2048];
extern char bug_file_name[2048];
extern option_obj* cmdline_options;
extern std::vector<option_obj*> all_option_sets;
extern option_obj* file_options;

struct ICODE_OPTION_SET {
    unsigned set_number;
    unsigned count;
    char** strings;
};
extern std::vector<ICODE_OPTION_SET> icode_optionlist;

void open_files(int argc, char** argv);
const char* next_arg();
void reset_global_flags();
void set_global_flags(option_obj* options);
void restore_global_flags();
void open_debug_file(int must_succeed, const char* name);
void close_files();
void emit_cmd_line_text();

// Accessors for the current function (file level when currfunc is null).
int opt_level();
int size_speed_goal();
int auto_inline();
bool code_state();
bool thumb_2_mode();
bool fp_add_is_associative();
bool saturating_add_is_associative();
int interrupt_threshold();
bool use_llvm();

// Global flags.
extern int alias_vars, inline_single, dump_ocg_in_GDL, dwim_aliases, dwim_loops, far_externs,
    kr_flag, memory_is_big_endian, memory_model, mini_mult, apply_symbolic_methods,
    pass_args_in_regs, source_interlist, unsigned_ok_for_RPTB, volit_vars,
    old_const_pointer_behavior, pointer_args_are_disjoint, loop_increments_are_not_zero, use_g2,
    arm_neon;
extern int cache_sys_funinfo, code_is_reentrant, unsigned_index_wraps, chars_alias_other_types,
    strict_fp, program_mode, max_unrolled_loop_size;
extern unsigned char aux_cmd_flag[10];
extern int float_support, cpu_version, remove_hooks_when_inlining, decode_mangle_scheme,
    inhibit_clustering, do_MDF_vectorization;
extern int no_outside_callers, no_outside_writers, default_o3_auto_inline;
