#include "unit/ctl/inside/atlas.h"

#include <fnmatch.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>

#include "model/catalogue/constants.h"
#include "platform/virtual/tape/hash.h"
#include "unit/ctl/inside/atlassheet.h"
#include "unit/ctl/inside/pixels.h"
#include "unit/ctl/inside/startpage.h"
#include "unit/ctl/problem.h"
#include "unit/ctl/record/scratchunit.h"
#include "unit/ctl/supervisor.h"

namespace Unit {

namespace fs = std::filesystem;
using nlohmann::json;

namespace {

// Enough for what a page loads when it is entered, and for what a setting changes.
constexpr unsigned framesToEnter = 60;
constexpr unsigned framesToChange = 12;

struct Setting {
    std::string name;
    std::string value;
};

std::vector<Setting> languages() {
    std::vector<Setting> all;
    const auto* variable = Catalogue::findValue("VarLanguage");
    if (variable == nullptr || variable->enumType == Catalogue::noEnumType) return {{"default", "0"}};
    for (const auto& entry : Catalogue::enumTypes[static_cast<std::size_t>(variable->enumType)].entries)
        all.push_back({entry.name, std::to_string(entry.value)});
    return all;
}
const std::vector<Setting> styles = {{"night", "1"}, {"day", "0"}};
const std::vector<Setting> hands = {{"right", "0"}, {"left", "1"}};

Pixels pixelsOf(const Platform::Virtual::Picture& picture) {
    return {picture.width, picture.height, picture.pixels};
}

/// Every combination of language, style and hand for one page, without pictures yet.
std::vector<AtlasPicture> combinations(const std::string& scene, const std::string& page) {
    std::vector<AtlasPicture> all;
    for (const auto& style : styles)
        for (const auto& hand : hands)
            for (const auto& language : languages())
                all.push_back({scene, page, language.name, style.name, hand.name, 0, ""});
    return all;
}

const std::string& valueOf(const std::vector<Setting>& settings, const std::string& name) {
    return std::ranges::find(settings, name, &Setting::name)->value;
}

std::string sceneName(const std::string& file) {
    return fs::path(file).stem().string();
}

bool differ(const AtlasPicture& a, const AtlasPicture& b) {
    return a.fingerprint != b.fingerprint || a.problem.empty() != b.problem.empty();
}

json toJson(const AtlasPicture& picture) {
    return {{"scene", picture.scene},    {"page", picture.page}, {"language", picture.language},
            {"style", picture.style},    {"hand", picture.hand}, {"fingerprint", picture.fingerprint},
            {"problem", picture.problem}};
}

AtlasPicture fromJson(const json& one) {
    return {one.value("scene", ""),  one.value("page", ""), one.value("language", ""),
            one.value("style", ""),  one.value("hand", ""), one.value("fingerprint", std::uint64_t{0}),
            one.value("problem", "")};
}

std::vector<AtlasPicture> readList(const std::string& file) {
    std::ifstream in(file);
    const json list = json::parse(in, nullptr, false);
    std::vector<AtlasPicture> pictures;
    if (!list.is_array()) throw Problem(file + " is missing or no atlas. Make one first: unitctl atlas DIR");
    for (const auto& one : list)
        if (one.is_object()) pictures.push_back(fromJson(one));
    return pictures;
}

void writeJson(const std::string& file, const std::vector<AtlasPicture>& pictures) {
    json list = json::array();
    for (const auto& picture : pictures) list.push_back(toJson(picture));
    std::ofstream out(file);
    out << list.dump(1, ' ', false, json::error_handler_t::replace) << "\n";
    if (!out.flush()) throw Problem(file + " cannot be written. Is there room, and may you write there?");
}

std::string partFile(const std::string& folder, std::size_t task) {
    return folder + "/.part-" + std::to_string(task) + ".json";
}

}  // namespace

Atlas::Atlas(AtlasOptions options, std::function<void(const std::string&)> report)
    : options_(std::move(options)), report_(std::move(report)) {}

std::vector<Atlas::Task> Atlas::tasks() const {
    const StartPage program(options_.programs + "/gui-virtual");
    std::vector<Task> all;
    for (const auto& scene : options_.scenes)
        for (const auto& page : program.pages())
            if (isAskedPage(page)) all.push_back({scene, page});
    if (all.empty()) throw Problem("No page matches \"" + options_.glob + "\".");
    return all;
}

bool Atlas::run() {
    std::error_code failed;
    fs::create_directories(options_.folder, failed);
    if (failed) throw Problem(options_.folder + " cannot be made: " + failed.message());
    if (!options_.against.empty()) readList(options_.against + "/atlas.json");  // before the long part
    takeAll();
    writeList();
    return compare();
}

/// A process a page: the workers are as many as there are jobs, and a page that cannot be shown takes no other with it.
void Atlas::takeAll() {
    const auto all = tasks();
    std::fflush(nullptr);
    std::map<pid_t, std::size_t> running;
    std::size_t next = 0;
    while (next < all.size() || !running.empty()) {
        if (next < all.size() && running.size() < options_.jobs) {
            const pid_t child = ::fork();
            if (child == 0) {
                writeJson(partFile(options_.folder, next), take(options_, all[next]));
                std::fflush(nullptr);
                std::_Exit(0);
            }
            if (child < 0) throw Problem("No process can be started for an atlas; try --jobs 1.");
            running[child] = next++;
            continue;
        }
        const pid_t ended = ::waitpid(-1, nullptr, 0);
        if (ended < 0 && errno != EINTR) break;
        const auto task = running.find(ended);
        if (task == running.end()) continue;
        report_(sceneName(all[task->second].scene) + " " + all[task->second].page);
        running.erase(task);
    }
    readLists(all);
}

void Atlas::readLists(const std::vector<Task>& all) {
    for (std::size_t i = 0; i < all.size(); ++i) {
        std::error_code ignored;
        const std::string part = partFile(options_.folder, i);
        if (!fs::exists(part, ignored)) {
            for (auto& missing : combinations(sceneName(all[i].scene), all[i].page)) {
                missing.problem = "the unit ended";
                pictures_.push_back(std::move(missing));
            }
            continue;
        }
        const auto pictures = readList(part);
        pictures_.insert(pictures_.end(), pictures.begin(), pictures.end());
        fs::remove(part, ignored);
    }
}

/// In a worker. What goes wrong stands in the pictures that are missing.
std::vector<AtlasPicture> Atlas::take(const AtlasOptions& options, const Task& task) {
    auto pictures = combinations(sceneName(task.scene), task.page);
    const ScratchUnit scratch("atlas");
    std::size_t taken = 0;
    try {
        Supervisor::catchSignals();
        UnitOptions unitOptions;
        unitOptions.place = scratch.place();
        unitOptions.scene = task.scene;
        unitOptions.pacing = Pacing::Lockstep;
        unitOptions.record = Record::Off;
        unitOptions.page = task.page;
        unitOptions.programs = options.programs;
        Supervisor unit(unitOptions, [](const std::string&) {});
        unit.start();
        unit.step(framesToEnter);
        for (; taken < pictures.size(); ++taken) {
            AtlasPicture& picture = pictures[taken];
            unit.askServer("set VarLanguage " + valueOf(languages(), picture.language));
            unit.askServer("set VarGuiDesignIsNightStyle " + valueOf(styles, picture.style));
            unit.askServer("set VarGuiRotate " + valueOf(hands, picture.hand));
            unit.step(framesToChange);
            const Pixels pixels = pixelsOf(unit.driver().shot());
            picture.fingerprint = Platform::Virtual::fingerprint(pixels.colors.data(), pixels.colors.size() * 4);
            writePixels(pixels, options.folder + "/" + picture.stem() + ".png");
        }
    } catch (const std::exception& problem) {
        for (; taken < pictures.size(); ++taken) pictures[taken].problem = problem.what();
    }
    return pictures;
}

void Atlas::writeList() const {
    writeJson(options_.folder + "/atlas.json", pictures_);
}

bool Atlas::compare() {
    const auto entries = compareWith(earlierPictures());
    std::ofstream sheet(options_.folder + "/index.html");
    sheet << atlasSheet(entries, options_.against);
    if (!sheet.flush()) throw Problem(options_.folder + "/index.html cannot be written.");
    const auto failed = std::ranges::count_if(pictures_, [](const auto& one) { return !one.problem.empty(); });
    const auto changed = std::ranges::count_if(entries, [](const auto& one) { return one.change != Change::None; });
    report_(std::to_string(pictures_.size()) + " pictures, " + std::to_string(failed) + " could not be taken" +
            (options_.against.empty() ? "" : ", " + std::to_string(changed) + " differ from " + options_.against) +
            ". See " + options_.folder + "/index.html");
    return failed == 0 && changed == 0;
}

Atlas::Earlier Atlas::earlierPictures() const {
    Earlier earlier;
    if (!options_.against.empty())
        for (auto& picture : readList(options_.against + "/atlas.json")) earlier.try_emplace(picture.stem(), picture);
    return earlier;
}

/// All pictures of now, then those that are no more.
std::vector<SheetEntry> Atlas::compareWith(Earlier earlier) const {
    std::vector<SheetEntry> entries;
    for (const auto& picture : pictures_) {
        const auto before = earlier.find(picture.stem());
        const bool known = before != earlier.end();
        if (known && differ(before->second, picture))
            entries.push_back(otherPicture(picture));
        else
            entries.push_back({picture, known || options_.against.empty() ? Change::None : Change::New, "", ""});
        earlier.erase(picture.stem());
    }
    for (const auto& [stem, picture] : earlier)
        if (isAsked(picture)) entries.push_back({picture, Change::Gone, "", ""});
    return entries;
}

/// Writes the earlier picture and the difference beside the new one.
SheetEntry Atlas::otherPicture(const AtlasPicture& picture) const {
    SheetEntry entry = {picture, Change::Other, "", ""};
    const std::string stem = picture.stem();
    const Pixels was = readPixels(options_.against + "/" + stem + ".png");
    const Pixels is = readPixels(options_.folder + "/" + stem + ".png");
    const auto write = [&](const Pixels& pixels, const char* ending) {
        if (pixels.colors.empty()) return std::string();
        writePixels(pixels, options_.folder + "/" + stem + ending);
        return stem + ending;
    };
    entry.before = write(was, ".before.png");
    entry.difference = write(differenceOf(was, is), ".difference.png");
    return entry;
}

/// Whether this atlas was to have such a picture.
bool Atlas::isAsked(const AtlasPicture& picture) const {
    return isAskedPage(picture.page) &&
           std::ranges::find(options_.scenes, picture.scene, sceneName) != options_.scenes.end();
}

bool Atlas::isAskedPage(const std::string& page) const {
    return options_.glob.empty() || ::fnmatch(options_.glob.c_str(), page.c_str(), 0) == 0;
}

}  // namespace Unit
