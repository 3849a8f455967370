// What is on the man page, and what fits on a screen.
#include <gmock/gmock.h>

#include <fstream>
#include <regex>

#include "tests/support/CallZorctl.h"
#include "tools/zorctl/watch/ViewLayout.h"

namespace {

std::vector<std::string> Matches(const std::string& text, const char* pattern) {
    const std::regex expression(pattern);
    std::vector<std::string> found;
    for (std::sregex_iterator match(text.begin(), text.end(), expression), end; match != end; ++match)
        found.push_back((*match)[1]);
    return found;
}

// Every command below `command` has to be on `page` with all its options.
void Check(const std::string& page, const std::string& command) {
    const std::string help = Capture([&] { RunLine(command + " --help"); }).out;
    for (const std::string& option : Matches(help, "\n +(?:-h,)?(--[-a-z]+)")) {
        if (option == "--help" || option == "--version") continue;
        EXPECT_THAT(page, testing::HasSubstr(option)) << command;
    }
    const std::size_t list = help.find("\nSubcommands:");
    if (list == std::string::npos) return;
    for (const std::string& name : Matches(help.substr(list), "\n  ([a-z][a-z0-9]*)")) {
        EXPECT_FALSE(Matches(page, ("\\b(" + name + ")\\b").c_str()).empty()) << command << ' ' << name;
        Check(page, command + (command.empty() ? "" : " ") + name);
    }
}

TEST(Tools, ManPageHasEveryCommandAndOption) {
    std::ostringstream text;
    text << std::ifstream(ZOR_PACKAGING "man/zorctl.1").rdbuf();
    const std::string page = std::regex_replace(text.str(), std::regex("\\\\(f.|(-))"), "$2");
    ASSERT_THAT(page, testing::HasSubstr("zorctl"));
    Check(page, "");
}

TEST(Tools, WatchFillsAScreenOfAnySize) {
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
