#pragma once

#include <linux/fb.h>

#include <cstddef>
#include <string>

/// A framebuffer device with a set of buffers that are flipped. Whoever draws gets the address of the current buffer;
/// nothing is copied. Failures of the device are fatal (std::runtime_error).
class LinuxFramebuffer {
  public:
    enum class Contents : bool { Clear = false, Keep = true };

    /// For drawing into `bufferCount` buffers.
    LinuxFramebuffer(std::string path, int bufferCount);
    /// For looking only, at as many buffers as the device shows.
    explicit LinuxFramebuffer(std::string path);
    LinuxFramebuffer(const LinuxFramebuffer&) = delete;
    LinuxFramebuffer& operator=(const LinuxFramebuffer&) = delete;
    ~LinuxFramebuffer();

    /// Opens and maps the device and shows its first buffer. `Keep` leaves there what the boot loader drew.
    void open(Contents contents);

    /// The buffer that is drawn into.
    void* currentAddress() const;
    /// The buffer that is shown now.
    void* previousAddress() const;
    /// Read-only use: the buffer that the device shows now.
    void* displayedAddress();

    /// Sets the current buffer to zeros. Fatal in read-only use.
    void clear();
    /// Shows the current buffer, which waits for the vertical blank, and goes on to the next. Fatal in read-only use.
    void swap();
    void waitVsync();

    int width() const { return static_cast<int>(variableInfo_.xres); }
    int height() const { return static_cast<int>(variableInfo_.yres); }
    int bitsPerPixel() const { return static_cast<int>(variableInfo_.bits_per_pixel); }
    int bufferCount() const { return bufferCount_; }
    /// Bytes of one buffer.
    std::size_t bufferSize() const;

  private:
    void readVariableInfo();
    void requestBuffers();
    void pan();
    void logProperties() const;
    void map();
    unsigned char* bufferAt(std::size_t index) const {
        return static_cast<unsigned char*>(mapping_) + index * bufferSize();
    }

    std::string path_;
    int fd_ = -1;
    int bufferCount_;
    int currentBuffer_ = 0;
    bool readOnly_;
    fb_var_screeninfo variableInfo_ = {};
    fb_fix_screeninfo fixedInfo_ = {};
    void* mapping_;
};
