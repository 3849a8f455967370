// Texts from elsewhere, made fit for a terminal, a table or JSON.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

bool IsUtf8(const std::string& text);
// False for what a terminal could take for a command, or what makes a line look like another one.
bool IsFitForTerminal(char32_t character);

enum class EEscape : std::uint8_t {
    Line,   // "\x1b", and line breaks too
    Lines,  // the same; line breaks stay
    Json    // "\u001b"; line breaks stay
};
// `text` with what is not fit for a terminal, and what is no UTF-8, escaped.
std::string Printable(const std::string& text, EEscape how = EEscape::Line);
// How many characters `text`, which is UTF-8, has.
std::size_t CharacterCount(const std::string& text);
// ASCII letters in lower case, everything else as it is.
std::string LowerCase(const std::string& text);
// Without blanks at either end.
std::string Trimmed(const std::string& text);
// The whole of `path` in `text`; returns an empty text, or what went wrong.
std::string ReadWholeFile(const std::string& path, std::string& text);
