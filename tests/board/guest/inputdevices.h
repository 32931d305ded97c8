#pragma once

#include <string>
#include <vector>

struct uinput_abs_setup;

namespace Board {

/// An input device that this program makes and speaks for. There as long as the object lives, under the path by which
/// the board's own rules would name it.
class InputDevice {
  public:
    struct Record {
        int type;
        int code;
        int value;
    };

    InputDevice(const InputDevice&) = delete;
    InputDevice& operator=(const InputDevice&) = delete;
    ~InputDevice();

    /// The records, and the end of the report.
    void send(const std::vector<Record>& records);

  protected:
    /// `path`: the link to the device's node, below /dev/input.
    explicit InputDevice(std::string path);
    void enable(unsigned long request, int what);
    void describe(const uinput_abs_setup* axis);
    void appear(const char* name);

  private:
    std::string path_;
    int fd_;
};

class KeyDevice : public InputDevice {
  public:
    KeyDevice(const char* name, const std::string& path, const std::vector<int>& codes);

    void press(int code);  ///< down, and up a twentieth of a second later
};

class TouchPanel : public InputDevice {
  public:
    TouchPanel();

    /// A finger at a point of the display, and off a tenth of a second later. The panel is mounted turned and has twice
    /// the display's resolution.
    void tap(int x, int y);

  private:
    int tracking_ = 0;
};

/// A device as another program reads it, from the making of this on.
class KeyWatch {
  public:
    explicit KeyWatch(const std::string& path);
    KeyWatch(const KeyWatch&) = delete;
    KeyWatch& operator=(const KeyWatch&) = delete;
    ~KeyWatch();

    /// False when the key has not been let go within the time.
    bool awaitRelease(int code, double seconds);

  private:
    int fd_;
};

/// Names the node of a device that the board has by itself, found by the name that its driver gives it.
void linkDevice(const std::string& driverName, const std::string& path);

}  // namespace Board
