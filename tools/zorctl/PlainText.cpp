#include "tools/zorctl/PlainText.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <memory>

#include "tools/zorctl/HexText.h"

namespace {

bool Continues(char c) {
    return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}

// Length of the character that begins at `at`, 0 where none does: stray and missing continuations, overlong
// forms, surrogates and numbers beyond the last character.
std::size_t CharacterAt(const std::string& text, std::size_t at) {
    const auto lead = static_cast<unsigned char>(text[at]);
    const std::size_t length = lead < 0x80 ? 1 : lead < 0xC2 ? 0 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    if (length <= 1) return length;
    if (lead > 0xF4 || at + length > text.size()) return 0;
    for (std::size_t i = 1; i < length; ++i)
        if (!Continues(text[at + i])) return 0;
    const auto second = static_cast<unsigned char>(text[at + 1]);
    const bool outside = (lead == 0xE0 && second < 0xA0) || (lead == 0xED && second > 0x9F) ||
                         (lead == 0xF0 && second < 0x90) || (lead == 0xF4 && second > 0x8F);
    return outside ? 0 : length;
}

// C0 and C1 controls, and DEL.
bool IsControl(const std::string& character) {
    const auto lead = static_cast<unsigned char>(character[0]);
    if (lead == 0xC2) return static_cast<unsigned char>(character[1]) < 0xA0;
    return lead < 0x20 || lead == 0x7F;
}

}  // namespace

bool IsUtf8(const std::string& text) {
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t length = CharacterAt(text, at);
        if (length == 0) return false;
        at += length;
    }
    return true;
}

std::string AsUtf8(const std::string& text) {
    constexpr char kReplacement[] = "\xEF\xBF\xBD";
    std::string out;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t length = CharacterAt(text, at);
        out += length == 0 ? kReplacement : text.substr(at, length);
        at += std::max<std::size_t>(length, 1);
    }
    return out;
}

std::string Printable(const std::string& text) {
    std::string out;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t length = CharacterAt(text, at);
        const std::string character = text.substr(at, std::max<std::size_t>(length, 1));
        if (length == 0 || IsControl(character))
            for (const char c : character) {
                const auto byte = static_cast<std::uint8_t>(c);
                out += "\\x" + HexText(&byte, 1);
            }
        else
            out += character;
        at += character.size();
    }
    return out;
}

std::size_t CharacterCount(const std::string& text) {
    return text.size() - static_cast<std::size_t>(std::count_if(text.begin(), text.end(), Continues));
}

std::string LowerCase(const std::string& text) {
    std::string lower = text;
    for (char& c : lower)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return lower;
}

std::string Trimmed(const std::string& text) {
    const std::size_t first = text.find_first_not_of(" \t");
    if (first == std::string::npos) return "";
    return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

std::string ReadWholeFile(const std::string& path, std::string& text) {
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "rb"), std::fclose);
    if (file == nullptr) return path + ": " + std::strerror(errno);
    char block[4096];
    for (std::size_t got = 0; (got = std::fread(block, 1, sizeof block, file.get())) > 0;)
        text.append(block, got);
    return std::ferror(file.get()) != 0 ? path + ": " + std::strerror(errno) : "";
}
