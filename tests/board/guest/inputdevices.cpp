#include "tests/board/guest/inputdevices.h"

#include <fcntl.h>
#include <linux/uinput.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cstring>
#include <filesystem>
#include <fstream>

#include "tests/board/guest/expect.h"

namespace fs = std::filesystem;

namespace Board {

namespace {

/// The node "eventN" in a device's folder of /sys.
std::string nodeIn(const fs::path& folder) {
    for (const auto& entry : fs::directory_iterator(folder))
        if (entry.path().filename().string().starts_with("event")) return entry.path().filename();
    throw Failure(folder.string() + " has no event node");
}

void linkNode(const std::string& node, const std::string& path) {
    fs::create_directories(fs::path(path).parent_path());
    fs::remove(path);
    fs::create_symlink("/dev/input/" + node, path);
}

}  // namespace

InputDevice::InputDevice(std::string path)
    : path_(std::move(path)), fd_(::open("/dev/uinput", O_WRONLY | O_NONBLOCK | O_CLOEXEC)) {
    expect(fd_ >= 0, "/dev/uinput cannot be opened");
}

InputDevice::~InputDevice() {
    std::error_code ignored;
    fs::remove(path_, ignored);
    ::ioctl(fd_, UI_DEV_DESTROY);
    ::close(fd_);
}

void InputDevice::enable(unsigned long request, int what) {
    expect(::ioctl(fd_, request, what) == 0, path_ + ": uinput refuses " + std::to_string(what));
}

void InputDevice::describe(const uinput_abs_setup* axis) {
    expect(::ioctl(fd_, UI_ABS_SETUP, axis) == 0, path_ + ": uinput refuses axis " + std::to_string(axis->code));
}

void InputDevice::appear(const char* name) {
    uinput_setup setup = {};
    std::strncpy(setup.name, name, sizeof setup.name - 1);
    setup.id.bustype = BUS_HOST;
    char folder[64] = {};
    const bool made = ::ioctl(fd_, UI_DEV_SETUP, &setup) == 0 && ::ioctl(fd_, UI_DEV_CREATE) == 0 &&
                      ::ioctl(fd_, UI_GET_SYSNAME(sizeof folder), folder) >= 0;
    expect(made, path_ + ": uinput makes no device");
    linkNode(nodeIn(fs::path("/sys/devices/virtual/input") / folder), path_);
}

void InputDevice::send(const std::vector<Record>& records) {
    std::vector<input_event> events;
    for (const Record& record : records) {
        input_event event = {};
        event.type = static_cast<__u16>(record.type);
        event.code = static_cast<__u16>(record.code);
        event.value = record.value;
        events.push_back(event);
    }
    events.push_back(input_event{});  // EV_SYN, SYN_REPORT
    const auto size = static_cast<ssize_t>(events.size() * sizeof(input_event));
    expect(::write(fd_, events.data(), static_cast<std::size_t>(size)) == size, path_ + " takes no records");
}

KeyDevice::KeyDevice(const char* name, const std::string& path, const std::vector<int>& codes) : InputDevice(path) {
    enable(UI_SET_EVBIT, EV_KEY);
    for (const int code : codes) enable(UI_SET_KEYBIT, code);
    appear(name);
}

void KeyDevice::press(int code) {
    send({{EV_KEY, code, 1}});
    sleepFor(0.05);
    send({{EV_KEY, code, 0}});
}

TouchPanel::TouchPanel() : InputDevice("/dev/input/touchscreen0") {
    enable(UI_SET_EVBIT, EV_ABS);
    for (const int code : {ABS_MT_SLOT, ABS_MT_TRACKING_ID, ABS_MT_POSITION_X, ABS_MT_POSITION_Y}) {
        enable(UI_SET_ABSBIT, code);
        uinput_abs_setup axis = {};
        axis.code = static_cast<__u16>(code);
        axis.absinfo.maximum = code == ABS_MT_SLOT ? 9 : code == ABS_MT_TRACKING_ID ? 65535 : 800;
        describe(&axis);
    }
    appear("board touch panel");
}

void TouchPanel::tap(int x, int y) {
    send({{EV_ABS, ABS_MT_SLOT, 0},
          {EV_ABS, ABS_MT_TRACKING_ID, ++tracking_},
          {EV_ABS, ABS_MT_POSITION_X, 2 * y},
          {EV_ABS, ABS_MT_POSITION_Y, 2 * x}});
    sleepFor(0.1);
    send({{EV_ABS, ABS_MT_TRACKING_ID, -1}});
}

KeyWatch::KeyWatch(const std::string& path) : fd_(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC)) {
    expect(fd_ >= 0, path + " cannot be opened");
}

KeyWatch::~KeyWatch() {
    ::close(fd_);
}

bool KeyWatch::awaitRelease(int code, double seconds) {
    return waitUntil(seconds, [&] {
        input_event event;
        while (::read(fd_, &event, sizeof event) == static_cast<ssize_t>(sizeof event))
            if (event.type == EV_KEY && event.code == code && event.value == 0) return true;
        return false;
    });
}

void linkDevice(const std::string& driverName, const std::string& path) {
    for (const auto& entry : fs::directory_iterator("/sys/class/input")) {
        std::ifstream file(entry.path() / "name");
        std::string name;
        if (std::getline(file, name) && name == driverName) return linkNode(nodeIn(entry.path()), path);
    }
    throw Failure("no input device is named " + driverName);
}

}  // namespace Board
