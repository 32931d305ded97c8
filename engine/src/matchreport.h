#pragma once

#include "embedded-gui-engine/eventmatcher.h"

namespace Engine {

class Reactable;
class Widget;
struct Reaction;

/// Tells in the log, for one event and one reactable, which reactions matched and why they ran or did not. Switched
/// on by a bit of the trace; off it costs one test.
class MatchReport {
  public:
    MatchReport(const Reactable& reactable, EventId eventId);

    /// `widget` is the one of the hit test, may be null.
    void add(const Reaction& reaction, const Widget* widget, bool ownerEnabled) {
        if (on_) write(reaction, widget, ownerEnabled);
    }
    bool isOn() const { return on_; }

  private:
    void write(const Reaction& reaction, const Widget* widget, bool ownerEnabled);
    void writeHeader();

    const Reactable& reactable_;
    EventId eventId_;
    bool on_;
    bool headerWritten_ = false;
};

}  // namespace Engine
