// A log that nobody reads: the writer goes on, nothing but whole records goes out, and what is missing is
// told.
#include "System/Log.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <regex>
#include <sstream>

#include "System/DiagLine.h"

namespace {

constexpr int kRecords = 4000;
constexpr unsigned kPatienceSeconds = 60;

struct Ends {
    int reader = -1;
    int writer = -1;
};

Ends Pipe() {
    int ends[2];
    EXPECT_EQ(0, pipe(ends));
    return {ends[0], ends[1]};
}

Ends Socket() {
    int ends[2];
    EXPECT_EQ(0, socketpair(AF_UNIX, SOCK_STREAM, 0, ends));
    return {ends[0], ends[1]};
}

Ends Terminal() {
    const int master = posix_openpt(O_RDWR | O_NOCTTY);
    grantpt(master);
    unlockpt(master);
    const int slave = open(ptsname(master), O_RDWR | O_NOCTTY);
    termios raw{};
    tcgetattr(slave, &raw);
    cfmakeraw(&raw);
    tcsetattr(slave, TCSANOW, &raw);
    return {master, slave};
}

Ends File() {
    char path[] = "/tmp/logXXXXXX";
    const int writer = mkstemp(path);
    const int reader = open(path, O_RDONLY);
    unlink(path);
    return {reader, writer};
}

// A line of its own number, and now and then a long dump that belongs to it.
void PrintRecord(int number) {
    const CDiagLine line("Record");
    const std::string dump(300, 'x');
    if (number % 10 == 0)
        line.Dump(std::to_string(number).c_str(), dump.data(), dump.size());
    else
        line.Print("%d", number);
}

std::string ReadWhatWaits(int reader) {
    std::string text;
    char part[4096];
    pollfd ready{reader, POLLIN, 0};
    while (poll(&ready, 1, 0) > 0) {
        const ssize_t got = read(reader, part, sizeof part);
        if (got <= 0) break;
        text.append(part, static_cast<std::size_t>(got));
    }
    return text;
}

struct Case {
    const char* name;
    Ends (*open)();
    bool fills;
};

class CLogReader : public testing::TestWithParam<Case> {};

TEST_P(CLogReader, HangsAndComesBack) {
    const Ends log = GetParam().open();
    const Ends orders = Pipe();
    const Ends answers = Pipe();
    const pid_t process = fork();
    if (process == 0) {
        alarm(kPatienceSeconds);  // a writer that waits ends here
        dup2(log.writer, STDOUT_FILENO);
        LogWithoutWaiting();
        char order = 0;
        for (int i = 0; i < kRecords; ++i) PrintRecord(i);
        if (write(answers.writer, "!", 1) != 1 || read(orders.reader, &order, 1) != 1) _exit(1);
        PrintRecord(kRecords + 1);
        if (write(answers.writer, "!", 1) != 1 || read(orders.reader, &order, 1) != 1) _exit(1);
        PrintRecord(kRecords + 2);
        _exit(0);
    }
    close(answers.writer);  // so that a process that ends without an answer is noticed
    close(orders.reader);
    char answer = 0;
    ASSERT_EQ(1, read(answers.reader, &answer, 1));
    std::string text = ReadWhatWaits(log.reader);
    EXPECT_EQ(1, write(orders.writer, "!", 1));
    ASSERT_EQ(1, read(answers.reader, &answer, 1));
    EXPECT_EQ(1, write(orders.writer, "!", 1));
    int status = 0;
    waitpid(process, &status, 0);
    EXPECT_EQ(0, status);
    text += ReadWhatWaits(log.reader);

    // Nothing but whole records, in order, and the one line that counts the lines of the others.
    const std::regex record(
        "(?:\033\\[1;32;40mRecord\\.\\d+: (\\d+)\033\\[0m\r\n((?:78 ){300}\n)?"
        "|zor_runtime: (\\d+) lines left out: nobody read them\n)");
    std::size_t matched = 0;
    int last = -1;
    int lines = 0;
    int leftOut = 0;
    for (std::sregex_iterator at(text.begin(), text.end(), record), end; at != end; ++at) {
        matched += static_cast<std::size_t>(at->length());
        lines += (*at)[1].matched ? 1 + (*at)[2].matched : 0;
        if ((*at)[3].matched) {
            leftOut += std::stoi((*at)[3]);
            continue;
        }
        const int number = std::stoi((*at)[1]);
        EXPECT_LT(last, number);
        EXPECT_EQ(number % 10 == 0 && number <= kRecords, (*at)[2].matched);
        last = number;
    }
    EXPECT_EQ(text.size(), matched);
    EXPECT_EQ(kRecords + 2, last);
    EXPECT_EQ(kRecords + kRecords / 10 + 2, lines + leftOut);
    EXPECT_EQ(GetParam().fills, leftOut > 0);
    for (const int end : {log.reader, log.writer, orders.writer, answers.reader}) close(end);
}

INSTANTIATE_TEST_SUITE_P(Kinds, CLogReader,
                         testing::Values(Case{"Pipe", Pipe, true}, Case{"Socket", Socket, true},
                                         Case{"Terminal", Terminal, true}, Case{"File", File, false}),
                         [](const auto& log) { return std::string(log.param.name); });

}  // namespace
