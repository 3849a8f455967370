// Calls that fail when the test wants it, and a record of what the real program does to its files, preloaded
// into it ahead of the clock. Free of the C++ library, like the clock.
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/msg.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "tests/support/FaultPlan.h"

struct sqlite3;

namespace {

FaultPlan* plan = nullptr;
int record = -1;
// The keyed database while it is open. SQLCipher and OpenSSL crash where they get no memory then, which
// nobody here can mend: those allocations never fail, nor do they count.
const sqlite3* keyed = nullptr;

template <typename Function>
Function* Real(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

bool Fails(EFault fault) {
    if (plan == nullptr || plan->fault != fault) return false;
    const std::uint32_t call = ++plan->calls;
    if (plan->nth == 0 || call < plan->nth || (call > plan->nth && plan->always == 0)) return false;
    ++plan->hits;
    errno = plan->error;
    return true;
}

[[maybe_unused]] bool MallocFails() {
    return keyed == nullptr && Fails(EFault::Malloc);
}

void Record(EChange kind, int file, std::uint64_t offset, const void* data = nullptr, std::size_t size = 0) {
    if (record < 0) return;
    const auto append = Real<ssize_t(int, const void*, std::size_t)>("write");
    const FileChange change{kind, file, offset, static_cast<std::uint32_t>(size), 0};
    if (append(record, &change, sizeof change) != sizeof change) _exit(98);
    if (size > 0 && append(record, data, size) != static_cast<ssize_t>(size)) _exit(98);
}

int OpenFile(const char* path, int flags, mode_t mode) {
    if (Fails(EFault::Open)) return -1;
    const bool creates = (flags & O_CREAT) != 0 && access(path, F_OK) != 0;
    const int file = Real<int(const char*, int, ...)>("open64")(path, flags, mode);
    if (file >= 0) Record(creates ? EChange::Create : EChange::Open, file, 0, path, std::strlen(path));
    return file;
}

int Synchronize(const char* name, int file) {
    if (Fails(EFault::Sync)) return -1;
    const int result = Real<int(int)>(name)(file);
    if (result == 0) Record(EChange::Sync, file, 0);
    return result;
}

int Remove(const char* name, const char* path) {
    if (Fails(EFault::Unlink)) return -1;
    Record(EChange::Remove, -1, 0, path, std::strlen(path));
    return Real<int(const char*)>(name)(path);
}

// The program's own initialization, and that of its libraries, is over when this runs.
__attribute__((constructor)) void Attach() {
    const auto open = Real<int(const char*, int, ...)>("open64");
    if (const char* path = std::getenv(kChangeRecord); path != nullptr)
        record = open(path, O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0600);
    const char* path = std::getenv(kFaultPlan);
    if (path == nullptr) return;
    const int file = open(path, O_RDWR | O_CLOEXEC);
    void* mapped = mmap(nullptr, sizeof(FaultPlan), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
    if (mapped == MAP_FAILED) _exit(98);
    close(file);
    plan = static_cast<FaultPlan*>(mapped);
}

}  // namespace

extern "C" {

// The mode comes as a variable argument, which the processors at hand pass like any other.
int Open(const char* path, int flags, mode_t mode) __asm__("open");
int Open64(const char* path, int flags, mode_t mode) __asm__("open64");
int Open(const char* path, int flags, mode_t mode) {
    return OpenFile(path, flags, mode);
}
int Open64(const char* path, int flags, mode_t mode) {
    return OpenFile(path, flags, mode);
}

ssize_t write(int file, const void* data, std::size_t size) {
    if (Fails(EFault::Write)) return -1;
    return Real<ssize_t(int, const void*, std::size_t)>("write")(file, data, size);
}
ssize_t pwrite64(int file, const void* data, std::size_t size, off64_t offset) {
    if (Fails(EFault::Write)) return -1;
    Record(EChange::Put, file, static_cast<std::uint64_t>(offset), data, size);
    return Real<ssize_t(int, const void*, std::size_t, off64_t)>("pwrite64")(file, data, size, offset);
}
int ftruncate64(int file, off64_t size) noexcept {
    Record(EChange::Cut, file, static_cast<std::uint64_t>(size));
    return Real<int(int, off64_t)>("ftruncate64")(file, size);
}
int fsync(int file) {
    return Synchronize("fsync", file);
}
int fdatasync(int file) {
    return Synchronize("fdatasync", file);
}
int unlink(const char* path) noexcept {
    return Remove("unlink", path);
}
int remove(const char* path) noexcept {  // NOLINT(readability-identifier-naming)
    return Remove("remove", path);
}

int msgsnd(int id, const void* message, std::size_t size, int flags) {
    if (Fails(EFault::Msgsnd)) return -1;
    return Real<int(int, const void*, std::size_t, int)>("msgsnd")(id, message, size, flags);
}
ssize_t msgrcv(int id, void* message, std::size_t size, long type, int flags) {
    if (Fails(EFault::Msgrcv)) return -1;
    return Real<ssize_t(int, void*, std::size_t, long, int)>("msgrcv")(id, message, size, type, flags);
}

int sqlite3_key(sqlite3* database, const void* key, int size) {
    keyed = database;
    return Real<int(sqlite3*, const void*, int)>("sqlite3_key")(database, key, size);
}
int sqlite3_close(sqlite3* database) {
    const int result = Real<int(sqlite3*)>("sqlite3_close")(database);
    if (database == keyed) keyed = nullptr;
    return result;
}
// Deriving the key would take most of every start; a test with a plan has a database of two rounds.
// NOLINTNEXTLINE(readability-identifier-naming)
int PKCS5_PBKDF2_HMAC_SHA1(const char* password, int passwordSize, const unsigned char* salt, int saltSize,
                           int rounds, int keySize, unsigned char* key) {
    using Derive = int(const char*, int, const unsigned char*, int, int, int, unsigned char*);
    if (plan != nullptr) rounds = 2;
    return Real<Derive>("PKCS5_PBKDF2_HMAC_SHA1")(password, passwordSize, salt, saltSize, rounds, keySize,
                                                  key);
}

#ifndef ZOR_TEST_SANITIZED  // a sanitizer keeps its own allocator
// The names under which libc keeps its own.
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t n, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);

void* malloc(std::size_t size) noexcept {
    return MallocFails() ? nullptr : __libc_malloc(size);
}
void* calloc(std::size_t n, std::size_t size) noexcept {
    return MallocFails() ? nullptr : __libc_calloc(n, size);
}
void* realloc(void* block, std::size_t size) noexcept {
    return size != 0 && MallocFails() ? nullptr : __libc_realloc(block, size);
}
#endif

}  // extern "C"
