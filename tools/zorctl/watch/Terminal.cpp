#include "tools/zorctl/watch/Terminal.h"

// Its macros bear names such as `move` and `timeout`.
#define NCURSES_NOMACROS
#include <curses.h>
#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <clocale>
#include <cstdlib>

namespace {

attr_t AttributesOf(ELook look) {
    switch (look) {
        case ELook::Heading:
            return A_BOLD;
        case ELook::Fresh:
            return A_REVERSE;
        case ELook::Plain:
            break;
    }
    return A_NORMAL;
}

int MillisecondsUntil(CDeadline until) {
    const auto rest =
        std::chrono::ceil<std::chrono::milliseconds>(until - std::chrono::steady_clock::now()).count();
    return static_cast<int>(std::clamp<std::int64_t>(rest, 0, 60'000));
}

}  // namespace

std::string CTerminal::Open() {
    if (isatty(STDIN_FILENO) == 0 || isatty(STDOUT_FILENO) == 0)
        return "watch needs a terminal; get, log, status and main listen go without";
    std::setlocale(LC_CTYPE, "");
    // Before the library sets up its handlers: a blocked signal goes to the descriptor.
    sigset_t signals;
    sigemptyset(&signals);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGWINCH, SIGCONT}) sigaddset(&signals, signal);
    sigprocmask(SIG_BLOCK, &signals, &m_before);
    m_signals = signalfd(-1, &signals, SFD_NONBLOCK | SFD_CLOEXEC);
    m_screen = newterm(nullptr, stdout, stdin);
    if (m_screen == nullptr) {
        const char* name = std::getenv("TERM");
        return std::string("cannot use this terminal: TERM is ") + (name != nullptr ? name : "not set");
    }
    cbreak();
    noecho();
    nodelay(stdscr, true);
    curs_set(0);
    if (isatty(STDERR_FILENO) == 0) return "";
    m_errors = fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
    if (m_errors >= 0 && nowhere >= 0) dup2(nowhere, STDERR_FILENO);
    if (nowhere >= 0) close(nowhere);
    return "";
}

CTerminal::~CTerminal() {
    if (m_screen != nullptr) {
        endwin();
        delscreen(static_cast<SCREEN*>(m_screen));
    }
    if (m_errors >= 0) {
        dup2(m_errors, STDERR_FILENO);
        close(m_errors);
    }
    if (m_signals < 0) return;
    close(m_signals);
    sigprocmask(SIG_SETMASK, &m_before, nullptr);
}

int CTerminal::Lines() const {
    return getmaxy(stdscr);
}

int CTerminal::Columns() const {
    return getmaxx(stdscr);
}

// The library sends the terminal no more than what differs from what is there.
void CTerminal::Draw(const std::vector<ScreenLine>& screen) {
    werase(stdscr);
    for (std::size_t line = 0; line < screen.size(); ++line) {
        wmove(stdscr, static_cast<int>(line), 0);
        for (const Span& span : screen[line]) {
            wattrset(stdscr, static_cast<int>(AttributesOf(span.look)));
            waddstr(stdscr, span.text.c_str());
        }
    }
    wrefresh(stdscr);
}

CTerminal::EWake CTerminal::Wait(CDeadline until) {
    pollfd watched[] = {{STDIN_FILENO, POLLIN, 0}, {m_signals, POLLIN, 0}};
    const int ready = poll(watched, std::size(watched), MillisecondsUntil(until));
    if (ready < 0) return errno == EINTR ? EWake::Changed : EWake::Lost;  // stopped and continued
    EWake wake = EWake::Time;
    if (watched[1].revents != 0) wake = TakeSignals();
    if (watched[0].revents != 0 && (wake == EWake::Time || wake == EWake::Changed))
        wake = std::max(wake, TakeKeys());
    return wake;
}

CTerminal::EWake CTerminal::TakeSignals() {
    EWake wake = EWake::Changed;
    signalfd_siginfo signal{};
    while (read(m_signals, &signal, sizeof signal) == sizeof signal) {
        if (signal.ssi_signo == SIGWINCH)
            FollowSize();
        else if (signal.ssi_signo == SIGCONT)
            TakeBack();
        else
            wake = std::max(wake, signal.ssi_signo == SIGHUP ? EWake::Lost : EWake::Quit);
    }
    return wake;
}

// A shell has had the terminal while this process was stopped; the library knows of Ctrl-Z only.
void CTerminal::TakeBack() {
    reset_prog_mode();
    curs_set(1);  // where it is hidden already, it would not be told again
    curs_set(0);
    clearok(curscr, true);
}

CTerminal::EWake CTerminal::TakeKeys() {
    constexpr int kControlL = 'L' - '@';
    int key = wgetch(stdscr);
    if (key == ERR) return EWake::Lost;  // there was something to read, and it was the end
    for (; key != ERR; key = wgetch(stdscr)) {
        if (key == 'q' || key == 'Q') return EWake::Quit;
        if (key == kControlL) clearok(curscr, true);
    }
    return EWake::Changed;
}

// The library would hear of it by a signal that is blocked here. Not by resizeterm(), which puts a key in
// front of those that were typed.
void CTerminal::FollowSize() {
    winsize size{};
    if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_row == 0 || size.ws_col == 0) return;
    resize_term(size.ws_row, size.ws_col);
    clearok(curscr, true);
}
