#include "unit/ctl/record/about.h"

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>

#include "model/catalogue/constants.h"
#include "platform/virtual/tape/hash.h"
#include "unit/ctl/wholefile.h"

namespace Unit {

namespace fs = std::filesystem;
using Platform::Virtual::fingerprint;

namespace {

constexpr const char* parts[] = {"", ".tail", ".end"};

std::string hexadecimal(std::uint64_t value) {
    char text[17];
    std::snprintf(text, sizeof text, "%016llx", static_cast<unsigned long long>(value));
    return text;
}

std::string line(const char* key, std::string value) {
    for (char& c : value)
        if (c == '\n') c = ' ';
    return value.empty() ? "" : std::string(key) + "=" + value + "\n";
}

std::string fromEnvironment(const char* name) {
    const char* value = std::getenv(name);
    return value != nullptr ? value : "";
}

/// The name of the zone whose clock the product shows ("Europe/Berlin"); empty when nobody has set one.
std::string timeZone() {
    if (auto set = fromEnvironment("TZ"); !set.empty()) return set;
    std::error_code none;
    const std::string zone = fs::read_symlink("/etc/localtime", none).string();
    const auto at = zone.find("zoneinfo/");
    return at == zone.npos ? "" : zone.substr(at + 9);
}

std::string utcNow() {
    const std::time_t now = std::time(nullptr);
    std::tm parts_ = {};
    ::gmtime_r(&now, &parts_);
    char text[32];
    std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S UTC", &parts_);
    return text;
}

}  // namespace

std::string aboutRecording(const RecordedUnit& unit) {
    return line("catalogue", catalogueFingerprint()) + line("program", programFingerprint(unit.program)) +
           line("page", unit.page) + line("begun", utcNow()) + line("pacing", unit.lockstep ? "lockstep" : "free") +
           line("scene", unit.scene) + line("zone", timeZone()) + line("faults", fromEnvironment("TERN_FAULTS"));
}

std::string catalogueFingerprint() {
    std::uint64_t sum = 0;
    const auto text = [&](const char* word) {
        if (word != nullptr) sum = fingerprint(word, std::char_traits<char>::length(word), sum);
    };
    const auto number = [&](std::uint64_t value) { sum = fingerprint(&value, sizeof value, sum); };
    const auto place = [&](auto kind, auto area, std::uint64_t offset, std::uint64_t size) {
        number(static_cast<std::uint64_t>(kind));
        number(static_cast<std::uint64_t>(area));
        number(offset);
        number(size);
    };
    for (const auto& area : Catalogue::areas) {
        text(area.name);
        number(area.size);
    }
    for (const auto& value : Catalogue::values) {
        text(value.name);
        number(value.id);
        place(value.kind, value.area, value.offset, value.size);
    }
    for (const auto& table : Catalogue::tables) {
        text(table.name);
        number(table.id);
        place(Catalogue::Kind::None, table.area, table.base, std::uint64_t{table.stride} * table.rows);
        for (const auto& field : table.fields) {
            text(field.name);
            place(field.kind, 0, field.offset, field.size);
        }
    }
    for (const auto& message : Catalogue::messages) text(message.name);
    return hexadecimal(sum);
}

std::string programFingerprint(const std::string& file) {
    const std::string bytes = wholeFile(file);
    return bytes.empty() ? "" : hexadecimal(fingerprint(bytes.data(), bytes.size()));
}

std::string currentRecording(const std::string& folder) {
    return folder + "/recording";
}

std::string earlierRecording(const std::string& folder) {
    return folder + "/recording.earlier";
}

void noteEnd(const std::string& folder, const std::string& how) {
    std::ofstream(currentRecording(folder) + ".end") << how;
}

std::string endOf(const std::string& recording) {
    return wholeFile(recording + ".end");
}

RecordingToBegin::RecordingToBegin(const std::string& folder, const std::string& about) {
    std::error_code ignored;
    const std::string current = currentRecording(folder), earlier = earlierRecording(folder);
    for (const char* part : parts) {
        fs::remove(earlier + part, ignored);
        fs::rename(current + part, earlier + part, ignored);
    }
    ::setenv("TERN_RECORD", current.c_str(), 1);
    ::setenv("TERN_RECORD_ABOUT", about.c_str(), 1);
}

RecordingToBegin::~RecordingToBegin() {
    ::unsetenv("TERN_RECORD");
    ::unsetenv("TERN_RECORD_ABOUT");
}

}  // namespace Unit
