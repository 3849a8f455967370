#include "tools/zorctl/commands/Commands.h"

int main(int argc, char** argv) {
    return RunZorctl(argc, argv);
}
