#include "platform/virtual/display.h"

#include <fcntl.h>
#include <linux/fb.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "platform/virtual/pace.h"
#include "platform/virtual/virtual.h"

namespace Platform::Virtual {

namespace {

unsigned bytesPerPixel(const ControlBlock& block) {
    return (block.bits.load() + 7) / 8;
}

void fillVariable(fb_var_screeninfo& info) {
    const ControlBlock& block = control();
    info = {};
    info.xres = info.xres_virtual = block.width;
    info.yres = block.height;
    info.yres_virtual = block.virtualHeight;
    info.yoffset = block.yOffset;
    info.bits_per_pixel = block.bits;
    info.pixclock = 100'000;  // picoseconds: 10 MHz
    if (info.bits_per_pixel == 32) {
        info.red = {16, 8, 0};
        info.green = {8, 8, 0};
        info.blue = {0, 8, 0};
        info.transp = {24, 8, 0};
    }
}

int putVariable(const fb_var_screeninfo& info) {
    ControlBlock& block = control();
    if (info.yres_virtual < block.height || info.yres_virtual > block.height * block.buffers) {
        errno = EINVAL;
        return -1;
    }
    block.virtualHeight = info.yres_virtual;
    return 0;
}

void fillFixed(fb_fix_screeninfo& info) {
    const ControlBlock& block = control();
    info = {};
    std::strncpy(info.id, "virtual", sizeof info.id - 1);
    info.line_length = block.width * bytesPerPixel(block);
    info.smem_len = info.line_length * block.height * block.buffers;
    info.ypanstep = 1;
}

int pan(const fb_var_screeninfo& info) {
    ControlBlock& block = control();
    if (info.yoffset + block.height > block.virtualHeight) {
        errno = EINVAL;
        return -1;
    }
    block.yOffset = info.yoffset;
    ++block.pans;
    endFrame();
    return 0;
}

}  // namespace

int openDisplay(int flags) {
    const ControlBlock& block = control();
    const std::string path = mapPath("/dev/fb0");
    const int fd = ::open(path.c_str(), flags | O_CREAT, 0600);
    const auto size = static_cast<off_t>(block.width) * block.height * bytesPerPixel(block) * block.buffers;
    if (fd >= 0 && ::lseek(fd, 0, SEEK_END) < size && ::ftruncate(fd, size) != 0) {
        ::close(fd);
        return -1;
    }
    return fd;
}

int displayIoctl(unsigned long request, void* argument) {
    switch (request) {
        case FBIOGET_VSCREENINFO: fillVariable(*static_cast<fb_var_screeninfo*>(argument)); return 0;
        case FBIOPUT_VSCREENINFO: return putVariable(*static_cast<const fb_var_screeninfo*>(argument));
        case FBIOGET_FSCREENINFO: fillFixed(*static_cast<fb_fix_screeninfo*>(argument)); return 0;
        case FBIOPAN_DISPLAY: return pan(*static_cast<const fb_var_screeninfo*>(argument));
        case FBIO_WAITFORVSYNC:
            ++control().vsyncs;
            endFrame();
            return 0;
        default: errno = ENOTTY; return -1;
    }
}

}  // namespace Platform::Virtual
