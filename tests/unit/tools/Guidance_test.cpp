// The man page and the shell completion know what the tool can do.
#include <gmock/gmock.h>

#include <cstdio>
#include <fstream>
#include <regex>

#include "tests/support/CallZorctl.h"

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
    const std::string help = Call(command + " --help").out;
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

TEST(Guidance, ManPageHasEveryCommandAndOption) {
    std::ostringstream text;
    text << std::ifstream(ZOR_PACKAGING "man/zorctl.1").rdbuf();
    const std::string page = std::regex_replace(text.str(), std::regex("\\\\(f.|(-))"), "$2");
    ASSERT_THAT(page, testing::HasSubstr("zorctl"));
    Check(page, "");
}

TEST(Guidance, CompletionOffersWhatTheHelpLists) {
    const struct {
        const char* words;
        const char* offered;
    } kCases[] = {
        {"main l", "listen"},
        {"main listen --pe", "--peek"},
        {"set yc 5 --t", "--text"},
        {"log soe ./", ""},  // a file
    };
    for (const auto& item : kCases) {
        const std::string script =
            std::string("zorctl() { " ZOR_TEST_EMULATOR " " ZOR_TEST_ZORCTL " \"$@\"; }; . " ZOR_PACKAGING
                        "completion/zorctl; COMP_WORDS=(zorctl ") +
            item.words +
            "); COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); _zorctl; "
            "echo -n \"${COMPREPLY[*]}\"";
        std::FILE* shell = popen(("bash -c '" + script + "'").c_str(), "r");
        ASSERT_NE(nullptr, shell);
        char offered[200] = {};
        const std::size_t length = std::fread(offered, 1, sizeof offered - 1, shell);
        EXPECT_EQ(0, pclose(shell));
        EXPECT_EQ(item.offered, std::string(offered, length)) << item.words;
    }
}

}  // namespace
