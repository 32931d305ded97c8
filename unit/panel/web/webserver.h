#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>

namespace Unit {

/// A file that the panel serves: nothing else of the machine can be asked for.
struct WebFile {
    std::string_view path;  ///< "/app.js"
    std::string_view type;
    std::string_view content;
};

/// HTTP and WebSocket on the loopback: a fixed list of files, and the socket "/socket" for the page that came from
/// here. What comes from outside is bounded: connections, sizes of heads and messages, messages a second, and what
/// waits to be sent. One thread; `post` alone may be called from others.
class WebServer {
  public:
    using ClientId = std::uint32_t;

    class Handler {
      public:
        virtual ~Handler() = default;
        virtual void opened(ClientId client) = 0;
        virtual void received(ClientId client, std::string_view text) = 0;
        virtual void closed(ClientId client) = 0;
        /// 60 times a second in the middle between two vertical blanks, while there are clients.
        virtual void tick() = 0;
    };

    static constexpr std::uint16_t firstPort = 7340;

    /// Listens at once. `port` 0: the first free one from `firstPort` on, of ten, and else any. `files` and `handler`
    /// must outlive this. Throws Problem when the port is not to be had.
    WebServer(std::uint16_t port, std::span<const WebFile> files, Handler& handler);
    ~WebServer();
    WebServer(const WebServer&) = delete;
    WebServer& operator=(const WebServer&) = delete;

    std::uint16_t port() const;
    /// Until SIGINT, SIGTERM or SIGHUP.
    void run();

    void sendText(ClientId client, std::shared_ptr<const std::string> text);
    void sendBinary(ClientId client, std::shared_ptr<const std::string> bytes);
    /// Bytes that wait to be sent.
    std::size_t waiting(ClientId client) const;
    /// Runs `action` on the thread of `run`.
    void post(std::function<void()> action);

  private:
    struct Core;
    std::unique_ptr<Core> core_;
};

}  // namespace Unit
