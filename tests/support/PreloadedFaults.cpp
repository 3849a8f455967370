// Calls that fail when the test wants it, and a record of what the real program does to its files, preloaded
// into it ahead of the clock. Free of the C++ library, like the clock.
#include <dlfcn.h>
#include <sys/msg.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "tests/support/FaultPlan.h"

namespace {

FaultPlan* plan = nullptr;
int record = -1;
bool spared = false;  // nothing fails or counts now

template <typename Function>
Function* Real(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

bool Fails(EFault fault) {
    if (plan == nullptr || spared || plan->fault != fault) return false;
    const std::uint32_t call = ++plan->calls;
    if (plan->nth == 0 || call < plan->nth || (call > plan->nth && plan->always == 0)) return false;
    ++plan->hits;
    errno = plan->error;
    return true;
}

// libc's own `name`, unless it is to fail.
template <typename Result, typename... Args>
Result Call(EFault fault, const char* name, Args... args) {
    return Fails(fault) ? Result{-1} : Real<Result(Args...)>(name)(args...);
}

void Record(EChange kind, int file, off64_t offset, const void* data = nullptr, std::size_t size = 0) {
    if (record < 0) return;
    const auto append = Real<ssize_t(int, const void*, std::size_t)>("write");
    const FileChange change{kind, file, static_cast<std::uint32_t>(offset), static_cast<std::uint32_t>(size)};
    if (append(record, &change, sizeof change) != sizeof change) _exit(98);
    if (size > 0 && append(record, data, size) != static_cast<ssize_t>(size)) _exit(98);
}

// The program's own initialization, and that of its libraries, is over when this runs.
__attribute__((constructor)) void Attach() {
    if (const char* path = std::getenv(kChangeRecord); path != nullptr)
        record = open(path, O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0600);
    if (const char* path = std::getenv(kFaultPlan); path != nullptr) plan = MapFaultPlan(path);
    // OpenSSL crashes where it gets no memory for its first context, SQLCipher where OpenSSL gets none for a
    // digest or a cipher: what OpenSSL allocates is spared.
    if (auto* set = Real<int(void*, void*, void*)>("CRYPTO_set_mem_functions");
        plan != nullptr && set != nullptr)
        set(dlsym(RTLD_NEXT, "malloc"), dlsym(RTLD_NEXT, "realloc"), dlsym(RTLD_NEXT, "free"));
}

}  // namespace

extern "C" {

// The mode comes as a variable argument, which the processors at hand pass like any other.
int Open(const char* path, int flags, mode_t mode) __asm__("open64");
int Open(const char* path, int flags, mode_t mode) {
    const bool creates = (flags & O_CREAT) != 0 && access(path, F_OK) != 0;
    const int file = Call<int>(EFault::Open, "open64", path, flags, mode);
    if (file >= 0) Record(creates ? EChange::Create : EChange::Open, file, 0, path, std::strlen(path));
    return file;
}
int SmallOpen(const char* path, int flags, mode_t mode) __asm__("open") __attribute__((alias("open64")));

ssize_t write(int file, const void* data, std::size_t size) {
    return Call<ssize_t>(EFault::Write, "write", file, data, size);
}
ssize_t pwrite64(int file, const void* data, std::size_t size, off64_t offset) {
    const ssize_t written = Call<ssize_t>(EFault::Write, "pwrite64", file, data, size, offset);
    if (written > 0) Record(EChange::Put, file, offset, data, size);
    return written;
}
int ftruncate64(int file, off64_t size) noexcept {
    Record(EChange::Cut, file, size);
    return Real<int(int, off64_t)>("ftruncate64")(file, size);
}
int fsync(int file) {
    const int result = Call<int>(EFault::Sync, "fsync", file);
    if (result == 0) Record(EChange::Sync, file, 0);
    return result;
}
int fdatasync(int file) __attribute__((alias("fsync")));
int unlink(const char* path) noexcept {
    const int result = Call<int>(EFault::Unlink, "unlink", path);
    if (result == 0) Record(EChange::Remove, -1, 0, path, std::strlen(path));
    return result;
}

int msgsnd(int id, const void* message, std::size_t size, int flags) {
    return Call<int>(EFault::Msgsnd, "msgsnd", id, message, size, flags);
}
ssize_t msgrcv(int id, void* message, std::size_t size, long type, int flags) {
    return Call<ssize_t>(EFault::Msgrcv, "msgrcv", id, message, size, type, flags);
}

// The start is over, and the loop begins.
int malloc_trim(std::size_t pad) noexcept {  // NOLINT(readability-identifier-naming)
    if (plan != nullptr) plan->startHits = plan->hits;
    return Real<int(std::size_t)>("malloc_trim")(pad);
}
// SQLCipher crashes where it gets no memory for what is its own, at once or after it has freed that twice.
void* sqlcipher_malloc(std::uint64_t size) {  // NOLINT(readability-identifier-naming)
    spared = true;
    void* block = Real<void*(std::uint64_t)>("sqlcipher_malloc")(size);
    spared = false;
    return block;
}
// Deriving the key would take most of every start; a test with a plan has a database of two rounds.
// NOLINTNEXTLINE(readability-identifier-naming)
int PKCS5_PBKDF2_HMAC_SHA1(const char* password, int passwordSize, const unsigned char* salt, int saltSize,
                           int rounds, int keySize, unsigned char* key) {
    const auto derive = Real<decltype(PKCS5_PBKDF2_HMAC_SHA1)>("PKCS5_PBKDF2_HMAC_SHA1");
    return derive(password, passwordSize, salt, saltSize, plan != nullptr ? 2 : rounds, keySize, key);
}

#ifndef ZOR_TEST_SANITIZED  // a sanitizer keeps its own allocator
// The names under which libc keeps its own.
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t n, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);

void* malloc(std::size_t size) noexcept {
    return Fails(EFault::Malloc) ? nullptr : __libc_malloc(size);
}
void* calloc(std::size_t n, std::size_t size) noexcept {
    return Fails(EFault::Malloc) ? nullptr : __libc_calloc(n, size);
}
void* realloc(void* block, std::size_t size) noexcept {
    return size != 0 && Fails(EFault::Malloc) ? nullptr : __libc_realloc(block, size);
}
#endif

}  // extern "C"
