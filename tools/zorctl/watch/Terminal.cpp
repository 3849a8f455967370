#include "tools/zorctl/watch/Terminal.h"

// Its macros bear names such as `move` and `timeout`.
#define NCURSES_NOMACROS
#include <curses.h>
#include <fcntl.h>
#include <unistd.h>

#include <clocale>
#include <cstdlib>

std::string CTerminal::Open() {
    if (isatty(STDIN_FILENO) == 0 || isatty(STDOUT_FILENO) == 0)
        return "watch needs a terminal; get, log, status and main listen go without";
    std::setlocale(LC_CTYPE, "");
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
    if (m_errors < 0) return;
    dup2(m_errors, STDERR_FILENO);
    close(m_errors);
}

int CTerminal::Lines() const {
    return getmaxy(stdscr);
}

int CTerminal::Columns() const {
    return getmaxx(stdscr);
}

// The library sends the terminal no more than what differs from what is there.
void CTerminal::Draw(const std::vector<ScreenLine>& screen) {
    constexpr attr_t kAttributes[] = {A_NORMAL, A_BOLD, A_REVERSE};
    werase(stdscr);
    for (std::size_t line = 0; line < screen.size(); ++line) {
        wmove(stdscr, static_cast<int>(line), 0);
        for (const Span& span : screen[line]) {
            wattrset(stdscr, static_cast<int>(kAttributes[static_cast<std::size_t>(span.look)]));
            waddstr(stdscr, span.text.c_str());
        }
    }
    wrefresh(stdscr);
}

CTerminal::EWake CTerminal::Wait(CStopSignals& stop) {
    constexpr int kControlL = 'L' - '@';
    constexpr long kPauseNanoseconds = 5'000'000;
    if (stop.Pause(kPauseNanoseconds)) return stop.HungUp() ? EWake::Lost : EWake::Quit;
    EWake wake = EWake::Time;
    for (int key = wgetch(stdscr); key != ERR; key = wgetch(stdscr)) {
        if (key == 'q' || key == 'Q') return EWake::Quit;
        if (key == kControlL) clearok(curscr, true);
        wake = EWake::Changed;
    }
    return isatty(STDIN_FILENO) != 0 ? wake : EWake::Lost;
}
