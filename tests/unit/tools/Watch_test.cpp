// zorctl watch on a pseudo-terminal: what stands on its screen, and what it leaves.
#include <gmock/gmock.h>
#include <poll.h>
#include <pty.h>
#include <sys/ioctl.h>
#include <sys/msg.h>
#include <sys/prctl.h>
#include <sys/shm.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utmp.h>

#include <csignal>
#include <regex>

#include "System/AppFiles.h"
#include "points/PortNumbering.h"
#include "reports/Messages.h"
#include "reports/PortState.h"
#include "tests/support/CallZorctl.h"
#include "tests/support/TestRuntime.h"
#include "tools/zorctl/MainChannel.h"
#include "tools/zorctl/ViewLayout.h"

namespace {

using testing::HasSubstr;

// A terminal that can do no more than ScreenOf understands.
constexpr char kTerminal[] =
    R"(zor|for tests, clear=\E[1;1H\E[J, cup=\E[%i%p1%d;%p2%dH, ed=\E[J, el=\E[K, rev=\E[7m, bold=\E[1m,)"
    "\n sgr0=\\E[m, smcup=\\E[?1049h, rmcup=\\E[?1049l, civis=\\E[?25l, cnorm=\\E[?25h,\n";

// What stands on it after `output`; what is in reverse, in brackets, takes the place of a blank before and
// behind it.
std::string ScreenOf(const std::string& output, std::size_t lines, std::size_t columns) {
    static const std::regex kParts("\x1b\\[(\\d+);(\\d+)H|\x1b\\[([JK]|\\d?m|\\?\\d+[hl])|[ -~]");
    std::string text(lines * columns + 1, ' ');
    std::string pens = text;
    std::size_t at = 0;
    char pen = ' ';
    const auto erase = [&](std::size_t end) {
        for (std::string* of : {&text, &pens}) of->replace(at, end - at, end - at, ' ');
    };
    for (std::sregex_iterator part(output.begin(), output.end(), kParts), end; part != end; ++part) {
        const std::string control = part->str(3);
        if (part->length(1) > 0)
            at = std::min<std::size_t>(
                (std::stoul(part->str(1)) - 1) * columns + std::stoul(part->str(2)) - 1, lines * columns);
        else if (control == "J" || control == "K")
            erase(control == "J" ? lines * columns : (at / columns + 1) * columns);
        else if (!control.empty())
            pen = control == "7m" ? '#' : control == "m" ? ' ' : pen;
        else if (at < lines * columns)
            pens[at] = pen, text[at++] = part->str()[0];
    }
    std::string screen;
    for (std::size_t i = 0; i < lines * columns; ++i) {
        const bool opens = pens[i] == ' ' && pens[i + 1] != ' ' && (i + 1) % columns != 0;
        const bool closes = pens[i] == ' ' && i > 0 && pens[i - 1] != ' ';
        screen += opens ? '[' : closes ? ']' : text[i];
        if ((i + 1) % columns == 0) screen = screen.substr(0, screen.find_last_not_of(' ') + 1) + '\n';
    }
    return screen;
}

// zorctl as a process of its own on a terminal of its own.
class COnTerminal {
  public:
    explicit COnTerminal(const std::string& command) {
        const std::string place = kScratchDirectory + std::string("terminfo");
        WriteText(place + ".ti", kTerminal);
        EXPECT_EQ(0, std::system(("tic -o " + place + ' ' + place + ".ti").c_str()));
        EXPECT_EQ(0, openpty(&m_master, &m_slave, nullptr, nullptr, &m_size));
        tcgetattr(m_slave, &m_before);
        m_process = fork();
        if (m_process > 0) return;
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        setenv("TERM", "zor", 1);
        setenv("TERMINFO", place.c_str(), 1);
        close(m_master);
        login_tty(m_slave);
        const char* arguments[] = {"zorctl", "watch", "--interval", "0.02", command.c_str()};
        _exit(RunZorctl(command.empty() ? 4 : 5, arguments));
    }
    ~COnTerminal() {
        if (m_process > 0) kill(m_process, SIGKILL), waitpid(m_process, nullptr, 0);
        for (const int end : {m_master, m_slave}) close(end);
    }
    pid_t Process() const { return m_process; }
    void Resize(unsigned short lines, unsigned short columns) {
        m_size = {lines, columns, 0, 0};
        m_since = m_output.size();
        ioctl(m_master, TIOCSWINSZ, &m_size);
    }
    void Type(const char* text) { EXPECT_LT(0, write(m_master, text, std::strlen(text))); }
    // The screen once `text` stands on it, times as "TIME".
    std::string Until(const std::string& text) {
        for (const CDeadline end = DeadlineIn(60);;) {
            const std::string screen = std::regex_replace(
                ScreenOf(m_output.substr(m_since), m_size.ws_row, m_size.ws_col), m_time, "TIME");
            if (screen.find(text) != std::string::npos) return screen;
            Read(1000);
            if (!HasPassed(end)) continue;
            ADD_FAILURE() << "no " << text << " on\n" << screen;
            return screen;
        }
    }
    // The exit code; the terminal must be as it was.
    int End() {
        int status = 0;
        while (waitpid(m_process, &status, WNOHANG) == 0) Read(10);
        m_process = -1;
        while (Read(0)) continue;
        EXPECT_THAT(m_output.substr(m_output.size() - 20), HasSubstr("\x1b[?25h\x1b[?1049l"));
        termios after{};
        tcgetattr(m_slave, &after);
        EXPECT_EQ(ToHex(&m_before, 4 * sizeof(tcflag_t)), ToHex(&after, 4 * sizeof(tcflag_t)));
        return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    }

  private:
    bool Read(int milliseconds) {
        char block[4096];
        pollfd ready{m_master, POLLIN, 0};
        const ssize_t got = poll(&ready, 1, milliseconds) == 1 ? read(m_master, block, sizeof block) : 0;
        if (got > 0) m_output.append(block, static_cast<std::size_t>(got));
        return got > 0;
    }

    const std::regex m_time{"[0-2]\\d:[0-5]\\d:[0-5]\\d(\\.\\d{3})?"};
    winsize m_size{24, 80, 0, 0};
    termios m_before{};
    int m_master = -1;
    int m_slave = -1;
    pid_t m_process = -1;
    std::string m_output;
    std::size_t m_since = 0;  // where the output for the present size begins
};

using ZorctlWatch = CEmptyStationTest;
using ZorctlWatchOfStation = CStationTest;

TEST_F(ZorctlWatchOfStation, ShowsItAndItsChanges) {
    ASSERT_EQ(0, Call("init --ports 2 /mnt/nandflash/app").exit);
    const auto report = [this](std::uint8_t code) {
        const PortStateBody body = BuildPortStateBody({}, 2, code);
        runtime.PostMsg(kCodeA1_14, body.data(), body.size());
        runtime.DrainOutbound();
    };
    Capture([&] {
        runtime.InitSOE();
        report(5);
    });
    live.SetGunState(2, 2);
    live.SetSignal(134 + 128, 1);
    live.SetSignal(136 + 128, 1);
    live.SetYc(101 + 128, 4025);
    live.SetCoefficient(101 + 128, 0.1F);
    live.SetYc(136 + 128, 1234);
    live.SetDd(32, 12345678);
    live.SetSignal(99, 1);
    COnTerminal watch("");
    EXPECT_EQ(
        " zorctl watch /mnt/nandflash/app/  zor_runtime is not running TIME  q quits\n"
        "port state      gun               voltage  current   SoC      energy       meter\n"
        "   1 1 fault    -                   0.0 V    0.0 A   0 %   0.000 kWh    0.00 kWh\n"
        "   2 5 charging in locked         402.5 V    0.0 A   0 %   1.234 kWh 1234.57 kWh\n"
        "-- points ----------------------------------------------------------------------\n"
        "   Station fault                     0  P1 Port fault                        1\n"
        "   Emergency stop                    0  P1 Port warning                      0\n"
        "   Lightning arrester tripped        0  P2 Gun connected                     1\n"
        "   Cabinet door open                 0  P2 Gun locked                        1\n"
        "   Smoke in cabinet                  0  P2 Charging voltage              402.5\n"
        "-- events ----------------------------------------------------------------------\n"
        "2024-03-05 TIME SOE database init!\n\n\n\n\n\n"
        "-- messages: 1 waiting; last sent TIME, none taken yet ---------------------\n"
        "TIME A1_14 port=2 state=5\n\n\n\n\n\n",
        watch.Until("state=5"));

    live.SetYc(101 + 128, 4031);
    live.SetSignal(20, 1);
    Capture([&] {
        runtime.InsertSOE(1, 20, 0, "[Emergency]Emergency stop 0 -> 1");
        report(1);
    });
    watch.Until("TIME A1_14 port=2 state=1]");
    EXPECT_THAT(watch.Until("2024-03-05 TIME [Emergency]Emergency stop 0 -> 1]"),
                testing::AllOf(HasSubstr("\n   2[1 fault]   in locked        [403.1 V]   0.0 A   0 %"),
                               HasSubstr("P2 Charging voltage             [403.1"),
                               HasSubstr("\n   Emergency stop                   [1] P1 Port warning")));
    EXPECT_EQ(2UL, Waiting());
    watch.Resize(7, 120);
    EXPECT_THAT(watch.Until("-- messages"), HasSubstr("port    state         gun                  voltage "));
    watch.Resize(1, 1);
    watch.Resize(30, 80);
    watch.Until("-- messages");
    watch.Type("q");
    EXPECT_EQ(0, watch.End());
}

TEST_F(ZorctlWatch, EndsInOrder) {
    for (const auto& [signal, exit] : {std::pair(SIGTERM, 0), std::pair(SIGINT, 0), std::pair(SIGHUP, 1)}) {
        COnTerminal watch("");
        const std::string screen = watch.Until("-- messages: queue not there --");
        EXPECT_THAT(screen, HasSubstr("\n     /mnt/nandflash/app/zorconfig.db: not there\n"));
        EXPECT_THAT(screen, HasSubstr("-- events: /mnt/nandflash/app/zorsoe.db: not there --"));
        kill(watch.Process(), signal);
        EXPECT_EQ(exit, watch.End());
    }
    EXPECT_LT(msgget(kQueueKey, 0), 0);
    EXPECT_LT(shmget(CShmLayout::kKey, 0, 0), 0);
    EXPECT_EQ("zorctl: watch needs a terminal; get, log, status and main listen go without\n",
              Call("watch").err);
}

TEST_F(ZorctlWatch, TakesFromAStationThatComesLater) {
    COnTerminal watch("--take");
    watch.Until("zorconfig.db: not there");
    ASSERT_EQ(0, Call("init --ports 1 /mnt/nandflash/app").exit);
    watch.Until("shared memory: not there");
    CTestRuntime runtime;
    const CLiveValues live;
    watch.Until("   0[2 idle]");
    runtime.PostMsg(kCodeA1_14, "\x01", 1);
    Capture([&] { runtime.DrainOutbound(); });
    watch.Until("TIME A1_14 body[1]=01 (body of 1 bytes, 18 expected)");
    EXPECT_EQ(0UL, Waiting());
    watch.Type("\x03");
    EXPECT_EQ(0, watch.End());
}

TEST_F(ZorctlWatch, FillsAScreenOfAnySize) {
    StationPicture picture;
    picture.ports.resize(8);
    picture.points.resize(700, {1, "Gun", {"1"}});
    picture.events.lines.resize(100, {"T\xC3\xBCr"});
    for (int lines = 0; lines < 30; ++lines)
        for (int columns = 0; columns < 130; columns += 9) {
            const std::vector<ScreenLine> screen = LayOut(picture, lines, columns);
            ASSERT_EQ(static_cast<std::size_t>(lines), screen.size()) << columns;
            for (const ScreenLine& line : screen) {
                int width = 0;
                for (const Span& span : line) width += static_cast<int>(span.text.size());
                ASSERT_EQ(columns, width) << lines;
            }
        }
}

}  // namespace
