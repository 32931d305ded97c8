#include "tests/support/wholeunit.h"

#include <algorithm>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <optional>
#include <stdexcept>

#include "apps/common/log/log.h"
#include "apps/gui/main/application.h"
#include "embedded-gui-engine/framebuffer.h"
#include "embedded-gui-engine/guimanager.h"
#include "embedded-gui-engine/page.h"
#include "platform/virtual/virtual.h"
#include "tests/support/stubserver.h"
#include "unit/server/simulation.h"

namespace {

constexpr std::int64_t frameTime = 1'000'000'000 / 60;
/// The engine's timers live on from one unit to the next, so the clock does as well.
std::int64_t startOfClock = 1'000'000'000'000;
/// More blanks than a pass waits for.
constexpr std::uint32_t blanksAhead = 8;

Engine::Framebuffer<unsigned int>& screen() {
    return *static_cast<Engine::Framebuffer<unsigned int>*>(Engine::GuiManager::instance().painter());
}

[[noreturn]] void fail(const std::string& what) {
    throw std::runtime_error(what);
}

}  // namespace

struct WholeUnit::Parts {
    Platform::Virtual::TemporaryInstance instance;
    Platform::Virtual::Driver driver;
    StubServer server;
    Unit::InputDevices devices{driver};
    std::optional<Unit::Simulation> simulation;
    std::optional<Application> product;

    std::vector<std::byte*> bases() {
        std::vector<std::byte*> all;
        for (std::size_t i = 0; i < Catalogue::areas.size(); ++i)
            all.push_back(reinterpret_cast<std::byte*>(server.area(i)));
        return all;
    }
    void supplyBlanks() {
        const std::uint32_t left = driver.instance().control().permits;
        if (left < blanksAhead) driver.step(blanksAhead - left);
    }
    void tellProduct() {
        auto& store = simulation->store();
        const std::vector<std::uint32_t> ids(store.notices().begin(), store.notices().end());
        store.clearNotices();
        server.notify(ids);
    }
    Unit::Cell cell(const std::string& name) const {
        std::string problem;
        const auto found = Unit::Store::find(name, problem);
        if (!found) fail(problem);
        return *found;
    }
    std::vector<std::byte> bytes(const Unit::Cell& cell, const std::string& value) const {
        std::string problem;
        const auto parsed = Unit::Store::parse(cell, value, problem);
        if (!parsed) fail(problem);
        return *parsed;
    }
    void loadScene(const std::string& name) {
        std::vector<std::string> problems;
        const bool good =
            name.empty() ? simulation->applyScene(nlohmann::json::object(), problems)
                         : simulation->loadScene(
                               std::filesystem::path(TERN_SOURCE_DIR) / "unit/scenes" / (name + ".json"), problems);
        if (!good) fail(problems.front());
    }
};

WholeUnit::WholeUnit(const std::string& scene) : parts_(std::make_unique<Parts>()) {
    Parts& parts = *parts_;
    Log::setDevice(nullptr);  // that of this unit, not of one before
    parts.driver.holdClockAt(startOfClock);
    parts.driver.holdVsync();
    parts.supplyBlanks();
    const std::filesystem::path folder = Platform::Virtual::path("/unit");
    std::filesystem::create_directories(folder);
    parts.simulation.emplace(parts.bases(), Unit::Surroundings{.folder = folder, .wallClock = false});
    parts.loadScene(scene);
    parts.simulation->store().clearNotices();
    parts.product.emplace();
    // Subscriptions are no notices.
    const auto sent = parts.server.received();
    std::size_t begin = 0;
    while (begin + 1 < sent.size() && sent[begin].id == 1) begin += 2;
    parts.server.echo({sent.begin() + static_cast<std::ptrdiff_t>(begin), sent.end()});
    parts.product->begin();
}

WholeUnit::~WholeUnit() {
    startOfClock = parts_->driver.time();
}

void WholeUnit::pass() {
    parts_->supplyBlanks();
    parts_->product->pass();
}

void WholeUnit::frame() {
    Parts& parts = *parts_;
    const auto sent = parts.server.received();
    std::vector<std::uint32_t> ids;
    for (const Notify& notice : sent) ids.push_back(notice.id);
    parts.server.notify(ids);
    for (const std::uint32_t id : ids) parts.simulation->changed(static_cast<std::uint16_t>(id));
    parts.simulation->tick(frameTime);
    parts.tellProduct();
    parts.driver.advanceClock(frameTime);
    pass();
}

void WholeUnit::frames(int count) {
    for (int i = 0; i < count; ++i) frame();
}

void WholeUnit::settle(int quiet) {
    int still = 0;
    for (int i = 0; i < 600 && still < quiet; ++i) {
        const std::uint32_t before = pans();
        frame();
        still = pans() == before ? still + 1 : 0;
    }
}

void WholeUnit::scene(const std::string& name) {
    parts_->loadScene(name);
    parts_->tellProduct();
}

void WholeUnit::act(const std::string& module, const std::string& setting, const std::string& value) {
    auto parsed = nlohmann::json::parse(value, nullptr, false);
    if (parsed.is_discarded()) parsed = value;
    std::string problem;
    if (!parts_->simulation->configure(module, setting, parsed, problem)) fail(problem);
    parts_->tellProduct();
}

std::string WholeUnit::get(const std::string& name) const {
    return parts_->simulation->store().show(parts_->cell(name));
}

void WholeUnit::set(const std::string& name, const std::string& value) {
    const Unit::Cell cell = parts_->cell(name);
    auto& simulation = *parts_->simulation;
    simulation.store().setBytes(cell, parts_->bytes(cell, value));
    simulation.store().note(cell.id);
    simulation.changed(cell.id);
    parts_->tellProduct();
}

void WholeUnit::poke(const std::string& name, const std::string& value) {
    const Unit::Cell cell = parts_->cell(name);
    std::ranges::copy(parts_->bytes(cell, value), parts_->simulation->store().bytes(cell).begin());
}

Unit::InputDevices& WholeUnit::devices() {
    return parts_->devices;
}

void WholeUnit::key(const std::string& name, bool down) {
    const auto found = std::ranges::find(Unit::namedKeys, name, &Unit::NamedKey::name);
    if (found == Unit::namedKeys.end()) fail("no key " + name);
    devices().key(*found, down);
}

void WholeUnit::press(const std::string& name, int frames) {
    key(name, true);
    this->frames(frames);
    key(name, false);
    frame();
}

void WholeUnit::touch(int x, int y, int frames) {
    devices().touch(0, {x, y});
    this->frames(frames);
    devices().release(1);
    frame();
}

std::string WholeUnit::page() const {
    const Engine::Page* page = Engine::GuiManager::instance().activePage();
    return page != nullptr ? page->objectName() : "";
}

std::uint32_t WholeUnit::rotation() const {
    return screen().rotationIndex();
}

Platform::Virtual::Picture WholeUnit::shot() const {
    return parts_->driver.shot();
}

Platform::Virtual::Picture WholeUnit::redrawn() {
    Engine::GuiManager& manager = Engine::GuiManager::instance();
    Platform::Virtual::Picture picture = {parts_->driver.width(), parts_->driver.height(), {}};
    picture.pixels.resize(std::size_t{picture.width} * picture.height);
    screen().setPixels(picture.pixels.data());
    manager.drawFrame();
    manager.finishFrame();
    return picture;
}

std::uint32_t WholeUnit::pans() const {
    return parts_->driver.pans();
}

Platform::Virtual::Driver& WholeUnit::driver() {
    return parts_->driver;
}

Unit::Simulation& WholeUnit::simulation() {
    return *parts_->simulation;
}

StubServer& WholeUnit::server() {
    return parts_->server;
}
