#include "unit/ctl/memory.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <charconv>
#include <cstdint>
#include <cstring>

#include "unit/ctl/problem.h"

namespace Unit {

namespace {

/// The whole object of the area, its size word in front included. Null when it is missing or of another size.
void* mapArea(const char* name, std::size_t size) {
    const int fd = ::shm_open(name, O_RDWR | O_CLOEXEC, 0);
    if (fd < 0) return nullptr;
    struct stat status = {};
    void* start = MAP_FAILED;
    if (::fstat(fd, &status) == 0 && static_cast<std::size_t>(status.st_size) >= size)
        start = ::mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED, fd, 0);
    ::close(fd);
    return start == MAP_FAILED ? nullptr : start;
}

}  // namespace

Memory::Memory(const Platform::Virtual::Instance& instance) {
    std::vector<std::byte*> bases;
    for (const Catalogue::Area& area : Catalogue::areas) {
        const std::size_t size = area.size + sizeof(std::uint32_t);
        char name[Platform::Virtual::Instance::nameLimit];
        const char* mapped = instance.mapName(("/" + std::string(area.name)).c_str(), name);
        void* start = mapped != nullptr ? mapArea(mapped, size) : nullptr;
        if (start == nullptr)
            throw Problem(std::string("The memory area ") + area.name + " is missing or too short: " +
                          "the unit's server does not run. Start the unit anew: unitctl stop, unitctl start.");
        mappings_.push_back({start, size});
        bases.push_back(static_cast<std::byte*>(start) + sizeof(std::uint32_t));
    }
    store_ = std::make_unique<Store>(bases);
}

Memory::~Memory() {
    for (const Mapping& mapping : mappings_) ::munmap(mapping.start, mapping.size);
}

std::span<const std::byte> Memory::bytes(std::string_view area, std::size_t offset, std::size_t length) const {
    std::string known;
    for (std::size_t i = 0; i < Catalogue::areas.size(); ++i) {
        const Catalogue::Area& one = Catalogue::areas[i];
        known += std::string(" ") + one.name;
        if (one.name != area) continue;
        if (offset > one.size || length > one.size - offset)
            throw Problem(std::string(one.name) + " has " + std::to_string(one.size) +
                          " bytes; offset and length go beyond them.");
        return {static_cast<const std::byte*>(mappings_[i].start) + sizeof(std::uint32_t) + offset, length};
    }
    throw Problem("There is no area " + std::string(area) + "; there are" + known + ".");
}

std::string bareValue(const Store& store, const Cell& cell) {
    if (cell.kind != Catalogue::Kind::Float) return store.show(cell);
    char text[32];
    const auto result = std::to_chars(text, text + sizeof text, store.real(cell));
    return {text, result.ptr};
}

std::string valueName(const Store& store, const Cell& cell) {
    if (cell.kind != Catalogue::Kind::Enum || cell.enumType == Catalogue::noEnumType) return "";
    const auto& type = Catalogue::enumTypes[static_cast<std::size_t>(cell.enumType)];
    const char* name = Catalogue::entryName(type, store.integer(cell));
    return name != nullptr ? name : "";
}

const char* kindName(Catalogue::Kind kind) {
    switch (kind) {
        case Catalogue::Kind::Flag: return "flag";
        case Catalogue::Kind::Int: return "int";
        case Catalogue::Kind::Enum: return "enum";
        case Catalogue::Kind::Float: return "float";
        case Catalogue::Kind::Text: return "text";
        case Catalogue::Kind::Mask: return "mask";
        default: return "none";
    }
}

}  // namespace Unit
