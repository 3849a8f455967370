#include <cshm.h>
#include <sys/shm.h>

#include "tools/zorctl/SharedSegment.h"

bool SharedSegmentExists() {
    return shmget(CShmLayout::kKey, 0, 0) >= 0;
}
