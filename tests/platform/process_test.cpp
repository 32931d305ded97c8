// A whole program under the driver of another process: held, stepped, looked at, and made to fail from outside.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <string>
#include <vector>

#include "platform/virtual/virtual.h"
#include "tests/support/programcommand.h"

namespace {

using namespace Platform::Virtual;

/// The test card's program in this test's instance, its output on a pipe.
class Program {
  public:
    explicit Program(const Place& place, const char* faults = "") {
        int ends[2];
        EXPECT_EQ(pipe(ends), 0);
        pid_ = fork();
        if (pid_ == 0) {
            dup2(ends[1], STDOUT_FILENO);
            dup2(ends[1], STDERR_FILENO);
            setenv("TERN_INSTANCE", place.name.c_str(), 1);
            setenv("TERN_INSTANCE_DIR", place.folder.c_str(), 1);
            setenv("TERN_FAULTS", faults, 1);
            Support::executeProgram(TERN_BINARY_DIR "/bin/testcard-virtual", {});
            _exit(127);
        }
        close(ends[1]);
        output_ = ends[0];
    }
    ~Program() {
        close(output_);
        if (pid_ > 0) kill(pid_, SIGKILL), waitpid(pid_, nullptr, 0);
    }
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    std::string output() const {
        std::string text;
        char part[256];
        for (ssize_t count; (count = read(output_, part, sizeof part)) > 0;)
            text.append(part, static_cast<size_t>(count));
        return text;
    }
    int exitStatus() {
        int status = 0;
        waitpid(pid_, &status, 0);
        pid_ = 0;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

  private:
    pid_t pid_ = 0;
    int output_ = -1;
};

struct Showing {
    std::vector<Picture> pictures;
    std::string output;
    int status = -1;
};

// Two waits while the display is opened, then 60 frames.
Showing runInLockstep() {
    Showing run;
    const TemporaryInstance instance;
    Driver driver;
    driver.holdVsync();
    driver.holdClockAt(0);
    Program program(instance.place());
    EXPECT_TRUE(driver.awaitRest());
    while (driver.pans() < 61 && driver.stepFrame()) run.pictures.push_back(driver.shot());
    driver.step(10);  // the last frame, and the onlooker
    run.output = program.output();
    run.status = program.exitStatus();
    return run;
}

}  // namespace

TEST(Process, RunsFrameByFrameAndTheSameEachTime) {
    const Showing first = runInLockstep(), second = runInLockstep();
    EXPECT_EQ(first.status, 0);
    ASSERT_EQ(first.pictures.size(), 61U);
    ASSERT_EQ(second.pictures.size(), first.pictures.size());
    for (std::size_t i = 0; i < first.pictures.size(); ++i) {
        EXPECT_EQ(first.pictures[i].pixels, second.pictures[i].pixels) << i;
        if (i > 0) {
            EXPECT_NE(first.pictures[i].pixels, first.pictures[i - 1].pixels) << i;
        }
    }
    EXPECT_EQ(first.output, "The display of 240 x 400 showed 60 frames in 0.98 s.\n") << "on the stepped clock";
    EXPECT_EQ(second.output, first.output);
}

TEST(Process, OneThatWasKilledAtRestIsNotTakenForTheNext) {
    const TemporaryInstance instance;
    Driver driver;
    driver.holdVsync();
    {
        Program killed(instance.place());
        ASSERT_TRUE(driver.awaitRest());
    }
    EXPECT_FALSE(driver.awaitRest(1));
    Program next(instance.place());
    EXPECT_TRUE(driver.awaitRest());
}

TEST(Process, TakesFaultsFromItsEnvironment) {
    const TemporaryInstance instance;
    Program refused(instance.place(), "open@/dev/fb0:1:EACCES");
    EXPECT_NE(refused.output().find("frambuffer open: Permission denied\n"), std::string::npos);
    EXPECT_EQ(refused.exitStatus(), 1);
    Program wrong(instance.place(), "open:first:EACCES");
    EXPECT_EQ(
        wrong.output(),
        "TERN_FAULTS: \"open:first:EACCES\" counts from 1, with a '+' behind the number for each later one too\n");
    EXPECT_EQ(wrong.exitStatus(), 2);
}
