#include "tools/zorctl/Commands.h"

int main(int argc, char** argv) {
    return RunZorctl(argc, argv);
}
