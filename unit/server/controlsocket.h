#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "apps/common/event/eventpoll.h"

namespace Unit {

/// The socket by which the command line and the panel drive the server: requests are lines, each is answered by one
/// line, in order. A client that has sent "watch" gets the lines of `tell` in between.
class ControlSocket final : public EventPoll::Callback {
  public:
    static constexpr const char* socketPath = "/var/volatile/unit-control.socket";

    /// The answer to a line, without its end.
    using Answer = std::function<std::string(std::string_view line)>;

    ControlSocket(EventPoll& poll, Answer answer) : poll_(poll), answer_(std::move(answer)) {}
    ~ControlSocket() override;

    void open();
    void close();
    bool anyWatcher() const;
    void tell(std::string_view line);
    void flush();
    void reap();

    void onPollEvent(int what) override;

  private:
    struct Client {
        int fd;
        bool ended = false;
        bool watches = false;
        std::string in;
        std::string out;
    };

    void acceptAll();
    void readAll();
    void answerLines(Client& client);

    EventPoll& poll_;
    Answer answer_;
    int listening_ = -1;
    std::vector<std::unique_ptr<Client>> clients_;
};

}  // namespace Unit
