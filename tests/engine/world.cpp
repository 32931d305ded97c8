#include "world.h"

#include <algorithm>
#include <cstdio>

namespace Engine::Test {

std::int64_t World::nanoseconds = 0;
Journal World::logLines;

World::World() {
    nanoseconds = 1'000'000'000;
    logLines.clear();
    hooks().steadyNanoseconds = [] { return nanoseconds; };
    hooks().log = [](int level, const char*, int, const char* format, va_list arguments) {
        char text[1200];
        std::vsnprintf(text, sizeof text, format, arguments);
        logLines.push_back(std::to_string(level) + " " + text);
    };
    before_ = GuiManager::setInstance(&manager);
    Trace::instance().setFlags(&traceFlags);
    manager.elapsedMillis();
    manager.finishInitialization();
}

World::~World() {
    Trace::instance().setFlags(nullptr);
    Trace::instance().setUserEvents({});
    GuiManager::setInstance(before_);
    hooks() = {};
}

Action* World::action(const char* word, bool answer, std::uint32_t flags) {
    return &actions_.emplace_back(
        word,
        [this, word, answer] {
            journal.push_back(word);
            return answer;
        },
        flags);
}

const EventMatcher* World::on(EventId event) {
    return &matchers_.emplace_back(event);
}

Reaction* World::says(EventId event, const char* word, const Reactionee* owner) {
    return &reactions_.emplace_back(list<Action>({action(word)}), on(event), owner, word);
}

Reaction* World::does(EventId event, std::function<void()> what) {
    Action* run = &actions_.emplace_back("do", [what = std::move(what)] {
        what();
        return true;
    });
    return &reactions_.emplace_back(list<Action>({run}), on(event));
}

void World::listenToGestures() {
    const auto reactions =
        list<Reaction>({says(Event_TouchStart, "start"), says(Event_TouchEnd, "end"),
                        says(Event_TouchTouched, "touched"), says(Event_SwipeLeft, "left"),
                        says(Event_SwipeRight, "right"), says(Event_SwipeUp, "up"), says(Event_SwipeDown, "down")});
    manager.setContainers(
        list<BehaviorContainer>({&containers_.emplace_back(ReactableParams{.reactions = reactions})}));
}

bool World::logged(const std::string& text) const {
    return std::any_of(logLines.begin(), logLines.end(),
                       [&](const std::string& line) { return line.find(text) != std::string::npos; });
}

std::vector<std::string> Screen::picture(const std::function<char(unsigned)>& letter) const {
    const int width = static_cast<int>(painter.width()), height = static_cast<int>(painter.height());
    std::vector<std::string> rows;
    for (int y = 0; y < painter.logicalHeight(); ++y) {
        std::string& row = rows.emplace_back();
        for (int x = 0; x < painter.logicalWidth(); ++x) {
            const int places[] = {y * width + x, y + width * (height - 1 - x),
                                  width * (height - 1 - y) + (width - 1 - x), (width - 1 - y) + width * x};
            row += letter(pixels_[static_cast<std::size_t>(places[painter.rotationIndex()])]);
        }
    }
    return rows;
}

}  // namespace Engine::Test
