#include "System/FailureLog.h"

#include <cstdarg>
#include <cstdio>

void CFailureLog::Report(EFailure cause, const char* format, ...) {
    constexpr std::time_t kHour = 3600;
    Last& last = m_last[static_cast<std::size_t>(cause)];
    const std::time_t now = std::time(nullptr);
    if (last.reported && now >= last.when && now - last.when < kHour) return;
    last = {true, now};
    std::fputs("zor_runtime: ", stderr);
    va_list arguments;
    va_start(arguments, format);
    std::vfprintf(stderr, format, arguments);
    va_end(arguments);
    std::fputc('\n', stderr);
}
