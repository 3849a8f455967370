#include "tools/zorctl/text/HexText.h"

#include <cstdio>

namespace {

int DigitValue(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

}  // namespace

std::string HexText(const std::uint8_t* bytes, std::size_t count, const char* gap) {
    constexpr char kDigits[] = "0123456789abcdef";
    std::string text;
    for (std::size_t i = 0; i < count; ++i) {
        if (i > 0) text += gap;
        text += kDigits[bytes[i] >> 4];
        text += kDigits[bytes[i] & 0xF];
    }
    return text;
}

std::string HexKey(int key) {
    char text[16];
    std::snprintf(text, sizeof text, "0x%X", static_cast<unsigned>(key));
    return text;
}

std::size_t ReadHex(const std::string& text, std::vector<std::uint8_t>& bytes) {
    std::size_t i = 0;
    while (i < text.size()) {
        if (text[i] == ' ' || text[i] == '\t' || text[i] == '\r') {
            ++i;
            continue;
        }
        if (text[i] == '0' && i + 2 < text.size() && (text[i + 1] == 'x' || text[i + 1] == 'X') &&
            DigitValue(text[i + 2]) >= 0)
            i += 2;
        const int high = DigitValue(text[i]);
        const int low = i + 1 < text.size() ? DigitValue(text[i + 1]) : -1;
        if (high < 0 || low < 0) break;
        bytes.push_back(static_cast<std::uint8_t>(high << 4 | low));
        i += 2;
    }
    return i;
}

bool ParseHex(const std::string& text, std::vector<std::uint8_t>& bytes) {
    return ReadHex(text, bytes) == text.size();
}
