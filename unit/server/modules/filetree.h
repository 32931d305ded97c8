#pragma once

#include <filesystem>
#include <set>
#include <string>
#include <vector>

namespace Unit {

/// The files of the unit as a tree whose folders fold: the internal memory and, while it is in, the USB stick. Nothing
/// outside of the two folders can be named.
class FileTree {
  public:
    struct Row {
        std::filesystem::path path;
        int depth;  ///< 0 for the two roots
        bool folder;
        bool internal;
    };

    /// `folder`: holds "internal" and "usb"; made, with something in it, when missing.
    explicit FileTree(std::filesystem::path folder);

    static const char* suffixOf(int type);  ///< of the file browser's types: ".lens", ".ring", ".setup", ".diopter"
    static bool isPlainName(const std::string& name);

    void setUsb(bool there) { usb_ = there; }
    std::filesystem::path internal() const { return folder_ / "internal"; }
    std::filesystem::path usb() const { return folder_ / "usb"; }
    /// The file behind a name that the product was given; empty when there is none inside the tree.
    std::filesystem::path resolve(const std::string& name) const;
    /// How the product calls a file: "internal/lenses/x.lens".
    std::string nameOf(const std::filesystem::path& path) const;

    void expand(const std::filesystem::path& folder) { expanded_.insert(folder); }
    void collapse(const std::filesystem::path& folder) { expanded_.erase(folder); }
    bool isExpanded(const std::filesystem::path& folder) const { return expanded_.contains(folder); }
    /// The rows that show, at most `limit`: folders first, both by name. Files end in `suffix` (any when empty), none
    /// with `foldersOnly`.
    std::vector<Row> rows(const std::string& suffix, bool foldersOnly, std::size_t limit) const;

  private:
    void addFolder(std::vector<Row>& rows, const Row& folder, const std::string& suffix, bool foldersOnly,
                   std::size_t limit) const;
    void makeSamples() const;

    std::filesystem::path folder_;
    bool usb_ = false;
    std::set<std::filesystem::path> expanded_;
};

}  // namespace Unit
