#include "unit/server/modules/files.h"

#include <algorithm>
#include <array>

#include "model/catalogue/enums.h"
#include "unit/server/savedsettings.h"

namespace Unit {

namespace fs = std::filesystem;

using Model::FileBrowserOperation;
using Model::UsbState;

namespace {

constexpr double mountingTime = 1.0;

std::string sizeText(const fs::path& file) {
    std::error_code failed;
    const auto bytes = fs::file_size(file, failed);
    if (failed) return "";
    return bytes < 1024 ? std::to_string(bytes) + " B" : std::to_string(bytes / 1024) + " KB";
}

}  // namespace

Files::Files(Store& values, std::shared_ptr<FileTree> tree, std::array<Loader, 4> loaders)
    : Module("files", values), tree_(std::move(tree)), loaders_(std::move(loaders)) {
    settingFlag(
        "usb", [this](bool there) { setUsb(there); }, [this] { return !usb_.is(UsbState::Gone); });
    hear(highlight_, [this] { describeHighlighted(); });
    for (const Number* what : {&filter_, &function_, &type_}) hear(*what, [this] { list(); });
    hear(start_, [this] {
        if (start_.get()) operate();
    });
}

void Files::powerUp() {
    selected_.clear();
    setUsb(false);
}

void Files::setUsb(bool there) {
    if (there == !usb_.is(UsbState::Gone)) {
        list();
        return;
    }
    usb_.set(there ? UsbState::Mounting : UsbState::Gone);
    mounting_ = 0;
    tree_->setUsb(false);
    std::erase_if(selected_, [this](const fs::path& path) { return tree_->nameOf(path).starts_with("usb"); });
    list();
}

void Files::tick(std::int64_t nanoseconds) {
    if (!usb_.is(UsbState::Mounting)) return;
    mounting_ += static_cast<double>(nanoseconds) * 1e-9;
    if (mounting_ < mountingTime) return;
    std::error_code failed;
    const bool readable = fs::is_directory(tree_->usb(), failed);
    usb_.set(readable ? UsbState::Mounted : UsbState::Error);
    tree_->setUsb(readable);
    list();
}

void Files::list() {
    const bool foldersOnly =
        function_.is(Model::FileBrowserFunction::DirectoriesOnly) || filter_.is(Model::FileBrowserFilter::Directories);
    // The filter names a kind of file, one above the types of the browser.
    const std::int32_t kind = filter_.get() >= 2 ? filter_.get() - 2 : type_.get();
    rows_ = tree_->rows(FileTree::suffixOf(kind), foldersOnly, names_.rows());
    for (std::size_t i = 0; i < rows_.size(); ++i) {
        const FileTree::Row& row = rows_[i];
        const std::string name = row.depth > 0  ? row.path.filename().string()
                                 : row.internal ? "Internal memory"
                                                : "USB stick";
        names_.setText(i, std::string(2 * static_cast<std::size_t>(row.depth), ' ') + name);
        infos_.setText(i, selected_.contains(row.path) ? "*" : row.folder ? "" : sizeText(row.path));
    }
    size_.set(static_cast<std::int32_t>(rows_.size()));
    selectionCount_.set(static_cast<std::int32_t>(selected_.size()));
    selectionVisible_.set(!selected_.empty());
    highlight_.set(std::clamp(highlight_.get(), 0, std::max(0, size_.get() - 1)));
    describeHighlighted();
}

const FileTree::Row* Files::highlighted() const {
    const auto row = static_cast<std::size_t>(highlight_.get());
    return highlight_.get() >= 0 && row < rows_.size() ? &rows_[row] : nullptr;
}

const FileTree::Row* Files::highlightedFile() const {
    const FileTree::Row* row = highlighted();
    return row != nullptr && !row->folder ? row : nullptr;
}

fs::path Files::highlightedFolder() const {
    const FileTree::Row* row = highlighted();
    if (row == nullptr) return {};
    return row->folder ? row->path : row->path.parent_path();
}

void Files::describeHighlighted() {
    const FileTree::Row* row = highlighted();
    const bool folder = row != nullptr && row->folder;
    const bool open = folder && tree_->isExpanded(row->path);
    canExpand_.set(folder && !open);
    canCollapse_.set(open);
    isFile_.set(row != nullptr && !row->folder);
    isInternal_.set(row != nullptr && row->internal);
    isRoot_.set(row != nullptr && row->depth == 0);
    selectActive_.set(row != nullptr && selected_.contains(row->path));
    std::error_code ignored;
    const auto rights = row != nullptr ? fs::status(row->path, ignored).permissions() : fs::perms::none;
    readOnly_.set(row != nullptr && (rights & fs::perms::owner_write) == fs::perms::none);
    selectionPath_.set(row != nullptr ? tree_->nameOf(row->path) : "");
    selectionName_.set(row != nullptr ? row->path.filename().string() : "");
    directory_.set(row != nullptr ? tree_->nameOf(highlightedFolder()) : "");
}

void Files::operate() {
    switch (static_cast<FileBrowserOperation>(operation_.get())) {
        case FileBrowserOperation::Copy: copyHere(); break;
        case FileBrowserOperation::MakeDirectory: makeFolder(); break;
        case FileBrowserOperation::PrepareForRename: proposeName(); break;
        case FileBrowserOperation::SelectToggleCurrent: toggleFile(); break;
        case FileBrowserOperation::SelectToggleDirectory: toggleFolder(); break;
        case FileBrowserOperation::UnselectAll: selected_.clear(); break;
        case FileBrowserOperation::ExpandToggleCurrent: canCollapse_ ? collapse() : expand(); break;
        case FileBrowserOperation::CollapseCurrent: collapse(); break;
        case FileBrowserOperation::ExpandCurrent: expand(); break;
        case FileBrowserOperation::FavouriteCurrent: makeFavourite(); break;
        case FileBrowserOperation::Rename: rename(); break;
        case FileBrowserOperation::Delete: remove(); break;
        case FileBrowserOperation::NoOperation: use(); break;
        case FileBrowserOperation::Refresh: break;
    }
    operation_.set(FileBrowserOperation::NoOperation);
    list();
    start_.set(false);
}

void Files::expand() {
    if (const FileTree::Row* row = highlighted(); row != nullptr && canExpand_) tree_->expand(row->path);
}

void Files::collapse() {
    if (const FileTree::Row* row = highlighted(); row != nullptr && canCollapse_) tree_->collapse(row->path);
}

void Files::toggleFile() {
    if (const FileTree::Row* file = highlightedFile()) toggleSelected(*file);
}

void Files::toggleFolder() {
    for (const FileTree::Row& file : rows_)
        if (!file.folder && file.path.parent_path() == highlightedFolder()) toggleSelected(file);
}

void Files::toggleSelected(const FileTree::Row& row) {
    if (!selected_.erase(row.path)) selected_.insert(row.path);
}

void Files::copyHere() {
    const fs::path folder = highlightedFolder();
    if (folder.empty()) return;
    for (const fs::path& file : selected_) {
        const fs::path target = folder / file.filename();
        std::error_code failed;
        if (fs::exists(target)) {
            exists_.set(true);
            continue;
        }
        fs::copy_file(file, target, failed);
        report(failed, "copied");
    }
    selected_.clear();
}

void Files::makeFolder() {
    const std::string name = argument_.get();
    if (!FileTree::isPlainName(name) || highlightedFolder().empty()) return;
    std::error_code failed;
    exists_.set(!fs::create_directory(highlightedFolder() / name, failed) && !failed);
    report(failed, "made");
}

void Files::proposeName() {
    if (const FileTree::Row* row = highlighted()) argument_.set(row->path.stem().string());
}

void Files::rename() {
    const FileTree::Row* row = highlighted();
    const std::string name = argument_.get();
    if (row == nullptr || row->depth == 0 || !FileTree::isPlainName(name)) return;
    const fs::path target = row->path.parent_path() / (name + row->path.extension().string());
    exists_.set(fs::exists(target));
    if (exists_) return;
    std::error_code failed;
    fs::rename(row->path, target, failed);
    report(failed, "renamed");
}

void Files::remove() {
    const FileTree::Row* row = highlighted();
    if (selected_.empty() && row != nullptr && row->depth > 0) selected_.insert(row->path);
    for (const fs::path& path : selected_) {
        std::error_code failed;
        fs::remove_all(path, failed);
        report(failed, "deleted");
    }
    selected_.clear();
}

void Files::makeFavourite() {
    static constexpr std::array kinds = {"LensFile", "CustomRing", "UserSetup", "Diopter"};
    const std::string kind = kinds[static_cast<std::size_t>(type_.within(0, 3))];
    const std::string folder = tree_->nameOf(highlightedFolder());
    Text(store, "Var" + kind + "FavouriteFolder").set(folder);
    Text(store, "Var" + kind + "FavouriteFolderDisplay").set(folder);
    Flag(store, "Var" + kind + "FavouriteActive").set(true);
}

void Files::use() {
    const FileTree::Row* file = highlightedFile();
    if (file == nullptr) return;
    const auto type = static_cast<std::size_t>(type_.within(0, 3));
    if (type_.is(Model::FileBrowserType::UserSetupFiles)) SavedSettings(store, file->path).restore();
    if (loaders_[type]) loaders_[type](tree_->nameOf(file->path));
}

void Files::report(const std::error_code& failed, const char* what) {
    if (!failed) return;
    result_.set(Model::LastCommandResult::Report);
    resultText_.set(std::string("The file could not be ") + what + ": " + failed.message());
}

}  // namespace Unit
