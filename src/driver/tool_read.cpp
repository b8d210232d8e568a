// Reading a whole file for a tool that only looks at it: the optimizer's own
// reader and client in reading-only mode, so that the tool sees what the
// optimizer starts from.
#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>

#include "driver/client.h"
#include "driver/diag.h"
#include "driver/driver.h"
#include "driver/options.h"
#include "ifile/ifile.h"
#include "ir/ir.h"
#include "ir/symtab.h"
#include "ir/types.h"
#include "md/md.h"

namespace {

// The file's option sets decide how it is read (the ABI, the level at which
// globals are pinned, how char pointers alias), as they do for the
// optimizer, and an option the optimizer would refuse is refused here too.
void apply_file_options() {
    unsigned highest = 0;
    for (const ICODE_OPTION_SET& set : icode_optionlist)
        highest = std::max(highest, set.set_number);
    all_option_sets.assign(highest + 1, nullptr);
    for (const ICODE_OPTION_SET& set : icode_optionlist) {
        option_obj*& opts = all_option_sets[set.set_number];
        if (!opts)
            opts = new option_obj;
        for (unsigned i = 0; i < set.count; i++)
            if (set.strings[i][0] && !opts->process_option(set.strings[i] + 1, false)) {
                fprintf(stderr, "%s: unknown option '%s' in option set %u of %s\n", tool_name,
                        set.strings[i], set.set_number, i_file_name);
                opt_exit(1);
            }
    }
    if (!all_option_sets[0])
        all_option_sets[0] = new option_obj;
    file_options = all_option_sets[0];
    reset_global_flags();
    set_global_flags(file_options);
}

} // namespace

int read_file_for_tool(const char* path) {
    snprintf(i_file_name, sizeof i_file_name, "%s", path);

    FILE* in = fopen(i_file_name, "rb");
    if (!in) {
        fprintf(stderr, "%s: cannot open %s: %s\n", tool_name, i_file_name, strerror(errno));
        return 1;
    }
    static IF_CLIENT client;
    i_file = I_FILE::if_open(in, &client);
    if (!i_file) {
        fprintf(stderr, "%s: %s is not an intermediate file of a version this program reads\n",
                tool_name, i_file_name);
        fclose(in);
        return 1;
    }
    apply_file_options();
    tp = new TYPE_PKG;
    if_type_init(tp, i_file);

    // What optimizer_main sets up before it reads, short of the output file,
    // the log and the step list.
    init_opcode_tables();
    init_target();
    tp->cpu_version = cpu_version;
    init_types();
    init_symbols();
    fileinfo = FILEINFO{};
    fileinfo.pass_number = 1;
    function_prepass = true;
    client_reads_only = true;
    i_file->if_read_file();
    currfunc = nullptr;
    currfuninfo = nullptr;

    return 0;
}

void close_file_for_tool() {
    I_FILE* file = i_file;
    i_file = nullptr;
    if (file)
        file->if_close(false, false);
}
