#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace Unit {

struct AtlasOptions {
    std::string folder;
    std::string against;              ///< folder of an earlier atlas; empty for none
    std::vector<std::string> scenes;  ///< absolute paths
    std::string glob;                 ///< which pages; empty for all
    unsigned jobs = 2;                ///< units side by side
    std::string programs;             ///< folder of gui-virtual and unit-server
};

/// One picture: a page with a scene, in a language, style and hand.
struct AtlasPicture {
    std::string scene, page, language, style, hand;
    std::uint64_t fingerprint = 0;
    std::string problem;  ///< why there is no picture; empty when there is one

    /// Its file below the atlas's folder, without the ending: also its name.
    std::string stem() const { return scene + "/" + page + "-" + language + "-" + style + "-" + hand; }
};

struct SheetEntry;

/// Takes the picture of every page in every language, style and hand, as many as `scenes` tell of, and writes them with
/// a sheet, index.html, and a list, atlas.json. Each page is taken in a unit of its own in lockstep, so that no picture
/// hangs on another: the same model gives the same pictures, however many units run side by side.
class Atlas {
  public:
    Atlas(AtlasOptions options, std::function<void(const std::string&)> report);

    /// False when the earlier atlas had other pictures. Throws Problem.
    bool run();

  private:
    struct Task {
        std::string scene;
        std::string page;
    };

    std::vector<Task> tasks() const;
    void takeAll();
    static std::vector<AtlasPicture> take(const AtlasOptions& options, const Task& task);
    void readLists(const std::vector<Task>& tasks);
    void writeList() const;

    /// The pictures of the earlier atlas by their stem.
    using Earlier = std::map<std::string, AtlasPicture>;

    bool compare();
    Earlier earlierPictures() const;
    std::vector<SheetEntry> compareWith(Earlier earlier) const;
    SheetEntry otherPicture(const AtlasPicture& picture) const;
    bool isAsked(const AtlasPicture& picture) const;
    bool isAskedPage(const std::string& page) const;

    AtlasOptions options_;
    std::function<void(const std::string&)> report_;
    std::vector<AtlasPicture> pictures_;
};

}  // namespace Unit
