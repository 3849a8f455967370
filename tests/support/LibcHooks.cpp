#include "tests/support/LibcHooks.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/msg.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstddef>

namespace {

int nextError = 0;
bool unlockFails = false;
int failingReads = 0;
std::string unseenFile;
int failingStats = 0;
std::atomic<std::uint64_t> allocations{0};

bool Fails() {
    if (nextError == 0) return false;
    errno = nextError;
    nextError = 0;
    return true;
}

template <typename Function>
Function* Real(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

}  // namespace

void FailNextQueueCall(int error) {
    nextError = error;
}

void FailReads(int count) {
    failingReads = count;
}

void FailNextUnlock() {
    unlockFails = true;
}

void FailStats(const std::string& file, int count) {
    unseenFile = file;
    failingStats = count;
}

std::uint64_t Allocations() {
    return allocations;
}

extern "C" {

int msgget(key_t key, int flags) noexcept {
    return Fails() ? -1 : Real<int(key_t, int)>("msgget")(key, flags);
}

int msgsnd(int id, const void* message, std::size_t size, int flags) {
    return Fails() ? -1 : Real<int(int, const void*, std::size_t, int)>("msgsnd")(id, message, size, flags);
}

ssize_t msgrcv(int id, void* message, std::size_t size, long type, int flags) {
    if (Fails()) return -1;
    return Real<ssize_t(int, void*, std::size_t, long, int)>("msgrcv")(id, message, size, type, flags);
}

// By another name, for the headers of a hardened build define the function itself.
ssize_t Pread(int file, void* data, std::size_t size, off64_t offset) __asm__("pread64");
ssize_t Pread(int file, void* data, std::size_t size, off64_t offset) {
    if (failingReads > 0 && offset > 0) {
        --failingReads;
        errno = EIO;
        return -1;
    }
    return Real<ssize_t(int, void*, std::size_t, off64_t)>("pread64")(file, data, size, offset);
}

// The argument comes as a variable one, which the processors at hand pass like any other.
int Fcntl(int file, int command, void* argument) __asm__("fcntl64");
int Fcntl(int file, int command, void* argument) {
    if (unlockFails && command == F_SETLK && static_cast<flock64*>(argument)->l_type == F_UNLCK) {
        unlockFails = false;
        errno = EIO;
        return -1;
    }
    return Real<int(int, int, void*)>("fcntl64")(file, command, argument);
}

// With the name that it has where files can be large.
int Stat(const char* path, struct stat* found) __asm__("stat64");
int Stat(const char* path, struct stat* found) {
    if (failingStats > 0 && path == unseenFile) {
        --failingStats;
        errno = EIO;
        return -1;
    }
    return Real<int(const char*, struct stat*)>("stat64")(path, found);
}

#ifdef ZOR_ADDRESS_SANITIZER
// The sanitizer's allocator stays in place and tells. GCC comes without the header that declares this.
int __sanitizer_install_malloc_and_free_hooks(void (*onMalloc)(const volatile void*, std::size_t),
                                              void (*onFree)(const volatile void*));

__attribute__((constructor)) static void CountAllocations() {
    __sanitizer_install_malloc_and_free_hooks([](const volatile void*, std::size_t) { ++allocations; },
                                              [](const volatile void*) {});
}
#else
// The names under which libc keeps its own allocator.
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t n, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);

void* malloc(std::size_t size) noexcept {
    ++allocations;
    return __libc_malloc(size);
}
void* calloc(std::size_t n, std::size_t size) noexcept {
    ++allocations;
    return __libc_calloc(n, size);
}
void* realloc(void* block, std::size_t size) noexcept {
    ++allocations;
    return __libc_realloc(block, size);
}
#endif

}  // extern "C"
