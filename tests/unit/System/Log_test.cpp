// A log that nobody reads: the writer goes on, only whole records go out, and what is missing is told.
#include "System/Log.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdio>
#include <sstream>
#include <tuple>

#include "System/DiagLine.h"
#include "tests/support/Bytes.h"

namespace {

constexpr int kRecords = 300;
const Bytes kDump(3000);  // more than a pipe takes at once or not at all

// What comes out of `ends` when it is read behind all records but the last, and behind that.
std::string PrintedInto(const int (&ends)[2]) {
    fcntl(ends[0], F_SETFL, O_NONBLOCK);
    const std::pair before(stdout, stderr);
    const int output = dup(STDOUT_FILENO);
    dup2(ends[1], STDOUT_FILENO);
    LogWithoutWaiting();
    std::string text;
    for (int i = 0; i <= kRecords; ++i) {
        CDiagLine("Record").Dump(std::to_string(i).c_str(), kDump.data(), kDump.size());
        char part[4096];
        for (ssize_t got = 0; i >= kRecords - 1 && (got = read(ends[0], part, sizeof part)) > 0;)
            text.append(part, static_cast<std::size_t>(got));
    }
    std::tie(stdout, stderr) = before;
    dup2(output, STDOUT_FILENO);
    for (const int end : {output, ends[0], ends[1]}) close(end);
    return text;
}

TEST(Log, ReaderHangsAndComesBack) {
    for (const bool socket : {false, true}) {
        int ends[2];
        ASSERT_EQ(0, socket ? socketpair(AF_UNIX, SOCK_STREAM, 0, ends) : pipe(ends));
        std::istringstream lines(PrintedInto(ends));
        int counted = 0;  // lines, whether they came out or are told to be missing
        for (std::string line; std::getline(lines, line);) {
            int number = 0;
            if (std::sscanf(line.c_str(), "\033[1;32;40mRecord.%*d: %d\033[0m\r", &number) == 1) {
                EXPECT_EQ(2 * number, counted);
                std::getline(lines, line);
                EXPECT_EQ(ToHex(kDump) + ' ', line);
                number = 2;
            } else
                std::sscanf(line.c_str(), "zor_runtime: %d lines left out: nobody read them", &number);
            counted += number;
        }
        EXPECT_EQ(2 * kRecords + 2, counted);
    }
}

}  // namespace
