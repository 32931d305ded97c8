#pragma once

#include "platform/virtual/virtual.h"

namespace Platform::Virtual {

/// What is to happen to a call.
struct Verdict {
    int error = 0;    ///< fail with it; 0 lets the call through
    int atMost = -1;  ///< bytes to move at most; -1 for all
};

/// Counts the call and says what is to happen to it.
Verdict judge(Call call);

/// Counts the call; true when it is to fail, errno being set.
bool fails(Call call);

}  // namespace Platform::Virtual
