#include "unit/server/areas.h"

#include <fcntl.h>

#include <cstring>

#include "apps/common/log/log.h"
#include "model/catalogue/constants.h"
#include "platform/system.h"

namespace Unit {

namespace {

std::uint32_t* headerOf(std::byte* base) {
    return reinterpret_cast<std::uint32_t*>(base) - 1;
}

}  // namespace

Areas::Areas() {
    for (const Catalogue::Area& area : Catalogue::areas) {
        areas_.push_back(std::make_unique<SharedMemory>(area.name, area.size));
        areas_.back()->create();
        bases_.push_back(static_cast<std::byte*>(areas_.back()->address()));
        std::memset(bases_.back(), 0, area.size);
    }
}

void Areas::truncate(std::size_t area, std::size_t bytes) {
    const char* name = areas_[area]->name().c_str();
    Platform::shmUnlink(name);
    const int fd = Platform::shmOpen(name, O_RDWR | O_CREAT, 0666);
    if (fd < 0) TERN_ERRNO_FATAL(name);
    const std::uint32_t header = areas_[area]->size();
    const bool made = Platform::ftruncate(fd, static_cast<off_t>(bytes)) == 0 &&
                      (bytes < sizeof header || Platform::write(fd, &header, sizeof header) == sizeof header);
    Platform::close(fd);
    if (!made) TERN_ERRNO_FATAL(name);
}

void Areas::forgeHeader(std::size_t area, std::uint32_t word) {
    *headerOf(bases_[area]) = word;
}

void Areas::restoreHeaders() {
    for (std::size_t area = 0; area < bases_.size(); ++area) *headerOf(bases_[area]) = Catalogue::areas[area].size;
}

}  // namespace Unit
