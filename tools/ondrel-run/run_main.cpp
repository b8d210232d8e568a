// ondrel-run's command line, the run of main, faults and statistics.
#include <pthread.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>
#include <cstdlib>
#include <cstring>
#include <string>

#include "driver/client.h"
#include "driver/diag.h"
#include "driver/options.h"
#include "ifile/ifile.h"
#include "ir/node.h"
#include "run.h"
#include "support/signalsupport.h"

namespace run {

namespace {

const char* const usage =
    "Usage: ondrel-run [--stats] [--max-steps=N] FILE [ARGUMENTS...]\n"
    "Runs main of the whole program in the intermediate file FILE, with the\n"
    "memory and arithmetic of the 32-bit ARM target.\n"
    "  --stats          print the operations the run executed to standard error\n"
    "  --max-steps=N    end the run as a fault after N operations (default 1000000000)\n"
    "Exit status: the program's; 3 when the program faults; 1 when FILE cannot be run.\n";

bool want_stats = false;

struct RunArgs {
    XFunc* main_fn;
    std::vector<std::string> argv;
};

void* run_thread(void* p) {
    RunArgs& r = *static_cast<RunArgs*>(p);
    Machine& m = *machine;
    std::vector<uint64_t> args;
    std::vector<VT> types;
    if (!r.main_fn->param_slots.empty()) {
        // argv and its strings live on the heap, as the target's start-up
        // code leaves them on the stack: both outlive main's frame.
        const uint32_t argc = static_cast<uint32_t>(r.argv.size());
        const uint32_t vec = m.mem.heap_alloc(4 * (argc + 1));
        for (uint32_t i = 0; i < argc; i++) {
            const std::string& s = r.argv[i];
            const uint32_t at = m.mem.heap_alloc(static_cast<uint32_t>(s.size() + 1));
            memcpy(m.mem.at(at, static_cast<uint32_t>(s.size() + 1), true), s.c_str(),
                   s.size() + 1);
            m.mem.store(vec + 4 * i, 4, at);
        }
        m.mem.store(vec + 4 * argc, 4, 0);
        args = {argc, vec};
        types = {VT{VK::Int, 32, true, false, 4, 4}, VT{VK::Ptr, 32, false, false, 4, 4}};
        args.resize(std::min<size_t>(args.size(), r.main_fn->param_slots.size()));
        types.resize(args.size());
    }
    const uint64_t status = m.call(r.main_fn, args, types);
    finish(r.main_fn->result.k == VK::Int ? static_cast<int>(status & 0xff) : 0);
}

} // namespace

void print_stats(FILE* out) {
    Machine& m = *machine;
    fprintf(out, "ondrel-run statistics\n");
    fprintf(out, "operations %llu\n", static_cast<unsigned long long>(m.steps));
    fprintf(out, "loads %llu\n", static_cast<unsigned long long>(m.stat[ST_LOADS]));
    fprintf(out, "stores %llu\n", static_cast<unsigned long long>(m.stat[ST_STORES]));
    fprintf(out, "calls %llu\n", static_cast<unsigned long long>(m.stat[ST_CALLS]));
    fprintf(out, "branches %llu\n", static_cast<unsigned long long>(m.stat[ST_BRANCHES]));
    for (int op = 0; op < 256; op++)
        if (m.op_count[op])
            fprintf(out, "op %s %llu\n", node_operator_name[op] ? node_operator_name[op] : "?",
                    static_cast<unsigned long long>(m.op_count[op]));
}

void finish(int status) {
    fflush(stdout);
    if (want_stats && machine)
        print_stats(stderr);
    fflush(stderr);
    _exit(status);
}

void fault(const char* fmt, ...) {
    fflush(stdout);
    char text[1024];
    va_list ap;
    va_start(ap, fmt);
    vsnprintf(text, sizeof text, fmt, ap);
    va_end(ap);
    std::string where;
    if (machine) {
        // A library function has no position; its caller's statement does.
        for (auto it = machine->frames.rbegin(); it != machine->frames.rend(); ++it) {
            const Frame* f = *it;
            if (!f->fn || f->fn->lib)
                continue;
            where = " in function " + f->fn->name;
            if (f->psn && f->psn->file)
                where += " at " + std::string(f->psn->file) + ":" + std::to_string(f->psn->line) +
                         ":" + std::to_string(f->psn->column);
            break;
        }
    }
    fprintf(stderr, "ondrel-run: fault%s: %s\n", where.c_str(), text);
    finish(EXIT_FAULT);
}

} // namespace run

int run_main(int argc, char** argv) {
    using namespace run;
    tool_name = "ondrel-run";
    option_obj::executable_name = tool_name;
    install_common_handlers(opt_signal_handler, opt_signal_cleanup);
    uint64_t max_steps = 1000000000ull;
    int i = 1;
    for (; i < argc && argv[i][0] == '-' && argv[i][1]; i++) {
        const char* a = argv[i];
        if (!strcmp(a, "--help") || !strcmp(a, "-h")) {
            fputs(usage, stdout);
            return 0;
        }
        if (!strcmp(a, "--stats")) {
            want_stats = true;
        } else if (!strncmp(a, "--max-steps=", 12)) {
            char* end;
            errno = 0;
            max_steps = strtoull(a + 12, &end, 10);
            if (errno || *end || !a[12] || a[12] == '-') {
                fprintf(stderr, "ondrel-run: bad step count in '%s'\n", a);
                return EXIT_REFUSED;
            }
        } else if (!strcmp(a, "--")) {
            i++;
            break;
        } else {
            fprintf(stderr, "ondrel-run: unknown option '%s'\n%s", a, usage);
            return EXIT_REFUSED;
        }
    }
    if (i >= argc) {
        fputs(usage, stderr);
        return EXIT_REFUSED;
    }
    const char* path = argv[i];
    if (int status = read_file_for_tool(path))
        return status;

    static Machine m;
    machine = &m;
    m.max_steps = max_steps;
    if (!load_program(m))
        return EXIT_REFUSED;
    XFunc* main_fn = nullptr;
    for (auto& fn : m.funcs)
        if (fn->name == "main" && fn->info)
            main_fn = fn.get();
    if (!main_fn) {
        fprintf(stderr, "ondrel-run: cannot run %s: it defines no function main\n", path);
        return EXIT_REFUSED;
    }
    RunArgs r{main_fn, {}};
    for (int k = i; k < argc; k++)
        r.argv.push_back(argv[k]);

    // Deep recursion of the program is deep recursion of the evaluator: the
    // run gets a stack of its own, large enough for the call depth allowed.
    pthread_attr_t attr;
    pthread_attr_init(&attr);
    pthread_attr_setstacksize(&attr, size_t(1) << 30);
    pthread_t thread;
    if (pthread_create(&thread, &attr, run_thread, &r) != 0) {
        fprintf(stderr, "ondrel-run: cannot start the run: %s\n", strerror(errno));
        return EXIT_REFUSED;
    }
    pthread_join(thread, nullptr);
    return 0;
}
