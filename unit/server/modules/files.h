#pragma once

#include <array>
#include <functional>
#include <memory>
#include <set>
#include <vector>

#include "unit/server/module.h"
#include "unit/server/modules/filetree.h"

namespace Unit {

/// The file browser over real folders, the USB stick, and what becomes of a file that is chosen: a lens is loaded, a
/// setup is taken over.
class Files final : public Module {
  public:
    using Loader = std::function<void(const std::string& name)>;

    /// `loaders` are given the tree's name of a file that was chosen, by the browser's type of file; empty for none.
    Files(Store& values, std::shared_ptr<FileTree> tree, std::array<Loader, 4> loaders);

    void powerUp() override;
    void tick(std::int64_t nanoseconds) override;

  private:
    void setUsb(bool there);
    void list();
    void describeHighlighted();
    const FileTree::Row* highlighted() const;
    std::filesystem::path highlightedFolder() const;
    void operate();
    void copyHere();
    void makeFolder();
    void rename();
    void remove();
    void makeFavourite();
    void toggleSelected(const FileTree::Row& row);
    void use(const FileTree::Row& row);
    void report(const std::error_code& failed, const char* what);

    std::shared_ptr<FileTree> tree_;
    std::array<Loader, 4> loaders_;
    std::vector<FileTree::Row> rows_;
    std::set<std::filesystem::path> selected_;
    double mounting_ = 0;

    Number usb_, size_, highlight_, filter_, function_, type_, operation_, selectionCount_, result_;
    Flag start_, selectionVisible_, canExpand_, canCollapse_, isFile_, isInternal_, isRoot_, readOnly_, selectActive_,
        notFound_, exists_;
    Text directory_, argument_, selectionPath_, selectionName_, resultText_;
    Column names_, infos_;
};

}  // namespace Unit
