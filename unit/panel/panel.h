#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "platform/virtual/driver.h"
#include "unit/ctl/memory.h"
#include "unit/ctl/notices.h"
#include "unit/panel/backstage.h"
#include "unit/panel/displayview.h"
#include "unit/panel/heldinput.h"
#include "unit/panel/logtail.h"
#include "unit/panel/request.h"
#include "unit/panel/tilediffer.h"
#include "unit/panel/watchedvalues.h"
#include "unit/panel/web/webserver.h"

namespace Unit {

/// The front panel of a running unit: what its pages see, and what they may do. It looks at the unit from outside: at
/// the shared framebuffer, the memory areas, the log and the notices by reading; at the modules and at the processes by
/// asking the server and the supervisor. So it costs the product nothing.
class Panel final : public WebServer::Handler {
  public:
    /// The unit in `place` runs. Throws Problem when the port is not to be had.
    Panel(Platform::Virtual::Place place, std::uint16_t port, std::span<const WebFile> page);

    const std::string& address() const { return address_; }
    /// Until a signal ends it.
    void run() { server_.run(); }

    void opened(WebServer::ClientId id) override;
    void received(WebServer::ClientId id, std::string_view text) override;
    void closed(WebServer::ClientId id) override;
    void tick() override;

  private:
    /// What one page has, and may be sent.
    struct Client {
        TileDiffer differ;
        unsigned credit = firstCredit;
        std::uint32_t frame = 0;  ///< the last one looked at
        WatchedValues values;
        int logLevel = defaultLevel;
    };

    static constexpr unsigned firstCredit = 2;
    static constexpr unsigned mostCredit = 4;
    static constexpr int defaultLevel = 3;  // Log::LogAll

    /// A request with the page that makes it; gone when the request is obeyed.
    struct Asked {
        WebServer::ClientId by;
        Client& client;
        const Request& request;
    };

    void obey(WebServer::ClientId id, Client& client, const Request& request);
    void perform(const Asked& asked, const Request::Credit& credit);
    void perform(const Asked& asked, const Request::Key& key);
    void perform(const Asked& asked, const Request::Touch& touch);
    void perform(const Asked& asked, const Request::Do& one);
    void perform(const Asked& asked, const Request::Set& one);
    void perform(const Asked& asked, const Request::Scene& scene);
    void perform(const Asked& asked, const Request::Trace& trace);
    void perform(const Asked& asked, const Request::Watch& watch);
    void perform(const Asked& asked, const Request::LogLevel& log);
    void perform(const Asked& asked, const Request::Step& step);
    void change(const Asked& asked, const std::string& line);
    void ask(const Asked& asked, Backstage::Whom whom, const std::string& line);
    void answer(WebServer::ClientId id, const Request& request, const Backstage::Answer& answer);

    void eachClient(const std::function<void(WebServer::ClientId, Client&)>& visit);
    void sendFrames();
    void sendValues();
    void sendLog();
    void sendNotices();
    void askStatus();
    void askSettings();
    void takeStatus(const Backstage::Answer& answer);
    nlohmann::json describeStatus() const;
    void broadcast(const std::string& text);
    void send(WebServer::ClientId id, const nlohmann::json& message);
    nlohmann::json hello() const;
    nlohmann::json describeNotices() const;
    nlohmann::json describeLines(const std::vector<const LogLine*>& lines, bool gap) const;
    const Store* store();

    Platform::Virtual::Place place_;
    Platform::Virtual::Driver driver_;
    InputDevices devices_;
    HeldInput held_;
    DisplayView display_;
    LogTail log_;
    Notices noticeFiles_;
    std::unique_ptr<Memory> memory_;
    std::map<WebServer::ClientId, Client> clients_;
    std::deque<LogLine> history_;
    std::vector<Notices::Notice> notices_;
    nlohmann::json status_;  ///< the supervisor's; null while the unit does not run
    std::string settings_;   ///< the server's, as JSON; empty while it does not run
    unsigned ticks_ = 0;
    bool statusUnderWay_ = false;
    bool settingsUnderWay_ = false;
    std::string catalogue_;
    std::vector<WebFile> files_;
    WebServer server_;
    std::string address_;
    Backstage backstage_;  // last: its thread ends before what it speaks to
};

}  // namespace Unit
