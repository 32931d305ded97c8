#pragma once

#include <memory>

#include "unit/server/module.h"
#include "unit/server/modules/filetree.h"

namespace Unit {

/// Saving the settings as a user setup: a name is proposed, checked, and on acceptance the file is written.
class Setups final : public Module {
  public:
    Setups(Store& values, std::shared_ptr<FileTree> tree);

    void powerUp() override;

  private:
    std::filesystem::path fileOf(const std::string& name) const;
    void propose();
    void check();
    void save();

    std::shared_ptr<FileTree> tree_;
    Text name_;
    Flag addNew_, accept_, overwrite_, checkDone_, valid_;
    Number recentCount_;
    Column recent_;
};

}  // namespace Unit
