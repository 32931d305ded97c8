#pragma once

#include <array>
#include <deque>

#include "apps/gui/main/messagedata.h"

namespace Engine {
class FireEvent;
class Label;
class Timer;
class Widget;
}  // namespace Engine

/// The widgets of the page that shows a message. Any of them may be null.
struct MessageWidgets {
    struct Button {
        Engine::Widget* field = nullptr;  ///< shown only with a text
        Engine::Label* label = nullptr;
        Engine::FireEvent* fire = nullptr;
    };

    Engine::Label* title = nullptr;
    Engine::Label* text = nullptr;
    std::array<Button, 2> buttons = {};
    Engine::Timer* autoClose = nullptr;
};

/// The messages that wait to be seen, one at a time: the most important first, among equals the oldest. A more
/// important one takes the place of the one on the screen, which comes back later.
class OverlayMessageHandling {
  public:
    static constexpr int priorities = 3;

    explicit OverlayMessageHandling(const MessageWidgets& widgets) : widgets_(widgets) {}
    OverlayMessageHandling(const OverlayMessageHandling&) = delete;
    OverlayMessageHandling& operator=(const OverlayMessageHandling&) = delete;

    /// Queues the message unless it waits already, and shows what is due. Nothing for an id without a message.
    void show(int id);
    /// The message on the screen has been closed.
    void next();
    /// The message that is due; a row of zeros when there is none.
    const MessageData& current() const;

  private:
    using Queue = std::deque<const MessageData*>;

    void put(const MessageData& message);
    void fillPage(const MessageData& message);
    static void fillButton(const MessageWidgets::Button& button, Engine::TextId text, int event);
    void runTimer(bool on);

    MessageWidgets widgets_;
    std::array<Queue, priorities> queues_;
};
