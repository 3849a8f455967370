#include <csignal>
#include <cstdio>

#include "app/MainLoop.h"
#include "app/RuntimeData.h"
#include "app/StartUp.h"
#include "points/ShmCtrl.h"

int main() {
    // A log reader sees lines when they happen, and its going away does not end the process.
    std::setvbuf(stdout, nullptr, _IOLBF, BUFSIZ);
    std::signal(SIGPIPE, SIG_IGN);

    // Both live until the process is killed.
    auto* shm = new CShmCTRL;
    auto* runtime = new CRuntimeData;
    runtime->SetShmAccessor(shm);
    StartUp(*runtime);
    RunMainLoop(*runtime);
}
