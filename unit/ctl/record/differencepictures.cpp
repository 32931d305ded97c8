#include "unit/ctl/record/differencepictures.h"

#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "apps/libs/png/encodepng.h"
#include "platform/virtual/tape/replayer.h"
#include "unit/ctl/problem.h"

namespace Unit {

namespace {

using Pixels = std::vector<std::uint32_t>;

Pixels readPixels(const std::string& file) {
    std::ifstream in(file, std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    Pixels pixels(bytes.size() / sizeof(std::uint32_t));
    std::memcpy(pixels.data(), bytes.data(), pixels.size() * sizeof pixels[0]);
    return pixels;
}

constexpr std::uint32_t quarter(std::uint32_t color) {
    return (color >> 2) & 0x3f3f3f;
}
constexpr std::uint32_t red = 0xff0000;

}  // namespace

SavedDifference saveDifference(const Replay& replay, std::uint64_t frame, const std::string& folder) {
    const unsigned width = replay.driver().width(), height = replay.driver().height();
    SavedDifference saved;
    const auto save = [&](const char* what, const Pixels& pixels) {
        if (pixels.size() != std::size_t{width} * height) return;
        const std::string file =
            (folder.empty() ? "" : folder + "/") + "frame-" + std::to_string(frame) + "-" + what + ".png";
        const auto png = encodePng(pixels.data(), width, height);
        std::ofstream out(file, std::ios::binary);
        out.write(reinterpret_cast<const char*>(png.data()), static_cast<std::streamsize>(png.size()));
        if (!out.flush()) throw Problem(file + " cannot be written. Name a folder: --pictures DIR");
        saved.files.push_back(file);
    };
    if (!folder.empty()) {
        std::error_code ignored;
        std::filesystem::create_directories(folder, ignored);
    }
    using Platform::Virtual::Replayer;
    const Pixels expected = readPixels(replay.file(Replayer::expectedFile));
    const Pixels shown = readPixels(replay.file(Replayer::shownFile));
    save("recorded", expected);
    save("shown", shown);
    if (expected.size() != shown.size()) {
        saved.remark =
            "The recording has kept no picture of that frame, only its fingerprint. The build that was "
            "recorded can draw it: unitctl replay FILE --until " +
            std::to_string(frame) + " --shot FILE.png";
        return saved;
    }
    Pixels difference(shown.size());
    for (std::size_t i = 0; i < shown.size(); ++i)
        difference[i] = ((expected[i] ^ shown[i]) & 0xffffff) != 0 ? red : quarter(expected[i]);
    save("difference", difference);
    return saved;
}

}  // namespace Unit
