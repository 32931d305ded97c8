#pragma once

#include <functional>

#include "apps/common/event/serverconnection.h"
#include "backend/handlertable.h"

/// The glue between the server and the variables. A notice takes the value from its place in a memory area into its
/// variable; a change by the program goes the other way through the variable's change callback.
///
/// There is one in a process. Failures of start-up are fatal (std::runtime_error).
class BackendHandler final : public ServerConnection::EventHandler {
  public:
    std::function<void(const Notify&)> preHook;   ///< called before the table, when set
    std::function<void(const Notify&)> postHook;  ///< called after the table, when set

    /// Opens the memory areas, connects, subscribes id by id, becomes the connection's handler and lets the log follow
    /// its threshold in the areas. `poll` and what `table` points to must outlive this.
    BackendHandler(EventPoll* poll, const Backend::HandlerTable& table);
    BackendHandler(const BackendHandler&) = delete;
    BackendHandler& operator=(const BackendHandler&) = delete;
    ~BackendHandler();

    /// False for an id without a row, which is logged and changes nothing.
    bool handleEvent(const Notify& message);
    void onNotify(const Notify& notify) override { handleEvent(notify); }

    /// Takes every value that the areas hold, in the order of the subscriptions, and installs the change callbacks of
    /// an id's variables right after it. Called once, when the model is linked.
    void initialiseVariables();

    ServerConnection& connection() { return connection_; }

  private:
    void installCallbacks(std::uint32_t id) const;

    const Backend::HandlerTable& table_;
    Backend::Areas areas_;
    ServerConnection connection_;
};
