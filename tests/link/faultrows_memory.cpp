#include <errno.h>
#include <gtest/gtest.h>

#include <string>

#include "apps/common/sharedmemory/sharedmemory.h"
#include "faultmatrix.h"
#include "platform/system.h"

namespace {

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
    const Faults shmErrors = {EACCES, EEXIST, EINTR, EINVAL, EMFILE, ENAMETOOLONG, ENFILE, ENOENT, ENOMEM, ENOSPC};
    const Faults mapErrors = {EACCES, EAGAIN, EBADF, EINTR, EINVAL, ENFILE, ENODEV, ENOMEM, EOVERFLOW, EPERM};
    const SeamCall readHeader = {Call::Read, "(header of a short object)"};
    const char* const failed = "/MemTest: <error>";
    const char* const cutShort =
        "Memory /MemTest is cut short: it needs 84 bytes, the object has 12. Start the server first.";

    FaultTable table("apps/common/sharedmemory/sharedmemory.cpp");
    table.operation("SharedMemory::open", Phase::StartUp);
    table.fatal(open, Call::ShmOpen, shmErrors, failed);
    table.operation("SharedMemory::create", Phase::StartUp);
    table.fatal(create, Call::ShmOpen, shmErrors, failed);
    table.fatal(create, Call::Ftruncate, {EBADF, EFBIG, EINTR, EINVAL, EIO, ENOSPC, EPERM}, failed);
    table.operation("SharedMemory::address", Phase::StartUp);
    table.fatal(map, Call::FileSize, {EBADF, EFAULT, EINTR, ENOMEM, EOVERFLOW}, failed);
    table.fatal(mapShortObject, readHeader, {EAGAIN, EBADF, EFAULT, EINTR, EINVAL, EIO}, cutShort);
    table.fatal(mapShortObject, readHeader, shorts(0, 3), cutShort);
    table.fatal(map, Call::Mmap, mapErrors, failed);
    table.fatal(map, Call::Mmap, answers(0), "/MemTest: Success");
    table.operation("SharedMemory::close", Phase::Running);
    table.ignored(close, Call::Munmap, {EINTR, EINVAL, ENOMEM});
    table.ignored(close, {Call::Close, {.path = "/MemTest"}}, {EBADF, EINTR, EIO});
    table.ignored(closeTold, Call::ShmUnlink, {EACCES, EINTR, ENOENT}, "told at level Error");
    return table.rows();
}
