#include "tests/support/StationProcess.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>

#include "tests/support/ClockProtocol.h"
#include "tests/support/Sandbox.h"

namespace {

constexpr int kHangsMs = 120000;  // longer than any number of passes a test asks for takes

// A test of another machine's build starts the program as it was started itself.
constexpr bool kEmulated = sizeof ZOR_TEST_EMULATOR > 1;

std::string OutputFile() {
    return std::string(kScratchDirectory) + "stdout";
}
std::string ErrorFile() {
    return std::string(kScratchDirectory) + "stderr";
}

std::string ReadText(const std::string& path) {
    std::ostringstream text;
    text << std::ifstream(path).rdbuf();
    return text.str();
}

void Redirect(const std::string& path, int descriptor) {
    dup2(open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_APPEND | O_CLOEXEC, 0600), descriptor);
}

[[noreturn]] void Execute(int socket, int log) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    Redirect(OutputFile(), STDOUT_FILENO);
    Redirect(ErrorFile(), STDERR_FILENO);
    if (log >= 0) {
        dup2(log, STDOUT_FILENO);
        dup2(log, STDERR_FILENO);
    }
    // The emulator passes the libraries on to the program in it; for the emulator itself they are of the
    // wrong kind.
    if (kEmulated)
        setenv("QEMU_SET_ENV", "LD_PRELOAD=" ZOR_TEST_PRELOADED, 1);
    else
        setenv("LD_PRELOAD", ZOR_TEST_PRELOADED, 1);
    setenv(kClockSocket, std::to_string(socket).c_str(), 1);
    // The clock is loaded ahead of the sanitizer on purpose; freed blocks held back would look like growth.
    setenv("ASAN_OPTIONS", "verify_asan_link_order=0:quarantine_size_mb=0:thread_local_quarantine_size_kb=0",
           1);
    if (kEmulated) execl(ZOR_TEST_EMULATOR, ZOR_TEST_EMULATOR, ZOR_TEST_PROGRAM, nullptr);
    execl(ZOR_TEST_PROGRAM, ZOR_TEST_PROGRAM, nullptr);
    _exit(127);
}

}  // namespace

CStationProcess::~CStationProcess() {
    Kill();
    for (const int end : m_log) close(end);
}

void CStationProcess::HangLog() {
    ASSERT_EQ(0, pipe2(m_log, O_CLOEXEC));
    fcntl(m_log[0], F_SETFL, O_NONBLOCK);
}

std::string CStationProcess::ReadHungLog() {
    std::string text;
    char part[4096];
    for (ssize_t got = 0; (got = read(m_log[0], part, sizeof part)) > 0;)
        text.append(part, static_cast<std::size_t>(got));
    return text;
}

bool CStationProcess::Start() {
    int ends[2];
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) return false;
    m_pid = fork();
    if (m_pid == 0) {
        fcntl(ends[1], F_SETFD, 0);
        Execute(ends[1], m_log[1]);
    }
    close(ends[1]);
    m_socket = ends[0];
    return m_pid > 0;
}

bool CStationProcess::Grant(std::uint32_t passes, std::uint32_t killAtFileCall) {
    const ClockGrant grant{m_nowMicros, passes, killAtFileCall};
    return (m_pid > 0 || Start()) && send(m_socket, &grant, sizeof grant, MSG_NOSIGNAL) == sizeof grant;
}

bool CStationProcess::AwaitReport() {
    ClockReport report{};
    pollfd ready{m_socket, POLLIN, 0};
    if (poll(&ready, 1, kHangsMs) != 1) return false;
    if (recv(m_socket, &report, sizeof report, 0) != sizeof report) return false;
    m_nowMicros = report.nowMicros;
    m_fileCalls = report.fileCalls;
    m_syncs = report.syncs;
    return true;
}

void CStationProcess::Expect(bool reported) {
    if (reported) return;
    Kill();
    FAIL() << "the process hangs or died\n" << ReadText(OutputFile()) << Errors();
}

void CStationProcess::RunPasses(std::uint32_t passes) {
    Expect(Grant(passes) && AwaitReport());
}

bool CStationProcess::RunOrEnd(std::uint32_t passes, int& status) {
    if (Grant(passes) && AwaitReport()) return true;
    status = Kill();
    return false;
}

bool CStationProcess::RunIntoKill(std::uint32_t fileCall, std::uint32_t passes) {
    if (Grant(passes, fileCall) && AwaitReport()) return false;
    EXPECT_EQ(-SIGKILL, Reap()) << Errors();
    return true;
}

int CStationProcess::RunToEnd() {
    constexpr std::uint32_t kPatience = 1000;
    if (Grant(kPatience) && AwaitReport()) {
        Kill();
        ADD_FAILURE() << "the process goes on\n" << ReadText(OutputFile()) << Errors();
        return -1;
    }
    return Reap();
}

int CStationProcess::Reap() {
    int status = -1;
    waitpid(m_pid, &status, 0);
    close(m_socket);
    m_pid = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

int CStationProcess::Kill() {
    if (m_pid <= 0) return 0;
    kill(m_pid, SIGKILL);  // changes nothing for a process that ended by itself
    return Reap();
}

std::string CStationProcess::TakeOutput() {
    const std::string all = ReadText(OutputFile());
    const std::string fresh = all.substr(m_outputTaken);
    m_outputTaken = all.size();
    return fresh;
}

std::string CStationProcess::Errors() const {
    return ReadText(ErrorFile());
}

long CStationProcess::PrivateKb() const {
    // An emulator shares its process with the program, whose addresses are those of 32 bits.
    constexpr unsigned long long kLast = kEmulated ? 0xFFFFFFFFULL : ~0ULL;
    std::ifstream mappings("/proc/" + std::to_string(m_pid) + "/smaps");
    std::string line;
    long total = 0;
    bool counted = false;
    while (std::getline(mappings, line)) {
        unsigned long long begin = 0;
        unsigned long long end = 0;
        long kb = 0;
        if (std::sscanf(line.c_str(), "%llx-%llx ", &begin, &end) == 2) counted = begin <= kLast;
        if (counted && std::sscanf(line.c_str(), "Anonymous: %ld", &kb) == 1) total += kb;
    }
    EXPECT_LT(0, total);
    return total;
}
