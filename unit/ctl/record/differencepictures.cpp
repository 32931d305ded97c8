#include "unit/ctl/record/differencepictures.h"

#include <cstring>

#include "platform/virtual/tape/replayer.h"
#include "unit/ctl/inside/pixels.h"
#include "unit/ctl/wholefile.h"

namespace Unit {

namespace {

/// Empty when the file is not that of a whole picture.
Pixels rawPixels(const std::string& file, unsigned width, unsigned height) {
    const std::string bytes = wholeFile(file);
    Pixels pixels = {width, height, std::vector<std::uint32_t>(std::size_t{width} * height)};
    if (bytes.size() != pixels.colors.size() * sizeof(std::uint32_t)) return {};
    std::memcpy(pixels.colors.data(), bytes.data(), bytes.size());
    return pixels;
}

}  // namespace

SavedDifference saveDifference(const Replay& replay, std::uint64_t frame, const std::string& folder) {
    using Platform::Virtual::Replayer;
    const unsigned width = replay.driver().width(), height = replay.driver().height();
    SavedDifference saved;
    const auto save = [&](const char* what, const Pixels& pixels) {
        if (pixels.colors.empty()) return;
        const std::string file =
            (folder.empty() ? "" : folder + "/") + "frame-" + std::to_string(frame) + "-" + what + ".png";
        writePixels(pixels, file);
        saved.files.push_back(file);
    };
    const Pixels expected = rawPixels(replay.file(Replayer::expectedFile), width, height);
    const Pixels shown = rawPixels(replay.file(Replayer::shownFile), width, height);
    save("recorded", expected);
    save("shown", shown);
    save("difference", differenceOf(expected, shown));
    if (expected.colors.empty())
        saved.remark =
            "The recording has kept no picture of that frame, only its fingerprint. The build that was recorded can "
            "draw it: unitctl replay FILE --until " +
            std::to_string(frame) + " --shot FILE.png";
    return saved;
}

}  // namespace Unit
