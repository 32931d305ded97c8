#include "unit/panel/backstage.h"

#include <exception>

#include "unit/ctl/problem.h"
#include "unit/ctl/supervisor.h"

namespace Unit {

namespace {

constexpr int patience = 10'000;  // ms

}  // namespace

Backstage::Backstage(std::string folder, Post post)
    : folder_(std::move(folder)), post_(std::move(post)), thread_([this] { work(); }) {}

Backstage::~Backstage() {
    {
        const std::lock_guard lock(mutex_);
        end_ = true;
    }
    wake_.notify_one();
    thread_.join();
}

bool Backstage::ask(Whom whom, std::string line, Then then) {
    {
        const std::lock_guard lock(mutex_);
        if (questions_.size() >= mostWaiting) return false;
        questions_.push_back({whom, std::move(line), std::move(then)});
    }
    wake_.notify_one();
    return true;
}

void Backstage::work() {
    for (;;) {
        std::unique_lock lock(mutex_);
        wake_.wait(lock, [this] { return end_ || !questions_.empty(); });
        if (end_) return;
        Question question = std::move(questions_.front());
        questions_.pop_front();
        lock.unlock();
        Answer answer = answerTo(question);
        post_([then = std::move(question.then), answer = std::move(answer)] { then(answer); });
    }
}

Backstage::Answer Backstage::answerTo(const Question& question) {
    try {
        return {true, question.whom == Whom::Server ? askServer(question.line) : askSupervisor(question.line)};
    } catch (const std::exception& problem) {
        return {false, problem.what()};
    }
}

// The connection is kept. One that has gone with its server is noticed by the question it cannot carry any more.
std::string Backstage::askServer(const std::string& line) {
    if (server_.connected() && server_.hungUp()) server_.close();
    if (!server_.connected() && !server_.connect(Supervisor::serverSocketPath(folder_)))
        throw Problem("The unit's server does not run.");
    return server_.ask(line, patience);
}

std::string Backstage::askSupervisor(const std::string& line) {
    LineConnection connection;
    if (!connection.connect(Supervisor::socketPath(folder_))) throw Problem("The unit does not run.");
    return connection.ask(line, patience);
}

}  // namespace Unit
