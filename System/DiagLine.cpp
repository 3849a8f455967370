#include "System/DiagLine.h"

#include <algorithm>
#include <charconv>
#include <cstdarg>
#include <cstdio>
#include <cstring>

namespace {

void PutHeader(const char* operation, int line) {
    char number[16];
    *std::to_chars(number, number + sizeof number - 1, line).ptr = '\0';
    for (const char* part : {"\033[1;32;40m", operation, ".", static_cast<const char*>(number), ": "})
        std::fputs(part, stdout);
}

void PutReset() {
    std::puts("\033[0m\r");
}

void PutLine(const char* operation, int line, const char* format, va_list arguments) {
    PutHeader(operation, line);
    std::vprintf(format, arguments);
    PutReset();
}

// Each byte as "%02x " prints it.
struct HexOfBytes {
    char text[256][4]{};  // the fourth only makes copies a whole word
    constexpr HexOfBytes() {
        for (unsigned byte = 0; byte < 256; ++byte) {
            text[byte][0] = "0123456789abcdef"[byte >> 4];
            text[byte][1] = "0123456789abcdef"[byte & 0xF];
            text[byte][2] = ' ';
        }
    }
};
constexpr HexOfBytes kHexOfBytes;

}  // namespace

void CDiagLine::Print(const char* format, ...) const {
    va_list arguments;
    va_start(arguments, format);
    PutLine(m_operation, m_line, format, arguments);
    va_end(arguments);
    EndRecord();
}

void CDiagLine::Dump(const char* title, const void* data, std::size_t length) const {
    PutHeader(m_operation, m_line);
    std::fputs(title, stdout);
    PutReset();
    DumpBytes(data, length);
}

void CDiagLine::PrintUnended(const char* format, ...) const {
    va_list arguments;
    va_start(arguments, format);
    PutLine(m_operation, m_line, format, arguments);
    va_end(arguments);
}

void DumpBytes(const void* data, std::size_t length) {
    constexpr std::size_t kBytesAtOnce = 128;
    const auto* bytes = static_cast<const unsigned char*>(data);
    for (std::size_t at = 0; at < length; at += kBytesAtOnce) {
        char text[3 * kBytesAtOnce + 1];
        const std::size_t count = std::min(length - at, kBytesAtOnce);
        for (std::size_t i = 0; i < count; ++i) std::memcpy(text + 3 * i, kHexOfBytes.text[bytes[at + i]], 4);
        std::fwrite(text, 3, count, stdout);
    }
    std::putchar('\n');
    EndRecord();
}

void PrintPlain(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    std::vprintf(format, arguments);
    va_end(arguments);
    std::putchar('\n');
    EndRecord();
}

void EndRecord() {
    std::fflush(stdout);
}
