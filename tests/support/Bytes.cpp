#include "tests/support/Bytes.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cstdio>
#include <regex>
#include <sstream>

Bytes Hex(const std::string& text) {
    Bytes bytes;
    std::istringstream words(text);
    for (unsigned byte = 0; words >> std::hex >> byte;) bytes.push_back(static_cast<std::uint8_t>(byte));
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

std::string Plain(const std::string& output) {
    static const std::regex head("\033\\[1;32;40m(\\w+)\\.[0-9]+: "), number("(Line): [0-9]+, ");
    static const std::regex lineBreak("\n\033\\[0m\r\n"), end("\033\\[0m\r\n");
    std::string plain = std::regex_replace(std::regex_replace(output, head, "$1: "), number, "$1.#, ");
    return std::regex_replace(std::regex_replace(plain, lineBreak, "\\n\n"), end, "\n");
}

std::vector<std::vector<std::string>> Table(const std::string& lines) {
    static const std::regex bar(" *\\| *");
    std::vector<std::vector<std::string>> table;
    std::istringstream input(lines);
    for (std::string line; std::getline(input, line);)
        if (!line.empty())
            table.emplace_back(std::sregex_token_iterator(line.begin(), line.end(), bar, -1),
                               std::sregex_token_iterator());
    return table;
}

std::string Texts(const std::string& plain, const std::string& operation) {
    std::string texts;
    std::istringstream input(plain);
    for (std::string line; std::getline(input, line);) {
        if (line.rfind(operation + ": ", 0) != 0) continue;
        texts += (texts.empty() ? "" : ";") +
                 line.substr(operation.size() + 2, line.rfind("\\n") - operation.size() - 2);
    }
    return texts;
}
