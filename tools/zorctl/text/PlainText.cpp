#include "tools/zorctl/text/PlainText.h"

#include <utf8.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <memory>

#include "tools/zorctl/text/HexText.h"

namespace {

struct Characters {
    char32_t first;
    char32_t last;
};

// Controls, and what turns the direction of writing or ends a line unseen.
constexpr Characters kUnfit[] = {{0x00, 0x1F},     {0x7F, 0x9F},     {0x061C, 0x061C}, {0x200E, 0x200F},
                                 {0x2028, 0x202E}, {0x2066, 0x206F}, {0xFFF9, 0xFFFB}, {0xE0000, 0xE007F}};

std::string BytesEscaped(const std::string& character) {
    std::string out;
    for (const char c : character) {
        const auto byte = static_cast<std::uint8_t>(c);
        out += "\\x" + HexText(&byte, 1);
    }
    return out;
}

std::string JsonEscaped(const std::string& character) {
    std::u16string units;
    utf8::unchecked::utf8to16(character.begin(), character.end(), std::back_inserter(units));
    std::string out;
    for (const char16_t unit : units) {
        const std::uint8_t bytes[] = {static_cast<std::uint8_t>(unit >> 8), static_cast<std::uint8_t>(unit)};
        out += "\\u" + HexText(bytes, sizeof bytes);
    }
    return out;
}

std::string Escaped(const std::string& character, EEscape how) {
    if (how != EEscape::Line && character == "\n") return character;
    return how == EEscape::Json ? JsonEscaped(character) : BytesEscaped(character);
}

}  // namespace

bool IsFitForTerminal(char32_t character) {
    return std::none_of(std::begin(kUnfit), std::end(kUnfit), [character](const Characters& unfit) {
        return character >= unfit.first && character <= unfit.last;
    });
}

bool IsUtf8(const std::string& text) {
    return utf8::is_valid(text.begin(), text.end());
}

std::string Printable(const std::string& text, EEscape how) {
    std::string out;
    for (auto at = text.begin(); at != text.end();) {
        for (const auto end = utf8::find_invalid(at, text.end()); at != end;) {
            const auto begin = at;
            const bool fit = IsFitForTerminal(utf8::unchecked::next(at));
            out += fit ? std::string(begin, at) : Escaped(std::string(begin, at), how);
        }
        if (at != text.end()) out += BytesEscaped({*at++});
    }
    return out;
}

std::size_t CharacterCount(const std::string& text) {
    return static_cast<std::size_t>(utf8::unchecked::distance(text.begin(), text.end()));
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
