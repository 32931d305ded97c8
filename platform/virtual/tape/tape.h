#pragma once

#include "platform/virtual/tape/recorder.h"
#include "platform/virtual/tape/replayer.h"

namespace Platform::Virtual {

// What the calls of the twin ask. A process records, replays or does neither; the first call settles it from the
// environment: TERN_RECORD names the file to write and TERN_RECORD_ABOUT is the text about it; TERN_REPLAY names the
// file to play, and TERN_REPLAY_STOP, when set, ends the process at the first difference.

Recorder* recorder();  ///< null when this process does not record
Replayer* replayer();  ///< null when it does not replay

}  // namespace Platform::Virtual
