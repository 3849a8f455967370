#include "tests/support/StationProcess.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace {

constexpr int kHangsMs = 120000;  // longer than any number of passes a test asks for takes

// A test of another machine's build starts the program as it was started itself.
constexpr bool kEmulated = sizeof ZOR_TEST_EMULATOR > 1;

std::string ReadText(const char* path) {
    std::ostringstream text;
    text << std::ifstream(path).rdbuf();
    return text.str();
}

void Redirect(const char* path, int descriptor) {
    dup2(open(path, O_WRONLY | O_CREAT | O_TRUNC | O_APPEND | O_CLOEXEC, 0600), descriptor);
}

[[noreturn]] void Execute(int planFile, int socket) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    Redirect(CStationProcess::kOutput, STDOUT_FILENO);
    Redirect(CStationProcess::kErrors, STDERR_FILENO);
    dup2(planFile, kPlanFile);
    dup2(socket, kTurnSocket);
    // The emulator passes the library on to the program in it; for the emulator itself it is of the wrong
    // kind.
    if (kEmulated)
        setenv("QEMU_SET_ENV", "LD_PRELOAD=" ZOR_TEST_PRELOADED, 1);
    else
        setenv("LD_PRELOAD", ZOR_TEST_PRELOADED, 1);
    // The library is loaded ahead of the sanitizer on purpose; freed blocks held back would look like growth.
    setenv("ASAN_OPTIONS", "verify_asan_link_order=0:quarantine_size_mb=0:thread_local_quarantine_size_kb=0",
           1);
    if (kEmulated) execl(ZOR_TEST_EMULATOR, ZOR_TEST_EMULATOR, ZOR_TEST_PROGRAM, nullptr);
    execl(ZOR_TEST_PROGRAM, ZOR_TEST_PROGRAM, nullptr);
    _exit(127);
}

}  // namespace

CStationProcess::CStationProcess() : m_planFile(memfd_create("plan", MFD_CLOEXEC)) {
    EXPECT_EQ(0, ftruncate(m_planFile, sizeof(HookPlan)));
    m_plan = static_cast<HookPlan*>(
        mmap(nullptr, sizeof(HookPlan), PROT_READ | PROT_WRITE, MAP_SHARED, m_planFile, 0));
    *m_plan = {};
}

CStationProcess::~CStationProcess() {
    if (m_pid > 0) {
        kill(m_pid, SIGKILL);
        waitpid(m_pid, nullptr, 0);
    }
    close(m_socket);
    close(m_planFile);
    munmap(m_plan, sizeof *m_plan);
}

void CStationProcess::Start() {
    int ends[2];
    ASSERT_EQ(0, socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends));
    m_pid = fork();
    if (m_pid == 0) Execute(m_planFile, ends[1]);
    close(ends[1]);
    m_socket = ends[0];
}

std::optional<int> CStationProcess::Run(std::uint32_t passes) {
    if (m_socket < 0) Start();
    if (m_pid <= 0) return -1;  // it has ended before
    m_plan->passes = passes;
    send(m_socket, "", 1, MSG_NOSIGNAL);
    pollfd ready{m_socket, POLLIN, 0};
    char turn = 0;
    if (poll(&ready, 1, kHangsMs) == 1 && recv(m_socket, &turn, 1, 0) == 1) return std::nullopt;
    kill(m_pid, SIGKILL);  // changes nothing for a process that ended by itself
    int status = -1;
    waitpid(m_pid, &status, 0);
    m_pid = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

void CStationProcess::RunPasses(std::uint32_t passes) {
    if (const auto status = Run(passes))
        FAIL() << "the process hangs or died: " << *status << '\n' << TakeOutput() << Errors();
}

std::string CStationProcess::TakeOutput() {
    const std::string fresh = ReadText(kOutput);
    std::filesystem::resize_file(kOutput, 0);
    return fresh;
}

std::string CStationProcess::Errors() {
    return ReadText(kErrors);
}

long CStationProcess::PrivateKb() const {
    if (sizeof ZOR_TEST_COMPANY > 1) return 0;
    std::ifstream status("/proc/" + std::to_string(m_pid) + "/status");
    long kb = -1;
    for (std::string line; std::getline(status, line);) std::sscanf(line.c_str(), "RssAnon: %ld", &kb);
    EXPECT_LT(0, kb);
    return kb;
}
