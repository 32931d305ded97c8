#include <errno.h>
#include <gtest/gtest.h>

#include <string>

#include "apps/common/sharedmemory/sharedmemory.h"
#include "faultmatrix.h"
#include "platform/system.h"

namespace {

constexpr const char* file = "apps/common/sharedmemory/sharedmemory.cpp";
constexpr const char* failed = "/MemTest: <error>";

/// The area as the server leaves it.
struct ServerArea {
    SharedMemory area{"MemTest", 8};
    ServerArea() {
        area.create();
        area.address();
    }
};

void create(const Rig& rig) {
    SharedMemory area("MemTest", 8);
    rig.arm();
    area.create();
}

void open(const Rig& rig) {
    const ServerArea server;
    SharedMemory area("MemTest", 8);
    rig.arm();
    area.open();
}

void map(const Rig& rig) {
    const ServerArea server;
    SharedMemory area("MemTest", 8);
    area.open();
    rig.arm();
    area.address();
}

void mapShortObject(const Rig& rig) {
    ServerArea server;
    SharedMemory longer("MemTest", 80);
    longer.open();
    rig.arm();
    longer.address();
}

void close(const Rig& rig) {
    SharedMemory area("MemTest", 8);
    area.create();
    area.address();
    rig.arm();
    area.close();
    area.close();
}

void closeTold(const Rig& rig) {
    close(rig);
    EXPECT_TRUE(rig.world.lastLogLine().find("Error ") != std::string::npos) << rig.world.logText();
}

}  // namespace

FaultRows sharedMemoryRows() {
    const auto shmErrors =
        errors({EACCES, EEXIST, EINTR, EINVAL, EMFILE, ENAMETOOLONG, ENFILE, ENOENT, ENOMEM, ENOSPC});
    const char* const cutShort =
        "Memory /MemTest is cut short: it needs 84 bytes, the object has 12. Start the server first.";
    return {
        {.file = file,
         .operation = "SharedMemory::open",
         .phase = Phase::StartUp,
         .call = Call::ShmOpen,
         .faults = shmErrors,
         .text = failed,
         .run = open},
        {.file = file,
         .operation = "SharedMemory::create",
         .phase = Phase::StartUp,
         .call = Call::ShmOpen,
         .faults = shmErrors,
         .text = failed,
         .run = create},
        {.file = file,
         .operation = "SharedMemory::create",
         .phase = Phase::StartUp,
         .call = Call::Ftruncate,
         .faults = errors({EBADF, EFBIG, EINTR, EINVAL, EIO, ENOSPC, EPERM}),
         .text = failed,
         .run = create},
        {.file = file,
         .operation = "SharedMemory::address",
         .phase = Phase::StartUp,
         .call = Call::FileSize,
         .faults = errors({EBADF, EFAULT, EINTR, ENOMEM, EOVERFLOW}),
         .text = failed,
         .run = map},
        {.file = file,
         .operation = "SharedMemory::address",
         .phase = Phase::StartUp,
         .call = Call::Read,
         .detail = "(header of a short object)",
         .faults = errors({EAGAIN, EBADF, EFAULT, EINTR, EINVAL, EIO}),
         .text = cutShort,
         .run = mapShortObject},
        {.file = file,
         .operation = "SharedMemory::address",
         .phase = Phase::StartUp,
         .call = Call::Read,
         .detail = "(header of a short object)",
         .faults = shorts(0, 3),
         .text = cutShort,
         .run = mapShortObject},
        {.file = file,
         .operation = "SharedMemory::address",
         .phase = Phase::StartUp,
         .call = Call::Mmap,
         .faults = errors({EACCES, EAGAIN, EBADF, EINTR, EINVAL, ENFILE, ENODEV, ENOMEM, EOVERFLOW, EPERM}),
         .text = failed,
         .run = map},
        {.file = file,
         .operation = "SharedMemory::address",
         .phase = Phase::StartUp,
         .call = Call::Mmap,
         .faults = answers(0),
         .text = "/MemTest: Success",
         .run = map},
        {.file = file,
         .operation = "SharedMemory::close",
         .phase = Phase::Running,
         .call = Call::Munmap,
         .faults = errors({EINTR, EINVAL, ENOMEM}),
         .outcome = Outcome::Ignored,
         .run = close},
        {.file = file,
         .operation = "SharedMemory::close",
         .phase = Phase::Running,
         .call = Call::Close,
         .where = {.path = "/MemTest"},
         .faults = errors({EBADF, EINTR, EIO}),
         .outcome = Outcome::Ignored,
         .run = close},
        {.file = file,
         .operation = "SharedMemory::close",
         .phase = Phase::Running,
         .call = Call::ShmUnlink,
         .faults = errors({EACCES, EINTR, ENOENT}),
         .outcome = Outcome::Ignored,
         .text = "told at level Error",
         .run = closeTold},
    };
}
