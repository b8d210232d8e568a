// ondrel-dump: prints a whole intermediate file in the text form of the log
// (docs/text-form.md). The file is read by the optimizer's own reader and
// client, in reading-only mode, so the dump shows what the optimizer starts
// from: the same types, symbols, rewrites of the reader and blocks.
#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <unordered_set>
#include <vector>

#include "driver/client.h"
#include "driver/diag.h"
#include "driver/driver.h"
#include "driver/options.h"
#include "ifile/ifile.h"
#include "inline/funinfo.h"
#include "ir/infix.h"
#include "ir/ir.h"
#include "ir/symtab.h"
#include "ir/types.h"
#include "md/md.h"
#include "support/signalsupport.h"

namespace {

const char* const usage = "Usage: ondrel-dump FILE\n"
                          "Prints the intermediate file FILE as text on standard output.\n";

void print_header(FILE* out) {
    fprintf(out, "version %d\n", static_cast<int>(i_file->version));
    fprintf(out, "producer %s\n", string2infix(i_file->producer).c_str());
    for (const ICODE_OPTION_SET& set : icode_optionlist) {
        fprintf(out, "options %u", set.set_number);
        for (unsigned i = 0; i < set.count; i++)
            fprintf(out, " %s", string2infix(set.strings[i]).c_str());
        fprintf(out, "\n");
    }
}

// Every named type of the package, in the order it was made.
void print_types(FILE* out) {
    if (!tp || !tp->root)
        return;
    std::vector<TYPE*> named;
    for (TYPE::TYPE_TREE_ITERATOR it(tp->root), end; it != end; ++it) {
        TYPE* t = *it;
        if ((t->td || t->en || t->csu) && !t->equiv)
            named.push_back(t);
    }
    std::sort(named.begin(), named.end(), [](TYPE* a, TYPE* b) { return a->uid < b->uid; });
    if (named.empty())
        return;
    fprintf(out, "\n");
    for (TYPE* t : named)
        fprintf(out, "%s\n", typedef2infix(t).c_str());
}

void print_globals(FILE* out) {
    std::vector<SYMTAB*> globals;
    for (SYMTAB* s = global_symbols; s; s = s->next)
        globals.push_back(s);
    if (globals.empty())
        return;
    fprintf(out, "\n");
    // The list holds the newest first.
    for (auto it = globals.rbegin(); it != globals.rend(); ++it)
        dump_symbol_infix(out, *it);
}

void print_functions(FILE* out) {
    // A definition read twice stands twice in the list; it is shown once.
    std::unordered_set<FUNINFO*> shown;
    for (SYMTAB* f : functions) {
        FUNINFO* info = find_FUNINFO(skip_name_prefix(f->name));
        if (!info || !shown.insert(info).second)
            continue;
        fprintf(out, "\n");
        dump_function_infix(out, info);
    }
}

} // namespace

int dump_main(int argc, char** argv) {
    tool_name = "ondrel-dump";
    option_obj::executable_name = tool_name;
    install_common_handlers(opt_signal_handler, opt_signal_cleanup);
    if (argc == 2 && (strcmp(argv[1], "--help") == 0 || strcmp(argv[1], "-h") == 0)) {
        fputs(usage, stdout);
        return 0;
    }
    if (argc != 2 || argv[1][0] == '-') {
        fputs(usage, stderr);
        return 1;
    }
    if (int status = read_file_for_tool(argv[1]))
        return status;

    print_header(stdout);
    print_types(stdout);
    print_globals(stdout);
    print_functions(stdout);

    close_file_for_tool();
    if (fflush(stdout) != 0 || ferror(stdout)) {
        fprintf(stderr, "%s: error writing the output: %s\n", tool_name, strerror(errno));
        return 1;
    }
    return 0;
}
