#include "tests/unit/tools/ToolCommands.h"

#include <gtest/gtest.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <iostream>
#include <regex>

#include "tests/support/CallZorctl.h"
#include "tests/support/Databases.h"
#include "tests/support/FakeClock.h"
#include "tools/zorctl/scenario/Player.h"

// A play on the time that the transcript gives.
struct CToolCommands::Play {
    Play(const std::string& text, EPlayOutput output, double speed)
        : scenario(ParseScenario("t", text, faults)),
          log(output),
          player(scenario, {live, channel, stop, events, log}, speed) {
        EXPECT_TRUE(channel.Open(DeadlineIn(0), stop));
    }

    CStopSignals stop;
    CMainChannel channel;
    CBenchShm live;
    CEventReader events{AppFile(kEventFile)};
    std::vector<std::string> faults;
    Scenario scenario;
    CPlayLog log;
    CPlayer player;
};

CToolCommands::CToolCommands(CCommandLine& line)
    : m_line(line),
      m_table{
          {"zorctl", line.Call([this](const std::string& arguments) { Zorctl(arguments); })},
          {"complete", line.Call(Complete)},
          {"process", line.Call([this](const std::string& name) { StartProcess(name); })},
          {"play", line.Call([this](const std::string& options) { StartPlay(options); })},
          {"at", line.Call([this](double seconds) { GoOnUntil(seconds); })},
          // zorctl watch: it starts; the screen once a text stands on it, or only that it does; it ends.
          {"watch", line.Call([this](const std::string& options) {
               const std::string command = "watch --interval 0.02 " + options;
               m_terminal = std::make_unique<COnTerminal>([&] { return RunLine(command); });
           })},
          {"screen", line.Call([this](const std::string& text) {
               std::fputs(m_terminal->Until(text).c_str(), stdout);
           })},
          {"await", line.Call([this](const std::string& text) {
               const std::string screen = m_terminal->Until(text);
               if (screen.find(text) == std::string::npos) std::fputs(screen.c_str(), stdout);
           })},
          {"resize", line.Call([this](unsigned short lines, unsigned short columns) {
               m_terminal->Resize(lines, columns);
           })},
          {"type", line.Call([this](const std::string& text) { m_terminal->Type(text); })},
          {"kill", line.Call([this](int number) { m_terminal->Signal(number); })},
          {"wait", [this] { m_line.exit = m_terminal->End(); }},
      } {}

CToolCommands::~CToolCommands() {
    for (const pid_t process : m_processes) {
        kill(process, SIGKILL);
        waitpid(process, nullptr, 0);
    }
}

std::string CToolCommands::Masked(std::string text) const {
    const auto mask = [&text](const std::string& what, const char* name) {
        text = std::regex_replace(text, std::regex(what), name);
    };
    for (std::size_t i = 0; i < m_processes.size(); ++i)
        mask("\\b" + std::to_string(m_processes[i]) + "\\b", ("PID" + std::to_string(i + 1)).c_str());
    // What an emulator shows of its own process is not the truth.
    mask("\\b" + std::to_string(getpid()) + "\\b(( \\(|,\"name\":\")[^\")]+[\")])?", "OWN");
    mask("(last (sent|taken) |OWN,\"time\":\")[-0-9]{10} [:0-9]{8}", "$1TIME");
    mask("\\+0\\.0\\d\\d ", "+0.0## ");
    return text;
}

void CToolCommands::Zorctl(const std::string& arguments) {
    std::istringstream input(m_line.input);
    std::streambuf* const before = std::cin.rdbuf(input.rdbuf());
    std::cin.clear();
    m_line.exit = RunLine(arguments);
    std::cin.rdbuf(before);
}

// What the shell offers for the last of `words`.
void CToolCommands::Complete(const std::string& words) {
    const std::string script =
        "zorctl() { " ZOR_TEST_EMULATOR " " ZOR_TEST_ZORCTL " \"$@\"; }; . " ZOR_PACKAGING
        "completion/zorctl; COMP_WORDS=(zorctl " +
        words + "); COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); _zorctl; echo \"<${COMPREPLY[*]}>\"";
    std::FILE* const shell = popen(("bash -c '" + script + "'").c_str(), "r");
    for (int byte = 0; (byte = std::fgetc(shell)) != EOF;) std::putchar(byte);
    EXPECT_EQ(0, pclose(shell));
}

// A process of that name, for as long as the transcript runs.
void CToolCommands::StartProcess(const std::string& name) {
    int named[2] = {-1, -1};
    EXPECT_EQ(0, pipe(named));
    m_processes.push_back(fork());
    if (m_processes.back() == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        prctl(PR_SET_NAME, name.c_str());
        for (const int end : named) close(end);
        for (;;) pause();
    }
    close(named[1]);
    char end = 0;
    EXPECT_EQ(0, read(named[0], &end, 1));
    close(named[0]);
}

// The scenario behind the command, as JSON where the options have it, and so many times as fast.
void CToolCommands::StartPlay(const std::string& options) {
    std::smatch speed;
    std::regex_search(options, speed, std::regex("[0-9.]+"));
    m_play = std::make_unique<Play>(
        m_line.input, options.find("json") == std::string::npos ? EPlayOutput::All : EPlayOutput::Json,
        speed.empty() ? 1.0 : std::stod(speed[0]));
    for (const std::string& fault : m_play->faults) std::puts(fault.c_str());
}

// Lets the player look at this time of the play.
void CToolCommands::GoOnUntil(double seconds) {
    const auto micros = static_cast<std::int64_t>(seconds * 1e6);
    const std::timespec wall{static_cast<std::time_t>(FakeClock::kStart + micros / 1000000),
                             static_cast<long>(micros % 1000000 * 1000)};
    if (!m_play->player.Advance({PlayTime{micros}, wall}))
        std::printf("over, %d failed\n", m_play->player.Failures());
}
