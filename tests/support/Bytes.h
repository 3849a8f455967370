// Byte strings and captured output as tests write them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

using Bytes = std::vector<std::uint8_t>;

// "e8 03" -> bytes; blanks are free.
Bytes Hex(const std::string& text);
// bytes -> "e8 03"
std::string ToHex(const void* data, std::size_t length);
inline std::string ToHex(const Bytes& bytes) {
    return ToHex(bytes.data(), bytes.size());
}

// What `run` writes to standard output and standard error.
struct Captured {
    std::string out;
    std::string err;
};
Captured Capture(const std::function<void()>& run);

// `output` with every source line number of a diagnostic header replaced by '#'.
std::string Masked(const std::string& output);
// The same without the diagnostic lines of other operations than `operation`.
std::string MaskedOf(const std::string& operation, const std::string& output);
// A whole diagnostic line as Masked shows it.
std::string Line(const std::string& operation, const std::string& text);
