// Fatal exits, crash handling, checked allocation and the message library.
// The exits run in death tests; files they must remove or write are checked
// from the parent afterwards.
#include <gtest/gtest.h>

#include <climits>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <sstream>
#include <string>
#include <unistd.h>

#include "driver/diag.h"
#include "driver/diagnostic.h"
#include "driver/driver.h"
#include "driver/options.h"
#include "driver/passes.h"
#include "ifile/ifile.h"
#include "inline/funinfo.h"
#include "ir/symtab.h"
#include "support/safealloc.h"
#include "support/signalsupport.h"

namespace {

using testing::ExitedWithCode;
using testing::KilledBySignal;

// A death test's standard error must be exactly this text.
testing::Matcher<const std::string&> Exactly(const std::string& text) {
    return testing::Matcher<const std::string&>(text);
}

std::string read_file(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

bool file_exists(const std::string& path) { return access(path.c_str(), F_OK) == 0; }

std::string temp_path(const char* stem) {
    static int counter;
    return testing::TempDir() + "diag_" + std::to_string(getpid()) + "_" +
           std::to_string(counter++) + "_" + stem;
}

void touch(const std::string& path) {
    FILE* f = fopen(path.c_str(), "w");
    ASSERT_NE(f, nullptr);
    fputs("partial output", f);
    fclose(f);
}

// Every test starts at file level, with no files open and no switches, and
// with an output file that a fatal exit must remove.
struct FatalState : testing::Test {
    char function_name[16] = "compute";
    PSN position{"kernel.c", 12, 1};
    SYMTAB function;
    FUNINFO info;
    std::string output = temp_path("out.opt");

    void SetUp() override {
        currfunc = nullptr;
        currfuninfo = nullptr;
        i_file = nullptr;
        o_file = nullptr;
        print_debug = 0;
        write_opt_info = 0;
        fdebug = nullptr;
        finfo = nullptr;
        process_debug_option("debug", "abort=0");
        snprintf(o_file_name, sizeof o_file_name, "%s", output.c_str());
        snprintf(i_file_name, sizeof i_file_name, "unit.if");
        touch(output);
        function.name = function_name;
    }
    void TearDown() override {
        currfunc = nullptr;
        currfuninfo = nullptr;
        o_file_name[0] = '\0';
        i_file_name[0] = '\0';
        remove(output.c_str());
    }
    void enter_function(bool with_position) {
        currfunc = &function;
        info.psn = with_position ? &position : nullptr;
        currfuninfo = &info;
    }
};

using DiagFatal = FatalState;

TEST_F(DiagFatal, AbortRemovesOutputAndExitsOne) {
    EXPECT_EXIT(abort_optimizer(), ExitedWithCode(1),
                Exactly("\n>>>> Optimizer terminated abnormally\n"));
    EXPECT_FALSE(file_exists(output));

    touch(output);
    EXPECT_EXIT(abort_optimizer("ERROR - OUT OF MEMORY"), ExitedWithCode(1),
                Exactly("\n>>>> Optimizer terminated abnormally\n"
                        "\n>>>> ERROR - OUT OF MEMORY.\n"));
    EXPECT_FALSE(file_exists(output));
}

TEST_F(DiagFatal, AbortNamesFunctionAndItsFile) {
    enter_function(true);
    EXPECT_EXIT(abort_optimizer("bad tree"), ExitedWithCode(1),
                Exactly("\n>>>> Optimizer terminated abnormally\n"
                        ">>>>    in function compute()\n"
                        ">>>>    in file \"kernel.c\"\n"
                        "\n>>>> bad tree.\n"));

    // Without a position there is no file line.
    enter_function(false);
    EXPECT_EXIT(abort_optimizer(), ExitedWithCode(1),
                Exactly("\n>>>> Optimizer terminated abnormally\n"
                        ">>>>    in function compute()\n"));
}

TEST_F(DiagFatal, FailedAssertionIsTheGenericAbort) {
    OPTASSERT(sizeof(int) > 1); // a holding assertion returns
    EXPECT_EXIT(OPTASSERT(sizeof(int) == 1), ExitedWithCode(1),
                Exactly("\n>>>> Optimizer terminated abnormally\n"));
    EXPECT_FALSE(file_exists(output));

    touch(output);
    enter_function(true);
    EXPECT_EXIT(OPTASSERT(function_name[0] == 'x'), ExitedWithCode(1),
                Exactly("\n>>>> Optimizer terminated abnormally\n"
                        ">>>>    in function compute()\n"
                        ">>>>    in file \"kernel.c\"\n"));
    EXPECT_FALSE(file_exists(output));
}

TEST_F(DiagFatal, AbortWritesAndClosesTheLog) {
    const std::string log = temp_path("log.odb");
    EXPECT_EXIT(
        {
            fdebug = fopen(log.c_str(), "w");
            print_debug = 1;
            fputs("before\n", fdebug);
            abort_optimizer("boom");
        },
        ExitedWithCode(1), Exactly("\n>>>> Optimizer terminated abnormally\n\n>>>> boom.\n"));
    EXPECT_EQ(read_file(log), "before\n"
                              "\n>>>> Optimizer terminated abnormally.\n"
                              "\n>>>> boom.\n");
    remove(log.c_str());
}

TEST_F(DiagFatal, CompilerErrorLine) {
    const std::string log = temp_path("log.odb");
    EXPECT_EXIT(
        {
            fdebug = fopen(log.c_str(), "w");
            print_debug = 1;
            compiler_error("find_label", ", INDEX=%d", 7);
        },
        ExitedWithCode(1),
        Exactly("\n\n!!! COMPILER (OPTIMIZER) ERROR IN 'find_label', INDEX=7 !!!\n\n"
                "\n>>>> Optimizer terminated abnormally\n"));
    EXPECT_EQ(read_file(log), "\n\n!!! COMPILER (OPTIMIZER) ERROR IN 'find_label', INDEX=7 !!!\n\n"
                              "\n>>>> Optimizer terminated abnormally.\n");
    EXPECT_FALSE(file_exists(output));
    remove(log.c_str());

    EXPECT_EXIT(compiler_error("ddvp"), ExitedWithCode(1),
                Exactly("\n\n!!! COMPILER (OPTIMIZER) ERROR IN 'ddvp' !!!\n\n"
                        "\n>>>> Optimizer terminated abnormally\n"));
}

TEST_F(DiagFatal, TypeCodeFailureText) {
    EXPECT_EXIT(tp_die("bad type record"), ExitedWithCode(1),
                Exactly("TP>> internal error: bad type record\n"));
    EXPECT_FALSE(file_exists(output));
}

TEST_F(DiagFatal, AbortSwitchEndsInAbort) {
    EXPECT_EXIT(
        {
            process_debug_option("debug", "abort");
            abort_optimizer();
        },
        KilledBySignal(SIGABRT), "Optimizer terminated abnormally");

    // With the program's handlers the abort becomes a crash report.
    EXPECT_EXIT(
        {
            install_common_handlers(opt_signal_handler, opt_signal_cleanup);
            process_debug_option("debug", "abort");
            abort_optimizer();
        },
        ExitedWithCode(2),
        "Optimizer terminated abnormally\n\nINTERNAL ERROR: ondrel-opt had an internal "
        "inconsistency and aborted\n");
}

TEST_F(DiagFatal, OptExitRemovesOutputOnlyForStatusOne) {
    EXPECT_EXIT(opt_exit(1), ExitedWithCode(1), Exactly(""));
    EXPECT_FALSE(file_exists(output));

    touch(output);
    EXPECT_EXIT(opt_exit(0), ExitedWithCode(0), Exactly(""));
    EXPECT_TRUE(file_exists(output));
}

const std::string support_head =
    "This is caused by a defect in the Ondrel C/C++ Optimizer.\n"
    "Ondrel Customer Support may be able to suggest a workaround to avoid this.\n"
    "\n"
    "Upgrading to the newest version of the compiler may fix this problem.\n"
    "\n";
const std::string support_tail =
    "We need to see this ENTIRE error message and a complete, reproducable\n"
    "test case including ALL of the command-line options.\n"
    "Include the .pp file created by option --preproc_with_comment\n"
    "\n";

void note_cleanup(int sig) { fprintf(stderr, "[cleanup %d]\n", sig); }

TEST(SignalHandler, ForcedExitAndTerminate) {
    EXPECT_EXIT(common_signal_handler(SIGINT, "ondrel-opt", "x"), ExitedWithCode(2),
                Exactly("[ondrel-opt forced exit]\n"));
    EXPECT_EXIT(common_signal_handler(SIGHUP, "ondrel-opt", "x"), ExitedWithCode(2),
                Exactly("[ondrel-opt forced exit]\n"));
    EXPECT_EXIT(common_signal_handler(SIGTERM, "ondrel-opt", "x"), ExitedWithCode(2),
                Exactly("[ondrel-opt received a terminate signal]\n"));

    // A tool name from a broken state is not followed.
    EXPECT_EXIT(common_signal_handler(SIGINT, reinterpret_cast<const char*>(100000), "x"),
                ExitedWithCode(2), Exactly("[unknown forced exit]\n"));
    EXPECT_EXIT(common_signal_handler(SIGTERM, nullptr, "x"), ExitedWithCode(2),
                Exactly("[unknown received a terminate signal]\n"));
    EXPECT_EXIT(common_signal_handler(SIGSEGV, reinterpret_cast<const char*>(42), "x"),
                ExitedWithCode(2), "^\nINTERNAL ERROR: unknown experienced a segmentation fault\n");

    // An interrupt is no crash: the cleanup does not run.
    EXPECT_EXIT(
        {
            install_common_handlers(SIG_DFL, note_cleanup);
            common_signal_handler(SIGINT, "t", "x");
        },
        ExitedWithCode(2), Exactly("[t forced exit]\n"));
}

TEST(SignalHandler, FaultReport) {
    EXPECT_EXIT(common_signal_handler(SIGSEGV, "ondrel-opt", "while processing function %s file %s",
                                      "f", "a.if"),
                ExitedWithCode(2),
                Exactly("\nINTERNAL ERROR: ondrel-opt experienced a segmentation fault\n"
                        "                  while processing function f file a.if\n"
                        "\n" +
                        std::string(support_message_text())));

    // The cleanup comes last, after the support text.
    EXPECT_EXIT(
        {
            install_common_handlers(SIG_DFL, note_cleanup);
            common_signal_handler(SIGFPE, "t", "%s", "");
        },
        ExitedWithCode(2),
        Exactly("\nINTERNAL ERROR: t received a floating point exception\n"
                "                  \n"
                "\n" +
                std::string(support_message_text()) + "[cleanup 8]\n"));
}

TEST(SignalHandler, FaultWords) {
    const struct {
        int sig;
        const char* word;
    } table[] = {
        {4, "executed an illegal instruction"},
        {5, "received a TRAP signal"},
        {6, "had an internal inconsistency and aborted"},
        {7, "experienced a bus alignment fault"},
        {8, "received a floating point exception"},
        {11, "experienced a segmentation fault"},
        {24, "exceeded the CPU time limit"},
        {25, "exceeded the file size limit"},
        {31, "experienced a bad system call"},
        {3, "experienced a fatal internal fault"},
        {10, "experienced a fatal internal fault"},
        {40, "experienced a fatal internal fault"},
    };
    for (const auto& entry : table) {
        SCOPED_TRACE(entry.sig);
        EXPECT_EXIT(common_signal_handler(entry.sig, "t", "x"), ExitedWithCode(2),
                    std::string("^\nINTERNAL ERROR: t ") + entry.word + "\n {18}x\n\n");
    }
}

TEST(SignalHandler, SupportTextShape) {
    const std::string text = support_message_text();
    ASSERT_GT(text.size(), support_head.size() + support_tail.size());
    EXPECT_EQ(text.substr(0, support_head.size()), support_head);
    EXPECT_EQ(text.substr(text.size() - support_tail.size()), support_tail);
    const std::string where =
        text.substr(support_head.size(), text.size() - support_head.size() - support_tail.size());
    EXPECT_EQ(where.substr(where.size() - 2), "\n\n");
    EXPECT_EQ(where.find('%'), std::string::npos);
}

TEST(SignalHandler, InstallsTheTwelveSignals) {
    const int expected[] = {SIGILL, SIGABRT, SIGFPE, SIGSEGV, SIGTERM, SIGINT,
                            SIGHUP, SIGTRAP, SIGBUS, SIGSYS,  SIGXCPU, SIGXFSZ};
    struct sigaction saved[NSIG];
    for (int sig = 1; sig < NSIG; sig++)
        sigaction(sig, nullptr, &saved[sig]);

    install_common_handlers(debug_signal_handler, nullptr);
    int installed = 0;
    for (int sig = 1; sig < NSIG; sig++) {
        struct sigaction now;
        if (sigaction(sig, nullptr, &now) == 0 && now.sa_handler == debug_signal_handler)
            installed++;
    }
    for (int sig : expected) {
        struct sigaction now;
        sigaction(sig, nullptr, &now);
        EXPECT_EQ(now.sa_handler, debug_signal_handler) << sig;
    }
    EXPECT_EQ(installed, 12);

    for (int sig : expected)
        sigaction(sig, &saved[sig], nullptr);
}

using SignalRaised = FatalState;

TEST_F(SignalRaised, ReachesTheProgramsHandler) {
    enter_function(true);
    const std::string log = temp_path("log.odb");
    const std::string nfo = temp_path("info.nfo");
    EXPECT_EXIT(
        {
            install_common_handlers(opt_signal_handler, opt_signal_cleanup);
            fdebug = fopen(log.c_str(), "w");
            finfo = fopen(nfo.c_str(), "w");
            print_debug = write_opt_info = 1;
            raise(SIGSEGV);
        },
        ExitedWithCode(2),
        "^\nINTERNAL ERROR: ondrel-opt experienced a segmentation fault\n {18}while processing "
        "function compute file unit\\.if\n\nThis is caused by a defect");
    EXPECT_EQ(read_file(log), "\n>>>> Optimizer terminated by signal: SIGSEGV.\n");
    EXPECT_EQ(read_file(nfo), "\n>>>> Optimizer terminated by signal: SIGSEGV.\n");
    remove(log.c_str());
    remove(nfo.c_str());

    currfunc = nullptr;
    EXPECT_EXIT(
        {
            install_common_handlers(opt_signal_handler, opt_signal_cleanup);
            tool_name = "opt-under-test";
            raise(SIGFPE);
        },
        ExitedWithCode(2),
        "^\nINTERNAL ERROR: opt-under-test received a floating point exception\n {18}while "
        "processing function \\(none\\) file unit\\.if\n");
}

TEST_F(SignalRaised, InterruptCleansNothingUp) {
    const std::string log = temp_path("log.odb");
    EXPECT_EXIT(
        {
            install_common_handlers(opt_signal_handler, opt_signal_cleanup);
            fdebug = fopen(log.c_str(), "w");
            print_debug = 1;
            raise(SIGINT);
        },
        ExitedWithCode(2), Exactly("[ondrel-opt forced exit]\n"));
    EXPECT_TRUE(file_exists(output));
    EXPECT_EQ(read_file(log), "");
    remove(log.c_str());
}

TEST(SignalSupport, SigstrnappendStaysInBounds) {
    char buffer[32] = "x=";
    EXPECT_EQ(sigstrnappend(buffer, sizeof buffer, "%d", 42), 4);
    EXPECT_STREQ(buffer, "x=42");

    char small[8] = "abc";
    EXPECT_EQ(sigstrnappend(small, sizeof small, "%s", "defghij"), 7);
    EXPECT_STREQ(small, "abcdefg");
    EXPECT_EQ(sigstrnappend(small, sizeof small, "more"), 7);
    EXPECT_STREQ(small, "abcdefg");
    EXPECT_EQ(sigstrnappend(small, 0, "more"), 0);
}

TEST(SignalSupport, DebugHandlerRearmsItself) {
    // A one-shot installation: only the handler's own re-arming keeps it.
    struct sigaction one_shot {};
    one_shot.sa_handler = debug_signal_handler;
    one_shot.sa_flags = SA_RESETHAND;
    sigemptyset(&one_shot.sa_mask);
    struct sigaction saved;
    ASSERT_EQ(sigaction(SIGUSR1, &one_shot, &saved), 0);

    raise(SIGUSR1);
    struct sigaction now;
    sigaction(SIGUSR1, nullptr, &now);
    EXPECT_EQ(now.sa_handler, debug_signal_handler);
    raise(SIGUSR1); // still alive

    sigaction(SIGUSR1, &saved, nullptr);
}

using SafeAlloc = FatalState;

TEST_F(SafeAlloc, ExhaustionExitsOneAndRemovesOutput) {
    volatile size_t huge = SIZE_MAX / 2;
    EXPECT_EXIT(safemalloc(huge), ExitedWithCode(1), Exactly("ERROR: out of memory\n"));
    EXPECT_FALSE(file_exists(output));

    touch(output);
    EXPECT_EXIT(safecalloc(huge, huge), ExitedWithCode(1), Exactly("ERROR: out of memory\n"));
    EXPECT_FALSE(file_exists(output));

    void* p = safemalloc(16);
    EXPECT_EXIT(saferealloc(p, huge), ExitedWithCode(1), Exactly("ERROR: out of memory\n"));
    free(p);
}

TEST_F(SafeAlloc, ZeroBytesIsNoFailure) {
    void* p = safemalloc(0);
    EXPECT_NE(p, nullptr);
    p = saferealloc(p, 0);
    EXPECT_NE(p, nullptr);
    free(p);
    void* q = safecalloc(0, 0);
    EXPECT_NE(q, nullptr);
    free(q);
}

// The message library's settings are class-wide: each test starts from the
// defaults and its output goes to a captured stream.
struct DiagMessages : testing::Test {
    void SetUp() override { defaults(); }
    void TearDown() override { defaults(); }
    static void defaults() {
        DIAGNOSTIC::reset_table();
        DIAGNOSTIC::indent_m = 0;
        DIAGNOSTIC::wrap_enabled_m = true;
        DIAGNOSTIC::wrap_headers_m = false;
        DIAGNOSTIC::display_ipos_m = false;
        DIAGNOSTIC::display_code_m = false;
        DIAGNOSTIC::advice_m = false;
        DIAGNOSTIC::debug_m = false;
        DIAGNOSTIC::remarks_m = false;
        DIAGNOSTIC::warnings_m = true;
        DIAGNOSTIC::warnings_as_errors_m = false;
        DIAGNOSTIC::max_errors_m = 0;
        DIAGNOSTIC::error_count_m = 0;
        DIAGNOSTIC::fp_m = nullptr;
        DIAGNOSTIC::cols_m = 79;
    }
    template <class F> static std::string capture(F&& f) {
        FILE* out = tmpfile();
        DIAGNOSTIC::fp_m = out;
        f();
        fflush(out);
        rewind(out);
        std::string text;
        for (int c; (c = fgetc(out)) != EOF;)
            text += static_cast<char>(c);
        fclose(out);
        DIAGNOSTIC::fp_m = nullptr;
        return text;
    }
    template <class D>
    static std::string report(const char* text, const char* file = "tool.cpp", unsigned line = 3,
                              const DIAG_SRCINFO* where = nullptr) {
        return capture([&] {
            D msg(file, line);
            msg.set_srcinfo(where).set_text(text);
            msg.report();
        });
    }
};

TEST_F(DiagMessages, SeverityWordsAndStreams) {
    const char* words[] = {"(suppressed)", "(no error)", "advice",      "debug",     "remark",
                           "warning",      "error",      "fatal error", "(unknown)", "(unknown)"};
    for (unsigned sev = 0; sev < 10; sev++)
        EXPECT_STREQ(DIAGNOSTIC::sev_str(sev), words[sev]) << sev;

    EXPECT_EQ(DIAG::gadvice("f", 1).fp(), stdout);
    EXPECT_EQ(DIAG::gdebug("f", 1).fp(), stdout);
    EXPECT_EQ(DIAG::gremark("f", 1).fp(), stdout);
    EXPECT_EQ(DIAG::gwarning("f", 1).fp(), stderr);
    EXPECT_EQ(DIAG::gerror("f", 1).fp(), stderr);
    EXPECT_EQ(DIAG::gfatal("f", 1).fp(), stderr);
    DIAGNOSTIC::override_severity(DIAG_CODE_REMARK, DIAG_WARNING);
    EXPECT_EQ(DIAG::gremark("f", 1).fp(), stderr);
    DIAGNOSTIC::fp_m = stdout;
    EXPECT_EQ(DIAG::gerror("f", 1).fp(), stdout);
}

TEST_F(DiagMessages, HeaderSuppression) {
    EXPECT_EQ(report<DIAG::gwarning>("w"), "warning: (w)\n");
    EXPECT_EQ(report<DIAG::gerror>("e"), "error: (e)\n");
    EXPECT_EQ(report<DIAG::gremark>("r"), "");
    EXPECT_EQ(report<DIAG::gadvice>("a"), "");
    EXPECT_EQ(report<DIAG::gdebug>("d"), "");

    DIAGNOSTIC::remarks_m = DIAGNOSTIC::advice_m = DIAGNOSTIC::debug_m = true;
    DIAGNOSTIC::warnings_m = false;
    EXPECT_EQ(report<DIAG::gremark>("r"), "remark: (r)\n");
    EXPECT_EQ(report<DIAG::gadvice>("a"), "advice: (a)\n");
    EXPECT_EQ(report<DIAG::gdebug>("d"), "debug: (d)\n");
    EXPECT_EQ(report<DIAG::gwarning>("w"), "");

    // Suppression wins over every switch; errors have no switch.
    DIAGNOSTIC::warnings_m = true;
    EXPECT_TRUE(DIAGNOSTIC::suppress(DIAG_CODE_WARNING));
    EXPECT_EQ(report<DIAG::gwarning>("w"), "");
    EXPECT_FALSE(DIAGNOSTIC::suppress(DIAG_CODE_ERROR));
    EXPECT_EQ(report<DIAG::gerror>("e"), "error: (e)\n");
}

TEST_F(DiagMessages, HeaderPlacePositionAndCode) {
    const DIAG_SRCINFO_DATA exact("a.c", 12, 4);
    const DIAG_SRCINFO_DATA approx("a.c", 12, 4, true);
    EXPECT_EQ(report<DIAG::gwarning>("w", "tool.cpp", 3, &exact),
              "\"a.c\", line 12: warning: (w)\n");
    EXPECT_EQ(report<DIAG::gwarning>("w", "tool.cpp", 3, &approx),
              "\"a.c\", line 12 (approximate): warning: (w)\n");

    // The tool's own place: for internal messages, or on request.
    EXPECT_EQ(report<DIAG::gapperror>("x"), "tool.cpp:3:error: (x)\n");
    DIAGNOSTIC::display_ipos_m = true;
    EXPECT_EQ(report<DIAG::gwarning>("w", "tool.cpp", 3, &exact),
              "tool.cpp:3:\"a.c\", line 12: warning: (w)\n");
    DIAGNOSTIC::display_ipos_m = false;

    DIAGNOSTIC::display_code_m = true;
    EXPECT_EQ(report<DIAG::gwarning>("w"), "warning #6003-D: (w)\n");
    EXPECT_EQ(report<DIAG::gerror>("e"), "error #6004: (e)\n");
    EXPECT_EQ(report<DIAG::gapperror>("x"), "tool.cpp:3:internal error #6005: (x)\n");

    DIAGNOSTIC::indent_m = 2;
    EXPECT_EQ(report<DIAG::gerror>("e"), "  error #6004: (e)\n");
}

TEST_F(DiagMessages, ErrorCountAndLimit) {
    USER_MSG& um = get_umsg_obj();
    capture([&] {
        um.error("one");
        um.warning(DIAG_CODE_WARNING, "not counted");
        um.apperror("two");
    });
    EXPECT_EQ(um.get_error_count(), 2u);

    um.emit_warnings_as_errors();
    EXPECT_EQ(capture([&] { um.warning(DIAG_CODE_WARNING, "now an error"); }),
              "error: (now an error)\n");
    EXPECT_EQ(um.get_error_count(), 3u);
    um.emit_warnings_as_errors(false);

    DIAGNOSTIC::max_errors_m = 5;
    EXPECT_EXIT(
        {
            um.error("four");
            um.error("five");
        },
        ExitedWithCode(1),
        Exactly("error: (four)\nerror: (five)\nfatal error: (5 errors found; stopping)\n"));
}

TEST_F(DiagMessages, OverrideSeverity) {
    EXPECT_TRUE(DIAGNOSTIC::is_discretionary(DIAG_CODE_WARNING));
    EXPECT_FALSE(DIAGNOSTIC::is_discretionary(DIAG_CODE_ERROR));
    EXPECT_FALSE(DIAGNOSTIC::is_discretionary(99));

    EXPECT_TRUE(DIAGNOSTIC::override_severity(DIAG_CODE_WARNING, DIAG_ERROR));
    EXPECT_EQ(report<DIAG::gwarning>("w"), "error: (w)\n");
    EXPECT_FALSE(DIAGNOSTIC::override_severity(DIAG_CODE_ERROR, DIAG_WARNING));
    EXPECT_EQ(report<DIAG::gerror>("e"), "error: (e)\n");
    EXPECT_FALSE(DIAGNOSTIC::override_severity(99u, DIAG_WARNING));
    EXPECT_FALSE(DIAGNOSTIC::override_severity(DIAG_CODE_REMARK, 8));

    // By number text and by word.
    EXPECT_TRUE(DIAGNOSTIC::override_severity("6001", DIAG_WARNING));
    EXPECT_EQ(report<DIAG::gremark>("r"), "warning: (r)\n");
    EXPECT_TRUE(DIAGNOSTIC::override_severity("advice", DIAG_WARNING));
    EXPECT_EQ(report<DIAG::gadvice>("a"), "warning: (a)\n");
    EXPECT_FALSE(DIAGNOSTIC::override_severity("no_such_word", DIAG_WARNING));
    EXPECT_FALSE(DIAGNOSTIC::override_severity("6001x", DIAG_WARNING));

    // A whole severity: every discretionary code of it, and nothing else.
    DIAGNOSTIC::reset_table();
    EXPECT_TRUE(DIAGNOSTIC::override_all_of_severity(DIAG_REMARK, DIAG_ERROR));
    EXPECT_EQ(report<DIAG::gremark>("r"), "error: (r)\n");
    EXPECT_EQ(DIAGNOSTIC::get_info(DIAG_CODE_NOT_INLINED)->severity, DIAG_ERROR);
    EXPECT_EQ(DIAGNOSTIC::get_info(DIAG_CODE_ADVICE)->severity, DIAG_ADVICE);
    DIAGNOSTIC::reset_table();
    EXPECT_FALSE(DIAGNOSTIC::override_all_of_severity(DIAG_FATAL, DIAG_WARNING));
    EXPECT_EQ(DIAGNOSTIC::get_info(DIAG_CODE_FATAL)->severity, DIAG_FATAL);

    EXPECT_EQ(report<DIAG::gremark>("r"), "");
}

TEST_F(DiagMessages, DumpEqualityAndCopies) {
    const DIAG_SRCINFO_DATA where("m.c", 7, 3);
    DIAG::gwarning msg("tool.cpp", 1);
    msg.set_srcinfo(&where).set_text("unused value").set_verbose("more words");
    EXPECT_EQ(capture([&] { msg.dump(DIAGNOSTIC::fp_m); }), "Code : 6003\n"
                                                            "File : m.c\n"
                                                            "Line : 7\n"
                                                            "Column: 3\n"
                                                            "std_msg : unused value\n"
                                                            "vrb_msg : more words\n");
    EXPECT_STREQ(msg.get_sp_buffer(), "\"m.c\", line 7");

    DIAG::gerror bare("tool.cpp", 2);
    bare.set_text("e");
    EXPECT_EQ(capture([&] { bare.dump(DIAGNOSTIC::fp_m); }),
              "Code : 6004\nFile : (none)\nLine : 0\nColumn: 0\nstd_msg : e\nvrb_msg : \n");

    DIAGNOSTIC* copy = msg.alloc();
    EXPECT_TRUE(copy->is_equal(msg));
    const DIAG_SRCINFO_DATA elsewhere("m.c", 8, 3);
    copy->set_srcinfo(&elsewhere);
    EXPECT_FALSE(copy->is_equal(msg));
    copy->set_srcinfo(&where).set_text("other");
    EXPECT_FALSE(copy->is_equal(msg));
    copy->set_text("unused value");
    EXPECT_TRUE(copy->is_equal(msg));
    EXPECT_FALSE(bare.is_equal(msg));
    delete copy;
}

TEST_F(DiagMessages, Wrapping) {
    DIAGNOSTIC::cols_m = 20;
    EXPECT_EQ(report<DIAG::gwarning>("aaaa bbbb cccc dddd eeee"),
              "warning: (aaaa bbbb\n  cccc dddd eeee)\n");
    DIAGNOSTIC::indent_m = 3;
    EXPECT_EQ(report<DIAG::gwarning>("aaaa bbbb cccc dddd eeee"),
              "   warning: (aaaa\n     bbbb cccc dddd\n     eeee)\n");
    DIAGNOSTIC::indent_m = 0;

    // The header itself may wrap, but only on request; the text's first word
    // stays next to it.
    const DIAG_SRCINFO_DATA where("long_file_name.c", 100);
    DIAGNOSTIC::cols_m = 22;
    EXPECT_EQ(report<DIAG::gwarning>("x", "t", 1, &where),
              "\"long_file_name.c\", line 100: warning: (x)\n");
    DIAGNOSTIC::wrap_headers_m = true;
    EXPECT_EQ(report<DIAG::gwarning>("x", "t", 1, &where),
              "\"long_file_name.c\",\nline 100: warning: (x)\n");

    DIAGNOSTIC::wrap_enabled_m = false;
    DIAGNOSTIC::cols_m = 10;
    EXPECT_EQ(report<DIAG::gwarning>("aaaa bbbb cccc"), "warning: (aaaa bbbb cccc)\n");

    // A wrap column inside the margin is a fault of the tool.
    DIAGNOSTIC::wrap_enabled_m = true;
    DIAGNOSTIC::cols_m = 3;
    DIAGNOSTIC::indent_m = 1;
    EXPECT_EXIT(report<DIAG::gerror>("e"), ExitedWithCode(1), "Optimizer terminated abnormally\n$");
}

TEST_F(DiagMessages, AnnotatedSourceCaret) {
    DIAG::gerror msg("t", 1);
    EXPECT_EQ(capture([&] { msg.show_annotated_source("x = y +;", 8); }), "x = y +;\n       ^\n");
    EXPECT_EQ(capture([&] { msg.show_annotated_source("bad", 1); }), "bad\n^\n");
}

using UserMsg = DiagMessages;

TEST_F(UserMsg, Formatting) {
    USER_MSG& um = get_umsg_obj();
    DIAGNOSTIC::remarks_m = true;
    const DIAG_SRCINFO_DATA where("f.c", 9);

    // A coded message takes its format from the table, and its severity.
    EXPECT_EQ(capture([&] { um.warning(DIAG_CODE_NOT_INLINED, "g", "too large"); }),
              "remark: (call to g was not inlined: too large)\n");
    EXPECT_EQ(capture([&] { um.warning(&where, DIAG_CODE_WARNING, "w"); }),
              "\"f.c\", line 9: warning: (w)\n");
    EXPECT_EQ(capture([&] { um.remark(&where, "r%d", 2); }), "\"f.c\", line 9: remark: (r2)\n");
    EXPECT_EQ(capture([&] { um.error(&where, "e"); }), "\"f.c\", line 9: error: (e)\n");

    // An unknown code is the tool's own error.
    const std::string unknown = capture([&] { um.warning(99u); });
    EXPECT_NE(unknown.find(":error: (unknown message code 99)\n"), std::string::npos) << unknown;

    // Measured, not cut at a fixed buffer.
    DIAGNOSTIC::wrap_enabled_m = false;
    const std::string long_word(5000, 'q');
    EXPECT_EQ(capture([&] { um.error("%s", long_word.c_str()); }), "error: (" + long_word + ")\n");
}

TEST_F(UserMsg, FatalAndDie) {
    USER_MSG& um = get_umsg_obj();
    // die is internal: it starts with the library's own place.
    EXPECT_EXIT(um.die("cg%d", "bad %s", "input"), ExitedWithCode(1),
                "^[^\n]*diagnostic\\.cpp:[0-9]+:fatal error: \\(cg%d: bad input\\)\n$");
    const DIAG_SRCINFO_DATA where("f.c", 2);
    EXPECT_EXIT(um.fatal(&where, "stop %d", 1), ExitedWithCode(1),
                Exactly("\"f.c\", line 2: fatal error: (stop 1)\n"));
}

} // namespace
