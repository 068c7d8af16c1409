#include "standalone/commands/heap.h"

#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace jostle::standalone {

void keepFreedMemory() {
#ifdef __GLIBC__
    ::mallopt(M_TRIM_THRESHOLD, 256 << 20);
    ::mallopt(M_TOP_PAD, 1 << 20);
    ::mallopt(M_MMAP_THRESHOLD, 32 << 20); // larger blocks are given back as ever
#endif
}

} // namespace jostle::standalone
