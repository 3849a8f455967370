#include "System/DiagLine.h"

#include <cstdarg>
#include <cstdio>

void CDiagLine::Print(const char* format, ...) const {
    std::printf("\033[1;32;40m%s.%d: ", m_operation, m_line);
    va_list arguments;
    va_start(arguments, format);
    std::vprintf(format, arguments);
    va_end(arguments);
    std::puts("\033[0m\r");
}

void CDiagLine::Dump(const char* title, const void* data, std::size_t length) const {
    Print("%s", title);
    DumpBytes(data, length);
}

void DumpBytes(const void* data, std::size_t length) {
    const auto* bytes = static_cast<const unsigned char*>(data);
    for (std::size_t i = 0; i < length; ++i) std::printf("%02x ", static_cast<unsigned>(bytes[i]));
    std::putchar('\n');
}
