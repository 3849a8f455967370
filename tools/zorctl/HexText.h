// Bytes as hexadecimal text.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

// Two lower-case digits per byte, `gap` between the bytes.
std::string HexText(const std::uint8_t* bytes, std::size_t count, const char* gap = "");

// Reads pairs of hexadecimal digits, blanks between pairs allowed, and appends them to `bytes`. False for any
// other text; `bytes` then holds what came before the fault.
bool ParseHex(const std::string& text, std::vector<std::uint8_t>& bytes);
