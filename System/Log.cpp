#include "System/Log.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdint>
#include <cstdio>
#include <cstring>

namespace {

constexpr std::size_t kLargestRecord = 16384;

// How to write to a descriptor without waiting.
enum class EWay : std::uint8_t {
    Plain,   // it never waits
    Socket,  // with a flag of each call
    Polled   // only what surely fits
};

// One descriptor with what it still owes its reader.
class CLogStream {
  public:
    explicit CLogStream(int descriptor);

    // Takes over all of the record, as a stream's buffer expects.
    void Write(const char* record, std::size_t size);

    char buffer[kLargestRecord];  // of the stdio stream in front

  private:
    std::size_t WriteNow(const char* data, std::size_t size) const;
    ssize_t WriteSome(const char* data, std::size_t size) const;
    bool WriteOwed();
    bool Begins(const char* record, std::size_t size);

    int m_descriptor;
    EWay m_way = EWay::Plain;
    std::size_t m_certain = PIPE_BUF;  // bytes that fit where Polled says that something does
    unsigned long m_linesLeftOut = 0;
    std::size_t m_owed = 0;  // the end of a record that went out in part
    char m_rest[kLargestRecord];
};

CLogStream::CLogStream(int descriptor) : m_descriptor(descriptor) {
    struct stat kind {};
    if (fstat(descriptor, &kind) != 0 || S_ISREG(kind.st_mode)) return;
    if (S_ISSOCK(kind.st_mode)) {
        m_way = EWay::Socket;
        return;
    }
    // Opened anew, because what is set on the descriptor itself would hold for the others that share it, such
    // as the shell on a terminal.
    char path[32];
    std::snprintf(path, sizeof path, "/proc/self/fd/%d", descriptor);
    if (const int own = open(path, O_WRONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC); own >= 0) {
        m_descriptor = own;
        return;
    }
    m_way = EWay::Polled;
    if (!S_ISFIFO(kind.st_mode)) m_certain = 128;
}

ssize_t CLogStream::WriteSome(const char* data, std::size_t size) const {
    if (m_way == EWay::Socket) return send(m_descriptor, data, size, MSG_DONTWAIT | MSG_NOSIGNAL);
    if (m_way == EWay::Polled) {
        pollfd ready{m_descriptor, POLLOUT, 0};
        if (poll(&ready, 1, 0) <= 0 || (ready.revents & POLLOUT) == 0) {
            errno = EAGAIN;
            return -1;
        }
        size = std::min(size, m_certain);
    }
    return write(m_descriptor, data, size);
}

// As much as goes out at once.
std::size_t CLogStream::WriteNow(const char* data, std::size_t size) const {
    std::size_t done = 0;
    while (done < size) {
        const ssize_t written = WriteSome(data + done, size - done);
        if (written > 0)
            done += static_cast<std::size_t>(written);
        else if (written == 0 || errno != EINTR)
            break;
    }
    return done;
}

bool CLogStream::WriteOwed() {
    const std::size_t done = WriteNow(m_rest, m_owed);
    m_owed -= done;
    std::memmove(m_rest, m_rest + done, m_owed);
    return m_owed == 0;
}

// Writes a record, unless none of it goes out now; the rest of one that has begun follows before the next.
bool CLogStream::Begins(const char* record, std::size_t size) {
    if (!WriteOwed()) return false;
    const std::size_t done = WriteNow(record, size);
    if (done == 0) return false;
    m_owed = size - done;
    std::memcpy(m_rest, record + done, m_owed);
    return true;
}

void CLogStream::Write(const char* record, std::size_t size) {
    if (m_linesLeftOut > 0) {
        char notice[96];
        const int length = std::snprintf(
            notice, sizeof notice, "zor_runtime: %lu lines left out: nobody read them\n", m_linesLeftOut);
        if (Begins(notice, static_cast<std::size_t>(length))) m_linesLeftOut = 0;
    }
    if (m_linesLeftOut > 0 || !Begins(record, size))
        m_linesLeftOut += static_cast<unsigned long>(std::count(record, record + size, '\n'));
}

// A stream in front of `descriptor`, which it never waits for; null without memory. Lives as long as the
// process.
FILE* OpenLogStream(int descriptor, int buffering) {
    auto* stream = new CLogStream(descriptor);
    cookie_io_functions_t functions{};
    functions.write = [](void* cookie, const char* data, std::size_t size) {
        static_cast<CLogStream*>(cookie)->Write(data, std::min(size, kLargestRecord));
        return static_cast<ssize_t>(size);
    };
    FILE* file = fopencookie(stream, "w", functions);
    if (file != nullptr) std::setvbuf(file, stream->buffer, buffering, sizeof stream->buffer);
    return file;
}

}  // namespace

void LogWithoutWaiting() {
    std::fflush(stdout);
    if (FILE* out = OpenLogStream(STDOUT_FILENO, _IOFBF); out != nullptr) stdout = out;
    if (FILE* err = OpenLogStream(STDERR_FILENO, _IOLBF); err != nullptr) stderr = err;
}
