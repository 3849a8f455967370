#include <malloc.h>

#include <csignal>
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
    malloc_trim(0);  // what only the start needed
    RunMainLoop(*runtime);
}
