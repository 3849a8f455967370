#include "Commands.h"

int main(int argc, char** argv) {
    return RunZorctl(argc, argv);
}
