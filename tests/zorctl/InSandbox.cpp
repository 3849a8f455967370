// Runs a program and its arguments in a place of its own: a private /mnt, queue and shared memory.
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

#include "tests/support/Sandbox.h"

int main(int argc, char** argv) {
    if (argc < 2) return 2;
    setenv("TZ", "TST-8", 1);
    return RunInSandbox([argv] {
        const pid_t child = fork();
        if (child == 0) {
            execvp(argv[1], argv + 1);
            std::perror(argv[1]);
            _exit(127);
        }
        int status = 0;
        waitpid(child, &status, 0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : 1;
    });
}
