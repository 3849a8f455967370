#include "System/DiagLine.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>

namespace {

void PutLine(const char* operation, int line, const char* format, va_list arguments) {
    std::printf("\033[1;32;40m%s.%d: ", operation, line);
    std::vprintf(format, arguments);
    std::puts("\033[0m\r");
}

}  // namespace

void CDiagLine::Print(const char* format, ...) const {
    va_list arguments;
    va_start(arguments, format);
    PutLine(m_operation, m_line, format, arguments);
    va_end(arguments);
    EndRecord();
}

void CDiagLine::Dump(const char* title, const void* data, std::size_t length) const {
    PrintUnended("%s", title);
    DumpBytes(data, length);
}

void CDiagLine::PrintUnended(const char* format, ...) const {
    va_list arguments;
    va_start(arguments, format);
    PutLine(m_operation, m_line, format, arguments);
    va_end(arguments);
}

void DumpBytes(const void* data, std::size_t length) {
    constexpr char kDigits[] = "0123456789abcdef";
    constexpr std::size_t kBytesAtOnce = 128;
    const auto* bytes = static_cast<const unsigned char*>(data);
    for (std::size_t at = 0; at < length; at += kBytesAtOnce) {
        char text[3 * kBytesAtOnce];
        char* end = text;
        for (std::size_t i = at; i < std::min(length, at + kBytesAtOnce); ++i) {
            *end++ = kDigits[bytes[i] >> 4];
            *end++ = kDigits[bytes[i] & 0xF];
            *end++ = ' ';
        }
        std::fwrite(text, 1, static_cast<std::size_t>(end - text), stdout);
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
