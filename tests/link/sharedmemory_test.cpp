#include "apps/common/sharedmemory/sharedmemory.h"

#include <fcntl.h>
#include <sys/mman.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <stdexcept>

#include "platform/system.h"
#include "world.h"

using testing::EndsWith;

namespace {

class SharedMemoryTest : public WorldTest {
  protected:
    ~SharedMemoryTest() override { Platform::shmUnlink("/MemTest"); }

    /// An object of `size` bytes whose first word is `header`, as another process may leave it.
    static void makeObject(off_t size, std::uint32_t header) {
        const int fd = Platform::shmOpen("/MemTest", O_RDWR | O_CREAT, 0666);
        ASSERT_GE(fd, 0);
        ASSERT_EQ(Platform::ftruncate(fd, size), 0);
        if (size >= 4) {
            ASSERT_EQ(Platform::write(fd, &header, 4), 4);
        }
        Platform::close(fd);
    }

    std::string addressFailure() {
        return fatalTextOf([&] { reader.address(); });
    }

    SharedMemory reader{"MemTest", 100};
};

}  // namespace

TEST_F(SharedMemoryTest, WhatOneWritesTheOtherReads) {
    SharedMemory writer("MemTest", 100);
    writer.create();
    auto* written = static_cast<char*>(writer.address());
    std::memset(written, 7, 100);
    reader.open();
    const auto* read = static_cast<const char*>(reader.address());
    EXPECT_EQ(read[99], 7);
    EXPECT_EQ(reinterpret_cast<const std::uint32_t*>(read)[-1], 100U);
    EXPECT_EQ(reader.address(), read) << "mapped once";
    written[0] = 9;
    EXPECT_EQ(read[0], 9);
    reader.close();
    reader.open();
    writer.close();
    EXPECT_THAT(fatalTextOf([] { SharedMemory("MemTest", 100).open(); }),
                EndsWith("/MemTest: No such file or directory"));
}

TEST_F(SharedMemoryTest, TheAddressNeedsAnOpenArea) {
    EXPECT_THAT(addressFailure(), EndsWith("Call open or create before asking for the address"));
}

TEST_F(SharedMemoryTest, AnotherBuildsSizeIsRefusedWithBothNumbers) {
    makeObject(105, 101);
    reader.open();
    EXPECT_THAT(addressFailure(), EndsWith("Memory size missmatch for /MemTest, requested 100, is 101."));
    EXPECT_THAT(addressFailure(), EndsWith("Memory size missmatch for /MemTest, requested 100, is 101."));
}

TEST_F(SharedMemoryTest, AnotherBuildsSmallerAreaIsRefusedWithBothNumbers) {
    makeObject(103, 99);
    reader.open();
    EXPECT_THAT(addressFailure(), EndsWith("Memory size missmatch for /MemTest, requested 100, is 99."));
}

TEST_F(SharedMemoryTest, AnObjectShorterThanItsHeaderSaysIsNotMapped) {
    makeObject(50, 100);
    reader.open();
    EXPECT_THAT(
        addressFailure(),
        EndsWith("Memory /MemTest is cut short: it needs 104 bytes, the object has 50. Start the server first."));
}

TEST_F(SharedMemoryTest, AnObjectWithoutAHeaderIsNotMapped) {
    for (const off_t size : {0, 3}) {
        makeObject(size, 100);
        SharedMemory area("MemTest", 100);
        area.open();
        EXPECT_THAT(fatalTextOf([&] { area.address(); }), testing::HasSubstr("/MemTest is cut short: it needs 104"));
        Platform::shmUnlink("/MemTest");
    }
}

TEST_F(SharedMemoryTest, ANameThatCannotBeRemovedIsOnlyLogged) {
    SharedMemory writer("MemTest", 100);
    writer.create();
    Platform::shmUnlink("/MemTest");
    writer.close();
    EXPECT_EQ(logTexts().back(), "/MemTest: No such file or directory");
}
