#include "unit/ctl/wholefile.h"

#include <fstream>

namespace Unit {

// In one piece: a program of many megabytes is read at each start of the product.
std::string wholeFile(const std::string& file) {
    std::ifstream in(file, std::ios::binary | std::ios::ate);
    if (!in) return "";
    std::string bytes(static_cast<std::size_t>(in.tellg()), '\0');
    in.seekg(0);
    in.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    bytes.resize(static_cast<std::size_t>(in.gcount()));
    return bytes;
}

}  // namespace Unit
