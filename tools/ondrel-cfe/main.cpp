// ondrel-cfe [options] file.c [-o file.if]
//
// Parses a C file with Clang for 32-bit ARM (armv7a-linux-gnueabihf, the
// headers of Debian's cross compiler) and writes the translation unit as an
// intermediate file for ondrel-opt, with the options that concern the
// optimizer stored in the file's option set 0.
#include <clang/AST/ASTConsumer.h>
#include <clang/Basic/Version.h>
#include <clang/Frontend/CompilerInstance.h>
#include <clang/Frontend/FrontendAction.h>
#include <clang/Frontend/TextDiagnosticPrinter.h>
#include <clang/Frontend/Utils.h>
#include <llvm/Support/raw_ostream.h>

#include <sys/stat.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "cfe.h"
#include "driver/driver.h"
#include "driver/options.h"

#ifndef ONDREL_ARM_GCC_INCLUDE
#define ONDREL_ARM_GCC_INCLUDE "/usr/lib/gcc-cross/arm-linux-gnueabihf/12/include"
#endif
#ifndef ONDREL_ARM_SYSROOT_INCLUDE
#define ONDREL_ARM_SYSROOT_INCLUDE "/usr/arm-linux-gnueabihf/include"
#endif

namespace {

const char* const tool = "ondrel-cfe";
const char* const target_triple = "armv7a-unknown-linux-gnueabihf";

const char* const usage =
    "Usage: ondrel-cfe [options] file.c [-o file.if]\n"
    "\n"
    "Translates a C file for 32-bit ARM into an intermediate file for ondrel-opt\n"
    "(file.if by default). Options:\n"
    "  -o FILE              output file\n"
    "  -D, -U, -I, -include, -isystem, -std=, -W..., -w, -f...\n"
    "                       passed to Clang\n"
    "  -O0 ... -O3, -Os     optimization level, size goal (stored for ondrel-opt)\n"
    "  -mcpu=CPU, -march=ARCH\n"
    "                       processor, ARMv4 to ARMv7 (cortex-a8, armv7-a, arm7tdmi, ...)\n"
    "  -mthumb, -marm       Thumb or ARM code\n"
    "  -mfpu=FPU            vfp, vfpv2, vfpv3, vfpv3-d16, neon, none\n"
    "  -mfloat-abi=soft     no floating-point unit\n"
    "  -ffast-math          floating-point addition may be reassociated\n"
    "  -fvectorize          rule-driven vectorization\n"
    "  --help, --version\n";

struct OPTIONS {
    std::string input;
    std::string output;
    std::vector<std::string> clang_args;
    int opt_level = -1;
    bool size = false;
    std::string cpu = "v7a";
    bool thumb = false;
    std::string float_support = "vfpv3d16";
    bool neon = false;
    bool fast_math = false;
    int vectorize = -1;
};

[[noreturn]] void fail(const std::string& text) {
    fprintf(stderr, "%s: error: %s\n", tool, text.c_str());
    exit(1);
}

bool starts(const std::string& s, const char* prefix) { return s.rfind(prefix, 0) == 0; }

// The processor's architecture version among those the optimizer knows.
std::string cpu_for(const std::string& cpu) {
    static const std::pair<const char*, const char*> table[] = {
        {"arm7tdmi", "v4"},       {"arm7tdmi-s", "v4"},    {"arm720t", "v4"},
        {"arm9tdmi", "v4"},       {"arm920t", "v4"},       {"arm922t", "v4"},
        {"strongarm", "v4"},      {"arm9e", "v5"},         {"arm926ej-s", "v5"},
        {"arm946e-s", "v5"},      {"arm966e-s", "v5"},     {"arm1020e", "v5"},
        {"arm1022e", "v5"},       {"arm10e", "v5"},        {"xscale", "v5"},
        {"arm1136j-s", "v6"},     {"arm1136jf-s", "v6"},   {"cortex-m0", "v6"},
        {"cortex-m0plus", "v6"},  {"cortex-m1", "v6"},     {"mpcore", "v6k"},
        {"arm1176jz-s", "v6k"},   {"arm1176jzf-s", "v6k"}, {"arm1156t2-s", "v6t2"},
        {"arm1156t2f-s", "v6t2"}, {"cortex-a5", "v7a"},    {"cortex-a7", "v7a"},
        {"cortex-a8", "v7a"},     {"cortex-a9", "v7a"},    {"cortex-a12", "v7a"},
        {"cortex-a15", "v7a"},    {"cortex-a17", "v7a"},   {"cortex-r4", "v7r"},
        {"cortex-r4f", "v7r"},    {"cortex-r5", "v7r"},    {"cortex-r7", "v7r"},
        {"cortex-r8", "v7r"},     {"cortex-m3", "v7m"},    {"cortex-m4", "v7m"},
        {"cortex-m7", "v7m"},
    };
    for (const auto& [name, version] : table)
        if (cpu == name)
            return version;
    fail("unsupported processor '" + cpu + "' (ARMv4 to ARMv7 only)");
}

std::string arch_for(const std::string& arch) {
    static const std::pair<const char*, const char*> table[] = {
        {"armv4", "v4"},    {"armv4t", "v4"},    {"armv5", "v5"},     {"armv5t", "v5"},
        {"armv5te", "v5"},  {"armv5tej", "v5"},  {"armv6", "v6"},     {"armv6j", "v6"},
        {"armv6-m", "v6"},  {"armv6k", "v6k"},   {"armv6z", "v6k"},   {"armv6zk", "v6k"},
        {"armv6kz", "v6k"}, {"armv6t2", "v6t2"}, {"armv7", "v7a"},    {"armv7-a", "v7a"},
        {"armv7a", "v7a"},  {"armv7ve", "v7a"},  {"armv7-r", "v7r"},  {"armv7r", "v7r"},
        {"armv7-m", "v7m"}, {"armv7m", "v7m"},   {"armv7e-m", "v7m"}, {"armv7em", "v7m"},
    };
    for (const auto& [name, version] : table)
        if (arch == name)
            return version;
    fail("unsupported architecture '" + arch + "' (ARMv4 to ARMv7 only)");
}

std::string fpu_for(const std::string& fpu, bool& neon) {
    neon = starts(fpu, "neon");
    if (neon)
        return "vfpv3";
    if (fpu == "vfp" || fpu == "vfpv2")
        return "vfpv2";
    if (fpu == "vfpv3" || fpu == "vfpv3-fp16" || fpu == "vfpv4")
        return "vfpv3";
    if (fpu == "vfpv3-d16" || fpu == "vfpv3-d16-fp16" || fpu == "vfpv4-d16")
        return "vfpv3d16";
    if (fpu == "none" || fpu == "softvfp")
        return "none";
    fail("unsupported floating-point unit '" + fpu + "'");
}

OPTIONS parse(int argc, char** argv) {
    OPTIONS o;
    // Options with a separate argument that go to Clang as they are.
    static const char* const with_argument[] = {"-D",       "-U",         "-I",      "-include",
                                                "-isystem", "-idirafter", "-iquote", "-imacros"};
    for (int i = 1; i < argc; i++) {
        const std::string a = argv[i];
        auto next = [&]() -> std::string {
            if (i + 1 >= argc)
                fail("option '" + a + "' needs an argument");
            return argv[++i];
        };
        if (a == "--help" || a == "-h") {
            fputs(usage, stdout);
            exit(0);
        }
        if (a == "--version") {
            printf("%s %s (Clang %s)\n", tool, ONDREL_VERSION, CLANG_VERSION_STRING);
            exit(0);
        }
        if (a == "-o") {
            o.output = next();
        } else if (a == "-O" || a == "-O1") {
            o.opt_level = 1;
        } else if (a == "-O0" || a == "-O2" || a == "-O3") {
            o.opt_level = a[2] - '0';
        } else if (a == "-Os" || a == "-Oz") {
            o.size = true;
            o.opt_level = 2;
        } else if (starts(a, "-mcpu=")) {
            o.cpu = cpu_for(a.substr(6));
        } else if (starts(a, "-march=")) {
            o.cpu = arch_for(a.substr(7));
        } else if (a == "-mthumb") {
            o.thumb = true;
        } else if (a == "-marm") {
            o.thumb = false;
        } else if (starts(a, "-mfpu=")) {
            o.float_support = fpu_for(a.substr(6), o.neon);
        } else if (a == "-mfloat-abi=soft") {
            o.float_support = "none";
            o.neon = false;
        } else if (starts(a, "-mfloat-abi=")) {
            // softfp and hard keep the unit; the layout of the target is the same.
        } else if (a == "-ffast-math") {
            o.fast_math = true;
            o.clang_args.push_back(a);
        } else if (a == "-fno-fast-math") {
            o.fast_math = false;
            o.clang_args.push_back(a);
        } else if (a == "-fvectorize" || a == "-ftree-vectorize") {
            o.vectorize = 1;
        } else if (a == "-fno-vectorize" || a == "-fno-tree-vectorize") {
            o.vectorize = 0;
        } else if (starts(a, "-std=") || starts(a, "-W") || a == "-w" || a == "-pedantic" ||
                   a == "-pedantic-errors" || a == "-ansi" || starts(a, "-f")) {
            o.clang_args.push_back(a);
        } else if (std::find_if(std::begin(with_argument), std::end(with_argument),
                                [&](const char* p) { return a == p; }) != std::end(with_argument)) {
            o.clang_args.push_back(a);
            o.clang_args.push_back(next());
        } else if (starts(a, "-D") || starts(a, "-U") || starts(a, "-I")) {
            o.clang_args.push_back(a);
        } else if (a.size() > 1 && a[0] == '-') {
            fail("unknown option '" + a + "'");
        } else if (!o.input.empty()) {
            fail("more than one input file");
        } else {
            o.input = a;
        }
    }
    if (o.input.empty()) {
        fputs(usage, stderr);
        exit(1);
    }
    if (o.output.empty()) {
        const size_t slash = o.input.rfind('/');
        const size_t dot = o.input.rfind('.');
        o.output = (dot != std::string::npos && (slash == std::string::npos || dot > slash))
                       ? o.input.substr(0, dot)
                       : o.input;
        o.output += ".if";
    }
    return o;
}

// The options of the file: each as ondrel-opt's command line spells it.
std::vector<std::string> option_set(const OPTIONS& o) {
    std::vector<std::string> s;
    // long long and double are 64-bit aligned, and names have no prefix.
    s.push_back("--abi=1");
    if (o.opt_level >= 0)
        s.push_back("--opt_level=" + std::to_string(o.opt_level));
    if (o.size)
        s.push_back("--opt_for_speed=0");
    s.push_back("--cpu=" + o.cpu);
    s.push_back(o.thumb ? "--code_state=16" : "--code_state=32");
    s.push_back("--float_support=" + o.float_support);
    if (o.neon)
        s.push_back("--neon");
    s.push_back(o.fast_math ? "--fp_mode=relaxed" : "--fp_mode=strict");
    if (o.vectorize >= 0)
        s.push_back(o.vectorize ? "--vectorize=on" : "--vectorize=off");
    return s;
}

bool is_dir(const char* path) {
    struct stat st;
    return stat(path, &st) == 0 && S_ISDIR(st.st_mode);
}

class CONSUMER : public clang::ASTConsumer {
public:
    explicit CONSUMER(const OPTIONS& o) : o(o) {}

    void HandleTranslationUnit(clang::ASTContext& ctx) override {
        clang::DiagnosticsEngine& diags = ctx.getDiagnostics();
        if (diags.hasErrorOccurred())
            return;
        cfe::UNIT unit(ctx, diags);
        unit.translate();
        if (unit.failed() || diags.hasErrorOccurred())
            return;
        write(unit);
    }

private:
    void write(cfe::UNIT& unit) {
        FILE* stream = fopen(o.output.c_str(), "wb");
        if (!stream)
            fail("cannot open " + o.output + ": " + strerror(errno));
        // A fault inside the writer removes the file, as in the optimizer.
        snprintf(o_file_name, sizeof o_file_name, "%s", o.output.c_str());
        const std::string producer =
            std::string(tool) + " " + ONDREL_VERSION + " (Clang " + CLANG_VERSION_STRING + ")";
        o_file = I_FILE::if_create(stream, tp, producer.c_str());
        std::vector<std::string> strings = option_set(o);
        std::vector<char*> argv;
        for (std::string& s : strings)
            argv.push_back(s.data());
        o_file->if_enter_option_set(0, static_cast<unsigned>(argv.size()), argv.data());
        unit.write(o_file);
        I_FILE* out = o_file;
        o_file = nullptr;
        if (out->if_close(true, false) != 0) {
            remove(o.output.c_str());
            fail("cannot write " + o.output);
        }
        o_file_name[0] = '\0';
    }

    const OPTIONS& o;
};

class ACTION : public clang::ASTFrontendAction {
public:
    explicit ACTION(const OPTIONS& o) : o(o) {}
    std::unique_ptr<clang::ASTConsumer> CreateASTConsumer(clang::CompilerInstance&,
                                                          llvm::StringRef) override {
        return std::make_unique<CONSUMER>(o);
    }

private:
    const OPTIONS& o;
};

} // namespace

int main(int argc, char** argv) {
    const OPTIONS o = parse(argc, argv);

    // The type package lays out types as the ABI of the file says.
    TYPE_PKG::abi = 1;
    tp = new TYPE_PKG;
    if_node_table_init();

    std::vector<std::string> args = {"clang", "-target", target_triple, "-fsyntax-only",
                                     "-nostdinc"};
    const std::string fixed = std::string(ONDREL_ARM_GCC_INCLUDE) + "-fixed";
    for (const std::string& dir :
         {std::string(ONDREL_ARM_GCC_INCLUDE), fixed, std::string(ONDREL_ARM_SYSROOT_INCLUDE)})
        if (is_dir(dir.c_str())) {
            args.push_back("-isystem");
            args.push_back(dir);
        }
    if (o.thumb)
        args.push_back("-mthumb");
    args.insert(args.end(), o.clang_args.begin(), o.clang_args.end());
    args.push_back("-x");
    args.push_back("c");
    args.push_back(o.input);
    std::vector<const char*> cargs;
    for (const std::string& a : args)
        cargs.push_back(a.c_str());

    llvm::IntrusiveRefCntPtr<clang::DiagnosticOptions> dopts = new clang::DiagnosticOptions;
    clang::TextDiagnosticPrinter printer(llvm::errs(), dopts.get());
    clang::LangOptions driver_lang;
    printer.BeginSourceFile(driver_lang, nullptr);
    llvm::IntrusiveRefCntPtr<clang::DiagnosticsEngine> driver_diags =
        new clang::DiagnosticsEngine(new clang::DiagnosticIDs, dopts, &printer, false);
    std::shared_ptr<clang::CompilerInvocation> inv =
        clang::createInvocationFromCommandLine(cargs, driver_diags);
    printer.EndSourceFile();
    if (!inv || driver_diags->hasErrorOccurred())
        return 1;

    clang::CompilerInstance ci;
    ci.setInvocation(inv);
    ci.createDiagnostics(&printer, false);
    ACTION action(o);
    const bool ok = ci.ExecuteAction(action);
    if (!ok || ci.getDiagnostics().hasErrorOccurred())
        return 1;
    return 0;
}
