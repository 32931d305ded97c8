#pragma once

#include <optional>

#include "embedded-gui-engine/eventmatcher.h"

/// The keys that a test system or a page may press without a finger, by number.
namespace SimulatedButton {

inline constexpr int function = 9;

/// The event of the button's press; that of its release is the next one. Nothing for a number without a button.
std::optional<Engine::EventId> pressEvent(int button);

}  // namespace SimulatedButton
