#pragma once

#include <stdlib.h>

#include <filesystem>
#include <string>

#include "tools/common/textfile.h"

/// A folder of its own for a test, gone with the object.
class ScratchFolder {
  public:
    ScratchFolder() {
        std::string name = (std::filesystem::temp_directory_path() / "tern-assets-XXXXXX").string();
        path_ = mkdtemp(name.data());
    }
    ~ScratchFolder() { std::filesystem::remove_all(path_); }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    const std::filesystem::path& path() const { return path_; }
    void write(const std::string& name, const std::string& content) const { writeIfChanged(path_ / name, content); }
    std::string read(const std::string& name) const { return readTextFile(path_ / name); }

  private:
    std::filesystem::path path_;
};

/// The message of the error that `action` throws; empty if it throws none.
template <typename Action>
std::string errorOf(Action action) {
    try {
        action();
        return "";
    } catch (const std::exception& error) {
        return error.what();
    }
}
