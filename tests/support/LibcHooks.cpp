#include "tests/support/LibcHooks.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/msg.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstddef>
#include <cstring>

#include "tests/support/HookPlan.h"

namespace {

int changeRecord = -1;
bool spared = false;  // nothing fails or counts now

template <typename Function>
Function* Real(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

bool Fails(ECall call) {
    HookPlan& plan = Plan();
    if (spared || plan.call != call) return false;
    ++plan.calls;
    if (plan.nth == 0 || plan.calls < plan.nth || plan.calls - plan.nth >= plan.count) return false;
    if (plan.error == 0) raise(SIGKILL);
    ++plan.hits;
    errno = plan.error;
    return true;
}

// libc's own `name`, unless it is to fail.
template <typename Result, typename... Args>
Result Call(ECall call, const char* name, Args... args) {
    return Fails(call) ? Result{-1} : Real<Result(Args...)>(name)(args...);
}

void Record(EChange kind, int file, off64_t offset = 0, const void* data = nullptr, ssize_t size = 0,
            const char* path = "") {
    if (changeRecord < 0) return;
    struct stat64 found {};
    if (file >= 0) fstat64(file, &found);
    if (kind == EChange::Sync && S_ISDIR(found.st_mode)) kind = EChange::SyncDirectory;
    FileChange change{kind, static_cast<std::uint32_t>(found.st_ino), static_cast<std::uint32_t>(offset),
                      static_cast<std::uint32_t>(size), ""};
    std::strncpy(change.path, path, sizeof change.path - 1);
    const auto append = Real<ssize_t(int, const void*, std::size_t)>("write");
    if (append(changeRecord, &change, sizeof change) != sizeof change) _exit(98);
    if (append(changeRecord, data, change.size) != size) _exit(98);
}

__attribute__((constructor)) void Attach() {
    changeRecord = open(kChangeRecord, O_WRONLY | O_APPEND | O_CLOEXEC);
    // OpenSSL crashes where it gets no memory for its first context, SQLCipher where OpenSSL gets none for a
    // digest or a cipher: what OpenSSL allocates is spared.
    if (auto* set = Real<int(void*, void*, void*)>("CRYPTO_set_mem_functions"); set != nullptr)
        set(dlsym(RTLD_NEXT, "malloc"), dlsym(RTLD_NEXT, "realloc"), dlsym(RTLD_NEXT, "free"));
}

void Fail(ECall call, int count, int error, const std::string& file = "") {
    HookPlan& plan = Plan();
    plan = {plan.nowMicros, 0, call, 1, static_cast<std::uint32_t>(count), error};
    file.copy(plan.file, sizeof plan.file - 1);
}

}  // namespace

void FailNextQueueCall(int error) {
    Fail(ECall::Queue, 1, error);
}
void FailReads(int count) {
    Fail(ECall::Read, count, EIO);
}
void FailNextUnlock() {
    Fail(ECall::Unlock, 1, EIO);
}
void FailStats(const std::string& file, int count) {
    Fail(ECall::Stat, count, EIO, file);
}

// Some by another name: that of large files, and where the headers of a hardened build define the function
// itself. What comes as a variable argument the processors at hand pass like any other.
extern "C" {

int Open(const char* path, int flags, mode_t mode) __asm__("open64");
int Open(const char* path, int flags, mode_t mode) {
    const bool creates = (flags & O_CREAT) != 0 && access(path, F_OK) != 0;
    const int file = Call<int>(ECall::Open, "open64", path, flags, mode);
    if (creates && file >= 0) Record(EChange::Create, file, 0, nullptr, 0, path);
    return file;
}
int SmallOpen(const char* path, int flags, mode_t mode) __asm__("open") __attribute__((alias("open64")));

ssize_t Pread(int file, void* data, std::size_t size, off64_t offset) __asm__("pread64");
ssize_t Pread(int file, void* data, std::size_t size, off64_t offset) {
    if (offset > 0 && Fails(ECall::Read)) return -1;
    return Real<ssize_t(int, void*, std::size_t, off64_t)>("pread64")(file, data, size, offset);
}
ssize_t write(int file, const void* data, std::size_t size) {
    return Call<ssize_t>(ECall::Write, "write", file, data, size);
}
ssize_t pwrite64(int file, const void* data, std::size_t size, off64_t offset) {
    const ssize_t written = Call<ssize_t>(ECall::Write, "pwrite64", file, data, size, offset);
    if (written > 0) Record(EChange::Put, file, offset, data, written);
    return written;
}
int ftruncate64(int file, off64_t size) noexcept {
    Record(EChange::Cut, file, size);
    return Real<int(int, off64_t)>("ftruncate64")(file, size);
}
int fsync(int file) {
    const int result = Call<int>(ECall::Sync, "fsync", file);
    if (result == 0) Record(EChange::Sync, file);
    return result;
}
int fdatasync(int file) __attribute__((alias("fsync")));
int unlink(const char* path) noexcept {
    const int result = Call<int>(ECall::Unlink, "unlink", path);
    if (result == 0) Record(EChange::Remove, -1, 0, nullptr, 0, path);
    return result;
}
int Fcntl(int file, int command, void* argument) __asm__("fcntl64");
int Fcntl(int file, int command, void* argument) {
    const bool unlocks = command == F_SETLK && static_cast<flock64*>(argument)->l_type == F_UNLCK;
    return unlocks && Fails(ECall::Unlock) ? -1
                                           : Real<int(int, int, void*)>("fcntl64")(file, command, argument);
}
int Stat(const char* path, struct stat* found) __asm__("stat64");
int Stat(const char* path, struct stat* found) {
    if (std::strcmp(path, Plan().file) == 0 && Fails(ECall::Stat)) return -1;
    return Real<int(const char*, struct stat*)>("stat64")(path, found);
}

int msgget(key_t key, int flags) noexcept {
    return Call<int>(ECall::Queue, "msgget", key, flags);
}
int msgsnd(int id, const void* message, std::size_t size, int flags) {
    return Call<int>(ECall::Queue, "msgsnd", id, message, size, flags);
}
ssize_t msgrcv(int id, void* message, std::size_t size, long type, int flags) {
    return Call<ssize_t>(ECall::Queue, "msgrcv", id, message, size, type, flags);
}

// The real program's start is over, and the loop begins.
int malloc_trim(std::size_t pad) noexcept {  // NOLINT(readability-identifier-naming)
    Plan().startHits = Plan().hits;
    return Real<int(std::size_t)>("malloc_trim")(pad);
}
// SQLCipher crashes where it gets no memory for what is its own, at once or after it has freed that twice.
void* sqlcipher_malloc(std::uint64_t size) {  // NOLINT(readability-identifier-naming)
    spared = true;
    void* block = Real<void*(std::uint64_t)>("sqlcipher_malloc")(size);
    spared = false;
    return block;
}
// Deriving the key would take most of every start; where calls are to fail, the database is one of two
// rounds. NOLINTNEXTLINE(readability-identifier-naming)
int PKCS5_PBKDF2_HMAC_SHA1(const char* password, int passwordSize, const unsigned char* salt, int saltSize,
                           int rounds, int keySize, unsigned char* key) {
    const auto derive = Real<decltype(PKCS5_PBKDF2_HMAC_SHA1)>("PKCS5_PBKDF2_HMAC_SHA1");
    if (Plan().call != ECall::None) rounds = 2;
    return derive(password, passwordSize, salt, saltSize, rounds, keySize, key);
}

#ifdef ZOR_ADDRESS_SANITIZER
// The sanitizer's allocator stays in place and tells. GCC comes without the header that declares this.
int __sanitizer_install_malloc_and_free_hooks(void (*onMalloc)(const volatile void*, std::size_t),
                                              void (*onFree)(const volatile void*));
__attribute__((constructor)) static void CountAllocations() {
    __sanitizer_install_malloc_and_free_hooks([](const volatile void*, std::size_t) { Fails(ECall::Malloc); },
                                              [](const volatile void*) {});
}
#else
// The names under which libc keeps its own allocator.
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t n, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);

void* malloc(std::size_t size) noexcept {
    return Fails(ECall::Malloc) ? nullptr : __libc_malloc(size);
}
void* calloc(std::size_t n, std::size_t size) noexcept {
    return Fails(ECall::Malloc) ? nullptr : __libc_calloc(n, size);
}
void* realloc(void* block, std::size_t size) noexcept {
    return size != 0 && Fails(ECall::Malloc) ? nullptr : __libc_realloc(block, size);
}
#endif

}  // extern "C"
