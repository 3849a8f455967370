#include "tools/zorctl/HexText.h"

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

bool ParseHex(const std::string& text, std::vector<std::uint8_t>& bytes) {
    for (std::size_t i = 0; i < text.size();) {
        if (text[i] == ' ') {
            ++i;
            continue;
        }
        const int high = DigitValue(text[i]);
        const int low = i + 1 < text.size() ? DigitValue(text[i + 1]) : -1;
        if (high < 0 || low < 0) return false;
        bytes.push_back(static_cast<std::uint8_t>(high << 4 | low));
        i += 2;
    }
    return true;
}
