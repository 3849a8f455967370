// What CLI::Range lets through: the number that is none.
#pragma once

#include <CLI/CLI.hpp>
#include <cstdlib>
#include <string>

// A decimal number from `least` to `most`; not nan, which no comparison finds outside.
inline CLI::Validator NumberIn(double least, double most) {
    const std::string range = CLI::Range(least, most).get_description();
    const auto check = [least, most, range](const std::string& text) -> std::string {
        char* end = nullptr;
        const double value = std::strtod(text.c_str(), &end);
        if (!text.empty() && *end == '\0' && value >= least && value <= most) return "";
        return "expected " + range + ": " + text;
    };
    return CLI::Validator(check, range);
}
