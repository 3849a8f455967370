#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

#include "tests/support/Sandbox.h"

#ifdef ZOR_ADDRESS_SANITIZER
// The outbound queue lives until the process ends; a test makes many of them.
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() {
    return "leak:CRuntimeData::CRuntimeData\nleak:CLinuxMsgQueue::CLinuxMsgQueue\nleak:CMutex\nleak:"
           "CMsgQueue\n";
}
// Their list at the end of a process would stand in the way of what a death test expects.
extern "C" const char* __lsan_default_options();  // NOLINT(bugprone-reserved-identifier)
extern "C" const char* __lsan_default_options() {
    return "print_suppressions=0";
}
#endif

// Runs all tests. One in which the code under test ends the process, which it does with status 0, fails.
static int RunTests() {
    static const pid_t runner = getpid();
    static bool done = false;
    std::atexit([] {
        if (done || getpid() != runner) return;
        std::fputs("the process ended in the middle of a test\n", stderr);
        _exit(1);
    });
    const int result = RUN_ALL_TESTS();
    done = true;
    return result;
}

int main(int argc, char** argv) {
    // Local time differs from UTC and has no summer time, so that a mix-up of the two shows all year round.
    setenv("TZ", "TST-8", 1);
    testing::InitGoogleTest(&argc, argv);
    return testing::GTEST_FLAG(list_tests) ? RUN_ALL_TESTS() : RunInSandbox(RunTests);
}
