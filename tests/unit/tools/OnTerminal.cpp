#include "tests/unit/tools/OnTerminal.h"

#include <gmock/gmock.h>
#include <poll.h>
#include <pty.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utmp.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <regex>

#include "tests/support/Bytes.h"
#include "tests/support/Databases.h"
#include "tests/support/Sandbox.h"

namespace {

constexpr auto kPatience = std::chrono::seconds(60);

// A terminal that can do no more than Screen understands.
constexpr char kTerminal[] =
    R"(zor|for tests, clear=\E[1;1H\E[J, cup=\E[%i%p1%d;%p2%dH, ed=\E[J, el=\E[K, rev=\E[7m, bold=\E[1m,)"
    "\n sgr0=\\E[m, smcup=\\E[?1049h, rmcup=\\E[?1049l, civis=\\E[?25l, cnorm=\\E[?25h,\n";

}  // namespace

COnTerminal::COnTerminal(const std::function<int()>& program) {
    const std::string place = kScratchDirectory + std::string("terminfo");
    WriteText(place + ".ti", kTerminal);
    EXPECT_EQ(0, pclose(popen(("tic -o " + place + ' ' + place + ".ti").c_str(), "r")));
    EXPECT_EQ(0, openpty(&m_master, &m_slave, nullptr, nullptr, &m_size));
    tcgetattr(m_slave, &m_before);
    m_process = fork();
    if (m_process > 0) return;
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    setenv("TERM", "zor", 1);
    setenv("TERMINFO", place.c_str(), 1);
    close(m_master);
    login_tty(m_slave);
    _exit(program());
}

COnTerminal::~COnTerminal() {
    if (m_process > 0) kill(m_process, SIGKILL), waitpid(m_process, nullptr, 0);
    for (const int end : {m_master, m_slave}) close(end);
}

void COnTerminal::Resize(unsigned short lines, unsigned short columns) {
    m_size = {lines, columns, 0, 0};
    m_since = m_output.size();
    ioctl(m_master, TIOCSWINSZ, &m_size);
}

void COnTerminal::Type(const std::string& text) {
    EXPECT_LT(0, write(m_master, text.data(), text.size()));
}

void COnTerminal::Signal(int number) {
    kill(m_process, number);
}

std::string COnTerminal::Until(const std::string& text) {
    static const std::regex kTime("[0-2]\\d:[0-5]\\d:[0-5]\\d(\\.\\d{3})?");
    for (const auto end = std::chrono::steady_clock::now() + kPatience;;) {
        const std::string screen = std::regex_replace(Screen(), kTime, "TIME");
        if (screen.find(text) != std::string::npos || std::chrono::steady_clock::now() > end) return screen;
        Read(1000);
    }
}

int COnTerminal::End() {
    int status = 0;
    while (waitpid(m_process, &status, WNOHANG) == 0) Read(10);
    m_process = -1;
    while (Read(0)) continue;
    EXPECT_THAT(m_output.substr(m_output.size() - 20), testing::HasSubstr("\x1b[?25h\x1b[?1049l"));
    termios after{};
    tcgetattr(m_slave, &after);
    EXPECT_EQ(ToHex(&m_before, 4 * sizeof(tcflag_t)), ToHex(&after, 4 * sizeof(tcflag_t)));
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

bool COnTerminal::Read(int milliseconds) {
    char block[4096];
    pollfd ready{m_master, POLLIN, 0};
    const ssize_t got = poll(&ready, 1, milliseconds) == 1 ? read(m_master, block, sizeof block) : 0;
    if (got > 0) m_output.append(block, static_cast<std::size_t>(got));
    return got > 0;
}

std::string COnTerminal::Screen() const {
    static const std::regex kParts("\x1b\\[(\\d+);(\\d+)H|\x1b\\[([JK]|\\d?m|\\?\\d+[hl])|[ -~]");
    const std::size_t columns = m_size.ws_col;
    const std::size_t size = m_size.ws_row * columns;
    std::string text(size + 1, ' ');
    std::string pens = text;
    std::size_t at = 0;
    char pen = ' ';
    const std::string output = m_output.substr(m_since);
    for (std::sregex_iterator part(output.begin(), output.end(), kParts), end; part != end; ++part) {
        const std::string control = part->str(3);
        if (part->length(1) > 0) {
            at = std::min<std::size_t>(
                (std::stoul(part->str(1)) - 1) * columns + std::stoul(part->str(2)) - 1, size);
        } else if (control == "J" || control == "K") {
            const std::size_t last = control == "J" ? size : (at / columns + 1) * columns;
            for (std::string* of : {&text, &pens}) of->replace(at, last - at, last - at, ' ');
        } else if (!control.empty()) {
            pen = control == "7m" ? '#' : control == "m" ? ' ' : pen;
        } else if (at < size) {
            pens[at] = pen;
            text[at++] = part->str()[0];
        }
    }
    std::string screen;
    std::string line;
    for (std::size_t i = 0; i < size; ++i) {
        const bool lastColumn = (i + 1) % columns == 0;
        const bool opens = pens[i] == ' ' && pens[i + 1] != ' ' && !lastColumn;
        const bool closes = pens[i] == ' ' && i > 0 && pens[i - 1] != ' ';
        line += opens ? '[' : closes ? ']' : text[i];
        if (!lastColumn) continue;
        line.resize(line.find_last_not_of(' ') + 1);
        screen += (line.empty() ? "~" : line) + '\n';
        line.clear();
    }
    return screen;
}
