// Bytes as hexadecimal text.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

// Two lower-case digits per byte, `gap` between the bytes.
std::string HexText(const std::uint8_t* bytes, std::size_t count, const char* gap = "");

// A System V key as it is written everywhere: "0x1234".
std::string HexKey(int key);

// Reads pairs of hexadecimal digits, "0x" in front of a pair, blanks, tabs and carriage returns between pairs
// allowed, and appends them to `bytes`. Returns where the text is anything else, an index into it, and its
// size when all is well; `bytes` then holds what came before.
std::size_t ReadHex(const std::string& text, std::vector<std::uint8_t>& bytes);
// The same; false for a text that is not wholly such.
bool ParseHex(const std::string& text, std::vector<std::uint8_t>& bytes);
