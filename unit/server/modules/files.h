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
    const FileTree::Row* highlightedFile() const;
    std::filesystem::path highlightedFolder() const;
    void operate();
    void expand();
    void collapse();
    void copyHere();
    void makeFolder();
    void proposeName();
    void rename();
    void remove();
    void makeFavourite();
    void toggleFile();
    void toggleFolder();
    void toggleSelected(const FileTree::Row& row);
    void use();
    void report(const std::error_code& failed, const char* what);

    std::shared_ptr<FileTree> tree_;
    std::array<Loader, 4> loaders_;
    std::vector<FileTree::Row> rows_;
    std::set<std::filesystem::path> selected_;
    double mounting_ = 0;

    Number usb_{store, "VarUsbState"}, size_{store, "VarFileBrowserEntryListSize"},
        highlight_{store, "VarFileBrowserHighlightIndex"}, filter_{store, "VarFileBrowserFilter"},
        function_{store, "VarFileBrowserFunction"}, type_{store, "VarFileBrowserType"},
        operation_{store, "VarFileBrowserOperation"}, selectionCount_{store, "VarFileBrowserSelectionCount"},
        result_{store, "VarLastCommandResult"};
    Flag start_{store, "VarFileBrowserOperationStart"}, selectionVisible_{store, "VarFileBrowserSelectionVisible"},
        canExpand_{store, "VarFileBrowserExpandActive"}, canCollapse_{store, "VarFileBrowserCollapseActive"},
        isFile_{store, "VarFileBrowserIsFile"}, isInternal_{store, "VarFileBrowserIsInternal"},
        isRoot_{store, "VarFileBrowserIsRoot"}, readOnly_{store, "VarFileBrowserIsReadOnly"},
        selectActive_{store, "VarFileBrowserSelectActive"}, exists_{store, "VarFileAlreadyExists"};
    Text directory_{store, "VarFileBrowserDirectory"}, argument_{store, "VarFileBrowserOperationArgument"},
        selectionPath_{store, "VarFileBrowserSelectionPath"}, selectionName_{store, "VarFileBrowserSelectionName"},
        resultText_{store, "VarLastCommandResultText"};
    Column names_{store, "VarFileBrowserEntryList", "Name"}, infos_{store, "VarFileBrowserEntryList", "Info"};
};

}  // namespace Unit
