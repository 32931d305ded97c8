#pragma once

#include <span>

namespace Engine {

class Action;

/// Runs every action in order, traced; null and disabled ones are skipped, results are ignored.
void runActions(std::span<Action* const> actions);

/// Traces and runs one action unless it is null or disabled. Answers whether it ran; `result`, which may be null, is
/// then its answer.
bool runAction(Action* action, bool* result = nullptr);

}  // namespace Engine
