#pragma once

#include <span>

#include "embedded-gui-engine/textid.h"

/// One message that may appear over all pages.
struct MessageData {
    int id;
    int priority;  ///< 0 to 2, 0 is most important; also the message's colour
    Engine::TextId title;
    Engine::TextId text;
    Engine::TextId button1Text;  ///< 0 hides the button
    int button1Event;            ///< 0 for none
    Engine::TextId button2Text;
    int button2Event;
    float autoClose;  ///< seconds; the period itself is the page's timer's, here only 0 or not counts
};

namespace Messages {

enum Id : int {
    None = 0,
    WrongModemVersion = 1,
    FileAlreadyExists = 6,
    SecondMotorController = 13,
    CinefadeModeWarning = 14,
    ScreenSaverImagesMissing = 16,
    ScreenSaverFileFormat = 20,
};

/// All messages, by rising id.
extern const std::span<const MessageData> table;
/// "Unknown" for an id without a name.
const char* nameOf(int id);

}  // namespace Messages
