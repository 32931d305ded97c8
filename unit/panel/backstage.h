#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

#include "unit/ctl/lineconnection.h"

namespace Unit {

/// Asks the unit's server and its supervisor on a thread of its own, one question after the other, so that the panel
/// goes on showing frames while an answer takes its time.
class Backstage {
  public:
    enum class Whom { Server, Supervisor };
    struct Answer {
        bool ok;
        std::string text;  ///< what was answered, or what is the matter
    };
    using Then = std::function<void(const Answer&)>;
    /// Runs something on the panel's thread; may be called on any.
    using Post = std::function<void(std::function<void()>)>;

    static constexpr std::size_t mostWaiting = 256;

    /// `folder` of the instance.
    Backstage(std::string folder, Post post);
    /// Waits for the answer that is under way; those behind are not asked.
    ~Backstage();
    Backstage(const Backstage&) = delete;
    Backstage& operator=(const Backstage&) = delete;

    /// `then` comes by `post`. False when too many questions wait already.
    bool ask(Whom whom, std::string line, Then then);

  private:
    struct Question {
        Whom whom;
        std::string line;
        Then then;
    };

    void work();
    Answer answerTo(const Question& question);
    std::string askServer(const std::string& line);
    std::string askSupervisor(const std::string& line);

    std::string folder_;
    Post post_;
    LineConnection server_;  // of the thread only
    std::mutex mutex_;
    std::condition_variable wake_;
    std::deque<Question> questions_;
    bool end_ = false;
    std::thread thread_;
};

}  // namespace Unit
