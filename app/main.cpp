#include <link.h>
#include <malloc.h>
#include <sys/mman.h>
#include <unistd.h>

#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <new>

#include "System/Log.h"
#include "app/MainLoop.h"
#include "app/RuntimeData.h"
#include "app/StartUp.h"
#include "points/ShmCtrl.h"

namespace {

[[noreturn]] void EndWithoutMemory() {
    std::fputs("zor_runtime: out of memory\n", stderr);
    std::exit(0);
}

// Whether the loader wrote addresses into the code, which the file then cannot bring back.
bool IsCodeRelocated(const dl_phdr_info& module) {
    for (int i = 0; i < module.dlpi_phnum; ++i) {
        if (module.dlpi_phdr[i].p_type != PT_DYNAMIC) continue;
        const std::uintptr_t at = module.dlpi_addr + module.dlpi_phdr[i].p_vaddr;
        const auto* entry = reinterpret_cast<const ElfW(Dyn)*>(at);  // NOLINT(*-no-int-to-ptr)
        for (; entry->d_tag != DT_NULL; ++entry) {
            if (entry->d_tag == DT_TEXTREL) return true;
            if (entry->d_tag == DT_FLAGS && (entry->d_un.d_val & DF_TEXTREL) != 0) return true;
        }
    }
    return false;
}

int LeaveCode(dl_phdr_info* module, std::size_t /*size*/, void* /*data*/) {
    if (IsCodeRelocated(*module)) return 0;
    const auto page = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
    for (int i = 0; i < module->dlpi_phnum; ++i) {
        const auto& part = module->dlpi_phdr[i];
        if (part.p_type != PT_LOAD || (part.p_flags & PF_W) != 0) continue;
        const std::uintptr_t begin = (module->dlpi_addr + part.p_vaddr) / page * page;
        const std::uintptr_t end = module->dlpi_addr + part.p_vaddr + part.p_memsz;
        madvise(reinterpret_cast<void*>(begin), end - begin, MADV_DONTNEED);  // NOLINT(*-no-int-to-ptr)
    }
    return 0;
}

// Gives back what only the start-up needed: freed memory, and code (decryption above all), of which what runs
// again comes back from its file.
void TrimMemory() {
    malloc_trim(0);
    dl_iterate_phdr(LeaveCode, nullptr);
}

}  // namespace

int main() {
    // A start-up step without memory ends the process as one without its file does. The loop has to live
    // through it: whatever allocates there copes by itself.
    std::set_new_handler(EndWithoutMemory);

    // A log reader that hangs does not hold the process, and one that goes away does not end it.
    LogWithoutWaiting();
    std::signal(SIGPIPE, SIG_IGN);

    // Both live until the process is killed.
    auto* shm = new CShmCTRL;
    auto* runtime = new CRuntimeData;
    runtime->SetShmAccessor(shm);
    StartUp(*runtime);
    std::set_new_handler(nullptr);
    TrimMemory();
    RunMainLoop(*runtime);
}
