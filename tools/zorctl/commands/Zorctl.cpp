#include <CLI/CLI.hpp>
#include <cstdio>
#include <sstream>

#include "tools/zorctl/commands/Commands.h"
#include "tools/zorctl/text/PlainText.h"

namespace {

void AddCommands(CLI::App& app, EExit& result) {
    app.require_subcommand(1);
    app.set_version_flag("--version", ZOR_VERSION);
    AddInit(app, result);
    AddExport(app, result);
    AddSet(app, result);
    AddGet(app, result);
    AddLog(app, result);
    AddPlay(app, result);
    AddDecode(app, result);
    AddStatus(app, result);
    AddWatch(app, result);
    AddNames(app, result);
    CLI::App* peer = app.add_subcommand("main", "Play zor_main: read messages, send commands");
    peer->require_subcommand(1);
    AddMainListen(*peer, result);
    AddMainSettings(*peer, result);
    AddMainSend(*peer, result);
    AddMainHistory(*peer, result);
    AddMainAck(*peer, result);
}

// What a command has printed may still wait in the buffer; one that prints nothing does not need the output.
bool OutputWorks() {
    const bool works = std::fflush(stdout) == 0 && std::ferror(stdout) == 0;
    std::clearerr(stdout);
    return works;
}

int ParseAndRun(int argc, const char* const* argv) {
    CLI::App app("Bench tool for zor_runtime: stands in for everything around the process", "zorctl");
    EExit result = EExit::Done;
    AddCommands(app, result);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        // Asking for help or the version also ends parsing this way, with 0.
        std::ostringstream wanted;
        std::ostringstream wrong;
        const bool good = app.exit(error, wanted, wrong) == 0;
        std::fputs(Printable(wanted.str(), EEscape::Lines).c_str(), stdout);
        std::fputs(Printable(wrong.str(), EEscape::Lines).c_str(), stderr);
        return static_cast<int>(good ? EExit::Done : EExit::WrongUse);
    }
    return static_cast<int>(result);
}

}  // namespace

int RunZorctl(int argc, const char* const* argv) {
    const int result = ParseAndRun(argc, argv);
    if (OutputWorks()) return result;
    return static_cast<int>(Complain("cannot write to standard output"));
}
