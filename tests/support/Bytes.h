// Byte strings and captured output as tests write them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

using Bytes = std::vector<std::uint8_t>;

// "e8 03" -> bytes.
Bytes Hex(const std::string& text);
// bytes -> "e8 03"
std::string ToHex(const void* data, std::size_t length);
inline std::string ToHex(const Bytes& bytes) {
    return ToHex(bytes.data(), bytes.size());
}

// The lines of a table, each as its cells: what stands between bars, without the blanks around it.
std::vector<std::vector<std::string>> Table(const std::string& lines);

// What `run` writes to standard output and standard error.
struct Captured {
    std::string out;
    std::string err;
};
Captured Capture(const std::function<void()>& run);

// `output` as people read it: diagnostic lines as "Operation: text", without colours and source lines ('#'
// for the one in a text); a line break inside a text as "⏎".
std::string Plain(const std::string& output);
// The texts of the lines of one operation in such an output, joined by ';', without line breaks of their own.
std::string Texts(const std::string& plain, const std::string& operation);
