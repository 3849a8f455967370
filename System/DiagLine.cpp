#include "System/DiagLine.h"

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
    const auto* bytes = static_cast<const unsigned char*>(data);
    for (std::size_t i = 0; i < length; ++i) std::printf("%02x ", static_cast<unsigned>(bytes[i]));
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
