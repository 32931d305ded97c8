#pragma once

#include <cstddef>
#include <cstdint>

class ServerConnection;

/// The wire record of the server's socket, little-endian, no framing: something with the number `id` has changed.
/// `arg1` and `arg2` are 0 in all traffic of this process, except in a forwarded record.
struct Notify {
    std::uint32_t id = 0;
    std::uint32_t arg1 = 0;
    std::uint32_t arg2 = 0;

    bool operator==(const Notify&) const = default;
};
static_assert(sizeof(Notify) == 12 && alignof(Notify) == 4);
static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__);

/// Ids that speak to the server itself; from 7 up each id is the change notice of one variable.
enum class ServerMessage : std::uint32_t {
    Subscribe = 1,
    SubscribeAll = 3,
};

enum class StreamState { Open, Ended };

struct NotifiesRead {
    std::size_t count;
    StreamState stream;
};

/// One read of at most `maxRecords` records into `buffer`. Only whole records count: the bytes of a partial one at the
/// end are dropped, with a warning, and a stream of them stays misaligned. A failed read is fatal.
NotifiesRead readNotifyBlock(int fd, Notify* buffer, std::size_t maxRecords);

/// The number of whole records that one read gave; 0 also at the end of the stream.
std::size_t readNotifies(int fd, Notify* buffer, std::size_t maxRecords);

/// Sends over the process's server connection; fatal when there is none or when the record cannot be written whole.
void sendEvent(std::uint32_t id, std::uint32_t arg1, std::uint32_t arg2);

/// The connection that `sendEvent` uses; null for none. A connection enters itself when it is made.
void setEventConnection(ServerConnection* connection);
ServerConnection* eventConnection();
