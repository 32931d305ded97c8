#include "apps/gui/main/overlaymessagehandling.h"

#include <algorithm>

#include "apps/common/log/log.h"
#include "apps/gui/main/areavalue.h"
#include "embedded-gui-engine/fireevent.h"
#include "embedded-gui-engine/label.h"
#include "embedded-gui-engine/timer.h"

namespace {

constexpr MessageData noMessage = {};

}  // namespace

void OverlayMessageHandling::show(int id) {
    for (const MessageData& message : Messages::table) {
        if (message.id != id) continue;
        Queue& queue = queues_[static_cast<std::size_t>(message.priority)];
        if (std::ranges::find(queue, &message) == queue.end()) queue.push_back(&message);
        put(current());
    }
}

void OverlayMessageHandling::next() {
    const auto queue = std::ranges::find_if(queues_, [](const Queue& one) { return !one.empty(); });
    if (queue == queues_.end()) return;
    queue->pop_front();
    put(current());
}

const MessageData& OverlayMessageHandling::current() const {
    for (const Queue& queue : queues_)
        if (!queue.empty()) return *queue.front();
    return noMessage;
}

void OverlayMessageHandling::put(const MessageData& message) {
    if (message.id == Messages::None) return;
    TERN_LOG(Log::LogLight, "Showing message \"%s\"", Messages::nameOf(message.id));
    Area::change(Places::VarMessageType, message.priority);
    fillPage(message);
    Area::change<unsigned char>(Places::VarMessageIsVisible, 1);
}

void OverlayMessageHandling::fillPage(const MessageData& message) {
    if (widgets_.title != nullptr) widgets_.title->setTextId(message.title);
    if (widgets_.text != nullptr) widgets_.text->setTextId(message.text);
    fillButton(widgets_.buttons[0], message.button1Text, message.button1Event);
    fillButton(widgets_.buttons[1], message.button2Text, message.button2Event);
    runTimer(message.autoClose != 0);
}

void OverlayMessageHandling::fillButton(const MessageWidgets::Button& button, Engine::TextId text, int event) {
    if (button.field != nullptr) button.field->setEnabled(text != Engine::TextId{});
    if (button.label != nullptr) button.label->setTextId(text);
    if (button.fire == nullptr) return;
    button.fire->setEnabled(event != 0);
    button.fire->setEvent(static_cast<Engine::EventId>(event));
}

void OverlayMessageHandling::runTimer(bool on) {
    if (widgets_.autoClose == nullptr) return;
    if (!on) widgets_.autoClose->stop();
    widgets_.autoClose->setEnabled(on);
    if (on) widgets_.autoClose->start();
}
