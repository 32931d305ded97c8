#pragma once

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <string>

#include "tools/catalogc/catalogue.h"

/// A small catalogue in a folder of its own, of which a test breaks one line.
class BrokenFolder {
  public:
    BrokenFolder()
        : folder_(std::filesystem::temp_directory_path() / ("tern-catalogue-" + std::to_string(::getpid()))) {
        files_["areas.tsv"] = "area\tsize\nMemOne\t64\n";
        files_["messages.tsv"] =
            "id\tname\tsubscribed\n0\tInvalid\tno\n1\tVarIntChanged\tyes\n2\tVarFlagChanged\tyes\n"
            "3\tVarListChanged\tyes\n4\tVarEnumChanged\tyes\n5\tVarMaskChanged\tyes\n6\tVarAppGuiLogLevelChanged\tno\n";
        files_["catalogue.tsv"] =
            "name\tkind\tarea\toffset\tsize\tid\tmin\tmax\nVarInt\ti\tMemOne\t0\t4\t1\t0\t9\n"
            "VarFlag\tb\tMemOne\t4\t1\t2\t\t\nVarEnum\te\tMemOne\t8\t4\t4\t\t\nVarMask\tm\tMemOne\t5\t1\t5\t\t\n"
            "VarAppGuiLogLevel\ti\tMemOne\t60\t4\t6\t\t\n";
        files_["tables.tsv"] =
            "table\tid\tarea\tbase\tstride\trows\tcolumn\tfield\tkind\toffset\tsize\n"
            "VarList\t3\tMemOne\t12\t12\t3\t0\tNumber\ti\t0\t4\nVarList\t3\tMemOne\t12\t12\t3\t1\tText\ts\t4\t8\n";
        files_["events.tsv"] = "id\tname\n0\tEvent_A\n128\tEvent_B\n";
        files_["links.tsv"] = "role\tof\tfrom\tproperty\navailability\tVarEnum\tVarMask\texists\n";
        files_["enums.txt"] = "enum Choice = VarEnum\n    0  One  -\n    1  Two  two  hidden\n";
    }
    ~BrokenFolder() { std::filesystem::remove_all(folder_); }

    /// The first `from` of a file becomes `to`.
    void replace(const std::string& file, const std::string& from, const std::string& to) {
        std::string& text = files_.at(file);
        text.replace(text.find(from), from.size(), to);
    }

    Catalogue read(Problems& problems) const {
        std::filesystem::create_directories(folder_);
        for (const auto& [name, text] : files_) std::ofstream(folder_ / name) << text;
        return Catalogue::read(folder_, nullptr, problems);
    }

    /// All problems, without the folder.
    std::string problems() const {
        Problems problems;
        read(problems);
        std::string text = problems.text();
        const std::string prefix = folder_.string() + "/";
        for (std::size_t at; (at = text.find(prefix)) != std::string::npos;) text.erase(at, prefix.size());
        return text;
    }

  private:
    std::filesystem::path folder_;
    std::map<std::string, std::string> files_;
};
