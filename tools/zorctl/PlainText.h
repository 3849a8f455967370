// Texts from elsewhere, made fit for a terminal, a table or JSON.
#pragma once

#include <cstddef>
#include <string>

bool IsUtf8(const std::string& text);
// `text` with a replacement character for each byte that makes it no UTF-8.
std::string AsUtf8(const std::string& text);
// What a terminal could take for a command, and what is no UTF-8, is shown byte by byte: "\x1b".
std::string Printable(const std::string& text);
// How many characters `text` has.
std::size_t CharacterCount(const std::string& text);
// ASCII letters in lower case, everything else as it is.
std::string LowerCase(const std::string& text);
// Without blanks at either end.
std::string Trimmed(const std::string& text);
// The whole of `path` in `text`; returns an empty text, or what went wrong.
std::string ReadWholeFile(const std::string& path, std::string& text);
