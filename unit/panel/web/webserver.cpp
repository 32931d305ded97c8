#include "unit/panel/web/webserver.h"

#include <algorithm>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/signal_set.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/beast/core.hpp>
#include <boost/beast/http.hpp>
#include <boost/beast/websocket.hpp>
#include <chrono>
#include <csignal>
#include <deque>
#include <map>
#include <optional>

#include "unit/ctl/problem.h"
#include "unit/panel/access.h"
#include "unit/panel/ratelimit.h"
#include "unit/panel/request.h"

namespace Unit {

namespace net = boost::asio;
namespace beast = boost::beast;
namespace http = beast::http;
namespace websocket = beast::websocket;
using boost::system::error_code;
using net::ip::tcp;
using namespace std::chrono_literals;

namespace {

constexpr std::uint16_t portsTried = 10;
constexpr unsigned mostConnections = 32;
constexpr std::size_t mostClients = 8;
constexpr std::size_t longestHead = 8 << 10;
constexpr std::size_t mostWaiting = 16 << 20;
constexpr auto visitPatience = 10s;
constexpr double messagesPerSecond = 300;
constexpr double messagesAtOnce = 600;
constexpr auto acceptPause = 100ms;

/// Everything the page needs comes from here.
constexpr const char* contentPolicy =
    "default-src 'none'; script-src 'self'; style-src 'self'; font-src 'self'; img-src 'self' data:; "
    "connect-src 'self' ws://127.0.0.1:* ws://localhost:*; base-uri 'none'; form-action 'none'; "
    "frame-ancestors 'none'";

/// Half a frame behind the next vertical blank: the product has drawn by then.
std::chrono::steady_clock::time_point nextTick() {
    constexpr std::int64_t second = 1'000'000'000, perSecond = 60, half = second / perSecond / 2;
    const std::int64_t now = std::chrono::nanoseconds(std::chrono::steady_clock::now().time_since_epoch()).count();
    const std::int64_t frame = (now - half) / (second / perSecond) + 1;
    return std::chrono::steady_clock::time_point(std::chrono::nanoseconds(frame * (second / perSecond) + half));
}

std::string_view viewOf(beast::string_view text) {
    return {text.data(), text.size()};
}

}  // namespace

struct WebServer::Core {
    class Visit;
    class Client;

    Core(std::uint16_t port, std::span<const WebFile> served, Handler& asked);

    bool tryToListen(std::uint16_t port);
    void accept();
    void tickOn();
    void send(ClientId id, bool binary, std::shared_ptr<const std::string> bytes);

    std::span<const WebFile> files;
    Handler& handler;
    unsigned connections = 0;  // outlives what counts itself out as the loop goes
    net::io_context io{1};
    tcp::acceptor acceptor{io};
    net::steady_timer ticker{io};
    net::steady_timer pause{io};
    net::signal_set signals{io, SIGINT, SIGTERM, SIGHUP};
    bool ticking = false;
    ClientId lastId = 0;
    std::map<ClientId, std::shared_ptr<Client>> clients;
};

/// A page that has the socket open.
class WebServer::Core::Client : public std::enable_shared_from_this<Client> {
  public:
    Client(Core& core, beast::tcp_stream stream) : core_(core), socket_(std::move(stream)), id_(++core.lastId) {}
    ~Client() { --core_.connections; }
    Client(const Client&) = delete;
    Client& operator=(const Client&) = delete;

    void open(http::request<http::empty_body> request) {
        request_ = std::move(request);
        auto patience = websocket::stream_base::timeout::suggested(beast::role_type::server);
        patience.handshake_timeout = visitPatience;
        patience.idle_timeout = 30s;
        patience.keep_alive_pings = true;
        socket_.set_option(patience);
        socket_.read_message_max(Request::longest);
        socket_.auto_fragment(false);
        socket_.async_accept(request_, [self = shared_from_this()](error_code failed) {
            if (failed) return;
            self->core_.clients.emplace(self->id_, self);
            self->core_.handler.opened(self->id_);
            self->core_.tickOn();
            self->read();
        });
    }

    void send(bool binary, std::shared_ptr<const std::string> bytes) {
        if (gone_) return;
        waiting_ += bytes->size();
        if (waiting_ > mostWaiting) return leave();
        out_.push_back({binary, std::move(bytes)});
        if (out_.size() == 1) write();
    }

    std::size_t waiting() const { return waiting_; }

  private:
    struct Message {
        bool binary;
        std::shared_ptr<const std::string> bytes;
    };

    void read() {
        socket_.async_read(buffer_,
                           [self = shared_from_this()](error_code failed, std::size_t) { self->hear(failed); });
    }

    // Who floods is cut off at once: a farewell would mean to read on.
    void hear(error_code failed) {
        if (gone_) return;
        if (failed || !socket_.got_text() || !rate_.pass(std::chrono::steady_clock::now())) return leave();
        const auto data = buffer_.cdata();
        core_.handler.received(id_, {static_cast<const char*>(data.data()), data.size()});
        buffer_.consume(buffer_.size());
        if (!gone_) read();
    }

    void write() {
        socket_.binary(out_.front().binary);
        socket_.async_write(net::buffer(*out_.front().bytes),
                            [self = shared_from_this()](error_code failed, std::size_t) { self->wrote(failed); });
    }

    void wrote(error_code failed) {
        if (gone_) return;
        if (failed) return leave();
        waiting_ -= out_.front().bytes->size();
        out_.pop_front();
        if (!out_.empty()) write();
    }

    void leave() {
        if (gone_) return;
        gone_ = true;
        const auto self = shared_from_this();
        core_.clients.erase(id_);
        beast::get_lowest_layer(socket_).close();
        core_.handler.closed(id_);
    }

    Core& core_;
    websocket::stream<beast::tcp_stream> socket_;
    ClientId id_;
    http::request<http::empty_body> request_;
    beast::flat_buffer buffer_{Request::longest};
    std::deque<Message> out_;
    std::size_t waiting_ = 0;
    bool gone_ = false;
    RateLimit rate_{messagesPerSecond, messagesAtOnce};
};

/// A connection that asks for files, until it ends or becomes a client.
class WebServer::Core::Visit : public std::enable_shared_from_this<Visit> {
  public:
    Visit(Core& core, tcp::socket socket) : core_(core), stream_(std::move(socket)) { ++core.connections; }
    ~Visit() {
        if (!handedOver_) --core_.connections;
    }
    Visit(const Visit&) = delete;
    Visit& operator=(const Visit&) = delete;

    void read() {
        parser_.emplace();
        parser_->header_limit(longestHead);
        stream_.expires_after(visitPatience);
        http::async_read(stream_, buffer_, *parser_, [self = shared_from_this()](error_code failed, std::size_t) {
            if (!failed) self->answer();
        });
    }

  private:
    void answer() {
        const auto& request = parser_->get();
        if (!isOwnHost(viewOf(request[http::field::host])))
            return refuse(http::status::forbidden, "The panel answers to 127.0.0.1 and localhost only.\n");
        if (websocket::is_upgrade(request)) return openSocket();
        if (request.method() != http::verb::get && request.method() != http::verb::head)
            return refuse(http::status::method_not_allowed, "The panel answers GET only.\n");
        const std::string_view target = viewOf(request.target());
        const std::string_view path = target.substr(0, target.find('?'));
        const auto file = std::ranges::find(core_.files, path, &WebFile::path);
        if (file == core_.files.end()) return refuse(http::status::not_found, "The panel has no such page.\n");
        respond(http::status::ok, file->type, file->content);
    }

    void openSocket() {
        const auto& request = parser_->get();
        if (!isOwnOrigin(viewOf(request[http::field::origin]), viewOf(request[http::field::host])))
            return refuse(http::status::forbidden, "The panel's socket is for the panel's own page.\n");
        if (viewOf(request.target()) != "/socket")
            return refuse(http::status::not_found, "The panel's socket is /socket.\n");
        if (core_.clients.size() >= mostClients)
            return refuse(http::status::service_unavailable, "Too many pages are open.\n");
        handedOver_ = true;
        stream_.expires_never();
        stream_.socket().set_option(tcp::no_delay(true));
        std::make_shared<Client>(core_, std::move(stream_))->open(parser_->release());
    }

    void refuse(http::status status, std::string_view why) { respond(status, "text/plain; charset=utf-8", why); }

    void respond(http::status status, std::string_view type, std::string_view content) {
        const auto& request = parser_->get();
        response_ = {};
        response_.version(request.version());
        response_.result(status);
        response_.set(http::field::content_type, beast::string_view(type.data(), type.size()));
        response_.set("Content-Security-Policy", contentPolicy);
        response_.set("X-Content-Type-Options", "nosniff");
        response_.set("Cross-Origin-Resource-Policy", "same-origin");
        response_.set("Referrer-Policy", "no-referrer");
        response_.set(http::field::cache_control, "no-store");
        response_.keep_alive(request.keep_alive() && status == http::status::ok);
        response_.content_length(content.size());
        if (request.method() != http::verb::head) response_.body() = {content.data(), content.size()};
        http::async_write(stream_, response_, [self = shared_from_this()](error_code failed, std::size_t) {
            if (!failed && self->response_.keep_alive()) return self->read();
            error_code ignored;
            self->stream_.socket().shutdown(tcp::socket::shutdown_send, ignored);
        });
    }

    Core& core_;
    beast::tcp_stream stream_;
    beast::flat_buffer buffer_{longestHead};
    std::optional<http::request_parser<http::empty_body>> parser_;
    http::response<http::span_body<const char>> response_;
    bool handedOver_ = false;
};

WebServer::Core::Core(std::uint16_t port, std::span<const WebFile> served, Handler& asked)
    : files(served), handler(asked) {
    bool listens = tryToListen(port != 0 ? port : firstPort);
    for (std::uint16_t i = 1; !listens && port == 0 && i < portsTried; ++i)
        listens = tryToListen(static_cast<std::uint16_t>(firstPort + i));
    if (!listens && port == 0) listens = tryToListen(0);
    if (!listens)
        throw Problem("The panel cannot listen on port " + std::to_string(port) +
                      "; another program may use it. Choose another (--port N).");
    accept();
    signals.async_wait([this](error_code, int) { io.stop(); });
}

bool WebServer::Core::tryToListen(std::uint16_t port) {
    const tcp::endpoint place(net::ip::address_v4::loopback(), port);
    error_code failed;
    acceptor.open(place.protocol(), failed);
    if (!failed) acceptor.set_option(tcp::acceptor::reuse_address(true), failed);
    if (!failed) acceptor.bind(place, failed);
    if (!failed) acceptor.listen(net::socket_base::max_listen_connections, failed);
    if (!failed) return true;
    error_code ignored;
    acceptor.close(ignored);
    return false;
}

void WebServer::Core::accept() {
    acceptor.async_accept([this](error_code failed, tcp::socket socket) {
        if (failed) {  // out of descriptors, for instance
            pause.expires_after(acceptPause);
            pause.async_wait([this](error_code) { accept(); });
            return;
        }
        if (connections < mostConnections) std::make_shared<Visit>(*this, std::move(socket))->read();
        accept();
    });
}

void WebServer::Core::tickOn() {
    if (ticking || clients.empty()) return;
    ticking = true;
    ticker.expires_at(nextTick());
    ticker.async_wait([this](error_code failed) {
        ticking = false;
        if (failed) return;
        handler.tick();
        tickOn();
    });
}

void WebServer::Core::send(ClientId id, bool binary, std::shared_ptr<const std::string> bytes) {
    if (const auto client = clients.find(id); client != clients.end()) {
        const auto kept = client->second;
        kept->send(binary, std::move(bytes));
    }
}

WebServer::WebServer(std::uint16_t port, std::span<const WebFile> files, Handler& handler)
    : core_(std::make_unique<Core>(port, files, handler)) {}

// What still waits in the loop holds clients and visits, which count themselves out.
WebServer::~WebServer() {
    core_->clients.clear();
}

std::uint16_t WebServer::port() const {
    return core_->acceptor.local_endpoint().port();
}

void WebServer::run() {
    core_->io.run();
}

void WebServer::sendText(ClientId client, std::shared_ptr<const std::string> text) {
    core_->send(client, false, std::move(text));
}

void WebServer::sendBinary(ClientId client, std::shared_ptr<const std::string> bytes) {
    core_->send(client, true, std::move(bytes));
}

std::size_t WebServer::waiting(ClientId client) const {
    const auto found = core_->clients.find(client);
    return found != core_->clients.end() ? found->second->waiting() : 0;
}

void WebServer::post(std::function<void()> action) {
    net::post(core_->io, std::move(action));
}

}  // namespace Unit
