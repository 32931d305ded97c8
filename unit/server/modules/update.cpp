#include "unit/server/modules/update.h"

#include <algorithm>
#include <fstream>
#include <nlohmann/json.hpp>

#include "model/catalogue/enums.h"

namespace Unit {

namespace fs = std::filesystem;

using Model::LastCommandResult;
using Model::UpdateState;
using nlohmann::json;

namespace {

constexpr double installTime = 6, deviceTime = 5, busTime = 4, checkTime = 1, exportTime = 3;
constexpr int busParts = 2;

/// Empty when the file is no firmware of this unit.
std::string versionOf(const fs::path& file) {
    std::ifstream stream(file);
    const json described = json::parse(stream, nullptr, false);
    if (!described.is_object() || !described.contains("version") || !described["version"].is_string()) return "";
    return described["version"].get<std::string>();
}

std::int32_t percent(double part) {
    return static_cast<std::int32_t>(part * 100);
}

}  // namespace

Update::Update(Store& values, std::shared_ptr<FileTree> tree) : Module("update", values), tree_(std::move(tree)) {
    hear(fileName_, [this] { checkFile(); });
    hear(hostStart_, [this] {
        if (hostStart_) installHost();
    });
    hear(deviceStart_, [this] {
        if (deviceStart_.get() != 0) updateDevice();
    });
    hear(busStart_, [this] {
        if (busStart_) updateBusDevice();
    });
    hear(exportLogs_, [this] {
        if (exportLogs_) exportLogs();
    });
    hear(removeLogs_, [this] {
        if (removeLogs_.is(Model::RemoveLogFiles::Remove)) removeLogs_.set(Model::RemoveLogFiles::Removed);
    });
    hear(prepareUsb_, [this] {
        if (prepareUsb_.take() && usb_.is(Model::UsbState::Mounted)) makeFolders();
    });
    hear(writeInfo_, [this] {
        if (writeInfo_.take() && usb_.is(Model::UsbState::Mounted)) writeInfo();
    });
}

void Update::powerUp() {
    job_.reset();
    usbWasThere_ = false;
    static constexpr const char* devices[] = {"Motor controller", "Distance sensor"};
    for (std::size_t row = 0; row < std::size(devices); ++row) {
        busConnected_.setInteger(row, 1);
        busNames_.setText(row, devices[row]);
        busVersions_.setText(row, "1.3.0");
        busSerials_.setInteger(row, static_cast<std::int32_t>(4711 + row));
    }
    busDevices_.set(static_cast<std::int32_t>(std::size(devices)));
    listFiles();
}

void Update::listFiles() {
    std::vector<std::string> names;
    std::error_code ignored;
    if (usb_.is(Model::UsbState::Mounted))
        for (const auto& entry : fs::directory_iterator(tree_->usb() / "firmware", ignored))
            if (entry.path().extension() == ".fw") names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    names.resize(std::min(names.size(), files_.rows()));
    for (std::size_t row = 0; row < names.size(); ++row) files_.setText(row, names[row]);
    fileCount_.set(static_cast<std::int32_t>(names.size()));
}

void Update::begin(Job job) {
    if (job_) {
        job.finish(false);
        return;
    }
    elapsed_ = 0;
    job_ = std::make_unique<Job>(std::move(job));
    job_->progress(0);
}

void Update::checkFile() {
    fileVersion_.set("");
    if (fileName_.get().empty()) {
        fileState_.set(Model::HostUpdateFileState::None);
        return;
    }
    fileState_.set(Model::HostUpdateFileState::Checking);
    begin({checkTime, [](double) {},
           [this](bool good) {
               const std::string name = fileName_.get();
               const bool found = good && FileTree::isPlainName(name);
               const std::string version = found ? versionOf(tree_->usb() / "firmware" / name) : "";
               fileVersion_.set(version);
               fileState_.set(version.empty() ? Model::HostUpdateFileState::Invalid
                                              : Model::HostUpdateFileState::Valid);
           },
           true});
}

void Update::installHost() {
    const bool valid = fileState_.is(Model::HostUpdateFileState::Valid);
    result_.set(LastCommandResult::Running);
    begin({installTime, [this](double part) { progress_.set(static_cast<float>(percent(part))); },
           [this, valid](bool good) {
               hostStart_.set(false);
               const bool done = good && valid;
               if (done) productVersion_.set(fileVersion_.get());
               resultText_.set(done ? "The firmware is installed." : "The firmware could not be installed.");
               result_.set(LastCommandResult::Report);
           },
           true});
}

void Update::updateDevice() {
    deviceState_.set(UpdateState::Running);
    begin({deviceTime, [this](double part) { deviceProgress_.set(percent(part)); },
           [this](bool good) {
               deviceStart_.set(0);
               deviceState_.set(good ? UpdateState::Succeeded : UpdateState::Failed);
           },
           false});
}

void Update::updateBusDevice() {
    const auto row = static_cast<std::size_t>(busSelected_.within(0, std::max(1, busDevices_.get()) - 1));
    busName_.set(busNames_.text(row));
    busState_.set(UpdateState::Running);
    busCount_.set(busParts);
    begin({busTime,
           [this](double part) {
               const int index = std::min(busParts - 1, static_cast<int>(part * busParts));
               busIndex_.set(index + 1);
               busPart_.set(index == 0 ? "Boot software" : "Main software");
               busProgress_.set(percent(part * busParts - index));
           },
           [this, row](bool good) {
               if (good) busVersions_.setText(row, "1.4.0");
               busStart_.set(false);
               busState_.set(good ? UpdateState::Succeeded : UpdateState::Failed);
           },
           true});
}

void Update::exportLogs() {
    begin({exportTime, [this](double part) { exportProgress_.set(percent(part)); },
           [this](bool good) {
               if (good) std::ofstream(tree_->usb() / "unit.log") << "exported by the virtual unit\n";
               exportLogs_.set(false);
               exportProgress_.set(0);
           },
           true});
}

void Update::makeFolders() {
    std::error_code ignored;
    for (const char* folder : {"lenses", "rings", "setups", "diopters", "firmware"})
        fs::create_directories(tree_->usb() / folder, ignored);
}

void Update::writeInfo() {
    std::ofstream(tree_->usb() / "unit.txt") << "version " << productVersion_.get() << '\n';
}

void Update::tick(std::int64_t nanoseconds) {
    const bool there = usb_.is(Model::UsbState::Mounted);
    if (there != usbWasThere_) listFiles();
    usbWasThere_ = there;
    if (!job_) return;
    elapsed_ += static_cast<double>(nanoseconds) * 1e-9;
    const bool lost = job_->needsUsb && !there;
    if (!lost) job_->progress(std::min(1.0, elapsed_ / job_->seconds));
    if (!lost && elapsed_ < job_->seconds) return;
    // Its end may begin the next one.
    const auto done = std::move(job_);
    done->finish(!lost);
}

}  // namespace Unit
