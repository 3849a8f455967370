// zorctl as a command line, in the process of the test.
#pragma once

#include <algorithm>
#include <iomanip>
#include <sstream>
#include <string>
#include <vector>

#include "tests/support/Bytes.h"
#include "tools/zorctl/commands/Commands.h"

struct Outcome {
    int exit;
    std::string out;
    std::string err;
};

// Runs zorctl with the words of `line`; double quotes hold a word together.
inline int RunLine(const std::string& line) {
    std::istringstream words("zorctl " + line);
    std::vector<std::string> arguments;
    for (std::string word; words >> std::quoted(word);) arguments.push_back(word);
    std::vector<const char*> pointers(arguments.size());
    std::transform(arguments.begin(), arguments.end(), pointers.begin(),
                   [](const std::string& argument) { return argument.c_str(); });
    return RunZorctl(static_cast<int>(pointers.size()), pointers.data());
}
