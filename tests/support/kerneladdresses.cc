// For tests of a 32-bit build under the user-mode emulator, with the address sanitizer. A kernel of 32 bits keeps the
// upper quarter of the addresses for itself, and the sanitizer's map of the memory ends there; the emulator hands it
// out once the rest was used. Taken away before main, it is never handed out.
#include <sys/mman.h>

#include <cstdio>
#include <cstdlib>

namespace {

constexpr unsigned long begin = 0xc0000000UL, end = 0xffff0000UL;  // the last page has the kernel's own helpers

struct KernelAddresses {
    KernelAddresses() {
        void* const wanted = reinterpret_cast<void*>(begin);
        const int flags = MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE | MAP_FIXED_NOREPLACE;
        if (::mmap(wanted, end - begin, PROT_NONE, flags, -1, 0) == wanted) return;
        std::perror("the upper quarter of the addresses");
        std::abort();
    }
} const kernelAddresses;

}  // namespace
