#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>

#include "platform/system.h"
#include "platform/virtual/virtual.h"

namespace {

namespace fs = std::filesystem;
using namespace Platform::Virtual;

std::string contents(const std::string& file) {
    std::ifstream stream(file);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

}  // namespace

TEST(Names, OfTwoInstancesNeverMeet) {
    const TemporaryInstance first;
    const Place place = Instance::current().place();
    const int area = Platform::shmOpen("/MemStatic", O_RDWR | O_CREAT, 0666);
    ASSERT_GE(area, 0);
    sem_t* ready = Platform::semOpen("/ready", O_CREAT, 0666, 1);
    ASSERT_NE(ready, SEM_FAILED);
    {
        const TemporaryInstance second;
        EXPECT_EQ(Platform::shmOpen("/MemStatic", O_RDWR, 0666), -1);
        EXPECT_EQ(errno, ENOENT);
        EXPECT_EQ(Platform::semOpen("/ready", 0), SEM_FAILED);
    }
    Instance::use(place);
    const int again = Platform::shmOpen("/MemStatic", O_RDWR, 0666);
    EXPECT_GE(again, 0);
    EXPECT_EQ(Platform::semClose(ready), 0);
    Platform::close(area);
    Platform::close(again);
}

TEST(Names, GoWithTheirInstance) {
    Place place;
    {
        const TemporaryInstance instance;
        place = instance.place();
        Platform::close(Platform::shmOpen("/MemStatic", O_RDWR | O_CREAT, 0666));
        Platform::semClose(Platform::semOpen("/ready", O_CREAT, 0666, 1));
    }
    EXPECT_FALSE(fs::exists(place.folder));
    for (const auto& entry : fs::directory_iterator("/dev/shm"))
        EXPECT_EQ(entry.path().string().find(place.name + "."), std::string::npos) << entry.path();
}

TEST(Names, ThatAreTooLongOrMalformedAreRefused) {
    const TemporaryInstance instance;
    EXPECT_EQ(Platform::shmOpen(("/" + std::string(300, 'x')).c_str(), O_RDWR | O_CREAT, 0666), -1);
    EXPECT_EQ(errno, ENAMETOOLONG);
    EXPECT_EQ(Platform::shmOpen("plain", O_RDWR | O_CREAT, 0666), -1);
    EXPECT_EQ(errno, EINVAL);
    EXPECT_EQ(Platform::open(("/" + std::string(2000, 'x')).c_str(), O_RDONLY), -1);
    EXPECT_EQ(errno, ENAMETOOLONG);
}

TEST(Paths, TheLogOfAllProcessesIsOneFile) {
    const TemporaryInstance instance;
    const int first = Platform::open("/dev/kmsg", O_WRONLY | O_CLOEXEC);
    const int second = Platform::open("/dev/kmsg", O_WRONLY | O_CLOEXEC);
    EXPECT_EQ(Platform::write(first, "one\n", 4), 4);
    EXPECT_EQ(Platform::write(second, "two\n", 4), 4);
    EXPECT_EQ(Platform::write(first, "three\n", 6), 6);
    EXPECT_EQ(contents(path("/dev/kmsg")), "one\ntwo\nthree\n");
    Platform::close(first);
    Platform::close(second);
}

TEST(Paths, ASocketWorksInAFolderOfAnyDepth) {
    const TemporaryInstance shallow;
    Place deep = shallow.place();
    deep.folder += "/" + std::string(120, 'd');
    Instance::use(deep);
    const int server = Platform::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    ASSERT_EQ(Platform::bindUnix(server, "/var/volatile/message-broker.socket"), 0) << std::strerror(errno);
    ASSERT_EQ(Platform::listen(server, 1), 0);
    const int client = Platform::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    ASSERT_EQ(Platform::connectUnix(client, "/var/volatile/message-broker.socket"), 0) << std::strerror(errno);
    const int accepted = Platform::accept(server, SOCK_CLOEXEC);
    EXPECT_EQ(Platform::write(client, "x", 1), 1);
    char byte = 0;
    EXPECT_EQ(Platform::read(accepted, &byte, 1), 1);
    for (const int fd : {server, client, accepted}) Platform::close(fd);
}

TEST(Paths, AnInputDeviceIsAStreamWithoutAnEnd) {
    const TemporaryInstance instance;
    EXPECT_EQ(Platform::open("/dev/input/touchscreen0", O_RDONLY | O_NONBLOCK | O_CLOEXEC), -1);
    EXPECT_EQ(errno, ENOENT);
    {
        Driver driver;
        driver.plug("/dev/input/touchscreen0");
        const int fd = Platform::open("/dev/input/touchscreen0", O_RDONLY | O_NONBLOCK | O_CLOEXEC);
        char buffer[16];
        EXPECT_EQ(Platform::read(fd, buffer, sizeof buffer), -1);
        EXPECT_EQ(errno, EAGAIN);
        EXPECT_TRUE(driver.feed("/dev/input/touchscreen0", "abc", 3));
        EXPECT_EQ(Platform::read(fd, buffer, sizeof buffer), 3);
        driver.unplug("/dev/input/touchscreen0");
        EXPECT_FALSE(driver.feed("/dev/input/touchscreen0", "abc", 3));
        EXPECT_EQ(Platform::read(fd, buffer, sizeof buffer), -1);
        EXPECT_EQ(errno, EAGAIN) << "the writer is gone, and that is no end of the stream";
        Platform::close(fd);
    }
}

TEST(InstanceDeathTest, WhatCannotBeUsedIsRefusedWithAReason) {
    EXPECT_EXIT(Instance({"a/b", "/tmp/tern-x"}), testing::ExitedWithCode(2), "is no name for an instance");
    EXPECT_EXIT(Instance({"a", "relative"}), testing::ExitedWithCode(2), "must be an absolute path");
    EXPECT_EXIT(Instance({"a", "/proc"}), testing::ExitedWithCode(2), "cannot be|not a folder");
    const TemporaryInstance instance;
    fs::resize_file(path("/control"), 12);
    EXPECT_EXIT(Instance(Instance::current().place()), testing::ExitedWithCode(2), "of another version");
}
