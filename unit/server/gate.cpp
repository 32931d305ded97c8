#include "unit/server/gate.h"

#include <fcntl.h>

#include "apps/common/log/log.h"
#include "platform/system.h"

namespace Unit {

namespace {

constexpr const char* semaphoreName = "/message-broker-ready";

}  // namespace

Gate::~Gate() {
    close();
}

void Gate::open() {
    // One that a killed server has left may be in any state.
    Platform::semUnlink(semaphoreName);
    semaphore_ = Platform::semOpen(semaphoreName, O_CREAT | O_EXCL, 0666, 0);
    if (semaphore_ == SEM_FAILED) TERN_ERRNO_FATAL("sem_open");
    if (Platform::semPost(semaphore_) < 0) TERN_ERRNO_FATAL("sem_post");
    shutSince_ = 0;
}

void Gate::close() {
    if (semaphore_ == SEM_FAILED) return;
    Platform::semClose(semaphore_);
    Platform::semUnlink(semaphoreName);
    semaphore_ = SEM_FAILED;
}

void Gate::tick(std::int64_t nanoseconds) {
    int count = 1;
    if (semaphore_ != SEM_FAILED) sem_getvalue(semaphore_, &count);
    shutSince_ = count > 0 ? 0 : shutSince_ + nanoseconds;
    if (shutSince_ < patience) return;
    TERN_LOG(Log::Warn, "A client has gone through the gate and has not opened it again; it is opened for the next");
    Platform::semPost(semaphore_);
    shutSince_ = 0;
}

}  // namespace Unit
