#include "unit/server/modules/setups.h"

#include <algorithm>

#include "unit/server/savedsettings.h"

namespace Unit {

namespace fs = std::filesystem;

Setups::Setups(Store& values, std::shared_ptr<FileTree> tree)
    : Module("setups", values),
      tree_(std::move(tree)),
      name_(values, "VarUserSetupSave"),
      addNew_(values, "VarUserSetupAddNew"),
      accept_(values, "VarUserSetupAcceptSaveFileName"),
      overwrite_(values, "VarUserSetupOverwriteFile"),
      checkDone_(values, "VarUserSetupFileCheckDone"),
      valid_(values, "VarUserSetupSaveValid"),
      recentCount_(values, "VarMruUserSetupFileListSize"),
      recent_(values, "VarMruUserSetupFileList", "FileName") {
    hear(addNew_, [this] {
        if (addNew_.take()) propose();
    });
    hear(name_, [this] { check(); });
    hear(accept_, [this] {
        if (accept_.take()) save();
    });
}

void Setups::powerUp() {
    checkDone_.set(false);
    overwrite_.set(false);
    valid_.set(false);
}

fs::path Setups::fileOf(const std::string& name) const {
    return tree_->internal() / "setups" / (name + ".setup");
}

void Setups::propose() {
    std::string name;
    int number = 1;
    do name = "SETUP" + std::to_string(number++);
    while (fs::exists(fileOf(name)));
    name_.set(name);
    check();
}

void Setups::check() {
    checkDone_.set(false);
    valid_.set(FileTree::isPlainName(name_.get()));
    overwrite_.set(valid_ && fs::exists(fileOf(name_.get())));
    checkDone_.set(true);
    checkDone_.note();
}

void Setups::save() {
    if (!FileTree::isPlainName(name_.get())) return;
    const fs::path file = fileOf(name_.get());
    SavedSettings(store, file).save();
    overwrite_.set(false);
    checkDone_.set(false);
    if (recent_.text(0) == tree_->nameOf(file)) return;
    for (std::size_t row = recent_.rows() - 1; row > 0; --row) recent_.setText(row, recent_.text(row - 1));
    recent_.setText(0, tree_->nameOf(file));
    recentCount_.set(static_cast<std::int32_t>(std::min(recent_.live(recentCount_) + 1, recent_.rows())));
}

}  // namespace Unit
