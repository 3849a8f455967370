#include "System/FailureLog.h"

#include "tests/support/TestRuntime.h"

namespace {

using FailureLog = CEmptyStationTest;

TEST_F(FailureLog, OncePerCauseAndHour) {
    CFailureLog log;
    struct Case {
        std::time_t at;
        EFailure cause;
        const char* printed;
    };
    const std::time_t t = FakeClock::kStart;
    const Case cases[] = {
        {t, EFailure::NoMemory, "zor_runtime: number 0\n"},
        {t, EFailure::NoMemory, ""},
        {t + 3599, EFailure::NoMemory, ""},
        {t + 3599, EFailure::BodyTooLong, "zor_runtime: number 3\n"},  // another cause
        {t + 3600, EFailure::NoMemory, "zor_runtime: number 4\n"},
        {t + 7199, EFailure::BodyTooLong, "zor_runtime: number 5\n"},
        {t, EFailure::NoMemory, "zor_runtime: number 6\n"},  // the clock was set back
        {0, EFailure::ReceiveFailed, "zor_runtime: number 7\n"},
        {1, EFailure::ReceiveFailed, ""},
    };
    int number = 0;
    for (const Case& c : cases) {
        FakeClock::Set(c.at);
        EXPECT_EQ(c.printed, Capture([&] { log.Report(c.cause, "number %d", number); }).err) << number;
        ++number;
    }
}

}  // namespace
