#include "apps/common/event/notify.h"

#include "apps/common/event/serverconnection.h"
#include "apps/common/log/log.h"
#include "platform/system.h"

namespace {

constinit ServerConnection* current = nullptr;

}  // namespace

NotifiesRead readNotifyBlock(int fd, Notify* buffer, std::size_t maxRecords) {
    const ssize_t bytes = Platform::read(fd, buffer, maxRecords * sizeof(Notify));
    if (bytes < 0) TERN_FATAL("Read error");
    const auto size = static_cast<std::size_t>(bytes);
    if (const std::size_t rest = size % sizeof(Notify); rest != 0) {
        TERN_LOG(Log::Warn, "Dropped %zu bytes of a split record, the records that follow are misaligned", rest);
    }
    return {size / sizeof(Notify), size == 0 ? StreamState::Ended : StreamState::Open};
}

std::size_t readNotifies(int fd, Notify* buffer, std::size_t maxRecords) {
    return readNotifyBlock(fd, buffer, maxRecords).count;
}

void sendEvent(std::uint32_t id, std::uint32_t arg1, std::uint32_t arg2) {
    if (current == nullptr) TERN_FATAL("Trying to post event without server connection");
    current->send({id, arg1, arg2});
}

void setEventConnection(ServerConnection* connection) {
    current = connection;
}

ServerConnection* eventConnection() {
    return current;
}
