#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "apps/common/event/eventpoll.h"
#include "unit/server/areas.h"
#include "unit/server/broker.h"
#include "unit/server/controlsocket.h"
#include "unit/server/gate.h"
#include "unit/server/hostile.h"
#include "unit/server/simulation.h"

namespace Unit {

/// Whose time the modules live in: the machine's, 60 ticks a second, or that of a driver who gives each tick.
enum class Pace { Free, Lockstep };

/// The stand-in server: the areas, the message socket and its gate, the control socket, and the simulation behind
/// them. Everything it has made is gone when it goes.
class Server final : public Broker::Listener {
  public:
    static constexpr std::int64_t tickPeriod = 1'000'000'000 / 60;

    Server(const Surroundings& surroundings, Pace pace);
    ~Server();

    Simulation& simulation() { return simulation_; }
    Hostile& hostile() { return hostile_; }

    /// Lets clients in. What was configured before is there when they come.
    void open();
    /// Serves until a signal ends it.
    void run();
    /// One turn of the loop, waiting at most `limitMs`. False when a signal wants the end.
    bool turn(int limitMs);

    /// The answer to a line of the control socket; docs/virtual-unit.md tells the requests.
    std::string answer(std::string_view line);

    void onNotice(const Notify& notice) override;

  private:
    void setPace(Pace pace);
    void tick(std::int64_t nanoseconds);
    void announceChanges();
    void closeForRestart(unsigned ticks);
    int millisecondsToTick() const;
    void tickByClock();

    // The requests; `rest` is what follows the verb.
    std::string answerTick(const std::string& rest);
    std::string answerDrain(const std::string& rest);
    std::string answerLockstep(const std::string& rest);
    std::string answerScene(const std::string& rest);
    std::string answerSet(const std::string& rest);
    std::string answerPoke(const std::string& rest);
    std::string answerGet(const std::string& rest);
    std::string answerSend(const std::string& rest);
    std::string answerConfigure(const std::string& rest);
    std::string answerSettings(const std::string& rest);
    std::string answerHostile(const std::string& rest);
    std::string answerJournal(const std::string& rest);
    std::string answerSubscriptions(const std::string& rest);
    std::string answerStatus(const std::string& rest);
    std::string answerNotice(std::uint16_t id);

    EventPoll poll_;
    Areas areas_;
    Simulation simulation_;
    Broker broker_;
    Gate gate_;
    ControlSocket control_;
    Hostile hostile_;
    Pace pace_;
    std::int64_t lastTick_;
    std::uint64_t ticks_ = 0;
    unsigned awayTicks_ = 0;
};

}  // namespace Unit
