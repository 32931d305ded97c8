#pragma once

#include <string>
#include <vector>

class LinuxFramebuffer;

/// The pictures of the screen saver, from the stick in the unit.
class Slideshow {
  public:
    static constexpr const char* folder = "/media/usb/TERN/IMAGES/";

    enum class Stick : bool { Absent = false, Present = true };
    enum class Listing { NoStick, Empty, Found };

    /// Reads the names of all PNG files in the folder anew; without a stick there are none. A folder that cannot be
    /// read is logged and counts as empty.
    Listing reload(Stick stick);

    /// Draws the picture at hand into the current buffer, unless it stands there since the last call. False, and
    /// nothing drawn, when there are no pictures or it stands there already; otherwise the caller pans, whether the
    /// picture could be loaded (`isShown`) or not.
    bool show(LinuxFramebuffer& framebuffer);
    /// Goes on to the next picture, or back, round and round, and draws it. Returns as `show`.
    bool showNext(LinuxFramebuffer& framebuffer);
    bool showPrevious(LinuxFramebuffer& framebuffer);

    bool isShown() const { return shown_; }
    /// The screen shows something else from now on.
    void forget() { shown_ = false; }
    const std::vector<std::string>& images() const { return images_; }

  private:
    bool showAt(std::size_t index, LinuxFramebuffer& framebuffer);
    void readFolder();

    std::vector<std::string> images_;
    std::size_t index_ = 0;
    bool shown_ = false;
};
