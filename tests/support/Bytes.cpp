#include "tests/support/Bytes.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cstdio>
#include <regex>

Bytes Hex(const std::string& text) {
    Bytes bytes;
    for (std::size_t i = 0; i + 1 < text.size();) {
        if (text[i] == ' ') {
            ++i;
            continue;
        }
        bytes.push_back(static_cast<std::uint8_t>(std::stoul(text.substr(i, 2), nullptr, 16)));
        i += 2;
    }
    return bytes;
}

std::string ToHex(const void* data, std::size_t length) {
    const auto* bytes = static_cast<const std::uint8_t*>(data);
    std::string text;
    for (std::size_t i = 0; i < length; ++i) {
        char digits[4];
        std::snprintf(digits, sizeof digits, i == 0 ? "%02x" : " %02x", bytes[i]);
        text += digits;
    }
    return text;
}

namespace {

// Sends a stream's descriptor to memory until Take.
class CRedirect {
  public:
    explicit CRedirect(std::FILE* stream)
        : m_stream(stream), m_saved(dup(fileno(stream))), m_memory(memfd_create("capture", MFD_CLOEXEC)) {
        std::fflush(stream);
        dup2(m_memory, fileno(stream));
    }
    std::string Take() const {
        std::fflush(m_stream);
        dup2(m_saved, fileno(m_stream));
        std::string text(static_cast<std::size_t>(lseek(m_memory, 0, SEEK_END)), '\0');
        if (pread(m_memory, text.data(), text.size(), 0) < 0) text = "<unreadable>";
        close(m_memory);
        close(m_saved);
        return text;
    }

  private:
    std::FILE* m_stream;
    int m_saved;
    int m_memory;
};

}  // namespace

Captured Capture(const std::function<void()>& run) {
    const CRedirect out(stdout);
    const CRedirect err(stderr);
    run();
    return {out.Take(), err.Take()};
}

std::string Masked(const std::string& output) {
    static const std::regex header("(\033\\[1;32;40m\\w+)\\.[0-9]+: ");
    return std::regex_replace(output, header, "$1.#: ");
}

std::string MaskedOf(const std::string& operation, const std::string& output) {
    const std::regex others("\033\\[1;32;40m(?!" + operation + "\\.)[^\033]*\033\\[0m\r\n");
    return std::regex_replace(Masked(output), others, "");
}

std::string Line(const std::string& operation, const std::string& text) {
    return "\033[1;32;40m" + operation + ".#: " + text + "\033[0m\r\n";
}
